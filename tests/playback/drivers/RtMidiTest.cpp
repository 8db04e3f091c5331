// Real ports, end to end, over a JACK server of the tests' own.
#include "playback/drivers/RtMidiDriver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>

#include "playback/MidiIn.h"
#include "playback/MidiOut.h"
#include "playback/drivers/JackPeer.h"
#include "playback/drivers/JackServer.h"

namespace Sonarello {
namespace {

using namespace std::chrono_literals;
using TBytes = std::vector<std::uint8_t>;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// F0, then `payload` data bytes, then F7.
TBytes Sysex(std::size_t payload) {
  TBytes bytes{0xF0};
  for (std::size_t i = 0; i < payload; ++i) {
    bytes.push_back(static_cast<std::uint8_t>((i * 31 + i / 127) % 128));
  }
  bytes.push_back(0xF7);
  return bytes;
}

/// The n-th of 2^18 different controller messages.
TBytes Numbered(std::uint32_t n) {
  return {static_cast<std::uint8_t>(0xB0 | (n >> 14 & 15)), static_cast<std::uint8_t>(n >> 7 & 127),
          static_cast<std::uint8_t>(n & 127)};
}

int ErrorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const TDriverError& error) {
    return error.Number;
  }
  return -1;
}

struct RtMidiPorts : testing::Test {
  static void SetUpTestSuite() { server = std::make_unique<JackServer>(); }
  static void TearDownTestSuite() { server.reset(); }

  static RtMidiDriver Driver() { return RtMidiDriver("Sonarello", RtMidiDriver::TSystem::Jack); }
  static std::unique_ptr<TMidiOutput> OutputTo(RtMidiDriver& driver, const std::string& name) {
    auto output = std::make_unique<TMidiOutput>(driver);
    output->SetProductName(name);
    output->Open();
    return output;
  }
  static std::unique_ptr<TMidiInput> InputFrom(RtMidiDriver& driver, const std::string& name) {
    auto input = std::make_unique<TMidiInput>(driver);
    input->SetProductName(name);
    input->OpenAndStart();
    return input;
  }
  static int IndexOf(const std::vector<std::string>& names, const std::string& name) {
    return static_cast<int>(std::find(names.begin(), names.end(), name) - names.begin());
  }

  static std::unique_ptr<JackServer> server;
};

std::unique_ptr<JackServer> RtMidiPorts::server;

TEST_F(RtMidiPorts, ListTheOthersByTheirDirection) {
  const JackPeer peer("Keys");
  RtMidiDriver driver = Driver();
  EXPECT_EQ(driver.ApiName(), "JACK");
  EXPECT_THAT(driver.OutputNames(), Contains("Keys:in"));
  EXPECT_THAT(driver.OutputNames(), Not(Contains("Keys:out")));
  EXPECT_THAT(driver.InputNames(), Contains("Keys:out"));
  EXPECT_THAT(driver.InputNames(), Not(Contains("Keys:in")));
}

TEST_F(RtMidiPorts, DoNotListOurOwn) {
  const JackPeer peer("Keys");
  RtMidiDriver driver = Driver();
  const auto input = InputFrom(driver, "Keys:out");
  const auto output = OutputTo(driver, "Keys:in");
  EXPECT_THAT(driver.OutputNames(), Not(Contains(testing::StartsWith("Sonarello"))));
  EXPECT_THAT(driver.InputNames(), Not(Contains(testing::StartsWith("Sonarello"))));
}

TEST_F(RtMidiPorts, AppearWhenNamesAreAskedAgain) {
  RtMidiDriver driver = Driver();
  EXPECT_THAT(driver.OutputNames(), Not(Contains("Late:in")));
  {
    const JackPeer peer("Late");
    EXPECT_THAT(driver.OutputNames(), Contains("Late:in"));
  }
  EXPECT_THAT(driver.OutputNames(), Not(Contains("Late:in")));
}

