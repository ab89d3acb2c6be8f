/// @file
/// The rows of the driver core's operations, which hal_bcm6838x.h declares; those of its packet
/// path are in operations_packet.cpp. A new operation is one more row.
#include <hal_bcm6838x.h>

#include "operations/ioctl_operation.h"
#include "operations/operation_rows.h"

namespace onu {

namespace {

using enum ResultKind;

const ArgumentRows kIoctlArguments = {
    {"CMD", ArgumentType::CommandCode, "the command"},
    {"FIELD=VALUE", ArgumentType::FieldWord,
     "sets a field of the record; others are zero, indexes none", Presence::OptionalRest},
    {"HEX", ArgumentType::Hex, "the record as it stands on the target, instead of fields",
     Presence::Optional, "raw"},
    {"N", ArgumentType::Number, "length of the record; otherwise that of the command",
     Presence::Optional, "len"},
    {"F", ArgumentType::Number, "read-back flag; otherwise that of the command", Presence::Optional,
     "flag"},
};

const std::vector<Operation> kRows = {
    {{"BCM6838X_Ioctl",
      kIoctlArguments,
      "sends one command record to the driver",
      {"Init\nIoctl FLOW_ADD dir=us icIndex=2 dstMac=01:80:c2:00:00:0e forward=2",
       "Init\nIoctl 127 value=0", "Init\nIoctl FEATURE raw 00000001", "Init\nIoctl LASER_ON"}},
     Status,
     {SendIoctl, {}}},
    {{"BCM6838X_Init", {}, "starts the library; called once", {"Init"}},
     Status,
     Bind(BCM6838X_Init)},
    {{"BCM6838X_InitDrv", {}, "opens the device and tells it the port counts", {"InitDrv"}},
     Status,
     Bind(BCM6838X_InitDrv)},
    {{"BCM6838X_PerformanceInit",
      {},
      "consumes the performance marker and decides the mode",
      {"config performance-marker on\nPerformanceInit"}},
     Status,
     Bind(BCM6838X_PerformanceInit)},
    {{"BCM6838X_IsPerformance", {}, "1 in performance mode, else 0", {"IsPerformance"}},
     Number,
     Bind(BCM6838X_IsPerformance)},
    {{"BCM6838X_RdpaIcInit",
      {},
      "creates the default classes and trap flows of normal mode",
      {"InitDrv\nRdpaIcInit"}},
     Status,
     Bind(BCM6838X_RdpaIcInit)},
    {{"BCM6838X_RdpaIcInit_Perf",
      {},
      "creates the default classes of performance mode",
      {"InitDrv\nRdpaIcInit_Perf"}},
     Status,
     Bind(BCM6838X_RdpaIcInit_Perf)},
    {{"BCM6838X_SFInit",
      {},
      "hands feature switch 27 to the driver",
      {"config feature 27 0\nInitDrv\nSFInit"}},
     Status,
     Bind(BCM6838X_SFInit)},
    {{"BCM6838X_StreamPortIndexUniToRdpa",
      {kUniPort},
      "the data path's number of a UNI port",
      {"StreamPortIndexUniToRdpa 1"}},
     Number,
     Bind(BCM6838X_StreamPortIndexUniToRdpa)},
};

}  // namespace

const std::vector<Operation>& CoreOperations() {
  return kRows;
}

}  // namespace onu
