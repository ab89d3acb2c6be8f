/// @file
/// Tests of the data-path shell's lines: VLAN objects, port attributes, port actions, schedulers.
#include <cstdint>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "shell_fixture.h"

namespace virtual_onu {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using BsLines = ShellTest;

TEST_F(BsLines, CreateVlan_MakesTheObjectOnItsPort) {
  run("bs /b/n vlan/name=wan0_100 port/index=wan0");
  run("bs /b/n vlan/name=lan2_100 port/index=lan2");
  ASSERT_EQ(objects().vlans.size(), 2U);
  EXPECT_EQ(objects().vlans.at("wan0_100").portObject, "wan0");
  EXPECT_EQ(objects().vlans.at("wan0_100").uni, 0U);
  EXPECT_THAT(objects().vlans.at("wan0_100").vids, IsEmpty());
  EXPECT_EQ(objects().vlans.at("lan2_100").uni, 3U);
}

TEST_F(BsLines, CreateVlan_ExistingName_IsRefusedAndTheObjectStays) {
  run("bs /b/n vlan/name=x port/index=lan1");
  EXPECT_EQ(refusal("bs /b/n vlan/name=x port/index=lan2"), "VLAN object x exists already");
  EXPECT_EQ(objects().vlans.at("x").portObject, "lan1");
}

TEST_F(BsLines, UnknownPortObject_IsRefused) {
  for (const char* object :
       {"lan4", "lan", "lan00", "lan+1", "lan4294967295", "lan4294967296", "wan1", "wan", "eth0"}) {
    const std::string reason = "no port object " + std::string(object);
    EXPECT_EQ(refusal("bs /b/n vlan/name=x port/index=" + std::string(object)), reason);
    EXPECT_EQ(refusal("bs /b/c port/index=" + std::string(object) + " transparent=yes"), reason);
  }
  EXPECT_EQ(refusal("bs /b/c port/index=wan0 transparent=yes"), "no port object wan0");
  EXPECT_TRUE(objects().vlans.empty());
}

TEST_F(BsLines, PortRevert_NumbersTheLanPortsFromTheOtherEnd) {
  portRevert_ = 1;
  std::vector<std::uint32_t> unis;
  for (const char* object : {"lan0", "lan1", "lan2", "lan3"}) {
    run("bs /b/n vlan/name=" + std::string(object) + " port/index=" + object);
    unis.push_back(objects().vlans.at(object).uni);
  }
  EXPECT_EQ(unis, (std::vector<std::uint32_t>{4, 3, 2, 1}));
  EXPECT_EQ(refusal("bs /b/n vlan/name=x port/index=lan4"), "no port object lan4");
}

TEST_F(BsLines, EnableVid_AddsAndRemovesVids) {
  run("bs /b/n vlan/name=x port/index=lan0");
  run("bs /b/c vlan/name=x vid_enable[1]=yes");
  run("bs /b/c vlan/name=x vid_enable[4095]=yes");
  run("bs /b/c vlan/name=x vid_enable[4095]=yes");
  EXPECT_THAT(objects().vlans.at("x").vids, ElementsAre(1, 4095));
  run("bs /b/c vlan/name=x vid_enable[1]=no");
  run("bs /b/c vlan/name=x vid_enable[2]=no");
  EXPECT_THAT(objects().vlans.at("x").vids, ElementsAre(4095));
}

TEST_F(BsLines, EnableVid_OutOfRange_IsRefused) {
  run("bs /b/n vlan/name=x port/index=lan0");
  EXPECT_EQ(refusal("bs /b/c vlan/name=x vid_enable[0]=yes"),
            "VID 0 is out of range, expected 1 to 4095");
  EXPECT_EQ(refusal("bs /b/c vlan/name=x vid_enable[4096]=yes"),
            "VID 4096 is out of range, expected 1 to 4095");
  EXPECT_EQ(refusal("bs /b/c vlan/name=x vid_enable[65537]=no"),
            "VID 65537 is out of range, expected 1 to 4095");
  EXPECT_THAT(objects().vlans.at("x").vids, IsEmpty());
}

TEST_F(BsLines, ChangeOrDestroyVlan_ThatDoesNotExist_IsRefused) {
  EXPECT_EQ(refusal("bs /b/c vlan/name=x vid_enable[1]=yes"), "no VLAN object x");
  EXPECT_EQ(refusal("bs /b/d vlan/name=x"), "no VLAN object x");
  run("bs /b/n vlan/name=x port/index=lan0");
  run("bs /b/d vlan/name=x");
  EXPECT_EQ(refusal("bs /b/d vlan/name=x"), "no VLAN object x");
  EXPECT_TRUE(objects().vlans.empty());
}

TEST_F(BsLines, Transparent_SwitchesThePortsAttribute) {
  run("bs /b/c port/index=lan0 transparent=yes");
  run("bs /b/c port/index=lan3 transparent=yes");
  EXPECT_THAT(objects().transparentPorts, ElementsAre(1U, 4U));
  run("bs /b/c port/index=lan0 transparent=no");
  run("bs /b/c port/index=lan1 transparent=no");
  EXPECT_THAT(objects().transparentPorts, ElementsAre(4U));
}

TEST_F(BsLines, Scheduler_KeepsItsQueueThresholdAndWeight) {
  const auto line = [](const std::string& index, const std::string& weight) {
    return "bs /b/c egress_tm/dir=us,index=" + index +
           " rl={af=0}, queue_cfg[0]={queue_id=8,weight=0,drop_alg=dt,drop_threshold=700,"
           "red_high_threshold=0,red_low_threshold=0}, weight=" +
           weight;
  };
  run(line("11", "255"));
  run(line("18", "0"));
  ASSERT_EQ(objects().schedulers.size(), 2U);
  EXPECT_EQ(objects().schedulers.at(11).queueId, 8U);
  EXPECT_EQ(objects().schedulers.at(11).dropThreshold, 700U);
  EXPECT_EQ(objects().schedulers.at(11).weight, 255U);
  EXPECT_EQ(refusal(line("10", "1")), "upstream scheduler 10 is out of range, expected 11 to 18");
  EXPECT_EQ(refusal(line("19", "1")), "upstream scheduler 19 is out of range, expected 11 to 18");
  EXPECT_EQ(refusal(line("12", "256")), "weight 256 is out of range, expected 0 to 255");
  EXPECT_EQ(objects().schedulers.size(), 2U);
}

class PortActionLines : public ShellTest {
 protected:
  void SetUp() override {
    IngressClassCfg cfg = {};
    cfg.icIndex = 1;
    send(BRMGR_CMD_IC_CREATE, cfg);
    IngressFlowRule flow = {};
    flow.icIndex = 1;
    flow.vlanActionIndex = BRMGR_INDEX_NONE;
    send(BRMGR_CMD_FLOW_ADD, flow);
    send(BRMGR_CMD_FLOW_ADD, flow);
    VlanActionRule action = {};
    send(BRMGR_CMD_VLAN_ACTION_ADD, action);
  }

