#include "Arguments.h"

#include <gmock/gmock.h>

#include "Composition.h"
#include "core/Texts.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

using Words = std::vector<std::string>;

std::optional<Setup> SetupOf(const Words& words, std::string& complaint) {
  const ParsedArguments parsed = ParseArguments(words);
  complaint = parsed.Complaint;
  return parsed.Todo ? MakeSetup(*parsed.Todo, complaint) : std::nullopt;
}

std::string ComplaintOf(const Words& words) {
  std::string complaint;
  EXPECT_FALSE(SetupOf(words, complaint));
  return complaint;
}

std::vector<std::string> RoutesOf(const Words& settings) {
  Words words = {"instruments"};
  for (const std::string& setting : settings) words.insert(words.end(), {"--set", setting});
  std::string complaint;
  const auto setup = SetupOf(words, complaint);
  EXPECT_EQ(complaint, "");
  std::vector<std::string> routes;
  if (setup)
    for (const TMidiRouting& route : setup->routes.Table)
      routes.push_back(std::to_string(route.InstrumValue) + " " + route.OutputName);
  return routes;
}

TEST(Arguments, TakeCommonOptionsOnBothSidesOfTheCommand) {
  for (const Words& words :
       {Words{"-i", "genos", "--json", "--set", "SpecialD=1", "show", "a.mid"},
        Words{"show", "a.mid", "-i", "genos", "--json", "--set", "SpecialD=1"},
        Words{"--json", "show", "--set=SpecialD=1", "--instrument=genos", "a.mid"}}) {
    const ParsedArguments parsed = ParseArguments(words);
    ASSERT_TRUE(parsed.Todo) << parsed.Complaint;
    EXPECT_EQ(parsed.Todo->Command, "show");
    EXPECT_EQ(parsed.Todo->Instrument, "genos");
    EXPECT_TRUE(parsed.Todo->Json);
    EXPECT_THAT(parsed.Todo->Settings, ElementsAre("SpecialD=1"));
    EXPECT_THAT(parsed.Todo->Files, ElementsAre("a.mid"));
  }
}

TEST(Arguments, TakeEveryWordBehindTwoDashesForAFile) {
  const ParsedArguments parsed = ParseArguments({"decode", "--", "--json", "-x", "show", "--"});
  ASSERT_TRUE(parsed.Todo) << parsed.Complaint;
  EXPECT_THAT(parsed.Todo->Files, ElementsAre("--json", "-x", "show", "--"));
  EXPECT_FALSE(parsed.Todo->Json);
}

TEST(Arguments, TakeFilesThatAreNamedLikeCommands) {
  const ParsedArguments parsed = ParseArguments({"decode", "show", "save"});
  ASSERT_TRUE(parsed.Todo) << parsed.Complaint;
  EXPECT_EQ(parsed.Todo->Command, "decode");
  EXPECT_THAT(parsed.Todo->Files, ElementsAre("show", "save"));
}

TEST(Arguments, KeepTheOrderOfSettings) {
  const ParsedArguments parsed =
      ParseArguments({"--set", "A=1", "show", "f", "--set", "B=2", "--set", "A=3"});
  ASSERT_TRUE(parsed.Todo);
  EXPECT_THAT(parsed.Todo->Settings, ElementsAre("A=1", "B=2", "A=3"));
}

TEST(Arguments, ReadTheWishesForANewSong) {
  const ParsedArguments parsed = ParseArguments(
      {"new", "-o", "x.mid", "--timebase", "384", "--signature", "6/8", "--tempo", "96"});
  ASSERT_TRUE(parsed.Todo) << parsed.Complaint;
  EXPECT_EQ(parsed.Todo->NewSong.SourceTimeBase, 384);
  EXPECT_EQ(parsed.Todo->NewSong.Numerator, 6);
  EXPECT_EQ(parsed.Todo->NewSong.Denominator, 8);
  EXPECT_EQ(parsed.Todo->NewSong.Tempo, 96);
}

