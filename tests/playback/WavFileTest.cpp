#include "playback/WavFile.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <optional>

#include "helpers/InGerman.h"
#include "playback/AudioDevice.h"

namespace Sonarello {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using Bytes = std::vector<std::uint8_t>;

/// Lets one call fail, or the room run out.
class FaultyCalls : public FileCalls {
 public:
  std::string Fails;  ///< name of the call that fails with `Error`
  int Error = EIO;
  std::size_t Room = SIZE_MAX;
  std::size_t Piece = SIZE_MAX;  ///< greatest number of bytes that one call takes
  int Interrupts = 0;

  int Open(const std::string& path, int flags, mode_t mode) override {
    return Stop("open") ? -1 : FileCalls::Open(path, flags, mode);
  }
  ssize_t Write(int file, const void* bytes, std::size_t count) override {
    if (Stop("write")) return -1;
    if (Interrupts > 0) return --Interrupts, errno = EINTR, -1;
    if (Room == 0) return errno = ENOSPC, -1;
    const std::size_t taken = std::min({count, Room, Piece});
    Room -= taken;
    return FileCalls::Write(file, bytes, taken);
  }
  int Rewind(int file) override { return Stop("rewind") ? -1 : FileCalls::Rewind(file); }
  int Sync(int file) override { return Stop("sync") ? -1 : FileCalls::Sync(file); }
  int Close(int file) override {
    const int result = FileCalls::Close(file);
    return Stop("close") ? -1 : result;
  }
  int SetMode(const std::string& path, mode_t mode) override {
    return Stop("mode") ? -1 : FileCalls::SetMode(path, mode);
  }
  int Rename(const std::string& from, const std::string& to) override {
    return Stop("rename") ? -1 : FileCalls::Rename(from, to);
  }

 private:
  bool Stop(const std::string& name) {
    if (Fails != name) return false;
    errno = Error;
    return true;
  }
};

class WavFile : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "wavfile.XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    folder = pattern;
    target = folder / "song.wav";
  }
  void TearDown() override { fs::remove_all(folder); }

  Bytes Content(const fs::path& path) const {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void WriteWhole(TWavFormat format, const std::vector<float>& stereo) {
    TWavFile file(target.string(), format, calls);
    file.Write(stereo);
    file.Finish();
  }
  /// The samples of a 16 bit file.
  std::vector<int> Samples(TWavFormat format, const std::vector<float>& stereo) {
    WriteWhole(format, stereo);
    const Bytes bytes = Content(target);
    std::vector<int> samples;
    for (std::size_t at = 44; at + 1 < bytes.size(); at += 2)
      samples.push_back(static_cast<std::int16_t>(bytes[at] | bytes[at + 1] << 8));
    return samples;
  }
  std::uint32_t Number(const Bytes& bytes, std::size_t at, int count) const {
    std::uint32_t value = 0;
    while (count-- > 0) value = value << 8 | bytes[at + static_cast<std::size_t>(count)];
    return value;
  }
  std::string Failure(const std::function<void()>& work) {
    try {
      work();
    } catch (const TAudioError& error) {
      return error.what();
    }
    return "done";
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
  }
  void PutOld() { std::ofstream(target) << "old"; }
  void ExpectOldAlone() {
    EXPECT_EQ(Content(target), (Bytes{'o', 'l', 'd'}));
    EXPECT_THAT(Names(), ElementsAre("song.wav"));
  }

  fs::path folder;
  fs::path target;
  FaultyCalls calls;
};

