// The middle of the desk: the group column and the sixteen strips.
#pragma once

#include <QWidget>
#include <span>

#include "app/controls/StripView.h"

namespace Sonarello {

class ChannelStrip;
class GroupColumn;
class StripBank;

/// Shows views and reports what the user does; it changes nothing by itself but the fader under the
/// user's hand. Channels count from 0.
class StripRow : public QWidget {
  Q_OBJECT

 public:
  explicit StripRow(QWidget* parent = nullptr);

  void setView(int channel, const StripView& view);
  /// Levels of 0..127 by channel, at most sixteen; called on every display tick.
  void setLevels(std::span<const int> levels);
  /// The level display can be switched off.
  void setMetersShown(bool shown);
  /// The state without a song: all strips empty. Views bring the song back.
  void setNoSong();
  /// The group column's switch that lets the active fader take the others along.
  void setLinked(bool linked);
  /// The lower plan for desks under 860 pixels at 100 %.
  void setCompact(bool compact);

  [[nodiscard]] ChannelStrip& strip(int channel) const;
  [[nodiscard]] StripBank& bank() const { return *strips; }
  [[nodiscard]] GroupColumn& group() const { return *column; }

  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] QSize sizeHint() const override;

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
  /// The group fader; its position is -127..127 from where it was taken.
  void groupPressed();
  void groupMoved(int position);
  void groupReleased();
  void linkToggled(bool linked);
  void allSoloOff();
  void allMuteOff();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void connectStrips();
  void connectGroup();
  void layOut();

  bool compact = false;
  GroupColumn* column;
  StripBank* strips;
};

}  // namespace Sonarello
