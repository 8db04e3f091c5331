#include "instruments/SoundNames.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/EventList.h"
#include "core/MidiFunctions.h"

namespace Sonarello {

namespace {

constexpr std::size_t BankMSB = 0;
constexpr std::size_t BankLSB = 32;
constexpr int MostDrumParts = 3;
constexpr std::string_view NoName = "???";

int NumberOf(const TCtrl& controller) {
  return controller.Value == NoControllerValue ? -1 : controller.Value;
}

bool IsPresent(const TCtrl& controller) {
  return controller.Value != NoControllerValue && controller.Event != nullptr &&
         !controller.Event->IsRemoved();
}

/// Index of the track that holds an event: its head is the first node of that track.
std::int32_t TrackHolding(const Song& song, const TypMidiEvent& event) {
  const TypMidiEvent* head = &event;
  while (head->PrevEvent != nullptr) head = head->PrevEvent;
  const auto track = std::ranges::find(song.MidiTrack, head, &TMyTrack::TrkFirstEvent);
  return static_cast<std::int32_t>(track - song.MidiTrack.begin());
}

/// The message that makes a part a drum part, if the song has one of its own.
bool HasDrumPartSysex(const Song& song, std::size_t part) {
  const auto isLive = [part](const Song::TPartEvents& parts) {
    return parts[part] != nullptr && !parts[part]->IsRemoved();
  };
  return isLive(song.RolandDrumSysexArray) || isLive(song.MBMusicDrumSysexArray) ||
         isLive(song.MP11DrumsSysexArray) || isLive(song.LimexDrumsSysexArray) ||
         isLive(song.KetronDrumsSysexArray);
}

/// A bank that holds drum kits on other instruments (GM2: 120, XG: 126 and 127), and nothing on this
/// one.
bool IsForeignDrumBank(const SoundSet& set, int bank) {
  const bool known = bank == 120 || bank == 126 || bank == 127;
  return known &&
         std::ranges::none_of(std::array{Scope::Drums, Scope::GM2Drums, Scope::Sounds, Scope::Custom},
                              [&](Scope scope) { return set.Index(scope).HoldsBank(bank); });
}

/// The events that hold an instrument's organ-flute settings, or nil.
const Song::TPartEvents* OrganFlutesOf(const Song& song, int instrument) {
  switch (instrument) {
    case 54:
    case 62:
    case 74:
    case 80: return &song.TyrosOrganFluteSysexs;
    case 87: return &song.GenosOrganFluteSysexs;
    case 97: return &song.PSRSX900OrganFluteSysexs;
    default: return nullptr;
  }
}

}  // namespace

const TMidiRouting& TSoundNames::RouteOf(int channel) const {
  const auto table = routes.MidiRouting();
  const std::size_t route = song.MidiOutIndex[static_cast<std::size_t>(channel)];
  return table[route < table.size() ? route : 0];
}

const SoundSet* TSoundNames::SetOf(int channel) const {
  return sets.Find(RouteOf(channel).InstrumValue);
}

TNaming TSoundNames::Naming() const {
  return {.AutoProgChange = options.AutoProgChange,
          .RolandSCDefaultMap = options.RolandSCDefaultMap,
          .RolandSCDefaultMapIdx = options.RolandSCDefaultMapIdx};
}

TSoundQuery TSoundNames::QueryOf(int channel) const {
  const TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(channel)];
  return {.Address = {NumberOf(data.CtrlArray[BankMSB]), NumberOf(data.CtrlArray[BankLSB]), data.Patch},
          .Channel = channel,
          .DrumPart = data.DrumPart};
}

std::string TSoundNames::OrganFluteOf(int channel, const TSoundName& name) const {
  const auto* parts = OrganFlutesOf(song, RouteOf(channel).InstrumValue);
  if (parts == nullptr || name.Row == nullptr || name.Row->Address() != OrganFlutes) return name.Text();
  const TypMidiEvent* sysex = (*parts)[static_cast<std::size_t>(channel)];
  if (sysex == nullptr) return std::string(OrganFluteName({}));
  return std::string(OrganFluteName(sysex->Meta.Bytes()));
}

