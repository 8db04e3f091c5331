// Sonarello: the one in-memory form of a song.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <string>
#include <vector>

#include "core/ChangeLog.h"
#include "core/Data.h"
#include "core/EventPool.h"

namespace Sonarello {

/// Gathers what belongs to a song. `MidiTrack` is storage and follows the file's tracks; `MidiData` is
/// the channel desk. The song owns all nodes, a node owns its `Meta`. Event pointers outside the lists
/// never outlive their node (`CheckSong` verifies it).
class Song {
 public:
  Song() { ResetChannels(); }

  EventPool Pool;  ///< first, so that it outlives everything that points into it

  std::vector<TMyTrack> MidiTrack;
  std::int32_t NumberOfSourceTracks = 0;
  std::array<TMidiChannelData, ChannelCount> MidiData{};
  std::uint8_t MidiFileFormat = 1;     ///< working format; 0: all events lie in `MidiTrack[0]`
  std::uint8_t MidiFileOrgFormat = 1;  ///< format of the header; a one-track file counts as 0
  bool MidifileConverted = false;
  bool MidiFileLoaded = false;
  std::string MidiFileName;     ///< path of the song, UTF-8
  std::string SequenceNameOrg;  ///< first track name of a format 0 file, bytes as in the file

  // Time. The tables end in spare entries behind `MaxSongPosition`.
  std::uint16_t SourceTimeBase = 480;  ///< ticks per quarter note, never 0 in a loaded song
  std::int32_t CopyQuantWindow = 96;   ///< ticks
  std::vector<TTempo> SourceTempo;
  std::int32_t SourceTempoElements = 0;
  std::vector<TTimeSign> TimeSignature;
  std::int32_t TimeSignElements = 0;
  std::vector<TTimeZone> TimeZone;  ///< `TimeZoneElements` + 1 entries
  std::int32_t TimeZoneElements = 0;
  std::int32_t CurrentTimeZone = 0;
  std::int32_t CurrentTempo = 120;
  std::vector<std::uint16_t> BackupTempo;   ///< `Tempo` of each entry of `SourceTempo` on load
  std::int32_t MTB_Length = 3;              ///< digits of the tick field
  std::int32_t MTC_Length = 10;             ///< characters of a position text
  std::vector<TKeySignArray> KeySignArray;  ///< one per track
  std::int32_t MaxSongPosition = 999;  ///< last tick: greatest position of an event + 10, at least 999
  std::int32_t MaxSongPositionBeat = 0;
  std::int32_t MaxSongPositionMeasure = 0;
  std::int32_t MaxSongPositionTicks = 0;
  std::int32_t MaxSongPositionTime = 0;  ///< ms
  std::string MaxSongPositionMTC;
  std::int32_t SongLength = 0;               ///< greatest `TimePosition`, ms
  std::int32_t TickPositionOfFirstNote = 0;  ///< behind any count-in
  std::int32_t TickOrgPosOfFirstNote = 0;
  std::int32_t TimePositionOfFirstNote = 0;  ///< ms

  // Analysis
  std::array<TCountIn, ChannelCount> CountInArray{};
  std::int32_t CountInIdx = -1;  ///< channel of the count-in, -1 if none
  std::array<std::array<PtrMidiEvent, ControllerCount>, ChannelCount> FirstControllers{};
  std::array<PtrMidiEvent, ChannelCount> FirstPatches{};
  std::array<TNotesVelocities, ChannelCount> NotesVelocities{};
  std::int32_t SysexTrack = -1;         ///< track that holds the song's sysexes, -1 if none
  std::int32_t SysexFoundOnTrack = -1;  ///< track of the last sysex of the file, -1 if none
  bool WordBoxFormat = false;           ///< text events are read as lyrics
  bool XF_Format = false;               ///< the file has XF chord events
  std::int32_t XF_Track = -1;
  std::int32_t XF_ChordsArrayElements = 0;
  bool XGSystemOnPresentOnLoad = false;
  bool DrumsSecForceToChannel10 = false;
  bool DrumsThirdForceToChannel10 = false;
  std::int32_t HyphenArrayElements = 0;  ///< syllables of the song's lyrics
  std::int32_t ActiveMidiIndex = -1;     ///< selected strip, 0-15
  std::int32_t ActiveMidiChannel = -1;

