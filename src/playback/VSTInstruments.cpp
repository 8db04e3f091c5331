#include "playback/VSTInstruments.h"

#include <algorithm>
#include <utility>

#include "core/Texts.h"

namespace Sonarello {

TVSTInstruments::TVSTInstruments() {
  for (std::size_t slot = 0; slot < instruments.size(); ++slot)
    instruments[slot].Slot = static_cast<int>(slot);
  for (std::size_t slot = 0; slot < effects.size(); ++slot) effects[slot].Slot = static_cast<int>(slot);
}

TVSTInstruments::~TVSTInstruments() { StopAudio(); }

std::string TVSTInstruments::OutputName(int slot, const std::string& name) const {
  // This module is known as an instrument of the catalogue by its plain name.
  const std::string base = name.starts_with("Roland SC-VA") ? name : name + " (VSTi)";
  std::string unique = base;
  const auto taken = [&](const TVSTiArray& other) {
    return other.isOK && other.Slot != slot && other.Name == unique;
  };
  for (int number = 2; std::ranges::any_of(instruments, taken); ++number)
    unique = base + " #" + std::to_string(number);
  return unique;
}

void TVSTInstruments::LoadInstrument(int slot, std::unique_ptr<IHostedInstrument> instrument) {
  TVSTiArray& place = instruments.at(static_cast<std::size_t>(slot));
  TVSTiArray filled;
  filled.Slot = slot;
  filled.fLeft = place.fLeft;
  filled.fTop = place.fTop;
  if (instrument != nullptr) {
    filled.Handle = ++lastHandle;
    filled.initDelay = instrument->InitDelay();
    filled.isOK = true;
    filled.Name = OutputName(slot, instrument->Name());
    filled.uniqueID = instrument->UniqueID();
    filled.Instrument = std::move(instrument);
  }
  graph.SetInstrument(slot, filled.Instrument.get());
  {
    const std::scoped_lock lock(sending);
    std::swap(place, filled);
  }
  VSTiLoaded = std::ranges::any_of(instruments, &TVSTiArray::isOK);
}

void TVSTInstruments::LoadEffect(int slot, std::unique_ptr<IHostedEffect> effect,
                                 std::string fileName) {
  TVSTArray& place = effects.at(static_cast<std::size_t>(slot));
  TVSTArray filled;
  filled.Slot = slot;
  filled.fLeft = place.fLeft;
  filled.fTop = place.fTop;
  if (effect != nullptr) {
    filled.FileName = std::move(fileName);
    filled.Handle = ++lastHandle;
    filled.initDelay = effect->InitDelay();
    filled.isOK = true;
    filled.Name = effect->Name();
    filled.uniqueID = effect->UniqueID();
    filled.Effect = std::move(effect);
  }
  graph.SetBypass(slot, false);
  graph.SetEffect(slot, filled.Effect.get());
  std::swap(place, filled);
}

void TVSTInstruments::SetBypass(int slot, bool bypassed) {
  effects.at(static_cast<std::size_t>(slot)).Bypassed = bypassed;
  graph.SetBypass(slot, bypassed);
}

void TVSTInstruments::SetRoute(int slot, int route) {
  instruments.at(static_cast<std::size_t>(slot)).MidiRoutingIdx = route;
}

void TVSTInstruments::ResetAll() {
  for (const TVSTiArray& slot : instruments)
    if (slot.Instrument != nullptr) slot.Instrument->Reset();
  graph.ResetEffects();
}

IHostedInstrument* TVSTInstruments::Receiver(std::uint32_t handle) noexcept {
  const auto slot = std::ranges::find(instruments, handle, &TVSTiArray::Handle);
  return handle == 0 || slot == instruments.end() ? nullptr : slot->Instrument.get();
}

void TVSTInstruments::SendMidiData(std::uint32_t VSTiHandle, std::uint8_t Status, std::uint8_t Data1,
                                   std::uint8_t Data2) {
  const std::scoped_lock lock(sending);
  if (IHostedInstrument* instrument = Receiver(VSTiHandle))
    instrument->SendMidiData(Status, Data1, Data2);
}

void TVSTInstruments::SendSysex(std::uint32_t VSTiHandle, std::span<const std::uint8_t> Data) {
  const std::scoped_lock lock(sending);
  if (IHostedInstrument* instrument = Receiver(VSTiHandle)) instrument->SendSysex(Data);
}

void TVSTInstruments::StartAudio(IAudioDriver& driver, int device, int bufferFrames) {
  StopAudio();
  if (driver.DeviceNames().empty())
    throw TAudioError(Text("Keine Audio-Ausgänge gefunden.", "No audio devices found."));
  graph.StartDevice(driver, device, bufferFrames);
  AudioPlaying = true;
}

void TVSTInstruments::StopAudio() {
  AudioPlaying = false;
  graph.StopDevice();
}

bool TVSTInstruments::IsRunning() const {
  return VSTiEnabled && VSTiInUse && VSTiLoaded && AudioPlaying;
}

void TVSTInstruments::PutNewData(int bytes) {
  const bool taken = graph.PutNewData(bytes);
  queueFull = !taken;
  if (taken) PutBytesCounter += bytes / BytesPerFrame * BytesPerFrame;
}

std::string TVSTInstruments::CurrError() const {
  if (!queueFull) return {};
  return Text("Der Audio-Ausgang nimmt keine Daten an.", "The audio device takes no data.");
}

void TVSTInstruments::DelayStart(int buffers) {
  graph.SwitchToMidiPlayThread = false;
  bytesAtDelay = graph.AudioMixerBytesCnt;
  delayBegan = std::chrono::steady_clock::now();
  graph.DelayStart = buffers;
  if (buffers <= 0) graph.SwitchToMidiPlayThread = true;
}

bool TVSTInstruments::IsStartDue() {
  if (graph.SwitchToMidiPlayThread.exchange(false)) return true;
  // A device that has gone silent for good must not keep the song from playing on the other outputs.
  constexpr auto patience = std::chrono::seconds(1);
  if (graph.DelayStart == 0 || graph.AudioMixerBytesCnt != bytesAtDelay ||
      std::chrono::steady_clock::now() - delayBegan < patience)
    return false;
  graph.DelayStart = 0;
  return true;
}

}  // namespace Sonarello
