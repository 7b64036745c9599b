#include "desktop/Clipboard.h"

#include "Vx_MainEnums.h"
#include "core/runtime/Ansi.h"
#include "core/runtime/Checked.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Handles.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/SafeArray.h"
#include "core/runtime/Text.h"
#include "shared/Helpers.h"

#include <olectl.h>
#include <shellapi.h>

#include <cstring>
#include <string_view>

namespace vx {

namespace {

ClipboardService& calls() { return service<ClipboardService>(); }

// The clipboard, opened for this scope; another program may hold it (test with bool).
class OpenedClipboard {
public:
    OpenedClipboard() : open_(calls().open() != FALSE) {}
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
    ~OpenedClipboard() {
        if (open_) calls().close();
    }
    explicit operator bool() const noexcept { return open_; }

private:
    bool open_;
};

// The object whose watch the timer serves; it does not hold a reference.
Clipboard* watched = nullptr;

UINT richTextFormat() {
    static const UINT format = RegisterClipboardFormatA("Rich Text Format");
    return format;
}

// Text in the ANSI code page held in a global block, up to its first NUL and never past
// the block's end.
std::wstring ansiTextOf(HANDLE data) {
    if (!data) return {};
    GlobalLocked<const char> bytes(data);
    if (!bytes) return {};
    return fromAnsi(cutAtNul(std::string_view(bytes.get(), GlobalSize(data))));
}

std::wstring readText(UINT format) {
    OpenedClipboard clipboard;
    return clipboard ? ansiTextOf(calls().getData(format)) : std::wstring();
}

void emptyClipboard() {
    OpenedClipboard clipboard;
    if (clipboard) calls().empty();
}

// Empties the clipboard and puts text on it in one format, in the ANSI code page.
void replaceWithText(UINT format, std::wstring_view text) {
    const std::string bytes = toAnsi(text);
    OpenedClipboard clipboard;
    if (!clipboard) return;
    calls().empty();
    UniqueGlobal memory(GlobalAlloc(GMEM_MOVEABLE, bytes.size() + 1));
    if (!memory) return;
    {
        GlobalLocked<char> data(memory.get());
        if (!data) return;
        std::memcpy(data.get(), bytes.data(), bytes.size());
        data.get()[bytes.size()] = '\0';
    }
    if (calls().setData(format, memory.get())) memory.release();  // the clipboard owns it now
}

// The formats on the clipboard, described, in the clipboard's order; none when another
// program holds it.
std::vector<Variant> describedFormats() {
    std::vector<Variant> formats;
    OpenedClipboard clipboard;
    if (!clipboard) return formats;
    for (UINT format = calls().enumFormats(0); format != 0; format = calls().enumFormats(format))
        formats.push_back(Variant::fromText(clipboard::formatDescription(format)));
    return formats;
}

// The full paths of a file list on the clipboard, in its order. False when there is no
// file list; True when there is one, even if it could not be read.
bool readFiles(std::vector<Variant>& files) {
    if (!calls().isFormatAvailable(CF_HDROP)) return false;
    OpenedClipboard clipboard;
    if (!clipboard) return true;
    HDROP drop = static_cast<HDROP>(calls().getData(CF_HDROP));
    if (!drop) return true;
    const UINT count = DragQueryFileA(drop, 0xFFFFFFFFu, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
        const UINT length = DragQueryFileA(drop, i, nullptr, 0);
        if (length == 0) continue;
        AnsiBuffer path(length + 1, ' ');
        if (DragQueryFileA(drop, i, path.data(), length + 1) >= 1) files.push_back(Variant::fromText(path.text()));
    }
    return true;
}

// The array argument EnumClipboard and ClipboardGetFiles fill: an array of Variants, or
// else a type mismatch.
VARIANT& variantArrayArgument(VARIANT* argument) {
    VARIANT& arg = required(argument);
    if (valueType(arg) != (VT_ARRAY | VT_VARIANT)) raise(err::TypeMismatch);
    return arg;
}

// The caller's array becomes the items, indexed from 0; no items leave it as it was.
void fill(VARIANT& arg, const std::vector<Variant>& items) {
    if (!items.empty()) writeBack(arg, *makeVariantArray(items));
}

// A watched field reads True only once it holds the Boolean True.
bool holdsTrue(const Variant& field) { return field.type() == VT_BOOL && V_BOOL(field.get()) != VARIANT_FALSE; }

// The file watch: the watched path (or paths) against the clipboard's list, both read as
// arrays and compared by IsEqute's GoArray (the same paths, ignoring case).
bool sameFiles(const Variant& watchedFiles, Variant& list) {
    Variant wanted = isArray(*watchedFiles) ? watchedFiles : makeVariantArray({watchedFiles});
    return isEqute(wanted.get(), list.get(), GoArray);
}

}  // namespace

namespace clipboard {

std::wstring formatDescription(UINT format) {
    static const struct {
        UINT format;
        const wchar_t* name;
        const wchar_t* text;
    } standard[] = {
        {1, L"CF_TEXT", L"Null-terminated plain ANSI text in global memory block"},
        {2, L"CF_BITMAP", L"A bitmap compatible with Windows 2.x"},
        {3, L"CF_METAFILEPICT", L"Windows metafile w/additional info re how the metafile should be displayed"},
        {4, L"CF_SYLK", L"Symbolic Link (SYLK) - ASCII text format used by older MS products)"},
        {5, L"CF_DIF", L"Software Art's data interchange format (DIF - ASCII text format)"},
        {6, L"CF_TIFF", L"Tagged Interchange File Format (TIF) data in a global memory block"},
        {7, L"CF_OEMTEXT", L"Similar to CF_TEXT but using the OEM character set"},
        {8, L"CF_DIB",
         L"Global memory block containing a Windows device-independent bitmap (DIB) as a BITMAPINFO structure "
         L"followed by the bitmap bits"},
        {9, L"CF_PALETTE", L"Color-palette handle (used in conjunction with CF_DIB)"},
        {10, L"CF_PENDATA", L"Data for the pen extensions to Windows"},
        {11, L"CF_RIFF", L"Resource interchange file format (RIFF) data as a global memory block"},
        {12, L"CF_WAVE", L"Specific case of RIFF in which the contained data is a waveform (sampled sound)"},
        {13, L"CF_UNICODETEXT", L"Unicode text format, available only under Windows NT 4.0 or later"},
        {14, L"CF_ENHMETAFILE", L"Handle to an enhanced metafile (HENHMETAFILE)"},
        {15, L"CF_FILES/CF_HDROP",
         L"Handle that identifies a list of files, such as a set of files dragged from the Windows Explorer"},
        {16, L"CF_LOCALE", L"Handle to the locale identifier associated with text in the clipboard"},
        {17, L"CF_DIBV5",
         L"Memory object containing BITMAPV5HEADER structure followed by the bitmap color space information and "
         L"the bitmap bits (2000/XP only)"},
        {128, L"CF_OWNERDISPLAY", L"Owner-display format. The clipboard owner must display and update the clipboard viewer"},
        {129, L"CF_DSPTEXT", L"Text display format associated with a private format"},
        {130, L"CF_DSPBITMAP", L"Bitmap display format associated with a private format"},
        {131, L"CF_DSPMETAFILEPICT", L"Metafile-picture display format associated with a private format"},
        {142, L"CF_DSPENHMETAFILE", L"Enhanced metafile display format associated with a private format"},
    };
    for (const auto& known : standard)
        if (known.format == format) return std::wstring(known.name) + L"\t" + known.text;
    // A registered format has a name: its own, read into a buffer of 256 spaces.
    AnsiBuffer name(256, ' ');
    if (GetClipboardFormatNameA(format, name.data(), 256) > 0) return L"PRIVATE\t" + name.text();
    return L"Unknown\t" + std::to_wstring(format);
}

ComPtr<IPictureDisp> pictureOf(HBITMAP bitmap) {
    // The picture owns a copy: the clipboard keeps its own bitmap.
    HBITMAP copy = static_cast<HBITMAP>(CopyImage(bitmap, IMAGE_BITMAP, 0, 0, 0));
    if (!copy) return nullptr;
    PICTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.picType = PICTYPE_BITMAP;
    description.bmp.hbitmap = copy;
    ComPtr<IPictureDisp> picture;
    if (FAILED(OleCreatePictureIndirect(&description, IID_IPictureDisp, TRUE, reinterpret_cast<void**>(picture.put()))) ||
        !picture) {
        DeleteObject(copy);
        return nullptr;
    }
    return picture;
}

}  // namespace clipboard

Clipboard::~Clipboard() {
    try {
        stopTimers();
    } catch (...) {
        // a timer that cannot be stopped finds the slot empty from now on
    }
    if (watched == this) watched = nullptr;
}

void Clipboard::stopTimers() {
    std::vector<UINT_PTR> running;
    running.swap(timers_);
    for (UINT_PTR id : running) calls().killTimer(id);
}

HRESULT Clipboard::DeactiveTimer() {
    return guard([&] { stopTimers(); });
}

HRESULT Clipboard::get_ClipboardPicture(IPictureDisp** value) {
    return deliver(value, [&]() -> ComPtr<IPictureDisp> {
        OpenedClipboard clipboard;
        if (!clipboard) return nullptr;
        HBITMAP bitmap = static_cast<HBITMAP>(calls().getData(CF_BITMAP));
        return bitmap ? clipboard::pictureOf(bitmap) : nullptr;
    });
}

HRESULT Clipboard::put_ClipboardPicture(IPictureDisp** value) {
    return guard([&] {
        // An object that is no picture is refused before anything happens; Nothing is
        // found out only when its handle is read.
        IUnknown* given = value ? *value : nullptr;
        ComPtr<IPictureDisp> picture = ComPtr<IUnknown>(given).query<IPictureDisp>();
        if (given && !picture) raise(err::TypeMismatch);
        emptyClipboard();
        // The picture's handle (its default property) is offered without opening the
        // clipboard again, so the system refuses it and the clipboard stays empty, as it
        // always has.
        if (!picture) raise(err::ObjectNotSet);
        std::vector<Variant> none;
        const Variant handle = LateBound::invoke(picture.get(), DISPID_VALUE, DISPATCH_PROPERTYGET, none);
        calls().setData(CF_BITMAP, LongToHandle(toInt32(*handle)));
    });
}

HRESULT Clipboard::Invoke(DISPID id, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result,
                          EXCEPINFO* excepInfo, UINT* argErr) {
    static const DISPID picture = [this] {
        DISPID found = DISPID_UNKNOWN;
        wchar_t name[] = L"ClipboardPicture";
        LPOLESTR names[] = {name};
        GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &found);
        return found;
    }();
    if (id == picture && (flags & DISPATCH_PROPERTYPUT) && params && params->cArgs == 1 &&
        V_VT(&params->rgvarg[0]) == (VT_BYREF | VT_VARIANT)) {
        VARIANT& held = const_cast<VARIANT&>(deref(params->rgvarg[0]));
        if (V_VT(&held) == VT_DISPATCH) {
            VARIANT reference;
            V_VT(&reference) = VT_BYREF | VT_DISPATCH;
            V_DISPATCHREF(&reference) = &V_DISPATCH(&held);
            DISPPARAMS completed = *params;
            completed.rgvarg = &reference;
            return DispatchObject::Invoke(id, riid, lcid, flags, &completed, result, excepInfo, argErr);
        }
    }
    return DispatchObject::Invoke(id, riid, lcid, flags, params, result, excepInfo, argErr);
}

