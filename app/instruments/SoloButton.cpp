#include "app/instruments/SoloButton.h"

#include <QPainter>

#include "app/controls/Painting.h"
#include "app/controls/QtText.h"

namespace Sonarello {

SoloButton::SoloButton(QWidget* parent) : QPushButton(QStringLiteral("Solo"), parent) {
  setCheckable(true);
  setToolTip(QText("Nur diesen Kanal hören", "Hear this channel only"));
}

void SoloButton::paintEvent(QPaintEvent* event) {
  if (!isChecked() || !isEnabled()) return QPushButton::paintEvent(event);
  const Theme& t = th();
  const Metrics& m = metrics();
  QPainter painter(this);
  PaintBox(painter, rect(), m.f(4), t.solo, t.solob, m.px(2));
  painter.setFont(m.font(Role::Strong));
  painter.setPen(t.onlit);
  painter.drawText(rect(), Qt::AlignCenter, text());
}

}  // namespace Sonarello
