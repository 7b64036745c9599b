// The frame the classes stand on: the enumeration constants and declared defaults taken
// from the type library, the overflow-checked integer, the buffer-growth loop, and the
// owners that pair the platform's calls.
#include "core/dispatch/Defaults.h"
#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/Buffer.h"
#include "core/runtime/Checked.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Handles.h"
#include "core/runtime/SafeArray.h"
#include "core/runtime/MessageLoop.h"
#include "core/runtime/Services.h"
#include "shared/DateText.h"
#include "shared/Helpers.h"
#include "shared/Waits.h"
#include "shared/Windows.h"

#include "TestSupport.h"
#include "Vx_Main.h"
#include "Vx_MainEnums.h"

#include <map>
#include <string>

using namespace vx;

namespace {

// Every member of every enumeration of the type library, as "Enumeration.Member".
std::map<std::wstring, LONG> typeLibraryMembers() {
    std::map<std::wstring, LONG> members;
    ITypeLib* tl = typeLibrary();
    for (UINT i = 0; tl && i < tl->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> ti;
        tl->GetTypeInfo(i, ti.put());
        TYPEATTR* attr = nullptr;
        ti->GetTypeAttr(&attr);
        const bool isEnum = attr->typekind == TKIND_ENUM;
        const UINT vars = attr->cVars;
        ti->ReleaseTypeAttr(attr);
        if (!isEnum) continue;
        BSTR enumName = nullptr;
        tl->GetDocumentation(static_cast<INT>(i), &enumName, nullptr, nullptr, nullptr);
        for (UINT v = 0; v < vars; ++v) {
            VARDESC* vd = nullptr;
            ti->GetVarDesc(v, &vd);
            BSTR name = nullptr;
            UINT got = 0;
            ti->GetNames(vd->memid, &name, 1, &got);
            members[std::wstring(enumName) + L"." + name] = toInt32(*vd->lpvarValue);
            SysFreeString(name);
            ti->ReleaseVarDesc(vd);
        }
        SysFreeString(enumName);
    }
    return members;
}

}  // namespace

TEST(Frame, EnumerationConstantsAreTheTypeLibrarysValues) {
    std::map<std::wstring, LONG> generated;
    for (const EnumerationMember& m : kEnumerationMembers)
        generated[std::wstring(m.enumeration) + L"." + m.member] = m.value;
    const auto described = typeLibraryMembers();
    EXPECT_GT(described.size(), 250u);
    EXPECT_EQ(generated, described);
    // Names the platform defines as macros stand for the same values.
    EXPECT_EQ(WS_BORDER, 0x800000);
    EXPECT_EQ(CF_RTF, -16639);
    EXPECT_EQ(CLASSES_ROOT, static_cast<LONG>(0x80000000u));
}

TEST(Frame, DeclaredDefaultsComeFromTheTypeLibrary) {
    const VARIANT& separator = declaredDefault(IID__Ds_MyVaribleFunction, L"GetVar", L"sFind");
    ASSERT_EQ(V_VT(&separator), VT_BSTR);
    EXPECT_EQ(viewOf(V_BSTR(&separator)), L",");
    // Read once: the same value again.
    EXPECT_EQ(&declaredDefault(IID__Ds_MyVaribleFunction, L"GetVar", L"sFind"), &separator);
    // Whole numbers of a Variant are Integers; typed ones keep their type.
    EXPECT_EQ(V_VT(&declaredDefault(IID__Ds_MyVaribleFunction, L"GetVar", L"EndIndexLast")), VT_I2);
    EXPECT_EQ(toInt32(declaredDefault(IID__clsReg, L"WriteDWord", L"nType")), REG_DWORD);
    EXPECT_EQ(toInt32(declaredDefault(IID__clsReg, L"GoRegister", L"HKey")), CURRENT_USER);
    // No such parameter, or one without a default: an internal error, not a guess.
    EXPECT_RUNTIME_ERROR(declaredDefault(IID__clsReg, L"GoRegister", L"SetValue"), 51);
    EXPECT_RUNTIME_ERROR(declaredDefault(IID__clsReg, L"NoSuchMember", L"x"), 51);
}

