// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/dashboard_window_controller.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPointer>
#include <QScreen>
#include <QShortcut>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>
#include <any>
#include <chrono>
#include <string>
#include <utility>

#include "sound/notifications.h"
#include "ui/controls/fonts.h"
#include "ui/controls/hairline.h"
#include "ui/controls/labels_and_buttons.h"
#include "ui/controls/window_frame.h"
#include "ui/rules/appearance.h"
#include "ui/rules/contrast.h"
#include "ui/toolkit/color_scheme.h"
#include "ui/toolkit/wording.h"

namespace chimewerk {

namespace {

constexpr QSize kContentSize{720, 520};
constexpr int kSidebarWidth = 260;
/// From the sidebar's edges to its buttons, and to the texts above and below the list. Between them is
/// space, because a layout's margins are not mirrored.
constexpr int kEdge = 8;
constexpr int kTextEdge = 16;
constexpr std::chrono::milliseconds kCountPause{16};

QColor colorOf(const std::optional<Gray>& gray, const QColor& otherwise) {
    const float white = gray ? static_cast<float>(gray->white) : 0;
    return gray ? QColor::fromRgbF(white, white, white) : otherwise;
}

void setBackground(QWidget& widget, const QColor& color) {
    QPalette own;
    own.setColor(QPalette::Window, color);
    widget.setPalette(own);
}

/// Returns a view filled with its background colour.
QWidget* makeFilledView() {
    auto* const view = new QWidget;
    view->setAutoFillBackground(true);
    return view;
}

}  // namespace

DashboardWindowController::DashboardWindowController(const DashboardDependencies& dependencies,
                                                     DashboardMonitors monitors)
    : deps_(dependencies),
      monitors_(std::move(monitors)),
      sm_(dependencies.sounds),
      isDarkMode_(storedDarkMode(dependencies.defaults)),
      menu_(monitors_.menu, MenuPlace::Window) {
    window_.setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                           Qt::WindowCloseButtonHint);
    window_.setWindowTitle(worded("Chimewerk — Dashboard"));
    window_.setFixedSize(kContentSize);
    center();
    buildUI();
    applyAppearance();
    countPause_.setSingleShot(true);
    countPause_.setInterval(kCountPause);
    QObject::connect(&countPause_, &QTimer::timeout, &window_, [this] { showCounts(); });
    lidAngles_ = deps_.notifications.observe(
        lidAngleDidChange, [this](const Notification& notification) { onLidAngle(notification); });
    counters_ = deps_.notifications.observe(
        eventCounterUpdated,
        [this](const Notification& notification) { onCounterUpdated(notification); });
    themes_ = deps_.notifications.observe(
        themeDidChange, [this](const Notification& /*notification*/) { onThemeChanged(); });
    settings_ = deps_.notifications.observe(
        kSettingsDidChange, [this](const Notification& /*notification*/) { onSettingsChanged(); });
    contrast_ = deps_.notifications.observe(
        kContrastDidChange, [this](const Notification& /*notification*/) { applyAppearance(); });
    mutes_ = deps_.notifications.observe(
        kMuteDidChange, [this](const Notification& /*notification*/) { showMute(); });
}

void DashboardWindowController::showWindow() {
    showMenuButton();
    window_.setWindowState(window_.windowState() & ~Qt::WindowMinimized);
    window_.show();
    window_.raise();
    window_.activateWindow();
}

void DashboardWindowController::center() {
    if (const QScreen* const screen = QGuiApplication::primaryScreen()) {
        const QRect available = screen->availableGeometry();
        QRect place(QPoint(), kContentSize);
        place.moveCenter(available.center());
        // Keeps the title bar visible on a screen that is too small for the window.
        window_.move(std::max(place.left(), available.left()),
                     std::max(place.top(), available.top()));
    }
}

void DashboardWindowController::buildUI() {
    sidebarBgView_ = buildSidebar();
    dividerView_ = makeFilledView();
    dividerView_->setFixedWidth(1);
    detailPanel_ = new DetailPanel(
        deps_, monitors_, [this] { return selectedIndex_; }, [this] { reloadTable(); });
    auto* const columns = new QHBoxLayout(&window_);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(0);
    columns->addWidget(sidebarBgView_);
    columns->addWidget(dividerView_);
    columns->addWidget(detailPanel_, 1);
    addShortcuts();
    tableView_->selectRow(0);
    detailPanel_->refreshDetail();
    tableView_->setFocus();
}

