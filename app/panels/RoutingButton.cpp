#include "app/panels/RoutingButton.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"

namespace Sonarello {

namespace {

constexpr double FontSize = 11.5;

}  // namespace

RoutingButton::RoutingButton(QWidget* parent) : QAbstractButton(parent) {
  setAttribute(Qt::WA_Hover);
  connect(this, &QAbstractButton::clicked, this, &RoutingButton::Want);
}

void RoutingButton::SetChoice(bool choice, const PanelTip& tip) {
  choice_ = choice;
  setEnabled(choice);
  setFocusPolicy(choice ? Qt::TabFocus : Qt::NoFocus);
  setAccessibleName(QText("Ausgang: %1", "Output: %1").arg(text()));
  SetTip(*this, tip);
  update();
}

void RoutingButton::mouseReleaseEvent(QMouseEvent* event) {
  modifiers_ = event->modifiers();
  QAbstractButton::mouseReleaseEvent(event);
  modifiers_ = {};
}

void RoutingButton::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  const bool opens = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Down;
  if (!opens) return QAbstractButton::keyPressEvent(event);
  if (event->isAutoRepeat()) return;
  modifiers_ = event->modifiers();
  click();
  modifiers_ = {};
}

void RoutingButton::Want() { Q_EMIT menuWanted(mapToGlobal(rect().bottomLeft()), modifiers_); }

void RoutingButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const Metrics& m = metrics();
  if (choice_) {
    const QColor face = isDown() ? th().bg3p : underMouse() ? th().bg3h : th().bg3;
    PaintBox(painter, rect(), m.px(4), face, th().line2, m.hair());
  }
  const double arrow = m.f(14), edge = m.px(7);
  const QFont font = FontOf(FontStack::Text, m.f(FontSize), QFont::Normal);
  const double room = width() - 2 * edge - (choice_ ? arrow + m.px(4) : 0);
  painter.setFont(font);
  painter.setPen(choice_ ? th().tx1 : th().tx2);
  painter.drawText(QRectF(edge, 0, room + 1, height()), Qt::AlignLeft | Qt::AlignVCenter,
                   Elided(font, text(), room));
  if (!choice_) return;
  PaintIcon(painter, Icon::Down, QRectF(width() - edge - arrow, (height() - arrow) / 2, arrow, arrow),
            th().tx1);
}

}  // namespace Sonarello
