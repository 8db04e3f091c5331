// A small signed value between two buttons: a channel's velocity offset, its octave.
#pragma once

#include "app/controls/Control.h"

class QTimer;

namespace Sonarello {

enum class StepperKind {
  Velocity,  ///< − value +; the figure steps too, Ctrl asks for the range editor
  Octave,    ///< down value up; the button of the direction in force is lit
};

class Stepper : public Control {
  Q_OBJECT

 public:
  explicit Stepper(StepperKind kind, QWidget* parent = nullptr);

  [[nodiscard]] int value() const { return shownValue; }
  void setValue(int value);
  void setRange(int least, int most);

  /// Repeats stepped while held: after 700 ms, then every 150 ms. Without it stepped comes once.
  void setRepeats(bool on) { repeats = on; }

  [[nodiscard]] QRect minusRect() const;
  [[nodiscard]] QRect plusRect() const;

  [[nodiscard]] Spoken spoken() const override;
  void setSpokenValue(int value) override;
  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  /// Held down with a direction of -1 or +1, until released. The value changes only by setValue.
  void pressed(int direction);
  void released();
  /// One step in a direction: at once, and as often as it repeats.
  void stepped(int direction);
  /// Ctrl and a click: the user wants the editor of the range.
  void rangeWanted();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  [[nodiscard]] int directionAt(const QPoint& point, Qt::MouseButton button) const;
  void paintButton(QPainter& painter, const QRect& place, int direction) const;
  void hold(int direction);
  void stepOnce(int direction);
  void letGo();

  const StepperKind kind;
  int shownValue = 0, lowest = -127, highest = 127;
  bool repeats = false;
  int heldDirection = 0;
  QPoint pointer{-1, -1};
  QTimer* repeat;
  WheelNotches wheel;
};

}  // namespace Sonarello
