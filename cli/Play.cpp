#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "Commands.h"
#include "DisplayText.h"
#include "Interrupts.h"
#include "PlaybackDesk.h"
#include "SongFacts.h"
#include "core/Texts.h"
#include "desk/PlaceText.h"
#include "playback/LiveTempo.h"

namespace Sonarello {

namespace {

/// The times that the options ask for, ms.
struct Range {
  std::int32_t From = 0;
  std::optional<std::int32_t> To;
  std::optional<std::pair<std::int32_t, std::int32_t>> Loop;
};

std::optional<Range> RangeOf(const Arguments& arguments, const PlaybackDesk& desk,
                             std::string& complaint) {
  Range range;
  const auto place = [&](const std::string& text, std::int32_t& time) {
    const auto found = TimeOfPlace(desk.Desk().song, text);
    if (found) time = *found;
    if (!found)
      complaint = Text("Diese Stelle gibt es im Song nicht: ", "The song has no such place: ") + text;
    return found.has_value();
  };
  if (!arguments.From.empty() && !place(arguments.From, range.From)) return std::nullopt;
  if (!arguments.To.empty() && !place(arguments.To, range.To.emplace())) return std::nullopt;
  if (!arguments.Loop.empty()) {
    const std::size_t dash = arguments.Loop.find('-');
    auto& loop = range.Loop.emplace();
    if (!place(arguments.Loop.substr(0, dash), loop.first) ||
        !place(dash == std::string::npos ? std::string() : arguments.Loop.substr(dash + 1),
               loop.second))
      return std::nullopt;
  }
  return range;
}

std::string ProgressText(const Song& song, std::int32_t position) {
  const std::int32_t tick = TickOfTime(song, position);
  return fmt::format("{}  {} / {}", SongPositionToMTC(song, tick), TimeText(position),
                     TimeText(song.SongLength));
}

void WaitForTheEnd(PlaybackDesk& playback, const Range& range, const Arguments& arguments,
                   Console& console) {
  TMidiPlayer& player = playback.Player();
  const Song& song = playback.Desk().song;
  while (player.State == TMidiPlayerState::stPlaying && !InterruptGuard::Came()) {
    const std::int32_t position = player.TimePosition;
    if (range.To && position >= *range.To) break;
    if (!arguments.Quiet) console.Progress(ProgressText(song, std::min(position, song.SongLength)));
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  console.Progress({});
  if (player.State == TMidiPlayerState::stPlaying) player.Stop();
  // What the last buffers hold is still to be heard.
  std::this_thread::sleep_for(std::chrono::milliseconds(playback.Host().BufferTime()));
}

bool Start(PlaybackDesk& playback, Console& console) {
  try {
    if (playback.Player().Play()) return true;
    console.Err(Text("Ein MIDI-Ausgang lässt sich nicht öffnen", "a MIDI output cannot be opened"));
  } catch (const EMidiOutputError& error) {
    console.Err(std::string("sonarello-cli: ") + error.what());
  }
  return false;
}

}  // namespace

int PlayCommand(const Arguments& arguments, const Setup& setup, Console& console) {
  const std::string& file = arguments.Files.front();
  PlaybackDesk playback(arguments);
  if (!playback.Prepare(setup, file, console)) return Refused;
  std::string complaint;
  const std::optional<Range> range = RangeOf(arguments, playback, complaint);
  if (!range) {
    console.Err("sonarello-cli: " + complaint);
    return WrongUsage;
  }
  const InterruptGuard guard;
  const std::string device = playback.Host().VSTiInUse ? playback.StartAudio() : std::string();
  if (!arguments.Quiet)
    for (const TMidiRouting& route : playback.SongSetup().routes.Table)
      console.Err(fmt::format("{} -> {}{}", route.Instrument, route.OutputName,
                              route.VSTi ? " (" + device + ")" : std::string()));
  if (range->From > 0) playback.Player().MoveToTimePosition(range->From);
  if (range->Loop) playback.Player().SetLoop(range->Loop->first, range->Loop->second);
  playback.StartThread();
  if (!Start(playback, console)) return Refused;
  WaitForTheEnd(playback, *range, arguments, console);
  return Done;
}

}  // namespace Sonarello
