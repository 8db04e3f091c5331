// Sonarello: the first controllers and programs of each channel.
#include "core/EventList.h"
#include "core/MidiFunctions.h"

namespace Sonarello {

namespace {

/// Gathers first values track by track. The remote sequence on channel 16 (bank select MSB 77, bank
/// select LSB, program) steers a display device: its events never count as the song's.
class FirstValueScan {
 public:
  explicit FirstValueScan(Song& s) : song(s) {}

  void Clear() {
    song.FirstPatches.fill(nullptr);
    for (auto& channel : song.FirstControllers) channel.fill(nullptr);
    for (TMidiChannelData& channel : song.MidiData) {
      channel.Patch = -1;
      channel.PatchEvent = nullptr;
      channel.CtrlArray.fill({});
    }
  }

  void Scan(const TMyTrack& track) {
    remoteStart = NoStart;
    ForEachEvent(track, [&](PtrMidiEvent e) {
      if (e->Kind() == Controller) {
        if (song.FirstControllers[Index(e)][e->Value[0]] == nullptr) TakeController(e);
      } else if (e->Kind() == ProgramChange) {
        if (song.FirstPatches[Index(e)] == nullptr) TakeProgram(e);
      }
    });
  }

 private:
  static constexpr std::int32_t NoStart = -100;  ///< so far off that nothing follows it closely
  static constexpr int BankMSB = 0;
  static constexpr int BankLSB = 32;
  static constexpr int RemoteChannel = 15;
  static constexpr int RemoteBank = 77;
  static constexpr std::int32_t LastStart = 100;  ///< ticks below which a remote sequence starts
  static constexpr std::int32_t LSBWithin = 20;   ///< ticks from the start
  static constexpr std::int32_t ProgramWithin = 40;

  static std::size_t Index(PtrMidiEvent e) { return static_cast<std::size_t>(e->Channel()); }
  [[nodiscard]] bool Started() const { return remoteStart > NoStart; }

  void TakeController(PtrMidiEvent e) {
    const bool remote = e->Channel() == RemoteChannel;
    if (remote && e->Value[0] == BankMSB && e->Value[1] == RemoteBank && e->Position < LastStart) {
      song.PromptaRemoteCtrl00 = e;
      remoteStart = e->Position;
    } else if (remote && e->Value[0] == BankLSB && Started()) {
      if (e->Position - remoteStart < LSBWithin)
        song.PromptaRemoteCtrl32 = e;
      else
        BreakSequence();
    } else {
      song.FirstControllers[Index(e)][e->Value[0]] = e;
      song.MidiData[Index(e)].CtrlArray[e->Value[0]] = {e, e->Value[1]};
    }
  }

  void TakeProgram(PtrMidiEvent e) {
    if (e->Channel() == RemoteChannel && Started()) {
      if (e->Position - remoteStart < ProgramWithin)
        song.PromptaRemotePatch = e;
      else
        BreakSequence();
      remoteStart = NoStart;
      return;
    }
    song.FirstPatches[Index(e)] = e;
    song.MidiData[Index(e)].Patch = static_cast<std::int8_t>(e->Value[0]);
    song.MidiData[Index(e)].PatchEvent = e;
  }

  void BreakSequence() {
    song.PromptaRemoteCtrl00 = song.PromptaRemoteCtrl32 = song.PromptaRemotePatch = nullptr;
    remoteStart = NoStart;
  }

  Song& song;
  std::int32_t remoteStart = NoStart;
};

}  // namespace

void TMidiFunctions::SetFirstValues() {
  FirstValueScan scan(song);
  scan.Clear();
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t) {
    const TMyTrack& track = song.MidiTrack[static_cast<std::size_t>(t)];
    if (!track.TrkIgnore) scan.Scan(track);
  }
}

}  // namespace Sonarello
