#include "app/panels/PositionDisplay.h"

#include <QFontMetrics>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "app/controls/Metrics.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"
#include "app/panels/PanelAccess.h"
#include "app/panels/PanelTexts.h"

namespace Sonarello {

namespace {

QString MeasureCaption() { return QText("Takt:Schlag", "Bar:Beat"); }
QString TimeCaption() { return QText("Min:Sek.ms", "Min:Sec.ms"); }

int EdgeWidth() { return metrics().px(16) + metrics().hair(); }

}  // namespace

PositionDisplay::PositionDisplay(QWidget* parent) : Panel(parent) {
  InstallPanelAccess();
  measureText_ = PositionText(measure_, beat_);
  timeText_ = TimeText(ms_);
  setAccessibleName(QText("Position im Song", "Position in the song"));
  Renew();
}

void PositionDisplay::SetSong(bool song) {
  if (song == song_) return;
  song_ = song;
  Renew();
}

void PositionDisplay::SetPosition(int measure, int beat, qint64 ms) {
  if (measure != measure_ || beat != beat_) {
    measure_ = measure;
    beat_ = beat;
    measureText_ = PositionText(measure, beat);
    update(measureRect_);
  }
  if (ms != ms_) {
    ms_ = ms;
    timeText_ = TimeText(ms);
    update(timeRect_);
  }
}

void PositionDisplay::SetSignature(const QString& signature) {
  if (signature == signature_) return;
  signature_ = signature;
  Renew();
}

void PositionDisplay::SetLastMeasure(int measure) {
  if (measure == lastMeasure_) return;
  lastMeasure_ = measure;
  Renew();
}

void PositionDisplay::Refresh() {
  SetTip(*this, {QText("Takt und Schlag, Minuten, Sekunden und Tausendstel, Taktart und Tonart",
                       "Bar and beat, minutes, seconds and thousandths, time signature and key"),
                 {},
                 {},
                 song_ ? QString() : NoSongReason()});
}

int PositionDisplay::CaptionWidth(const QString& caption, int least) const {
  return std::max(least, QFontMetrics(metrics().font(Role::Caption)).horizontalAdvance(caption));
}

int PositionDisplay::MeasureWidth() const {
  const QFont& font = metrics().font(compact() ? Role::DisplayCompact : Role::Display);
  const QString widest = PositionText(std::max(lastMeasure_, measure_), 1);
  const int figures = static_cast<int>(std::ceil(FiguresWidth(font, widest)));
  return CaptionWidth(MeasureCaption(), std::max(metrics().px(102), figures));
}

int PositionDisplay::TimeWidth() const {
  const int figures = static_cast<int>(std::ceil(
      FiguresWidth(metrics().font(Role::Time),
                   std::max(timeText_, QStringLiteral("0:00.000"),
                            [](const QString& a, const QString& b) { return a.size() < b.size(); }))));
  const int least = std::max(metrics().px(86), figures);
  return CaptionWidth(signature_, CaptionWidth(TimeCaption(), least));
}

QSize PositionDisplay::sizeHint() const {
  return {2 * EdgeWidth() + MeasureWidth() + metrics().px(18) + TimeWidth(), Px(62, 72)};
}

void PositionDisplay::Arrange() {
  const int caption = metrics().lineHeight(Role::Caption);
  const int figure = metrics().lineHeight(compact() ? Role::DisplayCompact : Role::Display);
  const int time = metrics().lineHeight(Role::Time);
  const int left = EdgeWidth(), measureWidth = MeasureWidth();
  int y = (height() - caption - figure) / 2;
  measureCaption_ = QRect(left, y, measureWidth, caption);
  measureRect_ = QRect(left, y + caption, measureWidth, figure);
  const bool signature = song_ && !signature_.isEmpty();
  const int x = left + measureWidth + metrics().px(18);
  const int timeWidth = width() - x - metrics().hair();
  // A little up: minutes and seconds look level with measure and beat then.
  y = (height() - caption - time - (signature ? caption : 0)) / 2 - metrics().px(1);
  timeCaption_ = QRect(x, y, timeWidth, caption);
  timeRect_ = QRect(x, y + caption, timeWidth, time);
  signatureRect_ = signature ? QRect(x, y + caption + time, timeWidth, caption) : QRect();
}

void PositionDisplay::PaintStill(QPainter& painter) const {
  PaintBox(painter, rect(), metrics().px(6), th().well, th().line);
  painter.setFont(metrics().font(Role::Caption));
  painter.setPen(th().tx3);
  painter.drawText(measureCaption_, Qt::AlignLeft | Qt::AlignVCenter, MeasureCaption());
  painter.drawText(timeCaption_, Qt::AlignLeft | Qt::AlignVCenter, TimeCaption());
  if (!signatureRect_.isEmpty()) {
    painter.drawText(signatureRect_, Qt::AlignLeft | Qt::AlignVCenter, signature_);
  }
}

void PositionDisplay::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const bool runningOnly = (event->region() - measureRect_ - timeRect_).isEmpty();
  if (runningOnly) {
    painter.fillRect(event->rect(), th().well);
  } else {
    PaintStill(painter);
  }
  painter.setPen(song_ ? th().tx1 : th().dis);
  if (event->region().intersects(measureRect_)) {
    painter.setFont(metrics().font(compact() ? Role::DisplayCompact : Role::Display));
    drawFigures(painter, measureRect_, measureText_, Qt::AlignLeft | Qt::AlignVCenter);
  }
  if (event->region().intersects(timeRect_)) {
    painter.setFont(metrics().font(Role::Time));
    drawFigures(painter, timeRect_, timeText_, Qt::AlignLeft | Qt::AlignVCenter);
  }
}

}  // namespace Sonarello
