#include <QMenu>
#include <QStyleOption>

#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/StyleParts.h"

namespace Sonarello::StyleMenus {
namespace {

constexpr double rowHeight = 26, separatorHeight = 9, iconColumn = 28, rightSide = 28,
                 gapToShortcut = 24;

bool Has(const QStyleOption& option, QStyle::StateFlag flag) { return (option.state & flag) != 0; }

/// Entry and shortcut, which Qt hands over in one text.
std::pair<QString, QString> Split(const QString& text) {
  const qsizetype tab = text.indexOf(QLatin1Char('\t'));
  return tab < 0 ? std::pair{text, QString()} : std::pair{text.left(tab), text.mid(tab + 1)};
}

void PaintMark(const QStyleOptionMenuItem& item, QPainter& painter, const QColor& ink) {
  const Metrics& m = metrics();
  QRectF square(0, 0, m.px(14), m.px(14));
  square.moveCenter(QPointF(item.rect.left() + m.px(iconColumn) / 2.0, QRectF(item.rect).center().y()));
  if (item.checkType != QStyleOptionMenuItem::NotCheckable && item.checked) {
    const PainterState state(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto at = [&](double x, double y) { return square.topLeft() + QPointF(m.f(x), m.f(y)); };
    if (item.checkType == QStyleOptionMenuItem::Exclusive) {
      painter.setPen(Qt::NoPen);
      painter.setBrush(Has(item, QStyle::State_Enabled) ? th().acc : ink);
      painter.drawEllipse(square.center(), m.f(4), m.f(4));
    } else {
      painter.setPen(QPen(Has(item, QStyle::State_Enabled) ? th().acc : ink, m.px(2), Qt::SolidLine,
                          Qt::RoundCap, Qt::RoundJoin));
      painter.drawPolyline(QPolygonF{{at(2.5, 7.4), at(5.6, 10.5), at(11.5, 3.8)}});
    }
  } else if (!item.icon.isNull()) {
    item.icon.paint(&painter, square.toRect(), Qt::AlignCenter,
                    Has(item, QStyle::State_Enabled) ? QIcon::Normal : QIcon::Disabled);
  }
}

/// A separator with a text is the head line of a popup.
void PaintSeparator(const QStyleOptionMenuItem& item, QPainter& painter) {
  const Metrics& m = metrics();
  const QRectF row(item.rect);
  if (item.text.isEmpty()) {
    PaintHairline(
        painter,
        QLineF(row.left(), row.top() + row.height() / 2, row.right(), row.top() + row.height() / 2),
        th().line2);
    return;
  }
  const PainterState state(painter);
  painter.setFont(m.font(Role::Strong));
  painter.setPen(th().tx2);
  painter.drawText(row.adjusted(m.px(12), 0, -m.px(12), 0), Qt::AlignVCenter | Qt::TextHideMnemonic,
                   item.text);
  PaintHairline(painter, QLineF(row.left(), row.bottom() - 1, row.right(), row.bottom() - 1),
                th().line2);
}

void PaintItem(const QStyleOptionMenuItem& item, QPainter& painter) {
  const Theme& t = th();
  const Metrics& m = metrics();
  if (item.menuItemType == QStyleOptionMenuItem::Separator) {
    PaintSeparator(item, painter);
    return;
  }
  const bool enabled = Has(item, QStyle::State_Enabled);
  const QColor ink = enabled ? t.tx1 : t.dis;
  if (Has(item, QStyle::State_Selected) && enabled) painter.fillRect(item.rect, t.sel);
  PaintMark(item, painter, ink);
  const PainterState state(painter);
  painter.setFont(item.font);
  const auto [entry, shortcut] = Split(item.text);
  const QRect text = item.rect.adjusted(m.px(iconColumn), 0, -m.px(rightSide) / 2, 0);
  painter.setPen(ink);
  painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextHideMnemonic, entry);
  painter.setPen(enabled ? t.tx3 : t.dis);
  painter.drawText(text, Qt::AlignVCenter | Qt::AlignRight, shortcut);
  if (item.menuItemType == QStyleOptionMenuItem::SubMenu) {
    QRectF arrow(0, 0, m.px(14), m.px(14));
    arrow.moveCenter(QPointF(item.rect.right() - m.px(12), QRectF(item.rect).center().y()));
    PaintIcon(painter, Icon::Right, arrow, ink);
  }
}

void PaintBarItem(const QStyleOptionMenuItem& item, QPainter& painter) {
  const Theme& t = th();
  painter.fillRect(item.rect, t.bg1);
  const bool enabled = Has(item, QStyle::State_Enabled);
  if (enabled && Has(item, QStyle::State_Selected)) {
    const int side = metrics().px(3);
    PaintBox(painter, QRectF(item.rect).adjusted(0, side, 0, -side), metrics().f(4),
             Has(item, QStyle::State_Sunken) ? t.sel : t.bg3, QColor());
  }
  const PainterState state(painter);
  painter.setPen(enabled ? t.tx1 : t.dis);
  painter.drawText(item.rect, Qt::AlignCenter | Qt::TextHideMnemonic, item.text);
}

}  // namespace

bool Primitive(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter) {
  const Theme& t = th();
  switch (element) {
    case QStyle::PE_PanelMenu:
      painter.fillRect(option.rect, t.bg2);
      PaintBox(painter, option.rect, metrics().f(6), t.bg2, t.line2, metrics().hair());
      return true;
    case QStyle::PE_FrameMenu: return true;
    case QStyle::PE_PanelTipLabel:
      painter.fillRect(option.rect, t.bg3);
      PaintBox(painter, option.rect, metrics().f(4), t.bg3, t.line2, metrics().hair());
      return true;
    case QStyle::PE_PanelMenuBar:
    case QStyle::PE_FrameStatusBarItem: return true;
    default: return false;
  }
}

bool Control(QStyle::ControlElement element, const QStyleOption& option, QPainter& painter) {
  const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(&option);
  switch (element) {
    case QStyle::CE_MenuItem:
      if (item != nullptr) PaintItem(*item, painter);
      return item != nullptr;
    case QStyle::CE_MenuBarItem:
      if (item != nullptr) PaintBarItem(*item, painter);
      return item != nullptr;
    case QStyle::CE_MenuBarEmptyArea: painter.fillRect(option.rect, th().bg1); return true;
    case QStyle::CE_MenuEmptyArea: painter.fillRect(option.rect, th().bg2); return true;
    case QStyle::CE_MenuTearoff:
    case QStyle::CE_SizeGrip: return true;
    default: return false;
  }
}

std::optional<QSize> Size(QStyle::ContentsType type, const QStyleOption& option, QSize contents) {
  const Metrics& m = metrics();
  const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(&option);
  if (type == QStyle::CT_MenuBarItem) return QSize(contents.width() + 2 * m.px(11), m.px(28));
  if (type != QStyle::CT_MenuItem || item == nullptr) return std::nullopt;
  if (item->menuItemType == QStyleOptionMenuItem::Separator && item->text.isEmpty())
    return QSize(contents.width(), m.px(separatorHeight));
  const QFontMetrics measure(
      item->menuItemType == QStyleOptionMenuItem::Separator ? m.font(Role::Strong) : item->font);
  const auto [entry, shortcut] = Split(item->text);
  int width = m.px(iconColumn) + measure.size(Qt::TextShowMnemonic, entry).width() + m.px(rightSide);
  // Qt adds the widest shortcut of the menu by itself.
  if (!shortcut.isEmpty()) width += m.px(gapToShortcut);
  return QSize(width, m.px(rowHeight));
}

}  // namespace Sonarello::StyleMenus
