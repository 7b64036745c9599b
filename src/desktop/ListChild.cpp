#include "desktop/ListChild.h"

#include "core/runtime/Convert.h"
#include "core/runtime/Text.h"
#include "desktop/ENumAction.h"
#include "shared/Windows.h"

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
    return deliver(value, [&] { return main_.count(); });
}

HRESULT ListChild::Remove(VARIANT* Index) {
    return guard([&] { main_.remove(required(Index)); });
}

HRESULT ListChild::item(Which which, const VARIANT& index, _Ds_ENumAction** result) {
    return deliver(result, [&] { return list(which).item(index); });
}

HRESULT ListChild::ItemTitle(VARIANT Index, _Ds_ENumAction** result) { return item(Titles, Index, result); }
HRESULT ListChild::ItemClass(VARIANT Index, _Ds_ENumAction** result) { return item(Classes, Index, result); }
HRESULT ListChild::Item(VARIANT Index, _Ds_ENumAction** result) { return item(Main, Index, result); }

HRESULT ListChild::Add(LONG nHwnd, BSTR KeyPath, _Ds_ENumAction** result) {
    return deliver(result, [&] { return addEntry(Main, nHwnd, std::wstring(viewOf(KeyPath))); });
}

HRESULT ListChild::AddCaption(BSTR MyTitle, LONG nHwnd, _Ds_ENumAction** result) {
    return deliver(result, [&] { return addEntry(Titles, nHwnd, std::wstring(viewOf(MyTitle))); });
}

HRESULT ListChild::AddClass(BSTR MyClass, LONG nHwnd, _Ds_ENumAction** result) {
    return deliver(result, [&] { return addEntry(Classes, nHwnd, std::wstring(viewOf(MyClass))); });
}

// Entries whose class (or title), read anew from the window, contains the search text
// without regard to case; the caller's variable is left lower-cased.
HRESULT ListChild::countContaining(Which which, VARIANT* search, LONG* value) {
    return deliver(value, [&] {
        List& entries = list(which);
        if (!search || isMissing(*search)) return entries.count();
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
        return count;
    });
}

HRESULT ListChild::get_CountClass(VARIANT* MyClass, LONG* value) { return countContaining(Classes, MyClass, value); }
HRESULT ListChild::get_CountTitle(VARIANT* MyTitle, LONG* value) { return countContaining(Titles, MyTitle, value); }

}  // namespace vx
