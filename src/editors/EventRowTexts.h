// Sonarello: an event told in the eight columns of the event list.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "core/Ports.h"
#include "core/Song.h"
#include "editors/EventIndex.h"
#include "editors/EventTexts.h"
#include "instruments/SoundNames.h"

namespace Sonarello {

/// One row: a text per column, UTF-8.
struct TEventData {
  std::array<std::string, EventColumnCount> Fields;

  friend bool operator==(const TEventData&, const TEventData&) = default;
};

/// What the texts ask of others; unset ones leave their column empty.
struct TRowTextHooks {
  /// Name of a sound change on a channel (0-15); -1 for a bank that is not given.
  std::function<std::string(int channel, const TAddress&)> ProgramChangeName;
  /// Name of a drum key if a drum editor shows the channel (0-15), else none.
  std::function<std::optional<std::string>(int channel, int key)> DrumName;
};

/// Makes the texts of rows.
class TEventRowTexts {
 public:
  TEventRowTexts(const Song& s, const IRoutes& r) : song(s), routes(r) {}

  TRowTextHooks Hooks;
  bool UseGermanChords = false;  ///< B is called H, in keys and chords

  /// The row of an event. `listIndex`: index in the track list; `length`: ticks of a note, -1 without
  /// note-off; `bank`: the banks in front of a program change.
  [[nodiscard]] TEventData Row(const TypMidiEvent& event, int listIndex, std::int32_t length,
                               TBankMemory bank) const;
  /// Column 7 of a meta event.
  [[nodiscard]] std::string MetaValue(const TypMidiEvent& event) const;

 private:
  void TellChannelEvent(const TypMidiEvent& event, std::int32_t length, TBankMemory bank,
                        TEventData& row) const;
  void TellProgram(const TypMidiEvent& event, TBankMemory bank, TEventData& row) const;
  [[nodiscard]] std::string KeyText(const TypMidiEvent& event) const;
  [[nodiscard]] std::string Instrument(int channel) const;

  const Song& song;
  const IRoutes& routes;
};

}  // namespace Sonarello
