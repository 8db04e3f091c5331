#include "playback/WavFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cmath>
#include <filesystem>
#include <limits>
#include <random>
#include <utility>

#include "core/TextEncoding.h"
#include "core/Texts.h"
#include "playback/AudioDevice.h"
#include "playback/HostedInstrument.h"

namespace Sonarello {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t HeaderSize = 44;
constexpr std::uint32_t RiffOverhead = HeaderSize - 8;
constexpr std::uint32_t OpenLength = 0xFFFFFFFF;  // readers go on to the end of the stream
constexpr std::size_t PieceSize = 1 << 16;        // bytes that are written at a time
constexpr int NameAttempts = 16;
constexpr std::size_t LongestNamePart =
    200;  // bytes; with the random digits within what a name may have

std::uint32_t SampleBytes(TWavFormat format) { return format == TWavFormat::Float32 ? 4 : 2; }
std::uint32_t FrameBytes(TWavFormat format) { return SampleBytes(format) * AudioChannels; }

/// RIFF/WAVE with the two chunks "fmt " (format tag 1: PCM, 3: IEEE float) and "data".
std::array<std::uint8_t, HeaderSize> Header(TWavFormat format, std::uint32_t dataBytes) {
  std::array<std::uint8_t, HeaderSize> header{};
  std::size_t at = 0;
  const auto text = [&](std::string_view four) {
    for (const char c : four) header[at++] = static_cast<std::uint8_t>(c);
  };
  const auto number = [&](std::uint32_t value, int bytes) {
    for (; bytes > 0; --bytes, value >>= 8) header[at++] = static_cast<std::uint8_t>(value);
  };
  text("RIFF");
  number(dataBytes == OpenLength ? OpenLength : dataBytes + RiffOverhead, 4);
  text("WAVEfmt ");
  number(16, 4);
  number(format == TWavFormat::Float32 ? 3 : 1, 2);
  number(AudioChannels, 2);
  number(AudioSampleRate, 4);
  number(AudioSampleRate * FrameBytes(format), 4);
  number(FrameBytes(format), 2);
  number(SampleBytes(format) * 8, 2);
  text("data");
  number(dataBytes, 4);
  return header;
}

std::string RandomDigits() {
  std::random_device random;
  std::string digits;
  while (digits.size() < 16) digits += "0123456789abcdef"[random() & 15U];
  return digits;
}

/// ".<name>.<digits>.part" in the folder of a file.
std::string NameBeside(const fs::path& target) {
  const std::string name(CutToBytes(target.filename().string(), LongestNamePart));
  return (target.parent_path() / ("." + name + "." + RandomDigits() + ".part")).string();
}

/// The file that a path means in the end; a link that points at nothing means the file to be made.
std::string FileBehind(fs::path path) {
  std::error_code error;
  for (int hop = 0; hop < 40 && fs::is_symlink(path, error); ++hop) {
    const fs::path next = fs::read_symlink(path, error);
    if (error) break;
    path = path.parent_path() / next;
  }
  return path.string();
}

std::string CanNotUse(const std::string& name) {
  return Text("Kann " + name + " nicht benutzen. Bitte geben Sie einen anderen Namen ein.",
              "The file " + name + " can not be used. Please enter another file name to save to.");
}

bool OutOfSpace(int error) { return error == ENOSPC || error == EDQUOT || error == EFBIG; }

}  // namespace

std::int64_t TWavFile::MostFrames(TWavFormat format) noexcept {
  return (OpenLength - 1 - RiffOverhead) / FrameBytes(format);
}

TWavFile::TWavFile(const std::string& fileName, TWavFormat f, FileCalls& c)
    : calls(c), format(f), name(fileName), target(FileBehind(fileName)) {
  pending.reserve(PieceSize + sizeof(float));
  struct stat found {};
  const bool exists = ::stat(target.c_str(), &found) == 0;
  if (fs::path(target).filename().empty() || (exists && S_ISDIR(found.st_mode))) Fail(CanNotUse(name));
  if (exists && !S_ISREG(found.st_mode)) {
    handle = calls.Open(target, O_WRONLY, 0);
    if (handle < 0) Fail(CanNotUse(name));
  } else {
    constexpr mode_t anyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
    if (exists && ((found.st_mode & anyWrite) == 0 ||
                   ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0))
      Fail(CanNotUse(name));
    if (exists) mode = found.st_mode & 0777;
    OpenBeside(target);
  }
  WriteOut(Header(format, OpenLength));
}

