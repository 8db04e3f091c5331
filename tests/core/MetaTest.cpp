#include "core/Meta.h"

#include <gtest/gtest.h>

#include <utility>

namespace Sonarello {
namespace {

constexpr std::uint8_t Some[] = {0x43, 0x10, 0xF7};

TEST(Meta, OwnsNothingWhileItIsEmpty) {
  const Meta empty;
  EXPECT_TRUE(empty.empty());
  EXPECT_EQ(empty.size(), 0u);
  EXPECT_EQ(empty.data(), nullptr);
  EXPECT_EQ(empty.Text(), "");
  EXPECT_TRUE(Meta(std::span<const std::uint8_t>{}).empty());
  EXPECT_TRUE(Meta("").empty());
  EXPECT_EQ(empty, Meta(""));
}

TEST(Meta, KeepsBytesVerbatim) {
  const Meta meta{std::span(Some)};
  ASSERT_EQ(meta.size(), 3u);
  EXPECT_EQ(meta[2], 0xF7);
  EXPECT_EQ(Meta(std::string_view("a\0b", 3)).Text(), std::string_view("a\0b", 3));
}

TEST(Meta, SharesItsBytesUntilSomebodyWrites) {
  Meta first{std::span(Some)};
  Meta second = first;
  EXPECT_EQ(first.data(), second.data());
  second.Mutable()[0] = 1;
  EXPECT_NE(first.data(), second.data());
  EXPECT_EQ(first[0], 0x43);
  EXPECT_EQ(second[0], 1);
  const std::uint8_t* own = second.data();
  second.Mutable()[1] = 2;
  EXPECT_EQ(second.data(), own);
}

TEST(Meta, BecomesSoleOwnerWhenTheOthersLetGo) {
  Meta first{std::span(Some)};
  const std::uint8_t* bytes = first.data();
  {
    const Meta second = first;
    EXPECT_EQ(second.data(), bytes);
  }
  EXPECT_EQ(first.Mutable().data(), bytes);
}

TEST(Meta, OutlivesTheOneItWasCopiedFrom) {
  Meta copy;
  {
    const Meta first{std::span(Some)};
    copy = first;
  }
  EXPECT_TRUE(copy.Equals(Some));
  copy.Clear();
  EXPECT_TRUE(copy.empty());
  copy.Clear();
  EXPECT_TRUE(copy.Mutable().empty());
}

TEST(Meta, SurvivesAssignmentToItself) {
  Meta meta{std::span(Some)};
  const Meta& same = meta;
  meta = same;
  EXPECT_TRUE(meta.Equals(Some));
  Meta& alias = meta;
  meta = std::move(alias);
  EXPECT_TRUE(meta.Equals(Some));
}

TEST(Meta, MovesItsBytes) {
  Meta first{std::span(Some)};
  const std::uint8_t* bytes = first.data();
  const Meta second = std::move(first);
  EXPECT_EQ(second.data(), bytes);
  Meta third("x");
  third = Meta(std::span(Some));
  EXPECT_TRUE(third.Equals(Some));
}

TEST(Meta, ComparesWholesAndBeginnings) {
  const Meta meta{std::span(Some)};
  EXPECT_TRUE(meta.StartsWith(std::span(Some).first(2)));
  EXPECT_TRUE(meta.StartsWith({}));
  EXPECT_FALSE(meta.Equals(std::span(Some).first(2)));
  EXPECT_FALSE(Meta{std::span(Some).first(2)}.StartsWith(Some));
  EXPECT_FALSE(Meta{}.StartsWith(Some));
  EXPECT_EQ(meta, Meta{std::span(Some)});
}

}  // namespace
}  // namespace Sonarello
