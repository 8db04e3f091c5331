// A button that shows a colour and lets the user choose another.
#pragma once

#include <QAbstractButton>
#include <QColor>
#include <functional>
#include <optional>

namespace Sonarello {

class ColourButton : public QAbstractButton {
  Q_OBJECT

 public:
  explicit ColourButton(QWidget* parent = nullptr);

  /// 0xRRGGBB, or -1 for the colour that the theme gives.
  [[nodiscard]] int Colour() const { return colour; }
  void SetColour(int value);
  [[nodiscard]] QSize sizeHint() const override;

  /// Asks for another colour than the one given; nothing if the user gave up. Tests answer for the
  /// user.
  std::function<std::optional<QColor>(const QColor& now)> AskColour;

 Q_SIGNALS:
  void ColourChosen(int value);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void Open();
  void ChooseOther();
  void Choose(int value);
  [[nodiscard]] QColor Shown() const;

  int colour = -1;
};

}  // namespace Sonarello
