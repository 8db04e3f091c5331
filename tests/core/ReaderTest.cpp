// What the reader makes of a sound file: events, drops, tables, classification.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/ReaderBench.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A format 1 file of two tracks, so that it does not count as format 0; events go to track 1.
Smf TwoTracks() {
  Smf file(1);
  file.Track().End().Track();
  return file;
}

TEST(Reader, GivesAnEmptyTrackItsHeadAndItsEnd) {
  ReaderBench w;
  w.Decode(Smf(1).Track().End().Track().Build());
  ASSERT_EQ(w.song.NumberOfSourceTracks, 2);
  for (int t = 0; t < 2; ++t) {
    const TypMidiEvent& head = *w.Track(t).TrkFirstEvent;
    EXPECT_EQ(Line(head), "0 FF21 00");
    EXPECT_EQ(head.DType, LongEvent);
    EXPECT_EQ(head.DLength, 1);
    const TypMidiEvent& end = *head.NextEvent;
    EXPECT_EQ(Line(end), "999 FF2F");
    EXPECT_EQ(end.DType, LongEvent);
    EXPECT_EQ(end.DLength, 0);
    EXPECT_EQ(w.Track(t).TrkLastEvent, &end);
    EXPECT_EQ(w.Track(t).TrkPlayEvent, &head);
    EXPECT_EQ(w.Track(t).TrkEventCounter, 2);
    EXPECT_EQ(w.Track(t).TrkMidiIndex, -1);
    EXPECT_EQ(w.Track(t).TrkListIndex, 1);
    EXPECT_EQ(w.Track(t).TrkPatchNumber, -1);
    EXPECT_FALSE(w.Track(t).TrkIgnore);
  }
  EXPECT_THAT(CheckSong(w.song), IsEmpty());
}

TEST(Reader, KeepsEveryKindOfChannelEvent) {
  ReaderBench w;
  w.Decode(TwoTracks()
               .At(10)
               .On(1, 60, 100)
               .At(20)
               .Off(1, 60, 5)
               .Event({0xA1, 61, 62})
               .Ctrl(3, 7, 127)
               .Prog(4, 127)
               .Event({0xD4, 99})
               .Bend(16, 1, 64)
               .End()
               .Build());
  EXPECT_THAT(w.List(1), ElementsAre("10 90 60 100", "20 80 60 5", "20 A1 61 62", "20 B2 7 127",
                                     "20 C3 127", "20 D4 99", "20 EF 1 64"));
  for (int i = 1; i <= 7; ++i) {
    const TypMidiEvent& e = *w.Event(1, i);
    EXPECT_EQ(e.DType, ShortEvent);
    EXPECT_EQ(e.DLength, i == 5 || i == 6 ? 2 : 3);
    EXPECT_EQ(e.MType, -1);
    EXPECT_EQ(e.Value, e.ValueOrg);
    EXPECT_TRUE(e.Meta.empty());
    EXPECT_EQ(e.NoteOffEvent, nullptr);
    EXPECT_EQ(e.NoteOnEvent, nullptr);
  }
}

TEST(Reader, StoresANoteOnOfVelocityZeroAsNoteOffOfVelocity17) {
  ReaderBench w;
  w.Decode(TwoTracks().At(0).On(3, 60, 0).At(5).Event({61, 0}).Event({62, 90}).End().Build());
  // Running status stays a note-on behind the rewritten event.
  EXPECT_THAT(w.List(1), ElementsAre("0 82 60 17", "5 82 61 17", "5 92 62 90"));
  EXPECT_EQ(w.Event(1, 1)->ValueOrg[1], 17);
  EXPECT_EQ(w.Track(1).TrkNoteOnCnt, 1);
}

TEST(Reader, BringsASecondDataByteAbove127IntoRange) {
  ReaderBench w;
  w.Decode(TwoTracks().On(1, 60, 200).Off(1, 60, 128).Ctrl(1, 7, 255).Bend(1, 0, 130).End().Build());
  EXPECT_THAT(w.List(1), ElementsAre("0 90 60 127", "0 80 60 17", "0 B0 7 127", "0 E0 0 127"));
  EXPECT_EQ(w.Event(1, 2)->ValueOrg[1], 17);
  EXPECT_EQ(w.Event(1, 3)->ValueOrg[1], 127);
  EXPECT_THAT(w.messages.Shown, IsEmpty());
}

