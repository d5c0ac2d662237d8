// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/permission_reminder.h"

#include <gtest/gtest.h>

#include "support/fake_defaults_store.h"
#include "support/fake_key_source.h"

namespace chimewerk {
namespace {

TEST(ThePermissionReminder, ShowsThePageOnceForEachLossOfThePermissionAndWhenTheUserAsks) {
    FakeKeySource keys;
    FakeDefaultsStore defaults;
    const auto pagesAtStart = [&](bool mayListen) {
        keys.mayListen = mayListen;
        keys.pagesShown = 0;
        PermissionReminder reminder(keys, keys, defaults);
        if (!mayListen) {
            reminder.show();
        }
        reminder.endStartUp();
        return keys.pagesShown;
    };
    EXPECT_EQ(pagesAtStart(false), 1);
    EXPECT_EQ(pagesAtStart(false), 0);
    EXPECT_EQ(pagesAtStart(true), 0);
    EXPECT_EQ(pagesAtStart(false), 1) << "the permission was lost again";

    PermissionReminder running(keys, keys, defaults);
    running.endStartUp();
    running.show();
    running.show();
    EXPECT_EQ(keys.pagesShown, 3);
}

}  // namespace
}  // namespace chimewerk
