#include <QFontMetricsF>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "app/controls/Painting.h"
#include "app/panels/SongSlider.h"

namespace Sonarello {

namespace {

constexpr double GripWidth = 12, GripHeight = 11, GripRadius = 3, LineWidth = 2;
constexpr double FlagWidth = 6, FlagHeight = 7;
constexpr double TallTick = 4, ShortTick = 12, TickEnd = 16;
constexpr double LeastTicks = 8, NumberGap = 4, NumberSize = 11.5, NumberBaseline = 14;
constexpr double ProgressHeight = 3, ProgressUp = 6;
constexpr double LoopShare = 0.13;

QRectF ProgressRect(double left, double right, double height) {
  const Metrics& m = metrics();
  return {left, height - m.px(ProgressUp), std::max(right - left, 0.0),
          static_cast<double>(m.px(ProgressHeight))};
}

}  // namespace

QRect SongSlider::PositionRect(double x) const {
  // The progress bar between the old and the new position is repainted with the united rectangles.
  const int reach = static_cast<int>(std::ceil(metrics().f(GripWidth / 2))) + 2;
  return {static_cast<int>(std::floor(x)) - reach, 0, 2 * reach + 1, height()};
}

void SongSlider::PaintTicks(QPainter& painter) const {
  const Metrics& m = metrics();
  const QRectF track = Track();
  const QFont font = FontOf(FontStack::Text, metrics().f(NumberSize), QFont::Normal);
  const QFontMetricsF sizes(font);
  painter.setFont(font);
  double free = 0;
  for (const BarTick& tick : scale_.Ticks(track.width(), m.f(LeastTicks))) {
    const double x = std::floor(track.left() + tick.x);
    const int top = m.px(tick.numbered ? TallTick : ShortTick);
    painter.fillRect(QRectF(x, top, m.hair(), m.px(TickEnd) + (tick.numbered ? 1 : 0) - top),
                     tick.numbered ? th().line2 : th().line);
    if (!tick.numbered) continue;
    const QString number = QString::number(tick.measure);
    const double left = x + m.px(NumberGap), width = sizes.horizontalAdvance(number);
    if (left < free || left + width > this->width() - m.px(2)) continue;
    painter.setPen(th().tx2);
    painter.drawText(QPointF(left, m.px(NumberBaseline)), number);
    free = left + width + m.px(NumberGap);
  }
  const double end = std::floor(track.right());
  if (scale_.length() > 0) {
    painter.fillRect(QRectF(end, m.px(TallTick), m.hair(), m.px(TickEnd) + 1 - m.px(TallTick)),
                     th().line2);
  }
}

void SongSlider::PaintLoop(QPainter& painter) const {
  if (!loop_) return;
  const Metrics& m = metrics();
  const double from = XOf(loop_->start), to = XOf(loop_->end), edge = m.px(2);
  painter.fillRect(QRectF(from, m.hair(), to - from, height() - 2 * m.hair()),
                   WithAlpha(th().acc, LoopShare));
  const auto flag = [&](double x, double direction) {
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(QRectF(std::round(direction > 0 ? x : x - edge), 0, edge, height()), th().acc);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path(QPointF(x, 0));
    path.lineTo(x + direction * m.f(FlagWidth + 2), 0);
    path.lineTo(x, m.f(FlagHeight));
    path.closeSubpath();
    painter.fillPath(path, th().acc);
  };
  flag(std::round(from), 1);
  flag(std::round(to), -1);
}

void SongSlider::PaintStill() {
  const double ratio = devicePixelRatioF();
  still_ = QPixmap(size() * ratio);
  still_.setDevicePixelRatio(ratio);
  still_.fill(Qt::transparent);
  QPainter painter(&still_);
  PaintBox(painter, rect(), metrics().px(4), th().well, th().line);
  const QRectF track = Track();
  if (song_) PaintTicks(painter);
  PaintLoop(painter);
  painter.fillRect(ProgressRect(track.left(), track.right(), height()), th().moff);
}

void SongSlider::PaintPosition(QPainter& painter, double x) const {
  const Metrics& m = metrics();
  const double left = std::round(x - m.px(GripWidth) / 2.0);
  const double middle = left + (m.px(GripWidth) - m.px(LineWidth)) / 2.0;
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.fillRect(QRectF(middle, 0, m.px(LineWidth), height()), th().tx1);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(th().tx1);
  const double top = height() - m.px(GripHeight) - m.hair();
  painter.drawRoundedRect(QRectF(left, top, m.px(GripWidth), m.px(GripHeight)), m.px(GripRadius),
                          m.px(GripRadius));
}

void SongSlider::paintEvent(QPaintEvent* event) {
  if (still_.isNull() || still_.devicePixelRatio() != devicePixelRatioF()) PaintStill();
  QPainter painter(this);
  const QRect dirty = event->rect();
  const double ratio = still_.devicePixelRatio();
  painter.drawPixmap(
      QRectF(dirty), still_,
      QRectF(dirty.x() * ratio, dirty.y() * ratio, dirty.width() * ratio, dirty.height() * ratio));
  if (!song_) return;
  painter.fillRect(ProgressRect(Track().left(), shownX_, height()), th().acc);
  PaintPosition(painter, shownX_);
}

}  // namespace Sonarello
