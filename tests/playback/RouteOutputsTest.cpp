#include "playback/RouteOutputs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "helpers/TestInstrument.h"
#include "helpers/TestMidiDriver.h"
#include "helpers/Workbench.h"

namespace Sonarello {

namespace {

using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;

struct RouteOutputs : testing::Test {
  RouteOutputs() {
    driver.Outputs = {"First", "Second"};
    auto own = std::make_unique<TestInstrument>();
    instrument = own.get();
    host.LoadInstrument(0, std::move(own));
    routes.Table.resize(3, routes.Table.front());
    routes.Table[0].OutputName = "Second";
    routes.Table[1].VSTi = true;
    routes.Table[1].VSTiHandle = host.VSTiArray()[0].Handle;
    routes.Table[2].OutputName = "Virtual MIDI";
    outputs.RoutesBuilt();
  }
  TestMidiDriver driver;
  TestRoutes routes;
  TVSTInstruments host;
  TRouteOutputs outputs{driver, routes, &host};
  TestInstrument* instrument = nullptr;
};

TEST_F(RouteOutputs, OpensPortsOnlyWhenTheyAreNeeded) {
  EXPECT_FALSE(outputs.IsOpen(0));
  EXPECT_TRUE(outputs.IsOpen(1)) << "a hosted instrument needs no opening";
  EXPECT_TRUE(outputs.OpenAll());
  EXPECT_TRUE(outputs.IsOpen(0));
  EXPECT_FALSE(outputs.Open(2)) << "no device stands behind it";
  outputs.CloseAll();
  EXPECT_FALSE(outputs.IsOpen(0));
  EXPECT_TRUE(outputs.Open(0));
}

TEST_F(RouteOutputs, OpensNoPortForAHostedInstrumentThatIsCalledLikeOne) {
  routes.Table[1].OutputName = "First";
  outputs.RoutesBuilt();
  ASSERT_TRUE(outputs.OpenAll());
  EXPECT_EQ(driver.OpenOutputs, 1);
}

TEST_F(RouteOutputs, SendsToHostedInstrumentsByTheirHandle) {
  outputs.SendShort(1, 0x90, 60, 100);
  outputs.SendLong(1, Bytes{0xF0, 1, 0xF7});
  ASSERT_EQ(instrument->Told.size(), 2U);
  EXPECT_THAT(instrument->Told[0].Bytes, ElementsAre(0x90, 60, 100));
  EXPECT_THAT(instrument->Told[1].Bytes, ElementsAre(0xF0, 1, 0xF7));
}

TEST_F(RouteOutputs, RefusesToSendThroughAClosedPort) {
  EXPECT_THROW(outputs.SendShort(0, 0x90, 60, 100), EMidiOutputError);
  EXPECT_THROW(outputs.SendLong(0, Bytes{0xF0, 1, 0xF7}), EMidiOutputError);
}

TEST_F(RouteOutputs, LetsMessagesWithoutDeviceGo) {
  EXPECT_NO_THROW(outputs.SendShort(2, 0x90, 60, 100));
  EXPECT_NO_THROW(outputs.SendLong(2, Bytes{0xF0, 1, 0xF7}));
  EXPECT_NO_THROW(outputs.SendShort(99, 0x90, 60, 100));
}

}  // namespace
}  // namespace Sonarello
