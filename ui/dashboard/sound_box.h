// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

#include "ui/controls/labels_and_buttons.h"
#include "ui/dashboard/panel_box.h"
#include "ui/rules/detail_view.h"

namespace chimewerk {

/// Shows an event's sound, with buttons that load, test and remove it.
class SoundBox final : public PanelBox {
public:
    struct Callbacks {
        std::function<void()> onLoad;
        std::function<void()> onTest;
        std::function<void()> onRemove;
    };

    SoundBox(QWidget* panel, const Callbacks& callbacks);

    void display(const DetailView& view);

protected:
    void fill(Column& column) override;

private:
    void showSoundText(int width);

    QString soundText_;
    QLabel* const soundSection_;
    QLabel* const soundLabel_;
    QPushButton* const loadBtn_;
    QPushButton* const testBtn_;
    QPushButton* const removeSoundBtn_;
};

}  // namespace chimewerk
