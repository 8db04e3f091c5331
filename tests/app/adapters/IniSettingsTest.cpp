#include "app/adapters/IniSettings.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <memory>

#include "app/adapters/IniFile.h"
#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

using Strings = std::vector<std::string>;

class Recorder : public IMessages {
 public:
  void Show(const std::string& text) override { Texts.push_back(text); }
  bool Ask(const std::string&) override { return false; }
  Strings Texts;
};

class Ini : public testing::Test {
 protected:
  void Write(const QByteArray& bytes) {
    QFile out(file);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(bytes);
  }
  [[nodiscard]] QByteArray OnDisk() const {
    QFile in(file);
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
  }
  [[nodiscard]] QStringList Others() const {
    QStringList names =
        QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System);
    names.removeAll(QStringLiteral("Sonarello XI.ini"));
    return names;
  }
  /// What the user is told of settings at `file`.
  static Strings Told(IniSettings& settings) {
    Recorder recorder;
    settings.Report(recorder);
    settings.Report(recorder);
    return recorder.Texts;
  }

  QTemporaryDir folder;
  QString file = folder.filePath(QStringLiteral("Sonarello XI.ini"));
};

TEST_F(Ini, KeepsItsValuesFromOneStartToTheNext) {
  const std::string odd = "a\"b\\c;d=e,f\n\tg%h@ Übung 𝄞 \xfc.mid ";
  {
    IniSettings settings(file);
    EXPECT_TRUE(Told(settings).empty());
    settings.WriteString("", "Lang", "de");
    settings.WriteInteger("Yamaha Genos", "DSP1FormLeft", -9999);
    settings.WriteString("Ketron Audya, Audya 4, Audya 5", "x", "1");
    settings.WriteString("Ketron SD2/SD4", "a/b", "2");
    settings.WriteString("General", "in a section of that name", "3");
    settings.WriteString("deep\\er", "50%", "4");
    settings.WriteString("", "@", "default");
    settings.WriteString("", "SourcePath", odd);
    settings.WriteString("", "Empty", "");
    EXPECT_TRUE(settings.Flush());
  }
  const IniSettings again(file);
  EXPECT_EQ(again.ReadString("", "Lang", ""), "de");
  EXPECT_EQ(again.ReadInteger("Yamaha Genos", "DSP1FormLeft", 0), -9999);
  EXPECT_EQ(again.ReadString("Ketron SD2/SD4", "a/b", ""), "2");
  EXPECT_EQ(again.ReadString("General", "in a section of that name", ""), "3");
  EXPECT_EQ(again.ReadString("deep\\er", "50%", ""), "4");
  EXPECT_EQ(again.ReadString("", "@", ""), "default");
  EXPECT_EQ(again.ReadString("", "SourcePath", ""), odd);
  EXPECT_EQ(again.ReadString("", "Empty", "otherwise"), "");
  EXPECT_EQ(again.Sections(), (Strings{"deep\\er", "General", "Ketron Audya, Audya 4, Audya 5",
                                       "Ketron SD2/SD4", "Yamaha Genos"}));
  EXPECT_EQ(again.Values(""), (Strings{"@", "Empty", "Lang", "SourcePath"}));
  EXPECT_TRUE(IsIniText(OnDisk()));
}

TEST_F(Ini, MakesItsFolder) {
  const QString deep = folder.filePath(QStringLiteral("a/b/Sonarello XI.ini"));
  IniSettings settings(deep);
  settings.WriteString("", "Lang", "de");
  EXPECT_TRUE(settings.Flush());
  EXPECT_TRUE(QFileInfo::exists(deep));
}

TEST_F(Ini, ReadingMakesNothing) {
  IniSettings settings(file);
  EXPECT_EQ(settings.ReadString("", "Lang", "en"), "en");
  EXPECT_TRUE(settings.Flush());
  EXPECT_TRUE(settings.Values("").empty());
}

TEST_F(Ini, DoesNotTellTheCaseOfNamesApart) {
  Write("[General]\nlang=de\n\n[yamaha genos]\nDsp1FormLeft=7\n");
  IniSettings settings(file);
  EXPECT_EQ(settings.ReadString("", "LANG", ""), "de");
  settings.WriteInteger("Yamaha Genos", "DSP1FormLeft", 8);
  settings.WriteInteger("YAMAHA GENOS", "DSP1FormTop", 9);
  EXPECT_EQ(settings.Sections(), Strings{"yamaha genos"});
  EXPECT_EQ(settings.Values("Yamaha Genos"), (Strings{"Dsp1FormLeft", "DSP1FormTop"}));
  EXPECT_TRUE(settings.Flush());
  EXPECT_EQ(settings.ReadInteger("yamaha Genos", "dsp1formleft", 0), 8);
  settings.DeleteValue("", "Lang");
  EXPECT_FALSE(settings.HasValue("", "lang"));
}

