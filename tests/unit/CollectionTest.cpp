// The ordered keyed collection, and Ds_ListCollection / Ds_DataCollection on it, through
// their C++ interfaces and by name as a late-bound host calls them.
#include "core/collections/KeyedCollection.h"
#include "core/runtime/Convert.h"
#include "core/runtime/SafeArray.h"

#include "TestSupport.h"
#include "Vx_Main.h"

using namespace vx;
using vxtest::call;
using vxtest::get;
using vxtest::longOf;
using vxtest::objectOf;
using vxtest::textOf;

TEST(KeyedCollection, KeepsOrderAndFindsKeysWithoutRegardToCase) {
    KeyedCollection<int> c;
    c.add(10, L"Alpha");
    c.add(20);
    c.add(30, L"\u00c9t\u00e9");
    EXPECT_EQ(c.count(), 3);
    EXPECT_EQ(c.at(1), 10);
    EXPECT_EQ(c.at(2), 20);
    EXPECT_EQ(c.find(L"ALPHA"), 10);
    EXPECT_EQ(c.find(L"\u00e9T\u00c9"), 30);
    EXPECT_EQ(c.item(*Variant::fromText(L"alpha")), 10);
    EXPECT_EQ(c.item(*Variant::fromDouble(2.0)), 20);
    EXPECT_EQ(c.item(*Variant::fromText(L"\u00c9t\u00e9")), 30);
}

TEST(KeyedCollection, TheThreeFailures) {
    KeyedCollection<int> c;
    c.add(1, L"a");
    EXPECT_RUNTIME_ERROR(c.add(2, L"A"), 457);
    EXPECT_EQ(c.count(), 1);
    EXPECT_RUNTIME_ERROR(c.find(L"b"), 5);
    EXPECT_RUNTIME_ERROR(c.at(0), 9);
    EXPECT_RUNTIME_ERROR(c.at(2), 9);
    EXPECT_RUNTIME_ERROR(c.item(*Variant::fromText(L"1")), 5);  // text is always a key
    EXPECT_RUNTIME_ERROR(c.item(*Variant::null()), 94);
    EXPECT_RUNTIME_ERROR(c.item(*Variant::empty()), 9);
    EXPECT_RUNTIME_ERROR(c.remove(*Variant::fromText(L"zz")), 5);
    EXPECT_RUNTIME_ERROR(c.remove(*Variant::fromLong(5)), 9);
}

TEST(KeyedCollection, RemoveFreesTheKey) {
    KeyedCollection<int> c;
    c.add(1, L"a");
    c.add(2, L"b");
    c.add(3);
    c.remove(*Variant::fromText(L"A"));
    EXPECT_EQ(c.count(), 2);
    EXPECT_EQ(c.at(1), 2);
    EXPECT_FALSE(c.contains(L"a"));
    c.add(4, L"a");  // the key is free again
    c.removeAt(2);
    EXPECT_EQ(c.at(2), 4);
    c.clear();
    EXPECT_EQ(c.count(), 0);
    c.add(5, L"b");  // clear forgot every key
}

TEST(KeyedCollection, LookupByKeyStaysFastInLargeLists) {
    KeyedCollection<int> c;
    for (int i = 0; i < 100000; ++i) c.add(i, L"key" + std::to_wstring(i));
    long long sum = 0;
    for (int i = 0; i < 100000; ++i) sum += c.find(L"KEY" + std::to_wstring(i));
    EXPECT_EQ(sum, 4999950000LL);
}

namespace {

ComPtr<IDispatch> newList() { return vxtest::createObject(CLSID_Ds_ListCollection); }

ComPtr<_Ds_ListCollection> listInterface(const ComPtr<IDispatch>& d) { return d.query<_Ds_ListCollection>(); }

Variant text(const wchar_t* s) { return Variant::fromText(s); }
Variant num(long n) { return Variant::fromLong(n); }

Variant makeVariantArrayOf(long n) {
    std::vector<Variant> items;
    for (long i = 0; i < n; ++i) items.push_back(num(i));
    return makeVariantArray(items);
}

}  // namespace

