#include "registry/RegistryApi.h"

#include "Vx_MainEnums.h"
#include "core/runtime/Ansi.h"
#include "core/runtime/Buffer.h"

#include <algorithm>
#include <iterator>

namespace vx::registry {

namespace {

struct RootName {
    const wchar_t* name;
    long root;
};
const RootName rootNames[] = {
    {L"HKEY_CLASSES_ROOT", CLASSES_ROOT},
    {L"HKEY_CURRENT_USER", CURRENT_USER},
    {L"HKEY_LOCAL_MACHINE", LOCAL_MACHINE},
    {L"HKEY_USERS", USERS},
    {L"HKEY_CURRENT_CONFIG", CURRENT_CONFIG},
};

// A path or name as a C string. Text with a NUL inside would silently name something
// shorter, so it names nothing.
bool cString(std::string_view text, std::string& out) {
    if (text.find('\0') != std::string_view::npos) return false;
    out.assign(text);
    return true;
}

// The largest buffer a value query grows to before giving up (the system refuses values
// much larger than this anyway).
constexpr size_t maxValueSize = 0x7FFFFFFF;

// Key names are at most 255 characters; in a double-byte code page that is up to 510 bytes.
constexpr DWORD keyNameBuffer = 1024;

// Value names are at most 16383 characters: up to 32766 bytes and the terminator.
constexpr size_t maxNameSize = 0x8000;

std::vector<std::string> valueNames(HKEY key) {
    std::vector<std::string> names;
    DWORD longest = 0;
    if (RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &longest, nullptr,
                         nullptr, nullptr) != ERROR_SUCCESS)
        return names;
    std::string buffer(std::max<DWORD>(longest, 255) + 1, '\0');
    for (DWORD index = 0;; ++index) {
        DWORD size = 0;
        const bool read = growBuffer(buffer, maxNameSize, [&](std::string& b) {
            size = static_cast<DWORD>(b.size());
            const LONG status = RegEnumValueA(key, index, &b[0], &size, nullptr, nullptr, nullptr, nullptr);
            return status == ERROR_SUCCESS ? BufferNeed::fits()
                                           : status == ERROR_MORE_DATA ? BufferNeed::more() : BufferNeed::failed();
        });
        if (!read) break;
        names.emplace_back(buffer.data(), size);
    }
    return names;
}

}  // namespace

HKEY rootHandle(long root) noexcept {
    return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(root)));
}

long rootFromName(std::wstring_view name) noexcept {
    for (const RootName& r : rootNames)
        if (name == r.name) return r.root;
    return 0;
}

std::wstring nameOfRoot(long root) {
    for (const RootName& r : rootNames)
        if (root == r.root) return r.name;
    return {};
}

FullPath splitFullPath(std::wstring_view path) {
    FullPath result;
    const size_t first = path.find(L'\\');
    if (first == std::wstring_view::npos) return result;
    const size_t last = path.rfind(L'\\');
    result.valid = true;
    result.rootName = path.substr(0, first);
    result.valueName = path.substr(last + 1);
    if (last > first) result.keyPath = path.substr(first + 1, last - first - 1);
    return result;
}

std::wstring joinPath(std::wstring_view path, std::wstring_view name) {
    std::wstring joined(path);
    if (!joined.empty() && joined.back() != L'\\') joined += L'\\';
    joined += name;
    return joined;
}

std::string ansi(std::wstring_view text) { return toAnsi(text); }

Key open(long root, std::string_view path, REGSAM access) {
    std::string p;
    if (!cString(path, p)) return {};
    HKEY parent = rootHandle(root);
    HKEY opened = nullptr;
    if (RegOpenKeyExA(parent, p.c_str(), 0, access, &opened) != ERROR_SUCCESS) return {};
    return Key(opened, parent);
}

Key openForReading(long root, std::string_view path) {
    if (Key k = open(root, path, fullAccess)) return k;
    if (Key k = open(root, path, readAccess)) return k;
    std::string p;
    if (!cString(path, p)) return {};
    HKEY parent = rootHandle(root);
    HKEY opened = nullptr;
    if (RegOpenKeyA(parent, p.c_str(), &opened) != ERROR_SUCCESS) return {};
    return Key(opened, parent);
}

bool createKey(long root, std::string_view path) {
    std::string p;
    if (!cString(path, p)) return false;
    HKEY parent = rootHandle(root);
    HKEY created = nullptr;
    if (RegCreateKeyA(parent, p.c_str(), &created) != ERROR_SUCCESS) return false;
    Key key(created, parent);
    return true;
}

bool writeValue(long root, std::string_view path, std::string_view name, DWORD type, const void* data, size_t size) {
    std::string p, n;
    if (!cString(path, p) || !cString(name, n) || size > maxValueSize) return false;
    HKEY parent = rootHandle(root);
    HKEY created = nullptr;
    DWORD disposition = 0;
    if (RegCreateKeyExA(parent, p.c_str(), 0, const_cast<char*>(""), 0, writeAccess, nullptr, &created,
                        &disposition) != ERROR_SUCCESS)
        return false;
    Key key(created, parent);
    // The system counts a string's terminator in when the caller left it out but a NUL
    // follows the data; a byte that is not NUL after the data keeps the size as given.
    std::string buffer(static_cast<const char*>(data), size);
    buffer.push_back('\x01');
    return RegSetValueExA(key.get(), n.c_str(), 0, type, reinterpret_cast<const BYTE*>(buffer.data()),
                          static_cast<DWORD>(size)) == ERROR_SUCCESS;
}

