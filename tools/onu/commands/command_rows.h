/// @file
/// The rows of the program's commands, each defined in the file that carries the command out and is
/// named after it, and the arguments that they share.
#pragma once

#include "session/command.h"

namespace onu {

constexpr Argument kPort = {"PORT", ArgumentType::Port, "where the frame comes in"};
constexpr Argument kFrame = {"FRAME", ArgumentType::Frame,
                             "a capture, a frame of a capture, hexadecimal digits, or words",
                             Presence::Rest};

extern const Command kShowClasses;
extern const Command kShowFlows;
extern const Command kShowActions;
extern const Command kShowVlans;
extern const Command kShowPort;
extern const Command kShowPorts;
extern const Command kShowPhy;

extern const Command kShowQos;
extern const Command kShowQueues;
extern const Command kDrain;

extern const Command kShowStats;
extern const Command kClearStats;

extern const Command kShowTrace;
extern const Command kShowLog;
extern const Command kShowConfig;
extern const Command kCheck;
extern const Command kShowCounters;

extern const Command kShowMac;
extern const Command kShowMulticast;
extern const Command kClock;

extern const Command kSend;
extern const Command kExplain;
extern const Command kCapture;
extern const Command kShowTransmitted;
extern const Command kClients;

extern const Command kLink;
extern const Command kButtonPress;

extern const Command kFaultNth;
extern const Command kFaultFrom;
extern const Command kFaultFraction;
extern const Command kFaultClear;
extern const Command kFaultShow;

extern const Command kConfig;
extern const Command kJournalSave;
extern const Command kJournalReplay;
extern const Command kClearCounters;
extern const Command kClearTrace;

extern const Command kEcho;
extern const Command kLog;
extern const Command kHelp;
extern const Command kQuit;

}  // namespace onu
