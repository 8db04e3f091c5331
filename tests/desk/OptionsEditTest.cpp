#include "desk/OptionsEdit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "desk/OptionsEditFields.h"
#include "desk/SettingsKeys.h"
#include "helpers/InGerman.h"

namespace Sonarello {

namespace {

using Strings = std::vector<std::string>;

TOptionsInput Two() {
  TOptionsInput input;
  input.SongOptions.MultiMidi = true;
  input.Routes[0] = {"Yamaha Genos", "A"};
  input.Routes[1] = {"GM Soundset", "B"};
  input.Outputs = {"A", "B", "C"};
  input.Inputs = {"In"};
  return input;
}

TEST(OptionFields, AreOnePerKeyWithAnExplanation) {
  std::set<std::string_view> keys;
  for (const TOptionField& field : OptionFields()) {
    EXPECT_TRUE(keys.insert(field.Key).second) << field.Key;
    const TSettingsKey* key = FindSettingsKey(field.Key);
    ASSERT_NE(key, nullptr) << field.Key;
    EXPECT_EQ(key->Key, field.Key);
    EXPECT_FALSE(field.German.empty() || field.English.empty()) << field.Key;
    const bool isCheck = field.Control == TOptionControl::Check;
    const bool isNumber = field.Control == TOptionControl::Number;
    EXPECT_FALSE(isCheck && key->Kind == TKeyKind::Text) << field.Key;
    EXPECT_FALSE(isNumber && key->Kind != TKeyKind::Number) << field.Key;
    EXPECT_TRUE(field.Needs.empty() || FindOptionField(field.Needs) != nullptr) << field.Key;
  }
}

TEST(OptionFields, ReachEveryOptionOfTheSongCore) {
  for (const TOption& option : OptionTable())
    EXPECT_NE(FindOptionField(option.Key), nullptr) << option.Key;
}

/// Where the settings that are not in the window are changed instead.
TEST(OptionFields, ReachEverySettingOfTheDeskThatHasNoPlaceOfItsOwn) {
  const std::set<std::string_view> elsewhere = {"DestPath",
                                                "SourcePath",           // the file dialogs
                                                "LyricsFormMaximized",  // the lyrics window
                                                "MidiOutputDeviceID",   // the routes go by names
                                                "x64_AutoSaveVSTiSet",
                                                "x64_IgnoreRolandSCVAChunk",
                                                "x64_VSTiEnabled",  // the plug-in window
                                                "x64_VSTiAudioDeviceName",
                                                "x64_VSTiShowEditorOnStart",
                                                "x64_VSTiSourcePath"};
  for (const TSettingsKey& key : SettingsKeys()) {
    if (std::holds_alternative<std::monostate>(key.Member)) continue;
    EXPECT_NE(FindOptionField(key.Key) != nullptr, elsewhere.contains(key.Key)) << key.Key;
  }
}

TEST(OptionFields, EveryItemOfAChoiceIsAValueOfItsKey) {
  for (const TOptionField& field : OptionFields())
    for (const TOptionItem& item : field.Items) {
      OptionsEdit edit(Two());
      EXPECT_TRUE(edit.SetValue(field.Key, item.Value)) << field.Key;
      EXPECT_EQ(edit.Value(field.Key), item.Value) << field.Key;
    }
}

TEST(OptionFields, EveryPageHasAGroupAndEveryGroupAPage) {
  ASSERT_EQ(OptionPages().size(), static_cast<std::size_t>(OptionPageCount));
  for (const TOptionPageInfo& page : OptionPages()) {
    EXPECT_EQ(&page, &OptionPages()[static_cast<std::size_t>(page.Page)]);
    EXPECT_TRUE(std::ranges::any_of(
        OptionGroups(), [&](const TOptionGroupInfo& group) { return group.Page == page.Page; }));
  }
  for (const TOptionField& field : OptionFields())
    EXPECT_TRUE(std::ranges::any_of(
        OptionGroups(), [&](const TOptionGroupInfo& group) { return group.Group == field.Group; }));
}

TEST(OptionsEdit, ChangesNothingUntilSomethingIsSet) {
  const OptionsEdit edit(Two());
  EXPECT_TRUE(edit.Changes().IsEmpty());
  EXPECT_EQ(edit.Changes().Flags, 0U);
  MemoryRegistry store;
  edit.Store(store);
  EXPECT_TRUE(store.Values("").empty());
}

TEST(OptionsEdit, AValueThatGoesBackIsNoChange) {
  OptionsEdit edit(Two());
  EXPECT_TRUE(edit.SetValue("SkinIndex", "1"));
  EXPECT_TRUE(edit.Changes().Has(TOptionChange::Theme));
  EXPECT_TRUE(edit.SetValue("SkinIndex", "0"));
  EXPECT_TRUE(edit.Changes().IsEmpty());
}

struct TExpectedChange {
  const char* Key;
  const char* Value;
  unsigned Flags;
};

TEST(OptionsEdit, TellsWhatMustBeDoneAnew) {
  const auto bits = [](TOptionChange change) { return static_cast<unsigned>(change); };
  for (const TExpectedChange& one : {
           TExpectedChange{"SkinIndex", "1", bits(TOptionChange::Theme)},
           {"ScaleIndex", "3", bits(TOptionChange::Scale)},
           {"Lang", "de", bits(TOptionChange::Language)},
           {"MultiMidi", "0", bits(TOptionChange::Routes)},
           {"VirtualSynthDelay", "5", bits(TOptionChange::Routes)},
           {"MidiOutput00", "C", bits(TOptionChange::Routes)},
           {"MidiInstrument00", "Korg Pa700",
            bits(TOptionChange::Routes) | bits(TOptionChange::MainInstrument) |
                bits(TOptionChange::Sounds)},
           {"LimexTE200", "1", bits(TOptionChange::Sounds)},
           {"RolandSCDefaultMapIdx", "2", bits(TOptionChange::Sounds)},
           {"MidiInputName", "In", bits(TOptionChange::Recording)},
           {"RecLatency", "5", bits(TOptionChange::Recording)},
           {"DisplayActive", "0", bits(TOptionChange::Display)},
           {"UseGermanChords", "1", bits(TOptionChange::Display)},
           {"ConfirmTerminate", "0", 0U},
       }) {
    OptionsEdit edit(Two());
    EXPECT_TRUE(edit.SetValue(one.Key, one.Value)) << one.Key;
    const TOptionChanges changes = edit.Changes();
    EXPECT_EQ(changes.Flags, one.Flags) << one.Key;
    EXPECT_EQ(changes.Keys, Strings{one.Key});
  }
}

TEST(OptionsEdit, WritesWhatChangedAndNothingElse) {
  MemoryRegistry store;
  store.WriteString("", "RecLatency", "7");  // by another program, since the window opened
  OptionsEdit edit(Two());
  edit.SetValue("ConfirmTerminate", "0");
  edit.SetValue("MinNoteLength", "5000");
  edit.SetRouteOutput(1, "C");
  edit.Store(store);
  EXPECT_EQ(store.Values(""),
            (Strings{"ConfirmTerminate", "MidiOutput01", "MinNoteLength", "RecLatency"}));
  EXPECT_EQ(store.ReadString("", "ConfirmTerminate", ""), "0");
  EXPECT_EQ(store.ReadString("", "MinNoteLength", ""), "960");
  EXPECT_EQ(store.ReadString("", "MidiOutput01", ""), "C");
  EXPECT_EQ(store.ReadString("", "RecLatency", ""), "7");
}

TEST(OptionsEdit, RefusesAValueThatIsNone) {
  OptionsEdit edit(Two());
  EXPECT_FALSE(edit.SetValue("RecLatency", "x"));
  EXPECT_FALSE(edit.SetValue("Nothing", "1"));
  EXPECT_EQ(edit.Value("Nothing"), "");
  EXPECT_TRUE(edit.Changes().IsEmpty());
}

TEST(OptionsEdit, TheSystemsLanguageIsNotStoredUnlessAnotherIsChosen) {
  OptionsEdit edit(Two());
  EXPECT_EQ(edit.Value("Lang"), "en");
  edit.SetValue("Lang", "en");
  EXPECT_TRUE(edit.Changes().IsEmpty());
  edit.SetValue("Lang", "de");
  EXPECT_TRUE(edit.Changes().Has(TOptionChange::Language));
  const InGerman german;
  EXPECT_EQ(OptionsEdit(Two()).Value("Lang"), "de");
}

TEST(OptionsEdit, LoadsAllRoutesEvenIfOnlyTheFirstIsInForce) {
  MemoryRegistry store;
  store.WriteString("", "MidiInstrument00", "Yamaha Genos");
  store.WriteString("", "MidiOutput00", "A");
  store.WriteString("", "MidiInstrument99", "Ketron SD2");
  store.WriteString("", "MidiOutput99", "B");
  const OptionsEdit edit(LoadOptionsInput(store, {"A"}, {"In"}));
  EXPECT_EQ(edit.Value("MultiMidi"), "0");
  EXPECT_EQ(edit.Route(99), (TEditedRoute{"Ketron SD2/SD4", "B"}));
  EXPECT_EQ(edit.ShownRoutes(), 100);
  EXPECT_TRUE(edit.Changes().IsEmpty());
  EXPECT_EQ(edit.InputChoices(), Strings{"In"});
}

TEST(Routes, ANewOneTakesAnOutputThatNoOtherHas) {
  OptionsEdit edit(Two());
  EXPECT_EQ(edit.UsedRoutes(), 2);
  EXPECT_TRUE(edit.IsRouteOpen(2));
  EXPECT_FALSE(edit.IsRouteOpen(3));
  edit.SetRouteInstrument(2, "Korg Pa700");
  EXPECT_EQ(edit.Route(2), (TEditedRoute{"Korg Pa700", "C"}));
  edit.SetRouteInstrument(3, "Korg Pa700");
  EXPECT_EQ(edit.Route(3).OutputName, "A");
  edit.SetRouteInstrument(3, "Ketron SD7");
  EXPECT_EQ(edit.Route(3).OutputName, "A");
}

TEST(Routes, ANewOneWithoutAnyOutputHasNone) {
  TOptionsInput input = Two();
  input.Outputs.clear();
  OptionsEdit edit(input);
  edit.SetRouteInstrument(2, "Korg Pa700");
  EXPECT_EQ(edit.Route(2).OutputName, "");
}

TEST(Routes, MoveUpBehindOneThatGoesAndTheFirstStays) {
  OptionsEdit edit(Two());
  edit.SetRouteInstrument(2, "Korg Pa700");
  edit.RemoveRoute(0);
  EXPECT_EQ(edit.UsedRoutes(), 3);
  edit.RemoveRoute(1);
  EXPECT_EQ(edit.Route(1), (TEditedRoute{"Korg Pa700", "C"}));
  EXPECT_EQ(edit.UsedRoutes(), 2);
  edit.RemoveRoute(100);
  edit.RemoveRoute(-1);
  EXPECT_EQ(edit.UsedRoutes(), 2);
  MemoryRegistry store;
  store.WriteString("", "MidiOutput01", "B");
  edit.RemoveRoute(1);
  edit.Store(store);
  EXPECT_FALSE(store.HasValue("", "MidiOutput01"));
}

TEST(Routes, AreOnlyTheFirstWithoutSeveralOutputs) {
  OptionsEdit edit(Two());
  edit.SetValue("MultiMidi", "0");
  EXPECT_TRUE(edit.IsRouteOpen(0));
  EXPECT_FALSE(edit.IsRouteOpen(1));
  EXPECT_FALSE(edit.IsRouteOpen(2));
}

TEST(Routes, ShowEightRowsAtLeastAndAHundredAtMost) {
  OptionsEdit edit(Two());
  EXPECT_EQ(edit.ShownRoutes(), 8);
  for (int i = 2; i < 100; ++i) edit.SetRouteInstrument(i, "GM Soundset");
  EXPECT_EQ(edit.ShownRoutes(), 100);
  EXPECT_FALSE(edit.IsRouteOpen(100));
}

TEST(Routes, OfferWhatIsConnectedAndWhatTheyNamed) {
  TOptionsInput input = Two();
  input.Routes[1].OutputName = "Gone";
  input.Desk.MidiInputName = "Old";
  const OptionsEdit edit(input);
  EXPECT_EQ(edit.OutputChoices(0), (Strings{"A", "B", "C"}));
  EXPECT_EQ(edit.OutputChoices(1), (Strings{"A", "B", "C", "Gone"}));
  EXPECT_EQ(edit.InputChoices(), (Strings{"In", "Old"}));
  EXPECT_TRUE(edit.IsOutputMissing(1));
  EXPECT_FALSE(edit.IsOutputMissing(0));
  EXPECT_FALSE(edit.IsOutputMissing(5));
}

TEST(Routes, WarnOfOutputsThatAreMissing) {
  OptionsEdit edit(Two());
  EXPECT_EQ(edit.RoutesWarning(), "");
  edit.SetRouteOutput(1, "Gone");
  EXPECT_EQ(edit.RoutesWarning(),
            "“Gone” is not connected. The route is skipped until the output is back.");
  edit.SetRouteOutput(2, "Lost");
  EXPECT_EQ(edit.RoutesWarning(),
            "“Gone”, “Lost” are not connected. The routes are skipped until the outputs are back.");
  edit.SetValue("MultiMidi", "0");
  EXPECT_EQ(edit.RoutesWarning(), "");
  edit.SetRouteOutput(0, "Gone");
  EXPECT_EQ(edit.RoutesWarning(), "“Gone” is not connected. Until the output is back, “A” plays.");
  const InGerman german;
  EXPECT_EQ(edit.RoutesWarning(),
            "„Gone“ ist nicht angeschlossen. Bis der Ausgang wieder da ist, spielt „A“.");
  edit.SetValue("MultiMidi", "1");
  EXPECT_EQ(edit.RoutesWarning(),
            "„Gone“, „Lost“ sind nicht angeschlossen. Die Routen werden übersprungen, bis "
            "die Ausgänge wieder da sind.");
  edit.RemoveRoute(2);
  edit.SetRouteOutput(0, "A");
  EXPECT_EQ(
      edit.RoutesWarning(),
      "„Gone“ ist nicht angeschlossen. Die Route wird übersprungen, bis der Ausgang wieder da ist.");
}

TEST(Routes, WarnOfMoreThanTheMenuCanOffer) {
  OptionsEdit edit(Two());
  for (int i = 2; i < 16; ++i) edit.SetRouteInstrument(i, "GM Soundset");
  EXPECT_EQ(edit.RoutesWarning(), "");
  edit.SetRouteInstrument(16, "GM Soundset");
  EXPECT_EQ(edit.RoutesWarning(), "The menu of a channel offers the first 16 routes only.");
  const InGerman german;
  EXPECT_EQ(edit.RoutesWarning(), "Das Menü eines Kanals bietet nur die ersten 16 Routen an.");
}

TEST(Explanations, SayWhyAnOptionDoesNothing) {
  OptionsEdit edit(Two());
  EXPECT_EQ(edit.WhyDisabled("YamahaAutoChorus"), "The instruments' effects are not built in yet.");
  EXPECT_EQ(edit.WhyDisabled("RecQuantize"), "Recording is not built in yet.");
  EXPECT_EQ(edit.WhyDisabled("LyricsSpotLine"), "The lyrics window is not built in yet.");
  EXPECT_EQ(edit.WhyDisabled("AutoShowEventEditor"), "");
  EXPECT_EQ(edit.WhyDisabled("AutoSysex"), "");
  EXPECT_EQ(edit.WhyDisabled("YamahaDSPsSysexDelta"), "");
  edit.SetValue("YamahaDSPsEnabled", "0");
  EXPECT_EQ(edit.WhyDisabled("YamahaDSPsSysexDelta"), "Takes effect with “Use Yamaha DSPs” only.");
  const InGerman german;
  EXPECT_EQ(edit.WhyDisabled("YamahaDSPsSysexDelta"), "Wirkt erst mit „Yamaha-DSPs benutzen“.");
  EXPECT_EQ(edit.WhyDisabled("YamahaAutoChorus"),
            "Die Effekte der Instrumente sind noch nicht eingebaut.");
}

TEST(Explanations, StandInBothLanguagesWithRangeAndDefault) {
  const OptionsEdit edit(Two());
  EXPECT_EQ(edit.Explanation("RecLatency"),
            "Recording is not built in yet.\n"
            "Recorded events are moved forward by this many milliseconds.\n0 to 1000, default 0.");
  EXPECT_EQ(edit.Explanation("Nothing"), "");
  for (const TOptionField& field : OptionFields())
    EXPECT_GT(edit.Explanation(field.Key).size(), 15U) << field.Key;
  const InGerman german;
  EXPECT_EQ(edit.Explanation("ConfirmTerminate"), "Vor dem Beenden wird nachgefragt.");
}

}  // namespace

}  // namespace Sonarello
