// Ds_RunShell through the process service: the command lines and window styles it
// starts, what it asks of the shell, the Open With fallback and the wait.
// tests/host/launch.vbs starts real programs, documents and control-panel items.
#include "core/runtime/MessageLoop.h"
#include "core/runtime/Services.h"

#include "TestSupport.h"
#include "Vx_Main.h"
#include "Vx_MainEnums.h"

#include <map>
#include <optional>
#include <tuple>
#include <string>
#include <vector>

using namespace vx;
using vxtest::call;

namespace {

// Every control-panel item and shell dialog, as the library has always started them.
const std::map<LONG, std::string> kCommandLines = {
    {0, "rundll32.exe shell32.dll,Control_RunDLL"},
    {1, "rundll32.exe shell32.dll,Control_RunDLL joy.cpl"},
    {2, "rundll32.exe shell32.dll,Control_RunDLL ups.cpl"},
    {3, "rundll32.exe shell32.dll,Control_RunDLL intl.cpl"},
    {4, "rundll32.exe shell32.dll,Control_RunDLL desk.cpl"},
    {5, "rundll32.exe shell32.dll,Control_RunDLL main.cpl"},
    {6, "rundll32.exe shell32.dll,Control_RunDLL ports.cpl"},
    {9, "rundll32.exe shell32.dll,Control_RunDLL ncpa.cpl"},
    {10, "rundll32.exe shell32.dll,Control_RunDLL mmsys.cpl"},
    {11, "rundll32.exe shell32.dll,Control_RunDLL access.cpl"},
    {12, "rundll32.exe shell32.dll,Control_RunDLL sysdm.cpl"},
    {13, "rundll32.exe shell32.dll,Control_RunDLL appwiz.cpl"},
    {15, "rundll32.exe shell32.dll,Control_RunDLL srvmgr.cpl"},
    {16, "rundll32.exe shell32.dll,Control_RunDLL netcpl.cpl"},
    {17, "rundll32.exe shell32.dll,Control_RunDLL themes.cpl"},
    {18, "rundll32.exe shell32.dll,Control_RunDLL inetcpl.cpl"},
    {19, "rundll32.exe shell32.dll,Control_RunDLL tweakui.cpl"},
    {21, "rundll32.exe shell32.dll,Control_RunDLL mlcfg32.cpl"},
    {22, "rundll32.exe shell32.dll,Control_RunDLL wgpocpl.cpl"},
    {23, "rundll32.exe shell32.dll,Control_RunDLL odbccp32.cpl"},
    {24, "rundll32.exe shell32.dll,Control_RunDLL password.cpl"},
    {25, "rundll32.exe shell32.dll,Control_RunDLL powercfg.cpl"},
    {26, "rundll32.exe shell32.dll,Control_RunDLL telephon.cpl"},
    {27, "rundll32.exe shell32.dll,Control_RunDLL modem.cpl"},
    {28, "rundll32.exe shell32.dll,Control_RunDLL timedate.cpl"},
    {29, "rundll32.exe shell32.dll,Control_RunDLL findfast.cpl"},
    {32, "rundll32.exe shell32.dll,SHHelpShortcuts_RunDLL AddPrinter"},
    {33, "rundll32.exe shell32.dll,SHHelpShortcuts_RunDLL FontsFolder"},
};

// What was started (command line and window style) or asked of the shell (verb, file,
// parameters, folder: "-" for none; the show command; whether the owner is the desktop).
using Started = std::pair<std::string, WORD>;
using Asked = std::tuple<std::string, std::string, std::string, std::string, int, bool>;

// A process service that records what it is asked and starts nothing.
class UsingFakeProcesses : public ::testing::Test {
protected:
    void SetUp() override {
        ProcessService fake = service<ProcessService>();
        fake.createProcess = [this](const std::string& line, WORD show) { return started.emplace_back(line, show), processId; };
        fake.shellExecute = [this](HWND owner, const char* verb, const char* file, const char* parameters,
                                   const char* folder, int show) {
            const auto t = [](const char* s) { return std::string(s ? s : "-"); };
            asked.emplace_back(t(verb), t(file), t(parameters), t(folder), show, owner == GetDesktopWindow());
            return reinterpret_cast<HINSTANCE>(shellResult);
        };
        replaced_.emplace(fake);
    }
    void TearDown() override { replaced_.reset(); }
    vxtest::CallResult run(std::vector<Variant> args) { return call(launcher_.get(), L"RunShell", std::move(args)); }

    std::vector<Started> started;
    std::vector<Asked> asked;
    DWORD processId = 4242;
    INT_PTR shellResult = 42;
    ComPtr<IDispatch> launcher_ = vxtest::createObject(CLSID_Ds_RunShell);
    const Variant omitted = Variant::missing(), yes = Variant::fromBool(true);

private:
    std::optional<ReplaceService<ProcessService>> replaced_;
};

Variant text(const wchar_t* s) { return Variant::fromText(s); }
Variant num(long n) { return Variant::fromLong(n); }

}  // namespace

