#include "app/controls/Icons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <string>

#include "app/controls/Metrics.h"
#include "app/controls/Theme.h"

namespace Sonarello {
namespace {

constexpr double grid = 16, penWidth = 1.5;

constexpr std::array<const char*, Icons> outlines{
    "M4 3v10M13 3.2v9.6L6.5 8z",
    "M4.5 2.5v11L13.5 8z",
    "R3.5 3.5 9 9 1",
    "O8 8 4.7 4.7",
    "M11 2l2.4 2.4L11 6.8M13 4.4H5.2A3.2 3.2 0 0 0 2 7.6M5 14l-2.4-2.4L5 9.2M3 11.6h7.8A3.2 3.2 0 0 0 "
    "14 8.4",
    "M4 6.2 8 10.2 12 6.2",
    "M4 9.8 8 5.8 12 9.8",
    "M6 4l4 4-4 4",
    "O8 5.5 5.5 2.3 M2.5 5.5v5c0 1.3 2.5 2.3 5.5 2.3s5.5-1 5.5-2.3v-5M5 7.6v4.8M11 7.6v4.8",
    "O7 7 4 4 M10 10l3.5 3.5",
    "M5.5 4h8M5.5 8h8M5.5 12h8M2.5 4h.01M2.5 8h.01M2.5 12h.01",
    "R2 3 12 10 1 M6 9v4M10 9v4M5 3v6h2V3M9 3v6h2V3",
    "M3 4.5h10M3 8h6M3 11.5h8",
    "M2.5 6v4h2.7L8.5 13V3L5.2 6zM11 5.5a3.5 3.5 0 0 1 0 5M12.8 3.6a6 6 0 0 1 0 8.8",
    "O8 8 5 5 M8 8l2.6-3.6",
    "M4 2.5v10l2.6-2.4 1.8 3.7 1.7-.8-1.8-3.6 3.5-.3z",
    "M3 13l.7-2.8 7.3-7.3 2.1 2.1-7.3 7.3zM9.6 4.3l2.1 2.1",
    "M6 13h7M3 9.2l5.7-5.7 4 4L7.2 13H5.4L3 10.6zM6 6.2l4 4",
    "M6 3L3 6l3 3M3.2 6H10a3.3 3.3 0 0 1 0 6.6H6",
    "M4 4l8 8M12 4l-8 8",
    "M4 8h8",
    "M8 3.5v9M3.5 8h9",
    "M8 2.5l6 10.8H2zM8 6.5v3.2M8 11.6v.01",
    "M4 2h5.2L12.5 5.3V14H4zM9 2v3.5h3.5",
    "R3.5 7 9 6 1 M5.5 7V5a2.5 2.5 0 0 1 5 0v2",
    "M6.5 9.5l3-3M7 4.8l1.4-1.4a2.7 2.7 0 0 1 3.8 3.8L10.8 8.6M9 11.2l-1.4 1.4a2.7 2.7 0 0 "
    "1-3.8-3.8L5.2 7.4",
    "M3 3v10M6 8h7M9.5 4.5L13 8l-3.5 3.5",
    "M6 12V3.5l6-1.2v8.2 O4.4 12 1.7 1.4 O10.4 10.6 1.7 1.4",
};

/// Takes the commands and numbers of an outline one by one.
class PathReader {
 public:
  explicit PathReader(const char* outline) : rest(outline) {}

  QPainterPath read() {
    while (atCommand() || *rest != '\0') step();
    return std::move(path);
  }

 private:
  void skipBlanks() {
    while (*rest == ' ' || *rest == ',') ++rest;
  }

  bool atCommand() {
    skipBlanks();
    return std::isalpha(static_cast<unsigned char>(*rest)) != 0;
  }

  double number() {
    skipBlanks();
    std::string digits;
    bool point = false;
    if (*rest == '-') digits += *rest++;
    while (std::isdigit(static_cast<unsigned char>(*rest)) != 0 || (*rest == '.' && !point)) {
      point = point || *rest == '.';
      digits += *rest++;
    }
    if (digits.empty()) ++rest;  // no number: the reader must move on
    return digits.empty() ? 0 : std::strtod(digits.c_str(), nullptr);
  }

  /// A point, relative to the present one if the command is a small letter.
  QPointF point() {
    const double x = number(), y = number();
    return QPointF(x, y) + (relative ? path.currentPosition() : QPointF());
  }

  void step() {
    if (atCommand()) {
      relative = std::islower(static_cast<unsigned char>(*rest)) != 0;
      command = static_cast<char>(std::toupper(static_cast<unsigned char>(*rest++)));
    }
    const QPointF here = path.currentPosition();
    switch (command) {
      case 'M':
        path.moveTo(point());
        command = 'L';  // further points of a move are lines
        break;
      case 'L': path.lineTo(point()); break;
      case 'H': path.lineTo(number() + (relative ? here.x() : 0), here.y()); break;
      case 'V': path.lineTo(here.x(), number() + (relative ? here.y() : 0)); break;
      case 'C': {
        const QPointF first = point();
        curve(first);
        break;
      }
      case 'S': curve(2 * here - lastControl); break;
      case 'A': arc(); break;
      case 'Z': path.closeSubpath(); break;
      default: shape(); break;
    }
  }

  void curve(const QPointF& first) {
    const QPointF second = point(), end = point();
    path.cubicTo(first, second, end);
    lastControl = second;
  }

