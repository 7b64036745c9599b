#include "desktop/SystemProcess.h"

#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/Services.h"
#include "core/runtime/Text.h"

#include <cmath>

namespace vx {

namespace {

// WMI on this computer ("!//" alone) or on the server named after it.
constexpr std::wstring_view kWmiMoniker = L"winmgmts:{impersonationLevel=impersonate}!//";

// A memory figure as its text: rounded to two decimals, written as the runtime writes a
// number (with the user's decimal separator). An argument left out gets nothing.
void giveFigure(VARIANT* variable, double figure) {
    if (!variable || isMissing(*variable)) return;
    writeBack(*variable, *Variant::fromText(toText(*Variant::fromDouble(std::nearbyint(figure * 100.0) / 100.0))));
}

}  // namespace

std::wstring SystemProcess::processQuery(std::wstring_view imageName) {
    // The name goes into the query between quotes; WMI reads a quote or a backslash in it
    // as the end of the text or an escape, which would let a name widen the query.
    if (imageName.find_first_of(std::wstring_view(L"'\\\0", 3)) != std::wstring_view::npos) return {};
    return L"select * from Win32_Process where Name='" + std::wstring(imageName) + L"'";
}

HRESULT SystemProcess::ShutDownSystem(Flag_ShutDown GoShutDown, VARIANT_BOOL) {
    // No privilege is asked for; a refusal is not reported.
    return guard([&] { service<SessionService>().exitWindows(static_cast<UINT>(GoShutDown), 0); });
}

HRESULT SystemProcess::GetMemorySystem(VARIANT* dwTotalGB, VARIANT* dwTotalMB, VARIANT* dwTotalKB) {
    return guard([&] {
        MEMORYSTATUSEX status{};
        status.dwLength = sizeof status;
        if (!GlobalMemoryStatusEx(&status)) status.ullTotalPhys = 0;
        const double kilobytes = static_cast<double>(status.ullTotalPhys) / 1024.0;
        giveFigure(dwTotalGB, kilobytes / 1024.0 / 1024.0);
        giveFigure(dwTotalMB, kilobytes / 1024.0);
        giveFigure(dwTotalKB, kilobytes);
    });
}

HRESULT SystemProcess::KillProcess(BSTR KillName, VARIANT RemoveServer) {
    // Every failing step is skipped: a name that matches nothing, a server that cannot be
    // reached, a process that cannot be ended.
    return guard([&] {
        for (const std::wstring& name : split(viewOf(KillName), L",")) {
            tryStatement([&] {
                const std::wstring query = processQuery(name);
                if (query.empty()) return;
                const VARIANT& server = deref(RemoveServer);
                std::wstring moniker(kWmiMoniker);
                if (!isMissing(server) && !isNull(server)) moniker += toText(server);
                const LateBound wmi = LateBound::bind(moniker);
                const LateBound processes(*wmi.call(L"ExecQuery", {Variant::fromText(query)}));
                processes.forEach([](const VARIANT& process) {
                    tryStatement([&] { LateBound(process).call(L"Terminate"); });
                });
            });
        }
    });
}

}  // namespace vx
