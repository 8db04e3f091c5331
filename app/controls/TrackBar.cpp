#include "app/controls/TrackBar.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPixmap>
#include <QTimer>
#include <algorithm>
#include <array>
#include <cmath>

#include "app/controls/QtText.h"

namespace Sonarello {
namespace {

// Pixels at 100 %.
constexpr double narrowBelow = 72, endMargin = 11, slotWidth = 6, slotOver = 4, fillWidth = 3,
                 fillOver = 2;
constexpr int page = 8;
constexpr double fineShare = 0.25;
constexpr int repeatAfter = 400, repeatEvery = 100;  // ms
constexpr std::array ticks{0, 16, 32, 48, 64, 80, 96, 112, 127};
constexpr std::array figures{0, 32, 64, 96, 127};

}  // namespace

FaderPlan FaderPlan::Of(const QSize& area) {
  const Metrics& m = metrics();
  const bool narrow = area.width() < m.px(narrowBelow);
  FaderPlan plan;
  plan.x = m.px(narrow ? 30 : 38);
  plan.capWidth = m.px(narrow ? 26 : 32);
  plan.capHeight = m.px(18);
  plan.tick = m.px(narrow ? 11 : 13);
  plan.top = m.px(endMargin);
  plan.bottom = area.height() - m.px(endMargin);
  return plan;
}

QRectF FaderPlan::cap(double share) const {
  return QRectF(x - capWidth / 2, y(share) - capHeight / 2, capWidth, capHeight);
}

void PaintFaderSlot(QPainter& painter, const FaderPlan& plan) {
  const Metrics& m = metrics();
  const double width = m.px(slotWidth), over = m.px(slotOver);
  PaintBox(painter,
           QRectF(plan.x - width / 2, plan.top - over, width, plan.bottom - plan.top + 2 * over),
           m.f(3), th().well, th().line, m.hair());
}

TCustomTrackBar::TCustomTrackBar(QWidget* parent) : Control(parent), repeat(new QTimer(this)) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  connect(repeat, &QTimer::timeout, this, &TCustomTrackBar::stepTowardsPointer);
}

double TCustomTrackBar::Opacity(Dim dim) {
  return dim == Dim::None ? 1 : dim == Dim::Muted ? 0.55 : 0.34;
}

void TCustomTrackBar::setPosition(int position) {
  const int wanted = std::clamp(position, 0, Highest);
  if (wanted == shownPosition) return;
  shownPosition = wanted;
  update();
  sayValue();
}

void TCustomTrackBar::moveTo(int position) {
  const int before = shownPosition;
  setPosition(position);
  if (shownPosition != before) Q_EMIT moved(shownPosition);
}

void TCustomTrackBar::step(int steps) { moveTo(shownPosition + steps); }

void TCustomTrackBar::setSpokenValue(int position) { moveTo(position); }

void TCustomTrackBar::setLook(Look look, Dim dim) {
  if (look == shownLook && dim == shownDim) return;
  shownLook = look;
  shownDim = dim;
  update();
}

void TCustomTrackBar::setOrigin(int position) {
  if (position == origin) return;
  origin = position;
  update();
}

double TCustomTrackBar::y(int position) const { return plan.y(double(position) / Highest); }

Spoken TCustomTrackBar::spoken() const {
  return {.role = QAccessible::Slider, .value = SpokenValue{shownPosition, 0, Highest, {}}};
}

QSize TCustomTrackBar::sizeHint() const { return {metrics().px(74), metrics().px(200)}; }

QSize TCustomTrackBar::minimumSizeHint() const { return {metrics().px(62), metrics().px(120)}; }

void TCustomTrackBar::layOut() { plan = FaderPlan::Of(size()); }

bool TCustomTrackBar::onCap(const QPointF& point) const {
  return plan.cap(double(shownPosition) / Highest).contains(point);
}

void TCustomTrackBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const double opacity = Opacity(isEnabled() ? shownDim : Dim::Noteless);
  if (opacity == 1) {
    paintParts(painter);
    return;
  }
  // The parts step back as one: the slot must not shine through the cap.
  QPixmap layer(size() * devicePixelRatioF());
  layer.setDevicePixelRatio(devicePixelRatioF());
  layer.fill(Qt::transparent);
  QPainter parts(&layer);
  paintParts(parts);
  parts.end();
  painter.setOpacity(opacity);
  painter.drawPixmap(0, 0, layer);
}

