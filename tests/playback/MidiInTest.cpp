#include "playback/MidiIn.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <numeric>
#include <thread>

#include "helpers/Allocations.h"
#include "helpers/TestMidiDriver.h"

namespace Sonarello {
namespace {

using TBytes = std::vector<std::uint8_t>;

/// F0, then `payload` data bytes, then F7.
TBytes Sysex(std::size_t payload) {
  TBytes bytes(payload + 2);
  for (std::size_t i = 0; i < payload; ++i) {
    bytes[i + 1] = static_cast<std::uint8_t>(i % 127);
  }
  bytes.front() = 0xF0;
  bytes.back() = 0xF7;
  return bytes;
}

struct MidiIn : testing::Test {
  MidiIn() { driver.Inputs = {"Keys", "Pads", "Keys 2"}; }

  /// An open input of the first device, listening.
  std::unique_ptr<TMidiInput> Listening() {
    auto input = std::make_unique<TMidiInput>(driver);
    input->OpenAndStart();
    return input;
  }
  static std::string ErrorOf(const std::function<void()>& call) {
    try {
      call();
    } catch (const EMidiInputError& error) {
      return error.what();
    }
    return "no error";
  }
  static std::vector<TBytes> Pieces(TMidiInput& input) {
    std::vector<TBytes> pieces;
    while (const auto event = input.GetMidiEvent()) {
      EXPECT_EQ(event->MidiMessage, 240);
      EXPECT_EQ(event->Data1, 0);
      EXPECT_EQ(event->Data2, 0);
      EXPECT_EQ(event->SysexLength(), event->Sysex.size());
      pieces.push_back(event->Sysex);
    }
    return pieces;
  }

