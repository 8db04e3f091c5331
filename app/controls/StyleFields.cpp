#include <QAbstractItemView>
#include <QStyleOption>
#include <QWidget>

#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/StyleParts.h"

namespace Sonarello::StyleFields {
namespace {

constexpr double arrowSide = 16, spinButtons = 24, comboArrow = 28;

bool Has(const QStyleOption& option, QStyle::StateFlag flag) { return (option.state & flag) != 0; }

void PaintField(const QStyleOption& option, QPainter& painter) {
  const Theme& t = th();
  const Metrics& m = metrics();
  if (!Has(option, QStyle::State_Enabled))
    PaintBox(painter, option.rect, m.f(4), t.bg2, t.line, m.hair());
  else if (Has(option, QStyle::State_HasFocus))
    PaintBox(painter, option.rect, m.f(4), t.well, t.acc, m.px(2));
  else
    PaintBox(painter, option.rect, m.f(4), t.well,
             Has(option, QStyle::State_MouseOver) ? t.tx3 : t.edge, m.hair());
}

QColor Ink(const QStyleOption& option) {
  return Has(option, QStyle::State_Enabled) ? th().tx1 : th().dis;
}

void PaintArrow(QPainter& painter, Icon icon, const QRectF& area, const QColor& ink, double side) {
  QRectF square(0, 0, metrics().f(side), metrics().f(side));
  square.moveCenter(area.center());
  PaintIcon(painter, icon, square, ink);
}

void PaintCombo(const QStyleOptionComboBox& combo, QPainter& painter, const QStyle& style) {
  if (combo.frame) PaintField(combo, painter);
  const QRectF arrow = style.subControlRect(QStyle::CC_ComboBox, &combo, QStyle::SC_ComboBoxArrow);
  PaintArrow(painter, Icon::Down, arrow, Ink(combo), arrowSide);
}

void PaintComboText(const QStyleOptionComboBox& combo, QPainter& painter, const QStyle& style) {
  if (combo.editable) return;
  const Metrics& m = metrics();
  QRect place = style.subControlRect(QStyle::CC_ComboBox, &combo, QStyle::SC_ComboBoxEditField);
  const PainterState state(painter);
  if (!combo.currentIcon.isNull()) {
    const QRect icon(place.left(), place.center().y() - combo.iconSize.height() / 2 + 1,
                     combo.iconSize.width(), combo.iconSize.height());
    combo.currentIcon.paint(&painter, icon, Qt::AlignCenter,
                            Has(combo, QStyle::State_Enabled) ? QIcon::Normal : QIcon::Disabled);
    place.setLeft(icon.right() + m.px(6));
  }
  painter.setPen(Ink(combo));
  painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft,
                   painter.fontMetrics().elidedText(combo.currentText, Qt::ElideRight, place.width()));
}

void PaintSpin(const QStyleOptionSpinBox& spin, QPainter& painter, const QStyle& style) {
  const Theme& t = th();
  if (spin.frame) PaintField(spin, painter);
  if (spin.buttonSymbols == QAbstractSpinBox::NoButtons) return;
  const QRect up = style.subControlRect(QStyle::CC_SpinBox, &spin, QStyle::SC_SpinBoxUp);
  const QRect down = style.subControlRect(QStyle::CC_SpinBox, &spin, QStyle::SC_SpinBoxDown);
  PaintHairline(painter, QLineF(up.left(), up.top(), up.left(), down.bottom() + 1),
                Has(spin, QStyle::State_Enabled) ? t.edge : t.line);
  const auto arrow = [&](const QRect& area, Icon icon, QStyle::SubControl part,
                         QAbstractSpinBox::StepEnabledFlag step) {
    const bool able = Has(spin, QStyle::State_Enabled) && (spin.stepEnabled & step) != 0;
    const bool over = able && spin.activeSubControls == part && Has(spin, QStyle::State_MouseOver);
    if (over)
      painter.fillRect(area.adjusted(1, 0, 0, 0), Has(spin, QStyle::State_Sunken) ? t.bg3p : t.bg3);
    PaintArrow(painter, icon, area, able ? t.tx2 : t.dis, 11);
  };
  arrow(up, Icon::Up, QStyle::SC_SpinBoxUp, QAbstractSpinBox::StepUpEnabled);
  arrow(down, Icon::Down, QStyle::SC_SpinBoxDown, QAbstractSpinBox::StepDownEnabled);
}

void PaintSlider(const QStyleOptionSlider& slider, QPainter& painter, const QStyle& style) {
  const Theme& t = th();
  const Metrics& m = metrics();
  const bool enabled = Has(slider, QStyle::State_Enabled), level = slider.orientation == Qt::Horizontal;
  const QRectF handle = style.subControlRect(QStyle::CC_Slider, &slider, QStyle::SC_SliderHandle);
  const QRectF area(slider.rect);
  const double track = m.px(4);
  QRectF groove = level ? QRectF(area.left(), area.center().y() - track / 2, area.width(), track)
                        : QRectF(area.center().x() - track / 2, area.top(), track, area.height());
  PaintBox(painter, groove, m.f(2), t.track, QColor());
  if (level && !slider.upsideDown)
    groove.setRight(handle.center().x());
  else if (level)
    groove.setLeft(handle.center().x());
  else
    groove.setTop(handle.center().y());
  PaintBox(painter, groove, m.f(2), enabled ? t.acc : t.dis, QColor());
  const PainterState state(painter);
  if (!enabled) painter.setOpacity(0.34);
  if (!level) {  // the same cap, turned
    painter.translate(handle.center());
    painter.rotate(90);
    painter.translate(-handle.center());
  }
  const double width = m.px(12), height = m.px(18);
  const QRectF cap(handle.center().x() - width / 2, handle.center().y() - height / 2, width, height);
  QLinearGradient face(cap.topLeft(), cap.bottomLeft());
  face.setColorAt(0, t.cap1);
  face.setColorAt(1, t.cap2);
  PaintBox(painter, cap, m.f(3), face, t.caped, m.hair());
  painter.fillRect(
      QRectF(cap.center().x() - m.px(2) / 2.0, cap.center().y() - m.px(10) / 2.0, m.px(2), m.px(10)),
      t.capline);
}

QRect ComboPart(const QStyleOptionComboBox& combo, QStyle::SubControl part) {
  const Metrics& m = metrics();
  const QRect all = combo.rect;
  const int arrow = m.px(comboArrow);
  QRect rect = all;
  if (part == QStyle::SC_ComboBoxArrow)
    rect = QRect(all.right() + 1 - arrow, all.top(), arrow, all.height());
  if (part == QStyle::SC_ComboBoxEditField) {
    const int side = combo.editable ? m.px(2) : m.px(10);  // an edit field has a margin of its own
    rect = all.adjusted(side, m.px(2), -arrow, -m.px(2));
  }
  return QStyle::visualRect(combo.direction, all, rect);
}

QRect SpinPart(const QStyleOptionSpinBox& spin, QStyle::SubControl part) {
  const Metrics& m = metrics();
  const QRect all = spin.rect;
  const int width = spin.buttonSymbols == QAbstractSpinBox::NoButtons ? 0 : m.px(spinButtons),
            border = m.px(2);
  const QRect buttons(all.right() + 1 - width, all.top() + border, width - border,
                      all.height() - 2 * border);
  QRect rect = all;
  if (part == QStyle::SC_SpinBoxUp) rect = buttons.adjusted(0, 0, 0, -buttons.height() / 2);
  if (part == QStyle::SC_SpinBoxDown)
    rect = buttons.adjusted(0, buttons.height() - buttons.height() / 2, 0, 0);
  if (part == QStyle::SC_SpinBoxEditField)
    rect = all.adjusted(border, border, -std::max(width, border), -border);
  return QStyle::visualRect(spin.direction, all, rect);
}

}  // namespace

