/// @file
/// Tests of the tables of commands and records.
#include "device/records.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace virtual_onu {
namespace {

struct ExpectedCommand {
  std::uint32_t code;
  std::string_view name;
  std::optional<std::uint32_t> length;
  std::uint32_t flag;
  std::string_view record;
};

constexpr std::optional<std::uint32_t> kVariable = {};

// Where senders differ in the flag, that of most senders.
constexpr std::array<ExpectedCommand, 47> kCommands = {{
    {0, "BRMGR_CMD_INIT", 32, 0, "DrvInitRecord"},
    {25, "BRMGR_CMD_MCAST_ADD", 52, 1, "McastGroupEntry"},
    {26, "BRMGR_CMD_MCAST_DEL", 52, 0, "McastGroupEntry"},
    {33, "BRMGR_CMD_SEND_BPDU", kVariable, 0, "RelayPkt"},
    {35, "BRMGR_CMD_PORT_ADMIN", 48, 0, "PortAdminRecord"},
    {39, "BRMGR_CMD_PORT_LOOPBACK", 48, 0, "PortLoopbackRecord"},
    {50, "BRMGR_CMD_IPHOST_VLAN_ADD", 4, 0, "IphostVlanRecord"},
    {51, "BRMGR_CMD_IPHOST_VLAN_DEL", 4, 0, "IphostVlanRecord"},
    {58, "BRMGR_CMD_PORT_MIRROR", 16, 0, "PortMirrorRecord"},
    {61, "BRMGR_CMD_DS_RATE_LIMIT", 8, 0, "DsRateLimitRecord"},
    {73, "BRMGR_CMD_MAC_GET_NEXT", 24, 1, "MacEntryRecord"},
    {77, "BRMGR_CMD_MAC_BIND_ADD", 20, 0, "MacFilterRecord"},
    {78, "BRMGR_CMD_MAC_BIND_DEL", 20, 0, "MacFilterRecord"},
    {79, "BRMGR_CMD_MAC_FILTER_ADD", 20, 0, "MacFilterRecord"},
    {80, "BRMGR_CMD_MAC_FILTER_DEL", 20, 0, "MacFilterRecord"},
    {81, "BRMGR_CMD_MAC_STATIC_ADD", 24, 0, "MacEntryRecord"},
    {82, "BRMGR_CMD_MAC_STATIC_DEL", 24, 0, "MacEntryRecord"},
    {83, "BRMGR_CMD_MAC_DYNAMIC_ADD", 24, 0, "MacEntryRecord"},
    {84, "BRMGR_CMD_MAC_DYNAMIC_DEL", 24, 0, "MacEntryRecord"},
    {85, "BRMGR_CMD_PORT_ISOLATE", 16, 0, "PortIsolateRecord"},
    {95, "BRMGR_CMD_PORT_STATS", 216, 1, "PortStatsRecord"},
    {98, "BRMGR_CMD_IC_CREATE", 32, 1, "IngressClassCfg"},
    {99, "BRMGR_CMD_IC_DEL", 8, 1, "IngressClassDel"},
    {100, "BRMGR_CMD_FLOW_ADD", 164, 1, "IngressFlowRule"},
    {101, "BRMGR_CMD_FLOW_DEL", 12, 0, "IngressFlowDel"},
    {102, "BRMGR_CMD_VLAN_ACTION_ADD", 24, 1, "VlanActionRule"},
    {104, "BRMGR_CMD_VLAN_ACTION_DEL", 8, 0, "VlanActionDel"},
    {105, "BRMGR_CMD_POLICER_ADD", 24, 1, "PolicerCfg"},
    {106, "BRMGR_CMD_POLICER_DEL", 8, 0, "PolicerDel"},
    {111, "BRMGR_CMD_DSCP_MAP", 68, 0, "DscpMapRecord"},
    {118, "BRMGR_CMD_SEND_PKT", kVariable, 0, "RdpaPkt"},
    {119, "BRMGR_CMD_LASER_ON", 0, 1, ""},
    {120, "BRMGR_CMD_LASER_OFF", 0, 0, ""},
    {123, "BRMGR_CMD_PORT_STATE", 8, 0, "PortRateRecord"},
    {124, "BRMGR_CMD_QUEUE_SCHEDULE", 164, 1, "IngressFlowRule"},
    {126, "BRMGR_CMD_PORT_STP", 12, 0, "PortStpRecord"},
    {127, "BRMGR_CMD_FEATURE", 4, 0, "FeatureRecord"},
    {131, "BRMGR_CMD_MAC_AGING", 2, 0, "MacAgingRecord"},
    {132, "BRMGR_CMD_MAC_LIMIT", 2, 0, "MacLimitRecord"},
    {133, "BRMGR_CMD_MAC_LEARN", 4, 0, "MacLearnRecord"},
    {134, "BRMGR_CMD_CTC_MODE_A", 1, 0, "CtcModeRecord"},
    {135, "BRMGR_CMD_CTC_MODE_B", 1, 0, "CtcModeRecord"},
    {140, "BRMGR_CMD_DHCP_TRAP", 8, 0, "TrapEnableRecord"},
    {141, "BRMGR_CMD_SEND_DHCP", kVariable, 0, "RelayPkt"},
    {142, "BRMGR_CMD_PPPOE_TRAP", 8, 0, "TrapEnableRecord"},
    {143, "BRMGR_CMD_SEND_PPPOE", kVariable, 0, "RelayPkt"},
    {158, "BRMGR_CMD_VLAN_REBUILD", 492032, 0, "PortVlanTable"},
}};

TEST(CommandTable, HoldsEveryCommand) {
  ASSERT_EQ(AllCommands().size(), kCommands.size());
  for (std::size_t i = 0; i < kCommands.size(); ++i) {
    const CommandInfo& command = AllCommands().at(i);
    const ExpectedCommand& expected = kCommands.at(i);
    EXPECT_EQ(command.code, expected.code);
    EXPECT_EQ(command.name, expected.name);
    EXPECT_EQ(command.length, expected.length) << command.name;
    EXPECT_EQ(command.flag, expected.flag) << command.name;
    EXPECT_EQ(command.record == nullptr ? "" : command.record->name, expected.record);
    EXPECT_FALSE(command.text.empty()) << command.name;
  }
}

TEST(CommandTable, RecordsHaveTheLengthOfTheirCommand) {
  std::size_t described = 0;
  for (const CommandInfo& command : AllCommands()) {
    if (command.record != nullptr) {
      EXPECT_EQ(command.length.value_or(command.record->size), command.record->size)
          << command.name;
      ++described;
    }
  }
  EXPECT_EQ(described, kCommands.size() - static_cast<std::size_t>(std::ranges::count(
                                              kCommands, "", &ExpectedCommand::record)));
}

TEST(CommandTable, FindCommand_ByCode) {
  ASSERT_NE(FindCommand(0U), nullptr);
  EXPECT_EQ(FindCommand(0U)->name, "BRMGR_CMD_INIT");
  EXPECT_EQ(FindCommand(158U)->name, "BRMGR_CMD_VLAN_REBUILD");
  for (const std::uint32_t code : {1U, 103U, 182U, 183U, 0xFFFFFFFFU}) {
    EXPECT_EQ(FindCommand(code), nullptr) << code;
  }
}

TEST(CommandTable, FindCommand_ByNameInAnyCaseWithOrWithoutPrefix) {
  for (const std::string_view name :
       {"BRMGR_CMD_FLOW_ADD", "brmgr_cmd_flow_add", "FLOW_ADD", "flow_add", "Flow_Add"}) {
    ASSERT_NE(FindCommand(name), nullptr) << name;
    EXPECT_EQ(FindCommand(name)->code, 100U) << name;
  }
  for (const std::string_view name : {"", "FLOW", "BRMGR_CMD_", "FLOW_ADD ", "100"}) {
    EXPECT_EQ(FindCommand(name), nullptr) << name;
  }
}

TEST(CommandTable, CommandName_OfAnUnknownCode_IsItsNumber) {
  EXPECT_EQ(CommandName(98), "BRMGR_CMD_IC_CREATE");
  EXPECT_EQ(CommandName(182), "command 182");
  EXPECT_EQ(CommandName(0xFFFFFFFF), "command 4294967295");
}

TEST(RecordTable, HoldsEveryRecordInOrder) {
  std::vector<std::string> names;
  for (const RecordInfo& record : AllRecords()) {
    names.push_back(record.name + " " + std::to_string(record.size));
    EXPECT_FALSE(record.text.empty()) << record.name;
  }
  EXPECT_EQ(names, (std::vector<std::string>{
                       "DrvInitRecord 32",      "FeatureRecord 4",       "IngressClassCfg 32",
                       "IngressClassDel 8",     "IngressFlowRule 164",   "IngressFlowDel 12",
                       "VlanTagSpec 6",         "VlanActionRule 24",     "VlanActionDel 8",
                       "PortAdminRecord 48",    "PortLoopbackRecord 48", "PortIsolateRecord 16",
                       "PortStpRecord 12",      "PortMirrorRecord 16",   "McastGroupEntry 52",
                       "PortStatsRecord 216",   "MacEntryRecord 24",     "MacFilterRecord 20",
                       "MacAgingRecord 2",      "MacLimitRecord 2",      "MacLearnRecord 4",
                       "PolicerCfg 24",         "PolicerDel 8",          "PortRateRecord 8",
                       "DsRateLimitRecord 8",   "DscpMapRecord 68",      "PortVlanTrunkEntry 4",
                       "PortVlanTransEntry 10", "PortVlanStackEntry 16", "PortVlanInfo 15376",
                       "PortVlanTable 492032",  "IphostVlanRecord 4",    "CtcModeRecord 1",
                       "TrapEnableRecord 8",    "RelayPkt 1708",         "RdpaPkt 2064",
                       "BrmgrEvent 2068"}));
}

TEST(RecordTable, FieldsCoverEveryByteOnce) {
  std::size_t count = 0;
  for (const RecordInfo& record : AllRecords()) {
    std::size_t end = 0;
    for (const FieldInfo& field : record.fields) {
      EXPECT_EQ(field.offset, end) << record.name << "." << field.name;
      EXPECT_EQ(field.size % field.width, 0U) << record.name << "." << field.name;
      EXPECT_TRUE(field.format == FieldFormat::List || field.offset % field.width == 0U)
          << record.name << "." << field.name;
      EXPECT_FALSE(field.text.empty()) << record.name << "." << field.name;
      end = field.offset + field.size;
      ++count;
    }
    EXPECT_EQ(end, record.size) << record.name;
  }
  EXPECT_GT(count, 93U);
}

TEST(RecordTable, NestedRecordsAreFlattened) {
  const RecordInfo* const record = FindRecord("VlanActionRule");
  ASSERT_NE(record, nullptr);
  std::vector<std::string> fields;
  for (const FieldInfo& field : record->fields) {
    fields.push_back(std::to_string(field.offset) + " " + field.name);
  }
  EXPECT_EQ(fields, (std::vector<std::string>{
                        "0 cmd", "4 tag[0].vid", "6 tag[0].pbit", "7 tag[0].reserved3",
                        "8 tag[0].tpid", "10 tag[1].vid", "12 tag[1].pbit", "13 tag[1].reserved3",
                        "14 tag[1].tpid", "16 dir", "20 vlanActionIndex"}));
}

TEST(RecordTable, AListIsOneFieldWithTheFieldsOfItsElements) {
  const RecordInfo* const record = FindRecord("PortVlanTable");
  ASSERT_NE(record, nullptr);
  ASSERT_EQ(record->fields.size(), 1U);
  const FieldInfo& ports = record->fields[0];
  EXPECT_EQ(ports.name, "port");
  EXPECT_EQ(ports.record, "PortVlanInfo");
  EXPECT_EQ(ports.width, 15376U);
  EXPECT_EQ(ports.count(), 32U);
  EXPECT_EQ(ports.format, FieldFormat::List);
  ASSERT_EQ(ports.fields.size(), 9U);
  const FieldInfo& pairs = ports.fields[7];
  EXPECT_EQ(pairs.name, "translationList");
  EXPECT_EQ(pairs.offset, 2064U);
  EXPECT_EQ(pairs.width, 10U);
  EXPECT_EQ(pairs.count(), 512U);
  ASSERT_EQ(pairs.fields.size(), 6U);
  EXPECT_EQ(pairs.fields[5].name, "netVid");
  EXPECT_EQ(pairs.fields[5].offset, 8U);
  EXPECT_EQ(pairs.fields[5].record, "");
}

TEST(RecordTable, FieldNames_GiveTheIndexesOfAList) {
  EXPECT_EQ(
      FieldNames(*FindRecord("PortVlanTable")),
      (std::vector<std::string>{
          "port[0..31].pvid", "port[0..31].priority", "port[0..31].tpid", "port[0..31].tagAttr",
          "port[0..31].vlanMode", "port[0..31].stackingEnable",
          "port[0..31].trunkList[0..511].port", "port[0..31].trunkList[0..511].vid",
          "port[0..31].translationList[0..511].port",
          "port[0..31].translationList[0..511].dsPriority",
          "port[0..31].translationList[0..511].localVid",
          "port[0..31].translationList[0..511].usPriority",
          "port[0..31].translationList[0..511].netVid", "port[0..31].stackingList[0..511].port",
          "port[0..31].stackingList[0..511].stackParam", "port[0..31].stackingList[0..511].cvid",
          "port[0..31].stackingList[0..511].svid"}));
  EXPECT_EQ(FieldNames(*FindRecord("VlanTagSpec")),
            (std::vector<std::string>{"vid", "pbit", "tpid"}));
}

TEST(RecordTable, FindField_InLists_HasItsOffsetInTheRecord) {
  const RecordInfo* const record = FindRecord("PortVlanTable");
  const auto found = FindField(*record, "port[31].stackingList[511].svid");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->name, "port[31].stackingList[511].svid");
  EXPECT_EQ(found->offset, 492030U);
  EXPECT_EQ(found->size, 2U);
  EXPECT_EQ(FindField(*record, "port[1].vlanMode")->offset, 15376U + 8U);
  EXPECT_EQ(FindField(*FindRecord("VlanActionRule"), "tag[1].tpid")->offset, 14U);
  for (const std::string_view name :
       {"", "port", "port[0]", "port[32].pvid", "port[-1].pvid", "port[].pvid", "port[0.pvid",
        "port[0].", "port[0]pvid", "port[0].vid", "port[0].trunkList", "port[0].trunkList[512].vid",
        "port[4294967296].pvid", "report[0].pvid"}) {
    EXPECT_FALSE(FindField(*record, name)) << name;
  }
}

