#pragma once
// Ds_EnumChid: finding windows by path, title or class, waiting for them, listing their
// children and ancestors, reading geometry, and driving windows with messages and
// simulated keyboard and mouse input. It has no fields: what the enumerations collect
// lives in the process-wide tables of shared/Windows.h.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/Variant.h"

#include <string>

namespace vx {

class EnumChid : public DispatchObject<EnumChid, _Ds_EnumChid> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_EnumChid; }

    HRESULT STDMETHODCALLTYPE JustNumberText(LONG Handle, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE GetDesktopWin(LONG* result) override;
    HRESULT STDMETHODCALLTYPE GetFindHandle(VARIANT MyHandl, VARIANT SplitPM, LONG* result) override;
    HRESULT STDMETHODCALLTYPE GetFindEX(LONG hWnd1, LONG hWnd2, BSTR lpsz1, BSTR lpsz2, LONG* result) override;
    HRESULT STDMETHODCALLTYPE GetFindW(BSTR lpClassName, BSTR lpWindowName, LONG* result) override;
    HRESULT STDMETHODCALLTYPE GoImageAlphaHwnd(LONG* MyHwnd, IDispatch** ObjectForm, LONG* ValueAlpha) override;
    HRESULT STDMETHODCALLTYPE GetWinPlace(LONG nHwnd, Vx_RECT* MySize) override;
    HRESULT STDMETHODCALLTYPE MouseCX(VARIANT_BOOL GetScreen, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE MouseCY(VARIANT_BOOL GetScreen, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE GetSizeWidth(LONG nHwnd, VARIANT_BOOL GetScreen, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE GetSizeHeight(LONG nHwnd, VARIANT_BOOL GetScreen, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE GetPosLeft(LONG nHwnd, VARIANT_BOOL GetScreen, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE GetPosTop(LONG nHwnd, VARIANT_BOOL GetScreen, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE GetChild(VARIANT MyHandl, VARIANT SplitPM, _Ds_ENumAction** result) override;
    HRESULT STDMETHODCALLTYPE GetActiveWindow(_Ds_ENumAction** result) override;
    HRESULT STDMETHODCALLTYPE KeyPress(short CodeAsc, VARIANT WaitNumber, Flag_TypeKeyShife TypeKey) override;
    HRESULT STDMETHODCALLTYPE WindowsClose(LONG nHwnd) override;
    HRESULT STDMETHODCALLTYPE ThreadProcessId(LONG lhWnd, LONG* result) override;
    HRESULT STDMETHODCALLTYPE GoImageWithHwnd(LONG* MyHwnd, IDispatch** ObjectForm) override;
    HRESULT STDMETHODCALLTYPE CloseAllWindows(short nCount) override;
    HRESULT STDMETHODCALLTYPE GoFormAlpha(LONG* MyHwnd, LONG* ValueAlpha) override;
    HRESULT STDMETHODCALLTYPE IsHitTest(LONG hWnd, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE GetHwndPoint(_Ds_ENumAction** result) override;
    HRESULT STDMETHODCALLTYPE GoHwndContainer(LONG MyHwndA, LONG MyHwndB, VARIANT_BOOL GetScreen) override;
    HRESULT STDMETHODCALLTYPE GoCusorXY(VARIANT DataX, VARIANT DataY, Flag_TypeMouse MouseDownUp,
                                        VARIANT WaitNumber) override;
    HRESULT STDMETHODCALLTYPE SetSizeWinPlace(LONG nHwnd, LONG nLeft, LONG nTop, LONG nWidth, LONG nHeight) override;
    HRESULT STDMETHODCALLTYPE WaitDoEvents(VARIANT NumberWithMultiple, VARIANT SecontTime) override;
    HRESULT STDMETHODCALLTYPE GetFindTitleWindow(BSTR FindTitle, LONG ParentHwnd, _Ds_ENumAction** result) override;
    HRESULT STDMETHODCALLTYPE HideMenuForm(LONG MeHandle, BSTR FullHide) override;
    HRESULT STDMETHODCALLTYPE SetTextMaching(BSTR sText, LONG* HwndHandle, Flag_TypeMaching TypeMaching,
                                             VARIANT WaitNumber) override;
    HRESULT STDMETHODCALLTYPE WaitFindWindows(VARIANT vHwnd, VARIANT SplitPM, VARIANT SplitFw,
                                              _Ds_ENumAction** result) override;
    HRESULT STDMETHODCALLTYPE FindWinChild(VARIANT vHwnd, VARIANT SplitPM, VARIANT SplitFw,
                                           _Ds_ENumAction** result) override;
    HRESULT STDMETHODCALLTYPE ActionSend(LONG nHwndl, LONG wMsg, LONG wParam, VARIANT iParam, Flag_TypeSend SendMy,
                                         VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE EWinChild(VARIANT nHwnd, Flag_TypeOutput TOut, _Ds_ListChild** result) override;
    HRESULT STDMETHODCALLTYPE SubParentEnum(LONG MyHwndWin, Flag_TypeOutput TOut, _Ds_ListChild** result) override;

    // The bodies the members share, for the window object and other callers inside the
    // library (they throw).
    static void keyPress(int16_t code, const VARIANT& waitNumber, LONG typeKey);
    static Variant actionSend(LONG hwnd, LONG msg, LONG wParam, const VARIANT& lParam, LONG sendMy);
    static void windowsClose(LONG hwnd);
    static void setTextMaching(const std::wstring& text, LONG hwnd, LONG typeMaching, const VARIANT& waitNumber);
    static ComPtr<_Ds_ListChild> listChildren(const VARIANT& hwnd, LONG tOut);
    static ComPtr<_Ds_ListChild> listAncestors(LONG hwnd, LONG tOut);
    static void windowPlacement(LONG hwnd, Vx_RECT& rect);
    static void setWindowPlacement(LONG hwnd, LONG left, LONG top, LONG right, LONG bottom);
    static bool isHitTest(LONG hwnd);
    static void imageOfWindow(LONG hwnd, IDispatch* form);
    static void formAlpha(LONG hwnd, LONG alpha);
};

}  // namespace vx
