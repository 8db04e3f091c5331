// The virtual keyboard: plays the active channel with the mouse and with the computer's keyboard.
#pragma once

#include <QPointF>
#include <QWidget>
#include <optional>

#include "playback/VirtualKeys.h"

class QLabel;

namespace Sonarello {

class PianoKeys;
class Stepper;
class ValueBox;

/// One note at a time. A note ends when its key is let go, and also when the window loses the focus, is
/// hidden or closed: none stays hanging.
///
/// The mouse plays louder the lower on a key it is; it may slide over the keys. The computer's keyboard
/// plays two octaves, see ComputerKeys.h; Left and Right move them by an octave, Up and Down change
/// their velocity. Esc closes. Why a key does not sound is told in the window: a dialog would take the
/// mouse away from the key that it holds.
class TVirtualKeysForm : public QWidget {
  Q_OBJECT

 public:
  /// `keys` outlives the window.
  explicit TVirtualKeysForm(TVirtualKeys& keys, QWidget* parent = nullptr);
  ~TVirtualKeysForm() override;

  /// The active channel as its strip shows it (1-16, 0 for none), and the name of its sound.
  void ShowChannel(int channel, const QString& sound);
  /// Ends the note. To be called before routes are rebuilt.
  void Quiet();

  /// The lowest note of the computer's keyboard, a C.
  [[nodiscard]] int LowestNote() const noexcept { return lowestNote; }
  /// Velocity of the computer's keyboard, 1-127.
  [[nodiscard]] int Velocity() const noexcept { return velocity; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

  PianoKeys* Keys;       ///< the piano
  Stepper* OctaveShift;  ///< octaves from where the computer's keyboard begins usually
  ValueBox* VelocityBox;

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void BuildHead();
  void ArrangeHead();
  void ArrangeKeys();
  void ShowTexts();
  void Play(int note, int loudness);
  void LetGo(int note);
  void ShiftOctave(int octaves);
  void SetVelocity(int value);
  [[nodiscard]] int VelocityAt(const QPointF& point) const;

  TVirtualKeys& player;
  QLabel* octaveCaption;
  QLabel* velocityCaption;
  QLabel* hint;  ///< what the computer's keyboard plays, or why nothing sounds
  QString soundName;
  QString silence;                        ///< why the last key did not sound; empty if it did
  QPointF pointer;                        ///< where the mouse is on the keys
  std::optional<std::uint32_t> heldCode;  ///< scan code of the computer's key that sounds
  int sounding = -1;                      ///< note that is shown as sounding, -1 for none
  int shownChannel = 0;
  int lowestNote = 48;
  int velocity = 100;
};

}  // namespace Sonarello
