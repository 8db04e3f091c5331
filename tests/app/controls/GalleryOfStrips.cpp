#include <gtest/gtest.h>

#include <QPalette>
#include <QVBoxLayout>

#include "app/Application.h"
#include "app/controls/GroupColumn.h"
#include "app/controls/Shown.h"
#include "app/controls/StripBank.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

/// The strips in a window of a desk's width at 100 %, with its margin.
struct Desk {
  Desk(int width, int height, bool compact) : row(&window) {
    const Metrics& m = metrics();
    window.resize(m.px(width), m.px(height + 16));
    row.setCompact(compact);
    row.setGeometry(m.px(8), m.px(8), m.px(width - 16), m.px(height));
    ShowForTest(window);
  }
  QWidget window;
  StripRow row;
};

void SaveDesk(const QString& name, int width, int height, bool compact) {
  Desk desk(width, height, compact);
  ShowSong(desk.row);
  desk.window.activateWindow();
  desk.row.bank().clearFocus();
  desk.row.bank().setFocus(Qt::TabFocusReason);
  QCoreApplication::processEvents();
  EXPECT_TRUE(SaveScreenshot(desk.window, QStringLiteral("controls_strips_") + name));
}

TEST(Gallery, StripsAreDrawnInEveryState) {
  SaveDesk(QStringLiteral("dark_en_1440"), 1440, 456, false);
  SaveDesk(QStringLiteral("dark_en_1280"), 1280, 345, true);
  {
    const InGerman german;
    const AtScale scale(150);
    SaveDesk(QStringLiteral("dark_de_1280_150"), 1280, 345, true);
  }
  const InTheme light(ThemeKind::Light);
  SaveDesk(QStringLiteral("light_en_1440"), 1440, 456, false);
  const InGerman german;
  const AtScale scale(180);
  SaveDesk(QStringLiteral("light_de_1280_180"), 1280, 345, true);
}

TEST(Gallery, StripsAreDrawnWithoutASongAndInSolo) {
  Desk desk(1280, 345, true);
  EXPECT_TRUE(SaveScreenshot(desk.window, QStringLiteral("controls_strips_no_song")));
  ShowSong(desk.row);
  for (int channel = 0; channel < 13; ++channel) {
    StripView view = desk.row.strip(channel).view();
    view.Mute = false;
    view.Solo = channel == 9 || channel == 2;
    view.MutedBySolo = !view.Solo;
    desk.row.setView(channel, view);
  }
  desk.row.setLinked(true);
  EXPECT_TRUE(SaveScreenshot(desk.window, QStringLiteral("controls_strips_solo")));
}

}  // namespace
}  // namespace Sonarello