  template <typename Record>
  void send(std::uint32_t code, Record record) {
    BrmgrRequest request = {code, sizeof(record), BRMGR_FLAG_INPUT, &record};
    ASSERT_EQ(device_.ioctl(BRMGR_IOCTL_REQUEST, &request), 0);
  }

  static std::string Attach(const std::string& ic, const std::string& flow, const std::string& port,
                            const std::string& action) {
    return "bs /b/c ingress_class/dir=ds,index=" + ic + " port_action[{flow=" + flow +
           ",port=" + port + "}]={{vlan_action={vlan_action/dir=ds,index=" + action + "},drop=no}}";
  }

  static std::string Detach(const std::string& ic, const std::string& flow,
                            const std::string& port) {
    return "bs /b/c ingress_class/dir=ds,index=" + ic + " port_action[{flow=" + flow +
           ",port=" + port + "}]={{vlan_action=null,drop=no}}";
  }

  /// The port actions of class 1 as "flow F uni U action A".
  [[nodiscard]] std::vector<std::string> actions() const {
    std::vector<std::string> lines;
    for (const auto& [key, action] : device_.tables().downstream.classes.at(1).portActions) {
      lines.push_back("flow " + std::to_string(key.flowIndex) + " uni " + std::to_string(key.uni) +
                      " action " + std::to_string(action));
    }
    return lines;
  }
};

TEST_F(PortActionLines, Attach_BelongsToTheClassFlowAndPort) {
  run(Attach("1", "1", "lan2", "0"));
  run(Attach("1", "0", "lan0", "0"));
  EXPECT_THAT(actions(), ElementsAre("flow 0 uni 1 action 0", "flow 1 uni 3 action 0"));
}

TEST_F(PortActionLines, Attach_AgainReplacesTheAction) {
  send(BRMGR_CMD_VLAN_ACTION_ADD, VlanActionRule{});
  run(Attach("1", "1", "lan2", "0"));
  run(Attach("1", "1", "lan2", "1"));
  EXPECT_THAT(actions(), ElementsAre("flow 1 uni 3 action 1"));
}

TEST_F(PortActionLines, Detach_RemovesIt_AndIsDoneWhereNothingIsAttached) {
  run(Attach("1", "1", "lan2", "0"));
  run(Detach("1", "1", "lan1"));
  EXPECT_THAT(actions(), ElementsAre("flow 1 uni 3 action 0"));
  run(Detach("1", "1", "lan2"));
  EXPECT_THAT(actions(), IsEmpty());
  run(Detach("1", "1", "lan2"));
}

TEST_F(PortActionLines, WhatTheDeviceDoesNotHave_IsRefused) {
  EXPECT_EQ(refusal(Attach("2", "0", "lan0", "0")), "no ds class 2");
  EXPECT_EQ(refusal(Attach("1", "2", "lan0", "0")), "no flow 2 in ds class 1");
  EXPECT_EQ(refusal(Attach("1", "0", "lan0", "1")), "no ds VLAN action 1");
  EXPECT_EQ(refusal(Attach("1", "0", "lan4", "0")), "no port object lan4");
  EXPECT_EQ(refusal(Attach("1", "0", "wan0", "0")), "no port object wan0");
  EXPECT_EQ(refusal(Attach("1", "-1", "lan0", "0")),
            "malformed at \"-1\": expected a decimal number");
  EXPECT_EQ(refusal(Detach("2", "0", "lan0")), "no ds class 2");
  EXPECT_EQ(refusal(Detach("1", "2", "lan0")), "no flow 2 in ds class 1");
  EXPECT_THAT(actions(), IsEmpty());
}

TEST_F(PortActionLines, DeletedFlow_TakesItsPortActionsAlong) {
  run(Attach("1", "0", "lan0", "0"));
  run(Attach("1", "1", "lan0", "0"));
  run(Attach("1", "1", "lan3", "0"));
  send(BRMGR_CMD_FLOW_DEL, IngressFlowDel{BRMGR_DIR_DOWNSTREAM, 1, 1});
  EXPECT_THAT(actions(), ElementsAre("flow 0 uni 1 action 0"));
}

TEST_F(PortActionLines, DeletedAction_StaysNamed) {
  run(Attach("1", "0", "lan0", "0"));
  send(BRMGR_CMD_VLAN_ACTION_DEL, VlanActionDel{BRMGR_DIR_DOWNSTREAM, 0});
  EXPECT_THAT(actions(), ElementsAre("flow 0 uni 1 action 0"));
}

}  // namespace
}  // namespace virtual_onu
