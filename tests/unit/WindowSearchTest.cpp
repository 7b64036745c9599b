// Ds_EnumChid's searches, lists and waits where a script cannot look: the yields they
// count, the shared tables, a window that closes while it is listed, the End key, and a
// host handler that calls back into the library during a wait. (Paths, keys and lists as
// a host sees them are checked by tests/host/windows.vbs.)
#include "core/runtime/MessageLoop.h"
#include "shared/Windows.h"

#include "WindowTestSupport.h"

using namespace vx;
using namespace vxtest;

namespace {

Variant text(const wchar_t* s) { return Variant::fromText(s); }
const Variant kTilde = Variant::fromText(L"~");

ComPtr<_Ds_ENumAction> titleSearch(_Ds_EnumChid* e, const wchar_t* title, LONG parent = -1) {
    ComPtr<_Ds_ENumAction> w;
    EXPECT_EQ(e->GetFindTitleWindow(Bstr(title).get(), parent, w.put()), S_OK);
    return w;
}

std::vector<std::wstring> keysOf(_Ds_ListChild* list) {
    std::vector<std::wstring> keys;
    LONG n = 0;
    list->get_Count(&n);
    for (LONG i = 1; i <= n; ++i) {
        ComPtr<_Ds_ENumAction> w;
        list->Item(*Variant::fromLong(i), w.put());
        Bstr key;
        w->get_MyPathKey(key.put());
        keys.push_back(key.str());
    }
    return keys;
}

// A window procedure that destroys another window when its own text length is asked.
HWND victim = nullptr;
WNDPROC originalProc = nullptr;
LRESULT CALLBACK destroyVictimOnRead(HWND h, UINT m, WPARAM w, LPARAM l) {
    if (m == WM_GETTEXTLENGTH && victim) {
        DestroyWindow(victim);
        victim = nullptr;
    }
    return CallWindowProcA(originalProc, h, m, w, l);
}

// A hidden window titled "Vx Liar Window" that reports a text length of the test's
// choosing. Its class is a Unicode one, so that the system hands its answer on as it is.
class Liar {
public:
    LRESULT reported = 0;

