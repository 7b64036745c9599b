// clsReg against the registry of the test platform, called by name as a late-bound host
// calls it. Every test works under a key of its own (RegistryTestSupport.h).
#include "RegistryTestSupport.h"

#include "core/runtime/Convert.h"

#include <algorithm>
#include <climits>

using namespace vx;
using vxtest::bytesOf;
using vxtest::longOf;
using vxtest::objectOf;
using vxtest::textOf;

namespace {

using Bytes = std::vector<unsigned char>;

class Reg : public vxtest::RegistryTest {
protected:
    bool writeString(const std::wstring& name, const std::wstring& data) {
        return toBool(*reg(L"WriteString", {root(), text(path()), text(name), text(data)}).value);
    }
    std::wstring readString(const std::wstring& name) {
        return textOf(reg(L"ReadString", {root(), text(path()), text(name)}).value);
    }
    Variant goWrite(const std::wstring& name, const Variant& value, long type) {
        auto r = reg(L"GoRegisterWrite", {text(fullPath(L"") + L"\\" + name), value, num(type)});
        EXPECT_EQ(r.errorNumber(), 0) << "type " << type;
        return r.value;
    }
    Variant goRead(const std::wstring& name, long type) {
        return reg(L"GoRegisterRead", {text(fullPath(L"") + L"\\" + name), num(type)}).value;
    }
};

}  // namespace

TEST_F(Reg, RootNamesAreExactAndCaseSensitive) {
    const std::pair<const wchar_t*, unsigned long> roots[] = {
        {L"HKEY_CLASSES_ROOT", 0x80000000}, {L"HKEY_CURRENT_USER", 0x80000001}, {L"HKEY_LOCAL_MACHINE", 0x80000002},
        {L"HKEY_USERS", 0x80000003},        {L"HKEY_CURRENT_CONFIG", 0x80000005}};
    for (const auto& [name, value] : roots) {
        EXPECT_EQ(static_cast<unsigned long>(longOf(reg(L"GoLngHKey", {text(name)}).value)), value) << name;
        EXPECT_EQ(textOf(reg(L"GoStrHKey", {num(static_cast<long>(value))}).value), name);
    }
    for (const wchar_t* other : {L"hkey_users", L"HKEY_Users", L"HKEY_PERFORMANCE_DATA", L"HKEY_DYN_DATA", L"HKCU",
                                 L"HKEY_USERS\\", L" HKEY_USERS", L""})
        EXPECT_EQ(longOf(reg(L"GoLngHKey", {text(other)}).value), 0) << other;
    for (unsigned long other : {0x80000004ul, 0x80000006ul, 0ul, 1ul})
        EXPECT_EQ(textOf(reg(L"GoStrHKey", {num(static_cast<long>(other))}).value), L"");
}

TEST_F(Reg, StringsReadBackExactlyAndAreStoredWithoutTerminator) {
    const std::wstring texts[] = {L"abc", L"", L"caf\u00e9 \u00fcber Stra\u00dfe \u00c4\u00d6\u00dc \u00f1 \u20ac",
                                  L"quote\" back\\slash tab\t", std::wstring(254, L'x')};
    int n = 0;
    for (const std::wstring& t : texts) {
        const std::wstring name = L"s" + std::to_wstring(n++);
        ASSERT_TRUE(writeString(name, t));
        EXPECT_EQ(readString(name), t);
        auto s = stored(L"", name);
        EXPECT_EQ(s.type, static_cast<DWORD>(REG_SZ));
        EXPECT_EQ(s.data.size(), t.size() * sizeof(wchar_t)) << "no terminating NUL: " << name;
    }
    // A string another program stored with its terminator reads without it.
    const wchar_t withNul[] = L"terminated";
    storeRaw(L"", L"other", REG_SZ, withNul, sizeof withNul);
    EXPECT_EQ(readString(L"other"), L"terminated");
    // The type asked for is the type stored.
    ASSERT_TRUE(toBool(*reg(L"WriteString", {root(), text(path()), text(L"x"), text(L"%TEMP%"), num(REG_EXPAND_SZ)}).value));
    EXPECT_EQ(stored(L"", L"x").type, static_cast<DWORD>(REG_EXPAND_SZ));
}

