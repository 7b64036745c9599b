// Ds_RunShell through the process service: the command lines and show commands it starts,
// what it asks of the shell, the Open With fallback and the wait. tests/host/launch.vbs
// starts real programs, documents and control-panel items and closes their windows.
#include "core/runtime/MessageLoop.h"
#include "core/runtime/Services.h"

#include "TestSupport.h"
#include "Vx_Main.h"
#include "Vx_MainEnums.h"

#include <map>
#include <optional>
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

struct Started {
    std::string commandLine;
    WORD show;
};
struct ShellCall {
    HWND owner;
    std::optional<std::string> verb;
    std::string file;
    std::optional<std::string> parameters, folder;
    int show;
};

std::optional<std::string> textOrNull(const char* s) {
    return s ? std::optional<std::string>(s) : std::nullopt;
}

// A process service that records what it is asked and starts nothing.
class UsingFakeProcesses : public ::testing::Test {
protected:
    void SetUp() override {
        ProcessService fake = service<ProcessService>();
        fake.createProcess = [this](const std::string& line, WORD show) {
            started.push_back({line, show});
            return processId;
        };
        fake.shellExecute = [this](HWND owner, const char* verb, const char* file, const char* parameters,
                                   const char* folder, int show) {
            shells.push_back({owner, textOrNull(verb), file ? file : "(null)", textOrNull(parameters), textOrNull(folder), show});
            return reinterpret_cast<HINSTANCE>(shellResult);
        };
        replaced_.emplace(fake);
    }
    void TearDown() override { replaced_.reset(); }

    std::vector<Started> started;
    std::vector<ShellCall> shells;
    DWORD processId = 4242;
    INT_PTR shellResult = 42;
    ComPtr<IDispatch> launcher_ = vxtest::createObject(CLSID_Ds_RunShell);

private:
    std::optional<ReplaceService<ProcessService>> replaced_;
};

Variant text(const wchar_t* s) { return Variant::fromText(s); }
Variant num(long n) { return Variant::fromLong(n); }

}  // namespace

TEST_F(UsingFakeProcesses, EveryShellRunValueStartsItsOwnCommandLine) {
    // The table covers the enumeration exactly.
    size_t members = 0;
    for (const EnumerationMember& m : kEnumerationMembers)
        if (std::wstring(m.enumeration) == L"Flag_ShellRun") {
            ++members;
            EXPECT_TRUE(kCommandLines.count(m.value)) << m.value;
        }
    EXPECT_EQ(members, kCommandLines.size());
    for (LONG flag = -1; flag <= 40; ++flag) {
        started.clear();
        auto r = call(launcher_.get(), L"RunShellDLL", {num(flag)});
        auto row = kCommandLines.find(flag);
        if (row == kCommandLines.end()) {
            // No row: an empty command line, which starts nothing.
            EXPECT_EQ(r.errorNumber(), 5) << flag;
            EXPECT_TRUE(started.empty()) << flag;
            continue;
        }
        ASSERT_EQ(r.errorNumber(), 0) << flag;
        EXPECT_EQ(r.value.type(), VT_R8);
        EXPECT_EQ(V_R8(r.value.get()), 4242.0);
        ASSERT_EQ(started.size(), 1u) << flag;
        EXPECT_EQ(started[0].commandLine, row->second);
        EXPECT_EQ(started[0].show, SW_SHOWNORMAL);
    }
}

TEST_F(UsingFakeProcesses, ShellRunDataIsAppendedAsItIs) {
    call(launcher_.get(), L"RunShellDLL", {num(ShellCNRunDLL), text(L" timedate.cpl")});
    call(launcher_.get(), L"RunShellDLL", {num(ShellCNRunDLL), text(L"timedate.cpl")});
    // A value without a row leaves the data alone as the command line.
    call(launcher_.get(), L"RunShellDLL", {num(7), text(L"notepad.exe")});
    ASSERT_EQ(started.size(), 3u);
    EXPECT_EQ(started[0].commandLine, "rundll32.exe shell32.dll,Control_RunDLL timedate.cpl");
    EXPECT_EQ(started[1].commandLine, "rundll32.exe shell32.dll,Control_RunDLLtimedate.cpl");
    EXPECT_EQ(started[2].commandLine, "notepad.exe");
    // A start the system refuses is the runtime's "file not found".
    processId = 0;
    EXPECT_EQ(call(launcher_.get(), L"RunShellDLL", {num(ShellCNRunDLL_Joy)}).errorNumber(), 53);
}

TEST_F(UsingFakeProcesses, ShellVBStartsWithTheWindowStyleAndGivesTheProcessId) {
    auto r = call(launcher_.get(), L"ShellVB", {text(L"notepad.exe C:\\a b.txt")});
    ASSERT_EQ(r.errorNumber(), 0);
    EXPECT_EQ(r.value.type(), VT_R8);
    EXPECT_EQ(V_R8(r.value.get()), 4242.0);
    call(launcher_.get(), L"ShellVB", {text(L"notepad.exe"), num(3)});
    ASSERT_EQ(started.size(), 2u);
    EXPECT_EQ(started[0].commandLine, "notepad.exe C:\\a b.txt");
    EXPECT_EQ(started[0].show, SW_HIDE);  // hidden unless asked
    EXPECT_EQ(started[1].show, SW_SHOWMAXIMIZED);
    // Nothing to start, or a style no window has: invalid call; a refused start: not found.
    EXPECT_EQ(call(launcher_.get(), L"ShellVB", {text(L"")}).errorNumber(), 5);
    EXPECT_EQ(call(launcher_.get(), L"ShellVB", {text(L"notepad.exe"), num(12)}).errorNumber(), 5);
    EXPECT_EQ(call(launcher_.get(), L"ShellVB", {text(L"notepad.exe"), num(-1)}).errorNumber(), 5);
    EXPECT_EQ(started.size(), 2u);
    processId = 0;
    EXPECT_EQ(call(launcher_.get(), L"ShellVB", {text(L"no such program.exe")}).errorNumber(), 53);
}

