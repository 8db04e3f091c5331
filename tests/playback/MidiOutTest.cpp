#include "playback/MidiOut.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "helpers/TestMidiDriver.h"

namespace Sonarello {
namespace {

using TBytes = std::vector<std::uint8_t>;
using testing::ElementsAre;

struct MidiOut : testing::Test {
  MidiOut() { driver.Outputs = {"Genos", "Synth", "Module"}; }

  std::unique_ptr<TMidiOutput> Opened() {
    auto output = std::make_unique<TMidiOutput>(driver);
    output->Open();
    return output;
  }
  static std::string ErrorOf(const std::function<void()>& call) {
    try {
      call();
    } catch (const EMidiOutputError& error) {
      return error.what();
    }
    return "no error";
  }

  TestMidiDriver driver;
};

TEST_F(MidiOut, IsMadeClosedOnTheFirstDevice) {
  const TMidiOutput output(driver);
  EXPECT_EQ(output.State(), MidiOutputState::mosClosed);
  EXPECT_EQ(output.DeviceID(), 0);
  EXPECT_EQ(output.ProductName(), "Genos");
  EXPECT_EQ(output.Technology(), OutPortTech::opt_MidiPort);
  EXPECT_FALSE(output.FUseFullReset);
  EXPECT_EQ(driver.OpenOutputs, 0);
}

TEST_F(MidiOut, HasNoDeviceWhereThereIsNone) {
  driver.Outputs.clear();
  TMidiOutput output(driver);
  EXPECT_EQ(output.DeviceCount(), 0);
  EXPECT_EQ(output.DeviceID(), -1);
  EXPECT_EQ(output.Technology(), OutPortTech::opt_None);
  EXPECT_EQ(ErrorOf([&] { output.Open(); }), "no such device");
  EXPECT_FALSE(output.IsOpen());
}

TEST_F(MidiOut, OpensAndClosesOnlyOnce) {
  TMidiOutput output(driver);
  EXPECT_TRUE(output.Close());
  EXPECT_TRUE(output.Open());
  EXPECT_TRUE(output.Open());
  EXPECT_EQ(driver.OpenOutputs, 1);
  EXPECT_TRUE(output.Close());
  EXPECT_EQ(driver.OpenOutputs, 0);
}

TEST_F(MidiOut, ClosesWhenItGoes) {
  Opened().reset();
  EXPECT_EQ(driver.OpenOutputs, 0);
}

TEST_F(MidiOut, SendsAsManyBytesAsBelongToTheStatus) {
  const auto output = Opened();
  output->PutShort(0x90, 60, 100);
  output->PutShort(0xC3, 5, 99);
  output->PutShort(0xDF, 6, 99);
  output->PutShort(0xE0, 1, 2);
  output->PutShort(0xF1, 7, 99);
  output->PutShort(0xF2, 8, 9);
  output->PutShort(0xF3, 10, 99);
  output->PutShort(0xF6, 99, 99);
  output->PutShort(0xFA, 99, 99);
  EXPECT_THAT(
      driver.SentTo("Genos"),
      ElementsAre(TBytes{0x90, 60, 100}, TBytes{0xC3, 5}, TBytes{0xDF, 6}, TBytes{0xE0, 1, 2},
                  TBytes{0xF1, 7}, TBytes{0xF2, 8, 9}, TBytes{0xF3, 10}, TBytes{0xF6}, TBytes{0xFA}));
}

TEST_F(MidiOut, MakesTheMessagesOfItsOperations) {
  const auto output = Opened();
  output->NoteOn(2, 60, 100);
  output->NoteOff(2, 60, 64);
  output->NoteAftertouch(15, 61, 3);
  output->ChannelAftertouch(0, 4);
  output->ControllerChange(1, 7, 127);
  output->ProgramChange(9, 12);
  output->ChangeInstrument(3, 8, 4, 24);
  EXPECT_THAT(driver.SentTo("Genos"),
              ElementsAre(TBytes{0x92, 60, 100}, TBytes{0x82, 60, 64}, TBytes{0xAF, 61, 3},
                          TBytes{0xD0, 4}, TBytes{0xB1, 7, 127}, TBytes{0xC9, 12}, TBytes{0xB3, 0, 8},
                          TBytes{0xB3, 32, 4}, TBytes{0xC3, 24}));
}

TEST_F(MidiOut, SendsALongMessageWhole) {
  const auto output = Opened();
  TBytes sysex(70'000, 1);
  sysex.front() = 0xF0;
  sysex.back() = 0xF7;
  output->PutLong(sysex);
  EXPECT_THAT(driver.SentTo("Genos"), ElementsAre(sysex));
}

TEST_F(MidiOut, TellsThatALongMessageHasGoneWhenPumped) {
  const auto output = Opened();
  int done = 0;
  int notified = 0;
  output->FOnMidiOutput = [&](TMidiOutput&) { ++done; };
  output->SetNotify([&] { ++notified; });
  output->PutLong(TBytes{0xF0, 1, 0xF7});
  output->PutLong(TBytes{0xF0, 2, 0xF7});
  EXPECT_EQ(done, 0);
  EXPECT_EQ(notified, 1);
  output->Pump();
  output->Pump();
  EXPECT_EQ(done, 2);
  output->PutLong(TBytes{0xF0, 3, 0xF7});
  EXPECT_EQ(notified, 2);
}

TEST_F(MidiOut, SendsAnEventByItsKind) {
  const auto output = Opened();
  TMyMidiEvent event;
  event.MidiMessage = 0xB0;
  event.Data1 = 10;
  event.Data2 = 64;
  output->PutMidiEvent(event);
  event.MidiMessage = 240;
  event.Sysex = {0xF0, 5, 0xF7};
  output->PutMidiEvent(event);
  EXPECT_THAT(driver.SentTo("Genos"), ElementsAre(TBytes{0xB0, 10, 64}, TBytes{0xF0, 5, 0xF7}));
}

TEST_F(MidiOut, RefusesEverythingWhileClosed) {
  TMidiOutput output(driver);
  EXPECT_EQ(ErrorOf([&] { output.PutShort(0x90, 1, 1); }), "(Short Msg) Device not opened.");
  EXPECT_EQ(ErrorOf([&] { output.PutLong(TBytes{0xF0, 0xF7}); }), "(Long Msg) Device not opened.");
  EXPECT_EQ(ErrorOf([&] { output.PutMidiEvent({}); }), "MIDI Output device not open");
  EXPECT_TRUE(driver.Sent.empty());
}

TEST_F(MidiOut, RefusesAMessageWithoutAStatus) {
  const auto output = Opened();
  EXPECT_EQ(ErrorOf([&] { output->PutShort(60, 1, 1); }),
            "(Short Msg) The application sent a message without a status byte to a stream handle.");
  EXPECT_EQ(output->Error(), BadOpenMode);
}

TEST_F(MidiOut, SendsNoDataThatWouldBeAStatusOnTheWire) {
  const auto output = Opened();
  const std::string text = "The message is no short MIDI message or has data above 127.";
  EXPECT_EQ(ErrorOf([&] { output->PutShort(0x90, 128, 1); }), text);
  EXPECT_EQ(ErrorOf([&] { output->PutShort(0x90, 1, 255); }), text);
  EXPECT_EQ(ErrorOf([&] { output->PutShort(0xF0, 1, 1); }), text);
  EXPECT_EQ(ErrorOf([&] { output->PutShort(0xC0, 1, 255); }), "no error") << "not sent, no harm";
}

TEST_F(MidiOut, RefusesAnEmptyLongMessage) {
  const auto output = Opened();
  EXPECT_EQ(ErrorOf([&] { output->PutLong({}); }),
            "(Prep Header) The specified address is invalid or the given stream buffer is greater "
            "than 64K.");
}

struct TTextCase {
  MidiOutMode Mode;
  int Number;
  const char* Text;
};

TEST_F(MidiOut, HasTheTextOfEachModeAndNumber) {
  using enum MidiOutMode;
  const TTextCase cases[] = {
      {Caching, 5, "(Caching) The specified device handle is invalid."},
      {Caching, 7,
       "(Caching) The device does not have enough memory to cache all of the requested patches."},
      {Caching, 8, "(Caching) The specified device does not support patch caching."},
      {Caching, 10, "(Caching) The flag specified by wFlags is invalid."},
      {Caching, 11, "(Caching) The array pointed to by lpPatchArray is invalid."},
      {ShortMessage, 5, "(Short Msg) The specified device handle is invalid."},
      {ShortMessage, 67, "(Short Msg) The hardware is busy with other data."},
      {ShortMessage, 70,
       "(Short Msg) The application sent a message without a status byte to a stream handle."},
      {LongMessage, 5, "(Long Msg) The specified device handle is invalid."},
      {LongMessage, 11, "(Long Msg) The specified pointer or structure is invalid."},
      {LongMessage, 64, "(Long Msg) The buffer pointed to by lpMidiOutHdr has not been prepared."},
      {LongMessage, 67, "(Long Msg) The hardware is busy with other data."},
      {PrepareHeader, 5, "(Prep Header) The specified device handle is invalid."},
      {PrepareHeader, 7, "(Prep Header) The system is unable to allocate or lock memory."},
      {PrepareHeader, 11,
       "(Prep Header) The specified address is invalid or the given stream buffer is greater than "
       "64K."},
  };
  for (const TTextCase& c : cases) {
    EXPECT_EQ(MidiOutErrorString(c.Mode, c.Number, "system"), c.Text);
    EXPECT_EQ(MidiOutErrorString(General, c.Number, "system"), "system");
  }
}

TEST_F(MidiOut, TakesTheSystemsWordsForOtherNumbers) {
  for (const auto mode : {MidiOutMode::General, MidiOutMode::Caching, MidiOutMode::ShortMessage,
                          MidiOutMode::LongMessage, MidiOutMode::PrepareHeader}) {
    EXPECT_EQ(MidiOutErrorString(mode, 1, "system"), "system");
    EXPECT_EQ(MidiOutErrorString(mode, 1, ""), "Specified error number is out of range");
  }
  EXPECT_EQ(MidiOutErrorString(MidiOutMode::ShortMessage, 11, "system"), "system");
  EXPECT_EQ(MidiOutErrorString(MidiOutMode::LongMessage, 7, "system"), "system");
}

TEST_F(MidiOut, TellsWhatFailedInTheWordsOfItsMode) {
  const auto output = Opened();
  driver.FailSend = TDriverError(InvalidHandle, "gone");
  EXPECT_EQ(ErrorOf([&] { output->PutShort(0x90, 1, 1); }),
            "(Short Msg) The specified device handle is invalid.");
  EXPECT_EQ(ErrorOf([&] {
              output->PutLong(TBytes{0xF0, 0xF7});
            }),
            "(Long Msg) The specified device handle is invalid.");
  driver.FailSend = TDriverError(NotReady, "busy");
  EXPECT_EQ(ErrorOf([&] { output->NoteOn(0, 1, 1); }),
            "(Short Msg) The hardware is busy with other data.");
  driver.FailSend = TDriverError(1, "something else");
  EXPECT_EQ(ErrorOf([&] { output->PutShort(0x90, 1, 1); }), "something else");
  EXPECT_EQ(output->Error(), 1);
  driver.FailSend = TDriverError(0, "");
  EXPECT_EQ(ErrorOf([&] { output->PutShort(0x90, 1, 1); }), "Specified error number is out of range");
  EXPECT_TRUE(output->IsOpen()) << "an error closes nothing";
}

TEST_F(MidiOut, TellsNoCompletionOfALongMessageThatFailed) {
  const auto output = Opened();
  output->FOnMidiOutput = [](TMidiOutput&) { FAIL() << "nothing has gone"; };
  driver.FailSend = TDriverError(NotReady, "busy");
  ErrorOf([&] { output->PutLong(TBytes{0xF0, 0xF7}); });
  output->Pump();
}

TEST_F(MidiOut, RaisesTheSystemsWordsWhenItCannotOpen) {
  TMidiOutput output(driver);
  driver.FailOpen = TDriverError(4, "in use");
  EXPECT_EQ(ErrorOf([&] { output.Open(); }), "in use");
  EXPECT_FALSE(output.IsOpen());
  driver.FailOpen = TDriverError(4, "");
  EXPECT_EQ(ErrorOf([&] { output.Open(); }), "Specified error number is out of range");
  driver.FailOpen.reset();
  EXPECT_TRUE(output.Open());
  EXPECT_EQ(output.Error(), 0);
}

TEST_F(MidiOut, TakesADeviceByNumberNameOrKind) {
  TMidiOutput output(driver);
  int changed = 0;
  output.FOnDeviceChanged = [&](TMidiOutput&) { ++changed; };
  output.SetDeviceID(2);
  EXPECT_EQ(output.ProductName(), "Module");
  output.SetProductName("Synth");
  EXPECT_EQ(output.DeviceID(), 1);
  output.SetTechnology(OutPortTech::opt_Mapper);
  EXPECT_EQ(output.DeviceID(), MidiMapper);
  EXPECT_EQ(output.ProductName(), "MIDI Mapper");
  EXPECT_EQ(output.Technology(), OutPortTech::opt_Mapper);
  output.SetTechnology(OutPortTech::opt_MidiPort);
  EXPECT_EQ(output.DeviceID(), 0);
  EXPECT_EQ(changed, 4);
}

TEST_F(MidiOut, OpensTheFirstDeviceAsTheMapper) {
  TMidiOutput output(driver);
  output.SetDeviceID(MidiMapper);
  output.Open();
  output.NoteOn(0, 1, 1);
  EXPECT_EQ(driver.SentTo("Genos").size(), 1U);
  EXPECT_EQ(output.DeviceID(), MidiMapper);
}

TEST_F(MidiOut, RefusesDevicesThatThereAreNot) {
  TMidiOutput output(driver);
  EXPECT_EQ(ErrorOf([&] { output.SetDeviceID(3); }), "Invalid device ID");
  EXPECT_EQ(ErrorOf([&] { output.SetDeviceID(-2); }), "Invalid device ID");
  EXPECT_EQ(ErrorOf([&] { output.SetProductName("genos"); }), "MIDI output Device genos not installed");
  EXPECT_EQ(ErrorOf([&] { output.SetTechnology(OutPortTech::opt_None); }),
            "MIDI output technology None not installed");
  EXPECT_EQ(ErrorOf([&] { output.SetTechnology(OutPortTech::opt_Synth); }),
            "MIDI output technology Generic Synth not installed");
  EXPECT_EQ(ErrorOf([&] { output.SetTechnology(OutPortTech::opt_SQSynth); }),
            "MIDI output technology Square Wave Synth not installed");
  EXPECT_EQ(ErrorOf([&] { output.SetTechnology(OutPortTech::opt_FMSynth); }),
            "MIDI output technology FM Synth not installed");
  driver.Outputs.clear();
  EXPECT_EQ(ErrorOf([&] { output.SetTechnology(OutPortTech::opt_MidiPort); }),
            "MIDI output technology MIDI Port not installed");
  EXPECT_EQ(output.ProductName(), "Genos");
}

TEST_F(MidiOut, RefusesToChangeItsDeviceWhileOpen) {
  const auto output = Opened();
  EXPECT_EQ(ErrorOf([&] { output->SetDeviceID(1); }), "Change to DeviceID while device was open");
  EXPECT_EQ(ErrorOf([&] { output->SetProductName("Synth"); }),
            "Change to ProductName while device was open");
  EXPECT_EQ(ErrorOf([&] { output->SetTechnology(OutPortTech::opt_Mapper); }),
            "Change to Product Technology while device was open");
}

TEST_F(MidiOut, ChangesItsDeviceAndSendsThere) {
  const auto output = Opened();
  EXPECT_TRUE(output->ChangeDevice(1, true));
  output->NoteOn(0, 1, 1);
  EXPECT_EQ(driver.SentTo("Synth").size(), 1U);
  EXPECT_TRUE(output->ChangeDevice(2, false));
  EXPECT_FALSE(output->IsOpen());
  EXPECT_EQ(ErrorOf([&] { output->ChangeDevice(9, true); }), "Invalid device ID");
}

TEST_F(MidiOut, OpensItsDeviceByNameWhenNumbersHaveMoved) {
  TMidiOutput output(driver);
  output.SetProductName("Synth");
  driver.Outputs = {"Synth", "Module"};
  output.Open();
  output.NoteOn(0, 1, 1);
  EXPECT_EQ(driver.SentTo("Synth").size(), 1U);
  EXPECT_EQ(output.DeviceID(), 0);
}

TEST_F(MidiOut, KeepsToItsNumberAmongDevicesOfOneName) {
  driver.Outputs = {"Twin", "Twin"};
  TMidiOutput output(driver);
  output.SetDeviceID(1);
  output.Open();
  EXPECT_EQ(output.DeviceID(), 1);
}

TEST_F(MidiOut, DoesNotOpenAnotherDeviceForOneThatIsGone) {
  TMidiOutput output(driver);
  output.SetProductName("Synth");
  driver.Outputs = {"Genos", "Module"};
  EXPECT_EQ(ErrorOf([&] { output.Open(); }), "MIDI output Device Synth not installed");
}

TEST_F(MidiOut, SendsNothingWhenItCloses) {
  const auto output = Opened();
  output->Close();
  EXPECT_TRUE(driver.Sent.empty());
}

TEST_F(MidiOut, SilencesAllChannelsOnCloseIfAFullResetIsWanted) {
  const auto output = Opened();
  output->FUseFullReset = true;
  output->Close();
  const auto sent = driver.SentTo("Genos");
  ASSERT_EQ(sent.size(), 48U);
  EXPECT_EQ(sent[0], (TBytes{0xB0, 64, 0}));
  EXPECT_EQ(sent[1], (TBytes{0xB0, 120, 0}));
  EXPECT_EQ(sent[47], (TBytes{0xBF, 123, 0}));
}

TEST_F(MidiOut, ClosesADeviceThatIsGoneInTheMiddleOfTheReset) {
  const auto output = Opened();
  output->FUseFullReset = true;
  driver.FailSend = TDriverError(InvalidHandle, "gone");
  EXPECT_TRUE(output->Close());
  EXPECT_EQ(driver.OpenOutputs, 0);
  EXPECT_EQ(output->Error(), InvalidHandle);
}

TEST_F(MidiOut, SaysThatSoundsCannotBeLoadedAhead) {
  TMidiOutput output(driver);
  const std::vector<std::uint16_t> patches(128, 1);
  EXPECT_EQ(ErrorOf([&] { output.CachePatches(0, patches, 1); }),
            "(Caching) The specified device handle is invalid.");
  output.Open();
  EXPECT_EQ(ErrorOf([&] { output.CachePatches(0, patches, 0); }),
            "(Caching) The flag specified by wFlags is invalid.");
  EXPECT_EQ(ErrorOf([&] { output.CachePatches(0, patches, 5); }),
            "(Caching) The flag specified by wFlags is invalid.");
  EXPECT_EQ(ErrorOf([&] { output.CacheDrumPatches(0, {}, 4); }),
            "(Caching) The array pointed to by lpPatchArray is invalid.");
  EXPECT_EQ(ErrorOf([&] { output.CacheDrumPatches(0, patches, 1); }),
            "(Caching) The specified device does not support patch caching.");
}

TEST_F(MidiOut, SaysThatTheDeviceHasNoVolumeAndTakesNoDriverMessages) {
  const auto output = Opened();
  EXPECT_EQ(ErrorOf([&] { output->SetVolume(0xFFFFFFFF); }), "The device has no volume of its own.");
  EXPECT_EQ(ErrorOf([&] { (void)output->GetVolume(); }), "The device has no volume of its own.");
  EXPECT_EQ(ErrorOf([&] { output->DriverMidiMessage(1, 2, 3); }),
            "The driver takes no messages of its own.");
  EXPECT_EQ(output->Error(), NotSupported);
}

TEST_F(MidiOut, MayBeClosedAndOpenedWhileAnotherThreadSends) {
  const auto output = Opened();
  std::thread player([&] {
    for (int i = 0; i < 20'000; ++i) {
      try {
        output->PutShort(0x90, 60, 100);
        output->PutLong(TBytes{0xF0, 1, 0xF7});
      } catch (const EMidiOutputError& error) {
        EXPECT_THAT(error.what(), testing::EndsWith("Device not opened."));
      }
    }
  });
  for (int i = 0; i < 200; ++i) {
    output->Close();
    output->Open();
    output->NoteOn(1, 2, 3);
    output->Pump();
  }
  player.join();
  EXPECT_EQ(driver.OpenOutputs, 1);
  EXPECT_GE(driver.Sent.size(), 200U);
}

}  // namespace
}  // namespace Sonarello