TEST_F(Reg, ReadStringBufferAndDefaults) {
    ASSERT_TRUE(writeString(L"254", std::wstring(254, L'a')));
    ASSERT_TRUE(writeString(L"255", std::wstring(255, L'b')));
    ASSERT_TRUE(writeString(L"300", std::wstring(300, L'c')));
    const std::wstring long255(255, L'd');
    storeRaw(L"", L"255nul", REG_SZ, long255.c_str(), 256 * sizeof(wchar_t));
    EXPECT_EQ(readString(L"254"), std::wstring(254, L'a'));
    EXPECT_EQ(readString(L"255"), L"");
    EXPECT_EQ(readString(L"300"), L"");
    EXPECT_EQ(readString(L"255nul"), L"");
    // The default stands in only when the key cannot be opened.
    EXPECT_EQ(textOf(reg(L"ReadString", {root(), text(path()), text(L"missing"), text(L"dflt")}).value), L"");
    EXPECT_EQ(textOf(reg(L"ReadString", {root(), text(path(L"nokey")), text(L"x"), text(L"dflt")}).value), L"dflt");
    auto omitted = reg(L"ReadString", {root(), text(path(L"nokey")), text(L"x")});
    EXPECT_EQ(omitted.value.type(), VT_BSTR);
    EXPECT_EQ(textOf(omitted.value), L"");
}

TEST_F(Reg, DWordsReadBackAtTheExtremes) {
    for (long n : {0L, 1L, -1L, LONG_MAX, LONG_MIN, 0x12345678L}) {
        ASSERT_TRUE(toBool(*reg(L"WriteDWord", {root(), text(path()), text(L"d"), num(n)}).value));
        auto r = reg(L"ReadDWord", {root(), text(path()), text(L"d")});
        EXPECT_EQ(r.value.type(), VT_I4);
        EXPECT_EQ(longOf(r.value), n);
        auto s = stored(L"", L"d");
        EXPECT_EQ(s.type, static_cast<DWORD>(REG_DWORD));
        ASSERT_EQ(s.data.size(), 4u);
        EXPECT_EQ(s.data[0], static_cast<unsigned char>(n & 0xFF));  // the number's own four bytes
    }
    // A missing value in an existing key is -1, whatever the default; a missing key gives the default.
    EXPECT_EQ(longOf(reg(L"ReadDWord", {root(), text(path()), text(L"missing"), num(7)}).value), -1);
    EXPECT_EQ(longOf(reg(L"ReadDWord", {root(), text(path(L"nokey")), text(L"d"), num(7)}).value), 7);
    EXPECT_EQ(longOf(reg(L"ReadDWord", {root(), text(path(L"nokey")), text(L"d")}).value), 0);
    // A caller's variable passed as the default is left as it was.
    Variant fallback = num(9);
    V_VT(fallback.get()) = VT_I4;
    Variant ref;
    V_VT(ref.get()) = VT_BYREF | VT_I4;
    V_I4REF(ref.get()) = &V_I4(fallback.get());
    EXPECT_EQ(longOf(reg(L"ReadDWord", {root(), text(path(L"nokey")), text(L"d"), ref}).value), 9);
    EXPECT_EQ(V_I4(fallback.get()), 9);
    ASSERT_TRUE(toBool(*reg(L"WriteDWord", {root(), text(path()), text(L"big"), num(1), num(REG_DWORD_BIG_ENDIAN)}).value));
    EXPECT_EQ(stored(L"", L"big").type, static_cast<DWORD>(REG_DWORD_BIG_ENDIAN));
}

