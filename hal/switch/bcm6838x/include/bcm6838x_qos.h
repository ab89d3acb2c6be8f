/// @file
/// QoS: classification rules of the upstream traffic, policing, downstream rate limit, DSCP map,
/// weights and scheduling scheme of the queues. What holds for all operations is said in
/// bcm6838x_api.h.
///
/// Every index that a record carries is checked before it is used. The commands that delete or read
/// back for a classification rule are sent with read-back (BRMGR_FLAG_READ_BACK).
#ifndef BCM6838X_QOS_H
#define BCM6838X_QOS_H

#include <stddef.h>
#include <stdint.h>

#include "bcm6838x_api.h"
#include "brmgr_record.h"

BCM6838X_BEGIN_DECLS

// clang-format off
/// Types of a rule: X(code, NAME, name as the listing prints it).
#define BCM6838X_QOS_RULE_LIST(X)      \
  X(0, IPV4_REMARK, "IPv4 Remark")     \
  X(1, IPV6_REMARK, "IPv6 Remark")     \
  X(2, ACL,         "ACL")

/// Fields that a condition may name: X(code, NAME, name as the listing prints it). A condition on
/// one that has no key in the chip is ignored with a log line.
#define BCM6838X_QOS_FIELD_LIST(X)                    \
  X(0,  DESTINATION_MAC,        "DaMac")              \
  X(1,  SOURCE_MAC,             "SaMac")              \
  X(2,  PRIORITY,               "EtherPri")           \
  X(3,  VLAN_ID,                "VlanId")             \
  X(4,  ETHERTYPE,              "EtherType")          \
  X(5,  DESTINATION_IP,         "DaIp")               \
  X(6,  SOURCE_IP,              "SaIp")               \
  X(7,  IP_PROTOCOL,            "IpProtocolType")     \
  X(8,  DSCP,                   "Ipv4TosDscp")        \
  X(9,  IPV6_PRECEDENCE,        "Ipv6Precedence")     \
  X(10, L4_SOURCE,              "L4SrcPort")          \
  X(11, L4_DESTINATION,         "L4DestPort")         \
  X(12, DESTINATION_IPV6,       "DaIPv6")             \
  X(13, SOURCE_IPV6,            "SaIPv6")             \
  X(14, NEXT_HEADER,            "NextHead")           \
  X(15, HOP_LIMIT,              "HopLimit")           \
  X(16, TRAFFIC_CLASS,          "TrafficClass")       \
  X(17, FLOW_LABEL,             "FlowLabel")          \
  X(18, IPV6_L4_SOURCE,         "IPv6L4SrcPort")      \
  X(19, IPV6_L4_DESTINATION,    "IPv6L4DstPort")      \
  X(20, IPV6_DESTINATION_PREFIX, "IPv6DstIPPrefix")   \
  X(21, IPV6_SOURCE_PREFIX,     "IPv6SrcIPPrefix")

/// Operators of a condition: X(code, NAME, name as the listing prints it). A condition with any
/// other than EQUAL is skipped without a message.
#define BCM6838X_QOS_OPERATOR_LIST(X)                 \
  X(0, NEVER_MATCH,      "NeverMatch")                \
  X(1, EQUAL,            "Equal")                     \
  X(2, NOT_EQUAL,        "NotEqual")                  \
  X(3, AT_MOST,          "LessThanOrEqual")           \
  X(4, AT_LEAST,         "GreaterThanOrEqual")        \
  X(5, FIELD_EXISTS,     "FieldExist")                \
  X(6, FIELD_EXISTS_NOT, "FieldNotExist")             \
  X(7, ALWAYS_MATCH,     "AlwaysMatch")
// clang-format on

/// BCM6838X_QOS_RULE_ACL, BCM6838X_QOS_FIELD_VLAN_ID, BCM6838X_QOS_OPERATOR_EQUAL and their
/// siblings.
enum {
/// @cond
#define BCM6838X_DECLARE_QOS_RULE(code, name, text) BCM6838X_QOS_RULE_##name = (code),
#define BCM6838X_DECLARE_QOS_FIELD(code, name, text) BCM6838X_QOS_FIELD_##name = (code),
#define BCM6838X_DECLARE_QOS_OPERATOR(code, name, text) BCM6838X_QOS_OPERATOR_##name = (code),
  BCM6838X_QOS_RULE_LIST(BCM6838X_DECLARE_QOS_RULE)
      BCM6838X_QOS_FIELD_LIST(BCM6838X_DECLARE_QOS_FIELD)
          BCM6838X_QOS_OPERATOR_LIST(BCM6838X_DECLARE_QOS_OPERATOR)
#undef BCM6838X_DECLARE_QOS_RULE
#undef BCM6838X_DECLARE_QOS_FIELD
#undef BCM6838X_DECLARE_QOS_OPERATOR
  /// @endcond
  BCM6838X_QOS_RULES = 8,       ///< rules of a set, and precedences of a port
  BCM6838X_QOS_CONDITIONS = 8,  ///< conditions of a rule
  BCM6838X_QOS_VALUE_SIZE = 16  ///< bytes of a condition's value
};

