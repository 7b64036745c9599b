#include "text/MyVaribleFunction.h"

#include "core/dispatch/Defaults.h"
#include "core/runtime/Convert.h"
#include "shared/Helpers.h"
#include "shared/Waits.h"

namespace vx {

namespace {

// An optional by-reference argument as the member reads it: omitted (a caller through the
// vtable passes null), it stands for the default the type library declares.
const VARIANT& argumentOr(const VARIANT* arg, const wchar_t* member, const wchar_t* parameter) {
    if (!arg || isMissing(*arg)) return declaredDefault(__uuidof(_Ds_MyVaribleFunction), member, parameter);
    return deref(*arg);
}

LONG argumentOr(const LONG* arg, const wchar_t* member, const wchar_t* parameter) {
    return arg ? *arg : toInt32(declaredDefault(__uuidof(_Ds_MyVaribleFunction), member, parameter));
}

}  // namespace

HRESULT MyVaribleFunction::GetVar(VARIANT* sData, VARIANT* nIndex, VARIANT* sFind, Flag_PathClip* GoGetSplit,
                                  VARIANT* EndIndexLast, VARIANT* result) {
    return deliver(result, [&] {
        return getVar(deref(required(sData)), argumentOr(nIndex, L"GetVar", L"nIndex"),
                      argumentOr(sFind, L"GetVar", L"sFind"), argumentOr(GoGetSplit, L"GetVar", L"GoGetSplit"),
                      argumentOr(EndIndexLast, L"GetVar", L"EndIndexLast"));
    });
}

HRESULT MyVaribleFunction::IsEqute(VARIANT* ValueA, VARIANT* ValueB, Type_IsEquate* GoTypeCheck,
                                   VARIANT_BOOL* result) {
    return deliver(result, [&] {
        return isEqute(&required(ValueA), &required(ValueB), argumentOr(GoTypeCheck, L"IsEqute", L"GoTypeCheck"));
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
        return Variant::copyOf(isMissing(ValueNull) ? declaredDefault(__uuidof(_Ds_MyVaribleFunction), L"GoIsNull", L"ValueNull")
                                                    : ValueNull);
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