std::string TSoundNames::PatchName(int channel) {
  const SoundSet* set = SetOf(channel);
  const TSoundQuery query = QueryOf(channel);
  if (query.Address.Patch < 0 || set == nullptr) return std::string(NoName);
  const TSoundName name = NameSound(*set, query, Naming());
  std::string text = OrganFluteOf(channel, name);
  if (!name.IsMended()) return text;
  UpdateMSB_LSB_PC(channel, name.Mended);
  const TAddress given = QueryOf(channel).Address;
  if (given == query.Address) return text;
  const TypMidiEvent* program = song.MidiData[static_cast<std::size_t>(channel)].PatchEvent;
  mended.push_back({.Channel = channel,
                    .Position = program == nullptr ? 0 : program->Position,
                    .Asked = query.Address,
                    .Given = given,
                    .Name = text,
                    .Mended = true});
  return text;
}

std::string TSoundNames::CurrentName(int channel) const {
  return ProgramChangeName(channel, QueryOf(channel).Address);
}

std::string TSoundNames::ProgramChangeName(int channel, const TAddress& address) const {
  const SoundSet* set = SetOf(channel);
  if (address.Patch < 0 || set == nullptr) return std::string(NoName);
  TSoundQuery query = QueryOf(channel);
  query.Address = address;
  return OrganFluteOf(channel, NameSound(*set, query, Naming()));
}

TStripText TSoundNames::DisplayPatchName(int channel) {
  const TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(channel)];
  TStripText text;
  const std::string number = std::to_string(data.MidiChannel + 1);
  text.Prefix = "Ch " + std::string(number.size() < 2 ? "0" : "") + number + " - ";
  if (data.Active && data.Patch >= 0) text.Name = PatchName(channel);
  if (const std::size_t amp = text.Name.find('&'); amp != std::string::npos)
    text.Name.insert(amp, 1, '&');
  text.Hint = BankHint(channel);
  return text;
}

std::string TSoundNames::BankHint(int channel) const {
  const TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(channel)];
  const TCtrl& msb = data.CtrlArray[BankMSB];
  const TCtrl& lsb = data.CtrlArray[BankLSB];
  return "Controller   0: " + (IsPresent(msb) ? std::to_string(msb.Value) : std::string("-")) +
         "\rController 32: " + (IsPresent(lsb) ? std::to_string(lsb.Value) : std::string("-"));
}

void TSoundNames::LogSound(int channel, const TypMidiEvent& event) {
  if (song.Changes == nullptr) return;
  const std::string instrument = RouteOf(channel).Instrument;
  LogChange(song, ChangeKind::Rewritten, TrackHolding(song, event), event,
            "der Klang fehlt auf \"" + instrument + "\"", "\"" + instrument + "\" lacks the sound");
}

void TSoundNames::UpdateMSB_LSB_PC(int channel, const TAddress& address) {
  TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(channel)];
  for (const auto& [controller, value] :
       {std::pair{BankMSB, address.CC00}, std::pair{BankLSB, address.CC32}}) {
    TCtrl& entry = data.CtrlArray[controller];
    if (value < 0 || entry.Event == nullptr) continue;
    entry.Value = entry.Event->Value[1] = static_cast<std::uint8_t>(value);
    entry.Event->DLength = MessageLength(Controller);
    LogSound(channel, *entry.Event);
  }
  if (address.Patch < 0 || data.PatchEvent == nullptr) return;
  data.Patch = static_cast<std::int8_t>(address.Patch);
  data.PatchEvent->Value[0] = static_cast<std::uint8_t>(address.Patch);
  LogSound(channel, *data.PatchEvent);
}

void TSoundNames::LinkNew(TMyTrack& track, PtrMidiEvent event, PtrMidiEvent& entry) {
  InsertByPosition(track, event);
  event->TimePosition = TimeOfPosition(song, event->Position);
  if (entry == nullptr) entry = event;
}

bool TSoundNames::InsertPatch(int channel, std::int32_t position) {
  constexpr std::int32_t channelStep = 4;  // ticks, as in the setup window
  const int t = song.MidiFileFormat == 0 ? 0 : TrackOfChannel(song, channel);
  if (t < 0 || static_cast<std::size_t>(t) >= song.MidiTrack.size()) return false;
  TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(t)];
  if (track.TrkFirstEvent == nullptr) return false;
  const auto c = static_cast<std::size_t>(channel);
  TMidiChannelData& data = song.MidiData[c];
  const std::int32_t tick = position + channel * channelStep;
  if (tick >= 0) {
    PtrMidiEvent program = NewChannelEvent(
        song.Pool, static_cast<std::uint8_t>(Status::ProgramChange | channel), 0, 0, tick);
    LinkNew(track, program, song.FirstPatches[c]);
    data.PatchEvent = program;
    data.Patch = 0;
  }
  for (const auto& [controller, distance] : {std::pair{BankLSB, 2}, std::pair{BankMSB, 4}}) {
    if (tick < distance) continue;  // no event of the track stands in front of it
    PtrMidiEvent bank = NewChannelEvent(song.Pool, static_cast<std::uint8_t>(Controller | channel),
                                        static_cast<std::uint8_t>(controller), 0, tick - distance);
    LinkNew(track, bank, song.FirstControllers[c][controller]);
    data.CtrlArray[controller] = {bank, 0};
  }
  return true;
}

