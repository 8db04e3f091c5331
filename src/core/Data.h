// Sonarello: the records of a song.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/Meta.h"
#include "core/TimeRecords.h"

namespace Sonarello {

inline constexpr int ChannelCount = 16;
inline constexpr int KeyCount = 128;
inline constexpr int ControllerCount = 128;

/// A failure of the song core. what() is the text that the user was shown.
class EMidiError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Status bytes (MIDI 1.0) without their channel.
enum Status : std::uint8_t {
  NoteOff = 0x80,
  NoteOn = 0x90,
  KeyAftertouch = 0xA0,
  Controller = 0xB0,
  ProgramChange = 0xC0,
  ChannelAftertouch = 0xD0,
  PitchBend = 0xE0,
  Sysex = 0xF0,
  SysexEscape = 0xF7,
  MetaEvent = 0xFF,
};

/// Types of meta events (SMF 1.0; 0x21 is the port number that many sequencers write).
enum MetaType : std::int8_t {
  MetaSequenceNumber = 0x00,
  MetaText = 0x01,
  MetaTrackName = 0x03,
  MetaInstrumentName = 0x04,
  MetaLyric = 0x05,
  MetaMarker = 0x06,
  MetaCue = 0x07,
  MetaChannelPrefix = 0x20,
  MetaPort = 0x21,
  MetaEndOfTrack = 0x2F,
  MetaTempo = 0x51,
  MetaSmpteOffset = 0x54,
  MetaTimeSignature = 0x58,
  MetaKeySignature = 0x59,
  MetaSequencerSpecific = 0x7F,
};

/// `DType` of an event: where its data stand.
inline constexpr std::uint8_t ShortEvent = 1;
inline constexpr std::uint8_t LongEvent = 2;

struct TypMidiEvent;
using PtrMidiEvent = TypMidiEvent*;

/// One event of a song: a node of a doubly linked list in ascending tick order.
/// The fields stand in the order that packs a node into 80 bytes, the ones that every walk reads first.
struct TypMidiEvent {
  PtrMidiEvent NextEvent = nullptr;  ///< nil at the track's End of track
  PtrMidiEvent PrevEvent = nullptr;  ///< nil at the track head
  std::int32_t Position = 0;         ///< ticks from the song's start
  std::int32_t TimePosition = 0;     ///< milliseconds from the song's start, set by the time map
  /// Short events: length of the message with its status byte, 2 or 3. Long events: bytes in `Meta`.
  /// 0 marks the event as removed (an End of track excepted): neither played nor written.
  std::int32_t DLength = 0;
  std::uint8_t Command = 0;                ///< status byte, channel included; 0xF0 sysex, 0xFF meta
  std::uint8_t DType = 0;                  ///< `ShortEvent` or `LongEvent`
  std::int8_t MType = -1;                  ///< meta type 0x00-0x7F, -1 for every other event
  bool Selected = false;                   ///< selection mark of the editors
  std::array<std::uint8_t, 2> Value{};     ///< data bytes of a short event, 0-127
  std::array<std::uint8_t, 2> ValueOrg{};  ///< the data bytes as loaded or created
  bool SelectedCopy = false;               ///< saved selection mark of the editors
  PtrMidiEvent NoteOnEvent = nullptr;      ///< on a note-off: its note-on, nil until paired
  PtrMidiEvent NoteOffEvent = nullptr;     ///< on a note-on: its note-off, nil until paired
  Sonarello::Meta Meta;                    ///< payload of a long event; a sysex's ends with 0xF7
  std::int32_t KeyEditorFlag = 0;          ///< scratch mark of the key editor
  std::int32_t ListPos = 0;                ///< row in the event list view
  std::int32_t LogicalEditorFlag = 0;      ///< scratch mark of the logical editor

