// The notation of the rules.
#include "editors/SysexExplainReader.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

#include "editors/SysexExplain.h"
#include "editors/SysexExplainHex.h"

namespace Sonarello {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Rules from lines; the text lives as long as they do.
struct Reading {
  explicit Reading(std::string t) : text(std::move(t)), rules(ReadSysexRules(text, faults)) {}

  [[nodiscard]] std::string Explain(const std::string& hexadecimal,
                                    TExplained when = TExplained::Shown) const {
    return rules.Explain(BytesOf(hexadecimal), when);
  }

  std::string text;
  std::vector<std::string> faults;
  TSysexRules rules;
};

std::string FaultOf(const std::string& line) {
  const Reading reading(line + "\n01 \"good\"\n");
  EXPECT_EQ(reading.faults.size(), 1U) << line;
  EXPECT_EQ(reading.Explain("01"), "good") << line;
  return reading.faults.empty() ? "" : reading.faults.front();
}

}  // namespace

TEST(SysexRuleReader, ReadsTheRulesOfTheProgramWithoutFault) {
  std::ifstream in(SONARELLO_SOURCE_DIR "/data/sysex/rules.txt");
  const Reading reading{std::string(std::istreambuf_iterator<char>(in), {})};
  EXPECT_THAT(reading.faults, IsEmpty());
  EXPECT_EQ(reading.rules.Rules().size(), SysexRules().Rules().size());
  EXPECT_GT(reading.rules.Rules().size(), 400U);
}

TEST(SysexRuleReader, ReadsBytesRangesAndSteps) {
  const Reading reading("41 ** 20-2F 02-08/3 \"named\"\n");
  EXPECT_THAT(reading.faults, IsEmpty());
  for (const char* good : {"41 00 20 02", "41 FF 2F 05", "41 7F 25 08 00"})
    EXPECT_EQ(reading.Explain(good), "named") << good;
  for (const char* bad : {"41 00 1F 02", "41 00 30 02", "41 00 20 01", "41 00 20 03", "41 00 20 0B",
                          "41 00 20", "40 00 20 02", ""})
    EXPECT_EQ(reading.Explain(bad), "") << bad;
}

TEST(SysexRuleReader, ReadsTheEndOfAMessage) {
  const Reading reading("7E end \"whole\"\n");
  EXPECT_EQ(reading.Explain("7E"), "whole");
  EXPECT_EQ(reading.Explain("7E 00"), "");
}

TEST(SysexRuleReader, MakesNumbersFromLeftToRight) {
  const Reading reading(
      "01 ** \"{1}\"\n02 ** \"<{1&15+1}>\"\n03 20-2F \"{1-31}\"\n04 42-46/2 \"n{1-64/2}, {1}\"\n");
  EXPECT_THAT(reading.faults, IsEmpty());
  EXPECT_EQ(reading.Explain("01 FF"), "255");
  EXPECT_EQ(reading.Explain("02 9F"), "<16>");
  EXPECT_EQ(reading.Explain("03 20"), "1");
  EXPECT_EQ(reading.Explain("04 46"), "n3, 70");
}

TEST(SysexRuleReader, TakesEntriesFromTables) {
  const Reading reading("table Bank\n  \"A\"\n  \"\"\n  \" C\"\n\n01 04-06 \"Bank{1-4:Bank}!\"\n");
  EXPECT_THAT(reading.faults, IsEmpty());
  EXPECT_EQ(reading.Explain("01 04"), "BankA!");
  EXPECT_EQ(reading.Explain("01 05"), "Bank!");
  EXPECT_EQ(reading.Explain("01 06"), "Bank C!");
}

TEST(SysexRuleReader, PutsRulesUnderSeveralBeginnings) {
  const Reading reading(
      "under 01 \"One\"\nunder 02 ... 00 \"Two\"\n  10 \" ten\"\n  1F end \" end\"\n\n03 \"three\"\n");
  EXPECT_THAT(reading.faults, IsEmpty());
  EXPECT_EQ(reading.Explain("01 10"), "One ten");
  EXPECT_EQ(reading.Explain("02 10 00"), "Two ten");
  EXPECT_EQ(reading.Explain("02 10 01"), "");
  EXPECT_EQ(reading.Explain("01 1F"), "One end");
  EXPECT_EQ(reading.Explain("01 1F 00"), "");
  EXPECT_EQ(reading.Explain("02 1F 00"), "Two end");
  EXPECT_EQ(reading.Explain("03"), "three");
}

TEST(SysexRuleReader, LetsABeginningEndWhereAnotherStarts) {
  const Reading reading("under 01 \"One\"\n  10 \" ten\"\nunder 02 \"Two\"\n  11 \" eleven\"\n");
  EXPECT_EQ(reading.Explain("01 10"), "One ten");
  EXPECT_EQ(reading.Explain("01 11"), "");
  EXPECT_EQ(reading.Explain("02 10"), "");
  EXPECT_EQ(reading.Explain("02 11"), "Two eleven");
}