TEST_F(Reg, BinaryValuesReadBackByteForByte) {
    const Bytes withNuls{0, 1, 0, 255, 0x7F, 0};
    ASSERT_TRUE(toBool(*reg(L"WriteBinary", {root(), text(path()), text(L"b"), text(L"ignored"),
                                              vxtest::arrayOf({0, 1, 0, 255, 0x7F, 0})})
                            .value));
    EXPECT_EQ(stored(L"", L"b").data, withNuls);
    EXPECT_EQ(stored(L"", L"b").type, static_cast<DWORD>(REG_BINARY));
    EXPECT_EQ(bytesOf(reg(L"ReadBinary", {root(), text(path()), text(L"b")}).value), withNuls);
    EXPECT_EQ(textOf(reg(L"ReadBinary", {root(), text(path()), text(L"b"), Variant::fromBool(true)}).value),
              L"000100FF7F00");
    // A byte array goes in as it is, and what ReadBinary returned writes back unchanged.
    Variant read = reg(L"ReadBinary", {root(), text(path()), text(L"b")}).value;
    ASSERT_TRUE(toBool(*reg(L"WriteBinary", {root(), text(path()), text(L"copy"), text(L""), read}).value));
    EXPECT_EQ(stored(L"", L"copy").data, withNuls);
    // Without an array, the text's characters in the ANSI code page are the bytes.
    ASSERT_TRUE(toBool(*reg(L"WriteBinary", {root(), text(path()), text(L"t"), text(std::wstring(L"A\u00e9\0B", 4))}).value));
    EXPECT_EQ(stored(L"", L"t").data, (Bytes{0x41, 0xE9, 0x00, 0x42}));
    // Empty data is a value of no bytes.
    ASSERT_TRUE(toBool(*reg(L"WriteBinary", {root(), text(path()), text(L"e"), text(L"")}).value));
    auto empty = reg(L"ReadBinary", {root(), text(path()), text(L"e")}).value;
    EXPECT_TRUE(bytesOf(empty).empty());
    EXPECT_EQ(ArrayView(*empty).ubound(), -1);
    EXPECT_EQ(textOf(reg(L"ReadBinary", {root(), text(path()), text(L"e"), Variant::fromBool(true)}).value), L"");
    // A missing value or key reads as Empty.
    EXPECT_EQ(reg(L"ReadBinary", {root(), text(path()), text(L"missing")}).value.type(), VT_EMPTY);
    EXPECT_EQ(reg(L"ReadBinary", {root(), text(path(L"nokey")), text(L"b"), Variant::fromBool(true)}).value.type(),
              VT_EMPTY);
    // The type asked for is the type stored.
    ASSERT_TRUE(toBool(*reg(L"WriteBinary", {root(), text(path()), text(L"n"), text(L"x"), Variant::missing(), num(REG_NONE)}).value));
    EXPECT_EQ(stored(L"", L"n").type, static_cast<DWORD>(REG_NONE));
}

TEST_F(Reg, FailedWritesLeaveStoredValuesAlone) {
    ASSERT_TRUE(toBool(*reg(L"WriteBinary", {root(), text(path()), text(L"b"), text(L"keep")}).value));
    EXPECT_EQ(reg(L"WriteBinary", {root(), text(path()), text(L"b"), text(L""), vxtest::arrayOf({1, 256})}).errorNumber(), 6);
    EXPECT_EQ(reg(L"WriteBinary", {root(), text(path()), text(L"b"), text(L""), vxtest::arrayOf({1, -1})}).errorNumber(), 6);
    EXPECT_EQ(reg(L"WriteBinary", {root(), text(path()), text(L"b"), text(L""), makeVariantArray({text(L"x")})}).errorNumber(), 13);
    EXPECT_EQ(reg(L"WriteBinary", {root(), text(path()), text(L"b"), text(L""), num(5)}).errorNumber(), 13);
    EXPECT_EQ(stored(L"", L"b").data, (Bytes{'k', 'e', 'e', 'p'}));

    ASSERT_TRUE(writeString(L"s", L"keep"));
    auto r = reg(L"GoRegisterWrite", {text(fullPath(L"") + L"\\s"), text(L"not a number"), num(REG_DWORD)});
    EXPECT_EQ(r.errorNumber(), 13);
    EXPECT_EQ(reg(L"GoRegisterWrite", {text(fullPath(L"") + L"\\s"), Variant::fromDouble(3e9), num(REG_DWORD)}).errorNumber(), 6);
    EXPECT_EQ(reg(L"GoRegisterWrite", {text(fullPath(L"") + L"\\s"), Variant::null(), num(REG_SZ)}).errorNumber(), 94);
    EXPECT_EQ(readString(L"s"), L"keep");

    // Refused writes: no root, or a name that a NUL would cut short.
    EXPECT_FALSE(toBool(*reg(L"WriteString", {num(0), text(path()), text(L"s"), text(L"new")}).value));
    EXPECT_FALSE(toBool(*reg(L"WriteString", {root(), text(path()), text(std::wstring(L"s\0x", 3)), text(L"new")}).value));
    EXPECT_FALSE(toBool(*reg(L"WriteDWord", {root(), text(path() + std::wstring(L"\0\\x", 3)), text(L"s"), num(1)}).value));
    EXPECT_EQ(readString(L"s"), L"keep");
    EXPECT_FALSE(keyExists(L"x"));
}

