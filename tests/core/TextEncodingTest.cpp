#include "core/TextEncoding.h"

#include <gtest/gtest.h>

#include <set>

namespace Sonarello {
namespace {

/// The UTF-8 of a character.
std::string Character(char32_t code) {
  std::string text;
  AppendUTF8(text, code);
  return text;
}

TEST(TextEncoding, EveryCharacterLeadsBackToItself) {
  for (char32_t code = 0; code <= 0x10FFFF; ++code) {
    if (code == 0xD800) code = 0xE000;  // surrogates
    const std::string text = Character(code);
    const TCharacter read = FirstCharacter(text + "x");
    ASSERT_EQ(read.Code, code);
    ASSERT_EQ(read.Length, text.size());
    ASSERT_EQ(FirstCharacter(text.substr(0, text.size() - 1)).Length, 0U) << "cut off";
  }
  EXPECT_EQ(Character(U'ä') + Character(U'€') + Character(U'𝄞'), "ä€𝄞");
}

TEST(TextEncoding, NothingElseIsUTF8) {
  EXPECT_EQ(FirstCharacter("").Length, 0U);
  for (const char* text : {"\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF",  // overlong
                           "\xED\xA0\x80", "\xED\xBF\xBF",                              // surrogates
                           "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF",  // beyond the last character
                           "\xC3", "\xE2\x82", "\xF0\x9F\x8E",              // cut off
                           "\x80", "\xBF", "\xC3x", "\xE2\x82x", "\xF0\x9F\x8Ex"}) {
    EXPECT_EQ(FirstCharacter(text).Length, 0U) << text;
    EXPECT_FALSE(IsUTF8(text));
    EXPECT_FALSE(IsUTF8("Über" + std::string(text)));
  }
}

TEST(TextEncoding, AllOfATextMustBeUTF8) {
  EXPECT_TRUE(IsUTF8(""));
  EXPECT_TRUE(IsUTF8("Über 𝄞"));
  EXPECT_TRUE(IsUTF8(std::string_view("a\0b", 3)));
  EXPECT_FALSE(
      IsUTF8("\xDC"
             "ber"));
}

TEST(TextEncoding, CharactersAreCounted) {
  EXPECT_EQ(CharactersOf(""), 0U);
  EXPECT_EQ(CharactersOf("Stä€𝄞"), 5U);
}

TEST(TextEncoding, ATextIsNeverCutInsideACharacter) {
  EXPECT_EQ(CutToBytes("aä€", 6), "aä€");
  EXPECT_EQ(CutToBytes("aä€", 100), "aä€");
  EXPECT_EQ(CutToBytes("aä€", 5), "aä");
  EXPECT_EQ(CutToBytes("aä€", 3), "aä");
  EXPECT_EQ(CutToBytes("aä€", 2), "a");
  EXPECT_EQ(CutToBytes("ä", 1), "");
  EXPECT_EQ(CutToBytes("\x80\x80", 1), "") << "no character begins here";
  EXPECT_EQ(CutToBytes("", 0), "");
}

TEST(TextEncoding, TheLastCharacterGoesWhole) {
  EXPECT_EQ(WithoutLastCharacter("aä€"), "aä");
  EXPECT_EQ(WithoutLastCharacter("aä"), "a");
  EXPECT_EQ(WithoutLastCharacter("a"), "");
  EXPECT_EQ(WithoutLastCharacter(""), "");
}

TEST(TextEncoding, BytesOfWindowsDifferFromLatin1InTheControlCharactersOnly) {
  std::set<char32_t> codes;
  int none = 0;
  for (unsigned byte = 0; byte < 0x100; ++byte) {
    const char32_t code = FromWindowsByte(static_cast<std::uint8_t>(byte));
    if (byte < 0x80 || byte > 0x9F) {
      EXPECT_EQ(code, byte);
    }
    none += byte != 0 && code == 0 ? 1 : 0;
    if (code != 0) {
      EXPECT_TRUE(codes.insert(code).second) << byte;
    }
  }
  EXPECT_EQ(none, 5);
  EXPECT_EQ(FromWindowsByte(0x80), U'€');
  EXPECT_EQ(FromWindowsByte(0x92), U'’');
  EXPECT_EQ(FromWindowsByte(0x9F), U'Ÿ');
}

TEST(TextEncoding, UTF8IsShownAsItIs) {
  EXPECT_EQ(DecodedText("Grüße"), "Grüße");
  EXPECT_EQ(DecodedText("\xF0\x9F\x8E\xB9"), "\xF0\x9F\x8E\xB9");
  EXPECT_EQ(DecodedText(""), "");
}

TEST(TextEncoding, AllElseIsReadAsLatin1) {
  EXPECT_EQ(DecodedText("Gr\xFC\xDF"
                        "e"),
            "Grüße");
  EXPECT_EQ(DecodedText("\xC0\x80"), "\xC3\x80\xC2\x80");
  EXPECT_EQ(DecodedText("\xED\xA0\x80"), "\xC3\xAD\xC2\xA0\xC2\x80");
  EXPECT_EQ(DecodedText("\xF4\x90\x80\x80"), "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80");
  EXPECT_EQ(DecodedText("\xE2\x82"), "\xC3\xA2\xC2\x82");
  EXPECT_EQ(DecodedText("\x80"), "\xC2\x80");
}

TEST(TextEncoding, AnEditedTextKeepsItsEncoding) {
  EXPECT_EQ(EncodedText("Straße", "Stra\xDF"),
            "Stra\xDF"
            "e");
  EXPECT_EQ(EncodedText("Straße", "Straß"), "Straße");
  EXPECT_EQ(EncodedText("Straße", ""), "Straße");
  EXPECT_EQ(EncodedText("ÿ\u0080", "\xFF"), "\xFF\x80");
}

TEST(TextEncoding, ATextBeyondLatin1DoesNotKeepItsFirstLettersInLatin1) {
  EXPECT_EQ(EncodedText("Straße 5 €", "Stra\xDF"), "Straße 5 €");
  EXPECT_EQ(DecodedText(EncodedText("ä€ä", "\xE4")), "ä€ä");
  EXPECT_EQ(EncodedText("ä\xFF", "\xE4"), "ä\xFF") << "bytes that are no text stay";
}

TEST(TextEncoding, EveryByteOfALatinTextComesBack) {
  std::string bytes;
  for (unsigned byte = 0; byte < 0x100; ++byte) bytes += static_cast<char>(byte);
  EXPECT_EQ(EncodedText(DecodedText(bytes), bytes), bytes);
}

}  // namespace
}  // namespace Sonarello