TEST(Arguments, ReadTheAddressOfASound) {
  const ParsedArguments parsed = ParseArguments({"name", "--msb", "121", "--lsb", "0", "--program",
                                                 "127", "--channel", "10", "--drum-part", "2"});
  ASSERT_TRUE(parsed.Todo) << parsed.Complaint;
  EXPECT_EQ(parsed.Todo->MSB, 121);
  EXPECT_EQ(parsed.Todo->LSB, 0);
  EXPECT_EQ(parsed.Todo->Program, 127);
  EXPECT_EQ(parsed.Todo->Channel, 10);
  EXPECT_EQ(parsed.Todo->DrumPart, 2);
}

TEST(Arguments, LeaveWhatIsNotSaidOfASoundOpen) {
  const ParsedArguments parsed = ParseArguments({"name", "--program", "0"});
  ASSERT_TRUE(parsed.Todo) << parsed.Complaint;
  EXPECT_FALSE(parsed.Todo->MSB);
  EXPECT_FALSE(parsed.Todo->LSB);
  EXPECT_FALSE(parsed.Todo->Channel);
  EXPECT_FALSE(parsed.Todo->DrumPart);
}

TEST(Arguments, ReadWhatIsAskedOfTheSoundsOfAnInstrument) {
  const ParsedArguments sounds = ParseArguments({"sounds", "--list", "GM2", "--search", "Flöte"});
  ASSERT_TRUE(sounds.Todo) << sounds.Complaint;
  EXPECT_EQ(sounds.Todo->List, "GM2");
  EXPECT_EQ(sounds.Todo->Search, "Flöte");
  const ParsedArguments drums = ParseArguments({"drums", "--kit", "Room"});
  ASSERT_TRUE(drums.Todo) << drums.Complaint;
  EXPECT_EQ(drums.Todo->Kit, "Room");
  const ParsedArguments instruments = ParseArguments({"instruments", "--coverage"});
  ASSERT_TRUE(instruments.Todo) << instruments.Complaint;
  EXPECT_TRUE(instruments.Todo->Coverage);
}

TEST(Arguments, ReadTargetAndFormatOfEveryCommandThatSaves) {
  for (const Words& command : {Words{"save"}, Words{"fit"}, Words{"revoice", "--rules", "r.txt"}}) {
    Words words = command;
    words.insert(words.end(), {"a.mid", "b.mid", "-o", "out", "--format", "0"});
    const ParsedArguments parsed = ParseArguments(words);
    ASSERT_TRUE(parsed.Todo) << parsed.Complaint;
    EXPECT_THAT(parsed.Todo->Files, ElementsAre("a.mid", "b.mid"));
    EXPECT_EQ(parsed.Todo->Output, "out");
    EXPECT_EQ(parsed.Todo->Format, 0);
    EXPECT_EQ(parsed.Todo->Rules, command.front() == "revoice" ? "r.txt" : "");
  }
}

TEST(Arguments, SayWhatIsWrongWithTheQuestionForASound) {
  EXPECT_EQ(ComplaintOf({"fit", "a"}), "The target is missing: -o OUT");
  EXPECT_EQ(ComplaintOf({"revoice", "--rules", "r"}), "A file is missing");
  EXPECT_EQ(ComplaintOf({"revoice", "a", "-o", "b"}), "The rules are missing: --rules FILE");
  EXPECT_EQ(ComplaintOf({"name"}), "The program is missing: --program N");
  EXPECT_EQ(ComplaintOf({"drums", "--msb", "1"}), "The program is missing: --program N");
  EXPECT_EQ(ComplaintOf({"drums", "--kit", "a", "--program", "1"}),
            "--kit and --program exclude each other");
  EXPECT_THAT(ComplaintOf({"name", "--program", "128"}), HasSubstr("0 … 127"));
  EXPECT_THAT(ComplaintOf({"name", "--program", "0", "--msb", "-1"}), HasSubstr("--msb"));
  EXPECT_THAT(ComplaintOf({"name", "--program", "0", "--lsb", "x"}), HasSubstr("--lsb"));
  EXPECT_THAT(ComplaintOf({"name", "--program", "0", "--drum-part", "4"}), HasSubstr("0 … 3"));
  EXPECT_NE(ComplaintOf({"sounds", "a"}), "");
}

