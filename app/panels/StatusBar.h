// The line at the foot of the desk: what is happening, what was done, how the desk is set.
#pragma once

#include <QTimer>
#include <optional>

#include "app/panels/Panel.h"

class QShortcut;

namespace Sonarello {

struct StatusView {
  bool playing = false;
  std::optional<qint64> stopTime = {};  ///< how many ms the last stop took
  QString loop = {};                    ///< span of the loop, "9:01 – 25:01"; empty: none
  QString lastBackup = {};              ///< time of day of the last auto backup; empty: none
  QString instrument = {};              ///< main instrument
  int outputs = 0;
  int scale = 100;  ///< per cent
};

class StatusBar : public Panel {
  Q_OBJECT
 public:
  explicit StatusBar(QWidget* parent = nullptr);

  /// Interval of DisplayMessageTimer and the time that a message stays, in ms.
  static constexpr int MessageInterval = 400, MessageTime = 4000;

  void SetView(const StatusView& view);

  /// Shows what was done for MessageTime; a new message replaces the one before.
  void ShowMessage(const QString& message);
  /// Work that lasts: a word, a bar and the per cent. Within one work the bar never runs backwards.
  /// A cancellable work ends by Esc: cancelWanted.
  void ShowProgress(const QString& work, int percent, bool cancellable);
  void EndProgress();

  /// The parts as shown, left and right.
  [[nodiscard]] QStringList LeftParts() const;
  [[nodiscard]] QStringList RightParts() const;
  [[nodiscard]] bool busy() const { return !work_.isEmpty(); }
  [[nodiscard]] int percent() const { return percent_; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  void cancelWanted();

 protected:
  void Refresh() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void DisplayMessageTimerTimer();
  /// Draws one part at x and returns where the next begins.
  double PaintPart(QPainter& painter, const QString& text, double x, double room, bool first) const;
  void PaintSeparator(QPainter& painter, double x) const;
  double PaintProgress(QPainter& painter, double x) const;

  StatusView view_;
  QString message_;
  QTimer* DisplayMessageTimer;
  int messageTicks_ = 0;
  QString work_;
  int percent_ = 0;
  QShortcut* cancel_;
};

}  // namespace Sonarello