    Liar() {
        static const ATOM registered = [] {
            WNDCLASSW wc{};
            wc.lpfnWndProc = proc;
            wc.hInstance = GetModuleHandleW(nullptr);
            wc.lpszClassName = L"VxLiar";
            return RegisterClassW(&wc);
        }();
        (void)registered;
        hwnd_ = CreateWindowExW(0, L"VxLiar", L"Vx Liar Window", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr, nullptr,
                                GetModuleHandleW(nullptr), nullptr);
        SetWindowLongPtrW(hwnd_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    ~Liar() { DestroyWindow(hwnd_); }
    Liar(const Liar&) = delete;
    Liar& operator=(const Liar&) = delete;

    HWND hwnd() const { return hwnd_; }

private:
    static LRESULT CALLBACK proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
        auto* self = reinterpret_cast<Liar*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
        if (self && msg == WM_GETTEXTLENGTH) return self->reported;
        return DefWindowProcW(hwnd, msg, wp, lp);
    }

    HWND hwnd_ = nullptr;
};

}  // namespace

// The search yields four times per window it looks at, stops at the first match, and
// looks at the table's spare last element too; the table keeps that spare element.
TEST(WindowsSearch, TitleSearchYieldsFourTimesPerWindowItLooksAt) {
    Recorder target("Vx Search Target");
    auto e = newFinder();
    auto before = yieldCount();
    auto w = titleSearch(e.get(), L"SEARCH TARGET");
    const auto used = yieldCount() - before;
    EXPECT_EQ(handleOf(w.get()), target.handle());
    const auto& table = window::topWindows();
    EXPECT_TRUE(table.back().title.empty() && table.back().handle == 0) << "one spare element at the end";
    size_t index = 0;
    while (index < table.size() && table[index].handle != target.handle()) ++index;
    ASSERT_LT(index, table.size());
    EXPECT_EQ(used, 4 * (index + 1));

    before = yieldCount();
    w = titleSearch(e.get(), L"no window has this in its title");
    EXPECT_EQ(handleOf(w.get()), 0);
    EXPECT_EQ(yieldCount() - before, 4 * window::topWindows().size());
    w = titleSearch(e.get(), L"");
    EXPECT_EQ(handleOf(w.get()), window::topWindows()[0].handle) << "an empty text matches the first titled window";
}

// The parent walk yields four times per step and four more on a match; an ancestor with
// an empty title always matches, since the search text is asked to contain the title.
TEST(WindowsSearch, ParentWalkYieldsAndAnEmptyTitleMatches) {
    Recorder parent("Vx Parent");
    Recorder untitled("");
    auto e = newFinder();
    auto before = yieldCount();
    auto w = titleSearch(e.get(), L"vx parent", handleOf(parent.addChild("x")));
    EXPECT_EQ(handleOf(w.get()), parent.handle());
    EXPECT_EQ(yieldCount() - before, 8u);
    w = titleSearch(e.get(), L"zzz", handleOf(untitled.addChild("x")));
    EXPECT_EQ(handleOf(w.get()), untitled.handle());
}

// Repeated values get numbered keys that a later real title cannot collide with (a
// collision would drop the window); windows without a title are listed without a key;
// a window destroyed while the list is built reads as empty instead of breaking it.
TEST(WindowsEnumeration, RepeatedKeysAndAWindowClosingDuringTheListing) {
    Recorder parent("Vx Parent");
    HWND first = parent.addChild("A");
    HWND doomed = victim = parent.addChild("doomed");
    for (const char* title : {"a", "A#2", ""}) parent.addChild(title);
    originalProc = reinterpret_cast<WNDPROC>(GetWindowLongPtrA(first, GWLP_WNDPROC));
    SetWindowLongPtrA(first, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&destroyVictimOnRead));
    auto e = newFinder();
    ComPtr<_Ds_ListChild> list;
    ASSERT_EQ(e->EWinChild(*Variant::fromLong(parent.handle()), 4, list.put()), S_OK);
    EXPECT_FALSE(IsWindow(doomed));
    const std::vector<std::wstring> expected{L"0",   L"Static",   L"A",        // reading its title ends the next
                                             L"0#2", L"",         L"",         // read after it was destroyed
                                             L"0#3", L"Static#2", L"a#2",      // titles compare without case
                                             L"0#4", L"Static#3", L"A#2#2",    // not mistaken for A's repeat
                                             L"0#5", L"Static#4", L""};
    EXPECT_EQ(keysOf(list.get()), expected);
    LONG n = 0;
    list->get_CountTitle(text(L"").get(), &n);
    EXPECT_EQ(n, 5) << "every window stands in the title list";
}

// Waits count yields, never time: the counts are the contract.
TEST(WindowsWait, WaitsCountYields) {
    auto e = newFinder();
    auto helper = createObject(CLSID_Ds_MyVaribleFunction).query<_Ds_MyVaribleFunction>();
    const Variant missing = Variant::missing();
    struct Case {
        Variant number, seconds;
        unsigned long long yields;
    } cases[] = {
        {Variant::fromDouble(0.002), missing, 2},  {missing, Variant::fromLong(3), 3},
        {Variant::fromDouble(0.001), Variant::fromLong(50), 1},  // the first argument wins
        {missing, missing, 0},                     {missing, Variant::fromDouble(2.5), 2},  // halves to even
        {Variant::fromDouble(0.0035), missing, 4}, {missing, Variant::fromLong(-4), 0},
    };
    for (const Case& c : cases) {
        const auto before = yieldCount();
        EXPECT_EQ(e->WaitDoEvents(*c.number, *c.seconds), S_OK);
        EXPECT_EQ(yieldCount() - before, c.yields) << c.yields;
    }
    EXPECT_EQ(errorNumberOf(e->WaitDoEvents(*Variant::fromDouble(1e10), *missing)), 6);
    auto before = yieldCount();
    ASSERT_EQ(helper->DoWaitNumber(3), S_OK);
    EXPECT_EQ(yieldCount() - before, 3000u) << "Number x 1000 yields";
    Recorder target("Vx Helper Target");
    before = yieldCount();
    ASSERT_EQ(helper->DoWaitFindTitle(Bstr(L"Vx Helper Target").get()), S_OK);
    EXPECT_EQ(yieldCount() - before, 1u) << "a window already there is found on the first look";
}

