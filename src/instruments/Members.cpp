// The instruments' kinds: who plays drums, how a sound is searched and what takes the place of one that
// the instrument does not have.
#include <algorithm>

#include "instruments/Naming.h"

namespace Sonarello {

namespace {

using enum Scope;

constexpr TUnknown GMKit = {"Unbek. GM Drumset", "Unknown GM drumset"};
constexpr TUnknown Drumkit = {"Unbek. Drumkit", "Unknown Drumkit"};
constexpr TUnknown SmallDrumkit = {"Unbek. Drumkit", "Unknown drumkit"};
constexpr TUnknown Drumset = {"Unbek. Drumset", "Unknown drumset"};
constexpr TUnknown TightDrumset = {"Unbek.Drumset", "Unknown drumset"};
constexpr TUnknown XGDrumkit = {"Unbek. XG Drumkit", "Unknown XG Drumkit"};
constexpr TUnknown SFXKit = {"Unbek. SFX Kit", "Unbek. SFX Kit"};
constexpr TUnknown Sound = {"Unbek. Sound", "Unknown sound"};
constexpr TUnknown Preset = {"Unbek. Preset", "Unknown preset"};
constexpr TUnknown UserSound = {"Unbek. User-Sound", "Unknown User-sound"};
constexpr TUnknown GM2Sound = {"Unbek. GM2-Sound", "Unknown GM2-sound"};
constexpr TUnknown XGSound = {"Unbek. XG-Sound", "Unknown XG-sound"};
constexpr TUnknown Performance = {"Unbek. Performance", "Unbek. Performance"};
constexpr TUnknown LongSound = {"Unbekannter Sound", "Unknown sound"};
constexpr TUnknown LongDrumkit = {"Unbekannter Drumkit", "Unknown drumkit"};
constexpr TUnknown Plain = {"Unbekannt", "Unknown"};
constexpr TUnknown NumberedSound = {"Unb.MSB=", "Unk.MSB="};
constexpr TUnknown NumberedPreset = {"Unb.Preset MSB=", "Unk.preset MSB="};
constexpr TUnknown NumberedDrumkit = {"Unb.Drumkit MSB=", "Unk.drumkit MSB="};

constexpr std::uint8_t GM2Banks[] = {120};
constexpr std::uint8_t XGBanks[] = {126, 127};
constexpr std::uint8_t YamahaBanks[] = {120, 126, 127};

constexpr TAddress GMBank = {0, 0, -1};
constexpr TAddress GM2Bank = {121, 0, -1};
constexpr TAddress GM2DrumBank = {120, 0, -1};
constexpr TAddress XGDrumBank = {127, 0, -1};

constexpr TNameRule OfDrums(NameKey key, Repair repair) {
  return {.When = NameWhen::Drums,
          .Scopes = {Drums},
          .Key = key,
          .OnRepair = repair,
          .Unknown = {},
          .UnknownDrums = {}};
}
constexpr TNameRule OfRest(Repair repair) {
  return {.When = NameWhen::Rest,
          .Scopes = {Sounds},
          .OnRepair = repair,
          .Unknown = {},
          .UnknownDrums = {}};
}
/// Kits by their addresses are found on other channels, too.
constexpr TNameRule OfRestAndKits(Repair repair) {
  return {.When = NameWhen::Rest,
          .Scopes = {Sounds, Drums},
          .ScopeCount = 2,
          .OnRepair = repair,
          .Unknown = {},
          .UnknownDrums = {}};
}
constexpr TNameRule OfBank(std::uint8_t first, std::uint8_t last, Scope scope, NameKey key,
                           Repair repair, TUnknown unknown) {
  return {.When = NameWhen::Bank,
          .FirstBank = first,
          .LastBank = last,
          .Scopes = {scope},
          .Key = key,
          .OnRepair = repair,
          .Unknown = unknown,
          .UnknownDrums = {}};
}

constexpr TNameRule StandardRules[] = {OfDrums(NameKey::Program, Repair::Program0),
                                       OfRest(Repair::Capital)};
constexpr TFamily GMFamily = {.Drums = DrumRule::Channel10,
                              .DrumBanks = {},
                              .Capital = GMBank,
                              .DrumCapital = GMBank,
                              .Rules = StandardRules,
                              .FirstKitName = {}};
constexpr TFamily GM2Family = {.Drums = DrumRule::Channel10,
                               .DrumBanks = GM2Banks,
                               .Capital = GM2Bank,
                               .DrumCapital = GM2DrumBank,
                               .Rules = StandardRules,
                               .FirstKitName = {}};

// XG kits by program on channel 10, whatever its bank, and by their banks elsewhere.
constexpr TNameRule XGPartRules[] = {
    OfBank(126, 126, Drums, NameKey::Address, Repair::Program0, SFXKit),
    OfBank(120, 120, Drums, NameKey::Address, Repair::Program0, {}),
    OfDrums(NameKey::Program, Repair::Program0),
    OfRest(Repair::Capital),
};
constexpr TFamily XGPartFamily = {.Drums = DrumRule::Channel10,
                                  .DrumBanks = YamahaBanks,
                                  .Capital = GMBank,
                                  .DrumCapital = XGDrumBank,
                                  .Rules = XGPartRules,
                                  .FirstKitName = {}};

constexpr TNameRule XGRules[] = {
    OfBank(120, 120, Drums, NameKey::Address, Repair::Kit, {}),
    OfBank(126, 127, Drums, NameKey::Address, Repair::Kit, {}),
    {.When = NameWhen::Rest,
     .Scopes = {Sounds},
     .OnRepair = Repair::Capital,
     .Unknown = {},
     .UnknownDrums = SmallDrumkit},
};
constexpr TFamily XGFamily = {.Drums = DrumRule::Bank,
                              .DrumBanks = YamahaBanks,
                              .Capital = GMBank,
                              .DrumCapital = XGDrumBank,
                              .Rules = XGRules,
                              .FirstKitName = {}};

constexpr TNameRule ArrangerRules[] = {
    OfBank(120, 120, GM2Drums, NameKey::Program, Repair::Kit, {"Unbek. GM2 Set", "Unknown GM2 Set"}),
    OfBank(121, 121, GM2, NameKey::Address, Repair::LSB, GM2Sound),
    OfBank(126, 127, Drums, NameKey::Address, Repair::Kit, {"Unbek. Drum Kit", "Unknown Drum Kit"}),
    OfBank(62, 62, CustomDrums, NameKey::Address, Repair::None,
           {"Unbek. Custom DrumKit", "Unknown Custom DrumKit"}),
    OfBank(63, 63, Custom, NameKey::Address, Repair::None,
           {"Unbek. Custom-Voice", "Unknown Custom voice"}),
    {.When = NameWhen::Rest,
     .Scopes = {Sounds},
     .OnRepair = Repair::Capital,
     .Unknown = XGSound,
     .UnknownDrums = SmallDrumkit},
};
constexpr TFamily ArrangerFamily = {.Drums = DrumRule::Bank,
                                    .DrumBanks = YamahaBanks,
                                    .Capital = GMBank,
                                    .DrumCapital = XGDrumBank,
                                    .Rules = ArrangerRules,
                                    .FirstKitName = "Standard Kit 1 (Live!Drum)"};

constexpr TNameRule KorgRules[] = {OfDrums(NameKey::Address, Repair::KitBank), OfRest(Repair::Capital)};
constexpr TFamily KorgFamily = {.Drums = DrumRule::Channel10,
                                .DrumBanks = GM2Banks,
                                .Capital = GM2Bank,
                                .DrumCapital = GM2DrumBank,
                                .Rules = KorgRules,
                                .FirstKitName = {}};

constexpr TNameRule MotifRules[] = {OfDrums(NameKey::Address, Repair::KitBank),
                                    OfRestAndKits(Repair::Capital)};
constexpr TFamily MotifFamily = {.Drums = DrumRule::Channel10,
                                 .DrumBanks = XGBanks,
                                 .Capital = GMBank,
                                 .DrumCapital = XGDrumBank,
                                 .Rules = MotifRules,
                                 .FirstKitName = {}};

constexpr TNameRule ModuleRules[] = {OfDrums(NameKey::Address, Repair::FirstKit),
                                     OfRest(Repair::Borrow)};
constexpr TFamily KetronFamily = {.Drums = DrumRule::Channel10OrPart,
                                  .DrumBanks = {},
                                  .Capital = GMBank,
                                  .DrumCapital = GMBank,
                                  .Rules = ModuleRules,
                                  .FirstKitName = "Standard 1 (SD)"};
constexpr TFamily ModuleFamily = {.Drums = DrumRule::Channel10OrPart,
                                  .DrumBanks = {},
                                  .Capital = GMBank,
                                  .DrumCapital = GMBank,
                                  .Rules = ModuleRules,
                                  .FirstKitName = {}};

constexpr TFamily GSFamily = {.Drums = DrumRule::Part,
                              .DrumBanks = {},
                              .Capital = GMBank,
                              .DrumCapital = GMBank,
                              .Rules = {},
                              .Maps = true,
                              .FirstKitName = {}};

constexpr TFamily GSChannelFamily = {.Drums = DrumRule::Channel10OrPart,
                                     .DrumBanks = {},
                                     .Capital = GMBank,
                                     .DrumCapital = GMBank,
                                     .Rules = {},
                                     .Maps = true,
                                     .FirstKitName = {}};

constexpr TNameRule RolandBankRules[] = {OfDrums(NameKey::Address, Repair::KitBank),
                                         OfBank(97, 97, Sounds, NameKey::Address, Repair::Capital,
                                                {"Unbek. ExPCM Synth Tone", "Unbek. ExPCM Synth Tone"}),
                                         OfRestAndKits(Repair::Capital)};
constexpr TFamily IntegraFamily = {.Drums = DrumRule::Part,
                                   .DrumBanks = GM2Banks,
                                   .Capital = GM2Bank,
                                   .DrumCapital = GM2DrumBank,
                                   .Rules = RolandBankRules,
                                   .FirstKitName = {}};
constexpr TNameRule RolandRules[] = {OfDrums(NameKey::Address, Repair::KitBank),
                                     OfRestAndKits(Repair::Capital)};
constexpr TFamily RolandFamily = {.Drums = DrumRule::Part,
                                  .DrumBanks = GM2Banks,
                                  .Capital = GM2Bank,
                                  .DrumCapital = GM2DrumBank,
                                  .Rules = RolandRules,
                                  .FirstKitName = {}};
constexpr TFamily RolandChannelFamily = {.Drums = DrumRule::Channel10OrPart,
                                         .DrumBanks = GM2Banks,
                                         .Capital = GM2Bank,
                                         .DrumCapital = GM2DrumBank,
                                         .Rules = RolandRules,
                                         .FirstKitName = {}};
constexpr TFamily GMPartFamily = {.Drums = DrumRule::Part,
                                  .DrumBanks = {},
                                  .Capital = GMBank,
                                  .DrumCapital = GMBank,
                                  .Rules = StandardRules,
                                  .FirstKitName = {}};

/// In the order of `Value`.
constexpr TMember MemberRows[] = {
    {0, "TGMPatches", &GMFamily, Sound, GMKit},
    {1, "TSC88ProPatches", &GSFamily, Sound, Drumset},
    {2, "TSC880Patches", &GSFamily, Sound, Drumset},
    {3, "TSC8820Patches", &GSFamily, Sound, Drumset},
    {4, "TSC8850Patches", &GSFamily, Sound, Drumset},
    {5, "TPSR8000Patches", &XGPartFamily, LongSound, LongDrumkit},
    {6, "TPSR9000Patches", &XGFamily, LongSound, LongDrumkit},
    {7, "TPSR9000ProPatches", &XGFamily, LongSound, LongDrumkit},
    {8, "TMU90Patches", &XGPartFamily, Sound, Drumkit},
    {9, "TTyrosPatches", &XGFamily, Plain, Plain},
    {10, "TSD1Patches", &GMFamily, Sound, Drumset},
    {11, "TX1Patches", &GMFamily, Sound, Drumset},
    {12, "TSGXPatches", &GMFamily, Sound, Drumset},
    {13, "TGEMPatches", &GMFamily, Sound, Drumkit},
    {14, "TPa1XPatches", &GM2Family, Sound, Drumset},
    {15, "TSC88Patches", &GSFamily, Sound, Drumset},
    {16, "TGM2Patches", &GM2Family, Sound, Drumset},
    {17, "TSCD70Patches", &GSFamily, Sound, Drumset},
    {18, "TPSR3000Patches", &XGPartFamily, LongSound, LongDrumkit},
    {19, "TXGPatches", &XGFamily, XGSound, XGDrumkit},
    {20, "TMidJayPatches", &GMFamily, Sound, Drumset},
    {21, "TSoliPatches", &GMFamily, Sound, Drumset},
    {22, "TG70Patches", &GSChannelFamily, Sound, Drumset},
    {23, "TLimexAlpinMaster16Patches", &GMFamily, Sound, Drumset},
    {24, "TI30Patches", &GMFamily, Sound, TightDrumset},
    {25, "TFantomPatches", &RolandChannelFamily, Preset, Drumset},
    {26, "TMotifESPatches", &MotifFamily, Preset, Drumset},
    {27, "TAlphaPatches", &GMFamily, Sound, Drumset},
    {28, "TGEMSPatches", &GMFamily, Sound, Drumkit},
    {29, "TLimexAlpinMaster32Patches", &GMFamily, Sound, Drumset},
    {30, "TSD1PlusPatches", &GMFamily, Sound, Drumset},
    {31, "TTyros2PatchesNew", &ArrangerFamily, XGSound, Drumkit},
    {32, "TSD5Patches", &GMFamily, Sound, Drumset},
    {33, "TS90Patches", &MotifFamily, Preset, Drumset},
    {34, "TS90ESPatches", &MotifFamily, Preset, Drumset},
    {35, "TGEMGMXPatches", &GMFamily, Sound, Drumkit},
    {36, "TPA80Patches", &GM2Family, Sound, Drumset},
    {37, "TDoX1Patches", &GMFamily, NumberedSound, NumberedDrumkit},
    {38, "TDiscoverPatches", &GSFamily, Sound, Drumset},
    {39, "THDSProPatches", &GMFamily, Sound, Drumset},
    {40, "TSD2Patches", &KetronFamily, Sound, Drumset},
    {41, "TPSRS900Patches", &ArrangerFamily, XGSound, Drumkit},
    {42, "TPA800Patches", &KorgFamily, Sound, Drumset},
    {43, "TPA2XPatches", &KorgFamily, Sound, Drumset},
    {44, "TLimexTraditionExclusivPatches", &GMFamily, Sound, Drumset},
    {45, "TSonicCellPatches", &RolandFamily, Performance, Drumset},
    {46, "TMidJayPlusPatches", &GMFamily, Sound, Drumset},
    {47, "TSD3Patches", &GMFamily, Sound, Drumset},
    {48, "TPA1XXMSPatches", &KorgFamily, Sound, Drumset},
    {49, "TXD3Patches", &GMFamily, Sound, Drumset},
    {50, "TXD9Patches", &GMFamily, Sound, Drumset},
    {51, "TMotifXSPatches", &MotifFamily, Preset, Drumset},
    {52, "TPA500mPatches", &KorgFamily, Sound, Drumset},
    {53, "TKN6000Patches", &GMFamily, Sound, Drumset},
    {54, "TTyros3Patches", &ArrangerFamily, XGSound, Drumkit},
    {55, "TAudyaPatches", &GMFamily, Sound, Drumset},
    {56, "TLimexDoppelpack256Patches", &GMFamily, Sound, Drumset},
    {57, "TLimexAlpinMaster128Patches", &GMFamily, Sound, Drumset},
    {58, "TLimexTraditionExclusiv200Patches", &GMFamily, Sound, Drumset},
    {59, "TPSRS910_Patches", &ArrangerFamily, XGSound, Drumkit},
    {60, "TRolandVimaJM8", &RolandFamily, NumberedPreset, NumberedDrumkit},
    {61, "TRolandSD50Patches", &RolandFamily, Preset, Drumset},
    {62, "TTyros4Patches", &ArrangerFamily, XGSound, Drumkit},
    {63, "TKorgMP10ProPatches", &KorgFamily, Sound, Drumset},
    {64, "TPa3XmPatches", &KorgFamily, Sound, Drumset},
    {65, "TLimexHQ200Patches", &ModuleFamily, Sound, Drumset},
    {66, "TLimexHQ260Patches", &ModuleFamily, Sound, Drumset},
    {67, "TMiditempMP11Patches", &GMPartFamily, Sound, Drumset},
    {68, "TRolandJunoStagePatches", &RolandFamily, UserSound, Drumset},
    {69, "TMotifXFPatches", &MotifFamily, Preset, Drumset},
    {70, "TPSRS950_Patches", &ArrangerFamily, XGSound, Drumkit},
    {71, "TRolandIntegra7Patches", &IntegraFamily, Preset, Drumset},
    {72, "TRolandBK9Patches", &RolandFamily, Sound, Drumset},
    {73, "TKetronSD1000Patches", &KetronFamily, Sound, Drumset},
    {74, "TTyros5Patches", &ArrangerFamily, XGSound, Drumkit},
    {75, "TPa900mPatches", &KorgFamily, Sound, Drumset},
    {76, "TKetronMIDJPROPatches", &KetronFamily, Sound, Drumset},
    {77, "TLimexQuattropackPatches", &ModuleFamily, Sound, Drumset},
    {78, "TKorgKronosPatches", &KorgFamily, Sound, Drumset},
    {79, "TKetronSD7Patches", &KetronFamily, Sound, Drumset},
    {80, "TPSRS970_Patches", &ArrangerFamily, XGSound, Drumkit},
    {81, "TV3SoundTR521_Patches", &ModuleFamily, Sound, Drumset},
    {82, "TPa4XmPatches", &KorgFamily, Sound, Drumset},
    {83, "TSCVAPatches", &GSFamily, Sound, Drumset},
    {84, "TKetronSD40Patches", &KetronFamily, Sound, Drumset},
    {85, "TLimexG4Patches", &GMFamily, Sound, Drumset},
    {86, "TLimexG4plusPatches", &GMFamily, Sound, Drumset},
    {87, "TGenos_Patches", &ArrangerFamily, XGSound, Drumkit},
    {88, "TV3SoundMPR5_Patches", &ModuleFamily, Sound, Drumset},
    {89, "TV3SoundSonority_Patches", &ModuleFamily, Sound, Drumset},
    {90, "TPa700Patches", &KorgFamily, Sound, Drumset},
    {91, "TPa1000Patches", &KorgFamily, Sound, Drumset},
    {92, "TKetronSD9Patches", &KetronFamily, Sound, Drumset},
    {93, "TLimexG5Patches", &GMFamily, Sound, Drumset},
    {94, "TV3SoundMMEdition_Patches", &ModuleFamily, Sound, Drumset},
    {95, "TV3SoundSonorityXXL_Patches", &ModuleFamily, Sound, Drumset},
    {96, "TV3SoundMusikHerzing_Patches", &ModuleFamily, Sound, Drumset},
    {97, "TPSRSX900_Patches", &ArrangerFamily, XGSound, Drumkit},
    {98, "TMerish5p_Patches", &ModuleFamily, Sound, Drumset},
    {99, "TOkyweb4_Patches", &ModuleFamily, Sound, Drumset},
    {100, "TMBProMax_Patches", &ModuleFamily, Sound, Drumset},
    {101, "TKetronLounge_Patches", &KetronFamily, Sound, Drumset},
    {102, "TDeebachMaxII_Patches", &ModuleFamily, Sound, Drumset},
    {103, "TPa5XmPatches", &KorgFamily, Sound, Drumset},
    {104, "TKetronEvent_Patches", &KetronFamily, Sound, Drumset},
    {105, "TDIVO_Patches", &ModuleFamily, Sound, Drumset},
};

}  // namespace

std::span<const TMember> Members() noexcept { return MemberRows; }

const TMember* MemberOf(int value) noexcept {
  const auto row = std::ranges::lower_bound(MemberRows, value, {}, &TMember::Value);
  return row == std::end(MemberRows) || row->Value != value ? nullptr : row;
}

}  // namespace Sonarello
