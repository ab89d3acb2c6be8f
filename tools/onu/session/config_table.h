/// @file
/// The configuration of the unit as people set it: one row for each key.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "device/chip_tables.h"
#include "language/argument_type.h"
#include "language/words.h"
#include "platform/platform.h"
#include "report/json.h"

namespace onu {

/// All that the keys set.
struct Settings {
  virtual_onu::PlatformConfig platform;
  virtual_onu::ChipLimits chip;
  bool performanceMarker = false;
};

struct ConfigKey {
  std::string_view key;
  std::string_view values;  ///< "N", "on|off", "MAC", "N VALUE"
  std::string_view text;
  bool fixed = false;  ///< the hardware: may be changed only before the unit is used

  /// Sets the key; throws a Failure that says what was expected.
  std::function<void(Settings&, const Words& values)> set;

  std::function<Json(const Settings&)> get;
};

/// All keys, in the order in which they are shown.
const std::vector<ConfigKey>& ConfigTable();

/// The row of a key, or null.
const ConfigKey* FindConfigKey(std::string_view key);

/// The arguments of the command that sets a key.
extern const ArgumentType kConfigKeyType;
extern const ArgumentType kConfigValueType;

/// The settings as an object, key by key.
Json ConfigToJson(const Settings& settings);

/// The settings as the words of `config` commands that make them.
std::vector<Words> ConfigToWords(const Settings& settings);

/// Sets one key from the words of a `config` command; throws a Failure.
void SetConfig(Settings& settings, const std::string& key, const Words& values);

}  // namespace onu
