#include "desk/UpdateList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "helpers/InGerman.h"
#include "helpers/Workbench.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(UpdateList, TheProductsLineGivesVersionAndPage) {
  const auto line = ReadUpdateList(
      "Software-Liste\nOther\t9.0\thttps://x.invalid/o\nSonarello XI\t1.2\thttps://x.invalid/d\n");
  EXPECT_EQ(line, (TUpdateLine{"1.2", "https://x.invalid/d"}));
}

TEST(UpdateList, IsReadWithAnyLineEndsBlanksAndByteOrderMark) {
  const TUpdateLine expected{"1.2b", "http://x.invalid/d"};
  EXPECT_EQ(ReadUpdateList("\xEF\xBB\xBFSoftware-Liste\t2026\r\n\r\nSonarello XI \t 1.2b\t"
                           "http://x.invalid/d \tmore\r\n"),
            expected);
  EXPECT_EQ(ReadUpdateList("Software-Liste\nSonarello XI\t1.2b\thttp://x.invalid/d"), expected);
}

TEST(UpdateList, WhatIsNoListOrNamesNoVersionGivesNothing) {
  for (const char* text :
       {"", "\n", "Sonarello XI\t1.2\n", "<html>Software-Liste\nSonarello XI\t1.2\n",
        "Software-Liste\n", "Software-Liste\nSonarello\t1.2\n", "Software-Liste\nSonarello XI\n",
        "Software-Liste\nSonarello XI\t\n", "Software-Liste\nSonarello XI\tnew\n",
        "Software-Liste\nSonarello XI\t<b>1</b>\n", "Software-Liste\nSonarello XI 1.2\n",
        "Software-Liste\nSonarello XI\t1.2.3.4.5.6.7.8.9.10.11.12.13.14.15.16.17\n"})
    EXPECT_FALSE(ReadUpdateList(text).has_value()) << text;
}

TEST(UpdateList, OfSeveralLinesTheNewestVersionCounts) {
  EXPECT_EQ(ReadUpdateList("Software-Liste\nSonarello XI\t1.9\nSonarello XI\t1.10\nSonarello XI\t1.2"),
            (TUpdateLine{"1.10", ""}));
}

TEST(UpdateList, OnlyWebPagesAreOpened) {
  for (const char* page : {"file:///etc/passwd", "javascript:alert(1)", "x.invalid/d", "",
                           "https://x.invalid/a b", "https://x.invalid/\"", "ftp://x.invalid"})
    EXPECT_EQ(ReadUpdateList("Software-Liste\nSonarello XI\t1.2\t" + std::string(page))->Page, "")
        << page;
}

TEST(UpdateList, VersionsCompareAsPeopleReadThem) {
  // Each is newer than the one in front.
  const std::vector<std::string> ascending = {"0.9",
                                              "1.0alpha",
                                              "1.0alpha2",
                                              "1.0beta",
                                              "1.0 pre 1",
                                              "1.0-rc1",
                                              "1.0-rc2",
                                              "1.0",
                                              "1.0a",
                                              "1.0b",
                                              "1.0.1",
                                              "1.2",
                                              "1.9",
                                              "1.10",
                                              "1.10.0b",
                                              "1.10.1",
                                              "2",
                                              "2.0.0.1",
                                              "2026.03",
                                              "2026.10",
                                              "99999999999999999999999999",
                                              "100000000000000000000000000"};
  for (std::size_t a = 0; a < ascending.size(); ++a)
    for (std::size_t b = 0; b < ascending.size(); ++b)
      EXPECT_EQ(CompareVersions(ascending[a], ascending[b]), (a > b) - (a < b))
          << ascending[a] << " and " << ascending[b];
}

TEST(UpdateList, SpellingsOfOneVersionAreTheSame) {
  for (const auto& [a, b] : {std::pair{"1.2", "1.2.0"},
                             {"1.2", "v1.2"},
                             {"1.2", "V 1.2"},
                             {"1.02", "1.2"},
                             {"1.2B", "1.2b"},
                             {"1.2.0b", "1.2b"},
                             {"1.2 b", "1.2b"},
                             {"1_2-3", "1.2.3"},
                             {"0", ""},
                             {"1.0RC1", "1.0-rc.1"}})
    EXPECT_EQ(CompareVersions(a, b), 0) << a << " and " << b;
}

