// The server contract, against the built DLL: registration writes the type library (for
// the DLL's word size), the interfaces and every creatable class, and unregistration
// removes exactly that; DllCanUnloadNow answers S_OK once every object and lock is gone.
#include "core/runtime/Handles.h"
#include "core/server/Roster.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <set>

using namespace vx;

namespace {

using Fn = HRESULT(STDAPICALLTYPE*)();
using GetClassObjectFn = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);

std::wstring guidText(const GUID& g) {
    wchar_t b[40];
    StringFromGUID2(g, b, 40);
    return b;
}

std::wstring readText(const std::wstring& path, const wchar_t* name = nullptr) {
    wchar_t buffer[1024] = {};
    DWORD size = sizeof(buffer);
    if (RegGetValueW(HKEY_CLASSES_ROOT, path.c_str(), name, RRF_RT_REG_SZ, nullptr, buffer, &size) != ERROR_SUCCESS)
        return L"<missing>";
    return buffer;
}

// Every key under the classes root that belongs to the library: its ProgIDs, and the
// CLSID, Interface and TypeLib keys of its identifiers.
std::set<std::wstring> libraryKeys() {
    std::set<std::wstring> found, ours = {guidText(LIBID_Vx_Main), guidText(IID__Ds_ListCollection),
                                          guidText(IID__Ds_DataCollection)};
    for (const ClassEntry* c = rosterBegin(); c != rosterEnd(); ++c) ours.insert(guidText(c->classId()));
    auto enumerate = [](HKEY key, auto&& each) {
        wchar_t name[256];
        DWORD len = 256;
        for (DWORD i = 0; RegEnumKeyExW(key, i, name, &len, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
             ++i, len = 256)
            each(std::wstring(name));
    };
    for (const wchar_t* root : {L"CLSID", L"Interface", L"TypeLib"}) {
        UniqueRegKey k;
        if (RegOpenKeyExW(HKEY_CLASSES_ROOT, root, 0, KEY_READ, k.put()) != ERROR_SUCCESS) continue;
        enumerate(k.get(), [&](const std::wstring& n) {
            if (ours.count(n)) found.insert(std::wstring(root) + L"\\" + n);
        });
    }
    enumerate(HKEY_CLASSES_ROOT, [&](const std::wstring& n) {
        if (n.rfind(L"Vx_Main.", 0) == 0) found.insert(n);
    });
    return found;
}

class Registration : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(vxtest::dllPath.empty()) << "run with --vx-dll=<path of Vx_Main.dll>";
        dll_.reset(LoadLibraryW(vxtest::dllPath.c_str()));
        ASSERT_TRUE(dll_) << "cannot load the DLL";
        auto entry = [&](const char* name) { return reinterpret_cast<void*>(GetProcAddress(dll_.get(), name)); };
        registerServer_ = reinterpret_cast<Fn>(entry("DllRegisterServer"));
        unregisterServer_ = reinterpret_cast<Fn>(entry("DllUnregisterServer"));
        canUnloadNow_ = reinterpret_cast<Fn>(entry("DllCanUnloadNow"));
        getClassObject_ = reinterpret_cast<GetClassObjectFn>(entry("DllGetClassObject"));
        ASSERT_TRUE(registerServer_ && unregisterServer_ && canUnloadNow_ && getClassObject_);
    }

    UniqueModule dll_;
    Fn registerServer_ = nullptr, unregisterServer_ = nullptr, canUnloadNow_ = nullptr;
    GetClassObjectFn getClassObject_ = nullptr;
};

}  // namespace

TEST_F(Registration, WritesTheClassesAndRemovesExactlyThat) {
    ASSERT_EQ(unregisterServer_(), S_OK);  // a clean start, whatever ran before
    EXPECT_TRUE(libraryKeys().empty());

    ASSERT_EQ(registerServer_(), S_OK);
    EXPECT_EQ(registerServer_(), S_OK);  // twice is harmless
    const std::wstring list = L"CLSID\\" + guidText(CLSID_Ds_ListCollection);
    EXPECT_EQ(readText(list + L"\\InprocServer32"), vxtest::dllPath);
    EXPECT_EQ(readText(list + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
    EXPECT_EQ(readText(list + L"\\ProgID"), L"Vx_Main.Ds_ListCollection");
    EXPECT_EQ(readText(list + L"\\TypeLib"), guidText(LIBID_Vx_Main));
    EXPECT_EQ(readText(L"Vx_Main.Ds_ListCollection\\CLSID"), guidText(CLSID_Ds_ListCollection));
    const std::set<std::wstring> keys = libraryKeys();
    EXPECT_TRUE(keys.count(L"Interface\\" + guidText(IID__Ds_DataCollection)));
    // A dependent class is described by the type library but not registered as creatable.
    EXPECT_FALSE(keys.count(L"CLSID\\" + guidText(CLSID_Ds_DataCollection)));
    EXPECT_FALSE(keys.count(L"Vx_Main.Ds_DataCollection"));

    // Early-binding hosts of the DLL's word size find the type library under its platform.
    const std::wstring platform = sizeof(void*) == 8 ? L"win64" : L"win32";
    EXPECT_EQ(readText(L"TypeLib\\" + guidText(LIBID_Vx_Main) + L"\\1.0\\0\\" + platform), vxtest::dllPath);
    ITypeLib* tl = nullptr;
    ASSERT_EQ(LoadRegTypeLib(LIBID_Vx_Main, 1, 0, 0, &tl), S_OK);
    TLIBATTR* attr = nullptr;
    ASSERT_EQ(tl->GetLibAttr(&attr), S_OK);
    EXPECT_EQ(attr->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
    tl->ReleaseTLibAttr(attr);
    tl->Release();

    ASSERT_EQ(unregisterServer_(), S_OK);
    EXPECT_TRUE(libraryKeys().empty());
}

TEST_F(Registration, ClassObjectsAndUnloading) {
    EXPECT_EQ(canUnloadNow_(), S_OK);
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(getClassObject_(CLSID_Ds_DataCollection, IID_IClassFactory, reinterpret_cast<void**>(factory.put())),
              CLASS_E_CLASSNOTAVAILABLE);
    ASSERT_EQ(getClassObject_(CLSID_Ds_ListCollection, IID_IClassFactory, reinterpret_cast<void**>(factory.put())), S_OK);
    EXPECT_EQ(canUnloadNow_(), S_FALSE);  // the class object itself
    ComPtr<IDispatch> aggregated;
    EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, reinterpret_cast<void**>(aggregated.put())),
              CLASS_E_NOAGGREGATION);

    ComPtr<IDispatch> list;
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(list.put())), S_OK);
    factory->LockServer(TRUE);
    factory.reset();
    // Records handed out by the list count as well.
    ComPtr<IDispatch> record = vxtest::objectOf(vxtest::call(list.get(), L"Add", {Variant::fromLong(1)}).value);
    list.reset();
    EXPECT_EQ(canUnloadNow_(), S_FALSE);  // the record and the lock
    record.reset();
    EXPECT_EQ(canUnloadNow_(), S_FALSE);  // the lock
    ASSERT_EQ(getClassObject_(CLSID_Ds_ListCollection, IID_IClassFactory, reinterpret_cast<void**>(factory.put())), S_OK);
    factory->LockServer(FALSE);
    factory.reset();
    EXPECT_EQ(canUnloadNow_(), S_OK);
}
