// The icons, drawn as vectors on a grid of 16 x 16 in the ink of the control that shows them.
#pragma once

#include <QIcon>
#include <QPainterPath>
#include <QString>

class QPainter;
class QColor;
class QRectF;

namespace Sonarello {

enum class Icon {
  Rewind,
  Play,
  Stop,
  Record,
  Loop,
  Down,
  Up,
  Right,
  Drum,
  Search,
  List,
  Keys,
  Text,
  Sound,
  Knob,
  Arrow,
  Pen,
  Erase,
  Undo,
  Cross,
  Minus,
  Plus,
  Warning,
  File,
  Lock,
  Link,
  First,
  Note,
};
inline constexpr int Icons = 28;

/// The outline of an icon on its grid of 16 x 16.
[[nodiscard]] const QPainterPath& IconPath(Icon icon);

/// Draws an icon into a square. Filled is for play while playing and record while armed.
void PaintIcon(QPainter& painter, Icon icon, const QRectF& square, const QColor& ink,
               bool filled = false);

/// The icon for actions and standard buttons: sharp at every size, in the text colour of the theme in
/// force, in the accent while checked.
[[nodiscard]] QIcon IconFor(Icon icon);

/// What a message is about.
enum class Sign { Error, Warning, Question, Information };

/// The icon of a message in the colour of its weight.
[[nodiscard]] QIcon SignIcon(Sign sign);

/// The program's own icon, of fixed colours.
[[nodiscard]] QIcon ApplicationIcon();

/// Reads outlines: M L H V C S A Z in both cases as in SVG (arcs are circular and at most half a turn),
/// and two of our own: O cx cy rx ry for an ellipse, R x y width height radius for a rounded rectangle.
[[nodiscard]] QPainterPath ParsePath(const char* outline);

}  // namespace Sonarello
