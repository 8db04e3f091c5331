#include "Events.h"

#include <malloc.h>

#include <algorithm>
#include <stdexcept>

#include "Measure.h"
#include "editors/EventEdits.h"

namespace Sonarello::Bench {

namespace {

constexpr std::int32_t PageRows = 40;
constexpr int Places = 10;  ///< of the list at which everything is done

double Allocated() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

class EventBench {
 public:
  explicit EventBench(const EventParts& p)
      : song(p.song),
        rows(p.song, p.routes, p.options, gate),
        edits(p.song, rows, p.functions, p.routes, p.messages, gate) {}

  EventFigures Measure(int track) {
    EventFigures figures;
    const double before = Allocated();
    figures.Show = Seconds([&] {
      rows.UpdateDisplayedEvents();
      rows.CB_TrackListChange(track);
      ReadPage(1);
    });
    figures.Rows = rows.Rows();
    figures.RowBytes = (Allocated() - before) / figures.Rows;
    figures.Find = Seconds([&] { Expect(!rows.Find("in vain", 1, false), "search"); });
    for (int n = 0; n < Places; ++n) MeasureAt(figures, PlaceOf(n));
    rows.CB_TrackListChange(0);
    for (int n = 0; n < Places; ++n)
      Worst(figures.Tempo, [&, row = TempoAt(PlaceOf(n))] { Edit(row, Value2Column, "117"); });
    return figures;
  }

 private:
  static void Expect(bool holds, const std::string& what) {
    if (!holds) throw std::runtime_error("the event list does not do what is measured: " + what);
  }
  template <class F>
  void Worst(double& figure, F&& f) {
    figure = std::max(figure, Seconds(f));
    rows.Index.SettleListPos();
  }
  [[nodiscard]] std::int32_t PlaceOf(int n) const {
    return 1 + static_cast<std::int32_t>(std::int64_t{rows.Rows() - PageRows - 1} * n / Places);
  }
  void ReadPage(std::int32_t first) const {
    for (std::int32_t row = first; row < first + PageRows; ++row)
      Expect(!rows.Row(row).Fields[KindColumn].empty(), "page");
  }
  /// The next row at or behind a place that holds a note with an end.
  [[nodiscard]] std::int32_t NoteAt(std::int32_t row) const {
    while (row < rows.Rows() && rows.Index.Length(row) < 0) ++row;
    Expect(rows.Index.Length(row) >= 0, "note");
    return row;
  }
  /// The next row at or behind a place of the conductor's track that holds a tempo.
  [[nodiscard]] std::int32_t TempoAt(std::int32_t row) const {
    while (row < rows.Rows() && !rows.Event(row)->IsMeta(MetaTempo)) ++row;
    Expect(rows.Event(row)->IsMeta(MetaTempo), "tempo");
    return row;
  }
  std::int32_t Edit(std::int32_t row, int column, const std::string& text) {
    edits.GetCellEditorType(column, row);
    const TEditResult result = edits.CellEditDone(column, row, text);
    Expect(result.Applied, "edit to " + text);
    return result.Row;
  }
  void MeasureAt(EventFigures& figures, std::int32_t place) {
    rows.ForgetTexts();
    Worst(figures.Page, [&] { ReadPage(place); });
    std::int32_t row = NoteAt(place);
    const bool isSoft = rows.Event(row)->Value[1] < 64;
    Worst(figures.Value, [&] { row = Edit(row, Value2Column, isSoft ? "101" : "11"); });
    const std::string length = std::to_string(rows.Index.Length(row) + 1);
    Worst(figures.Length, [&] { row = Edit(row, LengthColumn, length); });
    const std::int32_t far = NoteAt((place + rows.Rows() / 2) % rows.Rows() + 1);
    const std::string position = rows.Row(far).Fields[PositionColumn];
    Worst(figures.Move, [&] { row = Edit(row, PositionColumn, position); });
    Worst(figures.Insert, [&] {
      rows.CB_InsertChange(0);
      row = edits.PM_InsertMidiEventClick(row);
      Expect(row > 0, "insert");
    });
    Worst(figures.Delete,
          [&] { Expect(edits.PM_DeleteMidiEventClick({NoteAt(place)}) == 1, "delete"); });
    Worst(figures.Undo, [&] { Expect(edits.PM_UndoClick() > 0, "undo"); });
  }

  Song& song;
  SongGate gate;
  TEventRows rows;
  TEventEdits edits;
};

}  // namespace

EventFigures MeasureEvents(const EventParts& parts, int track) {
  return EventBench(parts).Measure(track);
}

}  // namespace Sonarello::Bench
