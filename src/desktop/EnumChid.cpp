#include "desktop/EnumChid.h"

#include "core/runtime/Ansi.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/MessageLoop.h"
#include "core/runtime/Text.h"
#include "desktop/ENumAction.h"
#include "desktop/ListChild.h"
#include "desktop/WindowModule.h"
#include "text/MyVaribleFunction.h"

#include <unordered_map>
#include <unordered_set>

namespace vx {

namespace {

constexpr int kVkEnd = 35;
constexpr LONG kNoUse = 1, kKeyDown = 2, kKeyUp = 3;
constexpr LONG kOutId = 0, kOutClass = 1, kOutTitle = 2, kOutTitleTask = 3, kOutBoth = 4;

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

void giveWindow(LONG hwnd, _Ds_ENumAction** result) { *result = ENumAction::forWindow(hwnd).detach(); }

// A position in pixels, or in twips when asked, as a Variant result.
HRESULT giveScaled(LONG pixels, VARIANT_BOOL twips, VARIANT* result) {
    if (!result) return E_POINTER;
    VariantInit(result);
    return guard(__uuidof(_Ds_EnumChid), [&] { Variant::fromLong(window::scaled(pixels, twips != 0)).detachTo(result); });
}

// The handle of the window a child list holds under key; error 5 when there is none.
LONG keyedChild(_Ds_ListChild* list, const std::wstring& key) {
    ComPtr<_Ds_ENumAction> item;
    check(list->Item(*Variant::fromText(key), item.put()));
    LONG handle = 0;
    check(item->get_MyHwndWin(&handle));
    return handle;
}

// Null for an empty text: "any" to FindWindow.
const char* optionalText(const std::string& ansi, BSTR original) {
    return SysStringLen(original) == 0 ? nullptr : ansi.c_str();
}

// Whether the End key is held, as IsKey of a private Ds_MyVaribleFunction tells it.
bool endKeyHeld(_Ds_MyVaribleFunction* keys) {
    VARIANT_BOOL held = VARIANT_FALSE;
    check(keys->IsKey(kVkEnd, &held));
    return isTrue(&held);
}

// Keys of a child list: the first window with a given text keeps the text itself, the
// n-th window with the same text (compared without regard to case) gets text#n; when
// that is taken too, the next free number. An empty text gets no key.
class UniqueKeys {
public:
    std::wstring next(const std::wstring& value) {
        if (value.empty()) return {};
        unsigned& seen = seen_[foldCase(value)];
        ++seen;
        std::wstring key = seen == 1 ? value : value + L"#" + std::to_wstring(seen);
        while (!used_.insert(foldCase(key)).second) key = value + L"#" + std::to_wstring(++seen);
        return key;
    }

private:
    std::unordered_map<std::wstring, unsigned> seen_;
    std::unordered_set<std::wstring> used_;
};

// A list of the given windows, keyed as the output kind says; a failing step is skipped.
ComPtr<_Ds_ListChild> buildList(const std::vector<ComPtr<_Ds_ENumAction>>& windows, LONG tOut) {
    auto list = ListChild::create();
    UniqueKeys keys;
    for (const auto& window : windows) {
        LONG handle = 0;
        if (!window || FAILED(window->get_MyHwndWin(&handle))) continue;
        const HWND hwnd = toHwnd(handle);
        auto add = [&](const std::wstring& value) {
            tryStatement([&] { list->addEntry(ListChild::Main, handle, keys.next(value)); });
        };
        if (tOut == kOutId || tOut == kOutBoth) add(window::hexText(GetWindowLongA(hwnd, GWL_ID)));
        if (tOut == kOutClass || tOut == kOutBoth) {
            tryStatement([&] {
                const std::wstring key = keys.next(window::readClass(hwnd));
                list->addEntry(ListChild::Main, handle, key);
                list->addEntry(ListChild::Classes, handle, key);
            });
        }
        if (tOut == kOutTitle || tOut == kOutBoth ||
            (tOut == kOutTitleTask && (GetWindowLongA(hwnd, GWL_STYLE) & 0x10800000) == 0x10800000)) {
            tryStatement([&] {
                const std::wstring key = keys.next(window::readText(hwnd));
                list->addEntry(ListChild::Main, handle, key);
                list->addEntry(ListChild::Titles, handle, key);
            });
        }
    }
    return ComPtr<_Ds_ListChild>(list.get());
}

}  // namespace

// ---- shared bodies ----

void EnumChid::keyPress(int16_t code, const VARIANT& waitNumber, LONG typeKey) {
    if (code < 0 || code > 255) raise(err::Overflow);  // the key code goes to the system as a byte
    const BYTE key = static_cast<BYTE>(code);
    if (typeKey == kNoUse || typeKey == kKeyDown) keybd_event(key, 0, 0, 0);
    if (typeKey == kNoUse || typeKey == kKeyUp) keybd_event(key, 0, KEYEVENTF_KEYUP, 0);
    if (typeKey == kNoUse && !isMissing(waitNumber)) waitDoEvents(*Variant::missing(), waitNumber);
}

void EnumChid::waitDoEvents(const VARIANT& numberWithMultiple, const VARIANT& secondTime) {
    LONG count = 0;
    if (!isMissing(numberWithMultiple))
        count = roundToInt32(toDouble(numberWithMultiple) * 1000.0);
    else if (!isMissing(secondTime))
        count = toInt32(secondTime);
    for (LONG i = 0; i < count; ++i) yieldToHost();
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
    case 0:
        r = PostMessageA(hwnd, msg, wParam, lp);
        break;
    case 1:
        if (!numeric) {
            const std::string text = toAnsi(toText(lParam));
            r = SendMessageA(hwnd, msg, wParam, reinterpret_cast<LPARAM>(text.c_str()));
        } else {
            r = SendMessageA(hwnd, msg, wParam, lp);
        }
        break;
    case 2:
        r = SendNotifyMessageA(hwnd, msg, wParam, lp);
        break;
    case 3: {
        DWORD_PTR answer = 0;
        r = SendMessageTimeoutA(hwnd, msg, wParam, lp, SMTO_NORMAL, 0, &answer);
        break;
    }
    case 4: {
        const std::string digits = std::to_string(n);
        r = SendMessageA(hwnd, msg, wParam, reinterpret_cast<LPARAM>(digits.c_str()));
        break;
    }
    case 5:
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
    case 1:
        SetWindowTextA(hwnd, toAnsi(text).c_str());
        break;
    case 2:
    case 3:
        for (wchar_t ch : text) {
            // The character's ANSI code: one byte, or lead and trail byte of a double-byte character.
            const std::string ansi = toAnsi(std::wstring_view(&ch, 1));
            int code = ansi.empty() ? 0 : static_cast<unsigned char>(ansi[0]);
            if (ansi.size() > 1) code = static_cast<int16_t>((code << 8) | static_cast<unsigned char>(ansi[1]));
            if (typeMaching == 2) {
                const WPARAM w = static_cast<WPARAM>(static_cast<LONG_PTR>(code));
                window::sendWithZeroRef(hwnd, WM_KEYDOWN, w);
                window::sendWithZeroRef(hwnd, WM_CHAR, w);
                window::sendWithZeroRef(hwnd, WM_KEYUP, w);
            } else {
                keyPress(static_cast<int16_t>(code), waitNumber, kNoUse);
            }
        }
        break;
    case 4: {
        const std::string ansi = toAnsi(text);
        SendMessageA(hwnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(ansi.c_str()));
        break;
    }
    default:
        break;
    }
}

