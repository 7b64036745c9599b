// Ds_SystemProcess: ending the session through a stand-in (a real call would end the test
// prefix's session), and ending processes by name through WMI: with stand-in objects for
// the moniker, the queries and the calls, and with Wine's own WMI behind a stand-in that
// records Terminate, which ends only the processes this test started.
#include "core/runtime/Convert.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/Services.h"
#include "core/runtime/Text.h"
#include "desktop/SystemProcess.h"

#include "FakeDispatch.h"
#include "TestSupport.h"
#include "Vx_Main.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <vector>

using namespace vx;
using vxtest::call;
using vxtest::FakeDispatch;

namespace {

Variant text(const wchar_t* s) { return Variant::fromText(s); }

constexpr wchar_t kLocalWmi[] = L"winmgmts:{impersonationLevel=impersonate}!//";

// The process token's privileges and whether each is enabled.
std::vector<BYTE> tokenPrivileges() {
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) return {};
    DWORD size = 0;
    GetTokenInformation(token, TokenPrivileges, nullptr, 0, &size);
    std::vector<BYTE> data(size);
    if (size == 0 || !GetTokenInformation(token, TokenPrivileges, data.data(), size, &size)) data.clear();
    CloseHandle(token);
    return data;
}

// WMI as a stand-in: the monikers bound and queries run, and processes by name whose
// Terminate is recorded. A query finds the processes named between its quotes.
struct FakeWmi {
    std::vector<std::wstring> monikers, queries, terminated;
    std::vector<std::wstring> processes{L"a.exe", L"b.exe", L"A.EXE", L"c.exe"};
    std::set<std::wstring> refuseTerminate;
    bool refuseBinding = false;

    BindingService binding() {
        BindingService b = service<BindingService>();
        b.getObject = [this](const std::wstring& moniker, IDispatch** object) -> HRESULT {
            monikers.push_back(moniker);
            *object = nullptr;
            if (refuseBinding) return 0x800401E4;  // MK_E_SYNTAX: an unknown computer
            auto wmi = FakeDispatch::create();
            wmi->on(L"ExecQuery", [this](std::vector<Variant>& args) { return execQuery(toText(*args.at(0))); });
            *object = wmi.detach();
            return S_OK;
        };
        return b;
    }

    Variant execQuery(const std::wstring& query) {
        queries.push_back(query);
        std::vector<Variant> found;
        for (const std::wstring& name : processes) {
            if (inStr(query, L"Name='" + name + L"'", Compare::Text) == 0) continue;
            auto process = FakeDispatch::create();
            process->on(L"Terminate", [this, name](std::vector<Variant>&) -> Variant {
                if (refuseTerminate.count(name)) throw ComError(E_ACCESSDENIED);
                terminated.push_back(name);
                return Variant::fromLong(0);
            });
            found.push_back(process->asVariant());
        }
        auto set = FakeDispatch::create();
        set->elements(std::move(found));
        return set->asVariant();
    }
};

std::wstring queryFor(const std::wstring& name) { return L"select * from Win32_Process where Name='" + name + L"'"; }

}  // namespace

TEST(SystemProcess, ShutDownPassesTheFlagUnchangedAndAsksForNoPrivilege) {
    std::vector<std::pair<UINT, DWORD>> calls;
    SessionService session = service<SessionService>();
    session.exitWindows = [&](UINT flags, DWORD reason) {
        calls.emplace_back(flags, reason);
        return FALSE;  // refused: not reported
    };
    ReplaceService<SessionService> using_(session);
    const std::vector<BYTE> privileges = tokenPrivileges();
    auto sp = vxtest::createObject(CLSID_Ds_SystemProcess);
    for (LONG flag : {0L, 1L, 2L, 8L, -1L}) EXPECT_EQ(call(sp.get(), L"ShutDownSystem", {Variant::fromLong(flag)}).errorNumber(), 0);
    EXPECT_EQ(call(sp.get(), L"ShutDownSystem", {Variant::fromLong(1), Variant::fromBool(true)}).errorNumber(), 0);
    ASSERT_EQ(calls.size(), 6u);
    const UINT expected[] = {0u, 1u, 2u, 8u, 0xFFFFFFFFu, 1u};
    for (size_t i = 0; i < calls.size(); ++i) {
        EXPECT_EQ(calls[i].first, expected[i]);
        EXPECT_EQ(calls[i].second, 0u);
    }
    EXPECT_EQ(tokenPrivileges(), privileges);
}

