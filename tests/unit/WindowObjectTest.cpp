// Ds_ENumAction and the driving members of Ds_EnumChid against real windows: properties
// and setters, geometry in pixels and twips, messages, closing, simulated input, window
// pictures, and handles that name no window.
#include "core/runtime/MessageLoop.h"

#include <windowsx.h>

#include "TestSupport.h"
#include "WindowTestSupport.h"

using namespace vx;
using namespace vxtest;

namespace {

Variant text(const wchar_t* s) { return Variant::fromText(s); }

std::wstring windowText(HWND hwnd) {
    char buffer[256] = {};
    SendMessageA(hwnd, WM_GETTEXT, 256, reinterpret_cast<LPARAM>(buffer));
    return std::wstring(buffer, buffer + strlen(buffer));
}

RECT rectOf(HWND hwnd) {
    RECT r{};
    GetWindowRect(hwnd, &r);
    return r;
}

// A host form as a late-bound host sees it: Cls, AutoRedraw, hdc and hWnd.
class StandInForm : public IDispatch {
public:
    StandInForm(HDC dc, HWND hwnd) : dc_(dc), hwnd_(hwnd) {}
    bool cleared = false;
    bool autoRedraw = false;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override {
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch)) {
            *ppv = this;
            AddRef();
            return S_OK;
        }
        *ppv = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++refs_; }
    ULONG STDMETHODCALLTYPE Release() override { return --refs_; }  // lives on the test's stack
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override { *n = 0; return S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        static const wchar_t* known[] = {L"Cls", L"AutoRedraw", L"hdc", L"hWnd"};
        for (int i = 0; i < 4; ++i)
            if (_wcsicmp(names[0], known[i]) == 0) return (*ids = i + 1), S_OK;
        *ids = DISPID_UNKNOWN;
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO*, UINT*) override {
        switch (id) {
        case 1: cleared = true; return S_OK;
        case 2:
            if (flags & DISPATCH_PROPERTYPUT) autoRedraw = V_BOOL(&params->rgvarg[0]) != VARIANT_FALSE;
            return S_OK;
        case 3:
            if (!autoRedraw) return DISP_E_EXCEPTION;  // the picture must be kept before its dc is read
            if (result) Variant::fromLong(static_cast<LONG>(reinterpret_cast<LONG_PTR>(dc_))).detachTo(result);
            return S_OK;
        case 4:
            if (result) Variant::fromLong(handleOf(hwnd_)).detachTo(result);
            return S_OK;
        }
        return DISP_E_MEMBERNOTFOUND;
    }

private:
    HDC dc_;
    HWND hwnd_;
    ULONG refs_ = 1;
};

}  // namespace

// (The host test reads and sets the same windows' titles, classes, identifiers, styles and
// check states from VBScript; here what a script cannot see.)
TEST(WindowsObject, ReadsAndChangesTheFixturesWindows) {
    FixtureProgram fx;
    auto edit = newWindow(fx.control(1001));
    auto ok = newWindow(fx.control(1002));
    Variant v;
    edit->get_ControlID(VARIANT_FALSE, v.put());
    EXPECT_EQ(v.type(), VT_I4);
    EXPECT_EQ(longOf(v), 1001);
    ok->get_Style(VARIANT_FALSE, v.put());
    EXPECT_EQ(textOf(v), L"WS_VISIBLE:268435456\\") << "a control without a border";
    Bstr parentText(L"Vx Fixture Renamed");
    edit->put_ParentTitle(parentText.get());
    EXPECT_EQ(windowText(fx.main()), L"Vx Fixture Renamed");
    VARIANT_BOOL b = VARIANT_TRUE;
    edit->put_Visible(VARIANT_FALSE);
    edit->get_Visible(&b);
    EXPECT_EQ(b, VARIANT_FALSE);
    edit->put_Visible(VARIANT_TRUE);
    EXPECT_TRUE(IsWindowVisible(fx.control(1001)));

    ok->Click(0);  // posted
    EXPECT_TRUE(pumpUntil([&] { return windowText(fx.control(1007)) == L"clicked 1"; }));
    auto check = newWindow(fx.control(1003));
    check->put_ClickCheckBox(1, VARIANT_TRUE);
    EXPECT_EQ(SendMessageA(fx.control(1003), BM_GETCHECK, 0, 0), BST_CHECKED);
    check->get_ClickCheckBox(9, &b);
    EXPECT_EQ(b, VARIANT_FALSE) << "an unknown sending mode sends nothing";

    edit->SetText(Bstr(L"plain").get(), 1);
    EXPECT_EQ(windowText(fx.control(1001)), L"plain");
    edit->SetText(Bstr(L"").get(), 4);
    edit->SetText(Bstr(L"typed").get(), 2);
    EXPECT_EQ(windowText(fx.control(1001)), L"typed") << "characters sent as key messages";
    edit->SetText(Bstr(L"ignored").get(), 7);
    EXPECT_EQ(windowText(fx.control(1001)), L"typed");

    auto e = newFinder();
    e->JustNumberText(handleOf(fx.control(1006)), v.put());
    EXPECT_TRUE(GetWindowLongA(fx.control(1006), GWL_STYLE) & ES_NUMBER);
    EXPECT_EQ(v.type(), VT_EMPTY);
}

