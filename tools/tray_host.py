# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""A StatusNotifierItem tray on the session bus, with a client for the items' menus."""

import ctypes

from gi.repository import Gio, GLib

WATCHER = "org.kde.StatusNotifierWatcher"
WATCHER_PATH = "/StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"
INTROSPECTION = """<node><interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
  <signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
  <signal name="StatusNotifierHostRegistered"/>
</interface></node>"""


NOTIFICATIONS = "org.freedesktop.Notifications"
NOTIFY = """<node><interface name="org.freedesktop.Notifications"><method name="Notify">
  <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
  <arg type="s" direction="in"/><arg type="as" direction="in"/><arg type="a{sv}" direction="in"/><arg type="i" direction="in"/>
  <arg type="u" direction="out"/>
</method></interface></node>"""


def pump_until(condition, seconds=10.0):
    """Runs the event loop until the condition holds. Returns whether it held in time."""
    context = GLib.MainContext.default()
    expired = []
    GLib.timeout_add(int(seconds * 1000), lambda: expired.append(True))
    tick = GLib.timeout_add(10, lambda: True)
    try:
        while not condition() and not expired:
            context.iteration(True)
    finally:
        GLib.source_remove(tick)
    return bool(condition())


class NotificationServer:
    """Records the summaries of the notifications that programs show."""

    def __init__(self):
        self.shown = []
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        interface = Gio.DBusNodeInfo.new_for_xml(NOTIFY).interfaces[0]
        self.registration = self.bus.register_object("/org/freedesktop/Notifications", interface, self.on_notify)
        self.name = Gio.bus_own_name_on_connection(self.bus, NOTIFICATIONS, Gio.BusNameOwnerFlags.NONE, None, None)

    def on_notify(self, _bus, _sender, _path, _interface, _method, arguments, call):
        self.shown.append(arguments.unpack()[3])
        call.return_value(GLib.Variant("(u)", (1,)))

    def close(self):
        Gio.bus_unown_name(self.name)
        self.bus.unregister_object(self.registration)


class MenuEntry:
    """A menu entry as the program exports it."""

    def __init__(self, number, properties, children):
        self.number = number
        self.properties = properties
        self.children = [entry for entry in (MenuEntry(*child) for child in children) if entry.is_visible()]

    def is_visible(self):
        return self.properties.get("visible", True)

    @property
    def title(self):
        # An underscore underlines the character after it. One without width shows nothing.
        return self.properties.get("label", "").replace("_\u200b", "")

    def text(self):
        if self.properties.get("type") == "separator":
            return "-"
        text = ("" if self.properties.get("enabled", True) else "#") + self.title
        if "shortcut" in self.properties:
            text += " [" + "+".join(self.properties["shortcut"][0]) + "]"
        if self.properties.get("toggle-type"):
            mark = "x" if self.properties.get("toggle-state") == 1 else " "
            text += {"radio": f" ({mark})", "checkmark": f" <{mark}>"}[self.properties["toggle-type"]]
        if self.children:
            text += " {" + ", ".join(child.text() for child in self.children) + "}"
        return text

    def find(self, title):
        for child in self.children:
            found = child if child.title == title else child.find(title)
            if found:
                return found
        return None


class Item:
    """An item in the tray, by the bus name that owns it."""

    def __init__(self, bus, owner, path="/StatusNotifierItem"):
        self._bus, self._owner, self._path = bus, owner, path

    def _call(self, path, interface, method, arguments=None):
        return self._bus.call_sync(self._owner, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                                   5000, None).unpack()

    def property(self, name):
        return self._call(self._path, "org.freedesktop.DBus.Properties", "Get", GLib.Variant("(ss)", (ITEM, name)))[0]

    def menu(self):
        """Requests the current menu, as a host does before showing it."""
        path = self.property("Menu")
        self._call(path, MENU, "AboutToShow", GLib.Variant("(i)", (0,)))
        layout = self._call(path, MENU, "GetLayout", GLib.Variant("(iias)", (0, -1, [])))[1]
        return MenuEntry(*layout)

    def choose(self, title):
        """Clicks the entry and does not wait for the effect."""
        entry = self.menu().find(title)
        self._bus.call(self._owner, self.property("Menu"), MENU, "Event",
                       GLib.Variant("(isvu)", (entry.number, "clicked", GLib.Variant("i", 0), 0)), None,
                       Gio.DBusCallFlags.NONE, 5000, None, None)

    def activate(self):
        self._call(self._path, ITEM, "Activate", GLib.Variant("(ii)", (0, 0)))


