#include "registry/RegKey.h"

#include "registry/Reg.h"
#include "shared/Helpers.h"

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
    return guard([&] { registry::keyDelete(hkey_, subKey_.view()); });
}

// Renaming is not supported: the name is accepted and the key keeps its own.
HRESULT RegKey::Rename(BSTR) { return S_OK; }

HRESULT RegKey::IsHasKey(BSTR AddKey, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        // The path is joined as it stands: an empty AddKey tests SubKey followed by "\".
        return registry::hasKey(hkey_, std::wstring(subKey_.view()) + L"\\" + std::wstring(viewOf(AddKey)));
    });
}

HRESULT RegKey::ParentKey(_cRegKeys** result) {
    // The path above SubKey: everything before its last backslash ("" for a key right
    // below the root).
    return deliver(result, [&] { return registry::listKeys(hkey_, parentPath(subKey_.view())); });
}

std::wstring RegKey::childPath(BSTR addKey) {
    const std::wstring_view add = viewOf(addKey);
    // A non-empty AddKey leaves a backslash at the end of the stored SubKey.
    if (!add.empty()) subKey_ = Bstr(std::wstring(subKey_.view()) + L"\\");
    return std::wstring(subKey_.view()) + std::wstring(add);
}

HRESULT RegKey::EnumKey(BSTR AddKey, _cRegKeys** result) {
    return deliver(result, [&] { return registry::listKeys(hkey_, childPath(AddKey)); });
}

HRESULT RegKey::SubValueEnum(BSTR AddKey, _cRegValues** result) {
    return deliver(result, [&] { return registry::listValues(hkey_, childPath(AddKey)); });
}

}  // namespace vx
