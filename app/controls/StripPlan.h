// Where the rows of a strip lie; the group column has the same rows.
#pragma once

#include <QRect>
#include <QSize>

namespace Sonarello {

struct StripPlan {
  QRect head, plate, leds, fader, value, velocity, octave;

  /// The rows of a strip of a size in pixels. Compact is for low desks.
  [[nodiscard]] static StripPlan Of(const QSize& strip, bool compact);

  /// The least height of a strip.
  [[nodiscard]] static int LeastHeight(bool compact);
};

/// The horizontal plan of the row: group column and sixteen strips without an uneven rest.
struct StripRowPlan {
  int width = 0;
  bool compact = false;

  [[nodiscard]] QRect group(int height) const;
  /// The strip of a channel of 0..15.
  [[nodiscard]] QRect strip(int channel, int height) const;
  [[nodiscard]] static int LeastWidth(bool compact);

 private:
  [[nodiscard]] double gap() const;
};

}  // namespace Sonarello
