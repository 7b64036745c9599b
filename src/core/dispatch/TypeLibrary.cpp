#include "core/dispatch/TypeLibrary.h"

#include "core/runtime/Module.h"

#include "core/runtime/Platform.h"

namespace vx {

ITypeLib* typeLibrary() noexcept {
    static ITypeLib* volatile library = nullptr;
    return keptOnceMade(
        library,
        []() -> ITypeLib* {
            ITypeLib* tl = nullptr;
            try {
                if (FAILED(LoadTypeLibEx(module::path().c_str(), REGKIND_NONE, &tl))) return nullptr;
            } catch (...) {
                return nullptr;
            }
            return tl;
        },
        [](ITypeLib* tl) { tl->Release(); });
}

ITypeInfo* typeInfoOf(REFGUID guid) noexcept {
    ITypeLib* tl = typeLibrary();
    ITypeInfo* ti = nullptr;
    if (!tl || FAILED(tl->GetTypeInfoOfGuid(guid, &ti))) return nullptr;
    return ti;
}

}  // namespace vx
