#include <QAbstractItemView>
#include <QHeaderView>
#include <QStyleOption>
#include <QTableView>

#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/StyleParts.h"

namespace Sonarello::StyleLists {
namespace {

constexpr double titleTop = 14, titleSide = 16, contentTop = 42;  // of a group box

bool Has(const QStyleOption& option, QStyle::StateFlag flag) { return (option.state & flag) != 0; }

bool IsTable(const QWidget* widget) { return qobject_cast<const QTableView*>(widget) != nullptr; }

/// Selection looks the same whether the list has the focus or not.
void PaintCell(const QStyleOptionViewItem& cell, QPainter& painter, const QWidget* widget) {
  const Theme& t = th();
  const Metrics& m = metrics();
  if (cell.backgroundBrush.style() != Qt::NoBrush) painter.fillRect(cell.rect, cell.backgroundBrush);
  const bool table = IsTable(widget);
  if (Has(cell, QStyle::State_Selected)) {
    painter.fillRect(cell.rect, t.sel);
    const bool first = cell.viewItemPosition == QStyleOptionViewItem::Beginning ||
                       cell.viewItemPosition == QStyleOptionViewItem::OnlyOne;
    const auto* tableView = qobject_cast<const QTableView*>(widget);
    if ((!table || !tableView->showGrid()) &&
        (first || cell.viewItemPosition == QStyleOptionViewItem::Invalid))
      painter.fillRect(QRect(cell.rect.left(), cell.rect.top(), m.px(3), cell.rect.height()), t.acc);
  } else if (Has(cell, QStyle::State_MouseOver) && Has(cell, QStyle::State_Enabled) && !table) {
    painter.fillRect(cell.rect, Mixed(t.bg3, 0.5, t.row));
  }
  if (table && Has(cell, QStyle::State_HasFocus))
    PaintBox(painter, cell.rect, 0, Qt::NoBrush, t.acc, m.hair());
}

void PaintRow(const QStyleOptionViewItem& row, QPainter& painter) {
  const bool second = (row.features & QStyleOptionViewItem::Alternate) != 0;
  painter.fillRect(row.rect, second ? th().rowalt : th().row);
}

void PaintHead(const QStyleOption& option, QPainter& painter) {
  const Theme& t = th();
  const auto* head = qstyleoption_cast<const QStyleOptionHeader*>(&option);
  painter.fillRect(option.rect, Has(option, QStyle::State_MouseOver) && head != nullptr &&
                                        Has(option, QStyle::State_Enabled) &&
                                        Has(option, QStyle::State_Sunken)
                                    ? t.bg3p
                                    : t.bg2);
  const QRectF area(option.rect);
  PaintHairline(painter, QLineF(area.left(), area.bottom() - 1, area.right(), area.bottom() - 1),
                t.line);
}

void PaintHeadText(const QStyleOptionHeader& head, QPainter& painter) {
  const Metrics& m = metrics();
  const PainterState state(painter);
  painter.setFont(m.font(Role::ToolTip));
  painter.setPen(th().tx2);
  const int arrow = head.sortIndicator == QStyleOptionHeader::None ? 0 : m.px(14);
  const QRect place = head.rect.adjusted(0, 0, -arrow, 0);
  const Qt::Alignment side = head.textAlignment & (Qt::AlignLeft | Qt::AlignRight | Qt::AlignHCenter);
  painter.drawText(place, int(side) | Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(head.text, Qt::ElideRight, place.width()));
}

void PaintScrollBar(const QStyleOptionSlider& bar, QPainter& painter, const QStyle& style) {
  const Theme& t = th();
  const Metrics& m = metrics();
  painter.fillRect(bar.rect, t.row);
  if (bar.minimum >= bar.maximum) return;
  QRectF handle = style.subControlRect(QStyle::CC_ScrollBar, &bar, QStyle::SC_ScrollBarSlider);
  const double width = m.px(7);
  if (bar.orientation == Qt::Vertical)
    handle = QRectF(bar.rect.left() + (bar.rect.width() - width) / 2.0, handle.top() + 2, width,
                    handle.height() - 4);
  else
    handle = QRectF(handle.left() + 2, bar.rect.top() + (bar.rect.height() - width) / 2.0,
                    handle.width() - 4, width);
  const bool held = bar.activeSubControls == QStyle::SC_ScrollBarSlider;
  const QColor face = held && Has(bar, QStyle::State_Sunken)      ? t.tx3
                      : held && Has(bar, QStyle::State_MouseOver) ? t.edge
                                                                  : t.line2;
  PaintBox(painter, handle, width / 2, face, QColor());
}

/// The lane of a scroll bar holds nothing but its handle.
QRect ScrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part) {
  const bool upright = bar.orientation == Qt::Vertical;
  const int length = upright ? bar.rect.height() : bar.rect.width();
  const int range = bar.maximum - bar.minimum;
  int handle = length;
  if (range > 0) {
    handle = int(qint64(bar.pageStep) * length / std::max<qint64>(qint64(range) + bar.pageStep, 1));
    handle = std::min(std::max(handle, metrics().px(32)), length);
  }
  const int start = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                    length - handle, bar.upsideDown);
  const auto piece = [&](int from, int size) {
    return upright ? QRect(bar.rect.left(), bar.rect.top() + from, bar.rect.width(), size)
                   : QRect(bar.rect.left() + from, bar.rect.top(), size, bar.rect.height());
  };
  switch (part) {
    case QStyle::SC_ScrollBarSlider: return piece(start, handle);
    case QStyle::SC_ScrollBarGroove: return piece(0, length);
    case QStyle::SC_ScrollBarSubPage: return piece(0, start);
    case QStyle::SC_ScrollBarAddPage: return piece(start + handle, length - start - handle);
    default: return {};
  }
}

