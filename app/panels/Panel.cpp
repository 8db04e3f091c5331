#include "app/panels/Panel.h"

#include <QPainter>
#include <QPaintEvent>

#include "app/controls/Metrics.h"
#include "app/controls/Theme.h"
#include "app/panels/PanelButton.h"

namespace Sonarello {

QString ToolTipOf(const Tip& tip) {
  QString text;
  const auto add = [&](const QString& part) {
    if (part.isEmpty()) return;
    if (!text.isEmpty()) text += QLatin1String("<br>");
    QString escaped = part.toHtmlEscaped();
    text += escaped.replace(QLatin1Char('\n'), QLatin1String("<br>"));
  };
  add(tip.what);
  add(tip.value);
  add(tip.reason);
  if (!tip.shortcut.isEmpty()) {
    text += QStringLiteral(" <span style=\"color:%1\">%2</span>")
                .arg(th().tx3.name(), tip.shortcut.toHtmlEscaped());
  }
  return QLatin1String("<qt>") + text + QLatin1String("</qt>");
}

void SetTip(QWidget& control, const Tip& tip) {
  control.setToolTip(ToolTipOf(tip));
  control.setAccessibleDescription(tip.reason.isEmpty() ? tip.value : tip.reason);
}

void PaintBox(QPainter& painter, const QRectF& rect, double radius, const QColor& face,
              const QColor& border) {
  const double half = metrics().hair() / 2.0;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(border, metrics().hair()));
  painter.setBrush(face);
  painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius, radius);
}

void PaintFocusRing(QPainter& painter, const QRectF& control, double radius) {
  const double away = metrics().px(3);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(th().acc, metrics().px(2)));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(control.adjusted(-away, -away, away, away), radius + away, radius + away);
}

bool ByKeyboard(Qt::FocusReason reason) {
  return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
         reason == Qt::ShortcutFocusReason;
}

Panel::Panel(QWidget* parent) : QWidget(parent) {}

void Panel::SetDensity(Density density) {
  if (density == density_) return;
  density_ = density;
  Renew();
}

void Panel::FocusOfChildChanged() { update(); }

void Panel::Renew() {
  updateGeometry();
  Refresh();
  Arrange();
  update();
}

int Panel::Px(double inCompact, double inRegular) const {
  return metrics().px(compact() ? inCompact : inRegular);
}

void Panel::PaintGround(QPainter& painter, const QColor& face) const {
  PaintBox(painter, rect(), metrics().px(6), face, th().line);
  for (const PanelButton* button : findChildren<PanelButton*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (button->ShowsFocus()) PaintFocusRing(painter, button->geometry(), metrics().px(4));
  }
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
  PaintGround(painter, th().bg1);
}

}  // namespace Sonarello
