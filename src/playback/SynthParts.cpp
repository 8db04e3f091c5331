#include "playback/SynthParts.h"

#include <algorithm>
#include <initializer_list>

#include "core/RolandChecksum.h"

namespace Sonarello {

namespace {

// Banks with a meaning of their own (GM2 1.2, XG 1.35).
constexpr std::uint8_t GM2Drums = 120, GM2Melodic = 121, XGEffectKits = 126, XGDrums = 127;
constexpr int DrumPart = 9;
constexpr std::uint8_t ReverbSend = 91, FirstReverbSend = 40;  // the first value of GS, XG and GM2
constexpr int EffectKit = 56;                                  // the sound effects kit of GS and GM2

constexpr std::uint8_t Masked(std::uint8_t byte) { return byte & 0x7F; }

/// Amplitude of a volume from 0 to 1: squared, as controller 7 works (GM 1, developer guidelines).
constexpr float Amplitude(float volume) { return volume * volume; }

bool Begins(std::span<const std::uint8_t> bytes, std::initializer_list<std::uint8_t> with) {
  return bytes.size() >= with.size() && std::equal(with.begin(), with.end(), bytes.begin());
}

/// GS counts parts 10, 1 to 9, 11 to 16.
constexpr int PartOfGSBlock(int block) {
  return block == 0 ? DrumPart : block <= DrumPart ? block - 1 : block;
}

}  // namespace

void TSynthParts::Reset(TSoundStandard to) {
  standard = to;
  voices.ResetVoices();
  voices.SetMasterVolume(1);
  for (int p = 0; p < SynthPartCount; ++p) {
    TSynthPart part;
    part.Rhythm = p == DrumPart;
    if (to == TSoundStandard::GM2) part.Msb = part.Rhythm ? GM2Drums : GM2Melodic;
    if (to == TSoundStandard::XG && part.Rhythm) part.Msb = XGDrums;
    parts[static_cast<std::size_t>(p)] = part;
    voices.SetController(p, ReverbSend, FirstReverbSend);
    Select(p);
  }
}

void TSynthParts::Restore(TSoundStandard s, std::span<const TSynthPart, SynthPartCount> p) {
  standard = s;
  std::ranges::copy(p, parts.begin());
  for (int part = 0; part < SynthPartCount; ++part) Apply(part);
}

bool TSynthParts::SendShort(std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
  const int number = status & 0x0F;
  TSynthPart& part = parts[static_cast<std::size_t>(number)];
  switch (status & 0xF0) {
    case 0xB0:
      if (data1 == 0) part.Msb = Masked(data2);
      if (data1 == 32) part.Lsb = Masked(data2);
      return data1 == 0 || data1 == 32;
    case 0xC0:
      part.Program = Masked(data1);
      Select(number);
      return true;
    default: return false;
  }
}

bool TSynthParts::PlaysDrums(const TSynthPart& p) const noexcept {
  switch (p.Msb) {
    case GM2Drums: return true;
    case GM2Melodic: return false;
    case XGEffectKits:
    case XGDrums:
      // In GS these are melodic banks of an older module.
      return standard != TSoundStandard::GS || p.Rhythm;
    default: return standard == TSoundStandard::XG ? false : p.Rhythm;
  }
}

void TSynthParts::Select(int part) {
  TSynthPart& p = parts[static_cast<std::size_t>(part)];
  p.Drums = PlaysDrums(p);
  Apply(part);
}

void TSynthParts::Apply(int part) {
  const TSynthPart& p = parts[static_cast<std::size_t>(part)];
  TPreset preset;
  const bool found = p.Drums ? FindKit(p, preset) : FindMelodic(p, preset);
  voices.SelectPreset(part, p.Drums, found ? &preset : nullptr);
}

bool TSynthParts::FindMelodic(const TSynthPart& p, TPreset& found) const {
  // GS counts variations in the MSB, in groups of eight under a sub capital; GM2 and XG in the LSB.
  int bank = p.Msb;
  if (p.Msb == GM2Melodic || (p.Msb == 0 && standard != TSoundStandard::GS)) bank = p.Lsb;
  for (const TPreset preset : {TPreset{bank, p.Program}, TPreset{bank & 0x78, p.Program},
                               TPreset{0, p.Program}, TPreset{0, 0}}) {
    found = preset;
    if (voices.HasPreset(preset)) return true;
  }
  return false;
}

bool TSynthParts::FindKit(const TSynthPart& p, TPreset& found) const {
  // Kits come in groups of eight under the one that they vary, in GS and XG alike.
  const int program = p.Msb == XGEffectKits && standard != TSoundStandard::GS ? EffectKit : p.Program;
  for (const int kit : {program, program & 0x78, 0}) {
    found = {DrumKitBank, kit};
    if (voices.HasPreset(found)) return true;
  }
  return false;
}

bool TSynthParts::SendSysex(std::span<const std::uint8_t> message) {
  if (message.size() < 4 || message.front() != 0xF0 || message.back() != 0xF7) return false;
  const auto body = message.subspan(1, message.size() - 2);
  if (std::ranges::any_of(body, [](std::uint8_t byte) { return byte > 0x7F; })) return false;
  switch (body.front()) {
    case 0x7E:
    case 0x7F: return Universal(body);
    case 0x41: return RolandData(body);
    case 0x43: return YamahaData(body);
    default: return false;
  }
}

bool TSynthParts::Universal(std::span<const std::uint8_t> body) {
  if (body.size() == 4 && body[0] == 0x7E && body[2] == 0x09) {  // any device
    switch (body[3]) {
      case 1: Reset(TSoundStandard::GM); return true;
      case 2: Reset(TSoundStandard::None); return true;
      case 3: Reset(TSoundStandard::GM2); return true;
      default: return false;
    }
  }
  if (body.size() == 6 && body[0] == 0x7F && body[2] == 0x04 && body[3] == 0x01) {
    voices.SetMasterVolume(Amplitude(static_cast<float>(body[5] * 128 + body[4]) / 16383.0F));
    return true;
  }
  return false;
}

bool TSynthParts::RolandData(std::span<const std::uint8_t> body) {
  // 41 device 42 12 address (3) data checksum; a wrong checksum makes it void, as on the modules.
  if (body.size() < 9 || body[2] != 0x42 || body[3] != 0x12) return false;
  const auto checked = body.subspan(4, body.size() - 5);
  if (RolandChecksum(checked) != body.back()) return false;
  const auto data = checked.subspan(3);
  const bool systemMode = Begins(checked, {0x00, 0x00, 0x7F});
  if (systemMode || Begins(checked, {0x40, 0x00, 0x7F})) {
    // The reset's value 7F leaves GS; the system mode's values choose between two kinds of it.
    Reset(data.front() == 0x7F ? TSoundStandard::None : TSoundStandard::GS);
    return true;
  }
  if (checked[0] != 0x40) return false;
  int address = checked[1] << 7 | checked[2];
  for (const std::uint8_t value : data) GSParameter(address++, value);
  return true;
}

void TSynthParts::GSParameter(int address, std::uint8_t value) {
  const int group = address >> 7;
  if (address == 0x04) voices.SetMasterVolume(Amplitude(static_cast<float>(value) / 127.0F));
  if (group >= 0x10 && group <= 0x1F)
    GSPartParameter(PartOfGSBlock(group & 0x0F), address & 0x7F, value);
}

void TSynthParts::GSPartParameter(int part, int address, std::uint8_t value) {
  switch (address) {
    case 0x00: parts[static_cast<std::size_t>(part)].Msb = value; break;
    case 0x01:
      parts[static_cast<std::size_t>(part)].Program = value;
      Select(part);
      break;
    case 0x15: SetRhythm(part, value != 0); break;
    case 0x19: voices.SetController(part, 7, value); break;
    case 0x1C:
      if (value != 0) voices.SetController(part, 10, value);  // 0: at random
      break;
    case 0x21: voices.SetController(part, 93, value); break;
    case 0x22: voices.SetController(part, 91, value); break;
    default: break;
  }
}

bool TSynthParts::YamahaData(std::span<const std::uint8_t> body) {
  // 43 1n 4C address (3) data
  if (body.size() < 7 || (body[1] & 0xF0) != 0x10 || body[2] != 0x4C) return false;
  const auto address = body.subspan(3, 3);
  const auto data = body.subspan(6);
  if (Begins(address, {0x00, 0x00, 0x7E}) || Begins(address, {0x00, 0x00, 0x7F})) {
    Reset(TSoundStandard::XG);
    return true;
  }
  int at = address[2];
  if (address[0] == 0x00 && address[1] == 0x00) {
    for (const std::uint8_t value : data)
      if (at++ == 0x04) voices.SetMasterVolume(Amplitude(static_cast<float>(value) / 127.0F));
    return true;
  }
  if (address[0] != 0x08 || address[1] >= SynthPartCount) return false;
  for (const std::uint8_t value : data) XGPartParameter(address[1], at++, value);
  return true;
}

void TSynthParts::XGPartParameter(int part, int address, std::uint8_t value) {
  TSynthPart& p = parts[static_cast<std::size_t>(part)];
  switch (address) {
    case 0x01: p.Msb = value; break;
    case 0x02: p.Lsb = value; break;
    case 0x03:
      p.Program = value;
      Select(part);
      break;
    case 0x07: SetRhythm(part, value != 0); break;
    case 0x0B: voices.SetController(part, 7, value); break;
    case 0x0E:
      if (value != 0) voices.SetController(part, 10, value);  // 0: at random
      break;
    case 0x12: voices.SetController(part, 93, value); break;
    case 0x13: voices.SetController(part, 91, value); break;
    default: break;
  }
}

void TSynthParts::SetRhythm(int part, bool rhythm) {
  TSynthPart& p = parts[static_cast<std::size_t>(part)];
  p.Rhythm = rhythm;
  // A bank that says the opposite gives way.
  const bool drumBank = p.Msb == GM2Drums || p.Msb == XGEffectKits || p.Msb == XGDrums;
  if (rhythm && (p.Msb == GM2Melodic || (standard == TSoundStandard::XG && !drumBank))) {
    p.Msb = standard == TSoundStandard::XG ? XGDrums : GM2Drums;
    p.Lsb = 0;
  } else if (!rhythm && drumBank) {
    p.Msb = 0;
    p.Lsb = 0;
  }
  Select(part);
}

}  // namespace Sonarello
