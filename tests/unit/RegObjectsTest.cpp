// The registry key and value objects and the four registry collections, called by name as
// a late-bound host calls them.
#include "RegistryTestSupport.h"

#include "core/runtime/Convert.h"

using namespace vx;
using vxtest::call;
using vxtest::get;
using vxtest::longOf;
using vxtest::objectOf;
using vxtest::put;
using vxtest::textOf;

namespace {

Variant text(const std::wstring& s) { return Variant::fromText(s); }
Variant num(long n) { return Variant::fromLong(n); }
long countOf(IDispatch* list) { return longOf(get(list, L"Count").value); }

// Calls the default member (dispatch identifier 0), as keys(1) does in a host.
vxtest::CallResult callDefault(IDispatch* object, Variant index) {
    DISPPARAMS params{index.get(), nullptr, 1, 0};
    vxtest::CallResult r;
    EXCEPINFO ei{};
    r.hr = object->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &params,
                          r.value.put(), &ei, nullptr);
    if (r.hr == DISP_E_EXCEPTION) r.scode = ei.scode;
    SysFreeString(ei.bstrDescription);
    SysFreeString(ei.bstrSource);
    SysFreeString(ei.bstrHelpFile);
    return r;
}

}  // namespace

TEST(RegCollections, KeysAndValuesAreKeyedByName) {
    auto keys = vxtest::createObject(CLSID_cRegKeys);
    auto key = objectOf(call(keys.get(), L"Add", {num(vxtest::hkcuRoot), text(L"Software\\A"), text(L"A"), num(3)}).value);
    ASSERT_TRUE(key);
    EXPECT_EQ(longOf(get(key.get(), L"HKey").value), vxtest::hkcuRoot);
    EXPECT_EQ(textOf(get(key.get(), L"SubKey").value), L"Software\\A");
    EXPECT_EQ(textOf(get(key.get(), L"KeyName").value), L"A");
    EXPECT_EQ(longOf(get(key.get(), L"CountKey").value), 3);
    call(keys.get(), L"Add", {num(vxtest::hkcuRoot), text(L"Software\\B"), text(L"B"), num(0)});
    // Item is the default member; names compare without regard to case.
    EXPECT_EQ(objectOf(callDefault(keys.get(), num(1)).value).get(), key.get());
    EXPECT_EQ(objectOf(callDefault(keys.get(), text(L"a")).value).get(), key.get());
    // A name already present is the caller's error 457, and the list is unchanged.
    EXPECT_EQ(call(keys.get(), L"Add", {num(0), text(L"x"), text(L"b"), num(0)}).errorNumber(), 457);
    EXPECT_EQ(countOf(keys.get()), 2);
    EXPECT_EQ(callDefault(keys.get(), text(L"zz")).errorNumber(), 5);
    EXPECT_EQ(callDefault(keys.get(), num(0)).errorNumber(), 9);
    EXPECT_EQ(callDefault(keys.get(), num(3)).errorNumber(), 9);
    EXPECT_EQ(call(keys.get(), L"Remove", {text(L"A")}).errorNumber(), 0);
    EXPECT_EQ(countOf(keys.get()), 1);
    EXPECT_EQ(call(keys.get(), L"Clear").errorNumber(), 0);
    EXPECT_EQ(countOf(keys.get()), 0);
    EXPECT_EQ(textOf(get(key.get(), L"KeyName").value), L"A");  // a held item outlives the list

    auto values = vxtest::createObject(CLSID_cRegValues);
    auto value = objectOf(call(values.get(), L"Add", {num(vxtest::hkcuRoot), text(L"Software\\v"), text(L"v"),
                                                      num(REG_DWORD), num(42)})
                              .value);
    ASSERT_TRUE(value);
    EXPECT_EQ(longOf(get(value.get(), L"Datatype").value), REG_DWORD);
    EXPECT_EQ(longOf(get(value.get(), L"DataValue").value), 42);
    // The default value's name is "", a key like any other.
    call(values.get(), L"Add", {num(0), text(L"Software\\"), text(L""), num(REG_SZ), text(L"d")});
    EXPECT_EQ(textOf(get(objectOf(callDefault(values.get(), text(L"")).value).get(), L"DataValue").value), L"d");
    EXPECT_EQ(call(values.get(), L"Add", {num(0), text(L"x"), text(L"V"), num(1), text(L"")}).errorNumber(), 457);
    EXPECT_EQ(countOf(values.get()), 2);
}

