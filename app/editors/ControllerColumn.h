// A channel in the controller overview: number, sound, fader, value.
#pragma once

#include "app/controls/TrackBar.h"
#include "desk/ControllerOverview.h"

namespace Sonarello {

class NamePlate;
class ValueBox;

/// A fader that may have no value: then a dashed outline stands in its middle until it is moved.
class ControllerFader : public TCustomTrackBar {
  Q_OBJECT

 public:
  using TCustomTrackBar::TCustomTrackBar;
  void setValued(bool on);
  [[nodiscard]] bool IsValued() const { return valued; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool valued = true;
};

class ControllerColumn : public QWidget {
  Q_OBJECT

 public:
  ControllerColumn(int channel, QWidget* parent);

  void Show(const TControllerColumn& column, int controller);
  [[nodiscard]] ControllerFader& Fader() const { return *fader; }
  [[nodiscard]] ValueBox& Value() const { return *value; }

 Q_SIGNALS:
  /// The fader was moved, or a value was typed (0-127).
  void changed(int channel, int value);
  /// The column was touched.
  void touched(int channel);

 protected:
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Arrange();
  void ShowState();

  const int channel;
  TControllerColumn shown;
  int offset = 0;  ///< from the value as it is read to 0-127
  NamePlate* plate;
  ControllerFader* fader;
  ValueBox* value;
};

}  // namespace Sonarello
