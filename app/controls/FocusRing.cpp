#include "app/controls/FocusRing.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QFocusEvent>
#include <QFocusFrame>
#include <QVariant>

#include "app/controls/Control.h"

namespace Sonarello {
namespace {

bool WantsRing(const QWidget* widget) {
  return qobject_cast<const QAbstractButton*>(widget) != nullptr ||
         widget->property(FocusRingProperty).toBool();
}

}  // namespace

bool ByKeyboard(Qt::FocusReason reason) {
  return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
         reason == Qt::ShortcutFocusReason;
}

FocusRing::FocusRing(QObject* application) : QObject(application) {
  application->installEventFilter(this);
}

QWidget* FocusRing::ringed() const {
  return frame.isNull() || !frame->isVisible() ? nullptr : frame->widget();
}

bool FocusRing::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType()) {
    last = nullptr;
    hide();
  }
  if (event->type() != QEvent::FocusIn && event->type() != QEvent::FocusOut) return false;
  auto* widget = qobject_cast<QWidget*>(watched);
  if (widget == nullptr) return false;
  const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
  const bool away = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
  if (event->type() == QEvent::FocusOut) {
    if (!away) last = nullptr;
    hide();
  } else if (WantsRing(widget) && (ByKeyboard(reason) || (away && last == widget))) {
    last = widget;
    show(widget);
  } else {
    last = nullptr;
  }
  return false;
}

FocusRing* FocusRing::Installed() {
  return QCoreApplication::instance()->findChild<FocusRing*>(QString(), Qt::FindDirectChildrenOnly);
}

void FocusRing::Show(QWidget* focused) {
  FocusRing* ring = Installed();
  if (ring == nullptr || !focused->hasFocus()) return;
  ring->last = focused;
  ring->show(focused);
}

void FocusRing::Follow(QWidget* focused) {
  if (const FocusRing* ring = Installed(); ring != nullptr && ring->last == focused) Show(focused);
}

void FocusRing::show(QWidget* focused) {
  auto* control = qobject_cast<Control*>(focused);
  QWidget* around = control != nullptr ? control->ringPlace() : focused;
  if (frame.isNull()) frame = new QFocusFrame(around);
  frame->setWidget(around);
}

void FocusRing::hide() {
  if (!frame.isNull()) frame->setWidget(nullptr);
}

}  // namespace Sonarello