// Only the End key ends a wait for a window that never comes: a host handler, run
// during the wait, presses it on its fifth run.
TEST(WindowsWait, TheEndKeyEndsAnUnsuccessfulWait) {
    Recorder host("Vx Host Form");
    ASSERT_TRUE(host.makeForeground());
    int endTicks = 0;
    std::function<void()> handler = [&] {
        if (++endTicks < 5)
            host.onNextYield(handler);
        else
            keybd_event(VK_END, 0, 0, 0);
    };
    host.onNextYield(handler);
    auto e = newFinder();
    ComPtr<_Ds_ENumAction> found;
    ASSERT_EQ(e->WaitFindWindows(*text(L"Vx Never Shown"), *kTilde, *kTilde, found.put()), S_OK);
    keybd_event(VK_END, 0, KEYEVENTF_KEYUP, 0);
    EXPECT_FALSE(found) << "given up: Nothing";
    EXPECT_EQ(endTicks, 5);
    pumpOnce();
}

// A host event handler that rebuilds both shared tables during a wait, or runs a title
// search while an outer one walks the table, must not corrupt it or crash.
TEST(WindowsWait, AHandlerThatEnumeratesDuringAWait) {
    Recorder host("Vx Host Form");
    auto e = newFinder();
    std::unique_ptr<Recorder> late;
    int rounds = 0;
    // Rebuilds both tables and only on its third run makes the window waited for.
    std::function<void()> handler = [&] {
        ComPtr<_Ds_ListChild> list;
        e->EWinChild(*Variant::fromLong(host.handle()), 4, list.put());
        titleSearch(e.get(), L"vx host");
        LONG ignored;
        e->ThreadProcessId(host.handle(), &ignored);
        if (++rounds == 3)
            late = std::make_unique<Recorder>("Vx Late Window");
        else
            host.onNextYield(handler);
    };
    host.onNextYield(handler);
    ComPtr<_Ds_ENumAction> found;
    ASSERT_EQ(e->WaitFindWindows(*text(L"Vx Late Window"), *kTilde, *kTilde, found.put()), S_OK);
    ASSERT_TRUE(found);
    ASSERT_TRUE(late);
    EXPECT_EQ(handleOf(found.get()), late->handle());
    EXPECT_EQ(rounds, 3);

    int nested = 0;
    host.onNextYield([&] {
        ++nested;
        titleSearch(e.get(), L"no such title at all");
    });
    auto w = titleSearch(e.get(), L"vx late window");
    EXPECT_EQ(nested, 1);
    EXPECT_EQ(handleOf(w.get()), late->handle());
}

// A window whose thread no longer reads messages, and windows that report texts longer
// than any they hold: reads give them up with "" (and an unchecked box) instead of
// hanging or allocating what was reported, and a search reads past them. The limit itself
// is believed.
TEST(WindowsSearch, WindowsThatHangOrReportAbsurdLengthsReadAsEmpty) {
    HungWindow hung("Vx Hung Window");
    auto e = newFinder();
    Bstr title;
    ASSERT_EQ(newWindow(hung.hwnd())->get_Title(title.put()), S_OK);
    EXPECT_EQ(title.str(), L"");
    VARIANT_BOOL checked = VARIANT_TRUE;
    ASSERT_EQ(newWindow(hung.hwnd())->get_ClickCheckBox(1, &checked), S_OK);
    EXPECT_EQ(checked, VARIANT_FALSE);
    EXPECT_EQ(handleOf(titleSearch(e.get(), L"vx hung window").get()), 0);

    Liar liar;
    struct Case {
        LRESULT reported;
        const wchar_t* read;
    } cases[] = {
        {window::kMaxTextLength, L"Vx Liar Window"},
        {window::kMaxTextLength + 1, L""},
        {0x7FFFFFFF, L""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.reported);
        liar.reported = c.reported;
        ASSERT_EQ(newWindow(liar.hwnd())->get_Title(title.put()), S_OK);
        EXPECT_EQ(title.str(), c.read);
        auto found = titleSearch(e.get(), L"vx liar window");
        EXPECT_EQ(handleOf(found.get()), *c.read ? handleOf(liar.hwnd()) : 0);
    }
    LONG n = -1;
    ComPtr<_Ds_ListChild> list;
    ASSERT_EQ(e->SubParentEnum(handleOf(liar.hwnd()), 2, list.put()), S_OK);
    list->get_Count(&n);
    EXPECT_EQ(n, 1) << "listed, without a key";
    EXPECT_EQ(keysOf(list.get()), std::vector<std::wstring>{L""});
}
