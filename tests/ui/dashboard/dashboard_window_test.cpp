// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/dashboard_window_controller.h"

#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPaintEvent>
#include <QPushButton>
#include <QScrollBar>
#include <chrono>
#include <stdexcept>
#include <utility>

#include "sound/notifications.h"
#include "support/dashboard_fixture.h"
#include "support/widget_input.h"
#include "ui/dashboard/angle_gauge_view.h"
#include "ui/rules/appearance.h"
#include "ui/toolkit/color_scheme.h"

namespace chimewerk {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kLidAngleRow = 3;
constexpr int kKeyPressRow = 8;

/// Records the areas that a widget paints.
class PaintLog final : public QObject {
public:
    explicit PaintLog(QWidget& widget) { widget.installEventFilter(this); }
    std::vector<QRect> painted;

private:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            painted.push_back(static_cast<QPaintEvent*>(event)->region().boundingRect());
        }
        return false;
    }
};

class TheDashboard : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(QTest::qWaitForWindowActive(&bed.window())); }

    QRect rowRect(int row) { return bed.table().visualRect(bed.table().model()->index(row, 0)); }
    QPoint checkBox(int row) { return {rowRect(row).right() - 20, rowRect(row).center().y()}; }
    void clickRow(int row) { clickAt(*bed.table().viewport(), rowRect(row).center()); }
    void clickCheckBox(int row) { clickAt(*bed.table().viewport(), checkBox(row)); }
    std::vector<int> selectedRows() {
        std::vector<int> rows;
        for (const QModelIndex& index : bed.table().selectionModel()->selectedRows()) {
            rows.push_back(index.row());
        }
        return rows;
    }
    bool isOn(std::string_view id) { return bed.library.event(id).isEnabled; }
    void trigger(std::string_view id, int times = 1) {
        for (int i = 0; i < times; ++i) {
            bed.library->play(id);
        }
        bed.library.queue.runPosted();
    }

    QPushButton& button(const char* name) {
        return named<QPushButton>(bed.window(), QString::fromUtf8(name));
    }
    std::string theme() { return bed.themes().currentText().toStdString(); }
    /// Opens the theme menu and clicks the item with this title.
    void chooseTheme(const QString& title) {
        click(bed.themes());
        QAbstractItemView& menu = *bed.themes().view();
        ASSERT_TRUE(becomesTrue([&menu] { return menu.isVisible(); }));
        const QModelIndex item = menu.model()->index(bed.themes().findText(title), 0);
        clickAt(*menu.viewport(), menu.visualRect(item).center());
        ASSERT_TRUE(becomesTrue([&menu] { return !menu.isVisible(); }));
    }
    /// Types into the dialog that appears and ends it with this key.
    void answer(const std::string& typed, Qt::Key key) {
        ASSERT_TRUE(dialogAppears<QDialog>());
        type(typed);
        press(key);
        ASSERT_TRUE(becomesTrue([] { return dialog<QDialog>() == nullptr; }));
        bed.window().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&bed.window()));
    }
    QColor pixel(QPoint place) { return bed.window().grab().toImage().pixelColor(place); }

    DashboardFixture bed;
};

TEST_F(TheDashboard, OpensWithTheFirstEventInAFixedSize) {
    EXPECT_EQ(bed.window().size(), QSize(720, 520));
    EXPECT_EQ(bed.window().minimumSize(), bed.window().maximumSize());
    EXPECT_THAT(selectedRows(), ElementsAre(0));
    EXPECT_TRUE(bed.shows("Single Knock"));
    EXPECT_EQ(bed.table().width(), 260);
    bed.window().close();
    EXPECT_FALSE(bed.window().isVisible());
    trigger("slap");
    bed.controller->showWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&bed.window()));
    EXPECT_TRUE(bed.shows("Triggered: 1 time"));
}