TEST_F(WavFile, WritesTheHeaderOf16Bit) {
  WriteWhole(TWavFormat::Bits16, {0, 0, 0, 0, 0, 0});
  const Bytes bytes = Content(target);
  ASSERT_EQ(bytes.size(), 44U + 12);
  EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 4), "RIFF");
  EXPECT_EQ(Number(bytes, 4, 4), 36U + 12);
  EXPECT_EQ(std::string(bytes.begin() + 8, bytes.begin() + 16), "WAVEfmt ");
  EXPECT_EQ(Number(bytes, 16, 4), 16U);
  EXPECT_EQ(Number(bytes, 20, 2), 1U) << "PCM";
  EXPECT_EQ(Number(bytes, 22, 2), 2U);
  EXPECT_EQ(Number(bytes, 24, 4), 44100U);
  EXPECT_EQ(Number(bytes, 28, 4), 176400U);
  EXPECT_EQ(Number(bytes, 32, 2), 4U);
  EXPECT_EQ(Number(bytes, 34, 2), 16U);
  EXPECT_EQ(std::string(bytes.begin() + 36, bytes.begin() + 40), "data");
  EXPECT_EQ(Number(bytes, 40, 4), 12U);
}

TEST_F(WavFile, WritesFloatsAsTheyAre) {
  const std::vector<float> stereo{0.1F, -2.5F, 1e-20F, -0.0F, std::numeric_limits<float>::max(), 1.0F};
  WriteWhole(TWavFormat::Float32, stereo);
  const Bytes bytes = Content(target);
  ASSERT_EQ(bytes.size(), 44U + 24);
  EXPECT_EQ(Number(bytes, 20, 2), 3U) << "IEEE float";
  EXPECT_EQ(Number(bytes, 28, 4), 352800U);
  EXPECT_EQ(Number(bytes, 32, 2), 8U);
  EXPECT_EQ(Number(bytes, 34, 2), 32U);
  for (std::size_t n = 0; n < stereo.size(); ++n)
    EXPECT_EQ(Number(bytes, 44 + 4 * n, 4), std::bit_cast<std::uint32_t>(stereo[n]));
}

TEST_F(WavFile, RoundsAndClips16Bit) {
  const float inf = std::numeric_limits<float>::infinity();
  const float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_THAT(Samples(TWavFormat::Bits16, {1.0F, -1.0F, 1.5F, -7, inf, -inf, nan, 0.4F / 32767,
                                           0.6F / 32767, -0.6F / 32767}),
              ElementsAre(32767, -32767, 32767, -32767, 32767, -32767, 0, 0, 1, -1));
}

TEST_F(WavFile, KeepsFullScaleWithinItsBoundsWhenDithered) {
  for (const int sample : Samples(TWavFormat::Bits16Dither, std::vector<float>(2000, 1.0F)))
    ASSERT_GE(sample, 32766);
  for (const int sample : Samples(TWavFormat::Bits16Dither, std::vector<float>(2000, -1.0F)))
    ASSERT_LE(sample, -32766);
}

TEST_F(WavFile, DithersWithATriangleOfOneStepToEitherSide) {
  constexpr int count = 100000;
  const auto samples = Samples(TWavFormat::Bits16Dither, std::vector<float>(count, 0.0F));
  const auto share = [&](int value) {
    return static_cast<double>(std::ranges::count(samples, value)) / count;
  };
  EXPECT_NEAR(share(0), 0.75, 0.01);
  EXPECT_NEAR(share(1), 0.125, 0.01);
  EXPECT_NEAR(share(-1), 0.125, 0.01);
  EXPECT_EQ(share(0) + share(1) + share(-1), 1.0);
}

TEST_F(WavFile, LetsDitheredSoundBelowOneStepThroughOnAverage) {
  constexpr int count = 200000;
  for (const float steps : {0.25F, -0.4F}) {
    const std::vector<float> quiet(count, steps / 32767);
    double sum = 0;
    for (const int sample : Samples(TWavFormat::Bits16Dither, quiet)) sum += sample;
    EXPECT_NEAR(sum / count, steps, 0.01);
  }
  for (const int sample : Samples(TWavFormat::Bits16, std::vector<float>(10, 0.4F / 32767)))
    EXPECT_EQ(sample, 0) << "which plain rounding swallows";
}

