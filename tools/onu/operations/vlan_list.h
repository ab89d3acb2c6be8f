/// @file
/// The VLAN lists of a port as arguments of operations: one word an entry, the others free.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include <bcm6838x_vlan.h>

#include "language/words.h"
#include "operations/binding.h"

namespace onu {

constexpr std::size_t kVlanListEntries = 512;

/// The entry of a word: "VID".
void SetEntry(std::uint32_t port, const std::string& word, PortVlanTrunkEntry& entry);

/// "LOCAL:NET:UP:DOWN"; what is missing is 0.
void SetEntry(std::uint32_t port, const std::string& word, PortVlanTransEntry& entry);

/// "CVID:SVID:PARAM"; the parameter is 2 unless given.
void SetEntry(std::uint32_t port, const std::string& word, PortVlanStackEntry& entry);

/// Throws a Failure when a list has no room for so many words.
void CheckVlanListRoom(std::size_t words);

/// A list, whose entries bear the port of the row "port".
template <typename Entry>
class Slot<const Entry*> {
 public:
  Slot(const Arguments& given, const Argument& row) : list_(kVlanListEntries) {
    const Words words = given.words(row.name);
    CheckVlanListRoom(words.size());
    for (std::size_t i = 0; i < words.size(); ++i) {
      SetEntry(given.number("port"), words[i], list_[i]);
    }
  }

  [[nodiscard]] const Entry* pass() const { return list_.data(); }
  void report(CallOutcome& /*outcome*/) const {}

 private:
  std::vector<Entry> list_;
};

}  // namespace onu
