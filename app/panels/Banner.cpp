#include "app/panels/Banner.h"

#include <QAccessible>
#include <QFontMetrics>
#include <algorithm>

#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"

namespace Sonarello {

namespace {

/// Height with one line of text; an icon at the left.
constexpr double LineHeight = 32, Edge = 10, IconSize = 16, IconGap = 8;

}  // namespace

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
  Arrange();
  update();
  if (text_.isEmpty()) return;
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

QSize Banner::sizeHint() const { return {metrics().px(400), heightForWidth(width())}; }
QSize Banner::minimumSizeHint() const { return {metrics().px(200), metrics().px(LineHeight)}; }

void Banner::Arrange() {
  const int height = heightForWidth(width());
  if (height != minimumHeight()) setFixedHeight(height);
}

QRect Banner::TextRect(const QSize& size) const {
  const Metrics& m = metrics();
  const int left = m.px(Edge) + m.px(IconSize) + m.px(IconGap);
  return {left, 0, std::max(size.width() - left - m.px(Edge), 1), size.height()};
}

int Banner::heightForWidth(int width) const {
  const QFontMetrics sizes(metrics().font(Role::Body));
  const QRect room = TextRect({width, 1 << 14});
  const int text = sizes.boundingRect(room, Qt::TextWordWrap, text_).height();
  return metrics().px(LineHeight) + std::max(text - sizes.height(), 0);
}

void Banner::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const Metrics& m = metrics();
  const bool error = severity_ == Severity::Error;
  const QColor& ink = error ? th().err : th().warn;
  PaintBox(painter, rect(), m.px(4), error ? th().errbg : th().warnbg, ink, m.hair());
  const double icon = m.px(IconSize);
  PaintIcon(painter, Icon::Warning, QRectF(m.px(Edge), (height() - icon) / 2, icon, icon), ink);
  painter.setFont(m.font(Role::Body));
  painter.setPen(th().tx1);
  painter.drawText(TextRect(size()), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, text_);
}

}  // namespace Sonarello
