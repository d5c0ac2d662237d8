#pragma once

#include <QProxyStyle>

namespace chimewerk {

/// The name of a property of a push button: true where a click destroys something.
inline constexpr char kDestructive[] = "chimewerkDestructive";

/// How the controls of all our windows look, in light and in dark, whatever the desktop's style is: rounded
/// shapes, one accent colour, a ring around what has the keyboard. Texts show their emoji in colour. To be
/// given to QApplication::setStyle() before the application is made, so that no other style is loaded.
class ChimewerkStyle final : public QProxyStyle {
public:
    ChimewerkStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;
    void drawItemText(QPainter* painter, const QRect& rect, int flags, const QPalette& palette,
                      bool enabled, const QString& text,
                      QPalette::ColorRole textRole) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;
};

}  // namespace chimewerk