/// A classification rule: conditions on the single-tagged upstream frames of one UNI port, and what
/// becomes of the frames that meet all of them. A number of two bytes stands big-endian in the
/// value bytes 4 and 5, one of one byte in byte 5, an IPv4 address in the bytes 2 to 5; a MAC
/// address fills the bytes 0 to 5 and an IPv6 address all sixteen. Values are not checked, nor is
/// the priority, of which all 8 bits are used.
typedef struct QosClassRule {
  uint32_t ruleType;                        ///< BCM6838X_QOS_RULE_*; any unknown type re-marks
  uint8_t port;                             ///< UNI port, 1..32
  uint8_t precedence;                       ///< 1..8, 1 the highest; 0 marks an empty slot of a set
  uint8_t reserved6[17];                    ///< not read
  uint8_t fieldCount;                       ///< conditions, 1..8
  uint32_t field[BCM6838X_QOS_CONDITIONS];  ///< BCM6838X_QOS_FIELD_*
  uint32_t op[BCM6838X_QOS_CONDITIONS];     ///< BCM6838X_QOS_OPERATOR_*
  uint8_t value[BCM6838X_QOS_CONDITIONS][BCM6838X_QOS_VALUE_SIZE];  ///< value of each condition
  uint8_t queue;                                                    ///< printed in the listing only
  uint8_t priority;        ///< 802.1p priority given to the frames, 0..7, and their queue
  uint8_t reserved218[2];  ///< not read
} QosClassRule;

/// @cond
BRMGR_STATIC_ASSERT(sizeof(QosClassRule) == 220, "QosClassRule has another size");
BRMGR_STATIC_ASSERT(offsetof(QosClassRule, port) == 4, "port is misplaced");
BRMGR_STATIC_ASSERT(offsetof(QosClassRule, precedence) == 5, "precedence is misplaced");
BRMGR_STATIC_ASSERT(offsetof(QosClassRule, fieldCount) == 23, "fieldCount is misplaced");
BRMGR_STATIC_ASSERT(offsetof(QosClassRule, field) == 24, "field is misplaced");
BRMGR_STATIC_ASSERT(offsetof(QosClassRule, op) == 56, "op is misplaced");
BRMGR_STATIC_ASSERT(offsetof(QosClassRule, value) == 88, "value is misplaced");
BRMGR_STATIC_ASSERT(offsetof(QosClassRule, queue) == 216, "queue is misplaced");
BRMGR_STATIC_ASSERT(offsetof(QosClassRule, priority) == 217, "priority is misplaced");
/// @endcond

/// All rules of one UNI port.
typedef struct QosClassRuleSet {
  uint8_t port;                           ///< UNI port whose rules the set replaces, 1..32
  uint8_t reserved1[3];                   ///< not read
  uint32_t ruleType;                      ///< printed in the listing only
  QosClassRule rule[BCM6838X_QOS_RULES];  ///< each is installed for the port that it names itself
} QosClassRuleSet;

/// @cond
BRMGR_STATIC_ASSERT(sizeof(QosClassRuleSet) == 1768, "QosClassRuleSet has another size");
BRMGR_STATIC_ASSERT(offsetof(QosClassRuleSet, ruleType) == 4, "ruleType is misplaced");
BRMGR_STATIC_ASSERT(offsetof(QosClassRuleSet, rule) == 8, "rule is misplaced");
/// @endcond

/// The upstream policer of a UNI port.
typedef struct QosUsPolicerCfg {
  uint32_t port;  ///< UNI port, 1..32
  uint32_t cir;   ///< committed rate in units of 1000 bit/s: 0 for none, else 64 or more
  uint32_t cbs;   ///< committed burst size; logged only
  uint32_t ebs;   ///< excess burst size; logged only
} QosUsPolicerCfg;

/// @cond
BRMGR_STATIC_ASSERT(sizeof(QosUsPolicerCfg) == 16, "QosUsPolicerCfg has another size");
/// @endcond

/// The downstream rate limit of a port.
typedef struct QosDsRateLimitCfg {
  uint32_t port;  ///< port index, 0 for UNI port 1; the command carries it plus 1, unchecked
  uint32_t rate;  ///< limit in units of 1000 bit/s
} QosDsRateLimitCfg;

