#include "app/controls/Painting.h"

#include <QLinearGradient>
#include <QPaintDevice>
#include <QPen>
#include <QPixmap>
#include <QTransform>
#include <cmath>
#include <compare>
#include <map>

namespace Sonarello {
namespace {

constexpr std::size_t mostCorners = 500;

/// What the corners of a box depend on.
struct BoxLook {
  double radius;
  QRgb face, border;  // fully transparent: none
  double borderWidth, pixelRatio;
  int narrow;  // the box's own width if it is too narrow for two corners side by side, else 0

  auto operator<=>(const BoxLook&) const = default;
};

bool IsWhole(double length) { return length == std::floor(length); }

void DrawBox(QPainter& painter, const QRectF& rect, double radius, const QBrush& face,
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

int CornerOf(const BoxLook& look) {
  return int(std::ceil(std::max(look.radius, look.borderWidth))) + 1;
}

/// A small box with the corners of a look. Filling a rounded path costs far more than copying its
/// corners.
const QPixmap& Corners(const BoxLook& look) {
  static std::map<BoxLook, QPixmap> drawn;
  if (drawn.size() > mostCorners) drawn.clear();
  const auto found = drawn.find(look);
  if (found != drawn.end()) return found->second;
  const QSize size(look.narrow > 0 ? look.narrow : 2 * CornerOf(look), 2 * CornerOf(look));
  QPixmap pixmap(size * look.pixelRatio);
  pixmap.setDevicePixelRatio(look.pixelRatio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  const QColor border = qAlpha(look.border) == 0 ? QColor() : QColor::fromRgba(look.border);
  DrawBox(painter, QRectF(QPointF(), size), look.radius, QColor::fromRgba(look.face), border,
          look.borderWidth);
  painter.end();
  return drawn.emplace(look, pixmap).first->second;
}

/// Puts a box together from its corners and from plain rectangles, none of which overlap.
void AssembleBox(QPainter& painter, const QRect& rect, const BoxLook& look) {
  const QPixmap& corners = Corners(look);
  const int corner = CornerOf(look), width = rect.width(), height = rect.height();
  const int across = look.narrow > 0 ? look.narrow : corner;  // of each piece with corners
  const auto copy = [&](bool right, bool bottom) {
    const QRect piece(right ? across : 0, bottom ? corner : 0, across, corner);
    const QPoint to(right ? width - across : 0, bottom ? height - corner : 0);
    const double ratio = look.pixelRatio;
    painter.drawPixmap(QRectF(rect.topLeft() + to, piece.size()), corners,
                       QRectF(QPointF(piece.topLeft()) * ratio, QSizeF(piece.size()) * ratio));
  };
  for (const bool bottom : {false, true}) {
    copy(false, bottom);
    if (look.narrow == 0) copy(true, bottom);
  }
  const int line = qAlpha(look.border) == 0 ? 0 : int(look.borderWidth);
  const QColor face = QColor::fromRgba(look.face), border = QColor::fromRgba(look.border);
  const auto fill = [&](int x, int y, int w, int h, const QColor& colour) {
    if (w > 0 && h > 0 && colour.alpha() > 0)
      painter.fillRect(rect.left() + x, rect.top() + y, w, h, colour);
  };
  const int between = look.narrow > 0 ? 0 : width - 2 * corner, down = height - 2 * corner;
  fill(corner, 0, between, line, border);
  fill(corner, height - line, between, line, border);
  fill(corner, line, between, corner - line, face);
  fill(corner, height - corner, between, corner - line, face);
  fill(0, corner, line, down, border);
  fill(width - line, corner, line, down, border);
  fill(line, corner, width - 2 * line, down, face);
}

/// Whether a box lies on whole pixels and is large enough to be put together.
bool CanAssemble(const QPainter& painter, const QRectF& rect, const QBrush& face, const BoxLook& look) {
  const QTransform& to = painter.transform();
  const bool placed = to.type() <= QTransform::TxTranslate && IsWhole(to.dx()) && IsWhole(to.dy());
  const bool whole =
      IsWhole(rect.left()) && IsWhole(rect.top()) && IsWhole(rect.width()) && IsWhole(rect.height());
  const bool plain = face.style() == Qt::SolidPattern || face.style() == Qt::NoBrush;
  return placed && whole && plain && IsWhole(look.borderWidth) && IsWhole(look.pixelRatio) &&
         rect.height() >= 2 * CornerOf(look) && rect.width() >= 2 * look.borderWidth + 1;
}

}  // namespace

void PaintBox(QPainter& painter, const QRectF& rect, double radius, const QBrush& face,
              const QColor& border, double borderWidth) {
  BoxLook look{radius,
               face.style() == Qt::NoBrush ? 0 : face.color().rgba(),
               border.isValid() ? border.rgba() : 0,
               borderWidth,
               painter.device()->devicePixelRatioF(),
               0};
  if (rect.width() < 2 * CornerOf(look)) look.narrow = int(rect.width());
  if (CanAssemble(painter, rect, face, look))
    AssembleBox(painter, rect.toRect(), look);
  else
    DrawBox(painter, rect, radius, face, border, borderWidth);
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
