#include "app/desk/Aside.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

namespace Sonarello {

namespace {

bool OnMainThread() { return QThread::currentThread() == QCoreApplication::instance()->thread(); }

/// Keeps input from all windows but dialogs.
class InputBlock : public QObject {
 public:
  InputBlock() { qApp->installEventFilter(this); }
  bool eventFilter(QObject* target, QEvent* event) override {
    switch (event->type()) {
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonRelease:
      case QEvent::MouseButtonDblClick:
      case QEvent::Wheel:
      case QEvent::KeyPress:
      case QEvent::KeyRelease:
      case QEvent::Shortcut:
      case QEvent::ShortcutOverride:
      case QEvent::ContextMenu:
      case QEvent::ToolTip:
      case QEvent::MouseMove:
      case QEvent::Close:
      case QEvent::DragEnter:
      case QEvent::Drop: break;
      default: return false;
    }
    const auto* const widget = qobject_cast<QWidget*>(target);
    if (widget == nullptr) return false;
    if (qobject_cast<QDialog*>(widget->window()) != nullptr) return false;
    event->ignore();
    return true;
  }
};

constexpr int TickTime = 50;  ///< ms

}  // namespace

void AsideMessages::Show(const std::string& text) {
  if (OnMainThread()) return shown.Show(text);
  QMetaObject::invokeMethod(
      qApp, [&] { shown.Show(text); }, Qt::BlockingQueuedConnection);
}

bool AsideMessages::Ask(const std::string& text) {
  if (OnMainThread()) return shown.Ask(text);
  bool answer = false;
  QMetaObject::invokeMethod(
      qApp, [&] { answer = shown.Ask(text); }, Qt::BlockingQueuedConnection);
  return answer;
}

bool AsideMessages::Progress(double done) {
  progress = done;
  if (OnMainThread()) return shown.Progress(done);
  return !cancelled;
}

bool RunAside(const std::function<bool()>& work, const std::function<void()>& tick) {
  const InputBlock block;
  bool result = false;
  QEventLoop loop;
  const std::unique_ptr<QThread> thread(QThread::create([&] { result = work(); }));
  QObject::connect(thread.get(), &QThread::finished, &loop, &QEventLoop::quit);
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &loop, tick);
  timer.start(TickTime);
  thread->start();
  loop.exec();
  thread->wait();
  return result;
}

}  // namespace Sonarello
