#include "app/panels/TransportPanel.h"

#include "app/controls/QtText.h"
#include "app/controls/Theme.h"
#include "app/panels/PanelButton.h"
#include "app/panels/PanelTexts.h"

namespace Sonarello {

TransportPanel::TransportPanel(QWidget* parent) : Panel(parent), TransportTimer(new QTimer(this)) {
  const std::array<QString, Buttons> names{QText("Zurückspulen", "Rewind"), QText("Wiedergabe", "Play"),
                                           QText("Stopp", "Stop"), QText("Aufnahme", "Record"),
                                           QText("Schleife", "Loop")};
  constexpr std::array icons{Icon::Rewind, Icon::Play, Icon::Stop, Icon::Record, Icon::Loop};
  for (std::size_t i = 0; i < Buttons; ++i) {
    buttons_[i] = new PanelButton(names[i], this);
    buttons_[i]->SetIcon(icons[i], 24, i == Play || i == Record);
    buttons_[i]->SetFaceKeptWhenDisabled(true);
  }
  buttons_[Play]->SetLit(Lit::Play);
  buttons_[Record]->SetLit(Lit::Record);
  for (const Button lit : {Play, Record, Loop}) buttons_[lit]->setCheckable(true);
  for (const Button menu : {Record, Loop}) buttons_[menu]->setContextMenuPolicy(Qt::CustomContextMenu);
  setAccessibleName(QText("Transport", "Transport"));
  Connect();
  Renew();
}

void TransportPanel::Connect() {
  buttons_[Rewind]->installEventFilter(this);
  connect(buttons_[Rewind], &PanelButton::pressed, this, &TransportPanel::RewindPressed);
  connect(buttons_[Rewind], &PanelButton::released, this, &TransportPanel::RewindReleased);
  connect(buttons_[Rewind], &PanelButton::clicked, this, [this] {
    if (!wound_) Q_EMIT rewindClicked();
  });
  connect(TransportTimer, &QTimer::timeout, this, &TransportPanel::TransportTimerTimer);
  connect(buttons_[Stop], &PanelButton::clicked, this, &TransportPanel::stopClicked);
  // The lit state is the song's, not the button's: the view sets it again after the click.
  connect(buttons_[Play], &PanelButton::clicked, this, [this] {
    Refresh();
    Q_EMIT playClicked();
  });
  connect(buttons_[Record], &PanelButton::clicked, this, [this] {
    Refresh();
    Q_EMIT recordClicked();
  });
  connect(buttons_[Loop], &PanelButton::clicked, this, [this] {
    Refresh();
    Q_EMIT loopClicked();
  });
  connect(buttons_[Record], &PanelButton::customContextMenuRequested, this,
          [this](const QPoint& at) { Q_EMIT recordMenuWanted(buttons_[Record]->mapToGlobal(at)); });
  connect(buttons_[Loop], &PanelButton::customContextMenuRequested, this,
          &TransportPanel::loopPanelWanted);
}

void TransportPanel::SetView(const TransportView& view) {
  view_ = view;
  Refresh();
}

void TransportPanel::Refresh() {
  const QString noSong = view_.song ? QString() : NoSongReason();
  const auto set = [&](Button which, const QString& reason, PanelTip tip) {
    tip.reason = reason;
    buttons_[which]->SetState(reason.isEmpty(), tip);
  };
  set(Rewind, noSong,
      {QText("Zum Anfang; gehalten spult es zurück", "To the start; held, it winds back"),
       {},
       QText("Pos1, Bild auf", "Home, Page Up")});
  set(Play, noSong, {QText("Wiedergabe", "Play"), {}, QText("Leertaste", "Space")});
  set(Stop, noSong,
      {QText("Stopp; noch einmal: zum Anfang", "Stop; once more: to the start"),
       {},
       QText("Leertaste", "Space")});
  set(Record, view_.song ? view_.whyNoRecording : noSong,
      {QText("Aufnahme auf den scharf geschalteten Kanal", "Record onto the armed channel")});
  set(Loop, noSong,
      {QText("Schleife; rechte Taste: Anfang und Ende", "Loop; right button: start and end"),
       view_.looping ? QText("Ein", "On") : QText("Aus", "Off")});
  buttons_[Play]->setChecked(view_.playing);
  buttons_[Record]->setChecked(view_.recording);
  buttons_[Record]->SetInk(th().rec);
  buttons_[Loop]->setChecked(view_.looping);
}

void TransportPanel::Arrange() {
  const int side = Px(44, 48);
  const int edge = metrics().px(10) + metrics().hair();
  const int step = side + metrics().px(6);
  for (int i = 0; i < Buttons; ++i) {
    buttons_[static_cast<std::size_t>(i)]->setGeometry(edge + i * step, (height() - side) / 2, side,
                                                       side);
  }
}

QSize TransportPanel::sizeHint() const {
  const int edge = metrics().px(10) + metrics().hair();
  return {2 * edge + Buttons * Px(44, 48) + (Buttons - 1) * metrics().px(6), Px(62, 72)};
}

/// A pointer that strays from the button and comes back while it is held presses the button anew; that
/// is still the same hold.
bool TransportPanel::eventFilter(QObject* object, QEvent* event) {
  if (object == buttons_[Rewind] && event->type() == QEvent::MouseButtonPress) {
    mouseHeld_ = true;
    wound_ = false;
  } else if (object == buttons_[Rewind] && event->type() == QEvent::MouseButtonRelease) {
    mouseHeld_ = false;
  }
  return Panel::eventFilter(object, event);
}

void TransportPanel::RewindPressed() {
  if (!mouseHeld_) wound_ = false;
  TransportTimer->start(WindDelay);
}

void TransportPanel::TransportTimerTimer() {
  // A button let go outside of itself says nothing.
  if (!buttons_[Rewind]->isDown()) return RewindReleased();
  if (!winding_) {
    winding_ = wound_ = true;
    TransportTimer->start(WindInterval);
    Q_EMIT windBackBegan();
  }
  Q_EMIT windBack();
}

void TransportPanel::RewindReleased() {
  if (!TransportTimer->isActive()) return;
  TransportTimer->stop();
  if (!winding_) return;
  winding_ = false;
  Q_EMIT windBackEnded();
}

}  // namespace Sonarello