TEST(ListCollection, AddStoresTheValuesInTheirOrder) {
    auto list = newList();
    // Positional arguments: A, key, then B, C, D, E, F, G, K, H.
    auto added = call(list.get(), L"Add", {text(L"a"), text(L"k1"), text(L"b"), text(L"c"), text(L"d"), text(L"e"),
                                           text(L"f"), text(L"g"), text(L"K"), text(L"H")});
    ASSERT_EQ(added.errorNumber(), 0);
    auto rec = objectOf(added.value);
    EXPECT_EQ(textOf(get(rec.get(), L"sKey").value), L"k1");
    const wchar_t* fields[] = {L"ValueA", L"ValueB", L"ValueC", L"ValueD", L"ValueE",
                               L"ValueF", L"ValueG", L"ValueK", L"ValueH"};
    const wchar_t* expected[] = {L"a", L"b", L"c", L"d", L"e", L"f", L"g", L"K", L"H"};
    for (int i = 0; i < 9; ++i) EXPECT_EQ(textOf(get(rec.get(), fields[i]).value), expected[i]) << fields[i];
}

TEST(ListCollection, OmittedValuesHoldTheMissingMarker) {
    auto list = newList();
    auto rec = objectOf(call(list.get(), L"Add", {num(1)}).value);
    EXPECT_EQ(textOf(get(rec.get(), L"sKey").value), L"");
    EXPECT_TRUE(isMissing(*get(rec.get(), L"ValueB").value));
    EXPECT_TRUE(isMissing(*get(rec.get(), L"ValueH").value));
    EXPECT_EQ(longOf(get(rec.get(), L"ValueA").value), 1);
}

TEST(ListCollection, DuplicateKeyReturnsTheStoredRecordUnchanged) {
    auto list = newList();
    auto first = objectOf(call(list.get(), L"Add", {num(1), text(L"a")}).value);
    auto second = call(list.get(), L"Add", {num(2), text(L"A"), text(L"other")});
    ASSERT_EQ(second.errorNumber(), 0);
    EXPECT_EQ(objectOf(second.value).get(), first.get());
    EXPECT_EQ(longOf(get(first.get(), L"ValueA").value), 1);
    EXPECT_TRUE(isMissing(*get(first.get(), L"ValueB").value));
    EXPECT_EQ(longOf(get(list.get(), L"Count").value), 1);
}

TEST(ListCollection, EmptyKeyAlwaysAppends) {
    auto list = newList();
    call(list.get(), L"Add", {num(1), text(L"")});
    call(list.get(), L"Add", {num(2), text(L"")});
    call(list.get(), L"Add", {num(3)});
    EXPECT_EQ(longOf(get(list.get(), L"Count").value), 3);
}

TEST(ListCollection, ItemByPositionOrKeyReturnsTheSharedRecord) {
    auto list = newList();
    auto rec = objectOf(call(list.get(), L"Add", {num(1), text(L"a")}).value);
    call(list.get(), L"Add", {num(2), text(L"b")});
    Variant position = num(1), key = text(L"A");
    EXPECT_EQ(objectOf(call(list.get(), L"Item", {vxtest::byRef(position)}).value).get(), rec.get());
    EXPECT_EQ(objectOf(call(list.get(), L"Item", {vxtest::byRef(key)}).value).get(), rec.get());
    // A change through the returned record is a change to the record in the list.
    vxtest::put(rec.get(), L"ValueA", text(L"changed"));
    EXPECT_EQ(textOf(get(objectOf(call(list.get(), L"Item", {num(1)}).value).get(), L"ValueA").value), L"changed");
}