TEST_F(RtMidiPorts, OfANumberThatThereIsNotDoNotOpen) {
  const JackPeer peer("Keys");
  RtMidiDriver driver = Driver();
  EXPECT_THAT(driver.OutputNames(), Not(IsEmpty()));
  EXPECT_THAT(driver.InputNames(), Not(IsEmpty()));
  for (const int number : {-1, 99, 1'000'000}) {
    EXPECT_EQ(ErrorOf([&] { (void)driver.OpenOutput(number); }), BadDeviceId);
    EXPECT_EQ(ErrorOf([&] { (void)driver.OpenInput(number, [](auto, auto) {}); }), BadDeviceId);
  }
}

TEST_F(RtMidiPorts, ThatAreGoneSinceTheyWereListedDoNotOpen) {
  RtMidiDriver driver = Driver();
  int output = 0;
  int input = 0;
  {
    const JackPeer peer("Brief");
    output = IndexOf(driver.OutputNames(), "Brief:in");
    input = IndexOf(driver.InputNames(), "Brief:out");
  }
  EXPECT_EQ(ErrorOf([&] { (void)driver.OpenOutput(output); }), BadDeviceId);
  EXPECT_EQ(ErrorOf([&] { (void)driver.OpenInput(input, [](auto, auto) {}); }), BadDeviceId);
}

TEST_F(RtMidiPorts, OpenWhatWasListedThoughNumbersHaveMovedSince) {
  RtMidiDriver driver = Driver();
  auto first = std::make_unique<JackPeer>("Aaa");
  JackPeer second("Bbb");
  const int number = IndexOf(driver.OutputNames(), "Bbb:in");
  first.reset();
  const auto output = driver.OpenOutput(number);
  output->Send(TBytes{0x90, 1, 2});
  EXPECT_TRUE(second.WaitFor(1));
}

TEST_F(RtMidiPorts, LoseAndReorderNothingIn100000ShortMessagesSent) {
  constexpr std::uint32_t Count = 100'000;
  const JackPeer peer("Module");
  RtMidiDriver driver = Driver();
  const auto output = OutputTo(driver, "Module:in");
  for (std::uint32_t i = 0; i < Count; ++i) {
    const TBytes m = Numbered(i);
    output->PutShort(m[0], m[1], m[2]);
  }
  ASSERT_TRUE(peer.WaitFor(Count)) << peer.Count() << " came";
  const auto events = peer.Events();
  ASSERT_EQ(events.size(), Count);
  std::uint32_t wrong = 0;
  for (std::uint32_t i = 0; i < Count; ++i) {
    wrong += events[i] != Numbered(i) ? 1 : 0;
  }
  EXPECT_EQ(wrong, 0U);
}