TEST(RecordTable, AFieldCarriesWhatItsTableSays) {
  const RecordInfo* const record = FindRecord("IngressClassCfg");
  ASSERT_NE(record, nullptr);
  ASSERT_EQ(record->fields.size(), 6U);
  const FieldInfo& reserved = record->fields[3];
  EXPECT_EQ(reserved.name, "reserved12");
  EXPECT_EQ(reserved.offset, 12U);
  EXPECT_EQ(reserved.size, 12U);
  EXPECT_EQ(reserved.width, 1U);
  EXPECT_EQ(reserved.format, FieldFormat::Reserved);
  EXPECT_EQ(reserved.access, FieldAccess::Nobody);
  EXPECT_EQ(reserved.text, "zero");
  const FieldInfo& index = record->fields[5];
  EXPECT_EQ(index.name, "icIndex");
  EXPECT_EQ(index.offset, 28U);
  EXPECT_EQ(index.size, 4U);
  EXPECT_EQ(index.width, 4U);
  EXPECT_EQ(index.format, FieldFormat::Index);
  EXPECT_EQ(index.access, FieldAccess::Both);
  EXPECT_EQ(record->fields[0].access, FieldAccess::Caller);
  EXPECT_EQ(FindRecord("VlanActionRule")->fields.back().access, FieldAccess::Driver);
}

