#include "core/server/Registration.h"

#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/Handles.h"
#include "core/runtime/Module.h"
#include "core/server/Roster.h"

#include "core/runtime/Platform.h"

#include <string>
#include <string_view>

// Part of oleaut32 since Windows Vista; mingw-w64's oleauto.h does not declare them.
extern "C" HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* helpFolder);
extern "C" HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID libId, WORD major, WORD minor, LCID lcid, SYSKIND kind);

namespace vx {

namespace {

std::wstring guidText(const GUID& g) {
    wchar_t buffer[40] = {};
    StringFromGUID2(g, buffer, 40);
    return buffer;
}

// The key every path of a registration is relative to: HKEY_CLASSES_ROOT for the
// machine, HKEY_CURRENT_USER\Software\Classes for the user (created when a profile lacks it).
class ClassesRoot {
public:
    explicit ClassesRoot(RegistrationScope scope) : scope_(scope) {
        if (scope == RegistrationScope::Machine) return;
        status_ = RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                  user_.put(), nullptr);
    }
    RegistrationScope scope() const noexcept { return scope_; }
    HKEY key() const noexcept { return scope_ == RegistrationScope::Machine ? HKEY_CLASSES_ROOT : user_.get(); }
    LSTATUS status() const noexcept { return status_; }

private:
    RegistrationScope scope_;
    UniqueRegKey user_;
    LSTATUS status_ = ERROR_SUCCESS;
};

// The type library's own registration in the user's scope goes through the ForUser
// calls, with HKEY_CLASSES_ROOT mapped onto the user's classes while they run (as
// per-user registration has long been done): an oleaut32 whose ForUser calls write
// through HKEY_CLASSES_ROOT then still writes the user's keys, never the machine's.
class UserClassesAsClassesRoot {
public:
    explicit UserClassesAsClassesRoot(HKEY userClasses) noexcept
        : mapped_(userClasses && RegOverridePredefKey(HKEY_CLASSES_ROOT, userClasses) == ERROR_SUCCESS) {}
    ~UserClassesAsClassesRoot() {
        if (mapped_) RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
    }
    UserClassesAsClassesRoot(const UserClassesAsClassesRoot&) = delete;
    UserClassesAsClassesRoot& operator=(const UserClassesAsClassesRoot&) = delete;

private:
    bool mapped_;
};

HRESULT registerTypeLibrary(const ClassesRoot& root, ITypeLib* library, const std::wstring& path) {
    auto* file = const_cast<OLECHAR*>(path.c_str());
    if (root.scope() == RegistrationScope::Machine) return RegisterTypeLib(library, file, nullptr);
    UserClassesAsClassesRoot mapped(root.key());
    return RegisterTypeLibForUser(library, file, nullptr);
}

HRESULT unregisterTypeLibrary(const ClassesRoot& root, const TLIBATTR& a) {
    if (root.scope() == RegistrationScope::Machine)
        return UnRegisterTypeLib(a.guid, a.wMajorVerNum, a.wMinorVerNum, a.lcid, a.syskind);
    UserClassesAsClassesRoot mapped(root.key());
    return UnRegisterTypeLibForUser(a.guid, a.wMajorVerNum, a.wMinorVerNum, a.lcid, a.syskind);
}

// Sets a text value (name null: the key's default value), creating the key as needed.
LSTATUS setText(HKEY root, const std::wstring& keyPath, const wchar_t* name, const std::wstring& value) {
    UniqueRegKey key;
    LSTATUS s = RegCreateKeyExW(root, keyPath.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, key.put(), nullptr);
    if (s != ERROR_SUCCESS) return s;
    return RegSetValueExW(key.get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                          static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

LSTATUS createKey(HKEY root, const std::wstring& keyPath) {
    UniqueRegKey key;
    return RegCreateKeyExW(root, keyPath.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, key.put(), nullptr);
}

bool keyExists(HKEY root, const std::wstring& keyPath) {
    UniqueRegKey key;
    return RegOpenKeyExW(root, keyPath.c_str(), 0, KEY_READ, key.put()) == ERROR_SUCCESS;
}

// Deletes a key below the root with everything below it.
void deleteTree(HKEY root, const std::wstring& keyPath) {
    {
        UniqueRegKey key;
        if (RegOpenKeyExW(root, keyPath.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS) return;
        for (;;) {
            wchar_t name[256];
            DWORD len = 256;
            if (RegEnumKeyExW(key.get(), 0, name, &len, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
            std::wstring child = keyPath + L"\\" + name;
            deleteTree(root, child);
            // A subkey that cannot be removed would make this loop endless.
            if (keyExists(root, child)) break;
        }
    }
    RegDeleteKeyW(root, keyPath.c_str());
}

// Deletes a key that has neither subkeys nor values.
void deleteIfEmpty(HKEY root, const wchar_t* keyPath) {
    DWORD subkeys = 1, values = 1;
    {
        UniqueRegKey key;
        if (RegOpenKeyExW(root, keyPath, 0, KEY_READ, key.put()) != ERROR_SUCCESS ||
            RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values, nullptr, nullptr,
                             nullptr, nullptr) != ERROR_SUCCESS)
            return;
    }
    if (subkeys == 0 && values == 0) RegDeleteKeyW(root, keyPath);
}

HRESULT registerClass(HKEY root, const ClassEntry& c, const std::wstring& dllPath, const std::wstring& libId) {
    const std::wstring clsid = guidText(c.classId()), key = classKeyPath(c.classId()), prog = progId(className(c));
    LSTATUS s = ERROR_SUCCESS;
    auto step = [&s](LSTATUS r) { if (s == ERROR_SUCCESS) s = r; };
    step(setText(root, key, nullptr, prog));
    step(setText(root, key + L"\\InprocServer32", nullptr, dllPath));
    step(setText(root, key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"));
    step(setText(root, key + L"\\ProgID", nullptr, prog));
    step(setText(root, key + L"\\VERSION", nullptr, L"1.0"));
    step(setText(root, key + L"\\TypeLib", nullptr, libId));
    step(createKey(root, key + L"\\Programmable"));
    step(setText(root, prog, nullptr, prog));
    step(setText(root, prog + L"\\CLSID", nullptr, clsid));
    return HRESULT_FROM_WIN32(s);
}

}  // namespace

std::wstring classKeyPath(const CLSID& clsid) { return L"CLSID\\" + guidText(clsid); }
std::wstring progId(const std::wstring& className) { return L"Vx_Main." + className; }

HRESULT registerServer(RegistrationScope scope) noexcept {
    try {
        const ClassesRoot root(scope);
        if (root.status() != ERROR_SUCCESS) return HRESULT_FROM_WIN32(root.status());
        const std::wstring path = module::path();
        ITypeLib* tl = typeLibrary();
        if (!tl) return TYPE_E_CANTLOADLIBRARY;
        HRESULT hr = registerTypeLibrary(root, tl, path);
        if (FAILED(hr)) return hr;
        TLIBATTR* attr = nullptr;
        hr = tl->GetLibAttr(&attr);
        if (FAILED(hr)) {
            unregisterServer(scope);
            return hr;
        }
        const std::wstring libId = guidText(attr->guid);
        tl->ReleaseTLibAttr(attr);
        for (const ClassEntry* c = rosterBegin(); c != rosterEnd(); ++c) {
            if (!isCreatable(*c)) continue;
            hr = registerClass(root.key(), *c, path, libId);
            if (FAILED(hr)) {
                unregisterServer(scope);
                return hr;
            }
        }
        return S_OK;
    } catch (...) {
        unregisterServer(scope);
        return E_OUTOFMEMORY;
    }
}

HRESULT unregisterServer(RegistrationScope scope) noexcept {
    try {
        const ClassesRoot root(scope);
        if (root.status() != ERROR_SUCCESS) return HRESULT_FROM_WIN32(root.status());
        for (const ClassEntry* c = rosterBegin(); c != rosterEnd(); ++c) {
            if (!isCreatable(*c)) continue;
            deleteTree(root.key(), classKeyPath(c->classId()));
            deleteTree(root.key(), progId(className(*c)));
        }
        ITypeLib* tl = typeLibrary();
        if (!tl) return TYPE_E_CANTLOADLIBRARY;
        TLIBATTR* attr = nullptr;
        HRESULT hr = tl->GetLibAttr(&attr);
        if (FAILED(hr)) return hr;
        // Unregistering what is not registered is not a failure.
        if (keyExists(root.key(), L"TypeLib\\" + guidText(attr->guid))) hr = unregisterTypeLibrary(root, *attr);
        tl->ReleaseTLibAttr(attr);
        // The user's classes keep no empty folder that registration may have made.
        if (scope == RegistrationScope::User)
            for (const wchar_t* folder : {L"CLSID", L"Interface", L"TypeLib"}) deleteIfEmpty(root.key(), folder);
        return hr;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT install(bool install, const wchar_t* commandLine) noexcept {
    const std::wstring_view line = commandLine ? commandLine : L"";
    RegistrationScope scope = RegistrationScope::Machine;
    if (CompareStringOrdinal(line.data(), static_cast<int>(line.size()), L"user", -1, TRUE) == CSTR_EQUAL)
        scope = RegistrationScope::User;
    else if (!line.empty())
        return E_INVALIDARG;
    return install ? registerServer(scope) : unregisterServer(scope);
}

}  // namespace vx