class EmbeddingTray:
    """A tray of the kind that embeds windows on an X11 display, until `close()`."""

    CLIENT_MESSAGE = 33
    XEVENT_BYTES = 192

    def __init__(self):
        self._requests = 0
        self._x = ctypes.CDLL("libX11.so.6")
        for name in ("XOpenDisplay", "XInternAtom", "XDefaultRootWindow", "XCreateSimpleWindow"):
            getattr(self._x, name).restype = ctypes.c_void_p
        self._display = ctypes.c_void_p(self._x.XOpenDisplay(None))
        root = ctypes.c_void_p(self._x.XDefaultRootWindow(self._display))
        self._window = ctypes.c_void_p(self._x.XCreateSimpleWindow(self._display, root, 0, 0, 9, 9, 0, 0, 0))
        selection = ctypes.c_void_p(self._x.XInternAtom(self._display, b"_NET_SYSTEM_TRAY_S0", 0))
        self._x.XSetSelectionOwner(self._display, selection, self._window, 0)
        self._x.XSync(self._display, 0)

    def requests(self):
        """How many icons have asked to be embedded so far."""
        event = ctypes.create_string_buffer(self.XEVENT_BYTES)
        while self._x.XCheckTypedWindowEvent(self._display, self._window, self.CLIENT_MESSAGE, event):
            self._requests += 1
        return self._requests

    def close(self):
        self._x.XCloseDisplay(self._display)


class TrayHost:
    """Owns the tray's name on the session bus until `close()`. Shows items only with `shows`, or from
    `begin_to_show()` on: where the name belongs to a daemon, the panel comes later."""

    def __init__(self, shows=True):
        self._shows = shows
        self._bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.registered = []
        interface = Gio.DBusNodeInfo.new_for_xml(INTROSPECTION).interfaces[0]
        self._object = self._bus.register_object(WATCHER_PATH, interface, self._call, self._get, None)
        self._name = Gio.bus_own_name_on_connection(self._bus, WATCHER, Gio.BusNameOwnerFlags.NONE, None, None)

    def close(self):
        Gio.bus_unown_name(self._name)
        self._bus.unregister_object(self._object)
        self._bus.flush_sync()

    def begin_to_show(self):
        self._shows = True
        self._bus.emit_signal(None, WATCHER_PATH, WATCHER, "StatusNotifierHostRegistered", None)

    def _call(self, _bus, sender, _path, _interface, method, arguments, invocation):
        if method == "RegisterStatusNotifierItem":
            service = arguments.unpack()[0]
            owner, path = (sender, service) if service.startswith("/") else (service, "/StatusNotifierItem")
            self.registered.append(Item(self._bus, owner, path))
        invocation.return_value(None)

    def _get(self, _bus, _sender, _path, _interface, name):
        return {"RegisteredStatusNotifierItems": GLib.Variant("as", []),
                "IsStatusNotifierHostRegistered": GLib.Variant("b", self._shows),
                "ProtocolVersion": GLib.Variant("i", 0)}[name]

    def wait_for_item(self):
        """Waits for an item and returns the one registered last."""
        if not pump_until(lambda: self.registered):
            raise AssertionError("nothing has registered with the tray")
        return self.registered[-1]
