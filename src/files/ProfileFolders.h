#pragma once
// Special folders by code (GetXpPath) and the placeholders that stand for them in paths
// (PathReplace), as plain functions for every member of the file classes.
#include "core/runtime/Platform.h"

#include <string>
#include <string_view>

namespace vx::files {

// GetXpPath: the folder of a Flag_GetXpPath code ending in one backslash (the user's
// logon name for GetNameUser, "" for a code outside 1 to 17), followed by tail unchanged.
std::wstring specialFolder(LONG code, std::wstring_view tail = {});

// AppPath: the host's folder (app.Path) ending in a backslash; error 91 without an app.
std::wstring appPath(IDispatch* app);

// PathReplace expanding: every placeholder ("*MyTemp*", "*AppPath*" ...) replaced by its
// folder, case-sensitively; a placeholder that cannot be had (no app) stays.
std::wstring expandPath(std::wstring_view path, IDispatch* app);
// PathReplace folding: the path's known folder replaced by its placeholder and a
// backslash; a path under none falls to "*DocSetting*".
std::wstring foldPath(std::wstring_view path);

// ConvertURLToPath: the fixed escapes decoded once each, in order, and "file:///" removed.
std::wstring urlToPath(std::wstring_view url);

// ConstParamPath's text: the names of the special folders, each with a backslash,
// separated by commas.
std::wstring specialFolderNames();

}  // namespace vx::files
