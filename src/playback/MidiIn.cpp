#include "playback/MidiIn.h"

#include <algorithm>
#include <utility>

#include "playback/MidiDevices.h"

namespace Sonarello {

namespace {

constexpr std::uint8_t SysexStart = 0xF0;
constexpr std::uint8_t TimingClock = 0xF8;
constexpr std::uint8_t ActiveSensing = 0xFE;

std::uint32_t Packed(std::span<const std::uint8_t> message) {
  std::uint32_t word = 0;
  for (std::size_t i = std::min<std::size_t>(message.size(), 3); i-- > 0;) {
    word = (word << 8) | message[i];
  }
  return word;
}

}  // namespace

TMidiCtlInfo::TMidiCtlInfo(std::uint16_t capacity, std::uint16_t headers, std::uint16_t headerSize,
                           Setting setting, TMidiIO::TNotify notify)
    : Buffer(capacity),
      set(setting),
      hWindow(std::move(notify)),
      headersOwned(headerSize > 0 ? headers : 0),
      freeHeaders(static_cast<std::uint16_t>(headersOwned.size())) {
  for (TMyMidiHdr& header : headersOwned) {
    header.Data.resize(headerSize);
    freeHeaders.Put(&header);
  }
}

void TMidiCtlInfo::Receive(std::uint32_t milliseconds, std::span<const std::uint8_t> message) noexcept {
  if (message.empty() || !Started.load(std::memory_order_acquire)) {
    return;
  }
  const std::uint8_t status = message[0];
  if (status == SysexStart) {
    ReceiveSysex(milliseconds, message);
    return;
  }
  if ((status == TimingClock && set.FilterMTC) || (status == ActiveSensing && set.FilterAS) ||
      set.SysexOnly) {
    return;
  }
  if (Buffer.Put({milliseconds, Packed(message), nullptr})) {
    Post();
  } else {
    Overflow();
  }
}

void TMidiCtlInfo::ReceiveSysex(std::uint32_t milliseconds,
                                std::span<const std::uint8_t> message) noexcept {
  while (!message.empty()) {
    TMyMidiHdr* header = nullptr;
    // A sysex that lost a piece is cut off there: it then ends without F7, while one with a hole in
    // its middle would pass for whole.
    if (Buffer.Full() || !freeHeaders.Read(header)) {
      Overflow();
      return;
    }
    freeHeaders.Remove();
    const std::size_t length = std::min(message.size(), header->Data.size());
    std::copy_n(message.begin(), length, header->Data.begin());
    header->BytesRecorded = static_cast<std::uint32_t>(length);
    Buffer.Put({milliseconds, 0, header});
    message = message.subspan(length);
    Post();
  }
}

void TMidiCtlInfo::AddBuffer(TMyMidiHdr& header) noexcept {
  header.BytesRecorded = 0;
  freeHeaders.Put(&header);
}

void TMidiCtlInfo::Overflow() noexcept {
  OverflowCount.fetch_add(1, std::memory_order_release);
  Post();
}

void TMidiCtlInfo::Post() noexcept {
  if (hWindow && !notified.exchange(true)) {
    hWindow();
  }
}

TMidiInput::TMidiInput(IMidiDriver& midi) : TMidiIO(midi) {
  const std::vector<std::string> names = driver.InputNames();
  if (!names.empty()) {
    FDeviceID = 0;
    FProductName = names[0];
  }
  FState = MidiInputState::misClosed;
}

TMidiInput::~TMidiInput() {
  Close();
  FState = MidiInputState::misDestroying;
}

void TMidiInput::Open() {
  if (FState == MidiInputState::misOpen) {
    return;
  }
  overflowsTold = 0;
  try {
    const std::int32_t device = DeviceToOpen();
    PCtlInfo = std::make_unique<TMidiCtlInfo>(
        FCapacity, FSysexBufferCount, FSysexBufferSize,
        TMidiCtlInfo::Setting{FSysexOnly, FMsgFilter.Has(TMidiMsg::msgMidiTimeCode),
                              FMsgFilter.Has(TMidiMsg::msgActiveSensing)},
        handle);
    FMIDIHandle = driver.OpenInput(
        device,
        [info = PCtlInfo.get()](std::uint32_t milliseconds, std::span<const std::uint8_t> message) {
          info->Receive(milliseconds, message);
        });
  } catch (const TDriverError& error) {
    PCtlInfo.reset();
    Fail(error);
  }
  FError = 0;
  FState = MidiInputState::misOpen;
}

void TMidiInput::Close() {
  if (FState != MidiInputState::misOpen) {
    return;
  }
  FState = MidiInputState::misClosed;
  FMIDIHandle.reset();
  PCtlInfo.reset();
}

void TMidiInput::Start() {
  if (FState == MidiInputState::misOpen) {
    PCtlInfo->Started.store(true, std::memory_order_release);
  }
}

void TMidiInput::Stop() {
  if (FState == MidiInputState::misOpen) {
    PCtlInfo->Started.store(false, std::memory_order_release);
  }
}

void TMidiInput::OpenAndStart() {
  Open();
  Start();
}

void TMidiInput::StopAndClose() {
  Stop();
  Close();
}

void TMidiInput::ChangeDevice(std::int32_t newDeviceID, bool openAndStartAfterChange) {
  if (newDeviceID == FDeviceID) {
    return;
  }
  StopAndClose();
  SetDeviceID(newDeviceID);
  if (openAndStartAfterChange) {
    OpenAndStart();
  }
}

std::int32_t TMidiInput::DeviceCount() { return static_cast<std::int32_t>(driver.InputNames().size()); }

std::unique_ptr<TMyMidiEvent> TMidiInput::GetMidiEvent() {
  TMidiBufferItem item;
  if (FState != MidiInputState::misOpen || !PCtlInfo->Buffer.Read(item)) {
    return nullptr;
  }
  auto event = std::make_unique<TMyMidiEvent>();
  event->Time = item.timestamp;
  if (item.sysex != nullptr) {
    event->MidiMessage = SysexStart;
    const auto& data = item.sysex->Data;
    event->Sysex.assign(data.begin(), data.begin() + item.sysex->BytesRecorded);
    PCtlInfo->AddBuffer(*item.sysex);
  } else {
    event->MidiMessage = static_cast<std::uint8_t>(item.data & 0xFF);
    event->Data1 = static_cast<std::uint8_t>((item.data >> 8) & 0xFF);
    event->Data2 = static_cast<std::uint8_t>((item.data >> 16) & 0xFF);
  }
  PCtlInfo->Buffer.Remove();
  return event;
}

void TMidiInput::FlushQueue() {
  while (GetMidiEvent() != nullptr) {
  }
}

std::string TMidiInput::MidiInErrorString(int error) const {
  return error != 0 && error == FError && !errorText.empty() ? errorText : UnknownErrorText;
}

void TMidiInput::Pump() {
  if (FState != MidiInputState::misOpen) {
    return;
  }
  PCtlInfo->Rearm();
  const std::uint32_t lost = OverflowCount();
  if (MessageCount() > 0 && FOnMIDIInput) {
    FOnMIDIInput(*this);
  }
  // The handler may have closed the port.
  if (lost != overflowsTold && FState == MidiInputState::misOpen) {
    overflowsTold = lost;
    if (FOnOverflow) {
      FOnOverflow(*this);
    }
  }
}

std::uint16_t TMidiInput::MessageCount() const {
  return FState == MidiInputState::misOpen ? PCtlInfo->Buffer.EventCount() : std::uint16_t{0};
}

std::uint32_t TMidiInput::OverflowCount() const {
  return FState == MidiInputState::misOpen ? PCtlInfo->OverflowCount.load(std::memory_order_acquire)
                                           : 0;
}

void TMidiInput::SetDeviceID(std::int32_t id) {
  if (FState == MidiInputState::misOpen) {
    throw EMidiInputError("Change to DeviceID while device was open");
  }
  const std::vector<std::string> names = driver.InputNames();
  if (!IsDevice(names, id)) {
    throw EMidiInputError("Invalid device ID");
  }
  FDeviceID = id;
  FProductName = DeviceName(names, id);
  if (FOnDeviceChanged) {
    FOnDeviceChanged(*this);
  }
}

void TMidiInput::SetProductName(const std::string& name) {
  if (FState == MidiInputState::misOpen) {
    throw EMidiInputError("Change to ProductName while device was open");
  }
  const std::vector<std::string> names = driver.InputNames();
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) {
    // The trailing blank is deliberate.
    throw EMidiInputError("MIDI Input Device " + name + " not installed ");
  }
  SetDeviceID(static_cast<std::int32_t>(found - names.begin()));
}

void TMidiInput::Fail(const TDriverError& error) {
  FError = error.Number;
  errorText = error.what();
  throw EMidiInputError(errorText.empty() ? UnknownErrorText : errorText);
}

std::int32_t TMidiInput::DeviceToOpen() {
  const std::int32_t device = DeviceNow(driver.InputNames(), FDeviceID, FProductName);
  if (device == MidiMapper) {
    throw EMidiInputError("MIDI Input Device " + FProductName + " not installed ");
  }
  FDeviceID = FDeviceID == MidiMapper ? MidiMapper : device;
  return device;
}

}  // namespace Sonarello
