// clsReg against the registry of the test platform, for what a script cannot see or set
// up: the bytes as the system stores them, values other programs wrote, and a key handle
// standing in for a root. Everything else is checked from a host (tests/host/registry.vbs).
// Each test works under a key of its own, removed before and after it, a failed test
// included.
#include "core/runtime/Convert.h"
#include "core/runtime/SafeArray.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <string>
#include <vector>

using namespace vx;
using vxtest::textOf;

namespace {

using Bytes = std::vector<unsigned char>;

Variant text(const std::wstring& s) { return Variant::fromText(s); }
Variant num(long n) { return Variant::fromLong(n); }
const Variant hkcu = num(static_cast<long>(0x80000001u));

class Reg : public ::testing::Test {
protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        const std::string name = info->name();
        base_ = L"Software\\Vx_Main tests\\Reg." + std::wstring(name.begin(), name.end()) + L"." +
                std::to_wstring(GetCurrentProcessId());
        RegDeleteTreeW(HKEY_CURRENT_USER, base_.c_str());
        ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, base_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_,
                                  nullptr),
                  ERROR_SUCCESS);
        reg_ = vxtest::createObject(CLSID_clsReg);
        ASSERT_TRUE(reg_);
    }
    void TearDown() override {
        if (key_) RegCloseKey(key_);
        RegDeleteTreeW(HKEY_CURRENT_USER, base_.c_str());
        RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Vx_Main tests");  // only goes when empty
    }

    vxtest::CallResult reg(const wchar_t* member, std::vector<Variant> args) const {
        return vxtest::call(reg_.get(), member, std::move(args));
    }
    bool ok(const wchar_t* member, std::vector<Variant> args) const { return toBool(*reg(member, std::move(args)).value); }

    // A value of the test's key as the system stores it.
    struct Stored {
        bool found = false;
        DWORD type = 0;
        Bytes data;
    };
    Stored stored(const std::wstring& name) const {
        Stored s;
        DWORD size = 0;
        if (RegQueryValueExW(key_, name.c_str(), nullptr, &s.type, nullptr, &size) != ERROR_SUCCESS) return s;
        s.data.resize(size);
        s.found = RegQueryValueExW(key_, name.c_str(), nullptr, &s.type, s.data.data(), &size) == ERROR_SUCCESS;
        s.data.resize(size);
        return s;
    }
    // A value written as another program writes it, through the Unicode functions.
    void storeRaw(const std::wstring& name, DWORD type, const void* data, DWORD size) const {
        ASSERT_EQ(RegSetValueExW(key_, name.c_str(), 0, type, static_cast<const BYTE*>(data), size), ERROR_SUCCESS);
    }
    std::wstring readString(const std::wstring& name) const {
        return textOf(reg(L"ReadString", {hkcu, text(base_), text(name)}).value);
    }

    std::wstring base_;
    HKEY key_ = nullptr;
    ComPtr<IDispatch> reg_;
};

}  // namespace

// The stored size counts no terminating NUL, the ANSI conversion loses none of the
// characters the code page holds, and reading drops exactly one terminator when another
// program stored it.
TEST_F(Reg, StringsAreStoredWithoutTerminatorAndReadBackExactly) {
    for (const std::wstring& t : {std::wstring(L"caf\u00e9 \u00fcber Stra\u00dfe \u20ac \"q\" \\ \t"), std::wstring(),
                                  std::wstring(254, L'x')}) {
        ASSERT_TRUE(ok(L"WriteString", {hkcu, text(base_), text(L"s"), text(t)}));
        const Stored s = stored(L"s");
        EXPECT_EQ(s.type, static_cast<DWORD>(REG_SZ));
        EXPECT_EQ(std::wstring(reinterpret_cast<const wchar_t*>(s.data.data()), s.data.size() / sizeof(wchar_t)), t);
        EXPECT_EQ(readString(L"s"), t);
    }
    const wchar_t terminated[] = L"terminated";
    storeRaw(L"other", REG_SZ, terminated, sizeof terminated);
    EXPECT_EQ(readString(L"other"), L"terminated");
    // 255 characters and their terminator do not fit the reading buffer.
    const std::wstring long255(255, L'd');
    storeRaw(L"255", REG_SZ, long255.c_str(), 256 * sizeof(wchar_t));
    EXPECT_EQ(readString(L"255"), L"");
    // A list of strings keeps its separators; only the final terminator goes.
    const wchar_t multi[] = L"a\0b\0";
    storeRaw(L"m", REG_MULTI_SZ, multi, sizeof multi);
    auto values = vxtest::objectOf(reg(L"ListValues", {hkcu, text(base_)}).value);
    auto m = vxtest::objectOf(vxtest::call(values.get(), L"Item", {text(L"m")}).value);
    ASSERT_TRUE(m);
    EXPECT_EQ(textOf(vxtest::get(m.get(), L"DataValue").value), std::wstring(L"a\0b\0", 4));
}

