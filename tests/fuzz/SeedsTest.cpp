// Every seed of the fuzz targets and every input that once was a finding.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Targets.h"

namespace Sonarello::Fuzz {

namespace {

std::vector<std::filesystem::path> FilesIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  if (std::filesystem::is_directory(folder))
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      if (entry.is_regular_file()) files.push_back(entry.path());
  return files;
}

std::vector<std::uint8_t> Contents(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// Runs a target over its seeds and findings; raises nothing if all of them hold.
void RunAll(const std::string& target, void (*run)(Input)) {
  const std::filesystem::path root = std::filesystem::path(SONARELLO_SOURCE_DIR) / "fuzz";
  const std::vector<std::filesystem::path> seeds = FilesIn(root / "corpus" / target);
  EXPECT_FALSE(seeds.empty()) << "no seeds for " << target;
  std::vector<std::filesystem::path> files = FilesIn(root / "regressions" / target);
  files.insert(files.end(), seeds.begin(), seeds.end());
  for (const std::filesystem::path& file : files) EXPECT_NO_THROW(run(Contents(file))) << file;
}

}  // namespace

TEST(FuzzTargets, HoldForTheirSongs) { RunAll("fuzz_song", FuzzSong); }
TEST(FuzzTargets, HoldForTheirMarkers) { RunAll("fuzz_marker", FuzzMarker); }
TEST(FuzzTargets, HoldForTheirSoundLists) { RunAll("fuzz_list", FuzzList); }
TEST(FuzzTargets, HoldForTheirRegistryFiles) { RunAll("fuzz_registry", FuzzRegistry); }
TEST(FuzzTargets, HoldForTheirPositions) { RunAll("fuzz_position", FuzzPosition); }
TEST(FuzzTargets, HoldForTheirSysexs) { RunAll("fuzz_explain", FuzzExplain); }
TEST(FuzzTargets, HoldForTheirEdits) { RunAll("fuzz_events", FuzzEvents); }

}  // namespace Sonarello::Fuzz
