#include "files/FileSystem.h"

#include "core/dispatch/Defaults.h"
#include "core/runtime/Ansi.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Handles.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/SafeArray.h"
#include "core/runtime/Text.h"
#include "files/DriveInfo.h"
#include "files/FileApi.h"
#include "files/FileSearch.h"
#include "files/RecycleBin.h"
#include "files/ProfileFolders.h"
#include "files/TextLines.h"
#include "files/TypeFileDetails.h"
#include "files/TypeFileSys.h"
#include "shared/Helpers.h"
#include "shared/Waits.h"
#include "Vx_MainEnums.h"

#include <imagehlp.h>
#include <urlmon.h>
#include <wininet.h>

#include <cmath>
#include <vector>

namespace vx {

namespace {

using namespace files;

Variant text(std::wstring_view s) { return Variant::fromText(s); }

LateBound fileSystemObject() { return LateBound::create(L"Scripting.FileSystemObject"); }

// A file's bytes, for a path known to name a file; one that cannot be opened is error 75.
std::string contentsOf(const std::wstring& path) {
    auto bytes = readBytes(path);
    if (!bytes) raise(err::PathFileAccess);
    return std::move(*bytes);
}

// The bytes an array holds: a Byte array as it is, an array of Variants element by element
// (each a number from 0 to 255). Anything else is error 13.
std::string arrayBytes(const VARIANT& value) {
    const VARIANT& v = deref(value);
    if (!isArray(v)) raise(err::TypeMismatch);
    SAFEARRAY* array = ArrayView(v).get();
    if (!array) return {};
    VARTYPE type = VT_EMPTY;
    check(SafeArrayGetVartype(array, &type));
    size_t count = 1;
    for (UINT d = 0; d < array->cDims; ++d) count *= array->rgsabound[d].cElements;
    std::string bytes;
    bytes.reserve(count);
    SafeArrayAccess access(array);
    if (type == VT_UI1) {
        bytes.assign(access.as<char>(), count);
    } else if (type == VT_VARIANT) {
        for (size_t i = 0; i < count; ++i) {
            Variant b;
            const HRESULT hr = VariantChangeType(b.put(), &access.as<VARIANT>()[i], 0, VT_UI1);
            if (FAILED(hr)) raise(conversionErrorNumber(hr));
            bytes.push_back(static_cast<char>(V_UI1(b.get())));
        }
    } else {
        raise(err::TypeMismatch);
    }
    return bytes;
}

// SavePicture: a picture object written to a file in its own format (a bitmap as .bmp,
// an icon as .ico, a metafile as .wmf).
void savePicture(const VARIANT& value, const std::wstring& path) {
    const VARIANT& v = deref(value);
    IUnknown* object = V_VT(&v) == VT_DISPATCH ? V_DISPATCH(&v) : V_VT(&v) == VT_UNKNOWN ? V_UNKNOWN(&v) : nullptr;
    if (!object) raise(isObject(v) ? err::ObjectNotSet : err::TypeMismatch);
    ComPtr<IPicture> picture;
    if (FAILED(object->QueryInterface(IID_IPicture, reinterpret_cast<void**>(picture.put()))) || !picture)
        raise(err::TypeMismatch);
    ComPtr<IStream> stream;
    check(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()));
    LONG saved = 0;
    check(picture->SaveAsFile(stream.get(), TRUE, &saved));
    // What was written ends where the stream stands.
    ULARGE_INTEGER end{};
    check(stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_CUR, &end));
    check(stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
    std::string bytes(static_cast<size_t>(end.QuadPart), '\0');
    ULONG got = 0;
    if (!bytes.empty()) check(stream->Read(&bytes[0], static_cast<ULONG>(bytes.size()), &got));
    if (!writeBytes(path, bytes.data(), got)) raise(err::PathFileAccess);
}

// GetInfoSizeByte: bytes, KB, MB or GB by band, formatted with the mask (or the band's own).
std::wstring sizeText(double size, std::wstring_view mask) {
    auto formatted = [&](double value, const wchar_t* bandMask) {
        std::wstring format = mask.empty() ? std::wstring(bandMask) : std::wstring(mask);
        Variant v = Variant::fromDouble(value);
        Bstr out;
        check(VarFormat(v.get(), &format[0], 0, 0, 0, out.put()));
        return out.str();
    };
    if (std::isnan(size)) return {};
    if (size >= 0 && size <= 1023) return toText(*Variant::fromDouble(size)) + L" bytes";
    if (size >= 1024 && size <= 1048575) return formatted(size / 1024, L"###0") + L" KB";
    if (size >= 1048576 && size <= 1073741823) return formatted(size / std::pow(1024.0, 2), L"###0.0") + L" MB";
    // Sizes of the GB band up to the largest the number formatting takes whole (a Decimal's
    // 29 digits); larger ones are no size a file can have, and overflow.
    constexpr double kLargestSize = 7.9e28;
    if (size > kLargestSize) raise(err::Overflow);
    if (size > 1073741823) return formatted(size / std::pow(1024.0, 3), L"###0.0") + L" GB";
    return {};
}

// NewDir after expansion.
void newDir(const std::wstring& path) {
    if (path.compare(0, 2, L"\\\\") == 0) {
        // A share: "\\server\share\" stays, each further level is made in turn.
        const std::vector<std::wstring> fields = split(path, L"\\");
        std::wstring base;
        for (size_t i = 0; i < fields.size() && i < 4; ++i) base += (i ? L"\\" : L"") + fields[i];
        base += L'\\';
        for (size_t i = 4; i < fields.size(); ++i) {
            base += fields[i] + L'\\';
            if (const auto p = systemPath(base)) CreateDirectoryA(p->c_str(), nullptr);
        }
        return;
    }
    if (const auto p = systemPath(path)) DeleteFileA(p->c_str());  // a file bearing the folder's name
    shellOperation(0, path, L"", 0);                                 // unhides what is there
    std::wstring folder = path;
    if (folder.empty() || folder.back() != L'\\') folder += L'\\';
    const auto p = systemPath(folder);
    if (!p) return;
    MakeSureDirectoryPathExists(p->c_str());
    if (attributesOf(folder) & FILE_ATTRIBUTE_HIDDEN) setAttributes(folder, FILE_DIRECTORY | FILE_NORMAL);
    shellOperation(0, std::wstring_view(folder).substr(0, folder.size() - 1), L"", 0);
}

}  // namespace