  TestMidiDriver driver;
};

TEST_F(MidiIn, IsMadeWithItsDefaults) {
  const TMidiInput input(driver);
  EXPECT_EQ(input.State(), MidiInputState::misClosed);
  EXPECT_EQ(input.DeviceID(), 0);
  EXPECT_EQ(input.ProductName(), "Keys");
  EXPECT_EQ(input.FCapacity, 1024);
  EXPECT_EQ(input.FSysexBufferCount, 16);
  EXPECT_EQ(input.FSysexBufferSize, 4096);
  EXPECT_TRUE(input.FMsgFilter.Has(TMidiMsg::msgActiveSensing));
  EXPECT_TRUE(input.FMsgFilter.Has(TMidiMsg::msgMidiTimeCode));
  EXPECT_FALSE(input.FSysexOnly);
  EXPECT_EQ(input.MessageCount(), 0);
}

TEST_F(MidiIn, HasNoDeviceWhereThereIsNone) {
  driver.Inputs.clear();
  TMidiInput input(driver);
  EXPECT_EQ(input.DeviceCount(), 0);
  EXPECT_EQ(input.DeviceID(), -1);
  EXPECT_EQ(ErrorOf([&] { input.Open(); }), "no such device");
  EXPECT_EQ(input.State(), MidiInputState::misClosed);
}

TEST_F(MidiIn, TakesAShortMessageApart) {
  const auto input = Listening();
  driver.Feed("Keys", 1234, {0x93, 60, 100});
  EXPECT_EQ(input->MessageCount(), 1);
  const auto event = input->GetMidiEvent();
  ASSERT_NE(event, nullptr);
  EXPECT_EQ(event->MidiMessage, 0x93);
  EXPECT_EQ(event->Data1, 60);
  EXPECT_EQ(event->Data2, 100);
  EXPECT_EQ(event->Time, 1234U);
  EXPECT_TRUE(event->Sysex.empty());
  EXPECT_EQ(event->SysexLength(), 0);
  EXPECT_EQ(input->GetMidiEvent(), nullptr);
}

TEST_F(MidiIn, LeavesMissingDataBytesZero) {
  const auto input = Listening();
  driver.Feed("Keys", 0, {0xC0, 5});
  driver.Feed("Keys", 0, {0xFA});
  const auto program = input->GetMidiEvent();
  EXPECT_EQ(program->Data1, 5);
  EXPECT_EQ(program->Data2, 0);
  EXPECT_EQ(input->GetMidiEvent()->MidiMessage, 0xFA);
}

TEST_F(MidiIn, FiltersClockAndActiveSensingFromTheStart) {
  const auto input = Listening();
  driver.Feed("Keys", 0, {0xF8});
  driver.Feed("Keys", 0, {0xFE});
  EXPECT_EQ(input->MessageCount(), 0);
}

// The filter's name speaks of time code, what it filters is the clock.
TEST_F(MidiIn, LetsTimeCodePassTheFilterNamedAfterIt) {
  const auto input = Listening();
  driver.Feed("Keys", 0, {0xF1, 0x23});
  EXPECT_EQ(input->MessageCount(), 1);
}

TEST_F(MidiIn, LetsPassWhatIsNotFiltered) {
  TMidiInput input(driver);
  input.FMsgFilter = {TMidiMsg::msgActiveSensing};
  input.OpenAndStart();
  driver.Feed("Keys", 0, {0xFE});
  driver.Feed("Keys", 0, {0xF8});
  ASSERT_EQ(input.MessageCount(), 1);
  EXPECT_EQ(input.GetMidiEvent()->MidiMessage, 0xF8);
  input.Close();
  input.FMsgFilter = {TMidiMsg::msgMidiTimeCode};
  input.OpenAndStart();
  driver.Feed("Keys", 0, {0xFE});
  driver.Feed("Keys", 0, {0xF8});
  ASSERT_EQ(input.MessageCount(), 1);
  EXPECT_EQ(input.GetMidiEvent()->MidiMessage, 0xFE);
}

TEST_F(MidiIn, HearsSysexOnlyIfToldSo) {
  TMidiInput input(driver);
  input.FSysexOnly = true;
  input.OpenAndStart();
  driver.Feed("Keys", 0, {0x90, 60, 100});
  driver.Feed("Keys", 0, Sysex(3));
  EXPECT_EQ(Pieces(input), std::vector<TBytes>{Sysex(3)});
}

TEST_F(MidiIn, ReadsItsSettingsWhenItOpens) {
  const auto input = Listening();
  input->FSysexOnly = true;
  driver.Feed("Keys", 0, {0x90, 60, 100});
  EXPECT_EQ(input->MessageCount(), 1);
}

TEST_F(MidiIn, GivesTheBytesOfASysexWithItsTime) {
  const auto input = Listening();
  driver.Feed("Keys", 77, Sysex(8));
  const auto event = input->GetMidiEvent();
  ASSERT_NE(event, nullptr);
  EXPECT_EQ(event->MidiMessage, 240);
  EXPECT_EQ(event->Time, 77U);
  EXPECT_EQ(event->SysexLength(), 10);
  EXPECT_EQ(event->Sysex, Sysex(8));
}

TEST_F(MidiIn, GivesASysexOfExactlyOneBufferWhole) {
  const auto input = Listening();
  driver.Feed("Keys", 0, Sysex(4094));
  EXPECT_EQ(Pieces(*input), std::vector<TBytes>{Sysex(4094)});
}

TEST_F(MidiIn, GivesALongerSysexInPieces) {
  const auto input = Listening();
  driver.Feed("Keys", 0, Sysex(10'000));
  const auto pieces = Pieces(*input);
  ASSERT_EQ(pieces.size(), 3U);
  EXPECT_EQ(pieces[0].size(), 4096U);
  EXPECT_EQ(pieces[1].size(), 4096U);
  EXPECT_EQ(pieces[2].size(), 10'002U - 8192U);
  TBytes joined;
  for (const TBytes& piece : pieces) {
    joined.insert(joined.end(), piece.begin(), piece.end());
  }
  EXPECT_EQ(joined, Sysex(10'000));
}

TEST_F(MidiIn, TakesAsMuchSysexAsItHasBuffersFor) {
  const auto input = Listening();
  driver.Feed("Keys", 0, Sysex(16 * 4096 - 2));
  EXPECT_EQ(Pieces(*input).size(), 16U);
  EXPECT_EQ(input->OverflowCount(), 0U);
}

TEST_F(MidiIn, CutsOffASysexThatIsLongerThanItsBuffersAndTells) {
  auto input = Listening();
  int overflows = 0;
  input->FOnOverflow = [&](TMidiInput&) { ++overflows; };
  driver.Feed("Keys", 0, Sysex(16 * 4096 - 1));
  input->Pump();
  EXPECT_EQ(overflows, 1);
  const auto pieces = Pieces(*input);
  ASSERT_EQ(pieces.size(), 16U);
  EXPECT_NE(pieces.back().back(), 0xF7);
}

TEST_F(MidiIn, UsesItsBuffersAgain) {
  const auto input = Listening();
  for (std::size_t i = 0; i < 100; ++i) {
    driver.Feed("Keys", 0, Sysex(4094 + i));
    const auto pieces = Pieces(*input);
    ASSERT_EQ(pieces.size(), i == 0 ? 1U : 2U);
  }
  EXPECT_EQ(input->OverflowCount(), 0U);
}

TEST_F(MidiIn, TakesNoSysexWithoutBuffers) {
  for (const bool noSize : {true, false}) {
    TMidiInput input(driver);
    (noSize ? input.FSysexBufferSize : input.FSysexBufferCount) = 0;
    input.OpenAndStart();
    driver.Feed("Keys", 0, Sysex(1));
    driver.Feed("Keys", 0, {0x90, 1, 2});
    EXPECT_EQ(input.OverflowCount(), 1U);
    EXPECT_EQ(input.MessageCount(), 1);
  }
}

TEST_F(MidiIn, RefusesWhatAFullRingCannotHoldAndTells) {
  TMidiInput input(driver);
  input.FCapacity = 4;
  int overflows = 0;
  input.FOnOverflow = [&](TMidiInput&) { ++overflows; };
  input.OpenAndStart();
  for (std::uint8_t key = 0; key < 6; ++key) {
    driver.Feed("Keys", 0, {0x90, key, 1});
  }
  driver.Feed("Keys", 0, Sysex(1));
  EXPECT_EQ(input.MessageCount(), 4);
  EXPECT_EQ(input.OverflowCount(), 3U);
  input.Pump();
  input.Pump();
  EXPECT_EQ(overflows, 1) << "told once";
  for (std::uint8_t key = 0; key < 4; ++key) {
    EXPECT_EQ(input.GetMidiEvent()->Data1, key);
  }
  driver.Feed("Keys", 0, Sysex(1));
  EXPECT_EQ(Pieces(input).size(), 1U) << "no buffer was lost with the refused sysex";
}

TEST_F(MidiIn, Holds1024MessagesByDefault) {
  const auto input = Listening();
  for (int i = 0; i < 1025; ++i) {
    driver.Feed("Keys", 0, {0x90, 1, 1});
  }
  EXPECT_EQ(input->MessageCount(), 1024);
  EXPECT_EQ(input->OverflowCount(), 1U);
}

TEST_F(MidiIn, NotifiesOnceUntilItIsPumped) {
  TMidiInput input(driver);
  int notified = 0;
  input.SetNotify([&] { ++notified; });
  input.OpenAndStart();
  driver.Feed("Keys", 0, {0x90, 1, 1});
  driver.Feed("Keys", 0, {0x90, 2, 1});
  EXPECT_EQ(notified, 1);
  input.Pump();
  driver.Feed("Keys", 0, {0x90, 3, 1});
  EXPECT_EQ(notified, 2);
}

TEST_F(MidiIn, NotifiesOfAnOverflowToo) {
  TMidiInput input(driver);
  input.FCapacity = 0;
  int notified = 0;
  input.SetNotify([&] { ++notified; });
  input.OpenAndStart();
  driver.Feed("Keys", 0, {0x90, 1, 1});
  EXPECT_EQ(notified, 1);
}

TEST_F(MidiIn, DoesNotNotifyOfWhatItFilters) {
  TMidiInput input(driver);
  int notified = 0;
  input.SetNotify([&] { ++notified; });
  input.OpenAndStart();
  driver.Feed("Keys", 0, {0xFE});
  EXPECT_EQ(notified, 0);
}

TEST_F(MidiIn, FiresItsInputEventOnceForAllThatWaits) {
  auto input = Listening();
  int fired = 0;
  int taken = 0;
  input->FOnMIDIInput = [&](TMidiInput& port) {
    ++fired;
    while (port.GetMidiEvent() != nullptr) {
      ++taken;
    }
  };
  input->Pump();
  EXPECT_EQ(fired, 0) << "nothing waits";
  for (std::uint8_t key = 0; key < 3; ++key) {
    driver.Feed("Keys", 0, {0x90, key, 1});
  }
  input->Pump();
  input->Pump();
  EXPECT_EQ(fired, 1);
  EXPECT_EQ(taken, 3);
}

TEST_F(MidiIn, FiresNothingWhenClosed) {
  auto input = Listening();
  int fired = 0;
  input->FOnMIDIInput = [&](TMidiInput&) { ++fired; };
  driver.Feed("Keys", 0, {0x90, 1, 1});
  input->Close();
  input->Pump();
  EXPECT_EQ(fired, 0);
}

TEST_F(MidiIn, MayBeClosedByItsOwnEvent) {
  auto input = Listening();
  input->FOnMIDIInput = [](TMidiInput& port) { port.Close(); };
  input->FOnOverflow = [](TMidiInput&) { FAIL() << "closed ports tell nothing"; };
  for (int i = 0; i < 1025; ++i) {
    driver.Feed("Keys", 0, {0x90, 1, 1});
  }
  input->Pump();
  EXPECT_EQ(input->State(), MidiInputState::misClosed);
}

TEST_F(MidiIn, FlushesWhatWaits) {
  const auto input = Listening();
  for (int i = 0; i < 40; ++i) {
    driver.Feed("Keys", 0, {0x90, 1, 1});
    driver.Feed("Keys", 0, Sysex(2));
    input->FlushQueue();
  }
  EXPECT_EQ(input->MessageCount(), 0);
  EXPECT_EQ(input->OverflowCount(), 0U) << "flushed buffers serve again";
}

TEST_F(MidiIn, HearsNothingBeforeItStartsAndAfterItStops) {
  TMidiInput input(driver);
  input.Open();
  driver.Feed("Keys", 0, {0x90, 1, 1});
  EXPECT_EQ(input.MessageCount(), 0);
  input.Start();
  driver.Feed("Keys", 0, {0x90, 2, 1});
  input.Stop();
  driver.Feed("Keys", 0, {0x90, 3, 1});
  ASSERT_EQ(input.MessageCount(), 1);
  EXPECT_EQ(input.GetMidiEvent()->Data1, 2);
}

TEST_F(MidiIn, IgnoresStartAndStopWhenClosed) {
  TMidiInput input(driver);
  input.Start();
  input.Stop();
  input.Open();
  driver.Feed("Keys", 0, {0x90, 1, 1});
  EXPECT_EQ(input.MessageCount(), 0);
}

TEST_F(MidiIn, ForgetsWhatWaitsWhenItCloses) {
  const auto input = Listening();
  driver.Feed("Keys", 0, {0x90, 1, 1});
  input->StopAndClose();
  EXPECT_EQ(driver.OpenInputs, 0);
  EXPECT_EQ(input->MessageCount(), 0);
  EXPECT_EQ(input->GetMidiEvent(), nullptr);
  input->OpenAndStart();
  EXPECT_EQ(input->MessageCount(), 0);
  EXPECT_EQ(driver.OpenInputs, 1);
}

TEST_F(MidiIn, OpensAndClosesOnlyOnce) {
  const auto input = Listening();
  input->Open();
  EXPECT_EQ(driver.OpenInputs, 1);
  input->Close();
  input->Close();
  EXPECT_EQ(driver.OpenInputs, 0);
}

TEST_F(MidiIn, ClosesWhenItGoes) {
  Listening().reset();
  EXPECT_EQ(driver.OpenInputs, 0);
}

TEST_F(MidiIn, TakesADeviceByNumberOrName) {
  TMidiInput input(driver);
  int changed = 0;
  input.FOnDeviceChanged = [&](TMidiInput&) { ++changed; };
  input.SetDeviceID(1);
  EXPECT_EQ(input.ProductName(), "Pads");
  input.SetProductName("Keys 2");
  EXPECT_EQ(input.DeviceID(), 2);
  input.SetDeviceID(MidiMapper);
  EXPECT_EQ(input.ProductName(), "MIDI Mapper");
  EXPECT_EQ(changed, 3);
}

TEST_F(MidiIn, OpensTheFirstDeviceAsTheMapper) {
  TMidiInput input(driver);
  input.SetDeviceID(MidiMapper);
  input.OpenAndStart();
  driver.Feed("Keys", 0, {0x90, 1, 1});
  EXPECT_EQ(input.MessageCount(), 1);
}

TEST_F(MidiIn, RefusesDevicesThatThereAreNot) {
  TMidiInput input(driver);
  EXPECT_EQ(ErrorOf([&] { input.SetDeviceID(3); }), "Invalid device ID");
  EXPECT_EQ(ErrorOf([&] { input.SetDeviceID(-2); }), "Invalid device ID");
  EXPECT_EQ(ErrorOf([&] { input.SetProductName("keys"); }), "MIDI Input Device keys not installed ");
  EXPECT_EQ(input.DeviceID(), 0);
}

TEST_F(MidiIn, RefusesToChangeItsDeviceWhileOpen) {
  const auto input = Listening();
  EXPECT_EQ(ErrorOf([&] { input->SetDeviceID(1); }), "Change to DeviceID while device was open");
  EXPECT_EQ(ErrorOf([&] { input->SetProductName("Pads"); }),
            "Change to ProductName while device was open");
}

TEST_F(MidiIn, ChangesItsDeviceAndListensThere) {
  const auto input = Listening();
  input->ChangeDevice(1, true);
  EXPECT_EQ(input->State(), MidiInputState::misOpen);
  driver.Feed("Keys", 0, {0x90, 1, 1});
  driver.Feed("Pads", 0, {0x90, 2, 1});
  ASSERT_EQ(input->MessageCount(), 1);
  EXPECT_EQ(input->GetMidiEvent()->Data1, 2);
  input->ChangeDevice(2, false);
  EXPECT_EQ(input->State(), MidiInputState::misClosed);
}

TEST_F(MidiIn, LeavesEverythingAloneOnChangeToTheSameDevice) {
  const auto input = Listening();
  driver.Feed("Keys", 0, {0x90, 1, 1});
  input->ChangeDevice(0, false);
  EXPECT_EQ(input->State(), MidiInputState::misOpen);
  EXPECT_EQ(input->MessageCount(), 1);
}

TEST_F(MidiIn, OpensItsDeviceByNameWhenNumbersHaveMoved) {
  TMidiInput input(driver);
  input.SetProductName("Pads");
  driver.Inputs = {"New", "Keys", "Pads"};
  input.OpenAndStart();
  EXPECT_EQ(input.DeviceID(), 2);
  driver.Feed("Pads", 0, {0x90, 1, 1});
  EXPECT_EQ(input.MessageCount(), 1);
}

TEST_F(MidiIn, DoesNotOpenAnotherDeviceForOneThatIsGone) {
  TMidiInput input(driver);
  input.SetProductName("Pads");
  driver.Inputs = {"Keys", "Keys 2"};
  EXPECT_EQ(ErrorOf([&] { input.Open(); }), "MIDI Input Device Pads not installed ");
  EXPECT_EQ(input.State(), MidiInputState::misClosed);
}

TEST_F(MidiIn, TellsTheSystemsWordsWhenItCannotOpen) {
  TMidiInput input(driver);
  driver.FailOpen = TDriverError(NoMemory, "too many inputs");
  EXPECT_EQ(ErrorOf([&] { input.Open(); }), "too many inputs");
  EXPECT_EQ(input.Error(), NoMemory);
  EXPECT_EQ(input.MidiInErrorString(NoMemory), "too many inputs");
  EXPECT_EQ(input.MidiInErrorString(4711), "Specified error number is out of range");
  driver.FailOpen = TDriverError(99, "");
  EXPECT_EQ(ErrorOf([&] { input.Open(); }), "Specified error number is out of range");
  driver.FailOpen.reset();
  input.Open();
  EXPECT_EQ(input.Error(), 0);
}

TEST_F(MidiIn, AllocatesNothingOnTheDriversThread) {
  TMidiInput input(driver);
  std::atomic<int> notified{0};
  input.SetNotify([&] { notified.fetch_add(1); });
  input.FCapacity = 40;
  input.OpenAndStart();
  const TBytes sysex = Sysex(9000);
  std::uint64_t allocated = 1;
  std::thread([&] {
    const std::uint64_t before = AllocationsOfThread();
    for (int i = 0; i < 50; ++i) {
      driver.Feed("Keys", 0, {0x90, 1, 1});
      driver.Feed("Keys", 0, sysex);
    }
    allocated = AllocationsOfThread() - before;
  }).join();
  EXPECT_EQ(allocated, 0U);
  EXPECT_EQ(notified.load(), 1);
  EXPECT_GT(input.OverflowCount(), 0U) << "overflows allocate nothing either";
}

TEST_F(MidiIn, PassesShortMessagesAndSysexFromThreadToThreadInOrder) {
  constexpr int Count = 20'000;
  TMidiInput input(driver);
  input.OpenAndStart();
  std::atomic<int> room{0};  // what the main thread is ahead: the driver's thread loses nothing then
  std::thread thread([&] {
    for (int i = 0; i < Count; ++i) {
      while (i - room.load() > 8) {
        std::this_thread::yield();
      }
      const auto low = static_cast<std::uint8_t>(i & 127);
      const auto high = static_cast<std::uint8_t>(i >> 7 & 127);
      if (i % 3 == 0) {
        driver.Feed("Keys", 0, {0xF0, low, high, 0xF7});
      } else {
        driver.Feed("Keys", 0, {0xB0, low, high});
      }
    }
  });
  int wrong = 0;
  for (int i = 0; i < Count; ++i) {
    auto event = input.GetMidiEvent();
    while (event == nullptr) {
      std::this_thread::yield();
      event = input.GetMidiEvent();
    }
    const TBytes bytes =
        i % 3 == 0 ? event->Sysex : TBytes{event->MidiMessage, event->Data1, event->Data2, 0xF7};
    const auto first = static_cast<std::uint8_t>(i % 3 == 0 ? 0xF0 : 0xB0);
    wrong += bytes != TBytes{first, static_cast<std::uint8_t>(i & 127),
                             static_cast<std::uint8_t>(i >> 7 & 127), 0xF7}
                 ? 1
                 : 0;
    room.store(i + 1);
  }
  thread.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(input.OverflowCount(), 0U);
}

}  // namespace
}  // namespace Sonarello