TEST(Frame, CallersThroughTheVtableGetTheDeclaredDefaults) {
    // GetVar with every optional parameter left out: field 0 of a comma-separated text.
    auto helper = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    ComPtr<_Ds_MyVaribleFunction> direct = helper.query<_Ds_MyVaribleFunction>();
    Variant data = Variant::fromText(L"a,b,c"), result;
    ASSERT_EQ(direct->GetVar(data.get(), nullptr, nullptr, nullptr, nullptr, result.put()), S_OK);
    EXPECT_EQ(vxtest::textOf(result), L"a");
    VARIANT_BOOL same = VARIANT_FALSE;
    Variant a = Variant::fromText(L"X"), b = Variant::fromText(L"x");
    ASSERT_EQ(direct->IsEqute(a.get(), b.get(), nullptr, &same), S_OK);  // GoText
    EXPECT_EQ(same, VARIANT_TRUE);
    EXPECT_EQ(direct->IsEqute(nullptr, b.get(), nullptr, &same), E_POINTER);
    EXPECT_EQ(same, VARIANT_FALSE);
    // A Boolean left out is the declared False: the date without its time of day.
    ComPtr<_Ds_SysTime> clock = vxtest::createObject(CLSID_Ds_SysTime).query<_Ds_SysTime>();
    Vx_SYSTEMTIME t{2006, 8, 4, 3, 9, 5, 0, 0};
    ASSERT_EQ(clock->ConvertDateSystemTime(&t, nullptr, result.put()), S_OK);
    EXPECT_EQ(vxtest::textOf(result), L"2006/8/3");
}

TEST(Frame, WaitsCountYieldsAndGiveUpOnTheEndKey) {
    auto keys = service<KeyboardService>();
    keys.asyncKeyState = [](int key) { return static_cast<SHORT>(key == VK_END ? 0x8000 : 0); };
    ReplaceService<KeyboardService> endHeld(keys);
    EXPECT_TRUE(isKeyDown(VK_END));
    const Variant tilde = Variant::fromText(L"~");
    auto before = yieldCount();
    EXPECT_FALSE(waitFindWindows(*Variant::fromText(L"No window is titled so~Edit"), *tilde, *tilde));
    EXPECT_EQ(yieldCount() - before, 1u);  // one look, then the End key gives up
    before = yieldCount();
    EXPECT_FALSE(waitFindWindows(*Variant::fromText(L"   "), *tilde, *tilde));
    EXPECT_EQ(yieldCount(), before);  // a blank path: no wait at all
    waitDoEvents(*Variant::fromDouble(0.002), *Variant::missing());
    waitDoEvents(*Variant::missing(), *Variant::fromLong(3));
    EXPECT_EQ(yieldCount() - before, 5u);
    // No window has a child under a key: error 5, as a list's missing key.
    EXPECT_RUNTIME_ERROR(window::keyedChild(0, L"Edit"), 5);
}

TEST(Frame, SharedHelpers) {
    EXPECT_EQ(parentPath(L"Software\\Vx\\Key"), L"Software\\Vx");
    EXPECT_EQ(parentPath(L"Software"), L"");
    EXPECT_EQ(parentPath(L""), L"");
    EXPECT_EQ(countUBound(*Variant::fromText(L"no array")), -1);
    EXPECT_EQ(countUBound(*makeVariantArray({Variant::fromLong(1), Variant::fromLong(2)})), 1);
    // A bound beyond an Integer is the neutral -1.
    SAFEARRAYBOUND bound{40000, 0};
    Variant big;
    V_VT(big.get()) = VT_ARRAY | VT_UI1;
    V_ARRAY(big.get()) = SafeArrayCreate(VT_UI1, 1, &bound);
    EXPECT_EQ(countUBound(*big), -1);
    Vx_SYSTEMTIME t{2006, 8, 4, 3, 9, 5, 0, 0};
    EXPECT_EQ(systemTimeText(t, false), L"2006/8/3");
    EXPECT_EQ(systemTimeText(t, true), L"2006/8/3 9:5:0");
    SYSTEMTIME system{};
    system.wYear = 40000;  // beyond an Integer: read as the library's signed field
    system.wMonth = 1;
    system.wDay = 2;
    EXPECT_EQ(systemTimeText(system, false), L"-25536/1/2");
}

