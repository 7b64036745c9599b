// A program that uses Vx_Main with nothing registered. Its application manifest (resource
// 1, the build's program.exe.manifest) depends on the assembly Vx_Main.sxs, whose manifest
// lies beside Vx_Main.dll in the program's own folder. It reads the type library from the
// DLL file and, for every class there:
//   - a creatable class is created by CLSID and by ProgID ("Vx_Main.<name>"), and each
//     object answers through IDispatch with the class's own interface;
//   - a dependent class can be created neither way;
// then it calls members of one class by name, finds the type library by its identifier
// and every interface's proxy and stub (the automation marshaller) through the manifest,
// and calls a class from another apartment through that marshaller.
// It first checks that nothing of the library is registered: what it finds, it finds
// through the manifest alone. Prints a line for every failure and "N passed, N failed";
// exit code 0 only when nothing failed.
#include <windows.h>
#include <ole2.h>
#include <oleauto.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

int passed = 0, failed = 0;

void check(bool ok, const std::wstring& what, HRESULT hr = S_OK) {
    if (ok) {
        ++passed;
        return;
    }
    ++failed;
    std::wprintf(L"FAIL %ls (0x%08lX)\n", what.c_str(), static_cast<unsigned long>(hr));
}

std::wstring guidText(const GUID& g) {
    wchar_t b[40] = {};
    StringFromGUID2(g, b, 40);
    return b;
}

bool classesRootHas(const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
}

// The automation marshallers: the type library marshaller serves dual and oleautomation
// interfaces, the IDispatch marshaller dispatch-only ones.
const CLSID typeLibraryMarshaller = {0x00020424, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
const CLSID dispatchMarshaller = {0x00020420, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

struct TypeEntry {
    std::wstring name;
    GUID guid;
    TYPEKIND kind;
    WORD flags;
    GUID defaultInterface = GUID_NULL;  // a coclass's
};

std::vector<TypeEntry> typesOf(ITypeLib* library) {
    std::vector<TypeEntry> types;
    for (UINT i = 0, n = library->GetTypeInfoCount(); i < n; ++i) {
        ITypeInfo* info = nullptr;
        if (FAILED(library->GetTypeInfo(i, &info))) continue;
        TYPEATTR* attr = nullptr;
        BSTR name = nullptr;
        if (SUCCEEDED(info->GetTypeAttr(&attr)) &&
            SUCCEEDED(info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr))) {
            TypeEntry t{name, attr->guid, attr->typekind, attr->wTypeFlags};
            for (UINT k = 0; attr->typekind == TKIND_COCLASS && k < attr->cImplTypes; ++k) {
                INT implFlags = 0;
                HREFTYPE ref = 0;
                ITypeInfo* impl = nullptr;
                TYPEATTR* implAttr = nullptr;
                if (SUCCEEDED(info->GetImplTypeFlags(k, &implFlags)) && implFlags == IMPLTYPEFLAG_FDEFAULT &&
                    SUCCEEDED(info->GetRefTypeOfImplType(k, &ref)) && SUCCEEDED(info->GetRefTypeInfo(ref, &impl)) &&
                    SUCCEEDED(impl->GetTypeAttr(&implAttr))) {
                    t.defaultInterface = implAttr->guid;
                    impl->ReleaseTypeAttr(implAttr);
                }
                if (impl) impl->Release();
            }
            types.push_back(t);
        }
        SysFreeString(name);
        if (attr) info->ReleaseTypeAttr(attr);
        info->Release();
    }
    return types;
}

// An object that describes itself (IDispatch::GetTypeInfo) with the given interface.
bool answersWith(IDispatch* object, const GUID& iid) {
    ITypeInfo* info = nullptr;
    TYPEATTR* attr = nullptr;
    const bool same = object && SUCCEEDED(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info)) &&
                      SUCCEEDED(info->GetTypeAttr(&attr)) && IsEqualGUID(attr->guid, iid);
    if (attr) info->ReleaseTypeAttr(attr);
    if (info) info->Release();
    return same;
}

// Late-bound calls, as a script host makes them.
HRESULT invoke(IDispatch* object, const wchar_t* member, WORD kind, std::vector<VARIANT> args, VARIANT* result) {
    DISPID id = 0;
    LPOLESTR name = const_cast<LPOLESTR>(member);
    HRESULT hr = object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(hr)) return hr;
    std::vector<VARIANT> reversed(args.rbegin(), args.rend());
    DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &params, result, nullptr, nullptr);
}

