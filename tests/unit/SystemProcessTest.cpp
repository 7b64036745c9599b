// Ds_SystemProcess: ending the session through a stand-in (a real call would end the test
// prefix's session), and ending processes by name through Wine's WMI behind a stand-in
// that records what is bound, asked and ended, and ends only this test's own processes
// (Wine's WMI finds processes but cannot end them).
#include "core/runtime/Convert.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/Services.h"

#include "FakeDispatch.h"
#include "TestSupport.h"
#include "Vx_Main.h"

#include <algorithm>
#include <string>
#include <vector>

using namespace vx;
using vxtest::call;
using vxtest::FakeDispatch;

namespace {

Variant text(const wchar_t* s) { return Variant::fromText(s); }

// The process token's privileges and whether each is enabled.
std::vector<BYTE> tokenPrivileges() {
    HANDLE token = nullptr;
    DWORD size = 0;
    std::vector<BYTE> data(4096);
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) {
        if (!GetTokenInformation(token, TokenPrivileges, data.data(), static_cast<DWORD>(data.size()), &size)) size = 0;
        CloseHandle(token);
    }
    data.resize(size);
    return data;
}

// Copies of the idle fixture under names of the test's own, running until ended.
class OwnProcesses {
public:
    OwnProcesses() {
        wchar_t path[MAX_PATH];
        GetModuleFileNameW(nullptr, path, MAX_PATH);
        const std::wstring fixture = std::wstring(path).substr(0, std::wstring(path).rfind(L'\\')) + L"\\vx_idle_fixture.exe";
        GetTempPathW(MAX_PATH, path);
        folder_ = std::wstring(path) + L"vx-kill-" + std::to_wstring(GetCurrentProcessId());
        CreateDirectoryW(folder_.c_str(), nullptr);
        for (const wchar_t* name : kNames) {
            std::wstring line = folder_ + L"\\" + name;
            CopyFileW(fixture.c_str(), line.c_str(), FALSE);
            STARTUPINFOW si{};
            si.cb = sizeof si;
            PROCESS_INFORMATION pi{};
            if (CreateProcessW(line.c_str(), nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) {
                CloseHandle(pi.hThread);
                processes_.push_back(pi);
            }
        }
    }
    ~OwnProcesses() {
        for (const PROCESS_INFORMATION& p : processes_) end(p.dwProcessId), CloseHandle(p.hProcess);
        for (const wchar_t* name : kNames) DeleteFileW((folder_ + L"\\" + name).c_str());
        RemoveDirectoryW(folder_.c_str());
    }
    size_t count() const { return processes_.size(); }
    DWORD id(size_t i) const { return processes_.at(i).dwProcessId; }
    bool running(size_t i) const { return WaitForSingleObject(processes_.at(i).hProcess, 0) == WAIT_TIMEOUT; }
    // Ends the process if it is one of these (and only then).
    void end(DWORD id) const {
        for (const PROCESS_INFORMATION& p : processes_)
            if (p.dwProcessId == id && TerminateProcess(p.hProcess, 0)) WaitForSingleObject(p.hProcess, 30000);
    }

private:
    static constexpr const wchar_t* kNames[] = {L"vxkilla.exe", L"vxkillb.exe"};
    std::wstring folder_;
    std::vector<PROCESS_INFORMATION> processes_;
};

// Wine's WMI behind a stand-in that records the monikers bound and the queries run, and
// hands out each process found as a stand-in whose Terminate is recorded and carried out
// on the test's own processes only; one process may be made to refuse.
struct RecordingWmi {
    explicit RecordingWmi(const OwnProcesses& processes) : own(processes) {}
    const OwnProcesses& own;
    std::vector<std::wstring> monikers, queries;
    std::vector<DWORD> ended;
    DWORD refuses = 0;

    BindingService binding() {
        BindingService b = service<BindingService>();
        b.getObject = [this](const std::wstring& moniker, IDispatch** object) -> HRESULT {
            monikers.push_back(moniker);
            ComPtr<IDispatch> real;
            const HRESULT hr = getObjectByMoniker(moniker, real.put());
            if (FAILED(hr)) return hr;
            Variant wmi = FakeDispatch::make({{L"ExecQuery", [this, real](std::vector<Variant>& args) {
                queries.push_back(toText(*args.at(0)));
                std::vector<Variant> found;
                LateBound(*LateBound(real.get()).call(L"ExecQuery", {args.at(0)})).forEach([&](const VARIANT& p) {
                    const DWORD id = static_cast<DWORD>(toDouble(*LateBound(p).call(L"ProcessId")));
                    found.push_back(FakeDispatch::make({{L"Terminate", [this, id](std::vector<Variant>&) {
                        if (id == refuses) throw ComError(E_ACCESSDENIED);
                        ended.push_back(id);
                        own.end(id);
                        return Variant();
                    }}}));
                });
                return FakeDispatch::make({}, std::move(found));
            }}});
            (*object = dispatchOf(*wmi))->AddRef();
            return S_OK;
        };
        return b;
    }
};

constexpr wchar_t kLocal[] = L"winmgmts:{impersonationLevel=impersonate}!//";
std::wstring queryFor(const std::wstring& name) { return L"select * from Win32_Process where Name='" + name + L"'"; }

}  // namespace

