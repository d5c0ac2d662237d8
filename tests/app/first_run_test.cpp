// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/first_run.h"

#include <gtest/gtest.h>

#include <string>

#include "support/fake_defaults_store.h"
#include "support/virtual_main_queue.h"

namespace chimewerk {
namespace {

TEST(TheFirstRun, ShowsItselfOnceAndTellsWhereItIsIfNoTrayAppearsInTime) {
    struct Case {
        const char* name;
        bool showsDashboard;
        double trayAfter;
        std::string log;
    };
    for (const Case& one :
         {Case{"menu, tray", true, 19, "dashboard "}, Case{"login, tray", false, 19, ""},
          Case{"menu, no tray", true, 1000, "dashboard told "},
          Case{"login, no tray", false, 1000, "told "}}) {
        SCOPED_TRACE(one.name);
        FakeDefaultsStore defaults;
        for (const std::string& expected : {one.log, std::string()}) {
            VirtualMainQueue queue;
            std::string log;
            bool inTray = false;
            FirstRun start(queue, defaults,
                           {.openDashboard = [&] { log += "dashboard "; },
                            .isInTray = [&] { return inTray; },
                            .tell = [&] { log += "told "; }});
            start.begin(one.showsDashboard);
            queue.postAfter(Seconds{one.trayAfter}, [&] { inTray = true; });
            queue.advance(Seconds{60});
            EXPECT_EQ(log, expected);
        }
    }
}

}  // namespace
}  // namespace chimewerk
