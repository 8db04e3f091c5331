#include "app/instruments/SoundBrowserForm.h"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>

#include "app/controls/QtText.h"
#include "app/controls/Theme.h"
#include "app/instruments/BankChoice.h"
#include "app/instruments/SoloButton.h"
#include "app/instruments/SoundSearch.h"
#include "app/instruments/SoundView.h"
#include "app/instruments/VoiceCard.h"

namespace Sonarello {

TSoundBrowserForm::TSoundBrowserForm(TSoundBrowser& of, QWidget* parent)
    : QWidget(parent, Qt::Window), browser(of) {
  MakeParts();
  ConnectParts();
  LayOut();
  browser.Hooks.Opened = [this] { Opened(); };
  browser.Hooks.Closed = [this] { Closed(); };
}

TSoundBrowserForm::~TSoundBrowserForm() {
  browser.Hooks.Opened = {};
  browser.Hooks.Closed = {};
}

void TSoundBrowserForm::ConnectParts() {
  ConnectLists();
  ConnectSearch();
  ConnectButtons();
}

void TSoundBrowserForm::ConnectLists() {
  connect(banks, &BankChoice::bankChosen, this, &TSoundBrowserForm::ShowBank);
  connect(LB_Categories->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& now) {
            if (now.isValid() && !filling) ShowCategory(now.row());
          });
  connect(LB_Sounds->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& now) {
            if (now.isValid() && !filling) Choose(sounds.PlaceOf(now.row()));
          });
  connect(LB_Sounds, &SoundView::heardAgain, this,
          [this](const QModelIndex& index) { Choose(sounds.PlaceOf(index.row())); });
  connect(&sounds, &SoundTableModel::renamed, this, &TSoundBrowserForm::Rename, Qt::QueuedConnection);
  connect(LB_Sounds, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& at) { L_VoicesMouseDown(LB_Sounds->viewport()->mapToGlobal(at)); });
  connect(LB_Sounds->header(), &QWidget::customContextMenuRequested, this,
          [this](const QPoint& at) { L_VoicesMouseDown(LB_Sounds->header()->mapToGlobal(at)); });
}

void TSoundBrowserForm::ConnectSearch() {
  for (SoundView* view : {LB_Categories, LB_Sounds})
    connect(view, &SoundView::typed, this, [this](const QString& text) {
      E_SelectSoundName->setFocus(Qt::OtherFocusReason);
      E_SelectSoundName->setText(text);
    });
  connect(E_SelectSoundName, &QLineEdit::textChanged, this, &TSoundBrowserForm::Search);
  connect(E_SelectSoundName, &SearchField::stepped, Panel_SoundsCover, &SearchPanel::Step);
  connect(E_SelectSoundName, &SearchField::accepted, this, [this] {
    if (!Panel_SoundsCover->List()->currentIndex().isValid()) Panel_SoundsCover->Step(0);
    if (Panel_SoundsCover->List()->currentIndex().isValid()) LeaveSearch();
  });
  connect(E_SelectSoundName, &SearchField::left, this, &TSoundBrowserForm::LeaveSearch);
  connect(Panel_SoundsCover, &SearchPanel::chosen, this,
          [this](int row) { Choose(hits.PlaceOf(row)); });
  connect(Panel_SoundsCover, &SearchPanel::closed, this, &TSoundBrowserForm::LeaveSearch);
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
    E_SelectSoundName->setFocus(Qt::ShortcutFocusReason);
    E_SelectSoundName->selectAll();
  });
}

void TSoundBrowserForm::ConnectButtons() {
  connect(Btn_OldVoice, &VoiceCard::clicked, this, [this] {
    browser.Btn_OldVoiceClick();
    AfterChoice();
  });
  connect(Btn_NewVoice, &VoiceCard::clicked, this, [this] {
    browser.Btn_NewVoiceClick();
    AfterChoice();
  });
  connect(CB_WithDSP, &QCheckBox::toggled, this, [this](bool on) { browser.SetPatchesWithDSP(on); });
  connect(note, &QComboBox::activated, this, [this] {
    const int key = note->currentData().toInt();
    browser.PlayANoteKey = key < 0 ? std::nullopt : std::optional(key);
    if (key >= 0 && browser.PlayANote()) PlayANoteTimer->start();
  });
  connect(PlayANoteTimer, &QTimer::timeout, this, [this] { browser.EndNote(); });
  connect(CB_Solo, &QPushButton::clicked, this, [this] {
    browser.CB_SoloMouseDown();
    CB_Solo->setChecked(browser.IsSolo());
  });
  connect(Btn_GoToFirstNote, &QPushButton::clicked, this, [this] { browser.Btn_GoToFirstNote(); });
  connect(Btn_SaveToRevoicer, &QPushButton::clicked, this, [this] {
    browser.Btn_SaveToRevoicerClick();
    ShowButtons();
  });
  connect(Btn_Cancel, &QPushButton::clicked, this, [this] { browser.Btn_CancelClick(); });
  connect(Btn_OK, &QPushButton::clicked, this, [this] {
    isAccepting = true;
    browser.Btn_OKClick();
    isAccepting = false;
  });
}

