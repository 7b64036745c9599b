#include "text/MyVaribleFunction.h"

#include "core/dispatch/Defaults.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/SafeArray.h"
#include "shared/Helpers.h"
#include "shared/Waits.h"
#include "text/Arrays.h"
#include "text/Display.h"
#include "text/Forms.h"
#include "text/Words.h"

#include <optional>
#include <string>
#include <vector>

namespace vx {

namespace {

// An optional argument, or the default the type library declares for it.
template <class T>
decltype(auto) orDefault(T* arg, const wchar_t* member, const wchar_t* parameter) {
    return argumentOr(arg, __uuidof(_Ds_MyVaribleFunction), member, parameter);
}

// A Boolean argument as the member reads it.
bool on(VARIANT_BOOL flag) { return flag != VARIANT_FALSE; }

// The caller's variable written back, by reference or not (an omitted optional one too).
void giveBack(VARIANT* variable, const Variant& value) {
    if (variable) writeBack(*variable, *value);
}

}  // namespace

HRESULT MyVaribleFunction::GetVar(VARIANT* sData, VARIANT* nIndex, VARIANT* sFind, Flag_PathClip* GoGetSplit,
                                  VARIANT* EndIndexLast, VARIANT* result) {
    return deliver(result, [&] {
        return getVar(deref(required(sData)), orDefault(nIndex, L"GetVar", L"nIndex"),
                      orDefault(sFind, L"GetVar", L"sFind"), orDefault(GoGetSplit, L"GetVar", L"GoGetSplit"),
                      orDefault(EndIndexLast, L"GetVar", L"EndIndexLast"));
    });
}

HRESULT MyVaribleFunction::IsEqute(VARIANT* ValueA, VARIANT* ValueB, Type_IsEquate* GoTypeCheck,
                                   VARIANT_BOOL* result) {
    return deliver(result, [&] {
        return isEqute(&required(ValueA), &required(ValueB), orDefault(GoTypeCheck, L"IsEqute", L"GoTypeCheck"));
    });
}

HRESULT MyVaribleFunction::CountUBound(VARIANT* MyArr, short* result) {
    return deliver(result, short(-1), [&] { return MyArr ? countUBound(*MyArr) : short(-1); });
}

HRESULT MyVaribleFunction::GoIsNull(VARIANT* MyDataVlaueNull, VARIANT ValueNull, VARIANT* result) {
    return deliver(result, [&] {
        // A copy of the value (an object is passed on as the same object), or for Null or a
        // left-out value the substitute.
        if (MyDataVlaueNull && !isMissing(*MyDataVlaueNull) && !isNull(*MyDataVlaueNull))
            return Variant::copyOf(*MyDataVlaueNull);
        return Variant::copyOf(orDefault(&ValueNull, L"GoIsNull", L"ValueNull"));
    });
}

HRESULT MyVaribleFunction::IsKey(short GetAsc, VARIANT_BOOL* result) {
    return deliver(result, [&] { return isKeyDown(GetAsc); });
}

HRESULT MyVaribleFunction::DoWaitFindTitle(BSTR TitleName) {
    return guard([&] {
        const Variant tilde = Variant::fromText(L"~");
        waitFindWindows(*Variant::fromText(viewOf(TitleName)), *tilde, *tilde);
    });
}

HRESULT MyVaribleFunction::DoWaitNumber(LONG Number) {
    return guard([&] { waitDoEvents(*Variant::fromLong(Number), *Variant::missing()); });
}

// ---- sorting and arrays ----

HRESULT MyVaribleFunction::SetVaribleMissing(VARIANT* MyVarible) {
    return guard([&] { writeBack(required(MyVarible), *Variant::missing()); });
}

HRESULT MyVaribleFunction::CountArray(VARIANT* MyArr, VARIANT FindValue, LONG* result) {
    return deliver(result, [&] {
        const bool find = !isMissing(deref(FindValue));
        return arrays::countElements(required(MyArr), find ? &deref(FindValue) : nullptr);
    });
}

HRESULT MyVaribleFunction::GetSortArray(VARIANT* MyArr, SetSortType SortType, VARIANT_BOOL IsCaseSensitive,
                                        VARIANT SortColumn, VARIANT* result) {
    return deliver(result, [&] {
        return arrays::sortedCopy(required(MyArr), SortType, on(IsCaseSensitive), deref(SortColumn));
    });
}

HRESULT MyVaribleFunction::SetSort(VARIANT* MyArr, SetSortType SortType, VARIANT_BOOL IsCaseSensitive,
                                   VARIANT SortColumn) {
    return guard([&] { arrays::sortInPlace(required(MyArr), SortType, on(IsCaseSensitive), deref(SortColumn)); });
}

HRESULT MyVaribleFunction::GAdd(VARIANT* MyArr, VARIANT MyValue, VARIANT_BOOL IsUnique, LONG* result) {
    return deliver(result, [&] { return arrays::append(required(MyArr), MyValue, on(IsUnique)); });
}

HRESULT MyVaribleFunction::SetArrayPaste(VARIANT* MyArr, VARIANT PasteValue, VARIANT nIndex, LONG* result) {
    return deliver(result, [&] { return arrays::insert(required(MyArr), PasteValue, deref(nIndex)); });
}

// ---- words and characters ----

HRESULT MyVaribleFunction::SplitParagraphWord(BSTR sText, VARIANT* result) {
    return deliver(result, [&] {
        std::vector<Variant> words;
        for (const std::wstring& word : words::splitWords(viewOf(sText))) words.push_back(Variant::fromText(word));
        return makeVariantArray(words);
    });
}

HRESULT MyVaribleFunction::CountFindWord(BSTR sText, BSTR sWord, VARIANT_BOOL IsWholeWord,
                                         VARIANT_BOOL IsCaseSensitive, LONG* result) {
    return deliver(result, [&] {
        return words::countWord(viewOf(sText), viewOf(sWord), on(IsWholeWord), on(IsCaseSensitive));
    });
}

HRESULT MyVaribleFunction::GetReapetWord(BSTR sText, VARIANT* RepeatCount, VARIANT_BOOL IsCaseSensitive,
                                         BSTR* result) {
    return deliver(result, [&] {
        int32_t count = 0;
        std::wstring word = words::mostRepeatedWord(viewOf(sText), on(IsCaseSensitive), count);
        giveBack(RepeatCount, Variant::fromLong(count));
        return word;
    });
}

HRESULT MyVaribleFunction::GoFindPaste(BSTR sText, BSTR sFind, BSTR sPaste, VARIANT_BOOL IsWholeWord,
                                       VARIANT_BOOL IsCaseSensitive, VARIANT* nCount, BSTR* result) {
    return deliver(result, [&] {
        int32_t count = 0;
        std::wstring text = words::findPaste(viewOf(sText), viewOf(sFind), viewOf(sPaste), on(IsWholeWord),
                                             on(IsCaseSensitive), count);
        giveBack(nCount, Variant::fromLong(count));
        return text;
    });
}

HRESULT MyVaribleFunction::IsENMN(BSTR sText, BSTR AllowText, VARIANT_BOOL* result) {
    return deliver(result, [&] { return words::isEnglishText(viewOf(sText), viewOf(AllowText)); });
}

HRESULT MyVaribleFunction::GoIsENMN(BSTR sText, VARIANT_BOOL IsToEnglish, BSTR* result) {
    return deliver(result, [&] { return words::convertDigits(viewOf(sText), on(IsToEnglish)); });
}

HRESULT MyVaribleFunction::IsLegalCharacter(BSTR sText, VARIANT IllegalText, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        std::optional<std::wstring> illegal;
        const VARIANT& given = deref(IllegalText);
        if (!isMissing(given)) {
            if (isArray(given)) raise(err::TypeMismatch);
            illegal = toText(given);
        }
        return words::isLegalText(viewOf(sText), illegal);
    });
}