TEST_F(UsingFakeProcesses, RunShellAsksTheShellOnBehalfOfTheDesktop) {
    const unsigned long long before = yieldCount();
    auto r = call(launcher_.get(), L"RunShell", {text(L"C:\\docs\\report.txt")});
    EXPECT_EQ(yieldCount() - before, 4u);
    ASSERT_EQ(r.errorNumber(), 0);
    EXPECT_EQ(r.value.type(), VT_I4);
    EXPECT_EQ(V_I4(r.value.get()), 42);
    r = call(launcher_.get(), L"RunShell",
             {text(L"notepad.exe"), text(L"print"), text(L"/p x.txt"), text(L"C:\\docs"), num(SW_ShowMaximized)});
    ASSERT_EQ(shells.size(), 2u);
    EXPECT_EQ(shells[0].owner, GetDesktopWindow());
    EXPECT_EQ(shells[0].verb, std::optional<std::string>("Open"));
    EXPECT_EQ(shells[0].file, "C:\\docs\\report.txt");
    EXPECT_FALSE(shells[0].parameters.has_value());  // omitted texts are no texts
    EXPECT_FALSE(shells[0].folder.has_value());
    EXPECT_EQ(shells[0].show, SW_Show);
    EXPECT_EQ(shells[1].verb, std::optional<std::string>("print"));
    EXPECT_EQ(shells[1].parameters, std::optional<std::string>("/p x.txt"));
    EXPECT_EQ(shells[1].folder, std::optional<std::string>("C:\\docs"));
    EXPECT_EQ(shells[1].show, SW_ShowMaximized);
    EXPECT_TRUE(started.empty());
}

TEST_F(UsingFakeProcesses, RunShellOffersOpenWithOnlyWhenTheShellFailedAndItIsAsked) {
    const Variant yes = Variant::fromBool(true), omitted = Variant::missing();
    const auto runShell = [&](const wchar_t* file, const Variant& openAs) {
        return call(launcher_.get(), L"RunShell", {text(file), omitted, omitted, omitted, omitted, openAs});
    };
    shellResult = 31;  // no program for the file type
    auto r = runShell(L"C:\\data\\file.vxnoassoc", yes);
    EXPECT_EQ(V_I4(r.value.get()), 31);
    ASSERT_EQ(started.size(), 1u);
    EXPECT_EQ(started[0].commandLine, "rundll32.exe shell32.dll,OpenAs_RunDLL C:\\data\\file.vxnoassoc");
    EXPECT_EQ(started[0].show, SW_SHOWNORMAL);
    started.clear();
    runShell(L"C:\\data\\file.vxnoassoc", omitted);  // not asked
    shellResult = 32;                                // the first result that is no failure
    runShell(L"C:\\data\\file.txt", yes);
    EXPECT_TRUE(started.empty());
}

TEST_F(UsingFakeProcesses, ARundll32CommandLineIsStartedAsItIs) {
    auto r = call(launcher_.get(), L"RunShell", {text(L"RunDLL32.EXE shell32.dll,Control_RunDLL joy.cpl")});
    ASSERT_EQ(r.errorNumber(), 0);
    EXPECT_EQ(r.value.type(), VT_R8);
    EXPECT_EQ(V_R8(r.value.get()), 4242.0);
    ASSERT_EQ(started.size(), 1u);
    EXPECT_EQ(started[0].commandLine, "RunDLL32.EXE shell32.dll,Control_RunDLL joy.cpl");
    EXPECT_EQ(started[0].show, SW_Show);  // the show command is the window style
    // Only the first eight characters tell.
    call(launcher_.get(), L"RunShell", {text(L"rundll3.exe")});
    call(launcher_.get(), L"RunShell", {text(L" rundll32.exe x")});
    EXPECT_EQ(shells.size(), 2u);
    EXPECT_EQ(started.size(), 1u);
}

TEST_F(UsingFakeProcesses, WaitFindTitleWaitsForTheWindowAfterStarting) {
    // The wait looks once a yield until the window is there; the End key, held, gives it up.
    KeyboardService keys = service<KeyboardService>();
    int looks = 0;
    keys.asyncKeyState = [&](int key) -> SHORT {
        if (key != VK_END) return 0;
        return ++looks >= 3 ? static_cast<SHORT>(0x8000) : 0;
    };
    ReplaceService<KeyboardService> using_(keys);
    const unsigned long long before = yieldCount();
    const Variant omitted = Variant::missing();
    auto r = call(launcher_.get(), L"RunShell",
                  {text(L"notepad.exe"), omitted, omitted, omitted, omitted, omitted, text(L"Vx no such window 7f3a")});
    EXPECT_EQ(r.errorNumber(), 0);
    EXPECT_EQ(V_I4(r.value.get()), 42);
    EXPECT_EQ(shells.size(), 1u);
    EXPECT_EQ(yieldCount() - before, 4u + 3u);
}

TEST_F(UsingFakeProcesses, GoShellSplitDoesNothing) {
    auto r = call(launcher_.get(), L"GoShellSplit", {text(L"a<|^^|>b")});
    EXPECT_EQ(r.errorNumber(), 0);
    EXPECT_TRUE(isEmpty(*r.value));
    EXPECT_TRUE(started.empty() && shells.empty());
}
