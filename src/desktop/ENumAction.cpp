#include "desktop/ENumAction.h"

#include "core/runtime/Ansi.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "desktop/EnumChid.h"
#include "desktop/WindowModule.h"

#include <climits>

namespace vx {

namespace {

constexpr UINT kBmGetCheck = 240, kBmSetCheck = 241, kBmClick = 245;
constexpr LONG kSendMessage = 1;  // F_SendMessage
enum Edge { kLeft, kTop, kWidth, kHeight };

Vx_RECT toRecord(const RECT& r) { return Vx_RECT{r.left, r.top, r.right, r.bottom}; }

}  // namespace

ComPtr<_Ds_ENumAction> ENumAction::forWindow(LONG hwnd, std::wstring key) {
    auto object = create();
    object->handle_ = hwnd;
    object->key_ = std::move(key);
    return ComPtr<_Ds_ENumAction>(object.get());
}

_Ds_EnumChid* ENumAction::finder() {
    if (!finder_) {
        auto created = EnumChid::create();
        finder_ = ComPtr<_Ds_EnumChid>(created.get());
    }
    return finder_.get();
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

HRESULT ENumAction::HideMenu(BSTR FullHide) {
    return guard([&] { check(finder()->HideMenuForm(handle_, FullHide)); });
}

HRESULT ENumAction::IsHitTestXY(VARIANT_BOOL* result) {
    if (!result) return E_POINTER;
    *result = VARIANT_FALSE;
    return guard([&] { check(finder()->IsHitTest(handle_, result)); });
}

HRESULT ENumAction::Click(Flag_TypeSend SendMy) {
    return guard([&] {
        Variant ignored;
        check(finder()->ActionSend(handle_, kBmClick, 0, *Variant::fromLong(0), SendMy, ignored.put()));
    });
}

HRESULT ENumAction::get_ClickCheckBox(Flag_TypeSend SendMy, VARIANT_BOOL* value) {
    if (!value) return E_POINTER;
    *value = VARIANT_FALSE;
    return guard([&] {
        if (SendMy == kSendMessage) {
            // A read: a window that does not answer reads as unchecked instead of hanging the caller.
            LRESULT state = 0;
            window::sendToRead(toHwnd(handle_), kBmGetCheck, 0, 0, state);
            *value = toVariantBool(static_cast<LONG>(state) != 0);
            return;
        }
        Variant state;
        check(finder()->ActionSend(handle_, kBmGetCheck, 0, *Variant::fromLong(0), SendMy, state.put()));
        *value = toVariantBool(toBool(*state));
    });
}

HRESULT ENumAction::get_ClickOption(Flag_TypeSend SendMy, VARIANT_BOOL* value) {
    return get_ClickCheckBox(SendMy, value);
}

HRESULT ENumAction::put_ClickCheckBox(Flag_TypeSend SendMy, VARIANT_BOOL value) {
    return guard([&] {
        Variant ignored;
        check(finder()->ActionSend(handle_, kBmSetCheck, value ? 1 : 0, *Variant::fromLong(0), SendMy, ignored.put()));
    });
}

HRESULT ENumAction::put_ClickOption(Flag_TypeSend SendMy, VARIANT_BOOL value) {
    return put_ClickCheckBox(SendMy, value);
}

HRESULT ENumAction::get_Title(BSTR* value) {
    if (!value) return E_POINTER;
    *value = nullptr;
    return guard([&] { *value = Bstr(window::readText(toHwnd(handle_))).detach(); });
}

HRESULT ENumAction::put_Title(BSTR value) {
    return guard([&] { SetWindowTextA(toHwnd(handle_), toAnsi(viewOf(value)).c_str()); });
}

HRESULT ENumAction::get_ParentTitle(BSTR* value) {
    if (!value) return E_POINTER;
    *value = nullptr;
    return guard([&] { *value = Bstr(window::readText(GetParent(toHwnd(handle_)))).detach(); });
}

HRESULT ENumAction::put_ParentTitle(BSTR value) {
    return guard([&] { SetWindowTextA(GetParent(toHwnd(handle_)), toAnsi(viewOf(value)).c_str()); });
}

HRESULT ENumAction::get_Enabled(VARIANT_BOOL* value) {
    if (!value) return E_POINTER;
    *value = toVariantBool(IsWindowEnabled(toHwnd(handle_)) != 0);
    return S_OK;
}

HRESULT ENumAction::put_Enabled(VARIANT_BOOL value) {
    EnableWindow(toHwnd(handle_), value ? TRUE : FALSE);
    return S_OK;
}

HRESULT ENumAction::get_Visible(VARIANT_BOOL* value) {
    if (!value) return E_POINTER;
    *value = toVariantBool(IsWindowVisible(toHwnd(handle_)) != 0);
    return S_OK;
}

HRESULT ENumAction::put_Visible(VARIANT_BOOL value) {
    ShowWindow(toHwnd(handle_), value ? SW_SHOW : SW_HIDE);
    return S_OK;
}

HRESULT ENumAction::get_ParentHwnd(LONG* value) {
    if (!value) return E_POINTER;
    *value = toLong(GetParent(toHwnd(handle_)));
    return S_OK;
}

HRESULT ENumAction::get_IsEnableUser(VARIANT_BOOL* value) {
    if (!value) return E_POINTER;
    *value = VARIANT_FALSE;
    return S_OK;
}

HRESULT ENumAction::get_IsEnableSystem(VARIANT_BOOL* value) {
    if (!value) return E_POINTER;
    *value = VARIANT_FALSE;
    return S_OK;
}

HRESULT ENumAction::SubChildEnum(Flag_TypeOutput TOut, _Ds_ListChild** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] { check(finder()->EWinChild(*Variant::fromLong(handle_), TOut, result)); });
}

