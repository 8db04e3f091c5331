#include "core/SysexAnalysis.h"

#include <map>
#include <set>

#include "helpers/SysexSong.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// One sysex of each kind that a Remove routine may drop, by a letter, and one that none drops.
const std::map<char, std::string> Kinds = {
    {'g', GMReset},
    {'2', GM2Reset},
    {'r', "41 10 42 12 40 01 30 03 0C F7"},
    {'e', "41 10 45 12 10 00 00 20 50 F7"},
    {'k', "26 7B 0F 01 F7"},
    {'y', "43 7B 00 01 F7"},
    {'d', "43 10 4C 02 01 00 01 00 F7"},
    {'u', "7D 01 02 F7"},
};
std::string BigKetron() {
  std::string hex = "26 7B 10";
  for (int i = 0; i < 37; ++i) hex += " 00";
  return hex + " F7";
}

/// Letters of the kinds that are left in a song of all kinds; 'K' is the big Ketron sysex.
std::string LeftOf(int instrument) {
  SysexSong bench(instrument);
  std::map<char, PtrMidiEvent> events;
  int tick = 100;
  for (const auto& [letter, hex] : Kinds) events[letter] = bench.Sysex(1, tick++, hex);
  events['K'] = bench.Sysex(1, tick, BigKetron());
  bench.Fit();
  std::string left;
  for (const auto& [letter, e] : events)
    if (e->DLength > 0) left += letter;
  return left;
}

TEST(SysexAnalysis, LeavesEachInstrumentTheSysexesThatAreNotForeignToIt) {
  // In ASCII order: GM2, big Ketron, Yamaha DSP, Roland SC display, GM, Ketron, Roland GS, free,
  // Yamaha.
  const std::map<std::string, std::set<int>> left = {
      {"gu", {0, 21, 23, 24, 29, 98, 99, 105}},
      {"eru", {1, 2, 3, 4, 15, 17, 22, 38, 83, 12, 60, 72}},
      {"duy", {5, 6, 7, 8, 9, 18, 19, 31, 33, 34, 41, 54, 59, 62, 70, 74, 80, 87, 97}},
      {"ku", {10, 11, 20, 30, 32, 40, 46, 47, 49, 50, 55, 73, 76, 79, 84, 92, 101, 104}},
      {"u", {13, 28, 45, 68, 53, 56, 65, 66, 77, 81, 85, 86, 88, 89, 93, 94, 95, 96, 67}},
      {"2u", {16, 14, 25, 36, 37, 48, 61, 78, 100, 42, 43, 52, 63, 64, 75, 82, 90, 91, 103}},
      {"uy", {26, 51, 69}},
      {"2eru", {71}},
      {"2Kdegkruy", {27, 35, 39, 44, 57, 58, 102}},
  };
  std::map<std::string, std::set<int>> found;
  for (int value = 0; value <= 105; ++value) found[LeftOf(value)].insert(value);
  EXPECT_EQ(found, left);
}

TEST(SysexAnalysis, InsertsWhatEachInstrumentWantsIntoASongWithoutSysex) {
  const std::string ketron = "2: 26 7B 0E 00 01 F7";
  const std::string delayTime = "80: 41 10 42 12 40 01 52 5C 11 F7";
  const std::string feedback = "90: 41 10 42 12 40 01 59 50 16 F7";
  const auto at2 = [](const char* hex) { return std::string("2: ") + hex; };
  const std::map<std::vector<std::string>, std::set<int>> wanted = {
      {{at2(GMReset)},
       {0, 21, 23, 24, 29, 98, 99, 105, 56, 65, 66, 77, 81, 85, 86, 88, 89, 93, 94, 95, 96}},
      {{at2(GSReset), delayTime, feedback}, {1, 2, 3, 4, 15, 17, 22, 38, 83, 60}},
      {{at2(XGReset)}, {5, 6, 7, 8, 9, 18, 19, 31, 33, 34, 41, 54, 59, 62, 70, 74, 80, 87, 97}},
      {{ketron}, {10, 11, 20, 30, 32, 40, 46, 47, 49, 50, 55, 73, 76, 79, 84, 92, 101, 104}},
      {{at2(GSReset)}, {12, 71, 72}},
      {{}, {13, 28, 27, 35, 39, 44, 57, 58, 102}},
      {{at2(GM2Reset)}, {16, 14, 25, 36, 37, 48, 61, 78, 42, 43, 52, 63, 64, 75, 82, 90, 91, 103}},
      {{"95: 43 10 7F 00 36 00 60 00 00 01 7F F7"}, {26}},
      {{"95: 43 10 7F 03 36 00 4D 00 00 01 7F F7"}, {51}},
      {{"95: 43 10 7F 12 36 00 4D 00 00 01 7F F7"}, {69}},
      {{"50: 41 10 00 00 25 12 10 00 06 01 7F 7A F7"}, {45, 68}},
      {{"2: 50 2C 20 7E 1F 00 00 7F 00 F7"}, {53}},
      {{"2: 41 00 42 12 40 00 7F 00 41 F7", "80: 41 00 42 12 40 01 52 5C 11 F7",
        "90: 41 00 42 12 40 01 59 50 16 F7"},
       {67}},
      {{"2: 41 00 42 12 40 00 7F 00 41 F7"}, {100}},
  };
  std::map<std::vector<std::string>, std::set<int>> found;
  for (int value = 0; value <= 105; ++value) {
    SysexSong bench(value);
    bench.Fit();
    std::vector<std::string> live = bench.Live(1);
    // The part equalizers have tests of their own.
    if (live.size() > 16) live.resize(live.size() - 16);
    found[live].insert(value);
  }
  EXPECT_EQ(found, wanted);
}

