#include "playback/drivers/FluidSynthInstrument.h"

#include <fluidsynth.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>

#include "core/Texts.h"
#include "playback/AudioDevice.h"
#include "playback/SynthParts.h"

namespace Sonarello {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t BlockFrames = 64;  // what the synthesizer computes at a time
constexpr int Polyphony = 256;
constexpr std::size_t QueueRoom = 1 << 16;        // bytes of messages that wait without allocation
constexpr std::size_t QueueLimit = 1 << 18;       // nobody renders if so many wait
constexpr std::uint32_t ChunkMagic = 0x31465353;  // "SSF1"
constexpr std::array BanksOfTheSystem = {"/usr/share/sounds/sf2/TimGM6mb.sf2",
                                         "/usr/share/sounds/sf2/default-GM.sf2",
                                         "/usr/share/soundfonts/default.sf2"};

/// True if a file is a SoundFont by its head (RIFF, form "sfbk") and is as long as that says. The
/// library tries other kinds of files as well, and one that it uses for that writes on the console.
bool IsWholeBank(const std::string& path) {
  std::error_code error;
  const std::uintmax_t size = fs::is_regular_file(path, error) ? fs::file_size(path, error) : 0;
  std::array<char, 12> head{};
  std::ifstream file(path, std::ios::binary);
  if (!file.read(head.data(), head.size())) return false;
  std::uintmax_t length = 8;
  for (std::size_t i = 0; i < 4; ++i)
    length += std::uintmax_t{static_cast<std::uint8_t>(head[4 + i])} << (8 * i);
  return std::string_view(head.data(), 4) == "RIFF" && std::string_view(&head[8], 4) == "sfbk" &&
         size >= length;
}

/// A synthesizer with one bank loaded.
class Synth {
 public:
  /// Raises TAudioError.
  explicit Synth(const std::string& bankFile) : settings(new_fluid_settings(), delete_fluid_settings) {
    std::error_code error;
    if (!fs::exists(bankFile, error))
      throw TAudioError(Text("Die SoundFont-Datei " + bankFile + " ist nicht vorhanden.",
                             "The SoundFont file " + bankFile + " does not exist."));
    fluid_settings_setnum(settings.get(), "synth.sample-rate", AudioSampleRate);
    fluid_settings_setint(settings.get(), "synth.polyphony", Polyphony);
    fluid_settings_setint(settings.get(), "synth.threadsafe-api",
                          0);  // every call comes under our gate
    handle.reset(new_fluid_synth(settings.get()));
    if (handle == nullptr || !IsWholeBank(bankFile) ||
        (bank = fluid_synth_sfload(handle.get(), bankFile.c_str(), 0)) == FLUID_FAILED)
      throw Unreadable(bankFile);
    ListPresets();
    if (presets.empty()) throw Unreadable(bankFile);
  }

  [[nodiscard]] fluid_synth_t* Get() const noexcept { return handle.get(); }
  [[nodiscard]] int Bank() const noexcept { return bank; }
  [[nodiscard]] bool Has(TPreset preset) const {
    return std::ranges::binary_search(presets, Key(preset));
  }
  /// The first sound that is no drum kit.
  [[nodiscard]] std::optional<TPreset> FirstSound() const {
    if (presets.front() >= Key({DrumKitBank, 0})) return std::nullopt;
    return TPreset{presets.front() / KeysOfBank, presets.front() % KeysOfBank};
  }

 private:
  static constexpr int KeysOfBank = 128;
  static int Key(TPreset preset) { return preset.Bank * KeysOfBank + preset.Program; }
  static TAudioError Unreadable(const std::string& bankFile) {
    return TAudioError(Text("Die Datei " + bankFile + " ist keine lesbare SoundFont-Bank.",
                            "The file " + bankFile + " is no readable SoundFont bank."));
  }
  void ListPresets() {
    fluid_sfont_t* font = fluid_synth_get_sfont_by_id(handle.get(), bank);
    fluid_sfont_iteration_start(font);
    while (fluid_preset_t* preset = fluid_sfont_iteration_next(font))
      presets.push_back(Key({fluid_preset_get_banknum(preset), fluid_preset_get_num(preset)}));
    std::ranges::sort(presets);
  }

