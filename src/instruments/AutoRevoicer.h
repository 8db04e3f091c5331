// Sonarello: replaces sounds in a song by a list that the user keeps for each instrument.
#pragma once

#include <bitset>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/Ports.h"
#include "core/Settings.h"
#include "core/Song.h"
#include "instruments/SoundList.h"

namespace Sonarello {

/// One replacement: the source sound is to become the destination sound. Numbers are 0-127, programs
/// from 0.
struct TRevoicerRec {
  int DestVoiceCC00 = 0;
  int DestVoiceCC32 = 0;
  int DestVoicePatch = 0;
  std::string DestVoiceName;
  int SourceVoiceCC00 = 0;
  int SourceVoiceCC32 = 0;
  int SourceVoicePatch = 0;
  std::string SourceVoiceName;

  [[nodiscard]] TAddress Source() const noexcept {
    return {SourceVoiceCC00, SourceVoiceCC32, SourceVoicePatch};
  }
  [[nodiscard]] TAddress Dest() const noexcept {
    return {DestVoiceCC00, DestVoiceCC32, DestVoicePatch};
  }
  friend bool operator==(const TRevoicerRec&, const TRevoicerRec&) = default;
};

/// A line of the protocol: a program change that was left alone.
struct TRevoiceLine {
  std::int32_t Track = 0;     ///< index in `MidiTrack`
  std::int32_t Position = 0;  ///< ticks
  std::string Text;           ///< ": Kanal 3 - Ctrl00 fehlt!", to stand behind a position
};

/// What a run did.
struct TRevoiceResult {
  std::bitset<ChannelCount> Channels;  ///< channels that were gone through; their names are shown anew
  std::int32_t Replaced = 0;           ///< program changes that a row gave its destination
  std::int32_t Inserted = 0;           ///< bank selects that came in, see `Revoice`
  std::vector<TRevoiceLine> Protocol;  ///< by channel, track and position
};

/// Replaces the sounds of all channels that play the main instrument (that of route 0) and no drums. A
/// program change is looked up with the last controllers 0 and 32 of its channel before it on its
/// track; without both it is only listed. Events marked as removed, tracks that are held out and the
/// remote sequence on channel 16 do not count. The first row with a source holds. The channel's first
/// program change takes its values to the desk (`CtrlArray[0]`, `CtrlArray[32]`, `Patch`). Linear in
/// the song's events; every lookup goes by the numbers as they were before the run.
///
/// The destination is written into the program change and its two controllers. One bank select may
/// serve several program changes: written for one of them, it would change the sound of the others. So
/// it takes what the first of them needs; where a later one needs another bank, a bank select of its
/// own comes in directly in front of it, at its tick. Each program change ends with its destination or,
/// without a row or without both controllers, with the sound that it had. Controllers on other tracks
/// of the channel are not followed.
///
/// Raises EMidiError with `OutOfMemoryText()` when there is no memory for a bank select; the song is
/// then as it was. Changes are told to the song's log.
TRevoiceResult Revoice(Song& song, const IRoutes& routes, std::span<const TRevoicerRec> rows);

// --- Rules as text: eight cells with tabs between. They are the source's name, CC0, CC32 and program
// --- and those of the destination, programs from 0.

/// A row as text. Tabs and line breaks in names become blanks.
[[nodiscard]] std::string RevoicerRow(const TRevoicerRec& rec);

/// What a text of rules holds.
struct TRevoicerRules {
  std::vector<TRevoicerRec> Rows;
  std::vector<std::string> Faults;  ///< a line each, with its number, in the user's language
};
/// Reads a file of rules, a row per line. Empty lines and lines that start with "#" are left out;
/// blanks around a cell do not count. A faulty line gives a fault and no row, as does a source that is
/// there already.
[[nodiscard]] TRevoicerRules ReadRevoicerRules(std::string_view text);
/// The rows as such a file, headed by a line that names the cells.
[[nodiscard]] std::string RevoicerRulesText(std::span<const TRevoicerRec> rows);

/// The list of one instrument and its store: under the settings' section of the instrument's name the
/// number of rows `AutoRevoicerElm` and the rows "AutoRev01", "AutoRev02", ...
class TAutoRevoicer {
 public:
  /// Head of the position column.
  static constexpr std::string_view PositionHead = "Pos";
  /// Greatest number of rows.
  static constexpr int MaxRows = 9999;

  std::vector<TRevoicerRec> RevoicerArray;

  /// Reads the rows of an instrument by its catalogue name. A row that is missing, malformed or repeats
  /// a source is left out; the user is told of all of them in one message. The store stays as it is
  /// until the list changes.
  void LoadRevoiceData(const ISettings& settings, std::string_view instrument, IMessages& messages);

  /// The instrument of the last load; empty before.
  [[nodiscard]] const std::string& Instrument() const noexcept { return instrument; }
  [[nodiscard]] int RevoicerArrayElm() const noexcept { return static_cast<int>(RevoicerArray.size()); }
  /// " Auto Revoicer - " and the instrument.
  [[nodiscard]] std::string Caption() const { return " Auto Revoicer - " + instrument; }

  /// Sets what a sound is to become, and stores it. A row with this source takes the destination (its
  /// place and source name stay), else a row comes in at the end. False, and nothing happens, if no
  /// instrument is loaded, the list is full or a number is outside 0-127.
  bool SaveToRevoicer(ISettings& settings, const TAddress& source, std::string_view sourceName,
                      const TAddress& dest, std::string_view destName);

  /// Removes a row by its index; later rows move up and the whole store is written anew. An index
  /// outside the list does nothing.
  void Delete(ISettings& settings, int index);

  TRevoiceResult Revoice(Song& song, const IRoutes& routes) const {
    return Sonarello::Revoice(song, routes, RevoicerArray);
  }

 private:
  void StoreRow(ISettings& settings, std::size_t index) const;
  void StoreAll(ISettings& settings);

  std::string instrument;
  int stored = 0;            ///< rows that the store claims to have, at most `MaxRows`
  bool storeIsSound = true;  ///< row n of the store is row n of the list
};

/// An address as the grid shows it beside a name: "104/21/0".
[[nodiscard]] std::string AddressText(const TAddress& address);

}  // namespace Sonarello