TEST(SysexAnalysis, KnowsEveryInstrumentOnce) {
  std::multiset<int> values;
  for (const SysexPolicy& policy : SysexPolicies()) {
    EXPECT_FALSE(policy.Steps.empty());
    values.insert(policy.InstrumValues.begin(), policy.InstrumValues.end());
  }
  std::vector<int> without;
  for (int value = 0; value <= 105; ++value) {
    EXPECT_LE(values.count(value), 1u) << value;
    if (values.count(value) == 0) without.push_back(value);
  }
  EXPECT_LE(*values.rbegin(), 105);
  // These have no fixed wishes: what the song brings stays.
  EXPECT_THAT(without, ElementsAre(27, 35, 39, 44, 57, 58, 102));
}

/// Which of the sysexes a single routine drops.
std::vector<std::string> DroppedBy(SysexRoutine routine, const std::vector<std::string>& hexes) {
  SysexSong bench(27);
  std::vector<PtrMidiEvent> events;
  for (const std::string& hex : hexes) events.push_back(bench.Sysex(1, 0, hex));
  bench.Fit();
  SongSysexs sysexs(bench.song, bench.options, bench.functions.SourceSysexes);
  RemoveSysexs(sysexs, std::array{routine});
  std::vector<std::string> dropped;
  for (std::size_t i = 0; i < events.size(); ++i)
    if (events[i]->DLength == 0) dropped.push_back(hexes[i]);
  return dropped;
}

TEST(SysexAnalysis, DropsAResetOnlyIfItIsTheWholeMessage) {
  const std::string longer = std::string(GMReset) + " F7";
  EXPECT_THAT(DroppedBy(SysexRoutine::RemoveGMSysex, {GMReset, longer, "7E 7F 09 01", GM2Reset}),
              ElementsAre(GMReset));
  EXPECT_THAT(DroppedBy(SysexRoutine::RemoveGM2Sysex, {GMReset, GM2Reset}), ElementsAre(GM2Reset));
  EXPECT_THAT(DroppedBy(SysexRoutine::RemoveRolandGSSysex,
                        {GSReset, "41 00 42 12 40 00 7F 00 41 F7", "41 10 42 12 40 00 7F 00 41"}),
              ElementsAre(GSReset));
  const std::string kn = "50 2C 20 7E 1F 00 00 7F 00 F7";
  EXPECT_THAT(DroppedBy(SysexRoutine::RemoveKN6000Sysex, {kn, "50 2C 20 7E 1F 00 00 7F 01 F7"}),
              ElementsAre(kn));
}

TEST(SysexAnalysis, TellsAFamilyByItsFirstBytes) {
  EXPECT_THAT(DroppedBy(SysexRoutine::RemoveRolandSysex,
                        {"41 10 42 F7", "41 10 45 12 F7", "41 10 45 11 F7", "41 00 42 12 F7"}),
              ElementsAre("41 10 42 F7", "41 10 45 12 F7"));
  EXPECT_THAT(DroppedBy(SysexRoutine::RemoveYamahaSysex, {"43 F7", "42 43 F7"}), ElementsAre("43 F7"));
  EXPECT_THAT(DroppedBy(SysexRoutine::RemoveYamahaDSPSysex, {"43 10 4C F7", "43 10 4C", "43 10 7F F7"}),
              ElementsAre("43 10 4C F7"));
}

TEST(SysexAnalysis, CountsAKetronSysexAsBigFrom41BytesOn) {
  const std::string big = BigKetron();
  const std::string smaller = big.substr(0, big.size() - 3);
  ASSERT_EQ(FromHex(big).size(), 41u);
  EXPECT_THAT(DroppedBy(SysexRoutine::RemoveBigKetronSysex, {big, smaller}), ElementsAre(big));
  EXPECT_THAT(DroppedBy(SysexRoutine::RemoveKetronSysex, {big, smaller}), ElementsAre(big, smaller));
}

