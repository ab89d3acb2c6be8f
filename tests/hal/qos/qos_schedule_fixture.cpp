/// @file
/// Changes of the scheduling scheme.
#include "qos_schedule_fixture.h"

#include <gtest/gtest.h>

#include <bcm6838x_qos.h>
#include <hal_bcm6838x.h>

#include "qos_rules.h"
#include "support/wire_record.h"

namespace hal_test {

std::string ReadSent(std::uint32_t icIndex, std::uint32_t flowIndex) {
  return Sent("QUEUE_SCHEDULE", 1,
              WireRecord(164).u32(140, 1).u32(144, icIndex).u32(148, flowIndex));
}

std::vector<std::string> Moved(std::uint32_t port, std::uint32_t precedence, std::uint32_t index,
                               std::uint32_t queueOffset) {
  return {ReadSent(index, 0), FlowDeleteSent(index, 0),
          RemarkFlowSent(port, precedence, index, index, queueOffset)};
}

void Append(std::vector<std::string>& lines, const std::vector<std::string>& more) {
  lines.insert(lines.end(), more.begin(), more.end());
}

void QosScheduleFixture::SetUp() {
  ASSERT_EQ(BCM6838X_InitDrv(), 0U);
  ASSERT_EQ(BCM6838X_InitQoS(), 0U);
  forget();
}

std::vector<std::string> QosScheduleFixture::changed(std::uint32_t scheme) {
  forget();
  EXPECT_EQ(BCM6838X_SetQosSchedule(scheme), 0U);
  return commands();
}

std::vector<std::string> QosScheduleFixture::removed(std::uint32_t port) {
  forget();
  const QosClassRuleSet empty = SetOf(port, {});
  EXPECT_EQ(BCM6838X_ApplyQosClassification(&empty), 0U);
  return commands();
}

}  // namespace hal_test
