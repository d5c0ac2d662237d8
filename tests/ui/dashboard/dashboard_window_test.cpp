// The dashboard as its user has it: on a real display, with a pointer and a keyboard.
#include "ui/dashboard/dashboard_window_controller.h"

#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QAccessible>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPaintEvent>
#include <chrono>

#include "sound/notifications.h"
#include "support/dashboard_fixture.h"
#include "support/widget_input.h"
#include "ui/controls/chimewerk_style.h"
#include "ui/controls/color_scheme.h"
#include "ui/dashboard/angle_gauge_view.h"
#include "ui/rules/appearance.h"

namespace chimewerk {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr xcb_keysym_t kHome = 0xff50;
constexpr xcb_keysym_t kUp = 0xff52;
constexpr xcb_keysym_t kDown = 0xff54;
constexpr xcb_keysym_t kEnd = 0xff57;

constexpr int kLidAngleRow = 3;
constexpr int kKeyPressRow = 8;

/// Notes what a widget paints anew.
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

class TheDashboard : public testing::Test, protected WidgetUser {
protected:
    void SetUp() override {
        ASSERT_TRUE(user.works());
        becomeActive();
    }

    void becomeActive() { ASSERT_TRUE(becomesReady(bed.window())); }

    QRect rowRect(int row) { return bed.table().visualRect(bed.table().model()->index(row, 0)); }
    void clickRow(int row) { clickAt(*bed.table().viewport(), rowRect(row).center()); }
    void clickCheckBox(int row) {
        const QRect rect = rowRect(row);
        clickAt(*bed.table().viewport(), {rect.right() - 20, rect.center().y()});
    }
    std::vector<int> selectedRows() {
        std::vector<int> rows;
        for (const QModelIndex& index : bed.table().selectionModel()->selectedRows()) {
            rows.push_back(index.row());
        }
        return rows;
    }
    /// Whether the panel shows exactly this text.
    bool shows(const QString& text) {
        const auto labels = bed.window().findChildren<QLabel*>();
        return std::ranges::any_of(
            labels, [&text](QLabel* label) { return label->text() == text && label->isVisible(); });
    }
    std::string theme() { return bed.themes().currentText().toStdString(); }
    /// Opens the theme menu and clicks the item of this title.
    void chooseTheme(const QString& title) {
        click(bed.themes());
        QAbstractItemView& menu = *bed.themes().view();
        ASSERT_TRUE(comesTrue([&menu] { return menu.isVisible(); }));
        // The menu takes no choice in its first moments, lest the click that opens it choose.
        const auto opened = std::chrono::steady_clock::now();
        ASSERT_TRUE(comesTrue([opened] {
            return std::chrono::steady_clock::now() - opened >
                   std::chrono::milliseconds(QApplication::doubleClickInterval() + 50);
        }));
        const QModelIndex item = menu.model()->index(bed.themes().findText(title), 0);
        ASSERT_TRUE(item.isValid());
        clickAt(*menu.viewport(), menu.visualRect(item).center());
        ASSERT_TRUE(comesTrue([&menu] { return !menu.isVisible(); }));
    }
    QDialog* dialog() { return qobject_cast<QDialog*>(QApplication::activeModalWidget()); }
    void awaitDialog() {
        ASSERT_TRUE(
            comesTrue([this] { return dialog() != nullptr && dialog()->isActiveWindow(); }));
    }
    /// The dialog's message and the text in its field.
    std::vector<std::string> dialogTexts() {
        std::vector<std::string> texts;
        for (const QLabel* const label : dialog()->findChildren<QLabel*>()) {
            texts.push_back(label->text().toStdString());
        }
        return texts;
    }
    void awaitNoDialog() {
        ASSERT_TRUE(
            comesTrue([this] { return dialog() == nullptr && bed.window().isActiveWindow(); }));
    }
    bool buttonsShown() {
        EXPECT_EQ(bed.button("Rename theme").isVisible(), bed.button("Delete theme").isVisible());
        return bed.button("Rename theme").isVisible();
    }
    QColor pixel(QPoint place) { return bed.window().grab().toImage().pixelColor(place); }