TEST(UpdateList, AListIsJudgedByTheOwnVersion) {
  const std::string list = "Software-Liste\nSonarello XI\t1.2\thttps://x.invalid/d\n";
  EXPECT_EQ(JudgeUpdateList(list, "1.1").Outcome, TUpdateOutcome::Newer);
  EXPECT_EQ(JudgeUpdateList(list, "1.2").Outcome, TUpdateOutcome::UpToDate);
  EXPECT_EQ(JudgeUpdateList(list, "1.10").Outcome, TUpdateOutcome::UpToDate);
  EXPECT_EQ(JudgeUpdateList("rubbish", "1.1").Outcome, TUpdateOutcome::Failed);
}

TEST(UpdateList, TheTextsStandInBothLanguages) {
  const TUpdateResult newer{TUpdateOutcome::Newer, {"1.2", "https://x.invalid/d"}};
  const TUpdateResult withoutPage{TUpdateOutcome::Newer, {"1.2", ""}};
  const auto textOf = [](TUpdateOutcome outcome) { return UpdateText({outcome, {}}); };
  EXPECT_EQ(UpdateText(newer), "There is a newer version available: 1.2. Do you want to download it?");
  EXPECT_EQ(UpdateText(withoutPage), "There is a newer version available: 1.2.");
  EXPECT_EQ(textOf(TUpdateOutcome::Failed), "Error retreaving data over internet!");
  EXPECT_EQ(textOf(TUpdateOutcome::UpToDate), "You already have the latest version.");
  EXPECT_EQ(textOf(TUpdateOutcome::NoEndpoint),
            "No internet address is set for the update check (setting \"UpdateUrl\").");
  EXPECT_EQ(OpenPageFailureText("p"), "The web page could not be opened:\rp");
  InGerman german;
  EXPECT_EQ(UpdateText(newer), "Es gibt die neue Version: 1.2.Soll diese herunter geladen werden?");
  EXPECT_EQ(UpdateText(withoutPage), "Es gibt die neue Version: 1.2.");
  EXPECT_EQ(textOf(TUpdateOutcome::Failed), "Fehler beim Herunterladen der Daten über Internet!");
  EXPECT_EQ(textOf(TUpdateOutcome::UpToDate), "Sie haben bereits die neueste Version.");
  EXPECT_EQ(textOf(TUpdateOutcome::NoEndpoint),
            "Es ist keine Internet-Adresse für die Suche nach Updates eingestellt (Einstellung "
            "\"UpdateUrl\").");
  EXPECT_EQ(OpenPageFailureText("p"), "Die Internet-Seite konnte nicht geöffnet werden:\rp");
}

TEST(UpdateList, TheDownloadPageIsOpenedOnYesOnly) {
  RecordedMessages messages;
  std::vector<std::string> opened;
  bool opens = true;
  const auto open = [&](const std::string& page) {
    opened.push_back(page);
    return opens;
  };
  const TUpdateResult newer{TUpdateOutcome::Newer, {"1.2", "https://x.invalid/d"}};
  messages.Answers = {false};
  TellUpdate(newer, messages, open);
  EXPECT_THAT(opened, IsEmpty());
  TellUpdate(newer, messages, open);
  EXPECT_THAT(opened, ElementsAre("https://x.invalid/d"));
  EXPECT_THAT(messages.Shown, IsEmpty());
  opens = false;
  TellUpdate(newer, messages, open);
  TellUpdate(newer, messages, {});
  EXPECT_THAT(messages.Shown, ElementsAre("The web page could not be opened:\rhttps://x.invalid/d",
                                          "The web page could not be opened:\rhttps://x.invalid/d"));
}

TEST(UpdateList, EverythingElseIsToldWithoutAQuestion) {
  RecordedMessages messages;
  for (const TUpdateOutcome outcome : {TUpdateOutcome::NoEndpoint, TUpdateOutcome::Failed,
                                       TUpdateOutcome::UpToDate, TUpdateOutcome::Newer})
    TellUpdate({outcome, {"1.2", ""}}, messages, {});
  EXPECT_EQ(messages.Shown.size(), 4U);
  EXPECT_THAT(messages.Asked, IsEmpty());
}

}  // namespace
}  // namespace Sonarello
