// Channel, sound and output of the active strip, and its nine controllers.
#pragma once

#include <array>
#include <optional>

#include "app/panels/Panel.h"

namespace Sonarello {

class Knob;
class RoutingButton;

inline constexpr std::size_t PanelControllers = 9;

/// A controller of the panel: its number, name and the value shown while the song gives none.
struct PanelController {
  int number;
  const char* german;
  const char* english;
  int standard;  ///< what the panel shows without a value
  int reset;     ///< what a double click sets
  bool bipolar;
  int zero;  ///< what the shown value is counted from
};

/// The controllers from left to right.
[[nodiscard]] const std::array<PanelController, PanelControllers>& ControllersOfPanel();

struct ControllerValue {
  std::optional<int> value = {};  ///< none: the panel shows the standard
  bool inSong = true;             ///< false: the song holds no such event; a move is heard, not saved
};

struct ControllersView {
  bool song = false;
  int channel = 1;  ///< the active one, 1 to 16
  QString sound = {};
  QString instrument = {};     ///< of the channel's route
  QString output = {};         ///< name of the route's port or hosted instrument
  bool severalRoutes = false;  ///< the routing button opens its menu
  QString routingReason = {};  ///< why there is no choice, for the tip
  QString audioOutput = {};    ///< for instruments with audio outputs of their own
  std::array<ControllerValue, PanelControllers> values = {};
};

class ControllerPanel : public Panel {
  Q_OBJECT
 public:
  explicit ControllerPanel(QWidget* parent = nullptr);

  void SetView(const ControllersView& view);
  /// A single value, as the song plays on; an index of ControllersOfPanel.
  void SetValue(std::size_t index, const ControllerValue& value);

  [[nodiscard]] Knob* knob(std::size_t index) const { return knobs_[index]; }
  /// What is written beside a knob.
  [[nodiscard]] QString ShownValue(std::size_t index) const;
  [[nodiscard]] RoutingButton* routing() const { return Panel_MidiRouting; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// The user moved a knob; `controller` is the MIDI number.
  void controllerMoved(int controller, int value);
  void routingMenuWanted(const QPoint& at, Qt::KeyboardModifiers modifiers);

 protected:
  void Arrange() override;
  void Refresh() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] int BlockWidth() const;
  /// Left end of a column; index PanelControllers is the panel's right end.
  [[nodiscard]] int ColumnLeft(std::size_t index) const;
  /// Diameter of the knobs for which there is room, pixels at 100 %.
  [[nodiscard]] double KnobSide() const;
  [[nodiscard]] QRect TextRect(std::size_t index) const;
  [[nodiscard]] int ValueOf(std::size_t index) const;
  [[nodiscard]] double AudioWidth() const;
  void RefreshKnob(std::size_t index);
  void RefreshRouting();
  void KnobMoved(std::size_t index, int value);
  void PaintBlock(QPainter& painter) const;
  void PaintColumn(QPainter& painter, std::size_t index) const;

  ControllersView view_;
  std::array<Knob*, PanelControllers> knobs_{};
  RoutingButton* Panel_MidiRouting;
  QRect channelLine_, soundLine_, audioLine_;
  double knobSide_ = 46;
};

}  // namespace Sonarello