HRESULT ENumAction::get_WinState(Flag_WindowState* value) {
    if (!value) return E_POINTER;
    const HWND hwnd = toHwnd(handle_);
    const bool zoomed = IsZoomed(hwnd) != 0;
    *value = zoomed ? 2 : (IsIconic(hwnd) ? 1 : 0);
    return S_OK;
}

HRESULT ENumAction::put_WinState(Flag_WindowState value) {
    static const int commands[] = {SW_SHOWNORMAL, SW_MINIMIZE, SW_MAXIMIZE};
    if (value >= 0 && value <= 2) ShowWindow(toHwnd(handle_), commands[value]);
    return S_OK;
}

HRESULT ENumAction::givePlacement(LONG Vx_RECT::*field, VARIANT_BOOL twips, LONG* value) {
    if (!value) return E_POINTER;
    *value = 0;
    return guard([&] {
        Vx_RECT r{};
        check(finder()->GetWinPlace(handle_, &r));
        // All four are scaled, so a field that overflows fails whichever is asked for.
        const Vx_RECT s{window::scaled(r.left, twips), window::scaled(r.top, twips), window::scaled(r.right, twips),
                        window::scaled(r.bottom, twips)};
        *value = s.*field;
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
    if (!value) return E_POINTER;
    *value = 0;
    return guard([&] { *value = window::scaled(edge(which), twips); });
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
    if (!value) return E_POINTER;
    *value = nullptr;
    return guard([&] { *value = Bstr(window::readClass(toHwnd(handle_))).detach(); });
}

HRESULT ENumAction::get_ParentClass(BSTR* value) {
    if (!value) return E_POINTER;
    *value = nullptr;
    return guard([&] { *value = Bstr(window::readClass(GetParent(toHwnd(handle_)))).detach(); });
}

HRESULT ENumAction::get_PostionRect(Vx_RECT* value) {
    if (!value) return E_POINTER;
    RECT r{};
    GetWindowRect(toHwnd(handle_), &r);
    *value = toRecord(r);
    return S_OK;
}

HRESULT ENumAction::get_SizeRect(Vx_RECT* value) {
    if (!value) return E_POINTER;
    RECT r{};
    GetClientRect(toHwnd(handle_), &r);
    *value = toRecord(r);
    return S_OK;
}

HRESULT ENumAction::get_SubParent(_Ds_ENumAction** value) {
    if (!value) return E_POINTER;
    *value = nullptr;
    return guard([&] {
        *value = forWindow(toLong(GetParent(toHwnd(handle_)))).detach();
    });
}

HRESULT ENumAction::get_IsTaskbar(VARIANT_BOOL* value) {
    if (!value) return E_POINTER;
    constexpr LONG visibleAndBorder = WS_VISIBLE | WS_BORDER;
    *value = toVariantBool((GetWindowLongA(toHwnd(handle_), GWL_STYLE) & visibleAndBorder) == visibleAndBorder);
    return S_OK;
}

HRESULT ENumAction::get_Style(VARIANT_BOOL OnlyNumber, VARIANT* value) {
    if (!value) return E_POINTER;
    VariantInit(value);
    return guard([&] {
        const HWND hwnd = toHwnd(handle_);
        if (OnlyNumber)
            Variant::fromLong(GetWindowLongA(hwnd, GWL_STYLE)).detachTo(value);
        else
            Variant::fromText(window::styleReport(hwnd)).detachTo(value);
    });
}

HRESULT ENumAction::get_ControlID(VARIANT_BOOL OnlyHex, VARIANT* value) {
    if (!value) return E_POINTER;
    VariantInit(value);
    return guard([&] {
        const LONG id = GetWindowLongA(toHwnd(handle_), GWL_ID);
        if (OnlyHex)
            Variant::fromText(window::hexText(id)).detachTo(value);
        else
            Variant::fromLong(id).detachTo(value);
    });
}

HRESULT ENumAction::SizeWinPlace(LONG nLeft, LONG nTop, LONG nWidth, LONG nHeight) {
    return guard([&] { check(finder()->SetSizeWinPlace(handle_, nLeft, nTop, nWidth, nHeight)); });
}

HRESULT ENumAction::MySizeRect(Vx_RECT* MySize) {
    if (!MySize) return E_POINTER;
    return guard([&] { check(finder()->GetWinPlace(handle_, MySize)); });
}

HRESULT ENumAction::SetText(BSTR sText, Flag_TypeMaching IsTypeMaching) {
    return guard([&] {
        LONG target = handle_;
        check(finder()->SetTextMaching(sText, &target, IsTypeMaching, *Variant::missing()));
    });
}

HRESULT ENumAction::SendMsg(LONG wMsg, LONG wParam, VARIANT iParam, Flag_TypeSend SendMy, LONG nHwndl,
                            VARIANT* result) {
    if (!result) return E_POINTER;
    VariantInit(result);
    return guard([&] {
        const LONG target = nHwndl == -1 ? handle_ : nHwndl;
        check(finder()->ActionSend(target, wMsg, wParam, iParam, SendMy, result));
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
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] { check(finder()->SubParentEnum(handle_, TOut, result)); });
}

}  // namespace vx
