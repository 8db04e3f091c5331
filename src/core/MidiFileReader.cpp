// The reader takes two passes over the bytes. The first measures the song and finds every fault of
// structure, so that the second builds lists without surprises and in memory sized beforehand.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <new>
#include <string>

#include "core/CountIn.h"
#include "core/EventList.h"
#include "core/Markers.h"
#include "core/MidiFunctions.h"
#include "core/SmfScan.h"
#include "core/SongBuilding.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr int UnmixedTracks = 17;  ///< a track for what has no channel, and one for each channel

[[noreturn]] void Refuse(const std::string& text) { throw EMidiError(text); }

std::string FaultText(const SmfFault& fault) {
  const std::string pointer = "\rSource pointer: " + std::to_string(fault.Pointer) + "\r";
  const std::string position = "Song position:  " + std::to_string(fault.Position);
  switch (fault.What) {
    case SmfFault::Kind::InvalidOffset:
      // The English text tells of a missing status here as well; this is deliberate.
      return Text("Fehler in der MidiDatei: \"ungültiger Offset\"!" + pointer + position,
                  "Error in midifile: \"PrevCommand < $80\"!");
    case SmfFault::Kind::NoRunning:
      return Text("Fehler in der MidiDatei: \"PrevCommand < $80\"!" + pointer +
                      "Data byte:        " + std::to_string(fault.Byte) + "\r" + position,
                  "Error in midifile: \"PrevCommand < $80\"!");
    case SmfFault::Kind::RunningSystem:
      return "Fehler in der MidiDatei - PrevCommand >= $F0!\rPrevCommand: " +
             std::to_string(fault.Byte);
    case SmfFault::Kind::SystemCommon: return "Error in midifile - Command is $F1 to $F6!";
    case SmfFault::Kind::ActiveSensing: return "Error in midifile - Command = $FE!";
    default: return "Error in midifile - Cmd $2F with length <> 0!";
  }
}

std::uint64_t BeginChunk(SmfCursor& in, std::size_t track) {
  const std::size_t start = in.At();
  std::array<std::uint8_t, 4> id{};
  for (std::uint8_t& byte : id) byte = in.Byte();
  if (id != std::array<std::uint8_t, 4>{'M', 'T', 'r', 'k'}) {
    const std::string number = std::to_string(track);
    const std::string pointer = std::to_string(start);
    Refuse(Text("Fehler im TrackHeader " + number + " bei " + pointer + "!",
                "Error in track header " + number + " at " + pointer + "!"));
  }
  return std::uint64_t{in.BigEndian(4)} + in.At();
}

/// What the first pass learns.
struct TMeasure {
  std::size_t Events = 0;
  std::int32_t LastTick = 0;
  std::int32_t Tempi = 0;       ///< tempo metas on track 0
  std::int32_t Signatures = 0;  ///< time signatures on track 0
};

TMeasure MeasureSong(SmfCursor in, std::int32_t chunks, bool unmix, bool statusSurvives) {
  TMeasure found;
  const auto reach = [&](std::int32_t tick) { found.LastTick = std::max(found.LastTick, tick); };
  for (std::int32_t t = 0; t < chunks; ++t) {
    const std::uint64_t end = BeginChunk(in, static_cast<std::size_t>(t));
    const auto onChannel = [&](const SmfEvent& e) {
      ++found.Events;
      reach(e.Position);
    };
    const auto onLong = [&](const SmfEvent& e) {
      ++found.Events;
      if (e.Status != MetaEvent || e.Type < MetaEndOfTrack) return reach(e.Position);
      if (t != 0 && !unmix) return;
      if (e.Type == MetaTempo) ++found.Tempi;
      if (e.Type == MetaTimeSignature) ++found.Signatures;
    };
    WalkChunk(in, end, statusSurvives, onChannel, onLong,
              [&](const SmfEvent& e) { reach(e.Position); });
  }
  return found;
}

}  // namespace

void TMidiFunctions::DecodeMidiData() {
  std::string failure;
  try {
    SmfCursor in(SourceData);
    DecodeHeader(in);
    DecodeTracks(in);
  } catch (const SmfFault& fault) {
    failure = FaultText(fault);
  } catch (const EMidiError& error) {
    failure = error.what();
  } catch (const std::bad_alloc&) {
    failure = ReaderOutOfMemory;
  }
  if (!failure.empty()) {
    // The header may have promised more tracks than were made.
    song.NumberOfSourceTracks = static_cast<std::int32_t>(song.MidiTrack.size());
    messages.Show(failure);
    throw EMidiError(failure);
  }
  AnalyseCountIn(song);
  CheckSysexs();
}

void TMidiFunctions::DecodeTracks(SmfCursor& in) {
  const bool unmix = song.MidiFileFormat == 0 && options.UnmixFormat0;
  const bool statusSurvives = options.PrevCommandMode != 0;
  const std::int32_t chunks = song.NumberOfSourceTracks;
  const TMeasure measure = MeasureSong(in, chunks, unmix, statusSurvives);
  song.Pool.Reserve(measure.Events + 2 * static_cast<std::size_t>(std::max(chunks, UnmixedTracks)));

  SongBuilder builder(song, options, routes.MidiRouting(), SourceSysexes);
  builder.Prepare(unmix ? UnmixedTracks : chunks, unmix, measure.LastTick, measure.Tempi,
                  measure.Signatures);
  for (std::int32_t t = 0; t < chunks; ++t) {
    const std::uint64_t end = BeginChunk(in, static_cast<std::size_t>(t));
    builder.BeginChunk(t);
    WalkChunk(
        in, end, statusSurvives, [&](const SmfEvent& e) { builder.AddChannelEvent(e); },
        [&](const SmfEvent& e) { builder.AddLongEvent(e); },
        [&](const SmfEvent& e) { builder.DropRealtime(e); });
  }
  builder.Finish();
}

void TMidiFunctions::DecodeHeader(SmfCursor& in) {
  for (const char letter : {'M', 'T', 'h', 'd'})
    if (in.Byte() != letter) Refuse("Error in midi file header - 1!");
  if (in.BigEndian(4) != 6) Refuse("Error in midi file header - 2!");
  song.MaxSongPosition = 0;
  song.MidiFileFormat = static_cast<std::uint8_t>(in.BigEndian(2));  // the low byte counts
  song.NumberOfSourceTracks = static_cast<std::int32_t>(in.BigEndian(2));
  if (song.NumberOfSourceTracks == 1) song.MidiFileFormat = 0;
  // Format 2 has no treatment of its own: whatever is not 0 works as 1.
  if (song.MidiFileFormat != 0) song.MidiFileFormat = 1;
  song.MidiFileOrgFormat = song.MidiFileFormat;
  // A division of frames (SMPTE) has no treatment of its own: the 16 bits count as ticks per quarter.
  song.SourceTimeBase = static_cast<std::uint16_t>(in.BigEndian(2));
  song.CopyQuantWindow = song.SourceTimeBase / 5;
  if (song.NumberOfSourceTracks == 0 || song.SourceTimeBase == 0) Refuse("Error in midifile!");
}

}  // namespace Sonarello
