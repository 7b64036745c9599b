#pragma once
// The class roster: every class of the library, how hosts may get it, and how to make it.
#include <windows.h>

#include <cstddef>

namespace vx {

enum class Instancing {
    Global,     // creatable, and an application object hosts may use without creating it
    Creatable,  // creatable
    Dependent,  // handed out by other members only; hosts cannot create it
};

struct ClassEntry {
    const CLSID* clsid;
    const wchar_t* name;
    Instancing instancing;
    HRESULT (*create)(REFIID riid, void** ppv);
};

// The roster, in the type library's order.
const ClassEntry* rosterBegin() noexcept;
const ClassEntry* rosterEnd() noexcept;
const ClassEntry* findClass(REFCLSID clsid) noexcept;
inline bool isCreatable(const ClassEntry& c) noexcept { return c.instancing != Instancing::Dependent; }

// Makes a new object of class T and hands out the requested interface.
template <class T>
HRESULT createInstance(REFIID riid, void** ppv) {
    if (!ppv) return E_POINTER;
    *ppv = nullptr;
    try {
        auto object = T::create();
        return object->QueryInterface(riid, ppv);
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

}  // namespace vx
