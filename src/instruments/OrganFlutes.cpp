#include <algorithm>
#include <array>
#include <cstdint>

#include "instruments/Naming.h"

namespace Sonarello {

namespace {

/// A drawbar setting: nine footages, five further settings, two modes, a constant and four zeros.
struct TOrganFlute {
  std::string_view Name;
  std::array<std::uint8_t, 21> Setting;
};

constexpr TOrganFlute Settings[] = {
    {"BalladEuro (OrganFlutes)", {1, 0, 0, 0, 0, 0, 0, 8, 7, 0, 0, 8, 8, 0, 0, 2, 9, 0, 0, 0, 0}},
    {"BalladOrgan (OrganFlutes)", {0, 0, 0, 0, 0, 3, 6, 7, 8, 0, 0, 0, 7, 0, 1, 1, 9, 0, 0, 0, 0}},
    {"BrightEuro (OrganFlutes)", {6, 6, 7, 0, 6, 0, 8, 7, 6, 0, 0, 0, 0, 0, 0, 2, 9, 0, 0, 0, 0}},
    {"ClariBars (OrganFlutes)", {0, 6, 7, 0, 8, 0, 8, 0, 0, 0, 0, 0, 0, 0, 1, 1, 9, 0, 0, 0, 0}},
    {"EuroAccomp1 (OrganFlutes)", {0, 0, 0, 0, 0, 5, 0, 8, 0, 0, 0, 0, 0, 0, 0, 2, 9, 0, 0, 0, 0}},
    {"EuroAccomp2 (OrganFlutes)", {0, 0, 0, 0, 5, 6, 0, 8, 0, 0, 0, 0, 0, 0, 0, 2, 9, 0, 0, 0, 0}},
    {"EuroAccomp3 (OrganFlutes)", {0, 3, 0, 5, 6, 6, 0, 8, 0, 0, 0, 0, 0, 0, 0, 2, 9, 0, 0, 0, 0}},
    {"EuroPerc (OrganFlutes)", {1, 0, 0, 0, 0, 6, 8, 6, 7, 0, 8, 0, 6, 0, 0, 2, 9, 0, 0, 0, 0}},
    {"EuroPops (OrganFlutes)", {2, 4, 6, 0, 0, 0, 0, 0, 8, 0, 8, 0, 8, 0, 0, 2, 9, 0, 0, 0, 0}},
    {"EuroReeds (OrganFlutes)", {0, 5, 6, 0, 5, 0, 7, 8, 7, 0, 0, 0, 0, 0, 0, 2, 9, 0, 0, 0, 0}},
    {"EvenWarmth (OrganFlutes)", {6, 0, 0, 7, 0, 8, 0, 8, 7, 0, 0, 0, 0, 0, 0, 2, 9, 0, 0, 0, 0}},
    {"FullEuro (OrganFlutes)", {6, 7, 8, 8, 8, 8, 7, 8, 6, 0, 0, 0, 0, 0, 0, 2, 9, 0, 0, 0, 0}},
    {"FullOrgan (OrganFlutes)", {8, 8, 7, 7, 7, 6, 8, 7, 8, 0, 0, 0, 0, 0, 0, 1, 9, 0, 0, 0, 0}},
    {"FunkOrgan (OrganFlutes)", {8, 8, 7, 5, 3, 0, 3, 5, 8, 0, 0, 0, 7, 0, 1, 1, 9, 0, 0, 0, 0}},
    {"GospelTruth (OrganFlutes)", {8, 6, 5, 0, 0, 0, 7, 6, 8, 0, 0, 0, 0, 0, 0, 1, 9, 0, 0, 0, 0}},
    {"JazzSquabble (OrganFlutes)", {8, 8, 8, 8, 0, 0, 0, 0, 8, 0, 0, 0, 0, 0, 1, 1, 9, 0, 0, 0, 0}},
    {"LatinSpin (OrganFlutes)", {3, 4, 4, 3, 0, 0, 0, 0, 7, 0, 0, 0, 0, 0, 1, 1, 9, 0, 0, 0, 0}},
    {"OrganFlutes (OrganFlutes)", {0, 0, 0, 0, 0, 6, 8, 6, 7, 0, 0, 8, 6, 0, 1, 1, 9, 0, 0, 0, 0}},
    {"OrganPops (OrganFlutes)", {0, 0, 0, 0, 0, 0, 0, 8, 7, 0, 0, 8, 8, 0, 1, 1, 9, 0, 0, 0, 0}},
    {"PadOrgan (OrganFlutes)", {0, 0, 0, 0, 2, 5, 0, 8, 0, 0, 0, 0, 0, 0, 1, 0, 9, 0, 0, 0, 0}},
    {"ReggaeBars (OrganFlutes)", {8, 0, 0, 0, 0, 0, 0, 0, 7, 0, 0, 0, 0, 0, 1, 1, 9, 0, 0, 0, 0}},
    {"RichBars (OrganFlutes)", {0, 3, 5, 7, 5, 4, 3, 8, 6, 0, 0, 0, 0, 0, 1, 1, 9, 0, 0, 0, 0}},
    {"RockOrgan (OrganFlutes)", {4, 4, 6, 4, 4, 4, 5, 5, 6, 0, 0, 0, 0, 0, 1, 1, 9, 0, 0, 0, 0}},
    {"ShadyBars (OrganFlutes)", {0, 0, 0, 0, 0, 6, 8, 8, 6, 0, 0, 5, 7, 0, 1, 1, 9, 0, 0, 0, 0}},
    {"SoulBars (OrganFlutes)", {8, 7, 5, 0, 5, 0, 0, 0, 8, 0, 0, 0, 0, 0, 1, 1, 9, 0, 0, 0, 0}},
    {"SoulPercussion (OrganFlutes)", {0, 3, 5, 0, 0, 0, 0, 0, 7, 0, 7, 0, 0, 0, 1, 0, 9, 0, 0, 0, 0}},
    {"StringBars (OrganFlutes)", {2, 3, 5, 7, 8, 7, 8, 0, 4, 0, 0, 0, 0, 0, 1, 1, 9, 0, 0, 0, 0}},
    {"TrumpetBars (OrganFlutes)", {0, 4, 5, 6, 8, 7, 6, 0, 0, 0, 0, 0, 0, 0, 1, 1, 9, 0, 0, 0, 0}},
    {"USDSmile (OrganFlutes)", {8, 6, 4, 3, 2, 3, 7, 4, 8, 0, 0, 0, 0, 0, 1, 1, 9, 0, 0, 0, 0}},
    {"WarmTheatre (OrganFlutes)", {0, 0, 0, 5, 0, 6, 0, 0, 8, 0, 0, 0, 0, 0, 1, 1, 9, 0, 0, 0, 0}},
};

constexpr std::uint8_t PartPrefix[] = {0x43, 0x73, 0x01, 0x06, 0x0B, 0x00, 0x00, 0x01, 0x06};
constexpr std::uint8_t BlockPrefix[] = {0x43, 0x73, 0x01, 0x11, 0x00, 0x50, 0x10};
/// Bytes that make a setting: the zeros behind its constant 9 may be missing.
constexpr std::size_t ShortestSetting = 17;

bool StartsWith(std::span<const std::uint8_t> bytes, std::span<const std::uint8_t> prefix) {
  return bytes.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), bytes.begin());
}

