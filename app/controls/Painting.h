// Shapes that many controls share.
#pragma once

#include <QBrush>
#include <QColor>
#include <QLineF>
#include <QPainter>
#include <QRectF>

#include "app/controls/Metrics.h"
#include "app/controls/Theme.h"

namespace Sonarello {

/// Saves the state of a painter and restores it at the end of the scope.
class PainterState {
 public:
  explicit PainterState(QPainter& of) : painter(of) { painter.save(); }
  ~PainterState() { painter.restore(); }
  PainterState(const PainterState&) = delete;
  PainterState& operator=(const PainterState&) = delete;

 private:
  QPainter& painter;
};

/// A face with a border inside of the rectangle; the radius is in pixels of the scale. A border of no
/// colour (QColor()) leaves only the face.
void PaintBox(QPainter& painter, const QRectF& rect, double radius, const QBrush& face,
              const QColor& border, double borderWidth = 1);

/// The ring around what has the keyboard's focus: 2 px inside of the rectangle's border.
void PaintFocusRing(QPainter& painter, const QRectF& rect, double radius);

/// A hairline in whole pixels, never spread over two of them.
void PaintHairline(QPainter& painter, const QLineF& line, const QColor& colour);

/// What a fader's cap looks like at a moment.
enum class CapState { Normal, Hovered, Pressed };

/// The cap of a fader with its shadow, grip lines and the line in the middle.
void PaintCap(QPainter& painter, const QRectF& cap, const QColor& line, CapState state);

/// A small light: a disc, lit in a colour or dark.
void PaintLight(QPainter& painter, const QPointF& centre, double diameter, bool lit,
                const QColor& colour);

}  // namespace Sonarello
