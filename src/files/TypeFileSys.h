#pragma once
// Ds_TypeFileSys: what a folder search or listing found, as the scripting runtime's own
// Folder, File and Drive objects in three lists counted from 0, and a total size.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/ComPtr.h"

#include <vector>

namespace vx {

class TypeFileSys : public DispatchObject<TypeFileSys, _Ds_TypeFileSys> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_TypeFileSys; }

    enum Kind { Folders, Files, Drives };
    // AddFolder, AddFile, AddDrive: the list grows by one place, which then holds the
    // object as the scripting interface of its kind, or stays empty for anything else.
    void add(Kind kind, const VARIANT& object);
    void add(Kind kind, IUnknown* object);
    void setSize(const VARIANT& size);

    HRESULT STDMETHODCALLTYPE get_SizeFile(VARIANT* value) override;
    HRESULT STDMETHODCALLTYPE put_SizeFile(VARIANT value) override;
    HRESULT STDMETHODCALLTYPE ItemFolder(LONG nIndex, IDispatch** result) override;
    HRESULT STDMETHODCALLTYPE ItemFile(LONG nIndex, IDispatch** result) override;
    HRESULT STDMETHODCALLTYPE ItemDrive(LONG nIndex, IDispatch** result) override;
    HRESULT STDMETHODCALLTYPE get_CountFolder(VARIANT* value) override;
    HRESULT STDMETHODCALLTYPE get_CountFile(VARIANT* value) override;
    HRESULT STDMETHODCALLTYPE ClearAll() override;
    HRESULT STDMETHODCALLTYPE AddFolder(VARIANT MyFolder) override;
    HRESULT STDMETHODCALLTYPE AddFile(VARIANT MyFile) override;
    HRESULT STDMETHODCALLTYPE AddDrive(VARIANT MyDrive) override;
    HRESULT STDMETHODCALLTYPE ItemDriveName(LONG nIndex, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE ItemDriveType(LONG nIndex, BSTR* result) override;

private:
    const ComPtr<IDispatch>& item(Kind kind, LONG index) const;
    HRESULT give(Kind kind, LONG index, IDispatch** result) noexcept;
    static HRESULT count(const std::vector<ComPtr<IDispatch>>& list, VARIANT* value) noexcept;

    std::vector<ComPtr<IDispatch>> lists_[3];
    Variant size_;
};

}  // namespace vx