void PaintGroup(const QStyleOptionGroupBox& group, QPainter& painter, const QStyle& style,
                const QWidget* widget) {
  const Theme& t = th();
  const Metrics& m = metrics();
  PaintBox(painter, group.rect, m.f(6), t.bg1, t.line, m.hair());
  const PainterState state(painter);
  if ((group.subControls & QStyle::SC_GroupBoxCheckBox) != 0) {
    QStyleOptionButton box;
    box.QStyleOption::operator=(group);
    box.rect = style.subControlRect(QStyle::CC_GroupBox, &group, QStyle::SC_GroupBoxCheckBox, widget);
    style.drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, &painter, widget);
  }
  painter.setFont(m.font(Role::Title));
  painter.setPen(Has(group, QStyle::State_Enabled) ? t.tx1 : t.dis);
  painter.drawText(style.subControlRect(QStyle::CC_GroupBox, &group, QStyle::SC_GroupBoxLabel, widget),
                   Qt::AlignLeft | Qt::AlignVCenter | Qt::TextHideMnemonic, group.text);
}

QRect GroupPart(const QStyleOptionGroupBox& group, QStyle::SubControl part) {
  const Metrics& m = metrics();
  const QRect all = group.rect;
  const bool box = (group.subControls & QStyle::SC_GroupBoxCheckBox) != 0,
             titled = box || !group.text.isEmpty();
  const int side = m.px(titleSide), top = m.px(titleTop), mark = m.px(16);
  switch (part) {
    case QStyle::SC_GroupBoxFrame: return all;
    case QStyle::SC_GroupBoxContents:
      return all.adjusted(0, titled ? m.px(contentTop) - m.px(12) : 0, 0, 0);
    case QStyle::SC_GroupBoxCheckBox: return QRect(all.left() + side, all.top() + top, mark, mark);
    case QStyle::SC_GroupBoxLabel: {
      const int left = all.left() + side + (box ? mark + m.px(8) : 0);
      const int width =
          QFontMetrics(m.font(Role::Title)).size(Qt::TextShowMnemonic, group.text).width() + 1;
      return QRect(left, all.top() + top - m.px(1), std::min(width, all.right() - left), m.px(18));
    }
    default: return all;
  }
}

void PaintTab(const QStyleOptionTab& tab, QPainter& painter) {
  const Theme& t = th();
  const Metrics& m = metrics();
  const QRectF area(tab.rect);
  if (Has(tab, QStyle::State_Selected)) {
    painter.fillRect(area, t.bg1);
    painter.fillRect(QRectF(area.left(), area.bottom() - m.px(3), area.width(), m.px(3)), t.acc);
  } else if (Has(tab, QStyle::State_MouseOver) && Has(tab, QStyle::State_Enabled)) {
    painter.fillRect(area, t.bg2);
  }
}

void PaintTabText(const QStyleOptionTab& tab, QPainter& painter) {
  const Theme& t = th();
  const PainterState state(painter);
  const bool chosen = Has(tab, QStyle::State_Selected);
  painter.setPen(!Has(tab, QStyle::State_Enabled) ? t.dis : chosen ? t.tx1 : t.tx2);
  painter.setFont(metrics().font(chosen ? Role::Strong : Role::Body));
  painter.drawText(tab.rect, Qt::AlignCenter | Qt::TextHideMnemonic, tab.text);
  if (Has(tab, QStyle::State_HasFocus))
    PaintFocusRing(painter, QRectF(tab.rect).adjusted(2, 2, -2, -2), metrics().f(4));
}

void PaintProgress(const QStyleOptionProgressBar& bar, QPainter& painter) {
  const double radius = std::min(metrics().f(3), bar.rect.height() / 2.0);
  const double span = double(bar.maximum) - bar.minimum;
  const double share = span > 0 ? std::clamp((double(bar.progress) - bar.minimum) / span, 0.0, 1.0) : 0;
  if (share > 0)
    PaintBox(painter,
             QRectF(bar.rect.left(), bar.rect.top(), bar.rect.width() * share, bar.rect.height()),
             radius, th().acc, QColor());
}

}  // namespace

