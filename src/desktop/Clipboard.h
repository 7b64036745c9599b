#pragma once
// Ds_Clipboard: text, rich text and pictures through the system clipboard, the list of
// formats it holds, the files a copy put on it, and a watch that checks it on a timer
// until a given text or given files show up.
//
// The watch: GoTimeClipboard starts a thread-less timer (SetTimer without a window), so
// it fires only while the host's thread processes messages. One process-wide slot names
// the object whose watch is served: the most recent caller of GoTimeClipboard. The slot
// does not keep the object alive; releasing the object stops its timers and empties the
// slot, and a tick that finds the slot empty checks a fresh object that watches nothing.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/Seams.h"
#include "core/runtime/Variant.h"

#include <functional>
#include <string>
#include <vector>

namespace vx {

// The clipboard and timer calls the class makes. The clipboard is opened without an owner
// window, on the calling thread.
struct ClipboardService {
    std::function<BOOL()> open = [] { return ::OpenClipboard(nullptr); };
    std::function<BOOL()> close = [] { return ::CloseClipboard(); };
    std::function<BOOL()> empty = [] { return ::EmptyClipboard(); };
    std::function<BOOL(UINT)> isFormatAvailable = [](UINT format) { return ::IsClipboardFormatAvailable(format); };
    std::function<UINT(UINT)> enumFormats = [](UINT format) { return ::EnumClipboardFormats(format); };
    std::function<HANDLE(UINT)> getData = [](UINT format) { return ::GetClipboardData(format); };
    std::function<HANDLE(UINT, HANDLE)> setData = [](UINT format, HANDLE data) { return ::SetClipboardData(format, data); };
    std::function<UINT_PTR(UINT, TIMERPROC)> setTimer = [](UINT elapse, TIMERPROC proc) {
        return ::SetTimer(nullptr, 0, elapse, proc);
    };
    std::function<BOOL(UINT_PTR)> killTimer = [](UINT_PTR id) { return ::KillTimer(nullptr, id); };
};

class Clipboard : public DispatchObject<Clipboard, _Ds_Clipboard> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_Clipboard; }
    ~Clipboard() override;

    HRESULT STDMETHODCALLTYPE DeactiveTimer() override;
    HRESULT STDMETHODCALLTYPE get_ClipboardPicture(IPictureDisp** value) override;
    HRESULT STDMETHODCALLTYPE put_ClipboardPicture(IPictureDisp** value) override;
    HRESULT STDMETHODCALLTYPE get_ClipboardRTF(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE put_ClipboardRTF(BSTR value) override;
    HRESULT STDMETHODCALLTYPE get_ClipboardText(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE put_ClipboardText(BSTR value) override;
    HRESULT STDMETHODCALLTYPE ResultClipboardText(VARIANT_BOOL EndTime, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE ResultClipboardFile(VARIANT_BOOL EndTime, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE NowTypeClipboard(TypeClipboardFormats* result) override;
    HRESULT STDMETHODCALLTYPE GoTimeClipboard(VARIANT ValueText, VARIANT ValueFile, LONG Minuten,
                                              VARIANT_BOOL EndTime) override;
    HRESULT STDMETHODCALLTYPE RunTimeClipboard() override;
    HRESULT STDMETHODCALLTYPE EnumClipboard(VARIANT* ArrClipboard, short* result) override;
    HRESULT STDMETHODCALLTYPE ClipboardGetFiles(VARIANT* ArrFile, VARIANT_BOOL* result) override;

    // The timer procedure of every watch: one check of the object in the slot.
    static void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD) noexcept;

    // IDispatch: as the dispatch base, except that a host's variable assigned to
    // ClipboardPicture reaches the member as the object reference it holds. (The type
    // library names the parameter's type IPictureDisp, which OLE Automation defines as
    // another name for its Picture interface; the dispatch base completes references only
    // to interfaces named directly.)
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* excepInfo, UINT* argErr) override;

private:
    void stopTimers();
    void runCheck();

    // The timers this object started and has not stopped (a watch started without EndTime
    // leaves the earlier one running, as the host asked).
    std::vector<UINT_PTR> timers_;
    bool textWatch_ = false;
    bool fileWatch_ = false;
    Variant watchedText_;  // the text given; True once it has been seen
    Variant watchedFile_;  // the path or paths given; True once they have been seen
    unsigned long watch_ = 0;  // counts GoTimeClipboard calls, so a check outlived by a new watch is dropped
};

namespace clipboard {

// The description EnumClipboard gives a format: its name, a tab and what it holds;
// "PRIVATE", a tab and the name of a registered format; else "Unknown", a tab and the number.
std::wstring formatDescription(UINT format);

// A picture object (IPictureDisp) holding a copy of a bitmap; null when it cannot be made.
ComPtr<IPictureDisp> pictureOf(HBITMAP bitmap);

}  // namespace clipboard

}  // namespace vx
