#include "playback/Routes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/InGerman.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;
using testing::Eq;
using testing::IsEmpty;
using testing::Optional;

constexpr std::int32_t Latency = 37;

/// Ports, slots and the routes over them.
struct Desk {
  Desk() {
    routes.ClosePorts = [this] { Calls.push_back("close"); };
    routes.RoutesBuilt = [this] { Calls.push_back("built"); };
  }
  Desk& Stored(std::size_t index, const std::string& instrument, const std::string& output) {
    routes.MidiRouteLoad[index].Instrument = instrument;
    routes.MidiRouteLoad[index].OutputName = output;
    return *this;
  }
  Desk& Slot(std::size_t index, const std::string& name, std::int32_t id = 0) {
    slots[index] = {.Name = name,
                    .Handle = static_cast<std::uint32_t>(index) + 100,
                    .UniqueID = id == 0 ? static_cast<std::int32_t>(index) + 1000 : id};
    return *this;
  }
  std::span<const TMidiRouting> Build() {
    const std::vector<TDeviceList> devices = OutDevices(ports, slots);
    routes.Build(devices, slots, Latency);
    return routes.MidiRouting();
  }
  /// The routes as "instrument (number) on output [device]".
  std::vector<std::string> Lines() {
    std::vector<std::string> lines;
    for (const TMidiRouting& route : Build())
      lines.push_back(route.Instrument + " (" + std::to_string(route.InstrumValue) + ") on " +
                      route.OutputName + " [" + std::to_string(route.OutputDevID) + "]" +
                      (route.VSTi ? " hosted" : ""));
    return lines;
  }

  std::vector<std::string> ports;
  std::array<TInstrumentSlot, 5> slots;
  TRoutes routes;
  std::vector<std::string> Calls;
};

std::vector<std::string> NamesOf(std::span<const TDeviceList> devices) {
  std::vector<std::string> names;
  for (const TDeviceList& device : devices)
    names.push_back(device.Name + "/" + std::to_string(device.DeviceID) + (device.VSTi ? "*" : ""));
  return names;
}

// --- The list of outputs

TEST(OutDevices, StandInTheOrderOfTheirNames) {
  const std::vector<std::string> ports = {"synth", "Midi Through", "alpha", "Synth B", "Übersee"};
  EXPECT_THAT(NamesOf(OutDevices(ports, {})),
              ElementsAre("alpha/2", "Midi Through/1", "synth/0", "Synth B/3", "Übersee/4"));
}

TEST(OutDevices, KeepTheSystemsOrderAmongEqualNames) {
  const std::vector<std::string> ports = {"b", "a", "a", "c", "c", "c", "c", "c", "c", "c", "a"};
  EXPECT_THAT(NamesOf(OutDevices(ports, {})), ElementsAre("a/1", "a/2", "a/10", "b/0", "c/3", "c/4",
                                                          "c/5", "c/6", "c/7", "c/8", "c/9"));
}

TEST(OutDevices, EndWithTheHostedInstruments) {
  std::array<TInstrumentSlot, 5> slots;
  slots[1] = {.Name = "A (VSTi)", .Handle = 7, .UniqueID = 55};
  slots[4] = {.Name = "0 (VSTi)", .Handle = 8, .UniqueID = 56};
  const std::vector<std::string> ports = {"Port"};
  const auto devices = OutDevices(ports, slots);
  EXPECT_THAT(NamesOf(devices), ElementsAre("Port/0", "A (VSTi)/1*", "0 (VSTi)/4*"));
  EXPECT_EQ(devices[0].VSTiHandle, 0U);
  EXPECT_EQ(devices[1].VSTiHandle, 7U);
  EXPECT_EQ(devices[1].VSTiUniqueID, 55);
}

TEST(NoPlayback, IsToldWithoutPortsAndInstruments) {
  const std::string english =
      "There is no midi interface in your computer!\r\nTherefor no midi playback posible!";
  EXPECT_THAT(NoPlaybackText(0, {}), Optional(english));
  EXPECT_THAT(NoPlaybackText(1, {}), Optional(english));
  const InGerman german;
  EXPECT_THAT(NoPlaybackText(0, {}),
              Optional(Eq("Sie haben keine MIDI-Interface an Ihrem "
                          "Computer!\r\nDaher ist keine MIDI-Wiedergabe möglich!")));
  EXPECT_THAT(NoPlaybackText(2, {}),
              Optional(Eq("Sie haben keine Midi-Schnittstelle in Ihrem "
                          "Computer!\r\nDaher ist keine Midi-Wiedergabe möglich!")));
}

