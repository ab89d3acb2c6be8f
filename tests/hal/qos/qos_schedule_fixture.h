/// @file
/// What a change of the scheduling scheme sends, and how a test asks for one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/library_test.h"

namespace hal_test {

/// The request that reads a flow back.
std::string ReadSent(std::uint32_t icIndex, std::uint32_t flowIndex);

/// The commands that move RemarkRule() to a queue by its offset from the priority.
/// @param[in] index  of the rule's class and of its VLAN action
std::vector<std::string> Moved(std::uint32_t port, std::uint32_t precedence, std::uint32_t index,
                               std::uint32_t queueOffset);

void Append(std::vector<std::string>& lines, const std::vector<std::string>& more);

class QosScheduleFixture : public LibraryTest {
 protected:
  void SetUp() override;

  /// What a change of the scheme sends.
  std::vector<std::string> changed(std::uint32_t scheme);

  /// What the next set of a port removes.
  std::vector<std::string> removed(std::uint32_t port);
};

}  // namespace hal_test
