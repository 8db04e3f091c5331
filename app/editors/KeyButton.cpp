#include "app/editors/KeyButton.h"

#include <QPainter>
#include <QStyleOptionButton>

#include "app/controls/Painting.h"

namespace Sonarello {

namespace {

constexpr double Side = 12, IconGap = 6, KeyGap = 6, Height = 28;

double TextWidth(const QString& text) {
  return QFontMetricsF(metrics().font(Role::Body)).horizontalAdvance(text);
}

double KeyWidth(const QString& key) {
  return QFontMetricsF(metrics().font(Role::ToolTip)).horizontalAdvance(key);
}

}  // namespace

KeyButton::KeyButton(const QString& text, const QString& key, QWidget* parent)
    : QPushButton(text, parent), keyName(key) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize KeyButton::sizeHint() const {
  const Metrics& m = metrics();
  const double sign = icon().isNull() ? 0 : iconSize().width() + m.f(IconGap);
  const double width = 2 * m.f(Side) + sign + TextWidth(text()) + m.f(KeyGap) + KeyWidth(keyName);
  return {qCeil(width), m.px(Height)};
}

void KeyButton::paintEvent(QPaintEvent*) {
  const Metrics& m = metrics();
  QPainter painter(this);
  QStyleOptionButton face;
  initStyleOption(&face);
  face.text.clear();
  face.icon = {};
  style()->drawControl(QStyle::CE_PushButton, &face, &painter, this);
  double left = m.f(Side);
  const auto area = [&](double width) { return QRectF(left, 0, width + 1, height()); };
  if (!icon().isNull()) {
    const QSize size = iconSize();
    icon().paint(&painter,
                 QRect(qRound(left), (height() - size.height()) / 2, size.width(), size.height()),
                 Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
    left += size.width() + m.f(IconGap);
  }
  painter.setFont(m.font(Role::Body));
  painter.setPen(isEnabled() ? th().tx1 : th().dis);
  painter.drawText(area(TextWidth(text())), Qt::AlignLeft | Qt::AlignVCenter, text());
  left += TextWidth(text()) + m.f(KeyGap);
  painter.setFont(m.font(Role::ToolTip));
  painter.setPen(isEnabled() ? th().tx3 : th().dis);
  painter.drawText(area(KeyWidth(keyName)), Qt::AlignLeft | Qt::AlignVCenter, keyName);
}

}  // namespace Sonarello
