#include "playback/MidiOut.h"

#include <algorithm>
#include <array>
#include <vector>

#include "playback/MidiDevices.h"

namespace Sonarello {

namespace {

struct TErrorText {
  MidiOutMode Mode;
  int Number;
  std::string_view Text;
};

constexpr auto ErrorTexts = std::to_array<TErrorText>({
    {MidiOutMode::Caching, InvalidHandle, "(Caching) The specified device handle is invalid."},
    {MidiOutMode::Caching, NoMemory,
     "(Caching) The device does not have enough memory to cache all of the requested patches."},
    {MidiOutMode::Caching, NotSupported,
     "(Caching) The specified device does not support patch caching."},
    {MidiOutMode::Caching, InvalidFlag, "(Caching) The flag specified by wFlags is invalid."},
    {MidiOutMode::Caching, InvalidParameter,
     "(Caching) The array pointed to by lpPatchArray is invalid."},
    {MidiOutMode::ShortMessage, InvalidHandle, "(Short Msg) The specified device handle is invalid."},
    {MidiOutMode::ShortMessage, NotReady, "(Short Msg) The hardware is busy with other data."},
    {MidiOutMode::ShortMessage, BadOpenMode,
     "(Short Msg) The application sent a message without a status byte to a stream handle."},
    {MidiOutMode::LongMessage, InvalidHandle, "(Long Msg) The specified device handle is invalid."},
    {MidiOutMode::LongMessage, InvalidParameter,
     "(Long Msg) The specified pointer or structure is invalid."},
    {MidiOutMode::LongMessage, NotPrepared,
     "(Long Msg) The buffer pointed to by lpMidiOutHdr has not been prepared."},
    {MidiOutMode::LongMessage, NotReady, "(Long Msg) The hardware is busy with other data."},
    {MidiOutMode::PrepareHeader, InvalidHandle,
     "(Prep Header) The specified device handle is invalid."},
    {MidiOutMode::PrepareHeader, NoMemory,
     "(Prep Header) The system is unable to allocate or lock memory."},
    {MidiOutMode::PrepareHeader, InvalidParameter,
     "(Prep Header) The specified address is invalid or the given stream buffer is greater than "
     "64K."},
});

std::string_view TechnologyName(OutPortTech technology) {
  switch (technology) {
    case OutPortTech::opt_MidiPort: return "MIDI Port";
    case OutPortTech::opt_Synth: return "Generic Synth";
    case OutPortTech::opt_SQSynth: return "Square Wave Synth";
    case OutPortTech::opt_FMSynth: return "FM Synth";
    case OutPortTech::opt_Mapper: return "MIDI Mapper";
    case OutPortTech::opt_None: break;
  }
  return "None";
}

/// The systems name ports and tell no kind: everything is a port but the mapper.
OutPortTech TechnologyOf(std::int32_t id) {
  return id == MidiMapper ? OutPortTech::opt_Mapper : OutPortTech::opt_MidiPort;
}

constexpr std::uint8_t Status(int kind, std::uint8_t channel) {
  return static_cast<std::uint8_t>(kind | (channel & 0x0F));
}

}  // namespace

std::string MidiOutErrorString(MidiOutMode mode, int error, const std::string& systemText) {
  for (const TErrorText& entry : ErrorTexts) {
    if (entry.Mode == mode && entry.Number == error) {
      return std::string(entry.Text);
    }
  }
  return systemText.empty() ? UnknownErrorText : systemText;
}

TMidiOutput::TMidiOutput(IMidiDriver& midi) : TMidiIO(midi) {
  const std::vector<std::string> names = driver.OutputNames();
  if (!names.empty()) {
    FDeviceID = 0;
    FProductName = names[0];
    FTechnology = TechnologyOf(0);
  }
}

TMidiOutput::~TMidiOutput() { TMidiOutput::Close(); }

std::int32_t TMidiOutput::DeviceCount() {
  return static_cast<std::int32_t>(driver.OutputNames().size());
}

bool TMidiOutput::Open() {
  if (IsOpen()) {
    return true;
  }
  const std::int32_t device = DeviceToOpen();
  std::unique_ptr<IDriverOutput> opened;
  try {
    opened = driver.OpenOutput(device);
  } catch (const TDriverError& error) {
    Fail(MidiOutMode::General, error.Number, error.what());
  }
  const std::lock_guard lock(sending);
  FMIDIHandle = std::move(opened);
  FError.store(0, std::memory_order_relaxed);
  FState.store(MidiOutputState::mosOpen, std::memory_order_release);
  return true;
}

bool TMidiOutput::Close() {
  const std::lock_guard lock(sending);
  if (!IsOpen()) {
    return true;
  }
  FState.store(MidiOutputState::mosClosed, std::memory_order_release);
  if (FUseFullReset) {
    FullReset();
  }
  FMIDIHandle.reset();
  return true;
}

bool TMidiOutput::ChangeDevice(std::int32_t newDeviceID, bool openAfterChange) {
  if (IsOpen()) {
    Close();
  }
  if (IsOpen()) {
    return false;
  }
  SetDeviceID(newDeviceID);
  return !openAfterChange || Open();
}

void TMidiOutput::PutMidiEvent(const TMyMidiEvent& theEvent) {
  if (!IsOpen()) {
    throw EMidiOutputError("MIDI Output device not open");
  }
  if (theEvent.Sysex.empty()) {
    PutShort(theEvent.MidiMessage, theEvent.Data1, theEvent.Data2);
  } else {
    PutLong(theEvent.Sysex);
  }
}

void TMidiOutput::PutShort(std::uint8_t midiMessage, std::uint8_t data1, std::uint8_t data2) {
  const std::lock_guard lock(sending);
  if (!IsOpen()) {
    throw EMidiOutputError("(Short Msg) Device not opened.");
  }
  if (midiMessage < 0x80) {
    Fail(MidiOutMode::ShortMessage, BadOpenMode, {});
  }
  const int length = ShortMessageLength(midiMessage);
  const std::array<std::uint8_t, 3> bytes{midiMessage, data1, data2};
  const std::span message = std::span(bytes).first(static_cast<std::size_t>(length));
  // A status byte in the place of data would begin a message of its own on the wire.
  if (length == 0 || std::any_of(message.begin() + 1, message.end(), [](auto b) { return b > 127; })) {
    Fail(MidiOutMode::ShortMessage, InvalidParameter,
         "The message is no short MIDI message or has data above 127.");
  }
  Send(MidiOutMode::ShortMessage, message);
}

void TMidiOutput::PutLong(std::span<const std::uint8_t> theSysex) {
  {
    const std::lock_guard lock(sending);
    if (!IsOpen()) {
      throw EMidiOutputError("(Long Msg) Device not opened.");
    }
    if (theSysex.empty()) {
      Fail(MidiOutMode::PrepareHeader, InvalidParameter, {});
    }
    Send(MidiOutMode::LongMessage, theSysex);
    longDone.fetch_add(1, std::memory_order_release);
  }
  if (handle && !notified.exchange(true)) {
    handle();
  }
}

void TMidiOutput::NoteOn(std::uint8_t channel, std::uint8_t key, std::uint8_t velocity) {
  PutShort(Status(0x90, channel), key, velocity);
}

void TMidiOutput::NoteOff(std::uint8_t channel, std::uint8_t key, std::uint8_t velocity) {
  PutShort(Status(0x80, channel), key, velocity);
}

void TMidiOutput::NoteAftertouch(std::uint8_t channel, std::uint8_t key, std::uint8_t pressure) {
  PutShort(Status(0xA0, channel), key, pressure);
}

void TMidiOutput::ChannelAftertouch(std::uint8_t channel, std::uint8_t pressure) {
  PutShort(Status(0xD0, channel), pressure, 0);
}

void TMidiOutput::ControllerChange(std::uint8_t channel, std::uint8_t controller, std::uint8_t value) {
  PutShort(Status(0xB0, channel), controller, value);
}

void TMidiOutput::ProgramChange(std::uint8_t channel, std::uint8_t program) {
  PutShort(Status(0xC0, channel), program, 0);
}

void TMidiOutput::ChangeInstrument(std::uint8_t channel, std::uint8_t bankMSB, std::uint8_t bankLSB,
                                   std::uint8_t program) {
  ControllerChange(channel, 0, bankMSB);
  ControllerChange(channel, 32, bankLSB);
  ProgramChange(channel, program);
}

void TMidiOutput::SetVolume(std::uint32_t /*volume*/) {
  Fail(MidiOutMode::General, NotSupported, "The device has no volume of its own.");
}

std::uint32_t TMidiOutput::GetVolume() {
  Fail(MidiOutMode::General, NotSupported, "The device has no volume of its own.");
}

void TMidiOutput::CachePatches(std::uint16_t /*bank*/, std::span<const std::uint16_t> patches,
                               std::uint32_t flags) {
  Cache(!patches.empty(), flags);
}

void TMidiOutput::CacheDrumPatches(std::uint16_t /*patch*/, std::span<const std::uint16_t> keys,
                                   std::uint32_t flags) {
  Cache(!keys.empty(), flags);
}

std::uint32_t TMidiOutput::DriverMidiMessage(std::uint32_t /*message*/, std::uintptr_t /*parameter1*/,
                                             std::uintptr_t /*parameter2*/) {
  Fail(MidiOutMode::General, NotSupported, "The driver takes no messages of its own.");
}

void TMidiOutput::Pump() {
  notified.exchange(false);
  const std::uint32_t done = longDone.load(std::memory_order_acquire);
  while (longTold != done) {
    ++longTold;
    if (FOnMidiOutput) {
      FOnMidiOutput(*this);
    }
  }
}

void TMidiOutput::SetDeviceID(std::int32_t id) {
  RefuseWhileOpen("DeviceID");
  const std::vector<std::string> names = driver.OutputNames();
  if (!IsDevice(names, id)) {
    throw EMidiOutputError("Invalid device ID");
  }
  FDeviceID = id;
  FProductName = DeviceName(names, id);
  FTechnology = TechnologyOf(id);
  if (FOnDeviceChanged) {
    FOnDeviceChanged(*this);
  }
}

void TMidiOutput::SetProductName(const std::string& name) {
  RefuseWhileOpen("ProductName");
  const std::vector<std::string> names = driver.OutputNames();
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) {
    throw EMidiOutputError("MIDI output Device " + name + " not installed");
  }
  SetDeviceID(static_cast<std::int32_t>(found - names.begin()));
}

