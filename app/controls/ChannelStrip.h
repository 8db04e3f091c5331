// One strip of the desk: a channel with its sound, its lights, its fader.
#pragma once

#include <QPixmap>

#include "app/controls/Control.h"
#include "app/controls/StripPlan.h"
#include "app/controls/StripView.h"

namespace Sonarello {

class LedButton;
class LevelMeter;
class NamePlate;
class Stepper;
class TCustomTrackBar;
class ValueBox;

class ChannelStrip : public Control {
  Q_OBJECT

 public:
  explicit ChannelStrip(QWidget* parent = nullptr);

  [[nodiscard]] const StripView& view() const { return shown; }
  void setView(const StripView& view);
  /// The level of 0..127; a silenced strip stays dark.
  void setLevel(int level);
  void setMeterShown(bool shown);
  void setCompact(bool compact);

  // The parts, for keys and tests.
  [[nodiscard]] TCustomTrackBar& volume() const { return *fader; }
  [[nodiscard]] LevelMeter& levelMeter() const { return *meter; }
  [[nodiscard]] LedButton& solo() const { return *soloButton; }
  [[nodiscard]] LedButton& mute() const { return *muteButton; }
  [[nodiscard]] LedButton& record() const { return *recordButton; }
  [[nodiscard]] NamePlate& namePlate() const { return *plate; }
  [[nodiscard]] ValueBox& valueBox() const { return *value; }
  [[nodiscard]] Stepper& velocity() const { return *velocityStepper; }
  [[nodiscard]] Stepper& octave() const { return *octaveStepper; }

  [[nodiscard]] Spoken spoken() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// The user touched the strip; comes before what the touch itself means.
  void chosen();
  void volumeMoved(int value);
  void faderPressed();
  void faderReleased();
  void soundWanted();
  void redirectMenuWanted(const QPoint& globalPosition);
  void soloPressed(Qt::KeyboardModifiers modifiers);
  void mutePressed(Qt::KeyboardModifiers modifiers);
  void recPressed();
  void velocityPressed(int direction);
  void velocityReleased();
  void velocityRangeWanted();
  void octavePressed(int direction);
  void octaveReleased();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void layOut() override;

 private:
  void connectFader();
  void connectLights();
  void connectSteppers();
  void showState();
  void showTexts();
  void showTips();
  void paintGround(QPainter& painter) const;
  void paintHead(QPainter& painter) const;
  [[nodiscard]] QColor ground() const;
  [[nodiscard]] QString channelWord() const;
  [[nodiscard]] QString stateWords() const;

  StripView shown;
  StripPlan plan;
  bool compact = false;
  QPixmap background;  // null: paint it anew
  NamePlate* plate;
  LedButton* soloButton;
  LedButton* muteButton;
  LedButton* recordButton;
  TCustomTrackBar* fader;
  LevelMeter* meter;
  ValueBox* value;
  Stepper* velocityStepper;
  Stepper* octaveStepper;
};

}  // namespace Sonarello