TEST(Arguments, SayInGermanWhatIsWrongWithTheQuestionForASound) {
  const InGerman german;
  EXPECT_EQ(ComplaintOf({"revoice", "a", "-o", "b"}), "Es fehlen die Regeln: --rules FILE");
  EXPECT_EQ(ComplaintOf({"name"}), "Es fehlt das Programm: --program N");
  EXPECT_EQ(ComplaintOf({"drums", "--kit", "a", "--program", "1"}),
            "--kit und --program schließen einander aus");
}

TEST(Arguments, SayWhatPlaysAndHow) {
  const ParsedArguments play = ParseArguments(
      {"play", "a.mid", "--from", "3:1", "--to", "9", "--loop", "1:1-2:1", "--port", "Keys"});
  ASSERT_TRUE(play.Todo) << play.Complaint;
  EXPECT_EQ(play.Todo->From, "3:1");
  EXPECT_EQ(play.Todo->To, "9");
  EXPECT_EQ(play.Todo->Loop, "1:1-2:1");
  EXPECT_EQ(play.Todo->Port, "Keys");
  const ParsedArguments render = ParseArguments({"render", "a.mid", "-o", "a.wav", "--bits", "16d"});
  ASSERT_TRUE(render.Todo) << render.Complaint;
  EXPECT_EQ(render.Todo->Bits, "16d");
  EXPECT_EQ(render.Todo->Output, "a.wav");
}

TEST(Arguments, SayWhatIsWrong) {
  EXPECT_EQ(ComplaintOf({}), "A command is missing");
  EXPECT_EQ(ComplaintOf({"show"}), "A file is missing");
  EXPECT_EQ(ComplaintOf({"save", "a.mid"}), "The target is missing: -o OUT");
  EXPECT_EQ(ComplaintOf({"new"}), "The target is missing: -o OUT");
  EXPECT_THAT(ComplaintOf({"show", "a", "b"}), HasSubstr("b"));
  EXPECT_THAT(ComplaintOf({"sing", "a.mid"}), HasSubstr("sing"));
  EXPECT_THAT(ComplaintOf({"show", "a", "--loud"}), HasSubstr("--loud"));
  EXPECT_THAT(ComplaintOf({"events", "a", "--track", "-1"}), HasSubstr("--track"));
  EXPECT_THAT(ComplaintOf({"events", "a", "--channel", "0"}), HasSubstr("1 … 16"));
  EXPECT_THAT(ComplaintOf({"events", "a", "--channel", "17"}), HasSubstr("1 … 16"));
  EXPECT_THAT(ComplaintOf({"events", "a", "--channel", "one"}), HasSubstr("\"one\""));
  EXPECT_THAT(ComplaintOf({"events", "a", "--channel", "1", "--track", "1"}), HasSubstr("exclude"));
  EXPECT_THAT(ComplaintOf({"save", "a", "-o", "b", "--format", "2"}), HasSubstr("0, 1"));
  EXPECT_THAT(ComplaintOf({"new", "-o", "b", "--timebase", "96"}), HasSubstr("384, 480"));
  EXPECT_THAT(ComplaintOf({"new", "-o", "b", "--signature", "5/4"}), HasSubstr("2/4, 3/4, 4/4, 6/8"));
  EXPECT_THAT(ComplaintOf({"new", "-o", "b", "--tempo", "19"}), HasSubstr("20 … 300"));
  EXPECT_THAT(ComplaintOf({"new", "-o", "b", "--tempo", "120.5"}), HasSubstr("20 … 300"));
  EXPECT_THAT(ComplaintOf({"show", "a", "--lang", "fr"}), HasSubstr("de, en"));
  EXPECT_THAT(ComplaintOf({"show", "a", "--set", "SpecialD"}), HasSubstr("=VALUE"));
  EXPECT_EQ(ComplaintOf({"show", "a", "--set", "MinNoteLength=x"}), "MinNoteLength: not a number");
  EXPECT_THAT(ComplaintOf({"show", "a", "-i", "Casio"}), HasSubstr("Unknown instrument: Casio"));
  EXPECT_NE(ComplaintOf({"show", "a", "-o", "b"}), "");
  EXPECT_NE(ComplaintOf({"show", "a", "--set"}), "");
}

