#pragma once
// The type library embedded in the module as resource 1: the one source of every
// interface's members, dispatch identifiers, defaults and by-reference parameters.
#include "core/runtime/Platform.h"

namespace vx {

// The library (loaded once, kept while the module is loaded); null if it cannot be read.
ITypeLib* typeLibrary() noexcept;
// The type info of an interface or coclass of the library; a new reference, or null.
ITypeInfo* typeInfoOf(REFGUID guid) noexcept;

}  // namespace vx
