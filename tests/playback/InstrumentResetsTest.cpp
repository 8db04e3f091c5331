#include "playback/InstrumentResets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "instruments/InstrumentArray.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<int> Bytes(int instrument) {
  const auto reset = ResetOf(instrument);
  return {reset.begin(), reset.end()};
}

TEST(InstrumentResets, SpeakToGSDevices) {
  EXPECT_THAT(Bytes(67), ElementsAre(0x41, 0x00, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7));
  for (const int value : {1, 2, 3, 4, 12, 15, 17, 22, 25, 60, 61, 71, 72, 83})
    EXPECT_THAT(Bytes(value), ElementsAre(0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7))
        << value;
}

TEST(InstrumentResets, SpeakToGM2Devices) {
  for (const int value : {14, 16, 36, 37, 42, 43, 48, 52, 63, 64, 78, 82, 90, 91, 100, 103})
    EXPECT_THAT(Bytes(value), ElementsAre(0x7E, 0x7F, 0x09, 0x03, 0xF7)) << value;
}

TEST(InstrumentResets, SpeakToXGDevices) {
  for (const int value : {5, 6, 7, 8, 9, 18, 19, 31, 33, 34, 41, 54, 59, 62, 70, 74, 80, 87, 97})
    EXPECT_THAT(Bytes(value), ElementsAre(0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7)) << value;
}

TEST(InstrumentResets, SpeakToKetronDevices) {
  for (const int value : {10, 11, 20, 30, 32, 40, 46, 47, 49, 50, 55, 73, 76, 79, 84, 92, 101, 104})
    EXPECT_THAT(Bytes(value), ElementsAre(0x26, 0x7B, 0x0E, 0x00, 0x01, 0xF7)) << value;
}

TEST(InstrumentResets, LeaveSomeDevicesAlone) {
  for (const int value : {13, 28, 35, 45, 68}) EXPECT_THAT(Bytes(value), IsEmpty()) << value;
}

TEST(InstrumentResets, AreGMForEveryOther) {
  for (const int value : {0, 21, 23, 26, 51, 69, 75, 199, -1})
    EXPECT_THAT(Bytes(value), ElementsAre(0x7E, 0x7F, 0x09, 0x01, 0xF7)) << value;
}

TEST(InstrumentResets, CoverTheWholeCatalogue) {
  std::map<std::vector<int>, int> counts;
  for (const TInstrument& row : InstrumentArray) ++counts[Bytes(row.Value)];
  EXPECT_EQ(counts.size(), 7U);
  EXPECT_EQ(counts[{}], 5);
  EXPECT_EQ(counts[Bytes(0)], 33);
  for (const auto& [bytes, count] : counts) EXPECT_TRUE(bytes.empty() || bytes.back() == 0xF7);
}

}  // namespace
}  // namespace Sonarello
