#pragma once
#include <windows.h>

#include <string>

namespace vx {

// Where a registration goes: the classes of the machine (HKEY_CLASSES_ROOT, what regsvr32
// writes, which needs an administrator) or those of the current user
// (HKEY_CURRENT_USER\Software\Classes, which needs no rights beyond the user's own).
enum class RegistrationScope { Machine, User };

// Registers the type library (and with it the interfaces) and every creatable class of
// the roster: CLSID with InprocServer32 (ThreadingModel Apartment), ProgID
// "Vx_Main.<ClassName>", TypeLib and version. On failure nothing stays registered.
HRESULT registerServer(RegistrationScope scope = RegistrationScope::Machine) noexcept;
// Removes exactly what registerServer wrote in that scope.
HRESULT unregisterServer(RegistrationScope scope = RegistrationScope::Machine) noexcept;

// DllInstall: the command line "user" (in any case) registers or removes the current
// user's registration, an empty one the machine's; any other is E_INVALIDARG.
HRESULT install(bool install, const wchar_t* commandLine) noexcept;

// The registry keys (below the classes root) that registration writes for the classes.
std::wstring classKeyPath(const CLSID& clsid);
std::wstring progId(const std::wstring& className);

}  // namespace vx
