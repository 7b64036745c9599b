#pragma once
// The system calls of the file classes that a test replaces (see core/runtime/Seams.h):
// the profile folders that not every system offers, and the recycle bin, which a test
// must be able to fill with counts of its choosing and must not really empty.
#include "core/runtime/Seams.h"

#include "core/runtime/Platform.h"

#include <shellapi.h>
#include <userenv.h>

#include <functional>

namespace vx {

// GetAllUsersProfileDirectoryA and GetDefaultUserProfileDirectoryA: a buffer and its size in.
struct ProfileFolderService {
    std::function<BOOL(char*, DWORD*)> allUsers = [](char* buffer, DWORD* size) {
        return ::GetAllUsersProfileDirectoryA(buffer, size);
    };
    std::function<BOOL(char*, DWORD*)> defaultUser = [](char* buffer, DWORD* size) {
        return ::GetDefaultUserProfileDirectoryA(buffer, size);
    };
};

// SHQueryRecycleBinA (a root, the system's record of the word size in use) and
// SHEmptyRecycleBinA (owner, root or null for every drive, flags).
struct RecycleBinService {
    std::function<HRESULT(const char*, SHQUERYRBINFO*)> query = [](const char* root, SHQUERYRBINFO* info) {
        return ::SHQueryRecycleBinA(root, info);
    };
    std::function<HRESULT(HWND, const char*, DWORD)> empty = [](HWND owner, const char* root, DWORD flags) {
        return ::SHEmptyRecycleBinA(owner, root, flags);
    };
};

}  // namespace vx
