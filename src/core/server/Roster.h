#pragma once
// The class roster: every class of the library, one line each, with what only C++ can
// say (which C++ class makes it). Its CLSID, name and instancing come from the type
// library's coclass, so a class is described once, in IDL.
#include "core/runtime/Platform.h"

#include <string>

namespace vx {

enum class Instancing {
    Global,     // [appobject]: creatable, and an application object hosts may use without creating it
    Creatable,  // plain coclass: creatable
    Dependent,  // [noncreatable]: handed out by other members only; hosts cannot create it
};

struct ClassEntry {
    const CLSID& (*classId)() noexcept;
    const IID& (*interfaceId)() noexcept;  // the interface the C++ class implements
    HRESULT (*create)(REFIID riid, void** ppv);
};

// The roster (its order is of no consequence).
const ClassEntry* rosterBegin() noexcept;
const ClassEntry* rosterEnd() noexcept;
const ClassEntry* findClass(REFCLSID clsid) noexcept;

// What the type library's coclass says of a class: its name ("" when the type library
// has no coclass of that CLSID) and its instancing (Dependent then).
std::wstring className(const ClassEntry& c);
Instancing instancingOf(const ClassEntry& c) noexcept;
inline bool isCreatable(const ClassEntry& c) noexcept { return instancingOf(c) != Instancing::Dependent; }

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

template <class T>
const IID& interfaceOf() noexcept {
    return __uuidof(typename T::DefaultInterface);
}

// The roster line of class T (a DispatchObject with a static classId()).
template <class T>
constexpr ClassEntry classLine() noexcept {
    return ClassEntry{&T::classId, &interfaceOf<T>, &createInstance<T>};
}

}  // namespace vx
