// The panel as its user has it: on a real display, with a pointer and a keyboard.
#include "ui/dashboard/detail_panel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <algorithm>
#include <optional>

#include "support/detail_panel_fixture.h"
#include "support/widget_input.h"
#include "tools/audio/sound_files.h"
#include "tools/files/temporary_folder.h"
#include "ui/controls/chimewerk_style.h"

namespace chimewerk {
namespace {

using Outcome = SoundFolder::Outcome;
using testing::ElementsAre;

constexpr xcb_keysym_t kLeft = 0xff51;
constexpr xcb_keysym_t kRight = 0xff53;

class TheDetailPanel : public testing::Test, protected WidgetUser {
protected:
    void SetUp() override {
        bed.panel->refreshDetail();
        bed.window.show();
        ASSERT_TRUE(becomesReady(bed.window));
    }

    template <typename Widget>
    Widget& named(const QString& name) {
        const auto found = bed.panel->findChildren<Widget*>();
        const auto it = std::find_if(found.begin(), found.end(), [&name](Widget* widget) {
            QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(widget);
            return accessible->text(QAccessible::Name) == name && !widget->isHidden();
        });
        if (it == found.end()) {
            throw std::out_of_range(name.toStdString());
        }
        return **it;
    }
    QPushButton& button(const QString& name) { return named<QPushButton>(name); }
    ValueSlider& slider(const QString& name) { return named<ValueSlider>(name); }
    SwitchControl& enableSwitch() { return *bed.panel->findChild<SwitchControl*>(); }
    AngleGaugeView& gauge() {
        for (QWidget* const widget : bed.panel->findChildren<QWidget*>()) {
            if (auto* const found = dynamic_cast<AngleGaugeView*>(widget)) {
                return *found;
            }
        }
        throw std::out_of_range("no gauge");
    }
    /// Whether the panel shows exactly this text.
    bool shows(const QString& text) {
        const auto labels = bed.panel->findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [&text](QLabel* label) {
            return label->text() == text && label->isVisible();
        });
    }
    template <typename Dialog>
    static Dialog* dialog() {
        return qobject_cast<Dialog*>(QApplication::activeModalWidget());
    }
    /// Chooses this file in the dialog that "Load" brings up.
    void chooseFile(const std::string& path) {
        click(button("Load .mp3 / .wav"));
        ASSERT_TRUE(comesTrue([] {
            return dialog<QFileDialog>() != nullptr && dialog<QFileDialog>()->isActiveWindow();
        }));
        type(path);
        type(kReturn);
        ASSERT_TRUE(comesTrue([this] { return bed.folder.busy(); }));
    }

