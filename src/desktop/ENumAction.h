#pragma once
// Ds_ENumAction: one window of any program, held by its handle. Most members run the
// finder's (Ds_EnumChid's) bodies on this window.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"

#include <string>

namespace vx {

class ENumAction : public DispatchObject<ENumAction, _Ds_ENumAction> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_ENumAction; }

    // A new window object for hwnd, with the key a list gave it.
    static ComPtr<_Ds_ENumAction> forWindow(LONG hwnd, std::wstring key = {});

    HRESULT STDMETHODCALLTYPE get_MyHwndWin(LONG* value) override;
    HRESULT STDMETHODCALLTYPE put_MyHwndWin(LONG value) override;
    HRESULT STDMETHODCALLTYPE get_MyPathKey(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE put_MyPathKey(BSTR value) override;
    HRESULT STDMETHODCALLTYPE WindowOnTop(short OnFlag) override;
    HRESULT STDMETHODCALLTYPE GoShowWindows(Flag_ShowPostion ActionWin) override;
    HRESULT STDMETHODCALLTYPE HideMenu(BSTR FullHide) override;
    HRESULT STDMETHODCALLTYPE IsHitTestXY(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE Click(Flag_TypeSend SendMy) override;
    HRESULT STDMETHODCALLTYPE get_ClickCheckBox(Flag_TypeSend SendMy, VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_ClickOption(Flag_TypeSend SendMy, VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE put_ClickCheckBox(Flag_TypeSend SendMy, VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE put_ClickOption(Flag_TypeSend SendMy, VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE get_Title(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE put_Title(BSTR value) override;
    HRESULT STDMETHODCALLTYPE get_ParentTitle(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE put_ParentTitle(BSTR value) override;
    HRESULT STDMETHODCALLTYPE get_Enabled(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE put_Enabled(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE get_Visible(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE put_Visible(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE get_ParentHwnd(LONG* value) override;
    HRESULT STDMETHODCALLTYPE get_IsEnableUser(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_IsEnableSystem(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE SubChildEnum(Flag_TypeOutput TOut, _Ds_ListChild** result) override;
    HRESULT STDMETHODCALLTYPE get_WinState(Flag_WindowState* value) override;
    HRESULT STDMETHODCALLTYPE put_WinState(Flag_WindowState value) override;
    HRESULT STDMETHODCALLTYPE get_LeftPL(VARIANT_BOOL IsPixcel, LONG* value) override;
    HRESULT STDMETHODCALLTYPE get_TopPL(VARIANT_BOOL IsPixcel, LONG* value) override;
    HRESULT STDMETHODCALLTYPE get_WidthPL(VARIANT_BOOL IsPixcel, LONG* value) override;
    HRESULT STDMETHODCALLTYPE get_HeightPL(VARIANT_BOOL IsPixcel, LONG* value) override;
    HRESULT STDMETHODCALLTYPE put_LeftTX(VARIANT_BOOL IsPixcel, LONG value) override;
    HRESULT STDMETHODCALLTYPE get_LeftTX(VARIANT_BOOL IsPixcel, LONG* value) override;
    HRESULT STDMETHODCALLTYPE put_TopTX(VARIANT_BOOL IsPixcel, LONG value) override;
    HRESULT STDMETHODCALLTYPE get_TopTX(VARIANT_BOOL IsPixcel, LONG* value) override;
    HRESULT STDMETHODCALLTYPE put_WidthTX(VARIANT_BOOL IsPixcel, LONG value) override;
    HRESULT STDMETHODCALLTYPE get_WidthTX(VARIANT_BOOL IsPixcel, LONG* value) override;
    HRESULT STDMETHODCALLTYPE put_HeightTX(VARIANT_BOOL IsPixcel, LONG value) override;
    HRESULT STDMETHODCALLTYPE get_HeightTX(VARIANT_BOOL IsPixcel, LONG* value) override;
    HRESULT STDMETHODCALLTYPE get_Class(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_ParentClass(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_PostionRect(Vx_RECT* value) override;
    HRESULT STDMETHODCALLTYPE get_SizeRect(Vx_RECT* value) override;
    HRESULT STDMETHODCALLTYPE get_SubParent(_Ds_ENumAction** value) override;
    HRESULT STDMETHODCALLTYPE get_IsTaskbar(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_Style(VARIANT_BOOL OnlyNumber, VARIANT* value) override;
    HRESULT STDMETHODCALLTYPE get_ControlID(VARIANT_BOOL OnlyHex, VARIANT* value) override;
    HRESULT STDMETHODCALLTYPE SizeWinPlace(LONG nLeft, LONG nTop, LONG nWidth, LONG nHeight) override;
    HRESULT STDMETHODCALLTYPE MySizeRect(Vx_RECT* MySize) override;
    HRESULT STDMETHODCALLTYPE SetText(BSTR sText, Flag_TypeMaching IsTypeMaching) override;
    HRESULT STDMETHODCALLTYPE SendMsg(LONG wMsg, LONG wParam, VARIANT iParam, Flag_TypeSend SendMy, LONG nHwndl,
                                      VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE CloseWindowXP() override;
    HRESULT STDMETHODCALLTYPE SubParentEnumX(Flag_TypeOutput TOut, _Ds_ListChild** result) override;

private:
    // One field of the normal-position rectangle; x 15 when twips.
    HRESULT givePlacement(LONG Vx_RECT::*field, VARIANT_BOOL twips, LONG* value);
    // Left and top of the window, width and height of its client area, in pixels.
    LONG edge(int which) const;
    HRESULT giveEdge(int which, VARIANT_BOOL twips, LONG* value) const;
    // MoveWindow with the current geometry, one value replaced (see put_LeftTX).
    void move(int which, VARIANT_BOOL twips, LONG value);

    LONG handle_ = 0;
    std::wstring key_;
};

}  // namespace vx
