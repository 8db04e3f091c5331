#include "playback/drivers/MidiBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace Sonarello {
namespace {

using TBytes = std::vector<std::uint8_t>;
using testing::ElementsAre;

struct TRow {
  explicit TRow(const TBytes& bytes)
      : Whole(ForEachMessage(bytes, [this](std::span<const std::uint8_t> message) {
          Messages.emplace_back(message.begin(), message.end());
        })) {}
  std::vector<TBytes> Messages;
  bool Whole;
};

TEST(MidiBytes, AreTakenApartIntoMessages) {
  const TRow row({0x90, 60, 100, 0xC0, 5, 0xF8, 0xF0, 1, 2, 0xF7, 0xF2, 3, 4});
  EXPECT_TRUE(row.Whole);
  EXPECT_THAT(row.Messages, ElementsAre(TBytes{0x90, 60, 100}, TBytes{0xC0, 5}, TBytes{0xF8},
                                        TBytes{0xF0, 1, 2, 0xF7}, TBytes{0xF2, 3, 4}));
}

TEST(MidiBytes, MayBeginWithTheRestOfASysex) {
  const TRow row({1, 2, 3, 0xF7, 0x80, 60, 0});
  EXPECT_TRUE(row.Whole);
  EXPECT_THAT(row.Messages, ElementsAre(TBytes{1, 2, 3, 0xF7}, TBytes{0x80, 60, 0}));
}

TEST(MidiBytes, MayBeASysexThatGoesOnLater) {
  const TRow row({0xF0, 1, 2});
  EXPECT_TRUE(row.Whole);
  EXPECT_THAT(row.Messages, ElementsAre(TBytes{0xF0, 1, 2}));
}

TEST(MidiBytes, KeepRealTimeInsideASysex) {
  const TRow row({0xF0, 1, 0xF8, 2, 0xF7});
  EXPECT_TRUE(row.Whole);
  EXPECT_THAT(row.Messages, ElementsAre(TBytes{0xF0, 1, 0xF8, 2, 0xF7}));
}

TEST(MidiBytes, EndASysexWithTheNextStatus) {
  const TRow row({0xF0, 1, 2, 0x90, 60, 1});
  EXPECT_TRUE(row.Whole);
  EXPECT_THAT(row.Messages, ElementsAre(TBytes{0xF0, 1, 2}, TBytes{0x90, 60, 1}));
}

TEST(MidiBytes, LeaveOutWhatIsNoWholeMessage) {
  EXPECT_FALSE(TRow({0x90, 60}).Whole);
  EXPECT_FALSE(TRow({0x90, 60, 0x80}).Whole);
  const TRow row({0x90, 60, 0x80, 61, 0, 7, 0xC0, 1});
  EXPECT_FALSE(row.Whole);
  EXPECT_THAT(row.Messages, ElementsAre(TBytes{0x80, 61, 0}, TBytes{0xC0, 1}));
}

TEST(MidiBytes, MayBeNone) {
  const TRow row({});
  EXPECT_TRUE(row.Whole);
  EXPECT_TRUE(row.Messages.empty());
}

}  // namespace
}  // namespace Sonarello
