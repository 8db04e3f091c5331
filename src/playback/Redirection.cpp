#include "playback/Redirection.h"

#include "core/Texts.h"

namespace Sonarello {

namespace {

constexpr std::size_t BankMSB = 0;
constexpr std::size_t BankLSB = 32;
/// Controllers that are sent anew behind the sound.
constexpr std::uint8_t MixControllers[] = {7, 10, 11, 71, 72, 73, 74, 91, 93, 94};

std::size_t Index(int strip) { return static_cast<std::size_t>(strip); }

std::uint8_t StatusOf(Status kind, int channel) { return static_cast<std::uint8_t>(kind | channel); }

void Call(const auto& hook, const auto&... arguments) {
  if (hook) hook(arguments...);
}

}  // namespace

TChannelLabel ChannelLabelOf(const Song& song, int strip) {
  const int channel = song.MidiData[Index(strip)].MidiChannel;
  return {channel + 1, channel != strip};
}

int StripShowing(const Song& song, int channel) {
  for (int strip = ChannelCount - 1; strip > 0; --strip)
    if (song.MidiData[Index(strip)].MidiChannel == channel) return strip;
  return 0;
}

std::string ActiveChannelText(int channel) {
  return Text("Aktiver Midikanal: ", "Active midi channel: ") + std::to_string(channel + 1);
}

std::vector<std::string> TrackListLines(const Song& song,
                                        const std::function<std::string(int strip)>& patchName) {
  std::vector<std::string> lines = {"Master"};
  for (int strip = 0; strip < ChannelCount; ++strip) {
    const TMidiChannelData& data = song.MidiData[Index(strip)];
    lines.push_back(Text("K: ", "Ch: ") + std::to_string(data.MidiChannel + 1) +
                    (data.Active ? ", " + patchName(strip) : Text(", notenlos", ", noteless")));
  }
  return lines;
}

RedirectionResult TRedirection::Redirect(int OldChannel, int NewChannel, bool isPlaying) {
  if (OldChannel < 0 || OldChannel >= ChannelCount || OldChannel == NewChannel ||
      !IsOffered(NewChannel))
    return RedirectionResult::Refused;
  const int stripA = StripShowing(song, NewChannel);
  const int stripB = StripShowing(song, OldChannel);
  const auto& inEditor = Hooks.IsInFurtherDrumEditor;
  if (inEditor && (inEditor(stripA) || inEditor(stripB))) {
    messages.Show(
        Text("Funktion nicht auf Drumspuren anwendbar!", "Function not allowed on drum tracks!"));
    return RedirectionResult::Refused;
  }
  if (!MayTake(stripA, OldChannel, NewChannel)) return RedirectionResult::Declined;
  Call(Hooks.Changed);
  ShowHeading(stripA, stripB, OldChannel, NewChannel);
  {
    // In one go, so that no note starts on the old channel in between and ends on the new one.
    const auto held = gate.Enter();
    Silence(stripB, OldChannel, stripA, isPlaying);
    Exchange(stripA, stripB, OldChannel, NewChannel);
  }
  ShowStrips(stripA, stripB, NewChannel);
  Call(Hooks.SwapYamahaParts, OldChannel, NewChannel);
  Call(Hooks.SwapKorgPartEQ, stripA, stripB);
  {
    const auto held = gate.Enter();
    Silence(stripA, NewChannel, stripB, isPlaying);
  }
  Call(Hooks.ShowTracks, stripA, stripB);
  return RedirectionResult::Done;
}

bool TRedirection::MayTake(int strip, int OldChannel, int NewChannel) {
  if (!song.MidiData[Index(strip)].Active) return true;
  const std::string from = std::to_string(OldChannel + 1);
  const std::string to = std::to_string(NewChannel + 1);
  return messages.Ask(
      Text("Es befinden sich bereits Daten auf Midikanal ",
           "There are already midi events on midi channel ") +
      to + "!\r" +
      Text("Sollen die Daten vom Midikanal ", "Should the midi events from midi channel ") + from +
      Text(" auf Midikanal ", " be redirected on midi channel ") + to +
      Text(" umgeleitet werden?", "?"));
}

void TRedirection::ShowHeading(int stripA, int stripB, int OldChannel, int NewChannel) const {
  if (song.ActiveMidiIndex == stripA) Call(Hooks.ShowHeading, ActiveChannelText(OldChannel));
  if (song.ActiveMidiIndex == stripB) Call(Hooks.ShowHeading, ActiveChannelText(NewChannel));
}

/// Ends what a strip sounds on a channel and prepares the channel for the strip that takes it over.
void TRedirection::Silence(int silenced, int channel, int successor, bool isPlaying) {
  if (!isPlaying) {
    realtime.Realtime[Index(silenced)].AllSoundOff = 1;
    return;
  }
  const int route = song.MidiOutIndex[Index(silenced)];
  if (Hooks.EndNotes) Hooks.EndNotes(route, channel);
  send(route, StatusOf(Controller, channel), AllSoundOffController, 0);
  send(route, StatusOf(Controller, channel), AllNotesOffController, 0);
  SendValues(successor, route, channel);
  // On a route of its own the successor plays there, not where the channel was silenced.
  const int own = song.MidiOutIndex[Index(successor)];
  if (own != route) SendValues(successor, own, channel);
}

void TRedirection::SendValues(int strip, int route, int channel) const {
  const TMidiChannelData& data = song.MidiData[Index(strip)];
  const auto sendController = [&](std::size_t number) {
    const std::uint8_t value = data.CtrlArray[number].Value;
    if (value == NoControllerValue) return;
    send(route, StatusOf(Controller, channel), static_cast<std::uint8_t>(number), value);
  };
  sendController(BankMSB);
  sendController(BankLSB);
  if (data.Patch >= 0)
    send(route, StatusOf(ProgramChange, channel), static_cast<std::uint8_t>(data.Patch), 0);
  for (const std::uint8_t number : MixControllers) sendController(number);
}

void TRedirection::Exchange(int stripA, int stripB, int OldChannel, int NewChannel) {
  song.MidiData[Index(stripA)].MidiChannel = static_cast<std::int8_t>(OldChannel);
  song.MidiData[Index(stripB)].MidiChannel = static_cast<std::int8_t>(NewChannel);
  realtime.Realtime[Index(stripA)].MidiChannel = static_cast<std::uint8_t>(OldChannel);
  realtime.Realtime[Index(stripB)].MidiChannel = static_cast<std::uint8_t>(NewChannel);
}

void TRedirection::ShowStrips(int stripA, int stripB, int NewChannel) {
  for (const int strip : {stripA, stripB}) Call(Hooks.ShowLabel, strip, ChannelLabelOf(song, strip));
  for (const int strip : {stripA, stripB}) Call(Hooks.ShowSound, strip);
  if (song.ActiveMidiIndex != stripA && song.ActiveMidiIndex != stripB) return;
  // Deliberately the new channel for either strip, though strip A goes out on the old one.
  song.ActiveMidiChannel = NewChannel;
  Call(Hooks.SelectStrip, song.ActiveMidiIndex);
}

}  // namespace Sonarello
