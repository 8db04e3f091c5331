#include "app/controls/PianoKeys.h"

#include <QMouseEvent>
#include <QPainterPath>
#include <algorithm>

#include "app/controls/Painting.h"

namespace Sonarello {
namespace {

constexpr double keyWidth = 22, keyHeight = 110, blackHeight = 0.6, blackWidth = 0.6;
constexpr int octave = 12;

}  // namespace

PianoKeys::PianoKeys(QWidget* parent) : Control(parent) {}

bool PianoKeys::IsBlack(int note) {
  const int step = note % octave;
  return step == 1 || step == 3 || step == 6 || step == 8 || step == 10;
}

void PianoKeys::setRange(int lowest, int highest) {
  low = std::clamp(lowest, 0, 127);
  high = std::clamp(highest, low, 127);
  updateGeometry();
  update();
}

void PianoKeys::setFirstOctave(int first) {
  firstOctave = first;
  update();
}

void PianoKeys::setSounding(int note, bool on) {
  if (note < 0 || note > 127 || sounding.testBit(note) == on) return;
  sounding.setBit(note, on);
  update(keyRect(note).toAlignedRect());
}

void PianoKeys::silence() {
  sounding.fill(false);
  update();
}

/// White keys from one note up to, not including, another.
int PianoKeys::whites(int from, int to) const {
  int count = 0;
  for (int note = from; note < to; ++note) count += IsBlack(note) ? 0 : 1;
  return count;
}

double PianoKeys::whiteWidth() const { return double(width()) / std::max(whites(low, high + 1), 1); }

QRectF PianoKeys::keyRect(int note) const {
  const double unit = whiteWidth(), left = whites(low, note) * unit;
  if (!IsBlack(note)) return QRectF(left, 0, unit, height());
  return QRectF(left - unit * blackWidth / 2, 0, unit * blackWidth, height() * blackHeight);
}

int PianoKeys::noteAt(const QPointF& point) const {
  if (!QRectF(rect()).contains(point)) return -1;
  for (const bool black : {true, false})  // black keys lie on the white ones
    for (int note = low; note <= high; ++note)
      if (IsBlack(note) == black && keyRect(note).contains(point)) return note;
  return -1;
}

Spoken PianoKeys::spoken() const { return {.role = QAccessible::Grouping}; }

QSize PianoKeys::sizeHint() const {
  return {metrics().px(keyWidth) * whites(low, high + 1), metrics().px(keyHeight)};
}

QSize PianoKeys::minimumSizeHint() const {
  return {metrics().px(14) * whites(low, high + 1), metrics().px(80)};
}

void PianoKeys::paintEvent(QPaintEvent*) {
  const Theme& t = th();
  const Metrics& m = metrics();
  QPainter painter(this);
  painter.fillRect(rect(), t.kw);
  painter.setFont(m.font(Role::ScaleFigure));
  for (int note = low; note <= high; ++note) {
    if (IsBlack(note)) continue;
    const QRectF key = keyRect(note);
    if (sounding.testBit(note) || note == held) painter.fillRect(key, t.keysounds);
    PaintHairline(painter, QLineF(std::floor(key.left()), 0, std::floor(key.left()), height()),
                  t.keyline);
    if (note % octave != 0) continue;
    painter.setPen(t.keytext);
    painter.drawText(key.adjusted(0, 0, 0, -m.px(6)), Qt::AlignHCenter | Qt::AlignBottom,
                     QStringLiteral("C%1").arg(note / octave + firstOctave));
  }
  for (int note = low; note <= high; ++note) {
    if (!IsBlack(note)) continue;
    const bool on = sounding.testBit(note) || note == held;
    PaintBox(painter, keyRect(note).adjusted(0, -m.px(2), 0, 0), m.f(1.5), on ? t.accd : t.kb,
             QColor());
  }
  PaintBox(painter, rect(), 0, Qt::NoBrush, t.line, m.hair());
}

void PianoKeys::hold(int note) {
  if (note == held) return;
  const int before = std::exchange(held, note);
  update();
  if (before >= 0) Q_EMIT released(before);
  if (note >= 0) Q_EMIT pressed(note);
}

void PianoKeys::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton)
    hold(noteAt(event->position()));
  else
    event->ignore();
}

void PianoKeys::mouseMoveEvent(QMouseEvent* event) {
  if ((event->buttons() & Qt::LeftButton) != 0) hold(noteAt(event->position()));
}

void PianoKeys::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) hold(-1);
}

void PianoKeys::hideEvent(QHideEvent* event) {
  Control::hideEvent(event);
  hold(-1);
}

}  // namespace Sonarello
