#include <gmock/gmock.h>

#include <string>
#include <string_view>

#include "instruments/SoundListReader.h"

namespace Sonarello {
namespace {

using namespace std::string_literals;

const std::u16string Umlauts = u"Flügel\tÄther – groß\t0\t1\r\nZither\tß\t0\t2\r\n";
const std::string UmlautsUTF8 = "Flügel\tÄther – groß\t0\t1\r\nZither\tß\t0\t2\r\n";

enum class Order { Little, Big };

std::string UTF16(std::u16string_view text, Order order) {
  std::string bytes;
  for (const char16_t unit : text) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    bytes += order == Order::Little ? low : high;
    bytes += order == Order::Little ? high : low;
  }
  return bytes;
}

TEST(ListEncodings, KeepPlainText) {
  EXPECT_EQ(DecodeListFile("Piano\tGrand\t0\t0\t1\r\n"), "Piano\tGrand\t0\t0\t1\r\n");
  EXPECT_EQ(DecodeListFile(""), "");
  EXPECT_EQ(DecodeListFile("\x1A\x7F"), "\x1A\x7F");
}

TEST(ListEncodings, ReadUTF8WithAndWithoutMark) {
  EXPECT_EQ(DecodeListFile(UmlautsUTF8), UmlautsUTF8);
  EXPECT_EQ(DecodeListFile("\xEF\xBB\xBF" + UmlautsUTF8), UmlautsUTF8);
  EXPECT_EQ(DecodeListFile("\xEF\xBB\xBF"), "");
  EXPECT_EQ(DecodeListFile("\U00010348 \u20AC \uFFFD"), "\U00010348 \u20AC \uFFFD");
}

TEST(ListEncodings, ReadUTF8BeforeTheAnsiCodePage) {
  EXPECT_EQ(DecodeListFile("\xC3\xA4"), "ä");  // two letters in the code page
}

TEST(ListEncodings, ReadTheAnsiCodePage) {
  EXPECT_EQ(DecodeListFile("Fl\xFCgel\t\xC4ther gro\xDF\t0\t1"), "Flügel\tÄther groß\t0\t1");
  EXPECT_EQ(DecodeListFile("\x80 \x84x\x93 \x96 \x99 \x9F \xA0 \xFF"), "€ „x“ – ™ Ÿ \u00A0 ÿ");
}

TEST(ListEncodings, TakeWhatIsNoUTF8AsAnsi) {
  EXPECT_EQ(DecodeListFile("\xE4\xC3\xA4"), "äÃ¤");  // one letter spoils the rest
  EXPECT_EQ(DecodeListFile("\xC0\xAF"), "À¯");       // longer than it needs to be
  EXPECT_EQ(DecodeListFile("\xE0\x80\xAF"), "à€¯");
  EXPECT_EQ(DecodeListFile("\xF0\x80\x80\xAF"), "ð€€¯");
  EXPECT_EQ(DecodeListFile("\xED\xA0\x80"), "í\u00A0€");  // half a pair
  EXPECT_EQ(DecodeListFile("\xF4\x93\x80\x80"), "ô“€€");  // behind the last character
  EXPECT_EQ(DecodeListFile("x\xC3"), "xÃ");               // cut at its end
  EXPECT_EQ(DecodeListFile("\xE2\x82"), "â‚");
  EXPECT_EQ(DecodeListFile("\xEF\xBB\xBF"
                           "gro\xDF"),
            "groß");  // the mark is no text
}

TEST(ListEncodings, ReadUTF16WithMark) {
  EXPECT_EQ(DecodeListFile("\xFF\xFE" + UTF16(Umlauts, Order::Little)), UmlautsUTF8);
  EXPECT_EQ(DecodeListFile("\xFE\xFF" + UTF16(Umlauts, Order::Big)), UmlautsUTF8);
  EXPECT_EQ(DecodeListFile("\xFF\xFE"), "");
  EXPECT_EQ(DecodeListFile("\xFE\xFF"), "");
}

TEST(ListEncodings, ReadMarkedUTF16WithoutAnyLatinLetter) {
  EXPECT_EQ(DecodeListFile("\xFF\xFE" + UTF16(u"音色", Order::Little)), "音色");
  EXPECT_EQ(DecodeListFile("\xFE\xFF" + UTF16(u"音色", Order::Big)), "音色");
}

TEST(ListEncodings, ReadUTF16WithoutMark) {
  EXPECT_EQ(DecodeListFile(UTF16(Umlauts, Order::Little)), UmlautsUTF8);
  EXPECT_EQ(DecodeListFile(UTF16(Umlauts, Order::Big)), UmlautsUTF8);
  EXPECT_EQ(DecodeListFile(UTF16(u"a", Order::Little)), "a");
  EXPECT_EQ(DecodeListFile(UTF16(u"音色\t琴\t0\t0\t12\r\n", Order::Little)), "音色\t琴\t0\t0\t12\r\n");
}

TEST(ListEncodings, ReadPairsOfUTF16) {
  for (const Order order : {Order::Little, Order::Big})
    EXPECT_EQ(DecodeListFile(UTF16(u"Clef \U0001D11E end \U0010FFFF", order)),
              "Clef \U0001D11E end \U0010FFFF");
}

TEST(ListEncodings, MendHalvesOfUTF16Pairs) {
  EXPECT_EQ(DecodeListFile("\xFF\xFE" + UTF16(u"ab", Order::Little) + "\x1E\xD8" +
                           UTF16(u"c", Order::Little) + "\x1E\xDC" + UTF16(u"d", Order::Little)),
            "ab\uFFFDc\uFFFDd");
  EXPECT_EQ(DecodeListFile("\xFF\xFE" + UTF16(u"a", Order::Little) + "\x1E\xD8"), "a\uFFFD");
}

TEST(ListEncodings, MendUTF16OfOddLength) {
  EXPECT_EQ(DecodeListFile("\xFF\xFE" + UTF16(Umlauts, Order::Little) + "\n"), UmlautsUTF8);
  EXPECT_EQ(DecodeListFile(UTF16(u"Grand\t0\t0", Order::Little) + "\n"), "Grand\t0\t0");
  EXPECT_EQ(DecodeListFile("\xFF\xFE"s + "x"), "");
}

TEST(ListEncodings, MendAStrayZeroByte) {
  EXPECT_EQ(DecodeListFile("Gr\0and Piano\t0\t0\t0"s), "Gr\uFFFDand Piano\t0\t0\t0");
  EXPECT_EQ(DecodeListFile("Flügel Fl\0gel\t0"s), "Flügel Fl\uFFFDgel\t0");
  EXPECT_EQ(DecodeListFile("Fl\xFCgel F\0lgel\t0\t0"s), "Flügel F\uFFFDlgel\t0\t0");
}

TEST(ListEncodings, TakeZerosOnBothSidesForNoUTF16) {
  EXPECT_EQ(DecodeListFile("a\0\0b"s), "a\uFFFD\uFFFDb");
}

TEST(ListEncodings, MendBytesThatNoEncodingHas) {
  EXPECT_EQ(DecodeListFile("gro\xDF \x81"), "groß \uFFFD");
}

}  // namespace
}  // namespace Sonarello
