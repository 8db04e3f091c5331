// The level of a channel as a column of segments.
#pragma once

#include <QColor>

#include "app/controls/Control.h"

namespace Sonarello {

class LevelMeter : public Control {
  Q_OBJECT

 public:
  explicit LevelMeter(QWidget* parent = nullptr);

  /// Shows a level of 0..127 at once and repaints no more than the segments that change.
  void setLevel(int level);
  [[nodiscard]] int level() const { return shownLevel; }

  /// The strip's ground behind the column, and how strongly the column stands out from it (0..1).
  void setGround(const QColor& colour, double opacity);

  [[nodiscard]] int segments() const;
  /// How many of the segments are lit at a level.
  [[nodiscard]] int litAt(int level) const;
  [[nodiscard]] int lit() const { return litAt(shownLevel); }
  /// The place of a segment, counted from 1 at the bottom.
  [[nodiscard]] QRect segmentRect(int segment) const;

  [[nodiscard]] Spoken spoken() const override;
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QColor colourOf(int segment, bool isLit) const;

  int shownLevel = 0;
  QColor ground;
  double strength = 1;
};

}  // namespace Sonarello