void TSoundBrowserForm::Opened() {
  const bool wasOpen = isVisible();
  setWindowTitle(ToQt(browser.Caption()));
  {
    const QSignalBlocker quiet(CB_WithDSP);
    CB_WithDSP->setChecked(browser.PatchesWithDSP());
  }
  CB_WithDSP->setEnabled(browser.HasEffects());
  CB_WithDSP->setToolTip(browser.HasEffects()
                             ? QString()
                             : QText("Die Listen dieses Instruments nennen keine Effekte",
                                     "The lists of this instrument tell no effects"));
  LB_Sounds->setColumnHidden(SoundTableModel::Effect, !browser.HasEffects());
  E_SelectSoundName->clear();
  FillBanks();
  ShowSelection();
  if (!wasOpen) RestorePlace();
  show();
  raise();
  activateWindow();
  LB_Sounds->setFocus(Qt::OtherFocusReason);
}

void TSoundBrowserForm::Closed() {
  PlayANoteTimer->stop();
  StorePlace();
  filling = true;
  categories.Clear();
  sounds.Clear();
  filling = false;
  shownBank = shownCategory = -1;
  Panel_SoundsCover->hide();
  hide();
  if (isAccepting)
    Q_EMIT accepted();
  else
    Q_EMIT cancelled();
  Q_EMIT closed();
}

void TSoundBrowserForm::FillBanks() {
  std::vector<BankChoice::TEntry> entries;
  for (const int index : browser.ShownBanks()) {
    const TBrowserBank& bank = browser.Banks().Banks()[static_cast<std::size_t>(index)];
    const QString file = ToQt(bank.List->Spec->UserFiles).section(QLatin1Char('|'), 0, 0);
    const QString tip = bank.IsCustom()
                            ? QText("Ihre Sounds aus der Datei ", "Your sounds from the file ") + file
                            : QString();
    entries.push_back({index, ToQt(bank.Name), tip});
  }
  banks->Show(entries);
}

void TSoundBrowserForm::ShowBank(int bank) {
  filling = true;
  shownBank = bank;
  banks->Select(bank);
  categories.Show(browser, bank);
  LB_Categories->setVisible(!browser.ShowsDrums());
  filling = false;
  const TSoundPlace& selected = browser.Selected();
  ShowCategory(selected.Bank == bank ? selected.Category : 0);
}

void TSoundBrowserForm::ShowCategory(int category) {
  filling = true;
  shownCategory = category;
  LB_Categories->setCurrentIndex(categories.index(category));
  sounds.Show(browser, shownBank, category);
  const TSoundPlace& selected = browser.Selected();
  if (selected.IsSet() && selected.Bank == shownBank && selected.Category == category) {
    const QModelIndex row = sounds.index(selected.Sound, SoundTableModel::Name);
    LB_Sounds->setCurrentIndex(row);
    LB_Sounds->scrollTo(row, QAbstractItemView::PositionAtCenter);
  }
  filling = false;
}

/// The lists go to the sound that is selected in the browser.
void TSoundBrowserForm::ShowSelection() {
  const std::vector<int> shown = browser.ShownBanks();
  const TSoundPlace& selected = browser.Selected();
  if (selected.IsSet())
    ShowBank(selected.Bank);
  else if (!shown.empty())
    ShowBank(shown.front());
  if (!selected.IsSet()) {
    filling = true;
    LB_Categories->setCurrentIndex({});
    filling = false;
  }
  ShowVoices();
}

void TSoundBrowserForm::ShowVoices() {
  const auto effectOf = [this](const TSoundPlace& place) {
    const TPatch* row = browser.Banks().RowAt(place);
    const QString effect = row == nullptr ? QString() : ToQt(browser.EffectText(place.Bank, *row));
    return effect.isEmpty() ? QString() : QStringLiteral("DSP · ") + effect;
  };
  Btn_OldVoice->SetVoice(ToQt(browser.OldVoice()), effectOf(browser.OldPlace()));
  Btn_NewVoice->SetVoice(ToQt(browser.NewVoice()), effectOf(browser.NewPlace()));
  Btn_OldVoice->SetHeard(!browser.HearsNew());
  Btn_NewVoice->SetHeard(browser.HearsNew());
  ShowButtons();
}

void TSoundBrowserForm::ShowButtons() {
  Btn_NewVoice->setEnabled(browser.NewPlace().IsSet());
  CB_Solo->setChecked(browser.IsSolo());
  const bool canSave = browser.CanSaveToRevoicer();
  Btn_SaveToRevoicer->setEnabled(canSave);
  Btn_SaveToRevoicer->setToolTip(
      canSave
          ? QText("Den alten Sound künftig durch den neuen ersetzen",
                  "Replace the old voice by the new one from now on")
          : QText("Erst einen anderen Sound wählen; nicht für Schlagzeug und nur am Hauptinstrument",
                  "Choose another sound first; not for drums, and on the main instrument only"));
}

