// The event list on a song, with everything that edits tell, for tests.
#pragma once

#include <string>
#include <vector>

#include "core/MidiFileWriter.h"
#include "editors/EventEdits.h"
#include "helpers/SongBuilder.h"

namespace Sonarello {

struct EditorBench : TestSong {
  explicit EditorBench(int timeBase = 480) : TestSong(timeBase) {
    edits.Hooks.IsPlaying = [this] { return playing; };
    edits.Hooks.StopButtonClick = [this] {
      playing = false;
      Told.emplace_back("stop");
    };
    edits.Hooks.Changed = [this] { Told.emplace_back("changed"); };
    edits.Hooks.ReadAndShowLyrics = [this] { Told.emplace_back("lyrics"); };
    edits.Hooks.TimesChanged = [this] { Told.emplace_back("times"); };
    edits.Hooks.ReadFirstValues = [this] { Told.emplace_back("first values"); };
    edits.Hooks.ShowController = [this](int channel, int controller) {
      Told.push_back("controller " + std::to_string(controller) + " of " + std::to_string(channel));
    };
    edits.Hooks.EndNotes = [this](int channel) {
      Told.push_back("end notes of " + std::to_string(channel));
    };
    edits.Hooks.ForgetEvent = [this](PtrMidiEvent) { Told.emplace_back("forget"); };
  }

  EditorBench& NewTrack() { return Then(TestSong::NewTrack()); }
  EditorBench& On(std::int32_t position, int key, int channel = 1, int velocity = 100) {
    return Then(TestSong::On(position, key, channel, velocity));
  }
  EditorBench& Off(std::int32_t position, int key, int channel = 1) {
    return Then(TestSong::Off(position, key, channel));
  }
  EditorBench& Ctrl(std::int32_t position, int controller, int value, int channel = 1) {
    return Then(TestSong::Ctrl(position, controller, value, channel));
  }
  EditorBench& Tempo(std::int32_t position, int micros) {
    return Then(TestSong::Tempo(position, micros));
  }
  EditorBench& Sign(std::int32_t position, int numerator, int exponent) {
    return Then(TestSong::Sign(position, numerator, exponent));
  }
  EditorBench& Program(std::int32_t position, int program, int channel = 1) {
    Put(NewChannelEvent(song.Pool, static_cast<std::uint8_t>(ProgramChange | (channel - 1)),
                        static_cast<std::uint8_t>(program), 0, position));
    return *this;
  }
  EditorBench& Note(std::int32_t from, std::int32_t to, int key, int channel = 1) {
    On(from, key, channel).Off(to, key, channel);
    return *this;
  }
  EditorBench& Words(std::int32_t position, int type, std::string_view text) {
    Put(NewMeta(song.Pool, type, text, position));
    return *this;
  }
  EditorBench& Data(std::int32_t position, int type, std::vector<std::uint8_t> bytes) {
    Put(NewMeta(song.Pool, type, bytes, position));
    return *this;
  }
  EditorBench& Exclusive(std::int32_t position, std::vector<std::uint8_t> bytes) {
    Put(NewSysex(song.Pool, bytes, position));
    return *this;
  }
  /// Ends the song as an opened one and shows an entry of the track list.
  EditorBench& Open(int track = 1, std::int32_t lastTick = 0) {
    Finish(lastTick).Map();
    Pair();
    song.KeySignArray.assign(song.MidiTrack.size(), {});
    for (TMyTrack& list : song.MidiTrack) {
      int channel = -1;
      ForEachEvent(list, [&](PtrMidiEvent e) {
        if (!e->IsChannelEvent()) return;
        channel = channel < 0 || channel == e->Channel() ? e->Channel() : 16;
        song.MidiData[static_cast<std::size_t>(e->Channel())].Active = true;
        song.MidiData[static_cast<std::size_t>(e->Channel())].ActiveNotes += e->Kind() == NoteOn;
      });
      list.TrkMidiIndex = static_cast<std::int8_t>(channel);
    }
    for (int c = 0; c < ChannelCount; ++c)
      song.MidiData[static_cast<std::size_t>(c)].MidiChannel = static_cast<std::int8_t>(c);
    functions.SetFirstValues();
    song.MidiFileLoaded = true;
    rows.UpdateDisplayedEvents();
    rows.CB_TrackListChange(track);
    return *this;
  }

  /// The texts of a row.
  [[nodiscard]] std::vector<std::string> Fields(std::int32_t row) const {
    const TEventData& data = rows.Row(row);
    return {data.Fields.begin(), data.Fields.end()};
  }
  /// One column of all rows.
  [[nodiscard]] std::vector<std::string> Column(int column) const {
    std::vector<std::string> texts;
    for (std::int32_t row = 1; row <= rows.Rows(); ++row)
      texts.push_back(rows.Row(row).Fields[static_cast<std::size_t>(column)]);
    return texts;
  }
  [[nodiscard]] std::string Cell(std::int32_t row, int column) const {
    return rows.Row(row).Fields[static_cast<std::size_t>(column)];
  }
  /// An edit as a user does it: opens the cell's editor and leaves it with a text.
  TEditResult Edit(std::int32_t row, int column, const std::string& text) {
    edits.GetCellEditorType(column, row);
    return edits.CellEditDone(column, row, text);
  }
  std::int32_t Insert(TEventKind kind, std::int32_t row) {
    const auto& kinds = rows.InsertKinds();
    for (std::size_t n = 0; n < kinds.size(); ++n)
      if (kinds[n] == kind) rows.CB_InsertChange(static_cast<int>(n));
    return edits.PM_InsertMidiEventClick(row);
  }
  [[nodiscard]] Bytes Saved() {
    return MidiFileWriter(song, options, routes, messages, hooks)
        .Encode("song.mid", song.MidiFileFormat);
  }
  [[nodiscard]] std::string LastMessage() const {
    return messages.Shown.empty() ? std::string() : messages.Shown.back();
  }
  [[nodiscard]] bool WasTold(const std::string& what) const {
    return std::find(Told.begin(), Told.end(), what) != Told.end();
  }

  bool playing = false;
  std::vector<std::string> Told;
  SongGate gate;
  TEventRows rows{song, routes, options, gate};
  TEventEdits edits{song, rows, functions, routes, messages, gate};

 private:
  EditorBench& Then(TestSong&) { return *this; }
};

}  // namespace Sonarello
