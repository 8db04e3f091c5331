// What Yamaha's messages are called: every family over all 256 values of its selecting byte, so that
// what stands beside the ends of a range is met as well.
#include <gtest/gtest.h>

#include <initializer_list>
#include <map>

#include "editors/SysexExplain.h"
#include "editors/SysexExplainHex.h"

namespace Sonarello {

namespace {

using Names = std::map<int, std::string>;

constexpr int ByteValues = 256;

std::string Explain(const std::string& hexadecimal) { return ExplainSysex(BytesOf(hexadecimal)); }

/// Numbered names: first, first + step, ... up to last.
void Number(Names& names, const std::string& word, int first, int last, int step, int number = 1) {
  for (int selector = first; selector <= last; selector += step)
    names[selector] = word + std::to_string(number++);
}

/// Names one behind the other, from a first selector on.
void List(Names& names, const std::string& head, int first, std::initializer_list<const char*> tails) {
  for (const char* tail : tails) names[first++] = head + tail;
}

void List(Names& names, const std::string& head, int first, std::span<const char* const> tails) {
  for (const char* tail : tails) names[first++] = head + tail;
}

/// The names of a family by the byte behind the prefix; `otherwise` for all other bytes. A message that
/// ends in front of that byte has none.
void ExpectFamily(const std::string& prefix, const Names& names, const std::string& otherwise = "") {
  for (int selector = 0; selector < ByteValues; ++selector) {
    std::vector<std::uint8_t> bytes = BytesOf(prefix);
    for (const int byte : {selector, 0x40, 0x00, 0xF7})
      bytes.push_back(static_cast<std::uint8_t>(byte));
    const auto name = names.find(selector);
    EXPECT_EQ(ExplainSysex(bytes), name == names.end() ? otherwise : name->second) << TextOf(bytes);
  }
  EXPECT_EQ(Explain(prefix), "") << prefix;
}

struct Motif {
  const char* Prefix;
  const char* Name;
};
constexpr Motif MotifES{"43 10 7F 00 ", "Yamaha Motif ES"};
constexpr Motif MotifXSAndXF[] = {{"43 10 7F 12 ", "Yamaha Motif XF"},
                                  {"43 10 7F 03 ", "Yamaha Motif XS"}};

void ExpectMotifEqualizer(const Motif& motif) {
  const std::string prefix = std::string(motif.Prefix) + "36 10";
  const std::string name = motif.Name;
  Names names;
  List(names, name, 0x00,
       {" - Master EQ 1 Gain", " - Master EQ 1 Frequency", " - Master EQ 1 Q", " - Master EQ 1 Shape"});
  List(names, name, 0x04, {" - Master EQ 2 Gain", " - Master EQ 2 Frequency", " - Master EQ 2 Q"});
  // The blank behind this one is deliberate.
  List(names, name, 0x08, {" - Master EQ 3 Gain ", " - Master EQ 3 Frequency", " - Master EQ 3 Q"});
  List(names, name, 0x0C, {" - Master EQ 4 Gain", " - Master EQ 4 Frequency", " - Master EQ 4 Q"});
  List(names, name, 0x10,
       {" - Master EQ 5 Gain", " - Master EQ 5 Frequency", " - Master EQ 5 Q", " - Master EQ 5 Shape"});
  ExpectFamily(prefix, names);
}

/// What a part's addresses are from 00 to 28 and from 30 to 6E.
constexpr const char* PartsFrom00[] = {" - Element Reserve",
                                       " - Bank Select MSB",
                                       " - Bank Select LSB",
                                       " - Program Number",
                                       " - Rcv Channel",
                                       " - Mono/Poly Mode",
                                       " - Same Note...",
                                       " - Part Mode DRUMS1",
                                       " - Note Shift",
                                       " - Detune 1st",
                                       " - Detune 2nd",
                                       " - Volume",
                                       " - Velocity Sense Depth",
                                       " - Velocity Sense Offset",
                                       " - Pan",
                                       " - Note Limit Low",
                                       " - Note Limit High",
                                       " - Dry Level",
                                       " - Chorus Level",
                                       " - Reverb Send",
                                       " - Variation Send",
                                       " - Vibrato Rate",
                                       " - Vibrato Depth",
                                       " - Vibrato Delay",
                                       " - Filter Cutoff Freq",
                                       " - Filter Resonance",
                                       " - EG Attack Time",
                                       " - EG Decay Time",
                                       " - EG Release Time",
                                       " - MW Pitch Control",
                                       " - MW Low Pass Filter Control",
                                       " - MW Amplitude Control",
                                       " - MW LFO PMOD Depth",
                                       " - MW LFO FMOD Depth",
                                       " - MW LFO AMOD Depth",
                                       " - Bend Pitch Control",
                                       " - Bend Low Pass Filter Control",
                                       " - Bend Amplitude Control",
                                       " - Bend LFO PMOD Depth",
                                       " - Bend LFO FMOD Depth",
                                       " - Bend LFO AMOD Depth"};
constexpr const char* PartsFrom30[] = {" - Rcv Pitch Bend",
                                       " - Rcv Ch After Touch",
                                       " - Rcv Program Change",
                                       " - Rcv Control Change",
                                       " - Rcv Poly After Touch",
                                       " - Rcv Note Message",
                                       " - Rcv RPN",
                                       " - Rcv NRPN",
                                       " - Rcv Modulation",
                                       " - Rcv Volume",
                                       " - Rcv Pan",
                                       " - Rcv Expression",
                                       " - Rcv Hold1",
                                       " - Rcv Portamento",
                                       " - Rcv Sostenuto",
                                       " - Rcv Soft Pedal",
                                       " - Rcv Bank Select",
                                       " - Scale Tuning C",
                                       " - Scale Tuning C#",
                                       " - Scale Tuning D",
                                       " - Scale Tuning D#",
                                       " - Scale Tuning E",
                                       " - Scale Tuning F",
                                       " - Scale Tuning F#",
                                       " - Scale Tuning G",
                                       " - Scale Tuning G#",
                                       " - Scale Tuning A",
                                       " - Scale Tuning A#",
                                       " - Scale Tuning B",
                                       " - CAT Pitch Control",
                                       " - CAT Low Pass Filter Control",
                                       " - CAT Amplitude Control",
                                       " - CAT LFO PMOD Depth",
                                       " - CAT LFO FMOD Depth",
                                       " - CAT LFO AMOD Depth",
                                       " - PAT Pitch Control",
                                       " - PAT Low Pass Filter Control",
                                       " - PAT Amplitude Control",
                                       " - PAT LFO PMOD Depth",
                                       " - PAT LFO FMOD Depth",
                                       " - PAT LFO AMOD Depth",
                                       " - AC1 Controller Number",
                                       " - AC1 Pitch Control",
                                       " - AC1 Low Pass Filter Control",
                                       " - AC1 Amplitude Control",
                                       " - AC1 LFO PMOD Depth",
                                       " - AC1 LFO FMOD Depth",
                                       " - AC1 LFO AMOD Depth",
                                       " - AC2 Controller Number",
                                       " - AC2 Pitch Control",
                                       " - AC2 Low Pass Filter Control",
                                       " - AC2 Amplitude Control",
                                       " - AC2 LFO PMOD Depth",
                                       " - AC2 LFO FMOD Depth",
                                       " - AC2 LFO AMOD Depth",
                                       " - Portamento Switch",
                                       " - Portamento Time",
                                       " - Pitch EG Initial Level",
                                       " - Pitch EG Attack Time",
                                       " - Pitch EG Release Level",
                                       " - Pitch EG Release Time",
                                       " - Velocity Limit Low",
                                       " - Velocity Limit High"};

/// Type, template and sixteen parameters of an effect of the XS and XF.
Names MotifEffect(const std::string& name) {
  Names names = {{0x00, name + " Effect Type"}, {0x02, name + " Template"}};
  Number(names, name + " Parameter ", 0x03, 0x21, 2);
  return names;
}

}  // namespace

TEST(SysexExplainYamaha, MotifESEffects) {
  EXPECT_EQ(Explain("43 10 7F 00 36 00 60 01 F7"), "Yamaha Motif ES - Insertion Part SW");
  EXPECT_EQ(Explain("43 10 7F 00 36 00 5F 01 F7"), "");
  EXPECT_EQ(Explain("43 10 7F 00 36 00 61 01 F7"), "");
  Names chorus = {{0x00, "Yamaha Motif ES - Chorus Effect Type"},
                  {0x22, "Yamaha Motif ES - Chorus Return"},
                  {0x23, "Yamaha Motif ES - Chorus Pan"},
                  {0x24, "Yamaha Motif ES - Chorus Send Chorus To Reverb"}};
  Number(chorus, "Yamaha Motif ES - Chorus Parameter ", 0x02, 0x20, 2);
  EXPECT_EQ(chorus[0x20], "Yamaha Motif ES - Chorus Parameter 16");
  ExpectFamily("43 10 7F 00 36 02", chorus);
  Names reverb = {{0x00, "Yamaha Motif ES - Reverb Effect Type"},
                  {0x22, "Yamaha Motif ES - Reverb Return"},
                  {0x23, "Yamaha Motif ES - Reverb Pan"}};
  Number(reverb, "Yamaha Motif ES - Reverb Parameter ", 0x02, 0x20, 2);
  ExpectFamily("43 10 7F 00 36 01", reverb);
  Names master = {{0x00, "Yamaha Motif ES - Master FX Effect Type"},
                  {0x22, "Yamaha Motif ES - Master FX On/Off"}};
  Number(master, "Yamaha Motif ES - Master FX Parameter ", 0x02, 0x20, 2);
  ExpectFamily("43 10 7F 00 36 11", master);
  ExpectMotifEqualizer(MotifES);
  EXPECT_EQ(Explain("43 10 7F 00 36 10 00 40 F7"), "Yamaha Motif ES - Master EQ 1 Gain");
  EXPECT_EQ(Explain("43 10 7F 00 36 10 08 40 F7"), "Yamaha Motif ES - Master EQ 3 Gain ");
}

TEST(SysexExplainYamaha, MotifESParts) {
  for (const auto& [part, head] : {std::pair{"00", "Yamaha Motif ES - MutiPart1"},
                                   std::pair{"0F", "Yamaha Motif ES - MutiPart16"}}) {
    const std::string name = head;
    ExpectFamily(std::string("43 10 7F 00 37 ") + part,
                 {{0x2E, name + " - EQ Low Frequency"},
                  {0x30, name + " - EQ Low Gain"},
                  {0x32, name + " - EQ Mid Frequency"},
                  {0x34, name + " - EQ Mid Gain"},
                  {0x35, name + " - EQ Mid Q"},
                  {0x36, name + " - EQ High Frequency"},
                  {0x38, name + " - EQ High Gain"}},
                 name);
    Names outputs;
    List(outputs, name, 0x00,
         {" - Output Select to L&R", " - Output Select to asn1&2", " - Output Select to asn3&4",
          " - Output Select to asn1", " - Output Select to asn2", " - Output Select to asn3",
          " - Output Select to asn4"});
    for (int output = 0; output < ByteValues; ++output)
      EXPECT_EQ(Explain(std::string("43 10 7F 00 37 ") + part + " 1E " +
                        TextOf({static_cast<std::uint8_t>(output), 0xF7})),
                outputs.contains(output) ? outputs[output] : name)
          << output;
  }
  EXPECT_EQ(Explain("43 10 7F 00 38 00 2E 40 F7"), "");
}

TEST(SysexExplainYamaha, MotifXSAndXFEffects) {
  for (const Motif& motif : MotifXSAndXF) {
    const std::string prefix = motif.Prefix;
    const std::string name = std::string(motif.Name) + " - ";
    EXPECT_EQ(Explain(prefix + "36 00 4D 01 F7"), name + "Insertion Part SW");
    EXPECT_EQ(Explain(prefix + "36 00 60 01 F7"), "");
    EXPECT_EQ(Explain(prefix + "40 00 4E 01 F7"), name + "Insert Connect Type");
    EXPECT_EQ(Explain(prefix + "40 00 4D 01 F7"), "");
    EXPECT_EQ(Explain(prefix + "0D 00 00 01 F7"), name + "Part Set Control");
    EXPECT_EQ(Explain(prefix + "0D 00 01 01 F7"), "");
    Names chorus = MotifEffect(name + "Chorus");
    EXPECT_EQ(chorus[0x21], name + "Chorus Parameter 16");
    List(chorus, name, 0x23, {"Chorus Return", "Chorus Pan", "Chorus Send Chorus To Reverb"});
    ExpectFamily(prefix + "36 02", chorus);
    Names reverb = MotifEffect(name + "Reverb");
    List(reverb, name, 0x23, {"Reverb Return", "Reverb Pan"});
    ExpectFamily(prefix + "36 01", reverb);
    Names master = MotifEffect(name + "Master FX");
    master[0x22] = name + "Master FX On/Off";
    ExpectFamily(prefix + "36 11", master);
    ExpectFamily(prefix + "40 03", MotifEffect(name + "Insert A"));
    ExpectFamily(prefix + "40 04", MotifEffect(name + "Insert B"));
    EXPECT_EQ(Explain(prefix + "40 05 00 01 F7"), "");
    ExpectMotifEqualizer(motif);
  }
  EXPECT_EQ(Explain("43 10 7F 04 36 02 00 01 F7"), "");
}

TEST(SysexExplainYamaha, MotifXSAndXFParts) {
  for (const Motif& motif : MotifXSAndXF)
    for (const auto& [part, number] : {std::pair{"37 00", "1"}, std::pair{"37 0F", "16"}}) {
      const std::string prefix = std::string(motif.Prefix) + part;
      const std::string name = std::string(motif.Name) + " - MutiPart" + number;
      ExpectFamily(prefix,
                   {{0x31, name + " - EQ Bass Frequency"},
                    {0x33, name + " - EQ Bass Gain"},
                    {0x35, name + " - EQ Mid Frequency"},
                    {0x37, name + " - EQ Mid Gain"},
                    {0x38, name + " - EQ Mid Q"},
                    {0x39, name + " - EQ High Frequency"},
                    {0x3B, name + " - EQ High Gain"},
                    {0x1F, name + " - Output Select to asnL"}},
                   name);
      Names outputs = {{0x00, name + " - Output Select to L&R"}};
      List(
          outputs, name + " - Output Select to ", 0x08,
          {"asnL&R", "mLAN1&2", "mLAN3&4", "mLAN5&6", "mLAN7&8", "mLAN9&10", "mLAN11&12", "mLAN13&14"});
      List(outputs, name, 0x40, {" - Output Select to asnL", " - Output Select to asnR"});
      Number(outputs, name + " - Output Select to mLAN", 0x42, 0x4F, 1);
      EXPECT_EQ(outputs.size(), 25U);
      for (int output = 0; output < ByteValues; ++output)
        EXPECT_EQ(Explain(prefix + " 1F " + TextOf({static_cast<std::uint8_t>(output), 0xF7})),
                  outputs.contains(output) ? outputs[output] : name)
            << output;
    }
}

TEST(SysexExplainYamaha, SystemEffects) {
  Names names = {{0x00, "Yamaha Reverb - Effect Type"},
                 {0x0C, "Yamaha Reverb - Return"},
                 {0x0D, "Yamaha Reverb - Panorama"},
                 {0x20, "Yamaha Chorus - Effect Type"},
                 {0x40, "Yamaha DSP1 - Effect Type"}};
  Number(names, "Yamaha Reverb - Parameter ", 0x02, 0x0B, 1);
  Number(names, "Yamaha Reverb - Parameter ", 0x10, 0x15, 1, 11);
  Number(names, "Yamaha Chorus - Parameter ", 0x22, 0x2B, 1);
  List(names, "Yamaha Chorus - ", 0x2C, {"Return", "Pan", "Send Chorus To Reverb"});
  Number(names, "Yamaha Chorus - Parameter ", 0x30, 0x35, 1, 11);
  Number(names, "Yamaha DSP1 - Parameter ", 0x42, 0x54, 2);
  List(names, "Yamaha DSP1 - ", 0x56,
       {"Variation Return", "Variation Pan", "Send Variation To Reverb", "Send Variation To Chorus",
        "Variation Connection", "Part Number", "MW Variation", "Bend Variation", "Cat Variation",
        "AC1 Variation", "AC2 Variation"});
  Number(names, "Yamaha DSP1 - Parameter ", 0x70, 0x75, 1, 11);
  EXPECT_EQ(names[0x0B], "Yamaha Reverb - Parameter 10");
  EXPECT_EQ(names[0x35], "Yamaha Chorus - Parameter 16");
  EXPECT_EQ(names[0x54], "Yamaha DSP1 - Parameter 10");
  EXPECT_EQ(names[0x60], "Yamaha DSP1 - AC2 Variation");
  ExpectFamily("43 10 4C 02 01", names);
  EXPECT_EQ(Explain("43 10 4C 02 00 00 01 00 F7"), "");
}

TEST(SysexExplainYamaha, InsertionEffects) {
  for (int block = 0; block < ByteValues; ++block) {
    const std::string prefix = "43 10 4C 03 " + TextOf({static_cast<std::uint8_t>(block)});
    if (block > 0x13) {
      EXPECT_EQ(Explain(prefix + " 00 40 00 F7"), "");
      continue;
    }
    const std::string name = block <= 7 ? "Yamaha DSP" + std::to_string(block + 2)
                                        : "Yamaha Genos DSP" + std::to_string(block + 1);
    Names names = {{0x00, name + " - Effect Type"}};
    Number(names, name + " - Parameter ", 0x02, 0x0B, 1);
    List(names, name, 0x0C,
         {" - Part Number", " - MW Insertion", " - Bend Insertion", " - Cat Insertion",
          " - AC1 Insertion", " - AC2 Insertion"});
    Number(names, name + " - Parameter ", 0x20, 0x25, 1, 11);
    Number(names, name + " - Parameter ", 0x30, 0x42, 2);
    EXPECT_EQ(names[0x25], name + " - Parameter 16");
    EXPECT_EQ(names[0x42], name + " - Parameter 10");
    ExpectFamily(prefix, names);
  }
}

TEST(SysexExplainYamaha, MasterEqualizer) {
  Names names = {{0x00, "Yamaha Master EQ Type"}};
  List(names, "Yamaha Master EQ ", 0x01, {"1 - Gain", "1 - Frequency", "1 - Q", "1 - Shape"});
  List(names, "Yamaha Master EQ ", 0x05, {"2 - Gain", "2 - Frequency", "2 - Q"});
  List(names, "Yamaha Master EQ ", 0x09, {"3 - Gain", "3 - Frequency", "3 - Q"});
  List(names, "Yamaha Master EQ ", 0x0D, {"4 - Gain", "4 - Frequency", "4 - Q"});
  List(names, "Yamaha Master EQ ", 0x11, {"5 - Gain", "5 - Frequency", "5 - Q", "5 - Shape"});
  ExpectFamily("43 10 4C 02 40", names, "Yamaha Master EQ - Not used");
  EXPECT_EQ(Explain("43 10 4C 02 40 01 40 F7"), "Yamaha Master EQ 1 - Gain");
}

TEST(SysexExplainYamaha, Parts) {
  for (const auto& [part, head] :
       {std::pair{"00", "Yamaha MultiPart 1"}, std::pair{"0F", "Yamaha MultiPart 16"},
        std::pair{"1F", "Yamaha MultiPart 32"}}) {
    const std::string name = head;
    Names names;
    for (int selector = 0; selector < 0x80; ++selector) names[selector] = name + " - Not Used";
    List(names, name, 0x00, PartsFrom00);
    List(names, name, 0x30, PartsFrom30);
    List(names, name, 0x72, {" - EQ Bass Gain", " - EQ Treble Gain"});
    List(names, name, 0x76, {" - EQ Bass Frequency", " - EQ Treble Frequency"});
    EXPECT_EQ(names[0x28], name + " - Bend LFO AMOD Depth");
    EXPECT_EQ(names[0x6E], name + " - Velocity Limit High");
    ExpectFamily(std::string("43 10 4C 08 ") + part, names);
    Names offsets;
    List(offsets, name, 0x40,
         {" - MW Offset Level Control", " - Bend Offset Level Control", " - CAT Offset Level Control",
          " - PAT Offset Level Control", " - AC1 Offset Level Control", " - AC2 Offset Level Control"});
    ExpectFamily(std::string("43 10 4C 0A ") + part, offsets);
  }
}

TEST(SysexExplainYamaha, DrumNotes) {
  for (const auto& [prefix, head] : {std::pair{"43 10 4C 30 00", "Yamaha Drum1 Note 0"},
                                     std::pair{"43 10 4C 30 24", "Yamaha Drum1 Note 36"},
                                     std::pair{"43 10 4C 31 7F", "Yamaha Drum2 Note 127"}}) {
    const std::string name = head;
    Names names;
    List(names, name, 0x00,
         {" - Pitch Coarse", " - Pitch Fine", " - Level", " - Alternate Group", " - Pan",
          " - Reverb Send", " - Chorus Send", " - Variation Send", " - Key Assign", " - Rcv Note Off",
          " - Rcv Note On", " - Low Pass Filter Cutoff Freq", " - Low Pass Filter Resonance",
          " - EG Attack Rate", " - EG Decay1 Rate", " - EG Decay2 Rate"});
    List(names, name, 0x20, {" - EQ Bass Gain", " - EQ Treble Gain"});
    List(names, name, 0x24, {" - EQ Bass Frequency", " - EQ Treble Frequency"});
    ExpectFamily(prefix, names, name + " - Not Used");
  }
  EXPECT_EQ(Explain("43 10 4C 32 24 00 40 F7"), "");
}

TEST(SysexExplainYamaha, VocalBlocks) {
  Names names = {{0x00, "Yamaha Vocal Harmony - Effect Type"},
                 {0x60, "Yamaha Vocal Effect - Effect Type"}};
  Number(names, "Yamaha Vocal Harmony - Parameter ", 0x02, 0x0B, 1);
  List(names, "Yamaha Vocal Harmony", 0x0C,
       {" - Switched On", " - MW Insertion", " - Bend Insertion", " - Cat Insertion",
        " - AC1 Insertion", " - AC2 Insertion"});
  List(names, "Yamaha Vocal Harmony", 0x14,
       {" - Harmony Channel", " - Melody Channel", " - Lead Output Level", " - Harmony Output Level",
        " - Lead Vocal Effect Dry Level", " - Harmony Vocal Effect Dry Level",
        " - Lead Vocal Effect Send Level", " - Harmony Vocal Effect Send Level"});
  Number(names, "Yamaha Vocal Harmony - Parameter ", 0x20, 0x45, 1, 11);
  Number(names, "Yamaha Vocal Effect - Parameter ", 0x62, 0x74, 2);
  List(names, "Yamaha Vocal Effect", 0x76, {" - Switched Off", " - Output Level"});
  Number(names, "Yamaha Vocal Effect - Parameter ", 0x7A, 0x7F, 1, 11);
  EXPECT_EQ(names[0x45], "Yamaha Vocal Harmony - Parameter 48");
  EXPECT_EQ(names[0x74], "Yamaha Vocal Effect - Parameter 10");
  EXPECT_EQ(names[0x7F], "Yamaha Vocal Effect - Parameter 16");
  ExpectFamily("43 10 4C 04 00", names);
  EXPECT_EQ(Explain("43 10 4C 04 01 00 01 00 F7"), "");
  ExpectFamily("43 10 4C 10 00",
               {{0x12, "Yamaha Vocal Harmony - Chorus"}, {0x13, "Yamaha Vocal Harmony - Reverb"}});
}

TEST(SysexExplainYamaha, ScoreAndStyle) {
  ExpectFamily("43 73 01", {{0x50, "_Yamaha Score Control"}, {0x51, "_Yamaha Style Control"}});
}

}  // namespace Sonarello
