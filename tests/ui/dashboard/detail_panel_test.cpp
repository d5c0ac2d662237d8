// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/detail_panel.h"

#include <gmock/gmock.h>

#include <QFileDialog>
#include <QLineEdit>
#include <algorithm>
#include <fstream>
#include <optional>
#include <set>

#include "support/dashboard_fixture.h"
#include "support/foreign_words.h"
#include "support/widget_input.h"
#include "tools/files/temporary_folder.h"
#include "ui/controls/message_dialog.h"
#include "ui/rules/detail_texts.h"
#include "ui/rules/microphone_texts.h"
#include "ui/rules/value_texts.h"
#include "ui/toolkit/wording.h"

namespace chimewerk {
namespace {

using Outcome = SoundFolder::Outcome;
using testing::ElementsAre;

class TheDetailPanel : public testing::Test {
protected:
    void SetUp() override { reopen(true); }

    /// Reopens the panel on a machine where the lid-angle event can work, or not.
    void reopen(bool isAppleSilicon) {
        bed.dependencies.isAppleSilicon = isAppleSilicon;
        bed.open();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&bed.window()));
    }
    DetailPanel& panel() { return *childrenOf<DetailPanel>(bed.window()).at(0); }
    QPushButton& button(std::string_view name) { return named<QPushButton>(panel(), worded(name)); }
    QPushButton& loadButton() { return button(detail_texts::kLoadButton); }
    ValueSlider& slider(const char* name) { return named<ValueSlider>(panel(), name); }
    SwitchControl& enableSwitch() { return *childrenOf<SwitchControl>(panel()).at(0); }
    AngleGaugeView& gauge() { return *childrenOf<AngleGaugeView>(panel()).at(0); }
    QRect placeOf(const QWidget& part) { return {part.mapTo(&panel(), QPoint()), part.size()}; }
    /// Returns whether a label shows a text that begins with `begin`.
    bool showsTextFrom(const char* begin) {
        return std::ranges::any_of(childrenOf<QLabel>(panel()), [begin](QLabel* label) {
            return label->text().startsWith(QString::fromUtf8(begin)) && label->isVisible();
        });
    }

    /// Chooses a file of this name in the dialog of the load button.
    void chooseFile(const std::string& name) {
        std::ofstream(music / name) << "sound";
        click(loadButton());
        ASSERT_TRUE(dialogAppears<QFileDialog>());
        dialog<QFileDialog>()->findChild<QLineEdit*>()->setText(
            QString::fromStdString(music / name));
        press(Qt::Key_Return);
        ASSERT_TRUE(becomesTrue([this] { return bed.folder.busy(); }));
        EXPECT_EQ(bed.folder.chosen, music / name);
    }
    bool dialogGoes() {
        return becomesTrue([] { return QApplication::activeModalWidget() == nullptr; });
    }

    const TemporaryFolder music;
    DashboardFixture bed;
    const SoundEvent& knock = bed.library.event("slap");
};

TEST_F(TheDetailPanel, SwitchesTheEventByClickAndByKey) {
    click(enableSwitch());
    EXPECT_FALSE(knock.isEnabled);
    const QModelIndex row = bed.table().model()->index(0, 0);
    EXPECT_EQ(row.data(Qt::CheckStateRole), Qt::Unchecked);
    enableSwitch().setFocus();
    press(Qt::Key_Space);
    EXPECT_TRUE(knock.isEnabled);
    // A change made by the program is not a user's action.
    const int changes = bed.library.defaults.changes;
    bed.library.event("slap").isEnabled = false;
    bed.select("slap");
    EXPECT_FALSE(enableSwitch().isChecked());
    EXPECT_EQ(bed.library.defaults.changes, changes);
}

