#include "app/controls/Control.h"

#include <QAccessibleWidget>
#include <QTimer>
#include <QWheelEvent>

#include "app/controls/Theme.h"

namespace Sonarello {
namespace {

constexpr int announcePause = 250;  // ms
constexpr int wheelNotch = 120;     // eighths of a degree, as Qt counts them

bool reducedMotion = false;
void (*announcerInstead)(QAccessibleEvent&) = nullptr;

bool IsListenedTo() { return announcerInstead != nullptr || QAccessible::isActive(); }

void Announce(QAccessibleEvent& event) {
  if (announcerInstead != nullptr)
    announcerInstead(event);
  else
    QAccessible::updateAccessibility(&event);
}

/// Tells what a control's Spoken says.
class ControlInterface : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit ControlInterface(Control* control) : QAccessibleWidget(control) {}

  [[nodiscard]] QAccessible::Role role() const override { return spoken().role; }

  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    const Spoken said = spoken();
    state.checkable = said.checkable;
    state.checked = said.checked;
    return state;
  }

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    const Spoken said = spoken();
    if (kind == QAccessible::Description && !said.description.isEmpty()) return said.description;
    if (kind == QAccessible::Value && said.value)
      return said.value->text.isEmpty() ? QString::number(said.value->now) : said.value->text;
    return QAccessibleWidget::text(kind);
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface && spoken().value)
      return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }

  [[nodiscard]] QVariant currentValue() const override { return value().now; }
  [[nodiscard]] QVariant minimumValue() const override { return value().least; }
  [[nodiscard]] QVariant maximumValue() const override { return value().most; }
  [[nodiscard]] QVariant minimumStepSize() const override { return 1; }
  void setCurrentValue(const QVariant& wanted) override { control().setSpokenValue(wanted.toInt()); }

  [[nodiscard]] QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    const Spoken said = spoken();
    if (control().isEnabled() && said.checkable) names.prepend(toggleAction());
    if (control().isEnabled() && said.pressable) names.prepend(pressAction());
    return names;
  }

  void doAction(const QString& name) override {
    if (name == pressAction() || name == toggleAction())
      control().pressSpoken();
    else
      QAccessibleWidget::doAction(name);
  }

 private:
  [[nodiscard]] Control& control() const { return static_cast<Control&>(*widget()); }
  [[nodiscard]] Spoken spoken() const { return control().spoken(); }
  [[nodiscard]] SpokenValue value() const { return spoken().value.value_or(SpokenValue{}); }
};

QAccessibleInterface* MakeInterface(const QString&, QObject* object) {
  auto* control = qobject_cast<Control*>(object);
  return control != nullptr ? new ControlInterface(control) : nullptr;
}

}  // namespace

Control::Control(QWidget* parent) : QWidget(parent) {}

void Control::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (AppearanceChanged(*event)) {
    layOut();
    updateGeometry();
    update();
  } else if (event->type() == QEvent::EnabledChange) {
    update();
  }
}

void Control::enterEvent(QEnterEvent* event) {
  QWidget::enterEvent(event);
  update();
}

void Control::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  update();
}

void Control::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  layOut();
}

void Control::sayValue() {
  if (!announces || !IsListenedTo()) return;
  if (pause == nullptr) {
    pause = new QTimer(this);
    pause->setSingleShot(true);
    connect(pause, &QTimer::timeout, this, [this] {
      if (std::exchange(waiting, false)) sendValue();
    });
  }
  if (pause->isActive())
    waiting = true;
  else
    sendValue();
}

void Control::sendValue() {
  const auto value = spoken().value;
  if (!value) return;
  QAccessibleValueChangeEvent event(this, value->now);
  Announce(event);
  pause->start(announcePause);
}

void Control::sayState() {
  if (!IsListenedTo()) return;
  QAccessible::State changed;
  changed.checked = true;
  QAccessibleStateChangeEvent event(this, changed);
  Announce(event);
}

void SetAnnouncer(void (*announcer)(QAccessibleEvent& event)) { announcerInstead = announcer; }

void InstallControlAccessibility() { QAccessible::installFactory(MakeInterface); }

int WheelNotches::take(int angle) {
  if ((angle > 0) != (rest > 0)) rest = 0;  // a turn back starts anew
  rest += angle;
  const int notches = rest / wheelNotch;
  rest -= notches * wheelNotch;
  return notches;
}

bool ReducedMotion() { return reducedMotion; }

void SetReducedMotion(bool reduced) { reducedMotion = reduced; }

QString Tip(const QString& what, const QString& value, const QString& shortcut) {
  QString tip = what.toHtmlEscaped();
  tip.replace(QLatin1Char('\n'), QStringLiteral("<br>"));
  if (!value.isEmpty()) tip += QStringLiteral("<br>") + value.toHtmlEscaped();
  if (!shortcut.isEmpty())
    tip += QStringLiteral("<br><span style=\"color:%1\">%2</span>")
               .arg(th().tx3.name(), shortcut.toHtmlEscaped());
  return QStringLiteral("<p style=\"white-space:normal\">%1</p>").arg(tip);
}

}  // namespace Sonarello