TEST_F(Reg, GoRegisterDispatchesOnTypeCode) {
    struct Case {
        long code;
        Variant value;
        DWORD storedType;
    };
    const Case writes[] = {
        {1, text(L"one"), REG_SZ},         {2, text(L"two"), REG_SZ},         {7, text(L"seven"), REG_SZ},
        {12, text(L"%PATH%"), REG_EXPAND_SZ}, {17, text(L"multi"), REG_MULTI_SZ}, {4, num(-2), REG_DWORD},
        {45, num(0x01020304), REG_DWORD_BIG_ENDIAN}, {3, text(L"AB"), REG_BINARY}, {0, vxtest::arrayOf({9, 0}), REG_BINARY},
        {31, text(L"raw"), REG_SZ},        {10, text(L"none"), REG_NONE},
    };
    for (const Case& c : writes) {
        const std::wstring name = L"v" + std::to_wstring(c.code);
        Variant result = goWrite(name, c.value, c.code);
        EXPECT_EQ(result.type(), VT_BOOL) << c.code;
        EXPECT_TRUE(toBool(*result)) << c.code;
        auto s = stored(L"", name);
        EXPECT_TRUE(s.found) << c.code;
        EXPECT_EQ(s.type, c.storedType) << c.code;
    }
    // A big-endian DWORD keeps the number's own bytes, so it reads back as written.
    EXPECT_EQ(stored(L"", L"v45").data, (Bytes{4, 3, 2, 1}));
    EXPECT_EQ(stored(L"", L"v3").data, (Bytes{'A', 'B'}));
    EXPECT_EQ(stored(L"", L"v0").data, (Bytes{9, 0}));
    // Codes whose first digit chooses no writer write nothing.
    for (long code : {5L, 6L, 8L, 9L, 21L, 55L, 99L, -4L, -12L}) {
        const std::wstring name = L"none" + std::to_wstring(code);
        EXPECT_EQ(goWrite(name, text(L"x"), code).type(), VT_EMPTY) << code;
        EXPECT_FALSE(stored(L"", name).found) << code;
    }
    // Reading: 4 a number, 0 and 3 bytes, 1, 2 and 7 text, anything else Empty.
    EXPECT_EQ(goRead(L"v4", 4).type(), VT_I4);
    EXPECT_EQ(longOf(goRead(L"v4", 4)), -2);
    EXPECT_EQ(bytesOf(goRead(L"v3", 3)), (Bytes{'A', 'B'}));
    EXPECT_EQ(bytesOf(goRead(L"v0", 0)), (Bytes{9, 0}));
    EXPECT_EQ(textOf(goRead(L"v1", 1)), L"one");
    EXPECT_EQ(textOf(goRead(L"v2", 2)), L"two");
    EXPECT_EQ(textOf(goRead(L"v12", 7)), L"%PATH%");
    EXPECT_EQ(goRead(L"v12", 12).type(), VT_EMPTY);
    EXPECT_EQ(goRead(L"v45", 45).type(), VT_EMPTY);
    EXPECT_EQ(longOf(goRead(L"v45", 4)), 0x01020304);
    EXPECT_EQ(longOf(goRead(L"missing", 4)), -1);

    // GoRegister itself: the root defaults to HKEY_CURRENT_USER and the type to 1.
    auto w = reg(L"GoRegister", {num(2), Variant::missing(), Variant::missing(), text(path()), text(L"direct"), text(L"d")});
    EXPECT_TRUE(toBool(*w.value));
    EXPECT_EQ(stored(L"", L"direct").type, static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(textOf(reg(L"GoRegister", {num(1), Variant::missing(), Variant::missing(), text(path()), text(L"direct")}).value), L"d");
    // Any flag but 1 writes.
    EXPECT_TRUE(toBool(*reg(L"GoRegister", {num(7), num(4), root(), text(path()), text(L"flag7"), num(3)}).value));
    EXPECT_EQ(longOf(goRead(L"flag7", 4)), 3);
}

TEST_F(Reg, FullPathsAndTheirEdges) {
    EXPECT_TRUE(toBool(*reg(L"GoRegisterWrite", {text(fullPath(L"k\\sub") + L"\\name"), text(L"deep")}).value));
    EXPECT_EQ(textOf(reg(L"GoRegisterRead", {text(fullPath(L"k\\sub") + L"\\name")}).value), L"deep");
    // A path ending in a backslash names the key's default value.
    EXPECT_TRUE(toBool(*reg(L"GoRegisterWrite", {text(fullPath(L"k") + L"\\"), text(L"default")}).value));
    EXPECT_EQ(stored(L"k", L"").type, static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(textOf(reg(L"GoRegisterRead", {text(fullPath(L"k") + L"\\")}).value), L"default");
    // An unknown root name (case matters) or a text without a backslash reaches nothing.
    std::wstring lower = L"hkey_current_user\\" + path(L"lower") + L"\\v";
    EXPECT_FALSE(toBool(*reg(L"GoRegisterWrite", {text(lower), text(L"x")}).value));
    EXPECT_FALSE(keyExists(L"lower"));
    EXPECT_EQ(textOf(reg(L"GoRegisterRead", {text(lower)}).value), L"");
    EXPECT_FALSE(toBool(*reg(L"GoRegisterWrite", {text(L"HKEY_CURRENT_USER"), text(L"x")}).value));
    EXPECT_EQ(textOf(reg(L"GoRegisterRead", {text(L"no backslash")}).value), L"");
    EXPECT_EQ(reg(L"GoRegisterRead", {text(L"no backslash"), num(3)}).value.type(), VT_EMPTY);
    // The value passed by reference is left as it was.
    Variant mine = text(L"by ref");
    EXPECT_TRUE(toBool(*reg(L"GoRegisterWrite", {text(fullPath(L"k") + L"\\r"), vxtest::byRef(mine)}).value));
    EXPECT_EQ(textOf(mine), L"by ref");
}

TEST_F(Reg, KeysAreCreatedTestedCountedAndListed) {
    EXPECT_TRUE(toBool(*reg(L"CreateKey", {root(), text(path(L"t\\a\\a1"))}).value));
    EXPECT_TRUE(toBool(*reg(L"CreateKey", {root(), text(path(L"t\\b"))}).value));
    EXPECT_TRUE(toBool(*reg(L"CreateKey", {root(), text(path(L"t\\b"))}).value));  // already there
    EXPECT_TRUE(toBool(*reg(L"CreateKey", {root(), text(path(L"t\\C\u00e9"))}).value));
    EXPECT_FALSE(toBool(*reg(L"CreateKey", {num(0), text(path(L"t\\z"))}).value));
    EXPECT_TRUE(toBool(*reg(L"IsHasKey", {root(), text(path(L"t\\a\\a1"))}).value));
    EXPECT_FALSE(toBool(*reg(L"IsHasKey", {root(), text(path(L"t\\zz"))}).value));
    EXPECT_EQ(longOf(reg(L"CountKey", {root(), text(path(L"t"))}).value), 3);
    EXPECT_EQ(longOf(reg(L"CountKey", {root(), text(path(L"t\\b"))}).value), 0);
    EXPECT_EQ(longOf(reg(L"CountKey", {root(), text(path(L"nokey"))}).value), 0);

    auto keys = objectOf(reg(L"ListKeys", {root(), text(path(L"t"))}).value);
    ASSERT_TRUE(keys);
    ASSERT_EQ(longOf(vxtest::get(keys.get(), L"Count").value), 3);
    std::vector<std::wstring> names;
    for (long i = 1; i <= 3; ++i) {
        auto key = objectOf(vxtest::call(keys.get(), L"Item", {num(i)}).value);
        names.push_back(textOf(vxtest::get(key.get(), L"KeyName").value));
        EXPECT_EQ(textOf(vxtest::get(key.get(), L"SubKey").value), path(L"t\\" + names.back()));
        EXPECT_EQ(longOf(vxtest::get(key.get(), L"HKey").value), vxtest::hkcuRoot);
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::wstring>{L"C\u00e9", L"a", L"b"}));
    auto a = objectOf(vxtest::call(keys.get(), L"Item", {text(L"A")}).value);
    EXPECT_EQ(longOf(vxtest::get(a.get(), L"CountKey").value), 1);

    auto none = objectOf(reg(L"ListKeys", {root(), text(path(L"nokey"))}).value);
    ASSERT_TRUE(none);
    EXPECT_EQ(longOf(vxtest::get(none.get(), L"Count").value), 0);
}

TEST_F(Reg, ListValuesGivesTypesAndData) {
    ASSERT_TRUE(writeString(L"", L"the default"));
    ASSERT_TRUE(writeString(L"s", L"\u00fcber"));
    ASSERT_TRUE(toBool(*reg(L"WriteDWord", {root(), text(path()), text(L"d"), num(-7)}).value));
    ASSERT_TRUE(toBool(*reg(L"WriteBinary", {root(), text(path()), text(L"b"), text(L""), vxtest::arrayOf({0, 2})}).value));
    const wchar_t multi[] = L"a\0b\0";
    storeRaw(L"", L"m", REG_MULTI_SZ, multi, sizeof multi);
    auto values = objectOf(reg(L"ListValues", {root(), text(path())}).value);
    ASSERT_TRUE(values);
    ASSERT_EQ(longOf(vxtest::get(values.get(), L"Count").value), 5);
    auto item = [&](const wchar_t* name) { return objectOf(vxtest::call(values.get(), L"Item", {text(name)}).value); };
    auto s = item(L"S");
    EXPECT_EQ(textOf(vxtest::get(s.get(), L"DataValue").value), L"\u00fcber");
    EXPECT_EQ(longOf(vxtest::get(s.get(), L"Datatype").value), REG_SZ);
    EXPECT_EQ(textOf(vxtest::get(s.get(), L"KeyName").value), L"s");
    EXPECT_EQ(textOf(vxtest::get(s.get(), L"SubKey").value), path(L"s"));
    EXPECT_EQ(longOf(vxtest::get(s.get(), L"HKey").value), vxtest::hkcuRoot);
    EXPECT_EQ(textOf(vxtest::get(item(L"").get(), L"DataValue").value), L"the default");
    auto d = vxtest::get(item(L"d").get(), L"DataValue").value;
    EXPECT_EQ(d.type(), VT_I4);
    EXPECT_EQ(longOf(d), -7);
    EXPECT_EQ(bytesOf(vxtest::get(item(L"b").get(), L"DataValue").value), (Bytes{0, 2}));
    EXPECT_EQ(longOf(vxtest::get(item(L"b").get(), L"Datatype").value), REG_BINARY);
    // A list of strings keeps its separators; only the final terminator goes.
    EXPECT_EQ(textOf(vxtest::get(item(L"m").get(), L"DataValue").value), std::wstring(L"a\0b\0", 4));

    auto none = objectOf(reg(L"ListValues", {root(), text(path(L"nokey"))}).value);
    EXPECT_EQ(longOf(vxtest::get(none.get(), L"Count").value), 0);
}

TEST_F(Reg, ValuesAreDeletedByFullPathOrByRoot) {
    ASSERT_TRUE(writeString(L"a", L"1"));
    ASSERT_TRUE(writeString(L"b", L"2"));
    ASSERT_TRUE(writeString(L"keep", L"3"));
    EXPECT_TRUE(toBool(*reg(L"ValueDelete", {text(fullPath(L"") + L"\\a")}).value));
    EXPECT_FALSE(stored(L"", L"a").found);
    EXPECT_FALSE(toBool(*reg(L"ValueDelete", {text(fullPath(L"") + L"\\a")}).value));  // already gone
    EXPECT_TRUE(toBool(*reg(L"ValueDelete", {text(path() + L"\\b"), root()}).value));
    EXPECT_FALSE(stored(L"", L"b").found);
    EXPECT_FALSE(toBool(*reg(L"ValueDelete", {text(L"HKEY_CURRENT_USER")}).value));
    EXPECT_FALSE(toBool(*reg(L"ValueDelete", {text(L"hkey_current_user\\" + path() + L"\\keep")}).value));
    EXPECT_TRUE(stored(L"", L"keep").found);
}

TEST_F(Reg, KeyDeleteRemovesTheWholeSubtree) {
    for (const wchar_t* p : {L"t\\a\\a1\\deep", L"t\\b", L"other"}) ASSERT_TRUE(toBool(*reg(L"CreateKey", {root(), text(path(p))}).value));
    for (const wchar_t* p : {L"t", L"t\\a", L"t\\a\\a1\\deep", L"other"}) {
        ASSERT_TRUE(toBool(*reg(L"WriteString", {root(), text(path(p)), text(L"v"), text(L"x")}).value));
        ASSERT_TRUE(toBool(*reg(L"WriteString", {root(), text(path(p)), text(L""), text(L"x")}).value));
    }
    EXPECT_EQ(reg(L"KeyDelete", {text(fullPath(L"t"))}).errorNumber(), 0);
    EXPECT_FALSE(keyExists(L"t"));
    EXPECT_TRUE(stored(L"other", L"v").found);
    // With the root given, the path starts below it; a backslash at the end changes nothing.
    EXPECT_EQ(reg(L"KeyDelete", {text(path(L"other") + L"\\"), root()}).errorNumber(), 0);
    EXPECT_FALSE(keyExists(L"other"));
    EXPECT_EQ(reg(L"KeyDelete", {text(path(L"nokey")), root()}).errorNumber(), 0);

    // A path naming no key below the root is refused, so a root never loses its values.
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, path().c_str(), 0, KEY_ALL_ACCESS, &key), ERROR_SUCCESS);
    ASSERT_TRUE(writeString(L"canary", L"alive"));
    const long handle = static_cast<long>(reinterpret_cast<LONG_PTR>(key));
    for (const wchar_t* p : {L"", L"\\", L"\\\\"}) reg(L"KeyDelete", {text(p), num(handle)});
    RegCloseKey(key);
    EXPECT_EQ(readString(L"canary"), L"alive");
    reg(L"KeyDelete", {text(L"HKEY_CURRENT_USER")});
    reg(L"KeyDelete", {text(L"HKEY_CURRENT_USER\\")});
    EXPECT_TRUE(keyExists(L""));
}