TEST(Reader, TakesAFormat1FileOfOneTrackAsFormat0) {
  ReaderBench w;
  w.options.UnmixFormat0 = false;
  w.Decode(Smf(1).Track().On(1, 60).End().Build());
  EXPECT_EQ(w.song.MidiFileFormat, 0);
  EXPECT_EQ(w.song.MidiFileOrgFormat, 0);
  EXPECT_EQ(w.song.NumberOfSourceTracks, 1);
  EXPECT_EQ(w.Track(0).TrkMidiIndex, 16);
}

TEST(Reader, TakesEveryFormatButZeroAsFormat1AndReadsItsLowByteOnly) {
  for (const int format : {1, 2, 3, 255, 0x0101}) {
    ReaderBench w;
    w.Decode(Smf(format).Track().On(1, 60).End().Track().End().Build());
    EXPECT_EQ(w.song.MidiFileFormat, 1) << format;
    EXPECT_NE(w.song.MidiFileOrgFormat, 0) << format;
    EXPECT_EQ(w.song.NumberOfSourceTracks, 2) << format;
    EXPECT_EQ(w.Track(0).TrkMidiIndex, 0) << format;
  }
  ReaderBench w;
  w.Decode(Smf(0x0100).Track().On(1, 60).End().Build());
  EXPECT_EQ(w.song.MidiFileOrgFormat, 0);
}

TEST(Reader, TakesTheSixteenBitsOfTheDivisionAsTicksPerQuarter) {
  for (const int division : {1, 4, 99, 480, 0x7FFF, 0xE728, 0xFFFF}) {
    ReaderBench w;
    w.Decode(Smf(1, division).Track().End().Track().End().Build());
    EXPECT_EQ(w.song.SourceTimeBase, division);
    EXPECT_EQ(w.song.CopyQuantWindow, division / 5);
  }
}

std::int32_t LengthWith(Smf& file) {
  ReaderBench w;
  w.Decode(file.Build());
  EXPECT_THAT(CheckSong(w.song), IsEmpty());
  EXPECT_EQ(w.Track(1).TrkLastEvent->Position, w.song.MaxSongPosition);
  return w.song.MaxSongPosition;
}