TEST(SystemProcess, MemoryFiguresGoToTheCallersVariables) {
    auto sp = vxtest::createObject(CLSID_Ds_SystemProcess);
    Variant gb, mb = Variant::fromLong(7), kb;
    ASSERT_EQ(call(sp.get(), L"GetMemorySystem", {vxtest::byRef(gb), vxtest::byRef(mb), vxtest::byRef(kb)}).errorNumber(), 0);
    ASSERT_TRUE(gb.type() == VT_BSTR && mb.type() == VT_BSTR && kb.type() == VT_BSTR);
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof status;
    ASSERT_TRUE(GlobalMemoryStatusEx(&status));
    EXPECT_NEAR(toDouble(*kb), status.ullTotalPhys / 1024.0, 0.006);
    EXPECT_NEAR(toDouble(*mb), toDouble(*kb) / 1024.0, 0.006);
    EXPECT_NEAR(toDouble(*gb), toDouble(*mb) / 1024.0, 0.006);
    // Through the interface, arguments left out are simply not filled.
    auto typed = sp.query<_Ds_SystemProcess>();
    EXPECT_EQ(typed->GetMemorySystem(nullptr, nullptr, nullptr), S_OK);
}

TEST(SystemProcess, KillProcessQueriesEachNameAndTerminatesWhatItFinds) {
    FakeWmi wmi;
    ReplaceService<BindingService> using_(wmi.binding());
    auto sp = vxtest::createObject(CLSID_Ds_SystemProcess);
    ASSERT_EQ(call(sp.get(), L"KillProcess", {text(L"a.exe,c.exe")}).errorNumber(), 0);
    EXPECT_EQ(wmi.monikers, std::vector<std::wstring>(2, kLocalWmi));  // one connection a name
    EXPECT_EQ(wmi.queries, (std::vector<std::wstring>{queryFor(L"a.exe"), queryFor(L"c.exe")}));
    // Names compare as WMI compares them (here: without regard to case), and every match ends.
    EXPECT_EQ(wmi.terminated, (std::vector<std::wstring>{L"a.exe", L"A.EXE", L"c.exe"}));

    // Names are never trimmed: " b.exe" is no process's name.
    wmi.terminated.clear();
    wmi.queries.clear();
    call(sp.get(), L"KillProcess", {text(L"a.exe, b.exe")});
    EXPECT_EQ(wmi.queries.back(), queryFor(L" b.exe"));
    EXPECT_EQ(wmi.terminated, (std::vector<std::wstring>{L"a.exe", L"A.EXE"}));

    // A server goes after the "//"; "" names this computer.
    wmi.monikers.clear();
    call(sp.get(), L"KillProcess", {text(L"z.exe"), text(L"server7")});
    call(sp.get(), L"KillProcess", {text(L"z.exe"), text(L"")});
    call(sp.get(), L"KillProcess", {text(L"z.exe"), Variant::null()});
    EXPECT_EQ(wmi.monikers, (std::vector<std::wstring>{std::wstring(kLocalWmi) + L"server7", kLocalWmi, kLocalWmi}));
}

