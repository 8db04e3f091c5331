// Thousands of edits at random: the song stays whole, the rows stay true, an undo gives the same song.
#include <gtest/gtest.h>

#include <random>

#include "editors/EditorBench.h"

namespace Sonarello {

namespace {

const std::vector<std::string> Texts = {"",
                                        "0",
                                        "1",
                                        "2",
                                        "7",
                                        "10",
                                        "16",
                                        "64",
                                        "127",
                                        "128",
                                        "8191",
                                        "-8192",
                                        "8192",
                                        "480",
                                        "5000",
                                        "99999999",
                                        "1.1.0",
                                        "1.2",
                                        "2",
                                        "2:3:100",
                                        "3.4.479",
                                        "1.01.003",
                                        "2.1.0",
                                        "4.1.1",
                                        "9.9.9",
                                        "0.0.0",
                                        "C3",
                                        "C8",
                                        "F#2",
                                        "B4",
                                        "H4",
                                        "Bank MSB",
                                        "Bank LSB",
                                        "Panorama",
                                        "Expression",
                                        "Modulation",
                                        "Text",
                                        "Track name",
                                        "Lyrics",
                                        "Marker",
                                        "Tempo",
                                        "Time signature",
                                        "XF chord",
                                        "Key signature",
                                        "90.5",
                                        "4/4",
                                        "6/8",
                                        "3/7",
                                        "Cb",
                                        "F# min",
                                        "G mol",
                                        "F#m7/C",
                                        "srl_ignore",
                                        "la***_NL_***",
                                        "7E 7F 09 01 F7",
                                        "41 10 42 12 40 00 7F 00 41",
                                        "zz",
                                        "43 10 4C 00 00 7E 00 F7",
                                        "Copyright info"};

EditorBench& FillSong(EditorBench& s, int format) {
  s.song.MidiFileFormat = s.song.MidiFileOrgFormat = static_cast<std::uint8_t>(format);
  std::mt19937 random(7);
  const auto below = [&](unsigned n) { return static_cast<int>(random() % n); };
  if (format == 1) {
    s.NewTrack().Tempo(0, 500'000).Sign(0, 4, 2);
    s.Tempo(960, 400'000).Sign(1920, 3, 2);
  }
  s.NewTrack();
  if (format == 0) s.Tempo(0, 500'000).Sign(0, 4, 2);
  s.Words(0, 3, "Bass").Exclusive(2, {0x7E, 0x7F, 0x09, 0x01, 0xF7}).Ctrl(4, 0, 1).Ctrl(6, 32, 2);
  s.Program(8, 5).Ctrl(10, 7, 90).Ctrl(12, 10, 60).Data(14, 0x59, {0xFE, 1});
  s.Data(16, 0x7F, {0x43, 0x7B, 1, 0x31, 8, 0x7F, 0x7F});
  for (int n = 0; n < 40; ++n) {
    const int at = 100 + n * 90;
    const int channel = format == 0 ? 1 + below(2) : 1;
    s.Note(at, at + 1 + below(89), n % 9 == 0 ? 120 : 58 + below(4), channel);
  }
  s.Words(3700, 5, "la").Words(3702, 1, "line").Data(3704, 0x4B, {1, 2, 3});
  s.Ctrl(3710, 0, 3).Ctrl(3712, 32, 4).Program(3714, 9);
  return s.Open(1);
}

class Random {
 public:
  Random(EditorBench& b, unsigned seed) : s(b), random(seed) {}

  void Step() {
    if (Below(20) == 0) ShowAnother();
    const Bytes before = s.Saved();
    const bool could = s.edits.CanUndo();
    const std::string doing = Act();
    Check(doing);
    const bool changed = s.Saved() != before;
    if (changed) ++Changes;
    ASSERT_TRUE(!changed || s.edits.CanUndo()) << doing;
    if (!s.edits.CanUndo() || Below(3) != 0) return;
    if (!changed && could) return;  // what would be taken back is an earlier step
    s.edits.PM_UndoClick();
    ++Undone;
    Check("undo of " + doing);
    EXPECT_EQ(s.Saved(), before) << doing;
  }

  int Changes = 0;
  int Undone = 0;

 private:
  int Below(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
  std::int32_t AnyRow() { return 1 + Below(std::max(s.rows.Rows(), 1)); }

  void ShowAnother() {
    const int entries = static_cast<int>(s.rows.TrackLines().size());
    s.rows.CB_TrackListChange(Below(3) == 0 ? Below(entries) : 1);
    s.rows.CB_FilterChange(Below(3) == 0 ? Below(9) : 0);
  }

  std::string Act() {
    const std::int32_t row = AnyRow();
    switch (Below(10)) {
      case 0: {
        const auto kind = static_cast<TEventKind>(Below(EventKindCount));
        s.Insert(kind, row);
        return "insert " + KindName(kind) + " at row " + std::to_string(row);
      }
      case 1: {
        std::vector<std::int32_t> selected = {row};
        while (Below(2) == 0) selected.push_back(AnyRow());
        std::ranges::sort(selected);
        selected.erase(std::unique(selected.begin(), selected.end()), selected.end());
        s.edits.PM_DeleteMidiEventClick(selected);
        return "delete row " + std::to_string(row);
      }
      default: {
        const int column = AnyColumn(row);
        const std::string was = s.Cell(row, column);
        const std::string text = AnyText(row, column);
        s.Edit(row, column, text);
        return "'" + was + "' to '" + text + "' in column " + std::to_string(column) + " of row " +
               std::to_string(row);
      }
    }
  }

  int AnyColumn(std::int32_t row) {
    int column = Below(EventColumnCount);
    for (int n = 0; n < 4 && s.edits.GetCellReadOnly(column, row); ++n)
      column = Below(EventColumnCount);
    return column;
  }

  /// Something that fits the cell, or anything at all.
  std::string AnyText(std::int32_t row, int column) {
    const TCellEditing editing = s.edits.GetCellEditorType(column, row);
    if (!editing.Items.empty() && Below(4) != 0)
      return editing.Items[static_cast<std::size_t>(Below(static_cast<int>(editing.Items.size())))];
    const int kind = Below(4);
    if (column == PositionColumn && kind != 0)
      return kind == 1 ? TicksToStr(s.song, Below(s.song.MaxSongPosition + 20))
                       : s.Cell(AnyRow(), column);
    if (kind == 1) return std::to_string(Below(200));
    if (kind == 2) return std::to_string(Below(20000) - 10000);
    return Texts[static_cast<std::size_t>(Below(static_cast<int>(Texts.size())))];
  }

  /// The song is whole, and the index is what a new one would be.
  void Check(const std::string& doing) {
    const auto faults = CheckSong(s.song);
    ASSERT_TRUE(faults.empty()) << doing << ": " << faults.front();
    if (s.rows.Index.List() == nullptr) return;
    ASSERT_TRUE(s.rows.Index.IsCurrent()) << doing;
    s.rows.Index.SettleListPos();
    std::vector<std::int32_t> places;
    ForEachEvent(*s.rows.Index.List(), [&](PtrMidiEvent e) { places.push_back(e->ListPos); });
    TEventIndex fresh(s.gate);
    fresh.Build(*s.rows.Index.List(), s.rows.Index.Filter());
    ASSERT_EQ(s.rows.Index.Rows(), fresh.Rows()) << doing;
    for (std::int32_t row = 1; row <= fresh.Rows(); ++row) {
      ASSERT_EQ(s.rows.Index.Event(row), fresh.Event(row)) << doing << ", row " << row;
      ASSERT_EQ(s.rows.Index.Length(row), fresh.Length(row)) << doing << ", row " << row;
      ASSERT_EQ(s.rows.Index.Bank(row), fresh.Bank(row)) << doing << ", row " << row;
      ASSERT_EQ(s.rows.Index.RowOf(fresh.Event(row)), row) << doing;
      const PtrMidiEvent off = fresh.Event(row)->NoteOffEvent;
      const std::int32_t length = off == nullptr ? -1 : off->Position - fresh.Event(row)->Position;
      ASSERT_EQ(length, fresh.Length(row)) << doing;
    }
    std::size_t n = 0;
    ForEachEvent(*s.rows.Index.List(), [&](PtrMidiEvent e) {
      ASSERT_EQ(places[n++], e->ListPos) << doing << ", at tick " << e->Position;
    });
  }

  EditorBench& s;
  std::mt19937 random;
};

class RandomEdits : public testing::TestWithParam<int> {};

TEST_P(RandomEdits, KeepTheSongWholeAndCanBeTakenBack) {
  for (unsigned seed = 0; seed < 40 && !HasFatalFailure(); ++seed) {
    EditorBench s;
    FillSong(s, GetParam());
    ASSERT_TRUE(CheckSong(s.song).empty());
    Random random(s, seed);
    for (int n = 0; n < 250 && !HasFatalFailure(); ++n) {
      SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(n));
      random.Step();
    }
    EXPECT_GT(random.Changes, 60);
    EXPECT_GT(random.Undone, 15);
    // What a step keeps is given back.
    s.edits.ClearBackupedData();
    std::size_t nodes = 0;
    for (const TMyTrack& track : s.song.MidiTrack) ForEachEvent(track, [&](PtrMidiEvent) { ++nodes; });
    EXPECT_EQ(s.song.Pool.Live(), nodes);
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, RandomEdits, testing::Values(0, 1));

}  // namespace

}  // namespace Sonarello
