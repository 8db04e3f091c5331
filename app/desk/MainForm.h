// Sonarello: the main window.
#pragma once

#include <QMainWindow>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string_view>

#include "app/adapters/QtMessages.h"
#include "app/desk/Aside.h"
#include "app/desk/DeskPanels.h"
#include "app/desk/MainMenu.h"
#include "desk/MidiInMonitor.h"
#include "desk/Workplace.h"

namespace Sonarello {

class TAutoRevoicerForm;
class TControllerForm;
class TEventListForm;
class TOptionsForm;
class ToolWindows;
class TPatchesForm;
class TSoundBrowserForm;
class TVirtualKeysForm;
class UpdateCheck;
class VelocityEditor;
struct TOptionChanges;

/// What the main window stands on. Everything outlives it.
struct TMainFormParts {
  Workplace& work;
  QtMessages& messages;
  AsideMessages& aside;  ///< what the workplace tells its messages to
  IRegistryStore& store;
  IMidiDriver& midi;
  std::string documents;  ///< folder that file dialogs open first
  std::string manual;  ///< folder of the manual, with a folder per language; empty: none is installed
  bool confirmSave = true;  ///< a changed song is asked for before it goes
};

/// Owner of the windows: connects the controls of the desk and the menus with the logic. Handlers bear
/// the names of their entries.
class TMainForm : public QMainWindow, private SongObserver, private TDeskPanels {
  Q_OBJECT

 public:
  /// Least size of the desk at 100 %.
  static constexpr int LeastWidth = 1280;
  static constexpr int LeastHeight = 720;

  explicit TMainForm(const TMainFormParts& parts);
  ~TMainForm() override;

  /// Shows the window where it was left and starts the timers. `autoload` is a song to open, or empty.
  void Start(const std::string& autoload);
  /// Opens a song: asks for a changed one, reads on another thread with progress, shows.
  bool OpenFile(const std::string& file);
  /// True unless a song is being read.
  [[nodiscard]] bool IsIdle() const { return !busy; }
  [[nodiscard]] MainMenu& Menu() { return *menu; }
  [[nodiscard]] Workplace& Work() { return p.work; }

  bool AllFormsCreated = false;
  std::string AutoloadFileName;

  // What a file dialog answers, for tests; unset: the desktop's dialog.
  std::function<QString(const QString& folder)> AskOpenName;
  std::function<QString(const QString& suggestion)> AskSaveName;
  std::function<bool(const QString& url)> OpenUrl;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // --- Layout (MainFormLayout.cpp)
  void BuildMenu();
  void BuildPanels();
  void BuildWindows();
  void StartTimers();
  void ConnectCard();
  void Arrange();
  void ArrangeTransport(int left, int top, int width, int height, int gap);
  void PlaceCard();
  void SetTabOrder();
  [[nodiscard]] bool IsCompact() const;

  // --- Menu (MainFormMenu.cpp)
  void MenuChosen(std::string_view name);
  void UpdateMenu();
  void UpdateRecentMenu();
  void UpdateScaleMenu();

  // --- Files (MainFormFile.cpp)
  void MMF_OpenMidifileClick();
  void MMF_Midifile1Click(const std::string& file);
  void MMF_NewMidifileClick();
  void MMF_PropertiesClick();
  void MMF_SaveMidifileClick();
  void SaveAs(int format);
  bool MayLeaveSong();
  bool ReadAside(const std::function<bool()>& read);
  /// Reads a song and shows it; with wishes a new one is made. A refused file leaves the song.
  bool ReadSong(const std::string& file, const TNewSong* wishes = nullptr);
  void OfferRecovery();
  void AutoloadTimerTimer();
  void AutoBackupTimerTimer();
  void MidiInMonitorTimerTimer();
  void VelocityTimerTimer();
  void ListenToMidiIn();
  void SetupTimerTimer();

  // --- Keys (MainFormKeys.cpp)
  [[nodiscard]] bool WindsIn(const QWidget& window) const;
  bool PlayKeyPressed(const QKeyEvent& key, const QWidget& focus);
  bool PlayKeyReleased(const QKeyEvent& key);

