// The choice of a sound: what it writes, sends and lets be heard.
#include <algorithm>

#include "core/EventList.h"
#include "core/Texts.h"
#include "desk/SoundBrowser.h"
#include "desk/SoundBrowserInsertion.h"
#include "playback/MidiErrors.h"

namespace Sonarello {

namespace {

constexpr std::size_t BankMSB = 0;
constexpr std::size_t BankLSB = 32;
constexpr int DefaultPreviewKey = 60;  // C3

/// What a list tells of the effects of its sounds, or nil.
template <class T>
const T* EntryOf(const std::vector<T>& entries, std::size_t row) {
  return row < entries.size() ? &entries[row] : nullptr;
}

bool TellsInserts(const TMotifInserts& inserts) { return inserts != TMotifInserts(); }

std::array<int, VoiceControllers.size()> ValuesOf(const TXTPatch& effects) {
  return {effects.Ctrl71, effects.Ctrl72, effects.Ctrl73,
          effects.Ctrl74, effects.Ctrl91, effects.Ctrl93};
}

}  // namespace

TVoice TSoundBrowser::VoiceOf(int bank, const TPatch& row) const {
  const TBrowserBank& b = banks.Banks()[static_cast<std::size_t>(bank)];
  TVoice voice{.Row = &row};
  if (b.Kits) return voice;
  const auto index = static_cast<std::size_t>(&row - b.Rows().data());
  voice.Effects = EntryOf(b.List->Effects, index);
  voice.Inserts = EntryOf(b.List->Inserts, index);
  if (voice.Inserts != nullptr && !TellsInserts(*voice.Inserts)) voice.Inserts = nullptr;
  return voice;
}

std::string TSoundBrowser::EffectText(int bank, const TPatch& row) const {
  const TVoice voice = VoiceOf(bank, row);
  if (voice.Inserts != nullptr) return std::string(voice.Inserts->InsertA_FxName);
  if (voice.Effects == nullptr) return {};
  if (voice.Effects->DSPIndex == TXTPatch().DSPIndex) return "Off";
  return Hooks.EffectName ? Hooks.EffectName(set->Value(), voice.Effects->DSPIndex) : std::string();
}

bool TSoundBrowser::HasEffects() const noexcept {
  return std::ranges::any_of(banks.Banks(), [](const TBrowserBank& bank) {
    // Rows without the cells of inserts tell none.
    return !bank.List->Effects.empty() || std::ranges::any_of(bank.List->Inserts, TellsInserts);
  });
}

bool TSoundBrowser::Select(const TSoundPlace& place) {
  const TPatch* row = IsOpen() ? banks.RowAt(place) : nullptr;
  if (row == nullptr) return false;
  if (Route().InstrumValue != set->Value()) {
    // The channel plays another instrument now; these tables are not its own.
    Btn_CancelClick();
    return false;
  }
  const TBrowserBank& bank = banks.Banks()[static_cast<std::size_t>(place.Bank)];
  if (!CanPlay(bank)) return false;
  EndNote();
  const TVoice voice = VoiceOf(place.Bank, *row);
  TVoiceMessage message;
  {
    const auto held = p.gate.Enter();
    message = Write(voice);
  }
  selected = newPlace = place;
  drums = bank.IsDrums;
  hearsNew = true;
  newVoice = VoiceLabel(row->Address() == OrganFlutes ? p.names.ProgramChangeName(channel, address)
                                                      : std::string(row->Name));
  SendVoice(message);
  if (withDSP && Hooks.SendVoiceEffects) Hooks.SendVoiceEffects(channel, voice);
  if (Hooks.SoundChanged) Hooks.SoundChanged(channel);
  HearNote();
  return true;
}

/// Writes a sound into the events in force and the desk; what the song has no event for stays on the
/// desk until the sound is accepted. The message for the device.
TVoiceMessage TSoundBrowser::Write(const TVoice& voice) {
  TMidiChannelData& data = p.song.MidiData[static_cast<std::size_t>(channel)];
  journal.TouchController(BankMSB);
  journal.TouchController(BankLSB);
  journal.TouchProgram();
  const TAddress& chosen = voice.Row->Address();
  p.names.UpdateMSB_LSB_PC(channel, chosen);
  if (data.PatchEvent != nullptr) data.PatchEvent->DLength = MessageLength(ProgramChange);
  if (chosen.CC00 >= 0) data.CtrlArray[BankMSB].Value = static_cast<std::uint8_t>(chosen.CC00);
  if (chosen.CC32 >= 0) data.CtrlArray[BankLSB].Value = static_cast<std::uint8_t>(chosen.CC32);
  address = Query().Address;
  chosenFor = SoundEvents();
  TVoiceMessage message{.Address = address};
  if (!withDSP || voice.Effects == nullptr) return message;
  message.Controllers = ValuesOf(*voice.Effects);
  for (std::size_t i = 0; i < VoiceControllers.size(); ++i)
    if (!WriteController(i, message.Controllers[i])) message.Controllers[i] = -1;
  return message;
}

/// Writes a controller that a sound brings. False if the song has no event for it.
bool TSoundBrowser::WriteController(std::size_t index, int value) {
  const std::uint8_t number = VoiceControllers[index];
  TCtrl& entry = p.song.MidiData[static_cast<std::size_t>(channel)].CtrlArray[number];
  if (entry.Event == nullptr || value < 0) return false;
  journal.TouchController(number);
  controllersWritten[index] = true;
  // A placeholder stays one while it says what the sound wants.
  const bool isNews = !entry.Event->IsRemoved() || entry.Event->Value[1] != value;
  entry.Value = entry.Event->Value[1] = static_cast<std::uint8_t>(value);
  if (isNews) entry.Event->DLength = MessageLength(Controller);
  return true;
}

void TSoundBrowser::SendVoice(const TVoiceMessage& voice) {
  try {
    if (preview.Send(channel, voice)) heard = true;
  } catch (const EMidiOutputError& failure) {
    TellPortFailure(failure.what());
  }
}

void TSoundBrowser::TellPortFailure(const std::string& text) {
  if (!std::exchange(portFailed, true)) p.messages.Show(text);
}

/// The sound of the opening as it stands in the song again. A bank that the song does not set is the
/// one that the instrument takes for it.
TVoiceMessage TSoundBrowser::OldMessage() const {
  TVoiceMessage message{.Address = oldAddress};
  const TBank missing = p.names.MissingBank(channel);
  if (message.Address.CC00 < 0) message.Address.CC00 = missing.MSB;
  if (message.Address.CC32 < 0) message.Address.CC32 = missing.LSB;
  const TMidiChannelData& data = p.song.MidiData[static_cast<std::size_t>(channel)];
  for (std::size_t i = 0; i < VoiceControllers.size(); ++i) {
    const std::uint8_t value = data.CtrlArray[VoiceControllers[i]].Value;
    if (controllersWritten[i] && value != NoControllerValue) message.Controllers[i] = value;
  }
  return message;
}

void TSoundBrowser::Btn_OldVoiceClick() {
  if (!IsOpen()) return;
  EndNote();
  TVoiceMessage message;
  {
    const auto held = p.gate.Enter();
    journal.Restore();
    address = oldAddress;
    message = OldMessage();
  }
  selected = oldPlace;
  hearsNew = false;
  drums = PlaysDrums(*set->Member().Family, Query());
  if (newPlace.IsSet()) {
    SendVoice(message);
    if (Hooks.RestoreVoiceEffects) Hooks.RestoreVoiceEffects(channel);
    if (Hooks.SoundChanged) Hooks.SoundChanged(channel);
  }
  HearNote();
}

void TSoundBrowser::Btn_NewVoiceClick() {
  if (IsOpen() && newPlace.IsSet()) Select(newPlace);
}

/// The note that follows a choice. While the song plays it lets the sound be heard by itself; the note
/// then only helps where nothing else of the song sounds.
void TSoundBrowser::HearNote() {
  const bool isPlaying = Hooks.IsPlaying && Hooks.IsPlaying();
  if (IsSolo() || (PlayANoteKey && !isPlaying)) PlayANote();
}

bool TSoundBrowser::PlayANote() {
  if (!IsOpen()) return false;
  try {
    return preview.Play(channel, PlayANoteKey.value_or(DefaultPreviewKey), PlayANoteVelocity);
  } catch (const EMidiOutputError& failure) {
    TellPortFailure(failure.what());
    return false;
  }
}

TSoundEvents TSoundBrowser::SoundEvents() const {
  const TMidiChannelData& data = p.song.MidiData[static_cast<std::size_t>(channel)];
  return {data.CtrlArray[BankMSB].Event, data.CtrlArray[BankLSB].Event, data.PatchEvent};
}

/// Where the bank decides, the channel becomes one of drums or ceases to be one.
void TSoundBrowser::SetDrumPart() {
  constexpr int mostDrumParts = 3;
  const DrumRule rule = set->Member().Family->Drums;
  if (rule == DrumRule::Part || rule == DrumRule::Channel10OrPart) return;
  TMidiChannelData& data = p.song.MidiData[static_cast<std::size_t>(channel)];
  if (drums == (data.DrumPart > 0)) return;
  int parts = 0;
  for (const TMidiChannelData& other : p.song.MidiData) parts = std::max(parts, int{other.DrumPart});
  data.DrumPart =
      drums ? static_cast<std::uint8_t>(std::min(parts + 1, mostDrumParts)) : std::uint8_t{0};
}

bool TSoundBrowser::CanRename(const TSoundPlace& place) const {
  if (!IsOpen() || banks.RowAt(place) == nullptr || p.options.DataPath.empty()) return false;
  const TBrowserBank& bank = banks.Banks()[static_cast<std::size_t>(place.Bank)];
  return bank.IsCustom() && !bank.Kits && bank.List->FromUser;
}

bool TSoundBrowser::LB_CustomSoundsEditEditDone(const TSoundPlace& place, std::string_view name) {
  if (!CanRename(place)) return false;
  const TPatch* row = banks.RowAt(place);
  const TBrowserBank& bank = banks.Banks()[static_cast<std::size_t>(place.Bank)];
  const auto index = static_cast<std::int32_t>(row - bank.Rows().data());
  if (!RenameCustomSound(bank, index, name, p.options.DataPath, p.messages)) return false;
  Reload();
  if (Hooks.SoundChanged)
    for (int c = 0; c < ChannelCount; ++c) Hooks.SoundChanged(c);
  return true;
}

/// Reads the lists anew. Places may differ then; the sounds are found again by their numbers.
void TSoundBrowser::Reload() {
  const auto numbersAt = [this](const TSoundPlace& place) {
    const TPatch* row = banks.RowAt(place);
    return row == nullptr ? TAddress() : row->Address();
  };
  const TAddress wanted[] = {numbersAt(selected), numbersAt(oldPlace), numbersAt(newPlace)};
  const int value = set->Value();
  banks = {};
  p.sets.Unload(value);
  p.sets.Load(value, BrowserLoadSettings(p.settings, p.options, value), p.messages);
  set = p.sets.Find(value);
  banks = TBrowserBanks(*set);
  const auto find = [this](const TAddress& numbers) {
    TSoundQuery query = Query();
    query.Address = numbers;
    const TSoundName name = NameSound(*set, query, {});
    return numbers.Patch >= 0 && name.Known ? banks.PlaceOf(name.Row) : TSoundPlace();
  };
  selected = find(wanted[0]);
  oldPlace = find(wanted[1]);
  newPlace = find(wanted[2]);
  if (const TPatch* row = banks.RowAt(oldPlace)) oldVoice = VoiceLabel(row->Name);
  if (!newPlace.IsSet())
    newVoice = oldVoice;
  else
    newVoice = VoiceLabel(banks.RowAt(newPlace)->Name);
}

}  // namespace Sonarello
