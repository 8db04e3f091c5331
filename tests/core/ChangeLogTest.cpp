#include "core/ChangeLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/ReaderBench.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string Described(std::initializer_list<int> bytes) {
  TypMidiEvent event;
  const std::vector<int> all(bytes);
  event.Command = static_cast<std::uint8_t>(all[0]);
  std::size_t from = 1;
  if (event.Command == MetaEvent) event.MType = static_cast<std::int8_t>(all[from++]);
  Bytes payload;
  for (; from < all.size(); ++from) payload.push_back(static_cast<std::uint8_t>(all[from]));
  if (event.IsChannelEvent())
    event.Value = {payload[0], payload.size() > 1 ? payload[1] : std::uint8_t{0}};
  else
    event.Meta = Meta(std::span<const std::uint8_t>(payload));
  return DescribeEvent(event);
}

struct TDescribed {
  std::initializer_list<int> Event;
  const char* German;
  const char* English;
};

TEST(ChangeLog, DescribesEventsInBothLanguages) {
  const TDescribed rows[] = {
      {{0x80, 60, 17}, "Note aus 60, 17, Kanal 1", "Note off 60, 17, channel 1"},
      {{0x9F, 60, 1}, "Note an 60, 1, Kanal 16", "Note on 60, 1, channel 16"},
      {{0xA0, 60, 9}, "Tasten-Aftertouch 60 = 9, Kanal 1", "Key aftertouch 60 = 9, channel 1"},
      {{0xB2, 7, 100}, "Controller 7 = 100, Kanal 3", "Controller 7 = 100, channel 3"},
      {{0xC0, 5}, "Programmwechsel 5, Kanal 1", "Program change 5, channel 1"},
      {{0xD0, 5}, "Kanal-Aftertouch 5, Kanal 1", "Channel aftertouch 5, channel 1"},
      {{0xE0, 0, 64}, "Pitchbend 0, 64, Kanal 1", "Pitch bend 0, 64, channel 1"},
      {{0xF0, 0x7E, 0xF7}, "Sysex 7E F7", "Sysex 7E F7"},
      {{0xF0}, "Sysex", "Sysex"},
      {{0xF7, 1}, "Sysex (F7) 01", "Sysex (F7) 01"},
      {{0xF8}, "Systembyte F8", "System byte F8"},
      {{0xFF, 0x00, 0, 1}, "Sequenznummer 00 01", "Sequence number 00 01"},
      {{0xFF, 0x01, 'a'}, "Text \"a\"", "Text \"a\""},
      {{0xFF, 0x03, 'a'}, "Spurname \"a\"", "Track name \"a\""},
      {{0xFF, 0x04, 'a'}, "Instrumentname \"a\"", "Instrument name \"a\""},
      {{0xFF, 0x05, 'a'}, "Liedtext \"a\"", "Lyric \"a\""},
      {{0xFF, 0x06}, "Marker", "Marker"},
      {{0xFF, 0x07, 'a'}, "Cue-Punkt \"a\"", "Cue point \"a\""},
      {{0xFF, 0x20, 1}, "Kanal-Präfix 01", "Channel prefix 01"},
      {{0xFF, 0x21, 1}, "MIDI-Port 01", "MIDI port 01"},
      {{0xFF, 0x2F}, "Spurende", "End of track"},
      {{0xFF, 0x51, 7, 161, 32}, "Tempo 07 A1 20", "Tempo 07 A1 20"},
      {{0xFF, 0x54, 1}, "SMPTE-Offset 01", "SMPTE-Offset 01"},
      {{0xFF, 0x58, 4, 2, 24, 8}, "Taktart 04 02 18 08", "Time signature 04 02 18 08"},
      {{0xFF, 0x59, 1, 0}, "Tonart 01 00", "Key signature 01 00"},
      {{0xFF, 0x7F, 0x43}, "Sequenzerdaten 43", "Sequencer-specific data 43"},
      {{0xFF, 0x4B, 1}, "Meta 4B 01", "Meta 4B 01"},
      {{0xFF, 0x90, 1}, "Meta 90 01", "Meta 90 01"},
  };
  for (const TDescribed& row : rows) {
    EXPECT_EQ(Described(row.Event), row.English);
    const InGerman german;
    EXPECT_EQ(Described(row.Event), row.German);
  }
}

TEST(ChangeLog, ShowsTheBeginningOfALongPayload) {
  const auto sysex = [] {
    return Described({0xF0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17});
  };
  const std::string shown = "Sysex 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 ... (17 ";
  EXPECT_EQ(sysex(), shown + "bytes)");
  const InGerman german;
  EXPECT_EQ(sysex(), shown + "Bytes)");
}