int TSoundNames::DefaultMap(int channel) const {
  const SoundSet* set = SetOf(channel);
  if (set == nullptr || !options.RolandSCDefaultMap) return 0;
  const int map = options.RolandSCDefaultMapIdx;
  return map >= 1 && map <= set->MapCount() ? map : 0;
}

TBank TSoundNames::MissingBank(int channel) const {
  const TMember* member = MemberOf(RouteOf(channel).InstrumValue);
  if (member == nullptr) return {};
  const TFamily& family = *member->Family;
  const TAddress& bank = channel == DrumChannel ? family.DrumCapital : family.Capital;
  const int map = DefaultMap(channel);
  return {static_cast<std::uint8_t>(bank.CC00), static_cast<std::uint8_t>(map > 0 ? map : bank.CC32)};
}

void TSoundNames::AdaptBanks(const TProgramIndex& programs) {
  adapted.fill({});
  if (!options.AutoProgChange) return;
  for (int c = 0; c < ChannelCount; ++c) {
    const auto& events = programs[static_cast<std::size_t>(c)];
    if (const int map = DefaultMap(c); map > 0) ChooseMap(events, map);
    ChooseDrumBank(c, events);
  }
}

void TSoundNames::ChooseMap(const std::vector<TProgramEvent>& events, int map) {
  for (const TProgramEvent& p : events) {
    TypMidiEvent& e = *p.Event;
    if (e.IsRemoved() || e.Kind() != Controller || e.Value[0] != BankLSB || e.Value[1] != 0) continue;
    e.Value[1] = static_cast<std::uint8_t>(map);
    LogChange(song, ChangeKind::Rewritten, p.Track, e, "vorgegebene GS-Map", "default GS map");
  }
}

void TSoundNames::ChooseDrumBank(int channel, const std::vector<TProgramEvent>& events) {
  const SoundSet* set = SetOf(channel);
  const TMember* member = MemberOf(RouteOf(channel).InstrumValue);
  if (set == nullptr || member->Family->DrumCapital.CC00 == 0) return;
  const TAddress& own = member->Family->DrumCapital;
  const bool byBank = member->Family->Drums == DrumRule::Bank;
  const bool drumsIfZero = channel == DrumChannel && byBank && !song.XGSystemOnPresentOnLoad;
  bool toDrums = false;  // the bank in force has become the instrument's own
  for (const TProgramEvent& p : events) {
    TypMidiEvent& e = *p.Event;
    if (e.IsRemoved() || e.Kind() != Controller) continue;
    const bool msb = e.Value[0] == BankMSB;
    if (msb) toDrums = (e.Value[1] == 0 && drumsIfZero) || IsForeignDrumBank(*set, e.Value[1]);
    const auto value = static_cast<std::uint8_t>(msb ? own.CC00 : own.CC32);
    if (!toDrums || e.Value[1] == value) continue;
    NoteAdapted(channel, msb, e.Value[1]);
    e.Value[1] = value;
    LogChange(song, ChangeKind::Rewritten, p.Track, e, "Schlagzeugbank des Instruments",
              "the instrument's drum bank");
  }
}

void TSoundNames::NoteAdapted(int channel, bool msb, int value) {
  TAddress& original = adapted[static_cast<std::size_t>(channel)];
  int& bank = msb ? original.CC00 : original.CC32;
  if (bank < 0) bank = value;
}

void TSoundNames::DecideDrumParts() {
  int parts = 0;
  const auto decide = [&](int c) {
    TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(c)];
    const TMember* member = MemberOf(RouteOf(c).InstrumValue);
    if (member == nullptr) return;
    const TFamily& family = *member->Family;
    if (family.Drums == DrumRule::Part || family.Drums == DrumRule::Channel10OrPart) {
      // The song's own messages have been read; without one part 10 plays drums (GS).
      if (c == DrumChannel && data.DrumPart == 0 && !HasDrumPartSysex(song, DrumChannel))
        data.DrumPart = 1;
      return;
    }
    const bool drums = data.Active && PlaysDrums(family, QueryOf(c));
    data.DrumPart = drums ? static_cast<std::uint8_t>(std::min(++parts, MostDrumParts)) : 0;
  };
  decide(DrumChannel);
  for (int c = 0; c < ChannelCount; ++c)
    if (c != DrumChannel) decide(c);
}

