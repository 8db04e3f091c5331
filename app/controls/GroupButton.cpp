#include "app/controls/GroupButton.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>

#include "app/controls/FocusRing.h"
#include "app/controls/Painting.h"

namespace Sonarello {
namespace {

constexpr double iconAbove = 14, iconBehind = 10, disabledStrength = 0.4;

}  // namespace

GroupButton::GroupButton(Icon of, Place at, QWidget* parent) : Control(parent), icon(of), place(at) {
  setFocusPolicy(Qt::TabFocus);
  setProperty(FocusRingProperty, true);
}

void GroupButton::setText(const QString& text) {
  caption = text;
  update();
}

void GroupButton::setChecked(bool on) {
  if (on == checked) return;
  checked = on;
  update();
  sayState();
}

Spoken GroupButton::spoken() const {
  return {.role = checkable ? QAccessible::CheckBox : QAccessible::PushButton,
          .pressable = !checkable,
          .checkable = checkable,
          .checked = checked};
}

void GroupButton::pressSpoken() {
  if (checkable) setChecked(!checked);
  Q_EMIT clicked();
}

QSize GroupButton::sizeHint() const { return {metrics().px(66), metrics().px(22)}; }

void GroupButton::paintEvent(QPaintEvent*) {
  const Theme& t = th();
  const Metrics& m = metrics();
  QPainter painter(this);
  if (!isEnabled()) painter.setOpacity(disabledStrength);
  const QColor face = held ? t.bg3p : checked ? t.accbg : underMouse() && isEnabled() ? t.bg3h : t.bg3;
  const QColor ink = checked ? t.acc : place == Place::Above ? t.tx1 : t.tx2;
  PaintBox(painter, rect(), m.f(4), face, checked ? t.acc : t.line2, m.hair());
  painter.setFont(m.font(place == Place::Above ? Role::Body : Role::Letter));
  painter.setPen(ink);
  const double side = m.px(place == Place::Above ? iconAbove : iconBehind);
  const QPointF middle = QRectF(rect()).center();
  if (place == Place::Above) {
    const double line = m.lineHeight(Role::Body), top = middle.y() - (side + m.px(2) + line) / 2;
    PaintIcon(painter, icon, QRectF(middle.x() - side / 2, top, side, side), ink);
    painter.drawText(QRectF(0, top + side + m.px(2), width(), line), Qt::AlignCenter, caption);
    return;
  }
  const double text = QFontMetricsF(painter.font()).horizontalAdvance(caption);
  const double left = middle.x() - (text + side) / 2;
  painter.drawText(QRectF(left, 0, text + 1, height()), Qt::AlignVCenter, caption);
  PaintIcon(painter, icon, QRectF(left + text, middle.y() - side / 2 + m.f(0.5), side, side), ink);
}

void GroupButton::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  held = true;
  update();
}

void GroupButton::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !held) return;
  held = false;
  update();
  if (rect().contains(event->position().toPoint())) pressSpoken();
}

void GroupButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
    pressSpoken();
  else
    event->ignore();
}

}  // namespace Sonarello
