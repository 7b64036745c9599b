#pragma once
// The type library embedded in the module as resource 1: the one source of every
// interface's members, dispatch identifiers, defaults and by-reference parameters.
#include "core/runtime/Platform.h"

namespace vx {

// A value made on first use and kept for the module's life. A failure (null) is not
// kept: the next use tries again. Of two threads that race, the first value made is
// kept and the other discarded.
template <class T, class Make, class Discard>
T* keptOnceMade(T* volatile& slot, Make&& make, Discard&& discard) noexcept {
    if (T* kept = slot) return kept;
    T* made = make();
    if (!made) return nullptr;
    void* before = InterlockedCompareExchangePointer(reinterpret_cast<void* volatile*>(&slot), made, nullptr);
    if (!before) return made;
    discard(made);
    return static_cast<T*>(before);
}

// The library (loaded on first use and kept while the module is loaded); null if it
// cannot be read.
ITypeLib* typeLibrary() noexcept;
// The type info of an interface or coclass of the library; a new reference, or null.
ITypeInfo* typeInfoOf(REFGUID guid) noexcept;

}  // namespace vx