void TSoundNames::NameAll() {
  for (int c = 0; c < ChannelCount; ++c) {
    const TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(c)];
    if (data.Active && data.Patch >= 0) NameOnOpen(c);
  }
  adapted.fill({});
}

/// Names a channel; a bank that was adapted before counts as mended, too.
void TSoundNames::NameOnOpen(int channel) {
  const std::size_t before = mended.size();
  const TAddress asked = QueryOf(channel).Address;
  const std::string name = PatchName(channel);
  const TAddress& original = adapted[static_cast<std::size_t>(channel)];
  if (original == TAddress{}) return;
  if (mended.size() == before) {
    const TypMidiEvent* program = song.MidiData[static_cast<std::size_t>(channel)].PatchEvent;
    mended.push_back({.Channel = channel,
                      .Position = program == nullptr ? 0 : program->Position,
                      .Asked = asked,
                      .Given = QueryOf(channel).Address,
                      .Name = name,
                      .Mended = true});
  }
  if (original.CC00 >= 0) mended.back().Asked.CC00 = original.CC00;
  if (original.CC32 >= 0) mended.back().Asked.CC32 = original.CC32;
}

namespace {

/// The sound changes of each channel as the song has them now.
class SoundChanges {
 public:
  explicit SoundChanges(const Song& song) {
    for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t) {
      const TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(t)];
      if (track.TrkIgnore) continue;
      ForEachEvent(track, [&](PtrMidiEvent e) {
        if (!e->IsChannelEvent() || e->IsRemoved()) return;
        const bool bank = e->Kind() == Controller && (e->Value[0] == BankMSB || e->Value[0] == BankLSB);
        const bool remote = e == song.PromptaRemoteCtrl00 || e == song.PromptaRemoteCtrl32 ||
                            e == song.PromptaRemotePatch;
        if ((bank || e->Kind() == Status::ProgramChange) && !remote)
          events[static_cast<std::size_t>(e->Channel())].push_back(e);
      });
    }
    for (auto& channel : events)
      std::ranges::stable_sort(channel, {}, [](const TypMidiEvent* e) { return e->Position; });
  }

  /// Calls f(position, address) for each sound change of a channel.
  template <class F>
  void ForEach(int channel, F&& f) const {
    TAddress address;
    for (const TypMidiEvent* e : events[static_cast<std::size_t>(channel)]) {
      if (e->Kind() == Controller)
        (e->Value[0] == BankMSB ? address.CC00 : address.CC32) = e->Value[1];
      else
        f(e->Position, TAddress{address.CC00, address.CC32, e->Value[0]});
    }
  }

 private:
  std::array<std::vector<const TypMidiEvent*>, ChannelCount> events;
};

}  // namespace

std::vector<TSoundFinding> TSoundNames::Findings() const {
  std::vector<TSoundFinding> findings = mended;
  const SoundChanges changes(song);
  for (int c = 0; c < ChannelCount; ++c) {
    const SoundSet* set = SetOf(c);
    if (set == nullptr || !song.MidiData[static_cast<std::size_t>(c)].Active) continue;
    changes.ForEach(c, [&](std::int32_t position, const TAddress& address) {
      TSoundQuery query = QueryOf(c);
      query.Address = address;
      const TSoundName name = NameSound(*set, query, Naming());
      if (name.Known) return;
      findings.push_back({.Channel = c,
                          .Position = position,
                          .Asked = address,
                          .Given = address,
                          .Name = name.Text(),
                          .Mended = false});
    });
  }
  std::ranges::stable_sort(findings, [](const TSoundFinding& a, const TSoundFinding& b) {
    return std::pair(a.Channel, a.Position) < std::pair(b.Channel, b.Position);
  });
  return findings;
}

void TSoundNames::Wire(SongHooks& hooks) {
  hooks.MissingBank = [this](const Song&, int channel) { return MissingBank(channel); };
  hooks.AdaptBanks = [this](Song&, const TProgramIndex& programs) { AdaptBanks(programs); };
  hooks.ShowStrips = [this](Song&) {
    ForgetFindings();
    DecideDrumParts();
    NameAll();
  };
  hooks.PatchName = [this](const Song&, int channel) { return CurrentName(channel); };
}

}  // namespace Sonarello
