#pragma once
// Ds_DriveInfo: the sizes, label, file system and serial number of the drive at RootDrive.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"

#include <string>

namespace vx {

class DriveInfo : public DispatchObject<DriveInfo, _Ds_DriveInfo> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_DriveInfo; }

    void setRoot(std::wstring root) { root_ = std::move(root); }

    HRESULT STDMETHODCALLTYPE get_RootDrive(BSTR* value) override { return giveText(root_, value); }
    HRESULT STDMETHODCALLTYPE put_RootDrive(BSTR value) override { return takeText(root_, value); }
    HRESULT STDMETHODCALLTYPE get_TotalBytes(CY* value) override;
    HRESULT STDMETHODCALLTYPE get_TotalFreeBytes(CY* value) override;
    HRESULT STDMETHODCALLTYPE get_BytesFreeToCalller(CY* value) override;
    HRESULT STDMETHODCALLTYPE get_TotalBytesTotalFreeBytes(CY* value) override;
    HRESULT STDMETHODCALLTYPE put_Caption(BSTR value) override;
    HRESULT STDMETHODCALLTYPE get_Caption(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_FileSystem(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_SerialInfo(BSTR* value) override;

private:
    enum Size { Total, TotalFree, FreeToCaller, Used };
    HRESULT size(Size which, CY* value) const noexcept;
    struct Volume {
        std::wstring name, fileSystem;
        DWORD serial = 0;
    };
    Volume volume() const;

    std::wstring root_;
};

}  // namespace vx