TEST_F(TheDetailPanel, NoticesAPermissionThatIsGrantedElsewhere) {
    bed.keys.mayListen = false;
    bed.select("key_press");
    click(button(detail_texts::kGrantButton));
    EXPECT_EQ(bed.keys.pagesShown, 1);
    bed.keys.mayListen = true;
    EXPECT_TRUE(becomesTrue([this] { return showsTextFrom("Vintage mechanical click"); }));
    EXPECT_THROW(button(detail_texts::kGrantButton), std::out_of_range);

    bed.select("slap");
    bed.library.sounds.addFile("/own.wav");
    bed.library.event("slap").soundPath = "/own.wav";
    QWidget elsewhere;
    elsewhere.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&elsewhere));
    EXPECT_FALSE(bed.shows("📁 own.wav"));
    bed.window().activateWindow();
    EXPECT_TRUE(becomesTrue([this] { return bed.shows("📁 own.wav"); }))
        << "not looked at on return";
}

TEST_F(TheDetailPanel, AllowsTheMicrophoneAndTakesThatBack) {
    bed.select("slap");
    click(button(microphone_texts::kDenyButton));
    EXPECT_FALSE(bed.microphoneAllowed);
    EXPECT_TRUE(bed.shows(std::string(microphone_texts::kNotAllowed)));
    click(button(microphone_texts::kAllowButton));
    EXPECT_TRUE(bed.microphoneAllowed);
    bed.microphoneAllowed = false;
    EXPECT_TRUE(becomesTrue([this] {
        return bed.shows(std::string(microphone_texts::kNotAllowed));
    })) << "changed elsewhere";
}

TEST_F(TheDetailPanel, SetsTheVolumeByDraggingClickingAndKeys) {
    ValueSlider& volume = slider("Volume");
    const int middle = volume.height() / 2;
    const QPoint end(volume.width() - 11, middle);
    pressAndMove(volume, {end, {end.x() - 40, middle}, {volume.width() / 2, middle}});
    EXPECT_NEAR(knock.volume, 0.5F, 0.06F);
    EXPECT_TRUE(bed.shows(volumeText(knock.volume)));
    pressAndMove(volume, {{volume.width() / 2, middle}, {-50, 400}});
    releaseAt(volume, {-50, 400});
    EXPECT_EQ(knock.volume, 0.0F);

    clickAt(volume, {volume.width() / 4, middle});
    const float quarter = knock.volume;
    EXPECT_NEAR(quarter, (volume.width() / 4.0 - 11) / (volume.width() - 22), 0.01);
    volume.setFocus();
    press(Qt::Key_Right);
    EXPECT_NEAR(knock.volume, quarter + 0.01F, 1e-5F);
    EXPECT_TRUE(bed.shows(volumeText(knock.volume)));
}

TEST_F(TheDetailPanel, StepsThroughTheWholePercentsOneByOne) {
    slider("Volume").setFocus();
    press(Qt::Key_Home);
    for (int percent = 1; percent <= 100; ++percent) {
        press(Qt::Key_Right);
        EXPECT_EQ(volumeText(knock.volume), std::to_string(percent) + "%");
    }
}

TEST_F(TheDetailPanel, SaysThatAnEventIsSilentUntilTheNextStart) {
    bed.silent = true;
    bed.select("volume_up");
    EXPECT_FALSE(bed.shows(std::string(detail_texts::kWaitsForRestart)));
    click(enableSwitch());
    EXPECT_TRUE(bed.shows(std::string(detail_texts::kWaitsForRestart)));
    bed.silent = false;
    bed.select("volume_up");
    EXPECT_FALSE(bed.shows(std::string(detail_texts::kWaitsForRestart)));
}

TEST_F(TheDetailPanel, SaysThatTheMachineLacksWhatTheEventNeeds) {
    SourceReport found{.mechanism = "UPower", .missing = "It does not answer."};
    bed.dependencies.report = [&found](std::string_view) { return found; };
    bed.open();
    const auto says = [this] { return bed.shows("🚫  Not on this machine. There is no battery."); };
    bed.select("battery_low");
    EXPECT_FALSE(says());
    found = {.missing = "There is no battery.", .lacksHardware = true};
    bed.select("charger_connect");
    EXPECT_TRUE(says());
    bed.select("lid_angle");
    EXPECT_FALSE(says()) << "its description says so";
}

