// The user's hands in tests: mouse, wheel, keys, and time that does not pass by itself.
#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <QTimer>
#include <QTimerEvent>
#include <QWheelEvent>
#include <QWidget>
#include <string>
#include <vector>

namespace Sonarello {

inline void Mouse(QWidget& widget, QEvent::Type type, QPointF at, Qt::MouseButton button,
                  Qt::MouseButtons held, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QMouseEvent event(type, at, widget.mapToGlobal(at), button, held, modifiers);
  QApplication::sendEvent(&widget, &event);
}

inline void Press(QWidget& widget, QPointF at, Qt::MouseButton button = Qt::LeftButton,
                  Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  Mouse(widget, QEvent::MouseButtonPress, at, button, button, modifiers);
}

inline void MoveTo(QWidget& widget, QPointF at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  Mouse(widget, QEvent::MouseMove, at, Qt::NoButton, Qt::LeftButton, modifiers);
}

inline void Release(QWidget& widget, QPointF at, Qt::MouseButton button = Qt::LeftButton) {
  Mouse(widget, QEvent::MouseButtonRelease, at, button, Qt::NoButton);
}

inline void Click(QWidget& widget, QPointF at, Qt::MouseButton button = Qt::LeftButton,
                  Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  Press(widget, at, button, modifiers);
  Release(widget, at, button);
}

inline void Click(QWidget& widget) { Click(widget, QRectF(widget.rect()).center()); }

/// Both presses of a double click, the second as Qt reports it.
inline void DoubleClick(QWidget& widget, QPointF at, Qt::MouseButton button = Qt::LeftButton) {
  Click(widget, at, button);
  Mouse(widget, QEvent::MouseButtonDblClick, at, button, button);
  Release(widget, at, button);
}

/// Turns the wheel by eighths of a degree; 120 are one notch away from the user.
inline void Turn(QWidget& widget, int angle) {
  const QPointF at = QRectF(widget.rect()).center();
  QWheelEvent event(at, widget.mapToGlobal(at), {}, QPoint(0, angle), Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(&widget, &event);
}

/// The one timer of a widget that runs, null if none does.
inline QTimer* RunningTimer(const QWidget& widget) {
  for (QTimer* timer : widget.findChildren<QTimer*>(QString(), Qt::FindDirectChildrenOnly))
    if (timer->isActive()) return timer;
  return nullptr;
}

/// Lets the running timer of a widget strike, without waiting for it.
inline void Strike(const QWidget& widget) {
  QTimer* timer = RunningTimer(widget);
  if (timer == nullptr) return;
  QTimerEvent event(timer->timerId());
  QApplication::sendEvent(timer, &event);
}

/// What happened, in its order.
using Log = std::vector<std::string>;

}  // namespace Sonarello
