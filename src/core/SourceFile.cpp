#include <cerrno>
#include <cstdio>
#include <limits>
#include <memory>

#include "core/OpenPipeline.h"
#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr std::size_t SmallestFile = 24;  ///< bytes
/// Offsets in a song file are signed 32-bit numbers.
constexpr std::size_t LargestFile = std::numeric_limits<std::int32_t>::max();

/// The whole file, or false if it cannot be opened, read or held. Works on pipes as well.
bool ReadWhole(const std::string& file, std::vector<std::uint8_t>& data) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> input(std::fopen(file.c_str(), "rb"),
                                                              &std::fclose);
  if (input == nullptr) return false;
  constexpr std::size_t piece = std::size_t{1} << 20;
  data.clear();
  try {
    std::size_t got = 0;
    do {
      const std::size_t held = data.size();
      data.resize(held + piece);
      got = std::fread(data.data() + held, 1, piece, input.get());
      data.resize(held + got);
    } while (got > 0 && data.size() <= LargestFile);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return std::ferror(input.get()) == 0 && data.size() <= LargestFile;
}

}  // namespace

bool ReadSourceData(const std::string& file, std::vector<std::uint8_t>& data, IMessages& messages) {
  if (!ReadWhole(file, data)) {
    messages.Show(Text("Fehler beim Zugriff auf der Datei\r\"" + file + "\"",
                       "Error opening the midi file\r\"" + file + "\""));
  } else if (data.size() < SmallestFile) {
    messages.Show(
        Text("Fehler in der Mididatei: Datei zu kurz!", "Error in midifile: file too short!"));
  } else {
    return true;
  }
  data = {};
  return false;
}

}  // namespace Sonarello
