// Positions as they are typed: what the list shows leads back to the tick it was shown for.
#include "editors/EventPosition.h"

#include <gtest/gtest.h>

#include "core/MidiFunctions.h"
#include "editors/EditorBench.h"

namespace Sonarello {

namespace {

/// The first tick whose text leads to another tick, or -1.
std::int32_t FirstStray(const Song& song) {
  for (std::int32_t tick = 0; tick <= song.MaxSongPosition; ++tick)
    if (ParsePosition(song, TicksToStr(song, tick)).Position != tick) return tick;
  return -1;
}

TEST(EventPosition, EveryTickIsFoundByItsOwnText) {
  for (const int timeBase : {24, 96, 120, 384, 480}) {
    for (const auto& [numerator, exponent] :
         {std::pair{4, 2}, {3, 2}, {6, 3}, {7, 3}, {12, 3}, {2, 1}, {5, 4}, {1, 2}}) {
      EditorBench s(timeBase);
      s.NewTrack().Sign(0, numerator, exponent).Tempo(0, 500'000);
      s.NewTrack().Note(0, 3 * timeBase, 60).Open(1, 9 * timeBase);
      EXPECT_EQ(FirstStray(s.song), -1) << timeBase << ": " << numerator << " / 2^" << exponent;
    }
  }
}

TEST(EventPosition, TemposAtAnyTickLeadNoTextAstray) {
  for (const int exponent : {2, 3}) {
    EditorBench s(480);
    s.NewTrack().Sign(0, 4, exponent).Tempo(0, 500'000);
    for (const std::int32_t tick : {1, 239, 240, 241, 479, 480, 700, 961, 1919, 1920, 2001})
      s.Tempo(tick, 300'000 + tick);
    s.NewTrack().Note(0, 480, 60).Open(1, 4000);
    EXPECT_EQ(FirstStray(s.song), -1) << exponent;
  }
}

TEST(EventPosition, SignaturesAtTheirBarsLeadNoTextAstray) {
  EditorBench s(480);
  s.NewTrack().Sign(0, 4, 2).Tempo(0, 500'000);
  s.Sign(1920, 3, 2).Sign(1920 + 1440, 6, 3).Sign(1920 + 2 * 1440, 2, 2).Sign(1920 + 3 * 1440, 12, 3);
  s.NewTrack().Note(0, 480, 60).Open(1, 1920 + 5 * 1440);
  EXPECT_EQ(FirstStray(s.song), -1);
}

TEST(EventPosition, ASignatureInsideABarStillLeadsIntoTheSong) {
  EditorBench s(480);
  s.NewTrack().Sign(0, 4, 2).Tempo(0, 500'000).Sign(700, 3, 2).Sign(1000, 6, 3).Sign(2111, 5, 2);
  s.NewTrack().Note(0, 480, 60).Open(1, 6000);
  for (std::int32_t tick = 0; tick <= s.song.MaxSongPosition; ++tick) {
    const TTypedPosition typed = ParsePosition(s.song, TicksToStr(s.song, tick));
    EXPECT_LE(typed.Position, s.song.MaxSongPosition);
    EXPECT_TRUE(typed.Position >= 0 || !typed.Message.empty()) << tick;
  }
}

TEST(EventPosition, ATextThatIsNoPositionSaysNothing) {
  EditorBench s(480);
  s.NewTrack().Sign(0, 4, 2).Tempo(0, 500'000).Note(0, 480, 60).Open(0, 4000);
  for (const char* text : {"", " ", ".", "x", "1.x.0", "1.1.x", "-1.1.0", "1.-1.0", "1.1.1.1", "1..",
                           "999999999999999999999", "1.1.999999999999"}) {
    const TTypedPosition typed = ParsePosition(s.song, text);
    EXPECT_TRUE(typed.Position == -1 || std::string_view(text) == "1..") << text;
  }
  EXPECT_EQ(ParsePosition(s.song, "1..").Position, 0);
  EXPECT_EQ(ParsePosition(s.song, "2").Position, 1920);
  EXPECT_EQ(ParsePosition(s.song, "2:3:7").Position, 1920 + 960 + 7);
  EXPECT_EQ(ParsePosition(s.song, "0.0.5").Position, 5);
}

}  // namespace

}  // namespace Sonarello