HRESULT Clipboard::get_ClipboardRTF(BSTR* value) {
    return deliver(value, [] { return readText(richTextFormat()); });
}

HRESULT Clipboard::put_ClipboardRTF(BSTR value) {
    return guard([&] { replaceWithText(richTextFormat(), viewOf(value)); });
}

HRESULT Clipboard::get_ClipboardText(BSTR* value) {
    return deliver(value, [] { return readText(CF_TEXT); });
}

HRESULT Clipboard::put_ClipboardText(BSTR value) {
    return guard([&] { replaceWithText(CF_TEXT, viewOf(value)); });
}

HRESULT Clipboard::ResultClipboardText(VARIANT_BOOL EndTime, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        const bool seen = holdsTrue(watchedText_);
        if (EndTime != VARIANT_FALSE) stopTimers();
        return seen;
    });
}

HRESULT Clipboard::ResultClipboardFile(VARIANT_BOOL EndTime, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        const bool seen = holdsTrue(watchedFile_);
        if (EndTime != VARIANT_FALSE) stopTimers();
        return seen;
    });
}

HRESULT Clipboard::NowTypeClipboard(TypeClipboardFormats* result) {
    // A guess from the number of formats alone: three for a bitmap (with its DIB forms),
    // four for text (with its converted forms and locale), eight for a file copy.
    return deliver(result, [] {
        switch (describedFormats().size()) {
        case 3: return LONG{CF_BITMAP};
        case 4: return LONG{CF_TEXT};
        case 8: return LONG{CF_FILES};
        default: return LONG{CF_NONE};
        }
    });
}