HRESULT MyVaribleFunction::CheckKeyCode(short* KeyAscii, BSTR AllowText, VARIANT_BOOL IsAllowEdit,
                                        VARIANT_BOOL* result) {
    return deliver(result, [&] { return words::checkKeyCode(required(KeyAscii), viewOf(AllowText), on(IsAllowEdit)); });
}

HRESULT MyVaribleFunction::GetTotalTime(VARIANT* MyTimes, VARIANT_BOOL IsWantSecond, BSTR* result) {
    return deliver(result, [&] { return words::totalTime(required(MyTimes), on(IsWantSecond)); });
}

// ---- forms and controls ----

HRESULT MyVaribleFunction::IsControlObject(VARIANT MyObject, VARIANT_BOOL* result) {
    return deliver(result, [&] { return forms::isControlObject(MyObject); });
}

HRESULT MyVaribleFunction::GetControlType(VARIANT MyControl, BSTR* result) {
    return deliver(result, [&] { return forms::controlType(MyControl); });
}

HRESULT MyVaribleFunction::DragMe(VARIANT MyForm, Flag_TypeButton TypeButton, Flag_SendPostion SendPostion) {
    return guard([&] { forms::dragMe(MyForm, TypeButton, SendPostion); });
}

HRESULT MyVaribleFunction::WinOnTop(VARIANT MyForm, VARIANT_BOOL IsOnTop, VARIANT_BOOL* result) {
    return deliver(result, [&] { return forms::winOnTop(MyForm, on(IsOnTop)); });
}