TEST(Arguments, ListTheInstrumentsThatAnAmbiguousTextMayMean) {
  const std::string complaint = ComplaintOf({"show", "a", "-i", "sx"});
  EXPECT_EQ(complaint,
            "Several instruments match \"sx\":\n  MB Music PRO.MAX/SX (100)\n  Yamaha PSR-SX900 (97)");
}

TEST(Arguments, ChooseTheLanguageAlsoBehindTheCommandButNotAmongFiles) {
  ::unsetenv("LC_ALL");
  ::unsetenv("LC_MESSAGES");
  ::setenv("LANG", "en_GB.UTF-8", 1);
  ChooseLanguage({"show", "a", "--lang", "de"});
  EXPECT_TRUE(GermanLanguage);
  ChooseLanguage({"--lang=de", "show"});
  EXPECT_TRUE(GermanLanguage);
  ChooseLanguage({"show", "--", "--lang", "de"});
  EXPECT_FALSE(GermanLanguage);
  ::setenv("LANG", "de_AT.UTF-8", 1);
  ChooseLanguage({"show"});
  EXPECT_TRUE(GermanLanguage);
  ChooseLanguage({"show", "--lang", "en"});
  EXPECT_FALSE(GermanLanguage);
  ::setenv("LC_ALL", "C.UTF-8", 1);
  ChooseLanguage({"show"});
  EXPECT_FALSE(GermanLanguage);
  ::unsetenv("LC_ALL");
}

TEST(Routes, BeginWithTheFirstInstrumentOfTheCatalogue) {
  EXPECT_THAT(RoutesOf({}), ElementsAre("102 Virtual MIDI"));
}

TEST(Routes, TakeTheMainInstrumentFromItsSettingOrItsFormerName) {
  EXPECT_THAT(RoutesOf({"MidiInstrument00=Yamaha Genos"}), ElementsAre("87 Virtual MIDI"));
  EXPECT_THAT(RoutesOf({"midiinstrument00=Ketron SD2"}), ElementsAre("40 Virtual MIDI"));
  EXPECT_THAT(RoutesOf({"MidiOutput00=Port A"}), ElementsAre("102 Port A"));
}

TEST(Routes, BeyondTheFirstCountWithMultiMidiOnly) {
  const Words two = {"MidiInstrument00=87", "MidiInstrument07=1", "MidiOutput07=Port B",
                     "MidiOutput99=C"};
  EXPECT_THAT(RoutesOf(two), ElementsAre("87 Virtual MIDI"));
  Words several = two;
  several.emplace_back("MultiMidi=on");
  EXPECT_THAT(RoutesOf(several), ElementsAre("87 Virtual MIDI", "1 Port B", "102 C"));
}

TEST(Routes, LetTheOptionWinOverTheSetting) {
  std::string complaint;
  const auto setup = SetupOf({"instruments", "--set", "MidiInstrument00=1", "-i", "2"}, complaint);
  ASSERT_TRUE(setup);
  EXPECT_EQ(setup->routes.Table[0].Instrument, "Roland SC-880");
}

TEST(Routes, HaveTwoDigits) {
  EXPECT_EQ(ComplaintOf({"instruments", "--set", "MidiInstrument1=1"}),
            "MidiInstrument1: unknown setting");
  EXPECT_EQ(ComplaintOf({"instruments", "--set", "MidiOutput0x=1"}), "MidiOutput0x: unknown setting");
}

}  // namespace
}  // namespace Sonarello
