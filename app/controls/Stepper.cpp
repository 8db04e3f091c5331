#include "app/controls/Stepper.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <algorithm>

#include "app/controls/FocusRing.h"
#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"

namespace Sonarello {
namespace {

constexpr double buttonSide = 20, iconSide = 13, disabledStrength = 0.4;
constexpr int repeatAfter = 700, repeatEvery = 150;  // ms

}  // namespace

Stepper::Stepper(StepperKind of, QWidget* parent)
    : Control(parent), kind(of), repeat(new QTimer(this)) {
  setFocusPolicy(Qt::TabFocus);
  setProperty(FocusRingProperty, true);
  setMouseTracking(true);
  connect(repeat, &QTimer::timeout, this, [this] {
    repeat->setInterval(repeatEvery);
    Q_EMIT stepped(heldDirection);
  });
}

void Stepper::setValue(int value) {
  const int wanted = std::clamp(value, lowest, highest);
  if (wanted == shownValue) return;
  shownValue = wanted;
  update();
  sayValue();
}

void Stepper::setRange(int least, int most) {
  lowest = least;
  highest = most;
  setValue(shownValue);
}

QRect Stepper::minusRect() const {
  const int side = metrics().px(buttonSide);
  return QRect(0, (height() - side) / 2, side, side);
}

QRect Stepper::plusRect() const { return minusRect().translated(width() - minusRect().width(), 0); }

Spoken Stepper::spoken() const {
  return {.role = QAccessible::SpinBox,
          .value = SpokenValue{shownValue, lowest, highest, SignedText(shownValue)}};
}

/// A screen reader asks for a value; the steps towards it go the same way as the user's.
void Stepper::setSpokenValue(int value) {
  const int direction = value > shownValue ? 1 : -1;
  for (int steps = std::abs(value - shownValue); steps > 0; --steps) stepOnce(direction);
}

QSize Stepper::sizeHint() const { return {metrics().px(66), metrics().px(buttonSide)}; }

void Stepper::paintButton(QPainter& painter, const QRect& place, int direction) const {
  const Theme& t = th();
  const Metrics& m = metrics();
  const bool down = heldDirection == direction;
  const bool lit = kind == StepperKind::Octave && ((direction > 0) ? shownValue > 0 : shownValue < 0);
  const bool over = isEnabled() && underMouse() && place.contains(pointer);
  const QColor face = lit ? t.accd : down ? t.bg3p : over ? t.bg3h : t.bg3;
  PaintBox(painter, place, m.f(4), face, QColor());
  const Icon icon = kind == StepperKind::Velocity ? (direction > 0 ? Icon::Plus : Icon::Minus)
                                                  : (direction > 0 ? Icon::Up : Icon::Down);
  QRectF square(0, 0, m.px(iconSide), m.px(iconSide));
  square.moveCenter(QRectF(place).center());
  PaintIcon(painter, icon, square, lit ? t.onaccd : t.tx2);
}

void Stepper::paintEvent(QPaintEvent*) {
  const Theme& t = th();
  QPainter painter(this);
  if (!isEnabled()) painter.setOpacity(disabledStrength);
  paintButton(painter, minusRect(), -1);
  paintButton(painter, plusRect(), 1);
  painter.setFont(metrics().font(Role::Body));
  painter.setPen(shownValue == 0 ? t.tx3 : t.tx1);
  drawFigures(painter, rect(), SignedText(shownValue), Qt::AlignCenter);
}

int Stepper::directionAt(const QPoint& point, Qt::MouseButton button) const {
  if (minusRect().contains(point)) return button == Qt::LeftButton ? -1 : 0;
  if (plusRect().contains(point)) return button == Qt::LeftButton ? 1 : 0;
  if (kind == StepperKind::Octave) return 0;
  return button == Qt::LeftButton ? -1 : button == Qt::RightButton ? 1 : 0;
}

void Stepper::hold(int direction) {
  heldDirection = direction;
  update();
  Q_EMIT pressed(direction);
  Q_EMIT stepped(direction);
  if (repeats) repeat->start(repeatAfter);
}

void Stepper::stepOnce(int direction) {
  Q_EMIT pressed(direction);
  Q_EMIT stepped(direction);
  Q_EMIT released();
}

void Stepper::letGo() {
  repeat->stop();
  if (heldDirection == 0) return;
  heldDirection = 0;
  update();
  Q_EMIT released();
}

void Stepper::mousePressEvent(QMouseEvent* event) {
  pointer = event->position().toPoint();
  const int direction = directionAt(pointer, event->button());
  const bool control = (event->modifiers() & Qt::ControlModifier) != 0;
  if (control && kind == StepperKind::Velocity && event->button() != Qt::MiddleButton)
    Q_EMIT rangeWanted();
  else if (direction != 0 && heldDirection == 0)
    hold(direction);
  else
    event->ignore();
}

void Stepper::mouseMoveEvent(QMouseEvent* event) {
  pointer = event->position().toPoint();
  update();
}

void Stepper::mouseReleaseEvent(QMouseEvent* event) {
  if (event->buttons() == Qt::NoButton) letGo();
}

void Stepper::hideEvent(QHideEvent* event) {
  Control::hideEvent(event);
  letGo();
}

void Stepper::wheelEvent(QWheelEvent* event) {
  const int notches = wheel.take(event->angleDelta().y());
  for (int i = std::abs(notches); i > 0 && heldDirection == 0; --i) stepOnce(notches > 0 ? 1 : -1);
  event->accept();
}

void Stepper::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Right:
    case Qt::Key_Plus: stepOnce(1); break;
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Minus: stepOnce(-1); break;
    default: event->ignore();
  }
}

}  // namespace Sonarello
