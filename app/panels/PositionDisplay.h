// Where the song stands: measure and beat large, minutes and seconds, time signature and key.
#pragma once

#include <QRect>

#include "app/panels/Panel.h"

namespace Sonarello {

class PositionDisplay : public Panel {
  Q_OBJECT
 public:
  explicit PositionDisplay(QWidget* parent = nullptr);

  /// With a song the figures are lit and the signature is shown.
  void SetSong(bool song);
  /// Measure and beat count from 1. Repaints only what changed; meant for the tick of the display.
  void SetPosition(int measure, int beat, qint64 ms);
  /// "4/4 · C-Dur", see SignatureText.
  void SetSignature(const QString& signature);
  /// The song's last measure: the display is as wide as its figures need. Counts from 1.
  void SetLastMeasure(int measure);

  [[nodiscard]] int measure() const { return measure_; }
  [[nodiscard]] int beat() const { return beat_; }
  [[nodiscard]] const QString& measureText() const { return measureText_; }
  [[nodiscard]] const QString& timeText() const { return timeText_; }
  [[nodiscard]] const QString& signature() const { return signature_; }

  /// Where the running figures are drawn; each is repainted alone.
  [[nodiscard]] QRect MeasureRect() const { return measureRect_; }
  [[nodiscard]] QRect TimeRect() const { return timeRect_; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void Arrange() override;
  void Refresh() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] int MeasureWidth() const;
  [[nodiscard]] int TimeWidth() const;
  [[nodiscard]] int CaptionWidth(const QString& caption, int least) const;
  void PaintStill(QPainter& painter) const;

  bool song_ = false;
  int measure_ = 1, beat_ = 1;
  qint64 ms_ = 0;
  int lastMeasure_ = 1;
  QString measureText_, timeText_, signature_;
  QRect measureCaption_, measureRect_, timeCaption_, timeRect_, signatureRect_;
};

}  // namespace Sonarello
