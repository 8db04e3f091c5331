// The switches of the desk's windows at the right of the menu bar, and the light of the MIDI input.
#pragma once

#include <array>

#include "app/panels/Panel.h"

namespace Sonarello {

class PanelButton;

enum class DeskWindow { Sounds, Controllers, Events, KeyEditor, Drums, Lyrics, Keyboard };
inline constexpr std::size_t DeskWindows = 7;

struct SwitchView {
  bool shown = false;   ///< the window is open
  QString reason = {};  ///< why it cannot be opened; empty: it can
};

class WindowSwitches : public Panel {
  Q_OBJECT
 public:
  explicit WindowSwitches(QWidget* parent = nullptr);

  void SetView(DeskWindow window, const SwitchView& view);
  /// Lights the MIDI input; `port` is its name for the tip, empty if there is none.
  void SetMidiIn(bool lit, const QString& port);
  [[nodiscard]] bool midiIn() const { return midiIn_; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 Q_SIGNALS:
  void switchClicked(DeskWindow window);

 protected:
  bool event(QEvent* event) override;
  void Arrange() override;
  void Refresh() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QRect LightRect() const;
  [[nodiscard]] int SwitchesWidth() const;

  std::array<SwitchView, DeskWindows> views_;
  std::array<PanelButton*, DeskWindows> buttons_{};
  QString port_;
  bool midiIn_ = false;
};

}  // namespace Sonarello
