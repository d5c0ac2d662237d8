// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/toolkit/chimewerk_style.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QStyleFactory>
#include <memory>

namespace chimewerk {
namespace {

TEST(TheStyle, LeavesComboBoxesWithATextFieldAsPlasmasFileDialogHasThemToItsBase) {
    const std::unique_ptr<QStyle> base(QStyleFactory::create("Fusion"));
    for (const bool isEditable : {true, false}) {
        QComboBox box;
        box.addItem("Sound Files");
        box.setEditable(isEditable);
        box.resize(200, 26);
        const QImage ours = box.grab().toImage();
        box.setStyle(base.get());
        EXPECT_EQ(ours == box.grab().toImage(), isEditable);
    }
}

}  // namespace
}  // namespace chimewerk