ComPtr<_Ds_ListChild> EnumChid::listChildren(const VARIANT& hwnd, LONG tOut) {
    window::clearChildWindows();
    tryStatement([&] {
        const VARIANT& value = deref(hwnd);
        const bool zero = isEmpty(value) || (isNumeric(value) && toDouble(value) == 0.0);
        if (!zero) window::collectChildWindows(toHwnd(window::resolvePath(toText(value), L"~")));
    });
    // The list is built from this call's own copy: reading a window may let a re-entrant
    // call rebuild the table.
    const auto windows = window::childWindows();
    return buildList(windows, tOut);
}

ComPtr<_Ds_ListChild> EnumChid::listAncestors(LONG hwnd, LONG tOut) {
    window::clearChildWindows();
    HWND current = toHwnd(hwnd);
    for (int depth = 0; current && depth < 4096; ++depth) {
        tryStatement([&] { window::appendChildWindow(current); });
        current = GetParent(current);
    }
    const auto windows = window::childWindows();
    return buildList(windows, tOut);
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
    if (!result) return E_POINTER;
    VariantInit(result);
    return guard([&] {
        const HWND hwnd = toHwnd(Handle);
        SetWindowLongA(hwnd, GWL_STYLE, GetWindowLongA(hwnd, GWL_STYLE) | ES_NUMBER);
    });
}