TWavFile::~TWavFile() { GiveUp(); }

void TWavFile::OpenBeside(const std::string& fileName) {
  constexpr mode_t everybody = 0666;
  for (int attempt = 0; attempt < NameAttempts; ++attempt) {
    growing = NameBeside(fileName);
    handle = calls.Open(growing, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, everybody);
    if (handle >= 0) return;
    if (errno != EEXIST) break;
  }
  growing.clear();  // it is not ours
  if (OutOfSpace(errno)) FailWriting();
  Fail(CanNotUse(name));
}

float TWavFile::Dither() noexcept {
  // Two even values make a triangle of one step to either side (xorshift, Marsaglia 2003).
  const auto even = [this] {
    noise ^= noise << 13;
    noise ^= noise >> 17;
    noise ^= noise << 5;
    return static_cast<float>(noise >> 8) * 0x1p-24F;
  };
  const float up = even();
  return up - even();
}

void TWavFile::AppendSample(float sample) {
  std::uint32_t bits = 0;
  if (format == TWavFormat::Float32) {
    bits = std::bit_cast<std::uint32_t>(sample);
  } else {
    float value = std::isnan(sample) ? 0.0F : std::clamp(sample, -1.0F, 1.0F) * 32767.0F;
    if (format == TWavFormat::Bits16Dither) value += Dither();
    bits = static_cast<std::uint32_t>(std::lrint(std::clamp(value, -32768.0F, 32767.0F)));
  }
  for (std::uint32_t left = SampleBytes(format); left > 0; --left, bits >>= 8)
    pending.push_back(static_cast<std::uint8_t>(bits));
}

void TWavFile::Write(std::span<const float> stereo) {
  const auto more = static_cast<std::int64_t>(stereo.size() / AudioChannels);
  if (more > MostFrames(format) - frames)
    Fail(Text("Der Song ist zu lang für eine WAV-Datei.", "The song is too long for a WAV file."));
  for (const float sample : stereo.first(static_cast<std::size_t>(more) * AudioChannels)) {
    AppendSample(sample);
    if (pending.size() < PieceSize) continue;
    WriteOut(pending);
    pending.clear();
  }
  frames += more;
}

void TWavFile::Finish() {
  WriteOut(pending);
  pending.clear();
  if (!growing.empty()) {
    const auto length = static_cast<std::uint32_t>(frames) * FrameBytes(format);
    if (calls.Rewind(handle) != 0) FailWriting();
    WriteOut(Header(format, length));
    if (calls.Sync(handle) != 0) FailWriting();
  }
  if (calls.Close(std::exchange(handle, -1)) != 0) FailWriting();
  if (growing.empty()) return;
  if ((mode != 0 && calls.SetMode(growing, mode) != 0) || calls.Rename(growing, target) != 0)
    FailWriting();
  growing.clear();
}

void TWavFile::WriteOut(std::span<const std::uint8_t> bytes) {
  if (handle < 0) Fail(CanNotUse(name));
  while (!bytes.empty()) {
    const ssize_t taken = calls.Write(handle, bytes.data(), bytes.size());
    if (taken > 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(taken));
    } else if (taken == 0 || errno != EINTR) {
      if (taken == 0) errno = ENOSPC;
      FailWriting();
    }
  }
}

void TWavFile::GiveUp() noexcept {
  if (handle >= 0) static_cast<void>(calls.Close(std::exchange(handle, -1)));
  if (!growing.empty()) static_cast<void>(calls.Remove(std::exchange(growing, {})));
}

void TWavFile::Fail(const std::string& text) {
  GiveUp();
  throw TAudioError(text);
}

void TWavFile::FailWriting() {
  if (OutOfSpace(errno))
    Fail(Text("Der Datenträger ist voll. Die Datei " + name + " wurde nicht geschrieben.",
              "The disk is full. The file " + name + " was not written."));
  Fail(Text("Fehler beim Schreiben der Datei ", "Error writing the file ") + name + ".");
}

}  // namespace Sonarello
