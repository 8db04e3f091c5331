#include "core/WriterDSP.h"

#include <algorithm>
#include <span>

#include "core/EventList.h"

namespace Sonarello {

namespace {

constexpr std::uint8_t GMReset[] = {0x7E, 0x7F, 0x09, 0x01, 0xF7};
constexpr std::uint8_t XGReset[] = {0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7};

/// Resets are looked for in the first eight beats of a song.
constexpr int ResetSearchBeats = 8;

struct TEffectRow {
  int InstrumValue;
  bool Motif;
  std::string_view Split, Tracks, Mixed;  ///< marks of the messages, by branch
};
// The marks differ in case between the branches; that is deliberate.
constexpr TEffectRow EffectRows[] = {
    {9, false, "F01-TY1", "F1-TY1", "F0-Ty1"},     {26, true, "F01-MES", "F1-MES", "F0-MES"},
    {31, false, "F01-TY2", "F1-TY2", "F0-Ty2"},    {41, false, "F01-S900", "F1-S900", "F0-S900"},
    {51, true, "F01-MXS", "F1-MXS", "F0-MXS"},     {54, false, "F01-TY3", "F1-TY3", "F0-Ty3"},
    {59, false, "F01-S910", "F1-S910", "F0-S910"}, {62, false, "F01-TY4", "F1-TY4", "F0-Ty4"},
    {69, true, "F01-MXF", "F1-MXF", "F0-MXF"},     {70, false, "F01-S950", "F1-S950", "F0-S950"},
    {74, false, "F01-TY5", "F1-TY5", "F0-Ty5"},    {80, false, "F01-S970", "F1-S970", "F0-S970"},
    {87, false, "F01-Gen", "F1-Gen", "F0-Gen"},    {97, false, "F01-SX900", "F1-SX900", "F0-SX900"},
};

const TEffectRow* RowOf(int instrumValue) {
  const auto* row = std::ranges::find(EffectRows, instrumValue, &TEffectRow::InstrumValue);
  return row != std::end(EffectRows) ? row : nullptr;
}

/// The options of a family of effect memories, in ticks.
struct TBlockOptions {
  std::span<const std::uint8_t> Reset;
  std::int32_t ResetPosition;
  std::int32_t From;
  std::int32_t Delta;
};

TBlockOptions OptionsOf(const TEffectRow& row, const Options& o) {
  if (row.Motif)
    return {GMReset, o.MotifGMSxPosition, o.MotifDSPsFromPosition, std::max(0, o.MotifDSPsSysexDelta)};
  return {XGReset, o.YamahaXGSxPosition, o.YamahaDSPsFromPosition, std::max(0, o.YamahaDSPsSysexDelta)};
}

bool IsLiveSysex(const TypMidiEvent& event) {
  return event.DLength > 0 && (event.Command == Sysex || event.Command == SysexEscape);
}

bool IsReset(const TypMidiEvent& event, const TBlockOptions& block) {
  return event.Command == Sysex && event.DLength > 0 && event.Meta.Equals(block.Reset);
}

/// Position of the song's last reset within the first eight beats, or -1.
std::int32_t ResetPositionIn(const Song& song, const TBlockOptions& block) {
  const std::int32_t limit = song.SourceTimeBase * ResetSearchBeats;
  std::int32_t found = -1;
  for (const TMyTrack& track : SourceTracks(song))
    for (const TypMidiEvent* e = track.TrkFirstEvent; e != nullptr && e->Position <= limit;
         e = e->NextEvent)
      if (IsReset(*e, block)) found = std::max(found, e->Position);
  return found;
}

}  // namespace

std::vector<TPlacedEvent> PlaceEffects(Song& song, const Options& options, int instrumValue) {
  std::vector<TPlacedEvent> placed;
  const TEffectRow* row = RowOf(instrumValue);
  const TMyTrack* memory = song.DSPTrackOf(instrumValue);
  if (row == nullptr || memory == nullptr) return placed;

  const TBlockOptions block = OptionsOf(*row, options);
  std::int64_t next = std::max(0, block.From);
  const auto place = [&](const TypMidiEvent& event, std::int64_t position) {
    const std::int64_t inSong = std::clamp<std::int64_t>(position, 0, song.MaxSongPosition);
    placed.push_back({&event, static_cast<std::int32_t>(inSong)});
  };
  bool resetStands = false;
  const auto standBehindReset = [&](std::int64_t position) {
    next = std::max(next, std::max<std::int64_t>(0, position) + block.Delta);
    resetStands = true;
  };

  bool any = false;
  ForEachEvent(*memory, [&](const TypMidiEvent* e) { any |= IsLiveSysex(*e); });
  if (!any) return placed;
  if (const std::int32_t own = ResetPositionIn(song, block); own >= 0) standBehindReset(own);

  // The memory's own reset stands for a song that has none; a second one would only cost time, and one
  // more would come with each save.
  ForEachEvent(*memory, [&](const TypMidiEvent* e) {
    if (!IsReset(*e, block) || resetStands) return;
    place(*e, block.ResetPosition);
    standBehindReset(block.ResetPosition);
  });
  ForEachEvent(*memory, [&](const TypMidiEvent* e) {
    if (!IsLiveSysex(*e) || IsReset(*e, block)) return;
    place(*e, next);
    next += block.Delta;
  });
  return placed;
}

std::string_view EffectStageMark(TWriterBranch branch, int instrumValue) {
  const TEffectRow* row = RowOf(instrumValue);
  if (row == nullptr) return {};
  return branch == TWriterBranch::Split    ? row->Split
         : branch == TWriterBranch::Tracks ? row->Tracks
                                           : row->Mixed;
}

std::string WrongOrderText(std::string_view mark, const TypMidiEvent& event, std::int32_t position) {
  return std::string(mark) + ": Falsches Event bei Position " + std::to_string(position) + "\r" +
         "EventCmd " + std::to_string(event.Command) + "\r" + "Eventtyp " + std::to_string(event.DType);
}

}  // namespace Sonarello
