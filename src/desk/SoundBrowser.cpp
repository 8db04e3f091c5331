#include "desk/SoundBrowser.h"

#include <utility>

#include "core/EventList.h"
#include "core/MidiFunctions.h"
#include "core/Texts.h"
#include "desk/SoundBrowserInsertion.h"

namespace Sonarello {

namespace {

constexpr std::size_t BankMSB = 0;
constexpr std::size_t BankLSB = 32;
constexpr std::string_view NoName = "???";

int NumberOf(const TCtrl& controller) {
  return controller.Value == NoControllerValue ? -1 : controller.Value;
}

bool IsComplete(const TAddress& a) {
  return IsMidiValue(a.CC00) && IsMidiValue(a.CC32) && IsMidiValue(a.Patch);
}

}  // namespace

TSoundBrowser::TSoundBrowser(const TSoundBrowserParts& parts, TSendMidiData sender)
    : p(parts),
      preview(parts.song, parts.routes, parts.realtime, parts.outputs, parts.gate, std::move(sender)),
      journal(parts.song) {}

const TMidiRouting& TSoundBrowser::Route() const {
  const auto table = p.routes.MidiRouting();
  const std::size_t route = p.song.MidiOutIndex[static_cast<std::size_t>(channel)];
  return table[route < table.size() ? route : 0];
}

TSoundQuery TSoundBrowser::Query() const {
  const TMidiChannelData& data = p.song.MidiData[static_cast<std::size_t>(channel)];
  return {.Address = {NumberOf(data.CtrlArray[BankMSB]), NumberOf(data.CtrlArray[BankLSB]), data.Patch},
          .Channel = channel,
          .DrumPart = data.DrumPart};
}

bool TSoundBrowser::Open(int newChannel) {
  if (IsOpen()) Btn_CancelClick();
  if (!p.song.MidiFileLoaded || newChannel < 0 || newChannel >= ChannelCount) return false;
  channel = newChannel;
  const int value = Route().InstrumValue;
  p.sets.Load(value, BrowserLoadSettings(p.settings, p.options, value), p.messages);
  const SoundSet* found = p.sets.Find(value);
  if (found == nullptr) return false;
  {
    const auto held = p.gate.Enter();
    journal.Begin(channel);
    parked = preview.Parked(channel);
  }
  const bool lacks = p.song.MidiData[static_cast<std::size_t>(channel)].Patch < 0;
  if (lacks && !InsertMissingProgram()) return false;
  set = found;
  instrument = Route().Instrument;
  banks = TBrowserBanks(*set);
  withDSP = Settings().Patches_WithDSPs;
  heard = portFailed = false;
  TakeOldVoice();
  if (Hooks.Opened) Hooks.Opened();
  if (lacks && Hooks.SoundChanged) Hooks.SoundChanged(channel);
  return true;
}

bool TSoundBrowser::InsertMissingProgram() {
  if (!CanInsertPatch(p.song, channel) || !p.messages.Ask(InsertPatchQuestion(channel))) return false;
  std::string failure;
  {
    const auto held = p.gate.Enter();
    const TSoundEvents before = SoundEvents();
    journal.BeginInsertion();
    try {
      InsertPatchAtSetup(p.song, p.names, channel);
    } catch (const EMidiError& error) {
      failure = error.what();
    }
    const TSoundEvents after = SoundEvents();
    for (PtrMidiEvent TSoundEvents::*event :
         {&TSoundEvents::BankMSB, &TSoundEvents::BankLSB, &TSoundEvents::PatchEvent})
      if (after.*event != before.*event) journal.Inserted(after.*event);
    if (!failure.empty()) journal.RestoreAll();
  }
  if (!failure.empty()) p.messages.Show(failure);
  if (journal.HasInserted() && Hooks.EventsChanged) Hooks.EventsChanged(channel);
  return journal.HasInserted();
}

/// The sound of the channel becomes the old voice, and the place that is selected.
void TSoundBrowser::TakeOldVoice() {
  const auto held = p.gate.Enter();
  const TSoundQuery query = Query();
  // What a repair would write is no match: nothing is mended by looking.
  const TSoundName name = NameSound(*set, query,
                                    {.AutoProgChange = false,
                                     .RolandSCDefaultMap = p.options.RolandSCDefaultMap,
                                     .RolandSCDefaultMapIdx = p.options.RolandSCDefaultMapIdx});
  address = oldAddress = query.Address;
  drums = PlaysDrums(*set->Member().Family, query);
  oldPlace = name.Known ? banks.PlaceOf(name.Row) : TSoundPlace();
  oldVoice = newVoice =
      name.Known ? VoiceLabel(p.names.ProgramChangeName(channel, query.Address)) : std::string(NoName);
  selected = oldPlace;
  newPlace = {};
  hearsNew = false;
  controllersWritten = {};
  chosenFor = SoundEvents();
  if (oldPlace.IsSet() || !p.options.AutoProgChange) return;
  for (const int bank : ShownBanks())
    if (const auto first = FirstOf(bank); first.IsSet()) {
      selected = first;
      return;
    }
}

TSoundPlace TSoundBrowser::FirstOf(int bank) const {
  const auto& categories = banks.Banks()[static_cast<std::size_t>(bank)].Categories;
  for (std::size_t c = 0; c < categories.size(); ++c)
    if (!categories[c].Sounds.empty()) return {bank, static_cast<int>(c), 0};
  return {};
}

int TSoundBrowser::MidiChannel() const {
  return p.song.MidiData[static_cast<std::size_t>(channel)].MidiChannel;
}

std::string TSoundBrowser::Caption() const {
  // Yamaha calls its tables sound sets; the standards have the word in their names.
  const bool saysSet = instrument.starts_with("Yamaha") && !instrument.ends_with("Soundset");
  return instrument + (saysSet ? Text(" Soundset", " sound set") : "") +
         Text(" - Midikanal ", " - midi-channel ") + std::to_string(MidiChannel() + 1);
}

std::string TSoundBrowser::Heading() const {
  return drums ? "Drumsets" : Text("Kategorien", "Categories");
}

bool TSoundBrowser::CanPlay(const TBrowserBank& bank) const {
  TSoundQuery query = Query();
  if (bank.Rows().empty()) return bank.IsDrums == drums;
  query.Address = bank.Rows().front().Address();
  return PlaysDrums(*set->Member().Family, query) == bank.IsDrums;
}

std::vector<int> TSoundBrowser::ShownBanks() const {
  std::vector<int> shown;
  for (std::size_t b = 0; b < banks.Banks().size(); ++b)
    if (const TBrowserBank& bank = banks.Banks()[b]; bank.IsDrums == drums && CanPlay(bank))
      shown.push_back(static_cast<int>(b));
  return shown;
}

std::vector<TSoundPlace> TSoundBrowser::Search(std::string_view text) const {
  if (!IsOpen()) return {};
  std::vector<bool> offered;
  for (const TBrowserBank& bank : banks.Banks()) offered.push_back(CanPlay(bank));
  return banks.Search(text, offered);
}

void TSoundBrowser::Btn_OKClick() {
  if (!IsOpen()) return;
  EndNote();
  bool inserted = false;
  bool changed = false;
  std::string failure;
  {
    const auto held = p.gate.Enter();
    // Playback may have brought other events into force, which nobody chose a sound for.
    if (SoundEvents() == chosenFor) {
      inserted = WriteMissingBanks(failure);
      p.names.UpdateMSB_LSB_PC(channel, address);
    }
    changed = inserted || address != oldAddress || journal.IsChanged();
    SetDrumPart();
  }
  const int accepted = channel;
  const bool hadDrums = drums;
  Close();
  if (!failure.empty()) p.messages.Show(failure);
  if (changed && Hooks.Changed) Hooks.Changed();
  if (inserted && Hooks.EventsChanged) Hooks.EventsChanged(accepted);
  if (Hooks.SoundChanged) Hooks.SoundChanged(accepted);
  const bool drumPart = p.song.MidiData[static_cast<std::size_t>(accepted)].DrumPart > 0;
  if ((drumPart || hadDrums) && Hooks.DrumsChanged) Hooks.DrumsChanged(accepted);
}

/// A sound that was chosen needs its banks, also where the song had none.
bool TSoundBrowser::WriteMissingBanks(std::string& failure) {
  if (address == oldAddress) return false;
  try {
    return InsertMissingBanks(p.song, channel, address);
  } catch (const EMidiError& error) {
    failure = error.what();
    return false;
  }
}

void TSoundBrowser::Btn_CancelClick() {
  if (!IsOpen()) return;
  EndNote();
  bool removed = false;
  const bool touched = heard || newPlace.IsSet() || journal.HasInserted();
  {
    const auto held = p.gate.Enter();
    removed = journal.RestoreAll();
    preview.Park(channel, parked);
  }
  if (heard) SendVoice(OldMessage());
  const int cancelled = channel;
  Close();
  if (touched && Hooks.RestoreVoiceEffects) Hooks.RestoreVoiceEffects(cancelled);
  if (removed && Hooks.EventsChanged) Hooks.EventsChanged(cancelled);
  if (touched && Hooks.SoundChanged) Hooks.SoundChanged(cancelled);
}

void TSoundBrowser::LetGo() {
  if (!IsOpen()) return;
  EndNote();
  Close();
}

void TSoundBrowser::Close() {
  set = nullptr;
  selected = oldPlace = newPlace = {};
  banks = {};
  {
    const auto held = p.gate.Enter();
    journal.Begin(channel);
  }
  if (Hooks.Closed) Hooks.Closed();
}

bool TSoundBrowser::IsSolo() const { return p.song.MidiData[static_cast<std::size_t>(channel)].Solo; }

void TSoundBrowser::CB_SoloMouseDown() {
  if (IsOpen() && Hooks.DoSolo) Hooks.DoSolo(channel);
}

bool TSoundBrowser::Btn_GoToFirstNote() {
  if (!IsOpen() || !Hooks.MoveToTimePosition) return false;
  std::optional<std::int32_t> time;
  {
    const auto held = p.gate.Enter();
    if (const auto tick = FirstNoteOf(p.song, channel)) time = TimeOfPosition(p.song, *tick);
  }
  if (time) Hooks.MoveToTimePosition(*time);
  return time.has_value();
}

bool TSoundBrowser::CanSaveToRevoicer() const {
  const bool isMain = IsOpen() && p.routes.MidiRouting().front().InstrumValue == set->Value();
  return isMain && !drums && newPlace.IsSet() && address != oldAddress && IsComplete(oldAddress) &&
         IsComplete(address);
}

bool TSoundBrowser::Btn_SaveToRevoicerClick() {
  if (!CanSaveToRevoicer()) return false;
  if (p.revoicer.Instrument() != instrument)
    p.revoicer.LoadRevoiceData(p.settings, instrument, p.messages);
  if (!p.revoicer.SaveToRevoicer(p.settings, oldAddress, oldVoice, address, newVoice)) return false;
  if (Hooks.RevoicerChanged) Hooks.RevoicerChanged();
  return true;
}

void TSoundBrowser::SetPatchesWithDSP(bool on) {
  withDSP = on;
  if (IsOpen()) p.settings.WriteBool(instrument, "Patches_WithDSPs", on);
}

void TSoundBrowser::StorePlace(int left, int top, int height) {
  if (instrument.empty()) return;
  p.settings.WriteInteger(instrument, "PatchesFormLeft", left);
  p.settings.WriteInteger(instrument, "PatchesFormTop", top);
  p.settings.WriteInteger(instrument, "PatchesFormHeight", height);
}

bool TSoundBrowser::SortSounds() const { return IsOpen() && Settings().SortSounds; }

void TSoundBrowser::PM_SortSoundsClick() {
  if (IsOpen()) SetSortSounds(p.settings, p.messages, instrument, !SortSounds());
}

bool TSoundBrowser::PM_SaveVoicesClick(int bank) {
  if (!IsOpen() || bank < 0 || static_cast<std::size_t>(bank) >= banks.Banks().size()) return false;
  return SaveVoices(banks.Banks()[static_cast<std::size_t>(bank)], p.options.DataPath, p.messages);
}

}  // namespace Sonarello