TEST_F(Ini, DeletesSectionsAndEverything) {
  IniSettings settings(file);
  settings.WriteString("", "Lang", "de");
  settings.WriteString("Yamaha Genos", "x", "1");
  settings.WriteString("Yamaha Genos\\Deeper", "x", "1");
  settings.WriteString("Yamaha Genos 2", "x", "1");
  settings.DeleteSection("yamaha genos");
  EXPECT_EQ(settings.Sections(), Strings{"Yamaha Genos 2"});
  settings.DeleteSection("");
  EXPECT_TRUE(settings.Flush());
  const IniSettings again(file);
  EXPECT_TRUE(again.Sections().empty());
  EXPECT_TRUE(again.Values("").empty());
}

TEST_F(Ini, ReadsWhatSomebodyWroteByHand) {
  Write(
      "; a comment\n# another\n\n[General]\nMidiInstrument00=Ketron Audya, Audya 4, Audya 5\n"
      "  MultiMidi = 1 \r\nSourcePath=\"/a;b\"\n");
  IniSettings settings(file);
  EXPECT_TRUE(Told(settings).empty());
  EXPECT_EQ(settings.ReadString("", "MidiInstrument00", ""), "Ketron Audya, Audya 4, Audya 5");
  EXPECT_TRUE(settings.ReadBool("", "MultiMidi", false));
  EXPECT_EQ(settings.ReadString("", "SourcePath", ""), "/a;b");
}

TEST_F(Ini, BringsItsChangesIntoAFileThatAnotherProgramChanged) {
  IniSettings settings(file);
  settings.WriteString("", "Lang", "de");
  ASSERT_TRUE(settings.Flush());
  Write(OnDisk() + "SourcePath=/theirs\n");
  settings.WriteString("", "DestPath", "/ours");
  EXPECT_TRUE(settings.Flush());
  EXPECT_EQ(settings.ReadString("", "SourcePath", ""), "/theirs");
  const QByteArray now = OnDisk();
  EXPECT_TRUE(now.contains("SourcePath=/theirs"));
  EXPECT_TRUE(now.contains("DestPath=/ours"));
  EXPECT_TRUE(now.contains("Lang=de"));
}

TEST_F(Ini, ReplacesItsFileAsAWholeAndNeverWritesIntoIt) {
  IniSettings settings(file);
  settings.WriteString("", "Lang", "de");
  ASSERT_TRUE(settings.Flush());
  const QByteArray before = OnDisk();
  const QString same = folder.filePath(QStringLiteral("same"));
  ASSERT_EQ(link(QFile::encodeName(file).constData(), QFile::encodeName(same).constData()), 0);
  settings.WriteString("", "Lang", "en");
  ASSERT_TRUE(settings.Flush());
  EXPECT_TRUE(OnDisk().contains("Lang=en"));
  QFile old(same);
  ASSERT_TRUE(old.open(QIODevice::ReadOnly));
  EXPECT_EQ(old.readAll(), before);
}

TEST_F(Ini, LeavesNothingBesideItsFile) {
  IniSettings settings(file);
  for (int i = 0; i < 20; ++i) {
    settings.WriteInteger("", "RecLatency", i);
    ASSERT_TRUE(settings.Flush());
  }
  EXPECT_TRUE(Others().isEmpty()) << Others().join(QLatin1Char(' ')).toStdString();
}

TEST_F(Ini, SetsADamagedFileAsideAndSaysSoOnce) {
  for (const QByteArray& damaged :
       {QByteArray("MThd\0\0\0\x06", 8), QByteArray("\x89PNG\r\n\x1a\n"),
        QByteArray("[General]\nLang=de\nSour"), QByteArray("[General]\nSourcePath=\"/half a pa"),
        QByteArray("[Gene"), QByteArray("[General]\n=x\n"), QByteArray("[General]\nLang=\xff\xfe\n"),
        QByteArray(4096, '\0')}) {
    Write(damaged);
    IniSettings settings(file);
    const QStringList others = Others();
    ASSERT_EQ(others.size(), 1) << damaged.toStdString();
    EXPECT_TRUE(others[0].contains(
        QRegularExpression(QStringLiteral("^Sonarello XI\\.ini\\.damaged-\\d{8}-\\d{6}(-\\d+)?$"))))
        << others[0].toStdString();
    const Strings told = Told(settings);
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0], "The settings could not be read.\rThe damaged file is now called \"" +
                           folder.filePath(others[0]).toStdString() +
                           "\".\rThe program begins with its factory settings.");
    QFile aside(folder.filePath(others[0]));
    ASSERT_TRUE(aside.open(QIODevice::ReadOnly));
    EXPECT_EQ(aside.readAll(), damaged);
    settings.WriteString("", "Lang", "de");
    EXPECT_TRUE(settings.Flush());
    EXPECT_TRUE(OnDisk().contains("Lang=de"));
    EXPECT_TRUE(aside.remove());
    EXPECT_TRUE(QFile::remove(file));
  }
}