HRESULT EnumChid::GetDesktopWin(LONG* result) {
    if (!result) return E_POINTER;
    *result = toLong(GetDesktopWindow());
    return S_OK;
}

HRESULT EnumChid::GetFindHandle(VARIANT MyHandl, VARIANT SplitPM, LONG* result) {
    if (!result) return E_POINTER;
    *result = 0;
    return guard([&] { *result = window::resolvePath(MyHandl, SplitPM); });
}

HRESULT EnumChid::GetFindEX(LONG hWnd1, LONG, BSTR lpsz1, BSTR lpsz2, LONG* result) {
    if (!result) return E_POINTER;
    *result = 0;
    return guard([&] {
        const std::string cls = toAnsi(viewOf(lpsz1)), title = toAnsi(viewOf(lpsz2));
        // The search always starts at the first child: the second handle is not used.
        *result = toLong(FindWindowExA(toHwnd(hWnd1), nullptr, optionalText(cls, lpsz1), optionalText(title, lpsz2)));
    });
}

HRESULT EnumChid::GetFindW(BSTR lpClassName, BSTR lpWindowName, LONG* result) {
    if (!result) return E_POINTER;
    *result = 0;
    return guard([&] {
        const std::string cls = toAnsi(viewOf(lpClassName)), title = toAnsi(viewOf(lpWindowName));
        *result = toLong(FindWindowA(optionalText(cls, lpClassName), optionalText(title, lpWindowName)));
    });
}

HRESULT EnumChid::GoImageAlphaHwnd(LONG* MyHwnd, IDispatch** ObjectForm, LONG* ValueAlpha) {
    if (!MyHwnd || !ObjectForm || !ValueAlpha) return E_POINTER;
    return guard([&] {
        check(GoImageWithHwnd(MyHwnd, ObjectForm));
        LONG formHwnd = toInt32(*LateBound(*ObjectForm).get(L"hWnd"));
        check(GoFormAlpha(&formHwnd, ValueAlpha));
    });
}

HRESULT EnumChid::GetWinPlace(LONG nHwnd, Vx_RECT* MySize) {
    if (!MySize) return E_POINTER;
    return guard([&] { windowPlacement(nHwnd, *MySize); });
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
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] { giveWindow(window::resolvePath(MyHandl, SplitPM), result); });
}

HRESULT EnumChid::GetActiveWindow(_Ds_ENumAction** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] { giveWindow(toLong(GetForegroundWindow()), result); });
}

HRESULT EnumChid::KeyPress(short CodeAsc, VARIANT WaitNumber, Flag_TypeKeyShife TypeKey) {
    return guard([&] { keyPress(CodeAsc, WaitNumber, TypeKey); });
}

HRESULT EnumChid::WindowsClose(LONG nHwnd) {
    return guard([&] { windowsClose(nHwnd); });
}

