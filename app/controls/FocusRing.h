// The ring around the control that has the keyboard's focus, shown only to who uses the keyboard.
#pragma once

#include <QObject>
#include <QPointer>

class QFocusFrame;
class QWidget;

namespace Sonarello {

/// Watches an application's focus and keeps one ring around the widget that came by it through Tab or a
/// shortcut, until the mouse is used. Buttons and the controls of this folder that ask for it have a
/// ring; fields and lists show their focus themselves.
class FocusRing : public QObject {
  Q_OBJECT

 public:
  explicit FocusRing(QObject* application);

  bool eventFilter(QObject* watched, QEvent* event) override;

  /// Shows the ring for the widget in focus although it came by the mouse; for widgets that take keys.
  static void Show(QWidget* focused);
  /// Moves the ring, if it is shown, to the part of the focused widget that is in use now.
  static void Follow(QWidget* focused);

  /// The widget with the ring, if any.
  [[nodiscard]] QWidget* ringed() const;

 private:
  static FocusRing* Installed();
  void show(QWidget* focused);
  void hide();

  QPointer<QFocusFrame> frame;
  QPointer<QWidget> last;  // keeps its ring while its window is in the background
};

/// The dynamic property that asks for a ring around a widget that is no button.
inline constexpr const char* FocusRingProperty = "focusRing";

/// True if focus that came for this reason came by the keyboard.
[[nodiscard]] bool ByKeyboard(Qt::FocusReason reason);

}  // namespace Sonarello
