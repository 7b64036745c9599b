#pragma once
// The file-system calls of the file classes, on paths as the members hold them (UTF-16,
// placeholders already expanded). Each goes to the system's "A" function with the path in
// the ANSI code page. A text that holds a NUL, or one too long for an "A" function
// (MAX_PATH), names no path: the call is not made and the neutral result stands, so that
// a path cut short at its NUL never reaches the system, and no call copies a path into a
// buffer too small for it.
#include "core/runtime/Platform.h"

#include <optional>
#include <string>
#include <string_view>

namespace vx::files {

// Text in the ANSI code page; nothing for a text that holds a NUL.
std::optional<std::string> systemText(std::wstring_view text);
// A path in the ANSI code page; nothing for a text that holds a NUL or is too long.
std::optional<std::string> systemPath(std::wstring_view path);

// GetFileAttributesA: all bits set (INVALID_FILE_ATTRIBUTES) when there is no such path.
DWORD attributesOf(std::wstring_view path);
// SetFileAttributesA: the attributes become exactly these. True when it worked.
bool setAttributes(std::wstring_view path, DWORD attributes);
// IsDirX: not "" and a folder (PathIsDirectoryA).
bool isFolder(std::wstring_view path);
// IsFileX: not "", not a folder, and there (PathFileExistsA).
bool isFile(std::wstring_view path);

// ActionSHFile after expansion: a hidden source is first made normal; then, only when the
// source is an existing file or folder (a wildcard names none), SHFileOperationA runs
// with the desktop as owner, each path as a list of one, and flags (1552 for 0).
void shellOperation(UINT operation, std::wstring_view from, std::wstring_view to, LONG flags);

// A whole file's bytes; nothing when it cannot be opened for reading.
std::optional<std::string> readBytes(std::wstring_view path);
// Writes bytes to a file, replacing what it held. True when all were written.
bool writeBytes(std::wstring_view path, const void* data, size_t size);

// The size of a file (FileLen): error 53 when there is no such file.
unsigned long long fileLength(std::wstring_view path);

}  // namespace vx::files
