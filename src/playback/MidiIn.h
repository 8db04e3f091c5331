// Sonarello: a MIDI input.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "playback/MidiErrors.h"
#include "playback/MidiType.h"

namespace Sonarello {

enum class MidiInputState { misOpen, misClosed, misCreating, misDestroying };

/// What the driver's thread works with while an input is open. It fills free headers and the ring and
/// notifies; it allocates nothing and takes no lock.
class TMidiCtlInfo {
 public:
  struct Setting {
    bool SysexOnly = false;
    bool FilterMTC = true;  ///< leaves out status 248
    bool FilterAS = true;   ///< leaves out status 254
  };

  /// `headers` buffers of `headerSize` bytes for sysexes; none of them if one of the two is 0.
  TMidiCtlInfo(std::uint16_t capacity, std::uint16_t headers, std::uint16_t headerSize, Setting setting,
               TMidiIO::TNotify notify);

  /// A message from the driver, on its thread.
  void Receive(std::uint32_t milliseconds, std::span<const std::uint8_t> message) noexcept;
  /// A header whose bytes have been copied goes back to the driver's thread. Main thread.
  void AddBuffer(TMyMidiHdr& header) noexcept;
  /// The next notification is told again. Main thread.
  void Rearm() noexcept { notified.exchange(false); }

  TCircularBuffer Buffer;
  std::atomic<bool> Started{false};             ///< written by the main thread
  std::atomic<std::uint32_t> OverflowCount{0};  ///< messages and pieces lost; counted by the driver's

 private:
  void ReceiveSysex(std::uint32_t milliseconds, std::span<const std::uint8_t> message) noexcept;
  void Overflow() noexcept;
  void Post() noexcept;

  const Setting set;
  const TMidiIO::TNotify hWindow;
  std::vector<TMyMidiHdr> headersOwned;
  TRing<TMyMidiHdr*> freeHeaders;
  std::atomic<bool> notified{false};
};

/// A MIDI input. Incoming messages wait in a ring until the main thread takes them.
class TMidiInput : public TMidiIO {
 public:
  using TEvent = std::function<void(TMidiInput&)>;

  /// Takes device 0 if there is any, else none (-1).
  explicit TMidiInput(IMidiDriver& midi);
  ~TMidiInput() override;

  /// Opens the device; nothing comes in before `Start`. Does nothing if open. Raises EMidiInputError.
  void Open();
  /// Closes the device and forgets what waits. Does nothing if closed.
  void Close();
  /// Lets messages in, or keeps them out; what waits stays. Does nothing if closed.
  void Start();
  void Stop();
  void OpenAndStart();
  void StopAndClose();
  /// Takes another device: stops and closes first, opens and starts again if told to. Does nothing for
  /// the device that it has. Raises EMidiInputError.
  void ChangeDevice(std::int32_t newDeviceID, bool openAndStartAfterChange);
  /// Devices that there are now.
  [[nodiscard]] std::int32_t DeviceCount();
  /// The oldest message that waits, or null. A sysex longer than a buffer comes in several events, all
  /// of status 240; the first begins with byte 240.
  [[nodiscard]] std::unique_ptr<TMyMidiEvent> GetMidiEvent();
  void FlushQueue();
  /// The system's words for an error that it reported last, else a text that says that there are none.
  [[nodiscard]] std::string MidiInErrorString(int error) const;
  /// Fires `FOnMIDIInput` once if messages wait (the handler takes them all), then `FOnOverflow` once
  /// if messages were lost since the last time.
  void Pump() override;

  [[nodiscard]] MidiInputState State() const { return FState; }
  [[nodiscard]] int Error() const { return FError; }
  /// Messages that wait; 0 unless open.
  [[nodiscard]] std::uint16_t MessageCount() const;
  /// Messages and pieces of sysexes lost for want of room since the input was opened.
  [[nodiscard]] std::uint32_t OverflowCount() const;

  [[nodiscard]] std::int32_t DeviceID() const { return FDeviceID; }
  [[nodiscard]] const std::string& ProductName() const { return FProductName; }
  /// Take a device by number (-1: the system's choice) or exact name. Raise EMidiInputError.
  void SetDeviceID(std::int32_t id);
  void SetProductName(const std::string& name);

  // Settings that count from the next opening.
  bool FSysexOnly = false;
  TMidiMsgFilter FMsgFilter{TMidiMsg::msgActiveSensing, TMidiMsg::msgMidiTimeCode};
  std::uint16_t FCapacity = 1024;
  std::uint16_t FSysexBufferSize = 4096;
  std::uint16_t FSysexBufferCount = 16;

  TEvent FOnMIDIInput;
  TEvent FOnOverflow;
  TEvent FOnDeviceChanged;

 private:
  [[noreturn]] void Fail(const TDriverError& error);
  [[nodiscard]] std::int32_t DeviceToOpen();

  std::int32_t FDeviceID = MidiMapper;
  std::string FProductName;
  MidiInputState FState = MidiInputState::misCreating;
  int FError = 0;
  std::string errorText;
  std::uint32_t overflowsTold = 0;
  std::unique_ptr<TMidiCtlInfo> PCtlInfo;
  std::unique_ptr<IDriverInput> FMIDIHandle;  // behind what its callback uses, so that it goes first
};

}  // namespace Sonarello
