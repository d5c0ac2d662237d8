# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""The desktops, and how each makes the signals by its own means.

All commands are those of a shell in the session. `press` types. Where a signal types, it may sound of keys.
"""

from dataclasses import dataclass



@dataclass(frozen=True)
class Signal:
    """Something that the user does, and the event that it is. None: nothing may sound."""

    event: str | None
    what: str
    means: str
    prepare: str = "true"
    count: int = 1
    seconds: float = 5.0
    # Events that may sound besides, such as the keys that are typed on the way.
    besides: tuple = ()


@dataclass(frozen=True)
class Desktop:
    """A desktop, and the commands that operate it."""

    name: str
    title: str
    variables: dict
    start: str
    # Prints the variables of the running session, such as DISPLAY, as NAME=VALUE.
    find_session: str
    picture: str
    signals: tuple
    # What a user does besides an idle desktop.
    idle: tuple
    prepare: str = "true"
    # Once the session is there.
    settle: str = "true"
    # Files that the desktop reads: path and text.
    files: tuple = ()
    # A panel that is part of the compositor cannot be restarted.
    stop_panel: str = ""
    start_panel: str = ""


def on_x_server(client):
    """Returns how an X11 session is started, found and photographed."""
    return (f"xinit /etc/X11/Xsession {client} -- /usr/bin/Xvfb :8 -screen 0 1280x800x24", "echo DISPLAY=:8",
            "import -window root")


def x11(desktop, session, **more):
    """Returns the variables of an X11 session."""
    return {"XDG_SESSION_TYPE": "x11", "XDG_CURRENT_DESKTOP": desktop, "XDG_SESSION_DESKTOP": session,
            "DESKTOP_SESSION": session, **more}


def wayland(desktop, session, **more):
    """Returns the variables of a Wayland session."""
    return {"XDG_SESSION_TYPE": "wayland", "XDG_CURRENT_DESKTOP": desktop, "XDG_SESSION_DESKTOP": session,
            "DESKTOP_SESSION": session, **more}


FIND_WAYLAND = ("systemctl --user show-environment | grep -E '^(WAYLAND_DISPLAY|DISPLAY|XAUTHORITY|SWAYSOCK)=' | "
                "sed \"s/\\$'\\(.*\\)'/\\1/\"")

KEYS = ("key_press",)


TYPING = Signal("key_press", "four keys", "for key in a b shift+c d; do press $key; sleep 0.4; done", count=4)


def volume():
    """The volume keys, with whatever the desktop does about them."""
    level = "pactl set-sink-volume @DEFAULT_SINK@ 50%; sleep 1"
    return (Signal("volume_up", "by its key", "press XF86AudioRaiseVolume", prepare=level),
            Signal("volume_down", "by its key", "press XF86AudioLowerVolume"))


FILES = "mkdir -p ~/files; rm -f ~/files/*; echo 1 >~/files/one.txt"

def end(program):
    """Returns the command that ends a program, if it runs."""
    return f"pkill --uid tester --ignore-case --full '(^|/){program}( |$)'"


def launch(opener, program, pause=3):
    """The desktop's launcher opens, and the user types the name of a program that does not run yet."""
    return Signal("app_launch", "from the launcher",
                  f"press {opener}; sleep {pause}; press text:{program}; sleep {pause}; press Return",
                  prepare=f"{end(program)}; sleep 1", seconds=30, besides=KEYS)


def work(opener, program, save="ctrl+s"):
    """The user opens an editor, types and saves, and closes it."""
    return (launch(opener, program),
            Signal(None, "typing into it", "press text:a.line Return text:another Return", besides=KEYS),
            Signal(None, "saving", f"press {save}; sleep 3; press text:note Return; sleep 2",
                   prepare="rm -f ~/note ~/*/note", besides=KEYS),
            Signal(None, "closing it", f"press alt+F4; sleep 2; {end(program)}", besides=KEYS))


def new_window(keys):
    """A program that runs already opens another window."""
    return Signal(None, "a second window", f"press {keys}; sleep 3", besides=KEYS)


DIALOG = Signal(None, "a dialog of files", "press ctrl+o; sleep 3; press Escape", besides=KEYS)

