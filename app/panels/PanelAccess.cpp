#include "app/panels/PanelAccess.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "app/panels/PanelTexts.h"
#include "app/panels/PositionDisplay.h"
#include "app/panels/SongSlider.h"

namespace Sonarello {

namespace {

class SongSliderAccess : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit SongSliderAccess(SongSlider* slider)
      : QAccessibleWidget(slider, QAccessible::Slider), slider_(slider) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QString text(QAccessible::Text which) const override {
    if (which == QAccessible::Value) return slider_->song() ? slider_->CurrentText() : QString();
    return QAccessibleWidget::text(which);
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.disabled = state.disabled || !slider_->song();
    return state;
  }
  QVariant currentValue() const override { return QVariant::fromValue(slider_->position()); }
  void setCurrentValue(const QVariant& value) override { slider_->SeekTo(value.toLongLong()); }
  QVariant maximumValue() const override { return QVariant::fromValue(slider_->length()); }
  QVariant minimumValue() const override { return 0; }
  QVariant minimumStepSize() const override { return 1; }

 private:
  SongSlider* slider_;
};

class PositionAccess : public QAccessibleWidget {
 public:
  explicit PositionAccess(PositionDisplay* display)
      : QAccessibleWidget(display, QAccessible::StaticText), display_(display) {}

  QString text(QAccessible::Text which) const override {
    if (which != QAccessible::Value) return QAccessibleWidget::text(which);
    return SpokenPosition(display_->measure(), display_->beat()) + QStringLiteral(", ") +
           display_->timeText();
  }

 private:
  PositionDisplay* display_;
};

QAccessibleInterface* Access(const QString&, QObject* object) {
  if (auto* slider = qobject_cast<SongSlider*>(object)) return new SongSliderAccess(slider);
  if (auto* display = qobject_cast<PositionDisplay*>(object)) return new PositionAccess(display);
  return nullptr;
}

}  // namespace

void InstallPanelAccess() {
  static const bool installed = [] {
    QAccessible::installFactory(Access);
    return true;
  }();
  static_cast<void>(installed);
}

}  // namespace Sonarello
