#include "app/adapters/QtProgress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include "app/Application.h"
#include "app/adapters/QtMessages.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Progress on a clock that moves when told; what is shown is written down as "word percent", an end as
/// "-".
struct Watched {
  Watched() {
    progress.Now = [this] { return now; };
    progress.Shown = [this](const std::optional<TProgressShown>& shown) {
      Shown.push_back(shown ? shown->Word.toStdString() + " " + std::to_string(shown->Percent) : "-");
    };
  }
  bool At(std::int64_t ms, double done) {
    now = ms;
    return progress.Report(done);
  }

  QtProgress progress;
  std::int64_t now = 0;
  std::vector<std::string> Shown;
};

bool Waits() {
  const QCursor* cursor = QApplication::overrideCursor();
  return cursor != nullptr && cursor->shape() == Qt::WaitCursor;
}

TEST(QtProgress, ShowsNothingThenThePointerThenTheBar) {
  Watched w;
  {
    const TLongWork work(w.progress, "Opening");
    w.At(299, 0.1);
    EXPECT_FALSE(Waits());
    w.At(300, 0.2);
    EXPECT_TRUE(Waits());
    w.At(999, 0.3);
    EXPECT_THAT(w.Shown, IsEmpty());
    w.At(1000, 0.429);
    w.At(1001, 0.42);
    w.At(1100, 0.9);
    EXPECT_THAT(w.Shown, ElementsAre("Opening 42", "Opening 90"));
  }
  EXPECT_FALSE(Waits());
  EXPECT_THAT(w.Shown, ElementsAre("Opening 42", "Opening 90", "-"));
}

TEST(QtProgress, NeverRunsBackwardsNorOutOfItsBounds) {
  Watched w;
  const TLongWork work(w.progress, "Saving");
  w.At(2000, 0.5);
  w.At(2100, 0.25);
  w.At(2200, -3);
  w.At(2300, 0.6);
  w.At(2400, 7.5);
  EXPECT_THAT(w.Shown, ElementsAre("Saving 50", "Saving 60", "Saving 100"));
}

TEST(QtProgress, BeginsANewWorkAtNothing) {
  Watched w;
  for (const char* word : {"One", "Two"}) {
    const TLongWork work(w.progress, word);
    w.At(w.now + 1500, 0.5);
  }
  EXPECT_THAT(w.Shown, ElementsAre("One 50", "-", "Two 50", "-"));
}

TEST(QtProgress, ShowsWorksInsideOneAnotherAsTheOutermost) {
  Watched w;
  const TLongWork outer(w.progress, "Outer");
  {
    const TLongWork inner(w.progress, "Inner", true);
    w.At(1500, 0.5);
    w.progress.Cancel();
    EXPECT_TRUE(w.At(1600, 0.5)) << "what cannot be cancelled as a whole cannot be in part";
  }
  EXPECT_TRUE(w.progress.IsWorking());
  w.At(1700, 0.6);
  EXPECT_THAT(w.Shown, ElementsAre("Outer 50", "Outer 60"));
}

TEST(QtProgress, EndsAWorkOfNobodysWhenAllIsDoneOrTheProgramGoesOn) {
  Watched w;
  w.progress.UsualWord = [] { return QStringLiteral("Please wait"); };
  w.At(0, 0);
  w.At(1000, 0.5);
  w.At(1100, 1);
  EXPECT_FALSE(w.progress.IsWorking());
  EXPECT_FALSE(Waits());
  w.At(1200, 0);
  w.At(2300, 0.3);
  EXPECT_TRUE(w.progress.IsWorking());
  QCoreApplication::processEvents();
  EXPECT_FALSE(w.progress.IsWorking()) << "a work that failed says no more";
  EXPECT_THAT(w.Shown, ElementsAre("Please wait 50", "Please wait 100", "-", "Please wait 30", "-"));
}

