#include "desktop/ENumAction.h"

#include "core/runtime/Ansi.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "Vx_MainEnums.h"
#include "desktop/EnumChid.h"
#include "shared/Windows.h"

namespace vx {

namespace {

enum Edge { kLeft, kTop, kWidth, kHeight };

Vx_RECT toRecord(const RECT& r) { return Vx_RECT{r.left, r.top, r.right, r.bottom}; }

}  // namespace

ComPtr<_Ds_ENumAction> ENumAction::forWindow(LONG hwnd, std::wstring key) {
    auto object = create();
    object->handle_ = hwnd;
    object->key_ = std::move(key);
    return ComPtr<_Ds_ENumAction>(object.get());
}

HRESULT ENumAction::get_MyHwndWin(LONG* value) { return giveField(handle_, value); }

HRESULT ENumAction::put_MyHwndWin(LONG value) {
    handle_ = value;
    return S_OK;
}

HRESULT ENumAction::get_MyPathKey(BSTR* value) { return giveText(key_, value); }
HRESULT ENumAction::put_MyPathKey(BSTR value) { return takeText(key_, value); }

HRESULT ENumAction::WindowOnTop(short OnFlag) {
    // The flag is the insert-after handle, sign-extended: -1 topmost, -2 not topmost.
    SetWindowPos(toHwnd(handle_), toHwnd(OnFlag), 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE);
    return S_OK;
}

HRESULT ENumAction::GoShowWindows(Flag_ShowPostion ActionWin) {
    ShowWindow(toHwnd(handle_), ActionWin);
    return S_OK;
}

// Does nothing, as the finder's HideMenuForm.
HRESULT ENumAction::HideMenu(BSTR) { return S_OK; }

HRESULT ENumAction::IsHitTestXY(VARIANT_BOOL* result) {
    return deliver(result, [&] { return EnumChid::isHitTest(handle_); });
}

HRESULT ENumAction::Click(Flag_TypeSend SendMy) {
    return guard([&] { EnumChid::actionSend(handle_, BM_CLICK, 0, *Variant::fromLong(0), SendMy); });
}

HRESULT ENumAction::get_ClickCheckBox(Flag_TypeSend SendMy, VARIANT_BOOL* value) {
    return deliver(value, [&] {
        if (SendMy == F_SendMessage) {
            // A read: a window that does not answer reads as unchecked instead of hanging the caller.
            LRESULT state = 0;
            window::sendToRead(toHwnd(handle_), BM_GETCHECK, 0, 0, state);
            return static_cast<LONG>(state) != 0;
        }
        return toBool(*EnumChid::actionSend(handle_, BM_GETCHECK, 0, *Variant::fromLong(0), SendMy));
    });
}

HRESULT ENumAction::get_ClickOption(Flag_TypeSend SendMy, VARIANT_BOOL* value) {
    return get_ClickCheckBox(SendMy, value);
}

HRESULT ENumAction::put_ClickCheckBox(Flag_TypeSend SendMy, VARIANT_BOOL value) {
    return guard([&] { EnumChid::actionSend(handle_, BM_SETCHECK, value ? 1 : 0, *Variant::fromLong(0), SendMy); });
}

HRESULT ENumAction::put_ClickOption(Flag_TypeSend SendMy, VARIANT_BOOL value) {
    return put_ClickCheckBox(SendMy, value);
}

HRESULT ENumAction::get_Title(BSTR* value) {
    return deliver(value, [&] { return window::readText(toHwnd(handle_)); });
}

HRESULT ENumAction::put_Title(BSTR value) {
    return guard([&] { SetWindowTextA(toHwnd(handle_), toAnsi(viewOf(value)).c_str()); });
}

HRESULT ENumAction::get_ParentTitle(BSTR* value) {
    return deliver(value, [&] { return window::readText(GetParent(toHwnd(handle_))); });
}

HRESULT ENumAction::put_ParentTitle(BSTR value) {
    return guard([&] { SetWindowTextA(GetParent(toHwnd(handle_)), toAnsi(viewOf(value)).c_str()); });
}

HRESULT ENumAction::get_Enabled(VARIANT_BOOL* value) {
    return deliver(value, [&] { return IsWindowEnabled(toHwnd(handle_)) != 0; });
}

HRESULT ENumAction::put_Enabled(VARIANT_BOOL value) {
    EnableWindow(toHwnd(handle_), value ? TRUE : FALSE);
    return S_OK;
}

HRESULT ENumAction::get_Visible(VARIANT_BOOL* value) {
    return deliver(value, [&] { return IsWindowVisible(toHwnd(handle_)) != 0; });
}

HRESULT ENumAction::put_Visible(VARIANT_BOOL value) {
    ShowWindow(toHwnd(handle_), value ? SW_SHOW : SW_HIDE);
    return S_OK;
}

HRESULT ENumAction::get_ParentHwnd(LONG* value) {
    return deliver(value, [&] { return toLong(GetParent(toHwnd(handle_))); });
}

// Neither is ever enabled: both are always False.
HRESULT ENumAction::get_IsEnableUser(VARIANT_BOOL* value) {
    return deliver(value, [] { return false; });
}

HRESULT ENumAction::get_IsEnableSystem(VARIANT_BOOL* value) {
    return deliver(value, [] { return false; });
}

HRESULT ENumAction::SubChildEnum(Flag_TypeOutput TOut, _Ds_ListChild** result) {
    return deliver(result, [&] { return EnumChid::listChildren(*Variant::fromLong(handle_), TOut); });
}

HRESULT ENumAction::get_WinState(Flag_WindowState* value) {
    return deliver(value, [&] {
        const HWND hwnd = toHwnd(handle_);
        return IsZoomed(hwnd) ? wmMaximized : (IsIconic(hwnd) ? wmMinimized : wmNormal);
    });
}

HRESULT ENumAction::put_WinState(Flag_WindowState value) {
    switch (value) {
    case wmNormal: ShowWindow(toHwnd(handle_), SW_SHOWNORMAL); break;
    case wmMinimized: ShowWindow(toHwnd(handle_), SW_MINIMIZE); break;
    case wmMaximized: ShowWindow(toHwnd(handle_), SW_MAXIMIZE); break;
    default: break;
    }
    return S_OK;
}

HRESULT ENumAction::givePlacement(LONG Vx_RECT::*field, VARIANT_BOOL twips, LONG* value) {
    return deliver(value, [&] {
        Vx_RECT r{};
        EnumChid::windowPlacement(handle_, r);
        // All four are scaled, so a field that overflows fails whichever is asked for.
        const Vx_RECT s{window::scaled(r.left, twips), window::scaled(r.top, twips), window::scaled(r.right, twips),
                        window::scaled(r.bottom, twips)};
        return s.*field;
    });
}

HRESULT ENumAction::get_LeftPL(VARIANT_BOOL IsPixcel, LONG* value) { return givePlacement(&Vx_RECT::left, IsPixcel, value); }
HRESULT ENumAction::get_TopPL(VARIANT_BOOL IsPixcel, LONG* value) { return givePlacement(&Vx_RECT::top, IsPixcel, value); }
HRESULT ENumAction::get_WidthPL(VARIANT_BOOL IsPixcel, LONG* value) { return givePlacement(&Vx_RECT::right, IsPixcel, value); }
HRESULT ENumAction::get_HeightPL(VARIANT_BOOL IsPixcel, LONG* value) { return givePlacement(&Vx_RECT::bottom, IsPixcel, value); }

LONG ENumAction::edge(int which) const {
    RECT r{};
    const HWND hwnd = toHwnd(handle_);
    if (which == kLeft || which == kTop) GetWindowRect(hwnd, &r); else GetClientRect(hwnd, &r);
    switch (which) {
    case kLeft: return r.left;
    case kTop: return r.top;
    case kWidth: return r.right;
    default: return r.bottom;
    }
}

HRESULT ENumAction::giveEdge(int which, VARIANT_BOOL twips, LONG* value) const {
    return deliver(value, [&] { return window::scaled(edge(which), twips); });
}

// The new value is passed as given (scaled only to check that it fits), the other three
// are read with the same IsPixcel; width and height are client sizes.
void ENumAction::move(int which, VARIANT_BOOL twips, LONG value) {
    window::scaled(value, twips);
    LONG geometry[4];
    for (int e = kLeft; e <= kHeight; ++e) geometry[e] = e == which ? value : window::scaled(edge(e), twips);
    MoveWindow(toHwnd(handle_), geometry[kLeft], geometry[kTop], geometry[kWidth], geometry[kHeight], TRUE);
}

HRESULT ENumAction::put_LeftTX(VARIANT_BOOL IsPixcel, LONG value) {
    return guard([&] { move(kLeft, IsPixcel, value); });
}

HRESULT ENumAction::get_LeftTX(VARIANT_BOOL IsPixcel, LONG* value) { return giveEdge(kLeft, IsPixcel, value); }

HRESULT ENumAction::put_TopTX(VARIANT_BOOL IsPixcel, LONG value) {
    return guard([&] { move(kTop, IsPixcel, value); });
}

HRESULT ENumAction::get_TopTX(VARIANT_BOOL IsPixcel, LONG* value) { return giveEdge(kTop, IsPixcel, value); }

HRESULT ENumAction::put_WidthTX(VARIANT_BOOL IsPixcel, LONG value) {
    return guard([&] { move(kWidth, IsPixcel, value); });
}

HRESULT ENumAction::get_WidthTX(VARIANT_BOOL IsPixcel, LONG* value) { return giveEdge(kWidth, IsPixcel, value); }

HRESULT ENumAction::put_HeightTX(VARIANT_BOOL IsPixcel, LONG value) {
    return guard([&] { move(kHeight, IsPixcel, value); });
}

HRESULT ENumAction::get_HeightTX(VARIANT_BOOL IsPixcel, LONG* value) { return giveEdge(kHeight, IsPixcel, value); }

HRESULT ENumAction::get_Class(BSTR* value) {
    return deliver(value, [&] { return window::readClass(toHwnd(handle_)); });
}

HRESULT ENumAction::get_ParentClass(BSTR* value) {
    return deliver(value, [&] { return window::readClass(GetParent(toHwnd(handle_))); });
}

HRESULT ENumAction::get_PostionRect(Vx_RECT* value) {
    return guard([&] {
        RECT r{};
        GetWindowRect(toHwnd(handle_), &r);
        required(value) = toRecord(r);
    });
}

HRESULT ENumAction::get_SizeRect(Vx_RECT* value) {
    return guard([&] {
        RECT r{};
        GetClientRect(toHwnd(handle_), &r);
        required(value) = toRecord(r);
    });
}

HRESULT ENumAction::get_SubParent(_Ds_ENumAction** value) {
    return deliver(value, [&] { return forWindow(toLong(GetParent(toHwnd(handle_)))); });
}

HRESULT ENumAction::get_IsTaskbar(VARIANT_BOOL* value) {
    return deliver(value, [&] {
        constexpr LONG visibleAndBorder = WS_VISIBLE | WS_BORDER;
        return (GetWindowLongA(toHwnd(handle_), GWL_STYLE) & visibleAndBorder) == visibleAndBorder;
    });
}

HRESULT ENumAction::get_Style(VARIANT_BOOL OnlyNumber, VARIANT* value) {
    return deliver(value, [&] {
        const HWND hwnd = toHwnd(handle_);
        return OnlyNumber ? Variant::fromLong(GetWindowLongA(hwnd, GWL_STYLE)) : Variant::fromText(window::styleReport(hwnd));
    });
}

HRESULT ENumAction::get_ControlID(VARIANT_BOOL OnlyHex, VARIANT* value) {
    return deliver(value, [&] {
        const LONG id = GetWindowLongA(toHwnd(handle_), GWL_ID);
        return OnlyHex ? Variant::fromText(window::hexText(id)) : Variant::fromLong(id);
    });
}

HRESULT ENumAction::SizeWinPlace(LONG nLeft, LONG nTop, LONG nWidth, LONG nHeight) {
    return guard([&] { EnumChid::setWindowPlacement(handle_, nLeft, nTop, nWidth, nHeight); });
}

HRESULT ENumAction::MySizeRect(Vx_RECT* MySize) {
    return guard([&] { EnumChid::windowPlacement(handle_, required(MySize)); });
}

HRESULT ENumAction::SetText(BSTR sText, Flag_TypeMaching IsTypeMaching) {
    return guard([&] { EnumChid::setTextMaching(std::wstring(viewOf(sText)), handle_, IsTypeMaching, *Variant::missing()); });
}

HRESULT ENumAction::SendMsg(LONG wMsg, LONG wParam, VARIANT iParam, Flag_TypeSend SendMy, LONG nHwndl,
                            VARIANT* result) {
    return deliver(result, [&] {
        const LONG target = nHwndl == -1 ? handle_ : nHwndl;
        return EnumChid::actionSend(target, wMsg, wParam, iParam, SendMy);
    });
}

HRESULT ENumAction::CloseWindowXP() {
    const HWND hwnd = toHwnd(handle_);
    PostMessageA(hwnd, WM_CLOSE, 0, 0);
    window::sendWithZeroRef(hwnd, WM_CLOSE, 0);
    window::sendWithZeroRef(hwnd, WM_SYSCOMMAND, window::kScClose);
    return S_OK;
}

HRESULT ENumAction::SubParentEnumX(Flag_TypeOutput TOut, _Ds_ListChild** result) {
    return deliver(result, [&] { return EnumChid::listAncestors(handle_, TOut); });
}

}  // namespace vx
