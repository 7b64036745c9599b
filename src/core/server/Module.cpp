#include "core/server/Module.h"

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
    std::wstring buffer(MAX_PATH, L'\0');
    for (;;) {
        DWORD n = GetModuleFileNameW(handle(), &buffer[0], static_cast<DWORD>(buffer.size()));
        if (n < buffer.size()) {
            buffer.resize(n);
            return buffer;
        }
        buffer.resize(buffer.size() * 2);
    }
}

void objectCreated() noexcept { InterlockedIncrement(&objects); }
void objectDestroyed() noexcept { InterlockedDecrement(&objects); }
void lock() noexcept { InterlockedIncrement(&locks); }
void unlock() noexcept { InterlockedDecrement(&locks); }
long liveObjects() noexcept { return objects; }
bool canUnload() noexcept { return objects == 0 && locks == 0; }

}  // namespace vx::module
