// What the dispatch base adds to a type info's Invoke: omitted by-reference parameters
// with a declared default receive it by reference, and host variables passed to typed
// by-reference parameters are converted going in and written back only when changed.
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/Convert.h"
#include "core/runtime/SafeArray.h"

#include "TestSupport.h"
#include "Vx_Main.h"

using namespace vx;
using vxtest::byRef;
using vxtest::call;

namespace {

// Stands in for the helper class behind its interface, and records what GetVar received.
class Recorder : public DispatchObject<Recorder, _Ds_MyVaribleFunction> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_MyVaribleFunction; }

    Variant index, separator, last;
    LONG mode = 0;
    LONG writeMode = 0;  // when not 0, GetVar stores it into its mode argument

    HRESULT STDMETHODCALLTYPE GetVar(VARIANT* sData, VARIANT* nIndex, VARIANT* sFind, Flag_PathClip* GoGetSplit,
                                     VARIANT* EndIndexLast, VARIANT* result) override {
        if (!sData || !nIndex || !sFind || !GoGetSplit || !EndIndexLast || !result) return E_POINTER;
        index = Variant::copyOf(*nIndex);
        separator = Variant::copyOf(*sFind);
        last = Variant::copyOf(*EndIndexLast);
        mode = *GoGetSplit;
        if (writeMode) *GoGetSplit = writeMode;
        VariantInit(result);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE IsEqute(VARIANT*, VARIANT*, Type_IsEquate*, VARIANT_BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CountUBound(VARIANT*, short*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GoIsNull(VARIANT*, VARIANT, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE IsKey(short, VARIANT_BOOL*) override { return E_NOTIMPL; }
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
