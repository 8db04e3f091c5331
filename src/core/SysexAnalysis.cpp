#include "core/SysexAnalysis.h"

#include <algorithm>
#include <new>

#include "core/DeviceSysex.h"
#include "core/DrumPartSysex.h"
#include "core/GSDelay.h"
#include "core/PartEQ.h"
#include "core/SongBuilding.h"
#include "core/SysexTracks.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

using enum SysexRoutine;

constexpr Reason ForeignReset = {"Reset eines anderen Instruments", "reset of another instrument"};
constexpr Reason ForeignSysex = {"Sysex eines anderen Instruments", "sysex of another instrument"};

/// What a Remove routine drops; a routine may have several rows.
struct RemovalRow {
  SysexRoutine Routine;
  std::array<std::uint8_t, 10> Start;  ///< bytes behind the 0xF0
  std::size_t Length;                  ///< bytes of `Start` that count
  bool Whole;                          ///< the sysex is these bytes, not merely begins with them
  std::int32_t AtLeast;                ///< least `DLength`
  const Reason& Why;
};
constexpr RemovalRow Removals[] = {
    {RemoveGMSysex, {0x7E, 0x7F, 0x09, 0x01, 0xF7}, 5, true, 5, ForeignReset},
    {RemoveGM2Sysex, {0x7E, 0x7F, 0x09, 0x03, 0xF7}, 5, true, 5, ForeignReset},
    {RemoveRolandGSSysex,
     {0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7},
     10,
     true,
     10,
     ForeignReset},
    {RemoveRolandSysex, {0x41, 0x10, 0x42}, 3, false, 0, ForeignSysex},
    {RemoveRolandSysex, {0x41, 0x10, 0x45, 0x12}, 4, false, 0, ForeignSysex},
    {RemoveKetronSysex, {0x26}, 1, false, 0, ForeignSysex},
    {RemoveBigKetronSysex, {0x26}, 1, false, 41, ForeignSysex},
    {RemoveYamahaSysex, {0x43}, 1, false, 0, ForeignSysex},
    {RemoveYamahaDSPSysex, {0x43, 0x10, 0x4C}, 3, false, 4, ForeignSysex},
    {RemoveKN6000Sysex,
     {0x50, 0x2C, 0x20, 0x7E, 0x1F, 0x00, 0x00, 0x7F, 0x00, 0xF7},
     10,
     true,
     10,
     ForeignReset},
};

bool IsNamedBy(const RemovalRow& row, const TypMidiEvent& event) {
  const std::span<const std::uint8_t> bytes = std::span(row.Start).first(row.Length);
  if (event.DLength < row.AtLeast) return false;
  return row.Whole ? event.Meta.Equals(bytes) : event.Meta.StartsWith(bytes);
}

/// Where the organ-flute settings of an instrument's parts are kept.
struct OrganFluteRow {
  int InstrumValue;
  Song::TPartEvents Song::*Parts;
};
constexpr OrganFluteRow OrganFluteRows[] = {
    {54, &Song::TyrosOrganFluteSysexs}, {62, &Song::TyrosOrganFluteSysexs},
    {74, &Song::TyrosOrganFluteSysexs}, {80, &Song::TyrosOrganFluteSysexs},
    {87, &Song::GenosOrganFluteSysexs}, {97, &Song::PSRSX900OrganFluteSysexs},
};

// The instruments send their drawbars under either of two addresses.
constexpr std::uint8_t OrganFlutePrefix[] = {0x43, 0x73, 0x01, 0x06, 0x0B, 0x00, 0x00, 0x01, 0x06};
constexpr std::uint8_t OrganFluteBlockPrefix[] = {0x43, 0x73, 0x01, 0x11, 0x00, 0x50, 0x10};
constexpr std::int32_t OrganFluteLength = 29;
constexpr std::size_t OrganFlutePartIndex = 9;

