// Sonarello: sound into WAV files.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/FileCalls.h"

namespace Sonarello {

enum class TWavFormat : std::uint8_t {
  Bits16,
  Bits16Dither,  ///< 16 bit, the rounding turned into even noise
  Float32,       ///< as rendered, beyond full scale too
};

/// Writes a WAV file (44,100 Hz, stereo) piece by piece. The sound grows in a file beside the one that
/// is asked for and takes its name when it is complete (`Finish`); whatever happens before that leaves
/// no half file and an existing one as it was. A device or a pipe gets the sound at once, with a header
/// that leaves the length open. The same samples make the same bytes, dithered too.
///
/// Every operation raises TAudioError with a text for the user; the file is given up by then.
class TWavFile {
 public:
  /// Begins a file (path, UTF-8).
  TWavFile(const std::string& fileName, TWavFormat format, FileCalls& calls = FileCalls::System());
  TWavFile(const TWavFile&) = delete;
  TWavFile& operator=(const TWavFile&) = delete;
  /// A file that was not finished goes.
  ~TWavFile();

  /// Appends frames, left and right in turn. Full scale is -1 to 1; 16 bit clips what is beyond.
  void Write(std::span<const float> stereo);
  /// Completes the file under its name.
  void Finish();
  /// Frames written so far.
  [[nodiscard]] std::int64_t Frames() const noexcept { return frames; }

  /// Frames that a file can hold at most: its length is written in 32 bits.
  [[nodiscard]] static std::int64_t MostFrames(TWavFormat format) noexcept;

 private:
  void OpenBeside(const std::string& fileName);
  void AppendSample(float sample);
  [[nodiscard]] float Dither() noexcept;
  void WriteOut(std::span<const std::uint8_t> bytes);
  void GiveUp() noexcept;
  [[noreturn]] void Fail(const std::string& text);
  [[noreturn]] void FailWriting();

  FileCalls& calls;
  TWavFormat format;
  std::string name;     // as the user gave it
  std::string target;   // the file behind it
  std::string growing;  // empty: a device or a pipe, written to directly
  unsigned mode = 0;    // permissions of the file that is replaced, 0: none
  int handle = -1;
  std::int64_t frames = 0;
  std::uint32_t noise = 0x53726C6FU;  // seed of the dither, never 0
  std::vector<std::uint8_t> pending;
};

}  // namespace Sonarello
