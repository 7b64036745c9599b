#pragma once
// Ds_FileSystem: files and folders. Special-folder placeholders in paths, text files read
// into arrays and keyed lists, files to bytes and back, shell copy, move, delete and rename,
// folder searches and counts, sizes as text, downloads, shortcuts, zip archives through an
// outside component, and the list, drive, recycle-bin and details objects.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/ComPtr.h"

#include <string>
#include <string_view>

namespace vx {

class FileSystem : public DispatchObject<FileSystem, _Ds_FileSystem> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_FileSystem; }
    FileSystem();

    HRESULT STDMETHODCALLTYPE get_MyAppPath(IDispatch** value) override;
    HRESULT STDMETHODCALLTYPE putref_MyAppPath(IDispatch* value) override;
    HRESULT STDMETHODCALLTYPE UnZipFile(BSTR FileNameZip, BSTR LocalFolderPath, BSTR sPattern) override;
    HRESULT STDMETHODCALLTYPE ZipFile(BSTR FileNameZip, BSTR FileOrFolderPathData, VARIANT_BOOL bStorePath, BSTR sNewPath,
                                      LONG lCompressionLevel) override;
    HRESULT STDMETHODCALLTYPE AddSplash(VARIANT* MyPath, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE SetFileAttribute(BSTR MyPath, Flag_ATTRIBUTE TypeAttribute, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE GetFileAttribute(BSTR MyPath, Flag_ATTRIBUTE TypeAttribute, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE IsDirX(BSTR MyPath, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE GetDetails(BSTR FileName, _Ds_TypeFileDetails** result) override;
    HRESULT STDMETHODCALLTYPE GTypeFile(VARIANT* FilePath, BSTR AddTypeFile, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE wFile(VARIANT* MyPath, IDispatch** result) override;
    HRESULT STDMETHODCALLTYPE wFolder(VARIANT* MyPath, IDispatch** result) override;
    HRESULT STDMETHODCALLTYPE IsFileX(BSTR MyPath, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE GoRecBin(BSTR RootDrive, _Ds_RecycleBin** result) override;
    HRESULT STDMETHODCALLTYPE GoDrive(BSTR RootDrive, _Ds_DriveInfo** result) override;
    HRESULT STDMETHODCALLTYPE AppPath(BSTR* result) override;
    HRESULT STDMETHODCALLTYPE DownloadFileUrl(BSTR sSourceUrl, BSTR sLocalFile, VARIANT_BOOL* IsDeleteUrlCacheEntry,
                                              VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE ConvertURLToPath(BSTR MyPath, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE GoFindFile(BSTR PathDir, VARIANT* ListSystem, BSTR GoSearch, LONG Attributes,
                                         Flag_SelectFind TypeSearch, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE CreateShourtCut(BSTR FirstPath, BSTR SecontPath) override;
    HRESULT STDMETHODCALLTYPE GetReadFileINI(BSTR sPathFile, VARIANT* MyList, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE GoFileAtt(VARIANT_BOOL IsSetFile, BSTR MyPath, Flag_ATTRIBUTE FlagX, VARIANT_BOOL IsTest,
                                        VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE ConstParamPath(VARIANT* MyList, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE CountDirectory(BSTR MyPath, Flag_FindCount* TypeCount, LONG* result) override;
    HRESULT STDMETHODCALLTYPE CountFile(BSTR MyPath, Flag_FindCount* TypeCount, LONG* result) override;
    HRESULT STDMETHODCALLTYPE ConvertArrayToFile(VARIANT MyArrayFile, BSTR MyPath, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE GetInfoSizeByte(double dblFileSize, BSTR strFormatMask, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE FormatFileSize(BSTR FileName, BSTR strFormatMask, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE ConvertFileToArray(BSTR MyPath, VARIANT* MyPicture, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE ActionSHFile(SHFlags FlagName, BSTR FromPath, BSTR ToPath, Flags_Recycle FlagWin) override;
    HRESULT STDMETHODCALLTYPE GetReadFile(BSTR sPathFile, VARIANT* MyArrText, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE NewFile(BSTR PathName, VARIANT* MyData, VARIANT_BOOL* IsUnicode) override;
    HRESULT STDMETHODCALLTYPE NewDir(BSTR PathName) override;
    HRESULT STDMETHODCALLTYPE GetXpPath(Flag_GetXpPath SelectPath, BSTR MyPath, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE GetFileSys(BSTR MyPath, VARIANT* ListSystem, Flag_FileSystem FlagFS,
                                         VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE PathReplace(BSTR sPath, Flag_TypeReplace TypeReplace, BSTR* result) override;

private:
    // A path argument with its placeholders expanded.
    std::wstring expand(std::wstring_view path) const;
    std::wstring expand(BSTR path) const { return expand(viewOf(path)); }
    // ConvertArrayToFile: the path written (a new temporary one for "").
    std::wstring arrayToFile(const VARIANT& bytes, std::wstring path);
    // CountDirectory and CountFile.
    LONG count(BSTR path, const Flag_FindCount* typeCount, const wchar_t* member, bool folders) const;

    ComPtr<IDispatch> app_;       // MyAppPath
    ComPtr<IDispatch> zip_;       // the outside zip component, when there is one
    long long tempFiles_ = 0;     // TempFileCounter: names ConvertArrayToFile's temporary files
};

}  // namespace vx
