#include "app/panels/BarScale.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Sonarello {

namespace {

/// Ticks from one number to the next.
constexpr int NumberEvery = 4;

}  // namespace

void BarScale::SetBars(std::vector<qint64> starts, qint64 length) {
  starts_ = std::move(starts);
  if (starts_.empty()) starts_.push_back(0);
  length_ = std::max<qint64>(length, 0);
}

int BarScale::BarAt(qint64 time) const {
  const auto next = std::upper_bound(starts_.begin(), starts_.end(), time);
  return std::max(static_cast<int>(next - starts_.begin()) - 1, 0);
}

qint64 BarScale::NearestBar(qint64 time) const {
  const int bar = BarAt(time);
  const qint64 from = StartOf(bar);
  const qint64 to = bar + 1 < bars() ? StartOf(bar + 1) : length_;
  return std::clamp<qint64>(time - from <= to - time ? from : to, 0, length_);
}

qint64 BarScale::Step(qint64 time, int count) const {
  const int bar = BarAt(time);
  const bool inside = time > StartOf(bar);
  const int target = bar + count + (count < 0 && inside ? 1 : 0);
  if (target >= bars()) return length_;
  return std::clamp<qint64>(StartOf(std::max(target, 0)), 0, length_);
}

double BarScale::XOf(qint64 time, double width) const {
  if (length_ == 0) return 0;
  return static_cast<double>(std::clamp<qint64>(time, 0, length_)) / static_cast<double>(length_) *
         width;
}

qint64 BarScale::TimeAt(double x, double width) const {
  if (width <= 0) return 0;
  return std::llround(std::clamp(x / width, 0.0, 1.0) * static_cast<double>(length_));
}

int BarScale::TickStep(double width, double least) const {
  int step = 1;
  while (width / bars() * step < least && step < bars()) step *= 2;
  return step;
}

std::vector<BarTick> BarScale::Ticks(double width, double least) const {
  std::vector<BarTick> ticks;
  if (length_ == 0) return ticks;
  const int step = TickStep(width, least);
  double last = -least;
  for (int bar = 0; bar < bars() && StartOf(bar) <= length_; bar += step) {
    const double x = XOf(StartOf(bar), width);
    const bool numbered = bar % (step * NumberEvery) == 0;
    if (x - last < least / 2) continue;
    ticks.push_back({x, bar + 1, numbered});
    last = x;
  }
  return ticks;
}

}  // namespace Sonarello
