#include "app/adapters/QtMessages.h"

#include <QApplication>
#include <QTimer>
#include <algorithm>
#include <iostream>

#include "app/adapters/QtMessageDialog.h"
#include "app/controls/QtText.h"

namespace Sonarello {
namespace {

constexpr std::size_t deepest = 3;     // questions inside one another
constexpr std::int64_t silence = 500;  // ms

}  // namespace

QtMessages::QtMessages() {
  Work.UsualWord = [] { return QText("Bitte warten", "Please wait"); };
}

QtMessages::~QtMessages() {
  for (const TMessage& message : waiting) std::cerr << "sonarello: " << ToStd(message.Text) << '\n';
}

void QtMessages::Show(TMessageKind kind, const std::string& text) {
  const TMessage message{kind, ToQt(text), QText("OK", "OK"), {}};
  if (IsKnown(message) || KeepsComing(message)) return;
  waiting.push_back(message);
  if (isStarted && open.empty()) ShowWaiting();
}

bool QtMessages::Ask(const std::string& text) {
  return Ask(text, QText("Ja", "Yes"), QText("Nein", "No"));
}

bool QtMessages::Ask(const std::string& text, const QString& accept, const QString& refuse) {
  if (open.size() >= deepest) return false;
  if (open.empty()) ShowWaiting();
  const bool accepted = Run({TMessageKind::Question, ToQt(text), accept, refuse});
  if (open.empty()) ShowWaiting();
  return accepted;
}

void QtMessages::WindowShown(QWidget* window) {
  mainWindow = window;
  isStarted = true;
  QTimer::singleShot(0, &loop, [this] {
    if (open.empty()) ShowWaiting();
  });
}

bool QtMessages::IsKnown(const TMessage& message) const {
  return std::find(waiting.begin(), waiting.end(), message) != waiting.end() ||
         std::find(open.begin(), open.end(), message) != open.end();
}

bool QtMessages::KeepsComing(const TMessage& message) {
  if (message != lastClosed) return false;
  const std::int64_t now = Work.Now();
  const bool soon = now - lastRaised < silence;
  lastRaised = now;
  return soon;
}

void QtMessages::ShowWaiting() {
  while (!waiting.empty()) {
    const TMessage message = waiting.front();
    waiting.pop_front();
    Run(message);
  }
}

bool QtMessages::Run(const TMessage& message) {
  open.push_back(message);
  Work.Pause();
  bool accepted = false;
  if (Answer) {
    accepted = Answer(message);
  } else {
    QWidget* above = QApplication::activeWindow();
    if (above == nullptr && mainWindow && mainWindow->isVisible()) above = mainWindow;
    QtMessageDialog dialog(message, above);
    accepted = dialog.exec() == QDialog::Accepted;
    if (message.Kind != TMessageKind::Question) {
      lastClosed = message;
      lastRaised = Work.Now();
    }
  }
  Work.Resume();
  open.pop_back();
  return accepted;
}

}  // namespace Sonarello
