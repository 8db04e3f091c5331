#include "playback/InstrumentResets.h"

#include <algorithm>

namespace Sonarello {

namespace {

// The last byte before F7 of the two GS messages is the Roland checksum of 40 00 7F 00.
constexpr std::uint8_t GSResetDevice0[] = {0x41, 0x00, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7};
constexpr std::uint8_t GSReset[] = {0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7};
constexpr std::uint8_t GMSystemOn[] = {0x7E, 0x7F, 0x09, 0x01, 0xF7};
constexpr std::uint8_t GM2SystemOn[] = {0x7E, 0x7F, 0x09, 0x03, 0xF7};
constexpr std::uint8_t XGSystemOn[] = {0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7};
constexpr std::uint8_t KetronReset[] = {0x26, 0x7B, 0x0E, 0x00, 0x01, 0xF7};

constexpr std::uint8_t OfGSDevice0[] = {67};
constexpr std::uint8_t OfGS[] = {1, 2, 3, 4, 12, 15, 17, 22, 25, 60, 61, 71, 72, 83};
constexpr std::uint8_t OfGM2[] = {14, 16, 36, 37, 42, 43, 48, 52, 63, 64, 78, 82, 90, 91, 100, 103};
constexpr std::uint8_t OfXG[] = {5, 6, 7, 8, 9, 18, 19, 31, 33, 34, 41, 54, 59, 62, 70, 74, 80, 87, 97};
constexpr std::uint8_t OfKetron[] = {10, 11, 20, 30, 32, 40, 46, 47,  49,
                                     50, 55, 73, 76, 79, 84, 92, 101, 104};
constexpr std::uint8_t OfNone[] = {13, 28, 35, 45, 68};

struct TReset {
  std::span<const std::uint8_t> Instruments;
  std::span<const std::uint8_t> Bytes;
};
constexpr TReset Resets[] = {{OfGSDevice0, GSResetDevice0}, {OfGS, GSReset},
                             {OfGM2, GM2SystemOn},          {OfXG, XGSystemOn},
                             {OfKetron, KetronReset},       {OfNone, {}}};

}  // namespace

std::span<const std::uint8_t> ResetOf(int instrumValue) noexcept {
  for (const TReset& reset : Resets)
    if (std::ranges::find(reset.Instruments, instrumValue) != reset.Instruments.end())
      return reset.Bytes;
  return GMSystemOn;
}

}  // namespace Sonarello
