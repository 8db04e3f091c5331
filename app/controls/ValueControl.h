// What knobs and sliders have in common: a value in a range, a default, and the ways to change it.
#pragma once

#include "app/controls/Control.h"

namespace Sonarello {

/// Keys: Up and Right +1, Down and Left -1, Page 8, Del the default. Wheel: one step for each notch.
class ValueControl : public Control {
  Q_OBJECT

 public:
  explicit ValueControl(QWidget* parent = nullptr);

  [[nodiscard]] int value() const { return shownValue; }
  /// Shows a value, kept in the range; moved is emitted for the user's moves only.
  void setValue(int value);
  void setRange(int least, int most);
  [[nodiscard]] int least() const { return lowest; }
  [[nodiscard]] int most() const { return highest; }
  void setDefault(int value) { standard = value; }
  [[nodiscard]] int defaultValue() const { return standard; }
  /// How the value reads on the screen, with its unit; empty: the number.
  void setValueText(const QString& text);
  [[nodiscard]] QString valueText() const;
  /// Draws the value from the middle of the range instead of from its start.
  void setBipolar(bool on);
  [[nodiscard]] bool isBipolar() const { return bipolar; }

  void setSpokenValue(int value) override;

 Q_SIGNALS:
  void moved(int value);
  /// Around a drag with the mouse.
  void pressed();
  void released();

 protected:
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

  /// Moves as the user does, with the signal.
  void moveTo(int value);
  /// 0 at the lowest, 1 at the highest value.
  [[nodiscard]] double share() const;
  [[nodiscard]] SpokenValue spokenValue() const;

 private:
  int lowest = 0, highest = 127, shownValue = 0, standard = 0;
  bool bipolar = false;
  QString text;
  WheelNotches wheel;
};

}  // namespace Sonarello
