// Sonarello: the controllers of the strips and of their shared panel: numbers, defaults, shown values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Sonarello {

inline constexpr int VolumeController = 7;
inline constexpr int PanoramaController = 10;
inline constexpr int ExpressionController = 11;

/// The controllers of the panel, in the order in which they stand there: panorama, expression, reverb,
/// chorus, harmonics, release, attack, brightness, celeste.
inline constexpr int PanelControllerNumbers[] = {10, 11, 91, 93, 71, 72, 73, 74, 94};

[[nodiscard]] bool IsPanelController(int controller) noexcept;
/// Where a control stands that the song gives no value: what a device starts with (GM2).
[[nodiscard]] int DefaultControllerValue(int controller) noexcept;
/// A value (0-127) as the user reads it: panorama counts from its middle.
[[nodiscard]] int ShownControllerValue(int controller, int value) noexcept;
/// The value (0-127) of a control for a text that the user typed: a number with or without sign, beyond
/// the range its end. Nothing if it is no number.
[[nodiscard]] std::optional<int> TypedControllerValue(int controller, std::string_view text);
/// A whole number that the user typed, with or without sign (a minus sign or a hyphen), blanks around.
[[nodiscard]] std::optional<int> TypedNumber(std::string_view text);

/// Where the wheel moves a control (0-127): a turn with a positive delta lowers it by 1, deliberately.
[[nodiscard]] int WheelValue(int value, int wheelDelta) noexcept;

}  // namespace Sonarello
