// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/rules/help_content.h"

#include <optional>
#include <string_view>

namespace chimewerk {

namespace {

using enum HelpKind;

/// A paragraph without the sign or number that its kind adds.
struct Entry {
    HelpKind kind;
    std::string_view text = {};
    std::optional<HelpColor> color = {};
};

constexpr Entry
    kEntries
        [] =
            {
                {h1, "🎵  What is Chimewerk?"},
                {body,
                 "Chimewerk is a lightweight macOS menu bar utility that plays custom sound effects in response to 19 system and hardware events — lid open/close, charger plug/unplug, knock detection, brightness changes, keyboard clicks, trash events, battery alerts, network changes, and more."},
                {body,
                 "No Dock icon. No setup. Open via the 🔊 menu bar icon → Open Dashboard, or press ⌘D."},
                {tip,
                 "All settings are saved automatically. Just enable what you want and forget about it."},
                {divider},
                {h1, "🎛\uFE0F  Sound Events"},
                {icon,
                 "👊  Single Knock  —  Physical knock on the Mac body — detected via the built-in microphone"},
                {icon, "📂  Lid Open  —  Mac wakes from sleep"},
                {icon,
                 "📁  Lid Close  —  Mac goes to sleep (sound plays before audio hardware suspends)"},
                {icon,
                 "📐  Lid at Angle  —  Lid crosses a custom angle threshold — Apple Silicon only"},
                {icon, "🔌  Charger Connect  —  Power adapter plugged in"},
                {icon, "🔋  Charger Disconnect  —  Power adapter unplugged"},
                {icon, "🔆  Brightness Up  —  Screen brightness increased"},
                {icon, "🔅  Brightness Down  —  Screen brightness decreased"},
                {icon,
                 "⌨\uFE0F  Key Press  —  Every keystroke — 3 variants: regular key, Space, Return (needs Accessibility)"},
                {icon, "🔊  Volume Up  —  System output volume increased ≥ 3%"},
                {icon, "🔇  Volume Down  —  System output volume decreased ≥ 3%"},
                {icon, "📸  Screenshot  —  A screenshot is saved to the Desktop"},
                {icon, "🚀  App Launch  —  Any application finishes launching"},
                {icon, "🗑\uFE0F  Empty Trash  —  The Trash is fully emptied"},
                {icon, "📥  Trash Item Added  —  A file is moved into the Trash"},
                {icon, "📶  Network Connect  —  Internet connectivity appears"},
                {icon, "📵  Network Disconnect  —  Internet connectivity disappears"},
                {icon,
                 "🪫  Battery Low  —  Battery drops to or below the configured threshold (default 20%)"},
                {icon, "🖥\uFE0F  USB Connected  —  A USB or Thunderbolt device is plugged in"},
                {divider},
                {h1, "🎨  Sound Themes"},
                {body,
                 "Select a theme from the dropdown at the top of the sidebar. Switching plays a preview immediately and applies the theme to all 19 events at once."},
                {icon, "▸  🎮 8-bit  —  Chiptune — square-wave arcade sounds, arpeggios, beeps"},
                {icon, "▸  🎵 Soft  —  Calm — gentle sine-wave tones with soft envelopes"},
                {icon,
                 "▸  🚀 Sci-Fi  —  Electronic — frequency sweeps and futuristic power-up sounds"},
                {icon,
                 "▸  🍎 Classic Mac  —  Warm — harmonic bell tones inspired by System 7 (default)"},
                {icon,
                 "▸  🪵 Traditional  —  Organic — creaking door, wood knock, typewriter keys"},
                {icon,
                 "▸  🎹 Piano  —  Musical — synthesized piano notes with hammer attack and decay"},
                {tip,
                 "Load your own .mp3 / .wav / .aiff / .m4a for a specific event — it overrides only that event while the theme applies to everything else. A  ✕ Remove  button appears to revert."},
                {divider},
                {h1, "🔧  Troubleshooting", HelpColor::orange},
                {h2, "⌨\uFE0F  Keyboard sounds not working"},
                {body,
                 "Key Press requires Accessibility permission. macOS automatically revokes it whenever the app binary changes (reinstall, update). Chimewerk now opens System Settings automatically when this happens — you just need to click Allow."},
                {body, "If sounds still don't work after granting:"},
                {step, "Open  System Settings → Privacy & Security → Accessibility"},
                {step, "Find Chimewerk in the list → click  −  (minus) to remove it"},
                {step, "Quit and relaunch Chimewerk"},
                {step, "System Settings opens automatically → toggle Chimewerk ON"},
                {step, "Keyboard sounds activate within 1–2 seconds, no restart needed"},
                {warn,
                 "Never skip step 2. A stale entry from an old binary can block the new one from getting permission, even if it looks enabled."},
                {h2, "🗑\uFE0F  Trash sounds not working"},
                {body, "If neither 'Empty Trash' nor 'Trash Item Added' sounds play:"},
                {step, "Open the Dashboard → confirm both events are enabled (toggle ON)"},
                {step,
                 "Quit and relaunch Chimewerk — Finder restarts automatically to set up sound suppression"},
                {step,
                 "Move a file to Trash — the 'Trash Item Added' sound should play within ~1 second"},
                {warn,
                 "If a dialog appears asking whether osascript can control Finder — click Allow. This one-time permission lets Chimewerk distinguish 'add file' from 'empty trash' accurately."},
                {h2, "🔊  Double sounds — Mac default sound AND Chimewerk both play"},
                {body,
                 "Chimewerk silences Finder's built-in trash sounds automatically (FinderSoundsEnabled = false) and restarts Finder at launch to ensure it reads the setting. If you still hear doubled sounds:"},
                {step, "Quit Chimewerk completely"},
                {step, "Relaunch Chimewerk — Finder is restarted and the double sound stops"},
                {tip,
                 "This only needs to happen once per machine. After the first launch, Finder stays silent on trash operations."},
                {h2, "🎤  Knock detection not triggering"},
                {step, "Check: System Settings → Privacy & Security → Microphone → Chimewerk ✓"},
                {step,
                 "Try a firm, clear knock on the Mac chassis — near the keyboard or base works best"},
                {step, "Adjust sensitivity: menu bar 🔊 → Mic Sensitivity → try High"},
                {step, "After sleep/wake, knock detection restarts automatically within 500 ms"},
                {h2, "📐  Lid Angle locked or not available"},
                {body,
                 "The lid angle sensor requires Apple Silicon (M1 or later). On Intel Macs, this event is automatically locked — a 🔒 panel appears in the dashboard. This is a hardware limitation, not a bug."},
                {h2, "🔅  Brightness changes not detected (Apple Silicon)"},
                {body,
                 "Brightness detection uses IOKit display polling, which works reliably on Intel Macs. On Apple Silicon, Apple uses a private display driver not exposed via the public IOKit API. This is a known macOS limitation with no public workaround — the event is still available but may not fire on all Apple Silicon configurations."},
                {h2, "🔋  Battery Low not alerting"},
                {body,
                 "The alert fires once per charge cycle when the battery drops to or below the threshold. It resets automatically when the charger is reconnected."},
                {step, "Check the threshold slider in the Battery Low detail panel (0–100%)"},
                {step, "Make sure the event is enabled"},
                {step, "The alert only fires while on battery — not when charger is connected"},
                {divider},
                {h1, "🔐  Required Permissions"},
                {h2, "Microphone  —  for Single Knock"},
                {body,
                 "Used only to detect the amplitude peak of a physical knock. No audio is recorded or stored anywhere. Requested automatically on first launch via macOS's standard permission dialog."},
                {h2, "Accessibility  —  for Key Press"},
                {body,
                 "Lets Chimewerk listen to global keyboard events via CGEventTap (listen-only, non-blocking). Required only if the Key Press event is enabled. Chimewerk opens System Settings automatically when this permission is needed."},
                {permissionsSummary, "All other 17 events work with zero permissions."},
                {permissionsSummary},
                {divider},
                {h1, "💡  Tips & Shortcuts"},
                {tip,
                 "Open Dashboard from anywhere: ⌘D or click 🔊 in the menu bar → Open Dashboard."},
                {tip,
                 "Sidebar shows a live trigger counter badge (N×) next to each event — useful to verify events are detecting correctly."},
                {tip,
                 "Each event has an independent volume slider. Key Press at 20–30% is subtle and natural."},
                {tip,
                 "Custom themes: + New Theme… in the dropdown lets you name a theme and assign your own sounds event by event. Rename (✏) or delete (✕) anytime."},
                {tip,
                 "Battery Low threshold: the slider goes from 0% to 100%. The alert fires once and resets when the charger reconnects."},
                {tip,
                 "Dark / Light mode: click the 🌙 / ☀\uFE0F button in the top-right of the dashboard header."},
                {tip,
                 "Per-event sounds persist across theme switches — load a custom sound, switch themes, and your override stays."},
                {divider},
                {h1, "🛡\uFE0F  Privacy & Data"},
                {body,
                 "Chimewerk makes zero network requests. No analytics, no telemetry, no cloud sync, no account required."},
                {small, "Settings stored in  ~/Library/Preferences/  (UserDefaults)"},
                {small, "Custom sounds copied to  ~/Library/Application Support/Chimewerk/"},
                {small, "No data ever leaves your Mac."},
                {divider},
                {h1, "🖥\uFE0F  Compatibility"},
                {small, "macOS 12 Monterey or later  —  fully supported"},
                {small, "macOS 10.15 Catalina – 11 Big Sur  —  compatible with minor limitations"},
                {small, "Apple Silicon (M1–M4+)  —  all 19 events including Lid Angle"},
                {small, "Intel (Core i5/i7/i9)  —  18 events (Lid Angle locked)"},
                {small, "Universal binary  —  native on both architectures, single .dmg"},
                {divider},
                {h1, "📋  Version History"},
                {small,
                 "v5.0  —  9 new events (trash, volume, screenshot, app launch, network, battery, USB), 6 themes, dark/light mode, custom named themes, 120 theme WAV files"},
                {small, "v4.3  —  Custom themes (unlimited, named, per-event sounds)"},
                {small, "v4.1  —  Traditional + Piano themes; Classic Mac as default"},
                {small,
                 "v4.0  —  Sound themes system (8-bit, Soft, Sci-Fi, Classic Mac), trigger counters, IOKit lid events"},
                {small, "v3.0  —  Lid angle sensor, brightness, keyboard sounds, universal binary"},
                {small, "v2.0  —  Per-event toggles, English UI"},
                {small, "v1.0  —  Initial release"},
                {blank},
                {blank},
};

constexpr int kDividerLength = 49;

std::string dividerText() {
    std::string text;
    for (int i = 0; i < kDividerLength; ++i) {
        text += "─";
    }
    return text;
}

/// `number` is the number of a step in its list.
std::string shownText(const Entry& entry, int number) {
    std::string text(entry.text);
    switch (entry.kind) {
        case tip:
            return "💡  " + text;
        case warn:
            return "⚠\uFE0F  " + text;
        case step:
            return "  " + std::to_string(number) + ".  " + text;
        case icon:
            return "  " + text;
        case divider:
            return dividerText();
        default:
            return text;
    }
}

}  // namespace

const HelpStyle& helpStyle(HelpKind kind) {
    // In the order of the kinds.
    static constexpr HelpStyle kStyles[] = {
        {17, true, HelpColor::accent, 22, 8, 0},          // h1
        {13, true, HelpColor::label, 14, 4, 0},           // h2
        {13, false, HelpColor::label, 0, 5, 0},           // body
        {13, false, HelpColor::tipGreen, 0, 5, 0},        // tip
        {13, false, HelpColor::orange, 4, 6, 0},          // warn
        {13, false, HelpColor::label, 0, 3, 28},          // step
        {12, false, HelpColor::secondaryLabel, 0, 3, 8},  // icon
        {12, false, HelpColor::secondaryLabel, 0, 3, 4},  // small
        {4, false, HelpColor::separator, 10, 10, 0},      // divider
        {13, true, HelpColor::tipGreen, 6, 4, 0},         // permissionsSummary
        {12, false, HelpColor::label, 0, 0, 0},           // blank
    };
    return kStyles[static_cast<std::size_t>(kind)];
}

std::vector<HelpParagraph> helpContent() {
    std::vector<HelpParagraph> paragraphs;
    paragraphs.reserve(std::size(kEntries));
    int number = 0;
    for (const Entry& entry : kEntries) {
        number = entry.kind == step ? number + 1 : 0;
        paragraphs.push_back({.kind = entry.kind,
                              .text = shownText(entry, number),
                              .color = entry.color.value_or(helpStyle(entry.kind).color)});
    }
    return paragraphs;
}

}  // namespace chimewerk
