// Ds_EnumChid against real windows: paths, title and parent searches, child lists and
// their keys, waits, and what happens when a host handler calls back during a wait.
#include "core/runtime/MessageLoop.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Text.h"
#include "desktop/WindowModule.h"

#include <algorithm>

#include "TestSupport.h"
#include "WindowTestSupport.h"

using namespace vx;
using namespace vxtest;

namespace {

Variant text(const wchar_t* s) { return Variant::fromText(s); }
const Variant kTilde = Variant::fromText(L"~");

LONG resolve(_Ds_EnumChid* e, const Variant& path, const Variant& sep = kTilde) {
    LONG h = -1;
    EXPECT_EQ(e->GetFindHandle(*path, *sep, &h), S_OK);
    return h;
}

ComPtr<_Ds_ENumAction> titleSearch(_Ds_EnumChid* e, const wchar_t* title, LONG parent = -1) {
    ComPtr<_Ds_ENumAction> w;
    Bstr t(title);
    EXPECT_EQ(e->GetFindTitleWindow(t.get(), parent, w.put()), S_OK);
    return w;
}

ComPtr<_Ds_ListChild> children(_Ds_EnumChid* e, const Variant& parent, LONG tOut) {
    ComPtr<_Ds_ListChild> list;
    EXPECT_EQ(e->EWinChild(*parent, tOut, list.put()), S_OK);
    return list;
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

LONG itemHandle(_Ds_ListChild* list, const Variant& index, HRESULT (STDMETHODCALLTYPE _Ds_ListChild::*which)(VARIANT, _Ds_ENumAction**) = &_Ds_ListChild::Item) {
    ComPtr<_Ds_ENumAction> w;
    HRESULT hr = (list->*which)(*index, w.put());
    return SUCCEEDED(hr) ? handleOf(w.get()) : -errorNumberOf(hr);
}

// A timer handler that holds the End key down on its fifth run.
int endTicks = 0;
void CALLBACK pressEndOnTheFifthTick(HWND hwnd, UINT, UINT_PTR id, DWORD) {
    if (++endTicks < 5) return;
    KillTimer(hwnd, id);
    keybd_event(VK_END, 0, 0, 0);
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

}  // namespace

TEST(WindowsPath, EmptyNumbersAndSpecialValues) {
    auto e = newFinder();
    EXPECT_EQ(resolve(e.get(), text(L"")), 0);
    EXPECT_EQ(resolve(e.get(), text(L"12345")), 12345) << "a number no window is titled or classed passes through";
    EXPECT_EQ(resolve(e.get(), Variant::fromLong(4242)), 4242);
    EXPECT_EQ(resolve(e.get(), text(L"-1")), handleOf(GetDesktopWindow()));
    EXPECT_EQ(resolve(e.get(), text(L"-2")), handleOf(FindWindowA("Shell_TrayWnd", nullptr)));
    EXPECT_EQ(resolve(e.get(), text(L"-3")), handleOf(FindWindowA(nullptr, "Start Menu")));
    EXPECT_EQ(resolve(e.get(), text(L"no such window anywhere")), 0);
    LONG desktop = 0;
    e->GetDesktopWin(&desktop);
    EXPECT_EQ(desktop, handleOf(GetDesktopWindow()));
}

TEST(WindowsPath, TitlesClassesAndChildSteps) {
    FixtureProgram fx;
    auto e = newFinder();
    const LONG main = handleOf(fx.main());
    EXPECT_EQ(resolve(e.get(), text(L"Vx Fixture Main")), main);
    EXPECT_EQ(resolve(e.get(), text(L"vx fixture MAIN")), main) << "titles compare without regard to case";
    EXPECT_EQ(resolve(e.get(), text(L"VxFixtureMain")), main) << "a class names a window too";
    EXPECT_EQ(resolve(e.get(), Variant::fromLong(main)), main);
    EXPECT_EQ(resolve(e.get(), text(L"Vx Fixture")), 0) << "a whole title, not a part of one";

    EXPECT_EQ(resolve(e.get(), text(L"Vx Fixture Main~Edit")), handleOf(fx.control(1001)));
    EXPECT_EQ(resolve(e.get(), text(L"VxFixtureMain~Button*~*OK")), handleOf(fx.control(1002)));
    EXPECT_EQ(resolve(e.get(), text(L"Vx Fixture Main~Button*~*Option B")), handleOf(fx.control(1005)));
    EXPECT_EQ(resolve(e.get(), text(L"Vx Fixture Main>Button*>*Remember"), text(L">")), handleOf(fx.control(1003)));
    // The inner marker of a class-and-title pair holds "|": with that separator the pair
    // falls apart, and only plain class steps work.
    EXPECT_EQ(resolve(e.get(), text(L"Vx Fixture Main|Button*|*Remember"), text(L"|")), 0);
    EXPECT_EQ(resolve(e.get(), text(L"Vx Fixture Main|Edit"), text(L"|")), handleOf(fx.control(1001)));
    EXPECT_EQ(resolve(e.get(), text(L"Vx Fixture Dialog~Button*~*Close")), handleOf(GetDlgItem(fx.dialog(), 2001)));
    EXPECT_EQ(resolve(e.get(), text(L"Vx Fixture Main~Button*~*Cancel")), 0);
    EXPECT_EQ(resolve(e.get(), text(L"Vx Fixture Main~*~*OK")), 0) << "an empty class finds nothing";
    // A step that finds nothing does not end the walk: the next searches the top level.
    EXPECT_EQ(resolve(e.get(), text(L"Vx Fixture Main~NoSuchClass~VxFixtureMain")), main);
    EXPECT_EQ(resolve(e.get(), text(L"12345~Edit")), 0) << "numbers pass through only as a single step";

    ComPtr<_Ds_ENumAction> w;
    ASSERT_EQ(e->GetChild(*text(L"Vx Fixture Main~Edit"), *kTilde, w.put()), S_OK);
    EXPECT_EQ(handleOf(w.get()), handleOf(fx.control(1001)));
    ASSERT_EQ(e->GetChild(*text(L"nothing here"), *kTilde, w.put()), S_OK);
    EXPECT_EQ(handleOf(w.get()), 0) << "a window object holding 0, not Nothing";

    Bstr cls(L"Button"), title(L"Option A"), empty(L"");
    LONG h = 0;
    e->GetFindEX(main, handleOf(fx.control(1004)), cls.get(), title.get(), &h);
    EXPECT_EQ(h, handleOf(fx.control(1004))) << "the second handle is ignored: the search starts at the first child";
    e->GetFindEX(main, 0, cls.get(), empty.get(), &h);
    EXPECT_EQ(h, handleOf(fx.control(1002))) << "an empty title is any title";
    Bstr mainClass(L"VxFixtureMain");
    e->GetFindW(mainClass.get(), empty.get(), &h);
    EXPECT_EQ(h, main);
}

TEST(WindowsSearch, TitleSearchByContainmentCountsFourYieldsPerWindow) {
    FixtureProgram fx;
    auto e = newFinder();
    auto before = yieldCount();
    auto w = titleSearch(e.get(), L"FIXTURE MAIN");
    const auto used = yieldCount() - before;
    EXPECT_EQ(handleOf(w.get()), handleOf(fx.main()));
    const auto& table = window::topWindows();
    ASSERT_GE(table.size(), 2u);
    EXPECT_TRUE(table.back().title.empty() && table.back().handle == 0) << "one spare element at the end";
    size_t index = 0;
    while (index < table.size() && table[index].handle != handleOf(fx.main())) ++index;
    ASSERT_LT(index, table.size());
    EXPECT_EQ(used, 4 * (index + 1));
    for (size_t i = 0; i < index; ++i) EXPECT_EQ(lower(table[i].title).find(L"fixture main"), std::wstring::npos);

    w = titleSearch(e.get(), L"");
    EXPECT_EQ(handleOf(w.get()), window::topWindows()[0].handle) << "an empty text matches the first titled window";

    before = yieldCount();
    w = titleSearch(e.get(), L"no window has this in its title");
    EXPECT_EQ(handleOf(w.get()), 0);
    EXPECT_EQ(yieldCount() - before, 4 * window::topWindows().size()) << "the spare element is examined too";
}

TEST(WindowsSearch, ParentWalkTestsContainmentTheOtherWayRound) {
    FixtureProgram fx;
    auto e = newFinder();
    const LONG edit = handleOf(fx.control(1001));
    auto before = yieldCount();
    auto w = titleSearch(e.get(), L"vx fixture main and more", edit);
    EXPECT_EQ(handleOf(w.get()), handleOf(fx.main())) << "the search text contains the parent's title";
    EXPECT_EQ(yieldCount() - before, 8u);

    // The edit's own title ("Hello") is not considered, only its ancestors'.
    w = titleSearch(e.get(), L"hello and vx fixture main", edit);
    EXPECT_EQ(handleOf(w.get()), handleOf(fx.main()));

    // An ancestor with an empty title always matches.
    Recorder untitled("");
    HWND child = CreateWindowExA(0, "Static", "child", WS_CHILD, 0, 0, 5, 5, untitled.hwnd(), nullptr, nullptr, nullptr);
    before = yieldCount();
    w = titleSearch(e.get(), L"zzz", handleOf(child));
    EXPECT_EQ(handleOf(w.get()), untitled.handle());
    EXPECT_EQ(yieldCount() - before, 8u);

    w = titleSearch(e.get(), L"anything", 0);
    EXPECT_EQ(handleOf(w.get()), 0);
}

TEST(WindowsEnumeration, ChildListsKeyedByIdClassTitleOrAll) {
    FixtureProgram fx;
    auto e = newFinder();
    const Variant main = Variant::fromLong(handleOf(fx.main()));

    auto ids = children(e.get(), main, 0);
    EXPECT_EQ(keysOf(ids.get()), (std::vector<std::wstring>{L"3E9", L"3EE", L"3EA", L"3EB", L"3EC", L"3ED", L"3EF"}));
    EXPECT_EQ(itemHandle(ids.get(), text(L"3ea")), handleOf(fx.control(1002))) << "keys compare without regard to case";

    auto classes = children(e.get(), text(L"Vx Fixture Main"), 1);
    EXPECT_EQ(keysOf(classes.get()),
              (std::vector<std::wstring>{L"Edit", L"Edit#2", L"Button", L"Button#2", L"Button#3", L"Button#4", L"Static"}));
    EXPECT_EQ(itemHandle(classes.get(), text(L"button#3"), &_Ds_ListChild::ItemClass), handleOf(fx.control(1004)));
    EXPECT_EQ(itemHandle(classes.get(), text(L"Hello"), &_Ds_ListChild::ItemTitle), -5) << "no title list";

    auto titles = children(e.get(), main, 2);
    EXPECT_EQ(keysOf(titles.get()),
              (std::vector<std::wstring>{L"Hello", L"World", L"OK", L"Remember", L"Option A", L"Option B", L"ready"}));
    EXPECT_EQ(itemHandle(titles.get(), text(L"OPTION B"), &_Ds_ListChild::ItemTitle), handleOf(fx.control(1005)));

    // All three: each window under its identifier, its class and its title, in that order.
    auto both = children(e.get(), main, 4);
    LONG n = 0;
    both->get_Count(&n);
    EXPECT_EQ(n, 21);
    EXPECT_EQ(itemHandle(both.get(), text(L"Edit#2")), handleOf(fx.control(1006)));
    EXPECT_EQ(itemHandle(both.get(), text(L"World")), handleOf(fx.control(1006)));
    EXPECT_EQ(itemHandle(both.get(), text(L"3EE")), handleOf(fx.control(1006)));
    EXPECT_EQ(itemHandle(both.get(), Variant::fromLong(4)), handleOf(fx.control(1006)));

    // Out_TitleTask keeps only visible windows with a border; output kinds out of range list nothing.
    auto task = children(e.get(), main, 3);
    task->get_Count(&n);
    EXPECT_EQ(n, 0) << "the fixture's controls have no border";
    auto none = children(e.get(), main, 9);
    none->get_Count(&n);
    EXPECT_EQ(n, 0);
    auto zero = children(e.get(), Variant::fromLong(0), 4);
    zero->get_Count(&n);
    EXPECT_EQ(n, 0) << "handle 0 lists nothing";
}

TEST(WindowsEnumeration, RepeatedValuesGetNumberedKeys) {
    Recorder parent("Vx Parent");
    const char* titles[] = {"A", "a", "A#2", "", ""};
    for (const char* t : titles)
        CreateWindowExA(0, "Static", t, WS_CHILD | WS_VISIBLE, 0, 0, 10, 10, parent.hwnd(), nullptr, nullptr, nullptr);
    auto e = newFinder();
    auto list = children(e.get(), Variant::fromLong(parent.handle()), 2);
    EXPECT_EQ(keysOf(list.get()), (std::vector<std::wstring>{L"A", L"a#2", L"A#2#2", L"", L""}));
    LONG n = 0, counted = 0;
    list->get_Count(&n);
    EXPECT_EQ(n, 5) << "windows without a title are listed without a key";
    Variant search = text(L"");
    list->get_CountTitle(search.get(), &counted);
    EXPECT_EQ(counted, 5);
}

TEST(WindowsEnumeration, ListChildCountsByContainmentAndRemovesFromTheMainListOnly) {
    FixtureProgram fx;
    auto e = newFinder();
    auto list = children(e.get(), Variant::fromLong(handleOf(fx.main())), 4);
    Variant search = text(L"BUTTON");
    Variant ref = byRef(search);
    LONG n = 0;
    ASSERT_EQ(list->get_CountClass(ref.get(), &n), S_OK);
    EXPECT_EQ(n, 4);
    EXPECT_EQ(textOf(search), L"button") << "the caller's variable is left lower-cased";
    search = text(L"o");
    list->get_CountTitle(search.get(), &n);
    EXPECT_EQ(n, 5) << "Hello, World, OK, Option A, Option B";
    list->get_CountClass(const_cast<VARIANT*>(Variant::missing().get()), &n);
    EXPECT_EQ(n, 7);

    ASSERT_EQ(list->Remove(text(L"Edit").get()), S_OK);
    list->get_Count(&n);
    EXPECT_EQ(n, 20);
    EXPECT_EQ(itemHandle(list.get(), text(L"Edit")), -5);
    EXPECT_EQ(itemHandle(list.get(), text(L"Edit"), &_Ds_ListChild::ItemClass), handleOf(fx.control(1001)));
    EXPECT_EQ(itemHandle(list.get(), text(L"Hello"), &_Ds_ListChild::ItemTitle), handleOf(fx.control(1001)));

    // Once the program is gone its windows' classes read empty: they no longer contain
    // "button", but an empty search still counts every entry.
    EXPECT_EQ(list->Remove(Variant::fromLong(99).get()), vx::runtimeHresult(9));
    e->WindowsClose(handleOf(fx.main()));
    ASSERT_TRUE(fx.waitForExit());
    search = text(L"button");
    list->get_CountClass(search.get(), &n);
    EXPECT_EQ(n, 0);
    search = text(L"");
    list->get_CountClass(search.get(), &n);
    EXPECT_EQ(n, 7);
    list->get_Count(&n);
    EXPECT_EQ(n, 20);
}

TEST(WindowsEnumeration, AncestorsAndThreadWindows) {
    FixtureProgram fx;
    auto e = newFinder();
    ComPtr<_Ds_ListChild> list;
    ASSERT_EQ(e->SubParentEnum(handleOf(fx.control(1001)), 0, list.put()), S_OK);
    EXPECT_EQ(keysOf(list.get()), (std::vector<std::wstring>{L"3E9", L"0"}));
    EXPECT_EQ(itemHandle(list.get(), Variant::fromLong(2)), handleOf(fx.main()));
    ASSERT_EQ(e->SubParentEnum(handleOf(fx.control(1001)), 3, list.put()), S_OK);
    EXPECT_EQ(keysOf(list.get()), (std::vector<std::wstring>{L"Vx Fixture Main"})) << "only the bordered, visible main window";

    auto w = newWindow(fx.control(1006));
    ASSERT_EQ(w->SubParentEnumX(1, list.put()), S_OK);
    EXPECT_EQ(keysOf(list.get()), (std::vector<std::wstring>{L"Edit", L"VxFixtureMain"}));
    ASSERT_EQ(w->SubChildEnum(0, list.put()), S_OK);
    LONG n = -1;
    list->get_Count(&n);
    EXPECT_EQ(n, 0) << "an edit control has no children";

    // The thread's windows are appended to the child table; the result is always 0.
    window::clearChildWindows();
    LONG result = -1;
    ASSERT_EQ(e->ThreadProcessId(handleOf(fx.main()), &result), S_OK);
    EXPECT_EQ(result, 0);
    std::vector<LONG> collected;
    for (const auto& o : window::childWindows()) collected.push_back(handleOf(o.get()));
    EXPECT_NE(std::find(collected.begin(), collected.end(), handleOf(fx.main())), collected.end());
    EXPECT_NE(std::find(collected.begin(), collected.end(), handleOf(fx.dialog())), collected.end());
    const size_t first = collected.size();
    e->ThreadProcessId(handleOf(fx.main()), &result);
    EXPECT_EQ(window::childWindows().size(), 2 * first) << "appended, not replaced";
    e->ThreadProcessId(0, &result);
    EXPECT_EQ(result, 0);
}

TEST(WindowsEnumeration, AWindowClosingDuringTheListingIsReadAsEmpty) {
    Recorder parent("Vx Parent");
    HWND first = CreateWindowExA(0, "Static", "first", WS_CHILD, 0, 0, 10, 10, parent.hwnd(), nullptr, nullptr, nullptr);
    HWND doomed = CreateWindowExA(0, "Static", "doomed", WS_CHILD, 0, 0, 10, 10, parent.hwnd(), nullptr, nullptr, nullptr);
    // Reading the first child's title destroys the second before it is read.
    victim = doomed;
    originalProc = reinterpret_cast<WNDPROC>(GetWindowLongPtrA(first, GWLP_WNDPROC));
    SetWindowLongPtrA(first, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&destroyVictimOnRead));
    auto e = newFinder();
    auto list = children(e.get(), Variant::fromLong(parent.handle()), 4);
    EXPECT_EQ(keysOf(list.get()), (std::vector<std::wstring>{L"0", L"Static", L"first", L"0#2", L"", L""}));
    EXPECT_FALSE(IsWindow(doomed));
}

TEST(WindowsWait, WaitDoEventsCountsYields) {
    auto e = newFinder();
    auto yieldsFor = [&](const Variant& a, const Variant& b) {
        auto before = yieldCount();
        EXPECT_EQ(e->WaitDoEvents(*a, *b), S_OK);
        return yieldCount() - before;
    };
    const Variant missing = Variant::missing();
    EXPECT_EQ(yieldsFor(Variant::fromDouble(0.002), missing), 2u);
    EXPECT_EQ(yieldsFor(missing, Variant::fromLong(3)), 3u);
    EXPECT_EQ(yieldsFor(Variant::fromDouble(0.001), Variant::fromLong(50)), 1u) << "the first argument wins";
    EXPECT_EQ(yieldsFor(missing, missing), 0u);
    EXPECT_EQ(yieldsFor(missing, Variant::fromDouble(2.5)), 2u) << "halves round to even";
    EXPECT_EQ(yieldsFor(Variant::fromDouble(0.0035), missing), 4u);
    EXPECT_EQ(yieldsFor(missing, Variant::fromLong(-4)), 0u);
    EXPECT_EQ(errorNumberOf(e->WaitDoEvents(*Variant::fromDouble(1e10), *missing)), 6);
}

TEST(WindowsWait, WaitFindWindowsSurvivesAHandlerThatEnumeratesMeanwhile) {
    Recorder host("Vx Host Form");
    auto e = newFinder();
    std::unique_ptr<Recorder> late;
    int rounds = 0;
    // A host event handler, run during the wait, that rebuilds both tables and only on
    // its third run makes the window waited for.
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

    // A nested title search from the handler while an outer one is walking its list.
    int nested = 0;
    host.onNextYield([&] {
        ++nested;
        titleSearch(e.get(), L"no such title at all");
    });
    auto w = titleSearch(e.get(), L"vx late window");
    EXPECT_EQ(nested, 1);
    EXPECT_EQ(handleOf(w.get()), late->handle());
}

TEST(WindowsWait, WaitFindWindowsPartsAndTheEndKey) {
    FixtureProgram fx;
    Recorder host("Vx Host Form");
    auto e = newFinder();
    ComPtr<_Ds_ENumAction> found;
    ASSERT_EQ(e->WaitFindWindows(*text(L"  "), *kTilde, *kTilde, found.put()), S_OK);
    EXPECT_FALSE(found) << "a blank path is Nothing at once";
    ASSERT_EQ(e->WaitFindWindows(*text(L"Vx Fixture Main~Remember"), *kTilde, *kTilde, found.put()), S_OK);
    EXPECT_EQ(handleOf(found.get()), handleOf(fx.control(1003)));
    ASSERT_EQ(e->WaitFindWindows(*text(L"VxFixtureMain|Edit#2"), *kTilde, *text(L"|"), found.put()), S_OK);
    EXPECT_EQ(handleOf(found.get()), handleOf(fx.control(1006)));
    EXPECT_EQ(errorNumberOf(e->WaitFindWindows(*text(L"Vx Fixture Main~Nope"), *kTilde, *kTilde, found.put())), 5);

    // Only the End key ends an unsuccessful wait: a timer handler presses it on its fifth run.
    ASSERT_TRUE(host.makeForeground());
    endTicks = 0;
    SetTimer(host.hwnd(), 1, 1, pressEndOnTheFifthTick);
    auto before = yieldCount();
    ASSERT_EQ(e->WaitFindWindows(*text(L"Vx Never Shown"), *kTilde, *kTilde, found.put()), S_OK);
    keybd_event(VK_END, 0, KEYEVENTF_KEYUP, 0);
    EXPECT_FALSE(found);
    EXPECT_EQ(endTicks, 5);
    EXPECT_GE(yieldCount() - before, 5u);
    pumpFor(20);
}

TEST(WindowsWait, FindWinChildByParts) {
    FixtureProgram fx;
    auto e = newFinder();
    auto find = [&](const wchar_t* path) {
        ComPtr<_Ds_ENumAction> w;
        EXPECT_EQ(e->FindWinChild(*text(path), *kTilde, *kTilde, w.put()), S_OK);
        return handleOf(w.get());
    };
    EXPECT_EQ(find(L"Vx Fixture Main"), handleOf(fx.main()));
    EXPECT_EQ(find(L"Vx Fixture Main~Option A"), handleOf(fx.control(1004)));
    EXPECT_EQ(find(L"Vx Fixture Main~3EB"), handleOf(fx.control(1003)));
    EXPECT_EQ(find(L"Vx Fixture Main~Nope"), 0);
    EXPECT_EQ(find(L"Vx Fixture Main~Button~Option B"), handleOf(fx.control(1005)));
    EXPECT_EQ(find(L"Vx Fixture Main~button~Option B"), handleOf(fx.control(1007))) << "exact comparison; else the last item";
    EXPECT_EQ(find(L"Vx Fixture Main~a~b~c"), handleOf(fx.main())) << "more than three parts: the first part alone";
    EXPECT_EQ(find(L"Nowhere~Edit"), 0);
    EXPECT_EQ(find(L""), 0);
}

TEST(WindowsWait, TheHelperWaitsDelegateToTheWindowWaits) {
    auto helper = createObject(CLSID_Ds_MyVaribleFunction).query<_Ds_MyVaribleFunction>();
    ASSERT_TRUE(helper);
    auto before = yieldCount();
    ASSERT_EQ(helper->DoWaitNumber(0), S_OK);
    EXPECT_EQ(yieldCount(), before);
    ASSERT_EQ(helper->DoWaitNumber(3), S_OK);
    EXPECT_EQ(yieldCount() - before, 3000u) << "Number x 1000 yields";

    Recorder target("Vx Helper Target");
    before = yieldCount();
    ASSERT_EQ(helper->DoWaitFindTitle(Bstr(L"Vx Helper Target").get()), S_OK);
    EXPECT_EQ(yieldCount() - before, 1u) << "a window already there is found on the first look";

    // By name, as a host calls it; a window that never comes is given up with the End key.
    ASSERT_TRUE(target.makeForeground());
    endTicks = 0;
    SetTimer(target.hwnd(), 2, 1, pressEndOnTheFifthTick);
    auto r = call(helper.get(), L"DoWaitFindTitle", {text(L"Vx Helper Never")});
    keybd_event(VK_END, 0, KEYEVENTF_KEYUP, 0);
    EXPECT_EQ(r.hr, S_OK);
    EXPECT_EQ(endTicks, 5);
    pumpFor(20);
}
