#include "app/instruments/SoundBrowserForm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "app/Application.h"
#include "app/controls/QtText.h"
#include "app/instruments/BankChoice.h"
#include "app/instruments/SoundSearch.h"
#include "app/instruments/SoundView.h"
#include "app/instruments/VoiceCard.h"
#include "desk/SoundBrowserBench.h"

namespace Sonarello {

namespace {

using testing::Contains;

constexpr int Genos = 87;
constexpr TAddress ConcertGrand = {104, 21, 0};
constexpr std::string_view StageGrandName = "CFX StageGrand (S.Art!)";

/// The window over a song with a piano on channel 4 and drums on channel 10, open on channel 4.
struct FormBench : SoundBrowserBench {
  explicit FormBench(int value = Genos, TAddress address = ConcertGrand) : SoundBrowserBench(value) {
    browser.Hooks.DoSolo = [this](int channel) {
      bool& solo = song.MidiData[static_cast<std::size_t>(channel)].Solo;
      solo = !solo;
    };
    EXPECT_TRUE(OpenWith({{4, address}, {10, {127, 0, 0}}}));
    EXPECT_TRUE(browser.Open(3));
    form.resize(1040, 720);
    ShowForTest(form);
    form.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
  }

  [[nodiscard]] SoundView* Sounds() const { return form.findChildren<SoundView*>().at(1); }
  [[nodiscard]] SoundView* Categories() const { return form.findChildren<SoundView*>().at(0); }
  [[nodiscard]] SearchField* Field() const { return form.findChild<SearchField*>(); }
  [[nodiscard]] SearchPanel* Panel() const { return form.findChild<SearchPanel*>(); }
  [[nodiscard]] VoiceCard* Card(int which) const { return form.findChildren<VoiceCard*>().at(which); }
  [[nodiscard]] QPushButton* Button(const QString& text) const {
    for (QPushButton* button : form.findChildren<QPushButton*>())
      if (button->text() == text) return button;
    return nullptr;
  }
  [[nodiscard]] QString CurrentSound() const {
    return Sounds()->currentIndex().siblingAtColumn(0).data(Qt::AccessibleTextRole).toString();
  }
  void Key(QWidget* widget, int key) const { QTest::keyClick(widget, static_cast<Qt::Key>(key)); }
  void ClickRow(SoundView* view, int row) const {
    const QRect cell = view->visualRect(view->model()->index(row, 0));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, cell.center());
  }