  /// An arc of a circle from the present point: the shorter one, clockwise if its last flag is set.
  void arc() {
    double radius = number();
    for (int i = 0; i < 3; ++i) number();  // second radius, turn of the axes, the longer arc: unused
    const bool clockwise = number() != 0;
    const QPointF from = path.currentPosition(), to = point();
    const QPointF half = (to - from) / 2;
    const double reach = std::hypot(half.x(), half.y());
    if (reach == 0) return;
    radius = std::max(radius, reach);
    const double away = std::sqrt(radius * radius - reach * reach) / reach * (clockwise ? 1 : -1);
    const QPointF centre = from + half + away * QPointF(-half.y(), half.x());
    const auto angle = [&](const QPointF& p) {
      return -std::atan2(p.y() - centre.y(), p.x() - centre.x());
    };
    const double turn = 180 / std::acos(-1.0);
    const double start = angle(from) * turn;
    double sweep = angle(to) * turn - start;
    if (clockwise && sweep > 0) sweep -= 360;
    if (!clockwise && sweep < 0) sweep += 360;
    path.arcTo(QRectF(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius), start, sweep);
    path.lineTo(to);  // rounding leaves the arc a hair beside its end
  }

  void shape() {
    const double x = number(), y = number(), a = number(), b = number();
    if (command == 'R')
      path.addRoundedRect(QRectF(x, y, a, b), number(), 0);
    else
      path.addEllipse(QPointF(x, y), a, b);
  }

  const char* rest;
  QPainterPath path;
  char command = 'M';
  bool relative = false;
  QPointF lastControl;
};

/// Draws a picture when it is asked for, so that it follows theme and scale.
class DrawnIcon : public QIconEngine {
 public:
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap drawn(size);
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    paint(&painter, drawn.rect(), mode, state);
    return drawn;
  }

 protected:
  [[nodiscard]] static QRectF Square(const QRect& rect) {
    const double side = std::min(rect.width(), rect.height());
    QRectF square(0, 0, side, side);
    square.moveCenter(QRectF(rect).center());
    return square;
  }
};

class VectorIcon : public DrawnIcon {
 public:
  explicit VectorIcon(Icon shown) : icon(shown) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const Theme& t = th();
    PaintIcon(*painter, icon, Square(rect),
              mode == QIcon::Disabled ? t.dis
              : state == QIcon::On    ? t.acc
                                      : t.tx1);
  }

  [[nodiscard]] QIconEngine* clone() const override { return new VectorIcon(icon); }

 private:
  Icon icon;
};

class SignOfMessage : public DrawnIcon {
 public:
  explicit SignOfMessage(Sign shown) : sign(shown) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
    const Theme& t = th();
    const QRectF square = Square(rect);
    if (sign == Sign::Error || sign == Sign::Warning) {
      PaintIcon(*painter, Icon::Warning, square, sign == Sign::Error ? t.err : t.warn);
      return;
    }
    PaintIcon(*painter, Icon::Record, square, t.acc);  // its ring
    painter->setPen(t.acc);
    painter->setFont(FontOf(FontStack::Text, square.height() * 0.42, QFont::Bold));
    painter->drawText(square, Qt::AlignCenter,
                      sign == Sign::Question ? QStringLiteral("?") : QStringLiteral("i"));
  }

  [[nodiscard]] QIconEngine* clone() const override { return new SignOfMessage(sign); }

 private:
  Sign sign;
};

QPixmap ApplicationPixmap(int side) {
  QPixmap drawn(side, side);
  drawn.fill(Qt::transparent);
  QPainter p(&drawn);
  p.setRenderHint(QPainter::Antialiasing);
  p.setPen(Qt::NoPen);
  p.setBrush(ThemeOf(ThemeKind::Dark).accd);
  p.drawRoundedRect(QRectF(0, 0, side, side), side * 0.22, side * 0.22);
  const QColor ink = ThemeOf(ThemeKind::Dark).onaccd;
  constexpr std::array<double, 3> heights{0.40, 0.70, 0.55};
  for (std::size_t i = 0; i < heights.size(); ++i) {
    const double x = side * (0.27 + 0.23 * double(i));
    const double top = side * 0.20, bottom = side * 0.80;
    p.setBrush(WithAlpha(ink, 0.45));
    p.drawRoundedRect(QRectF(x - side * 0.025, top, side * 0.05, bottom - top), side * 0.025,
                      side * 0.025);
    p.setBrush(ink);
    const double y = bottom - (bottom - top) * heights[i];
    p.drawRoundedRect(QRectF(x - side * 0.085, y - side * 0.055, side * 0.17, side * 0.11), side * 0.03,
                      side * 0.03);
  }
  return drawn;
}

}  // namespace

QPainterPath ParsePath(const char* outline) { return PathReader(outline).read(); }

const QPainterPath& IconPath(Icon icon) {
  static const auto paths = [] {
    std::array<QPainterPath, Icons> parsed;
    for (std::size_t i = 0; i < parsed.size(); ++i) parsed[i] = ParsePath(outlines[i]);
    return parsed;
  }();
  return paths[static_cast<std::size_t>(icon)];
}

void PaintIcon(QPainter& painter, Icon icon, const QRectF& square, const QColor& ink, bool filled) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(square.topLeft());
  painter.scale(square.width() / grid, square.height() / grid);
  painter.setPen(QPen(ink, penWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(filled ? QBrush(ink) : QBrush(Qt::NoBrush));
  painter.drawPath(IconPath(icon));
  painter.restore();
}

QIcon IconFor(Icon icon) { return QIcon(new VectorIcon(icon)); }

QIcon SignIcon(Sign sign) { return QIcon(new SignOfMessage(sign)); }

QIcon ApplicationIcon() {
  QIcon icon;
  for (const int side : {16, 24, 32, 48, 64, 128, 256}) icon.addPixmap(ApplicationPixmap(side));
  return icon;
}

}  // namespace Sonarello
