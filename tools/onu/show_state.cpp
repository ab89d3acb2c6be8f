/// @file
/// The commands that show the configuration and count frames, and those that change or clear them.
#include <string>

#include "commands.h"
#include "datapath/outcome.h"
#include "failure.h"
#include "report_table.h"

namespace onu {

namespace {

using virtual_onu::Describe;
using virtual_onu::OutcomeCount;

const Columns<OutcomeCount> kCounters = {
    {"port", "port", &OutcomeCount::port},
    {"outcome", "outcome", [](const auto& count) { return Describe(count.outcome).name; }},
    {"disposition", "disposition",
     [](const auto& count) { return Name(Describe(count.outcome).disposition); }},
    {"frames", "frames", &OutcomeCount::frames},
    {"octets", "octets", &OutcomeCount::octets},
};

}  // namespace

Result ShowConfig(Session& session, const Arguments& arguments) {
  if (arguments.has("N")) {
    return ShowVlanConfig(session, arguments);
  }
  const Settings settings = session.settings();
  Result result;
  result.json["config"] = ConfigToJson(settings);
  for (const Words& words : ConfigToWords(settings)) {
    result.text += JoinWords(words) + "\n";
  }
  return result;
}

Result ShowCounters(Session& session, const Arguments& /*arguments*/) {
  return Result().add("counters", Table(kCounters, session.unit().dataPath().counters().outcomes()),
                      "no frames");
}

Result ChangeConfig(Session& session, const Arguments& arguments) {
  const std::string& key = arguments.word("KEY");
  const Words values = arguments.words("VALUE");
  Settings settings = session.settings();
  SetConfig(settings, key, values);
  session.change(settings, FindConfigKey(key)->fixed);
  Words words = {"config", key};
  words.insert(words.end(), values.begin(), values.end());
  session.noteChange(words);
  return {{{"key", key}, {"value", FindConfigKey(key)->get(session.settings())}}};
}

Result ClearCounters(Session& session, const Arguments& /*arguments*/) {
  session.unit().dataPath().clearCounters();
  session.noteChange({"clear", "counters"});
  return {};
}

Result ClearTrace(Session& session, const Arguments& /*arguments*/) {
  session.unit().trace().clear();
  session.noteChange({"clear", "trace"});
  return {};
}

}  // namespace onu
