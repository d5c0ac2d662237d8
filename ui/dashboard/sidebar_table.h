// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractListModel>
#include <QStyledItemDelegate>
#include <QTableView>
#include <functional>
#include <optional>

#include "sound/sound_manager.h"
#include "ui/controls/hairline.h"
#include "ui/rules/sidebar_row.h"

namespace chimewerk {

/// The dashboard's table: one row per event, with a check box that toggles it. The library is read
/// when a row is painted. Call `reload()` or `reloadRow()` after changes.
class SidebarTable final : public QTableView {
public:
    struct Callbacks {
        /// Called when a check box was clicked or toggled by keyboard, with the new state.
        std::function<void(int row, bool on)> onToggle;
        std::function<void()> onSelectionChange;
    };

    /// The library must outlive the table. `isAppleSilicon` as in `sidebarRow()`.
    SidebarTable(const SoundManager& sounds, bool isAppleSilicon, Callbacks callbacks);

    /// Returns the selected row, or none.
    std::optional<int> selectedRow() const;
    /// Repaints all rows; keeps the selection.
    void reload();
    /// Repaints this row only.
    void reloadRow(int row);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

private:
    /// The rows and their check boxes, for the toolkit.
    class Model final : public QAbstractListModel {
    public:
        Model(QObject* owner, const SoundManager& sounds, bool isAppleSilicon,
              std::function<void(int, bool)> onToggle);

        SidebarRow row(int index) const;
        void reload(int first, int last);
        int rowCount(const QModelIndex& parent = {}) const override;
        QVariant data(const QModelIndex& index, int role) const override;
        bool setData(const QModelIndex& index, const QVariant& value, int role) override;
        Qt::ItemFlags flags(const QModelIndex& index) const override;

    private:
        const SoundManager& sounds_;
        const bool isAppleSilicon_;
        const std::function<void(int, bool)> onToggle_;
    };

    class Delegate final : public QStyledItemDelegate {
    public:
        Delegate(QObject* owner, const Model& model) : QStyledItemDelegate(owner), model_(model) {}
        void paint(QPainter* painter, const QStyleOptionViewItem& option,
                   const QModelIndex& index) const override;

    protected:
        bool editorEvent(QEvent* event, QAbstractItemModel* model,
                         const QStyleOptionViewItem& option, const QModelIndex& index) override;

    private:
        const Model& model_;
    };

    /// Returns the row with its check box at this place of the viewport.
    std::optional<int> checkBoxAt(QPoint place) const;

    const Callbacks callbacks_;
    Model* const model_;
    /// Shown where rows are scrolled out of sight.
    Hairline* const edge_;
    /// The row whose check box was pressed with the mouse, until it is released.
    std::optional<int> pressedBox_;
};

}  // namespace chimewerk
