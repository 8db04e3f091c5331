// The main window's loop: its button, its panel, the flags on the slider.
#include "app/controls/QtText.h"
#include "app/desk/MainForm.h"
#include "app/panels/LoopPanel.h"
#include "app/panels/SongSlider.h"
#include "desk/BarTimes.h"
#include "desk/PlaceText.h"

namespace Sonarello {

namespace {

/// The beginning of the bar that lies `bars` bars from the one nearest to a time.
std::int32_t BarBeside(const Song& song, std::int32_t time, int bars) {
  std::vector<std::int64_t> starts = BarTimes(song);
  starts.push_back(song.SongLength);
  const auto next = std::ranges::lower_bound(starts, std::int64_t{time});
  const auto last = static_cast<std::int64_t>(starts.size()) - 1;
  const std::int64_t at = std::clamp<std::int64_t>((next - starts.begin()) + bars, 0, last);
  return static_cast<std::int32_t>(starts[static_cast<std::size_t>(at)]);
}

}  // namespace

void TMainForm::ConnectLoopPanel() {
  connect(loopPanel, &LoopPanel::loopClicked, this, &TMainForm::LoopClick);
  connect(loopPanel, &LoopPanel::endTyped, this, [this](LoopEnd which, const QString& text) {
    const auto time = TimeOfPlace(p.work.desk.song, ToStd(text));
    if (!time)
      return loopPanel->Refuse(
          which, QText("Diese Stelle gibt es im Song nicht", "The song has no such place"));
    MoveLoopEnd(which == LoopEnd::End, *time);
  });
  connect(loopPanel, &LoopPanel::endStepped, this, [this](LoopEnd which, int bars) {
    const bool end = which == LoopEnd::End;
    MoveLoopEnd(end, BarBeside(p.work.desk.song, end ? loopEnd : loopStart, bars));
  });
  connect(loopPanel, &LoopPanel::setHereClicked, this, [this](LoopEnd which) {
    MoveLoopEnd(which == LoopEnd::End, p.work.desk.Player().TimePosition);
  });
}

void TMainForm::MoveLoopEnd(bool end, std::int32_t time) {
  const std::int32_t start = end ? loopStart : time;
  std::int32_t until = end ? time : loopEnd;
  // Without a range yet, or with one that would be turned round, it reaches to the end of the song.
  if (!end && until <= start) until = p.work.desk.song.SongLength;
  if (until <= start)
    return loopPanel->Refuse(
        end ? LoopEnd::End : LoopEnd::Start,
        QText("Das Ende liegt vor dem Anfang", "The end lies in front of the start"));
  SetLoop(start, until);
}

void TMainForm::LoopClick() {
  Desk& desk = p.work.desk;
  if (!desk.song.MidiFileLoaded) return;
  if (desk.Player().Looping) {
    desk.EndLoop();
  } else {
    // Without a range of its own the loop takes the whole song.
    if (loopEnd <= loopStart) {
      loopStart = 0;
      loopEnd = desk.song.SongLength;
    }
    desk.SetLoop(loopStart, loopEnd);
  }
  ShowLoop();
}

void TMainForm::SetLoop(std::int32_t start, std::int32_t end) {
  if (!p.work.desk.SetLoop(start, end)) return;
  loopStart = start;
  loopEnd = end;
  ShowLoop();
}

void TMainForm::ShowLoop() {
  const TMidiPlayer& player = p.work.desk.Player();
  const bool on = p.work.desk.song.MidiFileLoaded && player.Looping;
  if (on) {
    loopStart = player.LoopStart;
    loopEnd = player.LoopEnd;
  }
  slider->SetLoop(on ? std::optional<LoopSpan>(LoopSpan{loopStart, loopEnd}) : std::nullopt);
  const TStripsPosition& position = p.work.desk.strips.Position;
  LoopView view{.song = p.work.desk.song.MidiFileLoaded, .looping = on};
  if (view.song && loopEnd > loopStart) {
    view.start = ToQt(position.At(loopStart).Position);
    view.end = ToQt(position.At(loopEnd).Position);
  }
  loopPanel->SetView(view);
  ShowTransport();
}

}  // namespace Sonarello