void TCustomTrackBar::paintParts(QPainter& painter) const {
  const Theme& t = th();
  const Metrics& m = metrics();
  for (const int position : ticks) {
    const bool strong = std::find(figures.begin(), figures.end(), position) != figures.end();
    const double at = std::floor(y(position));
    PaintHairline(painter, QLineF(plan.x - plan.tick, at, plan.x + plan.tick, at),
                  strong ? t.line2 : t.line);
  }
  painter.setFont(m.font(Role::ScaleFigure));
  painter.setPen(t.tx3);
  for (const int position : figures) {
    const QString figure = origin == 0 ? QString::number(position) : SignedText(position - origin);
    const double right = width() - m.px(2) - FiguresWidth(painter.font(), figure);
    painter.drawText(QPointF(right, y(position) + m.px(4)), figure);
  }
  PaintFaderSlot(painter, plan);
  const QColor own = shownLook == Look::Active ? t.acc : shownLook == Look::Drum ? t.drum : QColor();
  const bool muted = shownDim == Dim::Muted;
  const double fill = m.px(fillWidth);
  const double start = origin == 0 ? plan.bottom + m.px(fillOver) : std::round(y(origin));
  const double end = std::round(y(shownPosition));
  PaintBox(painter,
           QRectF(std::floor(plan.x - fill / 2), std::min(start, end), fill, std::abs(start - end)),
           fill / 2,
           muted           ? t.dis
           : own.isValid() ? own
                           : t.tx3,
           QColor());
  const CapState state = hold == Hold::Cap ? CapState::Pressed
                         : capHovered      ? CapState::Hovered
                                           : CapState::Normal;
  PaintCap(painter, plan.cap(double(shownPosition) / Highest),
           own.isValid() && !muted ? own : t.capline, state);
}

void TCustomTrackBar::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();  // a right click means the strip
    return;
  }
  pointer = event->position();
  hold = onCap(pointer) ? Hold::Cap : Hold::Slot;
  anchorY = pointer.y();
  anchorPosition = shownPosition;
  anchorFine = (event->modifiers() & Qt::ShiftModifier) != 0;
  update();
  Q_EMIT pressed();
  if (hold != Hold::Slot) return;
  stepTowardsPointer();
  repeat->start(repeatAfter);
}

void TCustomTrackBar::mouseMoveEvent(QMouseEvent* event) {
  pointer = event->position();
  if (hold == Hold::Cap) drag(pointer, (event->modifiers() & Qt::ShiftModifier) != 0);
  if (const bool over = onCap(pointer); over != capHovered) {
    capHovered = over;
    update();
  }
}

void TCustomTrackBar::drag(const QPointF& to, bool fine) {
  const double perPixel = Highest / std::max(plan.bottom - plan.top, 1.0);
  const auto positionAt = [&](bool slow) {
    return anchorPosition + (anchorY - to.y()) * perPixel * (slow ? fineShare : 1);
  };
  if (fine != anchorFine) {  // Shift came or went: from here on at the other speed
    anchorPosition = positionAt(anchorFine);
    anchorY = to.y();
    anchorFine = fine;
  }
  moveTo(int(std::lround(positionAt(fine))));
}

void TCustomTrackBar::stepTowardsPointer() {
  repeat->setInterval(repeatEvery);
  if (onCap(pointer)) return;
  step(pointer.y() < y(shownPosition) ? page : -page);
}

void TCustomTrackBar::letGo() {
  repeat->stop();
  if (hold == Hold::None) return;
  hold = Hold::None;
  update();
  Q_EMIT released();
}

void TCustomTrackBar::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) letGo();
}

void TCustomTrackBar::hideEvent(QHideEvent* event) {
  Control::hideEvent(event);
  letGo();
}

void TCustomTrackBar::leaveEvent(QEvent* event) {
  capHovered = false;
  Control::leaveEvent(event);
}

void TCustomTrackBar::wheelEvent(QWheelEvent* event) {
  // One step for each notch. A turn away from the user lowers the value: this is deliberate.
  if (const int notches = wheel.take(event->angleDelta().y()); notches != 0) step(-notches);
  event->accept();
}

void TCustomTrackBar::keyPressEvent(QKeyEvent* event) {
  const bool shift = (event->modifiers() & Qt::ShiftModifier) != 0;
  switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Right: step(shift ? page : 1); break;
    case Qt::Key_Down:
    case Qt::Key_Left: step(shift ? -page : -1); break;
    case Qt::Key_PageUp: step(page); break;
    case Qt::Key_PageDown: step(-page); break;
    default: event->ignore();
  }
}

}  // namespace Sonarello