  std::unique_ptr<fluid_settings_t, void (*)(fluid_settings_t*)> settings;
  struct Deleter {
    void operator()(fluid_synth_t* synth) const { delete_fluid_synth(synth); }
  };
  std::unique_ptr<fluid_synth_t, Deleter> handle;
  int bank = FLUID_FAILED;
  std::vector<int> presets;
};

/// Nil if the bank cannot be read (any more).
std::unique_ptr<Synth> TryToLoad(const std::string& bankFile) {
  try {
    return std::make_unique<Synth>(bankFile);
  } catch (const TAudioError&) {
    return nullptr;
  }
}

/// The library reports through what is raised, never on the console.
void SilenceTheLibrary() {
  for (const int level : {FLUID_PANIC, FLUID_ERR, FLUID_WARN, FLUID_INFO, FLUID_DBG})
    fluid_set_log_function(
        level, [](int, const char*, void*) {}, nullptr);
}

/// A lock for moments, between threads that hand each other messages.
class SpinLock {
 public:
  void lock() noexcept {
    while (flag.test_and_set(std::memory_order_acquire)) std::this_thread::yield();
  }
  void unlock() noexcept { flag.clear(std::memory_order_release); }

 private:
  std::atomic_flag flag;
};

void AppendNumber(std::vector<std::uint8_t>& bytes, std::uint32_t value) {
  for (int i = 0; i < 4; ++i, value >>= 8) bytes.push_back(static_cast<std::uint8_t>(value));
}

std::uint32_t NumberAt(std::span<const std::uint8_t> bytes, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- > 0;) value = value << 8 | bytes[at + i];
  return value;
}

}  // namespace

/// The synthesizer with its parts, and the messages that wait for it.
class FluidSynthInstrument::Player final : public ISynthVoices {
 public:
  explicit Player(const std::string& file)
      : bankFile(file), synth(std::make_unique<Synth>(file)), parts(*this) {
    pending.reserve(QueueRoom);
    applying.reserve(QueueRoom);
    parts.Reset(TSoundStandard::None);
  }

  // Any thread.
  void Queue(std::span<const std::uint8_t> message) {
    bool overdue = false;
    {
      const std::scoped_lock lock(queueLock);
      AppendNumber(pending, static_cast<std::uint32_t>(message.size()));
      pending.insert(pending.end(), message.begin(), message.end());
      overdue = pending.size() > QueueLimit;
    }
    if (!overdue) return;
    // Nobody listens: programs and controllers go in, notes need not.
    const std::unique_lock idle(gate, std::try_to_lock);
    if (idle.owns_lock()) ApplyQueue(false);
  }

  void Render(std::span<float> stereo) {
    const std::scoped_lock lock(gate);
    ApplyQueue(true);
    while (!stereo.empty()) {
      if (left.empty()) left = NextBlock();
      const std::size_t count = std::min(left.size(), stereo.size());
      std::ranges::copy(left.first(count), stereo.begin());
      left = left.subspan(count);
      stereo = stereo.subspan(count);
    }
  }

  /// A new synthesizer takes the place of this one. Without it (its bank cannot be read any more) the
  /// old one goes on.
  void Replace(std::unique_ptr<Synth> fresh, const std::string& file) {
    const std::scoped_lock lock(gate);
    DropQueue();
    if (fresh != nullptr) {
      std::swap(synth, fresh);
      bankFile = file;
      fluid_synth_set_gain(synth->Get(), gain);
    }
    parts.Reset(TSoundStandard::None);
    if (fresh == nullptr) LetFadeOut();
    left = {};
    masterNow = masterWanted = 1;
  }

  void Restore(TSoundStandard standard, std::span<const TSynthPart, SynthPartCount> p) {
    const std::scoped_lock lock(gate);
    parts.Restore(standard, p);
  }

  [[nodiscard]] std::vector<std::uint8_t> Chunk() {
    const std::scoped_lock lock(gate);
    ApplyQueue(true);
    std::vector<std::uint8_t> chunk;
    AppendNumber(chunk, ChunkMagic);
    AppendNumber(chunk, std::bit_cast<std::uint32_t>(gain));
    AppendNumber(chunk, static_cast<std::uint32_t>(parts.Standard()));
    for (int p = 0; p < SynthPartCount; ++p) {
      const TSynthPart& part = parts.Part(p);
      chunk.insert(chunk.end(),
                   {part.Msb, part.Lsb, part.Program,
                    static_cast<std::uint8_t>((part.Rhythm ? 1 : 0) | (part.Drums ? 2 : 0))});
    }
    chunk.insert(chunk.end(), bankFile.begin(), bankFile.end());
    return chunk;
  }

  [[nodiscard]] std::string BankFile() {
    const std::scoped_lock lock(gate);
    return bankFile;
  }
  [[nodiscard]] float Gain() {
    const std::scoped_lock lock(gate);
    return gain;
  }
  void SetGain(float g) {
    const std::scoped_lock lock(gate);
    gain = std::clamp(g, 0.0F, 10.0F);
    fluid_synth_set_gain(synth->Get(), gain);
  }
  [[nodiscard]] int ActiveVoices() {
    const std::scoped_lock lock(gate);
    return fluid_synth_get_active_voice_count(synth->Get());
  }