TEST(WindowsObject, GeometryEdgesTwipsAndTheRequiredUnitMix) {
    Recorder r("Vx Geometry", 100, 120, 400, 300);
    auto w = newWindow(r.hwnd());
    auto e = newFinder();
    const RECT outer = rectOf(r.hwnd());
    RECT client{};
    GetClientRect(r.hwnd(), &client);
    Variant v;
    e->GetSizeWidth(r.handle(), VARIANT_FALSE, v.put());
    EXPECT_EQ(longOf(v), outer.right) << "the right edge, not the width";
    e->GetSizeWidth(r.handle(), VARIANT_TRUE, v.put());
    EXPECT_EQ(longOf(v), outer.right * 15);
    e->GetSizeHeight(r.handle(), VARIANT_FALSE, v.put());
    EXPECT_EQ(longOf(v), outer.bottom);
    e->GetPosLeft(r.handle(), VARIANT_TRUE, v.put());
    EXPECT_EQ(longOf(v), outer.left * 15);
    e->GetPosTop(r.handle(), VARIANT_FALSE, v.put());
    EXPECT_EQ(longOf(v), outer.top);

    Vx_RECT rect{};
    w->get_PostionRect(&rect);
    EXPECT_EQ(rect.left, outer.left);
    EXPECT_EQ(rect.bottom, outer.bottom);
    // By name the record comes back as a record where the platform's type-library
    // dispatch carries records; the test platform's does not, and says so.
    auto byName = get(w.get(), L"PostionRect");
    if (byName.hr == S_OK) {
        ASSERT_EQ(byName.value.type(), VT_RECORD);
        EXPECT_EQ(static_cast<const Vx_RECT*>(V_RECORD(byName.value.get()))->right, outer.right);
    } else {
        EXPECT_EQ(byName.hr, E_NOTIMPL);
    }
    w->get_SizeRect(&rect);
    EXPECT_EQ(rect.left, 0);
    EXPECT_EQ(rect.right, client.right);

    LONG value = 0;
    w->get_LeftTX(VARIANT_FALSE, &value);
    EXPECT_EQ(value, outer.left);
    w->get_WidthTX(VARIANT_TRUE, &value);
    EXPECT_EQ(value, client.right * 15) << "the client width";
    w->get_HeightTX(VARIANT_FALSE, &value);
    EXPECT_EQ(value, client.bottom);

    // The normal-position rectangle, set by edges.
    ASSERT_EQ(w->SizeWinPlace(50, 60, 450, 360), S_OK);
    EXPECT_EQ(rectOf(r.hwnd()).right, 450);
    w->get_LeftPL(VARIANT_FALSE, &value);
    EXPECT_EQ(value, 50);
    w->get_WidthPL(VARIANT_FALSE, &value);
    EXPECT_EQ(value, 450) << "an edge, not a width";
    w->get_HeightPL(VARIANT_TRUE, &value);
    EXPECT_EQ(value, 360 * 15);
    w->MySizeRect(&rect);
    EXPECT_EQ(rect.top, 60);
    e->GetWinPlace(r.handle(), &rect);
    EXPECT_EQ(rect.right, 450);

    // Setting a width to the width just read shrinks a framed window by its frame.
    GetClientRect(r.hwnd(), &client);
    w->get_WidthTX(VARIANT_FALSE, &value);
    ASSERT_EQ(w->put_WidthTX(VARIANT_FALSE, value), S_OK);
    RECT after{};
    GetClientRect(r.hwnd(), &after);
    EXPECT_LT(after.right, client.right);
    EXPECT_EQ(rectOf(r.hwnd()).right - rectOf(r.hwnd()).left, client.right);

    // In twips the new value goes through as it is while the other three are x 15 (on a
    // small window without a caption, which the system does not hold to a size range).
    HWND small = CreateWindowExA(0, "Static", "", WS_POPUP | WS_BORDER | WS_VISIBLE, 30, 20, 60, 40, nullptr, nullptr,
                                 nullptr, nullptr);
    auto sw = newWindow(small);
    const RECT o = rectOf(small);
    GetClientRect(small, &client);
    ASSERT_EQ(sw->put_LeftTX(VARIANT_TRUE, 10), S_OK);
    const RECT moved = rectOf(small);
    DestroyWindow(small);
    EXPECT_EQ(moved.left, 10);
    EXPECT_EQ(moved.top, o.top * 15);
    EXPECT_EQ(moved.right - moved.left, client.right * 15);
    EXPECT_EQ(moved.bottom - moved.top, client.bottom * 15);
    EXPECT_EQ(errorNumberOf(w->put_TopTX(VARIANT_TRUE, 200000000)), 6) << "the scaled new value must fit a Long";

    // B laid over A's rectangle.
    Recorder b("Vx Cover", 10, 10, 50, 50);
    SetWindowPos(r.hwnd(), nullptr, 100, 110, 300, 200, SWP_NOZORDER);
    ASSERT_EQ(e->GoHwndContainer(r.handle(), b.handle(), VARIANT_FALSE), S_OK);
    const RECT ra = rectOf(r.hwnd()), rb = rectOf(b.hwnd());
    EXPECT_TRUE(EqualRect(&ra, &rb));
}

