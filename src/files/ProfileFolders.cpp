#include "files/ProfileFolders.h"

#include "core/runtime/Ansi.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Handles.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/Text.h"
#include "files/FileServices.h"
#include "Vx_MainEnums.h"

#include <userenv.h>

#include <functional>

namespace vx::files {

namespace {

// The folder below the user's profile that a code names, after the profile's backslash.
const wchar_t* profileSuffix(LONG code) {
    switch (code) {
    case GetDesktop: return L"Desktop\\";
    case GetMyDucoment: return L"My Documents\\";
    case GetMyPictures: return L"My Documents\\My Pictures\\";
    case GetMyMusic: return L"My Documents\\My Music\\";
    case GetMyVideos: return L"My Documents\\My Videos\\";
    case GetStartMenu: return L"Start Menu\\";
    case GetStartMenuPrograms: return L"Start Menu\\Programs\\";
    case GetStartMenuStartup: return L"Start Menu\\Programs\\Startup\\";
    default: return nullptr;
    }
}

// The one call that fills the 255-character buffer for a code; false for no such code.
bool fillFolder(LONG code, AnsiBuffer& buffer) {
    DWORD size = static_cast<DWORD>(buffer.size());
    switch (code) {
    case GetAllUserPath: service<ProfileFolderService>().allUsers(buffer.data(), &size); return true;
    case GetDefaultUser: service<ProfileFolderService>().defaultUser(buffer.data(), &size); return true;
    case GetDocSetting: GetProfilesDirectoryA(buffer.data(), &size); return true;
    case GetDriveRoot:
        GetWindowsDirectoryA(buffer.data(), size);
        buffer.data()[3] = '\0';  // the drive's root: the first three characters
        return true;
    case GetWindowsRoot: GetWindowsDirectoryA(buffer.data(), size); return true;
    case GetSystem32Root: GetSystemDirectoryA(buffer.data(), size); return true;
    case GetMyTemp: GetTempPathA(size, buffer.data()); return true;
    case GetNameUser: GetUserNameA(buffer.data(), &size); return true;
    default:
        if (code != GetMyUserPath && !profileSuffix(code)) return false;
        UniqueKernelHandle token;
        if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.put()))
            GetUserProfileDirectoryA(token.get(), buffer.data(), &size);
        return true;
    }
}

// Replaces every occurrence of a placeholder, asking for its folder only when it occurs;
// a folder that cannot be had leaves the text as it is.
void replacePlaceholder(std::wstring& path, std::wstring_view placeholder, const std::function<std::wstring()>& folder) {
    if (path.find(placeholder) == std::wstring::npos) return;
    tryStatement([&] { path = replace(path, placeholder, folder()); });
}

}  // namespace

std::wstring specialFolder(LONG code, std::wstring_view tail) {
    AnsiBuffer buffer(255);
    std::wstring folder;
    if (fillFolder(code, buffer)) {
        folder = buffer.text();
        if (code != GetNameUser) folder += L'\\';
        if (const wchar_t* suffix = profileSuffix(code)) folder += suffix;
    }
    if (folder.size() >= 2 && folder.compare(folder.size() - 2, 2, L"\\\\") == 0) folder.pop_back();
    return folder.append(tail);
}

std::wstring appPath(IDispatch* app) {
    std::wstring path = toText(*LateBound(app).get(L"Path"));
    if (path.empty() || path.back() != L'\\') path += L'\\';
    return path;
}

std::wstring expandPath(std::wstring_view text, IDispatch* app) {
    std::wstring path(text);
    if (path.empty()) return path;
    auto exeName = [&] { return toText(*LateBound(app).get(L"EXEName")) + L".EXE"; };
    replacePlaceholder(path, L"*AppPath*", [&] { return appPath(app); });
    replacePlaceholder(path, L"*EXE*", exeName);
    replacePlaceholder(path, L"*AppEXE*", [&] { return appPath(app) + exeName(); });
    static const struct {
        const wchar_t* placeholder;
        LONG code;
    } folders[] = {
        {L"*ACM*", GetNameUser},           {L"*MyTemp*", GetMyTemp},
        {L"*Desktop*", GetDesktop},        {L"*MyMusic*", GetMyMusic},
        {L"*MyVideos*", GetMyVideos},      {L"*DriveRoot*", GetDriveRoot},
        {L"*StartMenu*", GetStartMenu},    {L"*MyPictures*", GetMyPictures},
        {L"*MyUserPath*", GetMyUserPath},  {L"*MyDucoment*", GetMyDucoment},
        {L"*DocSetting*", GetDocSetting},  {L"*AllUserPath*", GetAllUserPath},
        {L"*DefaultUser*", GetDefaultUser}, {L"*WindowsRoot*", GetWindowsRoot},
        {L"*System32Root*", GetSystem32Root}, {L"*StartMenuStartup*", GetStartMenuStartup},
        {L"*StartMenuPrograms*", GetStartMenuPrograms},
    };
    for (const auto& f : folders) replacePlaceholder(path, f.placeholder, [&] { return specialFolder(f.code); });
    return path;
}

std::wstring foldPath(std::wstring_view text) {
    if (text.empty()) return {};
    std::wstring path(text);
    if (path.back() != L'\\') path = lower(path) + L'\\';
    static const struct {
        const wchar_t* placeholder;
        LONG code;
    } folders[] = {
        {L"*StartMenuStartup*", GetStartMenuStartup}, {L"*StartMenuPrograms*", GetStartMenuPrograms},
        {L"*StartMenu*", GetStartMenu},               {L"*AllUserPath*", GetAllUserPath},
        {L"*MyPictures*", GetMyPictures},             {L"*MyMusic*", GetMyMusic},
        {L"*MyVideos*", GetMyVideos},                 {L"*MyTemp*", GetMyTemp},
        {L"*Desktop*", GetDesktop},                   {L"*MyDucoment*", GetMyDucoment},
        {L"*System32Root*", GetSystem32Root},         {L"*WindowsRoot*", GetWindowsRoot},
        {L"*MyUserPath*", GetMyUserPath},             {L"*DocSetting*", GetDocSetting},
    };
    // The first folder the path starts with; when none, the last one tried all the same.
    const wchar_t* placeholder = nullptr;
    size_t length = 0;
    for (const auto& f : folders) {
        const std::wstring folder = lower(specialFolder(f.code));
        placeholder = f.placeholder;
        length = folder.size();
        if (path.compare(0, folder.size(), folder) == 0) break;
    }
    return std::wstring(placeholder) + L'\\' + (length < path.size() ? path.substr(length) : std::wstring());
}

std::wstring urlToPath(std::wstring_view url) {
    std::wstring path(url);
    for (const std::wstring& entry : split(L"%20: ,%60:`,%23:#,%25:%,%5E:^,%26:&,%5B:[,%5D:],%7B:{,%7D:}", L",")) {
        const std::vector<std::wstring> pair = split(entry, L":");
        path = replace(path, pair[0], pair[1], Compare::Text);
    }
    return replace(path, L"file:///", L"", Compare::Text);
}

std::wstring specialFolderNames() {
    return std::wstring(L"AppPath\\,GetMyTemp\\,GetDesktop\\,") + L"GetMyMusic\\,GetMyVideos\\,GetDriveRoot\\," +
           L"GetMyUserPath\\,GetDocSetting\\,GetMyDucoment\\," + L"GetMyPictures\\,GetAllUserPath\\,GetDefaultUser\\," +
           L"GetWindowsRoot\\,GetSystem32Root\\";
}

}  // namespace vx::files
