// How far a long work has come, shown while the main thread does it.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <optional>

class QWidget;

namespace Sonarello {

/// What the status bar shows of a long work.
struct TProgressShown {
  QString Word;     ///< what is being done
  int Percent = 0;  ///< 0-100, never falls during one work
  bool MayCancel = false;
  bool operator==(const TProgressShown&) const = default;
};

/// Below 300 ms a work shows nothing, from then on the wait pointer, from one second on its word and
/// how far it is. The windows are painted meanwhile, but take no input: nothing may touch a song that
/// is being built. For the same reason timers wait; one that comes due fires behind the work.
///
/// A work lasts from `Begin` to `End`, or, if nobody says so, from the first `Report` until all is done
/// or the program's loop turns again.
class QtProgress : public QObject {
 public:
  QtProgress();
  ~QtProgress() override;

  void Begin(const QString& word, bool mayCancel);
  void End();
  /// Tells how far it is, 0.0 to 1.0. False if the user cancelled. Paints what is due.
  bool Report(double done);
  /// The user wants no more of it; without effect on a work that cannot be cancelled.
  void Cancel();
  [[nodiscard]] bool IsWorking() const noexcept { return depth > 0 || isImplied; }

  /// While a dialog is open the work stands still: the pointer is the usual one, input goes its way,
  /// and the time does not count.
  void Pause();
  void Resume();

  /// Told when what is shown changes; nothing when the work is over.
  std::function<void(const std::optional<TProgressShown>&)> Shown;
  /// The button that cancels: the only widget that takes input meanwhile.
  QPointer<QWidget> CancelButton;
  /// The word of a work that nobody gave one.
  std::function<QString()> UsualWord;
  /// Milliseconds of a clock that never goes back.
  std::function<std::int64_t()> Now;

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  void Start(const QString& workWord, bool cancellable);
  void Finish();
  void ShowWaiting(bool waits);
  void Pump();
  [[nodiscard]] bool TakesInput(QObject* receiver) const;

  QElapsedTimer clock;
  QTimer idle;  ///< fires when the program's loop turns again
  QString word;
  std::optional<TProgressShown> lastShown;
  std::int64_t begin = 0;
  std::int64_t pausedAt = 0;
  std::int64_t lastPump = 0;
  double furthest = 0;
  int depth = 0;  ///< works inside one another show as the outermost
  int paused = 0;
  bool isImplied = false;
  bool mayCancel = false;
  bool isCancelled = false;
  bool isWaiting = false;  ///< the wait pointer is shown
  bool isPumping = false;
};

/// A work that lasts as long as the object.
class TLongWork {
 public:
  TLongWork(QtProgress& progress, const QString& word, bool mayCancel = false) : shown(progress) {
    shown.Begin(word, mayCancel);
  }
  ~TLongWork() { shown.End(); }
  TLongWork(const TLongWork&) = delete;
  TLongWork& operator=(const TLongWork&) = delete;

 private:
  QtProgress& shown;
};

}  // namespace Sonarello
