#include "desktop/ListChild.h"

#include "core/runtime/Convert.h"
#include "core/runtime/Text.h"
#include "desktop/ENumAction.h"
#include "desktop/WindowModule.h"

namespace vx {

ComPtr<_Ds_ENumAction> ListChild::addEntry(Which which, LONG hwnd, const std::wstring& key) {
    ComPtr<_Ds_ENumAction> entry = ENumAction::forWindow(hwnd, key);
    if (key.empty())
        list(which).add(entry);
    else
        list(which).add(entry, key);
    return entry;
}

HRESULT ListChild::get_Count(LONG* value) {
    if (!value) return E_POINTER;
    *value = main_.count();
    return S_OK;
}

HRESULT ListChild::Remove(VARIANT* Index) {
    if (!Index) return E_POINTER;
    return guard([&] { main_.remove(*Index); });
}

HRESULT ListChild::item(Which which, const VARIANT& index, _Ds_ENumAction** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] { *result = ComPtr<_Ds_ENumAction>(list(which).item(index)).detach(); });
}

HRESULT ListChild::ItemTitle(VARIANT Index, _Ds_ENumAction** result) { return item(Titles, Index, result); }
HRESULT ListChild::ItemClass(VARIANT Index, _Ds_ENumAction** result) { return item(Classes, Index, result); }
HRESULT ListChild::Item(VARIANT Index, _Ds_ENumAction** result) { return item(Main, Index, result); }

HRESULT ListChild::Add(LONG nHwnd, BSTR KeyPath, _Ds_ENumAction** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] { *result = addEntry(Main, nHwnd, std::wstring(viewOf(KeyPath))).detach(); });
}

HRESULT ListChild::AddCaption(BSTR MyTitle, LONG nHwnd, _Ds_ENumAction** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] { *result = addEntry(Titles, nHwnd, std::wstring(viewOf(MyTitle))).detach(); });
}

HRESULT ListChild::AddClass(BSTR MyClass, LONG nHwnd, _Ds_ENumAction** result) {
    if (!result) return E_POINTER;
    *result = nullptr;
    return guard([&] { *result = addEntry(Classes, nHwnd, std::wstring(viewOf(MyClass))).detach(); });
}

// Entries whose class (or title), read anew from the window, contains the search text
// without regard to case; the caller's variable is left lower-cased.
HRESULT ListChild::countContaining(Which which, VARIANT* search, LONG* value) {
    if (!value) return E_POINTER;
    *value = 0;
    return guard([&] {
        List& entries = list(which);
        if (!search || isMissing(*search)) {
            *value = entries.count();
            return;
        }
        const std::wstring wanted = lower(toText(*search));
        writeBack(*search, *Variant::fromText(wanted));
        LONG count = 0;
        for (long i = 1; i <= entries.count(); ++i) {
            LONG handle = 0;
            entries.at(i)->get_MyHwndWin(&handle);
            const HWND hwnd = toHwnd(handle);
            const std::wstring text = lower(which == Classes ? window::readClass(hwnd) : window::readText(hwnd));
            if (wanted.empty() || inStr(text, wanted) > 0) ++count;
        }
        *value = count;
    });
}

HRESULT ListChild::get_CountClass(VARIANT* MyClass, LONG* value) { return countContaining(Classes, MyClass, value); }
HRESULT ListChild::get_CountTitle(VARIANT* MyTitle, LONG* value) { return countContaining(Titles, MyTitle, value); }

}  // namespace vx
