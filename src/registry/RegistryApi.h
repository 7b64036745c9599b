#pragma once
// The registry procedures the registry classes share. Everything goes through the
// system's ANSI registry functions: names and paths are converted to the ANSI code page
// before a call, and what a call fills comes back through the same code page.
//
// Roots are the numbers hosts pass (0x80000000 for HKEY_CLASSES_ROOT ...); a key the
// library opened is closed on every path, and a handle that a call hands back unchanged
// (the root itself, for an empty path) is never closed.
#include "core/runtime/Handles.h"

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace vx::registry {

// Access rights the procedures ask for.
constexpr REGSAM fullAccess = 0xF003F;
constexpr REGSAM readAccess = 0x20019;
constexpr REGSAM writeAccess = 0x20006;
constexpr REGSAM queryAccess = 0x0001;
constexpr REGSAM enumerateAccess = 0x0008;

// Keys nest at most this deep; a walk of a subtree goes no deeper, whatever links it meets.
constexpr int maxDepth = 512;

// The handle a root number stands for (sign-extended, as the platform's own constants).
HKEY rootHandle(long root) noexcept;

// The root a name stands for: exactly "HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER",
// "HKEY_LOCAL_MACHINE", "HKEY_USERS" or "HKEY_CURRENT_CONFIG" (case matters); 0 otherwise.
long rootFromName(std::wstring_view name) noexcept;
// The inverse for those five roots; "" for any other number.
std::wstring nameOfRoot(long root);

// A full path "root name\key path\value name", split at its first and last backslash.
// A text without a backslash is no path (valid is false); with a single backslash the
// key path is empty, so the value lies in the root key itself.
struct FullPath {
    bool valid = false;
    std::wstring rootName;
    std::wstring keyPath;
    std::wstring valueName;
};
FullPath splitFullPath(std::wstring_view path);

// path and name joined by one backslash ("" + name is name; a path already ending in a
// backslash gets none).
std::wstring joinPath(std::wstring_view path, std::wstring_view name);

// A key the procedures opened: closed when it goes, unless it is the handle it was
// opened from.
class Key {
public:
    Key() noexcept = default;
    Key(HKEY opened, HKEY parent) noexcept : key_(opened == parent ? nullptr : opened), handle_(opened) {}
    HKEY get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != nullptr; }

private:
    UniqueRegKey key_;
    HKEY handle_ = nullptr;
};

// RegOpenKeyExA with the given access.
Key open(long root, std::string_view path, REGSAM access);
// Opening for reading: full access, then read access, then RegOpenKeyA.
Key openForReading(long root, std::string_view path);

// RegCreateKeyA: true when the key exists afterwards.
bool createKey(long root, std::string_view path);

// Creates (or opens) the key with write access and stores the value: the bytes exactly as
// given, with no terminator added, whatever the type. False when either call fails.
bool writeValue(long root, std::string_view path, std::string_view name, DWORD type, const void* data, size_t size);

// Queries a value into a buffer of at most capacity bytes. False when the value is
// missing or larger than capacity.
bool queryValue(HKEY key, std::string_view name, size_t capacity, std::string& data, DWORD* type = nullptr);
// Queries a value of any size.
bool queryWholeValue(HKEY key, std::string_view name, std::string& data, DWORD* type = nullptr);

// A string value's text: the data with one terminating NUL removed.
std::string_view stringData(std::string_view data) noexcept;

// The names of a key's subkeys, in the order the system enumerates them, up to the first
// failed enumeration.
std::vector<std::string> subkeyNames(HKEY key);
// The number of subkeys of root\path (0 when it cannot be opened for enumeration).
long countSubkeys(long root, std::string_view path);

struct Value {
    std::string name;
    DWORD type = REG_NONE;
    std::string data;
};
// The values of a key with their types and data, in the order the system enumerates them.
std::vector<Value> values(HKEY key);

// Deletes one value: opens the key for reading, then RegDeleteValueA. True on success.
bool deleteValue(long root, std::string_view path, std::string_view name);
// Deletes a key with everything below it: each key's values first, then its subkeys,
// deepest first, then the key itself. An empty path (the root itself) is refused.
void deleteTree(long root, std::wstring_view path);

// Text as the registry functions take it, and back.
std::string ansi(std::wstring_view text);

}  // namespace vx::registry