VARIANT text(const wchar_t* s) {
    VARIANT v;
    VariantInit(&v);
    v.vt = VT_BSTR;
    v.bstrVal = SysAllocString(s);
    return v;
}

// Keyed records in and out of a Ds_ListCollection made by ProgID.
void useList() {
    CLSID clsid;
    IDispatch* list = nullptr;
    HRESULT hr = CLSIDFromProgID(L"Vx_Main.Ds_ListCollection", &clsid);
    if (SUCCEEDED(hr)) hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&list));
    check(SUCCEEDED(hr), L"Vx_Main.Ds_ListCollection for the calls", hr);
    if (!list) return;
    VARIANT a = text(L"Sara"), k = text(L"s1"), result;
    VariantInit(&result);
    hr = invoke(list, L"Add", DISPATCH_METHOD, {a, k}, &result);
    check(SUCCEEDED(hr), L"Add", hr);
    VariantClear(&result);
    hr = invoke(list, L"Count", DISPATCH_PROPERTYGET, {}, &result);
    check(SUCCEEDED(hr) && result.vt == VT_I4 && result.lVal == 1, L"Count is 1", hr);
    VariantClear(&result);
    VARIANT key = text(L"S1");
    hr = invoke(list, L"Item", DISPATCH_METHOD | DISPATCH_PROPERTYGET, {key}, &result);
    check(SUCCEEDED(hr) && result.vt == VT_DISPATCH && result.pdispVal, L"Item(\"S1\") is the record", hr);
    if (SUCCEEDED(hr) && result.vt == VT_DISPATCH && result.pdispVal) {
        VARIANT value;
        VariantInit(&value);
        hr = invoke(result.pdispVal, L"ValueA", DISPATCH_PROPERTYGET, {}, &value);
        check(SUCCEEDED(hr) && value.vt == VT_BSTR && std::wstring(value.bstrVal) == L"Sara", L"its ValueA is Sara", hr);
        VariantClear(&value);
    }
    VariantClear(&result);
    VariantClear(&key);
    VariantClear(&a);
    VariantClear(&k);
    list->Release();
}

// A call from another apartment: the object's dual interface goes to a thread of the
// multithreaded apartment through the marshaller the manifest names for it.
struct CrossCall {
    IStream* stream = nullptr;
    HRESULT hr = E_FAIL;
    LONG count = -1;
};

DWORD WINAPI callFromOtherApartment(void* p) {
    auto* call = static_cast<CrossCall*>(p);
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    IDispatch* proxy = nullptr;
    call->hr = CoGetInterfaceAndReleaseStream(call->stream, IID_IDispatch, reinterpret_cast<void**>(&proxy));
    if (SUCCEEDED(call->hr)) {
        VARIANT result;
        VariantInit(&result);
        call->hr = invoke(proxy, L"Count", DISPATCH_PROPERTYGET, {}, &result);
        if (SUCCEEDED(call->hr) && result.vt == VT_I4) call->count = result.lVal;
        VariantClear(&result);
        proxy->Release();
    }
    CoUninitialize();
    return 0;
}

void callAcrossApartments(const TypeEntry& listClass) {
    IUnknown* list = nullptr;
    HRESULT hr = CoCreateInstance(listClass.guid, nullptr, CLSCTX_INPROC_SERVER, listClass.defaultInterface,
                                  reinterpret_cast<void**>(&list));
    CrossCall call;
    if (SUCCEEDED(hr)) hr = CoMarshalInterThreadInterfaceInStream(listClass.defaultInterface, list, &call.stream);
    check(SUCCEEDED(hr), L"the list's own interface is marshalled to another apartment", hr);
    if (SUCCEEDED(hr)) {
        HANDLE thread = CreateThread(nullptr, 0, callFromOtherApartment, &call, 0, nullptr);
        DWORD index = 0;
        // The apartment's thread serves the call while it waits.
        if (thread) CoWaitForMultipleHandles(0, INFINITE, 1, &thread, &index);
        if (thread) CloseHandle(thread);
        check(SUCCEEDED(call.hr) && call.count == 0, L"Count called from another apartment", call.hr);
    }
    if (list) list->Release();
}

}  // namespace