FileSystem::FileSystem() {
    // The zip component is an outside party's: without it the object works all the same.
    tryStatement([&] { zip_ = ComPtr<IDispatch>(LateBound::create(L"XStandard.Zip").get()); });
}

std::wstring FileSystem::expand(std::wstring_view path) const { return expandPath(path, app_.get()); }

HRESULT FileSystem::get_MyAppPath(IDispatch** value) {
    return deliver(value, [&] { return app_; });
}

HRESULT FileSystem::putref_MyAppPath(IDispatch* value) {
    return guard([&] { app_ = ComPtr<IDispatch>(value); });
}

HRESULT FileSystem::UnZipFile(BSTR FileNameZip, BSTR LocalFolderPath, BSTR sPattern) {
    return guard([&] {
        LateBound(zip_.get()).call(L"UnPack", {text(viewOf(FileNameZip)), text(viewOf(LocalFolderPath)), text(viewOf(sPattern))});
    });
}

HRESULT FileSystem::ZipFile(BSTR FileNameZip, BSTR FileOrFolderPathData, VARIANT_BOOL bStorePath, BSTR sNewPath,
                            LONG lCompressionLevel) {
    return guard([&] {
        // The component takes the source first and the archive second.
        LateBound(zip_.get()).call(L"Pack", {text(viewOf(FileOrFolderPathData)), text(viewOf(FileNameZip)),
                                             Variant::fromBool(bStorePath != VARIANT_FALSE), text(viewOf(sNewPath)),
                                             Variant::fromLong(lCompressionLevel)});
    });
}