HRESULT MyVaribleFunction::GoEnabledForms(VARIANT MyForms, VARIANT_BOOL IsEnabled, VARIANT ExceptForm, LONG* result) {
    return deliver(result, [&] { return forms::enableForms(MyForms, on(IsEnabled), ExceptForm); });
}

HRESULT MyVaribleFunction::GoEnabledControl(VARIANT MyForm, VARIANT_BOOL IsEnabled, VARIANT ExceptControls,
                                            LONG* result) {
    return deliver(result, [&] { return forms::enableControls(MyForm, on(IsEnabled), ExceptControls); });
}

HRESULT MyVaribleFunction::GoVisibleControl(VARIANT MyForm, VARIANT_BOOL IsVisible, VARIANT ExceptControls,
                                            LONG* result) {
    return deliver(result, [&] { return forms::showControls(MyForm, on(IsVisible), ExceptControls); });
}

HRESULT MyVaribleFunction::GoEnabledFrame(VARIANT MyFrame, VARIANT_BOOL IsEnabled, LONG* result) {
    return deliver(result, [&] { return forms::enableFrame(MyFrame, on(IsEnabled)); });
}

HRESULT MyVaribleFunction::GoImageSizeAuto(VARIANT MyImage, VARIANT MaxWidth, VARIANT MaxHeight,
                                           IPictureDisp* MyPicture, VARIANT_BOOL* result) {
    return deliver(result, [&] { return forms::imageSizeAuto(MyImage, MaxWidth, MaxHeight, MyPicture); });
}

// ---- the display ----

HRESULT MyVaribleFunction::GoResulotion(LONG nWidth, LONG nHeight, LONG nBitsPerPel, LONG nFrequency,
                                        VARIANT_BOOL IsSave, VARIANT_BOOL* result) {
    return deliver(result, [&] { return display::changeResolution(nWidth, nHeight, nBitsPerPel, nFrequency, on(IsSave)); });
}

HRESULT MyVaribleFunction::SetBackground(BSTR FileName, VARIANT_BOOL IsSave, VARIANT* OldFileName,
                                         VARIANT_BOOL* result) {
    return deliver(result, [&] {
        std::wstring previous;
        const bool set = display::setWallpaper(viewOf(FileName), on(IsSave), previous);
        giveBack(OldFileName, Variant::fromText(previous));
        return set;
    });
}

}  // namespace vx
