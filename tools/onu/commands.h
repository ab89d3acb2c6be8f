/// @file
/// What the program's commands do, one function for each row of the command table. Each yields the
/// result for people and for programs, and throws a Failure when it cannot.
#pragma once

#include "argument.h"
#include "session.h"

namespace onu {

Result ShowClasses(Session& session, const Arguments& arguments);
Result ShowFlows(Session& session, const Arguments& arguments);
Result ShowActions(Session& session, const Arguments& arguments);
Result ShowVlans(Session& session, const Arguments& arguments);
Result ShowPort(Session& session, const Arguments& arguments);
Result ShowQos(Session& session, const Arguments& arguments);
Result ShowQueues(Session& session, const Arguments& arguments);
Result ShowPorts(Session& session, const Arguments& arguments);
Result ShowPhy(Session& session, const Arguments& arguments);
Result ShowTrace(Session& session, const Arguments& arguments);
Result ShowLog(Session& session, const Arguments& arguments);
Result ShowConfig(Session& session, const Arguments& arguments);
Result ShowVlanConfig(Session& session, const Arguments& arguments);
Result ShowCounters(Session& session, const Arguments& arguments);

Result ShowMac(Session& session, const Arguments& arguments);
Result ShowMulticast(Session& session, const Arguments& arguments);
Result MoveClock(Session& session, const Arguments& arguments);

Result CheckTables(Session& session, const Arguments& arguments);

Result SendFrames(Session& session, const Arguments& arguments);
Result ExplainFrame(Session& session, const Arguments& arguments);
Result CapturePackets(Session& session, const Arguments& arguments);
Result ShowTransmitted(Session& session, const Arguments& arguments);
Result SwitchClients(Session& session, const Arguments& arguments);
Result DrainUpstreamQueues(Session& session, const Arguments& arguments);

Result ChangeLink(Session& session, const Arguments& arguments);
Result PressButton(Session& session, const Arguments& arguments);

Result FaultNth(Session& session, const Arguments& arguments);
Result FaultFrom(Session& session, const Arguments& arguments);
Result FaultFraction(Session& session, const Arguments& arguments);
Result FaultClear(Session& session, const Arguments& arguments);
Result FaultShow(Session& session, const Arguments& arguments);

Result ChangeConfig(Session& session, const Arguments& arguments);
Result ClearCounters(Session& session, const Arguments& arguments);
Result ShowStats(Session& session, const Arguments& arguments);
Result ClearStats(Session& session, const Arguments& arguments);
Result ClearTrace(Session& session, const Arguments& arguments);

Result JournalSave(Session& session, const Arguments& arguments);
Result JournalReplay(Session& session, const Arguments& arguments);

Result Echo(Session& session, const Arguments& arguments);
Result Help(Session& session, const Arguments& arguments);
Result SwitchLog(Session& session, const Arguments& arguments);
Result Quit(Session& session, const Arguments& arguments);

}  // namespace onu
