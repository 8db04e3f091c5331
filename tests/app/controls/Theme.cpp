#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QEvent>
#include <QWidget>
#include <cmath>

#include "app/Application.h"
#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/controls/Shown.h"
#include "app/controls/Theme.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

double Luminance(const QColor& colour) {
  const auto linear = [](double c) {
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& one, const QColor& other) {
  const double a = Luminance(one), b = Luminance(other);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

class Listener : public QWidget {
 public:
  using QWidget::QWidget;
  int changes = 0;

 protected:
  void changeEvent(QEvent* event) override {
    QWidget::changeEvent(event);
    if (AppearanceChanged(*event)) ++changes;
  }
};

TEST(Theme, TextIsReadableOnItsGroundInBothThemes) {
  for (const ThemeKind kind : {ThemeKind::Dark, ThemeKind::Light}) {
    const Theme& t = ThemeOf(kind);
    for (const QColor& ground : {t.bg1, t.bg2, t.bg2a, t.bg3, t.well, t.row, t.rowalt, t.sel, t.accbg})
      EXPECT_GE(Contrast(t.tx1, ground), 9.5) << ground.name().toStdString();
    for (const QColor& ground : {t.bg1, t.bg2, t.bg2a, t.bg3}) {
      EXPECT_GE(Contrast(t.tx2, ground), 4.5) << ground.name().toStdString();
      EXPECT_GE(Contrast(t.tx3, ground), 4.5) << ground.name().toStdString();
    }
    EXPECT_GE(Contrast(t.onlit, t.solo), 4.5);
    EXPECT_GE(Contrast(t.onlit, t.mute), 4.5);
    EXPECT_GE(Contrast(t.onrec, t.rec), 4.5);
    EXPECT_GE(Contrast(t.onplay, t.play), 4.5);
    EXPECT_GE(Contrast(t.onaccd, t.accd), 4.5);
    EXPECT_GE(Contrast(t.mute2, t.muteface), 4.5);
    for (const QColor& lit : {t.m1, t.m2, t.m3}) EXPECT_GE(Contrast(lit, t.moff), 3.0);
  }
}

TEST(Theme, VelocitiesRunThroughTheirStopsAndAreReadable) {
  EXPECT_EQ(VelocityColour(1), QColor(0x5D6FBE));
  EXPECT_EQ(VelocityColour(40), QColor(0x4686D8));
  EXPECT_EQ(VelocityColour(127), QColor(0xF06048));
  EXPECT_EQ(VelocityColour(500), VelocityColour(127));
  for (int velocity = 0; velocity < 128; ++velocity)
    EXPECT_GE(Contrast(VelocityInk(velocity), VelocityColour(velocity)), 4.35) << velocity;
}

TEST(Theme, AChangeOfThemeReachesEveryWidgetAndThePalette) {
  QWidget window;
  Listener child(&window);
  {
    const InTheme light(ThemeKind::Light);
    EXPECT_GE(child.changes, 1);
    EXPECT_EQ(child.palette().color(QPalette::Window), ThemeOf(ThemeKind::Light).bg0);
  }
  EXPECT_EQ(child.palette().color(QPalette::Window), ThemeOf(ThemeKind::Dark).bg0);
}

TEST(Metrics, LengthsRoundHalfUpAtEveryScale) {
  struct Row {
    double length;
    std::array<int, 6> pixels;
  };
  const std::vector<Row> rows{
      {11, {11, 13, 14, 17, 18, 20}}, {13, {13, 16, 17, 20, 21, 23}},    {12, {12, 14, 16, 18, 19, 22}},
      {15, {15, 18, 20, 23, 24, 27}}, {36, {36, 43, 47, 54, 58, 65}},    {28, {28, 34, 36, 42, 45, 50}},
      {22, {22, 26, 29, 33, 35, 40}}, {72, {72, 86, 94, 108, 115, 130}}, {18, {18, 22, 23, 27, 29, 32}},
      {4, {4, 5, 5, 6, 6, 7}},        {46, {46, 55, 60, 69, 74, 83}},    {24, {24, 29, 31, 36, 38, 43}},
      {8, {8, 10, 10, 12, 13, 14}}};
  for (std::size_t i = 0; i < WindowScales.size(); ++i)
    for (const Row& row : rows)
      EXPECT_EQ(Metrics{WindowScales[i]}.px(row.length), row.pixels[i]) << row.length << " at " << i;
}

TEST(Metrics, AChangeOfScaleReachesEveryWidgetAndTheFont) {
  Listener window;
  const AtScale scale(150);
  EXPECT_GE(window.changes, 1);
  EXPECT_EQ(QApplication::font().pixelSize(), 20);
  EXPECT_EQ(metrics().hair(), 1);
}

TEST(Metrics, AnUnknownScaleBecomesTheNextLowerOne) {
  const AtScale scale(145);
  EXPECT_EQ(metrics().percent, 130);
  SetScale(20);
  EXPECT_EQ(metrics().percent, 100);
}

TEST(Metrics, RunningNumbersStandStill) {
  const QFont font = metrics().font(Role::Display);
  EXPECT_DOUBLE_EQ(FiguresWidth(font, QStringLiteral("111:11")),
                   FiguresWidth(font, QStringLiteral("408:93")));
}

TEST(QtText, ShowsTheUsersLanguageAndLineBreaks) {
  EXPECT_EQ(QText("Öffnen\rjetzt", "Open\rnow"), QStringLiteral("Open\nnow"));
  const InGerman german;
  EXPECT_EQ(QText("Öffnen\r\njetzt", "Open\rnow"), QStringLiteral("Öffnen\njetzt"));
  EXPECT_EQ(ToStd(QStringLiteral("Öffnen")), "Öffnen");
}

TEST(QtText, SignsValuesWithThePlusOrTheMinusSign) {
  EXPECT_EQ(SignedText(5), QStringLiteral("+5"));
  EXPECT_EQ(SignedText(-8), QStringLiteral("−8"));
  EXPECT_EQ(SignedText(0), QStringLiteral("0"));
}

}  // namespace
}  // namespace Sonarello
