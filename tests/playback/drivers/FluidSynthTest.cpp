#include "playback/drivers/FluidSynthInstrument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <thread>

#include "helpers/InGerman.h"
#include "playback/AudioDevice.h"
#include "playback/HostedAudio.h"
#include "playback/VSTInstruments.h"

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// Counts what the synthesizer's library, which is written in C, asks of the heap.
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
}
namespace {
thread_local long heapCalls = 0;
}
extern "C" void* malloc(std::size_t size) {
  ++heapCalls;
  return __libc_malloc(size);
}
extern "C" void* calloc(std::size_t count, std::size_t size) {
  ++heapCalls;
  return __libc_calloc(count, size);
}
extern "C" void* realloc(void* memory, std::size_t size) {
  ++heapCalls;
  return __libc_realloc(memory, size);
}
#endif

namespace Sonarello {
namespace {

namespace fs = std::filesystem;
using testing::Each;
using testing::HasSubstr;
using Sound = std::vector<float>;
using Bytes = std::vector<std::uint8_t>;

constexpr int Second = 1000;  // ms

const Bytes GMOn{0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7};
const Bytes GM2On{0xF0, 0x7E, 0x7F, 0x09, 0x03, 0xF7};
const Bytes GSReset{0xF0, 0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x7F, 0x00, 0x41, 0xF7};
const Bytes XGOn{0xF0, 0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00, 0xF7};
const Bytes MasterVolumeOff{0xF0, 0x7F, 0x7F, 0x04, 0x01, 0x00, 0x00, 0xF7};
const Bytes MasterVolumeHalf{0xF0, 0x7F, 0x7F, 0x04, 0x01, 0x00, 0x40, 0xF7};

float Peak(const Sound& sound) {
  float peak = 0;
  for (const float sample : sound) peak = std::max(peak, std::abs(sample));
  return peak;
}

class FluidSynth : public testing::Test {
 protected:
  void SetUp() override { synth = FluidSynthInstrument::Load(); }

  /// The next milliseconds, block by block as a song asks for them.
  static Sound Render(
      IHostedInstrument& instrument, int milliseconds,
      const std::function<void(int)>& before = [](int) {}) {
    Sound sound;
    std::array<float, 90> block{};
    for (int t = 0; t < milliseconds; ++t) {
      before(t);
      const auto part =
          std::span(block).first(static_cast<std::size_t>(BytesOfMillisecond(t)) / sizeof(float));
      instrument.Render(part);
      sound.insert(sound.end(), part.begin(), part.end());
    }
    return sound;
  }
  Sound Render(int milliseconds) { return Render(*synth, milliseconds); }

  /// A song that uses much of what there is: all channels, both effects, changes of sound.
  static Sound Song(IHostedInstrument& s, int milliseconds) {
    return Render(s, milliseconds, [&](int t) {
      const auto random = static_cast<std::uint32_t>(t + 1) * 2654435761U;
      for (std::uint8_t c = 0; c < 16; ++c) {
        if (t == 0) {
          s.SendMidiData(0xC0 | c, c * 7, 0);
          s.SendMidiData(0xB0 | c, 91, 100);
          s.SendMidiData(0xB0 | c, 93, 90);
        }
        const auto key = static_cast<std::uint8_t>(36 + (random >> (c + 8)) % 48);
        if (t % 100 == c) s.SendMidiData(0x90 | c, key, 90);
        if (t % 100 == 70) s.SendMidiData(0xB0 | c, 123, 0);
        if (t % 50 == 20) s.SendMidiData(0xE0 | c, 0, static_cast<std::uint8_t>(random >> 26));
      }
      if (t == 500) s.SendSysex(XGOn);
    });
  }
  /// What a note sounds like with a sound, from the start of the synthesizer.
  Sound Note(std::uint8_t channel, int msb, int lsb, int program, std::uint8_t key,
             const std::vector<Bytes>& first = {}) {
    synth->Reset();
    for (const Bytes& message : first) synth->SendSysex(message);
    Select(channel, msb, lsb, program);
    synth->SendMidiData(0x90 | channel, key, 100);
    return Render(200);
  }
  void Select(std::uint8_t channel, int msb, int lsb, int program) {
    synth->SendMidiData(0xB0 | channel, 0, static_cast<std::uint8_t>(msb));
    synth->SendMidiData(0xB0 | channel, 32, static_cast<std::uint8_t>(lsb));
    synth->SendMidiData(0xC0 | channel, static_cast<std::uint8_t>(program), 0);
  }

