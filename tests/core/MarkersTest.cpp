// The program's own marks in instrument names.
#include "core/Markers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "helpers/ReaderBench.h"

namespace Sonarello {
namespace {

using testing::IsEmpty;

TMidiRouting Port(const std::string& instrument, const std::string& output, std::int32_t delay = 0) {
  return {.Delay = delay, .Instrument = instrument, .InstrumValue = 0, .OutputName = output};
}
TMidiRouting Hosted(std::int32_t id, const std::string& output, std::int32_t delay = 0) {
  return {.Delay = delay,
          .Instrument = "VSTi",
          .InstrumValue = 0,
          .OutputName = output,
          .VSTi = true,
          .VSTiUniqueID = id};
}

/// A song of two tracks with the marker on track 1, read with some routes.
struct MarkedSong : ReaderBench {
  explicit MarkedSong(const std::string& marker, int format = 1) {
    routes.Table = {Port("Main", "A"),
                    Port("Genos", "A", 11),
                    Port("Genos", "B", 12),
                    Port("SC-88", "B", 13),
                    Hosted(77, "X", 14),
                    Hosted(-5, "X", 15),
                    Hosted(-5, "Y", 16),
                    Hosted(-1, "Z", 17),
                    Port("Ketron SD2/SD4", "A", 18),
                    Port("Limex Tradition Exclusiv 200v3", "A", 19)};
    song.MidiOutIndex.fill(99);
    song.MidiData[2].DrumPart = 0;
    Decode(Smf(format).Track().End().Track().Text(4, marker).End().Build());
  }
  /// The route that channel 3 was given; 99 if none.
  int Route() { return song.MidiOutIndex[2]; }
  bool Removed() { return Event(1, 1)->IsRemoved(); }
};

int RouteOf(const std::string& marker) {
  MarkedSong w(marker);
  EXPECT_TRUE(w.Removed()) << marker;
  const std::int32_t delay =
      w.Route() == 99 ? 0 : w.routes.Table[static_cast<std::size_t>(w.Route())].Delay;
  EXPECT_EQ(w.Track(1).TrkDelay, delay) << marker;
  return w.Route();
}

TEST(Markers, RouteAChannelByTheInstrumentInEveryForm) {
  for (const char* prefix :
       {"SR4P_ch.", "SR5P_ch.", "SR6P_ch.", "SR7_ch.", "SR8_ch.", "SR9_ch.", "SRL_ch.", "SRLI_ch."})
    EXPECT_EQ(RouteOf(std::string(prefix) + "3 SC-88"), 3) << prefix;
}

TEST(Markers, PreferTheRouteWhoseOutputIsNamed) {
  for (const char* prefix : {"SR9_ch.", "SRL_ch.", "SRLI_ch."}) {
    EXPECT_EQ(RouteOf(std::string(prefix) + "3 Genos///B"), 2);
    EXPECT_EQ(RouteOf(std::string(prefix) + "3 Genos///A"), 1);
    EXPECT_EQ(RouteOf(std::string(prefix) + "3 Genos///C"), 1);  // the first of that name
    EXPECT_EQ(RouteOf(std::string(prefix) + "3 Genos"), 1);
    EXPECT_EQ(RouteOf(std::string(prefix) + "3 Other///B"), 99);
  }
}

TEST(Markers, CompareInstrumentNamesExactly) {
  for (const char* name : {"genos", "Genos ", " Genos", "Geno", "Genos///", ""})
    EXPECT_EQ(RouteOf(std::string("SRL_ch.3 ") + name), std::string(name) == "Genos///" ? 1 : 99)
        << name;
}

TEST(Markers, RouteAChannelToAHostedInstrumentByItsID) {
  for (const char* prefix : {"SR9vsti_ch.", "SRLvsti_ch.", "SRLIvsti_ch."}) {
    const std::string start = std::string(prefix) + "3 ";
    EXPECT_EQ(RouteOf(start + "77"), 4);
    EXPECT_EQ(RouteOf(start + "77///X"), 4);
    EXPECT_EQ(RouteOf(start + "77///Q"), 4);
    EXPECT_EQ(RouteOf(start + "-5///Y"), 6);
    EXPECT_EQ(RouteOf(start + "-5///Q"), 5);
    EXPECT_EQ(RouteOf(start + "4294967291///Y"), 6);  // the same 32 bits without sign
    EXPECT_EQ(RouteOf(start + "78"), 99);
    EXPECT_EQ(RouteOf(start + "0"), 99);     // the ports have no ID
    EXPECT_EQ(RouteOf(start + "Piano"), 7);  // no number stands for -1
  }
}

TEST(Markers, ReadTheDrumMarkBehindNameOrOutput) {
  const auto part = [](const std::string& marker, int route) {
    MarkedSong w(marker);
    EXPECT_EQ(w.Route(), route) << marker;
    return w.song.MidiData[2].DrumPart;
  };
  EXPECT_EQ(part("SR7_ch.3 Genos_Drums", 1), 1);
  EXPECT_EQ(part("SR8_ch.3 Genos_Drums", 1), 1);
  EXPECT_EQ(part("SRLI_ch.3 Genos_Drums///B", 2), 1);
  EXPECT_EQ(part("SRLI_ch.3 Genos///B_Drums", 2), 1);
  EXPECT_EQ(part("SRLIvsti_ch.3 77_Drums///X", 4), 1);
  EXPECT_EQ(part("SRLI_ch.3 Nobody_Drums", 99), 1);  // a drum part even without a route
  EXPECT_EQ(part("SRLI_ch.3 Genos_drums", 99), 0);
  EXPECT_EQ(part("SR4P_ch.3 Genos_Drums", 99), 0);  // a form that knows no drum parts
}

TEST(Markers, KnowTwoInstrumentsByTheirCurrentNames) {
  EXPECT_EQ(RouteOf("SR6P_ch.3 Ketron SD2"), 8);
  EXPECT_EQ(RouteOf("SR7_ch.3 Ketron SD2_Drums"), 8);
  EXPECT_EQ(RouteOf("SRLI_ch.3 Ketron SD2/SD4"), 8);
  EXPECT_EQ(RouteOf("SR9_ch.3 Limex Tradition Exclusiv 200"), 9);
  EXPECT_EQ(RouteOf("SRLI_ch.3 Limex Tradition Exclusiv 200v3"), 9);
}

TEST(Markers, EndWhereTheTextMakesNoSense) {
  for (const char* text :
       {"SRL_ch.", "SRL_ch.3", "SRL_ch.3Genos", "SRL_ch. 3 Genos", "SRL_ch.0 Genos", "SRL_ch.17 Genos",
        "SRL_ch.-3 Genos", "SRL_ch.3x Genos", "SRL_ch.x Genos", "SRL_ch.99999999999999999999 Genos"}) {
    MarkedSong w(text);
    EXPECT_TRUE(w.Removed()) << text;
    EXPECT_EQ(ParseMarker(text).value().Channel, 0) << text;
    for (const std::uint8_t route : w.song.MidiOutIndex) EXPECT_EQ(route, 99) << text;
  }
}

TEST(Markers, ReachEveryChannelFrom1To16) {
  for (int channel = 1; channel <= 16; ++channel) {
    MarkedSong w("SRL_ch." + std::to_string(channel) + " SC-88");
    for (int c = 0; c < 16; ++c)
      EXPECT_EQ(w.song.MidiOutIndex[static_cast<std::size_t>(c)], c == channel - 1 ? 3 : 99);
  }
}

TEST(Markers, LeaveOtherInstrumentNamesAlone) {
  for (const char* text : {"Piano", " SRL_ch.3 Genos", "srl_ch.3 Genos", "SRLX_ch.3 Genos",
                           "SRL_ch3 Genos", "xsrl_ignore", "SRL_IGNORE"}) {
    MarkedSong w(text);
    EXPECT_FALSE(w.Removed()) << text;
    EXPECT_EQ(w.Route(), 99) << text;
    EXPECT_FALSE(w.Track(1).TrkIgnore) << text;
  }
}

TEST(Markers, StandInInstrumentNamesOnly) {
  ReaderBench w;
  w.Decode(Smf(1).Track().End().Track().Text(3, "srl_ignore").Text(1, "SRL_dr.2 10").End().Build());
  EXPECT_FALSE(w.Track(1).TrkIgnore);
  EXPECT_FALSE(w.song.DrumsSecForceToChannel10);
  EXPECT_FALSE(w.Event(1, 2)->IsRemoved());
}

TEST(Markers, ForceADrumEditorToChannel10) {
  const auto forced = [](const std::string& text) {
    MarkedSong w(text);
    EXPECT_TRUE(w.Removed()) << text;
    return (w.song.DrumsSecForceToChannel10 ? 2 : 0) + (w.song.DrumsThirdForceToChannel10 ? 3 : 0);
  };
  for (const char* prefix : {"SR7_dr.", "SR8_dr.", "SR9_dr.", "SRL_dr.", "SRLI_dr."}) {
    EXPECT_EQ(forced(std::string(prefix) + "2 10"), 2);
    EXPECT_EQ(forced(std::string(prefix) + "3 10"), 3);
    for (const char* rest : {"", "2", "1 10", "4 10", "2 11", "2 1", "2 100"})
      EXPECT_EQ(forced(std::string(prefix) + rest), 0) << prefix << rest;
  }
}

TEST(Markers, HoldATrackOutOfTheSongInFormat1Only) {
  MarkedSong kept("srl_ignore");
  EXPECT_TRUE(kept.Track(1).TrkIgnore);
  EXPECT_FALSE(kept.Track(0).TrkIgnore);
  EXPECT_FALSE(kept.Removed());  // the writer does not make this mark anew
  for (const bool unmix : {false, true}) {
    ReaderBench w;
    w.options.UnmixFormat0 = unmix;
    w.Decode(Smf(0).Track().Text(4, "srl_ignore").End().Build());
    for (const TMyTrack& track : w.song.MidiTrack) EXPECT_FALSE(track.TrkIgnore);
  }
}

TEST(Markers, AreReadInEveryFormat) {
  MarkedSong unmixed("SRL_ch.3 SC-88", 0);
  EXPECT_EQ(unmixed.Route(), 3);
  EXPECT_EQ(unmixed.Track(1).TrkDelay, 13);
  EXPECT_THAT(CheckSong(unmixed.song), IsEmpty());
}

}  // namespace
}  // namespace Sonarello
