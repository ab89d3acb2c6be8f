/// @file
/// The smallest platform that the library can run on, in C: every call succeeds, does nothing and
/// is recorded. Also stands in for the C library's ioctl(), access() and unlink(), and for the
/// socket calls of the kernel monitor.
#ifndef C_PLATFORM_H
#define C_PLATFORM_H

#include <stdint.h>

enum {
  PLATFORM_LOG_ID = 7,
  PLATFORM_DESCRIPTOR = 1,  // the lowest that the library takes for open
  PLATFORM_ETH_PORTS = 4,
  PLATFORM_FE_PORTS = 3,
  PLATFORM_GE_PORTS = 1,
  PLATFORM_COMMANDS = 256,
  PLATFORM_RECORD_SIZE = 256,
  PLATFORM_TEXT_SIZE = 256,
  PLATFORM_JOURNAL_SIZE = 1024,
  PLATFORM_MII_REGISTERS = 32,
  PLATFORM_CLIENT_RESULT = 77,  // of every protocol client
  PLATFORM_SOCKET = 11,         // the kernel monitor's, which is none of the system's
  PLATFORM_PHY = 9              // address of the only PHY, which every "eth" interface shows
};

/// What the driver writes into the record of a read-back command, whatever its result.
struct ReadBack {
  uint32_t cmd;
  uint32_t at;  ///< offset of the word
  uint32_t word;
};

/// What the calls were given since the program started, and what some of them answer.
struct Platform {
  int32_t descriptor;  ///< answer of VOS_OpenDevice(): PLATFORM_DESCRIPTOR unless set
  uint32_t count[PLATFORM_COMMANDS];  ///< commands sent, by code
  uint32_t cmd;                       ///< of the last command, as are the next three
  uint32_t len;
  uint32_t flag;
  unsigned char record[PLATFORM_RECORD_SIZE];  ///< the record's first bytes
  int ioctlResult;                             ///< answer of ioctl(), 0 unless set
  struct ReadBack readBack;                    ///< nothing unless set
  int markerPresent;                           ///< answer of access(): 0 unless set
  uint32_t unlinks;
  uint32_t tasks;
  void (*taskEntry)(void);
  uint32_t logs;
  char logFile[PLATFORM_TEXT_SIZE];  ///< of the last log line, as is the text
  char logText[PLATFORM_TEXT_SIZE];
  char journal[PLATFORM_JOURNAL_SIZE];  ///< what Note() was given; each command is "command CODE"
  uint32_t shells;
  char shellText[PLATFORM_TEXT_SIZE];  ///< the last shell line
  uint32_t messages;
  uint32_t messageModule;  ///< of the last message, as is the code
  uint32_t messageCode;
  uint32_t jumboPort;  ///< of the last call, as is the value
  uint32_t jumboValue;
  uint32_t features;  ///< answer of SF_GetFeature(); 0: the number of the feature plus 1
  uint32_t clients;   ///< frames handed to the protocol clients
  char clientText[PLATFORM_TEXT_SIZE];  ///< of the last one: "CLIENT SIZE VID PORT"
  int monitorSocket;                    ///< answer of socket() to the kernel monitor: -1 unless set
  uint32_t closes;                      ///< of PLATFORM_SOCKET
  uint16_t mii[PLATFORM_MII_REGISTERS];  ///< registers of the PHY
};

extern struct Platform g_platform;

/// Adds a line to the journal, formatted like printf.
void Note(const char* format, ...) __attribute__((format(printf, 1, 2)));

#endif
