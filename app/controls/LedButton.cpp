#include "app/controls/LedButton.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>

#include "app/controls/FocusRing.h"
#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"

namespace Sonarello {
namespace {

constexpr double glowWidth = 2, glowStrength = 0.25, disabledStrength = 0.4;
constexpr double recordIcon = 13, lightDiameter = 8;
constexpr int blinkTime = 500;  // ms for each half

struct LitColours {
  QColor face, border, ink;
};

LitColours Lit(LedKind kind) {
  const Theme& t = th();
  switch (kind) {
    case LedKind::Solo: return {t.solo, t.solob, t.onlit};
    case LedKind::Mute: return {t.mute, t.mute, t.onlit};
    case LedKind::Record: return {t.rec, t.rec, t.onrec};
  }
  return {};
}

}  // namespace

LedButton::LedButton(LedKind of, QWidget* parent) : Control(parent), kind(of) {
  setFocusPolicy(Qt::TabFocus);
  setProperty(FocusRingProperty, true);
}

int LedButton::Glow() { return metrics().px(glowWidth); }

void LedButton::setState(LedState state) {
  if (state == shownState) return;
  shownState = state;
  update();
  sayState();
}

void LedButton::setBlinking(bool on) {
  const bool wanted = on && !ReducedMotion();
  if (wanted == (blink != nullptr && blink->isActive())) return;
  if (blink == nullptr) {
    blink = new QTimer(this);
    connect(blink, &QTimer::timeout, this, [this] {
      darkHalf = !darkHalf;
      update();
    });
  }
  darkHalf = false;
  if (wanted)
    blink->start(blinkTime);
  else
    blink->stop();
  update();
}

bool LedButton::glows() const { return shownState == LedState::Lit && !darkHalf; }

Spoken LedButton::spoken() const {
  Spoken said{.role = QAccessible::CheckBox, .checkable = true, .checked = shownState != LedState::Off};
  if (shownState == LedState::Implied) said.description = QText("durch Solo stumm", "muted by solo");
  return said;
}

void LedButton::pressSpoken() {
  Q_EMIT pressed(Qt::LeftButton, Qt::NoModifier);
  Q_EMIT released();
}

QSize LedButton::sizeHint() const {
  return {metrics().px(24) + 2 * Glow(), metrics().px(22) + 2 * Glow()};
}

void LedButton::paintEvent(QPaintEvent*) {
  const Theme& t = th();
  const Metrics& m = metrics();
  QPainter painter(this);
  if (!isEnabled()) painter.setOpacity(disabledStrength);
  const int glow = Glow();
  const QRectF face = QRectF(rect()).adjusted(glow, glow, -glow, -glow);
  LitColours colours{held ? t.bg3p : underMouse() && isEnabled() ? t.bg3h : t.bg3, t.line2, t.tx2};
  if (shownState == LedState::Implied) colours = {t.muteface, t.mute, t.mute2};
  if (glows()) {
    colours = Lit(kind);
    PaintBox(painter, rect(), m.f(4) + glow, WithAlpha(colours.face, glowStrength), QColor());
  }
  PaintBox(painter, face, m.f(4), colours.face, colours.border, m.hair());
  if (kind == LedKind::Record) {
    QRectF square(0, 0, m.px(recordIcon), m.px(recordIcon));
    square.moveCenter(face.center());
    PaintIcon(painter, Icon::Record, square, colours.ink, glows());
    return;
  }
  painter.setFont(m.font(Role::Letter));
  painter.setPen(colours.ink);
  painter.drawText(face, Qt::AlignCenter,
                   kind == LedKind::Solo ? QStringLiteral("S") : QStringLiteral("M"));
}

void LedButton::mousePressEvent(QMouseEvent* event) {
  const bool right = event->button() == Qt::RightButton && takesRight;
  if (event->button() != Qt::LeftButton && !right) {
    event->ignore();
    return;
  }
  held = true;
  update();
  Q_EMIT pressed(event->button(), event->modifiers());
}

void LedButton::mouseReleaseEvent(QMouseEvent*) {
  if (!held) return;
  held = false;
  update();
  Q_EMIT released();
}

void LedButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
    pressSpoken();
  else
    event->ignore();
}

SmallLed::SmallLed(QWidget* parent, Ink of) : Control(parent), ink(of) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void SmallLed::setLit(bool lit) {
  if (lit == isLit) return;
  isLit = lit;
  update();
}

Spoken SmallLed::spoken() const { return {.role = QAccessible::Indicator, .checked = isLit}; }

QSize SmallLed::sizeHint() const { return {metrics().px(lightDiameter), metrics().px(lightDiameter)}; }

void SmallLed::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  PaintLight(painter, QRectF(rect()).center(), metrics().px(lightDiameter), isLit,
             ink == Ink::Play ? th().play : th().acc);
}

}  // namespace Sonarello
