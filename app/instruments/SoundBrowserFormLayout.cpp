// The parts of the sound browser's window and where they stand.
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QTimer>

#include "app/controls/Icons.h"
#include "app/controls/Painting.h"
#include "app/controls/QtText.h"
#include "app/instruments/BankChoice.h"
#include "app/instruments/SoloButton.h"
#include "app/instruments/SoundBrowserForm.h"
#include "app/instruments/SoundDelegates.h"
#include "app/instruments/SoundSearch.h"
#include "app/instruments/SoundView.h"
#include "app/instruments/VoiceCard.h"
#include "core/MidiFunctions.h"
#include "desk/WindowPlaces.h"

namespace Sonarello {

namespace {

constexpr double UsualWidth = 1040, UsualHeight = 720;
constexpr double LeastWidth = 720, LeastHeight = 420;
constexpr double Margin = 12, Gap = 8;
constexpr double CategoryWidth = 216, EffectWidth = 160, MSBWidth = 60, LSBWidth = 45,
                 ProgramWidth = 44;
constexpr double ButtonWidth = 104, SoloWidth = 76, NoteWidth = 84;
constexpr int LowestNote = 36, HighestNote = 96, UsualNote = 60;

/// A hairline across the window.
class Separator : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(QRect(0, 0, width(), metrics().hair()), th().line);
  }
};

}  // namespace

void TSoundBrowserForm::MakeParts() {
  banks = new BankChoice(this);
  E_SelectSoundName = new SearchField(this);
  E_SelectSoundName->SetNote(QText("Strg+F", "Ctrl+F"));
  LB_Categories = new SoundView(this);
  LB_Categories->setModel(&categories);
  LB_Categories->setItemDelegate(new CategoryDelegate(LB_Categories));
  LB_Categories->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  LB_Categories->setAccessibleName(QText("Kategorien", "Categories"));
  LB_Sounds = new SoundView(this);
  LB_Sounds->setModel(&sounds);
  LB_Sounds->setItemDelegate(new SoundDelegate(LB_Sounds));
  LB_Sounds->setAccessibleName(QStringLiteral("Sounds"));
  LB_Sounds->setContextMenuPolicy(Qt::CustomContextMenu);
  LB_Sounds->header()->setContextMenuPolicy(Qt::CustomContextMenu);
  LB_Sounds->header()->setToolTip(
      QText("Rechte Maustaste: Listen speichern, sortieren", "Right button: save and sort the lists"));
  Btn_OldVoice = new VoiceCard(QText("Alter Sound", "Old voice"), this);
  Btn_NewVoice = new VoiceCard(QText("Neuer Sound", "New voice"), this);
  CB_WithDSP = new QCheckBox(QText("beim Soundwechsel auch DSP und Einstellungen laden",
                                   "when changing voices also load the DSP and settings"),
                             this);
  noteLabel = new QLabel(QText("Vorhören", "Preview note"), this);
  note = new QComboBox(this);
  note->setAccessibleName(noteLabel->text());
  note->setToolTip(QText("Note, die auf die Wahl eines Sounds folgt; bei laufendem Song nur im Solo",
                         "Note that follows the choice of a sound; while the song plays in solo only"));
  line = new Separator(this);
  CB_Solo = new SoloButton(this);
  Btn_GoToFirstNote =
      new QPushButton(IconFor(Icon::First), QText("zur 1. Note", "goto first note"), this);
  Btn_SaveToRevoicer = new QPushButton(QText("In Revoicer speichern", "save to Revoicer"), this);
  Btn_Cancel = new QPushButton(QText("Abbrechen", "Cancel"), this);
  Btn_OK = new QPushButton(QStringLiteral("OK"), this);
  Btn_OK->setDefault(true);
  PlayANoteTimer = new QTimer(this);
  PlayANoteTimer->setSingleShot(true);
  PlayANoteTimer->setInterval(NoteLength);
  FillNotes();
  MakeRows();
  Panel_SoundsCover = new SearchPanel(hits, this);
}

void TSoundBrowserForm::FillNotes() {
  note->addItem(QStringLiteral("–"), -1);
  for (int key = LowestNote; key <= HighestNote; ++key) note->addItem(ToQt(NoteName(key)), key);
  note->setCurrentIndex(note->findData(UsualNote));
  note->setMaxVisibleItems(13);
  browser.PlayANoteKey = UsualNote;
}

