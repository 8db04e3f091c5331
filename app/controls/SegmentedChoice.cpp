#include "app/controls/SegmentedChoice.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainterPath>
#include <algorithm>

#include "app/controls/FocusRing.h"
#include "app/controls/Painting.h"

namespace Sonarello {
namespace {

constexpr double padding = 12, frameHeight = 28;

}  // namespace

SegmentedChoice::SegmentedChoice(const QStringList& choices, QWidget* parent)
    : Control(parent), names(choices) {
  setFocusPolicy(Qt::StrongFocus);
  setProperty(FocusRingProperty, true);
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SegmentedChoice::setCurrent(int index) {
  const int wanted = std::clamp(index, 0, std::max(int(names.size()) - 1, 0));
  if (wanted == chosen) return;
  chosen = wanted;
  update();
  sayValue();
}

void SegmentedChoice::choose(int index) {
  const int before = chosen;
  setCurrent(index);
  if (chosen != before) Q_EMIT changed(chosen);
}

void SegmentedChoice::setSpokenValue(int index) { choose(index); }

Spoken SegmentedChoice::spoken() const {
  return {.role = QAccessible::ComboBox,
          .value = SpokenValue{chosen, 0, std::max(int(names.size()) - 1, 0), names.value(chosen)}};
}

int SegmentedChoice::segmentWidth(int index) const {
  return QFontMetrics(metrics().font(Role::Strong)).horizontalAdvance(names.value(index)) +
         2 * metrics().px(padding);
}

QRect SegmentedChoice::segmentRect(int index) const {
  int left = 0;
  for (int i = 0; i < index; ++i) left += segmentWidth(i);
  return QRect(left, 0, segmentWidth(index), height());
}

int SegmentedChoice::indexAt(const QPoint& point) const {
  for (int i = 0; i < names.size(); ++i)
    if (segmentRect(i).contains(point)) return i;
  return -1;
}

QSize SegmentedChoice::sizeHint() const {
  int width = 0;
  for (int i = 0; i < names.size(); ++i) width += segmentWidth(i);
  return {width, metrics().px(frameHeight)};
}

void SegmentedChoice::paintEvent(QPaintEvent*) {
  const Theme& t = th();
  const Metrics& m = metrics();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  PaintBox(painter, rect(), m.f(4), isEnabled() ? t.bg3 : t.bg2, QColor());
  QPainterPath frame;
  frame.addRoundedRect(rect(), m.f(4), m.f(4));
  for (int i = 0; i < names.size(); ++i) {
    const QRect segment = segmentRect(i);
    const bool on = i == chosen;
    painter.save();
    painter.setClipPath(frame);
    if (on)
      painter.fillRect(segment, isEnabled() ? t.accd : t.line2);
    else if (i == hovered && underMouse() && isEnabled())
      painter.fillRect(segment, t.bg3h);
    painter.restore();
    if (i > 0) PaintHairline(painter, QLineF(segment.left(), 0, segment.left(), height()), t.line2);
    painter.setFont(m.font(on ? Role::Strong : Role::Body));
    painter.setPen(!isEnabled() ? t.dis : on ? t.onaccd : t.tx2);
    painter.drawText(segment, Qt::AlignCenter, names.at(i));
  }
  PaintBox(painter, rect(), m.f(4), Qt::NoBrush, isEnabled() ? t.line2 : t.line, m.hair());
}

void SegmentedChoice::mousePressEvent(QMouseEvent* event) {
  const int index = indexAt(event->position().toPoint());
  if (event->button() == Qt::LeftButton && index >= 0)
    choose(index);
  else
    event->ignore();
}

void SegmentedChoice::mouseMoveEvent(QMouseEvent* event) {
  hovered = indexAt(event->position().toPoint());
  update();
}

void SegmentedChoice::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Up: choose(chosen - 1); break;
    case Qt::Key_Right:
    case Qt::Key_Down: choose(chosen + 1); break;
    default: event->ignore();
  }
}

}  // namespace Sonarello
