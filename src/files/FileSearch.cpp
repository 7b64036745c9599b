#include "files/FileSearch.h"

#include "core/runtime/Checked.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Handles.h"
#include "core/runtime/LateBound.h"
#include "files/TypeFileSys.h"
#include "Vx_MainEnums.h"

#include <vector>

namespace vx::files {

namespace {

class FolderSearch {
public:
    FolderSearch(std::wstring_view pattern, LONG attributes, LONG mode, TypeFileSys& list)
        : fso_(LateBound::create(L"Scripting.FileSystemObject")), pattern_(pattern), attributes_(attributes),
          mode_(mode), list_(list) {
        // GetFile runs once for every file found: its identifier is looked up once.
        OLECHAR name[] = L"GetFile";
        LPOLESTR names[] = {name};
        check(fso_.get()->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &getFile_));
    }

    int32_t search(const std::wstring& path) {
        Checked<int32_t> total(0);
        auto add = [&](int32_t bytes) { tryStatement([&] { total = total + Checked<int32_t>(bytes); }); };
        LateBound folder;
        tryStatement([&] { folder = LateBound(*fso_.call(L"GetFolder", {Variant::fromText(path)})); });
        if (mode_ == GoFile || mode_ == GoFolderFile) scanFiles(folder, add);
        if (mode_ == GoFolder || mode_ == GoFolderFile) {
            tryStatement([&] {
                const LateBound subFolders(*folder.get(L"SubFolders"));
                if (toInt32(*subFolders.get(L"Count")) <= 0) return;
                subFolders.forEach([&](const VARIANT& subFolder) {
                    list_.add(TypeFileSys::Folders, subFolder);
                    tryStatement([&] { add(search(toText(*LateBound(subFolder).get(L"Path")))); });
                });
            });
        }
        return total.value();
    }

private:
    // The runtime's directory scan: normal files always, hidden and system ones only when
    // the mask asks for them; folders are no files.
    template <class Add>
    void scanFiles(const LateBound& folder, Add& add) {
        std::wstring base, pattern;
        if (!tryStatement([&] {
                base = toText(*folder.get(L"Path"));
                pattern = toText(*fso_.call(L"BuildPath", {Variant::fromText(base), Variant::fromText(pattern_)}));
            }) ||
            pattern.find(L'\0') != std::wstring::npos)
            return;
        if (!base.empty() && base.back() != L'\\') base += L'\\';
        WIN32_FIND_DATAW found;
        UniqueFind find(FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &found, FindExSearchNameMatch, nullptr,
                                         FIND_FIRST_EX_LARGE_FETCH));
        if (!find) return;
        const DWORD unwanted = (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM) & ~static_cast<DWORD>(attributes_);
        do {
            if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) || (found.dwFileAttributes & unwanted)) continue;
            const std::wstring full = base + found.cFileName;
            const unsigned long long size = (static_cast<unsigned long long>(found.nFileSizeHigh) << 32) | found.nFileSizeLow;
            if (size <= 0x7FFFFFFF) add(static_cast<int32_t>(size));
            tryStatement([&] {
                std::vector<Variant> args{Variant::fromText(full)};
                const Variant file = LateBound::invoke(fso_.get(), getFile_, DISPATCH_METHOD, args);
                list_.add(TypeFileSys::Files, *file);
            });
        } while (FindNextFileW(find.get(), &found));
    }

    LateBound fso_;
    DISPID getFile_ = DISPID_UNKNOWN;
    std::wstring pattern_;
    LONG attributes_;
    LONG mode_;
    TypeFileSys& list_;
};

}  // namespace

int32_t searchFolder(const std::wstring& path, std::wstring_view pattern, LONG attributes, LONG mode,
                     TypeFileSys& list) {
    int32_t total = 0;
    tryStatement([&] { total = FolderSearch(pattern, attributes, mode, list).search(path); });
    return total;
}

void listFileSystem(const std::wstring& path, LONG kind, TypeFileSys& list) {
    const LateBound fso = LateBound::create(L"Scripting.FileSystemObject");
    auto addAll = [&](const Variant& collection, TypeFileSys::Kind as) {
        LateBound(*collection).forEach([&](const VARIANT& item) { list.add(as, item); });
    };
    switch (kind) {
    case GoAllFile:
        addAll(LateBound(*fso.call(L"GetFolder", {Variant::fromText(path)})).get(L"Files"), TypeFileSys::Files);
        break;
    case GoAllFolder:
        addAll(LateBound(*fso.call(L"GetFolder", {Variant::fromText(path)})).get(L"SubFolders"), TypeFileSys::Folders);
        break;
    case GoAllDrive: addAll(fso.get(L"Drives"), TypeFileSys::Drives); break;
    default: break;
    }
}

}  // namespace vx::files
