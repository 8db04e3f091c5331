#include "app/instruments/VoiceCard.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "app/controls/FocusRing.h"
#include "app/controls/Painting.h"

namespace Sonarello {

namespace {

constexpr double Height = 56;
constexpr double Side = 12;

}  // namespace

VoiceCard::VoiceCard(const QString& text, QWidget* parent) : Control(parent), caption(text) {
  setFocusPolicy(Qt::StrongFocus);
  setProperty(FocusRingProperty, true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setAttribute(Qt::WA_Hover);
}

void VoiceCard::SetVoice(const QString& name, const QString& of) {
  if (name == voice && of == effect) return;
  voice = name;
  effect = of;
  setAccessibleName(caption + QStringLiteral(": ") + voice);
  setToolTip(voice);
  update();
}

void VoiceCard::SetHeard(bool on) {
  if (on == heard) return;
  heard = on;
  sayState();
  update();
}

Spoken VoiceCard::spoken() const {
  return {.role = QAccessible::PushButton,
          .description = effect,
          .pressable = true,
          .checkable = true,
          .checked = heard};
}

QSize VoiceCard::sizeHint() const { return {metrics().px(200), metrics().px(Height)}; }

void VoiceCard::paintEvent(QPaintEvent*) {
  const Theme& t = th();
  const Metrics& m = metrics();
  QPainter painter(this);
  const QColor face = heard ? t.accbg : held ? t.bg3p : underMouse() ? t.bg3h : t.bg3;
  PaintBox(painter, rect(), m.f(6), face, heard ? t.acc : t.line2, m.hair());
  const QRectF area = QRectF(rect()).adjusted(m.f(Side), 0, -m.f(Side), 0);
  const QRectF upper(area.left(), m.f(10), area.width(), m.f(17));
  painter.setFont(m.font(Role::Caption));
  painter.setPen(heard ? t.acc : t.tx3);
  painter.drawText(upper, Qt::AlignLeft | Qt::AlignVCenter, caption);
  painter.setPen(t.tx2);
  painter.drawText(upper, Qt::AlignRight | Qt::AlignVCenter,
                   Elided(painter.font(), effect, area.width() * 0.7));
  painter.setFont(m.font(Role::Value));
  painter.setPen(t.tx1);
  painter.drawText(QRectF(area.left(), m.f(26), area.width(), m.f(20)),
                   Qt::AlignLeft | Qt::AlignVCenter, Elided(painter.font(), voice, area.width()));
}

void VoiceCard::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  held = true;
  update();
}

void VoiceCard::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !held) return event->ignore();
  held = false;
  update();
  if (rect().contains(event->pos())) Q_EMIT clicked();
}

void VoiceCard::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space)
    Q_EMIT clicked();
  else
    event->ignore();
}

}  // namespace Sonarello
