// The server contract, against the built DLL: registration writes the type library,
// the interfaces and every creatable class, and unregistration removes exactly that;
// dependent classes cannot be created; DllCanUnloadNow answers S_OK once every object
// and lock is gone.
#include "core/runtime/Handles.h"
#include "core/server/Registration.h"
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

bool keyExists(const std::wstring& path) {
    UniqueRegKey k;
    return RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, k.put()) == ERROR_SUCCESS;
}

std::wstring readText(const std::wstring& path, const wchar_t* name) {
    wchar_t buffer[1024] = {};
    DWORD size = sizeof(buffer);
    if (RegGetValueW(HKEY_CLASSES_ROOT, path.c_str(), name, RRF_RT_REG_SZ, nullptr, buffer, &size) != ERROR_SUCCESS)
        return L"<missing>";
    return buffer;
}

// Every key of HKEY_CLASSES_ROOT\<root> whose name mentions the library.
std::set<std::wstring> libraryKeys() {
    std::set<std::wstring> found;
    std::set<std::wstring> ours = {guidText(LIBID_Vx_Main)};
    for (const ClassEntry* c = rosterBegin(); c != rosterEnd(); ++c) ours.insert(guidText(*c->clsid));
    ours.insert(guidText(IID__Ds_ListCollection));
    ours.insert(guidText(IID__Ds_DataCollection));
    for (const wchar_t* root : {L"CLSID", L"Interface", L"TypeLib"}) {
        UniqueRegKey k;
        if (RegOpenKeyExW(HKEY_CLASSES_ROOT, root, 0, KEY_READ, k.put()) != ERROR_SUCCESS) continue;
        wchar_t name[256];
        for (DWORD i = 0;; ++i) {
            DWORD len = 256;
            if (RegEnumKeyExW(k.get(), i, name, &len, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
            if (ours.count(name)) found.insert(std::wstring(root) + L"\\" + name);
        }
    }
    UniqueRegKey classes;
    wchar_t name[256];
    for (DWORD i = 0;; ++i) {
        DWORD len = 256;
        if (RegEnumKeyExW(HKEY_CLASSES_ROOT, i, name, &len, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        if (std::wstring(name).rfind(L"Vx_Main.", 0) == 0) found.insert(name);
    }
    return found;
}

class Registration : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(vxtest::dllPath.empty()) << "run with --vx-dll=<path of Vx_Main.dll>";
        dll_.reset(LoadLibraryW(vxtest::dllPath.c_str()));
        ASSERT_TRUE(dll_) << "cannot load the DLL";
        registerServer_ = reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(dll_.get(), "DllRegisterServer")));
        unregisterServer_ = reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(dll_.get(), "DllUnregisterServer")));
        canUnloadNow_ = reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(dll_.get(), "DllCanUnloadNow")));
        getClassObject_ = reinterpret_cast<GetClassObjectFn>(reinterpret_cast<void*>(GetProcAddress(dll_.get(), "DllGetClassObject")));
        ASSERT_TRUE(registerServer_ && unregisterServer_ && canUnloadNow_ && getClassObject_);
    }

    UniqueModule dll_;
    Fn registerServer_ = nullptr, unregisterServer_ = nullptr, canUnloadNow_ = nullptr;
    GetClassObjectFn getClassObject_ = nullptr;
};

}  // namespace

