// Ds_ENumAction and the driving members of Ds_EnumChid where a script cannot look: the
// placement rectangle and records, messages as they arrive (order, parameters, the zero
// passed by reference), input events and their waits, and window pictures. (Properties,
// setters and handles that name no window, as a host sees them, are checked by
// tests/host/windows.vbs.)
#include "core/runtime/MessageLoop.h"

#include <windowsx.h>

#include "WindowTestSupport.h"

using namespace vx;
using namespace vxtest;

namespace {

Variant text(const wchar_t* s) { return Variant::fromText(s); }

RECT rectOf(HWND hwnd) {
    RECT r{};
    GetWindowRect(hwnd, &r);
    return r;
}

std::vector<UINT> kindsOf(const std::vector<Recorder::Message>& messages) {
    std::vector<UINT> kinds;
    for (const auto& m : messages) kinds.push_back(m.msg);
    return kinds;
}

// A host form as a late-bound host sees it: Cls, AutoRedraw, hdc (readable only once
// AutoRedraw is set, as a form keeps no picture before) and hWnd.
class StandInForm : public IDispatch {
public:
    StandInForm(HDC dc, HWND hwnd) : dc_(dc), hwnd_(hwnd) {}
    bool cleared = false;
    bool autoRedraw = false;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override {
        *ppv = IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch) ? this : nullptr;
        return *ppv ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }  // lives on the test's stack
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override { return *n = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        static const wchar_t* known[] = {L"Cls", L"AutoRedraw", L"hdc", L"hWnd"};
        for (int i = 0; i < 4; ++i)
            if (_wcsicmp(names[0], known[i]) == 0) return *ids = i + 1, S_OK;
        return *ids = DISPID_UNKNOWN, DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO*, UINT*) override {
        switch (id) {
        case 1: cleared = true; return S_OK;
        case 2:
            if (flags & DISPATCH_PROPERTYPUT) autoRedraw = V_BOOL(&params->rgvarg[0]) != VARIANT_FALSE;
            return S_OK;
        case 3:
            if (!autoRedraw) return DISP_E_EXCEPTION;
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
};

}  // namespace

// The placement rectangle is set and read by edges, not sizes; the records carry the
// window and client rectangles; a window is laid over another's rectangle; topmost is
// set and cleared (the flag must be sign-extended into a handle).
TEST(WindowsObject, PlacementRecordsAndTopmost) {
    Recorder r("Vx Geometry", 100, 120, 400, 300);
    auto w = newWindow(r.hwnd());
    auto e = newFinder();
    ASSERT_EQ(w->SizeWinPlace(50, 60, 450, 360), S_OK);
    EXPECT_EQ(rectOf(r.hwnd()).right, 450);
    LONG value = 0;
    w->get_LeftPL(VARIANT_FALSE, &value);
    EXPECT_EQ(value, 50);
    w->get_WidthPL(VARIANT_FALSE, &value);
    EXPECT_EQ(value, 450) << "an edge, not a width";
    w->get_HeightPL(VARIANT_TRUE, &value);
    EXPECT_EQ(value, 360 * 15);
    Vx_RECT rect{};
    w->MySizeRect(&rect);
    EXPECT_EQ(rect.top, 60);
    e->GetWinPlace(r.handle(), &rect);
    EXPECT_EQ(rect.right, 450);

    const RECT outer = rectOf(r.hwnd());
    RECT client{};
    GetClientRect(r.hwnd(), &client);
    w->get_PostionRect(&rect);
    EXPECT_TRUE(rect.left == outer.left && rect.top == outer.top && rect.bottom == outer.bottom);
    w->get_SizeRect(&rect);
    EXPECT_TRUE(rect.left == 0 && rect.right == client.right && rect.bottom == client.bottom);

    Recorder b("Vx Cover", 10, 10, 50, 50);
    ASSERT_EQ(e->GoHwndContainer(r.handle(), b.handle(), VARIANT_FALSE), S_OK);
    const RECT ra = rectOf(r.hwnd()), rb = rectOf(b.hwnd());
    EXPECT_TRUE(EqualRect(&ra, &rb));

    w->WindowOnTop(-1);
    EXPECT_TRUE(GetWindowLongA(r.hwnd(), GWL_EXSTYLE) & WS_EX_TOPMOST);
    w->WindowOnTop(-2);
    EXPECT_FALSE(GetWindowLongA(r.hwnd(), GWL_EXSTYLE) & WS_EX_TOPMOST);
}

// The two closing sequences send and post in their own orders, and the sent messages
// carry the address of a zero where the posted one carries 0 itself.
TEST(WindowsMessages, ClosingOrderAndTheZeroPassedByReference) {
    Recorder r;
    auto e = newFinder();
    ASSERT_EQ(e->WindowsClose(r.handle()), S_OK);
    ASSERT_EQ(kindsOf(r.messages), (std::vector<UINT>{WM_SYSCOMMAND, WM_CLOSE})) << "the sent ones arrive at once";
    EXPECT_EQ(r.messages[0].wParam, static_cast<WPARAM>(static_cast<LONG_PTR>(-4000)));
    EXPECT_EQ(r.messages[0].wParam & 0xFFF0, static_cast<WPARAM>(SC_CLOSE));
    EXPECT_TRUE(r.messages[0].zeroAtLParam && r.messages[1].zeroAtLParam);
    yieldToHost();
    ASSERT_EQ(r.messages.size(), 3u);
    EXPECT_EQ(r.messages[2].msg, static_cast<UINT>(WM_CLOSE));
    EXPECT_EQ(r.messages[2].lParam, 0) << "the posted one carries a true 0";

    r.messages.clear();
    ASSERT_EQ(newWindow(r.hwnd())->CloseWindowXP(), S_OK);
    yieldToHost();
    EXPECT_EQ(kindsOf(r.messages), (std::vector<UINT>{WM_CLOSE, WM_SYSCOMMAND, WM_CLOSE})) << "posted first, so last";
    EXPECT_TRUE(r.messages[0].zeroAtLParam && r.messages[1].zeroAtLParam);
}

// Each sending mode delivers the number rounded as the runtime rounds, and returns what
// that kind of call returns: the answer, or the call's own success.
TEST(WindowsMessages, ActionSendInEachMode) {
    Recorder r;
    auto e = newFinder();
    struct Case {
        Variant lParam;
        LONG mode, result;
        LPARAM seen;
    } cases[] = {
        {Variant::fromDouble(41.5), 1, 77, 42},  // rounded half to even; the answer
        {text(L"12"), 1, 77, 12},                // a numeric text is a number
        {Variant::fromLong(-3), 2, 1, -3},
        {Variant::fromLong(9), 3, 1, 9},  // the call's own result, not the answer
        {Variant::fromLong(8), 5, 1, 8},
        {Variant::fromLong(7), 0, 1, 7},  // posted: not there until a yield
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.mode);
        r.messages.clear();
        Variant v;
        ASSERT_EQ(e->ActionSend(r.handle(), WM_USER + 1, 5, *c.lParam, c.mode, v.put()), S_OK);
        EXPECT_EQ(longOf(v), c.result);
        EXPECT_EQ(r.messages.empty(), c.mode == 0);
        yieldToHost();
        ASSERT_EQ(r.messages.size(), 1u);
        EXPECT_EQ(r.messages[0].lParam, c.seen);
        EXPECT_EQ(r.messages[0].wParam, 5u);
    }
    Variant v;
    ASSERT_EQ(e->ActionSend(r.handle(), WM_USER + 1, 0, *Variant::fromLong(1), 6, v.put()), S_OK);
    EXPECT_EQ(v.type(), VT_EMPTY) << "an unknown mode sends nothing";
    EXPECT_EQ(errorNumberOf(e->ActionSend(r.handle(), WM_USER + 1, 0, *Variant::fromDouble(1e12), 1, v.put())), 6);
}

