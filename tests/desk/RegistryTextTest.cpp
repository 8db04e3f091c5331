#include "desk/RegistryText.h"

#include <gtest/gtest.h>

#include <random>

#include "desk/RegistryTextCode.h"
#include "desk/RegistryTextValue.h"
#include "helpers/InGerman.h"

namespace Sonarello {

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes AsBytes(std::string_view text) { return {text.begin(), text.end()}; }

Bytes AsUtf16(std::string_view text, bool lowFirst = true, bool withMark = true) {
  Bytes bytes;
  const auto put = [&](char16_t unit) {
    const auto low = static_cast<std::uint8_t>(unit & 0xFF);
    const auto high = static_cast<std::uint8_t>(unit >> 8);
    bytes.push_back(lowFirst ? low : high);
    bytes.push_back(lowFirst ? high : low);
  };
  if (withMark) put(0xFEFF);
  for (const char16_t unit : ToUtf16(text)) put(unit);
  return bytes;
}

/// The file as text, without its mark.
std::string Exported(const IRegistryStore& store) {
  const Bytes bytes = ExportRegistry(store);
  EXPECT_EQ(bytes[0], 0xFF);
  EXPECT_EQ(bytes[1], 0xFE);
  return FromUtf16Bytes(std::span(bytes).subspan(2));
}

const std::string Head = "Windows Registry Editor Version 5.00\r\n\r\n";
const std::string Key = "[HKEY_CURRENT_USER\\SOFTWARE\\Brightfold\\Sonarello XI]\r\n";

TRegistryImport Read(const std::string& body) { return ReadRegistryFile(AsBytes(Head + Key + body)); }

/// A file with lines under the key, applied to an empty store.
MemoryRegistry Applied(const std::string& body) {
  MemoryRegistry store;
  const TRegistryImport import = Read(body);
  EXPECT_EQ(import.Error, "") << body;
  ApplyImport(store, import);
  return store;
}

TEST(RegistryExport, WritesTheStandardForm) {
  MemoryRegistry store;
  store.WriteString("", "Lang", "de");
  store.WriteBool("", "MultiMidi", true);
  store.WriteInteger("", "MainFormLeft", -9999);
  store.WriteInteger("", "RecLatency", 12);
  store.WriteString("", "SourcePath", "C:\\Songs\\\"Live\"\\Über");
  store.WriteString("", "Unknown", "x");
  store.WriteString("", "@", "default");
  store.WriteInteger("Yamaha Genos", "DSP1FormTop", 20);
  store.WriteBool("Yamaha Genos", "SortSounds", false);
  EXPECT_EQ(Exported(store),
            Head + Key +
                "@=\"default\"\r\n"
                "\"Lang\"=\"de\"\r\n"
                "\"MainFormLeft\"=dword:ffffd8f1\r\n"
                "\"MultiMidi\"=dword:00000001\r\n"
                "\"RecLatency\"=dword:0000000c\r\n"
                "\"SourcePath\"=\"C:\\\\Songs\\\\\\\"Live\\\"\\\\Über\"\r\n"
                "\"Unknown\"=\"x\"\r\n"
                "\r\n"
                "[HKEY_CURRENT_USER\\SOFTWARE\\Brightfold\\Sonarello XI\\Yamaha Genos]\r\n"
                "\"DSP1FormTop\"=dword:00000014\r\n"
                "\"SortSounds\"=dword:00000000\r\n"
                "\r\n");
}

TEST(RegistryExport, AnEmptyStoreIsAnEmptyKey) {
  EXPECT_EQ(Exported(MemoryRegistry()), Head + Key + "\r\n");
}

TEST(RegistryExport, WritesANumberThatIsNoneAsTheTextThatItIs) {
  MemoryRegistry store;
  store.WriteString("", "RecLatency", "many");
  store.WriteString("", "ShowLyrics", "true");
  EXPECT_EQ(Exported(store),
            Head + Key + "\"RecLatency\"=\"many\"\r\n\"ShowLyrics\"=dword:00000001\r\n\r\n");
}

TEST(RegistryExport, FoldsBytesAsTheStandardToolsDo) {
  MemoryRegistry store;
  TRawValue value;
  for (int i = 0; i < 60; ++i) value.Bytes.push_back(static_cast<std::uint8_t>(i));
  store.WriteString("", "Blob", value.StoredText());
  EXPECT_EQ(Exported(store),
            Head + Key +
                "\"Blob\"=hex:00,01,02,03,04,05,06,07,08,09,0a,0b,0c,0d,0e,0f,10,11,12,13,14,15,\\\r\n"
                "  16,17,18,19,1a,1b,1c,1d,1e,1f,20,21,22,23,24,25,26,27,28,29,2a,2b,2c,2d,2e,\\\r\n"
                "  2f,30,31,32,33,34,35,36,37,38,39,3a,3b\r\n\r\n");
}

TEST(RegistryExport, WritesATextWithLineEndsAsBytes) {
  MemoryRegistry store;
  store.WriteString("", "DestPath", "a\nb");
  EXPECT_EQ(Exported(store), Head + Key + "\"DestPath\"=hex(1):61,00,0a,00,62,00,00,00\r\n\r\n");
}

TEST(RegistryImport, ReadsEveryEncoding) {
  const std::string file = Head + Key + "\"DestPath\"=\"/Töne/𝄞\"\r\n";
  Bytes withMark = {0xEF, 0xBB, 0xBF};
  const Bytes plain = AsBytes(file);
  withMark.insert(withMark.end(), plain.begin(), plain.end());
  for (const Bytes& bytes : {AsUtf16(file), AsUtf16(file, false), AsUtf16(file, true, false),
                             AsUtf16(file, false, false), plain, withMark}) {
    const TRegistryImport import = ReadRegistryFile(bytes);
    EXPECT_EQ(import.Error, "");
    ASSERT_EQ(import.Changes.size(), 1U);
    EXPECT_EQ(import.Changes[0].Value, "/Töne/𝄞");
  }
}

TEST(RegistryImport, ReadsAFileOfVersion4InTheOldEncoding) {
  std::string file =
      "REGEDIT4\n\n" + Key + "\"DestPath\"=\"/T\xf6ne\"\n\"SourcePath\"=hex(2):2f,f6,00\n";
  const TRegistryImport import = ReadRegistryFile(AsBytes(file));
  EXPECT_EQ(import.Error, "");
  ASSERT_EQ(import.Changes.size(), 2U);
  EXPECT_EQ(import.Changes[0].Value, "/Töne");
  EXPECT_EQ(import.Changes[1].Value, "/ö");
}

TEST(RegistryImport, ReadsAllKindsOfValues) {
  const MemoryRegistry store = Applied(
      "; a comment\r\n"
      "\"Lang\" = \"de\" ; behind a value\r\n"
      "\"multimidi\"=dword:1\r\n"
      "\"RecLatency\"=DWORD:0000000C\r\n"
      "\"MainFormTop\"=dword:fffffff6\r\n"
      "\"MinNoteLength\"=\"10\"\r\n"
      "\"ShowLyrics\"=\"false\"\r\n"
      "\"RecQuantize\"=hex(4):10,00,00,00\r\n"
      "\"SourcePath\"=hex(2):2f,00,61,\\\r\n"
      "  00, 62,00 ,\\ \r\n"
      "  00,00\r\n"
      "\"DestPath\"=\"two\r\nlines\"\r\n"
      "\"Blob\"=hex:0A,b,ff\r\n"
      "\"List\"=hex(7):61,00,00,00\r\n"
      "\"None\"=hex:\r\n"
      "\"Other\"=dword:ffffffff\r\n"
      "@=\"default\"\r\n"
      "\"with \\\"quotes\\\" and \\\\\"=\"x\"\r\n");
  EXPECT_EQ(store.ReadString("", "Lang", ""), "de");
  EXPECT_EQ(store.ReadString("", "MultiMidi", ""), "1");
  EXPECT_EQ(store.ReadString("", "RecLatency", ""), "12");
  EXPECT_EQ(store.ReadString("", "MainFormTop", ""), "-10");
  EXPECT_EQ(store.ReadString("", "MinNoteLength", ""), "10");
  EXPECT_EQ(store.ReadString("", "ShowLyrics", ""), "0");
  EXPECT_EQ(store.ReadString("", "RecQuantize", ""), "16");
  EXPECT_EQ(store.ReadString("", "SourcePath", ""), "/ab");
  EXPECT_EQ(store.ReadString("", "DestPath", ""), "two\r\nlines");
  EXPECT_EQ(store.ReadString("", "Blob", ""), "hex:0a,0b,ff");
  EXPECT_EQ(store.ReadString("", "List", ""), "hex(7):61,00,00,00");
  EXPECT_EQ(store.ReadString("", "None", ""), "hex:");
  EXPECT_EQ(store.ReadString("", "Other", ""), "-1");
  EXPECT_EQ(store.ReadString("", "@", ""), "default");
  EXPECT_EQ(store.ReadString("", "with \"quotes\" and \\", ""), "x");
}

TEST(RegistryImport, GoesIntoSubKeysInAnyCase) {
  const MemoryRegistry store = Applied(
      "[hkey_current_user\\software\\BRIGHTFOLD\\Sonarello xi\\Yamaha Genos]  ; comment\n"
      "\"SortSounds\"=dword:00000000");
  EXPECT_EQ(store.ReadString("Yamaha Genos", "SortSounds", ""), "0");
}

TEST(RegistryImport, DeletesValuesAndKeys) {
  MemoryRegistry store;
  store.WriteString("", "Lang", "de");
  store.WriteString("", "@", "x");
  store.WriteString("", "DestPath", "/keep");
  store.WriteString("Yamaha Genos", "SortSounds", "1");
  store.WriteString("Yamaha Genos\\Deeper", "x", "1");
  const TRegistryImport import = Read(
      "\"Lang\"=-\r\n@=-\r\n"
      "[-HKEY_CURRENT_USER\\SOFTWARE\\Brightfold\\Sonarello XI\\Yamaha Genos]\r\n");
  ASSERT_EQ(import.Error, "");
  EXPECT_EQ(import.Writes(), 0U);
  ApplyImport(store, import);
  EXPECT_FALSE(store.HasValue("", "Lang"));
  EXPECT_FALSE(store.HasValue("", "@"));
  EXPECT_TRUE(store.HasValue("", "DestPath"));
  EXPECT_TRUE(store.Sections().empty());
}

struct TRefusal {
  std::string Body;
  std::string Error;
};

TEST(RegistryImport, RefusesAFaultWithItsLine) {
  const TRefusal refusals[] = {
      {"\"Lang\"=\"de\"\r\n\r\n[HKEY_CURRENT_USER\\SOFTWARE\\Other]\r\n",
       "Line 7: The key \"HKEY_CURRENT_USER\\SOFTWARE\\Other\" does not belong to Sonarello."},
      {"[HKEY_CURRENT_USER\\SOFTWARE\\Brightfold\\Sonarello XII]",
       "Line 5: The key \"HKEY_CURRENT_USER\\SOFTWARE\\Brightfold\\Sonarello XII\" does not belong to "
       "Sonarello."},
      {"[-HKEY_CURRENT_USER\\SOFTWARE\\Brightfold]",
       "Line 5: The key \"HKEY_CURRENT_USER\\SOFTWARE\\Brightfold\" does not belong to Sonarello."},
      {"[HKEY_LOCAL_MACHINE\\SOFTWARE\\Brightfold\\Sonarello XI]",
       "Line 5: The key \"HKEY_LOCAL_MACHINE\\SOFTWARE\\Brightfold\\Sonarello XI\" does not belong to "
       "Sonarello."},
      {"[HKEY_CURRENT_USER", "Line 5: The bracket is not closed."},
      {"[HKEY_CURRENT_USER\\SOFTWARE\\Brightfold\\Sonarello XI\\\\a]",
       "Line 5: The key has an empty name."},
      {"[HKEY_CURRENT_USER\\SOFTWARE\\Brightfold\\Sonarello XI\\a\x10]",
       "Line 5: The name holds a control character."},
      {"\"a\x01\"=\"x\"", "Line 5: The name holds a control character."},
      {"hello", "Line 5: There is neither a key nor a value here."},
      {"\"Lang\"", "Line 5: \"=\" is missing behind the name."},
      {"\"Lang=\"de\r\n", "Line 5: \"=\" is missing behind the name."},
      {"\"Lang", "Line 5: The quotation mark is not closed."},
      {"\"La\nng\"=\"de\"", "Line 5: The quotation mark is not closed."},
      {"\"Lang\"=\"de\n\n", "Line 5: The quotation mark is not closed."},
      {"\"SourcePath\"=\"C:\\Songs\"",
       "Line 5: \"\\\" must be followed by \"\\\" or a quotation mark."},
      {"\"Lang\"=de", "Line 5: The value is neither a text nor a dword nor hex."},
      {"\"Lang\"=", "Line 5: The value is neither a text nor a dword nor hex."},
      {"\"Lang\"=\"de\" \"en\"", "Line 5: Something follows the value."},
      {"\"RecLatency\"=dword:", "Line 5: A dword must have one to eight hexadecimal digits."},
      {"\"RecLatency\"=dword:123456789", "Line 5: A dword must have one to eight hexadecimal digits."},
      {"\"RecLatency\"=dword:12g", "Line 5: Something follows the value."},
      {"\"RecLatency\"=\"many\"", "Line 5: \"RecLatency\" must be a number."},
      {"\"ShowLyrics\"=\"maybe\"", "Line 5: \"ShowLyrics\" must be a number."},
      {"\"Lang\"=hex:01", "Line 5: \"Lang\" cannot hold bytes."},
      {"\"x\"=hex(:01", "Line 5: The type behind hex makes no sense."},
      {"\"x\"=hex(123456789):01", "Line 5: The type behind hex makes no sense."},
      {"\"x\"=hex 01", "Line 5: \":\" is missing behind hex."},
      {"\"x\"=hex:01,", "Line 5: A list of hexadecimal numbers of two digits is expected."},
      {"\"x\"=hex:01,\\", "Line 5: A list of hexadecimal numbers of two digits is expected."},
      {"\"x\"=hex:012", "Line 5: Something follows the value."},
      {"\"x\"=hex(4):01", "Line 5: hex(4) must have four bytes."},
      {"[-HKEY_CURRENT_USER\\SOFTWARE\\Brightfold\\Sonarello XI]\n\"Lang\"=\"de\"",
       "Line 6: The value stands under no key."},
  };
  for (const TRefusal& refusal : refusals) {
    const TRegistryImport import = Read("\"DestPath\"=\"/x\"\r\n" + refusal.Body);
    EXPECT_EQ(import.Error, refusal.Error) << refusal.Body;
    EXPECT_TRUE(import.Changes.empty());
    EXPECT_FALSE(import.IsGood());
  }
}

TEST(RegistryImport, RefusesWhatIsNoRegistryFile) {
  for (const char* text :
       {"", "\r\n", "Windows Registry Editor Version 6.00\r\n", "MThd\x01\x02", "[x]"}) {
    const TRegistryImport import = ReadRegistryFile(AsBytes(text));
    EXPECT_NE(import.Error.find(": This is no registry file."), std::string::npos) << text;
  }
  EXPECT_EQ(ReadRegistryFile(AsBytes("MThd")).Error, "Line 1: This is no registry file.");
  EXPECT_EQ(ReadRegistryFile(AsBytes(Head + "\"Lang\"=\"de\"")).Error,
            "Line 3: The value stands under no key.");
  EXPECT_EQ(ReadRegistryFile(AsBytes(Head)).Error, "The file holds no settings.");
}

TEST(RegistryImport, SaysItsFaultsInGerman) {
  const InGerman german;
  EXPECT_EQ(ReadRegistryFile(AsBytes("x")).Error, "Zeile 1: Das ist keine Registrierungsdatei.");
  EXPECT_EQ(Read("\"RecLatency\"=\"viel\"").Error, "Zeile 4: \"RecLatency\" muss eine Zahl sein.");
  EXPECT_EQ(Read("[HKEY_CURRENT_USER\\X]").Error,
            "Zeile 4: Der Schlüssel \"HKEY_CURRENT_USER\\X\" gehört nicht zu Sonarello.");
  EXPECT_EQ(ReadRegistryFile(Bytes{0xFF, 0xFE, 0x41}).Error, "Die Datei ist abgeschnitten.");
  EXPECT_EQ(ReadRegistryFile(Bytes(MostRegistryBytes + 1, 'x')).Error, "Die Datei ist zu groß.");
}

TEST(RegistryImport, ARefusedFileChangesNothing) {
  MemoryRegistry store;
  store.WriteString("", "Lang", "de");
  TRegistryImport import = Read("\"Lang\"=\"en\"\r\n\"DestPath\"=oops\r\n");
  EXPECT_FALSE(import.IsGood());
  ApplyImport(store, import);
  EXPECT_EQ(store.ReadString("", "Lang", ""), "de");
  EXPECT_FALSE(store.HasValue("", "DestPath"));
}

TEST(RegistryImport, RefusesAFileThatIsTooLarge) {
  EXPECT_EQ(ReadRegistryFile(Bytes(MostRegistryBytes + 1, 'x')).Error, "The file is too large.");
}

TEST(RegistryImport, AsksBeforeItTakesEffect) {
  const TRegistryImport import =
      Read("\"Lang\"=\"en\"\r\n\"DestPath\"=-\r\n\"RecLatency\"=dword:1\r\n");
  EXPECT_EQ(ImportQuestion(import),
            "The file holds 2 settings and 1 deletion.\rDo you want to take them over?\r"
            "(the present values will be overwritten)");
  const InGerman german;
  EXPECT_EQ(ImportQuestion(Read("\"Lang\"=\"en\"")),
            "Die Datei enthält 1 Einstellung.\rSollen sie übernommen werden?\r"
            "(dabei werden die jetzigen Werte überschrieben)");
}

/// Texts that are hard to write down.
std::string RandomText(std::mt19937& random, bool isName) {
  static const std::string pieces[] = {"a",
                                       "Ü",
                                       "𝄞",
                                       "\\",
                                       "\"",
                                       "]",
                                       "[",
                                       ";",
                                       "=",
                                       "@",
                                       " ",
                                       "\t",
                                       "%",
                                       ",",
                                       "\xff",
                                       "\xed\xa0\x80",
                                       "\xef\x9e\x80",
                                       "hex:00",
                                       "dword:1",
                                       "\n",
                                       "\r",
                                       std::string(1, '\0')};
  std::uniform_int_distribution<std::size_t> piece(0, std::size(pieces) - (isName ? 4 : 1));
  std::uniform_int_distribution<int> length(isName ? 1 : 0, 12);
  std::string text;
  for (int i = length(random); i > 0; --i) {
    const std::string& one = pieces[piece(random)];
    if (isName && (one == "\\" || one == "]" || one == "[" || one == ";" || one == "\t" || one == " "))
      text += '_';
    else
      text += one;
  }
  return text;
}

bool SameContent(const IRegistryStore& a, const IRegistryStore& b) {
  if (a.Sections() != b.Sections()) return false;
  std::vector<std::string> sections = a.Sections();
  sections.emplace_back();
  for (const std::string& section : sections) {
    if (a.Values(section) != b.Values(section)) return false;
    for (const std::string& key : a.Values(section))
      if (a.ReadString(section, key, "") != b.ReadString(section, key, "-")) return false;
  }
  return true;
}

TEST(RegistryText, WhatIsExportedIsImportedUnchanged) {
  std::mt19937 random(20260);
  std::uniform_int_distribution<int> number(-2147483647 - 1, 2147483647);
  for (int round = 0; round < 300; ++round) {
    MemoryRegistry store;
    for (int i = 0; i < 6; ++i) {
      const std::string section = i % 2 == 0 ? "" : RandomText(random, true);
      store.WriteString(section, RandomText(random, true), RandomText(random, false));
      store.WriteInteger(section, "MainFormLeft", number(random));
      store.WriteString("", "LastMidifilesList", RandomText(random, false));
    }
    const TRegistryImport import = ReadRegistryFile(ExportRegistry(store));
    ASSERT_EQ(import.Error, "") << round;
    MemoryRegistry again;
    ApplyImport(again, import);
    ASSERT_TRUE(SameContent(store, again)) << Exported(store);
    ASSERT_EQ(ExportRegistry(again), ExportRegistry(store));
  }
}

TEST(RegistryText, AnyBytesAreReadOrRefused) {
  std::mt19937 random(7);
  const std::string body =
      Head + Key +
      "\"Lang\"=\"de\"\r\n\"x\"=hex(7):61,00,\\\r\n  00,00\r\n\"RecLatency\"=dword:1\r\n"
      "[-HKEY_CURRENT_USER\\SOFTWARE\\Brightfold\\Sonarello XI\\a]\r\n";
  std::uniform_int_distribution<int> byte(0, 255);
  for (int round = 0; round < 4000; ++round) {
    Bytes file = round % 2 == 0 ? AsBytes(body) : AsUtf16(body);
    std::uniform_int_distribution<std::size_t> place(0, file.size() - 1);
    for (int i = round % 5; i >= 0; --i) file[place(random)] = static_cast<std::uint8_t>(byte(random));
    if (round % 3 == 0) file.resize(place(random));
    const TRegistryImport import = ReadRegistryFile(file);
    EXPECT_EQ(import.IsGood(), !import.Changes.empty());
  }
}

TEST(RegistryTextCode, EveryTextSurvivesTheWayOutAndIn) {
  std::mt19937 random(99);
  std::uniform_int_distribution<int> byte(0, 255);
  for (int round = 0; round < 5000; ++round) {
    std::string text;
    for (int i = round % 9; i > 0; --i) text += static_cast<char>(byte(random));
    EXPECT_EQ(FromUtf16(ToUtf16(text)), text);
  }
  EXPECT_EQ(ToUtf16("a\xc3\xbc\xf0\x9d\x84\x9e"), u"aü\U0001D11E");
  EXPECT_EQ(FromUtf16(std::u16string{u'a', char16_t{0xD800}, u'b'}),
            "a\xef\xbf\xbd"
            "b");
}

}  // namespace

}  // namespace Sonarello