TEST(WindowsObject, WindowStateTopmostAndShowCommands) {
    Recorder r("Vx States");
    auto w = newWindow(r.hwnd());
    LONG state = -1;
    w->put_WinState(2);
    EXPECT_TRUE(IsZoomed(r.hwnd()));
    w->get_WinState(&state);
    EXPECT_EQ(state, 2);
    w->put_WinState(0);
    w->get_WinState(&state);
    EXPECT_EQ(state, 0);
    w->put_WinState(1);
    EXPECT_TRUE(IsIconic(r.hwnd()));
    w->get_WinState(&state);
    EXPECT_EQ(state, 1);
    w->put_WinState(0);
    w->get_WinState(&state);
    EXPECT_EQ(state, 0);
    w->put_WinState(7);
    w->get_WinState(&state);
    EXPECT_EQ(state, 0);
    w->GoShowWindows(0);
    EXPECT_FALSE(IsWindowVisible(r.hwnd()));
    w->GoShowWindows(5);
    EXPECT_TRUE(IsWindowVisible(r.hwnd()));

    w->WindowOnTop(-1);
    EXPECT_TRUE(GetWindowLongA(r.hwnd(), GWL_EXSTYLE) & WS_EX_TOPMOST);
    w->WindowOnTop(-2);
    EXPECT_FALSE(GetWindowLongA(r.hwnd(), GWL_EXSTYLE) & WS_EX_TOPMOST);
}

