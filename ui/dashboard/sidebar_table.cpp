// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashboard/sidebar_table.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QScrollBar>
#include <utility>

#include "ui/controls/hairline.h"
#include "ui/dashboard/sidebar_row_painting.h"
#include "ui/toolkit/wording.h"

namespace chimewerk {

SidebarTable::Model::Model(QObject* owner, const SoundManager& sounds, bool isAppleSilicon,
                           std::function<void(int, bool)> onToggle)
    : QAbstractListModel(owner),
      sounds_(sounds),
      isAppleSilicon_(isAppleSilicon),
      onToggle_(std::move(onToggle)) {}

SidebarRow SidebarTable::Model::row(int index) const {
    return sidebarRow(sounds_.events.at(static_cast<std::size_t>(index)), sounds_, isAppleSilicon_);
}

void SidebarTable::Model::reload(int first, int last) {
    Q_EMIT dataChanged(index(first), index(last));
}

int SidebarTable::Model::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(sounds_.events.size());
}

QVariant SidebarTable::Model::data(const QModelIndex& index, int role) const {
    switch (role) {
        case Qt::DisplayRole:
            return worded(row(index.row()).name);
        case Qt::AccessibleTextRole:
            return QString::fromStdString(spokenSidebarRow(row(index.row())));
        case Qt::CheckStateRole: {
            const std::optional<bool> on = row(index.row()).isOn;
            return on ? QVariant(*on ? Qt::Checked : Qt::Unchecked) : QVariant();
        }
        default:
            return {};
    }
}

bool SidebarTable::Model::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole) {
        return false;
    }
    onToggle_(index.row(), value.toInt() == Qt::Checked);
    return true;
}

Qt::ItemFlags SidebarTable::Model::flags(const QModelIndex& index) const {
    const Qt::ItemFlags always =
        Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return row(index.row()).isOn ? always | Qt::ItemIsUserCheckable : always;
}

void SidebarTable::Delegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                   const QModelIndex& index) const {
    paintSidebarRow(*painter, option, model_.row(index.row()));
}

bool SidebarTable::Delegate::editorEvent(QEvent* event, QAbstractItemModel* model,
                                         const QStyleOptionViewItem& option,
                                         const QModelIndex& index) {
    // The check box is not where the toolkit expects it, so the table handles the mouse itself.
    return event->type() == QEvent::KeyPress &&
           QStyledItemDelegate::editorEvent(event, model, option, index);
}

SidebarTable::SidebarTable(const SoundManager& sounds, bool isAppleSilicon, Callbacks callbacks)
    : callbacks_(std::move(callbacks)),
      model_(new Model(this, sounds, isAppleSilicon,
                       [this](int row, bool on) { callbacks_.onToggle(row, on); })),
      edge_(new Hairline(this)) {
    setModel(model_);
    setItemDelegate(new Delegate(this, *model_));
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { callbacks_.onSelectionChange(); });
    setAccessibleName(worded("Events"));
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    viewport()->setAutoFillBackground(false);
    viewport()->setAttribute(Qt::WA_Hover);
    horizontalHeader()->hide();
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(kSidebarRowHeight);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setVerticalScrollMode(ScrollPerPixel);
    setSelectionMode(SingleSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    edge_->hide();
    connect(verticalScrollBar(), &QScrollBar::valueChanged, edge_,
            [this](int value) { edge_->setVisible(value > 0); });
}

void SidebarTable::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    edge_->setGeometry(0, 0, width(), 1);
}

std::optional<int> SidebarTable::selectedRow() const {
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? std::nullopt : std::optional(rows.first().row());
}

void SidebarTable::reload() {
    model_->reload(0, model_->rowCount() - 1);
}

void SidebarTable::reloadRow(int row) {
    model_->reload(row, row);
}

std::optional<int> SidebarTable::checkBoxAt(QPoint place) const {
    const QModelIndex index = indexAt(place);
    if (!index.isValid() || !model_->row(index.row()).isOn) {
        return std::nullopt;
    }
    return sidebarCheckBoxArea(visualRect(index), layoutDirection()).contains(place)
               ? std::optional(index.row())
               : std::nullopt;
}

// A click on a check box toggles the event and does not select the row.
void SidebarTable::mousePressEvent(QMouseEvent* event) {
    pressedBox_ = event->button() == Qt::LeftButton ? checkBoxAt(event->pos()) : std::nullopt;
    if (!pressedBox_) {
        QTableView::mousePressEvent(event);
    }
}

void SidebarTable::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void SidebarTable::mouseMoveEvent(QMouseEvent* event) {
    if (!pressedBox_) {
        QTableView::mouseMoveEvent(event);
    }
}

void SidebarTable::mouseReleaseEvent(QMouseEvent* event) {
    const std::optional<int> pressed = std::exchange(pressedBox_, std::nullopt);
    if (!pressed) {
        QTableView::mouseReleaseEvent(event);
    } else if (checkBoxAt(event->pos()) == pressed) {
        callbacks_.onToggle(*pressed, !*model_->row(*pressed).isOn);
    }
}

QModelIndex SidebarTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    switch (action) {
        case MoveHome:
            return model_->index(0);
        case MoveEnd:
            return model_->index(model_->rowCount() - 1);
        default:
            return QTableView::moveCursor(action, modifiers);
    }
}

}  // namespace chimewerk
