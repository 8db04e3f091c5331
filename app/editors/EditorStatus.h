// The line at the foot of an editor's window: what is shown, messages, long work.
#pragma once

#include <QTimer>
#include <QWidget>

namespace Sonarello {

class EditorStatus : public QWidget {
  Q_OBJECT

 public:
  explicit EditorStatus(QWidget* parent = nullptr);

  static constexpr int MessageTime = 4000;  ///< ms that a message stays

  /// What stands at the left, the first part in strong letters.
  void SetParts(const QStringList& parts);
  /// Stands behind the parts until the next message, for MessageTime; an empty one takes it away.
  void ShowMessage(const QString& message);
  /// Long work at the right: a word, a bar, the per cent. Within one work the bar never runs backwards.
  void ShowProgress(const QString& work, double done);
  void EndProgress();

  [[nodiscard]] const QString& Message() const { return message; }
  [[nodiscard]] const QStringList& Parts() const { return parts; }
  [[nodiscard]] bool IsBusy() const { return !work.isEmpty(); }
  [[nodiscard]] int Percent() const { return percent; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void Tell();
  /// Paints the work and returns where it begins.
  double PaintProgress(QPainter& painter) const;

  QStringList parts;
  QString message;
  QString work;
  int percent = 0;
  QTimer MessageTimer;
};

}  // namespace Sonarello