TEST_F(Ini, KeepsEveryDamagedFileThatItMeets) {
  for (int i = 0; i < 3; ++i) {
    Write("rubbish");
    const IniSettings settings(file);
  }
  EXPECT_EQ(Others().size(), 3);
}

TEST_F(Ini, SetsAFolderOrAPipeAside) {
  ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("Sonarello XI.ini")));
  {
    IniSettings settings(file);
    EXPECT_EQ(Told(settings).size(), 1U);
    settings.WriteString("", "Lang", "de");
    EXPECT_TRUE(settings.Flush());
  }
  ASSERT_TRUE(QFile::remove(file));
  ASSERT_EQ(mkfifo(QFile::encodeName(file).constData(), 0600), 0);
  IniSettings settings(file);
  EXPECT_EQ(Told(settings).size(), 1U);
  EXPECT_TRUE(settings.Flush());
  EXPECT_EQ(Others().size(), 2);
}

TEST_F(Ini, AnEmptyFileHoldsNoSettingsAndIsNoDamage) {
  Write("");
  IniSettings settings(file);
  EXPECT_TRUE(Told(settings).empty());
  EXPECT_TRUE(Others().isEmpty());
}

TEST_F(Ini, WorksInMemoryWhereNothingCanBeWrittenAndSaysSoOnce) {
  const InGerman german;
  // No right can be lacking that the system's administrator has, but nobody can make this folder.
  const QString nowhere = QStringLiteral("/proc/sonarello/Sonarello XI.ini");
  IniSettings settings(nowhere);
  EXPECT_EQ(
      Told(settings),
      Strings{
          "Die Einstellungen können nicht gespeichert werden:\r\"/proc/sonarello/Sonarello XI.ini\"\r"
          "Änderungen gelten nur, bis das Programm endet."});
  settings.WriteString("", "Lang", "de");
  EXPECT_FALSE(settings.Flush());
  EXPECT_FALSE(settings.Flush());
  EXPECT_EQ(settings.ReadString("", "lang", ""), "de");
  settings.DeleteValue("", "Lang");
  EXPECT_FALSE(settings.HasValue("", "Lang"));
  EXPECT_TRUE(Told(settings).empty());
}

TEST_F(Ini, WorksInMemoryIfADamagedFileCannotBeSetAside) {
  // A file of the system that is no INI file and cannot be renamed.
  IniSettings settings(QStringLiteral("/proc/version"));
  EXPECT_EQ(Told(settings), Strings{"The settings cannot be saved:\r\"/proc/version\"\r"
                                    "Changes are in force until the program ends."});
  EXPECT_TRUE(settings.Values("").empty());
  settings.WriteString("", "Lang", "de");
  EXPECT_FALSE(settings.Flush());
  EXPECT_EQ(settings.ReadString("", "Lang", ""), "de");
}

TEST_F(Ini, SaysOnceThatItsFileCanNoLongerBeWritten) {
  auto deep = std::make_unique<QTemporaryDir>();
  IniSettings settings(deep->filePath(QStringLiteral("conf/x.ini")));
  settings.WriteString("", "Lang", "de");
  ASSERT_TRUE(settings.Flush());
  // The folder becomes a file: not even the administrator can write into it.
  ASSERT_TRUE(QDir(deep->filePath(QStringLiteral("conf"))).removeRecursively());
  QFile blocker(deep->filePath(QStringLiteral("conf")));
  ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
  settings.WriteString("", "Lang", "en");
  EXPECT_FALSE(settings.Flush());
  EXPECT_EQ(Told(settings).size(), 1U);
  EXPECT_FALSE(settings.Flush());
  EXPECT_TRUE(Told(settings).empty());
  EXPECT_EQ(settings.ReadString("", "Lang", ""), "en");
  // What was written is not lost if the folder comes back.
  ASSERT_TRUE(blocker.remove());
  EXPECT_TRUE(settings.Flush());
}

TEST_F(Ini, StandsInTheUsersConfigurationFolder) {
  EXPECT_TRUE(IniSettings::DefaultFileName().endsWith(QStringLiteral("/Sonarello/Sonarello XI.ini")));
}

TEST(IniText, IsTextOfCommentsSectionsAndValues) {
  EXPECT_TRUE(IsIniText(""));
  EXPECT_TRUE(IsIniText("[General]\nLang=de"));
  EXPECT_TRUE(IsIniText("; it's \"half a quotation\n[a]\nb=\"c\nd\"\n"));
  EXPECT_TRUE(IsIniText("a=b\\\nc d\n"));
  EXPECT_TRUE(IsIniText("a=\"b\\\"c\"\n"));
  EXPECT_FALSE(IsIniText("hello"));
  EXPECT_FALSE(IsIniText("a=\"b"));
  EXPECT_FALSE(IsIniText("a=\x01"));
  EXPECT_FALSE(IsIniText("a=\x7f"));
  EXPECT_FALSE(IsIniText("a=\xc3"));
  EXPECT_FALSE(IsIniText("[a"));
  EXPECT_FALSE(IsIniText("=a"));
}

}  // namespace
}  // namespace Sonarello