/// @cond
BRMGR_STATIC_ASSERT(sizeof(QosDsRateLimitCfg) == 8, "QosDsRateLimitCfg has another size");
/// @endcond

/// Installs a classification rule: a VLAN action that re-marks the priority (not for a rule of type
/// ACL), an ingress class of priority port * 8 - precedence + 7 and a flow in it, whose queue is
/// the rule's priority whatever the scheduling scheme. What was installed before under the same
/// port and precedence stays in the device and is forgotten. Conditions whose operator is not
/// EQUAL, or whose field has no key, do not narrow the rule. Several conditions on one key
/// overwrite each other in order. When a step fails, those before it are undone; an object that the
/// device does not let go stays on record for the next BCM6838X_ApplyQosClassification.
///
/// @par Sends
/// BRMGR_CMD_VLAN_ACTION_ADD (not for type ACL), BRMGR_CMD_IC_CREATE, BRMGR_CMD_FLOW_ADD; for
/// undoing BRMGR_CMD_IC_DEL and BRMGR_CMD_VLAN_ACTION_DEL.
/// @par Logs
/// - "Invalid parameter", level 4, for a rule that is refused;
/// - "field does not support. field = %lu will be ignored. line = %d" for each condition with EQUAL
///   whose field has no key;
/// - "Failed to Add vlanaction ret %d", level 4, with the result;
/// - "Failed to Add ICIndex %d", level 4, with the index that the record of the class holds, behind
///   the undoing;
/// - "Failed to Add flow %d", level 4, with the index that the record of the flow holds, behind the
///   undoing;
/// - "port = %d, ruleType = %d, precedunce = %d, icindex = %d, flowIndex = %d" when the rule is
///   installed.
///
/// @param[in] rule 220 readable bytes
/// @return BCM6838X_OK when installed; BCM6838X_INVALID, and nothing done, when the rule is null,
///   its port is not 1..32, its precedence not 1..8 or its fieldCount not 1..8. A failure gives the
///   result of the last command: that of the VLAN action when it is refused, that of the class when
///   an ACL rule's is refused, otherwise that of the last delete of the undoing, which is
///   BCM6838X_OK when the undoing succeeded.
BCM6838X_EXPORT uint32_t BCM6838X_AddQosClassificationRule(const QosClassRule* rule);

/// Replaces the rules of a port: lists the set, removes what is installed for the set's port,
/// precedence by precedence the flow, the class and the VLAN action, and installs every rule whose
/// precedence is not 0 (BCM6838X_AddQosClassificationRule), each for the port that it names itself.
/// An object whose delete is refused is forgotten. A set whose port is not 1..32 removes nothing;
/// its rules are installed all the same.
///
/// @par Sends
/// BRMGR_CMD_FLOW_DEL, BRMGR_CMD_IC_DEL and BRMGR_CMD_VLAN_ACTION_DEL for what is installed; then
/// what BCM6838X_AddQosClassificationRule sends.
/// @par Logs
/// - the listing: "\r\n%u -------------------------------------------------------------" with the
///   port and "    RULETYPE:   %s\r\n" with the name of the set's type; for each of the eight rules
///   "    + PRECEDENCE: %u", "    + QUEUE:      %u", "    + PRIORITY:   %u",
///   "    + _________________________________________________________" and
///   "    + FIELD             OPERATOR              VALUE"; for each condition, in one line,
///   "    + %-14s    %-18s    " and the value's bytes from the first that is not zero, each as
///   ":%02x"; an empty line behind each rule. At most eight conditions of a rule are shown, and a
///   code without a name as its number;
/// - "Invalid parameter", level 4, when the set's port is not 1..32;
/// - "Failed to delete ic %d flow %d", "Failed to delete ic %d" and
///   "Failed to delete vlanaction %d", the last also with the index of the class, when the command
///   of that object fails;
/// - the null line.
///
/// @param[in] set 1768 readable bytes
/// @return BCM6838X_OK, whatever became of the rules; also, with nothing done, when `set` is null
BCM6838X_EXPORT uint32_t BCM6838X_ApplyQosClassification(const QosClassRuleSet* set);

/// Converts a rule type to its index. Sends and logs nothing.
///
/// @param[in] type rule type
/// @return 1 for 1, 2 for 2, else 0
BCM6838X_EXPORT uint32_t BCM6838X_GetRuleTypeIndex(uint32_t type);

