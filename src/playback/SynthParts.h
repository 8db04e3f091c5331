// Sonarello: which sound each part of a synthesizer plays, by the standards that songs are written for.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace Sonarello {

/// What the last reset message has asked for.
enum class TSoundStandard : std::uint8_t { None, GM, GM2, GS, XG };

/// A sound of the synthesizer's bank. Drum kits stand in bank 128 (SoundFont 2).
struct TPreset {
  int Bank = 0;
  int Program = 0;
  friend bool operator==(const TPreset&, const TPreset&) = default;
};

inline constexpr int DrumKitBank = 128;

/// What the parts act on.
class ISynthVoices {
 public:
  virtual ~ISynthVoices() = default;
  [[nodiscard]] virtual bool HasPreset(TPreset preset) const = 0;
  /// All notes end and all controllers take their first values.
  virtual void ResetVoices() = 0;
  /// A part (0-15) changes its sound. Without a preset it falls silent.
  virtual void SelectPreset(int part, bool drums, const TPreset* preset) = 0;
  virtual void SetController(int part, std::uint8_t number, std::uint8_t value) = 0;
  /// 0 to 1, as a factor of the amplitude.
  virtual void SetMasterVolume(float amplitude) = 0;
};

/// One of the sixteen parts.
struct TSynthPart {
  std::uint8_t Msb = 0, Lsb = 0;  ///< bank as selected, in force with the next program
  std::uint8_t Program = 0;
  bool Rhythm = false;  ///< plays drums unless a bank says otherwise
  bool Drums = false;   ///< plays drums now
};

inline constexpr int SynthPartCount = 16;

/// The sixteen parts: interprets bank selects, programs and system exclusive messages (GM 1 and 2, GS,
/// XG, universal master volume) and tells the voices which preset they play. Sounds that the bank does
/// not have fall back to their capital, kits to the kit that they vary. Allocates nothing.
class TSynthParts {
 public:
  explicit TSynthParts(ISynthVoices& v) : voices(v) {}

  /// Takes all parts back to the state that a standard begins with.
  void Reset(TSoundStandard to);
  /// Bank select (controllers 0 and 32) and program change. False for any other message.
  bool SendShort(std::uint8_t status, std::uint8_t data1, std::uint8_t data2);
  /// A whole sysex, from F0 to F7; those that mean nothing to it are passed over. False for a message
  /// that it does not know.
  bool SendSysex(std::span<const std::uint8_t> message);

  [[nodiscard]] TSoundStandard Standard() const noexcept { return standard; }
  [[nodiscard]] const TSynthPart& Part(int part) const {
    return parts.at(static_cast<std::size_t>(part));
  }
  /// Puts back a state that was read with `Standard` and `Part`.
  void Restore(TSoundStandard s, std::span<const TSynthPart, SynthPartCount> p);

 private:
  void Select(int part);
  void Apply(int part);
  [[nodiscard]] bool PlaysDrums(const TSynthPart& p) const noexcept;
  [[nodiscard]] bool FindMelodic(const TSynthPart& p, TPreset& found) const;
  [[nodiscard]] bool FindKit(const TSynthPart& p, TPreset& found) const;
  bool Universal(std::span<const std::uint8_t> body);
  bool RolandData(std::span<const std::uint8_t> body);
  bool YamahaData(std::span<const std::uint8_t> body);
  void GSParameter(int address, std::uint8_t value);
  void GSPartParameter(int part, int address, std::uint8_t value);
  void XGPartParameter(int part, int address, std::uint8_t value);
  void SetRhythm(int part, bool rhythm);

  ISynthVoices& voices;
  TSoundStandard standard = TSoundStandard::None;
  std::array<TSynthPart, SynthPartCount> parts{};
};

}  // namespace Sonarello
