// The look of the standard controls: menus, buttons, fields, lists, tables, scroll bars.
#pragma once

#include <QProxyStyle>

class QApplication;

namespace Sonarello {

/// Paints standard controls in the colours of th() and the lengths of metrics().
class SonStyle : public QProxyStyle {
  Q_OBJECT

 public:
  SonStyle();

  void polish(QPalette& palette) override;
  void polish(QWidget* widget) override;
  using QProxyStyle::polish;

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
  QRect subElementRect(SubElement element, const QStyleOption* option,
                       const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                         const QWidget* widget) const override;
  /// The icons of message boxes.
  QIcon standardIcon(StandardPixmap pixmap, const QStyleOption* option,
                     const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* result) const override;
};

/// Gives an application its style, theme and font; call it once, before the first window.
void DressApplication(QApplication& application);

}  // namespace Sonarello
