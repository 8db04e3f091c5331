// The plate of a strip with the name of its sound; a button that opens the sound browser.
#pragma once

#include "app/controls/Control.h"

namespace Sonarello {

class NamePlate : public Control {
  Q_OBJECT

 public:
  enum class Look { Normal, Active, Drum };
  /// Muted steps back; Noteless is for channels without notes and for no song at all.
  enum class Dim { None, Muted, Noteless };

  explicit NamePlate(QWidget* parent = nullptr);

  void setName(const QString& name);
  [[nodiscard]] QString name() const { return shownName; }
  void setLook(Look look, Dim dim);

  [[nodiscard]] Spoken spoken() const override;
  void pressSpoken() override;
  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  void clicked();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  QString shownName;
  Look shownLook = Look::Normal;
  Dim shownDim = Dim::None;
  bool held = false;
};

}  // namespace Sonarello
