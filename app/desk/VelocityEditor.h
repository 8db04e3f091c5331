// Sonarello: the editor of a channel's velocity range.
#pragma once

#include <QWidget>

#include "desk/StripVelocities.h"

class QLabel;

namespace Sonarello {

class ParamSlider;

/// A small popup with two sliders: the lowest and the highest velocity that the channel's notes are
/// mapped to. Each move counts at once; the reset button takes the mapping away.
class VelocityEditor : public QWidget {
  Q_OBJECT

 public:
  VelocityEditor(TStripVelocities& velocities, QWidget* parent);

  /// Opens on a channel (0-15) beside a point of the screen. False for a channel without notes.
  bool Open(int channel, const QPoint& at);

 Q_SIGNALS:
  /// The range of a channel has changed.
  void rangeChanged(int channel);

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  void ShowRange();
  void Changed();

  TStripVelocities& velocities;
  QLabel* title;
  QLabel* source;
  ParamSlider* minimum;
  ParamSlider* maximum;
};

}  // namespace Sonarello
