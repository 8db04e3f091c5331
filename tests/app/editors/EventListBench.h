// The event list's window over a small song that holds every kind of event, for tests.
#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

#include "app/Application.h"
#include "app/controls/QtText.h"
#include "app/editors/EditorStatus.h"
#include "app/editors/EventDelegate.h"
#include "app/editors/EventListForm.h"
#include "app/editors/EventListModel.h"
#include "app/editors/EventSearch.h"
#include "app/editors/EventView.h"
#include "helpers/SongBuilder.h"

namespace Sonarello {

/// Track 1 of the song plays on channel 4. Its rows, in their order, bear these names.
enum PictureRow : std::int32_t {
  TrackName = 1,
  Xg = 5,
  RolandReset = 6,
  BankMsb = 9,
  Program = 11,
  Volume = 12,
  Marker = 15,
  Chord = 16,
  FirstNote = 17,
  SecondNote = 18,
  Lyric = 19,
  Bend = 21,
  KeyTouch = 22,
  ChannelTouch = 23,
};

struct EventListBench : TestSong {
  EventListBench() {
    rows.Texts.Hooks.ProgramChangeName = [](int, const TAddress&) {
      return std::string("ChamberStrings (S.Art2!)");
    };
    rows.Hooks.PatchName = [](int) { return std::string("ChamberStrings (S.Art2!)"); };
    rows.Hooks.TimePosition = [this] { return time; };
    edits.Hooks.IsPlaying = [this] { return playing; };
    edits.Hooks.Changed = [this] { ++changes; };
    routes.Table[0].Instrument = "Yamaha Genos";
  }
  ~EventListBench() { song.ClearMidiMemory(); }

  EventListBench& PictureSong() {
    const auto meta = [this](int position, int type, const Bytes& bytes) {
      Put(NewMeta(song.Pool, type, bytes, position));
    };
    const auto text = [this](int position, int type, std::string_view words) {
      Put(NewMeta(song.Pool, type, words, position));
    };
    const auto sysex = [this](int position, const Bytes& bytes) {
      Put(NewSysex(song.Pool, bytes, position));
    };
    const auto put = [this](int position, int command, int a, int b) {
      Put(NewChannelEvent(song.Pool, static_cast<std::uint8_t>(command), static_cast<std::uint8_t>(a),
                          static_cast<std::uint8_t>(b), position));
    };
    NewTrack().Sign(0, 4, 2).Tempo(0, 625'000);
    NewTrack();
    Track(1).TrkMidiIndex = 3;
    text(0, MetaTrackName, "Strings");
    meta(0, MetaTimeSignature, {4, 2, 24, 8});
    meta(0, MetaKeySignature, {0xFF, 0});
    meta(0, MetaTempo, {0x09, 0x89, 0x68});
    sysex(50, {0x43, 0x10, 0x4C, 0, 0, 0x7E, 0, 0xF7});
    sysex(106, {0x41, 0x10, 0x42, 0x12, 0x40, 0x00, 0x04, 0x7F, 0x00, 0xF7});
    sysex(240, {0x43, 0x10, 0x4C, 2, 1, 0, 1, 0, 0xF7});
    sysex(244, {0x43, 0x10, 0x4C, 3, 5, 0, 0x43, 0x10, 0xF7});
    Ctrl(480, 0, 104, 4).Ctrl(482, 32, 32, 4);
    put(484, 0xC3, 48, 0);
    Ctrl(490, 7, 88, 4).Ctrl(492, 10, 52, 4).Ctrl(494, 91, 54, 4);
    text(3840, MetaMarker, "Intro");
    meta(7680, MetaSequencerSpecific, {0x43, 0x7B, 0x01, 0x34, 0x00, 0x31, 0x7F});
    On(7680, 65, 4, 84).On(7680, 69, 4, 79);
    text(7680, MetaLyric, "Should");
    Off(8156, 65, 4).Off(8156, 69, 4).On(8160, 72, 4, 92);
    put(8280, 0xE3, 0, 72);
    put(8400, 0xA3, 72, 64);
    put(8640, 0xD3, 72, 0);
    put(8880, 0xE3, 0, 64);
    Off(9118, 72, 4);
    for (int n = 0; n < more; ++n)
      On(9120 + n * 240, 60 + n % 12, 4, 85).Off(9358 + n * 240, 60 + n % 12, 4);
    Finish().Map();
    song.MidiTrack[1].TrkNoteOnCnt = 3 + more;
    song.MidiData[3].Active = true;
    song.MidiData[3].ActiveNotes = 3 + more;
    song.MidiFileLoaded = true;
    song.MidiFileFormat = song.MidiFileOrgFormat = 1;
    Pair();
    return *this;
  }
  /// The window over the song's second track, shown.
  EventListBench& Show(int track = 1) {
    form = std::make_unique<TEventListForm>(rows, edits, messages);
    form->resize(form->sizeHint());
    form->ShowSong(QStringLiteral("Auld_Lang_Syne_Genos.mid"), track);
    ShowForTest(*form);
    return *this;
  }
  EventListBench& Select(std::int32_t row, int column = PositionColumn) {
    form->Table().selectionModel()->setCurrentIndex(
        form->Model().index(row - 1, column),
        QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    return *this;
  }
  /// Opens the editor of a cell by the keyboard.
  EventListBench& Edit(std::int32_t row, int column) {
    Select(row, column);
    Key(Qt::Key_F2);
    return *this;
  }
  void Key(int key, Qt::KeyboardModifiers held = Qt::NoModifier) {
    QTest::keyClick(&form->Table(), static_cast<Qt::Key>(key), held);
  }
  [[nodiscard]] QLineEdit* Field() { return qobject_cast<QLineEdit*>(form->Delegate().Editor()); }
  [[nodiscard]] QComboBox* List() { return qobject_cast<QComboBox*>(form->Delegate().Editor()); }
  /// Types a text over the one in the field and confirms it.
  void Type(const QString& text, int key = Qt::Key_Return) {
    ASSERT_NE(Field(), nullptr);
    Field()->selectAll();
    QTest::keyClicks(Field(), text);
    QTest::keyClick(Field(), static_cast<Qt::Key>(key));
    QCoreApplication::processEvents();  // the delegate takes the text behind the key
  }
  [[nodiscard]] std::string Cell(std::int32_t row, int column) {
    return ToStd(form->Model().index(row - 1, column).data().toString());
  }
  /// Lets the window's timer strike.
  void Strike(const char* timer) {
    auto* found = form->findChild<QTimer*>(QLatin1String(timer));
    ASSERT_NE(found, nullptr);
    ASSERT_TRUE(found->isActive());
    QTimerEvent strike(found->timerId());
    QCoreApplication::sendEvent(found, &strike);
  }

  int more = 60;  ///< notes behind the picture's own
  SongGate gate;
  TEventRows rows{song, routes, options, gate};
  TEventEdits edits{song, rows, functions, routes, messages, gate};
  std::unique_ptr<TEventListForm> form;
  std::int32_t time = 0;
  bool playing = false;
  int changes = 0;
};

}  // namespace Sonarello
