// Rewind, play, stop, record and loop.
#pragma once

#include <QTimer>
#include <array>

#include "app/panels/Panel.h"

namespace Sonarello {

class PanelButton;

struct TransportView {
  bool song = false;  ///< a song is loaded
  bool playing = false;
  bool recording = false;
  bool looping = false;
  QString whyNoRecording = {};  ///< empty: the record button works
};

class TransportPanel : public Panel {
  Q_OBJECT
 public:
  explicit TransportPanel(QWidget* parent = nullptr);

  void SetView(const TransportView& view);

  /// Time in ms that the rewind button is held before it winds.
  static constexpr int WindDelay = 400;
  /// Time in ms between two steps of winding: the interval of TransportTimer.
  static constexpr int WindInterval = 50;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 Q_SIGNALS:
  /// Rewind was clicked, not held: to the start of the song.
  void rewindClicked();
  /// The rewind button has been held: winding begins, goes on by a step, ends.
  void windBackBegan();
  void windBack();
  void windBackEnded();
  void playClicked();
  void stopClicked();
  void recordClicked();
  /// The right button on record: the menu of its modes, at a point of the screen.
  void recordMenuWanted(const QPoint& at);
  void loopClicked();
  /// The right button on loop: the panel of the loop.
  void loopPanelWanted();

 protected:
  void Arrange() override;
  void Refresh() override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  enum Button { Rewind, Play, Stop, Record, Loop, Buttons };

  void Connect();
  void RewindPressed();
  void RewindReleased();
  void TransportTimerTimer();

  TransportView view_;
  std::array<PanelButton*, Buttons> buttons_{};
  QTimer* TransportTimer;
  bool winding_ = false;
  bool mouseHeld_ = false;
  bool wound_ = false;  ///< the hold that lasts, or the last one, has wound: its click is none
};

}  // namespace Sonarello
