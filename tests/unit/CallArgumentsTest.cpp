// What the dispatch base adds to a type info's Invoke: omitted by-reference parameters
// with a declared default receive it by reference, and host variables passed to typed
// by-reference parameters are converted going in and written back only when changed.
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/Convert.h"
#include "core/runtime/SafeArray.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <limits>

using namespace vx;
using vxtest::byRef;
using vxtest::call;
using vxtest::textOf;

namespace {

// Stands in for the helper class behind its interface, and records what GetVar received.
class Recorder : public DispatchObject<Recorder, _Ds_MyVaribleFunction> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_MyVaribleFunction; }

    Variant index, separator, last;
    LONG mode = 0;
    short key = 0;
    LONG writeMode = 0;      // when not 0, GetVar stores it into its mode argument
    bool writeData = false;  // GetVar stores the Long 7 into its data argument

    HRESULT STDMETHODCALLTYPE GetVar(VARIANT* sData, VARIANT* nIndex, VARIANT* sFind, Flag_PathClip* GoGetSplit,
                                     VARIANT* EndIndexLast, VARIANT* result) override {
        if (!sData || !nIndex || !sFind || !GoGetSplit || !EndIndexLast || !result) return E_POINTER;
        index = Variant::copyOf(*nIndex);
        separator = Variant::copyOf(*sFind);
        last = Variant::copyOf(*EndIndexLast);
        mode = *GoGetSplit;
        if (writeMode) *GoGetSplit = writeMode;
        if (writeData) {
            VariantClear(sData);
            V_VT(sData) = VT_I4;
            V_I4(sData) = 7;
        }
        VariantInit(result);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE IsEqute(VARIANT*, VARIANT*, Type_IsEquate*, VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CountUBound(VARIANT*, short*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GoIsNull(VARIANT*, VARIANT, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE IsKey(short GetAsc, VARIANT_BOOL*) override {
        key = GetAsc;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE DoWaitFindTitle(BSTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DoWaitNumber(LONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetVaribleMissing(VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DragMe(VARIANT, Flag_TypeButton, Flag_SendPostion) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetReapetWord(BSTR, VARIANT*, VARIANT_BOOL, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CheckKeyCode(short*, BSTR, VARIANT_BOOL, VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE IsControlObject(VARIANT, VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE WinOnTop(VARIANT, VARIANT_BOOL, VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GoIsENMN(BSTR, VARIANT_BOOL, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CountFindWord(BSTR, BSTR, VARIANT_BOOL, VARIANT_BOOL, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CountArray(VARIANT*, VARIANT, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GoEnabledForms(VARIANT, VARIANT_BOOL, VARIANT, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetSortArray(VARIANT*, SetSortType, VARIANT_BOOL, VARIANT, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE IsENMN(BSTR, BSTR, VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GoResulotion(LONG, LONG, LONG, LONG, VARIANT_BOOL, VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetBackground(BSTR, VARIANT_BOOL, VARIANT*, VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTotalTime(VARIANT*, VARIANT_BOOL, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GoFindPaste(BSTR, BSTR, BSTR, VARIANT_BOOL, VARIANT_BOOL, VARIANT*, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GAdd(VARIANT*, VARIANT, VARIANT_BOOL, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetControlType(VARIANT, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetArrayPaste(VARIANT*, VARIANT, VARIANT, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GoEnabledFrame(VARIANT, VARIANT_BOOL, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE IsLegalCharacter(BSTR, VARIANT, VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GoVisibleControl(VARIANT, VARIANT_BOOL, VARIANT, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GoEnabledControl(VARIANT, VARIANT_BOOL, VARIANT, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GoImageSizeAuto(VARIANT, VARIANT, VARIANT, IPictureDisp*, VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SplitParagraphWord(BSTR, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetSort(VARIANT*, SetSortType, VARIANT_BOOL, VARIANT) override { return E_NOTIMPL; }
};

Variant text(const wchar_t* s) { return Variant::fromText(s); }

}  // namespace

TEST(CallArguments, OmittedReferencesReceiveTheirDeclaredDefaults) {
    auto r = Recorder::create();
    ASSERT_EQ(call(r.get(), L"GetVar", {text(L"a,b")}).errorNumber(), 0);
    EXPECT_EQ(r->index.type(), VT_I2);  // whole-number defaults are Integers, as the host language has them
    EXPECT_EQ(toInt32(*r->index), 0);
    EXPECT_EQ(toText(*r->separator), L",");
    EXPECT_EQ(r->mode, 2);
    EXPECT_EQ(r->last.type(), VT_I2);
    EXPECT_EQ(toInt32(*r->last), 2);
    // An argument left out in the middle gets its default too.
    ASSERT_EQ(call(r.get(), L"GetVar",
                   {text(L"a"), Variant::fromLong(1), Variant::missing(), Variant::missing(), Variant::fromLong(9)})
                  .errorNumber(),
              0);
    EXPECT_EQ(toText(*r->separator), L",");
    EXPECT_EQ(r->mode, 2);
    EXPECT_EQ(toInt32(*r->last), 9);
}

TEST(CallArguments, HostVariablesReachTypedReferences) {
    auto r = Recorder::create();
    Variant mode = Variant::fromShort(4);  // a script's number is an Integer
    ASSERT_EQ(call(r.get(), L"GetVar", {text(L"a"), Variant::fromShort(0), text(L";"), byRef(mode)}).errorNumber(), 0);
    EXPECT_EQ(r->mode, 4);
    EXPECT_EQ(mode.type(), VT_I2);  // unchanged by the member: left as it was
    r->writeMode = 6;
    ASSERT_EQ(call(r.get(), L"GetVar", {text(L"a"), Variant::fromShort(0), text(L";"), byRef(mode)}).errorNumber(), 0);
    EXPECT_EQ(mode.type(), VT_I4);  // changed by the member: the host sees the new value
    EXPECT_EQ(toInt32(*mode), 6);
    // A value that does not convert is a type mismatch, whether it came as a variable or
    // by value with an omitted default added behind it; the type info need not report a
    // position, and none beyond the caller's arguments may be reported.
    Variant bad = text(L"three");
    for (Variant first : {byRef(bad), text(L"three")}) {
        Variant args[4] = {std::move(first), text(L";"), Variant::fromShort(0), text(L"a")};  // last first
        VARIANT raw[4] = {*args[0], *args[1], *args[2], *args[3]};
        DISPPARAMS params{raw, nullptr, 4, 0};
        Variant result;
        UINT argErr = 99;
        EXPECT_EQ(r->Invoke(0x60030000, IID_NULL, 0, DISPATCH_METHOD, &params, result.put(), nullptr, &argErr),
                  DISP_E_TYPEMISMATCH);
        EXPECT_TRUE(argErr == 0u || argErr == 99u) << argErr;
    }
}

TEST(CallArguments, PropertyAssignmentsTakeHostVariablesToo) {
    // The let of AlphaAnd takes a String by reference: `m.AlphaAnd = s` passes s as a
    // reference to a Variant.
    auto m = vxtest::createObject(CLSID_Ds_AlphaMoney);
    auto alphaAnd = [&] { return vxtest::textOf(vxtest::get(m.get(), L"AlphaAnd").value); };
    // A number is converted for the member; the host's variable keeps its own type.
    Variant number = Variant::fromLong(42);
    ASSERT_EQ(vxtest::put(m.get(), L"AlphaAnd", byRef(number)).errorNumber(), 0);
    EXPECT_EQ(alphaAnd(), L"42");
    EXPECT_EQ(number.type(), VT_I4);
    // A reference to a reference reaches the variable.
    Variant inner = Variant::fromText(L" & ");
    Variant outer = byRef(inner);
    ASSERT_EQ(vxtest::put(m.get(), L"AlphaAnd", byRef(outer)).errorNumber(), 0);
    EXPECT_EQ(alphaAnd(), L" & ");
    // What does not convert is left for the type info to report.
    Variant null = Variant::null(), array = makeVariantArray({Variant::fromLong(1)});
    EXPECT_EQ(vxtest::put(m.get(), L"AlphaAnd", byRef(null)).errorNumber(), 13);
    EXPECT_EQ(vxtest::put(m.get(), L"AlphaAnd", byRef(array)).errorNumber(), 13);
    EXPECT_EQ(alphaAnd(), L" & ");
}

namespace {

// Calls a member by name with arguments the caller owns (in call order) and hands them
// back as the call left them: whatever the call put there is the caller's to free.
std::vector<Variant> invokeOwning(IDispatch* object, const wchar_t* name, std::vector<Variant> args,
                                  HRESULT* hr = nullptr) {
    std::wstring n(name);
    LPOLESTR names[1] = {&n[0]};
    DISPID id = 0;
    EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names, 1, 0, &id), S_OK);
    std::vector<VARIANT> raw(args.size());
    for (size_t i = 0; i < args.size(); ++i) args[i].detachTo(&raw[args.size() - 1 - i]);
    DISPPARAMS params{raw.data(), nullptr, static_cast<UINT>(raw.size()), 0};
    Variant result;
    EXCEPINFO ei{};
    const HRESULT got = object->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &params, result.put(), &ei, nullptr);
    if (hr) *hr = got;
    SysFreeString(ei.bstrSource);
    SysFreeString(ei.bstrDescription);
    SysFreeString(ei.bstrHelpFile);
    std::vector<Variant> after;
    for (size_t i = raw.size(); i-- > 0;) after.push_back(Variant::take(raw[i]));
    return after;
}

}  // namespace

TEST(CallArguments, ByValueArgumentsStayTheCallersAsTheyWere) {
    // A by-value argument to an [in, out] parameter goes to the member as a reference to a
    // copy: the member's change stays in the copy (a value has no variable to write into),
    // the caller's argument is left as it was and stays the caller's to free, also when
    // defaults are completed around it (Wine's heap checker once reported texts freed twice).
    auto r = Recorder::create();
    r->writeData = true;
    auto after = invokeOwning(r.get(), L"GetVar", {Variant::fromDouble(1.5)});
    ASSERT_EQ(after.size(), 1u);
    ASSERT_EQ(after[0].type(), VT_R8);
    EXPECT_EQ(V_R8(after[0].get()), 1.5);

    // As a script calls them: ShamsiDate("2024/3/20", , "text"), and GoFormAlpha with a
    // Byte variable and "-1" (Wine's heap checker reported the texts freed twice).
    auto calendar = vxtest::createObject(CLSID_Ds_Calendar);
    after = invokeOwning(calendar.get(), L"ShamsiDate",
                         {Variant::fromText(L"2024/3/20"), Variant::missing(), Variant::fromText(L"text")});
    ASSERT_EQ(after[2].type(), VT_BSTR);
    EXPECT_EQ(toText(*after[2]), L"text");
    auto finder = vxtest::createObject(CLSID_Ds_EnumChid);
    Variant byte;
    V_VT(byte.get()) = VT_UI1;
    HRESULT hr = S_OK;
    after = invokeOwning(finder.get(), L"GoFormAlpha", {byRef(byte), Variant::fromText(L"-1")}, &hr);
    EXPECT_EQ(hr, DISP_E_EXCEPTION);  // error 6: an alpha beyond a byte
    EXPECT_EQ(toText(*after[1]), L"-1");
}

TEST(CallArguments, ArgumentsAMemberDoesNotTakeAreRefused) {
    // A property get given an argument it does not take: a type info would pass it on to
    // the object the property holds, Nothing included. Refused before the call, with error
    // 450, as a surplus argument to any member is.
    auto list = vxtest::createObject(CLSID_Ds_ListCollection);
    auto record = vxtest::objectOf(call(list.get(), L"Add", {text(L"v"), text(L"k")}).value);
    ASSERT_TRUE(record);
    ASSERT_EQ(vxtest::putRef(record.get(), L"ValueG", Variant::fromDispatch(nullptr)).errorNumber(), 0);
    EXPECT_EQ(vxtest::get(record.get(), L"ValueG", {Variant::fromShort(1)}).errorNumber(), 450);
    EXPECT_EQ(call(record.get(), L"ValueG", {Variant::fromShort(1)}).errorNumber(), 450);
    EXPECT_EQ(vxtest::get(record.get(), L"ValueG").errorNumber(), 0);
    auto calendar = vxtest::createObject(CLSID_Ds_Calendar);
    EXPECT_EQ(call(calendar.get(), L"MiladyDate", {text(L"1385/05/12"), Variant::fromBool(false), text(L"more")})
                  .errorNumber(),
              450);
    EXPECT_EQ(textOf(call(calendar.get(), L"MiladyDate", {text(L"1385/05/12"), Variant::fromBool(false)}).value),
              L"2006/8/3");
}

namespace {

// A call as VBA writes `o.Member(positional..., Name:=value ...)`: the names are looked
// up with the member's, the named arguments come first in rgvarg.
vxtest::CallResult callNamed(IDispatch* object, const wchar_t* member, std::vector<Variant> positional,
                             std::vector<std::pair<const wchar_t*, Variant>> named) {
    std::vector<std::wstring> names{member};
    for (auto& n : named) names.emplace_back(n.first);
    std::vector<LPOLESTR> raw;
    for (auto& n : names) raw.push_back(&n[0]);
    std::vector<DISPID> ids(raw.size());
    vxtest::CallResult r;
    r.hr = object->GetIDsOfNames(IID_NULL, raw.data(), static_cast<UINT>(raw.size()), 0, ids.data());
    if (FAILED(r.hr)) return r;
    std::vector<VARIANT> args(named.size() + positional.size());
    for (size_t k = 0; k < named.size(); ++k) named[k].second.detachTo(&args[k]);
    for (size_t j = 0; j < positional.size(); ++j) positional[j].detachTo(&args[args.size() - 1 - j]);
    DISPPARAMS params{args.data(), ids.data() + 1, static_cast<UINT>(args.size()), static_cast<UINT>(named.size())};
    EXCEPINFO ei{};
    r.hr = object->Invoke(ids[0], IID_NULL, 0, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &params, r.value.put(), &ei,
                          nullptr);
    if (r.hr == DISP_E_EXCEPTION) r.scode = ei.scode;
    SysFreeString(ei.bstrSource);
    SysFreeString(ei.bstrDescription);
    SysFreeString(ei.bstrHelpFile);
    for (VARIANT& v : args) VariantClear(&v);
    return r;
}

}  // namespace

TEST(CallArguments, NamedArgumentsTakeTheirPlacesAndDefaultsStillComplete) {
    auto r = Recorder::create();
    ASSERT_EQ(callNamed(r.get(), L"GetVar", {}, {{L"EndIndexLast", Variant::fromShort(9)}, {L"sData", text(L"a")}})
                  .errorNumber(),
              0);
    EXPECT_EQ(toInt32(*r->last), 9);
    EXPECT_EQ(toText(*r->separator), L",");  // the omitted ones their defaults, by reference
    EXPECT_EQ(r->mode, 2);
    // What a script names wrongly: no such parameter, one given twice, a required one
    // left out (448, 448, 449).
    EXPECT_EQ(callNamed(r.get(), L"GetVar", {text(L"a")}, {{L"sData", text(L"b")}}).errorNumber(), 448);
    EXPECT_EQ(callNamed(r.get(), L"GetVar", {}, {{L"nIndex", Variant::fromShort(1)}}).errorNumber(), 449);
    EXPECT_EQ(callNamed(r.get(), L"GetVar", {}, {{L"nIndex", Variant::fromShort(1)}, {L"nIndex", text(L"x")}})
                  .errorNumber(),
              448);
    // As VBA calls them: an omitted by-reference parameter with a default behind a named one.
    auto helper = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    auto equal = callNamed(helper.get(), L"IsEqute", {Variant::fromBool(true)}, {{L"ValueB", text(L"TRUE")}});
    ASSERT_EQ(equal.errorNumber(), 0);
    EXPECT_EQ(V_BOOL(equal.value.get()), VARIANT_TRUE);
    auto reg = vxtest::createObject(CLSID_clsReg);
    auto read = callNamed(reg.get(), L"ReadString", {Variant::fromLong(static_cast<LONG>(0x80000001u))},
                          {{L"sName", text(L"none")}, {L"SubKey", text(L"Software\\Vx_Main no such key")}});
    ASSERT_EQ(read.errorNumber(), 0);
    EXPECT_EQ(textOf(read.value), L"");  // the default of sDefault, as if it had been passed
}

TEST(CallArguments, NaNAndTheInfinitiesAreNoCount) {
    // Whole-number parameters, by value or by reference, and a Variant count the member
    // converts itself: error 6, never 2147483647 (2^31 yields).
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    auto r = Recorder::create();
    for (double d : {nan, inf, -inf}) {
        EXPECT_EQ(call(r.get(), L"IsKey", {Variant::fromDouble(d)}).errorNumber(), 6);
        Variant variable = Variant::fromDouble(d);
        EXPECT_EQ(call(r.get(), L"GetVar", {text(L"a"), Variant::missing(), Variant::missing(), byRef(variable)})
                      .errorNumber(),
                  6);
        EXPECT_EQ(call(r.get(), L"GetVar", {text(L"a"), Variant::missing(), Variant::missing(), Variant::fromDate(d)})
                      .errorNumber(),
                  6);
    }
    EXPECT_EQ(r->key, 0);
    EXPECT_EQ(r->mode, 0) << "the member ran";
    auto finder = vxtest::createObject(CLSID_Ds_EnumChid);
    EXPECT_EQ(call(finder.get(), L"WaitDoEvents", {Variant::missing(), Variant::fromDouble(nan)}).errorNumber(), 6);
    EXPECT_EQ(call(finder.get(), L"WaitDoEvents", {Variant::fromDouble(inf)}).errorNumber(), 6);
    EXPECT_EQ(call(r.get(), L"IsKey", {Variant::fromDouble(2.5)}).errorNumber(), 0);
    EXPECT_EQ(r->key, 2);
}

TEST(CallArguments, AnObjectOfAnotherKindIsATypeMismatch) {
    // cRegEnumValue.Add takes a key list and a value list; Nothing is accepted.
    auto keys = vxtest::createObject(CLSID_cRegKeys);
    auto values = vxtest::createObject(CLSID_cRegValues);
    auto lists = vxtest::createObject(CLSID_cRegEnumValue);
    auto other = vxtest::createObject(CLSID_Ds_Calendar);
    EXPECT_EQ(call(lists.get(), L"Add", {Variant::fromDispatch(other.get()), Variant::fromDispatch(values.get()),
                                         text(L"a")})
                  .errorNumber(),
              13);
    Variant variable = Variant::fromDispatch(other.get());
    EXPECT_EQ(call(lists.get(), L"Add", {Variant::fromDispatch(keys.get()), byRef(variable), text(L"b")}).errorNumber(),
              13);
    EXPECT_EQ(call(lists.get(), L"Add", {Variant::fromDispatch(keys.get()), Variant::fromDispatch(nullptr), text(L"c")})
                  .errorNumber(),
              0);
    EXPECT_EQ(vxtest::longOf(vxtest::get(lists.get(), L"Count").value), 1);
}

TEST(CallArguments, AFailedCallHasNoResult) {
    // Not the empty text a type info makes of the null text a failed member leaves.
    auto calendar = vxtest::createObject(CLSID_Ds_Calendar);
    auto failed = call(calendar.get(), L"ShamsiDate", {text(L"no date")});
    EXPECT_EQ(failed.errorNumber(), 13);
    EXPECT_EQ(failed.value.type(), VT_EMPTY);
    auto refused = call(calendar.get(), L"MiladyDate", {text(L"1385/05/12"), text(L"not a Boolean")});
    EXPECT_EQ(refused.errorNumber(), 13);
    EXPECT_EQ(refused.value.type(), VT_EMPTY);
}

TEST(CallArguments, AnEmptyValueTheCallFillsIsFreed) {
    // GAdd given Empty as a value (an expression, not a variable) makes an array holding
    // the object; no one can read it back, and the object must not stay referenced.
    auto helper = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    auto held = vxtest::createObject(CLSID_Ds_Calendar);
    held->AddRef();
    const ULONG before = held->Release();
    EXPECT_EQ(call(helper.get(), L"GAdd", {Variant(), Variant::fromDispatch(held.get())}).errorNumber(), 0);
    held->AddRef();
    EXPECT_EQ(held->Release(), before);
}
