// One of a few, side by side in one frame.
#pragma once

#include <QStringList>

#include "app/controls/Control.h"

namespace Sonarello {

class SegmentedChoice : public Control {
  Q_OBJECT

 public:
  explicit SegmentedChoice(const QStringList& choices, QWidget* parent = nullptr);

  [[nodiscard]] int current() const { return chosen; }
  void setCurrent(int index);
  [[nodiscard]] QRect segmentRect(int index) const;

  [[nodiscard]] Spoken spoken() const override;
  void setSpokenValue(int index) override;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 Q_SIGNALS:
  /// The user chose another.
  void changed(int index);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void choose(int index);
  [[nodiscard]] int indexAt(const QPoint& point) const;
  [[nodiscard]] int segmentWidth(int index) const;

  const QStringList names;
  int chosen = 0;
  int hovered = -1;
};

}  // namespace Sonarello
