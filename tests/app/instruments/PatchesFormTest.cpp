#include "app/instruments/PatchesForm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QListView>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "app/Application.h"
#include "desk/SoundBrowserBench.h"

namespace Sonarello {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct PatchesBench : SoundBrowserBench {
  PatchesBench() : SoundBrowserBench(87) {
    EXPECT_TRUE(OpenWith({{4, {104, 21, 0}}, {10, {127, 0, 0}}, {11, {-1, -1, -1}}}));
    overview.Hooks.OpenBrowser = [this](int channel) { opened.push_back(channel); };
    form.resize(560, 520);
    ShowForTest(form);
  }
  void Click(int row, Qt::MouseButton button = Qt::LeftButton) {
    const QRect cell = form.List()->visualRect(form.List()->model()->index(row, 0));
    QTest::mouseClick(form.List()->viewport(), button, {}, cell.center());
  }
  std::vector<int> opened;
  TPatchOverview overview{song, names, routes, messages, gate};
  TPatchesForm form{overview};
};

TEST(PatchesForm, ShowsAllSixteenChannelsAtOnce) {
  PatchesBench bench;
  const auto* model = bench.form.List()->model();
  ASSERT_EQ(model->rowCount(), 16);
  EXPECT_EQ(model->index(3, 0).data().toString(), "CFX ConcertGrand (S.Art!)");
  EXPECT_EQ(model->index(0, 0).data().toString(), "noteless");
  const QRect last = bench.form.List()->visualRect(model->index(15, 0));
  EXPECT_TRUE(bench.form.List()->viewport()->rect().contains(last));
}

TEST(PatchesForm, SpeaksAChannelWithItsState) {
  PatchesBench bench;
  bench.song.ActiveMidiIndex = 9;
  bench.song.MidiData[9].Mute = true;
  const auto text = [&](int row) {
    return bench.form.List()
        ->model()
        ->index(row, 0)
        .data(Qt::AccessibleTextRole)
        .toString()
        .toStdString();
  };
  EXPECT_EQ(text(3), "Channel 4: CFX ConcertGrand (S.Art!)");
  EXPECT_EQ(text(9), "Channel 10: Standard Kit 1 (Live!Drum), active, muted, drums");
  bench.song.MidiData[3].Solo = true;
  EXPECT_EQ(text(9), "Channel 10: Standard Kit 1 (Live!Drum), active, muted by solo, drums");
  const InGerman german;
  EXPECT_EQ(text(3), "Kanal 4: CFX ConcertGrand (S.Art!), Solo");
  EXPECT_EQ(text(0), "Kanal 1: notenlos");
}

TEST(PatchesForm, OpensTheBrowserByClickAndKey) {
  PatchesBench bench;
  bench.Click(3);
  bench.Click(0);
  EXPECT_THAT(bench.opened, ElementsAre(3)) << "a channel without notes has none";
  bench.form.List()->setCurrentIndex(bench.form.List()->model()->index(8, 0));
  QTest::keyClick(bench.form.List(), Qt::Key_Down);
  QTest::keyClick(bench.form.List(), Qt::Key_Return);
  EXPECT_THAT(bench.opened, ElementsAre(3, 9));
}

TEST(PatchesForm, InsertsAProgramByItsMenu) {
  PatchesBench bench;
  const auto trigger = [&](int channel) {
    bool enabled = false;
    QTimer::singleShot(0, qApp, [&] {
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      ASSERT_NE(menu, nullptr);
      QAction* insert = menu->actions().at(1);
      EXPECT_EQ(insert->text(), "insert patch change");
      enabled = insert->isEnabled();
      menu->close();
      insert->trigger();
    });
    bench.form.PopupMenu(channel, QPoint(10, 10));
    return enabled;
  };
  EXPECT_FALSE(trigger(3)) << "it has a program";
  EXPECT_THAT(bench.messages.Asked, IsEmpty());
  EXPECT_TRUE(trigger(10));
  EXPECT_THAT(bench.messages.Asked, ElementsAre("Insert patch change on channel 11?"));
  EXPECT_NE(bench.song.MidiData[10].PatchEvent, nullptr);
}

TEST(PatchesForm, OpensNoBrowserByTheRightButton) {
  PatchesBench bench;
  bench.Click(3, Qt::RightButton);
  EXPECT_THAT(bench.opened, IsEmpty());
}

TEST(PatchesForm, ClosesWithEscapeAndSaysSo) {
  PatchesBench bench;
  QSignalSpy closed(&bench.form, &TPatchesForm::closed);
  QTest::keyClick(bench.form.List(), Qt::Key_Escape);
  EXPECT_FALSE(bench.form.isVisible());
  EXPECT_EQ(closed.count(), 1);
}

TEST(PatchesForm, PaintsAChangedChannelAnew) {
  PatchesBench bench;
  QSignalSpy changed(bench.form.List()->model(), &QAbstractItemModel::dataChanged);
  bench.form.ShowChannel(3);
  ASSERT_EQ(changed.count(), 1);
  EXPECT_EQ(changed.at(0).at(0).toModelIndex().row(), 3);
  bench.form.ShowChannel(-1);
  bench.form.ShowChannel(16);
  EXPECT_EQ(changed.count(), 1);
  bench.form.ShowAll();
  EXPECT_EQ(changed.at(1).at(1).toModelIndex().row(), 15);
}

TEST(PatchesForm, ShowsAStateNotByItsColourAlone) {
  PatchesBench bench;
  const QImage before = bench.form.grab().toImage().convertToFormat(QImage::Format_Grayscale8);
  for (bool TMidiChannelData::*state :
       {&TMidiChannelData::Mute, &TMidiChannelData::Solo, &TMidiChannelData::Rec}) {
    bench.song.MidiData[3].*state = true;
    bench.form.ShowAll();
    QCoreApplication::processEvents();
    EXPECT_NE(bench.form.grab().toImage().convertToFormat(QImage::Format_Grayscale8), before);
    bench.song.MidiData[3].*state = false;
  }
  bench.form.ShowAll();
  QCoreApplication::processEvents();
  EXPECT_EQ(bench.form.grab().toImage().convertToFormat(QImage::Format_Grayscale8), before);
}

}  // namespace

}  // namespace Sonarello
