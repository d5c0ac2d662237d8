// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/toolkit/chimewerk_style.h"

#include <QApplication>
#include <QEvent>
#include <QStyleFactory>
#include <QStyleOption>
#include <algorithm>

#include "ui/toolkit/color_scheme.h"
#include "ui/toolkit/control_painting.h"
#include "ui/toolkit/emoji_text.h"
#include "ui/toolkit/scroll_bar_fade.h"

namespace chimewerk {

namespace {

/// Casts the option to the type that its element always uses.
template <typename Option>
const Option& as(const QStyleOption* option) {
    return *qstyleoption_cast<const Option*>(option);
}

ButtonKind kindOf(const QStyleOption* option, const QWidget* widget) {
    if (widget != nullptr && widget->property(kDestructive).toBool()) {
        return ButtonKind::destructive;
    }
    const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option);
    return button != nullptr && (button->features & QStyleOptionButton::DefaultButton) != 0
               ? ButtonKind::standard
               : ButtonKind::plain;
}

/// Combo boxes with a text field, which file dialogs of desktops have, are left to the base style.
bool isPopUpButton(const QStyleOption& comboBox) {
    return !as<QStyleOptionComboBox>(&comboBox).editable;
}

void drawComboBoxLabel(QPainter& painter, const QStyleOptionComboBox& option, const QRect& place) {
    const ColorScheme& colors = colorSchemeOf(option.palette);
    painter.save();
    painter.setPen((option.state & QStyle::State_Enabled) != 0 ? colors.label
                                                               : colors.disabledLabel);
    drawText(painter, place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
             elided(painter.font(), option.currentText, place.width()));
    painter.restore();
}

/// Hides the focus ring when the user turns from the keyboard to the pointer.
class PointerWatch final : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType()) {
            QWidget& window = *static_cast<QWidget*>(watched)->window();
            if (window.testAttribute(Qt::WA_KeyboardFocusChange)) {
                window.setAttribute(Qt::WA_KeyboardFocusChange, false);
                window.update();
            }
        }
        return false;
    }
};

/// A scroll bar is all groove, without buttons at its ends.
QRect scrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part, int shortestThumb) {
    const bool upright = bar.orientation == Qt::Vertical;
    const int length = upright ? bar.rect.height() : bar.rect.width();
    const qint64 range = qint64{bar.maximum} - bar.minimum;
    const qint64 share = qint64{length} * bar.pageStep / std::max<qint64>(range + bar.pageStep, 1);
    const int thumb = std::clamp(static_cast<int>(share), std::min(shortestThumb, length), length);
    const int start = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                      length - thumb, bar.upsideDown);
    const auto along = [&](int from, int to) {
        const QRect place = upright ? QRect(0, from, bar.rect.width(), to - from)
                                    : QRect(from, 0, to - from, bar.rect.height());
        return QStyle::visualRect(bar.direction, bar.rect, place.translated(bar.rect.topLeft()));
    };
    switch (part) {
        case QStyle::SC_ScrollBarGroove:
            return bar.rect;
        case QStyle::SC_ScrollBarSlider:
            return along(start, start + thumb);
        case QStyle::SC_ScrollBarSubPage:
            return along(0, start);
        case QStyle::SC_ScrollBarAddPage:
            return along(start + thumb, length);
        default:
            return {};
    }
}

/// Computed here because a pop-up button's menu proposes the menu's size instead of the item's.
QSize sizeOfMenuItem(const QStyleOptionMenuItem& item) {
    constexpr int kGapBeforeShortcut = 24;
    if (item.menuItemType == QStyleOptionMenuItem::Separator) {
        return {40, 9};
    }
    const QStringList parts = item.text.split(QLatin1Char('\t'));
    const int shortcut = parts.size() > 1 ? kGapBeforeShortcut + textWidth(item.font, parts[1]) : 0;
    return {textWidth(item.font, parts[0]) + shortcut + 56, QFontMetrics(item.font).height() + 8};
}

}  // namespace

ChimewerkStyle::ChimewerkStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void ChimewerkStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (pointerWatch_.isNull()) {
        pointerWatch_ = new PointerWatch(qApp);
        qApp->installEventFilter(pointerWatch_);
    }
    if (auto* const bar = qobject_cast<QScrollBar*>(widget)) {
        ScrollBarFade::addTo(*bar);
    }
}

void ChimewerkStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                   QPainter* painter, const QWidget* widget) const {
    switch (element) {
        case PE_PanelButtonCommand:
            // The base draws tool buttons and parts of combo boxes with it, too.
            if (option->type == QStyleOption::SO_Button) {
                return paintButton(*painter, *option, kindOf(option, widget));
            }
            break;
        case PE_IndicatorCheckBox:
        case PE_IndicatorItemViewItemCheck:
            return paintCheckBox(*painter, *option);
        case PE_PanelLineEdit:
            if (as<QStyleOptionFrame>(option).lineWidth > 0) {
                return paintTextField(*painter, *option);
            }
            break;
        case PE_FrameDefaultButton:
            return;
        case PE_FrameFocusRect:
            if (showsFocusRing(*option)) {
                paintFocusRing(*painter, *option, option->rect, 4);
            }
            return;
        case PE_PanelItemViewRow: {
            // The items of a row paint its selection themselves.
            QStyleOptionViewItem row = as<QStyleOptionViewItem>(option);
            row.state &= ~State_Selected;
            return QProxyStyle::drawPrimitive(element, &row, painter, widget);
        }
        case PE_Frame:
            if (widget != nullptr && widget->inherits("QComboBoxPrivateContainer")) {
                return paintMenuFrame(*painter, *option);
            }
            break;
        case PE_FrameMenu:
            // Drawn with the panel: a menu draws its frame in straight strips, without the corners.
            return;
        case PE_PanelMenu:
            painter->fillRect(option->rect, option->palette.window());
            return paintMenuFrame(*painter, *option);
        default:
            break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void ChimewerkStyle::drawControl(ControlElement element, const QStyleOption* option,
                                 QPainter* painter, const QWidget* widget) const {
    switch (element) {
        case CE_MenuItem:
            return paintMenuItem(*painter, as<QStyleOptionMenuItem>(option));
        case CE_ComboBoxLabel: {
            if (!isPopUpButton(*option)) {
                break;
            }
            const auto& box = as<QStyleOptionComboBox>(option);
            return drawComboBoxLabel(
                *painter, box, subControlRect(CC_ComboBox, &box, SC_ComboBoxEditField, widget));
        }
        case CE_PushButtonLabel: {
            QStyleOptionButton label = as<QStyleOptionButton>(option);
            label.palette.setColor(QPalette::ButtonText,
                                   buttonTextColor(label, kindOf(option, widget)));
            label.state &= ~State_Sunken;
            return QProxyStyle::drawControl(element, &label, painter, widget);
        }
        default:
            break;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void ChimewerkStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                        QPainter* painter, const QWidget* widget) const {
    switch (control) {
        case CC_ComboBox:
            if (isPopUpButton(*option)) {
                return paintPopUpButton(*painter, *option);
            }
            break;
        case CC_Slider: {
            const auto& slider = as<QStyleOptionSlider>(option);
            if (slider.orientation != Qt::Horizontal) {
                break;
            }
            const QRect handle = subControlRect(control, option, SC_SliderHandle, widget);
            paintSliderGroove(*painter, slider,
                              subControlRect(control, option, SC_SliderGroove, widget), handle);
            return paintSliderHandle(*painter, slider, handle);
        }
        case CC_ScrollBar:
            return paintScrollBar(*painter, as<QStyleOptionSlider>(option),
                                  subControlRect(control, option, SC_ScrollBarSlider, widget),
                                  ScrollBarFade::opacityOf(widget));
        default:
            break;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

void ChimewerkStyle::drawItemText(QPainter* painter, const QRect& rect, int flags,
                                  const QPalette& palette, bool enabled, const QString& text,
                                  QPalette::ColorRole textRole) const {
    if (!holdsEmoji(text)) {
        return QProxyStyle::drawItemText(painter, rect, flags, palette, enabled, text, textRole);
    }
    painter->save();
    if (textRole != QPalette::NoRole) {
        painter->setPen(palette.color(enabled ? QPalette::Normal : QPalette::Disabled, textRole));
    }
    drawText(*painter, rect, flags, text);
    painter->restore();
}

QSize ChimewerkStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                       const QSize& size, const QWidget* widget) const {
    switch (type) {
        case CT_PushButton: {
            const auto& button = as<QStyleOptionButton>(option);
            const int text =
                widget == nullptr ? size.width() : textWidth(widget->font(), button.text);
            return {std::max(text + 24, 28), std::max(size.height() + 10, 26)};
        }
        case CT_MenuItem:
            return sizeOfMenuItem(as<QStyleOptionMenuItem>(option));
        case CT_LineEdit:
            return {size.width() + 8, std::max(size.height() + 4, 24)};
        default:
            return QProxyStyle::sizeFromContents(type, option, size, widget);
    }
}

QRect ChimewerkStyle::subElementRect(SubElement element, const QStyleOption* option,
                                     const QWidget* widget) const {
    const QRect rect = QProxyStyle::subElementRect(element, option, widget);
    // With the two pixels that the field itself adds.
    constexpr int kFieldMargin = 5;
    return element == SE_LineEditContents ? rect.adjusted(kFieldMargin, 0, -kFieldMargin, 0) : rect;
}

QRect ChimewerkStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                     SubControl part, const QWidget* widget) const {
    const QRect& whole = option->rect;
    if (control == CC_ComboBox && isPopUpButton(*option)) {
        if (part == SC_ComboBoxEditField) {
            return visualRect(option->direction, whole, whole.adjusted(9, 0, -20, -1));
        }
        if (part == SC_ComboBoxListBoxPopup) {
            return whole;
        }
    }
    if (control == CC_ScrollBar) {
        return scrollBarPart(as<QStyleOptionSlider>(option), part,
                             pixelMetric(PM_ScrollBarSliderMin, option, widget));
    }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

int ChimewerkStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                                const QWidget* widget) const {
    switch (metric) {
        case PM_IndicatorWidth:
        case PM_IndicatorHeight:
            return 16;
        case PM_SliderLength:
        case PM_SliderThickness:
        case PM_SliderControlThickness:
            return 22;
        case PM_ScrollBarExtent:
            return 11;
        case PM_ScrollBarSliderMin:
            return 28;
        case PM_ButtonShiftHorizontal:
        case PM_ButtonShiftVertical:
            return 0;
        case PM_MenuVMargin:
            return 4;
        case PM_MenuPanelWidth:
            return 1;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int ChimewerkStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                              QStyleHintReturn* data) const {
    switch (hint) {
        case SH_Menu_Mask:
            // Cut, not translucent: that would be black where nothing composes the windows.
            if (auto* const mask = qstyleoption_cast<QStyleHintReturnMask*>(data)) {
                mask->region = roundedMenuShape(option->rect);
            }
            return 1;
        case SH_EtchDisabledText:
        case SH_UnderlineShortcut:
        case SH_DialogButtonBox_ButtonsHaveIcons:
            return 0;
        default:
            break;
    }
    return QProxyStyle::styleHint(hint, option, widget, data);
}

}  // namespace chimewerk