QWidget* DashboardWindowController::buildSidebar() {
    QWidget* const sidebar = makeFilledView();
    sidebar->setFixedWidth(kSidebarWidth);
    QWidget* const titleRow = buildTitleRow();
    themePicker_ = new ThemePicker(sm_, [this] {
        tableView_->reload();
        detailPanel_->refreshDetail();
    });
    themePicker_->rebuildThemePopup();
    tableView_ = new SidebarTable(sm_, deps_.isAppleSilicon,
                                  {.onToggle = [this](int row, bool on) { sidebarToggle(row, on); },
                                   .onSelectionChange = [this] { tableViewSelectionDidChange(); }});
    auto* const rows = new QVBoxLayout(sidebar);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(titleRow);
    auto* const themeRow = new QHBoxLayout;
    themeRow->setContentsMargins(10, 0, 10, 8);
    themeRow->addWidget(themePicker_);
    rows->addLayout(themeRow);
    rows->addWidget(tableView_, 1);
    rows->addWidget(buildMuteRow());
    showMute();
    return sidebar;
}

/// Says that the program is muted, below the events, and ends it.
QWidget* DashboardWindowController::buildMuteRow() {
    muteRow_ = new QWidget;
    QLabel* const state = makeLabel(worded("🔇  Muted"), 12, QFont::DemiBold, LabelColor::secondary);
    QPushButton* const unmute = makeButton(worded("Unmute"));
    unmute->setFont(systemFont(11));
    unmute->setToolTip(worded("Let sounds play again"));
    QObject::connect(unmute, &QPushButton::clicked, &window_, [this] {
        tableView_->setFocus();
        sm_.setMuted(false);
    });
    auto* const edgeAndRow = new QVBoxLayout(muteRow_);
    edgeAndRow->setContentsMargins(0, 0, 0, 0);
    edgeAndRow->setSpacing(0);
    edgeAndRow->addWidget(new Hairline);
    auto* const row = new QHBoxLayout;
    row->setContentsMargins(kEdge, 6, kEdge, 6);
    row->addSpacing(kTextEdge - kEdge);
    row->addWidget(state);
    row->addStretch();
    row->addWidget(unmute);
    edgeAndRow->addLayout(row);
    return muteRow_;
}

void DashboardWindowController::showMute() {
    muteRow_->setVisible(sm_.isMuted());
}

QWidget* DashboardWindowController::buildTitleRow() {
    QLabel* const title = makeLabel(QStringLiteral("Chimewerk"), 16, QFont::Bold);
    appearanceBtn_ = makeButton({});
    appearanceBtn_->setFont(systemFont(11));
    appearanceBtn_->setToolTip(worded("Toggle dark / light mode"));
    QObject::connect(appearanceBtn_, &QPushButton::clicked, &window_,
                     [this] { toggleAppearance(); });

    auto* const titleRow = new QWidget;
    auto* const row = new QHBoxLayout(titleRow);
    // The title is 20 below the top and 8 above the themes. The button is higher and centred on the
    // title, so it reaches into both gaps.
    const int reach =
        std::max(0, (appearanceBtn_->sizeHint().height() - title->sizeHint().height() + 1) / 2);
    row->setContentsMargins(kEdge, 20 - reach, kEdge, 8 - reach);
    row->addSpacing(kTextEdge - kEdge);
    row->addWidget(title);
    row->addStretch();
    row->addWidget(buildMenuButton());
    row->addWidget(appearanceBtn_);
    return titleRow;
}

/// Where no tray shows the menu, this button opens it.
QWidget* DashboardWindowController::buildMenuButton() {
    menuBtn_ = makeButton(QStringLiteral("⋯"));
    menuBtn_->setFixedWidth(32);
    menuBtn_->setToolTip(worded("Menu"));
    menuBtn_->setAccessibleName(worded("Menu"));
    QObject::connect(menuBtn_, &QPushButton::clicked, &window_, [this] {
        QMenu& menu = menu_.widget();
        menu.setPalette(menuPaletteOf(colorSchemeOf(window_)));
        const int left =
            menuBtn_->isRightToLeft() ? menuBtn_->width() - menu.sizeHint().width() : 0;
        menu.popup(menuBtn_->mapToGlobal(QPoint(left, menuBtn_->height())));
    });
    monitors_.whenInTray([this, window = QPointer<QWidget>(&window_)] {
        if (!window.isNull()) {
            showMenuButton();
        }
    });
    showMenuButton();
    return menuBtn_;
}