  // Events that the song is known by. Each is nil or stands in a list of the song.
  PtrMidiEvent SongNameEvent = nullptr;        ///< track name that carries the song's name
  PtrMidiEvent PromptaRemoteCtrl00 = nullptr;  ///< remote sequence: bank select MSB 77 on channel 16
  PtrMidiEvent PromptaRemoteCtrl32 = nullptr;
  PtrMidiEvent PromptaRemotePatch = nullptr;
  PtrMidiEvent MotifMartor = nullptr;  ///< last sysex that starts with the Motif family's global prefix
  PtrMidiEvent MotifSysex = nullptr;   ///< insert switches of the Motif family
  std::bitset<ChannelCount> MotifInsertsArray;  ///< which parts have inserts
  std::int32_t RolandGSResetPosition = 2;       ///< ticks
  PtrMidiEvent RolandDelayTimeSysexEvent = nullptr;
  PtrMidiEvent RolandDelayFeedbackSysexEvent = nullptr;
  std::int32_t RolandDelaySysexTrack = -1;
  PtrMidiEvent RolandInsFxOnSysex = nullptr;
  std::int32_t RolandInsFxOnTrack = -1;
  using TPartEvents = std::array<PtrMidiEvent, ChannelCount>;
  TPartEvents RolandDrumSysexArray{};
  TPartEvents MBMusicDrumSysexArray{};
  TPartEvents MP11DrumsSysexArray{};
  TPartEvents LimexDrumsSysexArray{};
  TPartEvents KetronDrumsSysexArray{};
  TPartEvents TyrosOrganFluteSysexs{};
  TPartEvents GenosOrganFluteSysexs{};
  TPartEvents PSRSX900OrganFluteSysexs{};
  TPartEvents KorgPaXXXPartEQ{};
  TPartEvents RolandBK9PartEQ{};
  TPartEvents RolandIntegra7PartEQ{};

  /// Effect memory of the main instrument: sysex events outside `MidiTrack`.
  struct TDSPTracks {
    TMyTrack Tyros1DSPTrack, Tyros2DSPTrack, Tyros3DSPTrack, Tyros4DSPTrack, Tyros5DSPTrack;
    TMyTrack MotifESDSPTrack, MotifXFDSPTrack, MotifXSDSPTrack;
    TMyTrack PSRS900DSPTrack, PSRS910DSPTrack, PSRS950DSPTrack, PSRS970DSPTrack, PSRSX900DSPTrack;
    TMyTrack GenosDSPTrack;
  } DSPTracks;

  // Desk settings that the writer applies to its copy.
  std::array<std::int8_t, ChannelCount>
      VelocityDelta{};  ///< added to each note-on velocity, -127 to 127
  /// Route of each channel: index into the routes. A song channel has exactly one output at a time.
  std::array<std::uint8_t, ChannelCount> MidiOutIndex{};
  std::array<std::int8_t, ChannelCount> ManualTransposeArray{};  ///< octaves, -1 to 1
  std::int32_t TransposeNew = 0;  ///< semitones by which the song is transposed live

  ChangeLog* Changes = nullptr;  ///< nil: nobody asks what fitting changed

  /// The effect memory track of the instrument with this catalogue number, or nil.
  [[nodiscard]] TMyTrack* DSPTrackOf(int instrumValue) noexcept;
  [[nodiscard]] const TMyTrack* DSPTrackOf(int instrumValue) const noexcept;

  /// Frees the song: all lists, the effect memories, every reference into them. The channels become
  /// inactive, `MidiFileLoaded` false; `MidiTrack` keeps its length. Harmless on an empty store.
  void ClearMidiMemory();

  /// Forgets the channels' contents: no first events, no values, no programs, desk state as new.
  void ResetChannels();

  /// Forgets every event pointer held outside the lists.
  void ForgetReferences() noexcept;

  /// Calls f(PtrMidiEvent&) for every place outside the lists that may hold an event.
  template <class F>
  void ForEachReference(F&& f);
};

template <class F>
void Song::ForEachReference(F&& f) {
  for (PtrMidiEvent& e : FirstPatches) f(e);
  for (auto& channel : FirstControllers)
    for (PtrMidiEvent& e : channel) f(e);
  for (TMidiChannelData& channel : MidiData) {
    for (TCtrl& controller : channel.CtrlArray) f(controller.Event);
    f(channel.PatchEvent);
  }
  for (TPartEvents* parts :
       {&RolandDrumSysexArray, &MBMusicDrumSysexArray, &MP11DrumsSysexArray, &LimexDrumsSysexArray,
        &KetronDrumsSysexArray, &TyrosOrganFluteSysexs, &GenosOrganFluteSysexs,
        &PSRSX900OrganFluteSysexs, &KorgPaXXXPartEQ, &RolandBK9PartEQ, &RolandIntegra7PartEQ})
    for (PtrMidiEvent& e : *parts) f(e);
  for (TCountIn& countIn : CountInArray)
    for (PtrMidiEvent& e : countIn.Notes) f(e);
  for (TKeySignArray& keys : KeySignArray)
    for (TKeySigns& key : keys.ValArray) f(key.MidiEvent);
  for (PtrMidiEvent* e :
       {&SongNameEvent, &PromptaRemoteCtrl00, &PromptaRemoteCtrl32, &PromptaRemotePatch, &MotifMartor,
        &MotifSysex, &RolandDelayTimeSysexEvent, &RolandDelayFeedbackSysexEvent, &RolandInsFxOnSysex})
    f(*e);
}

}  // namespace Sonarello