TEST(SystemProcess, KillProcessSkipsEveryFailure) {
    FakeWmi wmi;
    ReplaceService<BindingService> using_(wmi.binding());
    auto sp = vxtest::createObject(CLSID_Ds_SystemProcess);
    // A process that cannot be ended does not stop the others.
    wmi.refuseTerminate = {L"a.exe"};
    EXPECT_EQ(call(sp.get(), L"KillProcess", {text(L"a.exe,b.exe")}).errorNumber(), 0);
    EXPECT_EQ(wmi.terminated, (std::vector<std::wstring>{L"A.EXE", L"b.exe"}));
    // A computer that cannot be reached: every name is tried, nothing raised.
    wmi.refuseBinding = true;
    wmi.monikers.clear();
    EXPECT_EQ(call(sp.get(), L"KillProcess", {text(L"a.exe,b.exe"), text(L"nowhere")}).errorNumber(), 0);
    EXPECT_EQ(wmi.monikers.size(), 2u);
    // A server that is no text, and an empty list of names.
    wmi.refuseBinding = false;
    wmi.queries.clear();
    EXPECT_EQ(call(sp.get(), L"KillProcess", {text(L"a.exe"), Variant::fromDispatch(nullptr)}).errorNumber(), 0);
    EXPECT_EQ(call(sp.get(), L"KillProcess", {text(L"")}).errorNumber(), 0);
    EXPECT_TRUE(wmi.queries.empty());
}

TEST(SystemProcess, ANameCannotWidenTheQuery) {
    FakeWmi wmi;
    ReplaceService<BindingService> using_(wmi.binding());
    auto sp = vxtest::createObject(CLSID_Ds_SystemProcess);
    const std::wstring hostile[] = {L"x' or Name like '%", L"x\\' or Name like \\'%", L"a.exe'--",
                                    std::wstring(L"a.exe\0' or Name like '%", 23)};
    for (const std::wstring& name : hostile) {
        EXPECT_EQ(SystemProcess::processQuery(name), L"");
        EXPECT_EQ(call(sp.get(), L"KillProcess", {Variant::fromText(name)}).errorNumber(), 0);
    }
    EXPECT_TRUE(wmi.queries.empty());
    EXPECT_TRUE(wmi.terminated.empty());
    // The other names of the list still count.
    call(sp.get(), L"KillProcess", {text(L"x' or Name like '%,b.exe")});
    EXPECT_EQ(wmi.queries, std::vector<std::wstring>{queryFor(L"b.exe")});
    EXPECT_EQ(wmi.terminated, std::vector<std::wstring>{L"b.exe"});
}

// ---- against Wine's WMI and processes of the test's own ----

