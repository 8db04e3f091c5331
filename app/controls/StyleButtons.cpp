#include <QDialogButtonBox>
#include <QStyleOption>
#include <QWidget>

#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/StyleParts.h"

namespace Sonarello::StyleButtons {
namespace {

bool Has(const QStyleOption& option, QStyle::StateFlag flag) { return (option.state & flag) != 0; }

bool IsDefault(const QStyleOption& option) {
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  return button != nullptr && (button->features & QStyleOptionButton::DefaultButton) != 0;
}

struct Look {
  QColor face, border, ink;
};

Look LookOf(const QStyleOption& option) {
  const Theme& t = th();
  const bool enabled = Has(option, QStyle::State_Enabled), on = Has(option, QStyle::State_On);
  if (!enabled) return {t.bg2, t.line, t.dis};
  const bool sunken = Has(option, QStyle::State_Sunken), over = Has(option, QStyle::State_MouseOver);
  if (IsDefault(option)) {
    const QColor face = sunken ? Mixed(Qt::black, 0.2, t.accd)
                        : over ? Mixed(Qt::white, 0.08, t.accd)
                               : t.accd;
    return {face, face, t.onaccd};
  }
  if (on) return {sunken ? t.bg3p : t.accbg, t.acc, t.acc};
  return {sunken ? t.bg3p : over ? t.bg3h : t.bg3, t.line2, t.tx1};
}

void PaintFace(const QStyleOption& option, QPainter& painter) {
  const Look look = LookOf(option);
  PaintBox(painter, option.rect, metrics().f(4), look.face, look.border, metrics().hair());
}

/// A tool button without a frame of its own shows one only under the pointer and while it is on.
void PaintToolFace(const QStyleOption& option, QPainter& painter) {
  const bool bare = Has(option, QStyle::State_AutoRaise) && !Has(option, QStyle::State_On) &&
                    !Has(option, QStyle::State_Sunken) && !Has(option, QStyle::State_MouseOver);
  if (!bare) PaintFace(option, painter);
}

void PaintCheckBox(const QStyleOption& option, QPainter& painter) {
  const Theme& t = th();
  const Metrics& m = metrics();
  const QRectF box(option.rect);
  const bool enabled = Has(option, QStyle::State_Enabled);
  const bool on = Has(option, QStyle::State_On), some = Has(option, QStyle::State_NoChange);
  if (!on && !some) {
    const QColor border = !enabled ? t.line : Has(option, QStyle::State_MouseOver) ? t.tx3 : t.edge;
    PaintBox(painter, box, m.f(3), enabled ? t.well : t.bg2, border, m.hair());
    return;
  }
  const QColor face = enabled ? t.accd : t.line2;
  PaintBox(painter, box, m.f(3), face, face, m.hair());
  const PainterState state(painter);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(t.onaccd, m.px(2), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  const auto at = [&](double x, double y) { return box.topLeft() + QPointF(m.f(x), m.f(y)); };
  if (some)
    painter.drawLine(at(4.5, 8), at(11.5, 8));
  else
    painter.drawPolyline(QPolygonF{{at(4, 8.4), at(6.8, 11.2), at(12.2, 5.2)}});
}

void PaintRadio(const QStyleOption& option, QPainter& painter) {
  const Theme& t = th();
  const Metrics& m = metrics();
  const bool enabled = Has(option, QStyle::State_Enabled), on = Has(option, QStyle::State_On);
  const PainterState state(painter);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPointF centre = QRectF(option.rect).center();
  const double radius = option.rect.width() / 2.0;
  const QColor border = !enabled                               ? t.line
                        : on                                   ? t.acc
                        : Has(option, QStyle::State_MouseOver) ? t.tx3
                                                               : t.edge;
  painter.setPen(QPen(border, m.hair()));
  painter.setBrush(enabled ? t.well : t.bg2);
  painter.drawEllipse(centre, radius - 0.5, radius - 0.5);
  if (!on) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(enabled ? t.acc : t.dis);
  painter.drawEllipse(centre, m.f(4), m.f(4));
}

void PaintLabel(const QStyleOptionButton& button, QPainter& painter, const QStyle& style) {
  const Metrics& m = metrics();
  const PainterState state(painter);
  const QColor ink = LookOf(button).ink;
  painter.setPen(ink);
  if (IsDefault(button)) {
    QFont font = painter.font();
    font.setWeight(QFont::Medium);
    painter.setFont(font);
  }
  const int arrow = (button.features & QStyleOptionButton::HasMenu) != 0
                        ? style.pixelMetric(QStyle::PM_MenuButtonIndicator, &button) - m.px(4)
                        : 0;
  const bool hasIcon = !button.icon.isNull(), hasText = !button.text.isEmpty();
  const int gap = hasIcon && hasText ? m.px(6) : 0;
  const QSize icon = hasIcon ? button.iconSize : QSize(0, 0);
  const int flags =
      Qt::AlignVCenter | Qt::TextShowMnemonic |
      (style.styleHint(QStyle::SH_UnderlineShortcut, &button) != 0 ? 0 : Qt::TextHideMnemonic);
  const int text = hasText ? painter.fontMetrics().size(Qt::TextShowMnemonic, button.text).width() : 0;
  const int free = button.rect.width() - icon.width() - gap - text - arrow;
  const int left = button.rect.left() + std::max(free / 2, 0);
  if (hasIcon) {
    const QRect place(left, button.rect.center().y() - icon.height() / 2 + 1, icon.width(),
                      icon.height());
    const bool enabled = Has(button, QStyle::State_Enabled);
    button.icon.paint(&painter, place, Qt::AlignCenter, enabled ? QIcon::Normal : QIcon::Disabled,
                      Has(button, QStyle::State_On) ? QIcon::On : QIcon::Off);
  }
  const QRect place(left + icon.width() + gap, button.rect.top(), text + 1, button.rect.height());
  painter.drawText(place, flags, button.text);
}

}  // namespace

bool Primitive(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter) {
  switch (element) {
    case QStyle::PE_PanelButtonCommand:
    case QStyle::PE_PanelButtonBevel: PaintFace(option, painter); return true;
    case QStyle::PE_PanelButtonTool: PaintToolFace(option, painter); return true;
    case QStyle::PE_FrameButtonTool:
    case QStyle::PE_FrameDefaultButton: return true;
    case QStyle::PE_IndicatorCheckBox:
    case QStyle::PE_IndicatorItemViewItemCheck: PaintCheckBox(option, painter); return true;
    case QStyle::PE_IndicatorRadioButton: PaintRadio(option, painter); return true;
    default: return false;
  }
}

bool Control(QStyle::ControlElement element, const QStyleOption& option, QPainter& painter,
             const QStyle& style) {
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  if (button == nullptr) return false;
  if (element == QStyle::CE_PushButtonLabel) {
    PaintLabel(*button, painter, style);
    return true;
  }
  if (element == QStyle::CE_PushButtonBevel) {
    PaintFace(option, painter);
    if ((button->features & QStyleOptionButton::HasMenu) != 0) {
      const int side = metrics().px(16);
      const QRectF arrow(option.rect.right() - metrics().px(8) - side,
                         option.rect.center().y() - side / 2.0 + 0.5, side, side);
      PaintIcon(painter, Icon::Down, arrow, LookOf(option).ink);
    }
    return true;
  }
  return false;
}

std::optional<QSize> Size(QStyle::ContentsType type, const QStyleOption& option, QSize contents,
                          const QWidget* widget) {
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  if (type != QStyle::CT_PushButton || button == nullptr) return std::nullopt;
  const Metrics& m = metrics();
  int width = contents.width() + 2 * m.px(12);
  if (!button->icon.isNull() && !button->text.isEmpty()) width += m.px(6) - 4;  // Qt has counted 4
  if (IsDefault(option)) width += m.px(6);                                      // room for the weight
  if (widget != nullptr && qobject_cast<QDialogButtonBox*>(widget->parentWidget()) != nullptr)
    width = std::max(width, m.px(104));
  return QSize(width, std::max(m.px(28), contents.height() + m.px(8)));
}

}  // namespace Sonarello::StyleButtons
