// Damaged and hostile files: each ends in its message or in a sound song.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "core/SmfScan.h"
#include "helpers/ReaderBench.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string Offset = "Error in midifile: \"PrevCommand < $80\"!";

/// A file of one track chunk; `length` other than -1 is what the chunk states.
Bytes File(std::initializer_list<int> events, std::int64_t length = -1, int tracks = 2) {
  Bytes file = {'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 1, 0, static_cast<std::uint8_t>(tracks), 1, 0xE0};
  const std::size_t stated = length < 0 ? events.size() : static_cast<std::size_t>(length);
  file.insert(file.end(), {'M', 'T', 'r', 'k'});
  for (int shift = 24; shift >= 0; shift -= 8)
    file.push_back(static_cast<std::uint8_t>(stated >> shift));
  for (const int byte : events) file.push_back(static_cast<std::uint8_t>(byte));
  return file;
}

/// A file of one track whose header tells two, so that a fault in the first track shows first.
std::string English(std::initializer_list<int> events) {
  ReaderBench w;
  return w.Verdict(File(events));
}
std::string German(std::initializer_list<int> events) {
  const InGerman german;
  ReaderBench w;
  return w.Verdict(File(events));
}

TEST(ReaderFaults, RefuseAFileWithoutHeader) {
  for (std::size_t i = 0; i < 4; ++i) {
    Bytes file = File({0, 0xFF, 0x2F, 0}, -1, 1);
    file[i] ^= 0x20;
    ReaderBench w;
    EXPECT_EQ(w.Verdict(file), "Error in midi file header - 1!");
    const InGerman german;
    EXPECT_EQ(w.Verdict(file), "Error in midi file header - 1!");
  }
}

TEST(ReaderFaults, RefuseAHeaderOfAnotherLengthThanSix) {
  for (std::size_t i = 4; i < 8; ++i) {
    Bytes file = File({0, 0xFF, 0x2F, 0}, -1, 1);
    file[i] ^= 1;
    ReaderBench w;
    EXPECT_EQ(w.Verdict(file), "Error in midi file header - 2!");
    const InGerman german;
    EXPECT_EQ(w.Verdict(file), "Error in midi file header - 2!");
  }
}

TEST(ReaderFaults, RefuseAHeaderWithoutTracksOrTimeBase) {
  ReaderBench w;
  EXPECT_EQ(w.Verdict(File({0, 0xFF, 0x2F, 0}, -1, 0)), "Error in midifile!");
  EXPECT_EQ(w.Verdict(Smf(1, 0).Track().End().Build()), "Error in midifile!");
  const InGerman german;
  EXPECT_EQ(w.Verdict(Smf(1, 0).Track().End().Build()), "Error in midifile!");
}

TEST(ReaderFaults, TellTrackAndByteOfAWrongTrackHeader) {
  Bytes file = Smf(1).Track().End().Track().End().Build();
  file[26] = 'm';  // 14 bytes of header, 12 of the first track
  ReaderBench w;
  EXPECT_EQ(w.Verdict(file), "Error in track header 1 at 26!");
  const InGerman german;
  EXPECT_EQ(w.Verdict(file), "Fehler im TrackHeader 1 bei 26!");
  file[14] = 'X';
  EXPECT_EQ(w.Verdict(file), "Fehler im TrackHeader 0 bei 14!");
}

TEST(ReaderFaults, TellWhereADataByteHasNoStatus) {
  EXPECT_EQ(English({0x83, 0x60, 65, 66}), "Error in midifile: \"PrevCommand < $80\"!");
  EXPECT_EQ(German({0x83, 0x60, 65, 66}),
            "Fehler in der MidiDatei: \"PrevCommand < $80\"!\rSource pointer: 24\r"
            "Data byte:        65\rSong position:  480");
}

TEST(ReaderFaults, TellWhereTheFileEndsTooEarly) {
  EXPECT_EQ(English({0x83, 0x60, 0x90, 60}), Offset);
  const std::string text = "Fehler in der MidiDatei: \"ungültiger Offset\"!\rSource pointer: ";
  // Inside an event, inside the delta behind an event, at a skip beyond the file.
  EXPECT_EQ(German({0x83, 0x60, 0x90, 60}), text + "26\rSong position:  480");
  EXPECT_EQ(German({0x83, 0x60, 0x90, 60, 1, 0x81}), text + "28\rSong position:  480");
  EXPECT_EQ(German({0x0A, 0xF0, 5, 1}), text + "25\rSong position:  10");
  EXPECT_EQ(German({0x0A, 0xFF, 1, 5, 1}), text + "26\rSong position:  10");
}

TEST(ReaderFaults, TellADeltaOfMinusOne) {
  EXPECT_EQ(English({0x8F, 0xFF, 0xFF, 0xFF, 0x7F, 0x90, 60, 1}), Offset);
  EXPECT_EQ(German({5, 0x90, 60, 1, 0x8F, 0xFF, 0xFF, 0xFF, 0x7F, 0x90, 60, 1}),
            "Fehler in der MidiDatei: \"ungültiger Offset\"!\rSource pointer: 30\rSong position:  5");
}

TEST(ReaderFaults, RefuseSystemCommonAndForbiddenStatus) {
  for (int status = 0xF1; status <= 0xF6; ++status) {
    EXPECT_EQ(English({0, status, 0, 0}), "Error in midifile - Command is $F1 to $F6!");
    EXPECT_EQ(German({0, status, 0, 0}), "Error in midifile - Command is $F1 to $F6!");
  }
  for (const int status : {0xFD, 0xFE}) {
    EXPECT_EQ(English({0, status, 0, 0}), "Error in midifile - Command = $FE!");
    EXPECT_EQ(German({0, status, 0, 0}), "Error in midifile - Command = $FE!");
  }
}

TEST(ReaderFaults, RefuseAnEndOfTrackWithContent) {
  EXPECT_EQ(English({0, 0xFF, 0x2F, 1, 0}), "Error in midifile - Cmd $2F with length <> 0!");
  EXPECT_EQ(German({0, 0xFF, 0x2F, 0x7F}), "Error in midifile - Cmd $2F with length <> 0!");
}

TEST(ReaderFaults, RefuseAFirstDataByteAbove127) {
  ReaderBench w;
  const Bytes file = Smf(1).Track().At(480).Ctrl(1, 200, 1).End().Track().End().Build();
  EXPECT_EQ(w.Verdict(file),
            "Error in Midifile at position: 480\rValue1 = 200\rshouldn't be greater than 127!");
  const InGerman german;
  EXPECT_EQ(w.Verdict(file),
            "Fehler im Midifile bei Position: 480\rWert1 = 200\rEs dürfte nicht größer "
            "als 127 sein!");
}

TEST(ReaderFaults, KnowARunningStatusThatIsNoChannelStatus) {
  EXPECT_EQ(RunningStatus(0x93, 0, 0, 60), 0x93);
  try {
    static_cast<void>(RunningStatus(0xF7, 7, 8, 60));
    FAIL();
  } catch (const SmfFault& fault) {
    EXPECT_EQ(fault.What, SmfFault::Kind::RunningSystem);
    EXPECT_EQ(fault.Byte, 0xF7);
  }
}

// --- Lengths

TEST(ReaderFaults, RefuseLengthsBeyondTheFileAndBeyond31Bits) {
  EXPECT_EQ(English({0, 0xF0, 0x88, 0x80, 0x80, 0x80, 0x00}), Offset);        // 2^31
  EXPECT_EQ(English({0, 0xFF, 1, 0x8F, 0xFF, 0xFF, 0xFF, 0x7F, 1}), Offset);  // 2^32 - 1
  EXPECT_EQ(English({0, 0xF7, 0x87, 0xFF, 0xFF, 0xFF, 0x7F, 1}), Offset);     // 2^31 - 1
  EXPECT_EQ(English({0, 0xFF, 0x7F, 2, 1}), Offset);
}

TEST(ReaderFaults, ReadQuantitiesOfMoreThanFourBytesIn32Bits) {
  ReaderBench w;
  // Leading zeroes, and bits that fall out at the top.
  EXPECT_EQ(w.Verdict(File({0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x05, 0x90, 60,  1,  //
                            0xFF, 0xF0, 0x80, 0x80, 0x80, 0x80, 0x05, 0x80, 60,  1,  //
                            0,    0xFF, 1,    0x80, 0x80, 0x80, 0x80, 0x01, 'a', 0, 0xFF, 0x2F, 0},
                           -1, 1)),
            "");
  EXPECT_THAT(w.List(1), ElementsAre("5 90 60 1", "10 80 60 1", "10 FF01 61"));
  // A quantity without end runs into the end of the file.
  Bytes endless = File({}, -1, 1);
  endless[21] = 200;
  endless.insert(endless.end(), 200, 0x80);
  EXPECT_EQ(w.Verdict(endless), Offset);
}

TEST(ReaderFaults, FollowAnEventThatCrossesItsChunksEnd) {
  ReaderBench w;
  Bytes file = File({0, 0x90, 60, 1, 0, 0x91, 61, 2}, 6);  // the chunk ends inside the second event
  const Bytes second = File({0, 0x92, 62, 3, 0, 0xFF, 0x2F, 0});
  file.insert(file.end(), second.begin() + 14, second.end());
  EXPECT_EQ(w.Verdict(file), "");
  EXPECT_THAT(w.List(0), ElementsAre("0 90 60 1", "0 91 61 2"));
  EXPECT_THAT(w.List(1), ElementsAre("0 92 62 3"));
}

TEST(ReaderFaults, ReadAShortChunkLengthByTheLetter) {
  ReaderBench w;
  // Length 4: the events behind it are taken for the next chunk.
  EXPECT_EQ(w.Verdict(File({0, 0x90, 60, 1, 0, 0x80, 60, 1}, 4)), "Error in track header 1 at 26!");
  EXPECT_EQ(w.Verdict(File({0, 0x90, 60, 1, 0, 0x80, 60, 1}, 4, 1)), "");
  EXPECT_THAT(w.List(1), ElementsAre("0 90 60 1"));
  EXPECT_EQ(w.Verdict(File({0, 0x90, 60, 1}, 0, 1)), "");
  EXPECT_THAT(w.List(1), IsEmpty());
}

TEST(ReaderFaults, AcceptALastChunkThatPromisesMoreButHasItsEndOfTrack) {
  for (const std::int64_t length : {9LL, 1000LL, 0x7FFFFFFFLL, 0xFFFFFFFFLL}) {
    ReaderBench w;
    EXPECT_EQ(w.Verdict(File({0, 0x90, 60, 1, 0, 0xFF, 0x2F, 0}, length, 1)), "");
    EXPECT_THAT(w.List(1), ElementsAre("0 90 60 1"));
    // Without End of track, or with a track to follow, there is too little.
    EXPECT_EQ(w.Verdict(File({0, 0x90, 60, 1}, length, 1)), Offset);
    EXPECT_EQ(w.Verdict(File({0, 0x90, 60, 1, 0, 0xFF, 0x2F, 0}, length, 2)), Offset);
  }
}

// --- Positions

TEST(ReaderFaults, ClampPositionsAndBringThemIntoOrder) {
  ReaderBench w;
  EXPECT_EQ(w.Verdict(File({100,  0x90, 60,   1,                        // 100
                            0x8F, 0xFF, 0xFF, 0xFF, 0x4E, 0x80, 60, 1,  // 50 back: 50
                            0x8F, 0xFF, 0xFF, 0xFE, 0x38, 0xB0, 7,  9,  // 200 back: below 0
                            0x81, 0x7F, 0xC0, 3,                        // 255 on: 105
                            0,    0xFF, 0x2F, 0},
                           -1, 1)),
            "");
  EXPECT_THAT(w.List(1), ElementsAre("0 B0 7 9", "50 80 60 1", "100 90 60 1", "105 C0 3"));
  EXPECT_EQ(w.song.MaxSongPosition, 999);
  EXPECT_THAT(CheckSong(w.song), IsEmpty());
}

TEST(ReaderFaults, EndASongThatWrapsAtTheGreatestTick) {
  ReaderBench w;
  EXPECT_EQ(w.Verdict(File({0x87, 0xFF, 0xFF, 0xFF, 0x7F, 0x90, 60, 1,  // 2^31 - 1
                            1,    0x90, 61,   1,                        // wraps below 0
                            0,    0xFF, 0x51, 3,    1,    2,    3,  0, 0xFF, 0x2F, 0},
                           -1, 1)),
            "");
  EXPECT_EQ(w.song.MaxSongPosition, LastPosition + 10);
  EXPECT_THAT(w.List(1), ElementsAre("0 90 61 1", std::to_string(LastPosition) + " 90 60 1"));
  EXPECT_EQ(w.song.SourceTempo[1].SongPosition, LastPosition + 11);
  EXPECT_THAT(CheckSong(w.song), IsEmpty());
}

// --- Memory

TEST(ReaderFaults, LetTracksThatAreNotThereCostNothing) {
  ReaderBench w;
  EXPECT_EQ(w.Verdict(Smf(1).Claims(65'535).Track().On(1, 60).End().Build()), Offset);
  EXPECT_EQ(w.song.Pool.Live(), 0u);
  EXPECT_LT(w.song.MidiTrack.capacity(), 100u);
  EXPECT_LT(w.song.KeySignArray.capacity(), 100u);
  EXPECT_THAT(CheckSong(w.song), IsEmpty());
  EXPECT_EQ(TrackOfChannel(w.song, 0), -1);
}

TEST(ReaderFaults, ReadAsManyTracksAsAFileCanHave) {
  ReaderBench w;
  Smf file(1);
  for (int t = 0; t < 65'535; ++t) file.Track();
  EXPECT_EQ(w.Verdict(file.Build()), "");
  EXPECT_EQ(w.song.NumberOfSourceTracks, 65'535);
  EXPECT_EQ(w.song.Pool.Live(), 2u * 65'535u);
}

Bytes LittleSong(int format) {
  Smf file(format);
  file.Track().Text(3, "Song").Tempo(400'000).Time(3, 2).Meta(0x59, {0xFF, 1}).Sysex({0x7E, 0xF7});
  if (format != 0) file.End().Track();
  file.Text(4, "SRL_ch.1 GM Soundset").Ctrl(1, 7, 90).Prog(1, 5).Note(1, 60, 100, 200).Event({61, 0});
  return file.At(5000)
      .Bend(2, 0, 64)
      .Text(5, "la")
      .Meta(0x7F, {0x43, 0x7B, 1, 0x21, 0, 0x21, 0})
      .End()
      .Build();
}

TEST(ReaderFaults, TellLackOfMemoryAtEveryNodeAndOpenTheNextFile) {
  for (const int format : {0, 1}) {
    ReaderBench w;
    ASSERT_EQ(w.Verdict(LittleSong(format)), "");
    const std::size_t nodes = w.song.Pool.Live();
    for (std::size_t n = 1; n <= nodes; ++n) {
      for (const bool german : {false, true}) {
        w.song.ClearMidiMemory();
        w.song.Pool.FailAt(static_cast<std::int64_t>(n));
        GermanLanguage = german;
        EXPECT_EQ(w.Verdict(LittleSong(format)), "Error allocating memory!") << n;
        GermanLanguage = false;
        w.song.Pool.FailAt(0);
        w.song.ClearMidiMemory();
        ASSERT_EQ(w.song.Pool.Live(), 0u);
      }
      ASSERT_EQ(w.Verdict(LittleSong(format)), "");
      ASSERT_THAT(CheckSong(w.song), IsEmpty());
    }
    EXPECT_EQ(w.song.Pool.Live(), nodes);
  }
}

// --- Any bytes

/// A file ends in exactly one text or in a sound song.
void ExpectVerdict(ReaderBench& w, Bytes file, const std::string& what) {
  const std::string text = w.Verdict(std::move(file));
  if (!text.empty()) return;
  const std::vector<std::string> faults = CheckSong(w.song);
  EXPECT_TRUE(faults.empty()) << what << ": " << faults.front();
}

TEST(ReaderFaults, EndAtEveryTruncationInATextOrASoundSong) {
  for (const int format : {0, 1}) {
    const Bytes whole = LittleSong(format);
    for (const int mode : {0, 1}) {
      ReaderBench w;
      w.options.PrevCommandMode = mode;
      w.options.UnmixFormat0 = mode == 0;
      for (std::size_t length = 0; length < whole.size(); ++length) {
        // A vector of exactly these bytes, so that the address sanitizer sees the first byte behind.
        ExpectVerdict(w, Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)),
                      std::to_string(length));
        // The End of track stands last, so every part of the file lacks something.
        EXPECT_EQ(w.messages.Shown.size(), 1u) << length;
      }
      EXPECT_EQ(w.Verdict(whole), "");
    }
  }
}

TEST(ReaderFaults, EndInATextOrASoundSongWhateverIsDamaged) {
  std::mt19937 random(20'240'501);
  const auto below = [&](std::size_t n) { return static_cast<std::size_t>(random() % n); };
  constexpr std::uint8_t nasty[] = {0x00, 0x01, 0x2F, 0x51, 0x7F, 0x80, 0x81, 0x90, 0xF0, 0xF7, 0xFF};
  int accepted = 0;
  ReaderBench w;
  for (int i = 0; i < 6000; ++i) {
    Bytes file = LittleSong(i % 2);
    for (std::size_t hits = 1 + below(6); hits > 0; --hits) {
      const std::size_t place = 8 + below(file.size() - 8);
      switch (below(4)) {
        case 0: file[place] = static_cast<std::uint8_t>(random()); break;
        case 1: file[place] = nasty[below(std::size(nasty))]; break;
        case 2: file.erase(file.begin() + static_cast<std::ptrdiff_t>(place)); break;
        default:
          file.insert(file.begin() + static_cast<std::ptrdiff_t>(place),
                      nasty[below(std::size(nasty))]);
      }
    }
    w.options.PrevCommandMode = static_cast<std::int32_t>(below(2));
    w.options.UnmixFormat0 = below(2) == 0;
    w.options.WordBoxSearch = below(2) == 0;
    ExpectVerdict(w, std::move(file), "mutant " + std::to_string(i));
    accepted += w.messages.Shown.empty() ? 1 : 0;
  }
  // The property is worth something only if both ends are reached.
  EXPECT_GT(accepted, 300);
  EXPECT_LT(accepted, 5700);
}

TEST(ReaderFaults, ReadEverySoundSongAsItWasWritten) {
  std::mt19937 random(7);
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int song = 0; song < 300; ++song) {
    Smf file(1);
    std::vector<Lines> expected(static_cast<std::size_t>(2 + below(5)));
    for (Lines& lines : expected) {
      file.Track();
      for (int i = below(40), tick = 0; i > 0; --i) {
        file.At(tick += below(3) * below(300));
        const int channel = 1 + below(16);
        const int a = below(128);
        const int b = 1 + below(127);
        char text[64];
        switch (below(4)) {
          case 0:
            file.On(channel, a, b);
            std::snprintf(text, sizeof text, "%d 9%X %d %d", tick, channel - 1, a, b);
            break;
          case 1:
            file.Prog(channel, a);
            std::snprintf(text, sizeof text, "%d C%X %d", tick, channel - 1, a);
            break;
          case 2:
            file.Sysex({a, b, 0xF7});
            std::snprintf(text, sizeof text, "%d F0 %02X %02X F7", tick, a, b);
            break;
          default:
            file.Meta(6, {a, b});
            std::snprintf(text, sizeof text, "%d FF06 %02X %02X", tick, a, b);
        }
        lines.emplace_back(text);
      }
      file.End();
    }
    ReaderBench w;
    ASSERT_EQ(w.Verdict(file.Build()), "");
    ASSERT_THAT(CheckSong(w.song), IsEmpty());
    for (std::size_t t = 0; t < expected.size(); ++t)
      ASSERT_EQ(w.List(static_cast<int>(t)), expected[t]);
  }
}

}  // namespace
}  // namespace Sonarello
