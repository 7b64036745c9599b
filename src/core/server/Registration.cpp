#include "core/server/Registration.h"

#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/Handles.h"
#include "core/runtime/Module.h"
#include "core/server/Roster.h"

#include "core/runtime/Platform.h"

#include <string>

namespace vx {

namespace {

std::wstring guidText(const GUID& g) {
    wchar_t buffer[40] = {};
    StringFromGUID2(g, buffer, 40);
    return buffer;
}

// Sets a text value (name null: the key's default value), creating the key as needed.
LSTATUS setText(const std::wstring& keyPath, const wchar_t* name, const std::wstring& value) {
    UniqueRegKey key;
    LSTATUS s = RegCreateKeyExW(HKEY_CLASSES_ROOT, keyPath.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, key.put(), nullptr);
    if (s != ERROR_SUCCESS) return s;
    return RegSetValueExW(key.get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                          static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

LSTATUS createKey(const std::wstring& keyPath) {
    UniqueRegKey key;
    return RegCreateKeyExW(HKEY_CLASSES_ROOT, keyPath.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, key.put(), nullptr);
}

// Deletes a key of HKEY_CLASSES_ROOT with everything below it.
void deleteTree(const std::wstring& keyPath) {
    {
        UniqueRegKey key;
        if (RegOpenKeyExW(HKEY_CLASSES_ROOT, keyPath.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS) return;
        for (;;) {
            wchar_t name[256];
            DWORD len = 256;
            if (RegEnumKeyExW(key.get(), 0, name, &len, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
            std::wstring child = keyPath + L"\\" + name;
            deleteTree(child);
            // A subkey that cannot be removed would make this loop endless.
            UniqueRegKey check;
            if (RegOpenKeyExW(HKEY_CLASSES_ROOT, child.c_str(), 0, KEY_READ, check.put()) == ERROR_SUCCESS) break;
        }
    }
    RegDeleteKeyW(HKEY_CLASSES_ROOT, keyPath.c_str());
}

HRESULT registerClass(const ClassEntry& c, const std::wstring& dllPath, const std::wstring& libId) {
    const std::wstring clsid = guidText(c.classId()), key = classKeyPath(c.classId()), prog = progId(className(c));
    LSTATUS s = ERROR_SUCCESS;
    auto step = [&s](LSTATUS r) { if (s == ERROR_SUCCESS) s = r; };
    step(setText(key, nullptr, prog));
    step(setText(key + L"\\InprocServer32", nullptr, dllPath));
    step(setText(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"));
    step(setText(key + L"\\ProgID", nullptr, prog));
    step(setText(key + L"\\VERSION", nullptr, L"1.0"));
    step(setText(key + L"\\TypeLib", nullptr, libId));
    step(createKey(key + L"\\Programmable"));
    step(setText(prog, nullptr, prog));
    step(setText(prog + L"\\CLSID", nullptr, clsid));
    return HRESULT_FROM_WIN32(s);
}

}  // namespace

std::wstring classKeyPath(const CLSID& clsid) { return L"CLSID\\" + guidText(clsid); }
std::wstring progId(const std::wstring& className) { return L"Vx_Main." + className; }

HRESULT registerServer() noexcept {
    try {
        const std::wstring path = module::path();
        ITypeLib* tl = typeLibrary();
        if (!tl) return TYPE_E_CANTLOADLIBRARY;
        HRESULT hr = RegisterTypeLib(tl, const_cast<OLECHAR*>(path.c_str()), nullptr);
        if (FAILED(hr)) return hr;
        TLIBATTR* attr = nullptr;
        hr = tl->GetLibAttr(&attr);
        if (FAILED(hr)) {
            unregisterServer();
            return hr;
        }
        const std::wstring libId = guidText(attr->guid);
        tl->ReleaseTLibAttr(attr);
        for (const ClassEntry* c = rosterBegin(); c != rosterEnd(); ++c) {
            if (!isCreatable(*c)) continue;
            hr = registerClass(*c, path, libId);
            if (FAILED(hr)) {
                unregisterServer();
                return hr;
            }
        }
        return S_OK;
    } catch (...) {
        unregisterServer();
        return E_OUTOFMEMORY;
    }
}

HRESULT unregisterServer() noexcept {
    try {
        for (const ClassEntry* c = rosterBegin(); c != rosterEnd(); ++c) {
            if (!isCreatable(*c)) continue;
            deleteTree(classKeyPath(c->classId()));
            deleteTree(progId(className(*c)));
        }
        ITypeLib* tl = typeLibrary();
        if (!tl) return TYPE_E_CANTLOADLIBRARY;
        TLIBATTR* attr = nullptr;
        HRESULT hr = tl->GetLibAttr(&attr);
        if (FAILED(hr)) return hr;
        // Unregistering what is not registered is not a failure.
        const std::wstring libKey = L"TypeLib\\" + guidText(attr->guid);
        UniqueRegKey registered;
        if (RegOpenKeyExW(HKEY_CLASSES_ROOT, libKey.c_str(), 0, KEY_READ, registered.put()) == ERROR_SUCCESS)
            hr = UnRegisterTypeLib(attr->guid, attr->wMajorVerNum, attr->wMinorVerNum, attr->lcid, attr->syskind);
        tl->ReleaseTLibAttr(attr);
        return hr;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

}  // namespace vx