TEST_F(TheDetailPanel, StoresNothingThatItOnlyShows) {
    bed.library.event("slap").volume = 0.12345F;
    bed.library.event("battery_low").threshold = 15.9876F;
    for (const SoundEvent& event : bed.library->events) {
        bed.select(event.id);
    }
    EXPECT_EQ(bed.library.defaults.changes, 0);
    EXPECT_EQ(knock.volume, 0.12345F);
    EXPECT_EQ(bed.library.event("battery_low").threshold, 15.9876F);
}

TEST_F(TheDetailPanel, SetsTheAngleWhereThereIsASensor) {
    bed.lidMonitor.start(90.0F);
    bed.select("lid_angle");
    ValueSlider& angle = slider("Trigger Angle");
    clickAt(angle, {11, angle.height() / 2});
    EXPECT_EQ(bed.library.event("lid_angle").threshold, 10.0F);
    EXPECT_EQ(bed.lidMonitor.angleThreshold, 10.0F);
    EXPECT_EQ(gauge().threshold, 10.0F);
    EXPECT_TRUE(bed.shows("10°"));

    bed.lidMonitor.sensorFound = false;
    bed.select("lid_angle");
    clickAt(angle, {100, angle.height() / 2});
    EXPECT_EQ(bed.library.event("lid_angle").threshold, 10.0F);
    EXPECT_FALSE(gauge().sensorAvailable);
}

TEST_F(TheDetailPanel, AllowsAnotherBatteryWarningAtANewLevel) {
    bed.select("battery_low");
    EXPECT_TRUE(showsTextFrom("Plays once when battery drops to or below 20%"));
    ValueSlider& level = slider("Alert Threshold");
    clickAt(level, {level.width() - 11, level.height() / 2});
    EXPECT_EQ(bed.library.event("battery_low").threshold, 100.0F);
    EXPECT_EQ(bed.batteryResets, 1);
    bed.select("battery_low");
    EXPECT_TRUE(showsTextFrom("Plays once when battery drops to or below 100%"));
}

TEST_F(TheDetailPanel, LocksTheSwitchWhereTheLidAngleCannotWork) {
    bed.library->setEnabled(true, "lid_angle");
    reopen(false);
    bed.select("lid_angle");
    EXPECT_TRUE(bed.shows(platformWording(detail_texts::kLockTitle)));
    click(enableSwitch());
    EXPECT_FALSE(enableSwitch().isChecked());
    EXPECT_TRUE(bed.library.event("lid_angle").isEnabled);
}

TEST_F(TheDetailPanel, LoadsAFileAndRemovesItAgain) {
    ASSERT_NO_FATAL_FAILURE(chooseFile("KNOCK.WAV"));
    ASSERT_TRUE(dialogAppears<QDialog>());
    click(enableSwitch());
    EXPECT_TRUE(knock.isEnabled) << "nothing else can be done meanwhile";
    bed.library.sounds.addFile("/data/KNOCK.WAV");
    bed.folder.finish({.kind = Outcome::Kind::added, .path = "/data/KNOCK.WAV"});
    EXPECT_EQ(knock.soundPath, "/data/KNOCK.WAV");
    EXPECT_TRUE(bed.shows("📁 KNOCK.WAV"));
    EXPECT_TRUE(dialogGoes());
    EXPECT_EQ(bed.folder.givenUp, 0);

    bed.window().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&bed.window()));
    button("Remove").setFocus();
    press(Qt::Key_Space);
    EXPECT_EQ(knock.soundPath, std::nullopt);
    EXPECT_TRUE(bed.shows("System (Funk)"));
    EXPECT_THROW(button("Remove"), std::out_of_range);
    EXPECT_TRUE(loadButton().hasFocus()) << "the keyboard has lost its place";
}

TEST_F(TheDetailPanel, ShowsWhyAFileCannotBeLoaded) {
    const std::pair<Outcome, std::string> cases[] = {
        {{.kind = Outcome::Kind::notCopied, .error = "No <b>space</b> left"},
         "Could not copy the file: No <b>space</b> left"},
        {{.kind = Outcome::Kind::notASound}, std::string(detail_texts::kNotASound)}};
    for (const auto& [outcome, message] : cases) {
        SCOPED_TRACE(message);
        ASSERT_NO_FATAL_FAILURE(chooseFile("knock.wav"));
        bed.folder.finish(outcome);
        ASSERT_TRUE(dialogAppears<MessageDialog>());
        EXPECT_EQ(
            named<QLabel>(*dialog<MessageDialog>(), QString::fromStdString(message)).textFormat(),
            Qt::PlainText);
        press(Qt::Key_Return);
        EXPECT_TRUE(dialogGoes());
        EXPECT_EQ(bed.library.defaults.changes, 0);
    }
}

