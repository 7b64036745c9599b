#include "core/server/Registration.h"

#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/Handles.h"
#include "core/runtime/ComPtr.h"
#include "core/runtime/Module.h"
#include "core/runtime/Variant.h"
#include "core/server/Roster.h"

#include "core/runtime/Platform.h"

#include <string>
#include <string_view>
#include <vector>

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

// The interfaces of the type library that the automation marshallers serve, each with
// its marshaller: the type library marshaller for dual and oleautomation interfaces, the
// IDispatch marshaller for dispatch-only ones.
struct InterfaceEntry {
    std::wstring iid, name;
    const wchar_t* marshaller;
};

std::vector<InterfaceEntry> automationInterfaces(ITypeLib* library) {
    std::vector<InterfaceEntry> found;
    for (UINT i = 0, n = library->GetTypeInfoCount(); i < n; ++i) {
        ComPtr<ITypeInfo> info;
        TYPEATTR* attr = nullptr;
        if (FAILED(library->GetTypeInfo(i, info.put())) || FAILED(info->GetTypeAttr(&attr))) continue;
        const bool dual = attr->wTypeFlags & TYPEFLAG_FDUAL;
        const bool served = attr->typekind == TKIND_DISPATCH ||
                            (attr->typekind == TKIND_INTERFACE && (attr->wTypeFlags & (TYPEFLAG_FDUAL | TYPEFLAG_FOLEAUTOMATION)));
        Bstr name;
        if (served && SUCCEEDED(info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr)))
            found.push_back({guidText(attr->guid), name.str(),
                             attr->typekind == TKIND_DISPATCH && !dual ? L"{00020420-0000-0000-C000-000000000046}"
                                                                      : L"{00020424-0000-0000-C000-000000000046}"});
        info->ReleaseTypeAttr(attr);
    }
    return found;
}

std::wstring versionKey(const TLIBATTR& a) {
    wchar_t v[24];
    swprintf(v, 24, L"%x.%x", a.wMajorVerNum, a.wMinorVerNum);
    return v;
}

// The type library and its interfaces in the user's classes, as RegisterTypeLib writes
// them in the machine's: written here key by key, so that nothing reaches another root.
HRESULT registerTypeLibraryForUser(HKEY root, ITypeLib* library, const TLIBATTR& a, const std::wstring& path) {
    const std::wstring libId = guidText(a.guid), key = L"TypeLib\\" + libId + L"\\" + versionKey(a);
    Bstr name, doc;
    HRESULT hr = library->GetDocumentation(MEMBERID_NIL, name.put(), doc.put(), nullptr, nullptr);
    if (FAILED(hr)) return hr;
    wchar_t lcid[16], flags[16];
    swprintf(lcid, 16, L"%lx", static_cast<unsigned long>(a.lcid));
    swprintf(flags, 16, L"%u", a.wLibFlags);
    LSTATUS s = ERROR_SUCCESS;
    auto step = [&s](LSTATUS r) { if (s == ERROR_SUCCESS) s = r; };
    step(setText(root, key, nullptr, doc.str().empty() ? name.str() : doc.str()));
    step(setText(root, key + L"\\" + lcid + (a.syskind == SYS_WIN64 ? L"\\win64" : L"\\win32"), nullptr, path));
    step(setText(root, key + L"\\FLAGS", nullptr, flags));
    step(setText(root, key + L"\\HELPDIR", nullptr, path.substr(0, path.find_last_of(L'\\'))));
    for (const InterfaceEntry& i : automationInterfaces(library)) {
        const std::wstring k = L"Interface\\" + i.iid;
        step(setText(root, k, nullptr, i.name));
        step(setText(root, k + L"\\ProxyStubClsid", nullptr, i.marshaller));
        step(setText(root, k + L"\\ProxyStubClsid32", nullptr, i.marshaller));
        step(setText(root, k + L"\\TypeLib", nullptr, libId));
        step(setText(root, k + L"\\TypeLib", L"Version", std::to_wstring(a.wMajorVerNum) + L"." + std::to_wstring(a.wMinorVerNum)));
    }
    return HRESULT_FROM_WIN32(s);
}

void unregisterTypeLibraryForUser(HKEY root, ITypeLib* library, const TLIBATTR& a) {
    for (const InterfaceEntry& i : automationInterfaces(library)) deleteTree(root, L"Interface\\" + i.iid);
    const std::wstring lib = L"TypeLib\\" + guidText(a.guid);
    deleteTree(root, lib + L"\\" + versionKey(a));
    deleteIfEmpty(root, lib.c_str());
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
        TLIBATTR* attr = nullptr;
        HRESULT hr = tl->GetLibAttr(&attr);
        if (FAILED(hr)) return hr;
        const TLIBATTR lib = *attr;
        tl->ReleaseTLibAttr(attr);
        hr = scope == RegistrationScope::Machine ? RegisterTypeLib(tl, const_cast<OLECHAR*>(path.c_str()), nullptr)
                                                 : registerTypeLibraryForUser(root.key(), tl, lib, path);
        if (FAILED(hr)) {
            unregisterServer(scope);
            return hr;
        }
        const std::wstring libId = guidText(lib.guid);
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
        if (scope == RegistrationScope::User)
            unregisterTypeLibraryForUser(root.key(), tl, *attr);
        else if (keyExists(root.key(), L"TypeLib\\" + guidText(attr->guid)))
            hr = UnRegisterTypeLib(attr->guid, attr->wMajorVerNum, attr->wMinorVerNum, attr->lcid, attr->syskind);
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