HRESULT FileSystem::AddSplash(VARIANT* MyPath, BSTR* result) {
    return deliver(result, [&] {
        VARIANT& path = required(MyPath);
        std::wstring s = toText(path);
        if (s.empty() || s.back() != L'\\') {
            s += L'\\';
            writeBack(path, *text(s));
        }
        return s;
    });
}

HRESULT FileSystem::SetFileAttribute(BSTR MyPath, Flag_ATTRIBUTE TypeAttribute, VARIANT_BOOL* result) {
    return deliver(result, [&] { return setAttributes(expand(MyPath), static_cast<DWORD>(TypeAttribute)); });
}

HRESULT FileSystem::GetFileAttribute(BSTR MyPath, Flag_ATTRIBUTE TypeAttribute, VARIANT_BOOL* result) {
    // A missing path has every attribute bit set, so every test of it is True.
    return deliver(result, [&] { return (attributesOf(expand(MyPath)) & static_cast<DWORD>(TypeAttribute)) != 0; });
}

HRESULT FileSystem::IsDirX(BSTR MyPath, VARIANT_BOOL* result) {
    return deliver(result, [&] { return isFolder(expand(MyPath)); });
}

HRESULT FileSystem::IsFileX(BSTR MyPath, VARIANT_BOOL* result) {
    return deliver(result, [&] { return isFile(expand(MyPath)); });
}

HRESULT FileSystem::GetDetails(BSTR FileName, _Ds_TypeFileDetails** result) {
    return deliver(result, [&] {
        ComPtr<TypeFileDetails> details = TypeFileDetails::create();
        details->bind(viewOf(FileName));
        return details;
    });
}

HRESULT FileSystem::GTypeFile(VARIANT* FilePath, BSTR AddTypeFile, VARIANT* result) {
    return deliver(result, [&] {
        VARIANT& pathArg = required(FilePath);
        const std::wstring given = toText(pathArg);
        std::wstring path = expand(given);
        const std::wstring_view extension = viewOf(AddTypeFile);
        if (lower(right(path, static_cast<long>(extension.size()))) != lower(extension)) path += extension;
        if (path != given) writeBack(pathArg, *text(path));
        return text(path);
    });
}

HRESULT FileSystem::wFile(VARIANT* MyPath, IDispatch** result) {
    return deliver(result, [&] {
        VARIANT& pathArg = required(MyPath);
        const std::wstring path = expand(toText(pathArg));
        writeBack(pathArg, *text(path));
        return ComPtr<IDispatch>(dispatchOf(*fileSystemObject().call(L"GetFile", {text(path)})));
    });
}

HRESULT FileSystem::wFolder(VARIANT* MyPath, IDispatch** result) {
    return deliver(result, [&] {
        VARIANT& pathArg = required(MyPath);
        const std::wstring path = expand(toText(pathArg));
        writeBack(pathArg, *text(path));
        return ComPtr<IDispatch>(dispatchOf(*fileSystemObject().call(L"GetFolder", {text(path)})));
    });
}

HRESULT FileSystem::GoRecBin(BSTR RootDrive, _Ds_RecycleBin** result) {
    return deliver(result, [&] {
        ComPtr<RecycleBin> bin = RecycleBin::create();
        bin->setRoot(specialFolder(GetDriveRoot));
        if (SysStringLen(RootDrive)) bin->setRoot(expand(RootDrive));
        return bin;
    });
}

HRESULT FileSystem::GoDrive(BSTR RootDrive, _Ds_DriveInfo** result) {
    return deliver(result, [&] {
        ComPtr<DriveInfo> drive = DriveInfo::create();
        drive->setRoot(specialFolder(GetDriveRoot));
        if (SysStringLen(RootDrive)) drive->setRoot(expand(RootDrive));
        return drive;
    });
}

HRESULT FileSystem::AppPath(BSTR* result) {
    return deliver(result, [&] { return appPath(app_.get()); });
}

