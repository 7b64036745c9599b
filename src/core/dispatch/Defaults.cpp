#include "core/dispatch/Defaults.h"

#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/ComPtr.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Variant.h"

#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace vx {

namespace {

// The part of an interface that describes its members with their parameters: a dual
// interface's vtable side, or the interface itself.
ComPtr<ITypeInfo> memberInfo(REFIID iface) {
    ComPtr<ITypeInfo> info = ComPtr<ITypeInfo>::adopt(typeInfoOf(iface));
    HREFTYPE ref = 0;
    ComPtr<ITypeInfo> vtable;
    if (info && SUCCEEDED(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &ref)) &&
        SUCCEEDED(info->GetRefTypeInfo(ref, vtable.put())))
        return vtable;
    return info;
}

// Reads the default from the type library; false when it has none.
bool readDefault(REFIID iface, std::wstring_view member, std::wstring_view parameter, Variant& value) {
    ComPtr<ITypeInfo> info = memberInfo(iface);
    if (!info) return false;
    TYPEATTR* attr = nullptr;
    if (FAILED(info->GetTypeAttr(&attr))) return false;
    const UINT functions = attr->cFuncs;
    info->ReleaseTypeAttr(attr);
    for (UINT f = 0; f < functions; ++f) {
        FUNCDESC* fd = nullptr;
        if (FAILED(info->GetFuncDesc(f, &fd))) continue;
        std::vector<BSTR> names(static_cast<size_t>(fd->cParams) + 1, nullptr);
        UINT count = 0;
        info->GetNames(fd->memid, names.data(), static_cast<UINT>(names.size()), &count);
        bool found = false;
        if (count > 0 && viewOf(names[0]) == member) {
            for (UINT i = 1; i < count && !found; ++i) {
                const PARAMDESC& p = fd->lprgelemdescParam[i - 1].paramdesc;
                if (viewOf(names[i]) != parameter || !(p.wParamFlags & PARAMFLAG_FHASDEFAULT) || !p.pparamdescex)
                    continue;
                value = Variant::copyOf(p.pparamdescex->varDefaultValue);
                found = true;
            }
        }
        for (BSTR n : names) SysFreeString(n);
        info->ReleaseFuncDesc(fd);
        if (found) return true;
    }
    return false;
}

}  // namespace

const VARIANT& declaredDefault(REFIID iface, std::wstring_view member, std::wstring_view parameter) {
    // Found defaults are kept; a failed look-up is not, so that it is tried again.
    using Key = std::tuple<std::wstring, std::wstring, std::wstring>;
    static std::map<Key, Variant> known;
    wchar_t guid[40] = {};
    StringFromGUID2(iface, guid, 40);
    Key key{guid, std::wstring(member), std::wstring(parameter)};
    auto it = known.find(key);
    if (it != known.end()) return *it->second;
    Variant value;
    if (!readDefault(iface, member, parameter, value)) raise(err::InternalError);
    return *known.emplace(std::move(key), std::move(value)).first->second;
}

const VARIANT& argumentOr(const VARIANT* arg, REFIID iface, std::wstring_view member, std::wstring_view parameter) {
    if (!arg || isMissing(*arg)) return declaredDefault(iface, member, parameter);
    return deref(*arg);
}

LONG argumentOr(const LONG* arg, REFIID iface, std::wstring_view member, std::wstring_view parameter) {
    return arg ? *arg : toInt32(declaredDefault(iface, member, parameter));
}

bool argumentOr(const VARIANT_BOOL* arg, REFIID iface, std::wstring_view member, std::wstring_view parameter) {
    return arg ? *arg != VARIANT_FALSE : toBool(declaredDefault(iface, member, parameter));
}

std::wstring argumentOr(const BSTR* arg, REFIID iface, std::wstring_view member, std::wstring_view parameter) {
    return arg ? std::wstring(viewOf(*arg)) : toText(declaredDefault(iface, member, parameter));
}

}  // namespace vx