// Every byte goes in and comes out, NULs at the end included, as an array indexed from 0;
// no data is an empty array, not Empty.
TEST_F(Reg, BinaryValuesKeepEveryByte) {
    const Bytes withNuls{0, 1, 0, 255, 0x7F, 0};
    std::vector<Variant> items;
    for (unsigned char b : withNuls) items.push_back(num(b));
    ASSERT_TRUE(ok(L"WriteBinary", {hkcu, text(base_), text(L"b"), text(L"ignored"), makeVariantArray(items)}));
    EXPECT_EQ(stored(L"b").type, static_cast<DWORD>(REG_BINARY));
    EXPECT_EQ(stored(L"b").data, withNuls);
    ASSERT_TRUE(ok(L"WriteBinary", {hkcu, text(base_), text(L"e"), text(L"")}));
    for (const wchar_t* name : {L"b", L"e"}) {
        const Variant read = reg(L"ReadBinary", {hkcu, text(base_), text(name)}).value;
        ASSERT_EQ(read.type(), VT_ARRAY | VT_UI1) << name;
        ArrayView view(*read);
        EXPECT_EQ(view.lbound(), 0);
        Bytes got;
        for (long i = 0; i <= view.ubound(); ++i) got.push_back(static_cast<unsigned char>(vxtest::longOf(view.at(i))));
        EXPECT_EQ(got, stored(name).data) << name;
    }
}

// A write that fails, with an error or without, changes nothing that was stored; a NUL
// inside a name or path must not make it name something shorter.
TEST_F(Reg, FailedWritesLeaveStoredValuesAlone) {
    ASSERT_TRUE(ok(L"WriteString", {hkcu, text(base_), text(L"v"), text(L"keep")}));
    const Bytes kept = stored(L"v").data;
    const Variant full = text(L"HKEY_CURRENT_USER\\" + base_ + L"\\v");
    auto bytes = [](std::vector<Variant> items) { return makeVariantArray(items); };
    struct Case {
        const wchar_t* member;
        std::vector<Variant> args;
        int error;
    };
    const Case cases[] = {
        {L"WriteBinary", {hkcu, text(base_), text(L"v"), text(L""), bytes({num(1), num(256)})}, 6},
        {L"WriteBinary", {hkcu, text(base_), text(L"v"), text(L""), bytes({num(1), num(-1)})}, 6},
        {L"WriteBinary", {hkcu, text(base_), text(L"v"), text(L""), bytes({text(L"x")})}, 13},
        {L"WriteBinary", {hkcu, text(base_), text(L"v"), text(L""), num(5)}, 13},
        {L"GoRegisterWrite", {full, text(L"not a number"), num(4)}, 13},
        {L"GoRegisterWrite", {full, Variant::fromDouble(3e9), num(4)}, 6},
        {L"GoRegisterWrite", {full, Variant::null(), num(1)}, 94},
        {L"WriteString", {num(0), text(base_), text(L"v"), text(L"new")}, 0},
        {L"WriteString", {hkcu, text(base_), text(std::wstring(L"v\0x", 3)), text(L"new")}, 0},
        {L"WriteDWord", {hkcu, text(base_ + std::wstring(L"\0\\x", 3)), text(L"v"), num(1)}, 0},
    };
    int n = 0;
    for (const Case& c : cases) {
        const auto r = reg(c.member, c.args);
        EXPECT_EQ(r.errorNumber(), c.error) << "case " << n;
        if (c.error == 0) {
            EXPECT_FALSE(toBool(*r.value)) << "case " << n;
        }
        EXPECT_EQ(stored(L"v").data, kept) << "case " << n;
        ++n;
    }
    HKEY x = nullptr;
    EXPECT_NE(RegOpenKeyExW(key_, L"x", 0, KEY_READ, &x), ERROR_SUCCESS);
    if (x) RegCloseKey(x);
}

// KeyDelete empties the key it names before deleting it: a path that names no key below
// the root must be refused, or the root would lose its values. The test's key stands in
// for a root through its handle.
TEST_F(Reg, KeyDeleteNeverEmptiesARoot) {
    ASSERT_TRUE(ok(L"WriteString", {hkcu, text(base_), text(L"canary"), text(L"alive")}));
    const Variant handle = num(static_cast<long>(reinterpret_cast<LONG_PTR>(key_)));
    for (const wchar_t* p : {L"", L"\\", L"\\\\"}) reg(L"KeyDelete", {text(p), handle});
    EXPECT_TRUE(stored(L"canary").found);
    reg(L"KeyDelete", {text(L"HKEY_CURRENT_USER")});
    reg(L"KeyDelete", {text(L"HKEY_CURRENT_USER\\")});
    HKEY still = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, base_.c_str(), 0, KEY_READ, &still), ERROR_SUCCESS);
    if (still) RegCloseKey(still);
}
