#include "Render.h"

#include <fluidsynth.h>

#include <array>
#include <memory>
#include <stdexcept>
#include <vector>

#include "Measure.h"
#include "StandIns.h"
#include "core/OpenPipeline.h"
#include "playback/HostedAudio.h"
#include "playback/RouteOutputs.h"
#include "playback/SongRender.h"
#include "playback/VSTInstruments.h"
#include "playback/drivers/FluidSynthInstrument.h"

namespace Sonarello::Bench {

namespace {

class NoDriver : public IMidiDriver {
 public:
  [[nodiscard]] std::string ApiName() const override { return "none"; }
  [[nodiscard]] std::vector<std::string> InputNames() override { return {}; }
  [[nodiscard]] std::vector<std::string> OutputNames() override { return {}; }
  [[nodiscard]] std::unique_ptr<IDriverOutput> OpenOutput(int) override {
    throw TDriverError(BadDeviceId, "");
  }
  [[nodiscard]] std::unique_ptr<IDriverInput> OpenInput(int, TDriverInputCallback) override {
    throw TDriverError(BadDeviceId, "");
  }
};

/// A message and the millisecond that it comes in.
struct TMessage {
  std::int32_t Time;
  std::vector<std::uint8_t> Bytes;
};

/// Writes down what a render sends.
class Recorder : public IOutputs {
 public:
  bool OpenAll() override { return true; }
  bool Open(int) override { return true; }
  [[nodiscard]] bool IsOpen(int) const override { return true; }
  void CloseAll() override {}
  void SendShort(int, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) override {
    Messages.push_back({Now, {status, data1, data2}});
  }
  void SendLong(int, std::span<const std::uint8_t> message) override {
    Messages.push_back({Now, {message.begin(), message.end()}});
  }
  std::int32_t Now = 0;
  std::vector<TMessage> Messages;
};

void Feed(fluid_synth_t* synth, const std::vector<std::uint8_t>& bytes) {
  const int channel = bytes[0] & 15;
  switch (bytes[0] & 0xF0) {
    case NoteOff: fluid_synth_noteoff(synth, channel, bytes[1]); break;
    case NoteOn: fluid_synth_noteon(synth, channel, bytes[1], bytes[2]); break;
    case Controller: fluid_synth_cc(synth, channel, bytes[1], bytes[2]); break;
    case ProgramChange: fluid_synth_program_change(synth, channel, bytes[1]); break;
    case ChannelAftertouch: fluid_synth_channel_pressure(synth, channel, bytes[1]); break;
    case PitchBend: fluid_synth_pitch_bend(synth, channel, bytes[1] | bytes[2] << 7); break;
    default: break;
  }
}

double RenderBare(const std::string& bank, const std::vector<TMessage>& messages,
                  std::int32_t duration) {
  const std::unique_ptr<fluid_settings_t, void (*)(fluid_settings_t*)> settings(new_fluid_settings(),
                                                                                delete_fluid_settings);
  fluid_settings_setnum(settings.get(), "synth.sample-rate", AudioSampleRate);
  fluid_settings_setint(settings.get(), "synth.polyphony", 256);
  fluid_settings_setint(settings.get(), "synth.threadsafe-api", 0);
  const std::unique_ptr<fluid_synth_t, void (*)(fluid_synth_t*)> synth(new_fluid_synth(settings.get()),
                                                                       delete_fluid_synth);
  if (fluid_synth_sfload(synth.get(), bank.c_str(), 1) == FLUID_FAILED)
    throw std::runtime_error("cannot load " + bank);
  std::array<float, 2 * 45> block{};
  return Seconds([&] {
    std::size_t next = 0;
    for (std::int32_t t = 0; t < duration; ++t) {
      for (; next < messages.size() && messages[next].Time <= t; ++next)
        Feed(synth.get(), messages[next].Bytes);
      fluid_synth_write_float(synth.get(), BytesOfMillisecond(t) / 8, block.data(), 0, 2, block.data(),
                              1, 2);
    }
  });
}

}  // namespace

RenderFigures MeasureRender(const std::string& file) {
  TVSTInstruments host;
  auto own = FluidSynthInstrument::Load();
  const std::string bank = own->BankFile();
  host.LoadInstrument(0, std::move(own));
  TMidiRouting hosted;
  hosted.VSTi = true;
  hosted.VSTiHandle = host.VSTiArray()[0].Handle;
  OneRoute routes(hosted);
  Song song;
  const Options options;
  DeafMessages messages;
  SongHooks hooks;
  if (!OpenPipeline(song, options, routes, messages, hooks).OpenMidiFile(file, false))
    throw std::runtime_error("refused: " + file);
  NoDriver driver;
  TRouteOutputs outputs(driver, routes, &host);
  outputs.RoutesBuilt();
  const TRealtimeData realtime;
  host.Graph().TakeOffline();
  RenderFigures figures;
  TSongRender render(song, realtime, routes, outputs, host.Graph());
  figures.Ours = Seconds([&] { render.Run([](std::span<const float>) {}, {}); });
  figures.Sound = render.Duration() / 1000.0;

  Recorder recorder;
  AudioGraph silent;
  silent.TakeOffline();
  TSongRender(song, realtime, routes, recorder, silent)
      .Run([&](std::span<const float>) { ++recorder.Now; }, {});
  figures.Bare = RenderBare(bank, recorder.Messages, render.Duration());
  return figures;
}

}  // namespace Sonarello::Bench