TEST(ListCollection, BadIndexesReachTheCaller) {
    auto list = newList();
    call(list.get(), L"Add", {num(1), text(L"a")});
    EXPECT_EQ(call(list.get(), L"Item", {num(0)}).errorNumber(), 9);
    EXPECT_EQ(call(list.get(), L"Item", {num(2)}).errorNumber(), 9);
    auto unknown = call(list.get(), L"Item", {text(L"zz")});
    EXPECT_EQ(unknown.errorNumber(), 5);
    EXPECT_EQ(unknown.description, L"Invalid procedure call or argument");
    EXPECT_EQ(call(list.get(), L"Remove", {text(L"zz")}).errorNumber(), 5);
    EXPECT_EQ(call(list.get(), L"Remove", {num(3)}).errorNumber(), 9);
    EXPECT_EQ(call(list.get(), L"Item", {Variant::null()}).errorNumber(), 94);
    EXPECT_EQ(call(list.get(), L"Item", {makeVariantArrayOf(1)}).errorNumber(), 13);
    EXPECT_EQ(call(list.get(), L"Item").errorNumber(), 450);  // the index is required
    EXPECT_EQ(longOf(get(list.get(), L"Count").value), 1);
}

TEST(ListCollection, RemoveByPositionOrKey) {
    auto list = newList();
    call(list.get(), L"Add", {num(1), text(L"a")});
    call(list.get(), L"Add", {num(2), text(L"b")});
    call(list.get(), L"Add", {num(3), text(L"c")});
    EXPECT_EQ(call(list.get(), L"Remove", {text(L"B")}).errorNumber(), 0);
    EXPECT_EQ(call(list.get(), L"Remove", {num(1)}).errorNumber(), 0);
    EXPECT_EQ(longOf(get(list.get(), L"Count").value), 1);
    EXPECT_EQ(longOf(get(objectOf(call(list.get(), L"Item", {num(1)}).value).get(), L"ValueA").value), 3);
    // The removed key may be used again.
    EXPECT_EQ(longOf(get(objectOf(call(list.get(), L"Add", {num(4), text(L"a")}).value).get(), L"ValueA").value), 4);
}

TEST(ListCollection, ClearKeepsRecordsTheHostHolds) {
    auto list = newList();
    auto rec = objectOf(call(list.get(), L"Add", {num(1), text(L"a")}).value);
    EXPECT_EQ(call(list.get(), L"Clear").errorNumber(), 0);
    EXPECT_EQ(longOf(get(list.get(), L"Count").value), 0);
    EXPECT_EQ(longOf(get(rec.get(), L"ValueA").value), 1);
    EXPECT_EQ(call(list.get(), L"Clear").errorNumber(), 0);  // clearing an empty list
    call(list.get(), L"Add", {num(2), text(L"a")});       // the key is free
    EXPECT_EQ(longOf(get(list.get(), L"Count").value), 1);
}

TEST(ListCollection, NestedListIsCreatedOnFirstUse) {
    auto list = newList();
    auto rec = objectOf(call(list.get(), L"Add", {num(1)}).value);
    EXPECT_EQ(longOf(call(rec.get(), L"Count").value), 0);
    auto nested = objectOf(get(rec.get(), L"AddItem").value);
    ASSERT_TRUE(nested);
    EXPECT_EQ(objectOf(get(rec.get(), L"AddItem").value).get(), nested.get());  // the same list each time
    call(nested.get(), L"Add", {text(L"child")});
    EXPECT_EQ(longOf(call(rec.get(), L"Count").value), 1);
    // Set AddItem = Nothing: the next read makes a new empty list.
    EXPECT_EQ(vxtest::putRef(rec.get(), L"AddItem", Variant::fromDispatch(nullptr)).errorNumber(), 0);
    EXPECT_EQ(longOf(call(rec.get(), L"Count").value), 0);
    // Another list may be attached.
    auto other = newList();
    call(other.get(), L"Add", {num(1)});
    call(other.get(), L"Add", {num(2)});
    vxtest::putRef(rec.get(), L"AddItem", Variant::fromDispatch(other.get()));
    EXPECT_EQ(longOf(call(rec.get(), L"Count").value), 2);
}