TEST(QtProgress, KeepsTheWindowsPaintedButWithoutInput) {
  class Counting : public QPushButton {
   public:
    using QPushButton::QPushButton;
    void paintEvent(QPaintEvent* event) override {
      ++Paints;
      QPushButton::paintEvent(event);
    }
    int Paints = 0;
  };
  Watched w;
  Counting button("Start");
  int clicks = 0;
  QObject::connect(&button, &QPushButton::clicked, [&] { ++clicks; });
  ShowForTest(button);
  const TLongWork work(w.progress, "Opening");
  const int before = button.Paints;
  button.update();
  for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
    QCoreApplication::postEvent(
        &button, new QMouseEvent(type, {5, 5}, button.mapToGlobal(QPointF(5, 5)), Qt::LeftButton,
                                 Qt::LeftButton, {}));
  w.At(400, 0.1);
  EXPECT_GT(button.Paints, before);
  EXPECT_EQ(clicks, 0);
  w.progress.End();
  QCoreApplication::processEvents();
  EXPECT_EQ(clicks, 0) << "a click on the old song does nothing to the new one";
  button.click();
  EXPECT_EQ(clicks, 1);
  w.progress.Begin("", false);
}

TEST(QtProgress, HoldsTimersBackUntilTheWorkIsOver) {
  Watched w;
  int ticks = 0;
  int shots = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
  timer.start(0);
  QTimer once;
  once.setSingleShot(true);
  QObject::connect(&once, &QTimer::timeout, [&] { ++shots; });
  once.start(0);
  {
    const TLongWork work(w.progress, "Opening");
    w.At(400, 0.1);
    w.At(500, 0.2);
    EXPECT_EQ(ticks, 0);
    EXPECT_EQ(shots, 0);
  }
  QCoreApplication::processEvents();
  EXPECT_GT(ticks, 0);
  EXPECT_EQ(shots, 1) << "a shot is late, not lost";
}

TEST(QtProgress, IsCancelledByItsButtonAndByEscape) {
  Watched w;
  QWidget window;
  QPushButton cancel("Cancel", &window);
  QObject::connect(&cancel, &QPushButton::clicked, [&] { w.progress.Cancel(); });
  w.progress.CancelButton = &cancel;
  ShowForTest(window);
  const auto click = [&] {
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
      QCoreApplication::postEvent(
          &cancel, new QMouseEvent(type, {5, 5}, cancel.mapToGlobal(QPointF(5, 5)), Qt::LeftButton,
                                   Qt::LeftButton, {}));
  };
  const auto escape = [&] {
    QCoreApplication::postEvent(&window, new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, {}));
  };
  const auto goesOn = [&](bool mayCancel, const auto& deed) {
    const TLongWork work(w.progress, "Exporting", mayCancel);
    deed();
    w.At(w.now + 400, 0.1);
    return w.At(w.now + 10, 0.2);
  };
  EXPECT_FALSE(goesOn(true, click));
  EXPECT_FALSE(goesOn(true, escape));
  EXPECT_TRUE(goesOn(false, click));
  EXPECT_TRUE(goesOn(false, escape));
  EXPECT_TRUE(goesOn(true, [] {})) << "the next work is not cancelled any more";
}

TEST(QtProgress, KeepsTheWindowOpenThatTheUserClosesMeanwhile) {
  Watched w;
  QWidget window;
  ShowForTest(window);
  const TLongWork work(w.progress, "Opening");
  QMetaObject::invokeMethod(
      &window, [&] { window.close(); }, Qt::QueuedConnection);
  w.At(400, 0.1);
  EXPECT_TRUE(window.isVisible());
}

TEST(QtProgress, StandsStillWhileADialogIsOpen) {
  QtMessages messages;
  std::int64_t now = 0;
  messages.Work.Now = [&] { return now; };
  std::vector<int> shown;
  messages.Work.Shown = [&](const auto& state) { shown.push_back(state ? state->Percent : -1); };
  messages.Answer = [&](const TMessage&) {
    EXPECT_FALSE(Waits());
    now += 60000;
    messages.Progress(0.2);
    return true;
  };
  const TLongWork work(messages.Work, "Opening");
  now = 400;
  messages.Progress(0.1);
  EXPECT_TRUE(Waits());
  EXPECT_TRUE(messages.Ask("Really?"));
  EXPECT_THAT(shown, IsEmpty());
  messages.Progress(0.3);
  EXPECT_TRUE(Waits());
  EXPECT_THAT(shown, IsEmpty()) << "the minute at the dialog was the user's";
  now += 600;
  messages.Progress(0.4);
  EXPECT_THAT(shown, ElementsAre(40));
}

}  // namespace
}  // namespace Sonarello
