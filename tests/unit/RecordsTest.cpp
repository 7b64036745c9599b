// Records as hosts pass them. Members that take or return records, called through
// IDispatch::Invoke as a VB6 or VBA host calls them: a record by value (VT_RECORD) or a
// variable by reference (VT_BYREF | VT_RECORD), each with its IRecordInfo; a record
// result comes back as VT_RECORD (VBScript cannot make records). And arrays of records.
#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/Convert.h"
#include "core/runtime/SafeArray.h"

#include "TestSupport.h"
#include "Vx_Main.h"

using namespace vx;
using vxtest::call;

namespace {

ComPtr<IRecordInfo> recordInfo(const wchar_t* name) {
    ITypeLib* tl = typeLibrary();
    std::wstring n(name);
    ITypeInfo* found[1] = {};
    MEMBERID id[1] = {};
    USHORT count = 1;
    ComPtr<IRecordInfo> info;
    if (tl && SUCCEEDED(tl->FindName(&n[0], 0, found, id, &count)) && count == 1) {
        GetRecordInfoFromTypeInfo(found[0], info.put());
        found[0]->Release();
    }
    return info;
}

// A record the host owns, with its description: a variable of a user-defined type.
struct Record {
    Record(const wchar_t* type, const void* data) : info(recordInfo(type)) {
        storage = info->RecordCreate();
        info->RecordCopy(const_cast<void*>(data), storage);
    }
    ~Record() { info->RecordDestroy(storage); }
    Variant byValue() const {
        Variant v;
        V_RECORD(v.get()) = nullptr;
        if (FAILED(info->RecordCreateCopy(storage, &V_RECORD(v.get())))) return v;
        V_VT(v.get()) = VT_RECORD;
        V_RECORDINFO(v.get()) = info.get();
        info->AddRef();
        return v;
    }
    Variant byReference() {
        Variant v;
        V_VT(v.get()) = VT_BYREF | VT_RECORD;
        V_RECORD(v.get()) = storage;
        V_RECORDINFO(v.get()) = info.get();  // a reference owns nothing
        return v;
    }
    ComPtr<IRecordInfo> info;
    void* storage = nullptr;
};

}  // namespace

TEST(RecordArguments, ASystemTimeByValueOrByReference) {
    auto clock = vxtest::createObject(CLSID_Ds_SysTime);
    const Vx_SYSTEMTIME t{2006, 8, 4, 3, 9, 5, 0, 0};
    Record time(L"SYSTEMTIME", &t);
    ASSERT_TRUE(time.info);
    auto r = call(clock.get(), L"ConvertDateSystemTime", {time.byValue()});
    ASSERT_EQ(r.errorNumber(), 0);
    EXPECT_EQ(vxtest::textOf(r.value), L"2006/8/3");
    r = call(clock.get(), L"ConvertDateSystemTime", {time.byReference(), Variant::fromBool(true)});
    ASSERT_EQ(r.errorNumber(), 0);
    EXPECT_EQ(vxtest::textOf(r.value), L"2006/8/3 9:5:0");
    // Another record, or no record at all, is a type mismatch.
    const Vx_RECT rect{1, 2, 3, 4};
    Record other(L"RECT", &rect);
    EXPECT_EQ(call(clock.get(), L"ConvertDateSystemTime", {other.byValue()}).errorNumber(), 13);
    EXPECT_EQ(call(clock.get(), L"ConvertDateSystemTime", {Variant::fromText(L"2006/8/3")}).errorNumber(), 13);
    EXPECT_EQ(call(clock.get(), L"ConvertDateSystemTime", {}).errorNumber(), 450);
}

TEST(RecordArguments, RectanglesInAndOut) {
    HWND window = CreateWindowExW(0, L"STATIC", L"Vx record test", WS_POPUP, 10, 20, 100, 200, nullptr, nullptr,
                                  nullptr, nullptr);
    ASSERT_TRUE(window);
    auto finder = vxtest::createObject(CLSID_Ds_EnumChid);
    auto object = vxtest::objectOf(call(finder.get(), L"GetChild", {Variant::fromLong(static_cast<LONG>(
                                                                        reinterpret_cast<LONG_PTR>(window)))})
                                       .value);
    ASSERT_TRUE(object);
    // A record result.
    auto placed = vxtest::get(object.get(), L"PostionRect");
    ASSERT_EQ(placed.errorNumber(), 0);
    ASSERT_EQ(placed.value.type(), VT_RECORD);
    const auto* rect = static_cast<const Vx_RECT*>(V_RECORD(placed.value.get()));
    EXPECT_EQ(rect->left, 10);
    EXPECT_EQ(rect->bottom, 220);
    // A host's variable filled in.
    const Vx_RECT zero{};
    Record size(L"RECT", &zero);
    Variant reference = size.byReference();
    ASSERT_EQ(call(object.get(), L"MySizeRect", {reference}).errorNumber(), 0);
    ASSERT_EQ(call(finder.get(), L"GetWinPlace",
                   {Variant::fromLong(static_cast<LONG>(reinterpret_cast<LONG_PTR>(window))), reference})
                  .errorNumber(),
              0);
    const auto* filled = static_cast<const Vx_RECT*>(size.storage);
    EXPECT_EQ(filled->top, 20);
    EXPECT_EQ(filled->right, 110);
    DestroyWindow(window);
}

TEST(RecordArrays, ElementsAreCopiedWithTheirDescription) {
    auto info = recordInfo(L"RECT");
    ASSERT_TRUE(info);
    SAFEARRAY* sa = SafeArrayCreateVectorEx(VT_RECORD, 0, 2, info.get());
    ASSERT_TRUE(sa);
    Vx_RECT* rects = nullptr;
    ASSERT_EQ(SafeArrayAccessData(sa, reinterpret_cast<void**>(&rects)), S_OK);
    rects[1] = Vx_RECT{5, 6, 7, 8};
    SafeArrayUnaccessData(sa);
    Variant array;
    V_VT(array.get()) = VT_ARRAY | VT_RECORD;
    V_ARRAY(array.get()) = sa;
    Variant element = ArrayView(*array).at(1);
    ASSERT_EQ(element.type(), VT_RECORD);
    EXPECT_EQ(static_cast<const Vx_RECT*>(V_RECORD(element.get()))->bottom, 8);
    GUID guid{};
    ASSERT_EQ(V_RECORDINFO(element.get())->GetGuid(&guid), S_OK);
    GUID expected{};
    info->GetGuid(&expected);
    EXPECT_EQ(guid, expected);
}
