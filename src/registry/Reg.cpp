#include "registry/Reg.h"

#include "Vx_MainEnums.h"
#include "core/dispatch/Defaults.h"
#include "core/runtime/Ansi.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Handles.h"
#include "core/runtime/SafeArray.h"
#include "core/runtime/Text.h"
#include "registry/RegEnumKey.h"
#include "registry/RegEnumValue.h"
#include "registry/RegKeys.h"
#include "registry/RegValues.h"
#include "registry/RegistryApi.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace vx {

using namespace registry;

namespace {

const wchar_t settingsKey[] = L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Hollowin\\";

// ---- values ----

bool writeBytes(long root, std::wstring_view path, std::wstring_view name, const std::string& bytes, long type) {
    return writeValue(root, ansi(path), ansi(name), static_cast<DWORD>(type), bytes.data(), bytes.size());
}

bool writeString(long root, std::wstring_view path, std::wstring_view name, std::wstring_view text, long type) {
    // Stored as the text's bytes in the ANSI code page, without a terminating NUL.
    return writeBytes(root, path, name, ansi(text), type);
}

bool writeDWord(long root, std::wstring_view path, std::wstring_view name, long number, long type) {
    const DWORD data = static_cast<DWORD>(number);
    return writeBytes(root, path, name, std::string(reinterpret_cast<const char*>(&data), sizeof data), type);
}

// The fixed buffer ReadString reads into: the text and its terminator must fit.
constexpr size_t stringBuffer = 255;

std::wstring readString(long root, std::wstring_view path, std::wstring_view name, std::wstring_view fallback) {
    Key key = openForReading(root, ansi(path));
    if (!key) return std::wstring(fallback);
    std::string data;
    if (!queryValue(key.get(), ansi(name), stringBuffer, data)) return {};
    const std::string_view text = stringData(data);
    if (text.size() >= stringBuffer) return {};
    return fromAnsi(text);
}

long readDWord(long root, std::wstring_view path, std::wstring_view name, long fallback) {
    Key key = openForReading(root, ansi(path));
    if (!key) return fallback;
    std::string data;
    if (!queryValue(key.get(), ansi(name), sizeof(DWORD), data)) return -1;
    DWORD number = 0;
    std::memcpy(&number, data.data(), data.size());
    return static_cast<long>(number);
}

// Two hexadecimal digits a byte, upper case, nothing between.
std::wstring hexText(const std::string& bytes) {
    static const wchar_t digits[] = L"0123456789ABCDEF";
    std::wstring text;
    text.reserve(bytes.size() * 2);
    for (unsigned char b : bytes) {
        text += digits[b >> 4];
        text += digits[b & 0x0F];
    }
    return text;
}

Variant readBinary(long root, std::wstring_view path, std::wstring_view name, bool asText) {
    Key key = openForReading(root, ansi(path));
    if (!key) return Variant();
    std::string data;
    if (!queryWholeValue(key.get(), ansi(name), data)) return Variant();
    if (asText) return Variant::fromText(hexText(data));
    return makeByteArray(reinterpret_cast<const unsigned char*>(data.data()), data.size());
}

// The bytes of an array: a byte array as it is, any other one-dimensional array element
// by element (each a number from 0 to 255; beyond that, error 6).
std::string bytesOfArray(const VARIANT& value) {
    ArrayView view(value);
    std::string bytes;
    if (!view.get()) return bytes;
    if (view.dimensions() != 1) raise(err::TypeMismatch);
    const long low = view.lbound(), high = view.ubound();
    if (high < low) return bytes;
    bytes.reserve(static_cast<size_t>(high - low) + 1);
    const VARTYPE element = valueType(value) & ~VT_ARRAY;
    if (element == VT_UI1 || element == VT_I1) {
        // Unlocked again however the copy ends: the host's array must not stay locked.
        SafeArrayAccess data(view.get());
        bytes.assign(data.as<const char>(), static_cast<size_t>(high - low) + 1);
        return bytes;
    }
    for (long i = low; i <= high; ++i) {
        const int32_t n = toInt32(*view.at(i));
        if (n < 0 || n > 255) raise(err::Overflow);
        bytes.push_back(static_cast<char>(n));
    }
    return bytes;
}

// The bytes GoRegister stores for a value: an array's elements, or the value as text in
// the ANSI code page.
std::string bytesOf(const VARIANT& value) { return isArray(value) ? bytesOfArray(value) : ansi(toText(value)); }

// WriteBinary's data: the array when one is given, otherwise the text's bytes in the
// ANSI code page.
std::string binaryData(std::wstring_view text, const VARIANT* array) {
    if (array && isArray(*array)) return bytesOfArray(*array);
    if (array && !isMissing(*array) && !isEmpty(*array) && !isNull(*array)) raise(err::TypeMismatch);
    return ansi(text);
}

// ---- the dispatch on flag and type ----

Variant goRegister(long flag, long type, long root, std::wstring_view path, std::wstring_view name,
                   const VARIANT* value) {
    if (flag == nRead) {
        switch (type) {
            case REG_DWORD: return Variant::fromLong(readDWord(root, path, name, 0));
            case REG_NONE:
            case REG_BINARY: return readBinary(root, path, name, false);
            case REG_SZ:
            case REG_EXPAND_SZ:
            case REG_MULTI_SZ: return Variant::fromText(readString(root, path, name, L""));
            default: return Variant();
        }
    }
    static const VARIANT missing = *Variant::missing();
    const VARIANT& v = value ? *value : missing;
    // The writer and the type it stores. The three string types are all stored as REG_SZ;
    // a two-part code names both: its first decimal digit the writer, the others the type
    // (12: a string as REG_EXPAND_SZ, 45: a number as REG_DWORD_BIG_ENDIAN).
    wchar_t writer = 0;
    long stored = 0;
    switch (type) {
        case REG_DWORD: writer = L'4', stored = REG_DWORD; break;
        case REG_NONE:
        case REG_BINARY: writer = L'3', stored = REG_BINARY; break;
        case REG_SZ:
        case REG_EXPAND_SZ:
        case REG_MULTI_SZ: writer = L'1', stored = REG_SZ; break;
        default: {
            const std::wstring code = std::to_wstring(type);
            if (code.size() < 2 || code[0] == L'-') return Variant();
            writer = code[0];
            stored = static_cast<long>(std::stoul(code.substr(1)));
        }
    }
    switch (writer) {
        case L'4': return Variant::fromBool(writeDWord(root, path, name, toInt32(v), stored));
        case L'1': return Variant::fromBool(writeString(root, path, name, toText(v), stored));
        case L'3': return Variant::fromBool(writeBytes(root, path, name, bytesOf(v), stored));
        default: return Variant();
    }
}

Variant goRegisterPath(long flag, std::wstring_view fullPath, long type, const VARIANT* value) {
    // A text without a backslash names no place: root 0, which every call refuses.
    const FullPath p = splitFullPath(fullPath);
    return goRegister(flag, type, p.valid ? rootFromName(p.rootName) : 0, p.keyPath, p.valueName, value);
}

// ---- lists ----

// The names of the subkeys of root\path. Of two names the ANSI code page makes one (in
// any case), only the first is kept: neither can be reached by that name anyway.
std::vector<std::wstring> subkeys(long root, std::wstring_view path) {
    std::vector<std::wstring> names;
    std::vector<std::string> found;
    if (Key key = open(root, ansi(path), enumerateAccess)) found = subkeyNames(key.get());
    std::unordered_set<std::wstring> seen;
    for (const std::string& child : found) {
        std::wstring name = fromAnsi(child);
        if (seen.insert(foldCase(name)).second) names.push_back(std::move(name));
    }
    return names;
}

// A cRegKeys of the given subkeys of root\path, each with its own subkey count.
ComPtr<_cRegKeys> keyList(long root, std::wstring_view path, const std::vector<std::wstring>& names,
                          const std::vector<long>& counts) {
    ComPtr<_cRegKeys> list(RegKeys::create().get());
    for (size_t i = 0; i < names.size(); ++i) {
        Bstr subKey(joinPath(path, names[i])), keyName(names[i]);
        ComPtr<_cRegKey> added;
        check(list->Add(root, subKey.get(), keyName.get(), counts[i], added.put()));
    }
    return list;
}

}  // namespace

