#include "text/MyVaribleFunction.h"

#include "core/dispatch/Defaults.h"
#include "core/runtime/Convert.h"
#include "shared/Helpers.h"
#include "shared/Waits.h"

namespace vx {

namespace {

// An optional argument, or the default the type library declares for it.
template <class T>
decltype(auto) orDefault(T* arg, const wchar_t* member, const wchar_t* parameter) {
    return argumentOr(arg, __uuidof(_Ds_MyVaribleFunction), member, parameter);
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

}  // namespace vx
