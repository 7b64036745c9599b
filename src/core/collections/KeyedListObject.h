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
        return this->deliver(result, [&] { return items_.item(required(Index)); });
    }
    HRESULT STDMETHODCALLTYPE Remove(VARIANT* Index) override {
        return this->guard([&] { items_.remove(required(Index)); });
    }
    HRESULT STDMETHODCALLTYPE get_Count(LONG* count) override {
        return this->deliver(count, [&] { return items_.count(); });
    }
    // Puts a new empty collection in place of the old; elements a host holds stay alive.
    HRESULT STDMETHODCALLTYPE Clear() override {
        return this->guard([&] { items_.clear(); });
    }

protected:
    KeyedCollection<ComPtr<Element>> items_;
};

}  // namespace vx