ComPtr<_cRegKeys> registry::listKeys(long root, std::wstring_view path) {
    const std::vector<std::wstring> names = subkeys(root, path);
    std::vector<long> counts;
    for (const std::wstring& name : names) counts.push_back(countSubkeys(root, ansi(joinPath(path, name))));
    return keyList(root, path, names, counts);
}

// A value's data as a host sees it: text for the string types (without its terminator),
// a number for a four-byte DWORD, the bytes for everything else.
Variant dataOf(const Value& value) {
    switch (value.type) {
        case REG_SZ:
        case REG_EXPAND_SZ:
        case REG_MULTI_SZ: return Variant::fromText(fromAnsi(stringData(value.data)));
        case REG_DWORD:
        case REG_DWORD_BIG_ENDIAN:
            if (value.data.size() == sizeof(DWORD)) {
                DWORD number = 0;
                std::memcpy(&number, value.data.data(), sizeof number);
                return Variant::fromLong(static_cast<int32_t>(number));
            }
            break;
        default: break;
    }
    return makeByteArray(reinterpret_cast<const unsigned char*>(value.data.data()), value.data.size());
}

ComPtr<_cRegValues> registry::listValues(long root, std::wstring_view path) {
    ComPtr<_cRegValues> list(RegValues::create().get());
    std::vector<Value> found;
    if (Key key = open(root, ansi(path), queryAccess)) found = values(key.get());
    for (const Value& value : found) {
        const std::wstring name = fromAnsi(value.name);
        Bstr subKey(joinPath(path, name)), keyName(name);
        Variant data = dataOf(value);
        ComPtr<_cRegValue> added;
        const HRESULT hr = list->Add(root, subKey.get(), keyName.get(), static_cast<LONG>(value.type), *data,
                                     added.put());
        if (hr == runtimeHresult(err::DuplicateKey)) continue;
        check(hr);
    }
    return list;
}