bool IsOrganFlute(const TypMidiEvent& event) {
  return event.DLength == OrganFluteLength &&
         (event.Meta.StartsWith(OrganFlutePrefix) || event.Meta.StartsWith(OrganFluteBlockPrefix)) &&
         event.Meta[OrganFlutePartIndex] < ChannelCount;
}

/// Fits the sysexes of one song to one instrument.
class SysexFitting {
 public:
  SysexFitting(SongSysexs& s, const SongHooks& h, int v) : sysexs(s), hooks(h), instrumValue(v) {}

  void Run(SysexRoutine routine) {
    if (!IsRemoval(routine)) FlushRemovals();
    switch (routine) {
      case RemoveGMSysex:
      case RemoveGM2Sysex:
      case RemoveRolandGSSysex:
      case RemoveRolandSysex:
      case RemoveKetronSysex:
      case RemoveBigKetronSysex:
      case RemoveYamahaSysex:
      case RemoveYamahaDSPSysex:
      case RemoveKN6000Sysex: return pendingRemovals.push_back(routine);
      case InsertGMSysex:
      case InsertGM2Sysex:
      case InsertXGSysex:
      case InsertGSSysex:
      case InsertGSReverbSysex:
      case InsertMBMusicSysex:
      case InsertMP11Sysex:
      case InsertKN6000Sysex:
      case InsertKetronSysex:
      case InsertKetronSD1000Sysex:
      case InsertLimexSysex:
      case InsertSonicCellReverbLevelSysex:
        InsertDeviceSysex(sysexs, routine);
        return InsertDrumPartSysexs(sysexs, routine);
      case InsertMotifESInsertsSysex:
      case InsertMotifXFInsertsSysex:
      case InsertMotifXSInsertsSysex: return InsertMotifInsertsSysex(sysexs, routine);
      case InsertGSDelaySysex:
      case InsertMP11DelaySysex: return InsertDelaySysex(sysexs, routine);
      case SearchOrganFluteSysex: return Sonarello::SearchOrganFluteSysex(sysexs, instrumValue);
      case SearchKorgPartEQSysex:
      case SearchRolandBK9PartEQSysex:
      case SearchRolandIntegra7PartEQSysex: return SearchPartEQSysex(sysexs, routine);
      case SearchRolandSCFXInsertSysex: return SearchRolandInserts();
      case ReadEffectMemory: return ReadEffects();
      case ForgetXGSystemOnPresent: sysexs.song.XGSystemOnPresentOnLoad = false; return;
    }
  }

  /// Carries out removals that still wait: those in a row take one pass over the sysexes.
  void FlushRemovals() {
    if (!pendingRemovals.empty()) RemoveSysexs(sysexs, pendingRemovals);
    pendingRemovals.clear();
  }

 private:
  static bool IsRemoval(SysexRoutine routine) {
    return std::ranges::find(Removals, routine, &RemovalRow::Routine) != std::end(Removals);
  }
  void SearchRolandInserts() {
    const bool found =
        hooks.SearchRolandSCFXInsertSysex && hooks.SearchRolandSCFXInsertSysex(sysexs.song);
    if (hooks.RolandInsertsFound) hooks.RolandInsertsFound(sysexs.song, found);
  }
  void ReadEffects() {
    if (hooks.ReadEffectMemory && sysexs.song.DSPTrackOf(instrumValue) != nullptr)
      hooks.ReadEffectMemory(sysexs.song);
  }

  SongSysexs& sysexs;
  const SongHooks& hooks;
  int instrumValue;
  std::vector<SysexRoutine> pendingRemovals;
};

