// Sonarello: the list of software versions that the update check reads.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/Ports.h"

namespace Sonarello {

/// The product's line in the list.
struct TUpdateLine {
  std::string Version;
  std::string Page;  ///< address of the download page, http or https; empty if the list gives none
  friend bool operator==(const TUpdateLine&, const TUpdateLine&) = default;
};

/// First line of every list.
inline constexpr std::string_view UpdateListHead = "Software-Liste";
/// The product in the list.
inline constexpr std::string_view UpdateProduct = "Sonarello XI";

/// Reads a list: the head, then a line per product with tabs between product, version and download
/// page. UTF-8, any line ends. Nothing if it is no such list or the product has no version in it.
[[nodiscard]] std::optional<TUpdateLine> ReadUpdateList(std::string_view text,
                                                        std::string_view product = UpdateProduct);

/// Compares two versions: less than 0, 0 or more, as `strcmp`. Numbers count as such, part by part
/// ("1.10" is newer than "1.9", "1.2" is "1.2.0"); letters behind a number are newer than none, in
/// alphabetical order, but "alpha", "beta", "pre" and "rc" stand in front of the version they announce.
/// Case, blanks and a "v" in front do not count.
[[nodiscard]] int CompareVersions(std::string_view a, std::string_view b);

/// How a check ended.
enum class TUpdateOutcome : std::uint8_t {
  NoEndpoint,  ///< no address is set
  Failed,      ///< no list came
  UpToDate,
  Newer,
};
struct TUpdateResult {
  TUpdateOutcome Outcome = TUpdateOutcome::Failed;
  TUpdateLine Line;  ///< of a list that came
};
/// What a list says to a version.
[[nodiscard]] TUpdateResult JudgeUpdateList(std::string_view text, std::string_view ownVersion);

/// The text for an outcome. For a newer version with a download page it is a question.
[[nodiscard]] std::string UpdateText(const TUpdateResult& result);
/// The download page could not be opened.
[[nodiscard]] std::string OpenPageFailureText(std::string_view page);

/// Tells the user how a check ended, and opens the download page if that is wished. `openPage` is told
/// the address; false means that it failed, which is told as well.
void TellUpdate(const TUpdateResult& result, IMessages& messages,
                const std::function<bool(const std::string&)>& openPage);

}  // namespace Sonarello