namespace {

// Copies of the idle fixture under names of this test's own, started and ended here.
class OwnProcesses {
public:
    OwnProcesses() {
        wchar_t exe[MAX_PATH];
        GetModuleFileNameW(nullptr, exe, MAX_PATH);
        std::wstring bin(exe);
        bin.resize(bin.find_last_of(L'\\') + 1);
        wchar_t temp[MAX_PATH];
        GetTempPathW(MAX_PATH, temp);
        folder_ = std::wstring(temp) + L"vx-kill-" + std::to_wstring(GetCurrentProcessId());
        CreateDirectoryW(folder_.c_str(), nullptr);
        for (const wchar_t* name : {L"vxkilla.exe", L"vxkillb.exe"}) {
            const std::wstring path = folder_ + L"\\" + name;
            CopyFileW((bin + L"vx_idle_fixture.exe").c_str(), path.c_str(), FALSE);
            std::wstring line = L"\"" + path + L"\" 120";
            STARTUPINFOW si{};
            si.cb = sizeof si;
            PROCESS_INFORMATION pi{};
            if (CreateProcessW(nullptr, &line[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) {
                CloseHandle(pi.hThread);
                processes_.push_back(pi);
            }
        }
    }
    ~OwnProcesses() {
        for (const PROCESS_INFORMATION& p : processes_) {
            TerminateProcess(p.hProcess, 1);
            WaitForSingleObject(p.hProcess, 10000);
            CloseHandle(p.hProcess);
        }
        for (const wchar_t* name : {L"vxkilla.exe", L"vxkillb.exe"}) DeleteFileW((folder_ + L"\\" + name).c_str());
        RemoveDirectoryW(folder_.c_str());
    }
    size_t count() const { return processes_.size(); }
    DWORD id(size_t i) const { return processes_.at(i).dwProcessId; }
    bool owns(DWORD id) const {
        return std::any_of(processes_.begin(), processes_.end(), [id](const PROCESS_INFORMATION& p) { return p.dwProcessId == id; });
    }
    bool running(size_t i) const { return WaitForSingleObject(processes_.at(i).hProcess, 0) == WAIT_TIMEOUT; }
    // Ends process i (for what WMI cannot do itself), waiting until it has.
    void end(DWORD id) {
        for (const PROCESS_INFORMATION& p : processes_)
            if (p.dwProcessId == id) {
                TerminateProcess(p.hProcess, 0);
                WaitForSingleObject(p.hProcess, 10000);
            }
    }

private:
    std::wstring folder_;
    std::vector<PROCESS_INFORMATION> processes_;
};

// The real WMI, with each process found handed out as a stand-in whose Terminate is
// recorded and carried out only for the test's own processes.
struct RecordingWmi {
    OwnProcesses& own;
    std::vector<std::wstring> queries;
    std::vector<std::pair<std::wstring, DWORD>> terminated;

    BindingService binding() {
        BindingService b = service<BindingService>();
        b.getObject = [this](const std::wstring& moniker, IDispatch** object) -> HRESULT {
            ComPtr<IDispatch> real;
            const HRESULT hr = getObjectByMoniker(moniker, real.put());
            if (FAILED(hr)) return hr;
            auto wmi = FakeDispatch::create();
            wmi->on(L"ExecQuery", [this, real](std::vector<Variant>& args) {
                queries.push_back(toText(*args.at(0)));
                std::vector<Variant> found;
                LateBound(*LateBound(real.get()).call(L"ExecQuery", {args.at(0)})).forEach([&](const VARIANT& p) {
                    const LateBound process(p);
                    // (Wine's WMI objects give their properties to a call as a script makes it.)
                    const std::wstring name = toText(*process.call(L"Name"));
                    const DWORD id = static_cast<DWORD>(toDouble(*process.call(L"ProcessId")));
                    auto stand = FakeDispatch::create();
                    stand->on(L"Terminate", [this, name, id](std::vector<Variant>&) {
                        terminated.emplace_back(name, id);
                        own.end(id);  // nothing else is ever ended
                        return Variant::fromLong(0);
                    });
                    found.push_back(stand->asVariant());
                });
                auto set = FakeDispatch::create();
                set->elements(std::move(found));
                return set->asVariant();
            });
            *object = wmi.detach();
            return S_OK;
        };
        return b;
    }
};

}  // namespace

TEST(SystemProcessWmi, KillProcessEndsTheNamedProcessesAndNothingElse) {
    OwnProcesses own;
    ASSERT_EQ(own.count(), 2u);
    RecordingWmi wmi{own, {}, {}};
    ReplaceService<BindingService> using_(wmi.binding());
    auto sp = vxtest::createObject(CLSID_Ds_SystemProcess);

    // The hostile name would find every process were it let into the query.
    size_t everyone = 0;
    LateBound(*LateBound::bind(kLocalWmi).call(L"ExecQuery", {text(L"select * from Win32_Process where Name='x' or Name like '%'")}))
        .forEach([&](const VARIANT&) { ++everyone; });
    EXPECT_GT(everyone, 2u);
    call(sp.get(), L"KillProcess", {text(L"x' or Name like '%")});
    EXPECT_TRUE(wmi.terminated.empty());
    EXPECT_TRUE(own.running(0) && own.running(1));

    // A space after the comma is part of the next name, which no process has.
    call(sp.get(), L"KillProcess", {text(L"VXKILLA.EXE, vxkillb.exe")});
    ASSERT_EQ(wmi.terminated.size(), 1u);
    EXPECT_EQ(wmi.terminated[0].second, own.id(0));
    EXPECT_FALSE(own.running(0));
    EXPECT_TRUE(own.running(1));

    call(sp.get(), L"KillProcess", {text(L"vxkilla.exe,vxkillb.exe")});
    ASSERT_EQ(wmi.terminated.size(), 2u);
    EXPECT_EQ(wmi.terminated[1].second, own.id(1));
    EXPECT_FALSE(own.running(1));
    for (const auto& t : wmi.terminated) EXPECT_TRUE(own.owns(t.second)) << t.first;
}