TEST(Frame, CheckedIntegersOverflowAsTheRuntimeDoes) {
    using Long = Checked<int32_t>;
    using Integer = Checked<int16_t>;
    EXPECT_EQ((Long(2147483600) + 47).value(), 2147483647);
    EXPECT_RUNTIME_ERROR(Long(2147483600) + 48, 6);
    EXPECT_RUNTIME_ERROR(Long(-2147483647) - 2, 6);
    EXPECT_RUNTIME_ERROR(Long(65536) * 32768, 6);
    EXPECT_EQ((Long(-7) / 2).value(), -3);  // toward zero
    EXPECT_EQ((Long(-7) % 2).value(), -1);
    EXPECT_RUNTIME_ERROR(Long(1) / 0, 11);
    EXPECT_RUNTIME_ERROR(Long(-2147483647 - 1) / -1, 6);
    EXPECT_EQ(Integer(-32768).value(), -32768);
    EXPECT_RUNTIME_ERROR(Integer(32768), 6);
    EXPECT_RUNTIME_ERROR(Integer(40000u), 6);
    EXPECT_RUNTIME_ERROR(Long(0xFFFFFFFFu), 6);
    EXPECT_TRUE(Integer(3) < Integer(4));
}

TEST(Frame, BufferGrowthIsBounded) {
    // Grows to what the call asks for, at least doubling.
    std::string buffer(4, '\0');
    std::vector<size_t> sizes;
    EXPECT_TRUE(growBuffer(buffer, 1000, [&](std::string& b) {
        sizes.push_back(b.size());
        return b.size() >= 100 ? BufferNeed::fits() : BufferNeed::more(b.size() == 16 ? 100 : 0);
    }));
    EXPECT_EQ(sizes, (std::vector<size_t>{4, 16, 100}));
    // A call that keeps asking stops at the limit; one that fails stops at once.
    int calls = 0;
    EXPECT_FALSE(growBuffer(buffer, 300, [&](std::string&) { ++calls; return BufferNeed::more(); }));
    EXPECT_EQ(buffer.size(), 300u);
    EXPECT_EQ(calls, 3);
    calls = 0;
    EXPECT_FALSE(growBuffer(buffer, 300, [&](std::string&) { ++calls; return BufferNeed::failed(); }));
    EXPECT_EQ(calls, 1);
    // One that asks for a little more every time runs out of attempts.
    std::string creeping(1, '\0');
    calls = 0;
    EXPECT_FALSE(growBuffer(creeping, static_cast<size_t>(-1), [&](std::string& b) {
        ++calls;
        b.resize(1);
        return BufferNeed::more(2);
    }));
    EXPECT_EQ(calls, 16);
}

TEST(Frame, OwnersPairThePlatformsCalls) {
    // A scope-exit runs once, however the scope ends, unless released.
    int runs = 0;
    try {
        ScopeExit count{[&] { ++runs; }};
        throw 1;
    } catch (int) {
    }
    {
        ScopeExit skipped{[&] { ++runs; }};
        skipped.release();
    }
    EXPECT_EQ(runs, 1);

    // An array is locked while its data is accessed, and unlocked after a throw.
    SAFEARRAY* array = SafeArrayCreateVector(VT_UI1, 0, 4);
    try {
        SafeArrayAccess access(array);
        access.as<unsigned char>()[0] = 7;
        EXPECT_EQ(SafeArrayDestroy(array), DISP_E_ARRAYISLOCKED);
        throw 1;
    } catch (int) {
    }
    {
        SafeArrayLockGuard lock(array);
        EXPECT_EQ(SafeArrayDestroy(array), DISP_E_ARRAYISLOCKED);
    }
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);

    // Memory the system hands out is freed, a search handle closed.
    UniqueLocal local(LocalAlloc(LMEM_FIXED, 16));
    EXPECT_TRUE(local);
    UniqueGlobal global(GlobalAlloc(GMEM_MOVEABLE, 16));
    {
        GlobalLocked<char> bytes(global.get());
        ASSERT_TRUE(bytes);
        bytes.get()[0] = 'x';
    }
    EXPECT_EQ(GlobalFlags(global.get()) & GMEM_LOCKCOUNT, 0u);
    WIN32_FIND_DATAW found;
    UniqueFind search(FindFirstFileW(L"C:\\windows\\*", &found));
    EXPECT_TRUE(search);
    UniqueFind none(FindFirstFileW(L"C:\\no such folder\\*", &found));
    EXPECT_FALSE(none);
    // The clipboard is closed again at the end of the scope: a second opening succeeds.
    { ClipboardOpen first; }
    ClipboardOpen second;
    EXPECT_TRUE(second);
}