void TSoundBrowserForm::Choose(const TSoundPlace& place) {
  const bool hadDrums = browser.ShowsDrums();
  if (!browser.Select(place)) return;
  if (hadDrums != browser.ShowsDrums()) FillBanks();
  AfterChoice();
}

void TSoundBrowserForm::AfterChoice() {
  if (!browser.IsOpen()) return;
  if (browser.IsSounding()) PlayANoteTimer->start();
  const TSoundPlace& selected = browser.Selected();
  const bool isShown = selected.IsSet() && selected.Bank == shownBank &&
                       selected.Category == shownCategory &&
                       LB_Sounds->currentIndex().row() == selected.Sound;
  if (isShown) return ShowVoices();
  FillBanks();
  ShowSelection();
}

void TSoundBrowserForm::Search(const QString& text) {
  const bool searches = !text.isEmpty() && browser.IsOpen();
  E_SelectSoundName->SetNote(QText("Strg+F", "Ctrl+F"));
  Panel_SoundsCover->setVisible(searches);
  if (!searches) return;
  hits.Show(browser, text);
  E_SelectSoundName->SetNote(QString::number(hits.rowCount()));
  Panel_SoundsCover->ShowHits(text);
  PlaceSearch();
  Panel_SoundsCover->raise();
}

void TSoundBrowserForm::LeaveSearch() {
  E_SelectSoundName->clear();
  LB_Sounds->setFocus(Qt::OtherFocusReason);
}

void TSoundBrowserForm::Rename(int row, const QString& name) {
  const TSoundPlace place = sounds.PlaceOf(row);
  filling = true;
  categories.Clear();
  sounds.Clear();
  filling = false;
  browser.LB_CustomSoundsEditEditDone(place, ToStd(name));
  if (!browser.IsOpen()) return;
  FillBanks();
  ShowBank(place.Bank);
  ShowCategory(place.Category);
  ShowVoices();
}

void TSoundBrowserForm::L_VoicesMouseDown(const QPoint& at) {
  if (!browser.IsOpen()) return;
  QMenu menu(this);
  FillVoicesMenu(menu);
  menu.exec(at);
}

void TSoundBrowserForm::FillVoicesMenu(QMenu& menu) {
  for (const int index : browser.ShownBanks()) {
    const QString text = ToQt(SaveVoicesText(browser.Banks().Banks()[static_cast<std::size_t>(index)]));
    if (text.isEmpty()) continue;
    connect(menu.addAction(text), &QAction::triggered, this,
            [this, index] { browser.PM_SaveVoicesClick(index); });
  }
  menu.addSeparator();
  QAction* sorted = menu.addAction(QText("Sounds sortiert anzeigen", "show sounds sorted"));
  sorted->setCheckable(true);
  sorted->setChecked(browser.SortSounds());
  connect(sorted, &QAction::triggered, this, [this] { browser.PM_SortSoundsClick(); });
  const QModelIndex current = LB_Sounds->currentIndex();
  QAction* rename = menu.addAction(QText("Sound umbenennen\tF2", "rename sound\tF2"));
  rename->setEnabled(current.isValid() && browser.CanRename(sounds.PlaceOf(current.row())));
  rename->setToolTip(QText("Nur Sounds Ihrer eigenen Listen", "Only sounds of your own lists"));
  connect(rename, &QAction::triggered, this,
          [this, current] { LB_Sounds->edit(current.siblingAtColumn(SoundTableModel::Name)); });
}

void TSoundBrowserForm::StripChanged(int strip) {
  if (browser.IsOpen() && strip == browser.MidiIndex()) CB_Solo->setChecked(browser.IsSolo());
}

void TSoundBrowserForm::closeEvent(QCloseEvent* event) {
  browser.Btn_CancelClick();
  event->accept();
}

void TSoundBrowserForm::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape: browser.Btn_CancelClick(); return;
    case Qt::Key_Return:
    case Qt::Key_Enter: PressFocusedOrAccept(); return;
    default: QWidget::keyPressEvent(event);
  }
}

/// Enter on a button presses that button, not OK.
void TSoundBrowserForm::PressFocusedOrAccept() {
  auto* button = qobject_cast<QPushButton*>(focusWidget());
  (button != nullptr && button->isEnabled() ? button : Btn_OK)->click();
}

void TSoundBrowserForm::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (Panel_SoundsCover->isVisible()) PlaceSearch();
}

void TSoundBrowserForm::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (!AppearanceChanged(*event) || Btn_OK == nullptr) return;
  LayOut();
  if (Panel_SoundsCover->isVisible()) PlaceSearch();
}

}  // namespace Sonarello
