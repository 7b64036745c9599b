#pragma once
// Ds_RecycleBin: the item count and size of the recycle bin of the drive at RootDrive,
// and emptying every drive's bin.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"

#include <string>

namespace vx {

class RecycleBin : public DispatchObject<RecycleBin, _Ds_RecycleBin> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_RecycleBin; }

    void setRoot(std::wstring root) { root_ = std::move(root); }

    HRESULT STDMETHODCALLTYPE get_RootDrive(BSTR* value) override { return giveText(root_, value); }
    HRESULT STDMETHODCALLTYPE put_RootDrive(BSTR value) override { return takeText(root_, value); }
    HRESULT STDMETHODCALLTYPE GoEmptyFile() override;
    HRESULT STDMETHODCALLTYPE get_CountItem(LONG* value) override;
    HRESULT STDMETHODCALLTYPE get_FileSize(LONG* value) override;

private:
    HRESULT query(bool items, LONG* value) const noexcept;

    std::wstring root_;
};

}  // namespace vx
