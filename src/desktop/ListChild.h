#pragma once
// Ds_ListChild: window objects in three keyed lists (positions from 1, text keys
// compared without regard to case): the main list by the key the enumeration chose, the
// title list and the class list.
#include "Vx_Main.h"
#include "core/collections/KeyedCollection.h"
#include "core/dispatch/DispatchObject.h"

#include <string>

namespace vx {

class ListChild : public DispatchObject<ListChild, _Ds_ListChild> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_ListChild; }

    enum Which { Main, Titles, Classes };
    // A new window object for hwnd appended to one list under key (none when empty);
    // a key already present is error 457.
    ComPtr<_Ds_ENumAction> addEntry(Which which, LONG hwnd, const std::wstring& key);

    HRESULT STDMETHODCALLTYPE get_Count(LONG* value) override;
    HRESULT STDMETHODCALLTYPE Remove(VARIANT* Index) override;
    HRESULT STDMETHODCALLTYPE ItemTitle(VARIANT Index, _Ds_ENumAction** result) override;
    HRESULT STDMETHODCALLTYPE ItemClass(VARIANT Index, _Ds_ENumAction** result) override;
    HRESULT STDMETHODCALLTYPE Item(VARIANT Index, _Ds_ENumAction** result) override;
    HRESULT STDMETHODCALLTYPE Add(LONG nHwnd, BSTR KeyPath, _Ds_ENumAction** result) override;
    HRESULT STDMETHODCALLTYPE AddCaption(BSTR MyTitle, LONG nHwnd, _Ds_ENumAction** result) override;
    HRESULT STDMETHODCALLTYPE AddClass(BSTR MyClass, LONG nHwnd, _Ds_ENumAction** result) override;
    HRESULT STDMETHODCALLTYPE get_CountClass(VARIANT* MyClass, LONG* value) override;
    HRESULT STDMETHODCALLTYPE get_CountTitle(VARIANT* MyTitle, LONG* value) override;

private:
    using List = KeyedCollection<ComPtr<_Ds_ENumAction>>;
    List& list(Which which) { return which == Main ? main_ : which == Titles ? titles_ : classes_; }
    HRESULT item(Which which, const VARIANT& index, _Ds_ENumAction** result);
    HRESULT countContaining(Which which, VARIANT* search, LONG* value);

    List main_;
    List titles_;
    List classes_;
};

}  // namespace vx
