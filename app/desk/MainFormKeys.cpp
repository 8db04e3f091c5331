// The keys that mean the same in every window.
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTextEdit>

#include "app/controls/ValueControl.h"
#include "app/desk/MainForm.h"
#include "app/editors/EventListForm.h"
#include "app/editors/EventView.h"
#include "app/panels/EffectCell.h"
#include "app/panels/SongSlider.h"

namespace Sonarello {

namespace {

constexpr int WindStep = 500;  ///< ms of the song for each press or repeat of a page key

template <class... Kinds>
bool IsOne(const QWidget* widget) {
  return ((qobject_cast<const Kinds*>(widget) != nullptr) || ...);
}

/// True where a key is typed or has a meaning of its own.
bool TakesText(const QWidget* focus) { return IsOne<QLineEdit, QTextEdit, QAbstractSpinBox>(focus); }

/// True where Space presses something rather than plays.
bool TakesSpace(const QWidget* focus) {
  return TakesText(focus) || IsOne<EffectCell, QCheckBox, QRadioButton, QPushButton, QComboBox>(focus);
}

bool TakesPages(const QWidget* focus) {
  // The event list follows the song that winds.
  if (IsOne<EventView>(focus)) return false;
  return TakesText(focus) || IsOne<ValueControl, SongSlider, QAbstractItemView, QComboBox>(focus);
}

}  // namespace

bool TMainForm::eventFilter(QObject* watched, QEvent* event) {
  // A page key that winds is let go somewhere else then.
  if (event->type() == QEvent::FocusOut && winding) EndWind();
  const bool press = event->type() == QEvent::KeyPress;
  if (!press && event->type() != QEvent::KeyRelease) return QMainWindow::eventFilter(watched, event);
  const auto* const widget = qobject_cast<QWidget*>(watched);
  // A key climbs from the widget with the focus to its parents; it counts once.
  if (widget == nullptr || widget != QApplication::focusWidget() ||
      QApplication::activePopupWidget() != nullptr || QApplication::activeModalWidget() != nullptr)
    return QMainWindow::eventFilter(watched, event);
  const auto& key = static_cast<QKeyEvent&>(*event);
  if (press && key.modifiers() != Qt::NoModifier && key.modifiers() != Qt::KeypadModifier)
    return QMainWindow::eventFilter(watched, event);
  if (press ? PlayKeyPressed(key, *widget) : PlayKeyReleased(key)) return true;
  return QMainWindow::eventFilter(watched, event);
}

/// True for a window in which the keys of rewind and winding are the song's.
bool TMainForm::WindsIn(const QWidget& window) const {
  return &window == this || &window == eventListForm.get();
}

bool TMainForm::PlayKeyPressed(const QKeyEvent& key, const QWidget& focus) {
  if (!p.work.desk.song.MidiFileLoaded) return false;
  switch (key.key()) {
    case Qt::Key_Space:
      if (TakesSpace(&focus)) return false;
      if (!key.isAutoRepeat()) PlayClick();
      return true;
    case Qt::Key_Home:
      if (!WindsIn(*focus.window()) || TakesText(&focus)) return false;
      RewindClick();
      return true;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
      if (!WindsIn(*focus.window()) || TakesPages(&focus)) return false;
      WindBy(key.key() == Qt::Key_PageUp ? -WindStep : WindStep);
      return true;
    default: return false;
  }
}

bool TMainForm::PlayKeyReleased(const QKeyEvent& key) {
  const bool page = key.key() == Qt::Key_PageUp || key.key() == Qt::Key_PageDown;
  if (!page || key.isAutoRepeat() || !winding) return false;
  EndWind();
  return true;
}

}  // namespace Sonarello
