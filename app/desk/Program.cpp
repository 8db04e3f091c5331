#include "app/desk/Program.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>

#include "app/controls/Metrics.h"
#include "app/controls/QtText.h"
#include "app/controls/Theme.h"
#include "app/desk/FileNames.h"
#include "core/Texts.h"
#include "desk/Startup.h"
#include "playback/drivers/FluidSynthInstrument.h"
#include "playback/drivers/RtAudioDriver.h"

namespace Sonarello {

namespace {

/// The first of these folders that holds a manual, or nothing.
std::string FindManual(const QString& application) {
  for (const QString& folder : {application + QStringLiteral("/../share/doc/sonarello/manual"),
                                QStringLiteral(SONARELLO_MANUAL)})
    if (QFileInfo::exists(folder + QStringLiteral("/en/index.html")))
      return PathOf(QFileInfo(folder).canonicalFilePath());
  return {};
}

}  // namespace

TProgramPlaces TProgramPlaces::OfThisUser() {
  const QString application = QCoreApplication::applicationDirPath();
  QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  if (documents.isEmpty()) documents = QDir::homePath();
  return {.Documents = PathOf(documents),
          .Application = PathOf(application) + "/",
          .Manual = FindManual(application)};
}

Program::Program(const TProgramPlaces& places, const std::string& first)
    : dataPath(FindDataPath(places.Documents, places.Application)),
      parameter(ReadStartParameter(first)) {
  ChooseLanguage();
  store.Report(messages);
  if (parameter.ResetRegistry &&
      messages.Ask(ResetQuestion(), QText("Zurücksetzen", "Reset"), QText("Abbrechen", "Cancel")))
    UserRegistry(store).DeleteAllRegistry();
  const TDeskParts parts{.store = store,
                         .messages = aside,
                         .midi = midi,
                         .clock = clock,
                         .FindAudio = [] { return FindAudioDrivers(); },
                         .LoadSynthesizer = [] { return FluidSynthInstrument::Load(); }};
  work = std::make_unique<Workplace>(parts, dataPath);
  work->Start();
  SetScale(WindowScaleOf(work->desk.settings));
  SetTheme(work->desk.settings.SkinIndex == 0 ? ThemeKind::Dark : ThemeKind::Light);
  window = std::make_unique<TMainForm>(TMainFormParts{.work = *work,
                                                      .messages = messages,
                                                      .aside = aside,
                                                      .store = store,
                                                      .midi = midi,
                                                      .documents = places.Documents,
                                                      .manual = places.Manual});
}

Program::~Program() {
  // What could not be written at the end is told as well; there is no window any more to tell it in.
  store.Flush();
  store.Report(messages);
}

void Program::ChooseLanguage() {
  DeskSettings settings;
  settings.Lang = store.ReadString("", "Lang", "");
  GermanLanguage = IsGerman(settings, QLocale::system().name().toStdString());
}

void Program::Start() {
  window->Start(parameter.AutoloadFileName);
  messages.WindowShown(window.get());
}

}  // namespace Sonarello