TEST(SysexRuleReader, KeepsBlanksOfNames) {
  EXPECT_EQ(Reading("01 \" Gain \"\n").Explain("01"), " Gain ");
  EXPECT_EQ(Reading("01    \"late\"").Explain("01"), "late");
}

TEST(SysexRuleReader, KeepsTypedMessagesApart) {
  const Reading reading("01 \"shown\"\nedited 01 \"edited\"\n");
  EXPECT_EQ(reading.Explain("01"), "shown");
  EXPECT_EQ(reading.Explain("01", TExplained::Edited), "edited");
}

TEST(SysexRuleReader, LeavesOutEmptyLinesAndComments) {
  const Reading reading("# \"not a rule\"\n\n   \n01 \"a\"");
  EXPECT_THAT(reading.faults, IsEmpty());
  EXPECT_EQ(reading.rules.Rules().size(), 1U);
}

TEST(SysexRuleReader, TellsFaultsWithTheirLines) {
  const Reading reading("01 \"a\"\nG1 \"b\"\n\n02 c\n");
  EXPECT_THAT(reading.faults, ElementsAre("line 2: no number from 0 to 255: G1",
                                          "line 4: no name in quotes at its end: 02 c"));
  EXPECT_EQ(reading.Explain("01"), "a");
}

TEST(SysexRuleReader, RefusesWhatIsNoRule) {
  EXPECT_THAT(FaultOf("1 \"a\""), HasSubstr("no byte of two digits"));
  EXPECT_THAT(FaultOf("001 \"a\""), HasSubstr("no byte of two digits"));
  EXPECT_THAT(FaultOf("20-1F \"a\""), HasSubstr("no range"));
  EXPECT_THAT(FaultOf("20-25/2 \"a\""), HasSubstr("no range"));
  EXPECT_THAT(FaultOf("20-24/0 \"a\""), HasSubstr("no range"));
  EXPECT_THAT(FaultOf("\"a\""), HasSubstr("a rule without bytes"));
  EXPECT_THAT(FaultOf("02 \"a\" 03"), HasSubstr("no name in quotes"));
  EXPECT_THAT(FaultOf("02 \""), HasSubstr("no name in quotes"));
  EXPECT_THAT(FaultOf("02 \"a\"b\""), HasSubstr("a quote in a name"));
  EXPECT_THAT(FaultOf("02 end 03 \"a\""), HasSubstr("behind the end"));
  EXPECT_THAT(FaultOf("02 ... 03 \"a\""), HasSubstr("\"...\" in a rule"));
  EXPECT_THAT(FaultOf("  02 \"a\""), HasSubstr("belongs to nothing"));
  EXPECT_THAT(FaultOf("under 02 end \"a\""), HasSubstr("an end of a beginning"));
  EXPECT_THAT(FaultOf("under \"a\"\n  \"b\""), HasSubstr("a rule without bytes"));
  EXPECT_THAT(FaultOf("under 02 \"a\"\n  03 ... 04 \"b\""), HasSubstr("\"...\" in a rule"));
}

TEST(SysexRuleReader, RefusesNamesThatCannotBeMade) {
  EXPECT_THAT(FaultOf("02 \"{1}\""), HasSubstr("a byte behind the rule's"));
  EXPECT_THAT(FaultOf("02 \"{0-3}\""), HasSubstr("a number below 0"));
  EXPECT_THAT(FaultOf("02 \"{0\""), HasSubstr("a brace that is not closed"));
  EXPECT_THAT(FaultOf("02 \"0}\""), HasSubstr("a brace that was not opened"));
  EXPECT_THAT(FaultOf("02 \"{}\""), HasSubstr("no number"));
  EXPECT_THAT(FaultOf("02 \"{0*2}\""), HasSubstr("no number"));
  EXPECT_THAT(FaultOf("02 \"{0/2+1}\""), HasSubstr("not understood"));
  EXPECT_THAT(FaultOf("02 \"{0/0}\""), HasSubstr("divided by nothing"));
  EXPECT_THAT(FaultOf("02 \"{0:Nothing}\""), HasSubstr("no such table"));
  EXPECT_THAT(FaultOf("table A\n  \"a\"\n\n00-01 \"{0:A}\""),
              HasSubstr("no such entry of the table: 1"));
  EXPECT_THAT(FaultOf("table A\ntable A"), HasSubstr("a second table of the name"));
  EXPECT_THAT(FaultOf("table A\n  02 \"a\""), HasSubstr("bytes in a table"));
}

}  // namespace Sonarello
