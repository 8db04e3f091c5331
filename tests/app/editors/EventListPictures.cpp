// Pictures of the event list, to be held beside the design.
#include <gtest/gtest.h>

#include "app/controls/Metrics.h"
#include "app/controls/Theme.h"
#include "app/editors/EventListBench.h"

namespace Sonarello {

namespace {

struct Look {
  ThemeKind theme = ThemeKind::Dark;
  int percent = 100;
  ~Look() {
    SetTheme(ThemeKind::Dark);
    SetScale(100);
  }
  void Wear() const {
    SetTheme(theme);
    SetScale(percent);
  }
};

/// The states of the design's picture: a played row, three selected ones, a cell that is edited.
void Picture(const Look& look, const QString& name) {
  look.Wear();
  EventListBench bench;
  bench.PictureSong().Show();
  bench.time = 10000;
  QTest::qWait(0);
  TEventListForm& form = *bench.form;
  form.SyncDisplayToMidiPosition();
  form.Table().scrollToTop();
  form.Model().SetPlayRow(Chord);
  bench.Edit(SecondNote, Value2Column);
  QItemSelection rows;
  for (const std::int32_t row : {+FirstNote, +SecondNote, FirstNote + 3})
    rows.select(form.Model().index(row - 1, 0), form.Model().index(row - 1, EventColumnCount - 1));
  form.Table().selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
  form.Status().ShowProgress(QText("Suche läuft", "Searching"), 0.64);
  EXPECT_TRUE(SaveScreenshot(form, name));
}

TEST(EventListPictures, InTheLooksOfTheDesign) {
  Picture({}, QStringLiteral("event_list_en"));
  {
    const InGerman german;
    Picture({ThemeKind::Light, 100}, QStringLiteral("event_list_de_light"));
  }
  Picture({ThemeKind::Dark, 150}, QStringLiteral("event_list_en_150"));
}

TEST(EventListPictures, SmallEmptyAndSearched) {
  const InGerman german;
  EventListBench bench;
  bench.PictureSong().Show();
  TEventListForm& form = *bench.form;
  form.resize(form.minimumSize());
  form.Search().Open();
  QTest::keyClicks(&form.Search().Field(), QStringLiteral("Fagott"));
  QCoreApplication::processEvents();
  EXPECT_TRUE(SaveScreenshot(form, QStringLiteral("event_list_search_de_least")));
  form.Search().Close();
  form.CB_TrackListChange(0);
  form.CB_FilterChange(1);
  QCoreApplication::processEvents();
  EXPECT_TRUE(SaveScreenshot(form, QStringLiteral("event_list_empty_de_least")));
}

}  // namespace

}  // namespace Sonarello