TEST(RegCollections, EnumKeyStoresTheListItIsGiven) {
    auto lists = vxtest::createObject(CLSID_cRegEnumKey);
    auto keys = vxtest::createObject(CLSID_cRegKeys);
    Variant held = Variant::fromDispatch(keys.get());
    EXPECT_EQ(call(lists.get(), L"Add", {vxtest::byRef(held), text(L"a\\b")}).errorNumber(), 0);
    EXPECT_EQ(objectOf(call(lists.get(), L"Item", {text(L"A\\B")}).value).get(), keys.get());
    EXPECT_EQ(objectOf(call(lists.get(), L"Item", {num(1)}).value).get(), keys.get());
    EXPECT_EQ(objectOf(held).get(), keys.get());  // the caller's variable still holds its list
    EXPECT_EQ(call(lists.get(), L"Add", {held, text(L"a\\B")}).errorNumber(), 457);
    EXPECT_EQ(call(lists.get(), L"Item", {text(L"none")}).errorNumber(), 5);
    // A variable never set stands for Nothing, and stays as it was.
    Variant unset;
    EXPECT_EQ(call(lists.get(), L"Add", {vxtest::byRef(unset), text(L"nothing")}).errorNumber(), 0);
    EXPECT_EQ(unset.type(), VT_EMPTY);
    auto nothing = call(lists.get(), L"Item", {text(L"nothing")});
    EXPECT_EQ(nothing.value.type(), VT_DISPATCH);
    EXPECT_FALSE(objectOf(nothing.value));
    // Another kind of object is refused.
    Variant other = Variant::fromDispatch(vxtest::createObject(CLSID_cRegValues).get());
    EXPECT_NE(call(lists.get(), L"Add", {vxtest::byRef(other), text(L"other")}).errorNumber(), 0);
    EXPECT_EQ(call(lists.get(), L"Remove", {num(1)}).errorNumber(), 0);
    EXPECT_EQ(call(lists.get(), L"Remove", {num(1)}).errorNumber(), 0);
    EXPECT_EQ(countOf(lists.get()), 0);
}

TEST(RegCollections, EnumValueRemoveAndCountWorkOnTheKeyListsAlone) {
    auto lists = vxtest::createObject(CLSID_cRegEnumValue);
    auto keys1 = vxtest::createObject(CLSID_cRegKeys), keys2 = vxtest::createObject(CLSID_cRegKeys);
    auto values1 = vxtest::createObject(CLSID_cRegValues), values2 = vxtest::createObject(CLSID_cRegValues);
    call(lists.get(), L"Add", {Variant::fromDispatch(keys1.get()), Variant::fromDispatch(values1.get()), text(L"first")});
    call(lists.get(), L"Add", {Variant::fromDispatch(keys2.get()), Variant::fromDispatch(values2.get()), text(L"second")});
    EXPECT_EQ(countOf(lists.get()), 2);
    EXPECT_EQ(textOf(call(lists.get(), L"Item", {num(2)}).value), L"second");
    EXPECT_EQ(objectOf(call(lists.get(), L"ItemKey", {text(L"SECOND")}).value).get(), keys2.get());
    EXPECT_EQ(objectOf(call(lists.get(), L"ItemValue", {text(L"first")}).value).get(), values1.get());
    EXPECT_EQ(call(lists.get(), L"Item", {text(L"first")}).errorNumber(), 5);  // names have no keys

    EXPECT_EQ(call(lists.get(), L"Remove", {num(1)}).errorNumber(), 0);
    EXPECT_EQ(countOf(lists.get()), 1);
    EXPECT_EQ(textOf(call(lists.get(), L"Item", {num(1)}).value), L"first");  // names keep their entries
    EXPECT_EQ(objectOf(call(lists.get(), L"ItemValue", {text(L"first")}).value).get(), values1.get());
    EXPECT_EQ(call(lists.get(), L"ItemKey", {text(L"first")}).errorNumber(), 5);
    EXPECT_EQ(objectOf(call(lists.get(), L"ItemKey", {num(1)}).value).get(), keys2.get());

    // A name already among the key lists fails after the name went in.
    EXPECT_EQ(call(lists.get(), L"Add", {Variant::fromDispatch(keys1.get()), Variant::fromDispatch(values1.get()),
                                         text(L"Second")})
                  .errorNumber(),
              457);
    EXPECT_EQ(countOf(lists.get()), 1);
    EXPECT_EQ(textOf(call(lists.get(), L"Item", {num(3)}).value), L"Second");

    // A list of another kind is refused before anything goes in.
    EXPECT_NE(call(lists.get(), L"Add", {Variant::fromDispatch(values1.get()), Variant::fromDispatch(values1.get()),
                                         text(L"third")})
                  .errorNumber(),
              0);
    EXPECT_EQ(call(lists.get(), L"Item", {num(4)}).errorNumber(), 9);

    EXPECT_EQ(call(lists.get(), L"Clear").errorNumber(), 0);
    EXPECT_EQ(countOf(lists.get()), 0);
    EXPECT_EQ(call(lists.get(), L"Item", {num(1)}).errorNumber(), 9);
    EXPECT_EQ(call(lists.get(), L"ItemValue", {num(1)}).errorNumber(), 9);
}