TEST(ChangeLog, RecordsWhereWhatAndWhyInTheUsersLanguage) {
  ChangeLog log;
  Song song;
  TypMidiEvent event;
  event.Command = 0xC0;
  event.Position = 30;
  LogChange(song, ChangeKind::Dropped, 1, event, "Grund", "reason");  // nobody asks
  song.Changes = &log;
  LogChange(song, ChangeKind::Inserted, 2, event, "Grund", "reason");
  LogMove(song, 3, event, 10, "Grund", "reason");
  {
    const InGerman german;
    LogText(song, ChangeKind::Rewritten, 4, 5, "Was", "what", "Grund", "reason");
  }
  ASSERT_EQ(log.Changes().size(), 3u);
  const TChange& inserted = log.Changes()[0];
  EXPECT_EQ(inserted.Kind, ChangeKind::Inserted);
  EXPECT_EQ(inserted.Track, 2);
  EXPECT_EQ(inserted.Position, 30);
  EXPECT_EQ(inserted.OldPosition, 30);
  EXPECT_EQ(inserted.What, "Program change 0, channel 1");
  EXPECT_EQ(inserted.Why, "reason");
  EXPECT_EQ(log.Changes()[1].Kind, ChangeKind::Moved);
  EXPECT_EQ(log.Changes()[1].OldPosition, 10);
  EXPECT_EQ(log.Changes()[2].What, "Was");
  EXPECT_EQ(log.Changes()[2].Why, "Grund");
}

/// What the reader tells of a file, a line per change: kind, track, tick, event, reason.
Lines ToldBy(const Smf& file, bool wordBox = false) {
  ReaderBench w;
  ChangeLog log;
  w.song.Changes = &log;
  w.options.WordBoxSearch = wordBox;
  w.Decode(file.Build());
  Lines lines;
  for (const TChange& c : log.Changes()) {
    std::string line(1, "DIMR"[static_cast<int>(c.Kind)]);
    line += std::to_string(c.Track);
    line += '@';
    line += std::to_string(c.Position);
    line.append(" ").append(c.What).append(": ").append(c.Why);
    lines.push_back(line);
  }
  return lines;
}

Smf DroppedEvents() {
  Smf file(1);
  file.Track().Text(3, "a").At(3).Text(3, "b").End().Track().At(10).Event({0xF8}).Escape({1}).Sysex({});
  file.Meta(0x21, {1}).Meta(0x51, {1}).Meta(0x80, {1}).Text(1, "").Text(4, "SRL_ch.1 X");
  return file.At(4000).Tempo(500'000).End();
}

TEST(ChangeLog, TellsWhatTheReaderDrops) {
  EXPECT_THAT(
      ToldBy(DroppedEvents()),
      ElementsAre("D0@3 Track name \"b\": second name of the first track",
                  "D1@10 System byte F8: does not belong in a file",
                  "D1@10 Sysex (F7) 01: F7 events are not kept", "D1@10 Sysex: has no content",
                  "D1@10 MIDI port 01: ports and prefixes are set anew", "D1@10 Tempo 01: wrong length",
                  "D1@10 Meta 80 01: unknown type", "D1@10 Text: has no content",
                  "D1@10 Instrument name \"SRL_ch.1 X\": mark of this program, obeyed",
                  "D1@4000 Tempo 07 A1 20: behind the song's end"));
  const InGerman german;
  EXPECT_THAT(ToldBy(DroppedEvents()),
              ElementsAre("D0@3 Spurname \"b\": zweiter Name der ersten Spur",
                          "D1@10 Systembyte F8: gehört nicht in eine Datei",
                          "D1@10 Sysex (F7) 01: F7-Ereignisse werden nicht gehalten",
                          "D1@10 Sysex: ohne Inhalt",
                          "D1@10 MIDI-Port 01: Port und Kanal-Präfix werden neu gesetzt",
                          "D1@10 Tempo 01: falsche Länge", "D1@10 Meta 80 01: unbekannter Typ",
                          "D1@10 Text: ohne Inhalt",
                          "D1@10 Instrumentname \"SRL_ch.1 X\": Marke des Programms, wurde gelesen",
                          "D1@4000 Tempo 07 A1 20: hinter dem Songende"));
}

TEST(ChangeLog, TellsWhatTheReaderRewrites) {
  Smf file(1);
  file.Track().Sysex({0, 0x20, 0x24, 0, 1}).Text(1, "la").End();
  file.Track()
      .Ctrl(1, 7, 200)
      .On(1, 60, 0)
      .On(1, 60, 0)
      .Meta(0x7F, {0x43, 0x7B, 1, 0x21, 0, 1, 0})
      .End();
  EXPECT_THAT(ToldBy(file, true),
              ElementsAre("R0@0 Lyric \"la\r\": lyrics told as text",
                          "R1@0 Controller 7 = 127, channel 1: value above 127",
                          "R1@0 Sequencer-specific data 43 7B 01 37 00 01 00: spelling of the chord",
                          "R1@0 2 note-ons with velocity 0: kept as note-offs"));
}

TEST(ChangeLog, TellsThatEventsWereBroughtIntoOrder) {
  Smf file(1);
  file.Track().End().Track().At(10).On(1, 60);
  file.Put({0x8F, 0xFF, 0xFF, 0xFF, 0x00, 0x80, 60, 1}).Put({0, 0xFF, 0x2F, 0});  // 128 ticks back
  EXPECT_THAT(ToldBy(file), ElementsAre("M1@0 Events of the track: brought into order of time",
                                        "M0@0 Events outside the song: damaged times in the file"));
}

TEST(ChangeLog, StaysEmptyForACleanFile) {
  EXPECT_THAT(ToldBy(Smf(1).Track().Tempo(500'000).End().Track().Note(1, 60, 0, 10).End()), IsEmpty());
}

}  // namespace
}  // namespace Sonarello
