// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/controls/fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>

namespace chimewerk {

namespace {

bool hasEqualDigits(const QFont& font) {
    const QFontMetricsF metrics(font);
    const qreal width = metrics.horizontalAdvance(QLatin1Char('0'));
    for (char digit = '1'; digit <= '9'; ++digit) {
        if (metrics.horizontalAdvance(QLatin1Char(digit)) != width) {
            return false;
        }
    }
    return true;
}

}  // namespace

QFont systemFont(int size, QFont::Weight weight) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

QFont monospacedDigitSystemFont(int size, QFont::Weight weight) {
    QFont font = systemFont(size, weight);
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
    // Cantarell and Inter have such digits besides those that they use at first.
    font.setFeature("tnum", 1);
#endif
    if (hasEqualDigits(font)) {
        return font;
    }
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPixelSize(size);
    fixed.setWeight(weight);
    return fixed;
}

}  // namespace chimewerk
