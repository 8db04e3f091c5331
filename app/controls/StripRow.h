// The middle of the desk: the group column and the sixteen strips.
#pragma once

#include <QWidget>
#include <span>

#include "app/controls/StripView.h"

namespace Sonarello {

class ChannelStrip;
class GroupColumn;
class StripBank;

/// Shows views; `bank` and `group` report what the user does. The row changes nothing by itself but the
/// fader under the user's hand. Channels count from 0.
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
  /// The sixteen strips, with all that they report; the switches of the group column that turn all
  /// solos and mutes off are reported here too.
  [[nodiscard]] StripBank& bank() const { return *strips; }
  [[nodiscard]] GroupColumn& group() const { return *column; }

  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void layOut();

  bool compact = false;
  GroupColumn* column;
  StripBank* strips;
};

}  // namespace Sonarello
