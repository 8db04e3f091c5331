#include "core/SmfEncoder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "core/EventList.h"
#include "helpers/SmfBuilder.h"

namespace Sonarello {
namespace {

using testing::ElementsAre;

/// Encodes events through both sinks, which must agree, and hands out the bytes.
class SmfEncoder : public testing::Test {
 protected:
  Bytes Encode(std::initializer_list<PtrMidiEvent> events,
               std::span<const TPlacedEvent> inserted = {}) {
    TrackEncoder<ByteCounter> counter(ByteCounter(), encoding, inserted);
    for (PtrMidiEvent e : events) counter.Put(*e);
    holdsEvents = counter.HoldsEvents();
    if (finish) counter.Finish(*end);
    Bytes out(counter.Out().Size());
    TrackEncoder<ByteStore> store(ByteStore(out.data()), encoding, inserted);
    for (PtrMidiEvent e : events) store.Put(*e);
    if (finish) store.Finish(*end);
    EXPECT_EQ(store.Out().End(), out.data() + out.size());
    return out;
  }
  PtrMidiEvent Short(int command, int v0, int v1, std::int32_t position) {
    return NewChannelEvent(pool, static_cast<std::uint8_t>(command), static_cast<std::uint8_t>(v0),
                           static_cast<std::uint8_t>(v1), position);
  }