void TSoundBrowserForm::MakeRows() {
  auto* column = new QVBoxLayout(this);
  const auto row = [&](std::initializer_list<QWidget*> parts, int stretch = 0) {
    auto* box = new QHBoxLayout;
    for (QWidget* part : parts)
      if (part == nullptr)
        box->addStretch(1);
      else
        box->addWidget(part);
    column->addLayout(box, stretch);
    rows.push_back(box);
  };
  rows.push_back(column);
  row({banks, E_SelectSoundName});
  row({LB_Categories, LB_Sounds}, 1);
  row({Btn_OldVoice, Btn_NewVoice});
  row({CB_WithDSP, nullptr, noteLabel, note});
  column->addWidget(line);
  row({CB_Solo, Btn_GoToFirstNote, Btn_SaveToRevoicer, nullptr, Btn_Cancel, Btn_OK});
}

void TSoundBrowserForm::LayOut() {
  const Metrics& m = metrics();
  setMinimumSize(m.px(LeastWidth), m.px(LeastHeight));
  rows[0]->setContentsMargins(m.px(Margin), m.px(Margin), m.px(Margin), m.px(Margin));
  for (QBoxLayout* row : rows) row->setSpacing(m.px(Margin));
  rows.back()->setSpacing(m.px(Gap));
  line->setFixedHeight(m.hair());
  LB_Categories->setFixedWidth(m.px(CategoryWidth));
  QHeaderView* head = LB_Sounds->header();
  head->setSectionResizeMode(QHeaderView::Fixed);
  head->setSectionResizeMode(SoundTableModel::Name, QHeaderView::Stretch);
  head->setMinimumSectionSize(m.px(LSBWidth) / 2);
  head->resizeSection(SoundTableModel::Effect, m.px(EffectWidth));
  head->resizeSection(SoundTableModel::BankMSB, m.px(MSBWidth));
  head->resizeSection(SoundTableModel::BankLSB, m.px(LSBWidth));
  head->resizeSection(SoundTableModel::Program, m.px(ProgramWidth));
  for (QPushButton* button : {Btn_Cancel, Btn_OK}) button->setMinimumWidth(m.px(ButtonWidth));
  CB_Solo->setMinimumWidth(m.px(SoloWidth));
  note->setFixedWidth(m.px(NoteWidth));
  noteLabel->setFont(m.font(Role::Caption));
  QPalette quiet = palette();
  quiet.setColor(QPalette::WindowText, th().tx3);
  noteLabel->setPalette(quiet);
  for (QWidget* card : {static_cast<QWidget*>(Btn_OldVoice), static_cast<QWidget*>(Btn_NewVoice)})
    card->setFixedHeight(card->sizeHint().height());
}

void TSoundBrowserForm::PlaceSearch() {
  Panel_SoundsCover->resize(Panel_SoundsCover->sizeHint().boundedTo(
      QSize(width() - 2 * metrics().px(Margin), height() - metrics().px(60))));
  const QRect field = E_SelectSoundName->geometry();
  Panel_SoundsCover->move(field.right() + 1 - Panel_SoundsCover->width(),
                          field.bottom() + 1 + metrics().px(6));
}

void TSoundBrowserForm::RestorePlace() {
  const Metrics& m = metrics();
  if (placedFor == browser.Instrument()) return;
  placedFor = browser.Instrument();
  const TBrowserSettings stored = browser.Settings();
  const bool isSized = stored.PatchesFormHeight != TBrowserSettings().PatchesFormHeight;
  TFormPlace place{stored.PatchesFormLeft, stored.PatchesFormTop, m.px(UsualWidth),
                   isSized ? stored.PatchesFormHeight : m.px(UsualHeight)};
  std::vector<TFormPlace> screens;
  const QScreen* const first = QGuiApplication::primaryScreen();
  for (const QScreen* const screen : QGuiApplication::screens()) {
    const QRect area = screen->availableGeometry();
    const TFormPlace free{area.left(), area.top(), area.width(), area.height()};
    screens.insert(screen == first ? screens.begin() : screens.end(), free);
  }
  place = CheckFormLayout(place, screens, m.px(LeastWidth), m.px(LeastHeight));
  resize(place.Width, place.Height);
  move(place.Left, place.Top);
}

void TSoundBrowserForm::StorePlace() {
  if (isVisible() && !isMaximized() && !isFullScreen()) browser.StorePlace(x(), y(), height());
}

}  // namespace Sonarello