bool registry::valueDelete(long root, std::wstring_view text) {
    std::wstring_view path, name;
    FullPath full;
    if (root == 0) {
        // No root given: the path names it ("HKEY_CURRENT_USER\key path\value").
        full = splitFullPath(text);
        if (!full.valid) return false;
        root = rootFromName(full.rootName);
        path = full.keyPath;
        name = full.valueName;
    } else {
        const size_t last = text.rfind(L'\\');
        if (last != std::wstring_view::npos) path = text.substr(0, last);
        name = last == std::wstring_view::npos ? text : text.substr(last + 1);
    }
    return root != 0 && deleteValue(root, ansi(path), ansi(name));
}

void registry::keyDelete(long root, std::wstring_view text) {
    std::wstring_view path = text;
    if (root == 0) {
        // No root given: the path starts with its name ("HKEY_CURRENT_USER\key path").
        const size_t first = text.find(L'\\');
        if (first == std::wstring_view::npos) return;
        root = rootFromName(text.substr(0, first));
        path = text.substr(first + 1);
    }
    if (root == 0) return;
    deleteTree(root, path);
}

bool registry::hasKey(long root, std::wstring_view path) { return static_cast<bool>(open(root, ansi(path), queryAccess)); }

namespace {

// Walks root\path and every key below it, parents before their subkeys, calling
// visit(relative path, full path, keys listed there) for each; the key itself is "".
// Each key is enumerated once: a subkey's count is the number of names its own walk
// found (keys below the depth limit are counted where they stand).
template <class Visit>
void walkSubtree(long root, std::wstring_view path, Visit&& visit) {
    if (!open(root, ansi(path), enumerateAccess)) return;
    struct Walked {
        std::wstring relative;
        std::vector<std::wstring> names;
        std::vector<size_t> children;  // where the subkeys' own entries are, when walked
    };
    auto fullPath = [&](const std::wstring& relative) {
        return relative.empty() ? std::wstring(path) : joinPath(path, relative);
    };
    std::vector<Walked> order;
    std::vector<std::pair<std::wstring, std::pair<size_t, int>>> pending{{L"", {SIZE_MAX, 0}}};
    while (!pending.empty()) {
        auto [relative, parentAndDepth] = std::move(pending.back());
        pending.pop_back();
        const auto [parent, depth] = parentAndDepth;
        const size_t self = order.size();
        order.push_back({relative, subkeys(root, fullPath(relative)), {}});
        if (parent != SIZE_MAX) order[parent].children.push_back(self);
        if (depth >= maxDepth) continue;
        const std::vector<std::wstring>& names = order[self].names;
        for (auto it = names.rbegin(); it != names.rend(); ++it)
            pending.push_back({relative.empty() ? *it : relative + L"\\" + *it, {self, depth + 1}});
    }
    for (const Walked& key : order) {
        const std::wstring full = fullPath(key.relative);
        std::vector<long> counts;
        for (size_t i = 0; i < key.names.size(); ++i)
            counts.push_back(key.children.empty() ? countSubkeys(root, ansi(joinPath(full, key.names[i])))
                                                  : static_cast<long>(order[key.children[i]].names.size()));
        ComPtr<_cRegKeys> keys = keyList(root, full, key.names, counts);
        visit(key.relative, full, keys);
    }
}

}  // namespace

