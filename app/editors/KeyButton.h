// A button that names its key behind its text.
#pragma once

#include <QPushButton>

namespace Sonarello {

class KeyButton : public QPushButton {
  Q_OBJECT

 public:
  KeyButton(const QString& text, const QString& key, QWidget* parent = nullptr);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString keyName;
};

}  // namespace Sonarello
