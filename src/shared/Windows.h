#pragma once
// The window routines every class shares: window paths, window text and class, the style
// report, the two process-wide tables that the enumeration callbacks fill, and the keys
// a child list gives its windows.
//
// Window handles are 32-bit Longs at the interface on every build (the system keeps
// them within 32 bits): toHwnd sign-extends, toLong keeps the low 32 bits.
#include "core/runtime/Platform.h"
#include "core/runtime/Variant.h"

#include <string>
#include <vector>

namespace vx {

inline HWND toHwnd(LONG handle) noexcept { return reinterpret_cast<HWND>(static_cast<LONG_PTR>(handle)); }
inline LONG toLong(HWND hwnd) noexcept { return static_cast<LONG>(reinterpret_cast<LONG_PTR>(hwnd)); }

namespace window {

// SC_CLOSE as the library passes it: a 16-bit Integer, sign-extended.
constexpr WPARAM kScClose = static_cast<WPARAM>(static_cast<LONG_PTR>(-4000));

// The separator that marks a class-and-title pair inside a path step once the star,
// separator, star of the path has been replaced.
extern const wchar_t kPairMarker[];

// A window path resolved to a handle (0 when nothing is found); see the README for the
// grammar. Steps are separated by separator (usually "~").
LONG resolvePath(const VARIANT& path, const VARIANT& separator);
LONG resolvePath(std::wstring_view path, std::wstring_view separator);
// -1 the desktop, -2 the taskbar, -3 the start menu; any other value unchanged.
LONG specialHandle(LONG code);

// The longest text, in characters, that a window is believed to hold: a window
// reporting a longer one reads as "" (a report up to 2 GB would otherwise be trusted).
constexpr LRESULT kMaxTextLength = 1 << 20;
// How long a window may take to answer a read before it counts as not answering.
constexpr UINT kReadTimeoutMs = 5000;

// Sends a message that reads from a window without hanging on it: false (and answer
// untouched) when the system reports the window's thread as hung, when the window gives
// no answer within kReadTimeoutMs, or when the window is gone.
bool sendToRead(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, LRESULT& answer);

// The window's text as WM_GETTEXTLENGTH / WM_GETTEXT (or GetWindowText) give it; "" for
// a window that does not answer, or that reports a length beyond kMaxTextLength.
std::wstring readText(HWND hwnd);
// GetClassName, cut at the first NUL.
std::wstring readClass(HWND hwnd);
// A pixel value, or in twips when asked (a fixed 15 per pixel, no display is asked); a
// result beyond a Long is an overflow (error 6).
LONG scaled(LONG pixels, bool twips);
// A number as upper-case hexadecimal digits without prefix (negative numbers as their
// 32-bit pattern), as control identifiers are shown.
std::wstring hexText(LONG value);
// The two style flags a host can test: "WS_BORDER:8388608\" and "WS_VISIBLE:268435456\".
std::wstring styleReport(HWND hwnd);

// SendMessageA for messages whose lParam is 0: the value passed is the address of a
// 32-bit zero (the declaration the library keeps takes lParam by reference).
LRESULT sendWithZeroRef(HWND hwnd, UINT msg, WPARAM wParam);

// ---- the two process-wide tables ----

struct TopWindow {
    std::wstring title;
    LONG handle = 0;
};

// The titled top-level windows in enumeration order, with one spare empty element at
// the end. Rebuilt by collectTopWindows; a caller that goes on using a list while
// yielding keeps its own copy (a re-entrant call may rebuild the table meanwhile).
const std::vector<TopWindow>& topWindows();
// Rebuilds the table and returns its upper bound (the number of titled windows).
long collectTopWindows();

// The windows the child and thread enumerations collected.
const std::vector<LONG>& childWindows();
// Empties the child table; appends the children of parent / the windows of a thread.
void clearChildWindows();
void collectChildWindows(HWND parent);
void collectThreadWindows(DWORD threadId);
// Appends one window.
void appendChildWindow(HWND hwnd);

// The children of a window (a handle, or a path that names it; "~" separates steps) as the
// child table collects them: none for 0 or Empty, the top-level windows for a path that
// names nothing. The result is this call's own copy.
std::vector<LONG> childrenOf(const VARIANT& window);
// A window and its ancestors up to the top level, through the child table.
std::vector<LONG> windowAndAncestors(LONG hwnd);

// ---- child lists ----

// One window of a child list: its key ("" for none: listed by position only) in the
// main list, and whether the title or class list has it under the same key.
struct ListedWindow {
    enum Also { MainOnly, AlsoTitles, AlsoClasses };
    LONG handle = 0;
    std::wstring key;
    Also also = MainOnly;
};
// The entries of a child list of these windows, keyed by the output kind (Out_ID the
// control identifier in hexadecimal, Out_Class the class, Out_Title the title,
// Out_TitleTask the title of visible bordered windows, Out_Both all three in that order).
// The first window with a text keeps the text as its key; the n-th with the same text
// (compared without regard to case) gets text#n, or the next free number; an empty text
// gets no key.
std::vector<ListedWindow> listWindows(const std::vector<LONG>& windows, LONG outputKind);
// The window listed under key among the children of parent, keyed by Out_Both (compared
// without regard to case); error 5 when there is none.
LONG keyedChild(LONG parent, std::wstring_view key);

}  // namespace window
}  // namespace vx