TEST_F(RtMidiPorts, LoseAndReorderNothingIn100000ShortMessagesReceived) {
  constexpr std::uint32_t Count = 100'000;
  JackPeer peer("Keys");
  RtMidiDriver driver = Driver();
  const auto input = InputFrom(driver, "Keys:out");
  std::uint32_t wrong = 0;
  std::uint32_t came = 0;
  std::uint32_t sent = 0;
  input->FOnMIDIInput = [&](TMidiInput& port) {
    while (const auto event = port.GetMidiEvent()) {
      wrong += TBytes{event->MidiMessage, event->Data1, event->Data2} != Numbered(came++) ? 1 : 0;
    }
  };
  EXPECT_TRUE(JackPeer::Until(
      [&] {
        input->Pump();
        // The ring holds 1024 messages, and on a busy machine nobody takes any for a while.
        for (; sent < Count && sent < came + 800; ++sent) {
          peer.Send(Numbered(sent));
        }
        return came >= Count;
      },
      30'000))
      << came << " came";
  EXPECT_EQ(wrong, 0U);
  EXPECT_EQ(input->OverflowCount(), 0U);
}

TEST_F(RtMidiPorts, SendSysexOfAnyLengthUnchanged) {
  JackPeer peer("Module");
  RtMidiDriver driver = Driver();
  const auto output = OutputTo(driver, "Module:in");
  for (const std::size_t payload : {0, 1, 2, 3, 10, 100, 1000, 4093, 4094, 4095, 8190, 15'997, 15'998,
                                    15'999, 16'384, 32'000, 65'534, 65'536, 200'000}) {
    peer.Forget();
    const TBytes sysex = Sysex(payload);
    output->PutLong(sysex);
    EXPECT_TRUE(peer.WaitForBytes(sysex.size())) << payload;
    EXPECT_EQ(peer.Row(), sysex) << payload;
  }
}

TEST_F(RtMidiPorts, SendASysexThatFitsAsOneEvent) {
  const JackPeer peer("Module");
  RtMidiDriver driver = Driver();
  const auto output = OutputTo(driver, "Module:in");
  output->PutLong(Sysex(15'998));
  ASSERT_TRUE(peer.WaitFor(1));
  EXPECT_THAT(peer.Events(), ElementsAre(Sysex(15'998)));
}

TEST_F(RtMidiPorts, KeepTheOrderOfNotesAndSysex) {
  const JackPeer peer("Module");
  RtMidiDriver driver = Driver();
  const auto output = OutputTo(driver, "Module:in");
  TBytes expected;
  for (std::uint32_t i = 0; i < 60; ++i) {
    const TBytes note = Numbered(i);
    const TBytes sysex = Sysex(i * 700);
    output->PutShort(note[0], note[1], note[2]);
    output->PutLong(sysex);
    expected.insert(expected.end(), note.begin(), note.end());
    expected.insert(expected.end(), sysex.begin(), sysex.end());
    if (expected.size() > 900'000) {
      break;
    }
  }
  ASSERT_TRUE(peer.WaitForBytes(std::min<std::size_t>(expected.size(), 1'000'000)));
  EXPECT_TRUE(std::ranges::equal(peer.Row(), std::span(expected).first(peer.Bytes())));
}

TEST_F(RtMidiPorts, ReceiveSysexInPiecesOf4096Bytes) {
  JackPeer peer("Keys");
  RtMidiDriver driver = Driver();
  const auto input = InputFrom(driver, "Keys:out");
  for (const std::size_t payload : {1U, 4094U, 4095U, 15'000U, 65'534U}) {
    const TBytes sysex = Sysex(payload);
    for (std::size_t at = 0; at < sysex.size(); at += 8000) {
      const auto begin = sysex.begin() + static_cast<std::ptrdiff_t>(at);
      const auto length = static_cast<std::ptrdiff_t>(std::min<std::size_t>(8000, sysex.size() - at));
      peer.Send({begin, begin + length});
    }
    TBytes joined;
    EXPECT_TRUE(JackPeer::Until(
        [&] {
          while (const auto event = input->GetMidiEvent()) {
            EXPECT_EQ(event->MidiMessage, 240);
            EXPECT_LE(event->SysexLength(), 4096);
            joined.insert(joined.end(), event->Sysex.begin(), event->Sysex.end());
          }
          return joined.size() >= sysex.size();
        },
        10'000));
    EXPECT_EQ(joined, sysex) << payload;
  }
  EXPECT_EQ(input->OverflowCount(), 0U);
}

TEST_F(RtMidiPorts, TakeRealTimeOutOfASysexThatComesIn) {
  JackPeer peer("Keys");
  RtMidiDriver driver = Driver();
  TMidiInput input(driver);
  input.SetProductName("Keys:out");
  input.FMsgFilter = {};
  input.OpenAndStart();
  peer.Send({0xF0, 1, 2});
  peer.Send({0xF8});
  peer.Send({3, 0xF7});
  ASSERT_TRUE(JackPeer::Until([&] { return input.MessageCount() == 2; }, 5000));
  EXPECT_EQ(input.GetMidiEvent()->MidiMessage, 0xF8);
  EXPECT_EQ(input.GetMidiEvent()->Sysex, (TBytes{0xF0, 1, 2, 3, 0xF7}));
}

TEST_F(RtMidiPorts, ReceiveClockAndActiveSensingIfNotFiltered) {
  JackPeer peer("Keys");
  RtMidiDriver driver = Driver();
  TMidiInput input(driver);
  input.SetProductName("Keys:out");
  input.FMsgFilter = {};
  input.OpenAndStart();
  peer.Send({0xF8});
  peer.Send({0xFE});
  peer.Send({0xF1, 5});
  ASSERT_TRUE(JackPeer::Until([&] { return input.MessageCount() == 3; }, 5000));
}

TEST_F(RtMidiPorts, StampWhatComesInWithItsTime) {
  JackPeer peer("Keys");
  RtMidiDriver driver = Driver();
  const auto input = InputFrom(driver, "Keys:out");
  peer.Send({0x90, 1, 1});
  ASSERT_TRUE(JackPeer::Until([&] { return input->MessageCount() == 1; }, 5000));
  std::this_thread::sleep_for(100ms);
  peer.Send({0x90, 2, 1});
  ASSERT_TRUE(JackPeer::Until([&] { return input->MessageCount() == 2; }, 5000));
  const auto first = input->GetMidiEvent()->Time;
  const auto second = input->GetMidiEvent()->Time;
  EXPECT_GE(second - first, 95U);
  EXPECT_LT(second - first, 5000U);
}

TEST_F(RtMidiPorts, RefuseBytesThatAreNoMidiAndSendNothingOfThem) {
  const JackPeer peer("Module");
  RtMidiDriver driver = Driver();
  const auto output = driver.OpenOutput(IndexOf(driver.OutputNames(), "Module:in"));
  EXPECT_EQ(ErrorOf([&] { output->Send({}); }), InvalidParameter);
  EXPECT_EQ(ErrorOf([&] { output->Send(TBytes{0x90, 60}); }), InvalidParameter);
  EXPECT_EQ(ErrorOf([&] { output->Send(TBytes{0x90, 60, 1, 0x90, 60, 0x80}); }), InvalidParameter);
  output->Send(TBytes{0x90, 60, 1});
  ASSERT_TRUE(peer.WaitFor(1));
  EXPECT_THAT(peer.Events(), ElementsAre(TBytes{0x90, 60, 1}));
}

TEST_F(RtMidiPorts, SendEachMessageOfARowByItself) {
  const JackPeer peer("Module");
  RtMidiDriver driver = Driver();
  const auto output = driver.OpenOutput(IndexOf(driver.OutputNames(), "Module:in"));
  output->Send(TBytes{0xF3, 1, 0xFA, 0x90, 60, 1});
  ASSERT_TRUE(peer.WaitFor(3));
  EXPECT_THAT(peer.Events(), ElementsAre(TBytes{0xF3, 1}, TBytes{0xFA}, TBytes{0x90, 60, 1}));
}

TEST_F(RtMidiPorts, TellThatTheDeviceWentWhileItPlayed) {
  auto peer = std::make_unique<JackPeer>("Module");
  RtMidiDriver driver = Driver();
  const auto output = OutputTo(driver, "Module:in");
  output->NoteOn(0, 60, 100);
  EXPECT_TRUE(peer->WaitFor(1));
  std::thread unplug([&] {
    std::this_thread::sleep_for(30ms);
    peer.reset();
  });
  std::string text;
  for (int i = 0; i < 5000 && text.empty(); ++i) {
    try {
      output->NoteOn(0, 60, 100);
      std::this_thread::sleep_for(1ms);
    } catch (const EMidiOutputError& error) {
      text = error.what();
    }
  }
  unplug.join();
  EXPECT_EQ(text, "(Short Msg) The specified device handle is invalid.");
  EXPECT_THROW(output->PutLong(Sysex(70'000)), EMidiOutputError);
  EXPECT_TRUE(output->Close());
  EXPECT_THROW(output->Open(), EMidiOutputError);
  const JackPeer again("Module");
  EXPECT_TRUE(output->Open());
  output->NoteOn(0, 61, 100);
  EXPECT_TRUE(again.WaitFor(1));
}

TEST_F(RtMidiPorts, TellThatTheServerDiedAndComeBackWithIt) {
  auto peer = std::make_unique<JackPeer>("Module");
  RtMidiDriver driver = Driver();
  const auto output = OutputTo(driver, "Module:in");
  const auto input = InputFrom(driver, "Module:out");
  output->NoteOn(0, 60, 100);
  EXPECT_TRUE(peer->WaitFor(1));
  server->Stop();
  const auto start = std::chrono::steady_clock::now();
  std::string text;
  for (int i = 0; i < 100'000 && text.empty(); ++i) {
    try {
      output->NoteOn(0, 60, 100);
    } catch (const EMidiOutputError& error) {
      text = error.what();
    }
  }
  EXPECT_EQ(text, "(Short Msg) The specified device handle is invalid.");
  EXPECT_LT(std::chrono::steady_clock::now() - start, 3s) << "nothing waits for a dead server";
  peer.reset();
  EXPECT_EQ(driver.ApiName(), "none");
  EXPECT_THAT(driver.OutputNames(), IsEmpty());
  // The ports are still open: whoever looks for a server need not close them first.
  server->Start();
  const JackPeer again("Module");
  EXPECT_THAT(driver.OutputNames(), Contains("Module:in"));
  EXPECT_EQ(driver.ApiName(), "JACK");
  EXPECT_THROW(output->NoteOn(0, 61, 100), EMidiOutputError);
  output->Close();
  input->Close();
  output->Open();
  output->NoteOn(0, 61, 100);
  EXPECT_TRUE(again.WaitFor(1));
}

TEST_F(RtMidiPorts, ServeTwoDevicesAtOnce) {
  const JackPeer one("One");
  const JackPeer two("Two");
  RtMidiDriver driver = Driver();
  const auto toOne = OutputTo(driver, "One:in");
  const auto toTwo = OutputTo(driver, "Two:in");
  for (std::uint8_t i = 0; i < 100; ++i) {
    toOne->NoteOn(1, i, 1);
    toTwo->NoteOn(2, i, 2);
  }
  ASSERT_TRUE(one.WaitFor(100));
  ASSERT_TRUE(two.WaitFor(100));
  for (std::uint8_t i = 0; i < 100; ++i) {
    EXPECT_EQ(one.Events()[i], (TBytes{0x91, i, 1}));
    EXPECT_EQ(two.Events()[i], (TBytes{0x92, i, 2}));
  }
}

TEST_F(RtMidiPorts, OfTwoProgramsReachTheSameDeviceEachInItsOrder) {
  const JackPeer peer("Module");
  RtMidiDriver ours = Driver();
  RtMidiDriver theirs("Other", RtMidiDriver::TSystem::Jack);
  const auto first = OutputTo(ours, "Module:in");
  const auto second = OutputTo(theirs, "Module:in");
  constexpr std::uint32_t Count = 2000;
  std::thread other([&] {
    for (std::uint32_t i = 0; i < Count; ++i) {
      second->NoteOn(1, static_cast<std::uint8_t>(i >> 7), static_cast<std::uint8_t>(i & 127));
    }
  });
  for (std::uint32_t i = 0; i < Count; ++i) {
    first->NoteOn(0, static_cast<std::uint8_t>(i >> 7), static_cast<std::uint8_t>(i & 127));
  }
  other.join();
  ASSERT_TRUE(peer.WaitFor(2 * Count));
  std::uint32_t next[2] = {0, 0};
  for (const TBytes& event : peer.Events()) {
    const std::uint32_t number = event[1] * 128U + event[2];
    EXPECT_EQ(number, next[event[0] & 1]++);
  }
}

TEST_F(RtMidiPorts, HearOneDeviceInTwoPrograms) {
  JackPeer peer("Keys");
  RtMidiDriver ours = Driver();
  RtMidiDriver theirs("Other", RtMidiDriver::TSystem::Jack);
  const auto first = InputFrom(ours, "Keys:out");
  const auto second = InputFrom(theirs, "Keys:out");
  peer.Send({0x90, 60, 1});
  EXPECT_TRUE(
      JackPeer::Until([&] { return first->MessageCount() == 1 && second->MessageCount() == 1; }, 5000));
}

TEST_F(RtMidiPorts, SendTheirLastMessagesBeforeTheyCloseAndOpenAgain) {
  const JackPeer peer("Module");
  RtMidiDriver driver = Driver();
  TMidiOutput output(driver);
  output.SetProductName("Module:in");
  constexpr int Times = 10;
  for (int i = 0; i < Times; ++i) {
    output.Open();
    for (std::uint8_t key = 0; key < 100; ++key) {
      output.NoteOff(0, key, 0);
    }
    output.Close();
  }
  EXPECT_TRUE(peer.WaitFor(Times * 100U, 2000)) << peer.Count();
}

TEST_F(RtMidiPorts, HearNothingMoreOnceTheyAreClosed) {
  JackPeer peer("Keys");
  RtMidiDriver driver = Driver();
  std::atomic<int> heard{0};
  auto input = driver.OpenInput(IndexOf(driver.InputNames(), "Keys:out"),
                                [&](std::uint32_t, std::span<const std::uint8_t>) { ++heard; });
  for (int i = 0; i < 10'000; ++i) {
    peer.Send({0x90, 60, 1});
  }
  EXPECT_TRUE(JackPeer::Until([&] { return heard > 0; }, 5000));
  input.reset();
  const int then = heard;
  EXPECT_TRUE(JackPeer::Until([&] { return peer.AllSent(); }, 5000));
  EXPECT_EQ(heard, then);
}

TEST_F(RtMidiPorts, TellThatAServerWhichStandsStillTakesNoMore) {
  const JackPeer peer("Module");
  RtMidiDriver driver = Driver();
  const auto output = OutputTo(driver, "Module:in");
  server->Signal(SIGSTOP);
  std::string text;
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 100'000 && text.empty(); ++i) {
    try {
      output->NoteOn(0, 60, 100);
    } catch (const EMidiOutputError& error) {
      text = error.what();
    }
  }
  EXPECT_EQ(text, "(Short Msg) The hardware is busy with other data.");
  EXPECT_LT(std::chrono::steady_clock::now() - start, 3s);
  const auto again = std::chrono::steady_clock::now();
  EXPECT_THROW(output->NoteOn(0, 60, 100), EMidiOutputError);
  EXPECT_LT(std::chrono::steady_clock::now() - again, 200ms) << "it waits once, not for each";
  server->Signal(SIGCONT);
  EXPECT_TRUE(JackPeer::Until(
      [&] {
        try {
          output->NoteOn(0, 61, 100);
          return true;
        } catch (const EMidiOutputError&) {
          return false;
        }
      },
      5000));
  EXPECT_TRUE(JackPeer::Until(
      [&] {
        return peer.Count() > 0 && peer.Events().back() == TBytes{0x90, 61, 100};
      },
      5000));
}

TEST_F(RtMidiPorts, PrintNothing) {
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  {
    auto peer = std::make_unique<JackPeer>("Module");
    RtMidiDriver driver = Driver();
    const auto output = OutputTo(driver, "Module:in");
    EXPECT_EQ(ErrorOf([&] { (void)driver.OpenOutput(99); }), BadDeviceId);
    peer.reset();
    EXPECT_TRUE(JackPeer::Until(
        [&] {
          try {
            output->NoteOn(0, 1, 1);
            return false;
          } catch (const EMidiOutputError&) {
            return true;
          }
        },
        5000));
    server->Stop();
    EXPECT_THAT(driver.OutputNames(), IsEmpty());
    const RtMidiDriver another = Driver();
    EXPECT_EQ(another.ApiName(), "none");
  }
  server->Start();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(RtMidiWithoutASystem, HasNoDevicesAndIsCalledNone) {
  setenv("JACK_NO_START_SERVER", "1", 1);
  setenv("JACK_DEFAULT_SERVER", "there is no such server", 1);
  testing::internal::CaptureStderr();
  RtMidiDriver driver("Sonarello", RtMidiDriver::TSystem::Jack);
  EXPECT_EQ(driver.ApiName(), "none");
  EXPECT_THAT(driver.InputNames(), IsEmpty());
  EXPECT_THAT(driver.OutputNames(), IsEmpty());
  EXPECT_EQ(ErrorOf([&] { (void)driver.OpenOutput(0); }), BadDeviceId);
  EXPECT_EQ(ErrorOf([&] { (void)driver.OpenInput(0, [](auto, auto) {}); }), BadDeviceId);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace Sonarello