TEST_F(Reg, SubtreeEnumerationsAreKeyedByRelativePath) {
    for (const wchar_t* p : {L"t\\a\\a1", L"t\\b"}) ASSERT_TRUE(toBool(*reg(L"CreateKey", {root(), text(path(p))}).value));
    ASSERT_TRUE(toBool(*reg(L"WriteString", {root(), text(path(L"t\\a")), text(L"x"), text(L"1")}).value));
    ASSERT_TRUE(toBool(*reg(L"WriteString", {root(), text(path(L"t\\a")), text(L"y"), text(L"2")}).value));
    auto keys = objectOf(reg(L"GoEnumKey", {root(), text(path(L"t"))}).value);
    ASSERT_TRUE(keys);
    ASSERT_EQ(longOf(vxtest::get(keys.get(), L"Count").value), 4);
    auto countAt = [&](IDispatch* lists, const wchar_t* member, Variant index) {
        return longOf(vxtest::get(objectOf(vxtest::call(lists, member, {index}).value).get(), L"Count").value);
    };
    EXPECT_EQ(countAt(keys.get(), L"Item", text(L"")), 2);   // the key itself comes first
    EXPECT_EQ(countAt(keys.get(), L"Item", num(1)), 2);
    EXPECT_EQ(countAt(keys.get(), L"Item", text(L"A")), 1);
    EXPECT_EQ(countAt(keys.get(), L"Item", text(L"a\\A1")), 0);
    EXPECT_EQ(countAt(keys.get(), L"Item", text(L"b")), 0);
    auto a1 = objectOf(vxtest::call(objectOf(vxtest::call(keys.get(), L"Item", {text(L"a")}).value).get(), L"Item", {num(1)}).value);
    EXPECT_EQ(textOf(vxtest::get(a1.get(), L"SubKey").value), path(L"t\\a\\a1"));
    auto a = objectOf(vxtest::call(objectOf(vxtest::call(keys.get(), L"Item", {text(L"")}).value).get(), L"Item", {text(L"a")}).value);
    EXPECT_EQ(longOf(vxtest::get(a.get(), L"CountKey").value), 1);

    auto values = objectOf(reg(L"GoEnumValue", {root(), text(path(L"t"))}).value);
    ASSERT_TRUE(values);
    ASSERT_EQ(longOf(vxtest::get(values.get(), L"Count").value), 4);
    std::vector<std::wstring> names;
    for (long i = 1; i <= 4; ++i) names.push_back(textOf(vxtest::call(values.get(), L"Item", {num(i)}).value));
    EXPECT_EQ(names[0], L"");
    EXPECT_EQ(names[2], names[1] + L"\\a1");  // parents before their subkeys
    EXPECT_EQ(countAt(values.get(), L"ItemValue", text(L"a")), 2);
    EXPECT_EQ(countAt(values.get(), L"ItemValue", text(L"b")), 0);
    EXPECT_EQ(countAt(values.get(), L"ItemKey", text(L"a")), 1);

    auto none = objectOf(reg(L"GoEnumValue", {root(), text(path(L"nokey"))}).value);
    EXPECT_EQ(longOf(vxtest::get(none.get(), L"Count").value), 0);
    none = objectOf(reg(L"GoEnumKey", {root(), text(path(L"nokey"))}).value);
    EXPECT_EQ(longOf(vxtest::get(none.get(), L"Count").value), 0);
}