HRESULT Clipboard::GoTimeClipboard(VARIANT ValueText, VARIANT ValueFile, LONG Minuten, VARIANT_BOOL EndTime) {
    return guard([&] {
        emptyClipboard();
        watched = this;
        ++watch_;
        watchedText_ = Variant::fromShort(0);
        watchedFile_ = Variant::fromShort(0);
        textWatch_ = !isMissing(ValueText);
        fileWatch_ = !isMissing(ValueFile);
        if (textWatch_) watchedText_ = letValue(ValueText);
        if (fileWatch_) watchedFile_ = letValue(ValueFile);
        if (EndTime != VARIANT_FALSE) stopTimers();
        // Minuten is the interval in milliseconds.
        const UINT_PTR id = calls().setTimer(static_cast<UINT>(Minuten), &Clipboard::tick);
        if (id) timers_.push_back(id);
    });
}

HRESULT Clipboard::RunTimeClipboard() {
    return guard([&] { runCheck(); });
}

void Clipboard::runCheck() {
    // The clipboard may be read while its owner renders data for it; should the host start
    // another watch meanwhile, this check no longer concerns it.
    const unsigned long watch = watch_;
    if (textWatch_) {
        const std::wstring wanted = lower(toText(*watchedText_));
        const std::wstring text = lower(readText(CF_TEXT));
        if (watch != watch_) return;
        if (inStr(1, text, wanted) > 0) {
            watchedText_ = Variant::fromBool(true);
            textWatch_ = false;
            if (!fileWatch_) stopTimers();
        }
    }
    if (fileWatch_) {
        std::vector<Variant> files;
        readFiles(files);
        if (watch != watch_) return;
        Variant list = makeVariantArray(files);
        if (countUBound(*list) != -1 && sameFiles(watchedFile_, list)) {
            watchedFile_ = Variant::fromBool(true);
            fileWatch_ = false;
            if (!textWatch_) stopTimers();
        }
    }
}

void CALLBACK Clipboard::tick(HWND, UINT, UINT_PTR, DWORD) noexcept {
    // A tick never runs inside another (a check may let messages through while it reads).
    static thread_local bool running = false;
    if (running) return;
    running = true;
    try {
        // The watched object stays alive for the check even if its host lets it go meanwhile;
        // with no watched object, a fresh one (which watches nothing) is checked.
        ComPtr<Clipboard> target(watched);
        if (!target) target = Clipboard::create();
        target->runCheck();
    } catch (...) {
        // a check that fails has no host to report to
    }
    running = false;
}

HRESULT Clipboard::EnumClipboard(VARIANT* ArrClipboard, short* result) {
    return deliver(result, [&] {
        VARIANT& array = variantArrayArgument(ArrClipboard);
        const std::vector<Variant> formats = describedFormats();
        fill(array, formats);
        return Checked<int16_t>(formats.size()).value();
    });
}

HRESULT Clipboard::ClipboardGetFiles(VARIANT* ArrFile, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        VARIANT& array = variantArrayArgument(ArrFile);
        std::vector<Variant> files;
        const bool present = readFiles(files);
        fill(array, files);
        return present;
    });
}

}  // namespace vx
