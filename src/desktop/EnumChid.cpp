#include "desktop/EnumChid.h"

#include "Vx_MainEnums.h"
#include "core/runtime/Ansi.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/MessageLoop.h"
#include "core/runtime/Text.h"
#include "desktop/ENumAction.h"
#include "desktop/ListChild.h"
#include "shared/Waits.h"
#include "shared/Windows.h"

namespace vx {

namespace {

POINT cursor() {
    POINT p{};
    GetCursorPos(&p);
    return p;
}

RECT windowRect(LONG hwnd) {
    RECT r{};
    GetWindowRect(toHwnd(hwnd), &r);
    return r;
}

// A position in pixels, or in twips when asked, as a Variant result.
HRESULT giveScaled(LONG pixels, VARIANT_BOOL twips, VARIANT* result) {
    return deliver(__uuidof(_Ds_EnumChid), result, [&] { return Variant::fromLong(window::scaled(pixels, twips != 0)); });
}

// Null for an empty text: "any" to FindWindow.
const char* optionalText(const std::string& ansi, BSTR original) {
    return SysStringLen(original) == 0 ? nullptr : ansi.c_str();
}

// A list of the given windows, keyed as the output kind says.
ComPtr<_Ds_ListChild> buildList(const std::vector<LONG>& windows, LONG tOut) {
    auto list = ListChild::create();
    for (const window::ListedWindow& w : window::listWindows(windows, tOut)) {
        list->addEntry(ListChild::Main, w.handle, w.key);
        if (w.also == window::ListedWindow::AlsoTitles) list->addEntry(ListChild::Titles, w.handle, w.key);
        if (w.also == window::ListedWindow::AlsoClasses) list->addEntry(ListChild::Classes, w.handle, w.key);
    }
    return ComPtr<_Ds_ListChild>(list.get());
}

}  // namespace

// ---- shared bodies ----

void EnumChid::keyPress(int16_t code, const VARIANT& waitNumber, LONG typeKey) {
    if (code < 0 || code > 255) raise(err::Overflow);  // the key code goes to the system as a byte
    const BYTE key = static_cast<BYTE>(code);
    if (typeKey == NoUse || typeKey == KeyDown) keybd_event(key, 0, 0, 0);
    if (typeKey == NoUse || typeKey == KeyUp) keybd_event(key, 0, KEYEVENTF_KEYUP, 0);
    if (typeKey == NoUse && !isMissing(waitNumber)) waitDoEvents(*Variant::missing(), waitNumber);
}

Variant EnumChid::actionSend(LONG hwndValue, LONG msgValue, LONG wParamValue, const VARIANT& lParam, LONG sendMy) {
    const bool numeric = isNumeric(lParam);
    const LONG n = numeric ? toInt32(lParam) : 0;
    const HWND hwnd = toHwnd(hwndValue);
    const UINT msg = static_cast<UINT>(msgValue);
    const WPARAM wParam = static_cast<WPARAM>(static_cast<LONG_PTR>(wParamValue));
    const LPARAM lp = static_cast<LPARAM>(n);
    LRESULT r = 0;
    switch (sendMy) {
    case F_PostMessage:
        r = PostMessageA(hwnd, msg, wParam, lp);
        break;
    case F_SendMessage:
        if (!numeric) {
            const std::string text = toAnsi(toText(lParam));
            r = SendMessageA(hwnd, msg, wParam, reinterpret_cast<LPARAM>(text.c_str()));
        } else {
            r = SendMessageA(hwnd, msg, wParam, lp);
        }
        break;
    case F_SendNotifyMessage:
        r = SendNotifyMessageA(hwnd, msg, wParam, lp);
        break;
    case F_SendMessageTimeout: {
        DWORD_PTR answer = 0;
        r = SendMessageTimeoutA(hwnd, msg, wParam, lp, SMTO_NORMAL, 0, &answer);
        break;
    }
    case F_SendMessageByString: {
        const std::string digits = std::to_string(n);
        r = SendMessageA(hwnd, msg, wParam, reinterpret_cast<LPARAM>(digits.c_str()));
        break;
    }
    case F_SendMessageCallback:
        r = SendMessageCallbackA(hwnd, msg, wParam, lp, nullptr, 0);
        break;
    default:
        return Variant();
    }
    return Variant::fromLong(static_cast<LONG>(r));
}

void EnumChid::windowsClose(LONG hwndValue) {
    const HWND hwnd = toHwnd(hwndValue);
    window::sendWithZeroRef(hwnd, WM_SYSCOMMAND, window::kScClose);
    PostMessageA(hwnd, WM_CLOSE, 0, 0);
    window::sendWithZeroRef(hwnd, WM_CLOSE, 0);
}

void EnumChid::setTextMaching(const std::wstring& text, LONG hwndValue, LONG typeMaching, const VARIANT& waitNumber) {
    const HWND hwnd = toHwnd(hwndValue);
    switch (typeMaching) {
    case dsSetText:
        SetWindowTextA(hwnd, toAnsi(text).c_str());
        break;
    case dsSetTextAlpha:
    case dsSetTextKeyPress:
        for (wchar_t ch : text) {
            // The character's ANSI code: one byte, or lead and trail byte of a double-byte character.
            const std::string ansi = toAnsi(std::wstring_view(&ch, 1));
            int code = ansi.empty() ? 0 : static_cast<unsigned char>(ansi[0]);
            if (ansi.size() > 1) code = static_cast<int16_t>((code << 8) | static_cast<unsigned char>(ansi[1]));
            if (typeMaching == dsSetTextAlpha) {
                const WPARAM w = static_cast<WPARAM>(static_cast<LONG_PTR>(code));
                window::sendWithZeroRef(hwnd, WM_KEYDOWN, w);
                window::sendWithZeroRef(hwnd, WM_CHAR, w);
                window::sendWithZeroRef(hwnd, WM_KEYUP, w);
            } else {
                keyPress(static_cast<int16_t>(code), waitNumber, NoUse);
            }
        }
        break;
    case dsSetSendText: {
        const std::string ansi = toAnsi(text);
        SendMessageA(hwnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(ansi.c_str()));
        break;
    }
    default:
        break;
    }
}

ComPtr<_Ds_ListChild> EnumChid::listChildren(const VARIANT& hwnd, LONG tOut) {
    return buildList(window::childrenOf(hwnd), tOut);
}

ComPtr<_Ds_ListChild> EnumChid::listAncestors(LONG hwnd, LONG tOut) {
    return buildList(window::windowAndAncestors(hwnd), tOut);
}

bool EnumChid::isHitTest(LONG hwnd) {
    const POINT p = cursor();
    const RECT r = windowRect(hwnd);
    return r.left <= p.x && p.x <= r.right && r.top <= p.y && p.y <= r.bottom;
}

void EnumChid::windowPlacement(LONG hwnd, Vx_RECT& rect) {
    WINDOWPLACEMENT placement{};  // its length is left 0 on this call
    GetWindowPlacement(toHwnd(hwnd), &placement);
    rect.left = placement.rcNormalPosition.left;
    rect.top = placement.rcNormalPosition.top;
    rect.right = placement.rcNormalPosition.right;
    rect.bottom = placement.rcNormalPosition.bottom;
}

void EnumChid::setWindowPlacement(LONG hwnd, LONG left, LONG top, LONG right, LONG bottom) {
    WINDOWPLACEMENT placement{};
    GetWindowPlacement(toHwnd(hwnd), &placement);
    placement.length = sizeof(WINDOWPLACEMENT);
    placement.rcNormalPosition = RECT{left, top, right, bottom};
    SetWindowPlacement(toHwnd(hwnd), &placement);
}

// ---- members ----

HRESULT EnumChid::JustNumberText(LONG Handle, VARIANT* result) {
    return deliver(result, [&] {
        const HWND hwnd = toHwnd(Handle);
        SetWindowLongA(hwnd, GWL_STYLE, GetWindowLongA(hwnd, GWL_STYLE) | ES_NUMBER);
        return Variant();
    });
}

HRESULT EnumChid::GetDesktopWin(LONG* result) {
    return deliver(result, [&] { return toLong(GetDesktopWindow()); });
}

HRESULT EnumChid::GetFindHandle(VARIANT MyHandl, VARIANT SplitPM, LONG* result) {
    return deliver(result, [&] { return window::resolvePath(MyHandl, SplitPM); });
}

HRESULT EnumChid::GetFindEX(LONG hWnd1, LONG, BSTR lpsz1, BSTR lpsz2, LONG* result) {
    return deliver(result, [&] {
        const std::string cls = toAnsi(viewOf(lpsz1)), title = toAnsi(viewOf(lpsz2));
        // The search always starts at the first child: the second handle is not used.
        return toLong(FindWindowExA(toHwnd(hWnd1), nullptr, optionalText(cls, lpsz1), optionalText(title, lpsz2)));
    });
}

HRESULT EnumChid::GetFindW(BSTR lpClassName, BSTR lpWindowName, LONG* result) {
    return deliver(result, [&] {
        const std::string cls = toAnsi(viewOf(lpClassName)), title = toAnsi(viewOf(lpWindowName));
        return toLong(FindWindowA(optionalText(cls, lpClassName), optionalText(title, lpWindowName)));
    });
}

HRESULT EnumChid::GoImageAlphaHwnd(LONG* MyHwnd, IDispatch** ObjectForm, LONG* ValueAlpha) {
    return guard([&] {
        imageOfWindow(required(MyHwnd), required(ObjectForm));
        formAlpha(toInt32(*LateBound(*ObjectForm).get(L"hWnd")), required(ValueAlpha));
    });
}

HRESULT EnumChid::GetWinPlace(LONG nHwnd, Vx_RECT* MySize) {
    return guard([&] { windowPlacement(nHwnd, required(MySize)); });
}

HRESULT EnumChid::MouseCX(VARIANT_BOOL GetScreen, VARIANT* result) { return giveScaled(cursor().x, GetScreen, result); }

HRESULT EnumChid::MouseCY(VARIANT_BOOL GetScreen, VARIANT* result) { return giveScaled(cursor().y, GetScreen, result); }

HRESULT EnumChid::GetSizeWidth(LONG nHwnd, VARIANT_BOOL GetScreen, VARIANT* result) {
    return giveScaled(windowRect(nHwnd).right, GetScreen, result);
}

HRESULT EnumChid::GetSizeHeight(LONG nHwnd, VARIANT_BOOL GetScreen, VARIANT* result) {
    return giveScaled(windowRect(nHwnd).bottom, GetScreen, result);
}

HRESULT EnumChid::GetPosLeft(LONG nHwnd, VARIANT_BOOL GetScreen, VARIANT* result) {
    return giveScaled(windowRect(nHwnd).left, GetScreen, result);
}

HRESULT EnumChid::GetPosTop(LONG nHwnd, VARIANT_BOOL GetScreen, VARIANT* result) {
    return giveScaled(windowRect(nHwnd).top, GetScreen, result);
}

HRESULT EnumChid::GetChild(VARIANT MyHandl, VARIANT SplitPM, _Ds_ENumAction** result) {
    return deliver(result, [&] { return ENumAction::forWindow(window::resolvePath(MyHandl, SplitPM)); });
}

HRESULT EnumChid::GetActiveWindow(_Ds_ENumAction** result) {
    return deliver(result, [&] { return ENumAction::forWindow(toLong(GetForegroundWindow())); });
}

HRESULT EnumChid::KeyPress(short CodeAsc, VARIANT WaitNumber, Flag_TypeKeyShife TypeKey) {
    return guard([&] { keyPress(CodeAsc, WaitNumber, TypeKey); });
}

HRESULT EnumChid::WindowsClose(LONG nHwnd) {
    return guard([&] { windowsClose(nHwnd); });
}

HRESULT EnumChid::ThreadProcessId(LONG lhWnd, LONG* result) {
    return deliver(result, [&] {
        DWORD process = 0;
        const DWORD thread = GetWindowThreadProcessId(toHwnd(lhWnd), &process);
        window::collectThreadWindows(thread);
        // The process identifier is read but not returned: the result stays 0.
        return 0;
    });
}

void EnumChid::imageOfWindow(LONG hwnd, IDispatch* form) {
    if (!form) raise(err::ObjectNotSet);
    LateBound target(form);
    target.call(L"Cls");
    target.put(L"AutoRedraw", Variant::fromBool(true));
    const LONG dc = toInt32(*target.get(L"hdc"));
    PrintWindow(toHwnd(hwnd), reinterpret_cast<HDC>(static_cast<LONG_PTR>(dc)), 0);
}

void EnumChid::formAlpha(LONG hwndValue, LONG alpha) {
    if (alpha < 0 || alpha > 255) raise(err::Overflow);  // the alpha goes to the system as a byte
    const HWND hwnd = toHwnd(hwndValue);
    SetWindowLongA(hwnd, GWL_EXSTYLE, GetWindowLongA(hwnd, GWL_EXSTYLE) | WS_EX_LAYERED);
    SetLayeredWindowAttributes(hwnd, 0, static_cast<BYTE>(alpha), LWA_ALPHA);
}

HRESULT EnumChid::GoImageWithHwnd(LONG* MyHwnd, IDispatch** ObjectForm) {
    return guard([&] { imageOfWindow(required(MyHwnd), required(ObjectForm)); });
}

HRESULT EnumChid::CloseAllWindows(short nCount) {
    return guard([&] {
        for (int pass = 0; pass <= nCount; ++pass) {
            windowsClose(window::resolvePath(L"#32770", L"~"));
            windowsClose(window::resolvePath(L"CabinetWClass", L"~"));
        }
    });
}

HRESULT EnumChid::GoFormAlpha(LONG* MyHwnd, LONG* ValueAlpha) {
    return guard([&] { formAlpha(required(MyHwnd), required(ValueAlpha)); });
}

HRESULT EnumChid::IsHitTest(LONG hWnd, VARIANT_BOOL* result) {
    return deliver(result, [&] { return isHitTest(hWnd); });
}

HRESULT EnumChid::GetHwndPoint(_Ds_ENumAction** result) {
    return deliver(result, [&] { return ENumAction::forWindow(toLong(WindowFromPoint(cursor()))); });
}

HRESULT EnumChid::GoHwndContainer(LONG MyHwndA, LONG MyHwndB, VARIANT_BOOL GetScreen) {
    return guard([&] {
        const RECT r = windowRect(MyHwndA);
        const bool twips = GetScreen != 0;
        const LONG top = window::scaled(r.top, twips), left = window::scaled(r.left, twips);
        const LONG right = window::scaled(r.right, twips), bottom = window::scaled(r.bottom, twips);
        setWindowPlacement(MyHwndB, left, top, right, bottom);
    });
}

HRESULT EnumChid::GoCusorXY(VARIANT DataX, VARIANT DataY, Flag_TypeMouse MouseDownUp, VARIANT WaitNumber) {
    return guard([&] {
        const bool hasX = !isMissing(DataX), hasY = !isMissing(DataY);
        if (hasX || hasY) {
            const POINT now = cursor();
            const LONG x = hasX ? toInt32(DataX) : now.x;
            const LONG y = hasY ? toInt32(DataY) : now.y;
            SetCursorPos(x, y);
        }
        if (!isMissing(WaitNumber)) waitDoEvents(*Variant::missing(), WaitNumber);
        if (MouseDownUp != NoXY) mouse_event(static_cast<DWORD>(MouseDownUp), 0, 0, 0, 0);
    });
}

HRESULT EnumChid::SetSizeWinPlace(LONG nHwnd, LONG nLeft, LONG nTop, LONG nWidth, LONG nHeight) {
    return guard([&] { setWindowPlacement(nHwnd, nLeft, nTop, nWidth, nHeight); });
}

HRESULT EnumChid::WaitDoEvents(VARIANT NumberWithMultiple, VARIANT SecontTime) {
    return guard([&] { waitDoEvents(NumberWithMultiple, SecontTime); });
}

HRESULT EnumChid::GetFindTitleWindow(BSTR FindTitle, LONG ParentHwnd, _Ds_ENumAction** result) {
    return deliver(result, [&] {
        const std::wstring search = lower(viewOf(FindTitle));
        auto yield4 = [] { yieldTimes(4); };
        if (ParentHwnd == -1) {
            window::collectTopWindows();
            // This search's own copy: a handler that runs during the yields may rebuild the table.
            const std::vector<window::TopWindow> windows = window::topWindows();
            for (const auto& w : windows) {
                yield4();
                if (inStr(lower(w.title), search) > 0) return ENumAction::forWindow(w.handle);
            }
            return ENumAction::forWindow(0);
        }
        // Up the parent chain, from the parent of ParentHwnd: the first ancestor whose
        // title is contained in the search text (an empty title always is).
        LONG current = ParentHwnd;
        for (;;) {
            if (current == 0) return ENumAction::forWindow(0);
            current = toLong(GetParent(toHwnd(current)));
            yield4();
            // The ancestor as GetChild finds it by its handle's number.
            const LONG ancestor = window::resolvePath(std::to_wstring(current), L"~");
            const std::wstring title = window::readText(toHwnd(ancestor));
            if (inStr(search, lower(title)) > 0 || title.empty()) {
                yield4();
                return ENumAction::forWindow(current);
            }
        }
    });
}

HRESULT EnumChid::HideMenuForm(LONG, BSTR) { return S_OK; }

HRESULT EnumChid::SetTextMaching(BSTR sText, LONG* HwndHandle, Flag_TypeMaching TypeMaching, VARIANT WaitNumber) {
    return guard([&] { setTextMaching(std::wstring(viewOf(sText)), HwndHandle ? *HwndHandle : 0, TypeMaching, WaitNumber); });
}

HRESULT EnumChid::WaitFindWindows(VARIANT vHwnd, VARIANT SplitPM, VARIANT SplitFw, _Ds_ENumAction** result) {
    return deliver(result, [&]() -> ComPtr<_Ds_ENumAction> {
        const std::optional<LONG> found = waitFindWindows(vHwnd, SplitPM, SplitFw);
        return found ? ENumAction::forWindow(*found) : nullptr;
    });
}

HRESULT EnumChid::FindWinChild(VARIANT vHwnd, VARIANT SplitPM, VARIANT SplitFw, _Ds_ENumAction** result) {
    return deliver(result, [&] {
        const std::vector<std::wstring> parts = split(toText(vHwnd), toText(SplitFw));
        const std::wstring separator = toText(SplitPM);
        const std::wstring first = parts.empty() ? std::wstring() : parts[0];
        if (parts.size() != 2 && parts.size() != 3) return ENumAction::forWindow(window::resolvePath(first, separator));

        const LONG parent = window::resolvePath(first, separator);
        LONG handle = 0;
        if (parts.size() == 2) {
            tryStatement([&] { handle = window::keyedChild(parent, parts[1]); });
            return ENumAction::forWindow(handle);
        }
        // Class and title, compared exactly; without a match, the last window examined.
        for (const window::ListedWindow& w : window::listWindows(window::childrenOf(*Variant::fromLong(parent)), Out_Both)) {
            handle = w.handle;
            if (window::readClass(toHwnd(handle)) == parts[1] && window::readText(toHwnd(handle)) == parts[2]) break;
        }
        return ENumAction::forWindow(handle);
    });
}

HRESULT EnumChid::ActionSend(LONG nHwndl, LONG wMsg, LONG wParam, VARIANT iParam, Flag_TypeSend SendMy,
                             VARIANT* result) {
    return deliver(result, [&] { return actionSend(nHwndl, wMsg, wParam, iParam, SendMy); });
}

HRESULT EnumChid::EWinChild(VARIANT nHwnd, Flag_TypeOutput TOut, _Ds_ListChild** result) {
    return deliver(result, [&] { return listChildren(nHwnd, TOut); });
}

HRESULT EnumChid::SubParentEnum(LONG MyHwndWin, Flag_TypeOutput TOut, _Ds_ListChild** result) {
    return deliver(result, [&] { return listAncestors(MyHwndWin, TOut); });
}

}  // namespace vx
