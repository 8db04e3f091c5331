#include "app/panels/EffectCell.h"

#include <QFontMetricsF>
#include <QPainter>

#include "app/controls/Painting.h"
#include "app/controls/QtText.h"

namespace Sonarello {

namespace {

constexpr double Padding = 7, LightSize = 8, LightGap = 5;
constexpr double BadgeHeight = 14, BadgePadding = 4;

}  // namespace

EffectCell::EffectCell(QWidget* parent) : QAbstractButton(parent) {
  setAttribute(Qt::WA_Hover);
  setFocusPolicy(Qt::NoFocus);
  SetView({});
}

QString EffectCell::SecondLine() const {
  if (!view_.on) return view_.effect.isEmpty() ? QStringLiteral("–") : QStringLiteral("Off");
  return view_.effect;
}

void EffectCell::SetView(const EffectView& view) {
  view_ = view;
  QString name = view.block;
  if (!view.effect.isEmpty()) name += QStringLiteral(": ") + SecondLine();
  if (!view.spokenPart.isEmpty()) name += QStringLiteral(", ") + view.spokenPart;
  setAccessibleName(name);
  SetTip(*this, {name, view.on ? QText("Ein", "On") : QText("Aus", "Off"),
                 view.opens ? QText("Eingabe", "Enter") : QString(), view.reason});
  update();
}

double EffectCell::PaintBadge(QPainter& painter, const QRectF& line) const {
  if (view_.part.isEmpty()) return 0;
  const Metrics& m = metrics();
  const double width =
      QFontMetricsF(m.font(Role::Caption)).horizontalAdvance(view_.part) + 2 * m.f(BadgePadding);
  const double height = m.px(BadgeHeight);
  const QRectF badge(line.right() - width, line.center().y() - height / 2, width, height);
  PaintBox(painter, badge, m.px(3), th().well, QColor());
  painter.setFont(m.font(Role::Caption));
  painter.setPen(th().tx2);
  painter.drawText(badge, Qt::AlignCenter, view_.part);
  return width;
}

void EffectCell::PaintFirstLine(QPainter& painter, const QRectF& line) const {
  const Metrics& m = metrics();
  const double light = m.px(LightSize);
  const QRectF disc(line.left(), line.center().y() - light / 2, light, light);
  PaintLight(painter, disc.center(), light, view_.on, th().play);
  const double badge = PaintBadge(painter, line);
  const double left = disc.right() + m.px(LightGap);
  const double room = line.right() - left - (badge > 0 ? badge + m.px(2) : 0);
  const QFont& font = m.font(Role::Caption);
  painter.setFont(font);
  painter.setPen(view_.on ? th().tx2 : th().tx3);
  painter.drawText(QRectF(left, line.top(), room + 1, line.height()), Qt::AlignLeft | Qt::AlignVCenter,
                   Elided(font, view_.block, room));
}

void EffectCell::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const Metrics& m = metrics();
  const bool under = view_.opens && underMouse();
  const QColor face = isDown() && view_.opens ? th().bg3p
                      : under                 ? th().bg3h
                      : view_.on              ? th().bg3
                                              : th().bg1;
  PaintBox(painter, rect(), m.px(4), face, view_.on ? th().line2 : th().line);
  const int edge = m.px(Padding) + m.hair();
  const int first = m.lineHeight(Role::Caption), second = m.px(16);
  const int top = (height() - first - second + 1) / 2;
  PaintFirstLine(painter, QRectF(edge, top, width() - 2 * edge, first));
  const QFont& font = m.font(Role::EffectName);
  painter.setFont(font);
  painter.setPen(view_.on ? th().tx1 : th().tx3);
  const QRectF line(edge, top + first, width() - 2 * edge, second);
  painter.drawText(line.adjusted(0, 0, 1, 0), Qt::AlignLeft | Qt::AlignVCenter,
                   Elided(font, SecondLine(), line.width()));
}

}  // namespace Sonarello