TEST(RecordTable, FindRecord_OfAnUnknownName_IsNull) {
  EXPECT_EQ(FindRecord("IngressFlow"), nullptr);
  EXPECT_EQ(FindRecord(""), nullptr);
}

std::vector<std::string> Written(std::span<const NamedValue> values) {
  std::vector<std::string> texts;
  for (const NamedValue& value : values) {
    texts.push_back(std::to_string(value.value) + " " + std::string(value.name) + " " +
                    std::string(value.constant));
  }
  return texts;
}

TEST(NamedValues, KeyBits_AreNamedByTheFlowFieldWithTheKey) {
  EXPECT_EQ(Written(KeyBits()),
            (std::vector<std::string>{
                "1 srcIp BRMGR_KEY_SOURCE_IP", "2 dstIp BRMGR_KEY_DESTINATION_IP",
                "32 l4SrcPort BRMGR_KEY_L4_SOURCE", "64 l4DstPort BRMGR_KEY_L4_DESTINATION",
                "128 outerVid BRMGR_KEY_OUTER_VID", "512 dstMac BRMGR_KEY_DESTINATION_MAC",
                "1024 srcMac BRMGR_KEY_SOURCE_MAC", "2048 etherType BRMGR_KEY_ETHERTYPE",
                "4096 ipProtocol BRMGR_KEY_IP_PROTOCOL", "8192 dscp BRMGR_KEY_DSCP",
                "32768 ingressPort BRMGR_KEY_INGRESS_PORT", "65536 outerPbit BRMGR_KEY_OUTER_PBIT",
                "262144 vlanNum BRMGR_KEY_VLAN_NUM"}));
  const RecordInfo* const flow = FindRecord("IngressFlowRule");
  ASSERT_NE(flow, nullptr);
  for (const NamedValue& key : KeyBits()) {
    EXPECT_EQ(std::ranges::count(flow->fields, key.name, &FieldInfo::name), 1) << key.name;
  }
}

TEST(NamedValues, TagOperationsAndForwardDecisions) {
  EXPECT_EQ(Written(TagOperations()),
            (std::vector<std::string>{"1 push BRMGR_TAG_PUSH", "4 pop BRMGR_TAG_POP",
                                      "8 replace_vid BRMGR_TAG_REPLACE_VID",
                                      "256 replace_priority BRMGR_TAG_REPLACE_PRIORITY"}));
  EXPECT_EQ(Written(ForwardDecisions()),
            (std::vector<std::string>{"1 pass BRMGR_FORWARD_PASS", "2 trap BRMGR_FORWARD_TRAP",
                                      "4 acl BRMGR_FORWARD_ACL"}));
}

}  // namespace
}  // namespace virtual_onu
