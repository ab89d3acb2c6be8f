/// @file
/// Entries of VLAN lists made from words.
#include "operations/vlan_list.h"

#include "language/failure.h"

namespace onu {

namespace {

/// The word's numbers, with `absent` behind those that were given.
std::vector<std::uint32_t> Numbers(const std::string& word, std::size_t count,
                                   std::uint32_t absent) {
  std::vector<std::uint32_t> numbers = ParseNumbers(word);
  numbers.resize(count, absent);
  return numbers;
}

}  // namespace

void SetEntry(std::uint32_t port, const std::string& word, PortVlanTrunkEntry& entry) {
  entry.port = static_cast<std::uint8_t>(port);
  entry.vid = static_cast<std::uint16_t>(ParseNumber(word).value());
}

void SetEntry(std::uint32_t port, const std::string& word, PortVlanTransEntry& entry) {
  const std::vector<std::uint32_t> numbers = Numbers(word, 4, 0);
  entry.port = static_cast<std::uint8_t>(port);
  entry.localVid = static_cast<std::uint16_t>(numbers[0]);
  entry.netVid = static_cast<std::uint16_t>(numbers[1]);
  entry.usPriority = static_cast<std::uint16_t>(numbers[2]);
  entry.dsPriority = static_cast<std::uint16_t>(numbers[3]);
}

void SetEntry(std::uint32_t port, const std::string& word, PortVlanStackEntry& entry) {
  constexpr std::uint32_t kBuiltParam = 2;
  const std::vector<std::uint32_t> numbers = Numbers(word, 3, kBuiltParam);
  entry.port = static_cast<std::uint8_t>(port);
  entry.cvid = numbers[0];
  entry.svid = static_cast<std::uint16_t>(numbers[1]);
  entry.stackParam = numbers[2];
}

void CheckVlanListRoom(std::size_t words) {
  if (words > kVlanListEntries) {
    throw WrongUse("expected at most " + std::to_string(kVlanListEntries) +
                   " entries of the list, got " + std::to_string(words));
  }
}

}  // namespace onu
