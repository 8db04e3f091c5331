// What the panels of the desk have in common: a ground with a border, two densities, a layout of their
// own.
//
// A panel knows nothing of the song. Values come in by SetView with a plain struct, what the user does
// goes out by signals; a panel never changes its own view on its own account.
#pragma once

#include <QString>
#include <QWidget>

class QPainter;

namespace Sonarello {

/// A low desk (below 860 pixels at 100 %) is laid out closer than a high one.
enum class Density { Compact, Regular };

/// A tool tip in parts: what a control does, its value, its shortcut. Where a reason tells why the
/// control is out of order it takes the place of the value.
struct PanelTip {
  QString what;
  QString value = {};
  QString shortcut = {};
  QString reason = {};
};

[[nodiscard]] QString ToolTipOf(const PanelTip& tip);

/// Gives a control its tool tip, and its reason to assistive programs.
void SetTip(QWidget& control, const PanelTip& tip);

class Panel : public QWidget {
  Q_OBJECT
 public:
  explicit Panel(QWidget* parent = nullptr);

  void SetDensity(Density density);
  [[nodiscard]] Density density() const { return density_; }
  [[nodiscard]] bool compact() const { return density_ == Density::Compact; }

 protected:
  /// Places the children. Called after each change of size, density, scale or theme.
  virtual void Arrange() {}
  /// Sets texts, states and tips of the children from the view.
  virtual void Refresh() {}

  /// Takes scale, theme and view anew; the constructors of panels end with it.
  void Renew();

  /// A length of the density in pixels of the scale.
  [[nodiscard]] int Px(double inCompact, double inRegular) const;

  /// Ground and border of an ordinary panel.
  void PaintGround(QPainter& painter) const;

  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  Density density_ = Density::Regular;
};

}  // namespace Sonarello
