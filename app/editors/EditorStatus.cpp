#include "app/editors/EditorStatus.h"

#include <QAccessible>
#include <QPainter>
#include <algorithm>

#include "app/controls/Painting.h"

namespace Sonarello {

namespace {

constexpr double Height = 24, Edge = 12, Gap = 16, SeparatorHeight = 14;
constexpr double BarWidth = 140, BarHeight = 6, BarGap = 8;

QString PerCent(int value) { return QString::number(value) + QStringLiteral(" %"); }

QFont LineFont(bool strong) {
  return FontOf(FontStack::Text, metrics().f(12), strong ? QFont::Medium : QFont::Normal);
}

}  // namespace

EditorStatus::EditorStatus(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  MessageTimer.setSingleShot(true);
  MessageTimer.setInterval(MessageTime);
  connect(&MessageTimer, &QTimer::timeout, this, [this] {
    message.clear();
    Tell();
  });
}

void EditorStatus::Tell() {
  QStringList all = parts;
  if (!message.isEmpty()) all += message;
  if (IsBusy()) all += work + QLatin1Char(' ') + PerCent(percent);
  setAccessibleName(all.join(QStringLiteral(", ")));
  update();
}

void EditorStatus::SetParts(const QStringList& shown) {
  if (shown == parts) return;
  parts = shown;
  Tell();
}

void EditorStatus::ShowMessage(const QString& text) {
  message = text;
  MessageTimer.start();
  Tell();
  if (text.isEmpty()) return;
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void EditorStatus::ShowProgress(const QString& word, double done) {
  const int now = std::clamp(int(done * 100), 0, 100);
  percent = word == work ? std::max(percent, now) : now;
  work = word;
  Tell();
}

void EditorStatus::EndProgress() {
  work.clear();
  percent = 0;
  Tell();
}

QSize EditorStatus::sizeHint() const { return {metrics().px(400), metrics().px(Height)}; }

double EditorStatus::PaintProgress(QPainter& painter) const {
  const Metrics& m = metrics();
  painter.setFont(LineFont(false));
  painter.setPen(th().tx2);
  const double figures = FiguresWidth(painter.font(), PerCent(100));
  double right = width() - m.px(Edge);
  drawFigures(painter, QRectF(right - figures, 0, figures, height()), PerCent(percent),
              Qt::AlignRight | Qt::AlignVCenter);
  right -= figures + m.px(BarGap) + m.px(BarWidth);
  const QRectF bar(right, (height() - m.px(BarHeight)) / 2.0, m.px(BarWidth), m.px(BarHeight));
  PaintBox(painter, bar, m.f(3), th().moff, QColor());
  if (percent > 0)
    PaintBox(painter, QRectF(bar.topLeft(), QSizeF(bar.width() * percent / 100, bar.height())), m.f(3),
             th().acc, QColor());
  const double word = QFontMetricsF(painter.font()).horizontalAdvance(work);
  right -= m.px(BarGap) + word;
  painter.drawText(QRectF(right, 0, word + 1, height()), Qt::AlignLeft | Qt::AlignVCenter, work);
  return right;
}

void EditorStatus::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const Metrics& m = metrics();
  painter.fillRect(rect(), th().bg1);
  painter.fillRect(QRect(0, 0, width(), m.hair()), th().line);
  const double right = IsBusy() ? PaintProgress(painter) - m.px(Gap) : width() - m.px(Edge);
  double left = m.px(Edge);
  QStringList all = parts;
  if (!message.isEmpty()) all += message;
  for (qsizetype i = 0; i < all.size(); ++i) {
    if (i > 0) {
      left += m.px(Gap);
      const double tall = m.px(SeparatorHeight), top = std::round((height() - tall) / 2);
      PaintHairline(painter, QLineF(left, top, left, top + tall), th().line2);
      left += m.px(Gap);
    }
    if (left >= right) return;
    painter.setFont(LineFont(i == 0));
    painter.setPen(i == 0 ? th().tx1 : th().tx2);
    const QString text = Elided(painter.font(), all[i], right - left);
    painter.drawText(QRectF(left, 0, right - left, height()), Qt::AlignLeft | Qt::AlignVCenter, text);
    left += QFontMetricsF(painter.font()).horizontalAdvance(text);
  }
}

}  // namespace Sonarello
