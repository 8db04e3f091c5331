#include "app/controls/GroupFader.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <algorithm>
#include <cmath>

#include "app/controls/FocusRing.h"

namespace Sonarello {
namespace {

constexpr double capWidth = 36, capHeight = 21, tickReach = 15, endMargin = 13;  // pixels at 100 %
constexpr int tickCount = 9;
constexpr int page = 8;
constexpr int returnFrames = 8, frameTime = 15;  // ms; 120 in all

}  // namespace

GroupFader::GroupFader(QWidget* parent) : Control(parent), spring(new QTimer(this)) {
  setFocusPolicy(Qt::TabFocus);
  setProperty(FocusRingProperty, true);
  spring->setInterval(frameTime);
  spring->setTimerType(Qt::PreciseTimer);
  connect(spring, &QTimer::timeout, this, &GroupFader::comeBack);
}

bool GroupFader::returning() const { return spring->isActive(); }

void GroupFader::layOut() {
  const Metrics& m = metrics();
  plan.x = width() / 2.0;
  plan.capWidth = m.px(capWidth);
  plan.capHeight = m.px(capHeight);
  plan.tick = m.px(tickReach);
  plan.top = m.px(endMargin);
  plan.bottom = height() - m.px(endMargin);
}

Spoken GroupFader::spoken() const {
  return {.role = QAccessible::Slider, .value = SpokenValue{shownPosition, -Reach, Reach, {}}};
}

QSize GroupFader::sizeHint() const { return {metrics().px(66), metrics().px(200)}; }

void GroupFader::show(int position) {
  if (position == shownPosition) return;
  shownPosition = position;
  update();
  Q_EMIT shown(position);
}

void GroupFader::paintEvent(QPaintEvent*) {
  const Theme& t = th();
  const Metrics& m = metrics();
  QPainter painter(this);
  if (!isEnabled()) painter.setOpacity(TCustomTrackBar::Opacity(TCustomTrackBar::Dim::Noteless));
  for (int i = 0; i < tickCount; ++i) {
    const bool middle = i == tickCount / 2;
    const double at = std::floor(plan.y(double(i) / (tickCount - 1)));
    PaintHairline(painter, QLineF(plan.x - plan.tick, at, plan.x + plan.tick, at),
                  middle ? t.acc : t.line2);
  }
  PaintFaderSlot(painter, plan);
  painter.setFont(m.font(Role::ToolTip));
  painter.setPen(t.tx3);
  const QRectF signs = QRectF(rect()).adjusted(0, m.px(2), -m.px(2), -m.px(2));
  painter.drawText(signs, Qt::AlignRight | Qt::AlignTop, QStringLiteral("+"));
  painter.drawText(signs, Qt::AlignRight | Qt::AlignBottom, QString(QChar(0x2212)));
  const CapState state = held ? CapState::Pressed : underMouse() ? CapState::Hovered : CapState::Normal;
  PaintCap(painter, plan.cap(double(shownPosition + Reach) / (2 * Reach)), t.acc, state);
}

void GroupFader::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  spring->stop();
  show(0);
  held = true;
  anchorY = event->position().y();
  anchorPosition = shownPosition;
  update();
  Q_EMIT pressed();
}

void GroupFader::mouseMoveEvent(QMouseEvent* event) {
  if (!held) return;
  const double perPixel = 2 * Reach / std::max(plan.bottom - plan.top, 1.0);
  const double fine = (event->modifiers() & Qt::ShiftModifier) != 0 ? 0.25 : 1;
  const int wanted =
      anchorPosition + int(std::lround((anchorY - event->position().y()) * perPixel * fine));
  const int position = std::clamp(wanted, -Reach, Reach);
  if (position == shownPosition) return;
  show(position);
  Q_EMIT moved(position);
}

void GroupFader::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) letGo();
}

void GroupFader::hideEvent(QHideEvent* event) {
  Control::hideEvent(event);
  letGo();
}

void GroupFader::letGo() {
  if (!held) return;
  held = false;
  update();
  Q_EMIT released();
  returnFrom = shownPosition;
  returnFrame = 0;
  if (ReducedMotion() || !isVisible())
    show(0);
  else if (returnFrom != 0)
    spring->start();
}

void GroupFader::comeBack() {
  const double left = 1 - double(++returnFrame) / returnFrames;
  show(int(std::lround(returnFrom * left * left)));
  if (returnFrame < returnFrames) return;
  spring->stop();
  show(0);
}

/// A move by wheel or key is a whole hold of its own.
void GroupFader::nudge(int steps) {
  if (held) return;
  Q_EMIT pressed();
  Q_EMIT moved(std::clamp(steps, -Reach, Reach));
  Q_EMIT released();
}

void GroupFader::wheelEvent(QWheelEvent* event) {
  if (const int notches = wheel.take(event->angleDelta().y()); notches != 0) nudge(notches);
  event->accept();
}

void GroupFader::keyPressEvent(QKeyEvent* event) {
  const int size = (event->modifiers() & Qt::ShiftModifier) != 0 ? page : 1;
  switch (event->key()) {
    case Qt::Key_Up: nudge(size); break;
    case Qt::Key_Down: nudge(-size); break;
    default: event->ignore();
  }
}

}  // namespace Sonarello
