#include "core/SysexPolicy.h"

#include <algorithm>
#include <iterator>

namespace Sonarello {

namespace {

using enum SysexRoutine;
using When = PolicyCondition;

// Instruments by catalogue number, each group with its steps.

constexpr std::uint8_t GM[] = {0, 21, 23, 24, 29, 98, 99, 105};
constexpr PolicyStep GMSteps[] = {
    {RemoveGM2Sysex}, {RemoveRolandSysex}, {RemoveKetronSysex}, {RemoveYamahaSysex}, {InsertGMSysex},
};

constexpr std::uint8_t RolandGS[] = {1, 2, 3, 4, 15, 17, 22, 38, 83};
constexpr PolicyStep RolandGSSteps[] = {
    {RemoveGMSysex},
    {RemoveGM2Sysex},
    {RemoveKetronSysex},
    {RemoveYamahaSysex},
    {InsertGMSysex, When::SpecialD},
    {RemoveRolandGSSysex, When::SpecialD},
    {InsertGSSysex},
    {InsertGSDelaySysex},
    {InsertGSReverbSysex, When::SpecialD},
    {SearchRolandSCFXInsertSysex},
};

constexpr std::uint8_t XG[] = {5, 6, 7, 8, 9, 18, 19, 31, 33, 34, 41, 59, 70};
constexpr PolicyStep XGSteps[] = {
    {RemoveGMSysex},     {RemoveGM2Sysex}, {RemoveRolandSysex},
    {RemoveKetronSysex}, {InsertXGSysex},  {ReadEffectMemory, When::YamahaDSPs},
};

constexpr std::uint8_t XGOrganFlutes[] = {54, 62, 74, 80, 87, 97};
constexpr PolicyStep XGOrganFlutesSteps[] = {
    {RemoveGMSysex},
    {RemoveGM2Sysex},
    {RemoveRolandSysex},
    {RemoveKetronSysex},
    {InsertXGSysex},
    {SearchOrganFluteSysex, When::YamahaDSPs},
    {ReadEffectMemory, When::YamahaDSPs},
};

constexpr std::uint8_t Ketron[] = {10, 11, 20, 30, 32, 40, 46, 47, 49, 50, 55};
constexpr PolicyStep KetronSteps[] = {
    {RemoveGMSysex},     {RemoveGM2Sysex},       {RemoveRolandSysex},
    {RemoveYamahaSysex}, {RemoveBigKetronSysex}, {InsertKetronSysex},
};

constexpr std::uint8_t SoltonSGX[] = {12};
constexpr PolicyStep SoltonSGXSteps[] = {
    {RemoveGMSysex}, {RemoveGM2Sysex}, {RemoveKetronSysex}, {RemoveYamahaSysex}, {InsertGSSysex},
};

constexpr std::uint8_t GEMGenesys[] = {13, 28};
constexpr PolicyStep GEMGenesysSteps[] = {
    {RemoveGMSysex}, {RemoveGM2Sysex}, {RemoveRolandSysex}, {RemoveKetronSysex}, {RemoveYamahaSysex},
};

constexpr std::uint8_t GM2[] = {14, 16, 25, 36, 37, 48, 61, 78};
constexpr PolicyStep GM2Steps[] = {
    {RemoveGMSysex}, {RemoveRolandSysex}, {RemoveKetronSysex}, {RemoveYamahaSysex}, {InsertGM2Sysex},
};

constexpr std::uint8_t MotifES[] = {26};
constexpr PolicyStep MotifESSteps[] = {
    {RemoveGMSysex},
    {RemoveGM2Sysex},
    {RemoveRolandSysex},
    {RemoveKetronSysex},
    {RemoveYamahaDSPSysex},
    {InsertMotifESInsertsSysex},
    {ReadEffectMemory, When::MotifDSPs},
    {InsertGMSysex, When::NoMotifDSPs},
};

constexpr std::uint8_t MotifXS[] = {51};
constexpr PolicyStep MotifXSSteps[] = {
    {RemoveGMSysex},
    {RemoveGM2Sysex},
    {RemoveRolandSysex},
    {RemoveKetronSysex},
    {RemoveYamahaDSPSysex},
    {InsertMotifXSInsertsSysex},
    {ReadEffectMemory, When::MotifDSPs},
    {InsertGMSysex, When::NoMotifDSPs},
};

constexpr std::uint8_t MotifXF[] = {69};
constexpr PolicyStep MotifXFSteps[] = {
    {RemoveGMSysex},
    {RemoveGM2Sysex},
    {RemoveRolandSysex},
    {RemoveKetronSysex},
    {RemoveYamahaDSPSysex},
    {InsertMotifXFInsertsSysex},
    {ReadEffectMemory, When::MotifDSPs},
    {InsertGMSysex, When::NoMotifDSPs},
};

constexpr std::uint8_t KorgPa[] = {42, 43, 52, 63, 64, 75, 82, 90, 91, 103};
constexpr PolicyStep KorgPaSteps[] = {
    {RemoveGMSysex},
    {RemoveRolandSysex},
    {RemoveKetronSysex},
    {RemoveYamahaSysex},
    {ForgetXGSystemOnPresent},
    {InsertGM2Sysex},
    {SearchKorgPartEQSysex, When::KorgDSPs},
};

constexpr std::uint8_t SonicCell[] = {45, 68};
constexpr PolicyStep SonicCellSteps[] = {
    {RemoveGMSysex},     {RemoveGM2Sysex},    {RemoveRolandSysex},
    {RemoveKetronSysex}, {RemoveYamahaSysex}, {InsertSonicCellReverbLevelSysex},
};

constexpr std::uint8_t KN6000[] = {53};
constexpr PolicyStep KN6000Steps[] = {
    {RemoveGMSysex},     {RemoveGM2Sysex},    {RemoveRolandSysex},
    {RemoveKetronSysex}, {RemoveYamahaSysex}, {InsertKN6000Sysex},
};

constexpr std::uint8_t VimaJM8[] = {60};
constexpr PolicyStep VimaJM8Steps[] = {
    {RemoveGMSysex},     {RemoveGM2Sysex}, {RemoveKetronSysex},
    {RemoveYamahaSysex}, {InsertGSSysex},  {InsertGSDelaySysex},
};

constexpr std::uint8_t Limex[] = {56, 65, 66, 77, 81, 85, 86, 88, 89, 93, 94, 95, 96};
constexpr PolicyStep LimexSteps[] = {
    {RemoveGMSysex},     {RemoveGM2Sysex},    {RemoveRolandSysex},
    {RemoveKetronSysex}, {RemoveYamahaSysex}, {InsertLimexSysex},
};

constexpr std::uint8_t MP11[] = {67};
constexpr PolicyStep MP11Steps[] = {
    {RemoveGMSysex},     {RemoveGM2Sysex},  {RemoveKetronSysex},    {RemoveRolandSysex},
    {RemoveYamahaSysex}, {InsertMP11Sysex}, {InsertMP11DelaySysex},
};

constexpr std::uint8_t Integra7[] = {71};
constexpr PolicyStep Integra7Steps[] = {
    {RemoveGMSysex},
    {RemoveKetronSysex},
    {RemoveYamahaSysex},
    {InsertGSSysex},
    {SearchRolandIntegra7PartEQSysex},
};

constexpr std::uint8_t BK9[] = {72};
constexpr PolicyStep BK9Steps[] = {
    {RemoveGMSysex},     {RemoveGM2Sysex}, {RemoveKetronSysex},
    {RemoveYamahaSysex}, {InsertGSSysex},  {SearchRolandBK9PartEQSysex},
};

constexpr std::uint8_t KetronSD[] = {73, 76, 79, 84, 92, 101, 104};
constexpr PolicyStep KetronSDSteps[] = {
    {RemoveGMSysex},     {RemoveGM2Sysex},       {RemoveRolandSysex},
    {RemoveYamahaSysex}, {RemoveBigKetronSysex}, {InsertKetronSD1000Sysex},
};

constexpr std::uint8_t MBMusic[] = {100};
constexpr PolicyStep MBMusicSteps[] = {
    {RemoveGMSysex},     {RemoveRolandSysex},  {RemoveKetronSysex},
    {RemoveYamahaSysex}, {InsertMBMusicSysex},
};

constexpr SysexPolicy Policies[] = {
    {GM, GMSteps},
    {RolandGS, RolandGSSteps},
    {XG, XGSteps},
    {XGOrganFlutes, XGOrganFlutesSteps},
    {Ketron, KetronSteps},
    {SoltonSGX, SoltonSGXSteps},
    {GEMGenesys, GEMGenesysSteps},
    {GM2, GM2Steps},
    {MotifES, MotifESSteps},
    {MotifXS, MotifXSSteps},
    {MotifXF, MotifXFSteps},
    {KorgPa, KorgPaSteps},
    {SonicCell, SonicCellSteps},
    {KN6000, KN6000Steps},
    {VimaJM8, VimaJM8Steps},
    {Limex, LimexSteps},
    {MP11, MP11Steps},
    {Integra7, Integra7Steps},
    {BK9, BK9Steps},
    {KetronSD, KetronSDSteps},
    {MBMusic, MBMusicSteps},
};

}  // namespace

std::span<const SysexPolicy> SysexPolicies() noexcept { return Policies; }

std::span<const PolicyStep> SysexPolicyOf(int instrumValue) noexcept {
  for (const SysexPolicy& policy : Policies)
    if (std::ranges::find(policy.InstrumValues, instrumValue) != policy.InstrumValues.end())
      return policy.Steps;
  return {};
}

bool Holds(PolicyCondition condition, const Options& options) noexcept {
  switch (condition) {
    case PolicyCondition::Always: return true;
    case PolicyCondition::SpecialD: return options.SpecialD;
    case PolicyCondition::YamahaDSPs: return options.YamahaDSPsEnabled;
    case PolicyCondition::MotifDSPs: return options.MotifDSPsEnabled;
    case PolicyCondition::NoMotifDSPs: return !options.MotifDSPsEnabled;
    case PolicyCondition::KorgDSPs: return options.KorgDSPsEnabled;
  }
  return false;
}

}  // namespace Sonarello
