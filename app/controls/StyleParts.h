// The parts of SonStyle, by kind of control. Each paints or measures one element and says whether it
// did; what no part knows is left to the style below.
#pragma once

#include <QRect>
#include <QSize>
#include <QStyle>
#include <optional>

class QPainter;
class QStyleOption;
class QStyleOptionComplex;
class QWidget;

namespace Sonarello {

/// Buttons, check and radio boxes.
namespace StyleButtons {
bool Primitive(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter);
bool Control(QStyle::ControlElement element, const QStyleOption& option, QPainter& painter,
             const QStyle& style);
std::optional<QSize> Size(QStyle::ContentsType type, const QStyleOption& option, QSize contents,
                          const QWidget* widget);
}  // namespace StyleButtons

/// Edit fields, combos, spin boxes, sliders.
namespace StyleFields {
bool Primitive(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter,
               const QWidget* widget);
bool Control(QStyle::ControlElement element, const QStyleOption& option, QPainter& painter,
             const QStyle& style);
bool Complex(QStyle::ComplexControl control, const QStyleOptionComplex& option, QPainter& painter,
             const QStyle& style);
std::optional<QRect> Part(QStyle::ComplexControl control, const QStyleOptionComplex& option,
                          QStyle::SubControl part);
std::optional<QSize> Size(QStyle::ContentsType type, const QStyleOption& option, QSize contents);
}  // namespace StyleFields

/// Lists, tables, their heads, scroll bars, tabs, progress bars, group boxes, frames.
namespace StyleLists {
bool Primitive(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter,
               const QWidget* widget);
bool Control(QStyle::ControlElement element, const QStyleOption& option, QPainter& painter,
             const QWidget* widget);
bool Complex(QStyle::ComplexControl control, const QStyleOptionComplex& option, QPainter& painter,
             const QStyle& style, const QWidget* widget);
std::optional<QRect> Part(QStyle::ComplexControl control, const QStyleOptionComplex& option,
                          QStyle::SubControl part);
std::optional<QSize> Size(QStyle::ContentsType type, const QStyleOption& option, QSize contents,
                          const QWidget* widget);
}  // namespace StyleLists

/// Menu bars, menus, tooltips.
namespace StyleMenus {
bool Primitive(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter);
bool Control(QStyle::ControlElement element, const QStyleOption& option, QPainter& painter);
std::optional<QSize> Size(QStyle::ContentsType type, const QStyleOption& option, QSize contents);
}  // namespace StyleMenus

}  // namespace Sonarello
