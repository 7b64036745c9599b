#pragma once
// Ds_MyVaribleFunction: the library's toolbox of string, array and key helpers. The work
// is done by the plain functions of shared/Helpers.h and shared/Waits.h, which other
// classes call too.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"

namespace vx {

class MyVaribleFunction : public DispatchObject<MyVaribleFunction, _Ds_MyVaribleFunction> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_MyVaribleFunction; }

    HRESULT STDMETHODCALLTYPE GetVar(VARIANT* sData, VARIANT* nIndex, VARIANT* sFind, Flag_PathClip* GoGetSplit,
                                     VARIANT* EndIndexLast, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE IsEqute(VARIANT* ValueA, VARIANT* ValueB, Type_IsEquate* GoTypeCheck,
                                      VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE CountUBound(VARIANT* MyArr, short* result) override;
    HRESULT STDMETHODCALLTYPE GoIsNull(VARIANT* MyDataVlaueNull, VARIANT ValueNull, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE IsKey(short GetAsc, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE DoWaitFindTitle(BSTR TitleName) override;
    HRESULT STDMETHODCALLTYPE DoWaitNumber(LONG Number) override;

    // Sorting and arrays (text/Arrays.h), words and characters (text/Words.h), forms and
    // controls (text/Forms.h), the display (text/Display.h).
    HRESULT STDMETHODCALLTYPE SetVaribleMissing(VARIANT* MyVarible) override;
    HRESULT STDMETHODCALLTYPE DragMe(VARIANT MyForm, Flag_TypeButton TypeButton, Flag_SendPostion SendPostion) override;
    HRESULT STDMETHODCALLTYPE GetReapetWord(BSTR sText, VARIANT* RepeatCount, VARIANT_BOOL IsCaseSensitive,
                                            BSTR* result) override;
    HRESULT STDMETHODCALLTYPE CheckKeyCode(short* KeyAscii, BSTR AllowText, VARIANT_BOOL IsAllowEdit,
                                           VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE IsControlObject(VARIANT MyObject, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE WinOnTop(VARIANT MyForm, VARIANT_BOOL IsOnTop, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE GoIsENMN(BSTR sText, VARIANT_BOOL IsToEnglish, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE CountFindWord(BSTR sText, BSTR sWord, VARIANT_BOOL IsWholeWord,
                                            VARIANT_BOOL IsCaseSensitive, LONG* result) override;
    HRESULT STDMETHODCALLTYPE CountArray(VARIANT* MyArr, VARIANT FindValue, LONG* result) override;
    HRESULT STDMETHODCALLTYPE GoEnabledForms(VARIANT MyForms, VARIANT_BOOL IsEnabled, VARIANT ExceptForm,
                                             LONG* result) override;
    HRESULT STDMETHODCALLTYPE GetSortArray(VARIANT* MyArr, SetSortType SortType, VARIANT_BOOL IsCaseSensitive,
                                           VARIANT SortColumn, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE IsENMN(BSTR sText, BSTR AllowText, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE GoResulotion(LONG nWidth, LONG nHeight, LONG nBitsPerPel, LONG nFrequency,
                                           VARIANT_BOOL IsSave, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE SetBackground(BSTR FileName, VARIANT_BOOL IsSave, VARIANT* OldFileName,
                                            VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE GetTotalTime(VARIANT* MyTimes, VARIANT_BOOL IsWantSecond, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE GoFindPaste(BSTR sText, BSTR sFind, BSTR sPaste, VARIANT_BOOL IsWholeWord,
                                          VARIANT_BOOL IsCaseSensitive, VARIANT* nCount, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE GAdd(VARIANT* MyArr, VARIANT MyValue, VARIANT_BOOL IsUnique, LONG* result) override;
    HRESULT STDMETHODCALLTYPE GetControlType(VARIANT MyControl, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE SetArrayPaste(VARIANT* MyArr, VARIANT PasteValue, VARIANT nIndex, LONG* result) override;
    HRESULT STDMETHODCALLTYPE GoEnabledFrame(VARIANT MyFrame, VARIANT_BOOL IsEnabled, LONG* result) override;
    HRESULT STDMETHODCALLTYPE IsLegalCharacter(BSTR sText, VARIANT IllegalText, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE GoVisibleControl(VARIANT MyForm, VARIANT_BOOL IsVisible, VARIANT ExceptControls,
                                               LONG* result) override;
    HRESULT STDMETHODCALLTYPE GoEnabledControl(VARIANT MyForm, VARIANT_BOOL IsEnabled, VARIANT ExceptControls,
                                               LONG* result) override;
    HRESULT STDMETHODCALLTYPE GoImageSizeAuto(VARIANT MyImage, VARIANT MaxWidth, VARIANT MaxHeight,
                                              IPictureDisp* MyPicture, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE SplitParagraphWord(BSTR sText, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE SetSort(VARIANT* MyArr, SetSortType SortType, VARIANT_BOOL IsCaseSensitive,
                                      VARIANT SortColumn) override;
};

}  // namespace vx