// Keys go down and up in order; only a full press waits, by the yields it is given.
TEST(WindowsInput, KeysGoDownAndUpInOrderAndOnlyAFullPressWaits) {
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
    // A last key of the test's own: input arrives in the order it was sent, so once it is
    // there, whatever the calls above sent is there too.
    keybd_event(VK_F24, 0, 0, 0);
    keybd_event(VK_F24, 0, KEYEVENTF_KEYUP, 0);
    ASSERT_TRUE(pumpUntil([&] { return !r.messages.empty() && r.messages.back().wParam == VK_F24; }));
    std::vector<std::pair<UINT, WPARAM>> keys;
    for (const auto& m : r.messages)
        if (m.wParam != VK_F24) keys.emplace_back(m.msg, m.wParam);
    const std::vector<std::pair<UINT, WPARAM>> expected{{WM_KEYDOWN, 'Q'}, {WM_KEYUP, 'Q'}, {WM_KEYDOWN, 'W'},
                                                        {WM_KEYUP, 'W'},   {WM_KEYDOWN, 'E'}, {WM_KEYUP, 'E'}};
    EXPECT_EQ(keys, expected);
}

// The mouse moves, then waits, then presses down and up at the cursor.
TEST(WindowsInput, MouseMovesThenWaitsThenClicksAtTheCursor) {
    Recorder r("Vx Mouse", 200, 200, 300, 200);
    ASSERT_TRUE(r.makeForeground());
    RECT client{};
    GetClientRect(r.hwnd(), &client);
    POINT target{client.right / 2, client.bottom / 2};
    ClientToScreen(r.hwnd(), &target);
    auto e = newFinder();
    auto before = yieldCount();
    ASSERT_EQ(e->GoCusorXY(*Variant::fromLong(target.x), *Variant::fromLong(target.y), 6, *Variant::fromLong(2)), S_OK);
    EXPECT_EQ(yieldCount() - before, 2u);
    EXPECT_TRUE(r.messages.empty()) << "the button event comes after the wait";
    pumpUntil([&] { return r.messages.size() >= 2; });
    ASSERT_EQ(kindsOf(r.messages), (std::vector<UINT>{WM_LBUTTONDOWN, WM_LBUTTONUP}));
    EXPECT_EQ(GET_X_LPARAM(r.messages[0].lParam), client.right / 2);
    EXPECT_EQ(GET_Y_LPARAM(r.messages[0].lParam), client.bottom / 2);
}