    DetailPanelFixture bed;
};

TEST_F(TheDetailPanel, SwitchesTheEventByClickAndByKey) {
    click(enableSwitch());
    EXPECT_FALSE(bed.library.event("slap").isEnabled);
    EXPECT_FALSE(enableSwitch().isChecked());
    EXPECT_EQ(bed.listChanges, 1);
    enableSwitch().setFocus();
    type(' ');
    EXPECT_TRUE(bed.library.event("slap").isEnabled);
    EXPECT_EQ(bed.listChanges, 2);
    // What the program changes is no command of the user's.
    bed.library->setEnabled(false, "slap");
    bed.panel->refreshDetail();
    EXPECT_FALSE(enableSwitch().isChecked());
    EXPECT_EQ(bed.listChanges, 2);
}

TEST_F(TheDetailPanel, ListensToTheKeysWhileKeyPressIsOn) {
    bed.select("key_press");
    EXPECT_TRUE(
        shows("Vintage mechanical click on every keypress. Waiting for tap to initialize…"));
    click(enableSwitch());
    EXPECT_TRUE(bed.keys.tapExists());
    EXPECT_TRUE(
        shows("Tap active ✓ — vintage mechanical click on every keypress (regular, Space, Return "
              "variants)."));
    click(enableSwitch());
    EXPECT_FALSE(bed.keys.tapExists());
    bed.select("slap");
    click(enableSwitch());
    click(enableSwitch());
    EXPECT_FALSE(bed.keys.tapExists());
}

TEST_F(TheDetailPanel, FollowsAPermissionThatIsGivenElsewhere) {
    bed.keys.mayListen = false;
    bed.select("key_press");
    click(button("Open Accessibility Settings…"));
    EXPECT_EQ(bed.keys.pagesShown, 1);
    bed.keys.mayListen = true;
    EXPECT_TRUE(comesTrue([this] {
        return shows("Vintage mechanical click on every keypress. Waiting for tap to initialize…");
    }));
    EXPECT_THROW(button("Open Accessibility Settings…"), std::out_of_range);

    bed.select("slap");
    bed.library.sounds.addFile("/own.wav");
    bed.library->setPath("/own.wav", "slap");
    QWidget elsewhere;
    elsewhere.show();
    ASSERT_TRUE(comesTrue([&elsewhere] { return elsewhere.isActiveWindow(); }));
    bed.window.activateWindow();
    EXPECT_TRUE(comesTrue([this] { return shows("📁 own.wav"); })) << "not looked at on return";
}

TEST_F(TheDetailPanel, SetsTheVolumeByDraggingClickingAndKeys) {
    ValueSlider& volume = slider("Volume");
    const QPoint end(volume.width() - 11, volume.height() / 2);
    moveTo(volume, end);
    user.press();
    settle();
    for (int x = end.x(); x >= volume.width() / 2; x -= 10) {
        moveTo(volume, {x, end.y()});
    }
    settle();
    const float half = bed.library.event("slap").volume;
    EXPECT_NEAR(half, 0.5F, 0.06F);
    EXPECT_TRUE(shows(QString::fromStdString(volumeText(half))));
    moveTo(volume, {-50, 400});
    settle();
    user.release();
    settle();
    EXPECT_EQ(bed.library.event("slap").volume, 0.0F);
    EXPECT_TRUE(shows("0%"));

    clickAt(volume, {volume.width() / 4, end.y()});
    const float quarter = bed.library.event("slap").volume;
    EXPECT_NEAR(quarter, (volume.width() / 4.0 - 11) / (volume.width() - 22), 0.01);
    type(kRight);
    EXPECT_NEAR(bed.library.event("slap").volume, quarter + 0.01F, 1e-5F);
    EXPECT_EQ(bed.listChanges, 0) << "the list shows no volumes";
}

TEST_F(TheDetailPanel, StoresNothingThatItOnlyShows) {
    bed.library.event("slap").volume = 0.12345F;
    bed.library.event("battery_low").threshold = 15.9876F;
    const int before = bed.library.defaults.changes;
    for (const SoundEvent& event : bed.library->events) {
        bed.select(event.id);
    }
    settle();
    EXPECT_EQ(bed.library.defaults.changes, before);
    EXPECT_EQ(bed.library.event("slap").volume, 0.12345F);
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
    EXPECT_TRUE(shows("10°"));

    bed.lidMonitor.sensorFound = false;
    bed.select("lid_angle");
    clickAt(angle, {100, angle.height() / 2});
    EXPECT_EQ(bed.library.event("lid_angle").threshold, 10.0F);
    EXPECT_FALSE(gauge().sensorAvailable);
}

TEST_F(TheDetailPanel, LetsTheBatteryWarnAgainAtItsNewLevel) {
    bed.select("battery_low");
    ValueSlider& level = slider("Alert Threshold");
    clickAt(level, {level.width() - 11, level.height() / 2});
    EXPECT_EQ(bed.library.event("battery_low").threshold, 100.0F);
    EXPECT_TRUE(shows("100%"));
    EXPECT_EQ(bed.batteryResets, 1);
    const QString text(
        "Plays once when battery drops to or below %1% while unplugged. Threshold adjustable via "
        "the slider.");
    EXPECT_TRUE(shows(text.arg(20)));
    bed.panel->refreshDetail();
    EXPECT_TRUE(shows(text.arg(100)));
}

TEST_F(TheDetailPanel, LocksTheSwitchWhereTheLidAngleCannotWork) {
    bed.library->setEnabled(true, "lid_angle");
    bed.remake(false);
    bed.select("lid_angle");
    EXPECT_TRUE(shows("Not Supported on Intel"));
    click(enableSwitch());
    EXPECT_FALSE(enableSwitch().isChecked());
    EXPECT_TRUE(bed.library.event("lid_angle").isEnabled);
}

TEST_F(TheDetailPanel, PlaysTheSoundOfAnEventThatIsOffWithoutCounting) {
    bed.library.sounds.addNamedSound("Funk");
    bed.library->setTheme(SoundTheme::system);
    bed.library->setEnabled(false, "slap");
    bed.panel->refreshDetail();
    click(button("Test Sound"));
    EXPECT_THAT(bed.library.sounds.plays(), ElementsAre(FakeSoundService::Play{"Funk", 1.0F}));
    EXPECT_EQ(bed.library.event("slap").triggerCount, 0);
}

TEST_F(TheDetailPanel, LoadsAFileAndRemovesItAgain) {
    const TemporaryFolder music;
    writeSoundFile(music / "KNOCK.WAV", sine(440, 0.5, 0.1));
    ASSERT_NO_FATAL_FAILURE(chooseFile(music / "KNOCK.WAV"));
    EXPECT_EQ(bed.folder.chosen, music / "KNOCK.WAV");
    clickInVain(enableSwitch());
    EXPECT_TRUE(bed.library.event("slap").isEnabled) << "nothing else can be done meanwhile";
    bed.library.sounds.addFile("/data/KNOCK.WAV");
    bed.folder.finish({.kind = Outcome::Kind::added, .path = "/data/KNOCK.WAV"});
    EXPECT_EQ(bed.library.event("slap").soundPath, "/data/KNOCK.WAV");
    EXPECT_TRUE(shows("📁 KNOCK.WAV"));
    EXPECT_EQ(bed.listChanges, 1);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);

