/// @file
/// The search through classes and flows.
#include "datapath/flow_search.h"

#include <algorithm>

#include "base/text.h"

namespace virtual_onu {
namespace {

using ClassEntry = std::map<std::uint32_t, IngressClass>::value_type;

std::vector<const ClassEntry*> InOrderOfTrial(const DirectionTables& tables) {
  std::vector<const ClassEntry*> classes;
  classes.reserve(tables.classes.size());
  for (const ClassEntry& entry : tables.classes) {
    classes.push_back(&entry);
  }
  std::stable_sort(classes.begin(), classes.end(),
                   [](const ClassEntry* left, const ClassEntry* right) {
                     return left->second.cfg.priority > right->second.cfg.priority;
                   });
  return classes;
}

KeyComparison Describe(const Key& key, const KeyValue& ofFlow,
                       const std::optional<KeyValue>& ofFrame, bool equal) {
  return {std::string(key.name), key.text(ofFlow), ofFrame ? key.text(*ofFrame) : "none", equal};
}

/// Without a trial the comparison ends at the first difference; with one it shows every key.
bool Matches(const IngressFlowRule& flow, std::uint32_t fieldMask, const ReceivedFrame& frame,
             FlowTrial* trial) {
  bool matched = true;
  for (const Key& key : AllKeys()) {
    if ((fieldMask & key.bit) == 0) {
      continue;
    }
    const KeyValue ofFlow = key.ofFlow(flow);
    const std::optional<KeyValue> ofFrame = key.ofFrame(frame);
    const bool equal = ofFrame == ofFlow;
    if (trial) {
      trial->keys.push_back(Describe(key, ofFlow, ofFrame, equal));
    } else if (!equal) {
      return false;
    }
    matched = matched && equal;
  }
  // Required: unknown-key-never-matches
  const std::uint32_t unknown = UnknownKeyBits(fieldMask);
  if (trial && unknown != 0) {
    trial->keys.push_back({"unknown key", HexNumber(unknown), "none", false});
  }
  return matched && unknown == 0;
}

/// The first matching flow of a class, or null.
const std::pair<const std::uint32_t, IngressFlowRule>* FindFlow(const IngressClass& ingressClass,
                                                                const ReceivedFrame& frame,
                                                                ClassTrial* classTrial) {
  for (const auto& entry : ingressClass.flows) {
    FlowTrial trial;
    trial.flowIndex = entry.first;
    const bool matched =
        Matches(entry.second, ingressClass.cfg.fieldMask, frame, classTrial ? &trial : nullptr);
    if (classTrial) {
      trial.matched = matched;
      classTrial->flows.push_back(std::move(trial));
    }
    if (matched) {
      return &entry;
    }
  }
  return nullptr;
}

}  // namespace

Classification Classify(const DirectionTables& tables, const ReceivedFrame& frame,
                        std::vector<ClassTrial>* trials) {
  for (const ClassEntry* entry : InOrderOfTrial(tables)) {
    const auto& [icIndex, ingressClass] = *entry;
    const IngressClassCfg& cfg = ingressClass.cfg;
    ClassTrial* trial = nullptr;
    if (trials) {
      trial = &trials->emplace_back(ClassTrial{icIndex, cfg.priority, cfg.fieldMask, {}});
    }
    if (const auto* found = FindFlow(ingressClass, frame, trial)) {
      return {icIndex, found->first, &found->second};
    }
  }
  return {};
}

}  // namespace virtual_onu