TEST_F(Registration, WritesTheClassesAndRemovesExactlyThat) {
    ASSERT_EQ(unregisterServer_(), S_OK);  // a clean start, whatever ran before
    const std::set<std::wstring> before = libraryKeys();
    EXPECT_TRUE(before.empty());

    ASSERT_EQ(registerServer_(), S_OK);
    const std::wstring list = L"CLSID\\" + guidText(CLSID_Ds_ListCollection);
    EXPECT_EQ(readText(list + L"\\InprocServer32", nullptr), vxtest::dllPath);
    EXPECT_EQ(readText(list + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
    EXPECT_EQ(readText(list + L"\\ProgID", nullptr), L"Vx_Main.Ds_ListCollection");
    EXPECT_EQ(readText(list + L"\\TypeLib", nullptr), guidText(LIBID_Vx_Main));
    EXPECT_EQ(readText(L"Vx_Main.Ds_ListCollection\\CLSID", nullptr), guidText(CLSID_Ds_ListCollection));
    EXPECT_TRUE(keyExists(L"TypeLib\\" + guidText(LIBID_Vx_Main)));
    EXPECT_TRUE(keyExists(L"Interface\\" + guidText(IID__Ds_DataCollection)));
    // A dependent class is described by the type library but not registered as creatable.
    EXPECT_FALSE(keyExists(L"CLSID\\" + guidText(CLSID_Ds_DataCollection)));
    EXPECT_FALSE(keyExists(L"Vx_Main.Ds_DataCollection"));

    // Registering twice is harmless.
    EXPECT_EQ(registerServer_(), S_OK);

    ASSERT_EQ(unregisterServer_(), S_OK);
    EXPECT_EQ(libraryKeys(), before);
}

TEST_F(Registration, HostsCreateGlobalClassesByProgIdButNotDependentOnes) {
    ASSERT_EQ(registerServer_(), S_OK);
    CLSID clsid;
    ASSERT_EQ(CLSIDFromProgID(L"Vx_Main.Ds_ListCollection", &clsid), S_OK);
    EXPECT_TRUE(IsEqualCLSID(clsid, CLSID_Ds_ListCollection));
    ComPtr<IDispatch> list;
    EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(list.put())), S_OK);
    EXPECT_TRUE(list);
    ComPtr<IDispatch> record;
    EXPECT_NE(CoCreateInstance(CLSID_Ds_DataCollection, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                               reinterpret_cast<void**>(record.put())), S_OK);
    EXPECT_FALSE(record);
    list.reset();
    CoFreeUnusedLibraries();
    EXPECT_EQ(unregisterServer_(), S_OK);
}

TEST_F(Registration, ClassObjectsAndUnloading) {
    EXPECT_EQ(canUnloadNow_(), S_OK);
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(getClassObject_(CLSID_Ds_DataCollection, IID_IClassFactory, reinterpret_cast<void**>(factory.put())),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(getClassObject_(IID_IDispatch, IID_IClassFactory, reinterpret_cast<void**>(factory.put())),
              CLASS_E_CLASSNOTAVAILABLE);
    ASSERT_EQ(getClassObject_(CLSID_Ds_ListCollection, IID_IClassFactory, reinterpret_cast<void**>(factory.put())), S_OK);
    EXPECT_EQ(canUnloadNow_(), S_FALSE);  // the class object itself

    ComPtr<IUnknown> outer(reinterpret_cast<IUnknown*>(factory.get()));
    ComPtr<IDispatch> aggregated;
    EXPECT_EQ(factory->CreateInstance(outer.get(), IID_IUnknown, reinterpret_cast<void**>(aggregated.put())),
              CLASS_E_NOAGGREGATION);
    outer.reset();

    ComPtr<IDispatch> list;
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(list.put())), S_OK);
    factory->LockServer(TRUE);
    factory.reset();
    EXPECT_EQ(canUnloadNow_(), S_FALSE);  // an object and a lock

    // Records handed out by the list count as well.
    auto added = vxtest::call(list.get(), L"Add", {Variant::fromLong(1)});
    ComPtr<IDispatch> record = vxtest::objectOf(added.value);
    added = vxtest::CallResult();
    list.reset();
    EXPECT_EQ(canUnloadNow_(), S_FALSE);  // the record and the lock
    record.reset();
    EXPECT_EQ(canUnloadNow_(), S_FALSE);  // the lock
    ASSERT_EQ(getClassObject_(CLSID_Ds_ListCollection, IID_IClassFactory, reinterpret_cast<void**>(factory.put())), S_OK);
    factory->LockServer(FALSE);
    factory.reset();
    EXPECT_EQ(canUnloadNow_(), S_OK);
}

TEST_F(Registration, TypeLibraryIsRegisteredForTheDllsWordSize) {
    ASSERT_EQ(registerServer_(), S_OK);
    // Early-binding hosts of the same word size find the library through this key.
    const std::wstring platform = sizeof(void*) == 8 ? L"win64" : L"win32";
    EXPECT_EQ(readText(L"TypeLib\\" + guidText(LIBID_Vx_Main) + L"\\1.0\\0\\" + platform, nullptr), vxtest::dllPath);
    ITypeLib* tl = nullptr;
    ASSERT_EQ(LoadRegTypeLib(LIBID_Vx_Main, 1, 0, 0, &tl), S_OK);
    TLIBATTR* attr = nullptr;
    ASSERT_EQ(tl->GetLibAttr(&attr), S_OK);
    EXPECT_EQ(attr->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
    tl->ReleaseTLibAttr(attr);
    tl->Release();
    EXPECT_EQ(unregisterServer_(), S_OK);
}
