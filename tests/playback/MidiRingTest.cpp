#include "playback/MidiRing.h"

#include <gtest/gtest.h>

#include <thread>

#include "helpers/Allocations.h"
#include "playback/MidiType.h"

namespace Sonarello {
namespace {

TEST(MidiRing, GivesItemsBackInTheirOrder) {
  TRing<int> ring(3);
  EXPECT_TRUE(ring.Put(1));
  EXPECT_TRUE(ring.Put(2));
  int item = 0;
  ASSERT_TRUE(ring.Read(item));
  EXPECT_EQ(item, 1);
  EXPECT_TRUE(ring.Remove());
  ASSERT_TRUE(ring.Read(item));
  EXPECT_EQ(item, 2);
}

TEST(MidiRing, ReadsWithoutTakingOut) {
  TRing<int> ring(2);
  ring.Put(7);
  int item = 0;
  EXPECT_TRUE(ring.Read(item));
  EXPECT_TRUE(ring.Read(item));
  EXPECT_EQ(ring.EventCount(), 1);
}

TEST(MidiRing, UsesAllOfItsCapacityAndThenRefuses) {
  TRing<int> ring(3);
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(ring.Full());
    EXPECT_TRUE(ring.Put(i));
  }
  EXPECT_TRUE(ring.Full());
  EXPECT_FALSE(ring.Put(99));
  EXPECT_EQ(ring.EventCount(), 3);
  int item = -1;
  ring.Read(item);
  EXPECT_EQ(item, 0) << "the refused item has overwritten nothing";
}

TEST(MidiRing, HasRoomAgainForEachItemTakenOut) {
  TRing<int> ring(2);
  ring.Put(1);
  ring.Put(2);
  ring.Remove();
  EXPECT_TRUE(ring.Put(3));
  EXPECT_FALSE(ring.Put(4));
}

TEST(MidiRing, HasNothingToGiveWhenEmpty) {
  TRing<int> ring(2);
  int item = 42;
  EXPECT_FALSE(ring.Read(item));
  EXPECT_FALSE(ring.Remove());
  EXPECT_EQ(item, 42);
  EXPECT_EQ(ring.EventCount(), 0);
}

TEST(MidiRing, OfNoCapacityRefusesEverything) {
  TRing<int> ring(0);
  int item = 0;
  EXPECT_FALSE(ring.Put(1));
  EXPECT_FALSE(ring.Read(item));
  EXPECT_FALSE(ring.Remove());
}

TEST(MidiRing, OfTheGreatestCapacityCountsAllOfIt) {
  TRing<std::uint16_t> ring(0xFFFF);
  for (std::uint32_t i = 0; i < 0xFFFF; ++i) {
    ASSERT_TRUE(ring.Put(static_cast<std::uint16_t>(i)));
  }
  EXPECT_FALSE(ring.Put(0));
  EXPECT_EQ(ring.EventCount(), 0xFFFF);
}

TEST(MidiRing, WrapsManyTimes) {
  TRing<int> ring(3);
  for (int i = 0; i < 1000; ++i) {
    ASSERT_TRUE(ring.Put(i));
    ASSERT_TRUE(ring.Put(-i));
    int item = 0;
    ASSERT_TRUE(ring.Read(item));
    ASSERT_EQ(item, i);
    ring.Remove();
    ring.Read(item);
    ASSERT_EQ(item, -i);
    ring.Remove();
  }
}

TEST(MidiRing, AllocatesNothingOnceItIsMade) {
  TCircularBuffer ring(16);
  TMidiBufferItem item;
  const std::uint64_t before = AllocationsOfThread();
  for (int i = 0; i < 100; ++i) {
    ring.Put(item);
    ring.Read(item);
    ring.Remove();
  }
  EXPECT_EQ(AllocationsOfThread(), before);
}

TEST(MidiRing, LosesAndReordersNothingBetweenTwoThreads) {
  constexpr std::uint32_t Count = 200'000;
  TCircularBuffer ring(64);
  std::thread driver([&] {
    for (std::uint32_t i = 0; i < Count; ++i) {
      while (!ring.Put({i, ~i, nullptr})) {
        std::this_thread::yield();
      }
    }
  });
  std::uint32_t wrong = 0;
  for (std::uint32_t i = 0; i < Count; ++i) {
    TMidiBufferItem item;
    while (!ring.Read(item)) {
      std::this_thread::yield();
    }
    wrong += item.timestamp != i || item.data != ~i ? 1 : 0;
    wrong += ring.EventCount() > 64 ? 1 : 0;
    ring.Remove();
  }
  driver.join();
  EXPECT_EQ(wrong, 0U);
  EXPECT_EQ(ring.EventCount(), 0);
}

}  // namespace
}  // namespace Sonarello
