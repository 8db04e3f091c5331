// The spring-loaded fader that moves all channels together.
#pragma once

#include "app/controls/Control.h"
#include "app/controls/TrackBar.h"

class QTimer;

namespace Sonarello {

/// Rests in the middle. While it is held its position tells how far the loudest channel moves; let go,
/// it returns to the middle and says nothing on the way.
class GroupFader : public Control {
  Q_OBJECT

 public:
  static constexpr int Reach = 127;

  explicit GroupFader(QWidget* parent = nullptr);

  /// -Reach..Reach; 0 in the middle.
  [[nodiscard]] int position() const { return shownPosition; }
  /// The cap is on its way back to the middle.
  [[nodiscard]] bool returning() const;

  [[nodiscard]] Spoken spoken() const override;
  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  /// Each hold is pressed, any number of moved, released.
  void pressed();
  void moved(int position);
  void released();
  /// For display: the position on the screen, on the way back too.
  void shown(int position);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void layOut() override;

 private:
  void show(int position);
  void nudge(int steps);
  void letGo();
  void comeBack();

  FaderPlan plan;
  int shownPosition = 0;
  bool held = false;
  double anchorY = 0;
  int anchorPosition = 0;
  int returnFrom = 0, returnFrame = 0;
  QTimer* spring;
  WheelNotches wheel;
};

}  // namespace Sonarello
