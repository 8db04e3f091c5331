#include "app/adapters/QtProgress.h"

#include <QApplication>
#include <QKeyEvent>
#include <algorithm>

namespace Sonarello {
namespace {

constexpr std::int64_t pointerAfter = 300;  // ms
constexpr std::int64_t barAfter = 1000;     // ms
constexpr std::int64_t pumpEvery = 30;      // ms; the display's tick

bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Close: return true;
    default: return false;
  }
}

/// Timers that the program set, not those by which Qt paints.
bool IsTimer(const QObject* receiver) {
  return receiver->inherits("QTimer") || receiver->inherits("QSingleShotTimer");
}

}  // namespace

QtProgress::QtProgress() {
  clock.start();
  Now = [this] { return clock.elapsed(); };
  idle.setSingleShot(true);
  idle.setInterval(0);
  connect(&idle, &QTimer::timeout, this, &QtProgress::Finish);
}

QtProgress::~QtProgress() {
  Shown = nullptr;
  Finish();
}

void QtProgress::Begin(const QString& workWord, bool cancellable) {
  if (depth == 0) Finish();  // an implied work in front of it
  if (++depth == 1) Start(workWord, cancellable);
}

void QtProgress::End() {
  if (depth > 0 && --depth == 0) Finish();
}

void QtProgress::Start(const QString& workWord, bool cancellable) {
  word = workWord;
  mayCancel = cancellable;
  isCancelled = false;
  furthest = 0;
  begin = lastPump = Now();
}

void QtProgress::Finish() {
  if (depth > 0) return;
  isImplied = false;
  idle.stop();
  ShowWaiting(false);
  if (lastShown && Shown) Shown(std::nullopt);
  lastShown.reset();
}

bool QtProgress::Report(double done) {
  if (!IsWorking()) {
    Start(UsualWord ? UsualWord() : QString(), false);
    isImplied = true;
    idle.start();
  }
  if (paused > 0 || isPumping) return !isCancelled;
  furthest = std::clamp(done, furthest, 1.0);
  const std::int64_t elapsed = Now() - begin;
  if (elapsed >= pointerAfter) ShowWaiting(true);
  if (elapsed >= barAfter) {
    const TProgressShown shown{word, static_cast<int>(furthest * 100), mayCancel};
    if (Shown && shown != lastShown) Shown(shown);
    lastShown = shown;
  }
  if (isWaiting && Now() - lastPump >= pumpEvery) Pump();
  if (isImplied && furthest >= 1.0) Finish();
  return !isCancelled;
}

void QtProgress::Cancel() {
  if (IsWorking() && mayCancel) isCancelled = true;
}

void QtProgress::Pause() {
  if (++paused > 1 || !IsWorking()) return;
  pausedAt = Now();
  ShowWaiting(false);
}

void QtProgress::Resume() {
  if (--paused > 0 || !IsWorking()) return;
  begin += Now() - pausedAt;
}

void QtProgress::ShowWaiting(bool waits) {
  if (waits == isWaiting) return;
  isWaiting = waits;
  if (waits) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

void QtProgress::Pump() {
  isPumping = true;
  qApp->installEventFilter(this);
  QCoreApplication::processEvents();
  qApp->removeEventFilter(this);
  isPumping = false;
  lastPump = Now();
}

bool QtProgress::TakesInput(QObject* receiver) const {
  const auto* widget = qobject_cast<QWidget*>(receiver);
  return mayCancel && CancelButton && widget != nullptr &&
         (widget == CancelButton || CancelButton->isAncestorOf(widget));
}

bool QtProgress::eventFilter(QObject* receiver, QEvent* event) {
  if (event->type() == QEvent::Timer) return IsTimer(receiver);
  if (event->type() == QEvent::Shortcut) return true;
  // A window of the desktop hands its input on to a widget, which is where it is stopped.
  if (!receiver->isWidgetType() || !IsInput(event->type())) return false;
  if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
    Cancel();
    return true;
  }
  if (TakesInput(receiver)) return false;
  event->ignore();
  return true;
}

}  // namespace Sonarello