int wmain() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    wchar_t self[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::wstring dll(self);
    dll = dll.substr(0, dll.find_last_of(L'\\') + 1) + L"Vx_Main.dll";

    ITypeLib* library = nullptr;
    HRESULT hr = LoadTypeLibEx(dll.c_str(), REGKIND_NONE, &library);
    check(SUCCEEDED(hr), L"the type library is read from " + dll, hr);
    if (!library) {
        std::wprintf(L"%d passed, %d failed\n", passed, failed);
        return 1;
    }
    TLIBATTR* libAttr = nullptr;
    library->GetLibAttr(&libAttr);
    const TLIBATTR lib = *libAttr;
    library->ReleaseTLibAttr(libAttr);
    const std::vector<TypeEntry> types = typesOf(library);

    // Nothing of the library is registered.
    bool registered = classesRootHas(L"TypeLib\\" + guidText(lib.guid));
    for (const TypeEntry& t : types)
        if (t.kind == TKIND_COCLASS)
            registered = registered || classesRootHas(L"CLSID\\" + guidText(t.guid)) ||
                         classesRootHas(L"Vx_Main." + t.name);
    check(!registered, L"nothing of the library is registered: the test needs a clean prefix");

    // Every class: creatable ones by CLSID and by ProgID, dependent ones not at all.
    int creatable = 0;
    const TypeEntry* listClass = nullptr;
    for (const TypeEntry& t : types) {
        if (t.kind != TKIND_COCLASS) continue;
        const std::wstring progId = L"Vx_Main." + t.name;
        IDispatch* object = nullptr;
        CLSID fromProgId = GUID_NULL;
        HRESULT byClsid = CoCreateInstance(t.guid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object));
        HRESULT byProgId = CLSIDFromProgID(progId.c_str(), &fromProgId);
        if (!(t.flags & TYPEFLAG_FCANCREATE)) {
            check(FAILED(byClsid), t.name + L" (dependent) cannot be created", byClsid);
            check(FAILED(byProgId), t.name + L" (dependent) has no ProgID", byProgId);
            if (object) object->Release();
            continue;
        }
        ++creatable;
        if (t.name == L"Ds_ListCollection") listClass = &t;
        check(SUCCEEDED(byClsid) && answersWith(object, t.defaultInterface), t.name + L" is created by CLSID", byClsid);
        if (object) object->Release();
        // The CLSID a ProgID gives in an activation context is one the context makes up
        // for the class, not the class's own: it creates the class all the same.
        object = nullptr;
        if (SUCCEEDED(byProgId))
            byProgId = CoCreateInstance(fromProgId, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object));
        check(SUCCEEDED(byProgId) && answersWith(object, t.defaultInterface), t.name + L" is created by ProgID " + progId, byProgId);
        if (object) object->Release();
    }
    check(creatable > 0, L"the type library has creatable classes");
    useList();

    // The type library by its identifier, and the interfaces' proxies and stubs.
    ITypeLib* found = nullptr;
    hr = LoadRegTypeLib(lib.guid, lib.wMajorVerNum, lib.wMinorVerNum, 0, &found);
    check(SUCCEEDED(hr), L"the type library is found by its identifier and version", hr);
    if (found) found->Release();
    BSTR path = nullptr;
    hr = QueryPathOfRegTypeLib(lib.guid, lib.wMajorVerNum, lib.wMinorVerNum, 0, &path);
    check(SUCCEEDED(hr) && path && lstrcmpiW(path, dll.c_str()) == 0, L"its path is the DLL beside the program", hr);
    SysFreeString(path);
    for (const TypeEntry& t : types) {
        if (t.kind != TKIND_INTERFACE && t.kind != TKIND_DISPATCH) continue;
        const bool dispatchOnly = t.kind == TKIND_DISPATCH && !(t.flags & TYPEFLAG_FDUAL);
        CLSID ps = GUID_NULL;
        hr = CoGetPSClsid(t.guid, &ps);
        check(SUCCEEDED(hr) && IsEqualCLSID(ps, dispatchOnly ? dispatchMarshaller : typeLibraryMarshaller),
              t.name + L" has the automation marshaller", hr);
    }
    if (listClass) callAcrossApartments(*listClass);
    check(listClass != nullptr, L"Ds_ListCollection is among the classes");

    library->Release();
    CoUninitialize();
    std::wprintf(L"%d passed, %d failed\n", passed, failed);
    return failed == 0 ? 0 : 1;
}
