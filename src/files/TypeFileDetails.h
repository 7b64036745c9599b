#pragma once
// Ds_TypeFileDetails: the texts the shell shows in the columns of its details view for one
// file. NewDetailedFile binds the object to the file's folder (a shell Folder) and item (a
// FolderItem); each property reads one fixed column through Folder.GetDetailsOf. Nothing is
// trapped: without a folder and an item every property is error 91.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/ComPtr.h"

#include <string_view>

namespace vx {

class TypeFileDetails : public DispatchObject<TypeFileDetails, _Ds_TypeFileDetails> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_TypeFileDetails; }

    // NewDetailedFile: the part before the last backslash is the folder, the rest the file;
    // a name without a backslash is error 5.
    void bind(std::wstring_view fileName);

    HRESULT STDMETHODCALLTYPE NewDetailedFile(BSTR FileName) override;
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override { return column(0, value); }
    HRESULT STDMETHODCALLTYPE get_SIZE(BSTR* value) override { return column(1, value); }
    HRESULT STDMETHODCALLTYPE get_TypeFile(BSTR* value) override { return column(2, value); }
    HRESULT STDMETHODCALLTYPE get_DateModified(BSTR* value) override { return column(3, value); }
    HRESULT STDMETHODCALLTYPE get_DateCreated(BSTR* value) override { return column(4, value); }
    HRESULT STDMETHODCALLTYPE get_DateAccessed(BSTR* value) override { return column(5, value); }
    HRESULT STDMETHODCALLTYPE get_Attributes(BSTR* value) override { return column(6, value); }
    HRESULT STDMETHODCALLTYPE get_Status(BSTR* value) override { return column(7, value); }
    HRESULT STDMETHODCALLTYPE get_Owner(BSTR* value) override { return column(8, value); }
    HRESULT STDMETHODCALLTYPE get_Author(BSTR* value) override { return column(9, value); }
    HRESULT STDMETHODCALLTYPE get_Title(BSTR* value) override { return column(10, value); }
    HRESULT STDMETHODCALLTYPE get_Subject(BSTR* value) override { return column(11, value); }
    HRESULT STDMETHODCALLTYPE get_Category(BSTR* value) override { return column(12, value); }
    HRESULT STDMETHODCALLTYPE get_Pages(BSTR* value) override { return column(13, value); }
    HRESULT STDMETHODCALLTYPE get_Comments(BSTR* value) override { return column(14, value); }
    HRESULT STDMETHODCALLTYPE get_Copyright(BSTR* value) override { return column(15, value); }
    HRESULT STDMETHODCALLTYPE get_Artist(BSTR* value) override { return column(16, value); }
    HRESULT STDMETHODCALLTYPE get_AlbumTitle(BSTR* value) override { return column(17, value); }
    HRESULT STDMETHODCALLTYPE get_Year(BSTR* value) override { return column(18, value); }
    HRESULT STDMETHODCALLTYPE get_TrackNumber(BSTR* value) override { return column(19, value); }
    HRESULT STDMETHODCALLTYPE get_Genre(BSTR* value) override { return column(20, value); }
    HRESULT STDMETHODCALLTYPE get_Duration(BSTR* value) override { return column(21, value); }
    HRESULT STDMETHODCALLTYPE get_BitRate(BSTR* value) override { return column(22, value); }
    HRESULT STDMETHODCALLTYPE get_Protected(BSTR* value) override { return column(23, value); }
    HRESULT STDMETHODCALLTYPE get_CameraModel(BSTR* value) override { return column(24, value); }
    HRESULT STDMETHODCALLTYPE get_DatePictureTaken(BSTR* value) override { return column(25, value); }
    HRESULT STDMETHODCALLTYPE get_Dimensions(BSTR* value) override { return column(26, value); }
    HRESULT STDMETHODCALLTYPE get_EpisodeName(BSTR* value) override { return column(29, value); }
    HRESULT STDMETHODCALLTYPE get_ProgramDescription(BSTR* value) override { return column(30, value); }
    HRESULT STDMETHODCALLTYPE get_AudioSampleSize(BSTR* value) override { return column(32, value); }
    HRESULT STDMETHODCALLTYPE get_AudioSampleRate(BSTR* value) override { return column(33, value); }
    HRESULT STDMETHODCALLTYPE get_Channels(BSTR* value) override { return column(34, value); }
    HRESULT STDMETHODCALLTYPE get_Company(BSTR* value) override { return column(35, value); }
    HRESULT STDMETHODCALLTYPE get_Description(BSTR* value) override { return column(36, value); }
    HRESULT STDMETHODCALLTYPE get_FileVersion(BSTR* value) override { return column(37, value); }
    HRESULT STDMETHODCALLTYPE get_ProductName(BSTR* value) override { return column(38, value); }
    HRESULT STDMETHODCALLTYPE get_ProductVersion(BSTR* value) override { return column(39, value); }
    HRESULT STDMETHODCALLTYPE get_Keywords(BSTR* value) override { return column(40, value); }

private:
    HRESULT column(long number, BSTR* value) const noexcept;

    ComPtr<IDispatch> folder_;
    ComPtr<IDispatch> item_;
};

}  // namespace vx