// The window's picture is drawn into the form's device context through late binding,
// and the form, not the source window, becomes translucent.
TEST(WindowsImage, PrintsIntoAHostFormAndMakesTheFormTranslucent) {
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
    LONG hwnd = source.handle(), alpha = 128;
    auto e = newFinder();
    ASSERT_EQ(e->GoImageAlphaHwnd(&hwnd, &formRef, &alpha), S_OK);
    EXPECT_TRUE(form.cleared && form.autoRedraw);
    EXPECT_NE(GetPixel(dc, 60, 60), RGB(255, 0, 0)) << "the window's picture was drawn into the form's dc";
    EXPECT_TRUE(GetWindowLongA(formWindow.hwnd(), GWL_EXSTYLE) & WS_EX_LAYERED);
    EXPECT_FALSE(GetWindowLongA(source.hwnd(), GWL_EXSTYLE) & WS_EX_LAYERED);
    alpha = -1;
    EXPECT_EQ(errorNumberOf(e->GoFormAlpha(&hwnd, &alpha)), 6);
    alpha = 0;
    EXPECT_EQ(e->GoFormAlpha(&hwnd, &alpha), S_OK);
    EXPECT_TRUE(GetWindowLongA(source.hwnd(), GWL_EXSTYLE) & WS_EX_LAYERED);

    SelectObject(dc, old);
    DeleteObject(bitmap);
    DeleteDC(dc);
}
