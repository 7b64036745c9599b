#include "text/Display.h"

#include "core/runtime/Errors.h"
#include "core/runtime/FilePaths.h"

#include <vector>

namespace vx::display {

bool changeResolution(LONG width, LONG height, LONG bitsPerPel, LONG frequency, bool save) {
    if (width < 0 || height < 0 || bitsPerPel < 0 || frequency < 0) raise(err::InvalidCall);
    DisplayService& display = service<DisplayService>();
    if (!width && !height && !bitsPerPel && !frequency)
        return display.changeSettings(nullptr, 0) == DISP_CHANGE_SUCCESSFUL;

    DEVMODEW mode{};
    mode.dmSize = sizeof mode;
    if (!display.enumSettings(ENUM_CURRENT_SETTINGS, &mode)) return false;
    mode.dmSize = sizeof mode;
    mode.dmDriverExtra = 0;
    mode.dmFields = 0;
    auto take = [&](LONG value, DWORD& field, DWORD flag) {
        if (!value) return;
        field = static_cast<DWORD>(value);
        mode.dmFields |= flag;
    };
    take(width, mode.dmPelsWidth, DM_PELSWIDTH);
    take(height, mode.dmPelsHeight, DM_PELSHEIGHT);
    take(bitsPerPel, mode.dmBitsPerPel, DM_BITSPERPEL);
    take(frequency, mode.dmDisplayFrequency, DM_DISPLAYFREQUENCY);
    if (display.changeSettings(&mode, CDS_TEST) != DISP_CHANGE_SUCCESSFUL) return false;
    return display.changeSettings(&mode, save ? CDS_UPDATEREGISTRY : 0) == DISP_CHANGE_SUCCESSFUL;
}

bool setWallpaper(std::wstring_view fileName, bool save, std::wstring& previous) {
    DisplayService& display = service<DisplayService>();
    std::vector<wchar_t> current(MAX_PATH + 1, L'\0');
    if (display.parametersInfo(SPI_GETDESKWALLPAPER, static_cast<UINT>(current.size()), current.data(), 0))
        previous.assign(current.data());
    else
        previous.clear();

    std::wstring path;
    if (!fileName.empty()) {
        if (fileName.find(L'\0') != std::wstring_view::npos) return false;
        path = fullPathName(fileName);
        const DWORD attributes = GetFileAttributesW(path.c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY)) return false;
    }
    const UINT flags = save ? (SPIF_UPDATEINIFILE | SPIF_SENDWININICHANGE) : SPIF_SENDWININICHANGE;
    return display.parametersInfo(SPI_SETDESKWALLPAPER, 0, &path[0], flags) != FALSE;
}

}  // namespace vx::display
