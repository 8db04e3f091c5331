#include "playback/Redirection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/SentLog.h"
#include "helpers/SongBuilder.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Strips, counted from 0: 0 and 1 have events, 4 has none.
struct Desk : TestSong {
  Desk() {
    NewTrack().On(0, 60, 1).Off(10, 60, 1).On(20, 62, 2).Off(30, 62, 2);
    Finish();
    song.MidiData[0].Active = song.MidiData[1].Active = true;
    song.ActiveMidiIndex = song.ActiveMidiChannel = 15;
    TRedirectionHooks& h = redirection.Hooks;
    h.Changed = [this] { Calls.push_back("changed"); };
    h.ShowHeading = [this](const std::string& text) { Calls.push_back(text); };
    h.EndNotes = [this](int route, int channel) {
      log.Lines.push_back("end " + std::to_string(route) + "/" + std::to_string(channel));
    };
    h.ShowLabel = [this](int strip, const TChannelLabel& label) {
      Calls.push_back("label " + std::to_string(strip) + "=" + label.Text() +
                      (label.Red ? " red" : ""));
    };
    h.ShowSound = [this](int strip) { Calls.push_back("sound " + std::to_string(strip)); };
    h.SelectStrip = [this](int strip) { Calls.push_back("select " + std::to_string(strip)); };
    h.SwapYamahaParts = [this](int from, int to) {
      Calls.push_back("yamaha " + std::to_string(from) + "," + std::to_string(to));
    };
    h.SwapKorgPartEQ = [this](int a, int b) {
      Calls.push_back("korg " + std::to_string(a) + "," + std::to_string(b));
    };
    h.ShowTracks = [this](int a, int b) {
      Calls.push_back("tracks " + std::to_string(a) + "," + std::to_string(b));
    };
  }
  RedirectionResult Redirect(int from, int to, bool playing = false) {
    return redirection.Redirect(from, to, playing);
  }
  std::vector<int> WireChannels() const {
    std::vector<int> channels;
    for (std::size_t c = 0; c < ChannelCount; ++c) {
      channels.push_back(song.MidiData[c].MidiChannel);
      EXPECT_EQ(song.MidiData[c].MidiChannel, realtime.Realtime[c].MidiChannel) << c;
    }
    return channels;
  }
  void Value(int strip, std::size_t controller, int value) {
    song.MidiData[static_cast<std::size_t>(strip)].CtrlArray[controller].Value =
        static_cast<std::uint8_t>(value);
  }

  SongGate gate;
  TRealtimeData realtime;
  SentLog log;
  TRedirection redirection{song, messages, gate, realtime, log.Sender()};
  std::vector<std::string> Calls;
};

