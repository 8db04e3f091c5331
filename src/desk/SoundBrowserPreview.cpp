#include "desk/SoundBrowserPreview.h"

#include <algorithm>

#include "core/EventList.h"
#include "playback/EventMessages.h"

namespace Sonarello {

namespace {

constexpr std::size_t BankMSB = 0;
constexpr std::size_t BankLSB = 32;

/// A message of a channel as the song would send it: on its wire channel, and none that its output
/// does not take.
std::optional<TOutgoing> Outgoing(const Song& song, const TRealtimeData& realtime,
                                  const IRoutes& routes, std::uint8_t kind, int channel, int data1,
                                  int data2) {
  TypMidiEvent event;
  event.Command = static_cast<std::uint8_t>(kind | channel);
  event.DType = ShortEvent;
  event.DLength = MessageLength(kind);
  event.Value = {static_cast<std::uint8_t>(data1), static_cast<std::uint8_t>(data2)};
  return MessageOf(song, realtime, routes, event);
}

}  // namespace

bool TSoundPreview::IsReady(int channel) {
  const int route = song.MidiOutIndex[static_cast<std::size_t>(channel)];
  return outputs.IsOpen(route) || (GrabMidiDriver && outputs.Open(route));
}

bool TSoundPreview::Send(int channel, const TVoiceMessage& voice) {
  bool ready = false;
  try {
    ready = IsReady(channel);
  } catch (...) {
    const auto held = gate.Enter();
    Set(channel, voice);
    throw;
  }
  const auto held = gate.Enter();
  if (ready)
    SendHeld(channel, voice);
  else
    Set(channel, voice);
  return ready;
}

/// What goes out now must not be overtaken by what was parked before.
void TSoundPreview::SendHeld(int channel, const TVoiceMessage& voice) {
  const auto put = [&](std::uint8_t kind, int data1, int data2) {
    if (data1 < 0 || data2 < 0) return;
    if (const auto message = Outgoing(song, realtime, routes, kind, channel, data1, data2))
      send(message->Route, message->Status, message->Data1, message->Data2);
  };
  put(Controller, static_cast<int>(BankMSB), voice.Address.CC00);
  put(Controller, static_cast<int>(BankLSB), voice.Address.CC32);
  put(ProgramChange, voice.Address.Patch, 0);
  TRealtime& pending = realtime.Realtime[static_cast<std::size_t>(channel)];
  pending.Ctrl[BankMSB] = pending.Ctrl[BankLSB] = NothingPending;
  pending.Patch = -1;
  for (std::size_t i = 0; i < VoiceControllers.size(); ++i) {
    if (voice.Controllers[i] < 0) continue;
    put(Controller, VoiceControllers[i], voice.Controllers[i]);
    pending.Ctrl[VoiceControllers[i]] = NothingPending;
  }
}

/// Controllers that the sound does not set keep what the desk has parked.
void TSoundPreview::Set(int channel, const TVoiceMessage& voice) {
  TRealtime& pending = realtime.Realtime[static_cast<std::size_t>(channel)];
  pending.Ctrl[BankMSB] = voice.Address.CC00;
  pending.Ctrl[BankLSB] = voice.Address.CC32;
  pending.Patch = static_cast<std::int8_t>(voice.Address.Patch);
  for (std::size_t i = 0; i < VoiceControllers.size(); ++i)
    if (voice.Controllers[i] >= 0) pending.Ctrl[VoiceControllers[i]] = voice.Controllers[i];
}

TVoiceMessage TSoundPreview::Parked(int channel) const {
  const TRealtime& pending = realtime.Realtime[static_cast<std::size_t>(channel)];
  TVoiceMessage voice;
  voice.Address = {pending.Ctrl[BankMSB], pending.Ctrl[BankLSB], pending.Patch};
  for (std::size_t i = 0; i < VoiceControllers.size(); ++i)
    voice.Controllers[i] = pending.Ctrl[VoiceControllers[i]];
  return voice;
}

void TSoundPreview::Park(int channel, const TVoiceMessage& voice) {
  Set(channel, voice);
  TRealtime& pending = realtime.Realtime[static_cast<std::size_t>(channel)];
  for (std::size_t i = 0; i < VoiceControllers.size(); ++i)
    pending.Ctrl[VoiceControllers[i]] = voice.Controllers[i];
}

bool TSoundPreview::Play(int channel, int key, int velocity) {
  constexpr int loudest = 127;
  EndNote();
  if (key < 0 || key >= KeyCount || velocity <= 0) return false;
  if (!IsReady(channel)) return false;
  const auto held = gate.Enter();
  // A program's message tells route and wire channel; a mute does not silence a preview.
  const auto wire = Outgoing(song, realtime, routes, ProgramChange, channel, 0, 0);
  if (!wire) return false;
  sounding = TNote{wire->Route, static_cast<std::uint8_t>(wire->Status & 0x0F),
                   static_cast<std::uint8_t>(key)};
  send(sounding->Route, static_cast<std::uint8_t>(NoteOn | sounding->Channel), sounding->Key,
       static_cast<std::uint8_t>(std::min(velocity, loudest)));
  return true;
}

void TSoundPreview::EndNote() {
  constexpr std::uint8_t releaseVelocity = 64;
  if (!sounding) return;
  const TNote note = *sounding;
  sounding.reset();
  const auto held = gate.Enter();
  send(note.Route, static_cast<std::uint8_t>(NoteOff | note.Channel), note.Key, releaseVelocity);
}

}  // namespace Sonarello