  // --- Transport (MainFormPlay.cpp)
  void ConnectTransport();
  void PlayClick();
  void StopClick();
  void RewindClick();
  void LoopClick();
  void SetLoop(std::int32_t start, std::int32_t end);
  void ConnectSlider();
  void ShowSliderMenu(const QPoint& at);
  void WindBy(int milliseconds);
  void EndWind();
  void DisplayTimerTimer();
  void SlidersUpdateTimer();
  void ShowPosition();
  void ShowTransport();
  void ShowTempo();
  void ShowTempoAt(double bpm);
  void ShowTranspose();
  void ShowTimes();
  void ShowLyricMoment(std::int32_t time);
  void ShowLevels(bool running);
  void ShowLyrics();
  void ShowLoop();
  void MoveLoopEnd(bool end, std::int32_t time);
  void ConnectLoopPanel();

  // --- Strips (MainFormStrips.cpp)
  void ConnectStrips();
  void ConnectController();
  void ShowStrip(int strip);
  void ShowStrips();
  void ShowController();
  void ShowEffects();
  void OpenBrowser(int strip);
  void ShowChannelsMenu(int strip, const QPoint& at);
  void ShowRoutesMenu(const QPoint& at, bool all);
  void OpenVelocityEditor(int strip);

  // --- Windows and settings (MainFormWindows.cpp)
  void ShowSettings();
  void ApplyOptions(const TOptionChanges& changes);
  void ExportSettings();
  void ImportSettings();
  void SetScaleClick(int percent);
  void ApplyAppearance();
  void ToggleLyrics();
  void ToggleEffects();
  void ToggleTheme();
  void Associate();
  void HideOthers();
  void CheckForUpdates();
  void OpenManual();
  void StoreWindows();
  void RestoreWindows();
  void UpdateSwitches();
  void ShowKeyboardChannel();

  // --- Editors (MainFormEditors.cpp)
  void BuildEditors();
  void MME_ListEditorClick();
  void MME_TempoEditorClick();
  void MME_UndoClick();
  void ShowEventList(int track, int filter);
  void ShowEditors();
  void ShowNoteNames();
  [[nodiscard]] int TrackOfSelected() const;

  void Status(const QString& text);
  void ShowFile();
  void ShowStatus();
  void ShowComplaints();

  // --- SongObserver
  void SongChanged() override;
  void SoundChanged(int channel) override;
  void StripChanged(int strip) override;
  void ControllerChanged(int channel, int controller, int value) override;
  void EventChanged(PtrMidiEvent event, bool becameReal) override;
  void SelectionChanged() override;
  void ModifiedChanged() override;
  void RoutesChanged() override;
  void TimesChanged() override;

  TMainFormParts p;
  std::unique_ptr<MainMenu> menu;
  std::unique_ptr<TSoundBrowserForm> browserForm;
  std::unique_ptr<TPatchesForm> patchesForm;
  std::unique_ptr<TAutoRevoicerForm> revoicerForm;
  std::unique_ptr<TVirtualKeysForm> keysForm;
  std::unique_ptr<TOptionsForm> optionsForm;
  std::unique_ptr<TEventListForm> eventListForm;
  std::unique_ptr<TControllerForm> controllerForm;
  std::unique_ptr<VelocityEditor> velocityEditor;
  std::unique_ptr<UpdateCheck> updates;
  ToolWindows* windows = nullptr;

  QTimer DisplayTimer, AutoloadTimer, SetupTimer, AutoBackupTimer, VelocityTimer, SlidersTimer,
      MidiInMonitorTimer;
  TMidiInMonitor midiIn;
  bool busy = false;             ///< a song is read on another thread
  bool DisplayTimerTag = false;  ///< the tick is at work
  bool seeking = false;          ///< the position slider is held
  bool winding = false;
  bool showEffects = true;
  bool stopped = false;  ///< the song was stopped at least once
  int shownChord = -2;
  int shownLine = -2;  ///< line of lyrics that the bar shows; -2: none was set yet
  std::int32_t loopStart = 0, loopEnd = 0;
};

}  // namespace Sonarello
