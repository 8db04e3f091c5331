#include "Sounds.h"

#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Measure.h"
#include "StandIns.h"
#include "instruments/Naming.h"

namespace Sonarello::Bench {

namespace {

/// The addresses of an instrument's sounds, in an order that no cache foresees.
std::vector<TAddress> Addresses(const SoundSet& set) {
  std::vector<TAddress> addresses;
  for (const TSoundList& list : set.Lists())
    if (list.Spec->Scope == Scope::Sounds)
      for (const TPatch& row : list.Rows) addresses.push_back(row.Address());
  std::shuffle(addresses.begin(), addresses.end(), std::mt19937(1));
  return addresses;
}

std::uint32_t KeyOf(const TAddress& address) {
  return static_cast<std::uint32_t>(address.CC00 << 14 | address.CC32 << 7 | address.Patch);
}

/// Keeps the optimiser from dropping what nobody reads.
volatile std::size_t Sink;

/// Seconds of one look-up.
template <class F>
double PerLookUp(const std::vector<TAddress>& addresses, F&& lookUp) {
  constexpr int rounds = 400;
  std::size_t sum = 0;
  const auto walk = [&](int count) {
    for (int round = 0; round < count; ++round)
      for (const TAddress& address : addresses) sum += lookUp(address);
  };
  walk(2);  // warm
  const double seconds = Seconds([&] { walk(rounds); });
  Sink = sum;
  return seconds / rounds / static_cast<double>(addresses.size());
}

}  // namespace

SoundFigures MeasureSounds(int instrument) {
  DeafMessages messages;
  static_cast<void>(AllLists());  // the table of lists is read once for the whole program
  SoundFigures figures;
  const std::size_t before = mallinfo2().uordblks;
  SoundSets sets;
  figures.Load = Seconds([&] { sets.Load(instrument, {}, messages); });
  figures.Bytes = static_cast<double>(mallinfo2().uordblks - before);
  const SoundSet& set = *sets.Find(instrument);
  const std::vector<TAddress> addresses = Addresses(set);
  std::unordered_map<std::uint32_t, const TPatch*> map;
  for (const TSoundList& list : set.Lists())
    for (const TPatch& row : list.Rows) map.emplace(KeyOf(row.Address()), &row);
  figures.LookUp = PerLookUp(addresses, [&](const TAddress& address) {
    return NameSound(set, {.Address = address}, {}).Name.size();
  });
  figures.MapLookUp = PerLookUp(addresses, [&](const TAddress& address) {
    return map.find(KeyOf(address))->second->Name.size();
  });
  return figures;
}

}  // namespace Sonarello::Bench
