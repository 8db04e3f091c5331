// The desk's outputs, and the song on its way through them.
#include <algorithm>

#include "core/Texts.h"
#include "desk/Desk.h"
#include "playback/HostedOutputs.h"
#include "playback/MidiErrors.h"

namespace Sonarello {

namespace {

constexpr int MostSemitones = 24;

}  // namespace

void Desk::Start() {
  LoadSettings(parts.store, options, settings);
  SettingsChanged();
  routes.LoadSettings(parts.store, options.MultiMidi);
  BuildRoutes();
  thread = std::make_unique<TMidiPlayerThread>(player, parts.clock);
}

void Desk::SettingsChanged() {
  strips.Desk.Settings.GrabMidiDriver = settings.GrabMidiDriver;
  keys.GrabMidiDriver = settings.GrabMidiDriver;
  player.DisplayActive = settings.DisplayActive;
  player.RecMidiThru = settings.RecMidiThru;
  player.RecSendLocalOff = settings.RecSendLocalOff;
  const bool foldsElse = transpose.Settings.IntelligentTranspose != settings.IntelligentTranspose ||
                         transpose.Settings.IntelligentTransp_M != settings.IntelligentTransposeMode;
  transpose.Settings.IntelligentTranspose = settings.IntelligentTranspose;
  transpose.Settings.IntelligentTransp_M = settings.IntelligentTransposeMode;
  if (foldsElse && song.MidiFileLoaded && song.TransposeNew != 0)
    transpose.TransposeChange(song.TransposeNew, IsPlaying());
}

void Desk::StartAudio() {
  complaints.clear();
  try {
    if (parts.LoadSynthesizer) host.LoadInstrument(0, parts.LoadSynthesizer());
  } catch (const TAudioError& error) {
    complaints.emplace_back(error.what());
  }
  if (parts.FindAudio) audio = parts.FindAudio();
  StartFirstAudio(host, audio);
  BuildRoutes();
  ready = true;
}

void Desk::BuildRoutes() {
  if (IsPlaying()) player.Stop();
  keys.Release();
  player.EndAllNotes();
  {
    const auto held = gate.Enter();
    std::vector<TInstrumentSlot> slots = SlotsOf(host);
    routes.Build(OutDevices(ports.OutputNames(), slots), slots, settings.VirtualSynthDelay);
    for (std::size_t slot = 0; slot < slots.size(); ++slot)
      host.SetRoute(static_cast<int>(slot), slots[slot].MidiRoutingIdx);
    for (std::uint8_t& route : song.MidiOutIndex)
      if (route >= routes.MidiRouteElements()) route = 0;
    routes.UpdateVSTiUse(song);
    host.VSTiInUse = routes.VSTiInUse.load();
  }
  LoadSounds();
  Tell([](SongObserver& o) { o.RoutesChanged(); });
}

void Desk::LoadSounds() {
  struct Collector : IMessages {
    std::vector<std::string> Shown;
    void Show(const std::string& text) override { Shown.push_back(text); }
    bool Ask(const std::string&) override { return false; }
  } collector;
  for (const TMidiRouting& route : routes.MidiRouting())
    sounds.Load(route.InstrumValue,
                {.DataPath = options.DataPath,
                 .SortSounds = SortSounds && SortSounds(route.InstrumValue),
                 .LimexTE200 = options.LimexTE200},
                collector);
  for (const std::string& text : collector.Shown) parts.messages.Show(text);
}

void Desk::ReloadSounds() {
  for (const TMidiRouting& route : routes.MidiRouting()) sounds.Unload(route.InstrumValue);
  LoadSounds();
  for (int channel = 0; channel < ChannelCount; ++channel)
    Tell([channel](SongObserver& o) { o.SoundChanged(channel); });
}

std::vector<std::string> Desk::OutputNames() const {
  const std::vector<TInstrumentSlot> slots = SlotsOf(host);
  std::vector<std::string> result;
  for (const TDeviceList& device : OutDevices(SilentOutput(parts.midi).OutputNames(), slots))
    result.push_back(device.Name);
  return result;
}

std::vector<std::string> Desk::InputNames() const { return parts.midi.InputNames(); }

bool Desk::PlayButtonClick() {
  if (!song.MidiFileLoaded || IsPlaying()) return false;
  try {
    return player.Play();
  } catch (const EMidiOutputError& error) {
    parts.messages.Show(error.what());
    return false;
  }
}

void Desk::StopButtonClick() {
  if (!song.MidiFileLoaded) return;
  const bool rewinds = !IsPlaying();
  player.Stop();
  strips.Tempo.PlayerStopped();
  if (rewinds) strips.ReadFirstValues();
}

void Desk::EndOfSong() {
  if (IsPlaying() || !song.MidiFileLoaded) return;
  strips.Tempo.PlayerStopped();
  player.Stop();
  strips.ReadFirstValues();
}

bool Desk::SetLoop(std::int32_t start, std::int32_t end) {
  if (start < 0 || end <= start || end > song.SongLength) return false;
  player.SetLoop(start, end);
  return true;
}

void Desk::EndLoop() { player.EndLoop(); }

void Desk::Wind(std::int32_t milliseconds) {
  if (!song.MidiFileLoaded) return;
  const std::int64_t wanted = std::int64_t{player.TimePosition} + milliseconds;
  slider.TrackBarMouseDown();
  slider.TrackBarChange(
      static_cast<std::int32_t>(std::clamp<std::int64_t>(wanted, 0, std::max(song.SongLength, 0))));
  slider.TrackBarMouseUp();
}

void Desk::TransposeTo(int semitones) {
  if (!song.MidiFileLoaded) return;
  transpose.TransposeChange(std::clamp(semitones, -MostSemitones, MostSemitones), IsPlaying());
}

void Desk::MoveOctave(int channel, int octaves) {
  if (!song.MidiFileLoaded) return;
  strips.MoveOctave(channel, octaves);
}

}  // namespace Sonarello