HRESULT FileSystem::DownloadFileUrl(BSTR sSourceUrl, BSTR sLocalFile, VARIANT_BOOL* IsDeleteUrlCacheEntry,
                                    VARIANT_BOOL* result) {
    return deliver(result, [&] {
        const bool deleteCacheEntry =
            argumentOr(IsDeleteUrlCacheEntry, __uuidof(_Ds_FileSystem), L"DownloadFileUrl", L"IsDeleteUrlCacheEntry");
        yieldTimes(3);
        const std::wstring path = expand(sLocalFile);
        newDir(expand(parentPath(path)));
        yieldTimes(3);
        const auto url = systemText(viewOf(sSourceUrl));
        const auto file = systemPath(path);
        // 16: the newest version, never a cached one.
        const bool done = url && file && URLDownloadToFileA(nullptr, url->c_str(), file->c_str(), 16, nullptr) == S_OK;
        yieldTimes(3);
        yieldTimes(3);
        if (deleteCacheEntry && url) DeleteUrlCacheEntryA(url->c_str());
        return done;
    });
}

HRESULT FileSystem::ConvertURLToPath(BSTR MyPath, BSTR* result) {
    return deliver(result, [&] { return urlToPath(viewOf(MyPath)); });
}

HRESULT FileSystem::GoFindFile(BSTR PathDir, VARIANT* ListSystem, BSTR GoSearch, LONG Attributes,
                               Flag_SelectFind TypeSearch, VARIANT* result) {
    return deliver(result, [&] {
        VARIANT& listArg = required(ListSystem);
        ComPtr<TypeFileSys> list = TypeFileSys::create();
        const int32_t total = searchFolder(expand(PathDir), viewOf(GoSearch), Attributes, TypeSearch, *list);
        list->setSize(*Variant::fromLong(total));
        writeBack(listArg, *Variant::fromDispatch(list.get()));
        return Variant::fromBool(total >= 1);
    });
}

HRESULT FileSystem::CreateShourtCut(BSTR FirstPath, BSTR SecontPath) {
    return guard([&] {
        const LateBound shell = LateBound::create(L"WScript.Shell");
        const LateBound link(*shell.call(L"CreateShortcut", {text(expand(SecontPath))}));
        link.put(L"TargetPath", text(expand(FirstPath)));
        link.call(L"Save");
    });
}

HRESULT FileSystem::GetReadFileINI(BSTR sPathFile, VARIANT* MyList, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        VARIANT& list = required(MyList);
        const std::wstring path = expand(sPathFile);
        if (!isFile(path)) return false;
        const Variant first = Variant::fromShort(0), second = Variant::fromShort(1), last = Variant::fromShort(2);
        const Variant separator = text(L"=");
        for (const std::wstring& line : textLines(contentsOf(path))) {
            const Variant l = text(line);
            const std::wstring key = trim(toText(*getVar(*l, *first, *separator, SelectID, *last)));
            const std::wstring value = trim(toText(*getVar(*l, *second, *separator, SelectID, *last)));
            LateBound(list).call(L"Add", {text(value), text(key)});
        }
        return true;
    });
}

HRESULT FileSystem::GoFileAtt(VARIANT_BOOL IsSetFile, BSTR MyPath, Flag_ATTRIBUTE FlagX, VARIANT_BOOL IsTest,
                              VARIANT* result) {
    return deliver(result, [&] {
        const std::wstring path = expand(MyPath);
        if (IsSetFile != VARIANT_FALSE) {
            setAttributes(path, static_cast<DWORD>(FlagX));
            return Variant();
        }
        const DWORD attributes = attributesOf(path);
        if (IsTest != VARIANT_FALSE) return Variant::fromBool((attributes & static_cast<DWORD>(FlagX)) != 0);
        return Variant::fromLong(static_cast<int32_t>(attributes));
    });
}

HRESULT FileSystem::ConstParamPath(VARIANT* MyList, VARIANT* result) {
    return deliver(result, [&] {
        const std::wstring names = specialFolderNames();
        if (MyList && !isMissing(*MyList)) writeBack(*MyList, *text(names));
        // An array of Variants holding the texts: every host reads that, where not every
        // host reads an array of strings.
        std::vector<Variant> items;
        for (const std::wstring& name : split(names, L",")) items.push_back(text(name));
        return makeVariantArray(items);
    });
}