TEST(WindowsMessages, ClosingOrderAndTheZeroPassedByReference) {
    Recorder r;
    auto e = newFinder();
    ASSERT_EQ(e->WindowsClose(r.handle()), S_OK);
    ASSERT_EQ(r.messages.size(), 2u) << "the two sent messages arrive during the call";
    EXPECT_EQ(r.messages[0].msg, static_cast<UINT>(WM_SYSCOMMAND));
    EXPECT_EQ(r.messages[0].wParam, static_cast<WPARAM>(static_cast<LONG_PTR>(-4000)));
    EXPECT_EQ(r.messages[0].wParam & 0xFFF0, static_cast<WPARAM>(SC_CLOSE));
    EXPECT_TRUE(r.messages[0].zeroAtLParam);
    EXPECT_EQ(r.messages[1].msg, static_cast<UINT>(WM_CLOSE));
    EXPECT_TRUE(r.messages[1].zeroAtLParam);
    yieldToHost();
    ASSERT_EQ(r.messages.size(), 3u);
    EXPECT_EQ(r.messages[2].msg, static_cast<UINT>(WM_CLOSE));
    EXPECT_EQ(r.messages[2].lParam, 0) << "the posted one carries a true 0";

    r.messages.clear();
    auto w = newWindow(r.hwnd());
    ASSERT_EQ(w->CloseWindowXP(), S_OK);
    ASSERT_EQ(r.messages.size(), 2u);
    EXPECT_EQ(r.messages[0].msg, static_cast<UINT>(WM_CLOSE));
    EXPECT_EQ(r.messages[1].msg, static_cast<UINT>(WM_SYSCOMMAND));
    yieldToHost();
    ASSERT_EQ(r.messages.size(), 3u);
    EXPECT_EQ(r.messages[2].msg, static_cast<UINT>(WM_CLOSE)) << "posted first, so dispatched last";
}

TEST(WindowsMessages, ActionSendInItsSixModes) {
    Recorder r;
    auto e = newFinder();
    auto send = [&](const Variant& lp, LONG mode) {
        Variant v;
        EXPECT_EQ(e->ActionSend(r.handle(), WM_USER + 1, 5, *lp, mode, v.put()), S_OK);
        return v;
    };
    EXPECT_EQ(longOf(send(Variant::fromDouble(41.5), 1)), 77);
    EXPECT_EQ(r.messages.back().lParam, 42) << "rounded half to even";
    EXPECT_EQ(r.messages.back().wParam, 5u);
    EXPECT_EQ(longOf(send(text(L"12"), 1)), 77) << "a numeric text is a number";
    EXPECT_EQ(r.messages.back().lParam, 12);
    EXPECT_EQ(longOf(send(Variant::fromLong(-3), 2)), 1);
    EXPECT_EQ(r.messages.back().lParam, -3);
    EXPECT_EQ(longOf(send(Variant::fromLong(9), 3)), 1) << "the call's own result, not the answer";
    EXPECT_EQ(r.messages.back().lParam, 9);
    EXPECT_EQ(longOf(send(Variant::fromLong(8), 5)), 1);
    EXPECT_EQ(r.messages.back().lParam, 8);
    const size_t before = r.messages.size();
    EXPECT_EQ(longOf(send(Variant::fromLong(7), 0)), 1);
    EXPECT_EQ(r.messages.size(), before) << "posted: not there until a yield";
    yieldToHost();
    EXPECT_EQ(r.messages.back().lParam, 7);
    EXPECT_EQ(send(Variant::fromLong(1), 6).type(), VT_EMPTY);

    // Texts go as ANSI strings; by string, the digits of the number (0 for a text).
    Variant v;
    e->ActionSend(r.handle(), WM_SETTEXT, 0, *text(L"caption"), 1, v.put());
    EXPECT_EQ(windowText(r.hwnd()), L"caption");
    e->ActionSend(r.handle(), WM_SETTEXT, 0, *Variant::fromLong(1234), 4, v.put());
    EXPECT_EQ(windowText(r.hwnd()), L"1234");
    e->ActionSend(r.handle(), WM_SETTEXT, 0, *text(L"words"), 4, v.put());
    EXPECT_EQ(windowText(r.hwnd()), L"0");
    EXPECT_EQ(errorNumberOf(e->ActionSend(r.handle(), WM_USER + 1, 0, *Variant::fromDouble(1e12), 1, v.put())), 6);
}