TEST(SystemProcess, ShutDownPassesTheFlagUnchangedAndAsksForNoPrivilege) {
    std::vector<std::pair<UINT, DWORD>> calls;
    SessionService session = service<SessionService>();
    session.exitWindows = [&](UINT flags, DWORD reason) { return calls.emplace_back(flags, reason), FALSE; };
    ReplaceService<SessionService> using_(session);
    const std::vector<BYTE> privileges = tokenPrivileges();
    auto sp = vxtest::createObject(CLSID_Ds_SystemProcess);
    for (long flag : {0L, 1L, 2L, 8L, -1L}) EXPECT_EQ(call(sp.get(), L"ShutDownSystem", {Variant::fromLong(flag)}).errorNumber(), 0);
    call(sp.get(), L"ShutDownSystem", {Variant::fromLong(1), Variant::fromBool(true)});
    EXPECT_EQ(calls, (std::vector<std::pair<UINT, DWORD>>{{0, 0}, {1, 0}, {2, 0}, {8, 0}, {0xFFFFFFFF, 0}, {1, 0}}));
    EXPECT_FALSE(privileges.empty());
    EXPECT_EQ(tokenPrivileges(), privileges);
}

TEST(SystemProcess, KillProcessEndsTheNamedProcessesAndNothingElse) {
    const OwnProcesses own;
    ASSERT_EQ(own.count(), 2u);
    RecordingWmi wmi{own};
    ReplaceService<BindingService> using_(wmi.binding());
    auto sp = vxtest::createObject(CLSID_Ds_SystemProcess);

    // Let into the query, a quote would widen it to every process: such names are never asked.
    size_t everyone = 0;
    LateBound(*LateBound::bind(kLocal).call(L"ExecQuery", {text(L"select * from Win32_Process where Name='x' or Name like '%'")}))
        .forEach([&](const VARIANT&) { ++everyone; });
    EXPECT_GT(everyone, 2u);
    wmi.monikers.clear();
    wmi.queries.clear();
    for (const std::wstring& name : {std::wstring(L"x' or Name like '%"), std::wstring(L"x\\' or Name like \\'%"),
                                    std::wstring(L"vxkilla.exe\0' or Name like '%", 29)})
        EXPECT_EQ(call(sp.get(), L"KillProcess", {Variant::fromText(name)}).errorNumber(), 0);
    EXPECT_TRUE(wmi.monikers.empty() && wmi.queries.empty() && wmi.ended.empty());

    // One connection and one query a name; names are not trimmed, and a process that
    // refuses to end is skipped.
    wmi.refuses = own.id(0);
    EXPECT_EQ(call(sp.get(), L"KillProcess", {text(L"VXKILLA.EXE, vxkillb.exe")}).errorNumber(), 0);
    EXPECT_EQ(wmi.monikers, (std::vector<std::wstring>(2, kLocal)));
    EXPECT_EQ(wmi.queries, (std::vector<std::wstring>{queryFor(L"VXKILLA.EXE"), queryFor(L" vxkillb.exe")}));
    EXPECT_TRUE(wmi.ended.empty());
    wmi.refuses = 0;
    call(sp.get(), L"KillProcess", {text(L"vxkilla.exe,vxkillb.exe"), text(L"")});
    EXPECT_EQ(wmi.ended, (std::vector<DWORD>{own.id(0), own.id(1)}));
    EXPECT_FALSE(own.running(0) || own.running(1));

    // A server goes after the "//"; one that cannot be reached is no error.
    wmi.monikers.clear();
    EXPECT_EQ(call(sp.get(), L"KillProcess", {text(L"a.exe"), text(L"vx-no-such-computer")}).errorNumber(), 0);
    call(sp.get(), L"KillProcess", {text(L"a.exe"), Variant::null()});
    EXPECT_EQ(wmi.monikers, (std::vector<std::wstring>{std::wstring(kLocal) + L"vx-no-such-computer", kLocal}));
}
