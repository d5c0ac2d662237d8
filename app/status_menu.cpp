// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/status_menu.h"

#include <utility>

namespace chimewerk {

namespace {

struct Sensitivity {
    const char* name;
    float slapThreshold;
};
constexpr Sensitivity kSensitivities[] = {{"Low", 0.9F}, {"Medium", 0.75F}, {"High", 0.55F}};
constexpr Sensitivity kMedium = kSensitivities[1];

MenuItem& append(Menu& menu, MenuItem item) {
    return *menu.emplace_back(std::make_unique<MenuItem>(std::move(item)));
}

}  // namespace

StatusMenu::StatusMenu(const Actions& actions) {
    append(entries_, {.title = "Chimewerk"});
    append(entries_, {});
    unmute_ = &append(entries_, {.title = "Unmute", .action = actions.unmute, .isHidden = true});
    append(entries_,
           {.title = "Open Dashboard", .action = actions.openDashboard, .keyEquivalent = "d"});
    append(entries_,
           {.title = "Help & Troubleshooting", .action = actions.openHelp, .keyEquivalent = "?"});
    append(entries_, {});
    Menu& sensitivities = append(entries_, {.title = "Mic Sensitivity"}).submenu;
    for (const Sensitivity& level : kSensitivities) {
        MenuItem& item = append(sensitivities, {.title = level.name, .isRadio = true});
        item.action = [&item, setSens = actions.setSens] { setSens(item); };
        sensMenuItems_.push_back(&item);
    }
    append(entries_, {});
    append(entries_, {.title = "Quit", .action = actions.terminate, .keyEquivalent = "q"});
    markSensitivity(*sensMenuItems_[1]);
}

void StatusMenu::markSensitivity(const MenuItem& chosen) {
    for (MenuItem* const item : sensMenuItems_) {
        item->isOn = item == &chosen;
    }
}

float slapThresholdFor(std::string_view sensitivity) {
    for (const Sensitivity& level : kSensitivities) {
        if (level.name == sensitivity) {
            return level.slapThreshold;
        }
    }
    return kMedium.slapThreshold;
}

}  // namespace chimewerk
