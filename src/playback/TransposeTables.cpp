// Which sounds take part in a transposition, and where channels fold.
#include <algorithm>

#include "instruments/Naming.h"
#include "playback/Transpose.h"

namespace Sonarello {

namespace {

constexpr std::int8_t Any = -1;

/// A bank of an instrument that holds kits besides those that its kind names.
struct TKitBank {
  std::uint8_t Instrument;
  std::int8_t MSB;
  std::int8_t LSB;
};

// From the kit rows of the instruments' tables and public patch lists: Roland preset, user and
// expansion sets (86, 88, 92, 96), Yamaha preset and user kits (63), and the bank that a drum channel
// gets where a device has no other known one.
constexpr TKitBank KitBanks[] = {
    {13, 15, 0},  {22, 92, Any},   {24, Any, 4},    {25, 86, 64}, {25, 86, 0},   {25, 92, Any},
    {26, 63, 32}, {26, 63, 40},    {28, 15, 0},     {33, 63, 32}, {33, 63, 40},  {34, 63, 32},
    {34, 63, 40}, {37, 120, Any},  {45, 86, 64},    {45, 86, 0},  {45, 92, Any}, {51, 63, 32},
    {51, 63, 40}, {53, 120, Any},  {61, 86, 0},     {69, 63, 32}, {69, 63, 40},  {71, 86, 64},
    {71, 86, 0},  {71, 88, 64},    {71, 88, 101},   {71, 88, 0},  {71, 92, Any}, {71, 96, 0},
    {95, 21, 0},  {102, 126, Any}, {102, 127, Any},
};

// MegaVoice sounds of the arrangers: MSB 8, LSB 0 to 31.
constexpr std::uint8_t NoiseKeyInstruments[] = {9, 18, 31, 41, 54, 59, 62, 70, 74, 80, 87, 97};

/// Sounds that leave the plain rule.
struct TOwnRule {
  std::uint8_t Instrument;
  std::int8_t MSB;
  std::int8_t LSB;
  std::int8_t Patch;
  TransposeRule Rule;
};

// The sounds that are known to need a rule of their own; each further one is a row. These have their
// numbers among the guitars, whose octaves begin at E. For the floor rule none is known.
constexpr TOwnRule OwnRules[] = {
    {39, 15, Any, 25, TransposeRule::PitchClass},
    {39, 15, Any, 26, TransposeRule::PitchClass},
    {54, 8, 0, 7, TransposeRule::PitchClass},
};

bool Matches(std::int8_t wanted, int value) { return wanted == Any || wanted == value; }

/// The greatest shift of each channel, by mode.
constexpr std::int8_t FoldLimits[4][ChannelCount] = {
    {6, 6, 5, 4, 3, 6, 5, 4, 3, 6, 6, 5, 4, 3, 6, 3},
    {3, 3, 6, 5, 4, 3, 6, 5, 4, 3, 3, 6, 5, 4, 3, 4},
    {4, 4, 3, 6, 5, 4, 3, 6, 5, 4, 4, 3, 6, 5, 4, 5},
    {5, 5, 4, 3, 6, 5, 4, 3, 6, 5, 5, 4, 3, 6, 5, 6},
};

constexpr int Octave = 12;

/// Sharps or flats of the twelve major keys, by semitones above C. Seven of either are none of them.
constexpr std::int8_t CircleOfFifths[Octave] = {0, -5, 2, -3, 4, -1, 6, 1, -4, 3, -2, 5};

/// Roots as the sharps-or-flats of the key has them: accidental in the high nibble (3 none, 2 flat, 4
/// sharp), note in the low one (1-7 for C to B).
constexpr std::uint8_t FlatRoots[Octave] = {0x31, 0x22, 0x32, 0x23, 0x33, 0x34,
                                            0x25, 0x35, 0x26, 0x36, 0x27, 0x37};
constexpr std::uint8_t SharpRoots[Octave] = {0x31, 0x41, 0x32, 0x42, 0x33, 0x34,
                                             0x44, 0x35, 0x45, 0x36, 0x46, 0x37};
/// The usual names where the key says nothing: C#, Eb, F#, Ab, Bb.
constexpr std::uint8_t UsualRoots[Octave] = {0x31, 0x41, 0x32, 0x23, 0x33, 0x34,
                                             0x44, 0x35, 0x26, 0x36, 0x27, 0x37};

int InOctave(int semitones) { return (semitones % Octave + Octave) % Octave; }

/// Each note stays in its octave, which begins at E for the keys from 12 to 47.
int InItsOctave(int key, int shift) {
  const int place = (key >= 12 && key <= 47 ? key - 4 : key) % Octave + shift;
  if (place < 0) return key + shift + Octave;
  if (place >= Octave) return key + shift - Octave;
  return key + shift;
}

/// The lowest string of a bass is E1 (28).
int AboveLowestString(int key) {
  constexpr int lowest = 28;
  if (key >= lowest) return key;
  return key + Octave >= lowest ? key + Octave : key + 2 * Octave;
}

}  // namespace

bool IsDrumBank(int instrumValue, int CC00, int CC32) noexcept {
  if (const TMember* member = MemberOf(instrumValue); member != nullptr && CC00 >= 0) {
    const TFamily& family = *member->Family;
    if (std::ranges::find(family.DrumBanks, CC00) != family.DrumBanks.end()) return true;
    // The bank of the user's own kits.
    for (const TNameRule& rule : family.Rules)
      if (rule.When == NameWhen::Bank && rule.Scopes[0] == Scope::CustomDrums &&
          rule.AppliesTo(false, CC00))
        return true;
  }
  return std::ranges::any_of(KitBanks, [&](const TKitBank& bank) {
    return bank.Instrument == instrumValue && Matches(bank.MSB, CC00) && Matches(bank.LSB, CC32);
  });
}

bool HasNoiseKeys(int instrumValue, int CC00, int CC32) noexcept {
  constexpr int megaVoices = 8;
  constexpr int lastLSB = 31;
  return CC00 == megaVoices && CC32 <= lastLSB &&
         std::ranges::find(NoiseKeyInstruments, instrumValue) != std::end(NoiseKeyInstruments);
}

TransposeRule TransposeRuleOf(int instrumValue, int CC00, int CC32, int Patch) noexcept {
  if (IsDrumBank(instrumValue, CC00, CC32)) return TransposeRule::None;
  for (const TOwnRule& own : OwnRules)
    if (own.Instrument == instrumValue && Matches(own.MSB, CC00) && Matches(own.LSB, CC32) &&
        Matches(own.Patch, Patch))
      return own.Rule;
  return TransposeRule::Plain;
}

int FoldedShift(int channel, int shift, int mode) noexcept {
  const auto row = static_cast<std::size_t>(mode >= 1 && mode <= 4 ? mode - 1 : 0);
  const int limit = FoldLimits[row][static_cast<std::size_t>(channel)];
  if (shift > limit) return shift - Octave;
  if (shift < -limit) return shift + Octave;
  return shift;
}

int FoldKey(int key) noexcept {
  constexpr int highestOctave = KeyCount - Octave;
  if (key < 0) return InOctave(key);
  return key < KeyCount ? key : highestOctave + InOctave(key - highestOctave);
}

std::uint8_t TransposedKey(int key, TransposeRule rule, int channel, int shift, int octaves,
                           const TTransposeSettings& settings) noexcept {
  int to = key;
  switch (rule) {
    case TransposeRule::None: return static_cast<std::uint8_t>(key);
    case TransposeRule::Plain:
      to += settings.IntelligentTranspose ? FoldedShift(channel, shift, settings.IntelligentTransp_M)
                                          : shift;
      break;
    case TransposeRule::PitchClass: to = InItsOctave(key, shift); break;
    case TransposeRule::Floor: to += shift; break;
  }
  to += octaves * Octave;
  // Without a shift every note is as it was, the low ones too.
  const bool floored = rule == TransposeRule::Floor && settings.IntelligentTranspose;
  if (floored && to != key) to = AboveLowestString(to);
  return static_cast<std::uint8_t>(FoldKey(to));
}

int TransposeKeySignature(int SF, int shift) noexcept {
  const auto place = std::ranges::find(CircleOfFifths, SF);
  if (place == std::end(CircleOfFifths)) return SF;
  const auto index = static_cast<int>(place - std::begin(CircleOfFifths));
  return CircleOfFifths[static_cast<std::size_t>(InOctave(index + shift))];
}

std::uint8_t TransposeChordRoot(std::uint8_t root, int shift, int SF) noexcept {
  constexpr int noteKeys[] = {0, 2, 4, 5, 7, 9, 11};  // C D E F G A B
  const int note = (root & 0x0F) - 1;
  const int accidental = (root >> 4) - 3;  // -3 to 3: three flats to three sharps
  if (InOctave(shift) == 0 || note < 0 || note > 6 || accidental > 3) return root;
  const auto key =
      static_cast<std::size_t>(InOctave(noteKeys[static_cast<std::size_t>(note)] + accidental + shift));
  if (SF == 0) return UsualRoots[key];
  return SF < 0 ? FlatRoots[key] : SharpRoots[key];
}

}  // namespace Sonarello
