// What the program remembers from one start to the next.
#include "core/Settings.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace Sonarello {
namespace {

int IntegerOf(std::string_view text) {
  MemorySettings settings;
  settings.WriteString("", "Key", text);
  return settings.ReadInteger("", "Key", -77);
}

TEST(Settings, GiveTheDefaultOfAnAbsentKey) {
  const MemorySettings settings;
  EXPECT_EQ(settings.ReadString("", "DataPath", "/home"), "/home");
  EXPECT_EQ(settings.ReadInteger("", "PPQ", 480), 480);
  EXPECT_TRUE(settings.ReadBool("", "ConfirmTerminate", true));
  EXPECT_FALSE(settings.ReadBool("", "ConfirmTerminate", false));
}

TEST(Settings, DoNotMakeAKeyByReadingIt) {
  MemorySettings settings;
  EXPECT_EQ(settings.ReadString("", "Key", "first"), "first");
  EXPECT_EQ(settings.ReadString("", "Key", "second"), "second");
}

TEST(Settings, KeepATextAsItWasWritten) {
  MemorySettings settings;
  settings.WriteString("", "Key", " Größe\t\"x\" ");
  EXPECT_EQ(settings.ReadString("", "Key", "-"), " Größe\t\"x\" ");
  settings.WriteString("", "Key", "");
  EXPECT_EQ(settings.ReadString("", "Key", "-"), "") << "an empty text is a text";
}

TEST(Settings, ReplaceTheTextOfAKey) {
  MemorySettings settings;
  settings.WriteString("", "Key", "old");
  settings.WriteString("", "Key", "new");
  EXPECT_EQ(settings.ReadString("", "Key", "-"), "new");
}

TEST(Settings, KeepSectionsApart) {
  MemorySettings settings;
  settings.WriteInteger("Yamaha Genos", "AutoRevoicerElm", 3);
  settings.WriteInteger("Ketron SD9", "AutoRevoicerElm", 5);
  EXPECT_EQ(settings.ReadInteger("Yamaha Genos", "AutoRevoicerElm", 0), 3);
  EXPECT_EQ(settings.ReadInteger("Ketron SD9", "AutoRevoicerElm", 0), 5);
  EXPECT_EQ(settings.ReadInteger("", "AutoRevoicerElm", 0), 0);
  EXPECT_EQ(settings.ReadInteger("Yamaha GenosAuto", "RevoicerElm", 0), 0);
}

TEST(Settings, FindKeysAndSectionsInAnyCase) {
  MemorySettings settings;
  settings.WriteString("Yamaha Genos", "AutoRev01", "a");
  EXPECT_EQ(settings.ReadString("YAMAHA genos", "AUTOREV01", "-"), "a");
  settings.WriteString("yamaha genos", "autorev01", "b");
  EXPECT_EQ(settings.ReadString("Yamaha Genos", "AutoRev01", "-"), "b");
  settings.DeleteValue("YAMAHA GENOS", "AutoREV01");
  EXPECT_EQ(settings.ReadString("Yamaha Genos", "AutoRev01", "-"), "-");
}

TEST(Settings, CountTheCaseOfNoLatinLetter) {
  MemorySettings settings;
  settings.WriteString("Flügel", "[Ä]", "a");
  EXPECT_EQ(settings.ReadString("FLÜGEL", "[ä]", "-"), "a");
  EXPECT_EQ(settings.ReadString("Flügel", "{Ä}", "-"), "-") << "brackets are no case of one another";
}

TEST(Settings, ForgetADeletedKeyAndNoOther) {
  MemorySettings settings;
  settings.WriteString("", "A", "1");
  settings.WriteString("", "B", "2");
  settings.DeleteValue("", "A");
  settings.DeleteValue("", "Never written");
  EXPECT_EQ(settings.ReadString("", "A", "-"), "-");
  EXPECT_EQ(settings.ReadString("", "B", "-"), "2");
}

TEST(Settings, ReadNumbersOfAnySignWithBlanksAround) {
  EXPECT_EQ(IntegerOf("0"), 0);
  EXPECT_EQ(IntegerOf("-5"), -5);
  EXPECT_EQ(IntegerOf("+5"), 5);
  EXPECT_EQ(IntegerOf("007"), 7);
  EXPECT_EQ(IntegerOf(" 12\r\n"), 12);
}

TEST(Settings, GiveTheDefaultForTextThatIsNoNumber) {
  for (const char* text : {"", " ", "x", "1x", "1 2", "0x10", "1.5", "+", "-", "+-1", "--1",
                           "2147483648", "99999999999999999999"})
    EXPECT_EQ(IntegerOf(text), -77) << text;
}

TEST(Settings, KeepTheGreatestAndTheLeastNumber) {
  MemorySettings settings;
  for (const int value : {std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 0}) {
    settings.WriteInteger("", "Key", value);
    EXPECT_EQ(settings.ReadInteger("", "Key", 1), value);
  }
}

TEST(Settings, StoreAFlagAsZeroOrOne) {
  MemorySettings settings;
  settings.WriteBool("", "Key", true);
  EXPECT_EQ(settings.ReadString("", "Key", "-"), "1");
  EXPECT_TRUE(settings.ReadBool("", "Key", false));
  settings.WriteBool("", "Key", false);
  EXPECT_EQ(settings.ReadString("", "Key", "-"), "0");
  EXPECT_FALSE(settings.ReadBool("", "Key", true));
}

TEST(Settings, TakeWordsAndEveryOtherNumberForAFlagToo) {
  MemorySettings settings;
  for (const char* text : {"true", "TRUE", "-1", "2"}) {
    settings.WriteString("", "Key", text);
    EXPECT_TRUE(settings.ReadBool("", "Key", false)) << text;
  }
  settings.WriteString("", "Key", "False");
  EXPECT_FALSE(settings.ReadBool("", "Key", true));
  for (const char* text : {"", "maybe", "1x"}) {
    settings.WriteString("", "Key", text);
    EXPECT_TRUE(settings.ReadBool("", "Key", true)) << text;
    EXPECT_FALSE(settings.ReadBool("", "Key", false)) << text;
  }
}

}  // namespace
}  // namespace Sonarello
