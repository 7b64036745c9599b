#include "core/dispatch/TypeLibrary.h"

#include "core/runtime/Module.h"

#include "core/runtime/Platform.h"

namespace vx {

ITypeLib* typeLibrary() noexcept {
    // Loaded on first use and kept for the life of the module.
    static ITypeLib* const library = []() -> ITypeLib* {
        ITypeLib* tl = nullptr;
        std::wstring path = module::path();
        if (FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, &tl))) return nullptr;
        return tl;
    }();
    return library;
}

ITypeInfo* typeInfoOf(REFGUID guid) noexcept {
    ITypeLib* tl = typeLibrary();
    ITypeInfo* ti = nullptr;
    if (!tl || FAILED(tl->GetTypeInfoOfGuid(guid, &ti))) return nullptr;
    return ti;
}

}  // namespace vx
