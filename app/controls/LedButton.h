// Buttons that are a light: solo, mute, record arm; and the small lights without a button.
#pragma once

#include "app/controls/Control.h"

class QTimer;

namespace Sonarello {

enum class LedKind { Solo, Mute, Record };

/// Implied is the mute that another channel's solo causes.
enum class LedState { Off, Lit, Implied };

class LedButton : public Control {
  Q_OBJECT

 public:
  explicit LedButton(LedKind kind, QWidget* parent = nullptr);

  /// How far the widget reaches beyond the button's face, for the glow of a lit one.
  [[nodiscard]] static int Glow();

  [[nodiscard]] LedState state() const { return shownState; }
  void setState(LedState state);
  /// Blinks in halves of a second while lit; with reduced motion it stays lit.
  void setBlinking(bool on);
  /// The light is on at this moment; a blinking one is so half of the time.
  [[nodiscard]] bool glows() const;
  /// Reports presses of the right button too, which otherwise go to the widget below.
  void setTakesRightButton(bool takes) { takesRight = takes; }

  [[nodiscard]] Spoken spoken() const override;
  void pressSpoken() override;
  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  /// Pressed down; the modifiers tell Ctrl's special meanings. The button changes nothing by itself.
  void pressed(Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
  void released();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  const LedKind kind;
  LedState shownState = LedState::Off;
  bool takesRight = false;
  bool held = false;
  bool darkHalf = false;
  QTimer* blink = nullptr;
};

/// A light without a button: an effect that is on, MIDI that comes in.
class SmallLed : public Control {
  Q_OBJECT

 public:
  /// Play lights in the colour of activity, File in that of values born by the file.
  enum class Ink { Play, File };

  explicit SmallLed(QWidget* parent = nullptr, Ink ink = Ink::Play);

  [[nodiscard]] bool lit() const { return isLit; }
  void setLit(bool lit);

  [[nodiscard]] Spoken spoken() const override;
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const Ink ink;
  bool isLit = false;
};

}  // namespace Sonarello