TEST_F(TheDashboard, SwitchesAnEventByItsCheckBoxAndSelectsNothing) {
    clickCheckBox(2);
    EXPECT_FALSE(isOn("lid_close"));
    clickCheckBox(2);
    EXPECT_TRUE(isOn("lid_close"));
    const QPoint beside = checkBox(1) - QPoint(100, 0);
    pressAndMove(*bed.table().viewport(), {checkBox(1), beside});
    releaseAt(*bed.table().viewport(), beside);
    EXPECT_TRUE(isOn("lid_open")) << "a press that is released elsewhere has switched";
    EXPECT_THAT(selectedRows(), ElementsAre(0));

    clickRow(1);
    EXPECT_THAT(selectedRows(), ElementsAre(1));
    EXPECT_TRUE(bed.shows("Lid Open"));
    EXPECT_TRUE(isOn("lid_open"));
}

TEST_F(TheDashboard, HasNoCheckBoxForLockedEvents) {
    bed.library.event("lid_angle").isEnabled = true;
    clickCheckBox(kLidAngleRow);
    EXPECT_THAT(selectedRows(), ElementsAre(kLidAngleRow));
    press(Qt::Key_Space);
    EXPECT_TRUE(isOn("lid_angle"));
    EXPECT_EQ(bed.library.defaults.changes, 0);

    bed.dependencies.isAppleSilicon = true;
    bed.open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&bed.window()));
    clickCheckBox(kLidAngleRow);
    EXPECT_FALSE(isOn("lid_angle"));
}

TEST_F(TheDashboard, WorksByKeyboard) {
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    EXPECT_FALSE(isOn("lid_open"));
    EXPECT_THAT(selectedRows(), ElementsAre(1));
    press(Qt::Key_End);
    EXPECT_THAT(selectedRows(), ElementsAre(18));
    press(Qt::Key_Home);
    EXPECT_THAT(selectedRows(), ElementsAre(0));
    for (int i = 0; i < kKeyPressRow; ++i) {
        press(Qt::Key_Down);
    }
    press(Qt::Key_Space);
    EXPECT_TRUE(isOn("key_press"));
    EXPECT_FALSE(bed.keyboardMonitor.active);

    press(Qt::Key_Tab);
    EXPECT_FALSE(bed.table().hasFocus());
    EXPECT_TRUE(bed.window().testAttribute(Qt::WA_KeyboardFocusChange));
    clickRow(kKeyPressRow);
    EXPECT_FALSE(bed.window().testAttribute(Qt::WA_KeyboardFocusChange)) << "the ring stays";
    button("🌙  Dark").setFocus();
    press(Qt::Key_Tab);
    EXPECT_TRUE(bed.themes().hasFocus());
    press(Qt::Key_Down);
    ASSERT_TRUE(becomesTrue([this] { return bed.themes().view()->isVisible(); }));
    EXPECT_EQ(bed.library->currentTheme, SoundTheme::classic);
    press(Qt::Key_Up);
    press(Qt::Key_Return);
    EXPECT_EQ(bed.library->currentTheme, SoundTheme::scifi);
}

TEST_F(TheDashboard, DescribesEachRowToScreenReaders) {
    bed.library.event("lid_open").triggerCount = 12;
    bed.library.event("lid_open").isEnabled = false;
    const QAccessibleInterface* const row = accessible(bed.table()).tableInterface()->cellAt(1, 0);
    EXPECT_EQ(row->text(QAccessible::Name).toStdString(), "Lid Open, 🍎 Classic, 12×");
    EXPECT_TRUE(row->state().checkable);
    EXPECT_FALSE(row->state().checked);
    bed.library->setEnabled(true, "lid_open");
    EXPECT_TRUE(row->state().checked);
}

TEST_F(TheDashboard, PaintsOnlyTheRowWhoseCountHasChanged) {
    ASSERT_TRUE(becomesTrue([this] { return !bed.window().grab().isNull(); }));
    QApplication::processEvents();
    PaintLog log(*bed.table().viewport());
    trigger("lid_close");
    EXPECT_TRUE(becomesTrue([&log] { return !log.painted.empty(); }));
    EXPECT_THAT(log.painted, ElementsAre(rowRect(2)));
    EXPECT_TRUE(bed.shows("Not triggered yet"));
    trigger("slap", 2);
    EXPECT_TRUE(becomesTrue([&] { return log.painted.back() == rowRect(0); }));
    EXPECT_TRUE(bed.shows("Triggered: 2 times"));

    log.painted.clear();
    for (const std::any& object : {std::any(std::string("nothing")), std::any(2), std::any()}) {
        bed.library.notifications.post({.name = eventCounterUpdated, .object = object});
    }
    QApplication::processEvents();
    EXPECT_THAT(log.painted, IsEmpty());
}

