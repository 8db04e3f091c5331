#include "tools/NewMidiData.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <span>
#include <string>

#include "core/CountIn.h"
#include "core/EventList.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr std::int32_t Tracks = 1 + ChannelCount;
constexpr std::int32_t Measures = 4;
constexpr int DrumChannel = 9;
constexpr std::uint8_t BankMSB = 0;
constexpr std::uint8_t BankLSB = 32;

struct TNewBank {
  std::uint8_t MSB = 0;
  std::uint8_t LSB = 0;
};

/// Banks of the first sound and of the first drum kit of instruments, by catalogue value; 0 / 0 for all
/// others. XG: the bank of a channel decides whether it plays a drum kit (XG specification 1.26). GM2:
/// sounds in bank 121, drum kits in bank 120 (General MIDI 2, 1.2a).
struct TBankRow {
  std::span<const std::uint8_t> InstrumValues;
  TNewBank Sound;
  TNewBank Drums;
};
constexpr std::uint8_t XGInstruments[] = {5,  6,  7,  8,  9,  18, 19, 26, 31, 33, 34,
                                          41, 51, 54, 59, 62, 69, 70, 74, 80, 87, 97};
constexpr std::uint8_t GM2Instruments[] = {14, 16, 36, 37, 42, 43, 45, 48, 52, 61,
                                           63, 64, 68, 71, 75, 78, 82, 90, 91, 103};
constexpr std::uint8_t RolandArrangers[] = {22, 24, 38, 60, 72};
constexpr std::uint8_t Fantom[] = {25};
constexpr std::uint8_t Genesys[] = {13, 28};
constexpr std::uint8_t KN6000[] = {53};
constexpr TBankRow BankRows[] = {
    {XGInstruments, {0, 0}, {127, 0}}, {GM2Instruments, {121, 0}, {120, 0}},
    {RolandArrangers, {0, 0}, {0, 4}}, {Fantom, {0, 0}, {86, 64}},
    {Genesys, {0, 0}, {15, 0}},        {KN6000, {0, 0}, {120, 0}},
};

TNewBank BankOf(std::uint8_t instrumValue, bool drums) {
  for (const TBankRow& row : BankRows)
    if (std::find(row.InstrumValues.begin(), row.InstrumValues.end(), instrumValue) !=
        row.InstrumValues.end())
      return drums ? row.Drums : row.Sound;
  return {};
}

std::int32_t MicrosPerQuarter(std::uint16_t tempo) {
  return static_cast<std::int32_t>(std::nearbyint(60'000'000.0 / tempo));
}

/// MIDI clocks per metronome click (SMF 1.0): a quarter has 24; in eighths the click is a dotted one.
std::uint8_t ClocksPerClick(const TNewSong& wishes) { return wishes.Denominator == 8 ? 36 : 24; }
constexpr std::uint8_t ThirtySecondsInQuarter = 8;

std::string TrackName(int channel) {
  if (channel == DrumChannel) return Text("Schlagzeug", "Drums");
  return Text("Kanal ", "Channel ") + std::to_string(channel + 1);
}

}  // namespace

void TNewMidiData::CreateMidiData(const TNewSong& wishes) {
  try {
    SetUpSong(wishes);
    SetUpTables(wishes);
    BuildTracks(wishes);
  } catch (const EMidiError& error) {
    messages.Show(error.what());
    throw;
  }
  functions.SourceSysexes.clear();
  functions.CheckSysexs();
}

void TNewMidiData::SetUpSong(const TNewSong& wishes) {
  song.MidiFileFormat = song.MidiFileOrgFormat = 1;
  song.SourceTimeBase = wishes.SourceTimeBase;
  song.CopyQuantWindow = wishes.SourceTimeBase / 5;
  song.MaxSongPosition = Measures * wishes.Numerator * wishes.SourceTimeBase * 4 / wishes.Denominator;
  song.NumberOfSourceTracks = Tracks;
  song.MidiTrack.clear();
  song.MidiTrack.resize(Tracks);
  song.KeySignArray.assign(Tracks, {});
  BeginCountIn(song);
  song.TickOrgPosOfFirstNote = song.TickPositionOfFirstNote;
  song.WordBoxFormat = song.XF_Format = song.XGSystemOnPresentOnLoad = false;
  song.DrumsSecForceToChannel10 = song.DrumsThirdForceToChannel10 = false;
  song.XF_ChordsArrayElements = song.HyphenArrayElements = 0;
  song.SysexTrack = song.XF_Track = song.SysexFoundOnTrack = -1;
  song.SequenceNameOrg.clear();
}