    DashboardFixture bed;
};

TEST_F(TheDashboard, OpensWithTheFirstEventInAFixedSize) {
    EXPECT_EQ(bed.window().size(), QSize(720, 520));
    EXPECT_EQ(bed.window().minimumSize(), bed.window().maximumSize());
    EXPECT_THAT(selectedRows(), ElementsAre(0));
    EXPECT_TRUE(shows("Single Knock"));
    EXPECT_EQ(bed.table().width(), 260);
    bed.window().close();
    EXPECT_FALSE(bed.window().isVisible());
    bed.library->play("slap");
    bed.library.queue.runPosted();
    bed.controller->showWindow();
    EXPECT_TRUE(comesTrue([this] { return bed.window().isActiveWindow(); }));
    EXPECT_TRUE(shows("Triggered: 1 time"));
}

TEST_F(TheDashboard, SwitchesAnEventByItsCheckBoxAndSelectsNothing) {
    clickCheckBox(2);
    EXPECT_FALSE(bed.library.event("lid_close").isEnabled);
    EXPECT_THAT(selectedRows(), ElementsAre(0));
    clickCheckBox(2);
    EXPECT_TRUE(bed.library.event("lid_close").isEnabled);

    const QPoint box{rowRect(1).right() - 20, rowRect(1).center().y()};
    const QPoint start = bed.table().viewport()->mapToGlobal(box);
    user.moveTo(start.x(), start.y());
    user.press();
    user.moveTo(start.x() - 100, start.y());
    user.release();
    settle();
    EXPECT_TRUE(bed.library.event("lid_open").isEnabled)
        << "a press that is let go elsewhere switched";
    EXPECT_THAT(selectedRows(), ElementsAre(0));

    clickRow(1);
    EXPECT_THAT(selectedRows(), ElementsAre(1));
    EXPECT_TRUE(shows("Lid Open"));
    EXPECT_TRUE(bed.library.event("lid_open").isEnabled);
}

TEST_F(TheDashboard, HasNoCheckBoxForWhatCannotWork) {
    clickCheckBox(kLidAngleRow);
    EXPECT_FALSE(bed.library.event("lid_angle").isEnabled);
    EXPECT_THAT(selectedRows(), ElementsAre(kLidAngleRow));
    type(' ');
    EXPECT_FALSE(bed.library.event("lid_angle").isEnabled);
    EXPECT_EQ(bed.library.defaults.changes, 0);

    bed.around.isAppleSilicon = true;
    bed.open();
    becomeActive();
    clickCheckBox(kLidAngleRow);
    EXPECT_TRUE(bed.library.event("lid_angle").isEnabled);
}

TEST_F(TheDashboard, IsWorkedFromTheKeyboard) {
    type(kDown);
    type(' ');
    EXPECT_FALSE(bed.library.event("lid_open").isEnabled);
    EXPECT_THAT(selectedRows(), ElementsAre(1));
    type(kEnd);
    EXPECT_THAT(selectedRows(), ElementsAre(18));
    type(kHome);
    EXPECT_THAT(selectedRows(), ElementsAre(0));
    for (int i = 0; i < kKeyPressRow; ++i) {
        type(kDown);
    }
    type(' ');
    EXPECT_TRUE(bed.library.event("key_press").isEnabled);
    EXPECT_FALSE(bed.keyboardMonitor.active);

    type(kTab);
    EXPECT_FALSE(bed.table().hasFocus());
    bed.button("Toggle dark / light mode").setFocus();
    type(kTab);
    EXPECT_TRUE(bed.themes().hasFocus());
    type(kDown);
    ASSERT_TRUE(comesTrue([this] { return bed.themes().view()->isVisible(); }));
    EXPECT_EQ(bed.library->currentTheme, SoundTheme::classic);
    type(kUp);
    type(kReturn);
    EXPECT_EQ(bed.library->currentTheme, SoundTheme::scifi);
}

TEST_F(TheDashboard, TellsAScreenReaderOfEachRow) {
    bed.library.event("lid_open").triggerCount = 12;
    bed.library.event("lid_open").isEnabled = false;
    QAccessibleInterface* const row =
        QAccessible::queryAccessibleInterface(&bed.table())->tableInterface()->cellAt(1, 0);
    EXPECT_EQ(row->text(QAccessible::Name).toStdString(), "Lid Open, 🍎 Classic, 12×");
    EXPECT_TRUE(row->state().checkable);
    EXPECT_FALSE(row->state().checked);
    bed.library->setEnabled(true, "lid_open");
    EXPECT_TRUE(row->state().checked);
}

TEST_F(TheDashboard, PaintsOnlyTheRowWhoseCountHasChanged) {
    bed.library->setEnabled(true, "key_press");
    settle();
    PaintLog log(*bed.table().viewport());
    bed.library->play("lid_close");
    bed.library.queue.runPosted();
    EXPECT_TRUE(comesTrue([&log] { return !log.painted.empty(); }));
    settle();
    EXPECT_THAT(log.painted, ElementsAre(rowRect(2)));
    EXPECT_TRUE(shows("Not triggered yet"));
    bed.library->play("slap");
    bed.library->play("slap");
    bed.library.queue.runPosted();
    EXPECT_TRUE(shows("Triggered: 2 times"));
    EXPECT_TRUE(comesTrue([&] { return log.painted.back() == rowRect(0); }));
    settle();

    log.painted.clear();
    for (const std::any& object : {std::any(std::string("nothing")), std::any(2), std::any()}) {
        bed.library.notifications.post({.name = eventCounterUpdated, .object = object});
    }
    settle();
    EXPECT_THAT(log.painted, IsEmpty());
}

TEST_F(TheDashboard, PaintsAFloodOfCountsNoOftenerThanADisplayShowsThem) {
    PaintLog log(*bed.table().viewport());
    constexpr int kTriggers = 300;
    const auto begun = std::chrono::steady_clock::now();
    for (int i = 0; i < kTriggers; ++i) {
        bed.library->play("slap");
        bed.library.queue.runPosted();
        QApplication::processEvents();
    }
    const auto taken = std::chrono::steady_clock::now() - begun;
    settle();
    EXPECT_TRUE(shows("Triggered: 300 times"));
    EXPECT_LE(log.painted.size(),
              3 + static_cast<std::size_t>((taken + std::chrono::milliseconds(60)) /
                                           std::chrono::milliseconds(15)));
}

TEST_F(TheDashboard, ShowsTheFirstEventWhenNoneIsSelected) {
    clickRow(2);
    EXPECT_TRUE(shows("Lid Close"));
    bed.table().clearSelection();
    EXPECT_TRUE(shows("Single Knock"));
    clickCheckBox(2);
    EXPECT_THAT(selectedRows(), ElementsAre(0));
}

TEST_F(TheDashboard, RemembersWhetherItIsDarkAndPaintsIt) {
    QPushButton& button = bed.button("Toggle dark / light mode");
    const QPoint sidebar{5, 10};
    const QPoint divider{260, 500};
    EXPECT_EQ(button.text().toStdString(), "🌙  Dark");
    EXPECT_EQ(pixel(sidebar), ColorScheme::light().controlBackground);
    click(button);
    EXPECT_EQ(button.text().toStdString(), "☀️  Light");
    EXPECT_EQ(pixel(sidebar), QColor(36, 36, 36));
    EXPECT_EQ(pixel(divider), QColor(64, 64, 64));
    EXPECT_EQ(pixel({719, 10}), ColorScheme::dark().windowBackground);
    EXPECT_EQ(bed.library.defaults.object(kDarkModeKey), DefaultsValue{true});

    bed.open();
    becomeActive();
    EXPECT_EQ(pixel(sidebar), QColor(36, 36, 36));
    click(bed.button("Toggle dark / light mode"));
    EXPECT_EQ(pixel(sidebar), ColorScheme::light().controlBackground);
    EXPECT_EQ(bed.library.defaults.object(kDarkModeKey), DefaultsValue{false});
    bed.library.defaults.setObject(kDarkModeKey, DefaultsValue{std::string("yes")});
    bed.open();
    EXPECT_EQ(pixel(sidebar), ColorScheme::light().controlBackground);
}

TEST_F(TheDashboard, ChoosesAThemeAndLetsItBeHeard) {
    bed.library.sounds.addFile("/res/t_soft_slap.wav");
    chooseTheme("🎵 Soft");
    EXPECT_EQ(bed.library->currentTheme, SoundTheme::soft);
    chooseTheme("🎵 Soft");
    chooseTheme("System");
    const FakeSoundService::Play preview{"/res/t_soft_slap.wav", 0.6F};
    EXPECT_THAT(bed.library.sounds.plays(), ElementsAre(preview, preview));
    EXPECT_EQ(theme(), "System");
    // A change from elsewhere shows too.
    bed.library->setTheme(SoundTheme::piano);
    bed.library.queue.runPosted();
    EXPECT_EQ(theme(), "🎹 Piano");
}

TEST_F(TheDashboard, MakesRenamesAndDeletesAThemeOfItsOwn) {
    EXPECT_FALSE(buttonsShown());
    chooseTheme("+ New Theme…");
    awaitDialog();
    EXPECT_THAT(dialogTexts(), ElementsAre("New Custom Theme", "Enter a name for your new theme:"));
    EXPECT_EQ(dialog()->findChild<QLineEdit*>()->placeholderText(), "My Theme");
    EXPECT_EQ(theme(), "🍎 Classic");
    type("  Focus  ");
    type(kReturn);
    awaitNoDialog();
    ASSERT_EQ(bed.library->customThemes.size(), 1U);
    EXPECT_EQ(bed.library->customThemes[0].name, "Focus");
    EXPECT_EQ(theme(), "👤 Focus");
    EXPECT_TRUE(buttonsShown());

    click(bed.button("Rename theme"));
    awaitDialog();
    EXPECT_THAT(dialogTexts(), ElementsAre("Rename Theme", "Enter a new name:"));
    EXPECT_EQ(dialog()->findChild<QLineEdit*>()->text(), "Focus");
    type("Night");
    type(kReturn);
    awaitNoDialog();
    EXPECT_EQ(theme(), "👤 Night");

    click(bed.button("Delete theme"));
    awaitDialog();
    EXPECT_THAT(dialogTexts(), ElementsAre("Delete \"Night\"?",
                                           "This will permanently remove this custom theme."));
    type(kReturn);
    awaitNoDialog();
    EXPECT_THAT(bed.library->customThemes, IsEmpty());
    EXPECT_EQ(theme(), "🍎 Classic");
    EXPECT_FALSE(buttonsShown());
}

TEST_F(TheDashboard, ChangesNothingWhenAQuestionIsCancelledOrLeftBlank) {
    for (const char* const typed : {"Focus\x1b", "   \r", "\r"}) {
        chooseTheme("+ New Theme…");
        awaitDialog();
        for (const char* key = typed; *key != 0; ++key) {
            type(*key == '\r'     ? kReturn
                 : *key == '\x1b' ? kEscape
                                  : static_cast<xcb_keysym_t>(*key));
        }
        awaitNoDialog();
        EXPECT_THAT(bed.library->customThemes, IsEmpty());
        EXPECT_EQ(theme(), "🍎 Classic");
    }
    bed.library->createCustomTheme("Focus");
    bed.library.queue.runPosted();
    const int changes = bed.library.defaults.changes;
    click(bed.button("Rename theme"));
    awaitDialog();
    type("  ");
    type(kReturn);
    awaitNoDialog();
    click(bed.button("Delete theme"));
    awaitDialog();
    type(kEscape);
    awaitNoDialog();
    EXPECT_EQ(bed.library.defaults.changes, changes);
    EXPECT_EQ(theme(), "👤 Focus");
    // The selected theme may not exist.
    bed.library->activeCustomThemeID = "gone";
    click(bed.button("Delete theme"));
    click(bed.button("Rename theme"));
    EXPECT_EQ(dialog(), nullptr);
}

TEST_F(TheDashboard, HandsTheLidsAngleOnWhicheverEventIsSelected) {
    AngleGaugeView* gauge = nullptr;
    for (QWidget* const widget : bed.window().findChildren<QWidget*>()) {
        gauge = gauge == nullptr ? dynamic_cast<AngleGaugeView*>(widget) : gauge;
    }
    ASSERT_NE(gauge, nullptr);
    const auto announce = [this](std::any angle) {
        bed.library.notifications.post(
            {.name = lidAngleDidChange, .userInfo = {{"angle", std::move(angle)}}});
    };
    announce(47.5F);
    EXPECT_EQ(gauge->currentAngle, 47.5F);
    announce(12.0);
    announce({});
    bed.library.notifications.post({.name = lidAngleDidChange});
    EXPECT_EQ(gauge->currentAngle, 47.5F);
}

}  // namespace
}  // namespace chimewerk

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    QApplication::setStyle(new chimewerk::ChimewerkStyle);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