bool queryValue(HKEY key, std::string_view name, size_t capacity, std::string& data, DWORD* type) {
    std::string n;
    if (!cString(name, n)) return false;
    std::string buffer(capacity + 1, '\0');
    DWORD size = static_cast<DWORD>(capacity);
    DWORD t = REG_NONE;
    if (RegQueryValueExA(key, n.c_str(), nullptr, &t, reinterpret_cast<BYTE*>(&buffer[0]), &size) != ERROR_SUCCESS)
        return false;
    data.assign(buffer.data(), std::min<size_t>(size, capacity));
    if (type) *type = t;
    return true;
}

bool queryWholeValue(HKEY key, std::string_view name, std::string& data, DWORD* type) {
    std::string n;
    if (!cString(name, n)) return false;
    DWORD size = 0;
    if (RegQueryValueExA(key, n.c_str(), nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS) return false;
    // The value may grow between the calls: each is made with the size the last reported,
    // and one terminator more than the data needs.
    std::string buffer(static_cast<size_t>(size) + 1, '\0');
    DWORD got = 0, t = REG_NONE;
    const bool read = growBuffer(buffer, maxValueSize, [&](std::string& b) {
        got = static_cast<DWORD>(b.size() - 1);
        const LONG status = RegQueryValueExA(key, n.c_str(), nullptr, &t, reinterpret_cast<BYTE*>(&b[0]), &got);
        if (status == ERROR_SUCCESS) return BufferNeed::fits();
        return status == ERROR_MORE_DATA && got > b.size() - 1 ? BufferNeed::more(static_cast<size_t>(got) + 1)
                                                               : BufferNeed::failed();
    });
    if (!read) return false;
    data.assign(buffer.data(), std::min<size_t>(got, buffer.size() - 1));
    if (type) *type = t;
    return true;
}

std::string_view stringData(std::string_view data) noexcept {
    if (!data.empty() && data.back() == '\0') data.remove_suffix(1);
    return data;
}

std::vector<std::string> subkeyNames(HKEY key) {
    std::vector<std::string> names;
    char buffer[keyNameBuffer];
    for (DWORD index = 0;; ++index) {
        DWORD size = keyNameBuffer;
        if (RegEnumKeyExA(key, index, buffer, &size, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        names.emplace_back(buffer, std::min(size, keyNameBuffer));
    }
    return names;
}

long countSubkeys(long root, std::string_view path) {
    Key key = open(root, path, enumerateAccess);
    return key ? static_cast<long>(subkeyNames(key.get()).size()) : 0;
}

std::vector<Value> values(HKEY key) {
    std::vector<Value> result;
    DWORD longestName = 0, longestData = 0;
    if (RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &longestName,
                         &longestData, nullptr, nullptr) != ERROR_SUCCESS)
        return result;
    // The name buffer holds any value name; the data buffer grows when a value grew since
    // the key was measured.
    std::string name(maxNameSize, '\0');
    std::string data(std::max<DWORD>(longestData, 16), '\0');
    for (DWORD index = 0;; ++index) {
        DWORD nameSize = 0, dataSize = 0, type = REG_NONE;
        const bool read = growBuffer(data, maxValueSize, [&](std::string& d) {
            nameSize = static_cast<DWORD>(name.size());
            dataSize = static_cast<DWORD>(d.size());
            const LONG status = RegEnumValueA(key, index, &name[0], &nameSize, nullptr, &type,
                                              reinterpret_cast<BYTE*>(&d[0]), &dataSize);
            return status == ERROR_SUCCESS ? BufferNeed::fits()
                                           : status == ERROR_MORE_DATA ? BufferNeed::more(dataSize) : BufferNeed::failed();
        });
        if (!read) break;
        result.push_back({std::string(name.data(), nameSize), type,
                          std::string(data.data(), std::min<size_t>(dataSize, data.size()))});
    }
    return result;
}

bool deleteValue(long root, std::string_view path, std::string_view name) {
    std::string n;
    if (!cString(name, n)) return false;
    Key key = openForReading(root, path);
    if (!key) return false;
    return RegDeleteValueA(key.get(), n.c_str()) == ERROR_SUCCESS;
}

namespace {

void deleteTree(long root, const std::string& p, int depth) {
    if (Key key = openForReading(root, p))
        for (const std::string& name : valueNames(key.get())) RegDeleteValueA(key.get(), name.c_str());
    std::vector<std::string> children;
    if (depth < maxDepth)
        if (Key key = open(root, p, enumerateAccess)) children = subkeyNames(key.get());
    for (const std::string& child : children) deleteTree(root, p + '\\' + child, depth + 1);
    RegDeleteKeyA(rootHandle(root), p.c_str());
}

}  // namespace

void deleteTree(long root, std::wstring_view path) {
    while (!path.empty() && path.back() == L'\\') path.remove_suffix(1);
    std::string p;
    if (path.empty() || !cString(ansi(path), p)) return;
    deleteTree(root, p, 0);
}

}  // namespace vx::registry