TEST_F(WavFile, MakesTheSameBytesOfTheSameSamplesHoweverTheyCome) {
  std::vector<float> stereo;
  for (int n = 0; n < 40000; ++n) stereo.push_back(static_cast<float>(std::sin(n * 0.01)));
  for (const TWavFormat format : {TWavFormat::Bits16, TWavFormat::Bits16Dither, TWavFormat::Float32}) {
    WriteWhole(format, stereo);
    const Bytes whole = Content(target);
    TWavFile pieces(target.string(), format, calls);
    for (std::size_t at = 0; at < stereo.size(); at += 88)
      pieces.Write(std::span(stereo).subspan(at, std::min<std::size_t>(88, stereo.size() - at)));
    EXPECT_EQ(pieces.Frames(), 20000);
    pieces.Finish();
    EXPECT_EQ(Content(target), whole);
  }
}

TEST_F(WavFile, IsCompleteWithoutAFrame) {
  WriteWhole(TWavFormat::Bits16, {});
  const Bytes bytes = Content(target);
  ASSERT_EQ(bytes.size(), 44U);
  EXPECT_EQ(Number(bytes, 4, 4), 36U);
  EXPECT_EQ(Number(bytes, 40, 4), 0U);
}

TEST_F(WavFile, StandsUnderItsNameOnlyWhenItIsComplete) {
  {
    TWavFile file(target.string(), TWavFormat::Bits16, calls);
    file.Write(std::vector<float>(100000, 0.5F));
    EXPECT_FALSE(fs::exists(target));
    file.Finish();
    EXPECT_THAT(Names(), ElementsAre("song.wav"));
  }
  EXPECT_THAT(Names(), ElementsAre("song.wav"));
}

TEST_F(WavFile, LeavesNothingWhenItIsGivenUp) {
  PutOld();
  {
    TWavFile file(target.string(), TWavFormat::Float32, calls);
    file.Write(std::vector<float>(100000, 0.5F));
  }
  ExpectOldAlone();
}