TEST_F(TheDetailPanel, CanBeCancelledWhileAFileIsChosenOrCopied) {
    click(loadButton());
    ASSERT_TRUE(dialogAppears<QFileDialog>());
    press(Qt::Key_Escape);
    EXPECT_TRUE(dialogGoes());
    EXPECT_EQ(bed.folder.chosen, "");

    ASSERT_NO_FATAL_FAILURE(chooseFile("knock.wav"));
    ASSERT_TRUE(dialogAppears<QDialog>());
    press(Qt::Key_Escape);
    EXPECT_EQ(bed.folder.givenUp, 1);
    EXPECT_TRUE(dialogGoes());
    EXPECT_EQ(knock.soundPath, std::nullopt);
}

TEST_F(TheDetailPanel, CutsNothingOffAndOverlapsNothing) {
    bed.library.sounds.addFile("/own.wav");
    std::set<int> switchTops;
    const auto check = [&](const char* state) {
        for (const SoundEvent& event : bed.library->events) {
            bed.library->setPath("/own.wav", event.id);
            bed.select(event.id);
            switchTops.insert(placeOf(enableSwitch()).top());
            std::vector<QWidget*> parts = childrenOf<QWidget>(panel());
            std::erase_if(parts, [](QWidget* part) {
                return !part->isVisible() || !(qobject_cast<QLabel*>(part) != nullptr ||
                                               qobject_cast<QAbstractButton*>(part) != nullptr ||
                                               qobject_cast<QSlider*>(part) != nullptr);
            });
            for (const QWidget* const part : parts) {
                SCOPED_TRACE(testing::Message() << state << ", " << event.id << ": "
                                                << part->property("text").toString().toStdString());
                EXPECT_EQ(foreignWordIn(part->property("text").toString().toStdString()), "");
                EXPECT_TRUE(panel().rect().adjusted(25, 25, -25, 0).contains(placeOf(*part)));
                EXPECT_TRUE(part->parentWidget()->rect().contains(part->geometry()));
                // The large emoji is drawn in a smaller font than the one used to measure it.
                if (part->hasHeightForWidth()) {
                    EXPECT_GE(part->height(), part->heightForWidth(part->width()));
                } else if (part->font().pixelSize() < 40) {
                    EXPECT_GE(part->height(), part->sizeHint().height());
                    EXPECT_GE(part->width(), part->sizeHint().width());
                }
                EXPECT_EQ(
                    std::ranges::count_if(parts,
                                          [&](const QWidget* other) {
                                              return placeOf(*other).intersects(placeOf(*part));
                                          }),
                    1);
            }
        }
    };
    bed.keys.mayListen = false;
    check("without sensor and permission");
    bed.lidMonitor.sensorFound = true;
    bed.keyboardMonitor.active = true;
    check("with both");
    reopen(false);
    check("locked");
    panel().setLayoutDirection(Qt::RightToLeft);
    check("from right to left");
    EXPECT_GT(placeOf(loadButton()).x(), placeOf(button("Test Sound")).x());
    EXPECT_LT(placeOf(enableSwitch()).x(), 40);
    EXPECT_EQ(switchTops.size(), 1U) << "the header moves from event to event";
}

