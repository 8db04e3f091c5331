// The sixteen strips as one: one stop of the Tab key, with keys for the channel in use.
#pragma once

#include <array>

#include "app/controls/ChannelStrip.h"
#include "app/controls/Control.h"

namespace Sonarello {

class StripBank : public Control {
  Q_OBJECT

 public:
  static constexpr int Strips = 16;

  explicit StripBank(QWidget* parent = nullptr);

  [[nodiscard]] ChannelStrip& strip(int channel) const {
    return *strips[static_cast<std::size_t>(channel)];
  }
  void setView(int channel, const StripView& view);
  /// The channel in use, the active one.
  [[nodiscard]] int current() const { return currentChannel; }

  [[nodiscard]] Spoken spoken() const override;
  [[nodiscard]] QWidget* ringPlace() override;

 Q_SIGNALS:
  /// The user turned to a channel: a touch of its strip, or Left and Right.
  void channelSelected(int channel);
  /// The user moved a fader, by any means; faderPressed and faderReleased stand around a drag.
  void volumeMoved(int channel, int value);
  void faderPressed(int channel);
  void faderReleased(int channel);
  /// Name plate, right click beside the number, Enter.
  void soundWanted(int channel);
  /// Right click on the number, context key.
  void redirectMenuWanted(int channel, const QPoint& globalPosition);
  /// Ctrl among the modifiers means all channels.
  void soloPressed(int channel, Qt::KeyboardModifiers modifiers);
  void mutePressed(int channel, Qt::KeyboardModifiers modifiers);
  void recPressed(int channel);
  /// Held down with a direction of -1 or +1 until released; the owner repeats.
  void velocityPressed(int channel, int direction);
  void velocityReleased(int channel);
  void velocityRangeWanted(int channel);
  void octavePressed(int channel, int direction);
  void octaveReleased(int channel);
  void allSoloOff();
  void allMuteOff();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void connectStrip(int channel);
  void connectSteppers(int channel);
  [[nodiscard]] bool press(const QKeyEvent& key);
  [[nodiscard]] bool pressArrow(int key, Qt::KeyboardModifiers modifiers);
  [[nodiscard]] bool pressLetter(int key, Qt::KeyboardModifiers modifiers);
  void choose(int channel);

  std::array<ChannelStrip*, Strips> strips;
  int currentChannel = 0;
};

}  // namespace Sonarello