TEST_F(UsingFakeProcesses, EveryShellRunValueStartsItsOwnCommandLine) {
    size_t members = 0;  // the table covers the enumeration exactly
    for (const EnumerationMember& m : kEnumerationMembers)
        if (std::wstring(m.enumeration) == L"Flag_ShellRun") members += kCommandLines.count(m.value);
    EXPECT_EQ(members, kCommandLines.size());
    for (LONG flag = -1; flag <= 40; ++flag) {
        started.clear();
        auto r = call(launcher_.get(), L"RunShellDLL", {num(flag)});
        auto row = kCommandLines.find(flag);
        if (row == kCommandLines.end()) {
            EXPECT_EQ(r.errorNumber(), 5) << flag;  // an empty command line
            EXPECT_TRUE(started.empty()) << flag;
            continue;
        }
        EXPECT_EQ(r.value.type(), VT_R8);
        EXPECT_EQ(V_R8(r.value.get()), 4242.0);
        EXPECT_EQ(started, std::vector<Started>{Started(row->second, SW_SHOWNORMAL)}) << flag;
    }
    // The data goes on the end as it is; without a row it is the whole command line.
    started.clear();
    call(launcher_.get(), L"RunShellDLL", {num(ShellCNRunDLL), text(L" timedate.cpl")});
    call(launcher_.get(), L"RunShellDLL", {num(ShellCNRunDLL), text(L"timedate.cpl")});
    call(launcher_.get(), L"RunShellDLL", {num(7), text(L"notepad.exe")});
    EXPECT_EQ(started, (std::vector<Started>{{"rundll32.exe shell32.dll,Control_RunDLL timedate.cpl", 1},
                                             {"rundll32.exe shell32.dll,Control_RunDLLtimedate.cpl", 1},
                                             {"notepad.exe", 1}}));
    processId = 0;  // refused by the system: the runtime's "file not found"
    EXPECT_EQ(call(launcher_.get(), L"RunShellDLL", {num(ShellCNRunDLL_Joy)}).errorNumber(), 53);
}

TEST_F(UsingFakeProcesses, RunShellAsksTheShellOrStartsARundll32CommandLine) {
    const unsigned long long before = yieldCount();
    auto r = run({text(L"C:\\docs\\report.txt")});
    EXPECT_EQ(yieldCount() - before, 4u);
    EXPECT_EQ(r.value.type(), VT_I4);
    EXPECT_EQ(V_I4(r.value.get()), 42);
    run({text(L"notepad.exe"), text(L"print"), text(L"/p x.txt"), text(L"C:\\docs"), num(SW_ShowMaximized)});
    // Only the first eight characters, in any case, tell a rundll32 command line.
    run({text(L"rundll3.exe")});
    run({text(L" rundll32.exe x")});
    EXPECT_EQ(asked, (std::vector<Asked>{{"Open", "C:\\docs\\report.txt", "-", "-", SW_Show, true},
                                         {"print", "notepad.exe", "/p x.txt", "C:\\docs", SW_ShowMaximized, true},
                                         {"Open", "rundll3.exe", "-", "-", SW_Show, true},
                                         {"Open", " rundll32.exe x", "-", "-", SW_Show, true}}));
    r = run({text(L"RunDLL32.EXE shell32.dll,Control_RunDLL joy.cpl")});
    EXPECT_EQ(r.value.type(), VT_R8);
    EXPECT_EQ(V_R8(r.value.get()), 4242.0);
    // Open With, when the shell failed and it is asked for.
    shellResult = 31;  // no program for the file type
    EXPECT_EQ(V_I4(run({text(L"C:\\f.vxnoassoc"), omitted, omitted, omitted, omitted, yes}).value.get()), 31);
    run({text(L"C:\\f.vxnoassoc")});  // not asked
    shellResult = 32;                   // the first result that is no failure
    run({text(L"C:\\f.txt"), omitted, omitted, omitted, omitted, yes});
    // ShellVB: hidden unless another style is asked for.
    call(launcher_.get(), L"ShellVB", {text(L"notepad.exe C:\\a b.txt")});
    call(launcher_.get(), L"ShellVB", {text(L"notepad.exe"), num(3)});
    EXPECT_EQ(started, (std::vector<Started>{{"RunDLL32.EXE shell32.dll,Control_RunDLL joy.cpl", SW_Show},
                                             {"rundll32.exe shell32.dll,OpenAs_RunDLL C:\\f.vxnoassoc", SW_SHOWNORMAL},
                                             {"notepad.exe C:\\a b.txt", SW_HIDE},
                                             {"notepad.exe", SW_SHOWMAXIMIZED}}));
    EXPECT_EQ(call(launcher_.get(), L"ShellVB", {text(L"notepad.exe"), num(12)}).errorNumber(), 5);
}

TEST_F(UsingFakeProcesses, WaitFindTitleWaitsAfterStarting) {
    // The wait looks once a yield until the window is there; the End key, held, gives it up.
    KeyboardService keys = service<KeyboardService>();
    int looks = 0;
    keys.asyncKeyState = [&](int key) -> SHORT { return key == VK_END && ++looks >= 3 ? SHORT(-32768) : SHORT(0); };
    ReplaceService<KeyboardService> using_(keys);
    const unsigned long long before = yieldCount();
    auto r = run({text(L"notepad.exe"), omitted, omitted, omitted, omitted, omitted, text(L"Vx no such window 7f3a")});
    EXPECT_EQ(V_I4(r.value.get()), 42);
    EXPECT_EQ(asked.size(), 1u);
    EXPECT_EQ(yieldCount() - before, 4u + 3u);
}
