/// @file
/// The chip's objects as rows of tables.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "device/chip_tables.h"
#include "device/records.h"
#include "report/chip_report.h"
#include "report/record_report.h"
#include "report/report_table.h"

namespace onu {

/// How many flows, and how many port actions, name an action.
struct References {
  std::size_t flows = 0;
  std::size_t portActions = 0;
};

/// An object of the chip: its record, and what belongs to it.
struct ObjectRow {
  Json json;  ///< all fields
  FieldTexts fields;
  const virtual_onu::IngressClass* ingressClass = nullptr;  ///< of a class and of a flow
  References references = {};                               ///< to an action
};

template <typename Record>
ObjectRow RowOf(std::string_view name, const Record& record) {
  return {FieldsToJson(*virtual_onu::FindRecord(name), BytesOf(record)),
          FieldTexts(name, BytesOf(record))};
}

/// For programs, all fields of the record.
Column<ObjectRow> AllFields();

/// For people, a field of the record.
Column<ObjectRow> Field(std::string_view heading, std::string_view name);

/// The classes of both directions, upstream first.
std::vector<const virtual_onu::IngressClass*> AllClassesAsTried(
    const virtual_onu::ChipTables& tables);

}  // namespace onu