/// The tables end in spare entries behind the song's end, as the reader leaves them.
void TNewMidiData::SetUpTables(const TNewSong& wishes) {
  const std::int32_t micros = MicrosPerQuarter(wishes.Tempo);
  const TTempo tempo = {0, micros, micros, micros, wishes.Tempo};
  const TTimeSign signature = {0, wishes.Numerator, wishes.Denominator, ClocksPerClick(wishes),
                               ThirtySecondsInQuarter};
  song.SourceTempo = {tempo, tempo};
  song.TimeSignature = {signature, signature};
  song.SourceTempoElements = song.TimeSignElements = 2;
  song.SourceTempo.back().SongPosition = song.TimeSignature.back().SongPosition =
      song.MaxSongPosition + 1;
}

void TNewMidiData::BuildTracks(const TNewSong& wishes) {
  for (TMyTrack& track : song.MidiTrack) {
    track.TrkDelay = routes.MidiRouting()[0].Delay;
    BeginTrack(song.Pool, track);
  }
  BuildConductor(wishes);
  for (int c = 0; c < ChannelCount; ++c) BuildChannel(c);
  for (TMyTrack& track : song.MidiTrack) {
    EndTrack(song.Pool, track, song.MaxSongPosition);
    track.TrkPlayEvent = track.TrkFirstEvent;
  }
}

void TNewMidiData::BuildConductor(const TNewSong& wishes) {
  TMyTrack& track = song.MidiTrack[0];
  const auto micros = static_cast<std::uint32_t>(MicrosPerQuarter(wishes.Tempo));
  const std::array tempo = {static_cast<std::uint8_t>(micros >> 16),
                            static_cast<std::uint8_t>(micros >> 8), static_cast<std::uint8_t>(micros)};
  const auto exponent = static_cast<std::uint8_t>(std::countr_zero(wishes.Denominator));
  const std::array signature = {wishes.Numerator, exponent, ClocksPerClick(wishes),
                                ThirtySecondsInQuarter};
  Append(track, NewMeta(song.Pool, MetaTimeSignature, signature, 0));
  Append(track, NewMeta(song.Pool, MetaTempo, tempo, 0));
  Append(track, NewMeta(song.Pool, MetaMarker, Text("Ende", "End"), song.MaxSongPosition - SongTail));
}

/// Bank and program stand where opening a song puts them: program changes in the setup window,
/// staggered by channel, the bank selects 4 and 2 ticks in front.
void TNewMidiData::BuildChannel(int channel) {
  TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(channel) + 1];
  const auto index = static_cast<std::size_t>(channel);
  const TNewBank bank = BankOf(routes.MidiRouting()[0].InstrumValue, channel == DrumChannel);
  const std::int32_t position = song.SourceTimeBase * 300 / 384 + channel * 4 + 2;
  const auto controller = static_cast<std::uint8_t>(Controller + channel);
  const auto program = static_cast<std::uint8_t>(ProgramChange + channel);

  track.TrkMidiIndex = static_cast<std::int8_t>(channel);
  track.TrkName = TrackName(channel);
  Append(track, NewMeta(song.Pool, MetaTrackName, track.TrkName, 0));
  PtrMidiEvent msb = NewChannelEvent(song.Pool, controller, BankMSB, bank.MSB, position - 4);
  Append(track, msb);
  PtrMidiEvent lsb = NewChannelEvent(song.Pool, controller, BankLSB, bank.LSB, position - 2);
  Append(track, lsb);
  PtrMidiEvent sound = NewChannelEvent(song.Pool, program, 0, 0, position);
  Append(track, sound);

  song.FirstControllers[index][BankMSB] = msb;
  song.FirstControllers[index][BankLSB] = lsb;
  song.FirstPatches[index] = sound;
}

}  // namespace Sonarello
