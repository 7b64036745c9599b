#include "core/runtime/Module.h"

#include "core/runtime/Buffer.h"

namespace vx::module {

namespace {
volatile LONG objects = 0;
volatile LONG locks = 0;
}  // namespace

HMODULE handle() noexcept {
    HMODULE h = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&handle), &h);
    return h;
}

std::wstring path() {
    // Paths are at most 32767 characters long.
    std::wstring buffer(MAX_PATH, L'\0');
    const bool whole = growBuffer(buffer, 32768, [](std::wstring& b) {
        const DWORD n = GetModuleFileNameW(handle(), &b[0], static_cast<DWORD>(b.size()));
        if (n >= b.size()) return BufferNeed::more();
        b.resize(n);
        return BufferNeed::fits();
    });
    return whole ? buffer : std::wstring();
}

void objectCreated() noexcept { InterlockedIncrement(&objects); }
void objectDestroyed() noexcept { InterlockedDecrement(&objects); }
void lock() noexcept { InterlockedIncrement(&locks); }
void unlock() noexcept { InterlockedDecrement(&locks); }
long liveObjects() noexcept { return objects; }
bool canUnload() noexcept { return objects == 0 && locks == 0; }

}  // namespace vx::module
