/// @file
/// Reads the library's tables in this process. Only programs that link the library as an archive
/// can: the shared object hides its tables.
#pragma once

#include "consistency/library_tables.h"

namespace virtual_onu {

/// The used entries of the library's tables. Nobody may call the library meanwhile.
LibraryTables ReadLibraryTables();

}  // namespace virtual_onu
