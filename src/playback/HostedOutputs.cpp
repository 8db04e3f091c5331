#include "playback/HostedOutputs.h"

#include "playback/NullAudioDevice.h"

namespace Sonarello {

namespace {

constexpr int BufferFrames = 441;  ///< 10 ms

}  // namespace

std::vector<TInstrumentSlot> SlotsOf(const TVSTInstruments& host) {
  std::vector<TInstrumentSlot> slots;
  for (const TVSTiArray& slot : host.VSTiArray())
    if (slot.Instrument)
      slots.push_back({.Name = slot.Name, .Handle = slot.Handle, .UniqueID = slot.uniqueID});
    else
      slots.emplace_back();
  return slots;
}

std::string StartFirstAudio(TVSTInstruments& host,
                            std::vector<std::unique_ptr<IAudioDriver>>& drivers) {
  drivers.push_back(std::make_unique<NullAudioDriver>());
  for (const auto& driver : drivers) {
    const std::vector<std::string> names = driver->DeviceNames();
    if (names.empty()) continue;
    try {
      host.StartAudio(*driver, 0, BufferFrames);
      return driver->ApiName() + ": " + names.front();
    } catch (const TAudioError&) {
      // The next system may do; the last one always does.
      continue;
    }
  }
  return {};
}

}  // namespace Sonarello
