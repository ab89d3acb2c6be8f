/// @file
/// The commands that show the configuration and count frames, and those that change or clear them.
#include <string>

#include "commands.h"
#include "datapath/outcome.h"
#include "failure.h"
#include "text_table.h"

namespace onu {

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
  Result result;
  Json& list = result.json["counters"] = Json::array();
  TextTable table({"port", "outcome", "disposition", "frames", "octets"});
  for (const virtual_onu::OutcomeCount& count : session.unit().dataPath().counters().outcomes()) {
    const virtual_onu::OutcomeInfo& outcome = virtual_onu::Describe(count.outcome);
    const std::string disposition(virtual_onu::Name(outcome.disposition));
    list.push_back({{"port", count.port.name()},
                    {"outcome", std::string(outcome.name)},
                    {"disposition", disposition},
                    {"frames", count.frames},
                    {"octets", count.octets}});
    table.add({count.port.name(), std::string(outcome.name), disposition,
               std::to_string(count.frames), std::to_string(count.octets)});
  }
  result.text = table.text("no frames");
  return result;
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
