// sonarello_windows_bench: what a window over a long song costs, drawn without a screen.

#include <malloc.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimerEvent>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "Measure.h"
#include "Songs.h"
#include "StandIns.h"
#include "app/controls/QtText.h"
#include "app/controls/SonStyle.h"
#include "app/editors/EventDelegate.h"
#include "app/editors/EventListForm.h"
#include "app/editors/EventListModel.h"
#include "app/editors/EventView.h"
#include "core/OpenPipeline.h"
#include "core/Texts.h"

namespace Sonarello::Bench {

namespace {

using Limit = Report::Limit;

constexpr int Places = 20;  ///< of the list at which everything is done

double Allocated() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

/// The window over a song that was opened from a file.
class EventListWindow {
 public:
  explicit EventListWindow(const std::string& file) {
    options.AutoSysex = false;
    if (!pipeline.OpenMidiFile(file, false)) throw std::runtime_error("refused: " + file);
    rows.Hooks.TimePosition = [this] { return time; };
    edits.Hooks.Changed = [this] { ++changes; };
    form.ShowSong(QStringLiteral("events.mid"), 0);
    form.show();
    Draw();
  }

  void Measure(Report& report) {
    const double before = Allocated();
    const double shown = Seconds([&] {
      form.CB_TrackListChange(1);
      Draw();
    });
    const int count = form.Model().rowCount();
    std::printf("the window of an event list of %d rows\n", count);
    const double bytes = (Allocated() - before) / count;
    double page = 0, follow = 0, value = 0, move = 0;
    for (int n = 0; n < Places; ++n) {
      const int place = count / Places * n;
      Worst(page, [&] { form.Table().verticalScrollBar()->setValue(place); });
      time = rows.Event(place + 1)->TimePosition;
      Worst(follow, [&] { Strike(); });
      const std::int32_t row = NoteBehind(place);
      const bool isSoft = rows.Event(row)->Value[1] < 64;
      Worst(value, [&] { Type(row, Value2Column, isSoft ? "101" : "11"); });
      const std::int32_t far = NoteBehind((place + count / 2) % count);
      const std::string position = rows.Row(far).Fields[PositionColumn];
      Worst(move, [&] { Type(row, PositionColumn, position); });
      rows.Index.SettleListPos();
    }
    const auto milliseconds = [&](const char* what, double seconds, double limit) {
      report.Row("milliseconds to " + std::string(what), 1e3 * seconds, Limit::AtMost, limit, "");
    };
    report.Row("bytes of a row", bytes, Limit::AtMost, 16, "");
    milliseconds("show the list", shown, 300);
    milliseconds("scroll to a page", page, 8);
    milliseconds("follow the song to a page", follow, 8);
    milliseconds("edit a value", value, 20);
    milliseconds("move a note", move, 20);
  }

 private:
  void Draw() {
    QCoreApplication::processEvents();
    form.Table().viewport()->repaint();
  }
  template <class F>
  void Worst(double& figure, F&& f) {
    figure = std::max(figure, Seconds([&] {
                        f();
                        Draw();
                      }));
  }
  void Strike() {
    auto* const timer = form.findChild<QTimer*>(QStringLiteral("EventListTimer"));
    QTimerEvent strike(timer->timerId());
    QCoreApplication::sendEvent(timer, &strike);
  }
  [[nodiscard]] std::int32_t NoteBehind(std::int32_t row) const {
    do ++row;
    while (row < rows.Rows() && rows.Index.Length(row) < 0);
    return row;
  }
  /// Opens a cell's field, types and confirms.
  void Type(std::int32_t row, int column, const std::string& text) {
    const QModelIndex index = form.Model().index(row - 1, column);
    form.Table().setCurrentIndex(index);
    form.Table().edit(index);
    auto* const field = qobject_cast<QLineEdit*>(form.Delegate().Editor());
    if (field == nullptr) throw std::runtime_error("no field in the cell");
    const std::int32_t steps = changes;
    field->setText(ToQt(text));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(field, &enter);
    QCoreApplication::processEvents();  // the delegate takes the text behind the key
    if (changes == steps) throw std::runtime_error("the cell did not take " + text);
  }

  Song song;
  Options options;
  OneRoute routes{0};
  DeafMessages messages;
  SongHooks hooks;
  OpenPipeline pipeline{song, options, routes, messages, hooks};
  TMidiFunctions functions{song, options, routes, messages, hooks};
  SongGate gate;
  TEventRows rows{song, routes, options, gate};
  std::int32_t changes = 0;
  std::int32_t time = 0;  ///< where the song stands, ms
  TEventEdits edits{song, rows, functions, routes, messages, gate};
  TEventListForm form{rows, edits, messages};
};

int Run(bool strict) {
  const QTemporaryDir folder;
  const std::string song = ToStd(folder.filePath(QStringLiteral("song.mid")));
  {
    const Bytes bytes = OneTrackSong(1'000'000);
    std::ofstream out(song, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!out) throw std::runtime_error("cannot write " + song);
  }
  Report report;
  EventListWindow(song).Measure(report);
  if (report.Missed() > 0) std::printf("%d limits missed\n", report.Missed());
  return strict && report.Missed() > 0 ? 1 : 0;
}

}  // namespace

}  // namespace Sonarello::Bench

int main(int argc, char** argv) {
  const bool strict = argc == 2 && std::string(argv[1]) == "--strict";
  if (argc > 1 && !strict) {
    std::fputs(
        "usage: sonarello_windows_bench [--strict]\n"
        "Measures the windows over a song of 1,000,000 events that it makes, drawn without a screen;\n"
        "figures are processor time, the slowest of twenty places in the song. With --strict the exit\n"
        "status is 1 if a limit is missed.\n",
        stderr);
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QStandardPaths::setTestModeEnabled(true);
  try {
    QApplication application(argc, argv);
    Sonarello::GermanLanguage = false;
    Sonarello::DressApplication(application);
    return Sonarello::Bench::Run(strict);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "sonarello_windows_bench: %s\n", e.what());
    return 1;
  }
}
