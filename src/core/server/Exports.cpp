// The four exports of an in-process automation server, and DllInstall for a registration
// of the current user's own (regsvr32 /n /i:user).
#include "core/server/ClassFactory.h"
#include "core/runtime/Module.h"
#include "core/server/Registration.h"

#include <windows.h>

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) DisableThreadLibraryCalls(instance);
    return TRUE;
}

HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID riid, LPVOID* ppv) {
    return vx::getClassFactory(clsid, riid, ppv);
}

HRESULT STDAPICALLTYPE DllCanUnloadNow() { return vx::module::canUnload() ? S_OK : S_FALSE; }

HRESULT STDAPICALLTYPE DllRegisterServer() { return vx::registerServer(); }

HRESULT STDAPICALLTYPE DllUnregisterServer() { return vx::unregisterServer(); }

HRESULT STDAPICALLTYPE DllInstall(BOOL install, LPCWSTR commandLine) { return vx::install(install != FALSE, commandLine); }

}  // extern "C"
