#include "app/panels/SongSlider.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "app/controls/FocusRing.h"
#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/panels/PanelAccess.h"
#include "app/panels/PanelTexts.h"

namespace Sonarello {

namespace {

constexpr int PageBars = 4;

}  // namespace

SongSlider::SongSlider(QWidget* parent) : Panel(parent) {
  InstallPanelAccess();
  setAccessibleName(QText("Songposition", "Song position"));
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setProperty(FocusRingProperty, true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  Renew();
}

void SongSlider::SetBars(std::vector<qint64> starts, qint64 length) {
  scale_.SetBars(std::move(starts), length);
  song_ = true;
  position_ = std::min(position_, scale_.length());
  Refresh();
  Invalidate();
}

void SongSlider::Clear() {
  EndHold();
  scale_.SetBars({}, 0);
  loop_.reset();
  position_ = 0;
  song_ = false;
  Refresh();
  Invalidate();
}

void SongSlider::SetPosition(qint64 ms) {
  if (hold_ == Hold::Grip) return;
  const qint64 next = std::clamp<qint64>(ms, 0, scale_.length());
  if (next == position_) return;
  position_ = next;
  const double x = XOf(position_);
  if (std::abs(x - shownX_) * devicePixelRatioF() < 0.5) return;
  update(PositionRect(shownX_).united(PositionRect(x)));
  shownX_ = x;
}

void SongSlider::SetLoop(std::optional<LoopSpan> loop) {
  if (loop == loop_) return;
  loop_ = loop;
  Invalidate();
}

void SongSlider::SetPositionText(std::function<QString(qint64)> text) {
  positionText_ = std::move(text);
}

QString SongSlider::TextOf(qint64 ms) const { return positionText_ ? positionText_(ms) : TimeText(ms); }

void SongSlider::Refresh() {
  SetTip(*this, {QText("Songposition: ziehen oder klicken; Pfeile: ein Takt, Bild: vier Takte",
                       "Song position: drag or click; arrows: a bar, Page: four bars"),
                 {},
                 QText("Pos1, Ende", "Home, End"),
                 song_ ? QString() : NoSongReason()});
}

void SongSlider::Arrange() { Invalidate(); }

void SongSlider::Invalidate() {
  still_ = QPixmap();
  shownX_ = XOf(position_);
  update();
}

QRectF SongSlider::Track() const {
  const double inset = metrics().px(8);
  return {inset, 0, std::max(width() - 2 * inset, 1.0), static_cast<double>(height())};
}

double SongSlider::XOf(qint64 ms) const {
  const QRectF track = Track();
  return track.left() + scale_.XOf(ms, track.width());
}

qint64 SongSlider::TimeAt(double x) const {
  const QRectF track = Track();
  return scale_.TimeAt(x - track.left(), track.width());
}

QSize SongSlider::sizeHint() const { return {metrics().px(600), Px(28, 30)}; }
QSize SongSlider::minimumSizeHint() const { return {metrics().px(200), Px(28, 30)}; }

SongSlider::Hold SongSlider::HoldAt(const QPointF& at) const {
  if (std::abs(at.x() - XOf(position_)) <= metrics().f(8)) {
    if (at.y() > height() - metrics().px(14) || !loop_) return Hold::Grip;
  }
  if (loop_ && at.y() < height() / 2.0) {
    const double toStart = at.x() - XOf(loop_->start), toEnd = XOf(loop_->end) - at.x();
    const double reach = metrics().f(8), beyond = metrics().f(3);
    if (toStart >= -beyond && toStart <= reach) return Hold::LoopStart;
    if (toEnd >= -beyond && toEnd <= reach) return Hold::LoopEnd;
  }
  return Hold::None;
}

void SongSlider::mousePressEvent(QMouseEvent* event) {
  if (!song_ || event->button() != Qt::LeftButton || hold_ != Hold::None) return;
  const QPointF at = event->position();
  hold_ = HoldAt(at);
  gripOffset_ = 0;
  if (hold_ == Hold::LoopStart || hold_ == Hold::LoopEnd) {
    ShowHint(hold_ == Hold::LoopStart ? loop_->start : loop_->end);
    return;
  }
  const bool onGrip = hold_ == Hold::Grip;
  hold_ = Hold::Grip;
  Q_EMIT pressed();
  if (onGrip) {
    gripOffset_ = XOf(position_) - at.x();
    ShowHint(position_);
  } else {
    Seek(TimeAt(at.x()));
  }
}

void SongSlider::mouseMoveEvent(QMouseEvent* event) {
  const QPointF at = event->position();
  switch (hold_) {
    case Hold::None: {
      const Hold under = song_ ? HoldAt(at) : Hold::None;
      const bool loop = under == Hold::LoopStart || under == Hold::LoopEnd;
      setCursor(loop ? Qt::SizeHorCursor : Qt::ArrowCursor);
      break;
    }
    case Hold::Grip: Seek(TimeAt(at.x() + gripOffset_)); break;
    case Hold::LoopStart:
    case Hold::LoopEnd: DragLoop(TimeAt(at.x()), (event->modifiers() & Qt::ShiftModifier) != 0); break;
  }
}

void SongSlider::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && !keySeek_) EndHold();
}