  [[nodiscard]] bool IsChannelEvent() const noexcept { return Command < Sysex; }
  [[nodiscard]] int Channel() const noexcept { return Command & 0x0F; }
  /// Status without the channel: 0x80 to 0xE0 of a channel event.
  [[nodiscard]] std::uint8_t Kind() const noexcept { return Command & 0xF0; }
  [[nodiscard]] bool IsMeta(int type) const noexcept { return Command == MetaEvent && MType == type; }
  [[nodiscard]] bool IsEndOfTrack() const noexcept { return IsMeta(MetaEndOfTrack); }
  /// True for a removed event; an End of track has no data and is never removed.
  [[nodiscard]] bool IsRemoved() const noexcept { return DLength == 0 && !IsEndOfTrack(); }
};
static_assert(sizeof(TypMidiEvent) <= 80, "a song of a million events rests on small nodes");

/// Open notes at the edge of a range, by channel and key: how many, and the last of them.
struct TOpenNote {
  std::int32_t Count = 0;
  PtrMidiEvent Event = nullptr;
};
using TOpenNotes = std::array<std::array<TOpenNote, KeyCount>, ChannelCount>;

/// One track: a list from its track head to its End of track.
struct TMyTrack {
  PtrMidiEvent TrkFirstEvent = nullptr;  ///< the track head
  PtrMidiEvent TrkLastEvent = nullptr;   ///< the End of track; the insertion point while loading
  PtrMidiEvent TrkPlayEvent = nullptr;   ///< the player's cursor
  PtrMidiEvent TrkLoopStart = nullptr;   ///< where the player resumes a loop
  std::int32_t TrkDelay = 0;             ///< output delay, ms
  std::int32_t TrkEventCounter = 0;      ///< nodes of the list, exact
  std::int32_t TrkListIndex = 1;         ///< place in the track list
  std::int32_t TrkNoteOnCnt = 0;         ///< note-ons on the track
  std::int8_t TrkMidiIndex = -1;         ///< 0-15 the one channel, 16 several, -1 none
  std::int8_t TrkPatchNumber = -1;
  bool TrkIgnore = false;  ///< held out of the song's working
  std::string TrkName;     ///< text of the first track name, bytes as in the file
  // Working pointers of the range tools; the tables are made when a tool first needs them.
  PtrMidiEvent TrkCopyRDest = nullptr;
  PtrMidiEvent TrkCopyRFirst = nullptr;
  PtrMidiEvent TrkCopyRLast = nullptr;
  std::unique_ptr<TOpenNotes> TrkCopyRDestArr;
  std::unique_ptr<TOpenNotes> TrkCopyRFirstArr;
  std::unique_ptr<TOpenNotes> TrkCopyRLastArr;
};

inline constexpr std::uint8_t NoControllerValue = 255;  ///< the controller is not in the song

/// First event of a controller on a channel and the value in force.
struct TCtrl {
  PtrMidiEvent Event = nullptr;
  std::uint8_t Value = NoControllerValue;
};

/// Per-note settings of a drum channel.
struct TDrumsRec {
  std::int8_t DeltaVelocity = 0;  ///< added to every velocity of this note
  std::int8_t Transpose = 0;      ///< shift between the note shown and the note sent, semitones
  bool Mute = false;              ///< the player leaves the note out
  std::int8_t Level = -1;         ///< 0-127; -1: the song sets none
  std::int8_t LowPass = -1;
  std::int8_t Pitch = -1;
  std::int8_t Reverb = -1;
  std::int8_t sLevel = -1;  ///< as they were on load, or before the song was wound
  std::int8_t sLowPass = -1;
  std::int8_t sPitch = -1;
  std::int8_t sReverb = -1;
  std::int32_t XValue = 0;  ///< position of the last note that was played, ms; 0: its light is dark
};

/// The desk's view of one MIDI channel, whichever tracks hold its events.
struct TMidiChannelData {
  bool Active = false;           ///< the channel has events
  std::int32_t ActiveNotes = 0;  ///< note-ons on the channel
  std::array<TCtrl, ControllerCount> CtrlArray{};
  std::array<TDrumsRec, KeyCount> DrumArray{};
  std::uint8_t DrumPart = 0;    ///< 0 melodic, else the drum part
  std::int8_t MidiChannel = 0;  ///< output channel, 0-15
  bool Mute = false;
  bool MuteBeforeFirstSolo = false;
  bool Rec = false;
  bool Solo = false;
  std::int8_t Patch = -1;  ///< program of the first program change, -1 if none
  PtrMidiEvent PatchEvent = nullptr;
  std::int8_t PatchGM = -1;  ///< the same sound as a GM program
  std::int8_t sPatch = -1;   ///< saved program
};

/// Velocities of one channel, and the range that the velocity editor maps them to.
struct TNotesVelocities {
  std::uint8_t Minimum = 0;     ///< lowest velocity of the song on this channel, 1-127; 0 without notes
  std::uint8_t Maximum = 0;     ///< highest velocity
  std::uint8_t Mean = 0;        ///< mean velocity, rounded to nearest
  bool Mapped = false;          ///< a range is stored
  std::uint8_t NewMinimum = 0;  ///< range that [Minimum, Maximum] is mapped to
  std::uint8_t NewMaximum = 0;
};

/// A key signature of a track: sharps (positive) or flats, and major (0) or minor (1).
struct TKeySigns {
  PtrMidiEvent MidiEvent = nullptr;
  std::int32_t SF = 0;
  std::int32_t MI = 0;
};

struct TKeySignArray {
  std::int32_t Elements = 0;
  std::vector<TKeySigns> ValArray;
};

inline constexpr int CountInNotes = 16;

/// What the count-in analysis found on one channel.
struct TCountIn {
  std::int32_t Count = 0;                          ///< count-in notes found
  std::array<PtrMidiEvent, CountInNotes> Notes{};  ///< the channel's first notes
  std::int32_t NoteCount = 0;                      ///< entries of `Notes`, 0-16
  std::int32_t FirstNotePos = 0;                   ///< tick where the song proper starts
  std::uint8_t Key = 0;                            ///< candidate key
  std::int32_t Start = 0;                          ///< tick of the first count-in note
  std::int32_t End = 0;                            ///< tick of the last one
  std::int32_t Track = 65535;                      ///< track of the channel's first note
};

/// One output that channels play through. Route 0 is the main instrument.
struct TMidiRouting {
  std::int32_t Delay = 0;         ///< ms by which everything routed here is played early
  std::string Instrument;         ///< name as in the instrument catalogue
  std::uint8_t InstrumValue = 0;  ///< its number there
  std::string OutputName;
  std::uint8_t OutputDevID = 0;  ///< device number of the port, or slot of the hosted instrument
  bool MSWavetable = false;      ///< a software synthesizer that takes no sysex and no bank selects
  bool VSTi = false;             ///< a hosted instrument, not a port
  std::uint32_t VSTiHandle = 0;  ///< the hosted instrument, as its host knows it
  std::int32_t VSTiUniqueID = 0;
};

/// Ticks between a song's last event and its end.
inline constexpr std::int32_t SongTail = 10;

/// Greatest tick that an event may have: the song's end and the sentinels behind it still fit 32 bits.
inline constexpr std::int32_t LastPosition = std::numeric_limits<std::int32_t>::max() - 1000;

}  // namespace Sonarello