TEST(WindowsInput, KeysGoDownAndUpInOrderAndWaitOnlyForAFullPress) {
    Recorder r;
    ASSERT_TRUE(r.makeForeground());
    auto e = newFinder();
    auto before = yieldCount();
    ASSERT_EQ(e->KeyPress('Q', *Variant::fromLong(1000), 2), S_OK);
    EXPECT_EQ(yieldCount(), before) << "a lone key down never waits";
    EXPECT_TRUE(GetAsyncKeyState('Q') & 0x8000);
    ASSERT_EQ(e->KeyPress('Q', *Variant::fromLong(1000), 3), S_OK);
    EXPECT_FALSE(GetAsyncKeyState('Q') & 0x8000);
    ASSERT_EQ(e->KeyPress('W', *Variant::fromLong(3), 1), S_OK);
    EXPECT_EQ(yieldCount() - before, 3u);
    ASSERT_EQ(e->KeyPress('E', *Variant::missing(), 1), S_OK);
    ASSERT_EQ(e->KeyPress('R', *Variant::fromLong(1), 4), S_OK) << "other kinds send nothing";
    pumpUntil([&] { return r.messages.size() >= 6; }, 3000);
    pumpFor(50);
    std::vector<std::pair<UINT, WPARAM>> keys;
    for (const auto& m : r.messages)
        if (m.msg == WM_KEYDOWN || m.msg == WM_KEYUP) keys.emplace_back(m.msg, m.wParam);
    const std::vector<std::pair<UINT, WPARAM>> expected{{WM_KEYDOWN, 'Q'}, {WM_KEYUP, 'Q'}, {WM_KEYDOWN, 'W'},
                                                        {WM_KEYUP, 'W'},   {WM_KEYDOWN, 'E'}, {WM_KEYUP, 'E'}};
    EXPECT_EQ(keys, expected);
    EXPECT_EQ(errorNumberOf(e->KeyPress(300, *Variant::missing(), 1)), 6) << "a key code is a byte";

    // Typed text: each character's code as a key, to whatever has the focus.
    r.messages.clear();
    LONG unused = 0;
    ASSERT_EQ(e->SetTextMaching(Bstr(L"HI 7").get(), &unused, 3, *Variant::missing()), S_OK);
    pumpUntil([&] { return r.messages.size() >= 12; }, 3000);
    std::wstring chars;
    for (const auto& m : r.messages)
        if (m.msg == WM_CHAR) chars += static_cast<wchar_t>(m.wParam);
    EXPECT_EQ(chars, L"hi 7") << "letters arrive as their unshifted keys";
}