  EventPool pool;
  TEncoding encoding{.Failure = "failure", .Descends = nullptr};
  PtrMidiEvent end = NewMeta(pool, MetaEndOfTrack, std::string_view(), 100);
  bool finish = false;
  bool holdsEvents = false;
};

TEST_F(SmfEncoder, WritesQuantitiesInOneToFourBytes) {
  const std::int32_t ticks[] = {0x7F, 0x80, 0x3FFF, 0x4000, 0x1FFFFF, 0x200000, 0x0FFFFFFF};
  const Bytes expected[] = {{0x7F},
                            {0x81, 0x00},
                            {0xFF, 0x7F},
                            {0x81, 0x80, 0x00},
                            {0xFF, 0xFF, 0x7F},
                            {0x81, 0x80, 0x80, 0x00},
                            {0xFF, 0xFF, 0xFF, 0x7F}};
  for (std::size_t i = 0; i < std::size(ticks); ++i) {
    Bytes bytes = Encode({Short(0x90, 60, 100, ticks[i])});
    bytes.resize(bytes.size() - 3);
    EXPECT_EQ(bytes, expected[i]) << ticks[i];
  }
}

TEST_F(SmfEncoder, WritesEachKindOfEvent) {
  const std::array<std::uint8_t, 2> payload = {0x7E, 0xF7};
  EXPECT_THAT(Encode({Short(0xC3, 5, 0, 1)}), ElementsAre(1, 0xC3, 5));
  EXPECT_THAT(Encode({Short(0xE3, 5, 6, 1)}), ElementsAre(1, 0xE3, 5, 6));
  EXPECT_THAT(Encode({NewSysex(pool, payload, 2)}), ElementsAre(2, 0xF0, 2, 0x7E, 0xF7));
  EXPECT_THAT(Encode({NewMeta(pool, MetaLyric, "la", 3)}), ElementsAre(3, 0xFF, 5, 2, 'l', 'a'));
  PtrMidiEvent escape = NewSysex(pool, payload, 0);
  escape->Command = SysexEscape;
  EXPECT_THAT(Encode({escape}), ElementsAre(0, 0xF7, 2, 0x7E, 0xF7));
  PtrMidiEvent clock = NewSysex(pool, payload, 0);
  clock->Command = 0xF8;
  EXPECT_THAT(Encode({clock}), ElementsAre(0, 0xF8));
}

TEST_F(SmfEncoder, WritesEndOfTrackWithASingleZeroByte) {
  finish = true;
  EXPECT_THAT(Encode({}), ElementsAre(100, 0xFF, 0x2F, 0));
}

TEST_F(SmfEncoder, LeavesRemovedEventsOut) {
  PtrMidiEvent removed = Short(0x90, 60, 100, 10);
  MarkRemoved(removed);
  EXPECT_TRUE(Encode({removed}).empty());
  EXPECT_FALSE(holdsEvents);
}

TEST_F(SmfEncoder, WritesANegativeDeltaAsZeroAndCountsOnFromThere) {
  EXPECT_THAT(Encode({Short(0xC0, 1, 0, 50), Short(0xC0, 2, 0, 20), Short(0xC0, 3, 0, 30)}),
              ElementsAre(50, 0xC0, 1, 0, 0xC0, 2, 10, 0xC0, 3));
}

TEST_F(SmfEncoder, UsesRunningStatusOnlyWhenAskedTo) {
  const auto on = {Short(0x90, 60, 100, 0), Short(0x90, 61, 100, 0)};
  EXPECT_THAT(Encode(on), ElementsAre(0, 0x90, 60, 100, 0, 0x90, 61, 100));
  encoding.RunningStatus = true;
  EXPECT_THAT(Encode(on), ElementsAre(0, 0x90, 60, 100, 0, 61, 100));
}

TEST_F(SmfEncoder, EndsRunningStatusAtAMetaAndAtASysex) {
  encoding.RunningStatus = true;
  const std::array<std::uint8_t, 1> payload = {0xF7};
  EXPECT_THAT(Encode({Short(0xC0, 1, 0, 0), NewMeta(pool, MetaText, "x", 0), Short(0xC0, 2, 0, 0)}),
              ElementsAre(0, 0xC0, 1, 0, 0xFF, 1, 1, 'x', 0, 0xC0, 2));
  EXPECT_THAT(Encode({Short(0xC0, 1, 0, 0), NewSysex(pool, payload, 0), Short(0xC0, 2, 0, 0)}),
              ElementsAre(0, 0xC0, 1, 0, 0xF0, 1, 0xF7, 0, 0xC0, 2));
}

TEST_F(SmfEncoder, ChangesRunningStatusWithTheChannel) {
  encoding.RunningStatus = true;
  EXPECT_THAT(Encode({Short(0xC0, 1, 0, 0), Short(0xC1, 1, 0, 0), Short(0xC1, 2, 0, 0)}),
              ElementsAre(0, 0xC0, 1, 0, 0xC1, 1, 0, 2));
}

TEST_F(SmfEncoder, LeavesTrackHeadsOutWhenAskedTo) {
  const std::array<std::uint8_t, 1> port = {0};
  PtrMidiEvent head = NewMeta(pool, MetaPort, port, 0);
  EXPECT_THAT(Encode({head}), ElementsAre(0, 0xFF, 0x21, 1, 0));
  encoding.LeaveOutPorts = true;
  EXPECT_TRUE(Encode({head}).empty());
}

TEST_F(SmfEncoder, BridgesAGapThatFourBytesCannotTell) {
  const Bytes bytes = Encode({Short(0x90, 60, 100, 0x0FFFFFFF), Short(0x90, 60, 100, 0x20000000)});
  EXPECT_THAT(bytes, ElementsAre(0xFF, 0xFF, 0xFF, 0x7F, 0x90, 60, 100,  //
                                 0xFF, 0xFF, 0xFF, 0x7F, 0xFF, 0x7F, 0,  //
                                 2, 0x90, 60, 100));
}

TEST_F(SmfEncoder, WritesTheStatusAnewBehindABridgedGap) {
  encoding.RunningStatus = true;
  const Bytes bytes = Encode({Short(0x90, 60, 100, 0), Short(0x90, 60, 100, 0x10000000)});
  EXPECT_THAT(bytes,
              ElementsAre(0, 0x90, 60, 100, 0xFF, 0xFF, 0xFF, 0x7F, 0xFF, 0x7F, 0, 1, 0x90, 60, 100));
}

TEST_F(SmfEncoder, ReachesTheLastPositionOfAll) {
  const Bytes bytes = Encode({Short(0x90, 60, 100, LastPosition)});
  std::int64_t ticks = 0;
  std::int64_t quantity = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {  // quantities, each in front of ff7f00 or the note
    quantity = quantity << 7 | (bytes[i] & 0x7F);
    if (bytes[i] >= 0x80) continue;
    ticks += quantity;
    quantity = 0;
    i += 3;
  }
  EXPECT_EQ(ticks, LastPosition);
}

TEST_F(SmfEncoder, WritesNoMoreOfAPayloadThanItsDLengthTells) {
  PtrMidiEvent name = NewMeta(pool, MetaText, "Sysex-Spur", 0);
  name->DLength = 6;
  EXPECT_THAT(Encode({name}), ElementsAre(0, 0xFF, 1, 6, 'S', 'y', 's', 'e', 'x', '-'));
  name->DLength = 600;
  EXPECT_EQ(Encode({name}).size(), 4U + 10U);
}

TEST_F(SmfEncoder, MergesEventsInBehindThoseOfTheirTick) {
  const std::array<std::uint8_t, 1> payload = {0xF7};
  PtrMidiEvent sysex = NewSysex(pool, payload, 777);
  const std::array<TPlacedEvent, 3> inserted = {{{sysex, 0}, {sysex, 10}, {sysex, 90}}};
  finish = true;
  EXPECT_THAT(Encode({Short(0xC0, 1, 0, 0), Short(0xC0, 2, 0, 10), Short(0xC0, 3, 0, 11)}, inserted),
              ElementsAre(0, 0xC0, 1, 0, 0xF0, 1, 0xF7, 10, 0xC0, 2, 0, 0xF0, 1, 0xF7, 1, 0xC0, 3,  //
                          79, 0xF0, 1, 0xF7, 10, 0xFF, 0x2F, 0));
}

TEST_F(SmfEncoder, TellsWhetherATrackHoldsMoreThanItsName) {
  Encode({NewMeta(pool, MetaTrackName, "Piano", 0)});
  EXPECT_FALSE(holdsEvents);
  Encode({NewMeta(pool, MetaLyric, "la", 0)});
  EXPECT_TRUE(holdsEvents);
  Encode({Short(0xE0, 0, 64, 0)});
  EXPECT_TRUE(holdsEvents);
}

TEST_F(SmfEncoder, RefusesWhatHasNoFormInAFile) {
  const auto refuses = [&](auto&& spoil) {
    PtrMidiEvent note = Short(0x90, 60, 100, 0);
    spoil(*note);
    EXPECT_THROW(Encode({note}), EMidiError);
  };
  refuses([](TypMidiEvent& e) { e.DType = 3; });
  refuses([](TypMidiEvent& e) { e.DType = 0; });
  refuses([](TypMidiEvent& e) { e.DLength = 4; });
  refuses([](TypMidiEvent& e) { e.DLength = -1; });
  refuses([](TypMidiEvent& e) { e.Command = 0x45; });
  refuses([](TypMidiEvent& e) { e.Command = 0xF3; });
  refuses([](TypMidiEvent& e) { e.Value[0] = 128; });
  refuses([](TypMidiEvent& e) { e.Value[1] = 255; });
  refuses([](TypMidiEvent& e) { e.DType = LongEvent; });
  refuses([](TypMidiEvent& e) { e.DType = LongEvent, e.Command = 0xF1; });
  refuses([](TypMidiEvent& e) { e.DType = LongEvent, e.Command = MetaEvent, e.MType = -1; });
  refuses([](TypMidiEvent& e) { e.DType = LongEvent, e.Command = Sysex, e.DLength = -5; });
}

TEST_F(SmfEncoder, TellsOfAnEventBehindItsSuccessor) {
  std::vector<std::pair<std::int32_t, std::int32_t>> told;
  encoding.Descends = [&](const TPlacedEvent& a, const TPlacedEvent& b) {
    told.emplace_back(a.Position, b.Position);
  };
  TrackEncoder<ByteCounter> counter(ByteCounter(), encoding);
  for (const std::int32_t position : {0, 50, 20, 20, 200}) counter.Put(*Short(0x90, 60, 1, position));
  counter.Finish(*end);
  EXPECT_THAT(told, ElementsAre(std::pair(50, 20), std::pair(200, 100)));
}

}  // namespace
}  // namespace Sonarello
