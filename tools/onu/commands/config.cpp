/// @file
/// The command that changes the configuration.
#include "commands/command_rows.h"
#include "session/session.h"

namespace onu {

namespace {

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

}  // namespace

const Command kConfig = {
    {"config",
     {{"KEY", kConfigKeyType, "what to change"},
      {"VALUE", kConfigValueType, "the new value", Presence::Rest}},
     "changes the platform's configuration; the library asks anew each time",
     {"config eth 2\nInit", "config feature 27 0\nInit", "config mac1 02:00:5e:10:00:99\nInit"}},
    ChangeConfig,
    true};

}  // namespace onu