void TMidiOutput::SetTechnology(OutPortTech technology) {
  RefuseWhileOpen("Product Technology");
  for (std::int32_t id = MidiMapper; id < DeviceCount(); ++id) {
    if (TechnologyOf(id) == technology) {
      SetDeviceID(id);
      return;
    }
  }
  throw EMidiOutputError("MIDI output technology " + std::string(TechnologyName(technology)) +
                         " not installed");
}

void TMidiOutput::Fail(MidiOutMode mode, int error, const std::string& systemText) {
  FError.store(error, std::memory_order_relaxed);
  throw EMidiOutputError(MidiOutErrorString(mode, error, systemText));
}

void TMidiOutput::Send(MidiOutMode mode, std::span<const std::uint8_t> message) {
  try {
    FMIDIHandle->Send(message);
  } catch (const TDriverError& error) {
    Fail(mode, error.Number, error.what());
  }
}

void TMidiOutput::FullReset() noexcept {
  // Hold pedal up, all sound off, all notes off, on every channel.
  constexpr std::array<std::uint8_t, 3> Silencing{64, 120, 123};
  try {
    for (std::uint8_t channel = 0; channel < 16; ++channel) {
      for (const std::uint8_t controller : Silencing) {
        FMIDIHandle->Send(std::array<std::uint8_t, 3>{Status(0xB0, channel), controller, 0});
      }
    }
  } catch (const TDriverError& error) {
    // A device that is gone can be closed all the same; nothing sounds there any more.
    FError.store(error.Number, std::memory_order_relaxed);
  }
}

void TMidiOutput::Cache(bool patches, std::uint32_t flags) {
  constexpr std::uint32_t LastFlag = 4;
  if (!IsOpen()) {
    Fail(MidiOutMode::Caching, InvalidHandle, {});
  }
  if (flags < 1 || flags > LastFlag) {
    Fail(MidiOutMode::Caching, InvalidFlag, {});
  }
  Fail(MidiOutMode::Caching, patches ? NotSupported : InvalidParameter, {});
}

void TMidiOutput::RefuseWhileOpen(std::string_view what) const {
  if (IsOpen()) {
    throw EMidiOutputError("Change to " + std::string(what) + " while device was open");
  }
}

std::int32_t TMidiOutput::DeviceToOpen() {
  const std::int32_t device = DeviceNow(driver.OutputNames(), FDeviceID, FProductName);
  if (device < 0) {
    throw EMidiOutputError("MIDI output Device " + FProductName + " not installed");
  }
  FDeviceID = FDeviceID == MidiMapper ? MidiMapper : device;
  return device;
}

}  // namespace Sonarello
