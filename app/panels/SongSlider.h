// The song from left to right: bars, loop, position. Seeks, and sets the loop's ends.
#pragma once

#include <QPixmap>
#include <functional>
#include <optional>

#include "app/controls/Control.h"
#include "app/panels/BarScale.h"
#include "app/panels/Panel.h"

namespace Sonarello {

/// The loop's span, in the time of the song.
struct LoopSpan {
  qint64 start = 0, end = 0;
  bool operator==(const LoopSpan&) const = default;
};

class SongSlider : public Panel {
  Q_OBJECT
 public:
  explicit SongSlider(QWidget* parent = nullptr);

  /// Times at which the bars begin and the song's length, both in ms.
  void SetBars(std::vector<qint64> starts, qint64 length);
  /// No song: an empty well that takes nothing.
  void Clear();
  /// Moves the position; meant for the tick of the display. Ignored while the user holds the grip.
  void SetPosition(qint64 ms);
  /// Shows the loop's span, or none.
  void SetLoop(std::optional<LoopSpan> loop);
  /// How a time is written in hints and for assistive programs ("Takt 17 Schlag 3").
  void SetPositionText(std::function<QString(qint64 ms)> text);

  [[nodiscard]] bool song() const { return song_; }
  [[nodiscard]] qint64 position() const { return position_; }
  [[nodiscard]] qint64 length() const { return scale_.length(); }
  [[nodiscard]] std::optional<LoopSpan> loop() const { return loop_; }
  [[nodiscard]] QString TextOf(qint64 ms) const;
  [[nodiscard]] QString CurrentText() const { return TextOf(position_); }
  [[nodiscard]] bool seeking() const { return hold_ == Hold::Grip; }

  /// Where a time is drawn, in pixels from the slider's left end.
  [[nodiscard]] double XOf(qint64 ms) const;

  /// Seeks as a key does: press, move, release.
  void SeekTo(qint64 ms);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// A seek begins, goes on, ends. Each begun seek ends, also if the focus or the song goes.
  void pressed();
  void moved(qint64 ms);
  void released();
  /// The user drags an end of the loop; released ends it.
  void loopMoved(qint64 start, qint64 end);
  void loopReleased();

 protected:
  bool event(QEvent* event) override;
  void Refresh() override;
  void Arrange() override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  enum class Hold { None, Grip, LoopStart, LoopEnd };

  [[nodiscard]] QRectF Track() const;
  [[nodiscard]] qint64 TimeAt(double x) const;
  [[nodiscard]] Hold HoldAt(const QPointF& at) const;
  [[nodiscard]] QRect PositionRect(double x) const;
  [[nodiscard]] std::optional<qint64> KeyTarget(const QKeyEvent& event) const;
  void Seek(qint64 ms);
  void EndHold();
  void DragLoop(qint64 time, bool free);
  void ShowHint(qint64 ms);
  void Invalidate();
  void PaintStill();
  void PaintTicks(QPainter& painter) const;
  void PaintLoop(QPainter& painter) const;
  void PaintPosition(QPainter& painter, double x) const;

  BarScale scale_;
  std::optional<LoopSpan> loop_;
  std::function<QString(qint64)> positionText_;
  qint64 position_ = 0;
  double shownX_ = 0;
  double gripOffset_ = 0;  ///< from the pointer to the position when the grip was taken
  Hold hold_ = Hold::None;
  bool song_ = false;
  bool keySeek_ = false;
  WheelNotches wheel_;
  QPixmap still_;  ///< everything but progress and position
};

}  // namespace Sonarello