HRESULT EnumChid::ThreadProcessId(LONG lhWnd, LONG* result) {
    if (!result) return E_POINTER;
    *result = 0;
    return guard([&] {
        DWORD process = 0;
        const DWORD thread = GetWindowThreadProcessId(toHwnd(lhWnd), &process);
        window::collectThreadWindows(thread);
        // The process identifier is read but not returned: the result stays 0.
    });
}

HRESULT EnumChid::GoImageWithHwnd(LONG* MyHwnd, IDispatch** ObjectForm) {
    if (!MyHwnd || !ObjectForm) return E_POINTER;
    return guard([&] {
        if (!*ObjectForm) raise(err::ObjectNotSet);
        LateBound form(*ObjectForm);
        form.call(L"Cls");
        form.put(L"AutoRedraw", Variant::fromBool(true));
        const LONG dc = toInt32(*form.get(L"hdc"));
        PrintWindow(toHwnd(*MyHwnd), reinterpret_cast<HDC>(static_cast<LONG_PTR>(dc)), 0);
    });
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
    if (!MyHwnd || !ValueAlpha) return E_POINTER;
    return guard([&] {
        if (*ValueAlpha < 0 || *ValueAlpha > 255) raise(err::Overflow);  // the alpha goes to the system as a byte
        const HWND hwnd = toHwnd(*MyHwnd);
        SetWindowLongA(hwnd, GWL_EXSTYLE, GetWindowLongA(hwnd, GWL_EXSTYLE) | WS_EX_LAYERED);
        SetLayeredWindowAttributes(hwnd, 0, static_cast<BYTE>(*ValueAlpha), LWA_ALPHA);
    });
}

HRESULT EnumChid::IsHitTest(LONG hWnd, VARIANT_BOOL* result) {
    if (!result) return E_POINTER;
    *result = VARIANT_FALSE;
    return guard([&] {
        const POINT p = cursor();
        const RECT r = windowRect(hWnd);
        const bool inside = r.left <= p.x && p.x <= r.right && r.top <= p.y && p.y <= r.bottom;
        *result = toVariantBool(inside);
    });
}

HRESULT EnumChid::GetHwndPoint(_Ds_ENumAction** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] { giveWindow(toLong(WindowFromPoint(cursor())), result); });
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
        if (MouseDownUp != 0) mouse_event(static_cast<DWORD>(MouseDownUp), 0, 0, 0, 0);
    });
}

HRESULT EnumChid::SetSizeWinPlace(LONG nHwnd, LONG nLeft, LONG nTop, LONG nWidth, LONG nHeight) {
    return guard([&] { setWindowPlacement(nHwnd, nLeft, nTop, nWidth, nHeight); });
}

HRESULT EnumChid::WaitDoEvents(VARIANT NumberWithMultiple, VARIANT SecontTime) {
    return guard([&] { waitDoEvents(NumberWithMultiple, SecontTime); });
}

HRESULT EnumChid::GetFindTitleWindow(BSTR FindTitle, LONG ParentHwnd, _Ds_ENumAction** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] {
        const std::wstring search = lower(viewOf(FindTitle));
        auto yield4 = [] {
            for (int i = 0; i < 4; ++i) yieldToHost();
        };
        if (ParentHwnd == -1) {
            window::collectTopWindows();
            // This search's own copy: a handler that runs during the yields may rebuild the table.
            const std::vector<window::TopWindow> windows = window::topWindows();
            for (const auto& w : windows) {
                yield4();
                if (inStr(lower(w.title), search) > 0) return giveWindow(w.handle, result);
            }
            return giveWindow(0, result);
        }
        // Up the parent chain, from the parent of ParentHwnd: the first ancestor whose
        // title is contained in the search text (an empty title always is).
        LONG current = ParentHwnd;
        for (;;) {
            if (current == 0) return giveWindow(0, result);
            current = toLong(GetParent(toHwnd(current)));
            yield4();
            // The ancestor as GetChild finds it by its handle's number.
            const LONG ancestor = window::resolvePath(std::to_wstring(current), L"~");
            const std::wstring title = window::readText(toHwnd(ancestor));
            if (inStr(search, lower(title)) > 0 || title.empty()) {
                yield4();
                return giveWindow(current, result);
            }
        }
    });
}

