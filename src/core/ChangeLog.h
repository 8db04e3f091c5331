// Sonarello: what fitting did to a song, told event by event.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Sonarello {

class Song;
struct TypMidiEvent;

enum class ChangeKind { Dropped, Inserted, Moved, Rewritten };

/// One change to the file as it was read.
struct TChange {
  ChangeKind Kind = ChangeKind::Dropped;
  std::int32_t Track = 0;        ///< index in `MidiTrack`
  std::int32_t Position = 0;     ///< ticks; of a moved event where it stands now
  std::int32_t OldPosition = 0;  ///< ticks; differs from `Position` for a moved event only
  std::string What;              ///< the event, in the user's language
  std::string Why;               ///< the rule that asked for it, in the user's language
};

/// Collects the changes of one open. A song without one (the usual case) records nothing.
class ChangeLog {
 public:
  void Add(TChange change) { changes.push_back(std::move(change)); }
  [[nodiscard]] const std::vector<TChange>& Changes() const noexcept { return changes; }

 private:
  std::vector<TChange> changes;
};

/// The event in a few words of the user's language, such as "Controller 7 = 100, channel 3".
[[nodiscard]] std::string DescribeEvent(const TypMidiEvent& event);

/// Records that an event of a track (index in `MidiTrack`) was dropped, inserted or rewritten. Call it
/// while the event still has the payload that tells what it is. Does nothing without a log.
void LogChange(Song& song, ChangeKind kind, std::int32_t track, const TypMidiEvent& event,
               std::string_view germanWhy, std::string_view englishWhy);
/// Records that an event was moved from a tick to where it stands now.
void LogMove(Song& song, std::int32_t track, const TypMidiEvent& event, std::int32_t oldPosition,
             std::string_view germanWhy, std::string_view englishWhy);
/// Records a change that has no event in the song, told in both languages.
void LogText(Song& song, ChangeKind kind, std::int32_t track, std::int32_t position,
             std::string_view germanWhat, std::string_view englishWhat, std::string_view germanWhy,
             std::string_view englishWhy);

}  // namespace Sonarello
