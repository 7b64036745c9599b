#pragma once
// The folder search behind GoFindFile and the counts, and the listings of GetFileSys.
#include "core/runtime/Platform.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vx {

class TypeFileSys;

namespace files {

// SearchFolder: with mode GoFile or GoFolderFile, every file of the folder that matches the
// pattern and the attribute mask (as the runtime's directory scan has them) goes into the
// list, its size into the total; with GoFolder or GoFolderFile every subfolder then goes
// in, each followed by its own search. A folder's files come before its subfolders. The
// total is a 32-bit one: an addition that would overflow it is left out, as is anything
// else that fails.
int32_t searchFolder(const std::wstring& path, std::wstring_view pattern, LONG attributes, LONG mode,
                     TypeFileSys& list);

// GetFileSys: the files (GoAllFile) or subfolders (GoAllFolder) of a folder, or every drive
// (GoAllDrive), into the list. Errors reach the caller.
void listFileSystem(const std::wstring& path, LONG kind, TypeFileSys& list);

}  // namespace files
}  // namespace vx
