#include "files/FileApi.h"

#include "core/runtime/Ansi.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Handles.h"
#include "Vx_MainEnums.h"

#include <shellapi.h>
#include <shlwapi.h>

namespace vx::files {

std::optional<std::string> systemText(std::wstring_view text) {
    if (text.find(L'\0') != std::wstring_view::npos) return std::nullopt;
    return toAnsi(text);
}

std::optional<std::string> systemPath(std::wstring_view path) {
    auto p = systemText(path);
    if (p && p->size() >= MAX_PATH) return std::nullopt;
    return p;
}

DWORD attributesOf(std::wstring_view path) {
    const auto p = systemPath(path);
    return p ? GetFileAttributesA(p->c_str()) : INVALID_FILE_ATTRIBUTES;
}

bool setAttributes(std::wstring_view path, DWORD attributes) {
    const auto p = systemPath(path);
    return p && SetFileAttributesA(p->c_str(), attributes);
}

bool isFolder(std::wstring_view path) {
    const auto p = systemPath(path);
    return p && !p->empty() && PathIsDirectoryA(p->c_str());
}

bool isFile(std::wstring_view path) {
    const auto p = systemPath(path);
    return p && !p->empty() && !PathIsDirectoryA(p->c_str()) && PathFileExistsA(p->c_str());
}

void shellOperation(UINT operation, std::wstring_view from, std::wstring_view to, LONG flags) {
    if (attributesOf(from) & FILE_ATTRIBUTE_HIDDEN) setAttributes(from, FILE_ATTRIBUTE_NORMAL);
    // A wildcard would let the shell act on every name it matches.
    if (from.find_first_of(L"*?") != std::wstring_view::npos) return;
    if (!isFile(from) && !isFolder(from)) return;
    const auto source = systemPath(from);
    const auto target = systemPath(to);
    if (!source || !target) return;
    // Lists of paths, each ended by a NUL and the list by another.
    const std::string sourceList = *source + '\0';
    const std::string targetList = *target + '\0';
    SHFILEOPSTRUCTA op{};
    op.hwnd = GetDesktopWindow();
    op.wFunc = operation;
    op.pFrom = sourceList.c_str();
    op.pTo = targetList.c_str();
    op.fFlags = static_cast<FILEOP_FLAGS>(flags ? flags : FOF_NoWin);
    SHFileOperationA(&op);
}

std::optional<std::string> readBytes(std::wstring_view path) {
    const auto p = systemPath(path);
    if (!p) return std::nullopt;
    UniqueFile file(CreateFileA(p->c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    LARGE_INTEGER size{};
    if (!file || !GetFileSizeEx(file.get(), &size)) return std::nullopt;
    if (static_cast<unsigned long long>(size.QuadPart) >= std::string().max_size()) raise(err::OutOfMemory);
    std::string bytes(static_cast<size_t>(size.QuadPart), '\0');
    size_t done = 0;
    while (done < bytes.size()) {
        const DWORD want = static_cast<DWORD>(std::min<size_t>(bytes.size() - done, 1u << 30));
        DWORD got = 0;
        if (!ReadFile(file.get(), &bytes[done], want, &got, nullptr) || got == 0) break;
        done += got;
    }
    bytes.resize(done);
    return bytes;
}

bool writeBytes(std::wstring_view path, const void* data, size_t size) {
    const auto p = systemPath(path);
    if (!p) return false;
    // Opened as it is and then cut to nothing, so that a hidden file can be written too.
    UniqueFile file(CreateFileA(p->c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                nullptr));
    if (!file || !SetEndOfFile(file.get())) return false;
    const char* bytes = static_cast<const char*>(data);
    size_t done = 0;
    while (done < size) {
        const DWORD want = static_cast<DWORD>(std::min<size_t>(size - done, 1u << 30));
        DWORD put = 0;
        if (!WriteFile(file.get(), bytes + done, want, &put, nullptr) || put == 0) return false;
        done += put;
    }
    return true;
}

unsigned long long fileLength(std::wstring_view path) {
    const auto p = systemPath(path);
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!p || p->empty() || !GetFileAttributesExA(p->c_str(), GetFileExInfoStandard, &data)) raise(err::FileNotFound);
    if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) return 0;
    return (static_cast<unsigned long long>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
}

}  // namespace vx::files
