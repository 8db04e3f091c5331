#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFontMetricsF>

#include "app/Application.h"
#include "app/controls/Hands.h"
#include "app/controls/NameFitting.h"
#include "app/controls/NamePlate.h"
#include "app/controls/Shown.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;

constexpr int at1280 = 58, at1440 = 66;  // strip less 14

Log Lines(const char* name, int width) {
  Log lines;
  for (const QString& line : FitName(QString::fromUtf8(name), width).lines)
    lines.push_back(line.toStdString());
  return lines;
}

double Size(const char* name, int width) { return FitName(QString::fromUtf8(name), width).size; }

TEST(NameFitting, BreaksAtBlanksBeforeBracketsAndWithinJoinedWords) {
  EXPECT_THAT(Lines("ChamberStrings (S.Art2!)", at1280),
              ElementsAre("Chamber", "Strings", "(S.Art2!)"));
  EXPECT_THAT(Lines("Flugelhorn Duo", at1280), ElementsAre("Flugelhorn", "Duo"));
  EXPECT_THAT(Lines("StyrianAccordionMaster", at1280), ElementsAre("Styrian", "Accordion", "Master"));
}

TEST(NameFitting, NeedsThreeLinesFor26CharactersInTheNarrowestStrip) {
  EXPECT_THAT(Lines("Standard Kit 1 (Live!Drum)", at1280),
              ElementsAre("Standard", "Kit 1", "(Live!Drum)"));
  EXPECT_EQ(Size("Standard Kit 1 (Live!Drum)", at1280), 12);
}

TEST(NameFitting, TakesASmallerFontBeforeItBreaksInsideBrackets) {
  EXPECT_THAT(Lines("SteelAcoustic (MegaVoice)", at1280),
              ElementsAre("Steel", "Acoustic", "(MegaVoice)"));
  EXPECT_EQ(Size("SteelAcoustic (MegaVoice)", at1280), 11);
  EXPECT_THAT(Lines("FullOrgan (OrganFlutes)", at1280), ElementsAre("FullOrgan", "(Organ", "Flutes)"));
  EXPECT_EQ(Size("FullOrgan (OrganFlutes)", at1280), 12);
}

TEST(NameFitting, FillsALineBeforeItBreaks) {
  EXPECT_THAT(Lines("MaleChoirAah (S.Art!)", at1440), ElementsAre("MaleChoir", "Aah (S.Art!)"));
  EXPECT_THAT(Lines("Standard Kit 1 (Live!Drum)", at1440),
              ElementsAre("Standard Kit", "1 (Live!Drum)"));
}

TEST(NameFitting, HasLinesOf14AtLargeAnd13AtSmallSizes) {
  EXPECT_EQ(FitName(QStringLiteral("Flugelhorn Duo"), at1280).lineHeight, 14);
  EXPECT_EQ(FitName(QStringLiteral("SteelAcoustic (MegaVoice)"), at1280).lineHeight, 13);
}

TEST(NameFitting, ShortensOnlyWhatNoFontCanHold) {
  const char* endless = "Donaudampfschifffahrtsgesellschaftskapitaensorgel";
  const FittedName& fitted = FitName(QString::fromUtf8(endless), at1280);
  ASSERT_EQ(fitted.lines.size(), 3);
  EXPECT_EQ(fitted.size, 10);
  EXPECT_TRUE(fitted.lines.back().endsWith(QChar(0x2026)));
}

TEST(NameFitting, NeverMakesALineWiderThanItsPlate) {
  for (const int percent : WindowScales) {
    const AtScale scale(percent);
    const int width = metrics().px(72) - metrics().px(14);
    for (const char* name :
         {"SteelAcoustic (MegaVoice)", "LatinPercussion (Live!Drum)", "A", "(((", "Überblasen Äöü",
          "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx", "  two   blanks  "}) {
      const FittedName& fitted = FitName(QString::fromUtf8(name), width);
      const QFontMetricsF font(FontOf(FontStack::Condensed, metrics().f(fitted.size), QFont::Medium));
      EXPECT_LE(fitted.lines.size(), 3);
      for (const QString& line : fitted.lines)
        EXPECT_LE(font.horizontalAdvance(line), width) << name << percent;
    }
  }
}

TEST(NameFitting, OfNothingIsNothing) { EXPECT_TRUE(FitName(QString(), at1280).lines.isEmpty()); }

TEST(NamePlate, IsClickedWhenTheButtonIsLetGoOnIt) {
  NamePlate plate;
  plate.resize(64, 46);
  ShowForTest(plate);
  int clicks = 0;
  QObject::connect(&plate, &NamePlate::clicked, [&] { ++clicks; });
  Click(plate);
  Press(plate, {10, 10});
  Release(plate, {10, 100});
  Click(plate, {10, 10}, Qt::RightButton);
  EXPECT_EQ(clicks, 1);
}

TEST(NamePlate, HasTheFaceOfItsStrip) {
  NamePlate plate;
  plate.resize(64, 46);
  ShowForTest(plate);
  EXPECT_EQ(Picture(plate).pixelColor(60, 23), th().bg3);
  plate.setLook(NamePlate::Look::Drum, NamePlate::Dim::None);
  EXPECT_EQ(Picture(plate).pixelColor(60, 23), th().drumbg2);
}

}  // namespace
}  // namespace Sonarello