TEST(Reader, EndsTheSongTenTicksBehindItsLastEventAt999AtLeast) {
  EXPECT_EQ(LengthWith(TwoTracks().At(0).On(1, 60)), 999);
  EXPECT_EQ(LengthWith(TwoTracks().At(989).On(1, 60)), 999);
  EXPECT_EQ(LengthWith(TwoTracks().At(990).On(1, 60)), 1000);
  EXPECT_EQ(LengthWith(TwoTracks().At(5000).Off(1, 60).At(90'000).End()), 5010);
}

TEST(Reader, LetsDroppedEventsAndLowMetasExtendTheSongButNoHighMetas) {
  EXPECT_EQ(LengthWith(TwoTracks().At(5000).Sysex({0xF7})), 5010);
  EXPECT_EQ(LengthWith(TwoTracks().At(5000).Sysex({})), 5010);
  EXPECT_EQ(LengthWith(TwoTracks().At(5000).Escape({1, 2})), 5010);
  EXPECT_EQ(LengthWith(TwoTracks().At(5000).Event({0xF8})), 5010);
  EXPECT_EQ(LengthWith(TwoTracks().At(5000).Text(1, "a")), 5010);
  EXPECT_EQ(LengthWith(TwoTracks().At(5000).Text(1, "")), 5010);
  EXPECT_EQ(LengthWith(TwoTracks().At(5000).Meta(0x21, {0})), 5010);
  EXPECT_EQ(LengthWith(TwoTracks().At(5000).Meta(0x2E, {0})), 5010);
  for (const int type : {0x30, 0x4B, 0x51, 0x54, 0x58, 0x59, 0x7F, 0x80, 0xFF})
    EXPECT_EQ(LengthWith(TwoTracks().At(5000).Meta(type, {4, 2, 24, 8})), 999) << type;
}

TEST(Reader, EndsATrackAtItsEndOfTrackAndIgnoresTheBytesBehindIt) {
  ReaderBench w;
  w.Decode(Smf(1)
               .Track()
               .On(1, 60)
               .End()
               .Put({0x00, 0xF1, 0xFE, 0xFD, 1, 2, 3})
               .Track()
               .At(7)
               .On(2, 61)
               .End()
               .Build());
  EXPECT_THAT(w.List(0), ElementsAre("0 90 60 100"));
  EXPECT_THAT(w.List(1), ElementsAre("7 91 61 100"));
}

TEST(Reader, NeedsNoEndOfTrackAndIgnoresBytesBehindTheLastChunk) {
  ReaderBench w;
  Bytes file = TwoTracks().At(3).On(1, 60).Build();
  for (const char c : {'X', 'F', 'I', 'H', '\0', '\xFF'}) file.push_back(static_cast<std::uint8_t>(c));
  w.Decode(file);
  EXPECT_THAT(w.List(1), ElementsAre("3 90 60 100"));
  EXPECT_THAT(CheckSong(w.song), IsEmpty());
}

TEST(Reader, ReadsOnlyAsManyChunksAsTheHeaderCounts) {
  ReaderBench w;
  w.Decode(Smf(1).Claims(2).Track().End().Track().End().Track().On(1, 60).End().Build());
  EXPECT_EQ(w.song.NumberOfSourceTracks, 2);
}

TEST(Reader, DropsWhatAFileShallNotBringAlong) {
  ReaderBench w;
  w.Decode(TwoTracks()
               .Escape({})
               .Escape({0x43, 0xF7})
               .Event({0xF8})
               .Event({0xF9})
               .Event({0xFA})
               .Event({0xFB})
               .Event({0xFC})
               .Meta(0x20, {0})
               .Meta(0x21, {1})
               .Sysex({})
               .Text(1, "")
               .Text(3, "")
               .Text(5, "")
               .Meta(0x7F, {})
               .Meta(0x4B, {})
               .Meta(0x58, {4, 2, 24})
               .Meta(0x58, {4, 2, 24, 8, 0})
               .Meta(0x59, {0})
               .Meta(0x59, {0, 0, 0})
               .Meta(0x51, {7, 161})
               .Meta(0x51, {0, 7, 161, 32})
               .Meta(0x00, {1})
               .Meta(0x00, {0, 0, 1})
               .Meta(0x80, {1})
               .Meta(0xFF, {1})
               .End()
               .Build());
  EXPECT_THAT(w.List(1), IsEmpty());
  EXPECT_EQ(w.Track(1).TrkEventCounter, 2);
  EXPECT_EQ(w.song.SysexFoundOnTrack, -1);
  EXPECT_EQ(w.song.KeySignArray[1].Elements, 0);
}

TEST(Reader, KeepsAllOtherMetasWithTheirPayload) {
  ReaderBench w;
  w.Decode(TwoTracks()
               .At(4)
               .Meta(0x00, {0, 7})
               .Meta(0x01, {65})
               .Meta(0x02, {66})
               .Meta(0x03, {67})
               .Meta(0x05, {0xE4})
               .Meta(0x06, {69})
               .Meta(0x07, {70})
               .Meta(0x08, {71})
               .Meta(0x4B, {1, 2})
               .Meta(0x54, {1, 2, 3, 4, 5})
               .Meta(0x58, {4, 2, 24, 8})
               .Meta(0x59, {0xFD, 1})
               .Meta(0x7F, {0x43})
               .Tempo(500'000)
               .End()
               .Build());
  EXPECT_THAT(w.List(1), ElementsAre("4 FF00 00 07", "4 FF01 41", "4 FF02 42", "4 FF03 43", "4 FF05 E4",
                                     "4 FF06 45", "4 FF07 46", "4 FF08 47", "4 FF4B 01 02",
                                     "4 FF54 01 02 03 04 05", "4 FF58 04 02 18 08", "4 FF59 FD 01",
                                     "4 FF7F 43", "4 FF51 07 A1 20"));
  for (int i = 1; i <= 14; ++i) {
    const TypMidiEvent& e = *w.Event(1, i);
    EXPECT_EQ(e.DType, LongEvent);
    EXPECT_EQ(e.DLength, static_cast<std::int32_t>(e.Meta.size()));
    EXPECT_EQ(e.Value[0] | e.Value[1] | e.ValueOrg[0] | e.ValueOrg[1], 0);
  }
}

TEST(Reader, DropsHighMetasAtOrBehindTheSongsEnd) {
  ReaderBench w;
  Smf file = TwoTracks();
  file.At(1000).On(1, 60);  // the song ends at 1010
  for (const int tick : {1009, 1010, 1011, 5000}) {
    file.At(tick).Time(3, 2).Meta(0x59, {0, 0}).Tempo(400'000);
    file.Meta(0x54, {0, 0, 0, 0, 0}).Meta(0x7F, {1}).Meta(0x4B, {1});
  }
  w.Decode(file.End().Build());
  EXPECT_EQ(w.song.MaxSongPosition, 1010);
  EXPECT_EQ(w.List(1).size(), 7u);
  EXPECT_EQ(w.Track(1).TrkLastEvent->PrevEvent->Position, 1009);
  EXPECT_THAT(CheckSong(w.song), IsEmpty());
}

TEST(Reader, KeepsTheBytesOfTextsVerbatim) {
  ReaderBench w;
  const std::string text = std::string("Gr\xFC\xDF") + '\0' + "e\r\n\xC3\xA4";
  w.Decode(TwoTracks().Text(5, text).End().Build());
  EXPECT_EQ(w.Event(1, 1)->Meta.Text(), text);
}

// --- Sysex

TEST(Reader, KeepsSysexesWithTheirClosingByteAndTellsTheirTrack) {
  ReaderBench w;
  w.Decode(TwoTracks().At(2).Sysex({0x7E, 0x7F, 9, 1, 0xF7}).At(3).Sysex({0x41}).End().Build());
  EXPECT_THAT(w.List(1), ElementsAre("2 F0 7E 7F 09 01 F7", "3 F0 41"));
  EXPECT_EQ(w.Event(1, 1)->MType, -1);
  EXPECT_EQ(w.Event(1, 1)->DLength, 5);
  EXPECT_EQ(w.song.SysexFoundOnTrack, 1);
  ASSERT_EQ(w.functions.SourceSysexes.size(), 2u);
  EXPECT_EQ(w.functions.SourceSysexes[1].Track, 1);
  EXPECT_EQ(w.functions.SourceSysexes[1].Event, w.Event(1, 2));
}

TEST(Reader, RecognisesXGSystemOnByItsExactBytes) {
  const auto isOn = [](std::initializer_list<int> bytes) {
    ReaderBench w;
    w.Decode(TwoTracks().Sysex(bytes).End().Build());
    return w.song.XGSystemOnPresentOnLoad;
  };
  EXPECT_TRUE(isOn({0x43, 0x10, 0x4C, 0, 0, 0x7E, 0, 0xF7}));
  EXPECT_FALSE(isOn({0x43, 0x10, 0x4C, 0, 0, 0x7E, 0}));
  EXPECT_FALSE(isOn({0x43, 0x11, 0x4C, 0, 0, 0x7E, 0, 0xF7}));
  EXPECT_FALSE(isOn({0x43, 0x10, 0x4C, 0, 0, 0x7E, 0, 0xF7, 0xF7}));
}

TEST(Reader, RemembersTheLastSysexOfTheMotifFamily) {
  ReaderBench w;
  w.Decode(TwoTracks()
               .Sysex({0x43, 0x10, 0x7F, 0, 0xF7})
               .Sysex({0x43, 0x10, 0x7F, 3, 0xF7})
               .Sysex({0x43, 0x10, 0x4C, 3, 0xF7})
               .End()
               .Build());
  EXPECT_EQ(w.song.MotifMartor, w.Event(1, 2));
}

// --- Running status

TEST(Reader, LetsRunningStatusSurviveSystemEventsUnlessToldOtherwise) {
  const auto verdict = [](int mode, std::initializer_list<int> between) {
    ReaderBench w;
    w.options.PrevCommandMode = mode;
    const std::string text =
        w.Verdict(TwoTracks().On(1, 60).Event(between).Event({61, 5}).End().Build());
    if (text.empty()) {
      EXPECT_EQ(w.List(1).back(), "0 90 61 5");
    }
    return text;
  };
  const std::string refused = "Error in midifile: \"PrevCommand < $80\"!";
  for (const auto& between :
       {std::initializer_list<int>{0xFF, 1, 1, 65}, {0xF0, 1, 0xF7}, {0xF7, 0}, {0xF8}}) {
    EXPECT_EQ(verdict(0, between), refused);
    EXPECT_EQ(verdict(1, between), "");
    EXPECT_EQ(verdict(2, between), "");
  }
}

TEST(Reader, BeginsEachTrackWithoutRunningStatus) {
  ReaderBench w;
  EXPECT_EQ(w.Verdict(Smf(1).Track().On(1, 60).End().Track().Event({61, 5}).End().Build()),
            "Error in midifile: \"PrevCommand < $80\"!");
}

TEST(Reader, ReadsRunningStatusOfOneDataByte) {
  ReaderBench w;
  w.Decode(TwoTracks().Prog(5, 1).Event({2}).Event({3}).Event({0xD4, 4}).Event({5}).End().Build());
  EXPECT_THAT(w.List(1), ElementsAre("0 C4 1", "0 C4 2", "0 C4 3", "0 D4 4", "0 D4 5"));
}

// --- What a track and a channel are known by

TEST(Reader, TellsTheOnlyChannelOfATrack) {
  ReaderBench w;
  w.Decode(Smf(1)
               .Track()
               .Tempo(500'000)
               .End()
               .Track()
               .On(7, 60)
               .Prog(7, 2)
               .End()
               .Track()
               .Prog(1, 1)
               .Ctrl(2, 7, 7)
               .Prog(1, 1)
               .End()
               .Track()
               .Event({0xDF, 1})
               .End()
               .Build());
  EXPECT_EQ(w.Track(0).TrkMidiIndex, -1);
  EXPECT_EQ(w.Track(1).TrkMidiIndex, 6);
  EXPECT_EQ(w.Track(2).TrkMidiIndex, 16);
  EXPECT_EQ(w.Track(3).TrkMidiIndex, 15);
}

TEST(Reader, GivesEveryTrackTheDelayOfTheMainInstrument) {
  ReaderBench w;
  w.routes.Table[0].Delay = 25;
  w.Decode(TwoTracks().End().Build());
  EXPECT_EQ(w.Track(0).TrkDelay, 25);
  EXPECT_EQ(w.Track(1).TrkDelay, 25);
}

TEST(Reader, FindsTheFirstControllersAndProgramsOfEachChannel) {
  ReaderBench w;
  w.Decode(TwoTracks().Ctrl(1, 7, 1).Ctrl(1, 7, 2).Ctrl(2, 7, 3).Prog(1, 4).Prog(1, 5).End().Build());
  EXPECT_EQ(w.song.FirstControllers[0][7], w.Event(1, 1));
  EXPECT_EQ(w.song.FirstControllers[1][7], w.Event(1, 3));
  EXPECT_EQ(w.song.FirstPatches[0], w.Event(1, 4));
  EXPECT_EQ(w.song.FirstPatches[1], nullptr);
}

/// A remote sequence on a channel, its bank LSB and program that many ticks behind its start.
ReaderBench& WithRemote(ReaderBench& w, int channel, int start, int lsb, int program, int bank = 77) {
  w.Decode(TwoTracks()
               .At(start)
               .Ctrl(channel, 0, bank)
               .At(start + lsb)
               .Ctrl(channel, 32, 1)
               .At(start + program)
               .Prog(channel, 2)
               .At(start + program + 1)
               .Prog(channel, 3)
               .End()
               .Build());
  return w;
}

TEST(Reader, PassesOverTheRemoteSequenceOnChannel16) {
  ReaderBench w;
  WithRemote(w, 16, 99, 19, 39);
  EXPECT_EQ(w.song.FirstControllers[15][0], nullptr);
  EXPECT_EQ(w.song.FirstControllers[15][32], nullptr);
  EXPECT_EQ(w.song.FirstPatches[15], w.Event(1, 4));
}

TEST(Reader, EndsTheRemoteSequenceWithItsProgram) {
  ReaderBench w;
  WithRemote(w, 16, 0, 1, 2);
  EXPECT_EQ(w.song.FirstPatches[15], w.Event(1, 4));
}

TEST(Reader, CountsWhatStandsTooFarBehindTheRemoteBank) {
  ReaderBench late;
  WithRemote(late, 16, 0, 20, 40);
  EXPECT_EQ(late.song.FirstControllers[15][0], nullptr);
  EXPECT_EQ(late.song.FirstControllers[15][32], late.Event(1, 2));
  EXPECT_EQ(late.song.FirstPatches[15], late.Event(1, 3));
}

TEST(Reader, TakesNoOtherBankTickOrChannelForARemoteSequence) {
  const auto counts = [](int channel, int start, int bank) {
    ReaderBench w;
    WithRemote(w, channel, start, 1, 2, bank);
    const auto& first = w.song.FirstControllers[static_cast<std::size_t>(channel - 1)];
    EXPECT_EQ(first[0] == nullptr, first[32] == nullptr);
    return first[0] == w.Event(1, 1);
  };
  EXPECT_FALSE(counts(16, 0, 77));
  EXPECT_TRUE(counts(16, 100, 77));
  EXPECT_TRUE(counts(16, 0, 76));
  EXPECT_TRUE(counts(15, 0, 77));
}

TEST(Reader, LooksForTheRemoteSequenceAnewOnEachTrack) {
  ReaderBench w;
  w.Decode(Smf(1)
               .Track()
               .At(5)
               .Ctrl(16, 0, 77)
               .End()
               .Track()
               .At(6)
               .Ctrl(16, 32, 1)
               .Prog(16, 2)
               .End()
               .Build());
  EXPECT_EQ(w.song.FirstControllers[15][32], w.Event(1, 1));
  EXPECT_EQ(w.song.FirstPatches[15], w.Event(1, 2));
}

TEST(Reader, ForgetsTheSongBefore) {
  ReaderBench w;
  w.options.WordBoxSearch = true;
  w.Decode(TwoTracks()
               .Sysex({0, 0x20, 0x24, 0, 1})
               .Sysex({0x43, 0x10, 0x4C, 0, 0, 0x7E, 0, 0xF7})
               .Sysex({0x43, 0x10, 0x7F, 0xF7})
               .Meta(0x7F, {0x43, 0x7B, 1, 0x31, 0, 0x31, 0})
               .Text(4, "SRL_dr.2 10")
               .Text(4, "SRL_dr.3 10")
               .Ctrl(1, 7, 1)
               .Prog(1, 1)
               .End()
               .Build());
  EXPECT_TRUE(w.song.WordBoxFormat);
  w.song.ClearMidiMemory();
  w.Decode(TwoTracks().Text(1, "a").End().Build());
  EXPECT_FALSE(w.song.WordBoxFormat || w.song.XF_Format || w.song.XGSystemOnPresentOnLoad);
  EXPECT_FALSE(w.song.DrumsSecForceToChannel10 || w.song.DrumsThirdForceToChannel10);
  EXPECT_EQ(w.song.XF_Track, -1);
  EXPECT_EQ(w.song.XF_ChordsArrayElements, 0);
  EXPECT_EQ(w.song.SysexFoundOnTrack, -1);
  EXPECT_EQ(w.song.SysexTrack, -1);
  EXPECT_EQ(w.song.MotifMartor, nullptr);
  EXPECT_EQ(w.song.FirstControllers[0][7], nullptr);
  EXPECT_EQ(w.song.FirstPatches[0], nullptr);
  EXPECT_THAT(w.functions.SourceSysexes, IsEmpty());
  EXPECT_THAT(w.List(1), ElementsAre("0 FF01 61"));
  EXPECT_THAT(CheckSong(w.song), IsEmpty());
}

}  // namespace
}  // namespace Sonarello
