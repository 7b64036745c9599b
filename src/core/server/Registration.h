#pragma once
#include <windows.h>

#include <string>

namespace vx {

// Registers the type library (and with it the interfaces) and every creatable class of
// the roster: CLSID with InprocServer32 (ThreadingModel Apartment), ProgID
// "Vx_Main.<ClassName>", TypeLib and version. On failure nothing stays registered.
HRESULT registerServer() noexcept;
// Removes exactly what registerServer wrote.
HRESULT unregisterServer() noexcept;

// The registry keys (under HKEY_CLASSES_ROOT) that registration writes for the classes.
std::wstring classKeyPath(const CLSID& clsid);
std::wstring progId(const std::wstring& className);

}  // namespace vx
