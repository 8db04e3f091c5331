#include "app/controls/Painting.h"

#include <QLinearGradient>
#include <QPen>

namespace Sonarello {

void PaintBox(QPainter& painter, const QRectF& rect, double radius, const QBrush& face,
              const QColor& border, double borderWidth) {
  const PainterState state(painter);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(face);
  if (!border.isValid()) {
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(rect, radius, radius);
    return;
  }
  const double half = borderWidth / 2;
  painter.setPen(QPen(border, borderWidth));
  painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius - half, radius - half);
}

void PaintFocusRing(QPainter& painter, const QRectF& rect, double radius) {
  PaintBox(painter, rect, radius, Qt::NoBrush, th().acc, metrics().px(2));
}

void PaintHairline(QPainter& painter, const QLineF& line, const QColor& colour) {
  const PainterState state(painter);
  painter.setRenderHint(QPainter::Antialiasing, false);
  const double hair = metrics().hair();
  if (line.y1() == line.y2())
    painter.fillRect(QRectF(line.x1(), line.y1(), line.x2() - line.x1(), hair), colour);
  else
    painter.fillRect(QRectF(line.x1(), line.y1(), hair, line.y2() - line.y1()), colour);
}

void PaintCap(QPainter& painter, const QRectF& cap, const QColor& line, CapState capState) {
  const Theme& t = th();
  const Metrics& m = metrics();
  const PainterState state(painter);
  PaintBox(painter, cap.translated(0, m.px(1)), m.f(3), WithAlpha(Qt::black, 0.28), QColor());
  QColor upper = t.cap1, lower = t.cap2;
  if (capState == CapState::Hovered)
    upper = Mixed(Qt::white, 0.08, upper), lower = Mixed(Qt::white, 0.08, lower);
  if (capState == CapState::Pressed) std::swap(upper, lower);
  QLinearGradient face(cap.topLeft(), cap.bottomLeft());
  face.setColorAt(0, upper);
  face.setColorAt(1, lower);
  PaintBox(painter, cap, m.f(3), face, t.caped, m.hair());
  const double middle = cap.center().y(), inset = m.px(2), grip = m.f(4.5);
  for (const double y : {middle - grip, middle + grip})
    painter.fillRect(QRectF(cap.left() + inset + 1, y - 0.5, cap.width() - 2 * inset - 2, m.hair()),
                     WithAlpha(t.caped, 0.55));
  painter.fillRect(QRectF(cap.left() + inset, middle - m.px(2) / 2.0, cap.width() - 2 * inset, m.px(2)),
                   line);
}

void PaintLight(QPainter& painter, const QPointF& centre, double diameter, bool lit,
                const QColor& colour) {
  const PainterState state(painter);
  painter.setRenderHint(QPainter::Antialiasing);
  const double half = diameter / 2;
  painter.setPen(lit ? QPen(Qt::NoPen) : QPen(th().line2, metrics().hair()));
  painter.setBrush(lit ? colour : th().moff);
  painter.drawEllipse(centre, lit ? half : half - 0.5, lit ? half : half - 0.5);
}

}  // namespace Sonarello
