// The main window over a whole workplace, on a MIDI system, a clock and settings of the test's own.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QDialog>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <deque>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "app/Application.h"
#include "app/controls/ChannelStrip.h"
#include "app/controls/Hands.h"
#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/controls/StripRow.h"
#include "app/controls/Theme.h"
#include "app/controls/TrackBar.h"
#include "app/desk/MainForm.h"
#include "core/EventList.h"
#include "helpers/DeskBench.h"
#include "helpers/InGerman.h"

namespace Sonarello {

/// Shows the same time until it is moved. Sleepers wake soon, whatever it shows.
class StillClock : public IClock {
 public:
  [[nodiscard]] std::int64_t Microseconds() const override { return now; }
  void SleepUntil(std::int64_t) override { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }
  void Advance(std::int64_t milliseconds) { now += milliseconds * 1000; }

 private:
  std::atomic<std::int64_t> now = 5'000'000;
};

/// A song of eight bars of 4/4 at 120 bpm: 16 s. Channel 1 has volume 100 and, from bar 5 on, 50, and a
/// pan of 30; channel 2 volume 80; channel 3 no controllers; channel 10 drums at 90. Channels 4 and up
/// have no notes.
[[nodiscard]] inline std::string EightBars() {
  constexpr int bar = 1920;
  Smf song(1, 480);
  song.Track().At(0).Text(3, "Eight bars").At(0).Time(4, 2).At(0).Tempo(500'000).At(8 * bar).End();
  song.Track().At(0).Prog(1, 5).Ctrl(1, 7, 100).Ctrl(1, 10, 30);
  for (int n = 0; n < 8; ++n) {
    if (n == 4) song.At(4 * bar).Ctrl(1, 7, 50);
    song.Note(1, 60 + n, n * bar, n * bar + 480, 60 + n * 5);
  }
  song.At(8 * bar).End();
  song.Track().At(0).Ctrl(2, 7, 80).Note(2, 40, 0, 480).At(8 * bar).End();
  song.Track().Note(3, 50, 0, 480).At(8 * bar).End();
  song.Track().At(0).Ctrl(10, 7, 90).Note(10, 36, 0, 240).Note(10, 38, 480, 720).At(8 * bar).End();
  const Bytes bytes = song.Build();
  return {bytes.begin(), bytes.end()};
}

[[nodiscard]] inline std::string BytesOf(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// Settings are written first, then `Begin` starts everything.
class Main : public testing::Test {
 public:
  Main() {
    midi.Outputs = {"Port A", "Port B"};
    store.WriteString("", "MidiInstrument00", "GM Soundset");
    store.WriteString("", "MidiOutput00", "Port A");
    // The end of the program asks only where a test wants it.
    store.WriteBool("", "ConfirmTerminate", false);
    messages.Answer = [this](const TMessage& message) {
      told.push_back(message);
      if (answers.empty()) return true;
      const bool answer = answers.front();
      answers.pop_front();
      return answer;
    };
  }
  ~Main() override {
    if (work) {
      EXPECT_THAT(CheckSong(work->desk.song), testing::IsEmpty());
    }
    End();
    SetScale(100);
    SetTheme(ThemeKind::Dark);
  }

  /// Starts the program's parts and shows the window.
  void Begin(const std::string& autoload = {}) {
    std::filesystem::create_directories(folder.File("data"));
    std::filesystem::create_directories(folder.File("documents"));
    const TDeskParts parts{.store = store,
                           .messages = aside,
                           .midi = midi,
                           .clock = clock,
                           .FindAudio = {},
                           .LoadSynthesizer = loadSynthesizer};
    work = std::make_unique<Workplace>(parts, folder.File("data") + "/");
    work->Start();
    SetScale(WindowScaleOf(work->desk.settings));
    SetTheme(work->desk.settings.SkinIndex == 0 ? ThemeKind::Dark : ThemeKind::Light);
    form = std::make_unique<TMainForm>(TMainFormParts{.work = *work,
                                                      .messages = messages,
                                                      .aside = aside,
                                                      .store = store,
                                                      .midi = midi,
                                                      .documents = folder.File("documents"),
                                                      .manual = manual});
    form->AskOpenName = [this](const QString& where) {
      askedIn = ToStd(where);
      return ToQt(chosenName);
    };
    form->AskSaveName = [this](const QString& suggestion) {
      suggested = ToStd(suggestion);
      return ToQt(chosenName);
    };
    form->OpenUrl = [this](const QString& url) {
      opened.push_back(ToStd(url));
      return opens;
    };
    form->Start(autoload);
    // From here on the timers strike when the test says so.
    for (QTimer* timer : form->findChildren<QTimer*>(QString(), Qt::FindDirectChildrenOnly))
      if (timer->isActive()) timer->setInterval(std::chrono::hours(1));
    messages.WindowShown(form.get());
    ASSERT_TRUE(QTest::qWaitForWindowExposed(form.get()));
    Settle();
  }
  /// Begins with the song of eight bars.
  void BeginWithSong() {
    Begin();
    Fire("SetupTimer");
    Fire("AutoloadTimer");
    ASSERT_TRUE(form->OpenFile(SongFile()));
    told.clear();
    Settle();
  }
  void End() {
    form.reset();
    work.reset();
  }
  /// Closes the window as its cross does.
  bool Close() {
    const bool closed = form->close();
    Settle();
    return closed;
  }

  static void Settle() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
  }
  /// Lets a timer of the window strike, if it runs.
  bool Fire(const char* name) {
    auto* const timer = form->findChild<QTimer*>(QLatin1String(name));
    EXPECT_NE(timer, nullptr) << name;
    if (timer == nullptr || !timer->isActive()) return false;
    QTimerEvent event(timer->timerId());
    QCoreApplication::sendEvent(timer, &event);
    return true;
  }

  [[nodiscard]] std::string SongFile() const {
    const std::string file = folder.File("eight bars.mid");
    if (!std::filesystem::exists(file)) return folder.Write("eight bars.mid", EightBars());
    return file;
  }
  Desk& TheDesk() { return work->desk; }
  Song& TheSong() { return work->desk.song; }
  [[nodiscard]] TCtrl& Ctrl(int channel, std::size_t number) {
    return TheSong().MidiData[static_cast<std::size_t>(channel)].CtrlArray[number];
  }
  [[nodiscard]] TMidiChannelData& Data(int channel) {
    return TheSong().MidiData[static_cast<std::size_t>(channel)];
  }
  [[nodiscard]] std::int32_t Now() { return TheDesk().Player().TimePosition; }
  QAction& Entry(const char* name) { return form->Menu().Entry(name); }
  /// Chooses an entry of the menu as the user does.
  void Choose(const char* name) {
    form->Menu().SetState({.SongLoaded = TheSong().MidiFileLoaded, .Playing = TheDesk().IsPlaying()});
    EXPECT_TRUE(Entry(name).isEnabled()) << name << ": " << ToStd(Entry(name).toolTip());
    Entry(name).trigger();
    Settle();
  }
  template <class Panel>
  Panel& Of() {
    auto* const panel = form->findChild<Panel*>();
    EXPECT_NE(panel, nullptr);
    return *panel;
  }
  ChannelStrip& Strip(int channel) { return Of<StripRow>().strip(channel); }
  /// A button by the name that screen readers tell.
  static QAbstractButton& Button(const QWidget& panel, const char* name) {
    for (QAbstractButton* button : panel.findChildren<QAbstractButton*>())
      if (button->accessibleName() == QString::fromUtf8(name)) return *button;
    ADD_FAILURE() << "no button is called " << name;
    static QAbstractButton* const none = new QPushButton;
    return *none;
  }
  static void Key(QWidget& to, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    to.setFocus();
    QTest::keyClick(&to, key, modifiers);
  }

  /// Runs something that opens a menu and does something with it there. False if none opened.
  static bool InMenu(const std::function<void()>& open, const std::function<void(QMenu&)>& use) {
    bool used = false;
    QTimer::singleShot(0, qApp, [&] {
      auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      if (menu == nullptr) return;
      used = true;
      use(*menu);
      menu->close();
    });
    open();
    Settle();
    return used;
  }
  /// The same for a dialog, which is closed by `use` or afterwards.
  static bool InDialog(const std::function<void()>& open, const std::function<void(QWidget&)>& use) {
    bool used = false;
    QTimer::singleShot(0, qApp, [&] {
      QWidget* const dialog = QApplication::activeModalWidget();
      if (dialog == nullptr) return;
      used = true;
      use(*dialog);
      dialog->close();
    });
    open();
    Settle();
    return used;
  }

  /// What the user was told and asked, in its order.
  [[nodiscard]] std::vector<std::string> Told() const {
    std::vector<std::string> texts;
    for (const TMessage& message : told) texts.push_back(ToStd(message.Text));
    return texts;
  }

  MemoryRegistry store;
  TestMidiDriver midi;
  StillClock clock;
  TestFolder folder;
  QtMessages messages;
  AsideMessages aside{messages};
  std::string manual;
  std::function<std::unique_ptr<IHostedInstrument>()> loadSynthesizer;  ///< unset: there is none
  std::vector<TMessage> told;
  std::deque<bool> answers;         ///< to questions; yes when there are no more
  std::string chosenName;           ///< what the user chooses in a file dialog; empty: cancelled
  std::string askedIn, suggested;   ///< what file dialogs were told
  std::vector<std::string> opened;  ///< pages that were opened
  bool opens = true;
  std::unique_ptr<Workplace> work;
  std::unique_ptr<TMainForm> form;
};

}  // namespace Sonarello
