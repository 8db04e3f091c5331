// A round control of 270 degrees.
#pragma once

#include "app/controls/ValueControl.h"

namespace Sonarello {

class Knob : public ValueControl {
  Q_OBJECT

 public:
  explicit Knob(QWidget* parent = nullptr);

  /// The diameter in pixels at 100 %: 46, or 40 on a low desk.
  void setDiameter(double pixels);

  [[nodiscard]] Spoken spoken() const override;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void paintParts(QPainter& painter) const;

  double diameter = 46;
  bool held = false;
  double anchorY = 0, anchorValue = 0;
};

}  // namespace Sonarello
