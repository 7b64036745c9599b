#include "shared/Windows.h"

#include "Vx_MainEnums.h"
#include "core/runtime/Ansi.h"
#include "core/runtime/Checked.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Text.h"

#include <climits>
#include <unordered_map>
#include <unordered_set>

namespace vx {
namespace window {

const wchar_t kPairMarker[] = L"/#|*|#\\";

namespace {

// FindWindowA by title (class any), then by class (title any).
HWND findByTitleOrClass(const std::wstring& step) {
    const std::string ansi = toAnsi(step);
    HWND found = FindWindowA(nullptr, ansi.c_str());
    if (!found) found = FindWindowA(ansi.c_str(), nullptr);
    return found;
}

// A step written as a number: the number (rounded as CLng rounds), or false.
bool numericStep(const std::wstring& step, LONG& number) {
    Variant text = Variant::fromText(step);
    if (step.empty() || !isNumeric(*text)) return false;
    number = toInt32(*text);
    return true;
}

}  // namespace

LONG scaled(LONG pixels, bool twips) {
    constexpr Checked<int32_t> kTwipsPerPixel = 15;
    return twips ? (Checked<int32_t>(pixels) * kTwipsPerPixel).value() : pixels;
}

LONG specialHandle(LONG code) {
    switch (code) {
    case -1: return toLong(GetDesktopWindow());
    case -2: return toLong(FindWindowA("Shell_TrayWnd", nullptr));
    case -3: return toLong(FindWindowA(nullptr, "Start Menu"));
    default: return code;
    }
}

LONG resolvePath(const VARIANT& path, const VARIANT& separator) {
    return resolvePath(toText(path), toText(separator));
}

LONG resolvePath(std::wstring_view pathText, std::wstring_view separator) {
    if (pathText.empty()) return 0;
    std::wstring path(pathText);
    if (!separator.empty()) {
        std::wstring pair = L"*" + std::wstring(separator) + L"*";
        path = replace(path, pair, kPairMarker);
    }
    std::vector<std::wstring> steps = split(path, separator);
    if (steps.empty()) return 0;

    if (steps.size() == 1) {
        const std::wstring& step = steps[0];
        if (step == L"-1" || step == L"-2" || step == L"-3") return specialHandle(toInt32(*Variant::fromText(step)));
        if (HWND found = findByTitleOrClass(step)) return toLong(found);
        LONG number = 0;
        if (numericStep(step, number)) return number;
        return 0;
    }

    HWND current = findByTitleOrClass(steps[0]);
    for (size_t i = 1; i < steps.size(); ++i) {
        std::vector<std::wstring> pieces = split(steps[i], kPairMarker);
        const std::wstring cls = pieces.empty() ? std::wstring() : pieces[0];
        // No class is named by an empty text, so an empty class piece finds nothing.
        if (cls.empty()) {
            current = nullptr;
            continue;
        }
        const std::string ansiClass = toAnsi(cls);
        if (pieces.size() > 1) {
            const std::string ansiTitle = toAnsi(pieces[1]);
            current = FindWindowExA(current, nullptr, ansiClass.c_str(), ansiTitle.c_str());
        } else {
            current = FindWindowExA(current, nullptr, ansiClass.c_str(), nullptr);
        }
    }
    return toLong(current);
}

LRESULT sendWithZeroRef(HWND hwnd, UINT msg, WPARAM wParam) {
    LONG zero = 0;
    return SendMessageA(hwnd, msg, wParam, reinterpret_cast<LPARAM>(&zero));
}

bool sendToRead(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, LRESULT& answer) {
    DWORD_PTR result = 0;
    if (!SendMessageTimeoutW(hwnd, msg, wParam, lParam, SMTO_NORMAL | SMTO_ABORTIFHUNG, kReadTimeoutMs, &result))
        return false;
    answer = static_cast<LRESULT>(result);
    return true;
}

std::wstring readText(HWND hwnd) {
    // The text is asked for in UTF-16 and passed through the ANSI code page, as an "A"
    // call hands it over: asking in ANSI would have some systems convert the length with
    // a second message to the window that waits without a bound.
    LONG zero = 0;  // lParam 0 goes as the address of a 32-bit zero, as for every such message
    LRESULT length = 0;
    if (!sendToRead(hwnd, WM_GETTEXTLENGTH, 0, reinterpret_cast<LPARAM>(&zero), length)) return {};
    if (length > kMaxTextLength) return {};
    if (length < 1) {
        AnsiBuffer buffer(1024);
        int n = GetWindowTextA(hwnd, buffer.data(), 1024);
        return n > 0 ? buffer.text(static_cast<size_t>(n)) : std::wstring();
    }
    std::wstring buffer(static_cast<size_t>(length) + 1, L'\0');
    LRESULT n = 0;
    if (!sendToRead(hwnd, WM_GETTEXT, buffer.size(), reinterpret_cast<LPARAM>(&buffer[0]), n)) return {};
    if (n < 1) return buffer;  // nothing was copied: the NULs stay as they are
    return fromAnsi(toAnsi(std::wstring_view(buffer.data(), std::min(static_cast<size_t>(n), buffer.size()))));
}

std::wstring readClass(HWND hwnd) {
    AnsiBuffer buffer(255);
    GetClassNameA(hwnd, buffer.data(), 255);
    return buffer.text();
}

std::wstring hexText(LONG value) {
    static const wchar_t digits[] = L"0123456789ABCDEF";
    ULONG rest = static_cast<ULONG>(value);
    std::wstring text;
    do {
        text.insert(text.begin(), digits[rest & 0xF]);
        rest >>= 4;
    } while (rest != 0);
    return text;
}

std::wstring styleReport(HWND hwnd) {
    // Only the border and visible flags are reported; the other labels keep their place
    // in the list but are never written.
    struct Flag {
        const wchar_t* label;
        LONG value;
    };
    static const Flag flags[] = {
        {L"WS_CHILD:", 0},         {L"WS_GROUP:", 0},        {L"WS_BORDER:", 0x800000},
        {L"WS_CAPTION:", 0},       {L"WS_HSCROLL:", 0},      {L"WS_SYSMENU:", 0},
        {L"WS_TABSTOP:", 0},       {L"WS_VISIBLE:", 0x10000000}, {L"WS_VSCROLL:", 0},
        {L"WS_DLGFRAME:", 0},      {L"WS_THICKFRAME:", 0},   {L"WS_POPUPWINDOW:", 0},
        {L"WS_MAXIMIZEBOX:", 0},   {L"WS_MINIMIZEBOX:", 0},  {L"WS_CLIPCHILDREN:", 0},
        {L"WS_CLIPSIBLINGS:", 0},
    };
    const LONG style = GetWindowLongA(hwnd, GWL_STYLE);
    std::wstring report;
    for (const Flag& f : flags)
        if (f.value != 0 && (style & f.value) == f.value)
            report += std::wstring(f.label) + std::to_wstring(f.value) + L"\\";
    return report;
}

// ---- the tables ----

namespace {

std::vector<TopWindow>& topTable() {
    static std::vector<TopWindow> table(1);
    return table;
}

std::vector<LONG>& childTable() {
    static std::vector<LONG> table;
    return table;
}

BOOL CALLBACK enumTopWindowsProc(HWND hwnd, LPARAM) {
    try {
        std::wstring title(cutAtNul(readText(hwnd)));
        if (!title.empty()) {
            auto& table = topTable();
            table.back() = TopWindow{std::move(title), toLong(hwnd)};
            table.emplace_back();
        }
    } catch (...) {
        // a window that cannot be read is skipped
    }
    return TRUE;
}

BOOL CALLBACK enumChildProc(HWND hwnd, LPARAM) {
    try {
        appendChildWindow(hwnd);
    } catch (...) {
    }
    return TRUE;
}

}  // namespace

const std::vector<TopWindow>& topWindows() { return topTable(); }

long collectTopWindows() {
    auto& table = topTable();
    table.assign(1, TopWindow{});
    EnumWindows(enumTopWindowsProc, 0);
    return static_cast<long>(table.size()) - 1;
}

const std::vector<LONG>& childWindows() { return childTable(); }

void clearChildWindows() { childTable().clear(); }

void appendChildWindow(HWND hwnd) { childTable().push_back(toLong(hwnd)); }

void collectChildWindows(HWND parent) { EnumChildWindows(parent, enumChildProc, 0); }

void collectThreadWindows(DWORD threadId) {
    if (threadId != 0) EnumThreadWindows(threadId, enumChildProc, 0);
}

std::vector<LONG> childrenOf(const VARIANT& window) {
    clearChildWindows();
    tryStatement([&] {
        const VARIANT& value = deref(window);
        const bool zero = isEmpty(value) || (isNumeric(value) && toDouble(value) == 0.0);
        if (!zero) collectChildWindows(toHwnd(resolvePath(toText(value), L"~")));
    });
    // The caller's own copy: reading a window may let a re-entrant call rebuild the table.
    return childWindows();
}

std::vector<LONG> windowAndAncestors(LONG hwnd) {
    clearChildWindows();
    HWND current = toHwnd(hwnd);
    for (int depth = 0; current && depth < 4096; ++depth) {
        tryStatement([&] { appendChildWindow(current); });
        current = GetParent(current);
    }
    return childWindows();
}

// ---- child lists ----

namespace {

// Keys of a child list: the first window with a given text keeps the text itself, the
// n-th window with the same text (compared without regard to case) gets text#n; when
// that is taken too, the next free number. An empty text gets no key.
class UniqueKeys {
public:
    std::wstring next(const std::wstring& value) {
        if (value.empty()) return {};
        unsigned& seen = seen_[foldCase(value)];
        ++seen;
        std::wstring key = seen == 1 ? value : value + L"#" + std::to_wstring(seen);
        while (!used_.insert(foldCase(key)).second) key = value + L"#" + std::to_wstring(++seen);
        return key;
    }

private:
    std::unordered_map<std::wstring, unsigned> seen_;
    std::unordered_set<std::wstring> used_;
};

}  // namespace

std::vector<ListedWindow> listWindows(const std::vector<LONG>& windows, LONG outputKind) {
    std::vector<ListedWindow> listed;
    UniqueKeys keys;
    for (const LONG handle : windows) {
        const HWND hwnd = toHwnd(handle);
        auto add = [&](const std::wstring& text, ListedWindow::Also also) {
            listed.push_back(ListedWindow{handle, keys.next(text), also});
        };
        if (outputKind == Out_ID || outputKind == Out_Both) add(hexText(GetWindowLongA(hwnd, GWL_ID)), ListedWindow::MainOnly);
        if (outputKind == Out_Class || outputKind == Out_Both) add(readClass(hwnd), ListedWindow::AlsoClasses);
        constexpr LONG visibleAndBordered = WS_VISIBLE | WS_BORDER;
        if (outputKind == Out_Title || outputKind == Out_Both ||
            (outputKind == Out_TitleTask && (GetWindowLongA(hwnd, GWL_STYLE) & visibleAndBordered) == visibleAndBordered))
            add(readText(hwnd), ListedWindow::AlsoTitles);
    }
    return listed;
}

LONG keyedChild(LONG parent, std::wstring_view key) {
    const std::wstring wanted = foldCase(key);
    for (const ListedWindow& w : listWindows(childrenOf(*Variant::fromLong(parent)), Out_Both))
        if (!w.key.empty() && foldCase(w.key) == wanted) return w.handle;
    raise(err::InvalidCall);
}

}  // namespace window
}  // namespace vx
