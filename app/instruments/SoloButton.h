// A button that wears the colour of solo while it is on.
#pragma once

#include <QPushButton>

namespace Sonarello {

class SoloButton : public QPushButton {
  Q_OBJECT

 public:
  explicit SoloButton(QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace Sonarello
