#include "app/panels/Banner.h"

#include <QAccessible>

#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"

namespace Sonarello {

Banner::Banner(QWidget* parent) : Panel(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setAccessibleName(QText("Hinweis", "Notice"));
  hide();
}

void Banner::SetMessage(Severity severity, const QString& text) {
  severity_ = severity;
  text_ = text.simplified();
  SetTip(*this, {text_});
  setAccessibleName(text_);
  setVisible(!text_.isEmpty());
  update();
  if (text_.isEmpty()) return;
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

QSize Banner::sizeHint() const { return {metrics().px(400), metrics().px(32)}; }
QSize Banner::minimumSizeHint() const { return {metrics().px(200), metrics().px(32)}; }

void Banner::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const Metrics& m = metrics();
  const bool error = severity_ == Severity::Error;
  const QColor& ink = error ? th().err : th().warn;
  PaintBox(painter, rect(), m.px(4), error ? th().errbg : th().warnbg, ink, m.hair());
  const double icon = m.f(16), left = m.px(10);
  PaintIcon(painter, Icon::Warning, QRectF(left, (height() - icon) / 2, icon, icon), ink);
  const double textLeft = left + icon + m.px(8), room = width() - textLeft - m.px(10);
  const QFont& font = m.font(Role::Body);
  painter.setFont(font);
  painter.setPen(th().tx1);
  painter.drawText(QRectF(textLeft, 0, room + 1, height()), Qt::AlignLeft | Qt::AlignVCenter,
                   Elided(font, text_, room));
}

}  // namespace Sonarello