TEST(RegCollections, FieldsOnlyStore) {
    auto value = vxtest::createObject(CLSID_cRegValue);
    EXPECT_EQ(get(value.get(), L"DataValue").value.type(), VT_EMPTY);
    EXPECT_EQ(textOf(get(value.get(), L"SubKey").value), L"");
    auto other = vxtest::createObject(CLSID_cRegKeys);
    EXPECT_EQ(vxtest::putRef(value.get(), L"DataValue", Variant::fromDispatch(other.get())).errorNumber(), 0);
    EXPECT_EQ(objectOf(get(value.get(), L"DataValue").value).get(), other.get());
    EXPECT_EQ(put(value.get(), L"DataValue", Variant::fromDispatch(other.get())).errorNumber(), 438);
    EXPECT_EQ(put(value.get(), L"HKey", num(5)).errorNumber(), 0);
    EXPECT_EQ(longOf(get(value.get(), L"HKey").value), 5);
    EXPECT_EQ(put(value.get(), L"Datatype", text(L"x")).errorNumber(), 13);
}

namespace {

class RegObjects : public vxtest::RegistryTest {
protected:
    // The key object ListKeys hands out for path(below).
    ComPtr<IDispatch> keyObject(const std::wstring& parent, const std::wstring& name) {
        auto keys = objectOf(reg(L"ListKeys", {root(), this->text(path(parent))}).value);
        return objectOf(call(keys.get(), L"Item", {this->text(name)}).value);
    }
    ComPtr<IDispatch> valueObject(const std::wstring& below, const std::wstring& name) {
        auto values = objectOf(reg(L"ListValues", {root(), this->text(path(below))}).value);
        return objectOf(call(values.get(), L"Item", {this->text(name)}).value);
    }
    void create(const std::wstring& below) {
        ASSERT_TRUE(toBool(*reg(L"CreateKey", {root(), this->text(path(below))}).value));
    }
};

}  // namespace

TEST_F(RegObjects, KeyListsItsChildrenAndGrowsSubKey) {
    create(L"k\\c1\\g");
    create(L"k\\c2");
    ASSERT_TRUE(toBool(*reg(L"WriteString", {root(), text(path(L"k\\c1")), text(L"v"), text(L"1")}).value));
    auto key = keyObject(L"", L"k");
    ASSERT_TRUE(key);
    EXPECT_EQ(longOf(get(key.get(), L"CountKey").value), 2);
    // No AddKey: the key's own subkeys, and SubKey stays as it was.
    auto children = objectOf(call(key.get(), L"EnumKey").value);
    EXPECT_EQ(countOf(children.get()), 2);
    EXPECT_EQ(textOf(get(key.get(), L"SubKey").value), path(L"k"));
    // With AddKey: the subkeys of SubKey\AddKey, and SubKey keeps the backslash.
    auto grand = objectOf(call(key.get(), L"EnumKey", {text(L"c1")}).value);
    EXPECT_EQ(countOf(grand.get()), 1);
    EXPECT_EQ(textOf(get(key.get(), L"SubKey").value), path(L"k") + L"\\");
    auto values = objectOf(call(key.get(), L"SubValueEnum", {text(L"c1")}).value);
    EXPECT_EQ(countOf(values.get()), 1);
    EXPECT_EQ(textOf(get(key.get(), L"SubKey").value), path(L"k") + L"\\\\");  // one more each call
    EXPECT_EQ(countOf(objectOf(call(key.get(), L"SubValueEnum", {text(L"")}).value).get()), 0);
}

