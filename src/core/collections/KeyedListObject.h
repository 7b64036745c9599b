#pragma once
// The base of the list classes whose interface has the keyed-collection members
// Item(Index), Remove(Index), Count and Clear over one collection of objects: those four
// come from here, the class adds its own Add.
#include "core/collections/KeyedCollection.h"
#include "core/dispatch/DispatchObject.h"

namespace vx {

template <class Derived, class Interface, class Element>
class KeyedListObject : public DispatchObject<Derived, Interface> {
public:
    // The element at a position (from 1) or under a key; errors 9 and 5 reach the caller.
    HRESULT STDMETHODCALLTYPE Item(VARIANT* Index, Element** result) override {
        if (!Index || !result) return E_POINTER;
        *result = nullptr;
        return this->guard([&] { *result = ComPtr<Element>(items_.item(*Index)).detach(); });
    }
    HRESULT STDMETHODCALLTYPE Remove(VARIANT* Index) override {
        if (!Index) return E_POINTER;
        return this->guard([&] { items_.remove(*Index); });
    }
    HRESULT STDMETHODCALLTYPE get_Count(LONG* count) override {
        if (!count) return E_POINTER;
        *count = items_.count();
        return S_OK;
    }
    // Puts a new empty collection in place of the old; elements a host holds stay alive.
    HRESULT STDMETHODCALLTYPE Clear() override {
        return this->guard([&] { items_.clear(); });
    }

protected:
    KeyedCollection<ComPtr<Element>> items_;
};

}  // namespace vx
