// A card with the old or the new voice; the one that is heard stands out.
#pragma once

#include "app/controls/Control.h"

namespace Sonarello {

class VoiceCard : public Control {
  Q_OBJECT

 public:
  explicit VoiceCard(const QString& caption, QWidget* parent = nullptr);

  void SetVoice(const QString& name, const QString& effect);
  void SetHeard(bool on);
  [[nodiscard]] const QString& Voice() const { return voice; }
  [[nodiscard]] bool IsHeard() const { return heard; }

  [[nodiscard]] Spoken spoken() const override;
  void pressSpoken() override { Q_EMIT clicked(); }
  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  void clicked();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  const QString caption;
  QString voice;
  QString effect;
  bool heard = false;
  bool held = false;
};

}  // namespace Sonarello