TEST(SysexAnalysis, ChangesNothingWithAutoSysexOff) {
  SysexSong bench(1);
  bench.options.AutoSysex = false;
  bench.Sysex(0, 0, XGReset);
  bench.Sysex(1, 5, GMReset);
  bench.Fit();
  EXPECT_THAT(bench.Live(0), ElementsAre(std::string("0: ") + XGReset));
  EXPECT_THAT(bench.Live(1), ElementsAre(std::string("5: ") + GMReset));
  EXPECT_EQ(bench.song.RolandDelayTimeSysexEvent, nullptr);
  EXPECT_EQ(bench.song.RolandDelayFeedbackSysexEvent, nullptr);
  EXPECT_THAT(bench.log.Changes(), IsEmpty());
}

TEST(SysexAnalysis, DropsAnXGResetForARolandAndStillKnowsThatItWasThere) {
  SysexSong bench(1);
  bench.song.XGSystemOnPresentOnLoad = true;
  PtrMidiEvent xg = bench.Sysex(1, 0, XGReset);
  bench.Fit();
  EXPECT_EQ(xg->DLength, 0);
  EXPECT_FALSE(xg->Meta.empty());
  EXPECT_TRUE(bench.song.XGSystemOnPresentOnLoad);
}

TEST(SysexAnalysis, MakesAnXGSongForgetXGForAKorgOnly) {
  for (const int value : {0, 1, 10, 16, 42, 71, 87}) {
    SysexSong bench(value);
    bench.song.XGSystemOnPresentOnLoad = true;
    bench.Fit();
    EXPECT_EQ(bench.song.XGSystemOnPresentOnLoad, value != 42) << value;
  }
}

TEST(SysexAnalysis, LeavesTracksThatAreHeldOutAlone) {
  SysexSong bench(0, 4);
  bench.Track(2).TrkIgnore = true;
  bench.Sysex(2, 0, XGReset);
  bench.Sysex(2, 1, GMReset);
  bench.Fit();
  EXPECT_THAT(bench.Live(2), ElementsAre(std::string("0: ") + XGReset, std::string("1: ") + GMReset));
  // The reset of the held-out track does not serve the song, and its track takes none.
  EXPECT_THAT(bench.Live(1), ElementsAre(std::string("2: ") + GMReset));
}

TEST(SysexAnalysis, TellsWhatWasDroppedAndInsertedInTheUsersLanguage) {
  for (const bool german : {false, true}) {
    GermanLanguage = german;
    SysexSong bench(16);
    bench.Sysex(1, 3, GMReset);
    bench.Sysex(1, 4, XGReset);
    bench.Fit();
    GermanLanguage = false;
    EXPECT_THAT(
        bench.Told(ChangeKind::Dropped),
        ElementsAre(
            german ? "1/3 Reset eines anderen Instruments" : "1/3 reset of another instrument",
            german ? "1/4 Sysex eines anderen Instruments" : "1/4 sysex of another instrument"));
    EXPECT_THAT(bench.Told(ChangeKind::Inserted),
                ElementsAre(german ? "1/2 Reset des Instruments" : "1/2 the instrument's reset"));
  }
}

TEST(SysexAnalysis, FindsOrganFlutesUnderBothAddresses) {
  const std::string single = "43 73 01 06 0B 00 00 01 06 ";
  const std::string block = "43 73 01 11 00 50 10 08 08 ";
  const std::string eighteen = " 01 02 03 04 05 06 07 08 00 00 00 00 00 00 00 01 09 00 F7";
  const std::map<int, Song::TPartEvents Song::*> tables = {
      {54, &Song::TyrosOrganFluteSysexs}, {62, &Song::TyrosOrganFluteSysexs},
      {74, &Song::TyrosOrganFluteSysexs}, {80, &Song::TyrosOrganFluteSysexs},
      {87, &Song::GenosOrganFluteSysexs}, {97, &Song::PSRSX900OrganFluteSysexs}};
  for (const auto& [value, table] : tables) {
    SysexSong bench(value);
    bench.Sysex(1, 10, single + "0F" + eighteen);
    PtrMidiEvent last = bench.Sysex(1, 20, single + "0F" + eighteen);
    PtrMidiEvent other = bench.Sysex(2, 10, block + "03" + eighteen);
    bench.Sysex(2, 20, single + "10" + eighteen);
    bench.Sysex(2, 30, single + "05" + eighteen + " F7");
    ASSERT_EQ(last->DLength, 29);
    bench.Fit();
    const Song::TPartEvents& parts = bench.song.*table;
    EXPECT_EQ(parts[15], last) << value;
    EXPECT_EQ(parts[3], other) << value;
    EXPECT_EQ(std::count(parts.begin(), parts.end(), nullptr), 14) << value;
    EXPECT_GT(last->DLength, 0);
  }
}