    ASSERT_TRUE(becomesReady(bed.window));
    button("Remove").setFocus();
    type(' ');
    EXPECT_EQ(bed.library.event("slap").soundPath, std::nullopt);
    EXPECT_TRUE(shows("System (Funk)"));
    EXPECT_THROW(button("Remove"), std::out_of_range);
    EXPECT_TRUE(button("Load .mp3 / .wav").hasFocus()) << "the keyboard has lost its place";
    EXPECT_EQ(bed.listChanges, 2);
}

TEST_F(TheDetailPanel, TellsWhyAFileCannotBeLoaded) {
    const TemporaryFolder music;
    writeSoundFile(music / "knock.wav", sine(440, 0.5, 0.1));
    struct Case {
        Outcome outcome;
        QString message;
    };
    for (const auto& [outcome, message] :
         {Case{{.kind = Outcome::Kind::notCopied, .error = "No <b>space</b> left"},
               "Could not copy the file: No <b>space</b> left"},
          Case{{.kind = Outcome::Kind::notASound},
               "The file could not be read by the audio engine. Try converting it to WAV or AIFF "
               "format "
               "first."}}) {
        SCOPED_TRACE(message.toStdString());
        ASSERT_NO_FATAL_FAILURE(chooseFile(music / "knock.wav"));
        bed.folder.finish(outcome);
        ASSERT_TRUE(comesTrue([] {
            return dialog<QMessageBox>() != nullptr && dialog<QMessageBox>()->isActiveWindow();
        }));
        EXPECT_EQ(dialog<QMessageBox>()->text(), "Could Not Load Sound");
        EXPECT_EQ(dialog<QMessageBox>()->informativeText(), message);
        EXPECT_FALSE(dialog<QMessageBox>()->iconPixmap().isNull());
        type(kReturn);
        EXPECT_TRUE(comesTrue([] { return QApplication::activeModalWidget() == nullptr; }));
        EXPECT_EQ(bed.library.event("slap").soundPath, std::nullopt);
        EXPECT_EQ(bed.listChanges, 0);
    }
}

