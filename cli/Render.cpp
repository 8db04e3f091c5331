#include <fmt/format.h>

#include "Commands.h"
#include "DisplayText.h"
#include "PlaybackDesk.h"
#include "SongFacts.h"
#include "core/TextEncoding.h"
#include "core/Texts.h"
#include "playback/SongRender.h"
#include "playback/WavFile.h"

#include <nlohmann/json.hpp>

namespace Sonarello {

namespace {

TWavFormat FormatOf(const std::string& bits) {
  if (bits == "16d") return TWavFormat::Bits16Dither;
  return bits == "32" ? TWavFormat::Float32 : TWavFormat::Bits16;
}

}  // namespace

int RenderCommand(const Arguments& arguments, const Setup& setup, Console& console) {
  const std::string& file = arguments.Files.front();
  PlaybackDesk playback(arguments);
  if (!playback.Prepare(setup, file, console)) return Refused;
  if (!playback.Host().VSTiInUse) {
    console.Err(Text("Kein Kanal spielt auf dem eingebauten Synthesizer; es gibt nichts zu rechnen",
                     "no channel plays on the built-in synthesizer; there is nothing to render"));
    return Refused;
  }
  try {
    TWavFile wav(arguments.Output, FormatOf(arguments.Bits));
    AudioGraph& graph = playback.Host().Graph();
    graph.TakeOffline();
    playback.Host().ResetAll();
    TSongRender render(playback.Desk().song, playback.Realtime(), playback.SongSetup().routes,
                       playback.Outputs(), graph);
    render.Run([&](std::span<const float> frames) { wav.Write(frames); },
               [&](double done) {
                 if (!arguments.Quiet) console.Progress(fmt::format("{:.0f} %", done * 100));
                 return true;
               });
    wav.Finish();
    console.Progress({});
    const std::int64_t frames = wav.Frames();
    if (arguments.Json)
      console.Out(nlohmann::ordered_json({{"file", DecodedText(file)},
                                          {"output", DecodedText(arguments.Output)},
                                          {"frames", frames},
                                          {"milliseconds", frames * 1000 / AudioSampleRate}})
                      .dump(2) +
                  "\n");
    else if (!arguments.Quiet)
      console.Err(fmt::format("{}: {}, {} {}", VisibleText(arguments.Output),
                              TimeText(static_cast<std::int32_t>(frames * 1000 / AudioSampleRate)),
                              frames, Text("Samples", "frames")));
    return Done;
  } catch (const TAudioError& error) {
    console.Progress({});
    console.Err(VisibleText(OneLine(error.what())));
    return Refused;
  }
}

}  // namespace Sonarello
