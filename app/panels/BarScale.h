// The bars of a song along a line: which get a tick, which a number.
#pragma once

#include <QtGlobal>
#include <vector>

namespace Sonarello {

/// One tick of the scale.
struct BarTick {
  double x;     ///< pixels from the line's left end
  int measure;  ///< counts from 1
  bool numbered;
};

/// Bars may be of any length: times follow the song's tempo. Times are in one unit, ms or ticks.
class BarScale {
 public:
  /// The times at which the bars begin, ascending, and the end of the song. A song without bars is a
  /// single one.
  void SetBars(std::vector<qint64> starts, qint64 length);

  [[nodiscard]] qint64 length() const { return length_; }
  [[nodiscard]] int bars() const { return static_cast<int>(starts_.size()); }
  [[nodiscard]] qint64 StartOf(int bar) const { return starts_[static_cast<std::size_t>(bar)]; }

  /// The bar that holds a time, counted from 0.
  [[nodiscard]] int BarAt(qint64 time) const;
  /// The beginning of a bar that is next to a time.
  [[nodiscard]] qint64 NearestBar(qint64 time) const;
  /// The time `count` bars on (negative: back) from a time. Back from inside a bar, its own beginning
  /// is the first. Never outside the song.
  [[nodiscard]] qint64 Step(qint64 time, int count) const;

  [[nodiscard]] double XOf(qint64 time, double width) const;
  [[nodiscard]] qint64 TimeAt(double x, double width) const;

  /// How many bars lie between two ticks on a line: 1, 2, 4, 8..., so that ticks stand `least` pixels
  /// apart at the bars' mean length.
  [[nodiscard]] int TickStep(double width, double least) const;
  /// The ticks of a line; every fourth has a number. A tick nearer than half of `least` to the one
  /// before is left out. The cost grows with the ticks, not with the bars.
  [[nodiscard]] std::vector<BarTick> Ticks(double width, double least) const;

 private:
  std::vector<qint64> starts_{0};
  qint64 length_ = 0;
};

}  // namespace Sonarello
