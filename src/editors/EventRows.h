// Sonarello: the event list: one track or channel of the song as rows, and its lists and labels.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/Options.h"
#include "editors/EventRowTexts.h"

namespace Sonarello {

/// What the list is told and asks; unset ones do nothing.
struct TEventRowsHooks {
  std::function<std::string(int channel)> PatchName;  ///< of a channel's (0-15) current sound
  std::function<std::int32_t()> TimePosition;         ///< where the song stands, ms
  /// The player tells the rows of this track from now on (index in `MidiTrack`, -1: none).
  std::function<void(int track)> ShowPlayed;
};

/// The list without its window. Rows count from 1 and are made when they are asked for; behind them
/// stands an index of pointers. Everything runs on the main thread.
class TEventRows {
 public:
  TEventRows(Song& s, const IRoutes& r, const Options& o, SongGate& g)
      : Texts(s, r), Index(g), song(s), routes(r), options(o) {}
  TEventRows(const TEventRows&) = delete;
  TEventRows& operator=(const TEventRows&) = delete;

  TEventRowsHooks Hooks;
  TEventRowTexts Texts;
  TEventIndex Index;

  std::int32_t ShowingTrack = -1;  ///< index in the track list; -1: nothing, from 99: the sysex list
  std::int32_t PrevFilterIndex = 0;
  std::int32_t PrevInsertIndex = 0;
  std::int32_t PrevNumberOfSourceTracks = 0;
  std::int32_t EventListPosition = 1;  ///< selected row
  bool Showing = false;                ///< false while rows are built; nothing is edited then

  // --- The lists beside the rows

  /// `CB_TrackList`, its selected entry, and how it is changed. A change rebuilds the rows.
  [[nodiscard]] const std::vector<std::string>& TrackLines() const noexcept { return trackLines; }
  [[nodiscard]] int TrackIndex() const noexcept { return trackIndex; }
  void CB_TrackListChange(int index);
  /// The sysex list takes the place of a track.
  void ShowSysexs();
  /// True if the sysex list holds sysexes: a song of format 1 may have all of them in other tracks.
  [[nodiscard]] bool HasSysexs() const;
  /// Fills the track list anew and, unless the sysex list is shown, the rows; the selected row stays.
  /// The call that others make after they changed events. Nothing without a song.
  void UpdateDisplayedEvents();
  /// Tells the track list anew: names, channels or sounds may be others.
  void ReadTrackLines();
  /// Lets go of everything; the song goes.
  void Clear();

  [[nodiscard]] int FilterIndex() const noexcept { return filterIndex; }
  void CB_FilterChange(int index);

  /// `CB_Insert`: the kinds that can be inserted, the selected one, and whether it can be chosen.
  [[nodiscard]] const std::vector<TEventKind>& InsertKinds() const noexcept { return insertKinds; }
  [[nodiscard]] std::vector<std::string> InsertLines() const;
  [[nodiscard]] int InsertIndex() const noexcept { return insertIndex; }
  [[nodiscard]] bool InsertEnabled() const noexcept { return insertEnabled; }
  void CB_InsertChange(int index);

  // --- Labels

  [[nodiscard]] std::string ChannelLabel() const;  ///< `L_MidiChannel`
  [[nodiscard]] std::string CounterLabel() const;  ///< `L_EventCounter`

  // --- Rows

  /// Builds the rows of an entry of the track list (from 99: the sysex list) under the filter.
  void ShowEventsOnTrack(int track);
  /// Number of events that are shown. An empty list has one row nevertheless, which says so.
  [[nodiscard]] std::int32_t Events() const noexcept { return Index.Rows(); }
  [[nodiscard]] std::int32_t Rows() const noexcept { return Events() > 0 ? Events() : 1; }
  /// Texts of a row; those of rows that were asked for lately are kept.
  [[nodiscard]] const TEventData& Row(std::int32_t row) const;
  /// Event of a row; nil if there is none or the list was changed meanwhile.
  [[nodiscard]] PtrMidiEvent Event(std::int32_t row) const noexcept;
  /// Rows have changed: their texts are made anew.
  void ForgetTexts() const noexcept { ++generation; }
  /// Another explanation (column 6) for an event, until the rows are built anew.
  void Explain(PtrMidiEvent event, std::string text);
  /// Events have left the song: none has another explanation any more.
  void ForgetExplanations() { explained.clear(); }
  /// Track of `MidiTrack` that is shown, -1 for an effect memory or none.
  [[nodiscard]] int ShownTrack() const noexcept;
  /// Rows as lines, the columns parted by tabs.
  [[nodiscard]] std::string TextOfRows(const std::vector<std::int32_t>& rows) const;

  // --- Position

  /// Selects the row of the song position. True if the selection changed.
  bool SyncDisplayToMidiPosition();
  /// First row to show so that the selection stands in the middle of `visible` rows.
  [[nodiscard]] std::int32_t DisplayEventListPosition(std::int32_t visible) const noexcept;

  // --- Search

  /// The next row behind `from` (or before it, going backwards) with the text in any column, in any
  /// case; it goes on at the other end. None if no row has it. `goOn` is asked now and then with the
  /// part done, 0 to 1, and ends the search with false.
  [[nodiscard]] std::optional<std::int32_t> Find(std::string_view text, std::int32_t from,
                                                 bool backwards,
                                                 const std::function<bool(double)>& goOn = {}) const;

 private:
  struct TKeptRow {
    std::int32_t Row = 0;
    std::uint64_t Generation = 0;
    TEventData Data;
  };

  void FillInsertKinds();
  [[nodiscard]] std::string TrackLine(int track) const;
  [[nodiscard]] std::string ChannelLine(int channel) const;
  [[nodiscard]] bool IsValid(int index) const noexcept;
  [[nodiscard]] TMyTrack* ListOf(int track) const noexcept;
  [[nodiscard]] TEventData Make(std::int32_t row) const;
  [[nodiscard]] TEventData EmptyRow() const;

  Song& song;
  const IRoutes& routes;
  const Options& options;
  std::vector<std::string> trackLines;
  int trackIndex = -1;
  int filterIndex = 0;
  std::vector<TEventKind> insertKinds;
  int insertIndex = 0;
  bool insertEnabled = false;
  std::vector<std::pair<PtrMidiEvent, std::string>> explained;
  mutable std::uint64_t generation = 1;
  mutable std::array<TKeptRow, 128> kept{};
};

}  // namespace Sonarello
