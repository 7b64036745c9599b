#include "files/DriveInfo.h"

#include "core/runtime/Ansi.h"
#include "core/runtime/Errors.h"
#include "files/FileApi.h"

#include <cwchar>

namespace vx {

HRESULT DriveInfo::size(Size which, CY* value) const noexcept {
    return deliver(value, [&] {
        ULARGE_INTEGER freeToCaller{}, total{}, totalFree{};
        if (const auto root = files::systemPath(root_))
            GetDiskFreeSpaceExA(root->c_str(), &freeToCaller, &total, &totalFree);
        const auto count = [](ULARGE_INTEGER n) {
            if (n.QuadPart > static_cast<ULONGLONG>(INT64_MAX / 10000)) raise(err::Overflow);
            return static_cast<LONGLONG>(n.QuadPart);
        };
        const LONGLONG counts[] = {count(total), count(totalFree), count(freeToCaller), count(total) - count(totalFree)};
        // The byte count itself, held in the currency's fixed-point form.
        CY cy;
        cy.int64 = counts[which] * 10000;
        return cy;
    });
}

HRESULT DriveInfo::get_TotalBytes(CY* value) { return size(Total, value); }
HRESULT DriveInfo::get_TotalFreeBytes(CY* value) { return size(TotalFree, value); }
HRESULT DriveInfo::get_BytesFreeToCalller(CY* value) { return size(FreeToCaller, value); }
HRESULT DriveInfo::get_TotalBytesTotalFreeBytes(CY* value) { return size(Used, value); }

HRESULT DriveInfo::put_Caption(BSTR value) {
    return guard([&] {
        if (const auto root = files::systemPath(root_)) SetVolumeLabelA(root->c_str(), toAnsi(viewOf(value)).c_str());
    });
}

DriveInfo::Volume DriveInfo::volume() const {
    Volume v;
    AnsiBuffer name(255), fileSystem(255);
    if (const auto root = files::systemPath(root_))
        GetVolumeInformationA(root->c_str(), name.data(), 255, &v.serial, nullptr, nullptr, fileSystem.data(), 255);
    v.name = name.text();
    v.fileSystem = fileSystem.text();
    return v;
}

HRESULT DriveInfo::get_Caption(BSTR* value) {
    return deliver(value, [&] {
        std::wstring name = volume().name;
        return name.empty() ? std::wstring(L"Local Disk") : name;
    });
}

HRESULT DriveInfo::get_FileSystem(BSTR* value) {
    return deliver(value, [&] { return volume().fileSystem; });
}

HRESULT DriveInfo::get_SerialInfo(BSTR* value) {
    return deliver(value, [&] {
        wchar_t hex[16];
        std::swprintf(hex, 16, L"%lX", static_cast<unsigned long>(volume().serial));
        return std::wstring(hex);
    });
}

}  // namespace vx