LONG FileSystem::count(BSTR MyPath, const Flag_FindCount* typeCount, const wchar_t* member, bool folders) const {
    const std::wstring path = expand(MyPath);
    if (argumentOr(typeCount, __uuidof(_Ds_FileSystem), member, L"TypeCount") == SubTag) {
        if (!isFolder(path)) return -1;
        const LateBound folder(*fileSystemObject().call(L"GetFolder", {text(path)}));
        return toInt32(*LateBound(*folder.get(folders ? L"SubFolders" : L"Files")).get(L"Count"));
    }
    // Every depth for folders; for files the folder alone, since a file search does not descend.
    ComPtr<TypeFileSys> list = TypeFileSys::create();
    searchFolder(path, L"*.*", 7, folders ? GoFolder : GoFile, *list);
    Variant n;
    check(folders ? list->get_CountFolder(n.put()) : list->get_CountFile(n.put()));
    return toInt32(*n);
}

HRESULT FileSystem::CountDirectory(BSTR MyPath, Flag_FindCount* TypeCount, LONG* result) {
    return deliver(result, [&] { return count(MyPath, TypeCount, L"CountDirectory", true); });
}

HRESULT FileSystem::CountFile(BSTR MyPath, Flag_FindCount* TypeCount, LONG* result) {
    return deliver(result, [&] { return count(MyPath, TypeCount, L"CountFile", false); });
}

std::wstring FileSystem::arrayToFile(const VARIANT& bytes, std::wstring path) {
    // Each step on its own: one that fails is left out and the next one runs.
    ++tempFiles_;
    if (path.empty()) path = specialFolder(GetMyTemp) + L"Kw_FSP" + std::to_wstring(tempFiles_);
    tryStatement([&] { shellOperation(FO_DELETE, path, L"", 0); });
    std::string data;
    tryStatement([&] { data = arrayBytes(bytes); });
    writeBytes(path, data.data(), data.size());
    return path;
}

HRESULT FileSystem::ConvertArrayToFile(VARIANT MyArrayFile, BSTR MyPath, VARIANT* result) {
    return deliver(result, [&] { return text(arrayToFile(MyArrayFile, expand(MyPath))); });
}

HRESULT FileSystem::GetInfoSizeByte(double dblFileSize, BSTR strFormatMask, BSTR* result) {
    return deliver(result, [&] { return sizeText(dblFileSize, viewOf(strFormatMask)); });
}

HRESULT FileSystem::FormatFileSize(BSTR FileName, BSTR strFormatMask, BSTR* result) {
    return deliver(result, [&] {
        return sizeText(static_cast<double>(fileLength(viewOf(FileName))), viewOf(strFormatMask));
    });
}

