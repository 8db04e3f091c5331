// The buttons of the panels: an icon or a short text on a face that tells its state.
#pragma once

#include <QAbstractButton>

#include "app/controls/Icons.h"
#include "app/controls/Metrics.h"
#include "app/panels/Panel.h"

namespace Sonarello {

/// What a lit button stands for.
enum class Lit { Checked, Play, Record };

class PanelButton : public QAbstractButton {
  Q_OBJECT
 public:
  /// `name` is what assistive programs read.
  PanelButton(const QString& name, QWidget* parent);

  /// An icon of `size` pixels at 100 %; `filledWhenLit` fills its outline while the button is lit.
  void SetIcon(Icon icon, double size, bool filledWhenLit = false);
  /// Text is drawn in this role; an icon beside it stands left.
  void SetRole(Role role);
  /// Which meaning the face has while the button is checked.
  void SetLit(Lit lit);
  /// The default button of a card: face accd, white ink.
  void SetDefault(bool isDefault);
  /// Ink of icon or text while the button is neither lit nor out of order; no colour: the usual one.
  void SetInk(const QColor& ink);
  /// A second text behind the first, quieter: the shortcut on the button of a card.
  void SetAside(const QString& text);
  /// A button without face or border until it is checked or under the pointer.
  void SetFlat(bool flat);
  /// Keeps the face of a button that is out of order and dims its ink alone.
  void SetFaceKeptWhenDisabled(bool kept);
  /// An arrow at the right end: the button opens a menu.
  void SetArrow(bool arrow);
  /// Enables the button, or disables it and tells why in its tip.
  void SetState(bool enabled, const PanelTip& tip);

  /// Width that the content needs with a padding at both ends, in pixels of the scale.
  [[nodiscard]] int WidthFor(int padding) const;
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void PaintFace(QPainter& painter) const;
  void PaintContent(QPainter& painter) const;
  [[nodiscard]] QColor Ink() const;
  [[nodiscard]] QFont TextFont() const;

  Icon icon_{};
  bool hasIcon_ = false;
  double iconSize_ = 0;
  bool filledWhenLit_ = false;
  Role role_ = Role::Body;
  Lit lit_ = Lit::Checked;
  QColor ink_;
  QString aside_;
  bool isDefault_ = false;
  bool flat_ = false;
  bool faceKept_ = false;
  bool arrow_ = false;
};

}  // namespace Sonarello