TEST(WindowsInput, MouseMovesThenWaitsThenClicksAtTheCursor) {
    Recorder r("Vx Mouse", 200, 200, 300, 200);
    ASSERT_TRUE(r.makeForeground());
    auto e = newFinder();
    ASSERT_EQ(e->GoCusorXY(*Variant::fromLong(250), *Variant::fromLong(260), 0, *Variant::missing()), S_OK);
    Variant x, y;
    e->MouseCX(VARIANT_FALSE, x.put());
    e->MouseCY(VARIANT_TRUE, y.put());
    EXPECT_EQ(longOf(x), 250);
    EXPECT_EQ(longOf(y), 260 * 15);
    e->GoCusorXY(*Variant::fromLong(270), *Variant::missing(), 0, *Variant::missing());
    POINT p{};
    GetCursorPos(&p);
    EXPECT_EQ(p.x, 270);
    EXPECT_EQ(p.y, 260) << "only x given: y stays";
    e->GoCusorXY(*Variant::missing(), *Variant::fromLong(280), 0, *Variant::missing());
    GetCursorPos(&p);
    EXPECT_EQ(p.x, 270);
    EXPECT_EQ(p.y, 280);

    VARIANT_BOOL hit = VARIANT_FALSE;
    e->IsHitTest(r.handle(), &hit);
    EXPECT_EQ(hit, VARIANT_TRUE);
    ComPtr<_Ds_ENumAction> under;
    e->GetHwndPoint(under.put());
    EXPECT_EQ(handleOf(under.get()), r.handle());
    ComPtr<_Ds_ENumAction> active;
    e->GetActiveWindow(active.put());
    EXPECT_EQ(handleOf(active.get()), r.handle());
    auto w = newWindow(r.hwnd());
    w->IsHitTestXY(&hit);
    EXPECT_EQ(hit, VARIANT_TRUE);
    const RECT outer = rectOf(r.hwnd());
    SetCursorPos(outer.right, outer.bottom);
    e->IsHitTest(r.handle(), &hit);
    EXPECT_EQ(hit, VARIANT_TRUE) << "edges included";
    SetCursorPos(outer.right + 1, outer.bottom);
    e->IsHitTest(r.handle(), &hit);
    EXPECT_EQ(hit, VARIANT_FALSE);

    // Down and up together (6) after a wait of two yields, at the cursor.
    RECT client{};
    GetClientRect(r.hwnd(), &client);
    POINT target{client.right / 2, client.bottom / 2};
    ClientToScreen(r.hwnd(), &target);
    r.messages.clear();
    auto before = yieldCount();
    ASSERT_EQ(e->GoCusorXY(*Variant::fromLong(target.x), *Variant::fromLong(target.y), 6, *Variant::fromLong(2)), S_OK);
    EXPECT_EQ(yieldCount() - before, 2u);
    EXPECT_TRUE(r.messages.empty()) << "the button event comes after the wait";
    pumpUntil([&] { return r.messages.size() >= 2; }, 3000);
    ASSERT_EQ(r.messages.size(), 2u);
    EXPECT_EQ(r.messages[0].msg, static_cast<UINT>(WM_LBUTTONDOWN));
    EXPECT_EQ(r.messages[1].msg, static_cast<UINT>(WM_LBUTTONUP));
    EXPECT_EQ(GET_X_LPARAM(r.messages[0].lParam), client.right / 2);
    EXPECT_EQ(GET_Y_LPARAM(r.messages[0].lParam), client.bottom / 2);
}

TEST(WindowsImage, PrintsIntoAHostFormThroughLateBindingAndMakesItTranslucent) {
    Recorder source("Vx Source", 100, 100, 200, 150);
    Recorder formWindow("Vx Form", 400, 100, 200, 150);
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, 200, 150);
    ReleaseDC(nullptr, screen);
    HGDIOBJ old = SelectObject(dc, bitmap);
    RECT all{0, 0, 200, 150};
    HBRUSH red = CreateSolidBrush(RGB(255, 0, 0));
    FillRect(dc, &all, red);
    DeleteObject(red);

    StandInForm form(dc, formWindow.hwnd());
    IDispatch* formRef = &form;
    LONG hwnd = source.handle();
    auto e = newFinder();
    ASSERT_EQ(e->GoImageWithHwnd(&hwnd, &formRef), S_OK);
    EXPECT_TRUE(form.cleared);
    EXPECT_TRUE(form.autoRedraw);
    EXPECT_NE(GetPixel(dc, 60, 60), RGB(255, 0, 0)) << "the window's picture was drawn into the form's dc";

    LONG alpha = 128;
    form.cleared = false;
    ASSERT_EQ(e->GoImageAlphaHwnd(&hwnd, &formRef, &alpha), S_OK);
    EXPECT_TRUE(form.cleared);
    EXPECT_TRUE(GetWindowLongA(formWindow.hwnd(), GWL_EXSTYLE) & WS_EX_LAYERED) << "the form, not the source";
    EXPECT_FALSE(GetWindowLongA(source.hwnd(), GWL_EXSTYLE) & WS_EX_LAYERED);
    alpha = 256;
    LONG sourceHandle = source.handle();
    EXPECT_EQ(errorNumberOf(e->GoFormAlpha(&sourceHandle, &alpha)), 6);
    alpha = -1;
    EXPECT_EQ(errorNumberOf(e->GoFormAlpha(&sourceHandle, &alpha)), 6);
    alpha = 0;
    EXPECT_EQ(e->GoFormAlpha(&sourceHandle, &alpha), S_OK);
    EXPECT_TRUE(GetWindowLongA(source.hwnd(), GWL_EXSTYLE) & WS_EX_LAYERED);
    IDispatch* nothing = nullptr;
    EXPECT_EQ(errorNumberOf(e->GoImageWithHwnd(&hwnd, &nothing)), 91);

    SelectObject(dc, old);
    DeleteObject(bitmap);
    DeleteDC(dc);
}

