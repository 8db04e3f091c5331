#include "app/instruments/SoundDelegates.h"

#include <QApplication>
#include <QLineEdit>
#include <QPainter>

#include "app/controls/Painting.h"
#include "app/instruments/SoundModels.h"

namespace Sonarello {

namespace {

constexpr double Side = 10;  ///< between a cell's edge and its text

/// The ground of a cell, without its text.
void PaintGround(QPainter& painter, const QStyleOptionViewItem& option, const QWidget* view) {
  QStyleOptionViewItem ground = option;
  ground.text.clear();
  ground.icon = {};
  (view == nullptr ? QApplication::style() : view->style())
      ->drawControl(QStyle::CE_ItemViewItem, &ground, &painter, view);
}

bool IsSelected(const QStyleOptionViewItem& option) {
  return (option.state & QStyle::State_Selected) != 0;
}

QRectF TextArea(const QStyleOptionViewItem& option) {
  return QRectF(option.rect).adjusted(metrics().px(Side), 0, -metrics().px(Side), 0);
}

void PaintText(QPainter& painter, const QRectF& area, const QString& text, Qt::Alignment side) {
  painter.drawText(area, int(side | Qt::AlignVCenter) | Qt::TextSingleLine,
                   Elided(painter.font(), text, area.width()));
}

/// Room that a badge takes, the gap in front of it included.
double BadgeWidth(const QString& badge) {
  const Metrics& m = metrics();
  if (badge.isEmpty()) return 0;
  return m.f(10) + m.f(12) + QFontMetricsF(m.font(Role::Caption)).horizontalAdvance(badge);
}

void PaintBadge(QPainter& painter, double left, const QRectF& area, const QString& badge) {
  const Metrics& m = metrics();
  const double height = m.f(15);
  const QRectF box(left + m.f(10), area.center().y() - height / 2, BadgeWidth(badge) - m.f(10), height);
  PaintBox(painter, box, m.f(3), Qt::NoBrush, th().line2, m.hair());
  painter.setFont(m.font(Role::Caption));
  painter.setPen(th().tx3);
  painter.drawText(box, Qt::AlignCenter, badge);
}

void PaintName(QPainter& painter, const QRectF& area, const QModelIndex& index, bool selected) {
  const QString name = index.data().toString();
  const QString badge = index.data(BadgeRole).toString();
  painter.setFont(metrics().font(selected ? Role::Strong : Role::Body));
  painter.setPen(th().tx1);
  const double room = area.width() - BadgeWidth(badge);
  const double width = std::min(QFontMetricsF(painter.font()).horizontalAdvance(name), room);
  PaintText(painter, QRectF(area.left(), area.top(), room, area.height()), name, Qt::AlignLeft);
  if (!badge.isEmpty()) PaintBadge(painter, area.left() + width, area, badge);
}

}  // namespace

void SoundDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
  const PainterState state(*painter);
  PaintGround(*painter, option, option.widget);
  const bool selected = IsSelected(option);
  QRectF area = TextArea(option);
  if (index.column() == SoundTableModel::Name) return PaintName(*painter, area, index, selected);
  const bool isNumber = index.column() != SoundTableModel::Effect;
  // Figures end where their head does.
  if (isNumber)
    area = QRectF(option.rect)
               .adjusted(0, 0, -option.widget->style()->pixelMetric(QStyle::PM_HeaderMargin), 0);
  painter->setFont(metrics().font(selected ? Role::Strong : Role::Body));
  painter->setPen(selected ? th().tx1 : th().tx2);
  if (isNumber)
    drawFigures(*painter, area, index.data().toString(), Qt::AlignRight | Qt::AlignVCenter);
  else
    PaintText(*painter, area, index.data().toString(), Qt::AlignLeft);
}

void SoundDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  QStyledItemDelegate::setEditorData(editor, index);
  if (auto* field = qobject_cast<QLineEdit*>(editor)) field->selectAll();
}

void CategoryDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
  const PainterState state(*painter);
  PaintGround(*painter, option, option.widget);
  const QRectF area = TextArea(option);
  const QString count = index.data(BadgeRole).toString();
  painter->setFont(metrics().font(Role::Body));
  painter->setPen(IsSelected(option) ? th().tx2 : th().tx3);
  drawFigures(*painter, area, count, Qt::AlignRight | Qt::AlignVCenter);
  const double room = area.width() - FiguresWidth(painter->font(), count) - metrics().f(8);
  painter->setPen(th().tx1);
  PaintText(*painter, QRectF(area.left(), area.top(), room, area.height()), index.data().toString(),
            Qt::AlignLeft);
}

void HitDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
  const PainterState state(*painter);
  PaintGround(*painter, option, option.widget);
  const QRectF area = TextArea(option);
  const Metrics& m = metrics();
  painter->setFont(m.font(Role::ToolTip));
  const QString where = index.data(WhereRole).toString();
  const double whereWidth =
      std::min(QFontMetricsF(painter->font()).horizontalAdvance(where) + 1, area.width() * 0.45);
  painter->setPen(IsSelected(option) ? th().tx2 : th().tx3);
  PaintText(*painter, QRectF(area.right() - whereWidth, area.top(), whereWidth, area.height()), where,
            Qt::AlignRight);
  const double room = area.width() - whereWidth - m.f(8);
  const QString shown = Elided(m.font(Role::Body), index.data().toString(), room);
  const int start = index.data(StartRole).toInt();
  double left = area.left();
  const auto put = [&](const QString& text, Role role, const QColor& ink) {
    if (text.isEmpty()) return;
    painter->setFont(m.font(role));
    painter->setPen(ink);
    painter->drawText(QRectF(left, area.top(), area.right() - left, area.height()),
                      Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    left += QFontMetricsF(painter->font()).horizontalAdvance(text);
  };
  if (start < 0) return put(shown, Role::Body, th().tx1);
  put(shown.left(start), Role::Body, th().tx1);
  put(shown.mid(start, Length), Role::Strong, th().acc);
  put(shown.mid(start + Length), Role::Body, th().tx1);
}

}  // namespace Sonarello