TEST_F(WavFile, TakesThePlaceOfAnOldFileWithItsPermissions) {
  PutOld();
  fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
  WriteWhole(TWavFormat::Bits16, {0, 0});
  EXPECT_EQ(Content(target).size(), 48U);
  EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(WavFile, FollowsALink) {
  fs::create_directory(folder / "sub");
  for (const bool exists : {false, true}) {
    if (!exists) fs::create_symlink("sub/real.wav", target);
    WriteWhole(TWavFormat::Bits16, {0, 0});
    EXPECT_TRUE(fs::is_symlink(target));
    EXPECT_EQ(Content(folder / "sub/real.wav").size(), 48U);
  }
}

TEST_F(WavFile, WritesToADeviceAtOnceWithAnOpenLength) {
  const fs::path pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  {
    TWavFile file(pipe.string(), TWavFormat::Bits16, calls);
    file.Write(std::vector<float>{0, 0});
    file.Finish();
  }
  Bytes got(100);
  got.resize(static_cast<std::size_t>(std::max<ssize_t>(::read(reader, got.data(), got.size()), 0)));
  ::close(reader);
  ASSERT_EQ(got.size(), 48U);
  EXPECT_EQ(Number(got, 4, 4), 0xFFFFFFFFU);
  EXPECT_EQ(Number(got, 40, 4), 0xFFFFFFFFU);
  EXPECT_THAT(Names(), ElementsAre("pipe"));
}

TEST_F(WavFile, SaysThatANameCanNotBeUsed) {
  const auto told = [&](const fs::path& path) {
    return Failure([&] { TWavFile file(path.string(), TWavFormat::Bits16, calls); });
  };
  const std::string missing = (folder / "no/such/folder.wav").string();
  EXPECT_EQ(told(missing),
            "The file " + missing + " can not be used. Please enter another file name to save to.");
  EXPECT_THAT(told(folder), testing::HasSubstr("can not be used")) << "a folder";
  EXPECT_THAT(told(""), testing::HasSubstr("can not be used"));
  PutOld();
  fs::permissions(target, fs::perms::owner_read);
  EXPECT_THAT(told(target), testing::HasSubstr("can not be used")) << "write protected";
  ExpectOldAlone();
  const InGerman german;
  EXPECT_EQ(told(missing),
            "Kann " + missing + " nicht benutzen. Bitte geben Sie einen anderen Namen ein.");
}

TEST_F(WavFile, SaysThatTheDiskIsFullAndLeavesNoHalfFile) {
  PutOld();
  for (const std::size_t room : {0U, 20U, 44U, 1000U, 70000U, 400043U, 400044U}) {
    calls.Room = room;  // the header that is put right in the end needs room in this test
    EXPECT_EQ(Failure([&] { WriteWhole(TWavFormat::Bits16, std::vector<float>(200000, 0.5F)); }),
              "The disk is full. The file " + target.string() + " was not written.")
        << room;
    ExpectOldAlone();
  }
  calls.Room = 0;
  const InGerman german;
  EXPECT_EQ(Failure([&] {
              WriteWhole(TWavFormat::Bits16, {0, 0});
            }),
            "Der Datenträger ist voll. Die Datei " + target.string() + " wurde nicht geschrieben.");
}

TEST_F(WavFile, TellsOfAnyOtherFailureAndLeavesNoHalfFile) {
  PutOld();
  for (const char* call : {"write", "rewind", "sync", "close", "mode", "rename"}) {
    calls.Fails = call;
    for (const auto& [error, text] :
         {std::pair{EIO, "Error writing the file " + target.string() + "."},
          {ENOSPC, "The disk is full. The file " + target.string() + " was not written."}}) {
      calls.Error = error;
      EXPECT_EQ(Failure([&] { WriteWhole(TWavFormat::Float32, {0, 0}); }), text) << call;
      ExpectOldAlone();
    }
  }
  calls.Fails = "write";
  calls.Error = EIO;
  const InGerman german;
  EXPECT_EQ(Failure([&] {
              WriteWhole(TWavFormat::Float32, {0, 0});
            }),
            "Fehler beim Schreiben der Datei " + target.string() + ".");
}

TEST_F(WavFile, DoesNotWriteOnAfterAFailure) {
  TWavFile file(target.string(), TWavFormat::Bits16, calls);
  calls.Room = 0;
  EXPECT_NE(Failure([&] { file.Write(std::vector<float>(200000, 0.5F)); }), "done");
  calls.Room = SIZE_MAX;
  EXPECT_NE(Failure([&] { file.Finish(); }), "done");
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(WavFile, GoesOnAfterShortAndInterruptedWrites) {
  calls.Piece = 1000;
  calls.Interrupts = 5;
  WriteWhole(TWavFormat::Bits16, std::vector<float>(50000, 0.5F));
  EXPECT_EQ(Content(target).size(), 44U + 100000);
}

TEST_F(WavFile, RefusesMoreThanALengthOf32BitsCanTell) {
  EXPECT_EQ(TWavFile::MostFrames(TWavFormat::Bits16), (0xFFFFFFFELL - 36) / 4);
  EXPECT_EQ(TWavFile::MostFrames(TWavFormat::Float32), (0xFFFFFFFELL - 36) / 8);
  // Pages that nobody touches cost nothing.
  constexpr std::size_t size = std::size_t{1} << 32;
  void* const pages =
      ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  ASSERT_NE(pages, MAP_FAILED);
  const std::span<const float> hours(static_cast<const float*>(pages), size / sizeof(float));
  const auto told = [&] {
    TWavFile file(target.string(), TWavFormat::Float32, calls);
    return Failure([&] { file.Write(hours); });
  };
  EXPECT_EQ(told(), "The song is too long for a WAV file.");
  EXPECT_THAT(Names(), IsEmpty());
  {
    const InGerman german;
    EXPECT_EQ(told(), "Der Song ist zu lang für eine WAV-Datei.");
  }
  ::munmap(pages, size);
}

TEST_F(WavFile, HasRoomForLongNames) {
  std::string name;
  while (name.size() < 240) name += "ü";
  target = folder / (name + ".wav");
  WriteWhole(TWavFormat::Bits16, {0, 0});
  EXPECT_EQ(Content(target).size(), 48U);
}

}  // namespace
}  // namespace Sonarello
