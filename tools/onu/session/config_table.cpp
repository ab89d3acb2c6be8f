/// @file
/// The table of configuration keys.
#include "session/config_table.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "base/bytes.h"
#include "base/text.h"
#include "language/failure.h"

namespace onu {

namespace {

using virtual_onu::ChipLimits;
using virtual_onu::PlatformConfig;

constexpr std::uint32_t kMaxPorts = 32;
constexpr std::uint32_t kMaxNumber = std::numeric_limits<std::uint32_t>::max();

[[noreturn]] void Reject(const std::string& expected, const Words& values) {
  throw WrongUse("expected " + expected + ", got " +
                 (values.empty() ? "nothing" : Quote(Join(values, " "))));
}

std::uint32_t ReadNumber(const Words& values, std::uint32_t max) {
  const std::optional<std::uint32_t> number =
      values.size() == 1 ? ParseNumber(values.front()) : std::nullopt;
  if (!number || *number > max) {
    Reject("a number from 0 to " + std::to_string(max), values);
  }
  return *number;
}

bool ReadSwitch(const Words& values) {
  if (values.size() != 1 || (values.front() != "on" && values.front() != "off")) {
    Reject("on or off", values);
  }
  return values.front() == "on";
}

ConfigKey NumberKey(std::string_view key, std::uint32_t PlatformConfig::*number,
                    std::string_view text, bool fixed = false, std::uint32_t max = kMaxNumber) {
  return {key,
          "N",
          text,
          fixed,
          [number, max](Settings& settings, const Words& values) {
            settings.platform.*number = ReadNumber(values, max);
          },
          [number](const Settings& settings) { return Json(settings.platform.*number); }};
}

ConfigKey LimitKey(std::string_view key, std::size_t ChipLimits::*limit, std::string_view text) {
  return {key,
          "N",
          text,
          true,
          [limit](Settings& settings, const Words& values) {
            settings.chip.*limit = ReadNumber(values, kMaxNumber);
          },
          [limit](const Settings& settings) { return Json(settings.chip.*limit); }};
}

ConfigKey SwitchKey(std::string_view key, bool PlatformConfig::*flag, std::string_view text) {
  return {key,
          "on|off",
          text,
          false,
          [flag](Settings& settings, const Words& values) {
            settings.platform.*flag = ReadSwitch(values);
          },
          [flag](const Settings& settings) { return Json(settings.platform.*flag); }};
}

ConfigKey MacKey(std::string_view key, virtual_onu::MacAddressBytes PlatformConfig::*mac,
                 std::string_view text) {
  return {key,
          "MAC",
          text,
          false,
          [mac](Settings& settings, const Words& values) {
            const auto address =
                values.size() == 1 ? virtual_onu::ParseMac(values.front()) : std::nullopt;
            if (!address) {
              Reject("a MAC address (02:00:5e:10:00:01)", values);
            }
            settings.platform.*mac = *address;
          },
          [mac](const Settings& settings) {
            return Json(virtual_onu::FormatMac(settings.platform.*mac));
          }};
}

ConfigKey BoardKey() {
  return {"board",
          "TEXT",
          "the board identifier",
          false,
          [](Settings& settings, const Words& values) {
            settings.platform.boardId = Join(values, " ");
          },
          [](const Settings& settings) { return Json(settings.platform.boardId); }};
}

void SetFeature(Settings& settings, const Words& values) {
  const bool two = values.size() == 2;
  const std::optional<std::uint32_t> feature = two ? ParseNumber(values[0]) : std::nullopt;
  const std::optional<std::uint32_t> value = two ? ParseNumber(values[1]) : std::nullopt;
  if (!feature || !value) {
    Reject("the number of a feature switch and its value (27 1)", values);
  }
  settings.platform.features[*feature] = *value;
}

ConfigKey FeatureKey() {
  return {"feature",
          "N VALUE",
          "a feature switch; those not set are 0",
          false,
          SetFeature,
          [](const Settings& settings) {
            Json features = Json::object();
            for (const auto& [feature, value] : settings.platform.features) {
              features[std::to_string(feature)] = value;
            }
            return features;
          }};
}

ConfigKey MarkerKey() {
  return {"performance-marker",
          "on|off",
          "the marker file that selects performance mode for the next start",
          false,
          [](Settings& settings, const Words& values) {
            settings.performanceMarker = ReadSwitch(values);
          },
          [](const Settings& settings) { return Json(settings.performanceMarker); }};
}

std::vector<ConfigKey> MakeTable() {
  return {
      NumberKey("eth", &PlatformConfig::ethPorts, "number of Ethernet UNI ports", true, kMaxPorts),
      NumberKey("fe", &PlatformConfig::fePorts, "number of Fast-Ethernet ports"),
      NumberKey("ge", &PlatformConfig::gePorts, "number of Gigabit-Ethernet ports"),
      NumberKey("uplink", &PlatformConfig::uplinkPort, "port number of the uplink"),
      NumberKey("port-revert", &PlatformConfig::portRevert,
                "1 on boards that number their LAN ports in reverse", true),
      NumberKey("factory-mode", &PlatformConfig::factoryMode, "1 in factory mode"),
      BoardKey(),
      MacKey("mac1", &PlatformConfig::firstMac, "the unit's first MAC address"),
      MacKey("mac2", &PlatformConfig::secondMac, "the unit's second MAC address"),
      FeatureKey(),
      MarkerKey(),
      SwitchKey("fail-mac", &PlatformConfig::macQueryFails, "makes VOS_OntInfoGetMac fail"),
      SwitchKey("fail-log", &PlatformConfig::logCreateFails, "makes LOG_Create fail"),
      SwitchKey("fail-task", &PlatformConfig::taskSpawnFails, "makes VOS_TaskSpawn fail"),
      SwitchKey("fail-device", &PlatformConfig::openDeviceFails, "makes VOS_OpenDevice fail"),
      SwitchKey("fail-socket", &PlatformConfig::monitorSocketFails,
                "makes socket() for the kernel monitor fail"),
      SwitchKey("run-tasks", &PlatformConfig::runTasks,
                "runs spawned tasks on threads; off, they are only recorded"),
      LimitKey("max-classes", &ChipLimits::classes, "ingress classes that a direction holds"),
      LimitKey("max-flows", &ChipLimits::flowsPerClass, "flows that an ingress class holds"),
      LimitKey("max-actions", &ChipLimits::vlanActions, "VLAN actions that a direction holds"),
  };
}

/// The words behind the key that set a value.
Words ValueWords(const Json& value) {
  if (value.is_boolean()) {
    return {value.get<bool>() ? "on" : "off"};
  }
  return {value.is_string() ? value.get<std::string>() : value.dump()};
}

bool IsConfigKey(const std::string& word) {
  return FindConfigKey(word) != nullptr;
}

std::vector<Choice> ConfigKeys() {
  std::vector<Choice> choices;
  for (const ConfigKey& key : ConfigTable()) {
    choices.push_back({std::string(key.key), std::string(key.values), std::string(key.text)});
  }
  return choices;
}

}  // namespace

constinit const ArgumentType kConfigKeyType = {"a key of the configuration", IsConfigKey,
                                               ConfigKeys, "Keys of the configuration"};
constinit const ArgumentType kConfigValueType = {"a value of the key", AcceptsAll, NoChoices};

const std::vector<ConfigKey>& ConfigTable() {
  static const std::vector<ConfigKey> table = MakeTable();
  return table;
}

const ConfigKey* FindConfigKey(std::string_view key) {
  const auto found = std::ranges::find(ConfigTable(), key, &ConfigKey::key);
  return found == ConfigTable().end() ? nullptr : &*found;
}

Json ConfigToJson(const Settings& settings) {
  Json config = Json::object();
  for (const ConfigKey& key : ConfigTable()) {
    config[std::string(key.key)] = key.get(settings);
  }
  return config;
}

std::vector<Words> ConfigToWords(const Settings& settings) {
  std::vector<Words> lines;
  const Json config = ConfigToJson(settings);
  for (const auto& [key, value] : config.items()) {
    if (!value.is_object()) {
      lines.push_back({key, ValueWords(value).front()});
      continue;
    }
    for (const auto& [number, setting] : value.items()) {
      lines.push_back({key, number, ValueWords(setting).front()});
    }
  }
  return lines;
}

void SetConfig(Settings& settings, const std::string& key, const Words& values) {
  const ConfigKey* row = FindConfigKey(key);
  if (row == nullptr) {
    throw WrongUse("expected a key of the configuration, got " + Quote(key) +
                   Suggestion(key, ChoiceWords(kConfigKeyType)) + " (show config lists the keys)");
  }
  try {
    row->set(settings, values);
  } catch (const Failure& failure) {
    throw failure.at(key);
  }
}

}  // namespace onu