TEST(NoPlayback, IsNotToldIfAPortOrAnInstrumentIsThere) {
  std::array<TInstrumentSlot, 5> slots;
  slots[0].Name = "Built-in (VSTi)";
  EXPECT_EQ(NoPlaybackText(0, OutDevices({}, slots)), std::nullopt);
  const std::vector<std::string> ports = {"Port"};
  EXPECT_EQ(NoPlaybackText(1, OutDevices(ports, {})), std::nullopt);
}

// --- Settings

TEST(RouteSettings, BeginWithTheFirstInstrumentOfTheCatalogue) {
  TRoutes routes;
  routes.LoadSettings(MemorySettings(), false);
  EXPECT_EQ(routes.MidiRouteLoad[0].Instrument, "Deebach MAX II");
  EXPECT_EQ(routes.MidiRouteLoad[0].InstrumValue, 102);
  EXPECT_EQ(routes.MidiRouteLoad[0].OutputName, "");
  EXPECT_EQ(routes.MidiRouteLoad[1].Instrument, "");
}

TEST(RouteSettings, ReadOneRouteOrAll) {
  MemorySettings settings;
  settings.WriteString("", "MidiInstrument00", "Yamaha Genos");
  settings.WriteString("", "MidiOutput00", "Port A");
  settings.WriteString("", "MidiInstrument01", "Ketron SD2");
  settings.WriteString("", "MidiOutput01", "Port B");
  settings.WriteString("", "MidiInstrument99", "GM Soundset");
  settings.WriteString("", "MidiOutput99", "Port C");
  TRoutes routes;
  routes.LoadSettings(settings, true);
  EXPECT_EQ(routes.MidiRouteLoad[0].Instrument, "Yamaha Genos");
  EXPECT_EQ(routes.MidiRouteLoad[0].OutputName, "Port A");
  EXPECT_EQ(routes.MidiRouteLoad[1].Instrument, "Ketron SD2/SD4") << "a former name";
  EXPECT_EQ(routes.MidiRouteLoad[1].InstrumValue, 40);
  EXPECT_EQ(routes.MidiRouteLoad[2].OutputName, "");
  EXPECT_EQ(routes.MidiRouteLoad[99].OutputName, "Port C");
  routes.LoadSettings(settings, false);
  EXPECT_EQ(routes.MidiRouteLoad[0].OutputName, "Port A");
  EXPECT_EQ(routes.MidiRouteLoad[1].OutputName, "");
  EXPECT_EQ(routes.MidiRouteLoad[99].OutputName, "");
}

TEST(RouteSettings, ComeBackAsTheyWereStored) {
  MemorySettings settings;
  Desk desk;
  desk.Stored(0, "Yamaha Genos", "Port A").Stored(7, "Ketron SD2/SD4", "Port H");
  desk.routes.StoreSettings(settings, true);
  TRoutes again;
  again.LoadSettings(settings, true);
  EXPECT_EQ(again.MidiRouteLoad[0].OutputName, "Port A");
  EXPECT_EQ(again.MidiRouteLoad[7].Instrument, "Ketron SD2/SD4");
  EXPECT_EQ(again.MidiRouteLoad[7].OutputName, "Port H");
  EXPECT_EQ(settings.ReadString("", "MidiOutput03", "none"), "none");
  desk.Stored(7, "", "");
  desk.routes.StoreSettings(settings, true);
  EXPECT_EQ(settings.ReadString("", "MidiOutput07", "none"), "none") << "a route was given up";
}

TEST(RouteSettings, KeepFurtherRoutesWhileThereIsOneOnly) {
  MemorySettings settings;
  settings.WriteString("", "MidiOutput01", "Port B");
  Desk desk;
  desk.Stored(0, "Yamaha Genos", "Port A");
  desk.routes.StoreSettings(settings, false);
  EXPECT_EQ(settings.ReadString("", "MidiOutput00", ""), "Port A");
  EXPECT_EQ(settings.ReadString("", "MidiOutput01", ""), "Port B");
}

// --- Building

TEST(Routes, AreNeverNone) {
  const TRoutes routes;
  ASSERT_EQ(routes.MidiRouting().size(), 1U);
  EXPECT_EQ(routes.MidiRouting()[0].OutputName, "Virtual MIDI");
  EXPECT_FALSE(routes.MidiDriverReady);
}