TEST_F(TheDetailPanel, LetsTheUserGiveUpWhileAFileIsChosenAndWhileItIsCopied) {
    click(button("Load .mp3 / .wav"));
    ASSERT_TRUE(comesTrue([] {
        return dialog<QFileDialog>() != nullptr && dialog<QFileDialog>()->isActiveWindow();
    }));
    type(kEscape);
    EXPECT_TRUE(comesTrue([] { return QApplication::activeModalWidget() == nullptr; }));
    EXPECT_EQ(bed.folder.chosen, "");

    const TemporaryFolder music;
    writeSoundFile(music / "knock.wav", sine(440, 0.5, 0.1));
    const auto isWaiting = [] {
        const QWidget* const wait = QApplication::activeModalWidget();
        return wait != nullptr && wait->isActiveWindow();
    };
    ASSERT_NO_FATAL_FAILURE(chooseFile(music / "knock.wav"));
    ASSERT_TRUE(comesTrue(isWaiting));
    type(kEscape);
    EXPECT_EQ(bed.folder.givenUp, 1);
    EXPECT_TRUE(comesTrue([] { return QApplication::activeModalWidget() == nullptr; }));
    EXPECT_EQ(bed.library.event("slap").soundPath, std::nullopt);

    ASSERT_NO_FATAL_FAILURE(chooseFile(music / "knock.wav"));
    ASSERT_TRUE(comesTrue(isWaiting));
    bed.folder.finish({.kind = Outcome::Kind::added, .path = "/data/knock.wav"});
    EXPECT_EQ(bed.library.event("slap").soundPath, "/data/knock.wav");
    EXPECT_EQ(bed.folder.givenUp, 1);
    EXPECT_TRUE(comesTrue([this] { return bed.window.isActiveWindow(); }));
}

TEST_F(TheDetailPanel, CutsNothingOffAndOverlapsNothing) {
    bed.library.sounds.addFile("/own.wav");
    const auto look = [this](const char* state) {
        for (const SoundEvent& event : bed.library->events) {
            bed.library->setPath("/own.wav", event.id);
            bed.select(event.id);
            std::vector<QWidget*> parts;
            for (QWidget* const part : bed.panel->findChildren<QWidget*>()) {
                const bool isPart = qobject_cast<QLabel*>(part) != nullptr ||
                                    qobject_cast<QAbstractButton*>(part) != nullptr ||
                                    qobject_cast<QSlider*>(part) != nullptr;
                if (isPart && part->isVisible()) {
                    parts.push_back(part);
                }
            }
            for (const QWidget* const part : parts) {
                SCOPED_TRACE(testing::Message() << state << ", " << event.id << ": "
                                                << part->property("text").toString().toStdString());
                const QRect place(part->mapTo(bed.panel.get(), QPoint()), part->size());
                EXPECT_TRUE(bed.panel->rect().adjusted(25, 25, -25, 0).contains(place));
                EXPECT_GE(part->height(), part->hasHeightForWidth()
                                              ? part->heightForWidth(part->width())
                                              : part->sizeHint().height());
                // The large emoji is drawn in a font of its own, which is narrower than what it is measured
                // by.
                if (!part->hasHeightForWidth() && part->font().pixelSize() < 40) {
                    EXPECT_GE(part->width(), part->sizeHint().width());
                }
                EXPECT_TRUE(part->parentWidget()->rect().contains(part->geometry()));
                EXPECT_EQ(std::count_if(parts.begin(), parts.end(),
                                        [&](const QWidget* other) {
                                            return QRect(other->mapTo(bed.panel.get(), QPoint()),
                                                         other->size())
                                                .intersects(place);
                                        }),
                          1);
            }
        }
    };
    bed.keys.mayListen = false;
    look("without sensor and permission");
    bed.lidMonitor.sensorFound = true;
    bed.keyboardMonitor.active = true;
    look("with both");
    bed.remake(false);
    look("locked");
    bed.panel->setLayoutDirection(Qt::RightToLeft);
    look("from right to left");
    EXPECT_GT(button("Load .mp3 / .wav").x(), button("Test Sound").x());
    EXPECT_LT(enableSwitch().x(), 40);
}

