#include "desk/RevoicerDesk.h"

#include "core/MidiFunctions.h"
#include "core/Texts.h"
#include "instruments/InstrumentArray.h"

namespace Sonarello {

namespace {

/// "one change" or "3 changes".
std::string Counted(std::int32_t count, const std::string& one, const std::string& several) {
  return count == 1 ? one : std::to_string(count) + several;
}

}  // namespace

void TRevoicerDesk::LoadRevoiceData() {
  const TMidiRouting& main = routes.MidiRouting().front();
  const TInstrument* row = InstrumentByValue(main.InstrumValue);
  const std::string name(row == nullptr ? std::string_view(main.Instrument) : row->Name);
  if (revoicer.Instrument() == name) return;
  revoicer.LoadRevoiceData(settings, name, messages);
  ForgetRun();
}

TRevoicerGridRow TRevoicerDesk::Row(int index) const {
  const TRevoicerRec& rec = revoicer.RevoicerArray[static_cast<std::size_t>(index)];
  return {.Pos = std::to_string(index + 1),
          .SourceName = rec.SourceVoiceName,
          .SourceAddress = AddressText(rec.Source()),
          .DestName = rec.DestVoiceName,
          .DestAddress = AddressText(rec.Dest())};
}

void TRevoicerDesk::Btn_DeleteClick(int index) {
  if (index < 0 || index >= RowCount()) return;
  revoicer.Delete(settings, index);
  if (Hooks.ListChanged) Hooks.ListChanged();
}

bool TRevoicerDesk::Btn_RevoiceClick() {
  if (!CanRevoice()) return false;
  if (Hooks.IsPlaying && Hooks.IsPlaying()) {
    messages.Show(Text("Bitte halten Sie die Wiedergabe an.", "Not allowed during playback."));
    return false;
  }
  TRevoiceResult run;
  std::string failure;
  {
    const auto held = gate.Enter();
    try {
      run = revoicer.Revoice(song, routes);
    } catch (const EMidiError& error) {
      failure = error.what();
    }
  }
  if (!failure.empty()) {
    messages.Show(failure);
    return false;
  }
  Tell(run);
  if (run.Replaced > 0 && Hooks.Changed) Hooks.Changed();
  for (int c = 0; c < ChannelCount; ++c)
    if (run.Channels.test(static_cast<std::size_t>(c)) && Hooks.SoundChanged) Hooks.SoundChanged(c);
  if (Hooks.EventsChanged) Hooks.EventsChanged();
  return true;
}

void TRevoicerDesk::Tell(const TRevoiceResult& run) {
  protocol.clear();
  for (const TRevoiceLine& line : run.Protocol)
    protocol.push_back(TicksToStr(song, line.Position) + line.Text);
  const auto leftOut = static_cast<std::int32_t>(protocol.size());
  result = Counted(run.Replaced, Text("1 Klang ersetzt", "1 sound replaced"),
                   Text(" Klänge ersetzt", " sounds replaced"));
  if (run.Inserted > 0)
    result += ", " + Counted(run.Inserted, Text("1 Bankwahl eingefügt", "1 bank select inserted"),
                             Text(" Bankwahlen eingefügt", " bank selects inserted"));
  if (leftOut > 0)
    result +=
        ", " + Counted(leftOut, Text("1 ohne Bankwahl übergangen", "1 without bank select left out"),
                       Text(" ohne Bankwahl übergangen", " without bank select left out"));
  result += ".";
}

void TRevoicerDesk::ForgetRun() {
  result.clear();
  protocol.clear();
}

}  // namespace Sonarello
