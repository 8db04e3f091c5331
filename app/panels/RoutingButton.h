// Where the active channel goes out: "instrument → output", with an arrow when there is a choice.
#pragma once

#include <QAbstractButton>

#include "app/panels/Panel.h"

namespace Sonarello {

class RoutingButton : public QAbstractButton {
  Q_OBJECT
 public:
  explicit RoutingButton(QWidget* parent);

  /// With a choice it is a button, without one plain text.
  void SetChoice(bool choice, const PanelTip& tip);
  [[nodiscard]] bool choice() const { return choice_; }

 Q_SIGNALS:
  /// The menu of the outputs, at a point of the screen; with Ctrl it is meant for all channels.
  void menuWanted(const QPoint& at, Qt::KeyboardModifiers modifiers);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Want();

  bool choice_ = false;
  Qt::KeyboardModifiers modifiers_;
};

}  // namespace Sonarello
