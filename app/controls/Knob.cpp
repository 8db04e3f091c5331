#include "app/controls/Knob.h"

#include <QMouseEvent>
#include <cmath>

#include "app/controls/Painting.h"

namespace Sonarello {
namespace {

constexpr double sweep = 270, startAngle = 135;  // degrees, clockwise from three o'clock
constexpr double rim = 3, arcWidth = 4, faceInset = 5, pointerInner = 11;  // pixels at 100 %
constexpr double wholeTravel = 160, fineShare = 0.25, disabledStrength = 0.4, leastArc = 0.5;

}  // namespace

Knob::Knob(QWidget* parent) : ValueControl(parent) {}

void Knob::setDiameter(double pixels) {
  diameter = pixels;
  updateGeometry();
  update();
}

Spoken Knob::spoken() const { return {.role = QAccessible::Dial, .value = spokenValue()}; }

QSize Knob::sizeHint() const { return {metrics().px(diameter), metrics().px(diameter)}; }

void Knob::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!isEnabled()) painter.setOpacity(disabledStrength);
  paintParts(painter);
}

void Knob::paintParts(QPainter& painter) const {
  const Theme& t = th();
  const Metrics& m = metrics();
  const double side = std::min(width(), height());
  const QPointF centre = QRectF(rect()).center();
  const double radius = side / 2 - m.f(rim);
  const QRectF circle(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
  const auto arc = [&](double from, double span, const QColor& colour) {
    painter.setPen(QPen(colour, m.f(arcWidth), Qt::SolidLine, Qt::FlatCap));
    painter.setBrush(Qt::NoBrush);
    painter.drawArc(circle, int(std::lround(-from * 16)),
                    int(std::lround(-span * 16)));  // Qt counts sixteenths
  };
  arc(startAngle, sweep, t.track);
  const double angle = startAngle + sweep * share();
  const double from = isBipolar() ? startAngle + sweep / 2 : startAngle;
  if (std::abs(angle - from) >= leastArc) arc(from, angle - from, t.acc);
  if (isBipolar()) {
    const double thick = m.hair(), length = m.f(4);
    painter.fillRect(QRectF(centre.x() - thick / 2, centre.y() - radius - length / 2, thick, length),
                     t.acc);
  }
  painter.setPen(QPen(t.line2, m.hair()));
  painter.setBrush(t.bg3);
  const double face = radius - m.f(faceInset);
  painter.drawEllipse(centre, face, face);
  const double turn = angle * std::acos(-1.0) / 180;
  const QPointF direction(std::cos(turn), std::sin(turn));
  painter.setPen(QPen(t.tx1, m.f(2), Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(centre + (radius - m.f(pointerInner)) * direction,
                   centre + (radius - m.f(faceInset + 1)) * direction);
}

void Knob::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  held = true;
  anchorY = event->position().y();
  anchorValue = value();
  Q_EMIT pressed();
}

void Knob::mouseMoveEvent(QMouseEvent* event) {
  if (!held) return;
  const bool fine = (event->modifiers() & Qt::ShiftModifier) != 0;
  const double perPixel = (most() - least()) / metrics().f(wholeTravel) * (fine ? fineShare : 1);
  // Counting on from the last event lets Shift change the speed on the way.
  anchorValue += (anchorY - event->position().y()) * perPixel;
  anchorValue = std::clamp(anchorValue, double(least()), double(most()));
  anchorY = event->position().y();
  moveTo(int(std::lround(anchorValue)));
}

void Knob::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !held) return;
  held = false;
  Q_EMIT released();
}

void Knob::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  moveTo(defaultValue());
}

}  // namespace Sonarello