  // What the parts act on; under the gate.
  [[nodiscard]] bool HasPreset(TPreset preset) const override { return synth->Has(preset); }
  void ResetVoices() override {
    fluid_synth_t* const s = synth->Get();
    // The reset forgets voices that still sound without giving their places back; they end before it.
    if (fluid_synth_get_active_voice_count(s) > 0) {
      fluid_synth_all_sounds_off(s, -1);
      fluid_synth_write_float(s, static_cast<int>(BlockFrames), unheard.data(), 0, 2, unheard.data(), 1,
                              2);
    }
    fluid_synth_system_reset(s);
    // Each channel stands for itself, so that a mode message changes no other.
    fluid_synth_reset_basic_channel(s, -1);
    for (int channel = 0; channel < SynthPartCount; ++channel)
      fluid_synth_set_basic_channel(s, channel, FLUID_CHANNEL_MODE_OMNIOFF_POLY, 1);
  }
  void SelectPreset(int part, bool drums, const TPreset* preset) override {
    fluid_synth_t* const s = synth->Get();
    fluid_synth_set_channel_type(s, part, drums ? CHANNEL_TYPE_DRUM : CHANNEL_TYPE_MELODIC);
    // A bank of a single instrument plays it on every melodic part.
    const std::optional<TPreset> only =
        preset == nullptr && !drums ? synth->FirstSound() : std::nullopt;
    if (only) preset = &*only;
    if (preset == nullptr)
      fluid_synth_unset_program(s, part);
    else
      fluid_synth_program_select(s, part, synth->Bank(), preset->Bank, preset->Program);
  }
  void SetController(int part, std::uint8_t number, std::uint8_t value) override {
    fluid_synth_cc(synth->Get(), part, number, value);
  }
  void SetMasterVolume(float amplitude) override { masterWanted = amplitude; }

 private:
  void DropQueue() {
    const std::scoped_lock lock(queueLock);
    pending.clear();
  }

  void ApplyQueue(bool notes) {
    {
      const std::scoped_lock lock(queueLock);
      std::swap(pending, applying);
    }
    std::span<const std::uint8_t> bytes = applying;
    while (!bytes.empty()) {
      const std::size_t size = NumberAt(bytes, 0);
      ApplyMessage(bytes.subspan(4, size), notes);
      bytes = bytes.subspan(4 + size);
    }
    applying.clear();
  }

  void ApplyMessage(std::span<const std::uint8_t> message, bool notes) {
    if (message.front() == 0xF0) return ApplySysex(message);
    const std::uint8_t status = message[0], data1 = message[1] & 0x7F, data2 = message[2] & 0x7F;
    if (parts.SendShort(status, data1, data2)) return;
    fluid_synth_t* const s = synth->Get();
    const int channel = status & 0x0F;
    switch (status & 0xF0) {
      case 0x80: fluid_synth_noteoff(s, channel, data1); break;
      case 0x90:
        if (data2 == 0)
          fluid_synth_noteoff(s, channel, data1);
        else if (notes)
          fluid_synth_noteon(s, channel, data1, data2);
        break;
      case 0xA0: fluid_synth_key_pressure(s, channel, data1, data2); break;
      case 0xB0: ApplyController(channel, data1, data2); break;
      case 0xD0: fluid_synth_channel_pressure(s, channel, data1); break;
      case 0xE0: fluid_synth_pitch_bend(s, channel, data2 << 7 | data1); break;
      default: break;
    }
  }

  void ApplyController(int channel, std::uint8_t number, std::uint8_t value) {
    constexpr std::uint8_t allNotesOff = 123, omniOff = 124, omniOn = 125, mono = 126;
    // Omni modes would join channels; all that is left of them is that notes end.
    if (number == omniOff || number == omniOn) number = allNotesOff;
    if (number == mono) value = 1;  // of this channel only
    fluid_synth_cc(synth->Get(), channel, number, value);
  }

  void ApplySysex(std::span<const std::uint8_t> message) {
    if (parts.SendSysex(message)) return;
    constexpr std::uint8_t tuning = 0x08;
    if (message.size() < 6 || (message[1] != 0x7E && message[1] != 0x7F) || message[3] != tuning)
      return;
    const auto body = message.subspan(1, message.size() - 2);
    fluid_synth_sysex(synth->Get(), reinterpret_cast<const char*>(body.data()),
                      static_cast<int>(body.size()), nullptr, nullptr, nullptr, 0);
  }

  std::span<const float> NextBlock() {
    fluid_synth_write_float(synth->Get(), static_cast<int>(BlockFrames), block.data(), 0, 2,
                            block.data(), 1, 2);
    if (masterNow == 1 && masterWanted == 1) return block;
    // From one volume to the next within a block, without a step that clicks.
    const float step = (masterWanted - masterNow) / static_cast<float>(BlockFrames);
    for (std::size_t frame = 0; frame < BlockFrames; ++frame) {
      masterNow += step;
      block[2 * frame] *= masterNow;
      block[2 * frame + 1] *= masterNow;
    }
    masterNow = masterWanted;
    return block;
  }