TEST(SysexAnalysis, SearchesNoOrganFlutesWhenTheEffectMemoryIsOff) {
  SysexSong bench(87);
  bench.options.YamahaDSPsEnabled = false;
  bench.Sysex(1, 10,
              "43 73 01 06 0B 00 00 01 06 00 01 02 03 04 05 06 07 08 00 00 00 00 00 00 00 01 09 00 F7");
  bench.Fit();
  EXPECT_EQ(bench.song.GenosOrganFluteSysexs[0], nullptr);
}

TEST(SysexAnalysis, HasTheEffectMemoryReadForInstrumentsThatHaveOne) {
  std::set<int> read;
  for (int value = 0; value <= 105; ++value) {
    SysexSong bench(value);
    bench.hooks.ReadEffectMemory = [&, value](Song&) { read.insert(value); };
    bench.Fit();
    bench.options.YamahaDSPsEnabled = bench.options.MotifDSPsEnabled = false;
    bench.hooks.ReadEffectMemory = [](Song&) { ADD_FAILURE(); };
    bench.Fit();
  }
  EXPECT_THAT(read, UnorderedElementsAre(9, 26, 31, 41, 51, 54, 59, 62, 69, 70, 74, 80, 87, 97));
}

TEST(SysexAnalysis, SwitchesTheRolandInsertEditorByWhatIsFound) {
  for (const bool found : {false, true}) {
    SysexSong bench(22);
    std::vector<bool> told;
    bench.hooks.SearchRolandSCFXInsertSysex = [&](Song&) { return found; };
    bench.hooks.RolandInsertsFound = [&](Song&, bool on) { told.push_back(on); };
    bench.Fit();
    EXPECT_THAT(told, ElementsAre(found));
  }
  SysexSong bench(87);
  std::vector<bool> told;
  bench.hooks.SearchRolandSCFXInsertSysex = [](Song&) { return true; };
  bench.hooks.RolandInsertsFound = [&](Song&, bool on) { told.push_back(on); };
  bench.Fit();
  EXPECT_THAT(told, ElementsAre(false));
}

TEST(SysexAnalysis, ShowsAndRaisesAFailedAllocation) {
  for (const bool german : {false, true}) {
    GermanLanguage = german;
    SysexSong bench(1);
    for (int t = 0; t < 3; ++t) EndTrack(bench.song.Pool, bench.Track(t), bench.song.MaxSongPosition);
    bench.song.Pool.FailAt(5);
    EXPECT_THROW(bench.functions.CheckSysexs(), EMidiError);
    EXPECT_THAT(bench.messages.Shown,
                ElementsAre(german ? "Speicherzuordnungsfehler: Bitte mehr Speicher!"
                                   : "Error allocating memory!"));
    GermanLanguage = false;
  }
}

TEST(SysexAnalysis, FitsAFittedSongTheSame) {
  for (int value = 0; value <= 105; ++value) {
    SysexSong bench(value);
    bench.Sysex(0, 0, XGReset);
    bench.Sysex(1, 0, GMReset);
    bench.Sysex(1, 4, "41 10 42 12 40 1A 15 02 0F F7");
    bench.Sysex(2, 6, GSReset);
    bench.Fit();
    std::vector<std::vector<std::string>> first;
    for (int t = 0; t < 3; ++t) first.push_back(bench.Live(t));
    // The writer leaves removed events out.
    for (int t = 0; t < 3; ++t)
      for (PtrMidiEvent e = bench.Track(t).TrkFirstEvent->NextEvent; !e->IsEndOfTrack();) {
        PtrMidiEvent next = e->NextEvent;
        if (e->DLength == 0) Remove(bench.song, bench.Track(t), e);
        e = next;
      }
    bench.Fit();
    for (int t = 0; t < 3; ++t) EXPECT_EQ(bench.Live(t), first[static_cast<std::size_t>(t)]) << value;
  }
}

TEST(SysexAnalysis, GathersAHundredThousandSysexesAtTheStart) {
  SysexSong bench(42, 2);
  for (int i = 0; i < 50000; ++i) {
    bench.Sysex(0, i / 100, "42 7F 60 00 01 00 10 00 03 00 00 01 00 00 02 00 03 00 04 00 05 00 5A F7");
    bench.Sysex(1, i / 100, XGReset);
  }
  bench.options.SysexsOnExtraTrack = true;
  bench.song.Changes = nullptr;
  bench.Fit();
  EXPECT_EQ(bench.Live(bench.song.SysexTrack).size(), 17u);
}

}  // namespace
}  // namespace Sonarello