/// Lets go of what an earlier analysis knew. The delay controls of the desk are off from now on.
void ForgetDeviceSysexs(Song& song) {
  song.RolandDelayTimeSysexEvent = song.RolandDelayFeedbackSysexEvent = nullptr;
  song.RolandDelaySysexTrack = -1;
  song.RolandGSResetPosition = 2;
  song.MotifSysex = nullptr;
  song.MotifInsertsArray.reset();
  for (Song::TPartEvents* parts :
       {&song.RolandDrumSysexArray, &song.MBMusicDrumSysexArray, &song.MP11DrumsSysexArray,
        &song.LimexDrumsSysexArray, &song.KetronDrumsSysexArray, &song.TyrosOrganFluteSysexs,
        &song.GenosOrganFluteSysexs, &song.PSRSX900OrganFluteSysexs, &song.KorgPaXXXPartEQ,
        &song.RolandBK9PartEQ, &song.RolandIntegra7PartEQ})
    parts->fill(nullptr);
}

/// The setup is placed in front of the End of track, which stands at the song's end on every track.
void MoveEndsOfTrack(Song& song) {
  for (std::int32_t t = 0; t < song.NumberOfSourceTracks; ++t) {
    PtrMidiEvent last = song.MidiTrack[static_cast<std::size_t>(t)].TrkLastEvent;
    if (last != nullptr && last->IsEndOfTrack())
      last->Position = std::max(last->Position, song.MaxSongPosition);
  }
}

}  // namespace

void RemoveSysexs(SongSysexs& sysexs, std::span<const SysexRoutine> routines) {
  std::vector<const RemovalRow*> rows;
  for (const RemovalRow& row : Removals)
    if (std::ranges::find(routines, row.Routine) != routines.end()) rows.push_back(&row);
  sysexs.ForEach([&](const TSourceSysex& sysex) {
    for (const RemovalRow* row : rows)
      if (IsNamedBy(*row, *sysex.Event)) return sysexs.Drop(sysex, row->Why);
  });
}

void SearchOrganFluteSysex(SongSysexs& sysexs, int instrumValue) {
  const auto row = std::ranges::find(OrganFluteRows, instrumValue, &OrganFluteRow::InstrumValue);
  if (row == std::end(OrganFluteRows)) return;
  Song::TPartEvents& parts = sysexs.song.*row->Parts;
  sysexs.ForEach([&](const TSourceSysex& sysex) {
    if (IsOrganFlute(*sysex.Event)) parts[sysex.Event->Meta[OrganFlutePartIndex]] = sysex.Event;
  });
}

void TMidiFunctions::CheckSysexs() {
  const auto fail = [&](const std::string& text) {
    messages.Show(text);
    throw EMidiError(text);
  };
  const std::span<const TMidiRouting> table = routes.MidiRouting();
  ForgetDeviceSysexs(song);
  try {
    if (options.AutoSysex) FitSysexs(table.empty() ? 0 : table[0].InstrumValue);
  } catch (const EMidiError& e) {
    fail(e.what());
  } catch (const std::bad_alloc&) {
    fail(OutOfMemoryText());
  }
  try {
    song.SongNameEvent = options.InsertSongName ? EnsureSongName(song) : nullptr;
    if (options.SysexsOnExtraTrack && song.MidiFileOrgFormat != 0)
      MakeExtraSysexTrack(song, SourceSysexes, table.empty() ? 0 : table[0].Delay);
  } catch (const EMidiError&) {
    fail(ReaderOutOfMemory);
  } catch (const std::bad_alloc&) {
    fail(ReaderOutOfMemory);
  }
}

void TMidiFunctions::FitSysexs(int instrumValue) {
  if (song.NumberOfSourceTracks == 0) return;
  SongSysexs sysexs(song, options, SourceSysexes);
  SysexFitting fitting(sysexs, hooks, instrumValue);
  const std::span<const PolicyStep> steps = SysexPolicyOf(instrumValue);
  MoveEndsOfTrack(song);
  const bool hasInserts = std::ranges::any_of(
      steps, [](const PolicyStep& step) { return step.Routine == SearchRolandSCFXInsertSysex; });
  if (!hasInserts && hooks.RolandInsertsFound) hooks.RolandInsertsFound(song, false);
  for (const PolicyStep& step : steps)
    if (Holds(step.When, options)) fitting.Run(step.Routine);
  fitting.FlushRemovals();
  sysexs.Close();
}

}  // namespace Sonarello