TEST(WindowsRobustness, HandleZeroAndStaleHandlesGiveNeutralResults) {
    HWND gone = CreateWindowExA(0, "Static", "gone", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    DestroyWindow(gone);
    auto e = newFinder();
    for (LONG h : {0L, handleOf(gone), -5L, 0x7FFFFFF0L}) {
        SCOPED_TRACE(h);
        auto w = newWindow(hwndOf(h));
        Bstr s;
        Variant v;
        LONG n = -1;
        VARIANT_BOOL b = VARIANT_TRUE;
        Vx_RECT rect{1, 2, 3, 4};
        // (The title is not compared: the test platform's GetWindowTextA hands back
        // uninitialised bytes for a handle that names no window.)
        EXPECT_EQ(w->get_Title(s.put()), S_OK);
        EXPECT_EQ(w->get_Class(s.put()), S_OK);
        EXPECT_EQ(s.str(), L"");
        EXPECT_EQ(w->get_ParentTitle(s.put()), S_OK);
        EXPECT_EQ(w->get_Style(VARIANT_FALSE, v.put()), S_OK);
        EXPECT_EQ(textOf(v), L"");
        EXPECT_EQ(w->get_ControlID(VARIANT_TRUE, v.put()), S_OK);
        EXPECT_EQ(textOf(v), L"0");
        EXPECT_EQ(w->get_WinState(&n), S_OK);
        EXPECT_EQ(n, 0);
        EXPECT_EQ(w->get_LeftPL(VARIANT_TRUE, &n), S_OK);
        EXPECT_EQ(n, 0);
        EXPECT_EQ(w->get_WidthTX(VARIANT_TRUE, &n), S_OK);
        EXPECT_EQ(n, 0);
        EXPECT_EQ(w->put_LeftTX(VARIANT_FALSE, 5), S_OK);
        EXPECT_EQ(w->get_ClickCheckBox(1, &b), S_OK);
        EXPECT_EQ(b, VARIANT_FALSE);
        EXPECT_EQ(w->Click(1), S_OK);
        EXPECT_EQ(w->get_PostionRect(&rect), S_OK);
        EXPECT_EQ(rect.right, 0);
        EXPECT_EQ(w->get_IsTaskbar(&b), S_OK);
        EXPECT_EQ(b, VARIANT_FALSE);
        EXPECT_EQ(w->SetText(Bstr(L"x").get(), 2), S_OK);
        EXPECT_EQ(w->SizeWinPlace(1, 2, 3, 4), S_OK);
        EXPECT_EQ(w->SendMsg(WM_USER, 0, *Variant::fromLong(0), 1, -1, v.put()), S_OK);
        EXPECT_EQ(longOf(v), 0);
        ComPtr<_Ds_ListChild> list;
        EXPECT_EQ(w->SubParentEnumX(4, list.put()), S_OK);
        EXPECT_EQ(w->SubChildEnum(4, list.put()), S_OK);
        ComPtr<_Ds_ENumAction> found;
        EXPECT_EQ(e->GetFindTitleWindow(Bstr(L"x").get(), h, found.put()), S_OK);
        EXPECT_EQ(e->GetSizeWidth(h, VARIANT_TRUE, v.put()), S_OK);
        EXPECT_EQ(longOf(v), 0);
        EXPECT_EQ(e->ThreadProcessId(h, &n), S_OK);
        EXPECT_EQ(w->CloseWindowXP(), S_OK);
        EXPECT_EQ(e->WindowsClose(h), S_OK);
    }
    pumpFor(20);  // the stray closing messages posted to handle 0 are dispatched harmlessly
}
