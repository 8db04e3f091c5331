// Sonarello: a MIDI output.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>

#include "playback/MidiErrors.h"
#include "playback/MidiType.h"

namespace Sonarello {

enum class MidiOutputState { mosOpen, mosClosed };

/// What kind of device an output is.
enum class OutPortTech { opt_None, opt_MidiPort, opt_Synth, opt_SQSynth, opt_FMSynth, opt_Mapper };

/// What an output was doing when it failed.
enum class MidiOutMode { General, Caching, ShortMessage, LongMessage, PrepareHeader };

/// The text for an error number: the one for the mode and number, else the system's own words, and if
/// it has none a text that says so.
[[nodiscard]] std::string MidiOutErrorString(MidiOutMode mode, int error,
                                             const std::string& systemText);

/// A MIDI output. `PutShort`, `PutLong`, `PutMidiEvent` and what is made of them may be called by any
/// thread, also while the main thread opens and closes; messages never mix. All operations raise
/// EMidiOutputError; nothing is tried again.
class TMidiOutput : public TMidiIO {
 public:
  using TEvent = std::function<void(TMidiOutput&)>;

  /// Takes device 0 if there is any, else none (-1).
  explicit TMidiOutput(IMidiDriver& midi);
  ~TMidiOutput() override;

  /// Devices that there are now.
  [[nodiscard]] virtual std::int32_t DeviceCount();
  /// Opens the device. True if it is open then.
  virtual bool Open();
  /// Closes the device. True if it is closed then.
  virtual bool Close();
  /// Takes another device: closes first, opens again if told to. False if it did not close or open.
  virtual bool ChangeDevice(std::int32_t newDeviceID, bool openAfterChange);
  /// Sends its sysex if it has one, else the short message.
  virtual void PutMidiEvent(const TMyMidiEvent& theEvent);
  /// Sends a short message: as many of the three bytes as belong to the status.
  virtual void PutShort(std::uint8_t midiMessage, std::uint8_t data1, std::uint8_t data2);
  /// Sends a sysex of any length. Returns when the system has taken all of it; `FOnMidiOutput` fires
  /// with the next `Pump`.
  virtual void PutLong(std::span<const std::uint8_t> theSysex);

  // Channels count from 0; keys, velocities and values from 0 to 127.
  void NoteOn(std::uint8_t channel, std::uint8_t key, std::uint8_t velocity);
  void NoteOff(std::uint8_t channel, std::uint8_t key, std::uint8_t velocity);
  void NoteAftertouch(std::uint8_t channel, std::uint8_t key, std::uint8_t pressure);
  void ChannelAftertouch(std::uint8_t channel, std::uint8_t pressure);
  void ControllerChange(std::uint8_t channel, std::uint8_t controller, std::uint8_t value);
  void ProgramChange(std::uint8_t channel, std::uint8_t program);
  /// Bank select (controllers 0 and 32) and program change.
  void ChangeInstrument(std::uint8_t channel, std::uint8_t bankMSB, std::uint8_t bankLSB,
                        std::uint8_t program);

  // What no MIDI system of ours can do: these check what they are given and raise that error.
  /// Volume of the device, left in the low word and right in the high word.
  void SetVolume(std::uint32_t volume);
  [[nodiscard]] std::uint32_t GetVolume();
  /// Loads sounds or drum keys ahead; `flags`: 1 all, 2 best fit, 3 query, 4 uncache.
  void CachePatches(std::uint16_t bank, std::span<const std::uint16_t> patches, std::uint32_t flags);
  void CacheDrumPatches(std::uint16_t patch, std::span<const std::uint16_t> keys, std::uint32_t flags);
  /// A message to the driver itself.
  std::uint32_t DriverMidiMessage(std::uint32_t message, std::uintptr_t parameter1,
                                  std::uintptr_t parameter2);

  /// Fires `FOnMidiOutput` once for each `PutLong` that has finished.
  void Pump() override;

  [[nodiscard]] MidiOutputState State() const { return FState.load(std::memory_order_acquire); }
  [[nodiscard]] bool IsOpen() const { return State() == MidiOutputState::mosOpen; }
  /// Number of the last error, 0 for none since the output was opened.
  [[nodiscard]] int Error() const { return FError.load(std::memory_order_relaxed); }
  [[nodiscard]] std::int32_t DeviceID() const { return FDeviceID; }
  [[nodiscard]] const std::string& ProductName() const { return FProductName; }
  [[nodiscard]] OutPortTech Technology() const { return FTechnology; }
  /// Take a device by number (-1: the system's choice), exact name, or as the first of a kind.
  void SetDeviceID(std::int32_t id);
  void SetProductName(const std::string& name);
  void SetTechnology(OutPortTech technology);

  /// Closing ends all that sounds, on all channels.
  bool FUseFullReset = false;

  TEvent FOnMidiOutput;
  TEvent FOnDeviceChanged;

 private:
  [[noreturn]] void Fail(MidiOutMode mode, int error, const std::string& systemText);
  void Send(MidiOutMode mode, std::span<const std::uint8_t> message);
  void FullReset() noexcept;
  void Cache(bool patches, std::uint32_t flags);
  void RefuseWhileOpen(std::string_view what) const;
  [[nodiscard]] std::int32_t DeviceToOpen();

  std::int32_t FDeviceID = MidiMapper;
  std::string FProductName;
  OutPortTech FTechnology = OutPortTech::opt_None;
  std::atomic<MidiOutputState> FState{MidiOutputState::mosClosed};
  std::atomic<int> FError{0};
  std::atomic<std::uint32_t> longDone{0};
  std::uint32_t longTold = 0;
  std::atomic<bool> notified{false};
  std::mutex sending;  ///< guards the handle: one message at a time, and none while it goes
  std::unique_ptr<IDriverOutput> FMIDIHandle;
};

}  // namespace Sonarello