TEST_F(TheDashboard, LimitsRepaintsToTheDisplaysRate) {
    PaintLog log(*bed.table().viewport());
    const auto begun = std::chrono::steady_clock::now();
    for (int i = 0; i < 300; ++i) {
        trigger("slap");
        QApplication::processEvents();
    }
    EXPECT_TRUE(becomesTrue([this] { return bed.shows("Triggered: 300 times"); }));
    const auto taken = std::chrono::steady_clock::now() - begun;
    EXPECT_LE(log.painted.size(),
              3 + static_cast<std::size_t>(taken / std::chrono::milliseconds(15)));
}

TEST_F(TheDashboard, ShowsTheFirstEventWhenNoneIsSelected) {
    clickRow(2);
    EXPECT_TRUE(bed.shows("Lid Close"));
    bed.table().clearSelection();
    EXPECT_TRUE(bed.shows("Single Knock"));
    clickCheckBox(2);
    EXPECT_THAT(selectedRows(), ElementsAre(0));
}

TEST_F(TheDashboard, RemembersWhetherItIsDarkAndPaintsIt) {
    const QPoint sidebar{5, 10};
    EXPECT_EQ(pixel(sidebar), ColorScheme::light().controlBackground);
    click(button("🌙  Dark"));
    EXPECT_EQ(pixel(sidebar), QColor(36, 36, 36));
    EXPECT_EQ(pixel({260, 500}), QColor(64, 64, 64));
    EXPECT_EQ(pixel({719, 10}), ColorScheme::dark().windowBackground);
    EXPECT_EQ(bed.library.defaults.object(kDarkModeKey), DefaultsValue{true});

    bed.open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&bed.window()));
    EXPECT_EQ(pixel(sidebar), QColor(36, 36, 36));
    click(button("☀️  Light"));
    EXPECT_EQ(pixel(sidebar), ColorScheme::light().controlBackground);
    EXPECT_EQ(bed.library.defaults.object(kDarkModeKey), DefaultsValue{false});
    bed.library.defaults.setObject(kDarkModeKey, DefaultsValue{std::string("yes")});
    bed.open();
    EXPECT_EQ(pixel(sidebar), ColorScheme::light().controlBackground);
}

TEST_F(TheDashboard, SelectsAThemeAndPlaysItsPreview) {
    bed.library.sounds.addFile("/res/t_soft_slap.wav");
    for (const char* const title : {"🎵 Soft", "🎵 Soft", "System"}) {
        chooseTheme(QString::fromUtf8(title));
        EXPECT_EQ(theme(), title);
    }
    const FakeSoundService::Play preview{"/res/t_soft_slap.wav", 0.6F};
    EXPECT_THAT(bed.library.sounds.plays(), ElementsAre(preview, preview));
    // A change made elsewhere is shown too.
    bed.library->setTheme(SoundTheme::piano);
    bed.library.queue.runPosted();
    EXPECT_EQ(theme(), "🎹 Piano");
}

TEST_F(TheDashboard, ChangesNothingWhenAQuestionIsCancelledOrLeftBlank) {
    bed.library->createCustomTheme("Focus");
    bed.library.queue.runPosted();
    const int changes = bed.library.defaults.changes;
    for (const auto& [typed, key] :
         {std::pair{"Name", Qt::Key_Escape}, std::pair{"   ", Qt::Key_Return},
          std::pair{"\b", Qt::Key_Return}}) {
        chooseTheme("+ New Theme…");
        answer(typed, key);
        click(button("Rename theme"));
        answer(typed, key);
    }
    // Enter deletes nothing.
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
        click(button("Delete theme"));
        answer("", key);
    }
    EXPECT_EQ(bed.library.defaults.changes, changes);
    EXPECT_EQ(theme(), "👤 Focus");
    // The selected theme may not exist.
    bed.library->activeCustomThemeID = "gone";
    click(button("Delete theme"));
    click(button("Rename theme"));
    EXPECT_EQ(dialog<QDialog>(), nullptr);
}

