#include "core/EventPool.h"

#include <gtest/gtest.h>

#include <set>

namespace Sonarello {
namespace {

TEST(EventPool, HandsOutZeroedNodesWithoutMetaType) {
  EventPool pool;
  PtrMidiEvent node = pool.Take();
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->MType, -1);
  EXPECT_EQ(node->Position, 0);
  EXPECT_EQ(node->NextEvent, nullptr);
  EXPECT_EQ(pool.Live(), 1u);
}

TEST(EventPool, NeverHandsOutANodeTwiceOverManySlabs) {
  EventPool pool;
  std::set<PtrMidiEvent> seen;
  for (int i = 0; i < 200'000; ++i) ASSERT_TRUE(seen.insert(pool.Take()).second);
}

TEST(EventPool, ReusesAReleasedNodeOnlyAfterItWasGivenBack) {
  EventPool pool;
  for (int i = 0; i < 800; ++i) ASSERT_NE(pool.Take(), nullptr);
  PtrMidiEvent node = pool.Take();
  node->Meta = Meta("abc");
  pool.Release(node);
  EXPECT_EQ(pool.Live(), 800u);
  bool again = false;
  for (int i = 0; i < 5000 && !again; ++i) {
    PtrMidiEvent other = pool.Take();
    again = other == node;
    EXPECT_TRUE(other->Meta.empty());
  }
  EXPECT_TRUE(again);
}

TEST(EventPool, SweepsEverythingAndStartsAnewInTheSameMemory) {
  EventPool pool;
  pool.Reserve(100'000);
  PtrMidiEvent first = pool.Take();
  for (int i = 1; i < 100'000; ++i) pool.Take()->Meta = Meta("x");
  pool.ReleaseAll();
  EXPECT_EQ(pool.Live(), 0u);
  pool.Reserve(100'000);
  EXPECT_EQ(pool.Take(), first);
}

TEST(EventPool, ReservedNodesLieSideBySide) {
  EventPool pool;
  ASSERT_NE(pool.Take(), nullptr);
  pool.Reserve(300'000);
  PtrMidiEvent last = pool.Take();
  for (int i = 1; i < 300'000; ++i) {
    PtrMidiEvent node = pool.Take();
    ASSERT_EQ(node, last + 1);
    last = node;
  }
}

TEST(EventPool, FailsFromTheChosenNodeOn) {
  EventPool pool;
  pool.FailAt(3);
  EXPECT_NE(pool.Take(), nullptr);
  EXPECT_NE(pool.Take(), nullptr);
  EXPECT_EQ(pool.Take(), nullptr);
  EXPECT_EQ(pool.Take(), nullptr);
  pool.FailAt(0);
  EXPECT_NE(pool.Take(), nullptr);
}

}  // namespace
}  // namespace Sonarello
