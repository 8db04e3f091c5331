// The buttons of the group column: an icon above a caption, or a letter with a cross behind it.
#pragma once

#include "app/controls/Control.h"
#include "app/controls/Icons.h"

namespace Sonarello {

class GroupButton : public Control {
  Q_OBJECT

 public:
  /// Above: the icon stands above the text; Behind: it follows the text.
  enum class Place { Above, Behind };

  GroupButton(Icon icon, Place place, QWidget* parent = nullptr);

  void setText(const QString& text);
  void setCheckable(bool on) { checkable = on; }
  [[nodiscard]] bool isChecked() const { return checked; }
  void setChecked(bool on);

  [[nodiscard]] Spoken spoken() const override;
  void pressSpoken() override;
  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  /// Clicked; a checkable button has changed already.
  void clicked();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  const Icon icon;
  const Place place;
  QString caption;
  bool checkable = false, checked = false, held = false;
};

}  // namespace Sonarello
