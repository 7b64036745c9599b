#include "core/runtime/Services.h"

#include "core/runtime/ComPtr.h"

#include <vector>

namespace vx {

HRESULT createObjectByName(const std::wstring& progId, IDispatch** object) noexcept {
    if (!object) return E_POINTER;
    *object = nullptr;
    CLSID clsid;
    HRESULT hr = !progId.empty() && progId[0] == L'{' ? CLSIDFromString(progId.c_str(), &clsid)
                                                       : CLSIDFromProgID(progId.c_str(), &clsid);
    if (FAILED(hr)) return hr;
    return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                            reinterpret_cast<void**>(object));
}

HRESULT getObjectByMoniker(const std::wstring& moniker, IDispatch** object) noexcept {
    if (!object) return E_POINTER;
    *object = nullptr;
    return CoGetObject(moniker.c_str(), nullptr, IID_IDispatch, reinterpret_cast<void**>(object));
}

DWORD startProcess(const std::string& commandLine, WORD showWindow) noexcept {
    try {
        STARTUPINFOA startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESHOWWINDOW;
        startup.wShowWindow = showWindow;
        PROCESS_INFORMATION process{};
        // CreateProcessA may write into the command line: it gets a copy of its own.
        std::vector<char> line(commandLine.begin(), commandLine.end());
        line.push_back('\0');
        if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
            return 0;
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        return process.dwProcessId;
    } catch (...) {
        return 0;
    }
}

}  // namespace vx