  std::unique_ptr<FluidSynthInstrument> synth;
};

TEST_F(FluidSynth, IsAnInstrumentLikeAnyOther) {
  EXPECT_EQ(synth->Name(), "Sonarello SoundFont");
  EXPECT_EQ(synth->UniqueID(), 0x536F5346);
  EXPECT_EQ(synth->InitDelay(), 0);
  EXPECT_TRUE(fs::exists(synth->BankFile()));
}

TEST_F(FluidSynth, IsSilentUntilANoteComes) {
  EXPECT_LT(Peak(Render(100)), 1e-6F);
  synth->SendMidiData(0x90, 60, 100);
  EXPECT_GT(Peak(Render(100)), 0.01F);
}

TEST_F(FluidSynth, SoundsOnEveryChannel) {
  for (std::uint8_t c = 0; c < 16; ++c) EXPECT_GT(Peak(Note(c, 0, 0, 0, 40)), 0.005F) << int{c};
}

TEST_F(FluidSynth, SoundsWithinABlockOfTheMessage) {
  Render(10);
  synth->SendMidiData(0x99, 38, 127);
  EXPECT_GT(Peak(Render(4)), 1e-4F);
}

TEST_F(FluidSynth, EndsANoteByVelocity0AndByNoteOff) {
  for (const std::uint8_t status : {std::uint8_t{0x90}, std::uint8_t{0x80}}) {
    synth->Reset();
    synth->SendMidiData(0xC0, 16, 0);  // an organ, which sounds for as long as the key is down
    synth->SendMidiData(0x90, 60, 100);
    const float held = Peak(Render(500));
    synth->SendMidiData(status, 60, 0);
    Render(3 * Second);
    EXPECT_LT(Peak(Render(100)), held / 100);
  }
}

TEST_F(FluidSynth, MakesTheSameBytesOfTheSameMessages) {
  const auto other = FluidSynthInstrument::Load();
  const Sound first = Song(*synth, 1500), second = Song(*other, 1500);
  EXPECT_GT(Peak(first), 0.05F);
  EXPECT_EQ(first.size(), 1500U * 441 / 10 * 2);
  EXPECT_TRUE(first == second);
}

TEST_F(FluidSynth, MakesTheSameBytesAgainAfterAReset) {
  const Sound first = Song(*synth, 1000);
  synth->SendSysex(MasterVolumeHalf);
  synth->SendMidiData(0x90, 60, 100);
  Render(33);
  synth->Reset();
  EXPECT_TRUE(Song(*synth, 1000) == first);
}

TEST_F(FluidSynth, SoundsTheSameInBlocksOfAnyLength) {
  Sound whole(2 * 4410);
  synth->SendMidiData(0x90, 60, 100);
  synth->Render(whole);
  synth->Reset();
  synth->SendMidiData(0x90, 60, 100);
  EXPECT_TRUE(Render(100) == whole);
}

TEST_F(FluidSynth, IsSilentAtOnceWhenReset) {
  Song(*synth, 300);
  synth->SendMidiData(0x90, 60, 100);
  synth->Reset();
  EXPECT_EQ(synth->ActiveVoices(), 0);
  EXPECT_LT(Peak(Render(100)), 1e-6F);
}

TEST_F(FluidSynth, GoesOnWithItsSoundsWhenTheBankHasGone) {
  const fs::path copy = fs::temp_directory_path() / ("bank" + std::to_string(::getpid()) + ".sf2");
  fs::copy_file(synth->BankFile(), copy, fs::copy_options::overwrite_existing);
  synth = FluidSynthInstrument::Load(copy.string());
  fs::remove(copy);
  EXPECT_GT(Peak(Song(*synth, 300)), 0.01F);
  synth->Reset();
  EXPECT_LT(Peak(Render(100)), 1e-5F);
  EXPECT_GT(Peak(Song(*synth, 300)), 0.01F);
}

TEST_F(FluidSynth, TakesResetsWithinASong) {
  for (const Bytes& reset : {GMOn, GM2On, GSReset, XGOn}) {
    synth->SendMidiData(0xC3, 16, 0);
    synth->SendMidiData(0xB3, 7, 20);
    synth->SendMidiData(0x93, 60, 100);
    Render(100);
    EXPECT_GT(synth->ActiveVoices(), 0);
    synth->SendSysex(reset);
    Render(20);
    EXPECT_EQ(synth->ActiveVoices(), 0);
    synth->SendMidiData(0x93, 60, 100);
    const float loud = Peak(Render(200));
    synth->SendMidiData(0xC3, 0, 0);
    synth->SendMidiData(0xB3, 7, 100);
    synth->SendMidiData(0xB3, 120, 0);
    Render(3 * Second);
    synth->SendMidiData(0x93, 60, 100);
    EXPECT_NEAR(Peak(Render(200)), loud, loud / 10) << "a piano at full volume, as after the reset";
    synth->SendMidiData(0xB3, 120, 0);
    Render(3 * Second);
  }
}

TEST_F(FluidSynth, HasAllItsVoicesAfterManyResets) {
  for (int n = 0; n < 300; ++n) {
    synth->SendMidiData(0x90, 60, 100);
    Render(2);
    synth->SendSysex(GMOn);
  }
  Render(3 * Second);
  synth->SendMidiData(0x90, 60, 100);
  EXPECT_GT(Peak(Render(50)), 0.01F);
  EXPECT_LE(synth->ActiveVoices(), 4);
}

TEST_F(FluidSynth, PlaysTheDrumsOfXGAndGM2OnAnyChannel) {
  const Sound drums = Note(9, 0, 0, 0, 38);
  EXPECT_TRUE(Note(3, 127, 0, 0, 38) == drums);
  EXPECT_TRUE(Note(3, 120, 0, 0, 38) == drums);
  EXPECT_TRUE(Note(3, 127, 0, 0, 38, {XGOn}) == drums);
  EXPECT_TRUE(Note(3, 120, 0, 0, 38, {GM2On}) == drums);
  EXPECT_FALSE(Note(3, 127, 0, 0, 38, {GSReset}) == drums) << "a bank of sounds in GS";
  EXPECT_FALSE(Note(3, 0, 0, 0, 38) == drums);
}

TEST_F(FluidSynth, PlaysDrumsOnPartsThatSysexMakesDrumParts) {
  const Sound drums = Note(9, 0, 0, 0, 38);
  const Bytes gsRhythm{0xF0, 0x41, 0x10, 0x42, 0x12, 0x40, 0x14, 0x15, 0x01, 0x16, 0xF7};
  const Bytes xgDrums{0xF0, 0x43, 0x10, 0x4C, 0x08, 0x03, 0x07, 0x01, 0xF7};
  EXPECT_TRUE(Note(3, 0, 0, 0, 38, {GSReset, gsRhythm}) == drums);
  synth->Reset();
  synth->SendSysex(XGOn);
  synth->SendSysex(xgDrums);
  synth->SendMidiData(0x93, 38, 100);
  EXPECT_TRUE(Render(200) == drums);
}

TEST_F(FluidSynth, FallsBackToTheCapitalOfAVariation) {
  const Sound strings = Note(0, 0, 0, 48, 60);
  EXPECT_TRUE(Note(0, 121, 5, 48, 60) == strings);
  EXPECT_TRUE(Note(0, 8, 0, 48, 60, {GSReset}) == strings);
  EXPECT_TRUE(Note(0, 0, 40, 48, 60, {XGOn}) == strings);
  EXPECT_FALSE(Note(0, 0, 0, 56, 60) == strings);
}

TEST_F(FluidSynth, KeepsModeMessagesToTheirChannel) {
  for (const int mode : {124, 125, 126, 127}) {
    synth->Reset();
    for (const int value : {0, 1, 4})
      synth->SendMidiData(0xB0, static_cast<std::uint8_t>(mode), static_cast<std::uint8_t>(value));
    for (std::uint8_t c = 0; c < 16; ++c) synth->SendMidiData(0xB0 | c, 91, 0);
    for (std::uint8_t c = 0; c < 16; ++c) {
      Render(60);
      EXPECT_LT(Peak(Render(5)), 0.003F) << "what sounded has ended";
      synth->SendMidiData(0x90 | c, 45, 100);
      synth->SendMidiData(0x90 | c, 49, 100);
      EXPECT_GT(Peak(Render(30)), 0.005F) << mode << " " << int{c};
      synth->SendMidiData(0xB0 | c, 120, 0);
    }
  }
}

TEST_F(FluidSynth, FollowsTheMasterVolume) {
  const float full = Peak(Note(0, 0, 0, 16, 60));
  EXPECT_NEAR(Peak(Note(0, 0, 0, 16, 60, {MasterVolumeHalf})), full / 4, full / 100);
  synth->SendSysex(MasterVolumeOff);
  Render(5);
  EXPECT_EQ(Peak(Render(50)), 0);
  synth->SendSysex(GMOn);
  synth->SendMidiData(0x90, 60, 100);
  EXPECT_GT(Peak(Render(50)), 0.01F) << "back with a reset";
}

TEST_F(FluidSynth, PassesOverWhatItDoesNotKnow) {
  const Sound expected = Note(0, 0, 0, 0, 60);
  synth->Reset();
  for (const Bytes& message :
       {Bytes{}, Bytes{0xF0}, Bytes{0xF0, 0xF7}, Bytes{0xF7, 1, 2}, Bytes{0x90, 60, 100},
        Bytes{0xF0, 0x7E, 0x7F, 0x08, 0xF7}, Bytes(70000, 0xF0)})
    synth->SendSysex(message);
  synth->SendMidiData(0xF8, 0, 0);
  synth->SendMidiData(0xFF, 0, 0);
  synth->SendMidiData(0x45, 60, 100);
  Select(0, 0, 0, 0);
  synth->SendMidiData(0x90, 60, 100);
  EXPECT_TRUE(Render(200) == expected);
}

TEST_F(FluidSynth, StandsDataBytesThatAreNone) {
  for (int status = 0x80; status < 0xF0; ++status)
    synth->SendMidiData(static_cast<std::uint8_t>(status), 0xFF, 0xFF);
  Render(50);
}

TEST_F(FluidSynth, TakesItsStateFromAChunk) {
  Select(2, 0, 0, 48);
  Select(3, 127, 0, 16);
  synth->SetGain(0.5F);
  const Bytes chunk = synth->GetChunk();
  const auto play = [](IHostedInstrument& s) {
    s.SendMidiData(0x92, 60, 100);
    s.SendMidiData(0x93, 38, 100);
    return Render(s, 200);
  };
  const auto other = FluidSynthInstrument::Load();
  EXPECT_TRUE(other->SetChunk(chunk));
  EXPECT_EQ(other->GetChunk(), chunk);
  EXPECT_EQ(other->Gain(), 0.5F);
  EXPECT_TRUE(play(*other) == play(*synth));
}

TEST_F(FluidSynth, RefusesAForeignChunk) {
  Select(2, 0, 0, 48);
  const Bytes chunk = synth->GetChunk();
  for (const Bytes& foreign : {Bytes{}, Bytes(500, 0), Bytes(chunk.begin(), chunk.begin() + 70)})
    EXPECT_FALSE(synth->SetChunk(foreign));
  for (const std::size_t at : {0U, 7U, 8U, 12U}) {
    Bytes damaged = chunk;
    damaged[at] = 0xFF;
    EXPECT_FALSE(synth->SetChunk(damaged)) << at;
  }
  EXPECT_EQ(synth->GetChunk(), chunk) << "nothing has changed";
}

TEST_F(FluidSynth, KeepsItsBankWhenThatOfAChunkIsMissing) {
  Select(2, 0, 0, 48);
  Bytes chunk = synth->GetChunk();
  const std::string bank = synth->BankFile();
  chunk.back() = 'x';
  const auto other = FluidSynthInstrument::Load();
  EXPECT_TRUE(other->SetChunk(chunk));
  EXPECT_EQ(other->BankFile(), bank);
  EXPECT_EQ(other->GetChunk(), synth->GetChunk());
}

std::string FailureOf(const std::string& file) {
  try {
    const auto synth = FluidSynthInstrument::Load(file);
  } catch (const TAudioError& error) {
    return error.what();
  }
  return "loaded";
}

TEST(FluidSynthBank, SaysWhatIsWrongWithAFile) {
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  EXPECT_EQ(FailureOf("/no/such.sf2"), "The SoundFont file /no/such.sf2 does not exist.");
  EXPECT_EQ(FailureOf("/tmp"), "The file /tmp is no readable SoundFont bank.");
  const fs::path file = fs::temp_directory_path() / ("broken" + std::to_string(::getpid()) + ".sf2");
  std::ifstream bank("/usr/share/sounds/sf2/TimGM6mb.sf2", std::ios::binary);
  const std::string whole{std::istreambuf_iterator<char>(bank), {}};
  for (const std::size_t size :
       {0UL, 3UL, 12UL, 100UL, 20000UL, whole.size() / 2, whole.size() - 1000}) {
    std::ofstream(file, std::ios::binary) << whole.substr(0, size);
    EXPECT_THAT(FailureOf(file.string()), HasSubstr("is no readable SoundFont bank")) << size;
  }
  fs::remove(file);
  {
    const InGerman german;
    EXPECT_EQ(FailureOf("/no/such.sf2"), "Die SoundFont-Datei /no/such.sf2 ist nicht vorhanden.");
    EXPECT_EQ(FailureOf("/tmp"), "Die Datei /tmp ist keine lesbare SoundFont-Bank.");
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(FluidSynth, TakesMessagesOfSeveralThreadsWhileItRenders) {
  std::atomic<bool> ending{false};
  std::vector<std::thread> senders;
  for (std::uint8_t c = 0; c < 3; ++c)
    senders.emplace_back([&, c] {
      for (int n = 0; !ending; ++n) {
        synth->SendMidiData(0x90 | c, static_cast<std::uint8_t>(40 + n % 40),
                            static_cast<std::uint8_t>(n % 100));
        if (n % 50 == 0) synth->SendSysex(MasterVolumeHalf);
        if (n % 20 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
      }
    });
  std::thread renderer([&] { Render(*synth, 300); });
  for (int n = 0; n < 5; ++n) {
    synth->SetGain(0.1F + 0.01F * static_cast<float>(n));
    static_cast<void>(synth->GetChunk());
    if (n == 3) synth->Reset();
  }
  renderer.join();
  ending = true;
  for (std::thread& sender : senders) sender.join();
}

TEST_F(FluidSynth, KeepsItsSoundsThroughAFloodThatNobodyHears) {
  Select(0, 0, 0, 56);
  for (int n = 0; n < 200000; ++n) {
    synth->SendMidiData(0x90, static_cast<std::uint8_t>(n % 128), 100);
    synth->SendMidiData(0x80, static_cast<std::uint8_t>(n % 128), 0);
  }
  EXPECT_EQ(synth->GetChunk()[14], 56);
  Render(2 * Second);
  synth->SendMidiData(0xB0, 120, 0);
  Render(Second);
  synth->SendMidiData(0x90, 60, 100);
  EXPECT_GT(Peak(Render(100)), 0.01F);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(FluidSynth, AllocatesNothingWhileItPlays) {
  std::array<float, 90> block{};
  const auto play = [&](int from, int to) {
    for (int t = from; t < to; ++t) {
      for (std::uint8_t c = 0; c < 16; ++c) {
        if (t % 50 == c)
          synth->SendMidiData(0x90 | c, static_cast<std::uint8_t>(40 + t / 50 % 40), 100);
        if (t % 100 == 60) synth->SendMidiData(0xC0 | c, static_cast<std::uint8_t>(t / 100), 0);
        if (t % 100 == 70) synth->SendMidiData(0xB0 | c, 123, 0);
        if (t % 100 == 80) synth->SendMidiData(0xB0 | c, 1, 50);
      }
      if (t % 500 == 499) synth->SendSysex(t % 1000 == 499 ? GSReset : XGOn);
      synth->Render(
          std::span(block).first(static_cast<std::size_t>(BytesOfMillisecond(t)) / sizeof(float)));
    }
  };
  const long before = heapCalls;
  play(0, 2000);
  EXPECT_EQ(heapCalls - before, 0);
  synth->Reset();
  EXPECT_GT(heapCalls - before, 0) << "the counter counts";
}
#endif

TEST_F(FluidSynth, SoundsThroughTheHostAsItSoundsByItself) {
  const Sound alone = Song(*synth, 300);
  TVSTInstruments host;
  host.LoadInstrument(0, FluidSynthInstrument::Load());
  EXPECT_EQ(host.VSTiArray()[0].Name, "Sonarello SoundFont (VSTi)");
  const std::uint32_t handle = host.VSTiArray()[0].Handle;
  /// The host as an instrument.
  class Hosted : public IHostedInstrument {
   public:
    Hosted(TVSTInstruments& h, std::uint32_t number) : host(h), handle(number) {}
    std::string Name() const override { return ""; }
    std::int32_t UniqueID() const override { return 0; }
    int InitDelay() const override { return 0; }
    void SendMidiData(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) override {
      host.SendMidiData(handle, status, data1, data2);
    }
    void SendSysex(std::span<const std::uint8_t> message) override { host.SendSysex(handle, message); }
    void Render(std::span<float> stereo) override { host.Graph().Render(stereo); }
    void Reset() override { host.ResetAll(); }
    Bytes GetChunk() const override { return {}; }
    bool SetChunk(std::span<const std::uint8_t>) override { return false; }

   private:
    TVSTInstruments& host;
    std::uint32_t handle;
  } hosted(host, handle);
  EXPECT_TRUE(Song(hosted, 300) == alone);
}

}  // namespace
}  // namespace Sonarello
