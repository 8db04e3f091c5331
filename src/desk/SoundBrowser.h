// Sonarello: the sound browser: one for all instruments, fed by their tables.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/Options.h"
#include "core/Settings.h"
#include "desk/SoundBrowserBanks.h"
#include "desk/SoundBrowserJournal.h"
#include "desk/SoundBrowserLists.h"
#include "desk/SoundBrowserPreview.h"
#include "instruments/AutoRevoicer.h"
#include "instruments/SoundNames.h"

namespace Sonarello {

/// All that a browser works with. Everything outlives it.
struct TSoundBrowserParts {
  Song& song;
  SoundSets& sets;
  TSoundNames& names;
  const Options& options;
  const IRoutes& routes;
  ISettings& settings;
  IMessages& messages;
  SongGate& gate;
  TRealtimeData& realtime;
  IOutputs& outputs;
  TAutoRevoicer& revoicer;
};

/// A sound with what its list tells of its effects.
struct TVoice {
  const TPatch* Row = nullptr;
  const TXTPatch* Effects = nullptr;       ///< nil: the list tells none
  const TMotifInserts* Inserts = nullptr;  ///< nil: the list tells none
};

/// The events that a channel's sound stands in; nil where the song has none.
struct TSoundEvents {
  PtrMidiEvent BankMSB = nullptr;
  PtrMidiEvent BankLSB = nullptr;
  PtrMidiEvent PatchEvent = nullptr;

  friend bool operator==(const TSoundEvents&, const TSoundEvents&) = default;
};

/// What a browser asks of others. Called without the gate; unset ones do nothing.
struct TSoundBrowserHooks {
  std::function<bool()> IsPlaying;
  std::function<void(int channel)> SoundChanged;   ///< the strips show the sound anew; never mends it
  std::function<void(int channel)> EventsChanged;  ///< events came into the song or went out of it
  std::function<void()> Changed;                   ///< the song wants a backup
  std::function<void(int channel)> DrumsChanged;   ///< the kit of a drum editor has changed
  std::function<void(int channel)> DoSolo;         ///< solo of the channel is toggled
  std::function<void(std::int32_t milliseconds)> MoveToTimePosition;
  std::function<void(int channel, const TVoice&)> SendVoiceEffects;  ///< DSP and part EQ of a sound
  std::function<void(int channel)> RestoreVoiceEffects;  ///< DSP and part EQ as they were on opening
  std::function<std::string(int instrumValue, int DSPIndex)> EffectName;
  std::function<void()> RevoicerChanged;
  std::function<void()> Opened;  ///< for a channel; the window fills itself
  std::function<void()> Closed;  ///< accepted, cancelled or let go
};

/// The sound of one channel is chosen, heard and accepted or given back. Everything runs on the main
/// thread, also during playback. Each choice is written to the song at once, into the events that are
/// in force; Cancel takes all of it back.
class TSoundBrowser {
 public:
  TSoundBrowser(const TSoundBrowserParts& parts, TSendMidiData sender);
  TSoundBrowser(const TSoundBrowser&) = delete;
  TSoundBrowser& operator=(const TSoundBrowser&) = delete;

  TSoundBrowserHooks Hooks;

  // --- Opening and closing

  /// Opens for a channel (strip 0-15); one that is open is cancelled first. A channel without program
  /// gets one if the user wants it; Cancel takes it out again. False if it stays closed: no song, no
  /// such channel, no track for it, no tables of its instrument, or the user did not want a program.
  bool Open(int channel);
  [[nodiscard]] bool IsOpen() const noexcept { return set != nullptr; }
  /// True if it is open for an instrument (catalogue number).
  [[nodiscard]] bool IsOpenFor(int instrumValue) const noexcept {
    return IsOpen() && set->Value() == instrumValue;
  }
  /// Accepts the sound.
  void Btn_OKClick();
  /// The song is as it was on opening. To be called before the channel gets another output and when
  /// another channel is selected.
  void Btn_CancelClick();
  /// Closes without a touch to the song: it is about to be replaced.
  void LetGo();

  // --- What is shown

  [[nodiscard]] int MidiIndex() const noexcept { return channel; }  ///< the strip, 0-15
  [[nodiscard]] int MidiChannel() const;                            ///< the strip's number - 1
  [[nodiscard]] const std::string& Instrument() const noexcept { return instrument; }
  /// "Yamaha Genos sound set - midi-channel 4".
  [[nodiscard]] std::string Caption() const;
  /// True if the lists of drum kits show: one list, without categories.
  [[nodiscard]] bool ShowsDrums() const noexcept { return drums; }
  /// "Drumsets", or "Categories" with "Sounds" beside it.
  [[nodiscard]] std::string Heading() const;
  [[nodiscard]] const TBrowserBanks& Banks() const noexcept { return banks; }
  /// Indexes of the banks that show now.
  [[nodiscard]] std::vector<int> ShownBanks() const;
  /// The sound that is selected; not set if the tables do not know the channel's.
  [[nodiscard]] const TSoundPlace& Selected() const noexcept { return selected; }
  /// Where old and new voice stand; the new one is not set before a choice.
  [[nodiscard]] const TSoundPlace& OldPlace() const noexcept { return oldPlace; }
  [[nodiscard]] const TSoundPlace& NewPlace() const noexcept { return newPlace; }
  /// The effect that a sound brings: its name, "Off", or nothing if the list does not tell.
  [[nodiscard]] std::string EffectText(int bank, const TPatch& row) const;
  /// True if a list of the instrument tells effects.
  [[nodiscard]] bool HasEffects() const noexcept;
  [[nodiscard]] const std::string& OldVoice() const noexcept { return oldVoice; }
  [[nodiscard]] const std::string& NewVoice() const noexcept { return newVoice; }
  /// True while the new voice is the one that is heard.
  [[nodiscard]] bool HearsNew() const noexcept { return hearsNew; }
  /// The three numbers that are chosen now; -1 where the song has none.
  [[nodiscard]] const TAddress& Address() const noexcept { return address; }