bool Primitive(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter,
               const QWidget* widget) {
  const Theme& t = th();
  const Metrics& m = metrics();
  const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(&option);
  switch (element) {
    case QStyle::PE_PanelItemViewItem:
      if (item != nullptr) PaintCell(*item, painter, widget);
      return item != nullptr;
    case QStyle::PE_PanelItemViewRow:
      if (item != nullptr) PaintRow(*item, painter);
      return item != nullptr;
    case QStyle::PE_FrameFocusRect: return true;
    case QStyle::PE_Frame:
      PaintBox(painter, option.rect, m.f(4), Qt::NoBrush, t.line, m.hair());
      return true;
    case QStyle::PE_FrameTabWidget:
      PaintBox(painter, option.rect, m.f(6), t.bg1, t.line, m.hair());
      return true;
    case QStyle::PE_FrameTabBarBase: return true;
    case QStyle::PE_PanelScrollAreaCorner: painter.fillRect(option.rect, t.row); return true;
    case QStyle::PE_IndicatorHeaderArrow: {
      const auto* head = qstyleoption_cast<const QStyleOptionHeader*>(&option);
      const bool down = head != nullptr && head->sortIndicator == QStyleOptionHeader::SortDown;
      PaintIcon(painter, down ? Icon::Down : Icon::Up, option.rect, t.tx2);
      return true;
    }
    default: return false;
  }
}

bool Control(QStyle::ControlElement element, const QStyleOption& option, QPainter& painter,
             const QWidget*) {
  switch (element) {
    case QStyle::CE_HeaderSection:
    case QStyle::CE_HeaderEmptyArea: PaintHead(option, painter); return true;
    case QStyle::CE_HeaderLabel:
      if (const auto* head = qstyleoption_cast<const QStyleOptionHeader*>(&option))
        PaintHeadText(*head, painter);
      return true;
    case QStyle::CE_TabBarTabShape:
      if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(&option)) PaintTab(*tab, painter);
      return true;
    case QStyle::CE_TabBarTabLabel:
      if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(&option))
        PaintTabText(*tab, painter);
      return true;
    case QStyle::CE_ProgressBarGroove:
      PaintBox(painter, option.rect, std::min(metrics().f(3), option.rect.height() / 2.0), th().moff,
               QColor());
      return true;
    case QStyle::CE_ProgressBarContents:
      if (const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(&option))
        PaintProgress(*bar, painter);
      return true;
    case QStyle::CE_Splitter: {
      const QPointF middle = QRectF(option.rect).center();
      const bool upright = option.rect.height() > option.rect.width();
      const double half = metrics().f(10), thick = metrics().f(1);
      const QRectF grip = upright ? QRectF(middle.x() - thick, middle.y() - half, 2 * thick, 2 * half)
                                  : QRectF(middle.x() - half, middle.y() - thick, 2 * half, 2 * thick);
      PaintBox(painter, grip, thick, th().line2, QColor());
      return true;
    }
    default: return false;
  }
}

bool Complex(QStyle::ComplexControl control, const QStyleOptionComplex& option, QPainter& painter,
             const QStyle& style, const QWidget* widget) {
  if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(&option);
      control == QStyle::CC_ScrollBar && bar != nullptr) {
    PaintScrollBar(*bar, painter, style);
    return true;
  }
  if (const auto* group = qstyleoption_cast<const QStyleOptionGroupBox*>(&option);
      control == QStyle::CC_GroupBox && group != nullptr) {
    PaintGroup(*group, painter, style, widget);
    return true;
  }
  return false;
}

std::optional<QRect> Part(QStyle::ComplexControl control, const QStyleOptionComplex& option,
                          QStyle::SubControl part) {
  if (control == QStyle::CC_ScrollBar)
    if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(&option))
      return ScrollBarPart(*bar, part);
  if (control == QStyle::CC_GroupBox)
    if (const auto* group = qstyleoption_cast<const QStyleOptionGroupBox*>(&option))
      return GroupPart(*group, part);
  return std::nullopt;
}

std::optional<QSize> Size(QStyle::ContentsType type, const QStyleOption&, QSize below,
                          const QWidget* widget) {
  const Metrics& m = metrics();
  if (type == QStyle::CT_ItemViewItem) return QSize(below.width(), std::max(below.height(), m.px(24)));
  if (type == QStyle::CT_HeaderSection) {
    const bool table = widget != nullptr && IsTable(widget->parentWidget());
    return QSize(below.width(), m.px(table ? 26 : 24));
  }
  return std::nullopt;
}

}  // namespace Sonarello::StyleLists
