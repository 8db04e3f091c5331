// A keyboard to play on with the mouse.
#pragma once

#include <QBitArray>

#include "app/controls/Control.h"

namespace Sonarello {

/// White keys are 22 x 110 at 100 %, or as wide as the widget makes them. Notes are those of MIDI, 60
/// is C3 or C4 by the octave's name.
class PianoKeys : public Control {
  Q_OBJECT

 public:
  explicit PianoKeys(QWidget* parent = nullptr);

  /// The outermost notes, both white keys.
  void setRange(int lowest, int highest);
  /// How the octave of note 0 is named: -2 makes note 60 C3, -1 makes it C4.
  void setFirstOctave(int octave);
  /// Shows a key as sounding or not, whoever plays it.
  void setSounding(int note, bool on);
  void silence();

  /// The note under a point, -1 beside the keys.
  [[nodiscard]] int noteAt(const QPointF& point) const;
  [[nodiscard]] QRectF keyRect(int note) const;
  [[nodiscard]] static bool IsBlack(int note);
  /// The note that the mouse holds, -1 if none.
  [[nodiscard]] int heldNote() const { return held; }

  [[nodiscard]] Spoken spoken() const override;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// The mouse pressed a key or slid onto it; each is followed by released for the same note.
  void pressed(int note);
  void released(int note);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void hold(int note);
  [[nodiscard]] int whites(int from, int to) const;
  [[nodiscard]] double whiteWidth() const;

  int low = 36, high = 96;  // five octaves
  int firstOctave = -2;
  QBitArray sounding{128};
  int held = -1;
};

}  // namespace Sonarello
