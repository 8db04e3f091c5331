#include "app/controls/NamePlate.h"

#include <QMouseEvent>

#include "app/controls/NameFitting.h"
#include "app/controls/Painting.h"

namespace Sonarello {
namespace {

constexpr double textSide = 3, notelessStrength = 0.34, notelessText = 0.6;

}  // namespace

NamePlate::NamePlate(QWidget* parent) : Control(parent) { setFocusPolicy(Qt::NoFocus); }

void NamePlate::setName(const QString& name) {
  if (name == shownName) return;
  shownName = name;
  update();
}

void NamePlate::setLook(Look look, Dim dim) {
  if (look == shownLook && dim == shownDim) return;
  shownLook = look;
  shownDim = dim;
  update();
}

Spoken NamePlate::spoken() const { return {.role = QAccessible::PushButton, .pressable = true}; }

void NamePlate::pressSpoken() { Q_EMIT clicked(); }

QSize NamePlate::sizeHint() const { return {metrics().px(74), metrics().px(46)}; }

void NamePlate::paintEvent(QPaintEvent*) {
  const Theme& t = th();
  const Metrics& m = metrics();
  QPainter painter(this);
  const bool over = underMouse() && isEnabled();
  QColor face = held ? t.bg3p : over ? t.bg3h : shownLook == Look::Drum ? t.drumbg2 : t.bg3;
  if (shownDim == Dim::Noteless && !over) face = WithAlpha(face, notelessStrength);
  const QColor border = shownLook == Look::Active && shownDim != Dim::Noteless ? t.line2 : QColor();
  PaintBox(painter, rect(), m.f(4), face, border, m.hair());

  const FittedName& fitted = FitName(shownName, width() - 2 * m.px(textSide));
  painter.setFont(FontOf(FontStack::Condensed, m.f(fitted.size), QFont::Medium));
  painter.setPen(shownDim == Dim::Noteless ? WithAlpha(t.dis, over ? 1 : notelessText)
                 : shownDim == Dim::Muted  ? t.tx3
                                           : t.tx1);
  const double line = m.f(fitted.lineHeight);
  double top = (height() - line * double(fitted.lines.size())) / 2;
  for (const QString& text : fitted.lines) {
    painter.drawText(QRectF(m.px(textSide), top, width(), line), Qt::AlignLeft | Qt::AlignVCenter,
                     text);
    top += line;
  }
}

void NamePlate::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  held = true;
  update();
}

void NamePlate::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !held) return;
  held = false;
  update();
  if (rect().contains(event->position().toPoint())) Q_EMIT clicked();
}

}  // namespace Sonarello