  /// What is remembered for the instrument.
  [[nodiscard]] TBrowserSettings Settings() const {
    return ReadBrowserSettings(p.settings, instrument);
  }
  /// Remembers where the window stood, and its height (pixels).
  void StorePlace(int left, int top, int height);

  // --- Choosing

  /// A click on a sound. False if it is closed or has no such sound.
  bool Select(const TSoundPlace& place);
  void Btn_OldVoiceClick();
  void Btn_NewVoiceClick();
  /// Every sound whose name holds the text, in all lists that the channel can play.
  [[nodiscard]] std::vector<TSoundPlace> Search(std::string_view text) const;
  [[nodiscard]] bool PatchesWithDSP() const noexcept { return withDSP; }
  /// `CB_WithDSP`; remembered for the instrument.
  void SetPatchesWithDSP(bool on);

  // --- Hearing

  /// Key of the note that follows a choice, 0-127; nothing: none, unless the channel is soloed.
  std::optional<int> PlayANoteKey;
  int PlayANoteVelocity = 100;
  /// Notes play on a port that is opened for them, see `TSoundPreview`.
  void SetGrabMidiDriver(bool on) { preview.GrabMidiDriver = on; }
  /// Starts a note by hand: the chosen one, else C3. False if nothing sounds.
  bool PlayANote();
  /// Ends the note; `PlayANoteTimer` calls it.
  void EndNote() { preview.EndNote(); }
  [[nodiscard]] bool IsSounding() const noexcept { return preview.IsSounding(); }
  void CB_SoloMouseDown();
  [[nodiscard]] bool IsSolo() const;
  /// Moves the player to the channel's first note. False if there is none.
  bool Btn_GoToFirstNote();

  // --- Lists and revoicer

  /// Keeps old and new voice as a replacement. False if that is no use: another instrument than the
  /// main one, a drum channel, numbers missing, or nothing else was chosen.
  bool Btn_SaveToRevoicerClick();
  [[nodiscard]] bool CanSaveToRevoicer() const;
  [[nodiscard]] bool SortSounds() const;
  void PM_SortSoundsClick();
  bool PM_SaveVoicesClick(int bank);
  /// True for a sound of a list that the user keeps in a file.
  [[nodiscard]] bool CanRename(const TSoundPlace& place) const;
  /// Names a sound of the user's own list; the lists are loaded anew. False if nothing changed.
  bool LB_CustomSoundsEditEditDone(const TSoundPlace& place, std::string_view name);

 private:
  [[nodiscard]] const TMidiRouting& Route() const;
  [[nodiscard]] TSoundQuery Query() const;
  [[nodiscard]] TVoice VoiceOf(int bank, const TPatch& row) const;
  [[nodiscard]] bool CanPlay(const TBrowserBank& bank) const;
  [[nodiscard]] TSoundPlace FirstOf(int bank) const;
  [[nodiscard]] TSoundEvents SoundEvents() const;
  [[nodiscard]] bool InsertMissingProgram();
  void TakeOldVoice();
  TVoiceMessage Write(const TVoice& voice);
  bool WriteController(std::size_t index, int value);
  [[nodiscard]] TVoiceMessage OldMessage() const;
  void SendVoice(const TVoiceMessage& voice);
  void TellPortFailure(const std::string& text);
  void HearNote();
  bool WriteMissingBanks(std::string& failure);
  void SetDrumPart();
  void Reload();
  void Close();

  TSoundBrowserParts p;
  TSoundPreview preview;
  TSoundJournal journal;
  const SoundSet* set = nullptr;  ///< nil while closed
  std::string instrument;
  TBrowserBanks banks;
  int channel = 0;
  bool drums = false;
  bool withDSP = true;
  bool hearsNew = false;
  bool heard = false;  ///< a device was told another sound than that of the opening
  TAddress address;
  TAddress oldAddress;
  std::string oldVoice;
  std::string newVoice;
  TSoundPlace selected;
  TSoundPlace oldPlace;
  TSoundPlace newPlace;    ///< the last choice; not set before one
  TVoiceMessage parked;    ///< what was parked on opening
  TSoundEvents chosenFor;  ///< events in force when a sound was written last, or on opening
  std::array<bool, VoiceControllers.size()> controllersWritten{};
  bool portFailed = false;  ///< the user was told
};

}  // namespace Sonarello
