// The upright fader of a channel's volume and of other values of 0..127.
#pragma once

#include "app/controls/Control.h"
#include "app/controls/Painting.h"

class QTimer;

namespace Sonarello {

/// Where the parts of a fader lie in an area of a size, in pixels.
struct FaderPlan {
  double x = 0;  ///< middle of the slot
  double capWidth = 0, capHeight = 0;
  double top = 0, bottom = 0;  ///< middle of the cap at the highest and at the lowest value
  double tick = 0;             ///< how far the ticks reach to either side

  /// The plan of a fader of 0..127.
  [[nodiscard]] static FaderPlan Of(const QSize& area);
  [[nodiscard]] double y(double share) const { return bottom - (bottom - top) * share; }
  [[nodiscard]] QRectF cap(double share) const;
};

/// Draws the slot of a fader.
void PaintFaderSlot(QPainter& painter, const FaderPlan& plan);

class TCustomTrackBar : public Control {
  Q_OBJECT

 public:
  static constexpr int Highest = 127;

  /// What the fader belongs to; decides the colour of its line.
  enum class Look { Normal, Active, Drum };
  /// How far it steps back: of a muted channel, of a channel without notes.
  enum class Dim { None, Muted, Noteless };

  explicit TCustomTrackBar(QWidget* parent = nullptr);

  [[nodiscard]] int position() const { return shownPosition; }
  /// Moves the cap; moved is emitted for the user's moves only.
  void setPosition(int position);
  /// Moves the cap as the user does, with the signal.
  void step(int steps);

  void setLook(Look look, Dim dim);
  /// The position that counts as 0: figures tell the distance to it, and the line begins there.
  void setOrigin(int position);

  /// The middle of the cap at a position.
  [[nodiscard]] double y(int position) const;

  [[nodiscard]] Spoken spoken() const override;
  void setSpokenValue(int position) override;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

  /// The share of its full strength at which a dimmed fader is drawn.
  [[nodiscard]] static double Opacity(Dim dim);

 Q_SIGNALS:
  void moved(int position);
  /// The cap is taken, by mouse; released follows in any case.
  void pressed();
  void released();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void layOut() override;

 private:
  enum class Hold { None, Cap, Slot };

  void paintParts(QPainter& painter) const;
  void drag(const QPointF& to, bool fine);
  void stepTowardsPointer();
  void letGo();
  void moveTo(int position);
  [[nodiscard]] bool onCap(const QPointF& point) const;

  FaderPlan plan;
  int shownPosition = 0, origin = 0;
  Look shownLook = Look::Normal;
  Dim shownDim = Dim::None;
  Hold hold = Hold::None;
  bool capHovered = false;
  double anchorY = 0, anchorPosition = 0;
  bool anchorFine = false;
  QPointF pointer;
  QTimer* repeat;
  WheelNotches wheel;
};

}  // namespace Sonarello
