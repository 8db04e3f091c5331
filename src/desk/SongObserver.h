// Sonarello: what those who show a song are told.
#pragma once

#include "core/Data.h"

namespace Sonarello {

/// Shows what the desk works on. All calls come on the main thread, without the song's gate; what is
/// not overridden does nothing.
class SongObserver {
 public:
  virtual ~SongObserver() = default;
  /// Another song is in the store, or none: everything is shown anew.
  virtual void SongChanged() {}
  /// The sound of a channel (0-15) has another name, or its bank selects changed.
  virtual void SoundChanged(int /*channel*/) {}
  /// State or values of a strip (0-15) have changed.
  virtual void StripChanged(int /*strip*/) {}
  /// A fader or a controller of a channel (0-15) goes to a value (0-127).
  virtual void ControllerChanged(int /*channel*/, int /*controller*/, int /*value*/) {}
  /// An event has another value; `becameReal` if it was a placeholder and is played from now on.
  virtual void EventChanged(PtrMidiEvent /*event*/, bool /*becameReal*/) {}
  /// Another strip is selected, or what the panel shows of it has changed.
  virtual void SelectionChanged() {}
  /// The song is modified or saved, or its backup was written.
  virtual void ModifiedChanged() {}
  /// Outputs, instruments or their routes are others.
  virtual void RoutesChanged() {}
  /// Notes, tempi or lengths are others: bars, times, keys and chords are shown anew.
  virtual void TimesChanged() {}
};

}  // namespace Sonarello
