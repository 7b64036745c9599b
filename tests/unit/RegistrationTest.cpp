// The server contract, against the built DLL: registration writes the type library (for
// the DLL's word size), the interfaces and every creatable class, and unregistration
// removes exactly that, for the machine (DllRegisterServer) and for the current user
// alone (DllInstall "user"); DllCanUnloadNow answers S_OK once every object and lock is gone.
#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/Handles.h"
#include "core/server/Roster.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <set>
#include <vector>

using namespace vx;

namespace {

using Fn = HRESULT(STDAPICALLTYPE*)();
using GetClassObjectFn = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
using InstallFn = HRESULT(STDAPICALLTYPE*)(BOOL, LPCWSTR);

std::wstring guidText(const GUID& g) {
    wchar_t b[40];
    StringFromGUID2(g, b, 40);
    return b;
}

std::wstring readText(const std::wstring& path, const wchar_t* name = nullptr, HKEY root = HKEY_CLASSES_ROOT) {
    wchar_t buffer[1024] = {};
    DWORD size = sizeof(buffer);
    if (RegGetValueW(root, path.c_str(), name, RRF_RT_REG_SZ, nullptr, buffer, &size) != ERROR_SUCCESS)
        return L"<missing>";
    return buffer;
}

// The classes of the current user, and those of the machine alone (HKEY_CLASSES_ROOT shows
// both on Windows).
UniqueRegKey openClasses(HKEY hive) {
    UniqueRegKey key;
    RegCreateKeyExW(hive, L"Software\\Classes", 0, nullptr, 0, KEY_READ, nullptr, key.put(), nullptr);
    return key;
}

template <class Each>
void forEachSubkey(HKEY key, Each&& each) {
    wchar_t name[256];
    DWORD len = 256;
    for (DWORD i = 0; RegEnumKeyExW(key, i, name, &len, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS; ++i, len = 256)
        each(std::wstring(name));
}

// The identifiers of everything the type library describes: the library, its classes and
// interfaces (records and enumerations too, which registration never writes).
std::set<std::wstring> libraryIdentifiers() {
    std::set<std::wstring> ids = {guidText(LIBID_Vx_Main)};
    ITypeLib* tl = typeLibrary();
    for (UINT i = 0, n = tl ? tl->GetTypeInfoCount() : 0; i < n; ++i) {
        ComPtr<ITypeInfo> info;
        TYPEATTR* attr = nullptr;
        if (FAILED(tl->GetTypeInfo(i, info.put())) || FAILED(info->GetTypeAttr(&attr))) continue;
        ids.insert(guidText(attr->guid));
        info->ReleaseTypeAttr(attr);
    }
    return ids;
}

// Every key below a classes root that belongs to the library: its ProgIDs, and the CLSID,
// Interface and TypeLib keys of its identifiers.
std::set<std::wstring> libraryKeys(HKEY classes = HKEY_CLASSES_ROOT) {
    std::set<std::wstring> found;
    const std::set<std::wstring> ours = libraryIdentifiers();
    for (const wchar_t* root : {L"CLSID", L"Interface", L"TypeLib"}) {
        UniqueRegKey k;
        if (RegOpenKeyExW(classes, root, 0, KEY_READ, k.put()) != ERROR_SUCCESS) continue;
        forEachSubkey(k.get(), [&](const std::wstring& n) {
            if (ours.count(n)) found.insert(std::wstring(root) + L"\\" + n);
        });
    }
    forEachSubkey(classes, [&](const std::wstring& n) {
        if (n.rfind(L"Vx_Main.", 0) == 0) found.insert(n);
    });
    return found;
}

// A key and everything below it, one line a key and one a value (name, type and data),
// for comparing whole trees.
void addTree(HKEY root, const std::wstring& path, std::set<std::wstring>& lines) {
    UniqueRegKey key;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS) return;
    lines.insert(path + L"\\");
    wchar_t name[16384];
    BYTE data[4096];
    for (DWORD i = 0;; ++i) {
        DWORD nameLen = 16384, size = sizeof(data), type = 0;
        if (RegEnumValueW(key.get(), i, name, &nameLen, nullptr, &type, data, &size) != ERROR_SUCCESS) break;
        std::wstring line = path + L"\\[" + name + L"] " + std::to_wstring(type) + L":";
        for (DWORD b = 0; b < size; ++b) line += std::to_wstring(data[b]) + L",";
        lines.insert(line);
    }
    std::vector<std::wstring> children;
    forEachSubkey(key.get(), [&](const std::wstring& n) { children.push_back(n); });
    for (const std::wstring& child : children) addTree(root, path.empty() ? child : path + L"\\" + child, lines);
}

std::set<std::wstring> treeOf(HKEY root, const std::set<std::wstring>& paths = {L""}) {
    std::set<std::wstring> lines;
    for (const std::wstring& path : paths) addTree(root, path, lines);
    return lines;
}

// The key of the library a line of a tree belongs to: "CLSID\{...}" and the like, or a
// ProgID; "" for the CLSID, Interface and TypeLib folders themselves.
std::wstring ownerOf(const std::wstring& line) {
    const size_t first = line.find(L'\\');
    const std::wstring top = line.substr(0, first);
    for (const wchar_t* folder : {L"CLSID", L"Interface", L"TypeLib"}) {
        if (CompareStringOrdinal(top.c_str(), -1, folder, -1, TRUE) != CSTR_EQUAL) continue;
        const size_t second = line.find(L'\\', first + 1);
        if (second == std::wstring::npos || second == first + 1) return L"";
        return std::wstring(folder) + line.substr(first, second - first);
    }
    return top;
}

// What registration writes for the library: every creatable class (CLSID and ProgID),
// the type library and every interface.
std::set<std::wstring> expectedKeys() {
    std::set<std::wstring> keys = {L"TypeLib\\" + guidText(LIBID_Vx_Main)};
    for (const ClassEntry* c = rosterBegin(); c != rosterEnd(); ++c) {
        if (!isCreatable(*c)) continue;
        keys.insert(L"CLSID\\" + guidText(c->classId()));
        keys.insert(L"Vx_Main." + className(*c));
    }
    ITypeLib* tl = typeLibrary();
    for (UINT i = 0, n = tl ? tl->GetTypeInfoCount() : 0; i < n; ++i) {
        ComPtr<ITypeInfo> info;
        TYPEATTR* attr = nullptr;
        if (FAILED(tl->GetTypeInfo(i, info.put())) || FAILED(info->GetTypeAttr(&attr))) continue;
        if (attr->typekind == TKIND_DISPATCH || attr->typekind == TKIND_INTERFACE)
            keys.insert(L"Interface\\" + guidText(attr->guid));
        info->ReleaseTypeAttr(attr);
    }
    return keys;
}

// The registration of Ds_ListCollection and of the type library, below a classes root.
void expectListCollectionRegistered(HKEY classes) {
    const std::wstring list = L"CLSID\\" + guidText(CLSID_Ds_ListCollection);
    EXPECT_EQ(readText(list + L"\\InprocServer32", nullptr, classes), vxtest::dllPath);
    EXPECT_EQ(readText(list + L"\\InprocServer32", L"ThreadingModel", classes), L"Apartment");
    EXPECT_EQ(readText(list + L"\\ProgID", nullptr, classes), L"Vx_Main.Ds_ListCollection");
    EXPECT_EQ(readText(list + L"\\TypeLib", nullptr, classes), guidText(LIBID_Vx_Main));
    EXPECT_EQ(readText(L"Vx_Main.Ds_ListCollection\\CLSID", nullptr, classes), guidText(CLSID_Ds_ListCollection));
    // Early-binding hosts of the DLL's word size find the type library under its platform.
    const std::wstring platform = sizeof(void*) == 8 ? L"win64" : L"win32";
    EXPECT_EQ(readText(L"TypeLib\\" + guidText(LIBID_Vx_Main) + L"\\1.0\\0\\" + platform, nullptr, classes),
              vxtest::dllPath);
    EXPECT_EQ(readText(L"Interface\\" + guidText(IID__Ds_ListCollection) + L"\\ProxyStubClsid32", nullptr, classes),
              L"{00020424-0000-0000-C000-000000000046}");
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
        install_ = reinterpret_cast<InstallFn>(entry("DllInstall"));
        ASSERT_TRUE(registerServer_ && unregisterServer_ && canUnloadNow_ && getClassObject_ && install_);
        // A clean start, whatever ran before.
        ASSERT_EQ(unregisterServer_(), S_OK);
        ASSERT_EQ(install_(FALSE, L"user"), S_OK);
    }

