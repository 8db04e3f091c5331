#include "app/controls/LevelMeter.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "app/controls/Metrics.h"
#include "app/controls/Theme.h"

namespace Sonarello {
namespace {

constexpr double columnWidth = 9, pitch = 4, gap = 1, margin = 3;  // pixels at 100 %
constexpr int highest = 127, loud = 116, middling = 96;

}  // namespace

LevelMeter::LevelMeter(QWidget* parent) : Control(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);  // a tick leaves the strip below it alone
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFocusPolicy(Qt::NoFocus);
}

int LevelMeter::segments() const {
  const Metrics& m = metrics();
  return std::max((height() - m.px(2 * margin)) / m.px(pitch), 0);
}

int LevelMeter::litAt(int level) const {
  const int count = segments();
  return level <= 0 ? 0 : std::min((level + 1) * count / highest, count);
}

QRect LevelMeter::segmentRect(int segment) const {
  const Metrics& m = metrics();
  const int thick = m.px(pitch) - m.px(gap);
  const int bottom = height() - m.px(margin) - (segment - 1) * m.px(pitch);
  return QRect(0, bottom - thick, width(), thick);
}

void LevelMeter::setLevel(int level) {
  const int before = lit();
  shownLevel = std::clamp(level, 0, highest);
  const int now = lit();
  if (before == now) return;
  const auto [low, high] = std::minmax(before, now);
  update(segmentRect(high).united(segmentRect(low + 1)));
}

void LevelMeter::setGround(const QColor& colour, double opacity) {
  if (ground == colour && strength == opacity) return;
  ground = colour;
  strength = opacity;
  update();
}

QColor LevelMeter::colourOf(int segment, bool isLit) const {
  const Theme& t = th();
  if (!isLit) return Mixed(t.moff, strength, ground);
  const int count = segments();  // a segment stands for segment / count of the highest level
  if (segment * highest > loud * count) return t.m3;
  return segment * highest > middling * count ? t.m2 : t.m1;
}

Spoken LevelMeter::spoken() const { return {.role = QAccessible::Indicator}; }

QSize LevelMeter::sizeHint() const { return {metrics().px(columnWidth), metrics().px(120)}; }

void LevelMeter::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.fillRect(event->rect(), ground);
  const int isLit = lit();
  for (int segment = segments(); segment > 0; --segment) {
    const QRect rect = segmentRect(segment);
    if (rect.intersects(event->rect())) painter.fillRect(rect, colourOf(segment, segment <= isLit));
  }
}

}  // namespace Sonarello