/// The drawbars of a message: behind its prefix and, where it names one, its part.
std::span<const std::uint8_t> SettingOf(std::span<const std::uint8_t> sysex) {
  std::size_t begin = 0;
  if (StartsWith(sysex, PartPrefix)) begin = std::size(PartPrefix) + 1;
  if (StartsWith(sysex, BlockPrefix)) begin = std::size(BlockPrefix);
  if (begin == 0 || begin >= sysex.size()) return {};
  sysex = sysex.subspan(begin);
  return sysex.first(sysex.size() - (sysex.back() == 0xF7 ? 1 : 0));
}

bool Matches(std::span<const std::uint8_t> setting, const TOrganFlute& row) {
  if (setting.size() < ShortestSetting) return false;
  const std::size_t length = std::min(setting.size(), row.Setting.size());
  return std::equal(setting.begin(), setting.begin() + static_cast<std::ptrdiff_t>(length),
                    row.Setting.begin());
}

}  // namespace

std::string_view OrganFluteName(std::span<const std::uint8_t> sysex) noexcept {
  std::string_view name = "OrganFlutes (OrganFlutes)";
  const std::span<const std::uint8_t> setting = SettingOf(sysex);
  for (const TOrganFlute& row : Settings)
    if (Matches(setting, row)) name = row.Name;
  return name;
}

}  // namespace Sonarello
