/// @file
/// The rows of the operations that bcm6838x_vlan_mode.h declares.
#include <bcm6838x_vlan_mode.h>

#include "operations/operation_rows.h"
#include "operations/vlan_list.h"

namespace onu {

namespace {

using enum ResultKind;

constexpr Argument kModePort = {"port", ArgumentType::Number, "UNI port number, 1..32"};
constexpr Argument kPvid = {"pvid", ArgumentType::Number, "PVID, 1..4095"};
constexpr Argument kPriority = {"priority", ArgumentType::Number, "priority of its tag, 0..7"};
constexpr Argument kUnusedPriority = {"priority", ArgumentType::Number, "not used"};
constexpr Argument kTrunkList = {"VID", ArgumentType::Number, "VLANs of the list",
                                 Presence::OptionalRest};
constexpr Argument kTranslationList = {
    "PAIR", ArgumentType::TranslatedVlan,
    "entries of the list: VID at the port, VID in the network, upstream and downstream priority",
    Presence::OptionalRest};
constexpr Argument kStackingList = {
    "PAIR", ArgumentType::StackedVlan,
    "entries of the list: customer VID, service VID, parameter, which is 2 unless given",
    Presence::OptionalRest};

const std::vector<Operation> kRows = {
    {{"BCM6838X_AddUsTransparent",
      {kModePort},
      "adds the rules of transparent mode",
      {"Init\nAddUsTransparent 1"}},
     Status,
     Bind(BCM6838X_AddUsTransparent)},
    {{"BCM6838X_AddUsTransparent_Perf",
      {kModePort},
      "adds the rules of transparent mode in performance mode",
      {"config performance-marker on\nInit\nAddUsTransparent_Perf 1"}},
     Status,
     Bind(BCM6838X_AddUsTransparent_Perf)},
    {{"BCM6838X_DelUsTransparent",
      {kModePort},
      "deletes the rules of transparent mode",
      {"Init\nAddUsTransparent 1\nDelUsTransparent 1"}},
     Status,
     Bind(BCM6838X_DelUsTransparent)},
    {{"BCM6838X_AddUsTag",
      {kModePort,
       {"vid", ArgumentType::Number, "VID, 1..4095"},
       {"pbit", ArgumentType::Number, "priority of its tag, 0..7"}},
      "adds the rules of tag mode",
      {"Init\nAddUsTag 1 100 3"}},
     Status,
     Bind(BCM6838X_AddUsTag)},
    {{"BCM6838X_DelUsTag",
      {kModePort,
       {"vid", ArgumentType::Number, "VID, 1..4095"},
       {"pbit", ArgumentType::Number, "not used"}},
      "deletes the rules of tag mode",
      {"Init\nAddUsTag 1 100 3\nDelUsTag 1 100 3"}},
     Status,
     Bind(BCM6838X_DelUsTag)},
    {{"BCM6838X_AddUsZTETrunk",
      {kModePort, kTrunkList},
      "adds the rules of ZTE trunk mode",
      {"Init\nAddUsZTETrunk 1 100 200"}},
     Status,
     Bind(BCM6838X_AddUsZTETrunk)},
    {{"BCM6838X_DelUsZTETrunk",
      {kModePort, kTrunkList},
      "deletes the rules of ZTE trunk mode",
      {"Init\nAddUsZTETrunk 1 100 200\nDelUsZTETrunk 1 100 200"}},
     Status,
     Bind(BCM6838X_DelUsZTETrunk)},
    {{"BCM6838X_AddUsHybrid",
      {kModePort, kPvid, kPriority, kTrunkList},
      "adds the rules of hybrid and trunk mode",
      {"Init\nAddUsHybrid 1 10 3 100 200"}},
     Status,
     Bind(BCM6838X_AddUsHybrid)},
    {{"BCM6838X_DelUsHybrid",
      {kModePort, kPvid, kUnusedPriority, kTrunkList},
      "deletes the rules of hybrid and trunk mode",
      {"Init\nAddUsHybrid 1 10 3 100 200\nDelUsHybrid 1 10 3 100 200"}},
     Status,
     Bind(BCM6838X_DelUsHybrid)},
    {{"BCM6838X_AddUsTranslation",
      {kModePort, kPvid, kPriority, kTranslationList},
      "adds the rules of translation mode",
      {"Init\nAddUsTranslation 1 10 3 100:200 101:201:5:6"}},
     Status,
     Bind(BCM6838X_AddUsTranslation)},
    {{"BCM6838X_DelUsTranslation",
      {kModePort, kPvid, kUnusedPriority, kTranslationList},
      "deletes the rules of translation mode",
      {"Init\nAddUsTranslation 1 10 3 100:200\nDelUsTranslation 1 10 3 100:200"}},
     Status,
     Bind(BCM6838X_DelUsTranslation)},
    {{"BCM6838X_AddUsZTEStacking",
      {kModePort, kPvid, kPriority},
      "adds the rules of ZTE stacking",
      {"Init\nAddUsZTEStacking 1 10 3"}},
     Status,
     Bind(BCM6838X_AddUsZTEStacking)},
    {{"BCM6838X_DelUsZTEStacking",
      {kModePort, kPvid, kUnusedPriority},
      "deletes the rules of ZTE stacking",
      {"Init\nAddUsZTEStacking 1 10 3\nDelUsZTEStacking 1 10 3"}},
     Status,
     Bind(BCM6838X_DelUsZTEStacking)},
    {{"BCM6838X_AddUsBDCOMStacking",
      {kModePort, kPvid, kPriority, kStackingList},
      "adds the rules of BDCOM stacking",
      {"Init\nAddUsBDCOMStacking 1 10 3 100:200 101:200"}},
     Status,
     Bind(BCM6838X_AddUsBDCOMStacking)},
    {{"BCM6838X_DelUsBDCOMStacking",
      {kModePort, kPvid, kUnusedPriority, kStackingList},
      "deletes the rules of BDCOM stacking",
      {"Init\nAddUsBDCOMStacking 1 10 3 100:200\nDelUsBDCOMStacking 1 10 3 100:200"}},
     Status,
     Bind(BCM6838X_DelUsBDCOMStacking)},
};

}  // namespace

const std::vector<Operation>& VlanModeOperations() {
  return kRows;
}

}  // namespace onu