    UniqueModule dll_;
    Fn registerServer_ = nullptr, unregisterServer_ = nullptr, canUnloadNow_ = nullptr;
    GetClassObjectFn getClassObject_ = nullptr;
    InstallFn install_ = nullptr;
    UniqueRegKey userClasses_ = openClasses(HKEY_CURRENT_USER), machineClasses_ = openClasses(HKEY_LOCAL_MACHINE);
};

}  // namespace

TEST_F(Registration, WritesTheClassesAndRemovesExactlyThat) {
    EXPECT_TRUE(libraryKeys().empty());

    ASSERT_EQ(registerServer_(), S_OK);
    EXPECT_EQ(registerServer_(), S_OK);  // twice is harmless
    expectListCollectionRegistered(HKEY_CLASSES_ROOT);
    const std::set<std::wstring> keys = libraryKeys();
    EXPECT_EQ(keys, expectedKeys());
    // A dependent class is described by the type library but not registered as creatable.
    EXPECT_FALSE(keys.count(L"CLSID\\" + guidText(CLSID_Ds_DataCollection)));
    EXPECT_FALSE(keys.count(L"Vx_Main.Ds_DataCollection"));

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

TEST_F(Registration, ForTheUserWritesTheUsersClassesOnlyAndRemovesExactlyThat) {
    ASSERT_TRUE(userClasses_ && machineClasses_);
    const std::set<std::wstring> userBefore = treeOf(userClasses_.get());
    EXPECT_TRUE(libraryKeys(machineClasses_.get()).empty());

    ASSERT_EQ(install_(TRUE, L"user"), S_OK);
    EXPECT_EQ(install_(TRUE, L"User"), S_OK);  // again, in any case
    expectListCollectionRegistered(userClasses_.get());
    // Everything new among the user's classes belongs to a key of the library, and every
    // key of the library is there.
    std::set<std::wstring> owners;
    for (const std::wstring& line : treeOf(userClasses_.get()))
        if (!userBefore.count(line) && !ownerOf(line).empty()) owners.insert(ownerOf(line));
    EXPECT_EQ(owners, expectedKeys());
    EXPECT_TRUE(libraryKeys(machineClasses_.get()).empty());

    ASSERT_EQ(install_(FALSE, L"user"), S_OK);
    EXPECT_EQ(treeOf(userClasses_.get()), userBefore);
    EXPECT_EQ(install_(FALSE, L"user"), S_OK);  // removing what is not there is no failure
}

TEST_F(Registration, ForTheUserLeavesTheMachinesRegistrationAlone) {
    ASSERT_EQ(registerServer_(), S_OK);
    const std::set<std::wstring> machineKeys = libraryKeys(machineClasses_.get());
    const std::set<std::wstring> machine = treeOf(machineClasses_.get(), machineKeys);
    ASSERT_EQ(install_(TRUE, L"user"), S_OK);
    // The user's keys are the machine's, key for key and value for value.
    EXPECT_EQ(treeOf(userClasses_.get(), libraryKeys(userClasses_.get())), machine);
    ASSERT_EQ(install_(FALSE, L"user"), S_OK);
    EXPECT_EQ(treeOf(machineClasses_.get(), libraryKeys(machineClasses_.get())), machine);
    ComPtr<IDispatch> list;
    EXPECT_EQ(CoCreateInstance(CLSID_Ds_ListCollection, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                               reinterpret_cast<void**>(list.put())),
              S_OK);
    list.reset();
    ASSERT_EQ(unregisterServer_(), S_OK);
}

TEST_F(Registration, InstallTakesUserOrNothing) {
    EXPECT_EQ(install_(TRUE, L"everyone"), E_INVALIDARG);
    EXPECT_EQ(install_(TRUE, L"user "), E_INVALIDARG);
    EXPECT_TRUE(libraryKeys(userClasses_.get()).empty());
    EXPECT_TRUE(libraryKeys(machineClasses_.get()).empty());
    // An empty command line (regsvr32 /i alone) is the machine's registration.
    ASSERT_EQ(install_(TRUE, L""), S_OK);
    EXPECT_EQ(libraryKeys(machineClasses_.get()), expectedKeys());
    EXPECT_TRUE(libraryKeys(userClasses_.get()).empty());
    ASSERT_EQ(install_(FALSE, nullptr), S_OK);
    EXPECT_TRUE(libraryKeys(machineClasses_.get()).empty());
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
