// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "monitors/keyboard_monitor.h"
#include "platform/defaults_store.h"

namespace chimewerk {

/// Shows the page about the keyboard permission whenever the user switches the event on, but at the
/// start of the program only once for each time that the permission has been lost. Main thread
/// only.
class PermissionReminder final : public PermissionPage {
public:
    /// The settings key that is true once the page has been shown and keys have not been heard
    /// since.
    static constexpr char kShownKey[] = "ChimewerkKeyPermissionPageShown";

    /// The arguments must outlive the object.
    PermissionReminder(PermissionPage& page, KeySource& keys, DefaultsStore& defaults)
        : page_(page), keys_(keys), defaults_(defaults) {}

    void show() override;

    /// From now on only the user asks for the page. Called once, when the program has started.
    void endStartUp();

private:
    bool wasShown() const;

    PermissionPage& page_;
    KeySource& keys_;
    DefaultsStore& defaults_;
    bool isStarting_ = true;
};

}  // namespace chimewerk