// ---- members ----

namespace {

// An optional argument, or the default the type library declares for it.
template <class T>
decltype(auto) orDefault(T* arg, const wchar_t* member, const wchar_t* parameter) {
    return argumentOr(arg, __uuidof(_clsReg), member, parameter);
}

}  // namespace

HRESULT Reg::get_RegisterValue(BSTR NameTitle, BSTR* value) {
    return deliver(value, [&] {
        const std::wstring path = settingsKey + std::wstring(viewOf(NameTitle));
        return toText(*goRegisterPath(nRead, path, REG_SZ, nullptr));
    });
}

HRESULT Reg::put_RegisterValue(BSTR NameTitle, BSTR NewValue) {
    return guard([&] {
        const std::wstring path = settingsKey + std::wstring(viewOf(NameTitle));
        Variant value = Variant::fromText(viewOf(NewValue));
        goRegisterPath(nWrite, path, REG_SZ, value.get());
    });
}

HRESULT Reg::GoLngHKey(BSTR MyHKey, LONG* result) {
    return deliver(result, [&] { return rootFromName(viewOf(MyHKey)); });
}

HRESULT Reg::GoStrHKey(Reg_Type MyHKey, BSTR* result) {
    return deliver(result, [&] { return nameOfRoot(MyHKey); });
}

HRESULT Reg::ValueDelete(BSTR SubKey, HKEY_Type Key, VARIANT_BOOL* result) {
    return deliver(result, [&] { return valueDelete(Key, viewOf(SubKey)); });
}

HRESULT Reg::CreateKey(HKEY_Type Key, BSTR SubKey, VARIANT_BOOL* result) {
    return deliver(result, [&] { return createKey(Key, ansi(viewOf(SubKey))); });
}

HRESULT Reg::IsHasKey(HKEY_Type Key, BSTR SubKey, VARIANT_BOOL* result) {
    return deliver(result, [&] { return hasKey(Key, viewOf(SubKey)); });
}

HRESULT Reg::GoRegisterWrite(BSTR SubKey, VARIANT* MyValue, Reg_Type nType, VARIANT* result) {
    return deliver(result, [&] { return goRegisterPath(nWrite, viewOf(SubKey), nType, MyValue); });
}

HRESULT Reg::GoRegisterRead(BSTR SubKey, Reg_Type nType, VARIANT* result) {
    return deliver(result, [&] { return goRegisterPath(nRead, viewOf(SubKey), nType, nullptr); });
}

HRESULT Reg::KeyDelete(BSTR SubKey, HKEY_Type Key) {
    return guard([&] { keyDelete(Key, viewOf(SubKey)); });
}

HRESULT Reg::WriteString(HKEY_Type Key, BSTR SubKey, BSTR sName, BSTR sData, Reg_Type nType, VARIANT_BOOL* result) {
    return deliver(result, [&] { return writeString(Key, viewOf(SubKey), viewOf(sName), viewOf(sData), nType); });
}