XFCE = Desktop(
    "xfce", "Xfce", x11("XFCE", "xfce"), *on_x_server("startxfce4"),
    # Mousepad asks before its window opens if it was ended.
    prepare="gsettings set org.xfce.mousepad.preferences.file session-restore never",
    stop_panel="xfce4-panel --quit; sleep 2; pkill -x -u tester xfce4-panel", start_panel="xfce4-panel",
    signals=(
        TYPING,
        *volume(),
        Signal("trash_add", "by the file manager", "press ctrl+a Delete; sleep 2",
               prepare=f"{FILES}; thunar ~/files & sleep 9", besides=KEYS),
        Signal("trash_empty", "by the file manager", "gdbus call --session --dest org.xfce.FileManager --object-path "
               "/org/xfce/FileManager --method org.xfce.Trash.EmptyTrash :8 '' & sleep 3; press Return", besides=KEYS),
        launch("alt+F2", "mousepad"),
        new_window("ctrl+shift+n"),
        DIALOG,
        launch("alt+F2", "xterm"),
        Signal("app_launch", "typed in a terminal", "press text:kcalc Return", seconds=30, besides=KEYS),
        launch("alt+F2", "thunar"),
        Signal("screenshot", "by its key",
               "press Print; sleep 4; press Return; sleep 5; press Return; sleep 3; press Return", seconds=20,
               besides=KEYS),
    ),
    idle=work("alt+F2", "mousepad"))

PLASMA_SIGNALS = (
    *volume(),
    Signal("trash_add", "by the file manager", "press ctrl+a Delete; sleep 2",
           prepare=f"{FILES}; dolphin --new-window ~/files & sleep 9", besides=KEYS),
    Signal("trash_empty", "by the file manager", "ktrash5 --empty"),
    launch("alt+F2", "kcalc"),
    launch("alt+F1", "kwrite"),
    new_window("ctrl+shift+n"),
    DIALOG,
    launch("alt+F2", "dolphin"),
    launch("alt+F2", "konsole"),
    Signal("app_launch", "typed in a terminal", "press text:xterm Return", seconds=30, besides=KEYS),
    Signal("screenshot", "by its key", "press shift+Print; sleep 2", seconds=20, besides=KEYS),
)

PLASMA_X11 = Desktop(
    "plasma-x11", "Plasma, X11", x11("KDE", "plasma", KDE_FULL_SESSION="true", KDE_SESSION_VERSION="5"),
    *on_x_server("startplasma-x11"),
    stop_panel="pkill -x -u tester plasmashell; sleep 2", start_panel="plasmashell --no-respawn",
    signals=(TYPING, *PLASMA_SIGNALS), idle=work("alt+F2", "kwrite"))

PLASMA_WAYLAND = Desktop(
    "plasma-wayland", "Plasma, Wayland",
    wayland("KDE", "plasmawayland", KDE_FULL_SESSION="true", KDE_SESSION_VERSION="5"),
    "startplasma-wayland", FIND_WAYLAND, "kwin-picture",
    stop_panel="pkill -x -u tester plasmashell; sleep 2", start_panel="plasmashell --no-respawn",
    # Without OpenGL, KWin takes no screenshots.
    files=(("/etc/systemd/user/plasma-kwin_wayland.service.d/headless.conf", """[Service]
ExecStart=
ExecStart=/usr/bin/kwin_wayland_wrapper --xwayland --virtual --width 1280 --height 800
Environment=KWIN_COMPOSE=O2 LIBGL_ALWAYS_SOFTWARE=1
Environment=KWIN_SCREENSHOT_NO_PERMISSION_CHECKS=1
"""),
           # KWin lets a program press keys if the desktop entry of its executable asks for it.
           ("/usr/share/applications/python3.11.desktop", """[Desktop Entry]
Type=Application
Name=Python
Exec=/usr/bin/python3.11
NoDisplay=true
X-KDE-Wayland-Interfaces=org_kde_kwin_fake_input
""")),
    signals=PLASMA_SIGNALS, idle=work("alt+F2", "kwrite"))

# What its windows do, without one: a new window gets no keys there that no user asked for.
NAUTILUS = ("gdbus call --session --dest org.gnome.Nautilus --object-path /org/gnome/Nautilus/FileOperations2 "
            "--method org.gnome.Nautilus.FileOperations2.")

