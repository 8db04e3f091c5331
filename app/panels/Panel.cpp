#include "app/panels/Panel.h"

#include <QPainter>

#include "app/controls/Control.h"
#include "app/controls/Metrics.h"
#include "app/controls/Painting.h"
#include "app/controls/Theme.h"

namespace Sonarello {

QString ToolTipOf(const PanelTip& tip) {
  return Tip(tip.what, tip.reason.isEmpty() ? tip.value : tip.reason, tip.shortcut);
}

void SetTip(QWidget& control, const PanelTip& tip) {
  control.setToolTip(ToolTipOf(tip));
  control.setAccessibleDescription(tip.reason.isEmpty() ? tip.value : tip.reason);
}

Panel::Panel(QWidget* parent) : QWidget(parent) {}

void Panel::SetDensity(Density density) {
  if (density == density_) return;
  density_ = density;
  Renew();
}

void Panel::Renew() {
  updateGeometry();
  Refresh();
  Arrange();
  update();
}

int Panel::Px(double inCompact, double inRegular) const {
  return metrics().px(compact() ? inCompact : inRegular);
}

void Panel::PaintGround(QPainter& painter) const {
  PaintBox(painter, rect(), metrics().px(6), th().bg1, th().line);
}

void Panel::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (AppearanceChanged(*event)) Renew();
}

void Panel::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Arrange();
}

void Panel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  PaintGround(painter);
}

}  // namespace Sonarello