TEST(Routes, AreBuiltFromTheSettings) {
  Desk desk;
  desk.ports = {"Port B", "Port A"};
  desk.Stored(0, "Yamaha Genos", "Port B").Stored(5, "Roland SC-88", "Port A");
  EXPECT_THAT(desk.Lines(),
              ElementsAre("Yamaha Genos (87) on Port B [0]", "Roland SC-88 (15) on Port A [1]"));
  EXPECT_EQ(desk.routes.MidiRouteElements(), 2);
  EXPECT_TRUE(desk.routes.MidiDriverReady);
  for (const TMidiRouting& route : desk.routes.MidiRouting()) {
    EXPECT_EQ(route.Delay, 0);
    EXPECT_FALSE(route.MSWavetable);
    EXPECT_FALSE(route.VSTi);
    EXPECT_EQ(route.VSTiUniqueID, 0);
  }
  EXPECT_THAT(desk.Calls, ElementsAre("close", "built"));
}

TEST(Routes, LeaveOutWhatIsMissing) {
  Desk desk;
  desk.ports = {"Port A"};
  desk.Stored(0, "Yamaha Genos", "Gone").Stored(1, "Roland SC-88", "Port A").Stored(2, "X", "port a");
  EXPECT_THAT(desk.Lines(), ElementsAre("Roland SC-88 (15) on Port A [0]"));
}

TEST(Routes, TakeBothDevicesOfOneName) {
  Desk desk;
  desk.ports = {"Port", "Other", "Port"};
  desk.Stored(0, "Yamaha Genos", "Port");
  EXPECT_THAT(desk.Lines(),
              ElementsAre("Yamaha Genos (87) on Port [0]", "Yamaha Genos (87) on Port [2]"));
}

TEST(Routes, MayShareAPort) {
  Desk desk;
  desk.ports = {"Port"};
  desk.Stored(0, "Yamaha Genos", "Port").Stored(1, "Roland SC-88", "Port");
  EXPECT_THAT(desk.Lines(),
              ElementsAre("Yamaha Genos (87) on Port [0]", "Roland SC-88 (15) on Port [0]"));
}

TEST(Routes, LeaveTheNumberOfAnUnknownInstrumentAlone) {
  Desk desk;
  desk.ports = {"Port"};
  desk.Stored(0, "No such instrument", "Port");
  EXPECT_THAT(desk.Lines(), ElementsAre("No such instrument (102) on Port [0]"));
  desk.Stored(0, "Yamaha Genos", "Port");
  EXPECT_THAT(desk.Lines(), ElementsAre("Yamaha Genos (87) on Port [0]"));
  desk.Stored(0, "No such instrument", "Port");
  EXPECT_THAT(desk.Lines(), ElementsAre("No such instrument (87) on Port [0]"));
}

TEST(Routes, GiveAHostedInstrumentASoundSetThatItHas) {
  Desk desk;
  desk.Slot(0, "One (VSTi)", -5);
  for (const auto& [stored, given] :
       {std::pair{"Yamaha Genos", "GM Soundset (0)"}, std::pair{"", "GM Soundset (0)"},
        std::pair{"GM Soundset", "GM Soundset (0)"}, std::pair{"GM2 Soundset", "GM2 Soundset (16)"},
        std::pair{"Roland SC-VA (VSTi)", "Roland SC-VA (VSTi) (83)"}}) {
    desk.Stored(0, stored, "One (VSTi)");
    EXPECT_THAT(desk.Lines(), ElementsAre(std::string(given) + " on One (VSTi) [0] hosted")) << stored;
  }
  const TMidiRouting& route = desk.routes.MidiRouting()[0];
  EXPECT_EQ(route.Delay, Latency);
  EXPECT_EQ(route.VSTiHandle, 100U);
  EXPECT_EQ(route.VSTiUniqueID, -5);
  EXPECT_FALSE(route.MSWavetable);
  EXPECT_EQ(desk.slots[0].MidiRoutingIdx, 0);
}