TEST_F(Reg, SettingsLiveUnderTheLibrarysKey) {
    HKEY probe = nullptr;
    const bool keyWasThere =
        RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Hollowin", 0, KEY_READ, &probe) == ERROR_SUCCESS;
    if (probe) RegCloseKey(probe);
    const std::wstring name = L"Vx_Main test " + std::to_wstring(GetCurrentProcessId());
    const std::wstring value = L"Gr\u00fc\u00dfe";
    EXPECT_EQ(vxtest::call(reg_.get(), L"RegisterValue", {text(name), text(value)}, DISPATCH_PROPERTYPUT).errorNumber(), 0);
    EXPECT_EQ(textOf(vxtest::get(reg_.get(), L"RegisterValue", {text(name)}).value), value);
    wchar_t buffer[64] = {};
    DWORD size = sizeof buffer;
    EXPECT_EQ(RegGetValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Hollowin", name.c_str(), RRF_RT_REG_SZ, nullptr, buffer, &size),
              ERROR_SUCCESS);
    EXPECT_EQ(std::wstring(buffer), value);
    EXPECT_EQ(textOf(vxtest::get(reg_.get(), L"RegisterValue", {text(name + L" missing")}).value), L"");
    // Remove exactly what the test made.
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Hollowin", 0, KEY_ALL_ACCESS, &key) == ERROR_SUCCESS) {
        RegDeleteValueW(key, name.c_str());
        RegCloseKey(key);
    }
    if (!keyWasThere) RegDeleteKeyW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Hollowin");
}

