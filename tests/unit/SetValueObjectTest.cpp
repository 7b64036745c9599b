// Ds_SetValueObject where a host script cannot reach: the message box through its seam
// (title, text and style), the error an object reports with an HRESULT of its own, and
// null pointers through the interface. Reading, letting,
// setting and calling members of script objects, and the box shown for real, are checked
// from a host script (tests/host/setvalueobject.vbs).
#include "core/latebound/SetValueObject.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/Services.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <string>

using namespace vx;
using vxtest::byRef;
using vxtest::call;

namespace {

// The boxes shown, instead of showing them.
struct Boxes {
    std::wstring text, title;
    UINT style = 0;
    int shown = 0;
    Boxes() : using_(table()) {}
    MessageBoxService table() {
        MessageBoxService s;
        s.show = [this](const std::wstring& t, const std::wstring& caption, UINT st) {
            text = t;
            title = caption;
            style = st;
            ++shown;
            return IDOK;
        };
        return s;
    }

private:
    ReplaceService<MessageBoxService> using_;
};

// An object named "Gate" whose every other member fails with an HRESULT of its own.
class Gate : public IDispatch {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override {
        if (!IsEqualIID(riid, IID_IUnknown) && !IsEqualIID(riid, IID_IDispatch)) return *ppv = nullptr, E_NOINTERFACE;
        *ppv = this;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++refs_; }
    ULONG STDMETHODCALLTYPE Release() override { return --refs_; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override { return *n = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        *ids = _wcsicmp(names[0], L"Name") == 0 ? 1 : 2;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO* ei,
                                     UINT*) override {
        if (id == 1) return Variant::fromText(L"Gate").detachTo(result), S_OK;
        *ei = EXCEPINFO{};
        ei->scode = E_ACCESSDENIED;
        ei->bstrDescription = SysAllocString(L"The gate is shut");
        return DISP_E_EXCEPTION;
    }
    ULONG refs() const { return refs_; }

private:
    ULONG refs_ = 1;
};

Variant text(const wchar_t* s) { return Variant::fromText(s); }
Variant number(long n) { return Variant::fromLong(n); }

}  // namespace

TEST(SetValueObject, TheBoxShowsTheLastFailureAndTheErrorStateSinceThen) {
    Boxes boxes;
    auto o = vxtest::createObject(CLSID_Ds_SetValueObject);
    LateBound dictionary = LateBound::create(L"Scripting.Dictionary");
    Variant target = Variant::fromDispatch(dictionary.get());
    EXPECT_EQ(vxtest::textOf(call(o.get(), L"GetValueData", {byRef(target), text(L"Nope"), number(2)}).value), L"Error");
    ASSERT_EQ(call(o.get(), L"ShowErrorCallByName").hr, S_OK);
    EXPECT_EQ(boxes.title, L"Invalid Type");
    EXPECT_EQ(boxes.style, 16u);  // OK only, the stop icon
    // An object without a Name leaves the control name empty; the error is the member's.
    EXPECT_EQ(boxes.text, L"Control Name : \r\nFeature Name : Nope\r\nError Number : 438\r\n"
                          L"Error Description : Object doesn't support this property or method");
    // A call that succeeds leaves no error behind; the names stay until the next failure.
    EXPECT_EQ(vxtest::textOf(call(o.get(), L"GetValueData", {byRef(target), text(L"Count"), number(2)}).value), L"Get");
    call(o.get(), L"ShowErrorCallByName");
    EXPECT_EQ(boxes.text, L"Control Name : \r\nFeature Name : Nope\r\nError Number : 0\r\nError Description : ");
    // An object's own HRESULT is the number a host would see, with the object's text.
    Gate gate;
    Variant gated = Variant::fromDispatch(&gate);
    EXPECT_EQ(vxtest::textOf(call(o.get(), L"GetValueData", {byRef(gated), text(L"Open"), number(1)}).value), L"Error");
    call(o.get(), L"ShowErrorCallByName");
    EXPECT_EQ(boxes.text, L"Control Name : Gate\r\nFeature Name : Open\r\nError Number : -2147024891\r\n"
                          L"Error Description : The gate is shut");
    EXPECT_EQ(boxes.shown, 3);
    gated = Variant();
    EXPECT_EQ(gate.refs(), 1u);
}

TEST(SetValueObject, NullPointersThroughTheInterfaceAreFailuresNotCrashes) {
    ComPtr<_Ds_SetValueObject> o = vxtest::createObject(CLSID_Ds_SetValueObject).query<_Ds_SetValueObject>();
    ASSERT_TRUE(o);
    auto list = vxtest::createObject(CLSID_Ds_ListCollection);
    IDispatch* target = list.get();
    LONG kind = 2;
    Variant result;
    EXPECT_EQ(o->GetValueData(nullptr, nullptr, nullptr, nullptr, nullptr, result.put()), S_OK);
    EXPECT_EQ(vxtest::textOf(result), L"Error");
    Bstr count(L"Count");
    EXPECT_EQ(o->GetValueData(&target, count.get(), &kind, nullptr, nullptr, result.put()), S_OK);
    EXPECT_EQ(vxtest::textOf(result), L"Get");
    EXPECT_EQ(o->GetValueData(&target, count.get(), &kind, nullptr, nullptr, nullptr), E_POINTER);
}