TEST(Routes, AddTheInstrumentsThatNobodyStored) {
  Desk desk;
  desk.ports = {"Port"};
  desk.Stored(0, "Yamaha Genos", "Port").Stored(1, "GM2 Soundset", "Two (VSTi)");
  desk.Slot(0, "One (VSTi)").Slot(1, "Two (VSTi)").Slot(3, "Roland SC-VA #2");
  EXPECT_THAT(desk.Lines(),
              ElementsAre("Yamaha Genos (87) on Port [0]", "GM2 Soundset (16) on Two (VSTi) [1] hosted",
                          "GM Soundset (0) on One (VSTi) [0] hosted",
                          "Roland SC-VA (VSTi) (83) on Roland SC-VA #2 [3] hosted"));
  EXPECT_EQ(desk.slots[0].MidiRoutingIdx, 2);
  EXPECT_EQ(desk.slots[1].MidiRoutingIdx, 1);
  EXPECT_EQ(desk.slots[2].MidiRoutingIdx, -1);
  EXPECT_EQ(desk.slots[3].MidiRoutingIdx, 3);
  EXPECT_EQ(desk.routes.MidiRouting()[2].Delay, Latency);
  EXPECT_EQ(desk.routes.MidiRouting()[3].VSTiUniqueID, 1003);
}

TEST(Routes, PlayThroughTheBuiltInInstrumentOutOfTheBox) {
  Desk desk;
  desk.routes.LoadSettings(MemorySettings(), false);
  desk.Slot(0, "Built-in (VSTi)");
  EXPECT_THAT(desk.Lines(), ElementsAre("GM Soundset (0) on Built-in (VSTi) [0] hosted"));
}

TEST(Routes, AreFreshWithEveryBuild) {
  Desk desk;
  desk.Slot(0, "One (VSTi)").Slot(1, "Two (VSTi)");
  EXPECT_EQ(desk.Build().size(), 2U);
  desk.slots[0] = {};
  EXPECT_THAT(desk.Lines(), ElementsAre("GM Soundset (0) on Two (VSTi) [1] hosted"));
  EXPECT_EQ(desk.slots[1].MidiRoutingIdx, 0);
  desk.slots[1] = {};
  desk.ports = {"Port"};
  desk.Stored(0, "Yamaha Genos", "Port");
  EXPECT_THAT(desk.Lines(), ElementsAre("Yamaha Genos (87) on Port [0]"));
  EXPECT_EQ(desk.routes.MidiRouting()[0].Delay, 0);
  EXPECT_EQ(desk.routes.MidiRouting()[0].VSTiHandle, 0U);
  EXPECT_EQ(desk.routes.MidiRouting()[0].VSTiUniqueID, 0);
}

TEST(Routes, FallBackToTheFirstPortIfTheStoredOneIsGone) {
  Desk desk;
  desk.Stored(0, "Yamaha Genos", "Gone");
  desk.ports = {"Zeta", "Microsoft GS Wavetable Synth", "Alpha"};
  EXPECT_THAT(desk.Lines(), ElementsAre("Yamaha Genos (87) on Alpha [2]"));
  EXPECT_FALSE(desk.routes.MidiRouting()[0].MSWavetable);
}

TEST(Routes, FallBackToTheWavetableIfNoneWasStored) {
  Desk desk;
  desk.ports = {"Zeta", "Microsoft GS Wavetable Synth", "Alpha"};
  EXPECT_THAT(desk.Lines(), ElementsAre("Deebach MAX II (102) on Microsoft GS Wavetable Synth [1]"));
  EXPECT_TRUE(desk.routes.MidiRouting()[0].MSWavetable);
  desk.Stored(0, "Yamaha Genos", "").Stored(1, "Roland SC-88", "Gone");
  EXPECT_THAT(desk.Lines(), ElementsAre("Yamaha Genos (87) on Microsoft GS Wavetable Synth [1]"))
      << "every stored port has vanished";
  desk.ports = {"Zeta", "my MICROSOFT wavetable", "Alpha"};
  EXPECT_THAT(desk.Lines(), ElementsAre("Yamaha Genos (87) on my MICROSOFT wavetable [1]"));
  EXPECT_FALSE(desk.routes.MidiRouting()[0].MSWavetable) << "only by its exact name";
}

TEST(Routes, FallBackToTheFirstPortWithoutAWavetable) {
  Desk desk;
  desk.ports = {"Zeta", "Alpha"};
  EXPECT_THAT(desk.Lines(), ElementsAre("Deebach MAX II (102) on Alpha [1]"));
  EXPECT_EQ(desk.routes.MidiRouting()[0].Delay, 0);
}