TEST_F(Reg, EarlyBoundCallsSeeTheSameResults) {
    ComPtr<_clsReg> r = reg_.query<_clsReg>();
    ASSERT_TRUE(r);
    Bstr p(path()), name(L"e"), data(L"early"), empty(L"");
    VARIANT_BOOL ok = VARIANT_FALSE;
    ASSERT_EQ(r->WriteString(vxtest::hkcuRoot, p.get(), name.get(), data.get(), REG_SZ, &ok), S_OK);
    EXPECT_EQ(ok, VARIANT_TRUE);
    Bstr out;
    BSTR fallback = empty.get();
    ASSERT_EQ(r->ReadString(vxtest::hkcuRoot, p.get(), name.get(), &fallback, out.put()), S_OK);
    EXPECT_EQ(out.str(), L"early");
    LONG number = 5, n = 0;
    ASSERT_EQ(r->ReadDWord(vxtest::hkcuRoot, p.get(), name.get(), &number, &n), S_OK);
    EXPECT_EQ(n, -1);  // five bytes of text do not fit the four a DWORD reads
    ASSERT_EQ(r->WriteDWord(vxtest::hkcuRoot, p.get(), name.get(), 1, REG_DWORD, &ok), S_OK);
    EXPECT_EQ(ok, VARIANT_TRUE);
    ASSERT_EQ(r->WriteDWord(0, p.get(), name.get(), 1, REG_DWORD, &ok), S_OK);
    EXPECT_EQ(ok, VARIANT_FALSE);
}
