#include "core/SongBuilding.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/CountIn.h"
#include "core/EventList.h"
#include "core/Markers.h"
#include "core/Texts.h"
#include "core/TimeMap.h"

namespace Sonarello {

namespace {

constexpr std::uint8_t ReleaseVelocity = 17;  ///< of a note-off that the file wrote as a note-on
constexpr std::int32_t SmallestSong = 999;    ///< ticks
constexpr int UnmixedSysexTrack = 10;
constexpr std::uint8_t ZeroByte = 0;

// The remote sequence of a song player: bank MSB 77, bank LSB and program on channel 16, close
// together.
constexpr std::uint8_t RemoteBank = 77;
constexpr std::int32_t RemoteLatestStart = 100;
constexpr std::int32_t RemoteBankWindow = 20;
constexpr std::int32_t RemotePatchWindow = 40;

constexpr std::array<std::uint8_t, 8> XGSystemOn = {0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7};
constexpr std::array<std::uint8_t, 4> WordBoxPrefix = {0x00, 0x20, 0x24, 0x00};
constexpr std::array<std::uint8_t, 2> StyleChordPrefix = {0x43, 0x7E};
constexpr std::array<std::uint8_t, 3> XFChordPrefix = {0x43, 0x7B, 0x01};
constexpr std::array<std::uint8_t, 3> MotifPrefix = {0x43, 0x10, 0x7F};

/// Chord roots are stored in one spelling: D#, E, ... for Eb, Fb, ... (XF: accidental and note
/// nibbles).
std::uint8_t UsualRoot(std::uint8_t root) {
  switch (root) {
    case 0x21: return 0x37;
    case 0x24: return 0x33;
    case 0x43: return 0x34;
    case 0x47: return 0x31;
    default: return root;
  }
}

}  // namespace

void SongBuilder::Prepare(std::int32_t tracks, bool unmixed, std::int32_t lastTick,
                          std::int32_t tempoMetas, std::int32_t signatureMetas) {
  unmix = unmixed;
  song.MaxSongPosition = std::max(std::min(lastTick, LastPosition) + SongTail, SmallestSong);
  song.MidiTrack.clear();
  song.MidiTrack.resize(static_cast<std::size_t>(tracks));
  song.KeySignArray.assign(static_cast<std::size_t>(tracks), {});
  unordered.assign(static_cast<std::size_t>(tracks), 0);
  implicitNoteOffs.assign(static_cast<std::size_t>(tracks), 0);
  const Meta port(std::span(&ZeroByte, 1));
  for (TMyTrack& track : song.MidiTrack) {
    track.TrkDelay = routes.empty() ? 0 : routes[0].Delay;
    PtrMidiEvent head = Take();
    head->Command = MetaEvent;
    head->DType = LongEvent;
    head->MType = MetaPort;
    head->DLength = 1;
    head->Meta = port;
    track.TrkFirstEvent = track.TrkLastEvent = head;
    track.TrkEventCounter = 1;
  }
  // One entry more than the file has metas, and two at least: every look-up finds a next entry.
  song.SourceTempoElements = std::max(tempoMetas, 1) + 1;
  song.SourceTempo.assign(static_cast<std::size_t>(song.SourceTempoElements), {});
  song.TimeSignElements = std::max(signatureMetas, 1) + 1;
  song.TimeSignature.assign(static_cast<std::size_t>(song.TimeSignElements), {});
  BeginCountIn(song);
  for (auto& channel : song.FirstControllers) channel.fill(nullptr);
  song.FirstPatches.fill(nullptr);
  song.WordBoxFormat = song.XF_Format = song.XGSystemOnPresentOnLoad = false;
  song.DrumsSecForceToChannel10 = song.DrumsThirdForceToChannel10 = false;
  song.XF_ChordsArrayElements = 0;
  song.SysexTrack = song.XF_Track = song.SysexFoundOnTrack = -1;
  song.SequenceNameOrg.clear();
  song.MotifMartor = nullptr;
  sysexes.clear();
}

void SongBuilder::BeginChunk(std::int32_t index) {
  chunk = index;
  remoteStart = NoRemote;
}

PtrMidiEvent SongBuilder::Take() {
  PtrMidiEvent node = song.Pool.Take();
  if (node == nullptr) throw EMidiError(ReaderOutOfMemory);
  return node;
}

std::int32_t SongBuilder::StoredPosition(std::int32_t position) {
  if (position >= 0 && position <= LastPosition) return position;
  wrapped = true;
  return position < 0 ? 0 : LastPosition;
}

void SongBuilder::Link(std::int32_t index, PtrMidiEvent node) {
  TMyTrack& track = TrackAt(index);
  if (node->Position < track.TrkLastEvent->Position) unordered[static_cast<std::size_t>(index)] = 1;
  Append(track, node);
}

// --- Channel events

void SongBuilder::AddChannelEvent(const SmfEvent& event) {
  std::uint8_t first = event.Value[0];
  std::uint8_t second = event.Value[1];
  std::uint8_t command = event.Status;
  if (first > 127) {
    const std::string position = std::to_string(event.Position);
    const std::string value = std::to_string(first);
    throw EMidiError(Text("Fehler im Midifile bei Position: " + position + "\r" + "Wert1 = " + value +
                              "\r" + "Es dürfte nicht größer als 127 sein!",
                          "Error in Midifile at position: " + position + "\r" + "Value1 = " + value +
                              "\r" + "shouldn't be greater than 127!"));
  }
  const int channel = command & 0x0F;
  const std::int32_t index = unmix ? channel + 1 : chunk;
  const bool clamped = second > 127;
  if (clamped) second = (command & 0xF0) == NoteOff ? ReleaseVelocity : 127;
  if ((command & 0xF0) == NoteOn && second == 0) {
    command = static_cast<std::uint8_t>(NoteOff | channel);
    second = ReleaseVelocity;
    ++implicitNoteOffs[static_cast<std::size_t>(index)];
  }
  PtrMidiEvent e = Take();
  e->Command = command;
  e->DType = ShortEvent;
  e->DLength = MessageLength(command);
  e->Position = StoredPosition(event.Position);
  e->Value = {first, second};
  e->ValueOrg = e->Value;
  Link(index, e);
  TMyTrack& track = TrackAt(index);
  CollectTrackChannel(track, channel);
  switch (command & 0xF0) {
    case NoteOn:
      ++track.TrkNoteOnCnt;
      CollectCountIn(song, index, e);
      break;
    case Controller: CollectController(e); break;
    case ProgramChange: CollectProgram(e); break;
    default: break;
  }
  if (clamped) LogChange(song, ChangeKind::Rewritten, index, *e, "Wert über 127", "value above 127");
}

void SongBuilder::CollectTrackChannel(TMyTrack& track, int channel) {
  if (track.TrkMidiIndex == channel) return;
  track.TrkMidiIndex = static_cast<std::int8_t>(track.TrkMidiIndex == -1 ? channel : ChannelCount);
}

void SongBuilder::CollectController(PtrMidiEvent e) {
  PtrMidiEvent& entry = song.FirstControllers[static_cast<std::size_t>(e->Channel())][e->Value[0]];
  if (entry != nullptr) return;
  if (e->Channel() == ChannelCount - 1) {
    if (e->Value[0] == 0 && e->Value[1] == RemoteBank && e->Position < RemoteLatestStart) {
      remoteStart = e->Position;
      return;
    }
    if (e->Value[0] == 32 && e->Position - remoteStart < RemoteBankWindow) return;
  }
  entry = e;
}

void SongBuilder::CollectProgram(PtrMidiEvent e) {
  PtrMidiEvent& entry = song.FirstPatches[static_cast<std::size_t>(e->Channel())];
  if (entry != nullptr) return;
  if (e->Channel() == ChannelCount - 1 && e->Position - remoteStart < RemotePatchWindow) {
    remoteStart = NoRemote;
    return;
  }
  entry = e;
}

// --- Long events

void SongBuilder::LogDropped(const SmfEvent& event, const char* germanWhy, const char* englishWhy) {
  if (song.Changes == nullptr) return;
  TypMidiEvent dropped;
  dropped.Command = event.Status;
  dropped.MType = static_cast<std::int8_t>(event.Status == MetaEvent ? event.Type : -1);
  dropped.Position = StoredPosition(event.Position);
  dropped.Meta = Meta(event.Payload);
  LogChange(song, ChangeKind::Dropped, unmix ? 0 : chunk, dropped, germanWhy, englishWhy);
}

void SongBuilder::DropRealtime(const SmfEvent& event) {
  LogDropped(event, "gehört nicht in eine Datei", "does not belong in a file");
}

void SongBuilder::AddLongEvent(const SmfEvent& event) {
  if (event.Status == SysexEscape)
    return LogDropped(event, "F7-Ereignisse werden nicht gehalten", "F7 events are not kept");
  if (event.Status == Sysex) {
    if (event.Payload.empty()) return LogDropped(event, "ohne Inhalt", "has no content");
    return AddSysex(event);
  }
  if (IsDropped(event)) return;
  AddMeta(event);
}

PtrMidiEvent SongBuilder::AddLong(std::int32_t index, const SmfEvent& event,
                                  std::span<const std::uint8_t> payload) {
  PtrMidiEvent e = Take();
  e->Command = event.Status;
  e->DType = LongEvent;
  e->MType = static_cast<std::int8_t>(event.Status == MetaEvent ? event.Type : -1);
  e->DLength = static_cast<std::int32_t>(payload.size());
  e->Meta = Meta(payload);
  e->Position = StoredPosition(event.Position);
  Link(index, e);
  return e;
}

void SongBuilder::AddSysex(const SmfEvent& event) {
  const std::int32_t index = unmix ? UnmixedSysexTrack : chunk;
  PtrMidiEvent e = AddLong(index, event, event.Payload);
  song.SysexFoundOnTrack = index;
  sysexes.push_back({index, e});
  if (e->Meta.StartsWith(MotifPrefix)) song.MotifMartor = e;
  if (e->DLength >= 5 && e->Meta.StartsWith(WordBoxPrefix)) song.WordBoxFormat = options.WordBoxSearch;
  if (e->Meta.Equals(XGSystemOn)) song.XGSystemOnPresentOnLoad = true;
  if (e->DLength == 8 && e->Meta.StartsWith(StyleChordPrefix)) NoteChord(e, index);
}

/// Tells whether a meta is left out, and logs it. What stands behind the song's end and does not extend
/// it would stand behind its End of track.
bool SongBuilder::IsDropped(const SmfEvent& event) {
  auto drop = [&](const char* german, const char* english) {
    LogDropped(event, german, english);
    return true;
  };
  const std::size_t length = event.Payload.size();
  const auto hasLength = [&](std::size_t wanted) {
    return length == wanted ? false : drop("falsche Länge", "wrong length");
  };
  if (event.Type > 0x7F) return drop("unbekannter Typ", "unknown type");
  if (event.Type > MetaEndOfTrack && event.Position >= song.MaxSongPosition)
    return drop("hinter dem Songende", "behind the song's end");
  if (length == 0 && !(event.Type == MetaText && song.WordBoxFormat))
    return drop("ohne Inhalt", "has no content");
  switch (event.Type) {
    case MetaPort:
      // What equals the track head that every track gets is no loss worth telling.
      if (event.Position == 0 && length == 1 && event.Payload[0] == 0) return true;
      [[fallthrough]];
    case MetaChannelPrefix:
      return drop("Port und Kanal-Präfix werden neu gesetzt", "ports and prefixes are set anew");
    case MetaTimeSignature: return hasLength(4);
    case MetaKeySignature: return hasLength(2);
    case MetaTempo: return hasLength(3);
    case MetaSequenceNumber: return hasLength(2);
    default: return false;
  }
}

std::int32_t SongBuilder::TrackOfMeta(std::uint8_t type) const {
  if (!unmix) return chunk;
  switch (type) {
    case MetaTempo:
    case MetaTimeSignature:
    case MetaKeySignature:
    case MetaSmpteOffset: return 0;
    default: return 1;
  }
}

void SongBuilder::AddMeta(const SmfEvent& event) {
  switch (event.Type) {
    case MetaTempo: return AddTempo(event);
    case MetaTimeSignature: return AddTimeSignature(event);
    case MetaKeySignature: return AddKeySignature(event);
    case MetaTrackName: return AddTrackName(event);
    case MetaText:
    case MetaLyric: return AddText(event);
    case MetaSequencerSpecific: return AddSequencerSpecific(event);
    case MetaInstrumentName: {
      const std::int32_t index = TrackOfMeta(event.Type);
      return ApplyMarker(song, index, AddLong(index, event, event.Payload), routes);
    }
    default: AddLong(TrackOfMeta(event.Type), event, event.Payload);
  }
}

/// Texts and lyrics. A word-box file has its syllables in texts, a line each.
void SongBuilder::AddText(const SmfEvent& event) {
  const std::int32_t index = TrackOfMeta(event.Type);
  if (!song.WordBoxFormat) {
    AddLong(index, event, event.Payload);
    return;
  }
  std::vector<std::uint8_t> line(event.Payload.begin(), event.Payload.end());
  line.push_back('\r');
  PtrMidiEvent e = AddLong(index, event, line);
  e->MType = MetaLyric;
  if (event.Type == MetaText)
    LogChange(song, ChangeKind::Rewritten, index, *e, "Liedtext im Textformat", "lyrics told as text");
}

void SongBuilder::AddTrackName(const SmfEvent& event) {
  const std::int32_t index = TrackOfMeta(event.Type);
  PtrMidiEvent e = AddLong(index, event, event.Payload);
  TMyTrack& track = TrackAt(index);
  if (song.MidiFileOrgFormat == 0 && song.SequenceNameOrg.empty())
    song.SequenceNameOrg = e->Meta.Text();
  if (track.TrkName.empty()) {
    track.TrkName = e->Meta.Text();
  } else if (index == 0) {
    LogChange(song, ChangeKind::Dropped, index, *e, "zweiter Name der ersten Spur",
              "second name of the first track");
    MarkRemoved(e);
  }
}

void SongBuilder::AddTempo(const SmfEvent& event) {
  const std::int32_t index = TrackOfMeta(event.Type);
  PtrMidiEvent e = AddLong(index, event, event.Payload);
  if (index != 0) return;  // only track 0 is the tempo track
  song.SourceTempo[static_cast<std::size_t>(tempi++)] = TempoEntry(e->Position, e->Meta.Bytes());
}

void SongBuilder::AddTimeSignature(const SmfEvent& event) {
  const std::int32_t index = TrackOfMeta(event.Type);
  PtrMidiEvent e = AddLong(index, event, event.Payload);
  if (index != 0) return;
  song.TimeSignature[static_cast<std::size_t>(signatures++)] =
      TimeSignEntry(e->Position, e->Meta.Bytes());
}

void SongBuilder::AddKeySignature(const SmfEvent& event) {
  const std::int32_t index = TrackOfMeta(event.Type);
  PtrMidiEvent e = AddLong(index, event, event.Payload);
  TKeySignArray& keys = song.KeySignArray[static_cast<std::size_t>(index)];
  keys.ValArray.push_back({e, static_cast<std::int8_t>(e->Meta[0]), e->Meta[1]});
  ++keys.Elements;
}

void SongBuilder::AddSequencerSpecific(const SmfEvent& event) {
  const std::int32_t index = TrackOfMeta(event.Type);
  PtrMidiEvent e = AddLong(index, event, event.Payload);
  if (e->DLength >= 7 && e->Meta.StartsWith(XFChordPrefix)) NoteChord(e, index);
}

void SongBuilder::NoteChord(PtrMidiEvent e, std::int32_t track) {
  constexpr std::size_t root = 3;
  constexpr std::size_t bass = 5;
  for (const std::size_t place : {root, bass}) {
    const std::uint8_t usual = UsualRoot(e->Meta[place]);
    if (usual == e->Meta[place]) continue;
    e->Meta.Mutable()[place] = usual;
    LogChange(song, ChangeKind::Rewritten, track, *e, "Schreibweise des Akkords",
              "spelling of the chord");
  }
  song.XF_Format = true;
  song.XF_Track = track;
  ++song.XF_ChordsArrayElements;
}

// --- The end

void SongBuilder::Finish() {
  song.NumberOfSourceTracks = static_cast<std::int32_t>(song.MidiTrack.size());
  if (unmix) song.MidiFileFormat = 1;
  BringTracksIntoOrder();
  for (TMyTrack& track : song.MidiTrack) {
    track.TrkPlayEvent = track.TrkFirstEvent;
    PtrMidiEvent end = Take();
    end->Command = MetaEvent;
    end->DType = LongEvent;
    end->MType = MetaEndOfTrack;
    end->Position = song.MaxSongPosition;
    Append(track, end);
  }
  if (song.MidiFileFormat == 0) TrackAt(0).TrkMidiIndex = ChannelCount;
  CloseTimeTables(song);
  LogOddities();
}

/// Chunks of an unmixed file meet in one track, and a damaged delta may lead back.
void SongBuilder::BringTracksIntoOrder() {
  bool any = false;
  for (std::size_t t = 0; t < unordered.size(); ++t) {
    if (unordered[t] == 0) continue;
    any = true;
    SortByPosition(song.MidiTrack[t]);
  }
  if (!any) return;
  const auto earlier = [](const auto& a, const auto& b) { return a.SongPosition < b.SongPosition; };
  std::stable_sort(song.SourceTempo.begin(), song.SourceTempo.begin() + tempi, earlier);
  std::stable_sort(song.TimeSignature.begin(), song.TimeSignature.begin() + signatures, earlier);
  std::stable_sort(sysexes.begin(), sysexes.end(), [](const auto& a, const auto& b) {
    return a.Track != b.Track ? a.Track < b.Track : a.Event->Position < b.Event->Position;
  });
}

void SongBuilder::LogOddities() {
  if (song.Changes == nullptr) return;
  for (std::size_t t = 0; t < implicitNoteOffs.size(); ++t) {
    const std::string count = std::to_string(implicitNoteOffs[t]);
    if (implicitNoteOffs[t] == 0) continue;
    LogText(song, ChangeKind::Rewritten, static_cast<std::int32_t>(t), 0,
            count + " mal Note an mit Anschlagstärke 0", count + " note-ons with velocity 0",
            "als Note aus gehalten", "kept as note-offs");
  }
  for (std::size_t t = 0; t < unordered.size(); ++t) {
    if (unordered[t] == 0) continue;
    LogText(song, ChangeKind::Moved, static_cast<std::int32_t>(t), 0, "Ereignisse der Spur",
            "Events of the track", "in zeitliche Ordnung gebracht", "brought into order of time");
  }
  if (wrapped)
    LogText(song, ChangeKind::Moved, 0, 0, "Ereignisse außerhalb des Songs", "Events outside the song",
            "beschädigte Zeitangaben der Datei", "damaged times in the file");
}

}  // namespace Sonarello
