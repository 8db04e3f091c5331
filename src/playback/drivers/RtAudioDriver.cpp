#include "playback/drivers/RtAudioDriver.h"

#include <RtAudio.h>
#include <dlfcn.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>
#include <utility>

#include "core/Texts.h"
#include "playback/HostedInstrument.h"

namespace Sonarello {

namespace {

void IgnoreError(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
                 const char* /*format*/, ...) {}

/// The libraries behind RtAudio write on the console when they find no system. They take a function
/// instead; it is looked up, since which of them are there depends on how RtAudio was built.
void SilenceTheLibraries() {
  using TextHandler = void (*)(const char*);
  using ErrorHandler = void (*)(const char*, int, const char*, int, const char*, ...);
  const auto find = [](const char* name) { return ::dlsym(RTLD_DEFAULT, name); };
  for (const char* name : {"jack_set_error_function", "jack_set_info_function"})
    if (void* const function = find(name))
      reinterpret_cast<void (*)(TextHandler)>(function)([](const char*) {});
  if (void* const function = find("snd_lib_error_set_handler"))
    reinterpret_cast<int (*)(ErrorHandler)>(function)(&IgnoreError);
}

/// An instance of RtAudio that keeps silent; nil if this system is not there.
std::unique_ptr<RtAudio> Open(RtAudio::Api api) {
  try {
    auto audio = std::make_unique<RtAudio>(api);
    audio->showWarnings(false);
    return audio;
  } catch (const RtAudioError&) {
    return nullptr;
  }
}

/// A device that can play stereo.
struct Output {
  unsigned Id = 0;
  std::string Name;
  bool Default = false;
};

std::vector<Output> OutputsOf(RtAudio& audio) {
  std::vector<Output> outputs;
  try {
    const unsigned count = audio.getDeviceCount();
    for (unsigned id = 0; id < count; ++id) {
      const RtAudio::DeviceInfo info = audio.getDeviceInfo(id);
      if (info.probed && info.outputChannels >= static_cast<unsigned>(AudioChannels))
        outputs.push_back({id, info.name, info.isDefaultOutput});
    }
  } catch (const RtAudioError&) {
    // A device that went away while it was asked for; the others stand.
  }
  std::ranges::stable_partition(outputs, &Output::Default);
  return outputs;
}

class RtAudioStream final : public IAudioStream {
 public:
  RtAudioStream(std::unique_ptr<RtAudio> a, const Output& output, int bufferFrames, TAudioCallback c)
      : callback(std::move(c)), audio(std::move(a)) {
    RtAudio::StreamParameters parameters;
    parameters.deviceId = output.Id;
    parameters.nChannels = AudioChannels;
    RtAudio::StreamOptions options;
    options.streamName = "Sonarello";
    options.flags = RTAUDIO_SCHEDULE_REALTIME;
    auto frames = static_cast<unsigned>(std::max(bufferFrames, 0));
    audio->openStream(&parameters, nullptr, RTAUDIO_FLOAT32, AudioSampleRate, &frames, &Play, this,
                      &options, [](RtAudioError::Type, const std::string&) {});
    // The system may have another length in mind than was asked for.
    buffer = static_cast<int>(frames);
    if (!audio->isStreamOpen()) throw RtAudioError(output.Name);
    audio->startStream();
    if (!audio->isStreamRunning()) throw RtAudioError(output.Name);
    latency = static_cast<int>(audio->getStreamLatency());
  }
  RtAudioStream(const RtAudioStream&) = delete;
  RtAudioStream& operator=(const RtAudioStream&) = delete;
  ~RtAudioStream() override {
    if (!StillCalls()) AwaitClosing();
    try {
      if (audio->isStreamRunning()) audio->abortStream();
    } catch (const RtAudioError&) {
      // The device has gone; closing is all that is left.
    }
    if (audio->isStreamOpen()) audio->closeStream();
    static_cast<void>(
        calls.load(std::memory_order_acquire));  // all that the callbacks did is seen here
  }

  [[nodiscard]] int BufferFrames() const override { return buffer; }
  [[nodiscard]] int LatencyFrames() const override { return std::max(latency, buffer); }