TEST_F(TheDashboard, OffersTheMenuWhereThereIsNoTrayAndItsKeysAlways) {
    EXPECT_THROW(button("Menu"), std::out_of_range);
    for (const auto& [key, modifiers] :
         {std::pair{Qt::Key_D, Qt::ControlModifier},
          std::pair{Qt::Key_Question, Qt::ControlModifier}, std::pair{Qt::Key_F1, Qt::NoModifier},
          std::pair{Qt::Key_Q, Qt::ControlModifier}}) {
        press(key, modifiers);
    }
    EXPECT_EQ(std::exchange(bed.chosen, ""), "dashboard help help quit ");
    bed.inTray = false;
    bed.controller->showWindow();
    click(button("Menu"));
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    const auto pressInMenu = [](std::initializer_list<Qt::Key> keys) {
        for (const Qt::Key key : keys) {
            QTest::keyClick(QApplication::activePopupWidget(), key);
        }
        return QApplication::activePopupWidget();
    };
    EXPECT_EQ(pressInMenu({Qt::Key_Up, Qt::Key_Up, Qt::Key_Right})->palette(), menu->palette());
    pressInMenu({Qt::Key_Up, Qt::Key_Return});
    EXPECT_EQ(bed.chosen, "High ");
    bed.inTray = true;
    bed.onTray();
    EXPECT_THROW(button("Menu"), std::out_of_range);
}

TEST_F(TheDashboard, SaysWhileItIsMutedAndUnmutes) {
    const int before = bed.table().height();
    bed.library->setMuted(true);
    EXPECT_TRUE(bed.shows("🔇  Muted"));
    EXPECT_TRUE(becomesTrue([&] { return bed.table().height() < before; }));
    bed.open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&bed.window()));
    click(button("Unmute"));
    EXPECT_FALSE(bed.library->isMuted());
    EXPECT_TRUE(becomesTrue([&] { return bed.table().height() == before; }));
    EXPECT_TRUE(bed.table().hasFocus());
}

TEST_F(TheDashboard, LetsItsScrollBarFadeAndShowsItAgainWhileItIsUsed) {
    const QScrollBar& bar = *bed.table().verticalScrollBar();
    const QPoint atEnd = bar.mapTo(&bed.window(), bar.rect().center() + QPoint(0, 150));
    const auto isGone = [&] { return pixel(atEnd) == pixel(atEnd - QPoint(0, 300)); };
    press(Qt::Key_End);
    EXPECT_FALSE(isGone());
    EXPECT_TRUE(becomesTrue(isGone)) << "it stays";
    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(&bed.table(), &enter);
    EXPECT_FALSE(isGone());
}

TEST_F(TheDashboard, MirrorsItsRowsForLanguagesThatAreReadFromRightToLeft) {
    bed.window().setLayoutDirection(Qt::RightToLeft);
    const QPoint box(20, rowRect(1).center().y());
    clickAt(*bed.table().viewport(), box);
    EXPECT_FALSE(isOn("lid_open"));
    clickAt(*bed.table().viewport(), checkBox(1));
    EXPECT_FALSE(isOn("lid_open")) << "the box is where it was";
    EXPECT_THAT(selectedRows(), ElementsAre(1));
    const QImage name =
        bed.table().viewport()->grab(rowRect(2).adjusted(170, 12, -60, -28)).toImage();
    QImage blank = name;
    blank.fill(name.pixelColor(0, 0));
    EXPECT_NE(name, blank) << "the name is not beside the emoji";
}

TEST_F(TheDashboard, ShowsTheLidsAngleWhicheverEventIsSelected) {
    const AngleGaugeView& gauge = *childrenOf<AngleGaugeView>(bed.window()).at(0);
    const auto announce = [this](std::any angle) {
        bed.library.notifications.post(
            {.name = lidAngleDidChange, .userInfo = {{"angle", std::move(angle)}}});
    };
    announce(47.5F);
    EXPECT_EQ(gauge.currentAngle, 47.5F);
    announce(12.0);
    announce({});
    bed.library.notifications.post({.name = lidAngleDidChange});
    EXPECT_EQ(gauge.currentAngle, 47.5F);
}

}  // namespace
}  // namespace chimewerk