void DashboardWindowController::showMenuButton() {
    menuBtn_->setVisible(!monitors_.isInTray());
}

void DashboardWindowController::addShortcuts() {
    addMenuShortcuts(window_, monitors_.menu);
    auto* const close = new QShortcut(QKeySequence::Close, &window_);
    QObject::connect(close, &QShortcut::activated, &window_, &QWidget::close);
}

void DashboardWindowController::tableViewSelectionDidChange() {
    selectedIndex_ = static_cast<std::size_t>(tableView_->selectedRow().value_or(0));
    detailPanel_->refreshDetail();
}

void DashboardWindowController::sidebarToggle(int row, bool on) {
    const auto index = static_cast<std::size_t>(row);
    const SoundEvent& event = sm_.events.at(index);
    if (isLocked(event, deps_.isAppleSilicon)) {
        return;
    }
    sm_.setEnabled(on, event.id);
    if (selectedIndex_ == index) {
        detailPanel_->refreshDetail();
    }
    reloadTable();
}

void DashboardWindowController::reloadTable() {
    tableView_->reload();
    tableView_->selectRow(static_cast<int>(selectedIndex_));
}

void DashboardWindowController::onLidAngle(const Notification& notification) {
    const auto angle = notification.userInfo.find("angle");
    if (angle != notification.userInfo.end()) {
        if (const auto* const degrees = std::any_cast<float>(&angle->second)) {
            detailPanel_->setCurrentAngle(*degrees);
        }
    }
}

void DashboardWindowController::onCounterUpdated(const Notification& notification) {
    const auto* const id = std::any_cast<std::string>(&notification.object);
    if (id == nullptr) {
        return;
    }
    const auto event = std::ranges::find(sm_.events, *id, &SoundEvent::id);
    if (event == sm_.events.end()) {
        return;
    }
    newCounts_.insert(static_cast<std::size_t>(event - sm_.events.begin()));
    if (!countPause_.isActive()) {
        showCounts();
    }
}

// Counts may change more often than the display is refreshed; painting is limited to the
// refresh rate.
void DashboardWindowController::showCounts() {
    if (newCounts_.empty()) {
        return;
    }
    for (const std::size_t index : std::exchange(newCounts_, {})) {
        tableView_->reloadRow(static_cast<int>(index));
        if (index == selectedIndex_) {
            detailPanel_->showCounter(sm_.events.at(index).triggerCount);
        }
    }
    countPause_.start();
}

void DashboardWindowController::onThemeChanged() {
    themePicker_->rebuildThemePopup();
    tableView_->reload();
    detailPanel_->refreshDetail();
}

void DashboardWindowController::onSettingsChanged() {
    detailPanel_->refreshDetail();
    reloadTable();
}

void DashboardWindowController::toggleAppearance() {
    isDarkMode_ = !isDarkMode_;
    deps_.defaults.setObject(kDarkModeKey, DefaultsValue{isDarkMode_});
    applyAppearance();
}

void DashboardWindowController::applyAppearance() {
    const Appearance now = appearance(isDarkMode_);
    const ColorScheme& colors = now.isDark ? ColorScheme::dark() : ColorScheme::light();
    window_.setPalette(paletteOf(colors));
    setDarkFrame(window_, now.isDark);
    QToolTip::setPalette(paletteOf(colors));
    appearanceBtn_->setText(worded(now.buttonTitle));
    const bool isPlain = ColorScheme::isHighContrast();
    setBackground(*sidebarBgView_, isPlain
                                       ? colors.controlBackground
                                       : colorOf(now.sidebarBackground, colors.controlBackground));
    setBackground(*dividerView_,
                  isPlain ? colors.separator : colorOf(now.divider, colors.separator));
}

}  // namespace chimewerk
