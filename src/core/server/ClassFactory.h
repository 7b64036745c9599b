#pragma once
#include "core/server/Roster.h"

#include "core/runtime/Platform.h"

namespace vx {

// The class object DllGetClassObject hands out for a creatable class of the roster.
HRESULT getClassFactory(REFCLSID clsid, REFIID riid, void** ppv) noexcept;

}  // namespace vx