HRESULT FileSystem::ConvertFileToArray(BSTR MyPath, VARIANT* MyPicture, VARIANT* result) {
    return deliver(result, [&] {
        std::wstring path = expand(MyPath);
        if (MyPicture && !isMissing(*MyPicture)) {
            path = specialFolder(GetMyTemp) + L"KwPic";
            shellOperation(FO_DELETE, path, L"", 0);
            savePicture(*MyPicture, path);
        }
        if (!isFile(path)) return Variant();
        // One element more than the file has bytes; the last stays 0.
        std::string bytes = contentsOf(path);
        bytes.push_back('\0');
        return makeByteArray(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    });
}

HRESULT FileSystem::ActionSHFile(SHFlags FlagName, BSTR FromPath, BSTR ToPath, Flags_Recycle FlagWin) {
    return guard([&] { shellOperation(static_cast<UINT>(FlagName), expand(FromPath), expand(ToPath), FlagWin); });
}

HRESULT FileSystem::GetReadFile(BSTR sPathFile, VARIANT* MyArrText, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        VARIANT& target = required(MyArrText);
        const std::wstring path = expand(sPathFile);
        if (!isFile(path)) return false;
        const VARIANT& held = deref(target);
        if (!isArray(held)) {
            const LateBound stream(*fileSystemObject().call(
                L"OpenTextFile", {text(path), Variant::fromLong(1), Variant::fromBool(false), Variant::fromLong(0)}));
            const Variant all = stream.call(L"ReadAll");
            stream.call(L"Close");
            moveBack(target, all);
            return true;
        }
        const std::string bytes = contentsOf(path);
        if (bytes.empty()) return true;  // no line read: the array stays as it was
        // The array becomes 0 to the last line, in one step, as growing it line by line
        // with its contents kept would leave it.
        SAFEARRAY* array = ArrayView(held).get();
        VARTYPE element = static_cast<VARTYPE>(valueType(held) & ~VT_ARRAY);
        if (array) {
            if (array->fFeatures & (FADF_FIXEDSIZE | FADF_STATIC | FADF_EMBEDDED) || array->cLocks) raise(10);
            if (array->cDims != 1 || array->rgsabound[0].lLbound != 0) raise(err::SubscriptOutOfRange);
            check(SafeArrayGetVartype(array, &element));
        }
        if (element != VT_VARIANT && element != VT_BSTR) raise(err::TypeMismatch);
        moveBack(target, lineArray(bytes, element));
        return true;
    });
}

HRESULT FileSystem::NewFile(BSTR PathName, VARIANT* MyData, VARIANT_BOOL* IsUnicode) {
    return guard([&] {
        const std::wstring path = expand(PathName);
        if (isFolder(path)) shellOperation(FO_DELETE, path, L"", 0);
        const auto p = systemPath(path);
        if (!MyData || isMissing(*MyData)) {
            // An empty file; one already there is left as it is.
            if (p) UniqueFile(CreateFileA(p->c_str(), 0, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
        } else if (argumentOr(IsUnicode, __uuidof(_Ds_FileSystem), L"NewFile", L"IsUnicode")) {
            const std::wstring data = toText(*MyData);
            const LateBound stream(*fileSystemObject().call(
                L"CreateTextFile", {text(path), Variant::fromBool(true), Variant::fromBool(true)}));
            stream.call(L"Write", {text(data)});
            stream.call(L"Close");
        } else if (isArray(deref(*MyData))) {
            writeBytes(path, "", 0);
            arrayToFile(*MyData, path);
        } else {
            // As the print-to-file statement writes a value: its text, then a line end.
            const std::wstring data = isNull(*MyData) ? std::wstring(L"Null") : toText(*MyData);
            const std::string line = toAnsi(data) + "\r\n";
            writeBytes(path, line.data(), line.size());
        }
        if (attributesOf(path) & FILE_ATTRIBUTE_HIDDEN) setAttributes(path, FILE_ATTRIBUTE_NORMAL);
    });
}

HRESULT FileSystem::NewDir(BSTR PathName) {
    return guard([&] { newDir(expand(PathName)); });
}

HRESULT FileSystem::GetXpPath(Flag_GetXpPath SelectPath, BSTR MyPath, BSTR* result) {
    return deliver(result, [&] { return specialFolder(SelectPath, viewOf(MyPath)); });
}

HRESULT FileSystem::GetFileSys(BSTR MyPath, VARIANT* ListSystem, Flag_FileSystem FlagFS, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        VARIANT& listArg = required(ListSystem);
        // Any failure leaves the result False.
        return tryStatement([&] {
            ComPtr<TypeFileSys> list = TypeFileSys::create();
            listFileSystem(expand(MyPath), FlagFS, *list);
            writeBack(listArg, *Variant::fromDispatch(list.get()));
        });
    });
}

HRESULT FileSystem::PathReplace(BSTR sPath, Flag_TypeReplace TypeReplace, BSTR* result) {
    return deliver(result, [&] {
        return TypeReplace == ConvertPathToParam ? expand(sPath) : foldPath(viewOf(sPath));
    });
}

}  // namespace vx
