/// @file
/// Order and texts of the chip's objects.
#include "report/chip_report.h"

#include <algorithm>

#include "language/words.h"

namespace onu {

using virtual_onu::IngressClass;

FieldTexts::FieldTexts(std::string_view record, virtual_onu::ByteView bytes)
    : fields_(virtual_onu::DecodeRecord(*virtual_onu::FindRecord(record), bytes)) {}

std::string FieldTexts::operator[](std::string_view name) const {
  const auto found =
      std::ranges::find_if(fields_, [name](const auto& field) { return field.info->name == name; });
  return found == fields_.end() ? "" : found->value;
}

std::vector<const IngressClass*> ClassesAsTried(const virtual_onu::DirectionTables& direction) {
  std::vector<const IngressClass*> classes;
  classes.reserve(direction.classes.size());
  for (const auto& [index, ingressClass] : direction.classes) {
    classes.push_back(&ingressClass);
  }
  std::ranges::stable_sort(classes, [](const IngressClass* left, const IngressClass* right) {
    return left->cfg.priority > right->cfg.priority;
  });
  return classes;
}

std::string KeysOf(const IngressClass& ingressClass, const FieldTexts& flow) {
  Words keys;
  for (const virtual_onu::NamedValue& key : virtual_onu::KeyBits()) {
    if ((ingressClass.cfg.fieldMask & key.value) != 0) {
      keys.push_back(std::string(key.name) + "=" + flow[key.name]);
    }
  }
  return Join(keys, " ");
}

}  // namespace onu