  /// Renders into nowhere until reverb and chorus are silent, ten seconds at most.
  void LetFadeOut() {
    constexpr float silent = 1e-6F;
    constexpr std::size_t most = 10 * AudioSampleRate / BlockFrames, quietBlocks = 200;
    for (std::size_t number = 0, quiet = 0; number < most && quiet < quietBlocks; ++number)
      quiet = std::ranges::all_of(NextBlock(), [](float x) { return std::abs(x) < silent; }) ? quiet + 1
                                                                                             : 0;
  }

  SpinLock queueLock;
  std::vector<std::uint8_t> pending;   // under the lock: length (4 bytes) and bytes of each message
  std::vector<std::uint8_t> applying;  // as the rest, under the gate

  std::mutex gate;
  std::string bankFile;
  std::unique_ptr<Synth> synth;
  TSynthParts parts;
  float gain = 0.2F;
  float masterNow = 1, masterWanted = 1;
  std::array<float, BlockFrames * AudioChannels> block{};
  std::span<const float> left;  // of the block, not yet asked for
  std::array<float, BlockFrames * AudioChannels> unheard{};
};

FluidSynthInstrument::FluidSynthInstrument(std::unique_ptr<Player> p) : player(std::move(p)) {}
FluidSynthInstrument::~FluidSynthInstrument() = default;

std::unique_ptr<FluidSynthInstrument> FluidSynthInstrument::Load(const std::string& bankFile) {
  SilenceTheLibrary();
  const auto make = [](const std::string& file) {
    return std::unique_ptr<FluidSynthInstrument>(
        new FluidSynthInstrument(std::make_unique<Player>(file)));
  };
  if (!bankFile.empty()) return make(bankFile);
  for (const char* file : BanksOfTheSystem) {
    std::error_code error;
    if (fs::exists(file, error) && IsWholeBank(file)) return make(file);
  }
  throw TAudioError(Text("Auf diesem Computer ist keine SoundFont-Bank installiert.",
                         "There is no SoundFont bank installed on this computer."));
}

std::string FluidSynthInstrument::Name() const { return "Sonarello SoundFont"; }
std::int32_t FluidSynthInstrument::UniqueID() const { return 0x536F5346; }  // "SoSF"

void FluidSynthInstrument::SendMidiData(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
  if (status >= 0x80 && status < 0xF0) player->Queue(std::array{status, data1, data2});
}

void FluidSynthInstrument::SendSysex(std::span<const std::uint8_t> message) {
  if (!message.empty() && message.front() == 0xF0) player->Queue(message);
}

void FluidSynthInstrument::Render(std::span<float> stereo) { player->Render(stereo); }

void FluidSynthInstrument::Reset() {
  const std::string file = player->BankFile();
  player->Replace(TryToLoad(file), file);
}

std::vector<std::uint8_t> FluidSynthInstrument::GetChunk() const { return player->Chunk(); }

bool FluidSynthInstrument::SetChunk(std::span<const std::uint8_t> chunk) {
  constexpr std::size_t partsAt = 12, pathAt = partsAt + 4 * SynthPartCount;
  if (chunk.size() <= pathAt || NumberAt(chunk, 0) != ChunkMagic) return false;
  const auto gain = std::bit_cast<float>(NumberAt(chunk, 4));
  const std::uint32_t standard = NumberAt(chunk, 8);
  if (!(gain >= 0 && gain <= 10) || standard > static_cast<std::uint32_t>(TSoundStandard::XG))
    return false;
  std::array<TSynthPart, SynthPartCount> parts;
  for (std::size_t p = 0; p < parts.size(); ++p) {
    const auto bytes = chunk.subspan(partsAt + 4 * p, 4);
    if (std::ranges::any_of(bytes, [](std::uint8_t byte) { return byte > 0x7F; })) return false;
    parts[p] = {bytes[0], bytes[1], bytes[2], (bytes[3] & 1) != 0, (bytes[3] & 2) != 0};
  }
  const auto path = chunk.subspan(pathAt);
  const std::string file(path.begin(), path.end());
  if (std::unique_ptr<Synth> fresh = TryToLoad(file))
    player->Replace(std::move(fresh), file);
  else
    Reset();
  player->SetGain(gain);
  player->Restore(static_cast<TSoundStandard>(standard), parts);
  return true;
}

std::string FluidSynthInstrument::BankFile() const { return player->BankFile(); }
float FluidSynthInstrument::Gain() const { return player->Gain(); }
void FluidSynthInstrument::SetGain(float gain) { player->SetGain(gain); }
int FluidSynthInstrument::ActiveVoices() const { return player->ActiveVoices(); }

}  // namespace Sonarello
