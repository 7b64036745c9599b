#include "registry/RegKey.h"

#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "registry/Reg.h"
#include "text/MyVaribleFunction.h"

namespace vx {

HRESULT RegKey::get_HKey(Reg_Type* value) { return giveField(hkey_, value); }
HRESULT RegKey::put_HKey(Reg_Type value) { hkey_ = value; return S_OK; }
HRESULT RegKey::get_CountKey(LONG* value) { return giveField(countKey_, value); }
HRESULT RegKey::put_CountKey(LONG value) { countKey_ = value; return S_OK; }

HRESULT RegKey::get_SubKey(BSTR* value) { return giveText(subKey_.view(), value); }

HRESULT RegKey::put_SubKey(BSTR value) { return takeText(subKey_, value); }

HRESULT RegKey::get_KeyName(BSTR* value) { return giveText(keyName_.view(), value); }

HRESULT RegKey::put_KeyName(BSTR value) { return takeText(keyName_, value); }

HRESULT RegKey::Delete() {
    return guard([&] {
        auto reg = Reg::createPrivate();
        Bstr path(subKey_);
        check(reg->KeyDelete(path.get(), hkey_));
    });
}

// Renaming is not supported: the name is accepted and the key keeps its own.
HRESULT RegKey::Rename(BSTR) { return S_OK; }

HRESULT RegKey::IsHasKey(BSTR AddKey, VARIANT_BOOL* result) {
    if (!result) return E_POINTER;
    *result = VARIANT_FALSE;
    return guard([&] {
        // The path is joined as it stands: an empty AddKey tests SubKey followed by "\".
        Bstr path(std::wstring(subKey_.view()) + L"\\" + std::wstring(viewOf(AddKey)));
        auto reg = Reg::createPrivate();
        check(reg->IsHasKey(hkey_, path.get(), result));
    });
}

HRESULT RegKey::ParentKey(_cRegKeys** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] {
        // The path above SubKey: everything before its last backslash (Empty, so "", for a
        // key right below the root).
        ComPtr<_Ds_MyVaribleFunction> helper(MyVaribleFunction::create().get());
        Variant data = Variant::fromText(subKey_.view()), index = Variant::fromShort(0),
                separator = Variant::fromText(L"\\"), last = Variant::fromShort(2), parent;
        Flag_PathClip mode = MyVaribleFunction::LeftPathFull;
        check(helper->GetVar(data.get(), index.get(), separator.get(), &mode, last.get(), parent.put()));
        Bstr parentPath(toText(*parent));
        auto reg = Reg::createPrivate();
        check(reg->ListKeys(hkey_, parentPath.get(), result));
    });
}

std::wstring RegKey::childPath(BSTR addKey) {
    const std::wstring_view add = viewOf(addKey);
    // A non-empty AddKey leaves a backslash at the end of the stored SubKey.
    if (!add.empty()) subKey_ = Bstr(std::wstring(subKey_.view()) + L"\\");
    return std::wstring(subKey_.view()) + std::wstring(add);
}

HRESULT RegKey::EnumKey(BSTR AddKey, _cRegKeys** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] {
        Bstr path(childPath(AddKey));
        auto reg = Reg::createPrivate();
        check(reg->ListKeys(hkey_, path.get(), result));
    });
}

HRESULT RegKey::SubValueEnum(BSTR AddKey, _cRegValues** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] {
        Bstr path(childPath(AddKey));
        auto reg = Reg::createPrivate();
        check(reg->ListValues(hkey_, path.get(), result));
    });
}

}  // namespace vx
