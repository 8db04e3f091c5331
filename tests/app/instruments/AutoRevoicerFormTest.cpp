#include "app/instruments/AutoRevoicerForm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include "app/Application.h"
#include "app/controls/QtText.h"
#include "desk/SoundBrowserBench.h"

namespace Sonarello {

namespace {

constexpr TAddress ConcertGrand = {104, 21, 0};

struct RevoicerFormBench : SoundBrowserBench {
  RevoicerFormBench() : SoundBrowserBench(87) {
    options.AutoProgChange = false;
    EXPECT_TRUE(OpenWith({{3, {-1, 5, 7}}, {4, ConcertGrand}}));
    browser.Hooks.RevoicerChanged = [this] { desk.Hooks.ListChanged(); };
    desk.Hooks.IsPlaying = [this] { return isPlaying; };
    form.resize(760, 480);
    ShowForTest(form);
  }
  void Keep() {
    revoicer.SaveToRevoicer(settings, ConcertGrand, "Alt", {104, 10, 0}, "Neu");
    revoicer.SaveToRevoicer(settings, {1, 2, 3}, "A", {4, 5, 6}, "B");
    form.ShowAll();
  }
  [[nodiscard]] QPushButton* Button(const QString& text) const {
    for (QPushButton* button : form.findChildren<QPushButton*>())
      if (button->text() == text) return button;
    return nullptr;
  }
  [[nodiscard]] bool Shows(const QString& text) const {
    for (const QLabel* label : form.findChildren<QLabel*>())
      if (label->isVisible() && label->text().startsWith(text)) return true;
    return false;
  }
  [[nodiscard]] QString Cell(int row, int column) const {
    return form.Grid()->model()->index(row, column).data().toString();
  }
  TRevoicerDesk desk{song, routes, settings, messages, gate, revoicer};
  TAutoRevoicerForm form{desk};
};

TEST(AutoRevoicerForm, ShowsTheListOfTheMainInstrument) {
  RevoicerFormBench bench;
  EXPECT_EQ(bench.form.windowTitle(), "Auto Revoicer - Yamaha Genos");
  EXPECT_TRUE(bench.Shows("No replacements yet"));
  EXPECT_FALSE(bench.Button("Revoice")->isEnabled());
  EXPECT_FALSE(bench.Button("Revoice")->toolTip().isEmpty());
  bench.Keep();
  EXPECT_FALSE(bench.Shows("No replacements yet"));
  EXPECT_EQ(bench.Cell(0, RevoicerModel::Pos), "1");
  EXPECT_EQ(bench.Cell(0, RevoicerModel::Source), "Alt");
  EXPECT_EQ(bench.Cell(0, RevoicerModel::SourceAddress), "104/21/0");
  EXPECT_EQ(bench.Cell(1, RevoicerModel::Dest), "B");
  EXPECT_EQ(bench.Cell(1, RevoicerModel::DestAddress), "4/5/6");
  EXPECT_EQ(bench.form.Grid()->model()->headerData(0, Qt::Horizontal).toString(), "Pos");
}

TEST(AutoRevoicerForm, ShowsWhatTheBrowserSavesAtOnce) {
  RevoicerFormBench bench;
  ASSERT_TRUE(bench.browser.Open(3));
  bench.browser.Select({0, 0, 1});
  ASSERT_TRUE(bench.browser.Btn_SaveToRevoicerClick());
  EXPECT_EQ(bench.form.Grid()->model()->rowCount(), 1);
}

TEST(AutoRevoicerForm, RevoicesAndSaysWhatItDid) {
  RevoicerFormBench bench;
  bench.Keep();
  QTest::mouseClick(bench.Button("Revoice"), Qt::LeftButton);
  EXPECT_EQ(bench.AddressOf(4), (TAddress{104, 10, 0}));
  EXPECT_TRUE(bench.Shows("1 sound replaced, 1 without bank select left out."));
  auto* protocol = bench.form.findChild<QListView*>();
  ASSERT_TRUE(protocol->isVisible());
  EXPECT_EQ(protocol->model()->index(0, 0).data().toString(), "001.01.000: Kanal 3 - Ctrl00 fehlt!");
  bench.desk.ForgetRun();
  bench.form.ShowAll();
  EXPECT_FALSE(protocol->isVisible());
}

TEST(AutoRevoicerForm, LeavesASongThatPlaysAlone) {
  RevoicerFormBench bench;
  bench.Keep();
  bench.isPlaying = true;
  QTest::mouseClick(bench.Button("Revoice"), Qt::LeftButton);
  EXPECT_EQ(bench.AddressOf(4), ConcertGrand);
  EXPECT_EQ(bench.messages.Shown.size(), 1U);
}

TEST(AutoRevoicerForm, DeletesTheSelectedRow) {
  RevoicerFormBench bench;
  bench.Keep();
  QPushButton* remove = bench.Button("Delete");
  EXPECT_FALSE(remove->isEnabled());
  QTest::keyClick(bench.form.Grid(), Qt::Key_Delete);
  EXPECT_EQ(bench.desk.RowCount(), 2) << "none is selected";
  bench.form.Grid()->selectRow(0);
  QTest::mouseClick(remove, Qt::LeftButton);
  ASSERT_EQ(bench.desk.RowCount(), 1);
  EXPECT_EQ(bench.Cell(0, RevoicerModel::Source), "A");
  EXPECT_TRUE(remove->isEnabled()) << "the next one is selected";
  QTest::keyClick(bench.form.Grid(), Qt::Key_Delete);
  EXPECT_EQ(bench.desk.RowCount(), 0);
}

TEST(AutoRevoicerForm, ClosesByButtonAndEscape) {
  RevoicerFormBench bench;
  QSignalSpy closed(&bench.form, &TAutoRevoicerForm::closed);
  const InGerman german;
  QTest::mouseClick(bench.Button("Close"), Qt::LeftButton);
  EXPECT_FALSE(bench.form.isVisible());
  ShowForTest(bench.form);
  QTest::keyClick(bench.form.Grid(), Qt::Key_Escape);
  EXPECT_FALSE(bench.form.isVisible());
  EXPECT_EQ(closed.count(), 2);
}

TEST(AutoRevoicerForm, SpeaksGerman) {
  const InGerman german;
  RevoicerFormBench bench;
  for (const char* text : {"Sounds ersetzen", "Löschen", "Schließen"})
    EXPECT_NE(bench.Button(ToQt(text)), nullptr) << text;
  EXPECT_TRUE(bench.Shows("Noch keine Ersetzungen"));
}

}  // namespace

}  // namespace Sonarello