TEST(Routes, KnowTheWavetableOnlyAsAFallback) {
  Desk desk;
  desk.ports = {"Microsoft GS Wavetable Synth"};
  desk.Stored(0, "GM Soundset", "Microsoft GS Wavetable Synth");
  desk.Build();
  EXPECT_FALSE(desk.routes.MidiRouting()[0].MSWavetable);
}

TEST(Routes, FallBackToAHostedDeviceWhoseSlotIsGone) {
  Desk desk;
  const std::vector<TDeviceList> devices = {
      {.DeviceID = 2, .Name = "One (VSTi)", .VSTi = true, .VSTiHandle = 9, .VSTiUniqueID = 77}};
  desk.routes.Build(devices, desk.slots, Latency);
  const TMidiRouting& route = desk.routes.MidiRouting()[0];
  EXPECT_TRUE(route.VSTi);
  EXPECT_EQ(route.Delay, Latency);
  EXPECT_EQ(route.VSTiHandle, 9U);
  EXPECT_EQ(route.VSTiUniqueID, 77);
}

TEST(Routes, AreVirtualWithoutAnyOutput) {
  Desk desk;
  desk.Stored(0, "Yamaha Genos", "Gone");
  EXPECT_THAT(desk.Lines(), ElementsAre("Yamaha Genos (87) on Virtual MIDI [0]"));
  EXPECT_EQ(desk.routes.MidiRouting()[0].Delay, 0);
  EXPECT_FALSE(desk.routes.MidiRouting()[0].MSWavetable);
  EXPECT_FALSE(desk.routes.MidiRouting()[0].VSTi);
}

TEST(Routes, AreAtMostAHundred) {
  Desk desk;
  desk.ports = {"Port", "Port"};
  for (std::size_t i = 0; i < MostRoutes; ++i) desk.Stored(i, "GM Soundset", "Port");
  desk.Slot(0, "One (VSTi)");
  EXPECT_EQ(desk.Build().size(), 100U);
  EXPECT_EQ(desk.slots[0].MidiRoutingIdx, -1);
}

// --- Use

TEST(Routes, KnowWhetherHostedInstrumentsAreInUse) {
  Desk desk;
  desk.ports = {"Port"};
  desk.Stored(0, "Yamaha Genos", "Port").Slot(0, "One (VSTi)").Build();
  Song song;
  desk.routes.UpdateVSTiUse(song);
  EXPECT_FALSE(desk.routes.VSTiInUse);
  EXPECT_FALSE(desk.routes.VSTiOnly);
  song.MidiOutIndex[15] = 1;
  desk.routes.UpdateVSTiUse(song);
  EXPECT_TRUE(desk.routes.VSTiInUse);
  EXPECT_FALSE(desk.routes.VSTiOnly);
  song.MidiOutIndex.fill(1);
  desk.routes.UpdateVSTiUse(song);
  EXPECT_TRUE(desk.routes.VSTiInUse);
  EXPECT_TRUE(desk.routes.VSTiOnly);
}

TEST(Routes, StandInForOneThatIsGone) {
  Song song;
  song.MidiOutIndex[3] = 7;
  const std::vector<TMidiRouting> two(2);
  EXPECT_EQ(RouteOfChannel(song, two, 3), 0U);
  song.MidiOutIndex[3] = 1;
  EXPECT_EQ(RouteOfChannel(song, two, 3), 1U);
}

TEST(Routes, PassTheirDelayOnToTheTracksOfTheirChannels) {
  Desk desk;
  desk.Slot(0, "One (VSTi)").Slot(1, "Two (VSTi)").Build();
  Song song;
  song.MidiTrack.resize(4);
  song.MidiTrack[1].TrkMidiIndex = 0;
  song.MidiTrack[2].TrkMidiIndex = 1;
  song.MidiTrack[3].TrkMidiIndex = 16;
  song.MidiOutIndex[1] = 1;
  desk.routes.SetDelay(song, 1, 80);
  EXPECT_EQ(desk.routes.MidiRouting()[1].Delay, 80);
  EXPECT_EQ(song.MidiTrack[1].TrkDelay, 0);
  EXPECT_EQ(song.MidiTrack[2].TrkDelay, 80);
  EXPECT_EQ(song.MidiTrack[3].TrkDelay, 0);
  desk.routes.SetDelay(song, 99, 80);
  EXPECT_EQ(desk.routes.MidiRouting()[0].Delay, Latency) << "no such route";
}

}  // namespace
}  // namespace Sonarello
