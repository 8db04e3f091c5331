#include "app/controls/ValueControl.h"

#include <QKeyEvent>
#include <QWheelEvent>
#include <algorithm>

#include "app/controls/FocusRing.h"

namespace Sonarello {
namespace {

constexpr int page = 8;

}  // namespace

ValueControl::ValueControl(QWidget* parent) : Control(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setProperty(FocusRingProperty, true);
}

void ValueControl::setValue(int value) {
  const int wanted = std::clamp(value, lowest, highest);
  if (wanted == shownValue) return;
  shownValue = wanted;
  update();
  sayValue();
}

void ValueControl::setRange(int least, int most) {
  lowest = least;
  highest = std::max(least, most);
  setValue(shownValue);
  update();
}

void ValueControl::setValueText(const QString& shown) {
  if (shown == text) return;
  text = shown;
  update();
}

QString ValueControl::valueText() const { return text.isEmpty() ? QString::number(shownValue) : text; }

void ValueControl::setBipolar(bool on) {
  bipolar = on;
  update();
}

void ValueControl::setSpokenValue(int value) { moveTo(value); }

void ValueControl::moveTo(int value) {
  const int before = shownValue;
  setValue(value);
  if (shownValue != before) Q_EMIT moved(shownValue);
}

double ValueControl::share() const {
  return highest > lowest ? double(shownValue - lowest) / (highest - lowest) : 0;
}

SpokenValue ValueControl::spokenValue() const { return {shownValue, lowest, highest, valueText()}; }

void ValueControl::wheelEvent(QWheelEvent* event) {
  // As on a fader, a turn away from the user lowers the value: this is deliberate.
  if (const int notches = wheel.take(event->angleDelta().y()); notches != 0)
    moveTo(shownValue - notches);
  event->accept();
}

void ValueControl::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Right: moveTo(shownValue + 1); break;
    case Qt::Key_Down:
    case Qt::Key_Left: moveTo(shownValue - 1); break;
    case Qt::Key_PageUp: moveTo(shownValue + page); break;
    case Qt::Key_PageDown: moveTo(shownValue - page); break;
    case Qt::Key_Delete: moveTo(standard); break;
    default: event->ignore();
  }
}

}  // namespace Sonarello
