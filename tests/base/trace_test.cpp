/// @file
/// Tests of the trace: order, capacity, listener.
#include "base/trace.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace virtual_onu {
namespace {

std::string CallOf(const TraceEvent& event) {
  return std::get<CallEvent>(event.detail).call;
}

TEST(Trace, Add_NumbersEventsFromOneAndStampsTime) {
  Clock clock;
  Trace trace(clock);
  trace.add(CallEvent{"first", 0});
  clock.advance(250);
  trace.add(CallEvent{"second", 0});
  const std::vector<TraceEvent> events = trace.events();
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(events[0].sequence, 1U);
  EXPECT_EQ(events[0].milliseconds, 0U);
  EXPECT_EQ(events[1].sequence, 2U);
  EXPECT_EQ(events[1].milliseconds, 250U);
  EXPECT_EQ(CallOf(events[1]), "second");
}

TEST(Trace, Add_BeyondCapacity_DropsTheOldest) {
  const Clock clock;
  Trace trace(clock, 2);
  for (const char* name : {"a", "b", "c"}) {
    trace.add(CallEvent{name, 0});
  }
  const std::vector<TraceEvent> events = trace.events();
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(CallOf(events[0]), "b");
  EXPECT_EQ(events[0].sequence, 2U);
  EXPECT_EQ(CallOf(events[1]), "c");
}

TEST(Trace, Clear_KeepsCounting) {
  const Clock clock;
  Trace trace(clock);
  trace.add(CallEvent{"a", 0});
  trace.clear();
  EXPECT_TRUE(trace.events().empty());
  trace.add(CallEvent{"b", 0});
  EXPECT_EQ(trace.events().front().sequence, 2U);
  EXPECT_EQ(trace.next(), 3U);
}

TEST(Trace, Events_FromASequenceNumber_LeavesOlderOnesOut) {
  const Clock clock;
  Trace trace(clock);
  trace.add(CallEvent{"a", 0});
  const std::uint64_t mark = trace.next();
  trace.add(CallEvent{"b", 0});
  const std::vector<TraceEvent> events = trace.events(mark);
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(CallOf(events[0]), "b");
}

TEST(Trace, LongRecords_ComeBackToReaderAndListener) {
  constexpr std::size_t kLength = 492'032;
  const Clock clock;
  Trace trace(clock);
  std::vector<TraceEvent> told;
  trace.setListener([&told](const TraceEvent& event) { told.push_back(event); });
  CommandEvent same;
  same.code = 158;
  same.before.resize(kLength);
  same.before[kLength - 1] = 1;
  same.after = same.before;
  CommandEvent changed = same;
  changed.after[7] = 2;
  trace.add(same);
  trace.add(changed);
  const std::vector<CommandEvent> read = EventsOf<CommandEvent>(trace.events());
  ASSERT_EQ(read.size(), 2U);
  for (const auto& commands : {read, EventsOf<CommandEvent>(told)}) {
    ASSERT_EQ(commands.size(), 2U);
    EXPECT_TRUE(commands[0].before == same.before && commands[0].after == same.after);
    EXPECT_TRUE(commands[1].before == changed.before && commands[1].after == changed.after);
    EXPECT_EQ(commands[1].code, 158U);
  }
}

TEST(Trace, RecordingOff_KeepsNothingAndTellsNobody) {
  const Clock clock;
  Trace trace(clock);
  int told = 0;
  trace.setListener([&told](const TraceEvent&) { ++told; });
  trace.setRecording(false);
  trace.add(CallEvent{"a", 0});
  EXPECT_TRUE(trace.events().empty());
  EXPECT_EQ(told, 0);
  trace.setRecording(true);
  trace.add(CallEvent{"b", 0});
  EXPECT_EQ(trace.events().size(), 1U);
  EXPECT_EQ(told, 1);
}

TEST(Trace, EventsOf_PicksOneKindInOrder) {
  const Clock clock;
  Trace trace(clock);
  trace.add(ShellEvent{"one", 0, ""});
  trace.add(CallEvent{"call", 0});
  trace.add(ShellEvent{"two", 0, ""});
  const std::vector<ShellEvent> shell = EventsOf<ShellEvent>(trace.events());
  ASSERT_EQ(shell.size(), 2U);
  EXPECT_EQ(shell[0].line, "one");
  EXPECT_EQ(shell[1].line, "two");
}

}  // namespace
}  // namespace virtual_onu
