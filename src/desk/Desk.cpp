#include "desk/Desk.h"

#include <utility>

#include "core/Texts.h"
#include "tools/RemoveCountIns.h"

namespace Sonarello {

Desk::Desk(const TDeskParts& p)
    : parts(p),
      ports(p.midi),
      outputs(ports, routes, &host),
      functions(song, options, routes, p.messages, hooks),
      player(TPlayerParts{song, options, routes, outputs, p.clock, gate, realtime, functions, &host}),
      names(song, sounds, options, routes),
      transpose(song, routes, gate, realtime, Sender()),
      redirection(song, p.messages, gate, realtime, Sender()),
      rerouting(song, routes, options, p.messages, gate),
      slider(player, song, realtime, gate),
      keys(song, realtime, outputs, gate, Sender()),
      strips(TStripsParts{song, options, routes, outputs, realtime, gate, player, functions}) {
  WireHooks();
  WireWork();
  WireStrips();
  routes.RoutesBuilt = [this] { outputs.RoutesBuilt(); };
  routes.ClosePorts = [this] { outputs.CloseAll(); };
}

Desk::~Desk() {
  if (IsPlaying()) player.Stop();
  keys.Release();
  thread.reset();
}

TSendMidiData Desk::Sender() {
  return [this](int route, std::uint8_t command, std::uint8_t data1, std::uint8_t data2) {
    player.SendHeld(route, command, data1, data2);
  };
}

void Desk::Tell(const std::function<void(SongObserver&)>& what) {
  for (SongObserver* observer : Observers) what(*observer);
}

const TMidiRouting& Desk::RouteOf(int channel) const {
  const std::span<const TMidiRouting> all = routes.MidiRouting();
  return all[RouteOfChannel(song, all, channel)];
}

void Desk::WireHooks() {
  const auto pass = [this](SongHooks::Step SongHooks::*step) {
    hooks.*step = [this, step](Song& s) {
      if (WindowHooks.*step) (WindowHooks.*step)(s);
    };
  };
  for (const auto step : {&SongHooks::WritePendingBackup, &SongHooks::CloseEditors,
                          &SongHooks::ReloadRevoicer, &SongHooks::ResetDesk, &SongHooks::ReadLyrics})
    pass(step);
  hooks.RemoveCountIn = [this](Song& s) { TRemoveCountIns(s, options).RemoveCountIn(); };
  hooks.CreateMidiData = [this](Song& s) {
    TNewMidiData(s, functions, routes, parts.messages).CreateMidiData(newSong);
  };
  hooks.SelectChannel = [](Song& s) {
    int first = 0;
    while (first < ChannelCount - 1 && !s.MidiData[static_cast<std::size_t>(first)].Active) ++first;
    if (!s.MidiData[static_cast<std::size_t>(first)].Active) first = 0;
    s.ActiveMidiIndex = first;
    s.ActiveMidiChannel = s.MidiData[static_cast<std::size_t>(first)].MidiChannel;
  };
  hooks.NoteCheckResult = [this](const std::string& verdict, bool) { noteCheck = verdict; };
  names.Wire(hooks);
}

void Desk::WireWork() {
  const auto endNotes = [this](int route, int channel) { player.EndNotesHeld(route, channel); };
  const auto changed = [this] { Changed(); };
  transpose.Hooks.EndNotes = endNotes;
  transpose.Hooks.ShowNotes = [this] { Tell([](SongObserver& o) { o.TimesChanged(); }); };
  transpose.Hooks.Changed = changed;
  redirection.Hooks.EndNotes = endNotes;
  redirection.Hooks.Changed = changed;
  redirection.Hooks.ShowLabel = [this](int strip, const TChannelLabel&) {
    Tell([strip](SongObserver& o) { o.StripChanged(strip); });
  };
  redirection.Hooks.ShowSound = [this](int strip) {
    Tell([strip](SongObserver& o) { o.SoundChanged(strip); });
  };
  redirection.Hooks.SelectStrip = [this](int) { Tell([](SongObserver& o) { o.SelectionChanged(); }); };
  rerouting.Hooks.CreateBrowser = [this](int value) {
    if (sounds.Find(value) == nullptr) LoadSounds();
  };
  rerouting.Hooks.ShowSound = [this](int channel) {
    Tell([channel](SongObserver& o) { o.SoundChanged(channel); });
  };
  rerouting.Hooks.ShowRoute = [this](std::size_t) {
    host.VSTiInUse = routes.VSTiInUse.load();
    Tell([](SongObserver& o) { o.SelectionChanged(); });
  };
  rerouting.Hooks.WakePlayer = [this] {
    if (player.Tag == Parked) player.Tag = AudioReady;
  };
  rerouting.Hooks.Changed = changed;
}

void Desk::WireStrips() {
  TStripsHooks& told = strips.Desk.Hooks;
  told.ShowStrip = [this](int channel) {
    Tell([channel](SongObserver& o) { o.StripChanged(channel); });
  };
  told.ShowMutes = [this] {
    for (int strip = 0; strip < ChannelCount; ++strip)
      Tell([strip](SongObserver& o) { o.StripChanged(strip); });
  };
  told.ShowSolos = [this](int) { strips.Desk.Hooks.ShowMutes(); };
  told.SelectionChanged = [this](int before, int) {
    Tell([this, before](SongObserver& o) {
      if (TStripsDesk::IsChannel(before)) o.StripChanged(before);
      if (TStripsDesk::IsChannel(song.ActiveMidiIndex)) o.StripChanged(song.ActiveMidiIndex);
      o.SelectionChanged();
    });
  };
  told.ShowController = [this](int channel, int controller, int value) {
    Tell([=](SongObserver& o) { o.ControllerChanged(channel, controller, value); });
  };
  told.EventChanged = [this](PtrMidiEvent event, bool becameReal) {
    Tell([=](SongObserver& o) { o.EventChanged(event, becameReal); });
  };
  told.Changed = [this] { Changed(); };
  told.TransposeChange = [this] { transpose.TransposeChange(song.TransposeNew, IsPlaying()); };
  told.TempoChange = [this] { Tell([](SongObserver& o) { o.TimesChanged(); }); };
}

}  // namespace Sonarello