/// An end of the loop keeps to the beginnings of bars unless it is dragged free, and never passes the
/// other end.
void SongSlider::DragLoop(qint64 time, bool free) {
  if (!loop_) return;
  const qint64 target = free ? time : scale_.NearestBar(time);
  LoopSpan span = *loop_;
  if (hold_ == Hold::LoopStart) {
    if (target >= span.end) return;
    span.start = target;
  } else {
    if (target <= span.start) return;
    span.end = target;
  }
  ShowHint(target);
  if (span == *loop_) return;
  SetLoop(span);
  Q_EMIT loopMoved(span.start, span.end);
}

void SongSlider::Seek(qint64 ms) {
  const qint64 target = std::clamp<qint64>(ms, 0, scale_.length());
  ShowHint(target);
  if (target == position_) return;
  position_ = target;
  const double x = XOf(position_);
  update(PositionRect(shownX_).united(PositionRect(x)));
  shownX_ = x;
  QAccessibleValueChangeEvent change(this, QVariant::fromValue(position_));
  QAccessible::updateAccessibility(&change);
  Q_EMIT moved(target);
}

void SongSlider::SeekTo(qint64 ms) {
  if (!song_ || hold_ != Hold::None) return;
  hold_ = Hold::Grip;
  Q_EMIT pressed();
  Seek(ms);
  EndHold();
}

void SongSlider::EndHold() {
  const Hold ended = std::exchange(hold_, Hold::None);
  keySeek_ = false;
  if (ended == Hold::None) return;
  QToolTip::hideText();
  if (ended == Hold::Grip) {
    Q_EMIT released();
  } else {
    Q_EMIT loopReleased();
  }
}

void SongSlider::ShowHint(qint64 ms) {
  if (!isVisible()) return;
  const QPoint at(static_cast<int>(XOf(ms)), height());
  QToolTip::showText(mapToGlobal(at), TextOf(ms), this);
}

std::optional<qint64> SongSlider::KeyTarget(const QKeyEvent& event) const {
  if (!song_ || (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) != 0) return {};
  switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Down: return scale_.Step(position_, -1);
    case Qt::Key_Right:
    case Qt::Key_Up: return scale_.Step(position_, 1);
    case Qt::Key_PageUp: return scale_.Step(position_, -PageBars);
    case Qt::Key_PageDown: return scale_.Step(position_, PageBars);
    case Qt::Key_Home: return 0;
    case Qt::Key_End: return scale_.length();
    default: return {};
  }
}

void SongSlider::keyPressEvent(QKeyEvent* event) {
  const std::optional<qint64> target = KeyTarget(*event);
  if (!target || (hold_ != Hold::None && !keySeek_)) {
    Panel::keyPressEvent(event);
    return;
  }
  if (!keySeek_) {
    keySeek_ = true;
    hold_ = Hold::Grip;
    Q_EMIT pressed();
  }
  Seek(*target);
  event->accept();
}

void SongSlider::keyReleaseEvent(QKeyEvent* event) {
  if (keySeek_ && !event->isAutoRepeat()) EndHold();
  Panel::keyReleaseEvent(event);
}

void SongSlider::wheelEvent(QWheelEvent* event) {
  event->accept();
  const int notches = wheel_.take(event->angleDelta().y());
  if (notches != 0) SeekTo(scale_.Step(position_, -notches));
}

void SongSlider::focusOutEvent(QFocusEvent* event) {
  if (keySeek_) EndHold();
  Panel::focusOutEvent(event);
}

bool SongSlider::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    // The window's keys for winding and rewinding are the slider's own while it has the focus.
    if (KeyTarget(*static_cast<QKeyEvent*>(event))) {
      event->accept();
      return true;
    }
  } else if (event->type() == QEvent::ToolTip && song_) {
    const auto* help = static_cast<QHelpEvent*>(event);
    QToolTip::showText(
        help->globalPos(),
        TextOf(TimeAt(help->pos().x())) + QLatin1Char('\n') +
            QText("Ziehen oder klicken, Pfeile: ein Takt", "Drag or click, arrows: a bar"),
        this);
    return true;
  }
  return Panel::event(event);
}

}  // namespace Sonarello
