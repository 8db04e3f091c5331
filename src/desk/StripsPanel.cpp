#include "desk/StripsPanel.h"

#include <algorithm>
#include <charconv>

namespace Sonarello {

namespace {

constexpr int Middle = 64;
constexpr int Greatest = 127;

constexpr std::string_view Blanks = " \t";
constexpr std::string_view MinusSign = "\u2212";

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(Blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

}  // namespace

bool IsPanelController(int controller) noexcept {
  return std::ranges::find(PanelControllerNumbers, controller) != std::end(PanelControllerNumbers);
}

int DefaultControllerValue(int controller) noexcept {
  switch (controller) {
    case VolumeController: return 100;
    case ExpressionController: return 127;
    case 91: return 40;
    case PanoramaController:
    case 71:
    case 72:
    case 73:
    case 74: return Middle;
    default: return 0;
  }
}

int ShownControllerValue(int controller, int value) noexcept {
  return controller == PanoramaController ? value - Middle : value;
}

std::optional<int> TypedNumber(std::string_view text) {
  text = WithoutBlanks(text);
  bool negative = false;
  if (text.starts_with(MinusSign)) {
    negative = true;
    text.remove_prefix(MinusSign.size());
  } else if (text.starts_with('-') || text.starts_with('+')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  unsigned number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (rest != end || text.empty() || error == std::errc::invalid_argument) return std::nullopt;
  // What no number holds is beyond every range.
  constexpr unsigned most = 1'000'000;
  if (error == std::errc::result_out_of_range || number > most) number = most;
  return negative ? -static_cast<int>(number) : static_cast<int>(number);
}

std::optional<int> TypedControllerValue(int controller, std::string_view text) {
  const std::optional<int> number = TypedNumber(text);
  if (!number) return std::nullopt;
  const int value = controller == PanoramaController ? *number + Middle : *number;
  return std::clamp(value, 0, Greatest);
}

int WheelValue(int value, int wheelDelta) noexcept {
  if (wheelDelta > 0) return std::max(value - 1, 0);
  if (wheelDelta < 0) return std::min(value + 1, Greatest);
  return value;
}

}  // namespace Sonarello
