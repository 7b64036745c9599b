#pragma once
// What the registry tests share: a key of each test's own under
// HKEY_CURRENT_USER\Software\Vx_Main tests, removed before and after the test (a failed
// test included), and a look at the values as the system stores them.
#include "core/runtime/SafeArray.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <string>
#include <vector>

namespace vxtest {

constexpr long hkcuRoot = static_cast<long>(0x80000001u);
constexpr long hklmRoot = static_cast<long>(0x80000002u);

class RegistryTest : public ::testing::Test {
protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        const std::string name = std::string(info->test_suite_name()) + "." + info->name();
        base_ = L"Software\\Vx_Main tests\\" + std::wstring(name.begin(), name.end()) + L"." +
                std::to_wstring(GetCurrentProcessId());
        RegDeleteTreeW(HKEY_CURRENT_USER, base_.c_str());
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, base_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        RegCloseKey(key);
        reg_ = createObject(CLSID_clsReg);
        ASSERT_TRUE(reg_);
    }

    void TearDown() override {
        RegDeleteTreeW(HKEY_CURRENT_USER, base_.c_str());
        RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Vx_Main tests");  // only goes when empty
    }

    // The test's key, or a path below it.
    std::wstring path(const std::wstring& below = L"") const { return below.empty() ? base_ : base_ + L"\\" + below; }
    // The same as a full path with the root's name in front.
    std::wstring fullPath(const std::wstring& below) const { return L"HKEY_CURRENT_USER\\" + path(below); }

    static vx::Variant root() { return vx::Variant::fromLong(hkcuRoot); }
    static vx::Variant text(const std::wstring& s) { return vx::Variant::fromText(s); }
    static vx::Variant num(long n) { return vx::Variant::fromLong(n); }

    CallResult reg(const wchar_t* member, std::vector<vx::Variant> args = {}) const {
        return call(reg_.get(), member, std::move(args));
    }

    // A value as the system stores it.
    struct Stored {
        bool found = false;
        DWORD type = 0;
        std::vector<unsigned char> data;
    };
    Stored stored(const std::wstring& below, const std::wstring& name) const {
        Stored s;
        HKEY key = nullptr;
        if (RegOpenKeyExW(HKEY_CURRENT_USER, path(below).c_str(), 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) return s;
        DWORD size = 0;
        if (RegQueryValueExW(key, name.c_str(), nullptr, &s.type, nullptr, &size) == ERROR_SUCCESS) {
            s.data.resize(size);
            s.found = RegQueryValueExW(key, name.c_str(), nullptr, &s.type, s.data.data(), &size) == ERROR_SUCCESS;
            s.data.resize(size);
        }
        RegCloseKey(key);
        return s;
    }

    // A value written as another program writes it, through the Unicode functions.
    void storeRaw(const std::wstring& below, const std::wstring& name, DWORD type, const void* data, DWORD size) const {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path(below).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                                  nullptr),
                  ERROR_SUCCESS);
        EXPECT_EQ(RegSetValueExW(key, name.c_str(), 0, type, static_cast<const BYTE*>(data), size), ERROR_SUCCESS);
        RegCloseKey(key);
    }

    bool keyExists(const std::wstring& below) const {
        HKEY key = nullptr;
        if (RegOpenKeyExW(HKEY_CURRENT_USER, path(below).c_str(), 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) return false;
        RegCloseKey(key);
        return true;
    }

    vx::ComPtr<IDispatch> reg_;

private:
    std::wstring base_;
};

// The bytes of a byte array result (VT_ARRAY | VT_UI1, indexed from 0).
inline std::vector<unsigned char> bytesOf(const vx::Variant& v) {
    std::vector<unsigned char> bytes;
    if (v.type() != (VT_ARRAY | VT_UI1)) {
        ADD_FAILURE() << "not a byte array: VarType " << v.type();
        return bytes;
    }
    vx::ArrayView view(*v);
    EXPECT_EQ(view.lbound(), 0);
    for (long i = view.lbound(); i <= view.ubound(); ++i) bytes.push_back(static_cast<unsigned char>(longOf(view.at(i))));
    return bytes;
}

inline vx::Variant arrayOf(std::vector<long> items) {
    std::vector<vx::Variant> v;
    for (long n : items) v.push_back(vx::Variant::fromLong(n));
    return vx::makeVariantArray(v);
}

}  // namespace vxtest