HRESULT Reg::ReadString(HKEY_Type Key, BSTR SubKey, BSTR sName, BSTR* sDefault, BSTR* result) {
    return deliver(result, [&] {
        // Nothing that fails inside reaches the caller: the result is then "".
        std::wstring text;
        tryStatement([&] {
            text = readString(Key, viewOf(SubKey), viewOf(sName), orDefault(sDefault, L"ReadString", L"sDefault"));
        });
        return text;
    });
}

HRESULT Reg::WriteDWord(HKEY_Type Key, BSTR SubKey, BSTR sName, LONG lData, Reg_Type nType, VARIANT_BOOL* result) {
    // Nothing that fails inside reaches the caller: the result is then False.
    return deliver(result, [&] {
        bool written = false;
        tryStatement([&] { written = writeDWord(Key, viewOf(SubKey), viewOf(sName), lData, nType); });
        return written;
    });
}

HRESULT Reg::ReadDWord(HKEY_Type Key, BSTR SubKey, BSTR sName, LONG* lDefault, LONG* result) {
    return deliver(result, [&] {
        return readDWord(Key, viewOf(SubKey), viewOf(sName), orDefault(lDefault, L"ReadDWord", L"lDefault"));
    });
}

HRESULT Reg::WriteBinary(HKEY_Type Key, BSTR SubKey, BSTR sName, BSTR ByData, VARIANT* MyDataArr, Reg_Type nType,
                         VARIANT_BOOL* result) {
    return deliver(result, [&] {
        const std::string bytes = binaryData(viewOf(ByData), MyDataArr);
        return writeBytes(Key, viewOf(SubKey), viewOf(sName), bytes, nType);
    });
}

HRESULT Reg::ReadBinary(HKEY_Type Key, BSTR SubKey, BSTR sName, VARIANT_BOOL* GoGetText, VARIANT* result) {
    return deliver(result, [&] {
        return readBinary(Key, viewOf(SubKey), viewOf(sName), orDefault(GoGetText, L"ReadBinary", L"GoGetText"));
    });
}

HRESULT Reg::CountKey(HKEY_Type Key, BSTR SubKey, LONG* result) {
    return deliver(result, [&] { return countSubkeys(Key, ansi(viewOf(SubKey))); });
}

HRESULT Reg::GoRegister(CallType Flag, Reg_Type nType, HKEY_Type HKey, BSTR SubKey, BSTR NameTitle, VARIANT* SetValue,
                        VARIANT* result) {
    return deliver(result, [&] { return goRegister(Flag, nType, HKey, viewOf(SubKey), viewOf(NameTitle), SetValue); });
}

HRESULT Reg::ListKeys(HKEY_Type Key, BSTR SubKey, _cRegKeys** result) {
    return deliver(result, [&] { return listKeys(Key, viewOf(SubKey)); });
}

HRESULT Reg::ListValues(HKEY_Type Key, BSTR SubKey, _cRegValues** result) {
    return deliver(result, [&] { return listValues(Key, viewOf(SubKey)); });
}

HRESULT Reg::GoEnumKey(HKEY_Type Key, BSTR SubKey, _cRegEnumKey** result) {
    return deliver(result, [&] {
        ComPtr<_cRegEnumKey> lists(RegEnumKeyList::create().get());
        walkSubtree(Key, viewOf(SubKey), [&](const std::wstring& relative, const std::wstring&, ComPtr<_cRegKeys>& keys) {
            Bstr name(relative);
            _cRegKeys* list = keys.get();
            check(lists->Add(&list, name.get()));
        });
        return lists;
    });
}

HRESULT Reg::GoEnumValue(HKEY_Type Key, BSTR SubKey, _cRegEnumValue** result) {
    return deliver(result, [&] {
        ComPtr<_cRegEnumValue> lists(RegEnumValueList::create().get());
        walkSubtree(Key, viewOf(SubKey), [&](const std::wstring& relative, const std::wstring& full, ComPtr<_cRegKeys>& keys) {
            Bstr name(relative);
            ComPtr<_cRegValues> values = listValues(Key, full);
            check(lists->Add(keys.get(), values.get(), name.get()));
        });
        return lists;
    });
}

}  // namespace vx
