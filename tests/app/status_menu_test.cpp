#include "app/status_menu.h"

#include <gtest/gtest.h>

#include "support/fake_status_item.h"

namespace chimewerk {
namespace {

TEST(TheStatusMenu, HasAHeadingThatCannotBeChosenAndMediumMarkedAtFirst) {
    const StatusMenu menu({.openDashboard = [] {},
                           .openHelp = [] {},
                           .setSens = [](const MenuItem&) {},
                           .terminate = [] {}});
    FakeStatusItem item;
    item.show(menu.entries(), [] {});
    EXPECT_EQ(item.text(),
              "#Chimewerk, -, Open Dashboard [d], Help & Troubleshooting [?], -, "
              "Mic Sensitivity {Low ( ), Medium (x), High ( )}, -, Quit [q]");
}

TEST(TheStatusMenu, TakesANameThatThereIsNotForMediumSensitivity) {
    EXPECT_EQ(slapThresholdFor("Low"), 0.9F);
    EXPECT_EQ(slapThresholdFor("Medium"), 0.75F);
    EXPECT_EQ(slapThresholdFor("High"), 0.55F);
    EXPECT_EQ(slapThresholdFor("high"), 0.75F);
    EXPECT_EQ(slapThresholdFor(""), 0.75F);
}

}  // namespace
}  // namespace chimewerk