TEST_F(TheDetailPanel, KeepsItsDistances) {
    bed.select("battery_low");
    const auto labels = childrenOf<QLabel>(panel());
    const QRect load = placeOf(loadButton());
    const QRect volume = placeOf(slider("Volume"));
    std::vector<int> gaps;
    int bottom = 0;
    for (const QRect& place :
         {placeOf(*labels[0]), placeOf(*labels[2]), placeOf(*labels[3]), placeOf(*labels[4]), load,
          placeOf(*labels[5]), volume, placeOf(*labels[7]), placeOf(*labels[8]),
          placeOf(*slider("Alert Threshold").parentWidget())}) {
        gaps.push_back(place.top() - bottom);
        bottom = place.bottom() + 1;
    }
    EXPECT_THAT(gaps, ElementsAre(28, 6, 14, 6, 8, 20, 6, 20, 6, 18));
    EXPECT_EQ(volume.left(), 28);
    EXPECT_EQ(volume.width(), 220);
    EXPECT_EQ(placeOf(button("Test Sound")).left() - load.right() - 1, 8);
    EXPECT_EQ(placeOf(enableSwitch()).right() + 1 - SwitchControl::kOverhang, 459 - 28);
}

TEST_F(TheDetailPanel, DimsAllButTheSwitchOfAnEventThatIsOff) {
    const auto darkest = [this](const QRect& area) {
        int least = 255;
        const QImage image = panel().grab(area).toImage();
        for (int i = 0; i < image.width() * image.height(); ++i) {
            least = std::min(least, qGray(image.pixel(i % image.width(), i / image.width())));
        }
        return least;
    };
    const QRect title = placeOf(*childrenOf<QLabel>(panel())[1]);
    EXPECT_LT(darkest(title), 60);
    bed.library->setEnabled(false, "slap");
    bed.select("slap");
    EXPECT_GT(darkest(title), 90);
    const int dimmed = darkest(placeOf(enableSwitch()));
    bed.library.event("slap").isEnabled = true;
    EXPECT_LT(dimmed, 200) << "the switch is dimmed too";
}

TEST_F(TheDetailPanel, CutsALongNameInItsMiddleAndShowsItWholeUnderThePointer) {
    const std::string path = "/" + std::string(60, 'a') + "<b>\n" + std::string(60, 'z') + ".wav";
    bed.library.sounds.addFile(path);
    bed.library->setPath(path, "slap");
    bed.select("slap");
    const QString name = QString::fromStdString("📁 " + path.substr(1));
    const QLabel& label = named<QLabel>(panel(), name);
    EXPECT_TRUE(label.text().startsWith("📁 aaa")) << label.text().toStdString();
    EXPECT_TRUE(label.text().endsWith("zzz.wav")) << label.text().toStdString();
    EXPECT_TRUE(label.toolTip().contains("&lt;b&gt;")) << "taken for markup";
    bed.select("lid_open");
    EXPECT_EQ(label.toolTip(), "");
}

TEST_F(TheDetailPanel, DescribesItselfToAssistivePrograms) {
    bed.library.event("slap").volume = 0.555F;
    bed.select("slap");
    QAccessibleInterface& volume = accessible(slider("Volume"));
    EXPECT_EQ(volume.role(), QAccessible::Slider);
    EXPECT_EQ(volume.text(QAccessible::Value), "55%");
    EXPECT_EQ(volume.valueInterface()->currentValue().toDouble(), 55.5);
    EXPECT_EQ(volume.valueInterface()->maximumValue().toDouble(), 100.0);
    volume.valueInterface()->setCurrentValue(20.0);
    EXPECT_EQ(knock.volume, 0.2F);

    QAccessibleInterface& onOff = accessible(enableSwitch());
    EXPECT_EQ(onOff.text(QAccessible::Name), "Single Knock");
    EXPECT_EQ(onOff.role(), QAccessible::CheckBox);
    EXPECT_TRUE(onOff.state().checkable && onOff.state().checked);
    onOff.actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(knock.isEnabled);
}

TEST_F(TheDetailPanel, HasAKeyboardOrderFromTopToBottom) {
    bed.library.sounds.addFile("/own.wav");
    bed.library->setPath("/own.wav", "battery_low");
    bed.select("battery_low");
    enableSwitch().setFocus();
    std::vector<std::string> way;
    for (int i = 0; i < 6; ++i) {
        way.push_back(
            accessible(*QApplication::focusWidget()).text(QAccessible::Name).toStdString());
        press(Qt::Key_Tab);
    }
    EXPECT_THAT(way, ElementsAre("Battery Low", "Load .mp3 / .wav", "Test Sound", "Remove",
                                 "Volume", "Alert Threshold"));
}

}  // namespace
}  // namespace chimewerk