  TSoundBrowserForm form{browser};
};

TEST(SoundBrowserForm, ShowsTheSoundOfItsChannel) {
  FormBench bench;
  EXPECT_TRUE(bench.form.isVisible());
  EXPECT_EQ(bench.form.windowTitle(), "Yamaha Genos sound set - midi-channel 4");
  EXPECT_EQ(bench.CurrentSound(), "CFX ConcertGrand (S.Art!)");
  EXPECT_EQ(bench.Categories()->currentIndex().data().toString(), "Piano");
  EXPECT_EQ(bench.Card(0)->Voice(), "CFX ConcertGrand (S.Art!)");
  EXPECT_TRUE(bench.Card(0)->IsHeard());
  EXPECT_EQ(bench.form.focusWidget(), bench.Sounds());
  EXPECT_TRUE(bench.sent.Lines.empty()) << "showing lets nothing be heard";
}

TEST(SoundBrowserForm, CountsProgramsFromOneAsTheInstrumentDoes) {
  FormBench bench;
  const auto* model = bench.Sounds()->model();
  const auto cell = [&](int column) { return model->index(0, column).data().toString(); };
  EXPECT_EQ(cell(SoundTableModel::BankMSB), "104");
  EXPECT_EQ(cell(SoundTableModel::BankLSB), "21");
  EXPECT_EQ(cell(SoundTableModel::Program), "1");
  EXPECT_TRUE(bench.Sounds()->isColumnHidden(SoundTableModel::Effect)) << "the lists tell none";
}

TEST(SoundBrowserForm, LetsTheNextSoundBeHeardWithTheArrowKeys) {
  FormBench bench;
  bench.Key(bench.Sounds(), Qt::Key_Down);
  EXPECT_EQ(bench.CurrentSound(), "CFX StageGrand (S.Art!)");
  EXPECT_EQ(bench.AddressOf(4), (TAddress{104, 10, 0}));
  EXPECT_THAT(bench.sent.Lines, Contains("0> B3 20 0A"));
  EXPECT_EQ(bench.Card(1)->Voice(), "CFX StageGrand (S.Art!)");
  EXPECT_TRUE(bench.Card(1)->IsHeard());
  bench.Key(bench.Sounds(), Qt::Key_Up);
  EXPECT_EQ(bench.AddressOf(4), ConcertGrand);
}

TEST(SoundBrowserForm, AcceptsWithEnterAndCancelsWithEscape) {
  FormBench bench;
  const auto saved = bench.Saved();
  QSignalSpy accepted(&bench.form, &TSoundBrowserForm::accepted);
  QSignalSpy cancelled(&bench.form, &TSoundBrowserForm::cancelled);
  QSignalSpy closed(&bench.form, &TSoundBrowserForm::closed);
  bench.Key(bench.Sounds(), Qt::Key_Down);
  bench.Key(bench.Sounds(), Qt::Key_Escape);
  EXPECT_EQ(cancelled.count(), 1);
  EXPECT_EQ(accepted.count(), 0);
  EXPECT_FALSE(bench.form.isVisible());
  EXPECT_EQ(bench.Saved(), saved);
  ASSERT_TRUE(bench.browser.Open(3));
  EXPECT_TRUE(bench.form.isVisible());
  bench.Key(bench.Sounds(), Qt::Key_Down);
  bench.Key(bench.Sounds(), Qt::Key_Return);
  EXPECT_EQ(accepted.count(), 1);
  EXPECT_EQ(closed.count(), 2);
  EXPECT_EQ(bench.AddressOf(4), (TAddress{104, 10, 0}));
}

TEST(SoundBrowserForm, CancelsWhenItsWindowIsClosed) {
  FormBench bench;
  const auto saved = bench.Saved();
  bench.Key(bench.Sounds(), Qt::Key_Down);
  bench.form.close();
  EXPECT_FALSE(bench.browser.IsOpen());
  EXPECT_EQ(bench.Saved(), saved);
}

TEST(SoundBrowserForm, PressesAButtonThatHasTheFocusWithEnter) {
  FormBench bench;
  const auto saved = bench.Saved();
  bench.Key(bench.Sounds(), Qt::Key_Down);
  QPushButton* cancel = bench.Button("Cancel");
  cancel->setFocus();
  bench.Key(cancel, Qt::Key_Return);
  EXPECT_EQ(bench.Saved(), saved) << "Enter on Cancel is no OK";
}

TEST(SoundBrowserForm, TakesItsButtonsByTheMouse) {
  FormBench bench;
  bench.ClickRow(bench.Sounds(), 2);
  EXPECT_EQ(bench.AddressOf(4), (TAddress{104, 9, 0}));
  const std::size_t before = bench.sent.Lines.size();
  bench.ClickRow(bench.Sounds(), 2);
  EXPECT_EQ(bench.sent.Lines.size(), before + 5) << "the same sound is heard again, its note ended";
  QTest::mouseClick(bench.Card(0), Qt::LeftButton);
  EXPECT_EQ(bench.AddressOf(4), ConcertGrand);
  EXPECT_EQ(bench.CurrentSound(), "CFX ConcertGrand (S.Art!)");
  bench.Key(bench.Card(1), Qt::Key_Space);
  EXPECT_EQ(bench.AddressOf(4), (TAddress{104, 9, 0}));
  QTest::mouseClick(bench.Button("OK"), Qt::LeftButton);
  EXPECT_EQ(bench.AddressOf(4), (TAddress{104, 9, 0}));
  EXPECT_FALSE(bench.form.isVisible());
}

TEST(SoundBrowserForm, ShowsAnotherCategoryAndBankWithoutASound) {
  FormBench bench;
  bench.ClickRow(bench.Categories(), 2);
  EXPECT_EQ(bench.Sounds()->model()->rowCount(),
            bench.Categories()->model()->index(2, 0).data(BadgeRole).toInt());
  EXPECT_FALSE(bench.Sounds()->currentIndex().isValid());
  QRadioButton* xg = bench.form.findChildren<QRadioButton*>().at(2);
  EXPECT_EQ(xg->text(), "XG");
  QTest::mouseClick(xg, Qt::LeftButton, {}, QPoint(8, xg->height() / 2));
  EXPECT_EQ(bench.Categories()->currentIndex().row(), 0);
  EXPECT_TRUE(bench.sent.Lines.empty());
  EXPECT_EQ(bench.AddressOf(4), ConcertGrand);
  QRadioButton* custom = bench.form.findChildren<QRadioButton*>().at(4);
  QTest::mouseClick(custom, Qt::LeftButton, {}, QPoint(8, custom->height() / 2));
  EXPECT_EQ(bench.Sounds()->model()->rowCount(), 0) << "no file of the user's";
  EXPECT_TRUE(custom->toolTip().contains("_Yamaha_Genos_Custom.txt"));
}

TEST(SoundBrowserForm, HidesTheCategoriesForDrums) {
  FormBench bench;
  ASSERT_TRUE(bench.browser.Open(9));
  EXPECT_FALSE(bench.Categories()->isVisible());
  EXPECT_EQ(bench.Sounds()->model()->headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(),
            "Drumsets");
  ASSERT_TRUE(bench.browser.Open(3));
  EXPECT_TRUE(bench.Categories()->isVisible());
}

TEST(SoundBrowserForm, SearchesAllBanksAsOneTypes) {
  FormBench bench;
  QTest::keyClick(bench.Sounds(), 'S');
  EXPECT_EQ(bench.form.focusWidget(), bench.Field());
  QTest::keyClicks(bench.Field(), "TRINGS");
  EXPECT_TRUE(bench.Panel()->isVisible());
  QListView* list = bench.Panel()->List();
  const int count = list->model()->rowCount();
  EXPECT_GT(count, 20);
  EXPECT_TRUE(bench.sent.Lines.empty()) << "a search lets nothing be heard";
  bench.Key(bench.Field(), Qt::Key_Down);
  EXPECT_EQ(bench.Card(1)->Voice(), list->model()->index(0, 0).data().toString());
  bench.Key(bench.Field(), Qt::Key_Down);
  const QString second = list->model()->index(1, 0).data().toString();
  EXPECT_EQ(bench.Card(1)->Voice(), second);
  bench.Key(bench.Field(), Qt::Key_Return);
  EXPECT_FALSE(bench.Panel()->isVisible());
  EXPECT_TRUE(bench.form.isVisible()) << "Enter took the hit, not the window";
  EXPECT_EQ(bench.CurrentSound(), second) << "the lists went there";
  EXPECT_EQ(bench.form.focusWidget(), bench.Sounds());
}

TEST(SoundBrowserForm, SaysThatASearchFoundNothing) {
  const InGerman german;
  FormBench bench;
  QTest::keyClicks(bench.Field(), "xyz");
  EXPECT_FALSE(bench.Panel()->List()->isVisible());
  QStringList texts;
  for (const QLabel* label : bench.Panel()->findChildren<QLabel*>())
    if (label->isVisible()) texts << label->text();
  EXPECT_TRUE(texts.contains(ToQt("Kein Sound enthält „xyz“"))) << texts.join('\n').toStdString();
  bench.Key(bench.Field(), Qt::Key_Return);
  EXPECT_TRUE(bench.form.isVisible());
  bench.Key(bench.Field(), Qt::Key_Escape);
  EXPECT_FALSE(bench.Panel()->isVisible());
  EXPECT_TRUE(bench.browser.IsOpen()) << "the first Escape leaves the search";
  bench.Key(bench.Sounds(), Qt::Key_Escape);
  EXPECT_FALSE(bench.browser.IsOpen());
}

TEST(SoundBrowserForm, GoesToTheSearchWithCtrlF) {
  FormBench bench;
  bench.form.activateWindow();
  QTest::keyClick(bench.Sounds(), Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(bench.form.focusWidget(), bench.Field());
}

TEST(SoundBrowserForm, SwitchesToTheKitsWithAHitThatIsOne) {
  FormBench bench;
  bench.Field()->setText("brush");
  QListView* list = bench.Panel()->List();
  int kit = -1;
  for (int row = 0; row < list->model()->rowCount(); ++row)
    if (!list->model()->index(row, 0).data(WhereRole).toString().contains(ToQt("·"))) kit = row;
  ASSERT_GE(kit, 0);
  list->setCurrentIndex(list->model()->index(kit, 0));
  EXPECT_TRUE(bench.browser.ShowsDrums());
  EXPECT_FALSE(bench.Categories()->isVisible());
  QTest::mouseClick(bench.Card(0), Qt::LeftButton);
  EXPECT_TRUE(bench.Categories()->isVisible());
  EXPECT_EQ(bench.CurrentSound(), "CFX ConcertGrand (S.Art!)");
}

TEST(SoundBrowserForm, EndsThePreviewNoteByItsTimer) {
  FormBench bench;
  bench.Key(bench.Sounds(), Qt::Key_Down);
  EXPECT_EQ(bench.sent.Lines.back(), "0> 93 3C 64");
  auto* timer = bench.form.findChild<QTimer*>();
  ASSERT_TRUE(timer->isActive());
  EXPECT_EQ(timer->interval(), TSoundBrowserForm::NoteLength);
  timer->setInterval(0);
  QTest::qWait(1);
  EXPECT_EQ(bench.sent.Lines.back(), "0> 83 3C 40");
}

TEST(SoundBrowserForm, OffersNotesAndNone) {
  FormBench bench;
  auto* note = bench.form.findChildren<QComboBox*>().last();
  EXPECT_EQ(note->currentText(), "C3");
  EXPECT_EQ(note->itemText(1), "C1");
  QTest::keyClick(note, Qt::Key_Home);
  EXPECT_EQ(bench.browser.PlayANoteKey, std::nullopt);
  bench.sent.Lines.clear();
  bench.Key(bench.Sounds(), Qt::Key_Down);
  EXPECT_EQ(bench.sent.Lines.size(), 3U) << "no note";
  QTest::keyClick(note, Qt::Key_End);
  EXPECT_EQ(bench.browser.PlayANoteKey, 96);
  EXPECT_EQ(bench.sent.Lines.back(), "0> 93 60 64");
}

TEST(SoundBrowserForm, FollowsTheSoloOfItsStrip) {
  FormBench bench;
  QPushButton* solo = bench.Button("Solo");
  QTest::mouseClick(solo, Qt::LeftButton);
  EXPECT_TRUE(bench.song.MidiData[3].Solo);
  EXPECT_TRUE(solo->isChecked());
  bench.song.MidiData[3].Solo = false;
  bench.form.StripChanged(2);
  EXPECT_TRUE(solo->isChecked());
  bench.form.StripChanged(3);
  EXPECT_FALSE(solo->isChecked());
}

TEST(SoundBrowserForm, MovesToTheFirstNoteAndSavesToTheRevoicer) {
  FormBench bench;
  std::int32_t time = -1;
  bench.browser.Hooks.MoveToTimePosition = [&](std::int32_t ms) { time = ms; };
  QTest::mouseClick(bench.Button("goto first note"), Qt::LeftButton);
  EXPECT_EQ(time, 2000);
  QPushButton* save = bench.Button("save to Revoicer");
  EXPECT_FALSE(save->isEnabled());
  EXPECT_FALSE(save->toolTip().isEmpty());
  bench.Key(bench.Sounds(), Qt::Key_Down);
  EXPECT_TRUE(save->isEnabled());
  QTest::mouseClick(save, Qt::LeftButton);
  EXPECT_EQ(bench.revoicer.RevoicerArrayElm(), 1);
}

TEST(SoundBrowserForm, DisablesTheEffectsWhereNoListTellsThem) {
  FormBench bench;
  auto* box = bench.form.findChild<QCheckBox*>();
  EXPECT_FALSE(box->isEnabled());
  EXPECT_FALSE(box->toolTip().isEmpty());
  // A list gets effects as a file would bring them.
  bench.browser.Btn_CancelClick();
  auto& list = const_cast<TSoundList&>(bench.sets.Find(Genos)->Lists().front());
  list.Effects.resize(list.Rows.size());
  ASSERT_TRUE(bench.browser.Open(3));
  EXPECT_TRUE(box->isEnabled());
  EXPECT_TRUE(box->isChecked());
  EXPECT_FALSE(bench.Sounds()->isColumnHidden(SoundTableModel::Effect));
  EXPECT_EQ(bench.Sounds()->model()->index(0, SoundTableModel::Effect).data().toString(), "Off");
  QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
  EXPECT_FALSE(bench.browser.PatchesWithDSP());
}

/// Triggers an entry of the menu that opens next; the texts of its entries.
QStringList Trigger(const QString& entry, const std::function<void()>& open) {
  QStringList texts;
  QTimer::singleShot(0, qApp, [&] {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    QAction* wanted = nullptr;
    for (QAction* action : menu->actions()) {
      texts << action->text();
      if (action->text() == entry) wanted = action;
    }
    menu->close();
    if (wanted != nullptr) wanted->trigger();
  });
  open();
  return texts;
}

TEST(SoundBrowserForm, SavesListsByTheMenuOfTheTable) {
  FormBench bench;
  UserFolder folder;
  bench.options.DataPath = folder.Path;
  const QStringList texts =
      Trigger("save GM2 voices", [&] { bench.form.L_VoicesMouseDown(QPoint(10, 10)); });
  EXPECT_TRUE(texts.contains("save Panel voices"));
  EXPECT_TRUE(texts.contains("save XG/GM voices"));
  EXPECT_NE(folder.Read("_Yamaha_Genos_GM2.txt"), "");
  Trigger("show sounds sorted", [&] { bench.form.L_VoicesMouseDown(QPoint(10, 10)); });
  EXPECT_FALSE(bench.settings.ReadBool("Yamaha Genos", "SortSounds", true));
}

TEST(SoundBrowserForm, OpensItsMenuByTheRightButtonAndChoosesNothing) {
  FormBench bench;
  const QPoint at(40, 100);
  const QStringList texts = Trigger({}, [&] {
    QTest::mouseClick(bench.Sounds()->viewport(), Qt::RightButton, {}, at);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, bench.Sounds()->viewport()->mapToGlobal(at));
    QApplication::sendEvent(bench.Sounds()->viewport(), &event);
  });
  EXPECT_TRUE(texts.contains("save Panel voices"));
  EXPECT_TRUE(bench.sent.Lines.empty());
}

TEST(SoundBrowserForm, LetsTheUserNameSoundsOfTheirOwn) {
  UserFolder folder;
  folder.Write("_Yamaha_Genos_Custom.txt", "Meine\tAlt\t1\t2\n\tBass\t1\t3\n");
  FormBench bench;
  bench.browser.Btn_CancelClick();
  bench.options.DataPath = folder.Path;
  bench.sets.Unload(Genos);
  ASSERT_TRUE(bench.browser.Open(3));
  QRadioButton* custom = bench.form.findChildren<QRadioButton*>().at(4);
  QTest::mouseClick(custom, Qt::LeftButton, {}, QPoint(8, custom->height() / 2));
  ASSERT_EQ(bench.Sounds()->model()->rowCount(), 2);
  bench.ClickRow(bench.Sounds(), 1);
  EXPECT_EQ(bench.AddressOf(4), (TAddress{63, 1, 3}));
  QTest::keyClick(bench.Sounds(), Qt::Key_F2);
  auto* editor = qobject_cast<QLineEdit*>(bench.form.focusWidget());
  ASSERT_NE(editor, nullptr);
  EXPECT_TRUE(bench.Sounds()->IsEditing());
  EXPECT_EQ(editor->selectedText(), "Bass");
  QTest::keyClick(editor, Qt::Key_Escape);
  EXPECT_TRUE(bench.browser.IsOpen()) << "Escape leaves the name, not the window";
  QCoreApplication::processEvents();
  QTest::keyClick(bench.Sounds(), Qt::Key_F2);
  editor = qobject_cast<QLineEdit*>(bench.form.focusWidget());
  ASSERT_NE(editor, nullptr);
  QTest::keyClicks(editor, "Kontra");
  QTest::keyClick(editor, Qt::Key_Return);
  EXPECT_TRUE(QTest::qWaitFor([&] { return bench.CurrentSound() == "Kontra"; }));
  EXPECT_TRUE(bench.browser.IsOpen()) << "Enter ends the name, not the window";
  EXPECT_EQ(folder.Read("_Yamaha_Genos_Custom.txt"), "Meine\tAlt\t1\t2\n\tKontra\t1\t3\n");
  EXPECT_EQ(bench.CurrentSound(), "Kontra");
  EXPECT_EQ(bench.Card(1)->Voice(), "Kontra");
}

TEST(SoundBrowserForm, RemembersItsPlaceForEachInstrument) {
  FormBench bench;
  bench.form.move(60, 40);
  bench.form.resize(1000, 700);
  bench.browser.Btn_CancelClick();
  EXPECT_EQ(bench.settings.ReadInteger("Yamaha Genos", "PatchesFormHeight", 0), 700);
  EXPECT_EQ(bench.settings.ReadInteger("Yamaha Genos", "PatchesFormLeft", 0), 60);
  EXPECT_EQ(bench.settings.ReadInteger("Yamaha Genos", "PatchesFormTop", 0), 40);
  TSoundBrowserForm again(bench.browser);
  ASSERT_TRUE(bench.browser.Open(3));
  EXPECT_EQ(again.height(), 700);
  EXPECT_EQ(again.pos(), QPoint(60, 40));
  bench.browser.Btn_CancelClick();
}

TEST(SoundBrowserForm, ComesBackOntoAScreen) {
  FormBench bench;
  bench.browser.Btn_CancelClick();
  bench.settings.WriteInteger("Yamaha Genos", "PatchesFormLeft", 50000);
  TSoundBrowserForm again(bench.browser);
  ASSERT_TRUE(bench.browser.Open(3));
  EXPECT_TRUE(again.screen()->availableGeometry().contains(again.pos()));
  bench.browser.Btn_CancelClick();
}

TEST(SoundBrowserForm, ShowsManyBanksAsAList) {
  FormBench bench(71, {89, 64, 0});
  auto* choice = bench.form.findChild<BankChoice*>();
  EXPECT_FALSE(choice->ShowsButtons());
  auto* combo = choice->findChild<QComboBox*>();
  ASSERT_TRUE(combo->isVisible());
  EXPECT_GT(combo->count(), 15);
  const int before = combo->currentIndex();
  QTest::keyClick(combo, Qt::Key_Down);
  EXPECT_EQ(combo->currentIndex(), before + 1);
  EXPECT_TRUE(bench.sent.Lines.empty());
}

TEST(SoundBrowserForm, OpensThousandsOfSoundsAtOnce) {
  FormBench bench;
  bench.browser.Btn_CancelClick();
  QElapsedTimer clock;
  clock.start();
  ASSERT_TRUE(bench.browser.Open(3));
  QCoreApplication::processEvents();
  RecordProperty("milliseconds", static_cast<int>(clock.elapsed()));
  EXPECT_LT(clock.elapsed(), 500);
}

TEST(SoundBrowserForm, LetsTabReachEveryControlInItsOrder) {
  FormBench bench;
  bench.Key(bench.Sounds(), Qt::Key_Down);  // there is a new voice, and something to save
  QStringList order;
  QWidget* start = bench.form.findChild<QRadioButton*>();
  start->setFocus();
  for (int i = 0; i < 30; ++i) {
    QWidget* now = bench.form.focusWidget();
    const auto* button = qobject_cast<QAbstractButton*>(now);
    order << (button != nullptr ? button->text() : now->accessibleName());
    QTest::keyClick(now, Qt::Key_Tab);
    if (bench.form.focusWidget() == start) break;
  }
  const QStringList wanted = {"Panel",
                              "Search sounds",
                              "Categories",
                              "Sounds",
                              "Old voice: CFX ConcertGrand (S.Art!)",
                              "New voice: CFX StageGrand (S.Art!)",
                              "Preview note",
                              "Solo",
                              "goto first note",
                              "save to Revoicer",
                              "Cancel",
                              "OK"};
  EXPECT_EQ(order, wanted) << order.join(" | ").toStdString();
}

}  // namespace

}  // namespace Sonarello
