// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/texts/platform_wording.h"

#include <optional>

namespace chimewerk {

namespace {

constexpr PlatformWording
    kWordings[] =
        {
            // The dashboard.
            {"Plays when the lid opens and the screen turns on.",
             "Plays when the computer wakes from sleep, as when its lid opens."},
            {"Plays when the lid closes and the screen turns off.",
             "Plays when the computer goes to sleep, as when its lid closes."},
            {"⚠\uFE0F Sensor not found on this Mac — requires Apple Silicon (M1 or later). Lid angle detection is not available on Intel Macs.",
             "⚠\uFE0F No angle sensor found in the hinge of this computer. Few laptops have one; without it this event cannot be heard."},
            {"Tap active ✓ — vintage mechanical click on every keypress (regular, Space, Return variants).",
             "Keys are heard ✓ — vintage mechanical click on every keypress (regular, Space, Return variants)."},
            {"Vintage mechanical click on every keypress. Waiting for tap to initialize…",
             "Vintage mechanical click on every keypress. Not listening yet: the switch above begins it."},
            {"⚠\uFE0F Accessibility access required. Click \"Open Accessibility Settings…\" below. If Chimewerk is already in the list, remove it (−) first, then relaunch the app.",
             "⚠\uFE0F Permission to read the keyboards required. Click \"How to Allow This…\" below. Chimewerk begins by itself once it may."},
            {"Plays when a new Screenshot file appears on the Desktop (Command+Shift+3/4/5).",
             "Plays when a new Screenshot file appears on the Desktop or in Pictures (the Print key)."},
            {"Plays when the Trash is emptied. Disables the macOS Finder crumple sound while enabled so only the app's sound plays.",
             "Plays when the Trash is emptied. If your desktop has a sound of its own for that, its settings can switch it off."},
            {"Plays when internet connectivity is restored (polls every 2.5 s via SCNetworkReachability).",
             "Plays when internet connectivity is restored (looks for a default route every 2.5 s)."},
            {"Plays when internet connectivity is lost (polls every 2.5 s via SCNetworkReachability).",
             "Plays when internet connectivity is lost (looks for a default route every 2.5 s)."},
            {"Plays when a USB or Thunderbolt device is connected (IOKit matching notification).",
             "Plays when a USB device is connected (udev announces it)."},
            {"⚠\uFE0F  Accessibility access required. Click below to open System Settings → Privacy & Security → Accessibility. If Chimewerk already appears in the list, remove it (−) first, then relaunch the app — macOS resets permissions when the binary changes.",
             "🔑  On X11 nothing has to be allowed. On Wayland Chimewerk reads the keyboards themselves, and that needs your permission. From a key it takes which of three sounds to play, and forgets it."},
            {"Open Accessibility Settings…", "How to Allow This…"},
            {"Not Supported on Intel", "No Sensor in the Hinge"},
            {"The lid angle sensor (IOKit HID) is only available on Apple Silicon Macs (M1 and later). This feature cannot be used on Intel-based Macs.",
             "The lid's angle comes from a sensor in the hinge, which few laptops have. None was found in this computer, so the event cannot be used on it."},
            {"Apple Silicon required", "No sensor in the hinge"},
            {"N/A, Apple Silicon required", "N/A, no sensor in the hinge"},
            // The guide.
            {"Your Mac, but louder.", "Your computer, but louder."},
            {"v5.0  ·  19 Events  ·  6 Themes  ·  Universal Binary",
             "v{version}  ·  19 Events  ·  6 Themes  ·  {architecture}"},
            {"Chimewerk is a lightweight macOS menu bar utility that plays custom sound effects in response to 19 system and hardware events — lid open/close, charger plug/unplug, knock detection, brightness changes, keyboard clicks, trash events, battery alerts, network changes, and more.",
             "Chimewerk is a lightweight tray utility for Linux that plays custom sound effects in response to 19 system and hardware events — lid open/close, charger plug/unplug, knock detection, brightness changes, keyboard clicks, trash events, battery alerts, network changes, and more."},
            {"No Dock icon. No setup. Open via the 🔊 menu bar icon → Open Dashboard, or press ⌘D.",
             "No window in the way. No setup. Open via the 🔊 tray icon → Open Dashboard, or start Chimewerk once more."},
            {"  👊  Single Knock  —  Physical knock on the Mac body — detected via the built-in microphone",
             "  👊  Single Knock  —  Physical knock on the computer's body — detected via the built-in microphone"},
            {"  📂  Lid Open  —  Mac wakes from sleep",
             "  📂  Lid Open  —  The computer wakes from sleep"},
            {"  📁  Lid Close  —  Mac goes to sleep (sound plays before audio hardware suspends)",
             "  📁  Lid Close  —  The computer goes to sleep (sound plays before audio hardware suspends)"},
            {"  📐  Lid at Angle  —  Lid crosses a custom angle threshold — Apple Silicon only",
             "  📐  Lid at Angle  —  Lid crosses a custom angle threshold — needs a sensor in the hinge"},
            {"  ⌨\uFE0F  Key Press  —  Every keystroke — 3 variants: regular key, Space, Return (needs Accessibility)",
             "  ⌨\uFE0F  Key Press  —  Every keystroke — 3 variants: regular key, Space, Return (needs permission on Wayland)"},
            {"  📸  Screenshot  —  A screenshot is saved to the Desktop",
             "  📸  Screenshot  —  A screenshot is saved to the Desktop or to Pictures"},
            {"  🖥\uFE0F  USB Connected  —  A USB or Thunderbolt device is plugged in",
             "  🖥\uFE0F  USB Connected  —  A USB device is plugged in"},
            {"  ▸  🍎 Classic Mac  —  Warm — harmonic bell tones inspired by System 7 (default)",
             "  ▸  🍎 Classic  —  Warm — harmonic bell tones of an early desktop computer (default)"},
            {"💡  Load your own .mp3 / .wav / .aiff / .m4a for a specific event — it overrides only that event while the theme applies to everything else. A  ✕ Remove  button appears to revert.",
             "💡  Load your own .mp3 / .wav / .aiff / .m4a / .flac / .ogg for a specific event — it overrides only that event while the theme applies to everything else. A  ✕ Remove  button appears to revert."},
            {"Key Press requires Accessibility permission. macOS automatically revokes it whenever the app binary changes (reinstall, update). Chimewerk now opens System Settings automatically when this happens — you just need to click Allow.", "Key Press works at once on X11. A Wayland desktop gives key presses only to the window in use, so Chimewerk needs permission to read the keyboards themselves. When you switch the event on without it, a page opens that tells how to give it."},
            {"  {}.  Open  System Settings → Privacy & Security → Accessibility",
             "  {}.  Open  Dashboard → Key Press → How to Allow This…"},
            {"  {}.  Find Chimewerk in the list → click  −  (minus) to remove it",
             "  {}.  Choose one of its two ways → type the commands into a terminal"},
            {"  {}.  Quit and relaunch Chimewerk",
             "  {}.  If you have joined a group, log out and in again"},
            {"  {}.  System Settings opens automatically → toggle Chimewerk ON",
             "  {}.  Dashboard → Key Press → toggle it OFF and ON again"},
            {"⚠\uFE0F  Never skip step 2. A stale entry from an old binary can block the new one from getting permission, even if it looks enabled.",
             "⚠\uFE0F  Know what you allow. Every program that runs under your name can then read what you type, passwords too, not Chimewerk alone."},
            {"  {}.  Quit and relaunch Chimewerk — Finder restarts automatically to set up sound suppression",
             "  {}.  Quit and relaunch Chimewerk — it then looks for your Trash anew"},
            {"⚠\uFE0F  If a dialog appears asking whether osascript can control Finder — click Allow. This one-time permission lets Chimewerk distinguish 'add file' from 'empty trash' accurately.",
             "⚠\uFE0F  A file that is deleted at once never comes into the Trash, and some sandboxed applications keep a Trash of their own. Neither is heard."},
            {"🔊  Double sounds — Mac default sound AND Chimewerk both play",
             "🔊  Double sounds — the desktop's own sound AND Chimewerk both play"},
            {"Chimewerk silences Finder's built-in trash sounds automatically (FinderSoundsEnabled = false) and restarts Finder at launch to ensure it reads the setting. If you still hear doubled sounds:",
             "Some desktops have sounds of their own for the same things: a volume step, the charger, the emptied Trash. If you hear doubled sounds:"},
            {"  {}.  Quit Chimewerk completely",
             "  {}.  Open your desktop's settings → sounds or notifications"},
            {"  {}.  Relaunch Chimewerk — Finder is restarted and the double sound stops",
             "  {}.  Switch the desktop's sound off there, or the event in the Dashboard"},
            {"💡  This only needs to happen once per machine. After the first launch, Finder stays silent on trash operations.",
             "💡  This only needs to happen once. Your desktop and Chimewerk both remember what you chose."},
            {"  {}.  Check: System Settings → Privacy & Security → Microphone → Chimewerk ✓",
             "  {}.  Check: Dashboard → Single Knock → the microphone is allowed"},
            {"  {}.  Try a firm, clear knock on the Mac chassis — near the keyboard or base works best",
             "  {}.  Try a firm, clear knock on the computer's case — near the keyboard or base works best"},
            {"  {}.  Adjust sensitivity: menu bar 🔊 → Mic Sensitivity → try High",
             "  {}.  Adjust sensitivity: tray icon 🔊 → Mic Sensitivity → try High"},
            {"The lid angle sensor requires Apple Silicon (M1 or later). On Intel Macs, this event is automatically locked — a 🔒 panel appears in the dashboard. This is a hardware limitation, not a bug.",
             "The lid's angle comes from a sensor in the hinge, which few laptops have. Without one, this event is automatically locked — a 🔒 panel appears in the dashboard. This is a hardware limitation, not a bug."},
            {"🔅  Brightness changes not detected (Apple Silicon)",
             "🔅  Brightness changes not detected (external monitors)"},
            {"Brightness detection uses IOKit display polling, which works reliably on Intel Macs. On Apple Silicon, Apple uses a private display driver not exposed via the public IOKit API. This is a known macOS limitation with no public workaround — the event is still available but may not fire on all Apple Silicon configurations.",
             "Brightness detection follows the backlight that the kernel controls, which works reliably on laptops. A monitor on a cable keeps its brightness to itself, and its own buttons are not exposed to the kernel. This is a known limitation — the event is still available but does not fire for such monitors."},
            {"Used only to detect the amplitude peak of a physical knock. No audio is recorded or stored anywhere. Requested automatically on first launch via macOS's standard permission dialog.",
             "Used only to detect the amplitude peak of a physical knock. No audio is recorded or stored anywhere. Chimewerk asks at its first start; the Single Knock panel changes the answer."},
            {"Accessibility  —  for Key Press",
             "Reading the keyboards  —  for Key Press, on Wayland"},
            {"Lets Chimewerk listen to global keyboard events via CGEventTap (listen-only, non-blocking). Required only if the Key Press event is enabled. Chimewerk opens System Settings automatically when this permission is needed.", "Lets Chimewerk hear keys whichever window is in use (listen-only, non-blocking). Required only if the Key Press event is enabled. Chimewerk opens the page that explains it when this permission is needed."},
            {"💡  Open Dashboard from anywhere: ⌘D or click 🔊 in the menu bar → Open Dashboard.",
             "💡  Open Dashboard from anywhere: start Chimewerk once more or click 🔊 in the tray → Open Dashboard."},
            {"💡  Per-event sounds persist across theme switches — load a custom sound, switch themes, and your override stays.",
             "💡  Per-event sounds last until you choose another built-in theme — load them into a custom theme, and they stay."},
            {"Settings stored in  ~/Library/Preferences/  (UserDefaults)",
             "Settings stored in  ~/.config/chimewerk/  (settings.json)"},
            {"Custom sounds copied to  ~/Library/Application Support/Chimewerk/",
             "Custom sounds copied to  ~/.local/share/Chimewerk/"},
            {"No data ever leaves your Mac.", "No data ever leaves your computer."},
            {"macOS 12 Monterey or later  —  fully supported",
             "X11, any desktop or window manager  —  fully supported"},
            {"macOS 10.15 Catalina – 11 Big Sur  —  compatible with minor limitations",
             "Wayland  —  compatible with minor limitations (Key Press needs permission)"},
            {"Apple Silicon (M1–M4+)  —  all 19 events including Lid Angle",
             "Laptops with a sensor in the hinge  —  all 19 events including Lid Angle"},
            {"Intel (Core i5/i7/i9)  —  18 events (Lid Angle locked)",
             "Other laptops  —  18 events (Lid Angle locked)"},
            {"Universal binary  —  native on both architectures, single .dmg",
             "PipeWire and PulseAudio  —  native on both"},
            {"v5.0  —  9 new events (trash, volume, screenshot, app launch, network, battery, USB), 6 themes, dark/light mode, custom named themes, 120 theme WAV files",
             "v0.1.0  —  Initial release: 19 events, 6 themes, dark/light mode, custom named themes, trigger counters, 126 theme WAV files"},
            {"v4.3  —  Custom themes (unlimited, named, per-event sounds)", ""},
            {"v4.1  —  Traditional + Piano themes; Classic Mac as default", ""},
            {"v4.0  —  Sound themes system (8-bit, Soft, Sci-Fi, Classic Mac), trigger counters, IOKit lid events",
             ""},
            {"v3.0  —  Lid angle sensor, brightness, keyboard sounds, universal binary", ""},
            {"v2.0  —  Per-event toggles, English UI", ""},
            {"v1.0  —  Initial release",
             "What each event needs, what to do when it is silent, where files are:  [Using Chimewerk]"},
};

/// What is known when the program is built.
constexpr PlatformWording kBuildFacts[] = {{"{version}", CHIMEWERK_VERSION},
                                           {"{architecture}", CHIMEWERK_ARCHITECTURE}};

/// The text that stands in place of the format's placeholder; empty if the format has none, and
/// none if the text is not of this format.
std::optional<std::string_view> matched(std::string_view format, std::string_view text) {
    const std::size_t hole = format.find(kPlaceholder);
    if (hole == std::string_view::npos) {
        return format == text ? std::optional(std::string_view()) : std::nullopt;
    }
    const std::string_view before = format.substr(0, hole);
    const std::string_view after = format.substr(hole + kPlaceholder.size());
    if (text.size() <= before.size() + after.size() || !text.starts_with(before) ||
        !text.ends_with(after)) {
        return std::nullopt;
    }
    return text.substr(before.size(), text.size() - before.size() - after.size());
}

void replace(std::string& text, std::string_view what, std::string_view by) {
    if (const std::size_t place = text.find(what); place != std::string::npos) {
        text.replace(place, what.size(), by);
    }
}

}  // namespace

std::span<const PlatformWording> platformWordings() {
    return kWordings;
}

std::string platformWording(std::string_view text) {
    for (const PlatformWording& row : kWordings) {
        if (const auto value = matched(row.given, text)) {
            std::string shown(row.shown);
            replace(shown, kPlaceholder, *value);
            for (const PlatformWording& fact : kBuildFacts) {
                replace(shown, fact.given, fact.shown);
            }
            return shown;
        }
    }
    return std::string(text);
}

}  // namespace chimewerk
