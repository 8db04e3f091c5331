// Sonarello: where the fuzz targets put files that are to be opened.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "Targets.h"

namespace Sonarello::Fuzz {

/// A folder of this process, in memory where the system has that, which goes with it.
class Folder {
 public:
  Folder() {
    const std::filesystem::path memory = "/dev/shm";
    const auto base = std::filesystem::exists(memory) ? memory : std::filesystem::temp_directory_path();
    path = base / ("sonarello_fuzz." + std::to_string(getpid()));
    std::filesystem::create_directories(path);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  [[nodiscard]] std::string SongFile() const { return path / "song.mid"; }
  void WriteSong(Input file) const {
    std::ofstream out(SongFile(), std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
  }
  [[nodiscard]] std::string Name() const { return path; }

 private:
  std::filesystem::path path;
};

}  // namespace Sonarello::Fuzz