TEST(ListCollection, ValuesAreLetOrSet) {
    auto list = newList();
    auto rec = objectOf(call(list.get(), L"Add", {num(1)}).value);
    auto other = newList();
    // Set stores the object itself.
    EXPECT_EQ(vxtest::putRef(rec.get(), L"ValueB", Variant::fromDispatch(other.get())).errorNumber(), 0);
    EXPECT_EQ(objectOf(get(rec.get(), L"ValueB").value).get(), other.get());
    EXPECT_EQ(vxtest::putRef(rec.get(), L"ValueC", num(3)).errorNumber(), 424);
    // Let stores a value: an object without a default value cannot be one.
    EXPECT_EQ(vxtest::put(rec.get(), L"ValueC", Variant::fromDispatch(other.get())).errorNumber(), 438);
    EXPECT_EQ(vxtest::put(rec.get(), L"ValueC", Variant::null()).errorNumber(), 0);
    EXPECT_TRUE(isNull(*get(rec.get(), L"ValueC").value));
    EXPECT_EQ(vxtest::put(rec.get(), L"ValueD", makeVariantArrayOf(2)).errorNumber(), 0);
    EXPECT_TRUE(isArray(*get(rec.get(), L"ValueD").value));
    EXPECT_EQ(vxtest::put(rec.get(), L"sKey", text(L"new")).errorNumber(), 0);
    EXPECT_EQ(textOf(get(rec.get(), L"sKey").value), L"new");
}

TEST(ListCollection, AddOfAnObjectValueFallsBackToTheKeysRecord) {
    auto list = newList();
    auto other = newList();
    // The value assignment fails (the object has no default value): without a stored
    // record under the key, the lookup's error reaches the caller ...
    EXPECT_EQ(call(list.get(), L"Add", {Variant::fromDispatch(other.get()), text(L"x")}).errorNumber(), 5);
    EXPECT_EQ(longOf(get(list.get(), L"Count").value), 0);
    // ... and with one, Add hands it back.
    auto stored = objectOf(call(list.get(), L"Add", {num(1), text(L"x")}).value);
    EXPECT_EQ(objectOf(call(list.get(), L"Add", {Variant::fromDispatch(other.get()), text(L"x")}).value).get(),
              stored.get());
}

TEST(ListCollection, EarlyBoundInterface) {
    auto list = listInterface(newList());
    ASSERT_TRUE(list);
    VARIANT a;
    VariantInit(&a);
    V_VT(&a) = VT_I4;
    V_I4(&a) = 5;
    Variant m = Variant::missing();
    Bstr key(L"k");
    _Ds_DataCollection* rec = nullptr;
    ASSERT_EQ(list->Add(a, key.get(), *m, *m, *m, *m, *m, *m, *m, *m, &rec), S_OK);
    ComPtr<_Ds_DataCollection> held = ComPtr<_Ds_DataCollection>::adopt(rec);
    LONG count = 0;
    list->get_Count(&count);
    EXPECT_EQ(count, 1);
    Variant bad = Variant::fromText(L"nope");
    _Ds_DataCollection* none = reinterpret_cast<_Ds_DataCollection*>(1);
    HRESULT hr = list->Item(bad.get(), &none);
    EXPECT_EQ(hr, runtimeHresult(5));
    EXPECT_EQ(none, nullptr);
    // The failure left its description in the thread's error info.
    IErrorInfo* info = nullptr;
    ASSERT_EQ(GetErrorInfo(0, &info), S_OK);
    BSTR description = nullptr;
    info->GetDescription(&description);
    EXPECT_STREQ(description, L"Invalid procedure call or argument");
    SysFreeString(description);
    info->Release();
    ComPtr<ISupportErrorInfo> sei = list.query<ISupportErrorInfo>();
    ASSERT_TRUE(sei);
    EXPECT_EQ(sei->InterfaceSupportsErrorInfo(__uuidof(_Ds_ListCollection)), S_OK);
}
