/// @file
/// Tests of whole records: decoded text, bytes on the target, setting of fields.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>
#include <iterator>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include <brmgr_record.h>

#include "device/records.h"

namespace virtual_onu {
namespace {

const RecordInfo& RecordNamed(std::string_view name) {
  const RecordInfo* const record = FindRecord(name);
  EXPECT_NE(record, nullptr) << name;
  return *record;
}

template <typename Record>
Bytes BytesOf(const Record& record) {
  Bytes bytes(sizeof(record));
  std::memcpy(bytes.data(), &record, sizeof(record));
  return bytes;
}

/// The record that stands on the target as the bytes 1, 2, 3, ...
template <typename Record>
Record Counting(std::string_view name) {
  Bytes wire(sizeof(Record));
  std::iota(wire.begin(), wire.end(), std::uint8_t{1});
  const Bytes bytes = FromWire(RecordNamed(name), wire);
  EXPECT_EQ(ToWire(RecordNamed(name), bytes), wire);
  Record record = {};
  EXPECT_EQ(bytes.size(), sizeof(record));
  std::memcpy(&record, bytes.data(), sizeof(record));
  return record;
}

/// Hexadecimal digits of an array inside a record.
template <std::size_t kSize>
std::string Digits(const std::uint8_t (&bytes)[kSize]) {
  return ToHex({bytes, kSize});
}

TEST(Wire, DrvInitRecord) {
  const auto record = Counting<DrvInitRecord>("DrvInitRecord");
  EXPECT_EQ(record.reserved0, 0x01020304U);
  EXPECT_EQ(record.fePortNum, 0x05060708U);
  EXPECT_EQ(record.gePortNum, 0x090A0B0CU);
  EXPECT_EQ(Digits(record.reserved12), "0d0e0f101112131415161718191a1b1c1d1e1f20");
}

TEST(Wire, FeatureRecord) {
  EXPECT_EQ(Counting<FeatureRecord>("FeatureRecord").value, 0x01020304U);
}

TEST(Wire, IngressClassCfg) {
  const auto record = Counting<IngressClassCfg>("IngressClassCfg");
  EXPECT_EQ(record.type, 0x01020304U);
  EXPECT_EQ(record.fieldMask, 0x05060708U);
  EXPECT_EQ(record.priority, 0x090A0B0CU);
  EXPECT_EQ(Digits(record.reserved12), "0d0e0f101112131415161718");
  EXPECT_EQ(record.dir, 0x191A1B1CU);
  EXPECT_EQ(record.icIndex, 0x1D1E1F20U);
}

TEST(Wire, IngressClassDel) {
  const auto record = Counting<IngressClassDel>("IngressClassDel");
  EXPECT_EQ(record.dir, 0x01020304U);
  EXPECT_EQ(record.icIndex, 0x05060708U);
}

TEST(Wire, IngressFlowRule_Keys) {
  const auto record = Counting<IngressFlowRule>("IngressFlowRule");
  EXPECT_EQ(record.srcIpVersion, 0x01020304U);
  EXPECT_EQ(Digits(record.srcIp), "05060708090a0b0c0d0e0f1011121314");
  EXPECT_EQ(record.dstIpVersion, 0x15161718U);
  EXPECT_EQ(Digits(record.dstIp), "191a1b1c1d1e1f202122232425262728");
  EXPECT_EQ(record.l4SrcPort, 0x292AU);
  EXPECT_EQ(record.l4DstPort, 0x2B2CU);
  EXPECT_EQ(record.ipProtocol, 0x2DU);
  EXPECT_EQ(record.reserved45, 0x2EU);
  EXPECT_EQ(record.outerVid, 0x2F30U);
  EXPECT_EQ(Digits(record.reserved48), "3132");
  EXPECT_EQ(Digits(record.dstMac), "333435363738");
  EXPECT_EQ(Digits(record.srcMac), "393a3b3c3d3e");
  EXPECT_EQ(record.etherType, 0x3F40U);
  EXPECT_EQ(record.dscp, 0x41U);
  EXPECT_EQ(Digits(record.reserved65), "424344");
  EXPECT_EQ(record.ingressPort, 0x45464748U);
  EXPECT_EQ(record.outerPbit, 0x49U);
  EXPECT_EQ(record.reserved73, 0x4AU);
  EXPECT_EQ(record.vlanNum, 0x4BU);
  EXPECT_EQ(Digits(record.reserved75), "4c4d4e4f505152535455565758");
}

TEST(Wire, IngressFlowRule_Result) {
  const auto record = Counting<IngressFlowRule>("IngressFlowRule");
  EXPECT_EQ(record.result88, 0x595A5B5CU);
  EXPECT_EQ(record.result92, 0x5DU);
  EXPECT_EQ(Digits(record.reserved93), "5e5f60");
  EXPECT_EQ(record.forward, 0x61626364U);
  EXPECT_EQ(record.reserved100, 0x65666768U);
  EXPECT_EQ(record.result104, 0x696A6B6CU);
  EXPECT_EQ(record.result108, 0x6D6E6F70U);
  EXPECT_EQ(record.queue, 0x71727374U);
  EXPECT_EQ(Digits(record.reserved116), "75767778");
  EXPECT_EQ(record.remark, 0x79U);
  EXPECT_EQ(record.remarkPriority, 0x7AU);
  EXPECT_EQ(Digits(record.reserved122), "7b7c7d7e7f80");
  EXPECT_EQ(record.result128, 0x81828384U);
  EXPECT_EQ(Digits(record.reserved132), "85868788898a8b8c");
  EXPECT_EQ(record.dir, 0x8D8E8F90U);
  EXPECT_EQ(record.icIndex, 0x91929394U);
  EXPECT_EQ(record.flowIndex, 0x95969798U);
  EXPECT_EQ(record.vlanActionIndex, 0x999A9B9CU);
  EXPECT_EQ(record.policer, 0x9D9E9FA0U);
  EXPECT_EQ(record.refCount, 0xA1A2A3A4U);
}

TEST(Wire, IngressFlowDel) {
  const auto record = Counting<IngressFlowDel>("IngressFlowDel");
  EXPECT_EQ(record.dir, 0x01020304U);
  EXPECT_EQ(record.icIndex, 0x05060708U);
  EXPECT_EQ(record.flowIndex, 0x090A0B0CU);
}

TEST(Wire, VlanTagSpec) {
  const auto record = Counting<VlanTagSpec>("VlanTagSpec");
  EXPECT_EQ(record.vid, 0x0102U);
  EXPECT_EQ(record.pbit, 0x03U);
  EXPECT_EQ(record.reserved3, 0x04U);
  EXPECT_EQ(record.tpid, 0x0506U);
}

TEST(Wire, VlanActionRule) {
  const auto record = Counting<VlanActionRule>("VlanActionRule");
  EXPECT_EQ(record.cmd, 0x01020304U);
  EXPECT_EQ(record.tag[0].vid, 0x0506U);
  EXPECT_EQ(record.tag[0].pbit, 0x07U);
  EXPECT_EQ(record.tag[0].reserved3, 0x08U);
  EXPECT_EQ(record.tag[0].tpid, 0x090AU);
  EXPECT_EQ(record.tag[1].vid, 0x0B0CU);
  EXPECT_EQ(record.tag[1].pbit, 0x0DU);
  EXPECT_EQ(record.tag[1].reserved3, 0x0EU);
  EXPECT_EQ(record.tag[1].tpid, 0x0F10U);
  EXPECT_EQ(record.dir, 0x11121314U);
  EXPECT_EQ(record.vlanActionIndex, 0x15161718U);
}

TEST(Wire, VlanActionDel) {
  const auto record = Counting<VlanActionDel>("VlanActionDel");
  EXPECT_EQ(record.dir, 0x01020304U);
  EXPECT_EQ(record.vlanActionIndex, 0x05060708U);
}

TEST(Wire, AnActionThatPushesATag) {
  VlanActionRule action = {};
  action.cmd = 0x101;
  action.tag[0].vid = 100;
  action.tag[0].pbit = 5;
  action.tag[0].tpid = 0x8100;
  action.dir = 1;
  action.vlanActionIndex = 0xFFFFFFFF;
  const Bytes wire = {0x00, 0x00, 0x01, 0x01,              // cmd
                      0x00, 0x64, 0x05, 0x00, 0x81, 0x00,  // tag[0]
                      0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // tag[1]
                      0x00, 0x00, 0x00, 0x01,              // dir
                      0xFF, 0xFF, 0xFF, 0xFF};
  EXPECT_EQ(ToWire(RecordNamed("VlanActionRule"), BytesOf(action)), wire);
}

TEST(Wire, BytesBehindTheRecordStay) {
  const FeatureRecord feature = {27};
  Bytes bytes = BytesOf(feature);
  bytes.insert(bytes.end(), {0xAA, 0xBB, 0xCC});
  const Bytes wire = ToWire(RecordNamed("FeatureRecord"), bytes);
  EXPECT_EQ(wire, (Bytes{0, 0, 0, 27, 0xAA, 0xBB, 0xCC}));
  EXPECT_EQ(FromWire(RecordNamed("FeatureRecord"), wire), bytes);
}

TEST(Wire, AFieldThatIsCutOffStays) {
  const IngressClassDel record = {1, 2};
  Bytes bytes = BytesOf(record);
  bytes.resize(7);
  Bytes expected = {0, 0, 0, 1};
  expected.insert(expected.end(), bytes.begin() + 4, bytes.end());
  EXPECT_EQ(ToWire(RecordNamed("IngressClassDel"), bytes), expected);
  EXPECT_EQ(ToWire(RecordNamed("IngressClassDel"), {}), Bytes());
}

template <typename Record>
std::string Described(std::string_view name, const Record& record) {
  return DescribeRecord(RecordNamed(name), BytesOf(record));
}

TEST(Describe, DrvInitRecord) {
  DrvInitRecord record = {};
  record.fePortNum = 2;
  record.gePortNum = 4;
  EXPECT_EQ(Described("DrvInitRecord", record), "fePortNum=2 gePortNum=4");
}

TEST(Describe, FeatureRecord) {
  EXPECT_EQ(Described("FeatureRecord", FeatureRecord{1}), "value=1");
}

TEST(Describe, IngressClassCfg) {
  IngressClassCfg record = {};
  record.type = 2;
  record.fieldMask = 0x58080;
  record.priority = 4;
  record.dir = 1;
  record.icIndex = 3;
  EXPECT_EQ(Described("IngressClassCfg", record),
            "type=2 fieldMask=outerVid|ingressPort|outerPbit|vlanNum priority=4 dir=us icIndex=3");
}

TEST(Describe, IngressClassDel) {
  EXPECT_EQ(Described("IngressClassDel", IngressClassDel{0, 2}), "dir=ds icIndex=2");
}

TEST(Describe, IngressFlowRule) {
  IngressFlowRule record = {};
  record.outerVid = 100;
  record.dstMac[0] = 0x01;
  record.dstMac[1] = 0x80;
  record.dstMac[2] = 0xC2;
  record.etherType = 0x0800;
  record.ingressPort = 2;
  record.outerPbit = 7;
  record.vlanNum = 1;
  record.forward = 2;
  record.result104 = 1;
  record.queue = 6;
  record.dir = 1;
  record.icIndex = 2;
  record.flowIndex = 0xFFFFFFFF;
  record.vlanActionIndex = 0;
  record.policer = 0xFFFFFFFF;
  EXPECT_EQ(Described("IngressFlowRule", record),
            "srcIpVersion=0 srcIp=0.0.0.0 dstIpVersion=0 dstIp=0.0.0.0 l4SrcPort=0 l4DstPort=0 "
            "ipProtocol=0 outerVid=100 dstMac=01:80:c2:00:00:00 srcMac=00:00:00:00:00:00 "
            "etherType=0x0800 dscp=0 ingressPort=2 outerPbit=7 vlanNum=1 result88=0 result92=0 "
            "forward=trap result104=1 result108=0 queue=6 remark=0 remarkPriority=0 result128=0 "
            "dir=us icIndex=2 flowIndex=none vlanActionIndex=0 policer=none refCount=0");
}

TEST(Describe, IngressFlowDel) {
  EXPECT_EQ(Described("IngressFlowDel", IngressFlowDel{1, 0, 17}), "dir=us icIndex=0 flowIndex=17");
}

TEST(Describe, VlanTagSpec) {
  EXPECT_EQ(Described("VlanTagSpec", VlanTagSpec{4095, 7, 0, 0x88A8}),
            "vid=4095 pbit=7 tpid=0x88a8");
}

TEST(Describe, VlanActionRule) {
  VlanActionRule record = {};
  record.cmd = 0x101;
  record.tag[0] = {100, 5, 0, 0x8100};
  record.dir = 1;
  record.vlanActionIndex = 0xFFFFFFFF;
  EXPECT_EQ(Described("VlanActionRule", record),
            "cmd=push|replace_priority tag[0].vid=100 tag[0].pbit=5 tag[0].tpid=0x8100 "
            "tag[1].vid=0 tag[1].pbit=0 tag[1].tpid=0x0000 dir=us vlanActionIndex=none");
}

TEST(Describe, VlanActionDel) {
  EXPECT_EQ(Described("VlanActionDel", VlanActionDel{0, 1}), "dir=ds vlanActionIndex=1");
}

TEST(Describe, ReservedBytesThatAreNotZeroAreShown) {
  IngressFlowRule record = {};
  record.reserved48[1] = 0x7F;
  record.reserved73 = 9;
  record.reserved100 = 0x1234;
  const std::string text = Described("IngressFlowRule", record);
  EXPECT_NE(text.find(" reserved48=007f "), std::string::npos) << text;
  EXPECT_NE(text.find(" reserved73=09 "), std::string::npos) << text;
  EXPECT_NE(text.find(" reserved100=0x00001234 "), std::string::npos) << text;
  EXPECT_EQ(text.find("reserved45"), std::string::npos) << text;
}

TEST(Describe, FieldsThatAreCutOffAreLeftOut) {
  Bytes bytes = BytesOf(IngressFlowDel{1, 5, 6});
  bytes.resize(11);
  EXPECT_EQ(DescribeRecord(RecordNamed("IngressFlowDel"), bytes), "dir=us icIndex=5");
  EXPECT_EQ(DescribeRecord(RecordNamed("IngressFlowDel"), {}), "");
}

TEST(Wire, PortVlanTrunkEntry) {
  const auto record = Counting<PortVlanTrunkEntry>("PortVlanTrunkEntry");
  EXPECT_EQ(record.port, 0x01U);
  EXPECT_EQ(record.reserved1, 0x02U);
  EXPECT_EQ(record.vid, 0x0304U);
}

TEST(Wire, PortVlanTransEntry) {
  const auto record = Counting<PortVlanTransEntry>("PortVlanTransEntry");
  EXPECT_EQ(record.port, 0x01U);
  EXPECT_EQ(record.reserved1, 0x02U);
  EXPECT_EQ(record.dsPriority, 0x0304U);
  EXPECT_EQ(record.localVid, 0x0506U);
  EXPECT_EQ(record.usPriority, 0x0708U);
  EXPECT_EQ(record.netVid, 0x090AU);
}

TEST(Wire, PortVlanStackEntry) {
  const auto record = Counting<PortVlanStackEntry>("PortVlanStackEntry");
  EXPECT_EQ(record.port, 0x01U);
  EXPECT_EQ(Digits(record.reserved1), "020304");
  EXPECT_EQ(record.stackParam, 0x05060708U);
  EXPECT_EQ(record.cvid, 0x090A0B0CU);
  EXPECT_EQ(record.reserved12, 0x0D0EU);
  EXPECT_EQ(record.svid, 0x0F10U);
}

TEST(Wire, PortVlanInfo) {
  const auto record = Counting<PortVlanInfo>("PortVlanInfo");
  EXPECT_EQ(record.pvid, 0x0102U);
  EXPECT_EQ(record.priority, 0x0304U);
  EXPECT_EQ(record.tpid, 0x0506U);
  EXPECT_EQ(record.tagAttr, 0x0708U);
  EXPECT_EQ(record.vlanMode, 0x090A0B0CU);
  EXPECT_EQ(record.stackingEnable, 0x0D0E0F10U);
  // The byte at offset o is (o + 1) modulo 256.
  EXPECT_EQ(record.trunkList[0].vid, 0x1314U) << "offset 18";
  EXPECT_EQ(record.trunkList[511].vid, 0x0F10U) << "offset 2062";
  EXPECT_EQ(record.translationList[0].dsPriority, 0x1314U) << "offset 2066";
  EXPECT_EQ(record.translationList[511].netVid, 0x0F10U) << "offset 7182";
  EXPECT_EQ(record.stackingList[0].cvid, 0x191A1B1CU) << "offset 7192";
  EXPECT_EQ(record.stackingList[511].svid, 0x0F10U) << "offset 15374";
}

TEST(Wire, PortVlanTable) {
  const RecordInfo& record = RecordNamed("PortVlanTable");
  Bytes wire(record.size);
  std::iota(wire.begin(), wire.end(), std::uint8_t{1});
  const Bytes bytes = FromWire(record, wire);
  EXPECT_TRUE(ToWire(record, bytes) == wire);
  PortVlanTable table;
  ASSERT_EQ(bytes.size(), sizeof(table));
  std::memcpy(&table, bytes.data(), sizeof(table));
  EXPECT_EQ(table.port[0].vlanMode, 0x090A0B0CU);
  EXPECT_EQ(table.port[31].pvid, 0xF1F2U) << "offset 476656";
  EXPECT_EQ(table.port[31].stackingList[511].svid, 0xFF00U) << "offset 492030";
}

TEST(Wire, IphostVlanRecord) {
  const auto record = Counting<IphostVlanRecord>("IphostVlanRecord");
  EXPECT_EQ(record.tci, 0x0102U);
  EXPECT_EQ(record.reserved2, 0x0304U);
}

TEST(Wire, CtcModeRecord) {
  EXPECT_EQ(Counting<CtcModeRecord>("CtcModeRecord").port, 0x01U);
}

TEST(Describe, OfAFrameThatEndsItsRecord_TheBytesThatAreThereAreShown) {
  RelayPkt record = {};
  record.desPort = 3;
  record.length = 2;
  record.data[0] = 0xAB;
  Bytes bytes = BytesOf(record);
  bytes.resize(10);
  EXPECT_EQ(DescribeRecord(RecordNamed("RelayPkt"), bytes), "desPort=3 length=2 data=ab00");
  bytes.resize(8);
  EXPECT_EQ(DescribeRecord(RecordNamed("RelayPkt"), bytes), "desPort=3 length=2");
  bytes.resize(7);
  EXPECT_EQ(DescribeRecord(RecordNamed("RelayPkt"), bytes), "desPort=3");
}

TEST(Decode, NamesEveryFieldAndTellsWhichAreZero) {
  IngressClassCfg record = {};
  record.fieldMask = 0x200;
  const std::vector<DecodedField> fields =
      DecodeRecord(RecordNamed("IngressClassCfg"), BytesOf(record));
  ASSERT_EQ(fields.size(), 6U);
  EXPECT_EQ(fields[1].name, "fieldMask");
  EXPECT_EQ(fields[1].value, "dstMac");
  EXPECT_FALSE(fields[1].zero);
  EXPECT_EQ(fields[3].name, "reserved12");
  EXPECT_EQ(fields[3].value, "0");
  EXPECT_TRUE(fields[3].zero);
}

TEST(Decode, OfAList_LeavesOutWhatIsNotInUse) {
  const RecordInfo& record = RecordNamed("PortVlanInfo");
  PortVlanInfo info = {};
  info.trunkList[0] = {1, 0, 100};
  info.trunkList[511] = {0, 7, 0};
  info.stackingList[3] = {1, {0, 0, 0}, 2, 0, 0, 0};
  std::vector<std::string> names;
  for (const DecodedField& field : DecodeRecord(record, BytesOf(info))) {
    names.push_back(field.name + "=" + field.value);
  }
  EXPECT_EQ(names,
            (std::vector<std::string>{
                "pvid=0", "priority=0", "tpid=0x0000", "tagAttr=0", "vlanMode=0",
                "stackingEnable=0", "trunkList[0].port=1", "trunkList[0].reserved1=0",
                "trunkList[0].vid=100", "trunkList[511].port=0", "trunkList[511].reserved1=07",
                "trunkList[511].vid=0", "stackingList[3].port=1", "stackingList[3].reserved1=0",
                "stackingList[3].stackParam=2", "stackingList[3].cvid=0",
                "stackingList[3].reserved12=0x0000", "stackingList[3].svid=0"}));
}

TEST(Describe, OfAList_NamesThePlaceOfEachElement) {
  PortVlanTable table = {};
  table.port[1].vlanMode = 19;
  table.port[1].trunkList[7] = {2, 0, 4095};
  EXPECT_EQ(DescribeRecord(RecordNamed("PortVlanTable"), BytesOf(table)),
            "port[1].pvid=0 port[1].priority=0 port[1].tpid=0x0000 port[1].tagAttr=0 "
            "port[1].vlanMode=19 port[1].stackingEnable=0 port[1].trunkList[7].port=2 "
            "port[1].trunkList[7].vid=4095");
}

TEST(Decode, AListThatTheBytesDoNotCover_IsLeftOut) {
  const RecordInfo& record = RecordNamed("PortVlanInfo");
  EXPECT_EQ(DecodeRecord(record, Bytes(16 + 2048, 1)).size(), 6U + 3U * 512U);
  EXPECT_EQ(DecodeRecord(record, Bytes(16 + 2047, 1)).size(), 6U);
}

/// Leaves something only at both ends of a record of many thousand fields.
void ClearMiddle(Bytes& bytes) {
  constexpr std::ptrdiff_t kEnd = 20000;
  if (std::ssize(bytes) > 2 * kEnd) {
    std::fill(bytes.begin() + kEnd, bytes.end() - kEnd, std::uint8_t{0});
  }
}

TEST(SetField, WhatDecodeWrites_MakesTheSameRecord) {
  std::size_t records = 0;
  for (const RecordInfo& record : AllRecords()) {
    Bytes wire(record.size);
    std::iota(wire.begin(), wire.end(), std::uint8_t{1});
    ClearMiddle(wire);
    Bytes original = FromWire(record, wire);
    // Any value but 0 is read as upstream, so that only 1 comes back as it was.
    SetField(record, "dir", "us", original);
    Bytes copy(record.size);
    for (const DecodedField& field : DecodeRecord(record, original)) {
      EXPECT_EQ(SetField(record, field.name, field.value, copy), std::nullopt);
    }
    EXPECT_TRUE(copy == original) << record.name;
    ++records;
  }
  EXPECT_GE(records, 16U);
}

TEST(SetField, ChangesItsFieldAlone) {
  const RecordInfo& record = RecordNamed("VlanActionRule");
  Bytes bytes(record.size);
  EXPECT_EQ(SetField(record, "tag[1].tpid", "0x88A8", bytes), std::nullopt);
  Bytes wire(record.size);
  wire[14] = 0x88;
  wire[15] = 0xA8;
  EXPECT_EQ(ToWire(record, bytes), wire);
}

TEST(SetField, OfAnElement_ChangesThatOneAlone) {
  const RecordInfo& record = RecordNamed("PortVlanTable");
  Bytes bytes(record.size);
  EXPECT_EQ(SetField(record, "port[2].translationList[1].netVid", "0x0123", bytes), std::nullopt);
  Bytes wire(record.size);
  constexpr std::size_t kOffset = 2U * 15376U + 2064U + 10U + 8U;
  wire[kOffset] = 0x01;
  wire[kOffset + 1] = 0x23;
  EXPECT_TRUE(ToWire(record, bytes) == wire);
  const auto error = SetField(record, "port[2].translationList[512].netVid", "1", bytes);
  ASSERT_TRUE(error);
  EXPECT_TRUE(
      error->starts_with("PortVlanTable has no field \"port[2].translationList[512].netVid\"; "
                         "it has port[0..31].pvid, "))
      << *error;
}

TEST(SetField, AnUnknownField_NamesTheKnownOnes) {
  Bytes bytes(32);
  EXPECT_EQ(SetField(RecordNamed("IngressClassCfg"), "mask", "1", bytes),
            "IngressClassCfg has no field \"mask\"; "
            "it has type, fieldMask, priority, dir, icIndex");
}

TEST(SetField, ABadValue_SaysWhatWasExpectedAndLeavesTheBytes) {
  Bytes bytes(sizeof(VlanTagSpec), 0xEE);
  EXPECT_EQ(SetField(RecordNamed("VlanTagSpec"), "pbit", "256", bytes),
            "VlanTagSpec.pbit: expected a number from 0 to 255, got \"256\"");
  EXPECT_EQ(bytes, Bytes(sizeof(VlanTagSpec), 0xEE));
}

TEST(SetField, AFieldBehindTheBytes_IsAnError) {
  const RecordInfo& record = RecordNamed("IngressFlowDel");
  Bytes bytes(11, 0xEE);
  EXPECT_EQ(SetField(record, "flowIndex", "1", bytes),
            "IngressFlowDel.flowIndex ends at byte 12, but the record given has 11");
  EXPECT_EQ(bytes, Bytes(11, 0xEE));
  EXPECT_EQ(SetField(record, "icIndex", "1", bytes), std::nullopt);
}

}  // namespace
}  // namespace virtual_onu