bool Primitive(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter,
               const QWidget* widget) {
  const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
  switch (element) {
    case QStyle::PE_PanelLineEdit: {
      if (frame == nullptr || frame->lineWidth <= 0) return true;  // inside of a combo or spin box
      const QWidget* parent = widget != nullptr ? widget->parentWidget() : nullptr;
      const bool inCell = parent != nullptr &&
                          qobject_cast<const QAbstractItemView*>(parent->parentWidget()) != nullptr;
      if (inCell)
        PaintBox(painter, option.rect, 0, th().well, th().acc, metrics().px(2));
      else
        PaintField(option, painter);
      return true;
    }
    case QStyle::PE_FrameLineEdit: return true;
    case QStyle::PE_IndicatorArrowDown:
    case QStyle::PE_IndicatorArrowUp:
    case QStyle::PE_IndicatorArrowRight:
      PaintArrow(painter,
                 element == QStyle::PE_IndicatorArrowDown ? Icon::Down
                 : element == QStyle::PE_IndicatorArrowUp ? Icon::Up
                                                          : Icon::Right,
                 option.rect, Ink(option), std::min(arrowSide, option.rect.height() / metrics().k()));
      return true;
    default: return false;
  }
}

bool Control(QStyle::ControlElement element, const QStyleOption& option, QPainter& painter,
             const QStyle& style) {
  const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(&option);
  if (element != QStyle::CE_ComboBoxLabel || combo == nullptr) return false;
  PaintComboText(*combo, painter, style);
  return true;
}

bool Complex(QStyle::ComplexControl control, const QStyleOptionComplex& option, QPainter& painter,
             const QStyle& style) {
  const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(&option);
  const auto* spin = qstyleoption_cast<const QStyleOptionSpinBox*>(&option);
  const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(&option);
  if (control == QStyle::CC_ComboBox && combo != nullptr)
    PaintCombo(*combo, painter, style);
  else if (control == QStyle::CC_SpinBox && spin != nullptr)
    PaintSpin(*spin, painter, style);
  else if (control == QStyle::CC_Slider && slider != nullptr)
    PaintSlider(*slider, painter, style);
  else
    return false;
  return true;
}

std::optional<QRect> Part(QStyle::ComplexControl control, const QStyleOptionComplex& option,
                          QStyle::SubControl part) {
  if (control == QStyle::CC_ComboBox && part != QStyle::SC_ComboBoxListBoxPopup)
    if (const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(&option))
      return ComboPart(*combo, part);
  if (control == QStyle::CC_SpinBox)
    if (const auto* spin = qstyleoption_cast<const QStyleOptionSpinBox*>(&option))
      return SpinPart(*spin, part);
  return std::nullopt;
}

std::optional<QSize> Size(QStyle::ContentsType type, const QStyleOption&, QSize contents) {
  const Metrics& m = metrics();
  switch (type) {
    case QStyle::CT_ComboBox: return QSize(contents.width() + m.px(10) + m.px(comboArrow), m.px(28));
    case QStyle::CT_LineEdit: return QSize(contents.width() + 2 * m.px(8), m.px(28));
    case QStyle::CT_SpinBox: return QSize(contents.width() + m.px(spinButtons) + m.px(16), m.px(28));
    default: return std::nullopt;
  }
}

}  // namespace Sonarello::StyleFields