 private:
  /// False if the device has stopped asking for sound.
  [[nodiscard]] bool StillCalls() const {
    const unsigned before = calls;
    const auto patience = std::chrono::milliseconds(50 + 3000LL * buffer / AudioSampleRate);
    const auto until = std::chrono::steady_clock::now() + patience;
    while (calls == before && std::chrono::steady_clock::now() < until)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return calls != before;
  }

  /// A server that has died makes RtAudio close the stream on a thread of its own; closing it at the
  /// same time from here would free its buffers twice.
  void AwaitClosing() const {
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (audio->isStreamOpen() && std::chrono::steady_clock::now() < until)
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }

  static int Play(void* output, void*, unsigned frames, double, RtAudioStreamStatus, void* self) {
    auto* const stream = static_cast<RtAudioStream*>(self);
    stream->callback({static_cast<float*>(output), static_cast<std::size_t>(frames) * AudioChannels});
    stream->calls.fetch_add(1, std::memory_order_release);
    return 0;
  }

  TAudioCallback callback;
  std::atomic<unsigned> calls{0};  // that have returned
  std::unique_ptr<RtAudio> audio;
  int buffer = 0;
  int latency = 0;
};

class RtAudioDriver final : public IAudioDriver {
 public:
  RtAudioDriver(RtAudio::Api a, std::vector<Output> o) : api(a), outputs(std::move(o)) {}

  [[nodiscard]] std::string ApiName() const override { return RtAudio::getApiDisplayName(api); }

  [[nodiscard]] std::vector<std::string> DeviceNames() override {
    const std::unique_ptr<RtAudio> audio = Open(api);
    outputs = audio == nullptr ? std::vector<Output>() : OutputsOf(*audio);
    std::vector<std::string> names;
    for (const Output& output : outputs) names.push_back(output.Name);
    return names;
  }

  [[nodiscard]] std::unique_ptr<IAudioStream> Start(int device, int bufferFrames,
                                                    TAudioCallback callback) override {
    if (device < 0 || static_cast<std::size_t>(device) >= outputs.size())
      throw TAudioError(Text("Diesen Audio-Ausgang gibt es nicht.", "There is no such audio device."));
    const Output& output = outputs[static_cast<std::size_t>(device)];
    try {
      std::unique_ptr<RtAudio> audio = Open(api);
      if (audio == nullptr) throw RtAudioError(ApiName());
      // Numbers of devices shift as some come and go; the name holds.
      const std::vector<Output> present = OutputsOf(*audio);
      const auto found = std::ranges::find(present, output.Name, &Output::Name);
      if (found == present.end()) throw RtAudioError(output.Name);
      return std::make_unique<RtAudioStream>(std::move(audio), *found, bufferFrames,
                                             std::move(callback));
    } catch (const RtAudioError& error) {
      throw TAudioError(Text("Der Audio-Ausgang " + output.Name + " kann nicht benutzt werden: ",
                             "The audio device " + output.Name + " can not be used: ") +
                        error.getMessage());
    }
  }

 private:
  RtAudio::Api api;
  std::vector<Output> outputs;  // by number, as the names were told last
};

}  // namespace

std::vector<std::unique_ptr<IAudioDriver>> FindAudioDrivers() {
  SilenceTheLibraries();
  std::vector<RtAudio::Api> compiled;
  RtAudio::getCompiledApi(compiled);
  std::vector<std::unique_ptr<IAudioDriver>> drivers;
  for (const RtAudio::Api api : {RtAudio::UNIX_JACK, RtAudio::LINUX_PULSE, RtAudio::LINUX_ALSA}) {
    if (std::ranges::find(compiled, api) == compiled.end()) continue;
    const std::unique_ptr<RtAudio> audio = Open(api);
    if (audio == nullptr) continue;
    if (std::vector<Output> outputs = OutputsOf(*audio); !outputs.empty())
      drivers.push_back(std::make_unique<RtAudioDriver>(api, std::move(outputs)));
  }
  return drivers;
}

}  // namespace Sonarello