HRESULT EnumChid::HideMenuForm(LONG, BSTR) { return S_OK; }

HRESULT EnumChid::SetTextMaching(BSTR sText, LONG* HwndHandle, Flag_TypeMaching TypeMaching, VARIANT WaitNumber) {
    return guard([&] { setTextMaching(std::wstring(viewOf(sText)), HwndHandle ? *HwndHandle : 0, TypeMaching, WaitNumber); });
}

HRESULT EnumChid::WaitFindWindows(VARIANT vHwnd, VARIANT SplitPM, VARIANT SplitFw, _Ds_ENumAction** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] {
        const std::wstring path = toText(vHwnd);
        if (trimView(path).empty()) return;
        const std::vector<std::wstring> parts = split(path, toText(SplitFw));
        const std::wstring first = parts.empty() ? std::wstring() : parts[0];
        const std::wstring separator = toText(SplitPM);
        auto keys = MyVaribleFunction::create();
        LONG found = 0;
        do {
            yieldToHost();
            found = window::resolvePath(first, separator);
            if (endKeyHeld(keys.get())) return;  // the End key gives up the wait
        } while (found == 0);
        if (parts.size() == 2) found = keyedChild(listChildren(*Variant::fromLong(found), kOutBoth).get(), parts[1]);
        giveWindow(found, result);
    });
}

HRESULT EnumChid::FindWinChild(VARIANT vHwnd, VARIANT SplitPM, VARIANT SplitFw, _Ds_ENumAction** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] {
        const std::vector<std::wstring> parts = split(toText(vHwnd), toText(SplitFw));
        const std::wstring separator = toText(SplitPM);
        const std::wstring first = parts.empty() ? std::wstring() : parts[0];
        if (parts.size() != 2 && parts.size() != 3) return giveWindow(window::resolvePath(first, separator), result);

        auto list = listChildren(*Variant::fromLong(window::resolvePath(first, separator)), kOutBoth);
        LONG handle = 0;
        if (parts.size() == 2) {
            tryStatement([&] { handle = keyedChild(list.get(), parts[1]); });
            return giveWindow(handle, result);
        }
        // Class and title, compared exactly; without a match, the last item examined.
        LONG count = 0;
        check(list->get_Count(&count));
        for (LONG i = 1; i <= count; ++i) {
            ComPtr<_Ds_ENumAction> item;
            check(list->Item(*Variant::fromLong(i), item.put()));
            check(item->get_MyHwndWin(&handle));
            Bstr cls, title;
            check(item->get_Class(cls.put()));
            check(item->get_Title(title.put()));
            if (cls.view() == parts[1] && title.view() == parts[2]) break;
        }
        giveWindow(handle, result);
    });
}

HRESULT EnumChid::ActionSend(LONG nHwndl, LONG wMsg, LONG wParam, VARIANT iParam, Flag_TypeSend SendMy,
                             VARIANT* result) {
    if (!result) return E_POINTER;
    VariantInit(result);
    return guard([&] { actionSend(nHwndl, wMsg, wParam, iParam, SendMy).detachTo(result); });
}

HRESULT EnumChid::EWinChild(VARIANT nHwnd, Flag_TypeOutput TOut, _Ds_ListChild** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] { *result = listChildren(nHwnd, TOut).detach(); });
}

HRESULT EnumChid::SubParentEnum(LONG MyHwndWin, Flag_TypeOutput TOut, _Ds_ListChild** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] { *result = listAncestors(MyHwndWin, TOut).detach(); });
}

}  // namespace vx
