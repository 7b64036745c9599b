#pragma once
// The display settings Ds_MyVaribleFunction changes: the screen mode (GoResulotion) and the
// desktop wallpaper (SetBackground), through a seam of their own, so that tests can watch
// what would change without changing the computer.
#include "core/runtime/Platform.h"
#include "core/runtime/Seams.h"

#include <functional>
#include <string>

namespace vx {

// EnumDisplaySettingsW and ChangeDisplaySettingsW of the primary display, and
// SystemParametersInfoW.
struct DisplayService {
    std::function<BOOL(DWORD, DEVMODEW*)> enumSettings = [](DWORD mode, DEVMODEW* settings) {
        return ::EnumDisplaySettingsW(nullptr, mode, settings);
    };
    std::function<LONG(DEVMODEW*, DWORD)> changeSettings = [](DEVMODEW* settings, DWORD flags) {
        return ::ChangeDisplaySettingsW(settings, flags);
    };
    std::function<BOOL(UINT, UINT, void*, UINT)> parametersInfo = [](UINT action, UINT param, void* data, UINT flags) {
        return ::SystemParametersInfoW(action, param, data, flags);
    };
};

namespace display {

// GoResulotion: width, height, colour depth and refresh rate (0 keeps a value; all 0
// brings back the mode saved in the settings), tried before it is set; with save, saved
// as well. Whether the mode was set. A negative value is error 5.
bool changeResolution(LONG width, LONG height, LONG bitsPerPel, LONG frequency, bool save);

// SetBackground: the picture file as the wallpaper ("" none), kept for later sessions with
// save; previous receives the wallpaper before. False for a file that does not exist.
bool setWallpaper(std::wstring_view fileName, bool save, std::wstring& previous);

}  // namespace display
}  // namespace vx
