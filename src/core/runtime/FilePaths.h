#pragma once
// File names as the system reads them.
#include <string>
#include <string_view>

namespace vx {

// The full name of a file (GetFullPathNameW): a relative name is taken from the current
// folder. A name the system cannot complete (or one holding a NUL) comes back as it is.
std::wstring fullPathName(std::wstring_view name);

}  // namespace vx
