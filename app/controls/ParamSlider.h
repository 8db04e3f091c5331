// A row of an effect: the name of a parameter, a slider, its value with its unit.
#pragma once

#include "app/controls/ValueControl.h"

namespace Sonarello {

class ParamSlider : public ValueControl {
  Q_OBJECT

 public:
  explicit ParamSlider(QWidget* parent = nullptr);

  void setName(const QString& name);
  [[nodiscard]] QString name() const { return shownName; }
  /// The row that wheel and arrow keys move, wherever the pointer is; its window keeps it to one row.
  void setActive(bool active);
  [[nodiscard]] bool isActive() const { return active; }

  [[nodiscard]] QRectF track() const;
  [[nodiscard]] QRectF valueBox() const;

  [[nodiscard]] Spoken spoken() const override;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// The user turned to this row, by mouse or by Tab.
  void chosen();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  void paintTrack(QPainter& painter) const;
  [[nodiscard]] double thumbX() const;
  void moveThumb(double x);

  QString shownName;
  bool active = false, held = false;
  double grip = 0;  // from the thumb's middle to where it was taken
};

}  // namespace Sonarello