/// Sets or removes the upstream policer of a port, then reports the port's line rate
/// (BCM6838X_GetMediaType) unless its link is down or its PHY not readable. A policer that is set
/// already is deleted first. Of the rate in bit/s, which has 32 bits and wraps, 0 and from 64000 on
/// are in range. A rate out of range, whatever the port, is told on standard output as
/// "BCM6838X_SetQosUsPolicer(), error: cir[%d] is out of range!" and changes no policer; neither
/// does a port out of range. The line rate is reported in any case, that of the port's low 8 bits
/// under all of its number plus 1. Whether the port has a policer is remembered for the flows that
/// are built later, whatever the driver answers.
///
/// @par Sends
/// BRMGR_CMD_POLICER_DEL for a policer that is set, BRMGR_CMD_POLICER_ADD unless `cir` is 0;
/// BRMGR_CMD_PORT_STATE.
/// @par Logs
/// "%s(%d) port=%d, cir = %d, ebs = %d, cbs = %d" on entry; "%s(%d), port=%d is out of range",
/// level 4, when the rate is in range and the port is not 1..32; the null line.
///
/// @param[in] cfg 16 readable bytes
/// @return BCM6838X_OK; also, with nothing done, when `cfg` is null
BCM6838X_EXPORT uint32_t BCM6838X_SetQosUsPolicer(const QosUsPolicerCfg* cfg);

/// Sets the downstream rate limit of a port. The rate in bit/s has 32 bits and wraps.
///
/// @par Sends
/// BRMGR_CMD_DS_RATE_LIMIT.
/// @par Logs
/// The null line.
///
/// @param[in] cfg 8 readable bytes
/// @return BCM6838X_OK; also, with nothing done, when `cfg` is null
BCM6838X_EXPORT uint32_t BCM6838X_SetQosDsRateLimit(const QosDsRateLimitCfg* cfg);

/// Sets a port's map from DSCP to priority.
///
/// @par Sends
/// BRMGR_CMD_DSCP_MAP, with the data-path port (BCM6838X_StreamPortIndexUniToRdpa).
/// @par Logs
/// The null line.
///
/// @param[in] port UNI port, from 1; only the low 8 bits count
/// @param[in] map 64 readable bytes, the priority of each DSCP; not checked
/// @return BCM6838X_OK; also, with nothing done, when `map` is null
BCM6838X_EXPORT uint32_t BCM6838X_StreamSetDscpMap(uint32_t port, const uint8_t* map);

/// Sets the weights of the eight upstream queues 8 to 15, the queues of scheduling scheme 1, by one
/// shell line each, from queue 8 on. The weights are not kept. Sends and logs nothing.
///
/// @par Runs
/// One line a queue: "bs /b/c egress_tm/dir=us,index=%hhu rl={af=0},"
/// "queue_cfg[0]={queue_id=%hhu,weight=0,drop_alg=dt,drop_threshold=700,red_high_threshold=0," and
/// "red_low_threshold=0}, weight=%hhu", a blank between the first two parts and none behind; with
/// the scheduler (11 to 18), the queue and its weight.
///
/// @param[in] weight 8 readable bytes: byte i is the weight of queue 8 + i, at scheduler 11 + i,
///   0..255
/// @return BCM6838X_OK, or BCM6838X_INVALID when `weight` is null
BCM6838X_EXPORT uint32_t BCM6838X_SetQosWrrWeight(const uint8_t* weight);

/// Changes the scheduling scheme: moves every installed re-marking flow, by reading it back,
/// deleting it and adding it again, to the queue 8 above (scheme 1) or 8 below (scheme 0). A flow
/// that cannot be read back or deleted stays where it is, one that cannot be added again is lost;
/// the scheme changes all the same. Rules installed under scheme 1 use the queues of scheme 0, and
/// a change to scheme 0 moves them too: their queue number then wraps. Flows of type ACL are not
/// moved. Logs nothing.
///
/// @par Sends
/// BRMGR_CMD_QUEUE_SCHEDULE, BRMGR_CMD_FLOW_DEL and BRMGR_CMD_FLOW_ADD for each such flow, as far
/// as the one before succeeded.
///
/// @param[in] scheme 0 or 1
/// @return BCM6838X_OK, also when the scheme is the current one (0 at start) and nothing is done;
///   BCM6838X_UNSUPPORTED for any other scheme
BCM6838X_EXPORT uint32_t BCM6838X_SetQosSchedule(uint32_t scheme);

/// Initialises the QoS bookkeeping, so that no classification rule is known; called by
/// BCM6838X_Init. Policers and the scheduling scheme stay as they are. Sends and logs nothing.
///
/// @return BCM6838X_OK
BCM6838X_EXPORT uint32_t BCM6838X_InitQoS(void);

BCM6838X_END_DECLS

#endif
