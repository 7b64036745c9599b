#pragma once
// The server module: which file the library's code lives in, and the count of live
// objects and locks that DllCanUnloadNow answers from.
#include <windows.h>

#include <string>

namespace vx::module {

// The module that holds the library's code (the DLL, or a test program linking it).
HMODULE handle() noexcept;
std::wstring path();

void objectCreated() noexcept;
void objectDestroyed() noexcept;
void lock() noexcept;
void unlock() noexcept;
long liveObjects() noexcept;
bool canUnload() noexcept;

}  // namespace vx::module
