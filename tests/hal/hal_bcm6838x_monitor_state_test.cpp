/// @file
/// Tests of the kernel monitor's descriptor as a program sees it that links with the archive.
#include <cstdint>
#include <fcntl.h>
#include <gtest/gtest.h>

#include <hal_bcm6838x.h>

#include "support/library_tables.h"
#include "support/library_test.h"

namespace hal_test {
namespace {

class MonitorStateTest : public LibraryTest {};

TEST_F(MonitorStateTest, Descriptor_IsSetByASuccessAndUnsetByAnyFailure) {
  EXPECT_EQ(kernelMonitorFd, -1);
  EXPECT_EQ(InitKernelMonitorFd(), 0);
  EXPECT_GT(kernelMonitorFd, 2);
  EXPECT_NE(fcntl(kernelMonitorFd, F_GETFD), -1);
  unit.platform().config().monitorSocketFails = true;
  EXPECT_EQ(InitKernelMonitorFd(), 1);
  EXPECT_EQ(kernelMonitorFd, -1);
  unit.platform().config().monitorSocketFails = false;
  EXPECT_EQ(InitKernelMonitorFd(), 0);
  unit.platform().config().monitorBindFails = true;
  EXPECT_EQ(InitKernelMonitorFd(), 1);
  EXPECT_EQ(kernelMonitorFd, -1);
  unit.platform().config().monitorBindFails = false;
  EXPECT_EQ(InitKernelMonitorFd(), 0);
  unit.platform().config().monitorRegisterResult = -7;
  EXPECT_EQ(InitKernelMonitorFd(), -7);
  EXPECT_EQ(kernelMonitorFd, -1);
}

}  // namespace
}  // namespace hal_test
