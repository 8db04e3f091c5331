// The window of the sound browser, one for all instruments.
#pragma once

#include <QWidget>
#include <memory>

#include "app/instruments/SoundModels.h"
#include "desk/SoundBrowser.h"

class QBoxLayout;
class QCheckBox;
class QComboBox;
class QLabel;
class QMenu;
class QPushButton;
class QTimer;

namespace Sonarello {

class BankChoice;
class SearchField;
class SearchPanel;
class SoloButton;
class SoundView;
class VoiceCard;

/// Shows itself when the browser opens and hides when it closes. Escape and the title bar's cross
/// cancel.
class TSoundBrowserForm : public QWidget {
  Q_OBJECT

 public:
  /// Takes the browser's hooks `Opened` and `Closed`. The browser outlives the window.
  explicit TSoundBrowserForm(TSoundBrowser& browser, QWidget* parent = nullptr);
  ~TSoundBrowserForm() override;

  /// How long a note of a preview sounds (`PlayANoteTimer`), ms.
  static constexpr int NoteLength = 600;

 public Q_SLOTS:
  /// A strip's state has changed; shows its solo.
  void StripChanged(int strip);
  /// The menu of the lists: saving them, sorted display, a name of one's own.
  void L_VoicesMouseDown(const QPoint& at);

 Q_SIGNALS:
  void accepted();
  void cancelled();
  /// The window is hidden, whatever the reason.
  void closed();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  // Layout and texts (SoundBrowserFormLayout.cpp)
  void MakeParts();
  void MakeRows();
  void ConnectParts();
  void ConnectLists();
  void ConnectSearch();
  void ConnectButtons();
  void FillNotes();
  void LayOut();
  void PlaceSearch();
  void RestorePlace();
  void StorePlace();

  void Opened();
  void Closed();
  void FillBanks();
  void ShowBank(int bank);
  void ShowCategory(int category);
  void ShowSelection();
  void ShowVoices();
  void ShowButtons();
  void Choose(const TSoundPlace& place);
  void AfterChoice();
  void Search(const QString& text);
  void LeaveSearch();
  void Rename(int row, const QString& name);
  void FillVoicesMenu(QMenu& menu);
  void PressFocusedOrAccept();

  TSoundBrowser& browser;
  CategoryModel categories;
  SoundTableModel sounds;
  HitModel hits;
  bool filling = false;  ///< the lists follow the browser, not the user
  bool isAccepting = false;
  bool isPlaced = false;
  int shownBank = -1;
  int shownCategory = -1;
  std::string placedFor;  ///< instrument whose place the window has

  BankChoice* banks = nullptr;
  SearchField* E_SelectSoundName = nullptr;
  SearchPanel* Panel_SoundsCover = nullptr;
  SoundView* LB_Categories = nullptr;
  SoundView* LB_Sounds = nullptr;
  VoiceCard* Btn_OldVoice = nullptr;
  VoiceCard* Btn_NewVoice = nullptr;
  QCheckBox* CB_WithDSP = nullptr;
  QLabel* noteLabel = nullptr;
  QComboBox* note = nullptr;
  SoloButton* CB_Solo = nullptr;
  QPushButton* Btn_GoToFirstNote = nullptr;
  QPushButton* Btn_SaveToRevoicer = nullptr;
  QPushButton* Btn_Cancel = nullptr;
  QPushButton* Btn_OK = nullptr;
  QWidget* line = nullptr;
  std::vector<QBoxLayout*> rows;
  QTimer* PlayANoteTimer = nullptr;
};

}  // namespace Sonarello
