#include "playback/NoteLedger.h"

#include <gtest/gtest.h>

namespace Sonarello {

namespace {

TEST(NoteLedger, IsEmptyOnceEveryNoteHasEnded) {
  NoteLedger ledger;
  ledger.SetRoutes(2);
  EXPECT_TRUE(ledger.Empty());
  ledger.Sent(1, 0x93, 60, 100);
  ledger.Sent(1, 0x93, 60, 100);
  ledger.Sent(1, 0x83, 60, 64);
  EXPECT_FALSE(ledger.Empty()) << "started twice, ended once";
  ledger.Sent(1, 0x93, 60, 0);
  EXPECT_TRUE(ledger.Empty()) << "velocity 0 ends a note";
}

TEST(NoteLedger, TellsRoutesChannelsAndKeysApart) {
  NoteLedger ledger;
  ledger.SetRoutes(2);
  ledger.Sent(0, 0x90, 60, 100);
  ledger.Sent(1, 0x80, 60, 64);
  ledger.Sent(0, 0x81, 60, 64);
  ledger.Sent(0, 0x80, 61, 64);
  EXPECT_FALSE(ledger.Empty());
}

TEST(NoteLedger, NamesEachSoundingNoteOnceAndForgetsIt) {
  NoteLedger ledger;
  ledger.SetRoutes(2);
  ledger.Sent(0, 0x90, 60, 100);
  ledger.Sent(0, 0x90, 60, 100);
  ledger.Sent(1, 0x9F, 127, 1);
  std::vector<std::tuple<std::size_t, int, int>> ended;
  ledger.EndAll([&](std::size_t route, int channel, std::uint8_t key) {
    ended.emplace_back(route, channel, key);
  });
  EXPECT_EQ(ended, (std::vector<std::tuple<std::size_t, int, int>>{{0, 0, 60}, {1, 15, 127}}));
  EXPECT_TRUE(ledger.Empty());
  ledger.EndAll([](std::size_t, int, std::uint8_t) { FAIL() << "nothing sounds any more"; });
}

TEST(NoteLedger, IgnoresWhatIsNoNoteAndRoutesThatItDoesNotKnow) {
  NoteLedger ledger;
  ledger.SetRoutes(1);
  ledger.Sent(0, 0xB0, 60, 100);
  ledger.Sent(5, 0x90, 60, 100);
  ledger.Sent(0, 0x80, 60, 100);
  EXPECT_TRUE(ledger.Empty());
}

}  // namespace
}  // namespace Sonarello
