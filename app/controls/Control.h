// The base of all own-painted controls: live theme and scale, hover, and what a screen reader is told.
#pragma once

#include <QAccessible>
#include <QString>
#include <QWidget>
#include <optional>

class QTimer;

namespace Sonarello {

/// A number as a screen reader tells it.
struct SpokenValue {
  int now = 0, least = 0, most = 127;
  QString text;  ///< how the value reads on the screen; empty: the number itself
};

/// What a screen reader is told of a control, besides QWidget::accessibleName.
struct Spoken {
  QAccessible::Role role = QAccessible::Grouping;
  QString description = {};
  bool pressable = false;
  bool checkable = false, checked = false;
  std::optional<SpokenValue> value = std::nullopt;
};

class Control : public QWidget {
  Q_OBJECT

 public:
  explicit Control(QWidget* parent = nullptr);

  [[nodiscard]] virtual Spoken spoken() const = 0;
  /// What a screen reader's user asks for: a value, or a press.
  virtual void setSpokenValue(int) {}
  virtual void pressSpoken() {}

  /// Where the ring of the keyboard's focus goes; a group of parts names the one in use.
  [[nodiscard]] virtual QWidget* ringPlace() { return this; }

  /// Whether changes of the value are announced; strips announce only the one in focus.
  void setAnnounces(bool on) { announces = on; }

 protected:
  void changeEvent(QEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

  /// Lays the parts out anew after a change of size, theme or scale.
  virtual void layOut() {}
  void resizeEvent(QResizeEvent* event) override;

  /// Tells screen readers; values at most four times a second, the last one always.
  void sayValue();
  void sayState();

 private:
  void sendValue();

  bool announces = true;
  QTimer* pause = nullptr;
  bool waiting = false;
};

/// Takes what the controls announce, instead of the desktop's screen reader; null gives it back to
/// that.
void SetAnnouncer(void (*announcer)(QAccessibleEvent& event));

/// Makes the interfaces of the controls known to Qt; DressApplication calls it.
void InstallControlAccessibility();

/// Takes whole notches out of a wheel's movement and keeps the rest for the next event.
class WheelNotches {
 public:
  /// Notches of this event: up, away from the user, is positive.
  int take(int angle);

 private:
  int rest = 0;
};

/// Nothing moves but what must: the group fader returns at once, the record light does not blink.
[[nodiscard]] bool ReducedMotion();
void SetReducedMotion(bool reduced);

/// The text of a tooltip: what it does, its value and its shortcut, any of the latter two may be empty.
[[nodiscard]] QString Tip(const QString& what, const QString& value, const QString& shortcut);

}  // namespace Sonarello
