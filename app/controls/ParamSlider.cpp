#include "app/controls/ParamSlider.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <algorithm>
#include <cmath>

#include "app/controls/Painting.h"
#include "app/controls/QtText.h"

namespace Sonarello {
namespace {

// Pixels at 100 %.
constexpr double side = 10, nameWidth = 132, gap = 10, boxWidth = 78, boxHeight = 22, thumbWidth = 12,
                 thumbHeight = 18;

}  // namespace

ParamSlider::ParamSlider(QWidget* parent) : ValueControl(parent) {
  setProperty("focusRing", false);  // the active row is its own sign
}

void ParamSlider::setName(const QString& name) {
  shownName = name;
  setAccessibleName(name);
  setToolTip(name);
  update();
}

void ParamSlider::setActive(bool on) {
  active = on;
  update();
}

Spoken ParamSlider::spoken() const { return {.role = QAccessible::Slider, .value = spokenValue()}; }

QSize ParamSlider::sizeHint() const { return {metrics().px(440), metrics().px(32)}; }

QSize ParamSlider::minimumSizeHint() const { return {metrics().px(320), metrics().px(32)}; }

QRectF ParamSlider::valueBox() const {
  const Metrics& m = metrics();
  return QRectF(width() - m.px(side) - m.px(boxWidth), (height() - m.px(boxHeight)) / 2, m.px(boxWidth),
                m.px(boxHeight));
}

QRectF ParamSlider::track() const {
  const Metrics& m = metrics();
  const double left = m.px(side) + m.px(nameWidth) + m.px(gap), thick = m.px(4);
  return QRectF(left, (height() - thick) / 2.0, valueBox().left() - m.px(gap) - left, thick);
}

double ParamSlider::thumbX() const { return track().left() + track().width() * share(); }

void ParamSlider::paintEvent(QPaintEvent*) {
  const Theme& t = th();
  const Metrics& m = metrics();
  QPainter painter(this);
  if (active) {
    PaintBox(painter, rect(), m.f(4), t.accbg, QColor());
    painter.fillRect(QRectF(0, 0, m.px(3), height()), t.acc);
  }
  painter.setFont(m.font(Role::Body));
  painter.setPen(isEnabled() ? t.tx1 : t.dis);
  const QRectF name(m.px(side), 0, m.px(nameWidth), height());
  painter.drawText(name, Qt::AlignVCenter | Qt::AlignLeft,
                   Elided(painter.font(), shownName, name.width()));
  paintTrack(painter);
  PaintBox(painter, valueBox(), m.f(4), t.well, t.line, m.hair());
  painter.setFont(m.font(Role::Strong));
  painter.setPen(isEnabled() ? t.tx1 : t.dis);
  drawFigures(painter, valueBox().adjusted(0, 0, -m.px(6), 0), valueText(),
              Qt::AlignRight | Qt::AlignVCenter);
}

void ParamSlider::paintTrack(QPainter& painter) const {
  const Theme& t = th();
  const Metrics& m = metrics();
  const PainterState state(painter);
  if (!isEnabled()) painter.setOpacity(0.34);
  const QRectF all = track();
  PaintBox(painter, all, m.f(2), t.track, QColor());
  const double from = isBipolar() ? all.center().x() : all.left(), to = thumbX();
  const QRectF fill(std::min(from, to), all.top(), std::abs(to - from), all.height());
  PaintBox(painter, fill, m.f(2), t.acc, QColor());
  if (isBipolar())
    painter.fillRect(QRectF(std::floor(from), all.center().y() - m.f(7), m.hair(), m.f(14)), t.acc);
  const QRectF thumb(to - m.px(thumbWidth) / 2.0, (height() - m.px(thumbHeight)) / 2.0,
                     m.px(thumbWidth), m.px(thumbHeight));
  QLinearGradient face(thumb.topLeft(), thumb.bottomLeft());
  face.setColorAt(0, held ? t.cap2 : t.cap1);
  face.setColorAt(1, held ? t.cap1 : t.cap2);
  PaintBox(painter, thumb, m.f(3), face, t.caped, m.hair());
  painter.fillRect(QRectF(to - m.px(2) / 2.0, thumb.center().y() - m.f(5), m.px(2), m.f(10)),
                   t.capline);
}

void ParamSlider::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  Q_EMIT chosen();
  const double x = event->position().x();
  const double reach = metrics().px(thumbWidth) / 2.0;
  if (x < track().left() - reach || x > track().right() + reach) return;
  held = true;
  Q_EMIT pressed();
  grip = std::abs(x - thumbX()) <= reach ? x - thumbX() : 0;
  moveThumb(x);
  update();
}

void ParamSlider::moveThumb(double x) {
  const double part = (x - grip - track().left()) / std::max(track().width(), 1.0);
  moveTo(least() + int(std::lround(std::clamp(part, 0.0, 1.0) * (most() - least()))));
}

void ParamSlider::mouseMoveEvent(QMouseEvent* event) {
  if (held) moveThumb(event->position().x());
}

void ParamSlider::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !held) return;
  held = false;
  update();
  Q_EMIT released();
}

void ParamSlider::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && valueBox().contains(event->position()))
    moveTo(defaultValue());
}

void ParamSlider::focusInEvent(QFocusEvent* event) {
  ValueControl::focusInEvent(event);
  Q_EMIT chosen();
}

}  // namespace Sonarello