TEST_F(TheDetailPanel, KeepsItsDistances) {
    bed.select("battery_low");
    const auto labels = bed.panel->findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
    const auto bottom = [](const QWidget& widget) { return widget.y() + widget.height(); };
    const QPushButton& load = button("Load .mp3 / .wav");
    const ValueSlider& volume = slider("Volume");
    std::vector<int> gaps = {labels[0]->y()};
    const QWidget* const order[] = {labels[0], labels[2], labels[3], labels[4], &load,
                                    labels[5], &volume,   labels[7], labels[8]};
    for (std::size_t i = 1; i < std::size(order); ++i) {
        gaps.push_back(order[i]->y() - bottom(*order[i - 1]));
    }
    EXPECT_THAT(gaps, ElementsAre(28, 6, 14, 6, 8, 20, 6, 20, 6));
    EXPECT_EQ(slider("Alert Threshold").parentWidget()->pos(), QPoint(28, bottom(*labels[8]) + 18));
    EXPECT_EQ(volume.geometry().left(), 28);
    EXPECT_EQ(volume.width(), 220);
    EXPECT_EQ(button("Test Sound").x() - (load.x() + load.width()), 8);
    EXPECT_EQ(enableSwitch().x() + enableSwitch().width() - SwitchControl::overhang, 459 - 28);
}

TEST_F(TheDetailPanel, CutsALongNameInItsMiddleAndTellsItWhole) {
    const std::string path = "/" + std::string(60, 'a') + "<b>\n" + std::string(60, 'z') + ".wav";
    bed.library.sounds.addFile(path);
    bed.library->setPath(path, "slap");
    bed.panel->refreshDetail();
    const QString whole = QString::fromStdString("📁 " + path.substr(1));
    const QLabel& label = named<QLabel>(whole);
    EXPECT_TRUE(label.text().startsWith("📁 aaa")) << label.text().toStdString();
    EXPECT_TRUE(label.text().endsWith("zzz.wav")) << label.text().toStdString();
    EXPECT_TRUE(label.toolTip().contains("&lt;b&gt;")) << "taken for markup";
    bed.select("lid_open");
    EXPECT_EQ(label.toolTip(), "");
}

TEST_F(TheDetailPanel, TellsAssistiveProgramsWhatItShows) {
    bed.library.event("slap").volume = 0.555F;
    bed.panel->refreshDetail();
    QAccessibleInterface* const volume = QAccessible::queryAccessibleInterface(&slider("Volume"));
    EXPECT_EQ(volume->role(), QAccessible::Slider);
    EXPECT_EQ(volume->text(QAccessible::Value), "55%");
    EXPECT_EQ(volume->valueInterface()->currentValue().toDouble(), 55.5);
    EXPECT_EQ(volume->valueInterface()->maximumValue().toDouble(), 100.0);
    volume->valueInterface()->setCurrentValue(20.0);
    EXPECT_EQ(bed.library.event("slap").volume, 0.2F);

    QAccessibleInterface* const onOff = QAccessible::queryAccessibleInterface(&enableSwitch());
    EXPECT_EQ(onOff->text(QAccessible::Name), "Single Knock");
    EXPECT_EQ(onOff->role(), QAccessible::CheckBox);
    EXPECT_TRUE(onOff->state().checkable && onOff->state().checked);
    onOff->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(bed.library.event("slap").isEnabled);
}

TEST_F(TheDetailPanel, IsGoneThroughByTheKeyboardFromTopToBottom) {
    bed.library.sounds.addFile("/own.wav");
    bed.library->setPath("/own.wav", "battery_low");
    bed.select("battery_low");
    enableSwitch().setFocus();
    std::vector<std::string> way;
    for (int i = 0; i < 7; ++i) {
        way.push_back(QAccessible::queryAccessibleInterface(QApplication::focusWidget())
                          ->text(QAccessible::Name)
                          .toStdString());
        type(kTab);
    }
    EXPECT_THAT(way, ElementsAre("Battery Low", "Load .mp3 / .wav", "Test Sound", "Remove",
                                 "Volume", "Alert Threshold", "Battery Low"));
}

}  // namespace
}  // namespace chimewerk

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    QApplication::setStyle(new chimewerk::ChimewerkStyle);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
