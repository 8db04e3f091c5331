#include <algorithm>
#include <string>
#include <vector>

#include "Folder.h"
#include "InputReader.h"
#include "StandIns.h"
#include "Targets.h"
#include "core/EventList.h"
#include "core/MidiFileWriter.h"
#include "core/OpenPipeline.h"
#include "editors/EventEdits.h"

namespace Sonarello::Fuzz {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int MostSteps = 32;
/// Longer lists are edited all the same, but not compared after each step.
constexpr std::int32_t RowsToCompare = 2000;

/// Where the file begins behind the steps; the input's end if it holds none.
std::size_t StartOfSong(Input input) {
  constexpr std::uint8_t magic[] = {'M', 'T', 'h', 'd'};
  return static_cast<std::size_t>(
      std::search(input.begin(), input.end(), std::begin(magic), std::end(magic)) - input.begin());
}

/// A song and its list.
class List {
 public:
  bool Open(const Folder& folder, Input file) {
    options.AutoSysex = options.AutoProgChange = false;
    folder.WriteSong(file);
    if (!pipeline.OpenMidiFile(folder.SongFile(), false)) return false;
    rows.UpdateDisplayedEvents();
    return true;
  }

  void Step(InputReader& in) {
    const Bytes before = Saved();
    const bool could = edits.CanUndo();
    const int what = in.Byte() % 6;
    Do(what, in);
    Check();
    const bool changed = what != 5 && Saved() != before;
    if (changed && !edits.CanUndo()) throw Fault("a change that cannot be taken back");
    if (!changed || !edits.CanUndo() || (could && what == 4) || !in.Flag()) return;
    edits.PM_UndoClick();
    Check();
    if (Saved() != before) throw Fault("an undo that leaves a trace");
  }

 private:
  void Do(int what, InputReader& in) {
    if (what == 4) {
      const int entries = static_cast<int>(rows.TrackLines().size());
      rows.CB_TrackListChange(in.Byte() % std::max(entries, 1));
      return rows.CB_FilterChange(in.Byte() % 9);
    }
    if (what == 5) {
      edits.PM_UndoClick();
      return;
    }
    const std::int32_t row = 1 + in.Number16() % std::max(rows.Rows(), 1);
    if (what < 2)
      Edit(row, in.Byte() % EventColumnCount, what == 1, in);
    else if (what == 2)
      Insert(row, in.Byte());
    else
      Delete(row, in.Byte());
  }
  void Edit(std::int32_t row, int column, bool choose, InputReader& in) {
    const TCellEditing cell = edits.GetCellEditorType(column, row);
    std::string text;
    if (choose) {
      const std::size_t item = in.Byte();
      if (!cell.Items.empty()) text = cell.Items[item % cell.Items.size()];
    } else {
      for (int left = in.Byte() % 64; left > 0; --left) text += static_cast<char>(in.Byte());
    }
    const bool readOnly = edits.GetCellReadOnly(column, row);
    const TEditResult result = edits.CellEditDone(column, row, text);
    if (readOnly && result.Applied) throw Fault("an edit of a cell that cannot be edited");
    if (result.Row < 0 || result.Row > rows.Rows()) throw Fault("an edit that ends outside the list");
  }
  void Insert(std::int32_t row, int kind) {
    rows.CB_InsertChange(kind % EventKindCount);
    edits.PM_InsertMidiEventClick(row);
  }
  void Delete(std::int32_t row, int count) {
    std::vector<std::int32_t> selected;
    for (std::int32_t r = row; r <= std::min(row + count, rows.Rows()); ++r) selected.push_back(r);
    edits.PM_DeleteMidiEventClick(selected);
  }

  [[nodiscard]] Bytes Saved() { return writer.Encode("song.mid", song.MidiFileFormat == 0 ? 0 : 1); }
  void Check() {
    const std::vector<std::string> faults = CheckSong(song);
    if (!faults.empty()) throw Fault(faults.front());
    TMyTrack* const list = rows.Index.List();
    if (list == nullptr || rows.Events() > RowsToCompare) return;
    TEventIndex fresh(gate);
    fresh.Build(*list, TEventFilter(rows.Index.Filter()));
    if (fresh.Rows() != rows.Events()) throw Fault("rows that a new list has not, or lacks");
    for (std::int32_t row = 1; row <= fresh.Rows(); ++row) {
      const bool same = fresh.Event(row) == rows.Event(row) &&
                        fresh.Length(row) == rows.Index.Length(row) &&
                        fresh.Bank(row) == rows.Index.Bank(row);
      if (!same) throw Fault("a row that a new list tells otherwise");
      static_cast<void>(rows.Row(row));
    }
  }

  Song song;
  Options options;
  OneRoute routes;
  YesMessages messages;
  SongHooks hooks;
  TMidiFunctions functions{song, options, routes, messages, hooks};
  OpenPipeline pipeline{song, options, routes, messages, hooks};
  MidiFileWriter writer{song, options, routes, messages, hooks};
  SongGate gate;
  TEventRows rows{song, routes, options, gate};
  TEventEdits edits{song, rows, functions, routes, messages, gate};
};

}  // namespace

void FuzzEvents(Input input) {
  static const Folder folder;
  InputReader in(input);
  const int steps = in.Byte() % (MostSteps + 1);
  const std::size_t head = StartOfSong(in.Rest());
  List list;
  if (!list.Open(folder, in.Rest().subspan(head))) return;
  InputReader script(in.Rest().first(head));
  for (int n = 0; n < steps && !script.Empty(); ++n) list.Step(script);
}

}  // namespace Sonarello::Fuzz
