#include "app/panels/StatusBar.h"

#include <QAccessible>
#include <QFontMetricsF>
#include <QShortcut>
#include <QStringList>
#include <algorithm>

#include "app/controls/Painting.h"
#include "app/controls/QtText.h"

namespace Sonarello {

namespace {

constexpr double Edge = 12, Gap = 16, SeparatorHeight = 14;
constexpr double BarWidth = 140, BarHeight = 6;

QFont LineFont() { return FontOf(FontStack::Text, metrics().f(12), QFont::Normal); }

QString PerCent(int value) { return QString::number(value) + QStringLiteral(" %"); }

}  // namespace

StatusBar::StatusBar(QWidget* parent)
    : Panel(parent),
      DisplayMessageTimer(new QTimer(this)),
      cancel_(new QShortcut(QKeySequence(Qt::Key_Escape), this)) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setAccessibleName(QText("Statuszeile", "Status line"));
  cancel_->setEnabled(false);
  connect(cancel_, &QShortcut::activated, this, &StatusBar::cancelWanted);
  connect(DisplayMessageTimer, &QTimer::timeout, this, &StatusBar::DisplayMessageTimerTimer);
  Renew();
}

void StatusBar::SetView(const StatusView& view) {
  view_ = view;
  Refresh();
}

void StatusBar::ShowMessage(const QString& message) {
  message_ = message;
  messageTicks_ = MessageTime / MessageInterval;
  DisplayMessageTimer->start(MessageInterval);
  Refresh();
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void StatusBar::DisplayMessageTimerTimer() {
  if (--messageTicks_ > 0) return;
  DisplayMessageTimer->stop();
  message_.clear();
  Refresh();
}

void StatusBar::ShowProgress(const QString& work, int percent, bool cancellable) {
  const int bounded = std::clamp(percent, 0, 100);
  percent_ = work == work_ ? std::max(percent_, bounded) : bounded;
  work_ = work;
  cancel_->setEnabled(cancellable);
  Refresh();
}

void StatusBar::EndProgress() {
  work_.clear();
  percent_ = 0;
  cancel_->setEnabled(false);
  Refresh();
}

QStringList StatusBar::LeftParts() const {
  const QString state = view_.playing ? QText("Wiedergabe", "Playing") : QText("Bereit", "Ready");
  QStringList parts{busy() ? work_ : message_.isEmpty() ? state : message_};
  if (busy()) return parts;
  if (view_.stopTime) parts += QText("Stopp %1 ms", "Stop %1 ms").arg(*view_.stopTime);
  if (!view_.loop.isEmpty()) parts += QText("Schleife ", "Loop ") + view_.loop;
  if (!view_.lastBackup.isEmpty()) parts += QText("Autobackup ", "Auto backup ") + view_.lastBackup;
  return parts;
}

QStringList StatusBar::RightParts() const {
  QStringList parts;
  if (!view_.instrument.isEmpty()) parts += view_.instrument;
  parts += (view_.outputs == 1 ? QText("%1 Ausgang", "%1 output") : QText("%1 Ausgänge", "%1 outputs"))
               .arg(view_.outputs);
  parts += PerCent(view_.scale);
  return parts;
}

void StatusBar::Refresh() {
  QString line = LeftParts().join(QStringLiteral(", "));
  if (busy()) {
    line += QLatin1Char(' ') + PerCent(percent_);
    if (cancel_->isEnabled()) line += QLatin1Char('\n') + QText("Esc: abbrechen", "Esc: cancel");
  }
  line += QLatin1Char('\n') + RightParts().join(QStringLiteral(", "));
  SetTip(*this, {line});
  setAccessibleDescription(line);
  update();
}

QSize StatusBar::sizeHint() const { return {metrics().px(1280), metrics().px(24)}; }
QSize StatusBar::minimumSizeHint() const { return {metrics().px(400), metrics().px(24)}; }

double StatusBar::PaintPart(QPainter& painter, const QString& text, double x, double room,
                            bool first) const {
  const QString shown = Elided(painter.font(), text, room);
  const double width = QFontMetricsF(painter.font()).horizontalAdvance(shown);
  painter.setPen(first ? th().tx1 : th().tx2);
  painter.drawText(QRectF(x, metrics().hair(), width + 1, height() - metrics().hair()),
                   Qt::AlignLeft | Qt::AlignVCenter, shown);
  return x + width;
}

void StatusBar::PaintSeparator(QPainter& painter, double x) const {
  const double tall = metrics().px(SeparatorHeight);
  const double top = std::round((height() + metrics().hair() - tall) / 2);
  PaintHairline(painter, QLineF(std::round(x), top, std::round(x), top + tall), th().line2);
}

double StatusBar::PaintProgress(QPainter& painter, double x) const {
  const Metrics& m = metrics();
  const QRectF bar(x, (height() + m.hair() - m.px(BarHeight)) / 2.0, m.px(BarWidth), m.px(BarHeight));
  PaintBox(painter, bar, m.px(3), th().moff, QColor());
  if (percent_ > 0) {
    QRectF done = bar;
    done.setWidth(std::max(bar.width() * percent_ / 100, static_cast<double>(m.px(BarHeight))));
    PaintBox(painter, done, m.px(3), th().acc, QColor());
  }
  const QRectF figure(bar.right() + m.px(6), m.hair(), m.px(40), height() - m.hair());
  painter.setPen(th().tx2);
  drawFigures(painter, figure, PerCent(percent_), Qt::AlignLeft | Qt::AlignVCenter);
  if (!cancel_->isEnabled()) return figure.right();
  return PaintPart(painter, QText("Esc: abbrechen", "Esc: cancel"), figure.right() + m.px(Gap), width(),
                   false);
}

void StatusBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const Metrics& m = metrics();
  painter.fillRect(rect(), th().bg1);
  PaintHairline(painter, QLineF(0, 0, width(), 0), th().line);
  painter.setFont(LineFont());
  const QFontMetricsF sizes(painter.font());
  const double gap = m.px(Gap);
  double right = width() - m.px(Edge);
  const QStringList settings = RightParts();
  for (qsizetype i = settings.size(); i-- > 0;) {
    right -= sizes.horizontalAdvance(settings[i]);
    PaintPart(painter, settings[i], right, width(), false);
    if (i > 0) PaintSeparator(painter, right - gap - m.hair());
    right -= i > 0 ? 2 * gap + m.hair() : gap;
  }
  double x = m.px(Edge);
  bool first = true;
  for (const QString& part : LeftParts()) {
    if (!first) {
      if (x + 2 * gap + m.hair() >= right) return;
      PaintSeparator(painter, x + gap);
      x += 2 * gap + m.hair();
    }
    x = PaintPart(painter, part, x, right - x, first);
    first = false;
  }
  if (busy()) PaintProgress(painter, x + gap);
}

}  // namespace Sonarello
