// The ordered keyed collection under every list class, and Ds_ListCollection through its
// early-bound interface. What a late-bound host sees is in tests/host/collections.vbs.
#include "core/collections/KeyedCollection.h"

#include "AllocationFailure.h"
#include "TestSupport.h"
#include "Vx_Main.h"

using namespace vx;

TEST(KeyedCollection, OrderKeysAndTheThreeFailures) {
    KeyedCollection<int> c;
    c.add(10, L"Alpha");
    c.add(20);
    c.add(30, L"\u00c9t\u00e9");
    EXPECT_EQ(c.count(), 3);
    EXPECT_EQ(c.at(2), 20);
    // Keys compare without regard to case, beyond ASCII too; a number is a position.
    EXPECT_EQ(c.item(*Variant::fromText(L"ALPHA")), 10);
    EXPECT_EQ(c.item(*Variant::fromText(L"\u00e9T\u00c9")), 30);
    EXPECT_EQ(c.item(*Variant::fromDouble(2.0)), 20);
    EXPECT_RUNTIME_ERROR(c.add(2, L"alpha"), 457);
    EXPECT_EQ(c.count(), 3);  // a refused key adds nothing
    EXPECT_RUNTIME_ERROR(c.item(*Variant::fromText(L"b")), 5);
    EXPECT_RUNTIME_ERROR(c.item(*Variant::fromText(L"1")), 5);  // text is always a key
    EXPECT_RUNTIME_ERROR(c.at(0), 9);
    EXPECT_RUNTIME_ERROR(c.at(4), 9);
    EXPECT_RUNTIME_ERROR(c.item(*Variant::null()), 94);
    EXPECT_RUNTIME_ERROR(c.item(*Variant::empty()), 9);
    EXPECT_RUNTIME_ERROR(c.remove(*Variant::fromText(L"zz")), 5);
    EXPECT_RUNTIME_ERROR(c.remove(*Variant::fromLong(5)), 9);
}

TEST(KeyedCollection, RemoveAndClearFreeTheKeys) {
    // A key index that kept stale entries would refuse the key, or find a dead item.
    KeyedCollection<int> c;
    c.add(1, L"a");
    c.add(2, L"b");
    c.add(3);
    c.remove(*Variant::fromText(L"A"));
    EXPECT_EQ(c.at(1), 2);
    EXPECT_FALSE(c.contains(L"a"));
    c.add(4, L"a");
    c.removeAt(2);
    EXPECT_EQ(c.at(2), 4);
    EXPECT_EQ(c.find(L"B"), 2);
    c.clear();
    EXPECT_EQ(c.count(), 0);
    c.add(5, L"b");
    EXPECT_EQ(c.find(L"b"), 5);
}

TEST(KeyedCollection, KeysStayFoundAsTheCollectionGrows) {
    // The key index refers to the entries' own keys: growing the list and the index (and
    // a refused key on the way) must leave every key finding its own item.
    KeyedCollection<int> c;
    for (int i = 0; i < 5000; ++i) c.add(i, L"Key" + std::to_wstring(i));
    EXPECT_RUNTIME_ERROR(c.add(-1, L"KEY4999"), 457);
    c.add(5000, L"\u00c9T\u00c9 Key");
    EXPECT_EQ(c.count(), 5001);
    for (int i = 0; i < 5000; i += 499) EXPECT_EQ(c.find(L"kEy" + std::to_wstring(i)), i);
    EXPECT_EQ(c.find(L"\u00e9t\u00e9 KEY"), 5000);
    c.removeAt(1);
    EXPECT_FALSE(c.contains(L"key0"));
    EXPECT_EQ(c.find(L"KEY4999"), 4999);
}

TEST(ListCollection, EarlyBoundCallsGetTheSameResultsAndErrors) {
    // A compiled host calls the vtable: errors arrive as HRESULTs with the runtime's text
    // in the thread's error info, and out parameters are cleared.
    auto list = vxtest::createObject(CLSID_Ds_ListCollection).query<_Ds_ListCollection>();
    ASSERT_TRUE(list);
    Variant a = Variant::fromLong(5), m = Variant::missing();
    Bstr key(L"k");
    _Ds_DataCollection* rec = nullptr;
    ASSERT_EQ(list->Add(*a, key.get(), *m, *m, *m, *m, *m, *m, *m, *m, &rec), S_OK);
    ComPtr<_Ds_DataCollection> held = ComPtr<_Ds_DataCollection>::adopt(rec);
    LONG count = 0;
    list->get_Count(&count);
    EXPECT_EQ(count, 1);
    Variant bad = Variant::fromText(L"nope");
    _Ds_DataCollection* none = reinterpret_cast<_Ds_DataCollection*>(1);
    EXPECT_EQ(list->Item(bad.get(), &none), runtimeHresult(5));
    EXPECT_EQ(none, nullptr);
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

TEST(KeyedCollection, AnAdditionThatRunsOutOfMemoryLeavesNoTrace) {
    // Each allocation of an addition fails in turn: the item is then in the collection
    // with its key, or not at all.
    const std::wstring key = L"a key longer than any short-text buffer";
    for (std::size_t allowed = 0; allowed < 16; ++allowed) {
        KeyedCollection<std::wstring> c;
        c.add(L"first", L"one");
        bool added = true;
        try {
            vxtest::FailingAllocations failing(allowed);
            c.add(L"second value, long enough to be allocated", key);
        } catch (const std::bad_alloc&) {
            added = false;
        }
        EXPECT_EQ(c.count(), added ? 2 : 1) << allowed;
        EXPECT_EQ(c.contains(key), added) << allowed;
        if (!added) {
            c.add(L"again", key);  // the key is free, and the next addition works
            EXPECT_EQ(c.find(key), L"again");
        }
    }
}
