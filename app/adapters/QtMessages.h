// What the program tells and asks its user, as dialogs.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "app/adapters/QtProgress.h"
#include "core/Ports.h"

class QWidget;

namespace Sonarello {

enum class TMessageKind { Note, Warning, Error, Question };

struct TMessage {
  TMessageKind Kind = TMessageKind::Warning;
  QString Text;
  QString Accept;  ///< the button that says yes, or the only one
  QString Refuse;  ///< the button of the safe answer; empty if there is nothing to decide
  bool operator==(const TMessage&) const = default;
};

/// Messages wait until the main window is shown, and while another one is open; the same one waits only
/// once. A question needs its answer at once: those that wait are shown in front of it. One that keeps
/// coming, such as a timer's, is shown once; it is told again when it has been silent for half a
/// second.
class QtMessages : public IMessages {
 public:
  QtMessages();
  /// What nobody could be shown goes to the standard error output.
  ~QtMessages() override;
  QtMessages(const QtMessages&) = delete;
  QtMessages& operator=(const QtMessages&) = delete;

  /// Tells something that needs the user's attention, without a verdict on how bad it is.
  void Show(const std::string& text) override { Show(TMessageKind::Warning, text); }
  void Show(TMessageKind kind, const std::string& text);
  /// Asks with "Ja" and "Nein", "Yes" and "No". No is the safe answer.
  bool Ask(const std::string& text) override;
  /// Asks with verbs. Esc, Return and the closing of the dialog mean `refuse`.
  bool Ask(const std::string& text, const QString& accept, const QString& refuse);
  bool Progress(double done) override { return Work.Report(done); }

  /// Told when the main window is shown: dialogs stand over it, and what waited is shown as soon as the
  /// program's loop turns.
  void WindowShown(QWidget* window);

  /// Takes the place of the dialogs, for tests: true is the accepting button.
  std::function<bool(const TMessage&)> Answer;
  /// What `Progress` shows.
  QtProgress Work;

 private:
  [[nodiscard]] bool IsKnown(const TMessage& message) const;
  [[nodiscard]] bool KeepsComing(const TMessage& message);
  void ShowWaiting();
  bool Run(const TMessage& message);

  QObject loop;  ///< owner of what is to happen when the program's loop turns
  QPointer<QWidget> mainWindow;
  std::deque<TMessage> waiting;
  std::vector<TMessage> open;  ///< dialogs, the last one on top
  TMessage lastClosed;
  std::int64_t lastRaised = 0;  ///< ms: when that message was closed or came again
  bool isStarted = false;
};

}  // namespace Sonarello
