#include "playback/SysexPacer.h"

#include <gtest/gtest.h>

namespace Sonarello {

namespace {

struct SysexPacerTest : testing::Test {
  auto Take() {
    return [this](std::size_t route, std::uint8_t, std::span<const std::uint8_t> bytes) {
      sent.emplace_back(route, bytes.size());
    };
  }
  SysexPacerTest() {
    pacer.SetRoutes(2);
    pacer.Advance(1000, Take());
  }
  void Send(std::size_t route, std::size_t length) {
    pacer.Send(route, 0xF0, Meta(std::vector<std::uint8_t>(length, 1)), Take());
  }
  SysexPacer pacer;
  std::vector<std::pair<std::size_t, std::size_t>> sent;
};

TEST_F(SysexPacerTest, LetsABurstThrough) {
  for (int i = 0; i < 16; ++i) Send(0, 20);
  EXPECT_EQ(sent.size(), 16U);
  EXPECT_EQ(pacer.Waiting(), 0U);
}

TEST_F(SysexPacerTest, HoldsBackWhatAWireCouldNotCarry) {
  Send(0, 1000);
  Send(0, 99);
  EXPECT_EQ(sent.size(), 1U);
  pacer.Advance(1000 + 24, Take());
  EXPECT_EQ(sent.size(), 1U) << "23 bytes were left, 75 came";
  pacer.Advance(1000 + 25, Take());
  EXPECT_EQ(sent.size(), 2U);
}

TEST_F(SysexPacerTest, KeepsTheOrderOfAllThatWaits) {
  Send(0, 1000);
  Send(0, 500);
  Send(0, 3);
  EXPECT_EQ(sent.size(), 1U) << "the short one overtakes nobody";
  pacer.Advance(100'000, Take());
  ASSERT_EQ(sent.size(), 3U);
  EXPECT_EQ(sent[1].second, 500U);
  EXPECT_EQ(sent[2].second, 3U);
}

TEST_F(SysexPacerTest, LetsALongMessageGoWhenTheWireIsFree) {
  Send(0, 50'000);
  EXPECT_EQ(sent.size(), 1U);
  Send(0, 10);
  pacer.Advance(1000 + 15'000, Take());
  EXPECT_EQ(sent.size(), 1U) << "50,001 bytes take 16 seconds";
  pacer.Advance(1000 + 16'000, Take());
  EXPECT_EQ(sent.size(), 2U);
}

TEST_F(SysexPacerTest, ForgetsWhatWaitsWhenItIsToldTo) {
  Send(0, 1000);
  Send(0, 1000);
  pacer.Clear();
  pacer.Advance(100'000, Take());
  EXPECT_EQ(sent.size(), 1U);
}

}  // namespace
}  // namespace Sonarello
