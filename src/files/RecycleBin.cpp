#include "files/RecycleBin.h"

#include "core/runtime/Errors.h"
#include "files/FileApi.h"
#include "files/FileServices.h"

#include <cstdint>

namespace vx {

HRESULT RecycleBin::GoEmptyFile() {
    // Every drive's bin, whatever RootDrive says, without asking.
    return guard([&] { service<RecycleBinService>().empty(GetDesktopWindow(), nullptr, SHERB_NOCONFIRMATION); });
}

HRESULT RecycleBin::query(bool items, LONG* value) const noexcept {
    return deliver(value, [&] {
        // The system's record for the word size in use (packed in 32-bit code, aligned in 64-bit).
        SHQUERYRBINFO info{};
        info.cbSize = sizeof info;
        const auto root = files::systemPath(root_);
        if (!root || FAILED(service<RecycleBinService>().query(root->c_str(), &info))) return 0;
        const long long count = items ? info.i64NumItems : info.i64Size;
        if (count > INT32_MAX || count < INT32_MIN) raise(err::Overflow);
        return static_cast<int32_t>(count);
    });
}

HRESULT RecycleBin::get_CountItem(LONG* value) { return query(true, value); }
HRESULT RecycleBin::get_FileSize(LONG* value) { return query(false, value); }

}  // namespace vx
