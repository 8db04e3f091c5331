// Sonarello: which sysexes each instrument wants and which it does not.
#pragma once

#include <cstdint>
#include <span>

#include "core/Options.h"

namespace Sonarello {

/// The steps that fit a song's sysexes to an instrument. Remove: foreign ones are dropped. Insert: a
/// message of the instrument is guaranteed at the song's start. Search: settings of the instrument are
/// found in the song and prepared for its editors.
enum class SysexRoutine : std::uint8_t {
  RemoveGMSysex,
  RemoveGM2Sysex,
  RemoveRolandGSSysex,
  RemoveRolandSysex,
  RemoveKetronSysex,
  RemoveBigKetronSysex,
  RemoveYamahaSysex,
  RemoveYamahaDSPSysex,
  RemoveKN6000Sysex,
  InsertGMSysex,
  InsertGM2Sysex,
  InsertXGSysex,
  InsertGSSysex,
  InsertGSReverbSysex,
  InsertMBMusicSysex,
  InsertMP11Sysex,
  InsertKN6000Sysex,
  InsertKetronSysex,
  InsertKetronSD1000Sysex,
  InsertLimexSysex,
  InsertSonicCellReverbLevelSysex,
  InsertMotifESInsertsSysex,
  InsertMotifXFInsertsSysex,
  InsertMotifXSInsertsSysex,
  InsertGSDelaySysex,
  InsertMP11DelaySysex,
  SearchOrganFluteSysex,
  SearchKorgPartEQSysex,
  SearchRolandBK9PartEQSysex,
  SearchRolandIntegra7PartEQSysex,
  SearchRolandSCFXInsertSysex,
  ReadEffectMemory,         ///< the instrument's effects are read into its blocks
  ForgetXGSystemOnPresent,  ///< the song no longer counts as an XG song
};

/// The option that a step depends on.
enum class PolicyCondition : std::uint8_t {
  Always,
  SpecialD,
  YamahaDSPs,
  MotifDSPs,
  NoMotifDSPs,
  KorgDSPs,
};

struct PolicyStep {
  SysexRoutine Routine;
  PolicyCondition When = PolicyCondition::Always;
};

/// The steps of a group of instruments, in their order.
struct SysexPolicy {
  std::span<const std::uint8_t> InstrumValues;
  std::span<const PolicyStep> Steps;
};

/// Every policy. An instrument stands in one of them at most.
[[nodiscard]] std::span<const SysexPolicy> SysexPolicies() noexcept;
/// The steps for an instrument by its catalogue number; none for one whose sysexes stay as they are.
[[nodiscard]] std::span<const PolicyStep> SysexPolicyOf(int instrumValue) noexcept;
[[nodiscard]] bool Holds(PolicyCondition condition, const Options& options) noexcept;

}  // namespace Sonarello