TEST_F(RegObjects, ParentKeyListsTheKeysBesideThisOne) {
    create(L"k\\c1\\g");
    create(L"k\\c2");
    auto key = keyObject(L"k", L"c1");
    ASSERT_TRUE(key);
    auto beside = objectOf(call(key.get(), L"ParentKey").value);
    ASSERT_TRUE(beside);
    EXPECT_EQ(countOf(beside.get()), 2);
    EXPECT_EQ(textOf(get(objectOf(call(beside.get(), L"Item", {text(L"c2")}).value).get(), L"SubKey").value), path(L"k\\c2"));
    // A key right below the root: the root's own keys.
    auto top = vxtest::createObject(CLSID_cRegKey);
    put(top.get(), L"HKey", num(vxtest::hkcuRoot));
    put(top.get(), L"SubKey", text(L"Software"));
    auto roots = objectOf(call(top.get(), L"ParentKey").value);
    EXPECT_EQ(call(roots.get(), L"Item", {text(L"SOFTWARE")}).errorNumber(), 0);
    // A SubKey that EnumKey left with a backslash at the end has its own path as parent.
    call(key.get(), L"EnumKey", {text(L"g")});
    EXPECT_EQ(countOf(objectOf(call(key.get(), L"ParentKey").value).get()), 1);
}

TEST_F(RegObjects, KeyTestsRenamesAndDeletes) {
    create(L"k\\child\\deeper");
    auto key = keyObject(L"", L"k");
    ASSERT_TRUE(key);
    EXPECT_TRUE(toBool(*call(key.get(), L"IsHasKey", {text(L"child")}).value));
    EXPECT_TRUE(toBool(*call(key.get(), L"IsHasKey", {text(L"CHILD\\deeper")}).value));
    EXPECT_FALSE(toBool(*call(key.get(), L"IsHasKey", {text(L"none")}).value));
    // An empty AddKey tests SubKey followed by one backslash: the key itself.
    EXPECT_TRUE(toBool(*call(key.get(), L"IsHasKey", {text(L"")}).value));

    EXPECT_EQ(call(key.get(), L"Rename", {text(L"renamed")}).errorNumber(), 0);
    EXPECT_EQ(textOf(get(key.get(), L"KeyName").value), L"k");
    EXPECT_TRUE(keyExists(L"k"));
    EXPECT_FALSE(keyExists(L"renamed"));

    EXPECT_EQ(call(key.get(), L"Delete").errorNumber(), 0);
    EXPECT_FALSE(keyExists(L"k"));
    EXPECT_TRUE(keyExists(L""));
    EXPECT_EQ(call(key.get(), L"Delete").errorNumber(), 0);  // gone already: nothing happens
}

TEST_F(RegObjects, ValueDeletesItselfAndKeepsItsName) {
    ASSERT_TRUE(toBool(*reg(L"WriteString", {root(), text(path(L"k")), text(L"v"), text(L"1")}).value));
    ASSERT_TRUE(toBool(*reg(L"WriteString", {root(), text(path(L"k")), text(L"w"), text(L"2")}).value));
    auto value = valueObject(L"k", L"v");
    ASSERT_TRUE(value);
    EXPECT_EQ(call(value.get(), L"Rename", {text(L"x")}).errorNumber(), 0);
    EXPECT_EQ(textOf(get(value.get(), L"KeyName").value), L"v");
    EXPECT_TRUE(stored(L"k", L"v").found);
    EXPECT_FALSE(stored(L"k", L"x").found);
    EXPECT_TRUE(toBool(*call(value.get(), L"Delete").value));
    EXPECT_FALSE(stored(L"k", L"v").found);
    EXPECT_TRUE(stored(L"k", L"w").found);
    EXPECT_FALSE(toBool(*call(value.get(), L"Delete").value));
    // Without a root, SubKey is a full path.
    auto loose = vxtest::createObject(CLSID_cRegValue);
    put(loose.get(), L"SubKey", text(fullPath(L"k") + L"\\w"));
    EXPECT_TRUE(toBool(*call(loose.get(), L"Delete").value));
    EXPECT_FALSE(stored(L"k", L"w").found);
}