TEST(Redirection, OntoAnEmptyChannelAsksNothing) {
  Desk desk;
  EXPECT_EQ(desk.Redirect(0, 4), RedirectionResult::Done);
  EXPECT_THAT(desk.messages.Asked, IsEmpty());
  EXPECT_THAT(desk.WireChannels(), ElementsAre(4, 1, 2, 3, 0, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
}

TEST(Redirection, DoesItsStepsInOrder) {
  Desk desk;
  desk.Redirect(0, 4);
  EXPECT_THAT(desk.Calls, ElementsAre("changed", "label 4=1 red", "label 0=5 red", "sound 4", "sound 0",
                                      "yamaha 0,4", "korg 4,0", "tracks 4,0"));
}

TEST(Redirection, WorksWithoutAnyHook) {
  Desk desk;
  desk.redirection.Hooks = {};
  EXPECT_EQ(desk.Redirect(0, 4, true), RedirectionResult::Done);
  EXPECT_EQ(desk.WireChannels()[0], 4);
}

TEST(Redirection, AsksBeforeItTakesAChannelWithEvents) {
  Desk desk;
  desk.messages.Answers = {false};
  EXPECT_EQ(desk.Redirect(0, 1), RedirectionResult::Declined);
  EXPECT_THAT(
      desk.messages.Asked,
      ElementsAre("There are already midi events on midi channel 2!\r"
                  "Should the midi events from midi channel 1 be redirected on midi channel 2?"));
  EXPECT_EQ(desk.WireChannels()[0], 0);
  EXPECT_THAT(desk.Calls, IsEmpty());
  EXPECT_EQ(desk.realtime.Realtime[0].AllSoundOff, -1);
  EXPECT_EQ(desk.Redirect(0, 1), RedirectionResult::Done);
  EXPECT_EQ(desk.WireChannels()[0], 1);
  EXPECT_EQ(desk.WireChannels()[1], 0);
}

TEST(Redirection, AsksInGerman) {
  const InGerman german;
  Desk desk;
  desk.Redirect(0, 1);
  EXPECT_THAT(desk.messages.Asked,
              ElementsAre("Es befinden sich bereits Daten auf Midikanal 2!\r"
                          "Sollen die Daten vom Midikanal 1 auf Midikanal 2 umgeleitet werden?"));
}

TEST(Redirection, BackOntoItsOwnNumberMakesTheLabelNormal) {
  Desk desk;
  desk.Redirect(0, 4);
  desk.Calls.clear();
  EXPECT_EQ(desk.Redirect(4, 0), RedirectionResult::Done);
  EXPECT_EQ(ChannelLabelOf(desk.song, 0), (TChannelLabel{1, false}));
  EXPECT_EQ(ChannelLabelOf(desk.song, 4), (TChannelLabel{5, false}));
  EXPECT_THAT(desk.Calls, testing::IsSupersetOf({"label 4=5", "label 0=1"}));
  EXPECT_EQ(TChannelLabel::RedColor, 0xFFFF0000U);
  EXPECT_EQ(TChannelLabel::TwinRedColor, 0xFF00FFFFU);
  EXPECT_EQ(TChannelLabel::NormalColor, 0x61574CU);
  EXPECT_EQ(TChannelLabel::TwinNormalColor, 0xFF000000U);
}

TEST(Redirection, FindsStripsByWhatTheirLabelsShow) {
  Desk desk;
  desk.Redirect(0, 4);  // strip 0 shows 5, strip 4 shows 1
  EXPECT_EQ(StripShowing(desk.song, 4), 0);
  EXPECT_EQ(StripShowing(desk.song, 0), 4);
  desk.Redirect(4, 7);  // strip 0 moves on to channel 8
  EXPECT_EQ(desk.WireChannels()[0], 7);
  EXPECT_EQ(desk.WireChannels()[7], 4);
  EXPECT_EQ(desk.WireChannels()[4], 0);
}

TEST(Redirection, TakesTheLastOfSeveralStripsAndElseTheFirst) {
  Song song;
  song.MidiData[3].MidiChannel = song.MidiData[8].MidiChannel = 12;
  EXPECT_EQ(StripShowing(song, 12), 12);
  song.MidiData[12].MidiChannel = 0;
  EXPECT_EQ(StripShowing(song, 12), 8);
  EXPECT_EQ(StripShowing(song, 3), 0);
  EXPECT_EQ(StripShowing(song, 0), 12);
}

TEST(Redirection, IsRefusedForStripsOfTheFurtherDrumEditors) {
  for (const int drums : {0, 4}) {
    Desk desk;
    desk.redirection.Hooks.IsInFurtherDrumEditor = [drums](int strip) { return strip == drums; };
    EXPECT_EQ(desk.Redirect(0, 4), RedirectionResult::Refused);
    EXPECT_THAT(desk.messages.Shown, ElementsAre("Function not allowed on drum tracks!"));
    EXPECT_EQ(desk.WireChannels()[0], 0);
    EXPECT_THAT(desk.Calls, IsEmpty());
    EXPECT_EQ(desk.Redirect(1, 5), RedirectionResult::Done);
    const InGerman german;
    EXPECT_EQ(desk.Redirect(4, 0), RedirectionResult::Refused);
    EXPECT_EQ(desk.messages.Shown.back(), "Funktion nicht auf Drumspuren anwendbar!");
  }
}

TEST(Redirection, NeverGoesOntoChannel10) {
  Desk desk;
  for (int channel = 0; channel < ChannelCount; ++channel)
    EXPECT_EQ(TRedirection::IsOffered(channel), channel != 9) << channel;
  EXPECT_FALSE(TRedirection::IsOffered(-1));
  EXPECT_FALSE(TRedirection::IsOffered(16));
  EXPECT_EQ(desk.Redirect(0, 9), RedirectionResult::Refused);
  EXPECT_EQ(desk.Redirect(9, 4), RedirectionResult::Done) << "away from it is another matter";
}

TEST(Redirection, OntoTheSameChannelDoesNothing) {
  Desk desk;
  EXPECT_EQ(desk.Redirect(1, 1), RedirectionResult::Refused);
  EXPECT_EQ(desk.Redirect(-1, 1), RedirectionResult::Refused);
  EXPECT_EQ(desk.Redirect(1, 16), RedirectionResult::Refused);
  EXPECT_THAT(desk.messages.Asked, IsEmpty());
  EXPECT_THAT(desk.messages.Shown, IsEmpty());
  EXPECT_THAT(desk.Calls, IsEmpty());
}

TEST(Redirection, ShowsTheChannelOfTheSelectedStrip) {
  Desk desk;
  desk.song.ActiveMidiIndex = 4;  // strip A
  desk.Redirect(0, 4);
  EXPECT_THAT(desk.Calls, testing::IsSupersetOf({"Active midi channel: 1", "select 4"}));
  EXPECT_EQ(desk.song.ActiveMidiChannel, 4) << "deliberately the new channel";
  const InGerman german;
  Desk other;
  other.song.ActiveMidiIndex = 0;  // strip B
  other.Redirect(0, 4);
  EXPECT_THAT(other.Calls, testing::IsSupersetOf({"Aktiver Midikanal: 5", "select 0"}));
  EXPECT_EQ(other.song.ActiveMidiChannel, 4);
}

TEST(Redirection, LeavesTheSelectionOfAThirdStripAlone) {
  Desk desk;
  desk.Redirect(0, 4);
  EXPECT_EQ(desk.song.ActiveMidiChannel, 15);
}

TEST(Redirection, EndsSoundsWithTheNextStartWhileStopped) {
  Desk desk;
  desk.Value(0, 7, 100);
  desk.Redirect(0, 4);
  EXPECT_THAT(desk.log.Lines, IsEmpty());
  EXPECT_EQ(desk.realtime.Realtime[0].AllSoundOff, 1);
  EXPECT_EQ(desk.realtime.Realtime[4].AllSoundOff, 1);
  EXPECT_EQ(desk.realtime.Realtime[1].AllSoundOff, -1);
}

TEST(Redirection, SilencesBothChannelsAndSendsTheValuesInForce) {
  Desk desk;
  int value = 1;
  for (const std::size_t n : {94U, 93U, 91U, 74U, 73U, 72U, 71U, 11U, 10U, 7U, 32U, 0U})
    desk.Value(4, n, value++);  // strip A, all of them
  desk.song.MidiData[4].Patch = 20;
  desk.Value(4, 1, 99);  // not one of those that are sent anew
  desk.Value(0, 32, 0);  // strip B, some
  desk.Value(0, 11, 127);
  EXPECT_EQ(desk.Redirect(0, 4, true), RedirectionResult::Done);
  EXPECT_THAT(desk.log.Lines,
              ElementsAre("end 0/0", "0> B0 78 00", "0> B0 7B 00",  //
                          "0> B0 00 0C", "0> B0 20 0B", "0> C0 14", "0> B0 07 0A", "0> B0 0A 09",
                          "0> B0 0B 08", "0> B0 47 07", "0> B0 48 06", "0> B0 49 05", "0> B0 4A 04",
                          "0> B0 5B 03", "0> B0 5D 02", "0> B0 5E 01",  //
                          "end 0/4", "0> B4 78 00", "0> B4 7B 00",      //
                          "0> B4 20 00", "0> B4 0B 7F"));
  EXPECT_EQ(desk.realtime.Realtime[0].AllSoundOff, -1);
}

TEST(Redirection, PreparesAChannelOnTheRouteOfTheStripThatTakesIt) {
  Desk desk;
  desk.song.MidiOutIndex[0] = 2;  // strip B
  desk.song.MidiOutIndex[4] = 1;  // strip A
  desk.song.MidiData[4].Patch = 20;
  desk.song.MidiData[0].Patch = 30;
  desk.Redirect(0, 4, true);
  EXPECT_THAT(desk.log.Lines,
              ElementsAre("end 2/0", "2> B0 78 00", "2> B0 7B 00", "2> C0 14", "1> C0 14", "end 1/4",
                          "1> B4 78 00", "1> B4 7B 00", "1> C4 1E", "2> C4 1E"));
}

TEST(Redirection, LeavesTheEventsAlone) {
  Desk desk;
  const auto before = desk.Events();
  desk.Redirect(0, 1, true);
  EXPECT_EQ(desk.Events(), before);
  EXPECT_THAT(CheckSong(desk.song), IsEmpty());
}

TEST(Redirection, LastsUntilTheNextSong) {
  Desk desk;
  desk.Redirect(0, 4);
  desk.song.ResetChannels();
  desk.realtime.ResetChannels();
  EXPECT_EQ(desk.WireChannels()[0], 0);
  EXPECT_EQ(desk.WireChannels()[4], 4);
}

TEST(TrackList, NamesChannelsAndSounds) {
  Desk desk;
  desk.Redirect(0, 4);
  const auto name = [](int strip) { return "Sound " + std::to_string(strip); };
  const auto lines = TrackListLines(desk.song, name);
  ASSERT_EQ(lines.size(), 17U);
  EXPECT_EQ(lines[0], "Master");
  EXPECT_EQ(lines[1], "Ch: 5, Sound 0");
  EXPECT_EQ(lines[2], "Ch: 2, Sound 1");
  EXPECT_EQ(lines[5], "Ch: 1, noteless");
  const InGerman german;
  EXPECT_EQ(TrackListLines(desk.song, name)[1], "K: 5, Sound 0");
  EXPECT_EQ(TrackListLines(desk.song, name)[5], "K: 1, notenlos");
}

}  // namespace
}  // namespace Sonarello