GNOME = Desktop(
    "gnome", "GNOME, Wayland", wayland("GNOME", "gnome", XDG_MENU_PREFIX="gnome-"), "gnome-session --session=gnome",
    FIND_WAYLAND,
    "shot() { gdbus call --session --dest org.gnome.Shell --object-path /org/gnome/Shell/Screenshot "
    "--method org.gnome.Shell.Screenshot.Screenshot true false \"$1\"; }; shot",
    # In its unsafe mode the shell answers others who ask for a picture.
    files=(("/etc/systemd/user/org.gnome.Shell@wayland.service.d/headless.conf", """[Service]
ExecStart=
ExecStart=/usr/bin/gnome-shell --headless --virtual-monitor 1280x800 --unsafe-mode
Environment=LIBGL_ALWAYS_SOFTWARE=1 XDG_SESSION_TYPE=wayland
"""),),
    prepare="gsettings set org.gnome.shell disable-user-extensions false; "
            "gsettings set org.gnome.shell enabled-extensions '[\"ubuntu-appindicators@ubuntu.com\"]'; "
            "gsettings set org.gnome.shell welcome-dialog-last-shown-version 99",
    # The session begins in the overview.
    settle="press Escape Escape; sleep 2",
    signals=(
        *volume(),
        Signal("trash_add", "by the file manager",
               NAUTILUS + "TrashURIs '[\"file:///home/tester/files/one.txt\"]' '{}'", prepare=FILES),
        Signal("trash_empty", "by the file manager", NAUTILUS + "EmptyTrash false '{}'"),
        launch("super", "calculator"),
        # One that the bus starts.
        launch("super", "gnome-text-editor"),
        new_window("ctrl+n"),
        DIALOG,
        Signal("screenshot", "by its key", "press shift+Print; sleep 2", seconds=20),
    ),
    idle=work("super", "gnome-text-editor"))

SWAY = Desktop(
    "sway", "sway",
    wayland("sway", "sway", WLR_BACKENDS="headless", WLR_RENDERER="pixman", WLR_LIBINPUT_NO_DEVICES="1"),
    "sway", FIND_WAYLAND, "grim",
    stop_panel="pkill -x -u tester waybar", start_panel="waybar",
    files=(("/home/tester/.config/sway/config", """set $mod Mod4
output HEADLESS-1 mode 1280x800
bindsym $mod+Return exec foot
bindsym Print exec grim "$(xdg-user-dir PICTURES)/Screenshot_$(date +%s).png"
bindsym XF86AudioRaiseVolume exec pactl set-sink-volume @DEFAULT_SINK@ +5%
bindsym XF86AudioLowerVolume exec pactl set-sink-volume @DEFAULT_SINK@ -5%
exec systemctl --user import-environment DISPLAY WAYLAND_DISPLAY SWAYSOCK XDG_CURRENT_DESKTOP
exec waybar
exec chimewerk --background
"""),),
    signals=(
        *volume(),
        # It has no file manager of its own.
        Signal("trash_add", "by gio", "gio trash ~/files/one.txt", prepare=FILES),
        Signal("trash_empty", "by gio", "gio trash --empty"),
        Signal("app_launch", "by its key", "press super+Return", seconds=30),
        Signal("app_launch", "typed in a terminal", "press text:mousepad Return", seconds=30),
        Signal("screenshot", "by its key", "press Print", seconds=20),
    ),
    idle=())

LXQT = Desktop(
    "lxqt", "LXQt", x11("LXQt", "lxqt"), *on_x_server("startlxqt"),
    # The panel needs the session's variables.
    stop_panel="pkill -x -u tester lxqt-panel; sleep 2; pkill -x -u tester lxqt-panel",
    start_panel=(
        "export $(tr '\\0' '\\n' </proc/$(pgrep -x lxqt-session)/environ | grep -E '^(XDG|QT)_'); exec lxqt-panel"),
    # Debian installs the keys where they are not found.
    files=(("/home/tester/.config/lxqt/session.conf", "[General]\nwindow_manager=openbox\n"),
           ("/home/tester/.config/lxqt/globalkeyshortcuts.conf", """[Print.8]
Comment=screen shot
Enabled=true
Exec=screengrab, -f
""")),
    signals=(
        TYPING,
        *volume(),
        Signal("trash_add", "by the file manager", "press ctrl+a; sleep 2; press Delete; sleep 4; press Return",
               prepare=f"{FILES}; pcmanfm-qt ~/files & sleep 12", besides=KEYS),
        Signal("trash_empty", "by the file manager", "gio trash --empty"),
        launch("alt+F2", "featherpad"),
        new_window("ctrl+n"),
        DIALOG,
        launch("alt+F2", "qterminal"),
        Signal("app_launch", "typed in a terminal", "press text:kcalc Return", seconds=30, besides=KEYS),
        # An application that opens its window.
        Signal("screenshot", "by its key", "press Print; sleep 5; press ctrl+s; sleep 4; press Return", seconds=20,
               besides=(*KEYS, "app_launch")),
    ),
    idle=work("alt+F2", "featherpad"))

DESKTOPS = (XFCE, PLASMA_X11, PLASMA_WAYLAND, GNOME, SWAY, LXQT)
