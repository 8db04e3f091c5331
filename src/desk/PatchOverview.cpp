#include "desk/PatchOverview.h"

#include <algorithm>

#include "core/Texts.h"
#include "desk/SoundBrowserInsertion.h"
#include "playback/Redirection.h"

namespace Sonarello {

TPatchRow TPatchOverview::Row(int channel) const {
  const TMidiChannelData& data = song.MidiData[static_cast<std::size_t>(channel)];
  const TChannelLabel label = ChannelLabelOf(song, channel);
  TPatchRow row;
  row.Number = label.Text();
  row.Redirected = label.Red;
  if (!song.MidiFileLoaded) return row;
  row.Active = data.ActiveNotes > 0;
  row.Drums = data.DrumPart > 0;
  row.Selected = song.ActiveMidiIndex == channel;
  row.Mute = data.Mute;
  row.Solo = data.Solo;
  row.Rec = data.Rec;
  row.MuteBySolo = data.Mute && std::ranges::any_of(song.MidiData, &TMidiChannelData::Solo);
  row.Sound = row.Active || data.Patch >= 0 ? names.CurrentName(channel) : Text("notenlos", "noteless");
  row.Hint = names.BankHint(channel);
  if (row.Drums) row.Part = "Drums " + std::to_string(data.DrumPart);
  const auto table = routes.MidiRouting();
  if (table.size() < 2 || (!row.Active && data.Patch < 0)) return row;
  const std::size_t route = song.MidiOutIndex[static_cast<std::size_t>(channel)];
  row.Part += (row.Part.empty() ? "" : " · ") + table[route < table.size() ? route : 0].Instrument;
  return row;
}

bool TPatchOverview::CanOpen(int channel) const {
  if (!song.MidiFileLoaded || channel < 0 || channel >= ChannelCount) return false;
  return song.MidiData[static_cast<std::size_t>(channel)].Patch >= 0 || CanInsertPatch(channel);
}

void TPatchOverview::L_PatchMouseUp(int channel) {
  if (!CanOpen(channel)) return;
  if (Hooks.SelectChannel) Hooks.SelectChannel(channel);
  if (Hooks.OpenBrowser) Hooks.OpenBrowser(channel);
}

bool TPatchOverview::CanInsertPatch(int channel) const {
  return Sonarello::CanInsertPatch(song, channel);
}

bool TPatchOverview::PM_InsertPatchClick(int channel) {
  if (!CanInsertPatch(channel) || !messages.Ask(InsertPatchQuestion(channel))) return false;
  std::string failure;
  bool inserted = false;
  {
    const auto held = gate.Enter();
    try {
      inserted = InsertPatchAtSetup(song, names, channel);
    } catch (const EMidiError& error) {
      failure = error.what();
    }
  }
  if (!failure.empty()) messages.Show(failure);
  if (!inserted) return false;
  if (Hooks.Changed) Hooks.Changed();
  if (Hooks.EventsChanged) Hooks.EventsChanged(channel);
  if (Hooks.SoundChanged) Hooks.SoundChanged(channel);
  return true;
}

}  // namespace Sonarello
