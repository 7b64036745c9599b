// Ds_Clipboard where a host script cannot reach: the watch's timers and its slot through
// the clipboard seam (ticks fired by the test, hosts that call back into the library from
// a tick, objects released while watched, live objects counted), the picture assignment's
// call to a clipboard it has not opened, and pictures made from bitmaps pixel for pixel.
// What a host sees on the real clipboard is checked from a host script against a second
// program (tests/host/clipboard.vbs); these tests never touch the real clipboard.
#include "core/runtime/Convert.h"
#include "core/runtime/Module.h"
#include "desktop/Clipboard.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <olectl.h>

#include <cstring>
#include <map>
#include <string>
#include <vector>

using namespace vx;
using vxtest::call;

namespace {

// A clipboard of the test's own: formats in global memory, timers recorded and fired by
// the test, and a hook that runs (once) while a check reads the clipboard.
struct FakeClipboard {
    std::map<UINT, HANDLE> data;
    bool isOpen = false;
    std::map<UINT_PTR, UINT> timers;  // identifier: interval
    TIMERPROC proc = nullptr;
    UINT_PTR lastId = 100;
    int opens = 0;  // attempts
    int reads = 0;
    std::function<void()> whileReading;
    std::vector<std::pair<UINT, HANDLE>> offered;  // setData calls made while closed

    FakeClipboard() : using_(table()) {}
    ~FakeClipboard() { clear(); }

    ClipboardService table() {
        ClipboardService s;
        s.open = [this] {
            ++opens;
            return isOpen ? FALSE : (isOpen = true, TRUE);
        };
        s.close = [this] { return std::exchange(isOpen, false) ? TRUE : FALSE; };
        s.empty = [this] { return isOpen ? (clear(), TRUE) : FALSE; };
        s.isFormatAvailable = [this](UINT f) { return data.count(f) ? TRUE : FALSE; };
        s.getData = [this](UINT f) -> HANDLE {
            ++reads;
            if (auto hook = std::exchange(whileReading, nullptr)) hook();
            auto found = data.find(f);
            return found == data.end() ? nullptr : found->second;
        };
        s.setData = [this](UINT f, HANDLE h) -> HANDLE {
            if (!isOpen) {
                offered.emplace_back(f, h);
                return nullptr;
            }
            data[f] = h;
            return h;
        };
        s.setTimer = [this](UINT interval, TIMERPROC p) {
            proc = p;
            timers[++lastId] = interval;
            return lastId;
        };
        s.killTimer = [this](UINT_PTR id) { return timers.erase(id) ? TRUE : FALSE; };
        return s;
    }

    void clear() {
        for (auto& [format, handle] : data) GlobalFree(handle);
        data.clear();
    }
    void putText(const char* text) {
        HGLOBAL g = GlobalAlloc(GMEM_MOVEABLE, std::strlen(text) + 1);
        std::memcpy(GlobalLock(g), text, std::strlen(text) + 1);
        GlobalUnlock(g);
        data[CF_TEXT] = g;
    }
    // One tick of the timer, as the host's message loop delivers it.
    void tick() { proc(nullptr, WM_TIMER, timers.empty() ? 0 : timers.begin()->first, 0); }

private:
    ReplaceService<ClipboardService> using_;
};

Variant text(const wchar_t* s) { return Variant::fromText(s); }
Variant number(long n) { return Variant::fromLong(n); }
bool seenText(IDispatch* c) { return toBool(*call(c, L"ResultClipboardText").value); }

}  // namespace

TEST(ClipboardWatch, TimersBelongToTheObjectThatStartedThem) {
    FakeClipboard clipboard;
    const long before = module::liveObjects();
    {
        auto c = vxtest::createObject(CLSID_Ds_Clipboard);
        ASSERT_EQ(call(c.get(), L"GoTimeClipboard", {text(L"abc")}).hr, S_OK);
        ASSERT_EQ(clipboard.timers.size(), 1u);
        EXPECT_EQ(clipboard.timers.begin()->second, 2000u);  // the declared default interval
        // Without EndTime the running timer stays; with it (the default) it stops first.
        call(c.get(), L"GoTimeClipboard", {text(L"abc"), Variant::missing(), number(50), Variant::fromBool(false)});
        EXPECT_EQ(clipboard.timers.size(), 2u);
        call(c.get(), L"GoTimeClipboard", {text(L"abc"), Variant::missing(), number(50)});
        EXPECT_EQ(clipboard.timers.size(), 1u);
        call(c.get(), L"DeactiveTimer");
        EXPECT_TRUE(clipboard.timers.empty());
        call(c.get(), L"DeactiveTimer");  // again: nothing left to stop
        call(c.get(), L"GoTimeClipboard", {text(L"abc"), Variant::missing(), number(50), Variant::fromBool(false)});
        call(c.get(), L"GoTimeClipboard", {text(L"abc"), Variant::missing(), number(50), Variant::fromBool(false)});
        EXPECT_EQ(clipboard.timers.size(), 2u);
    }
    // Released while watching: its timers stop, and nothing of it is left.
    EXPECT_TRUE(clipboard.timers.empty());
    EXPECT_EQ(module::liveObjects(), before);
    // A tick that arrives after all (posted before the timer stopped) finds the slot empty
    // and checks a fresh object, which watches nothing and goes again.
    clipboard.putText("abc");
    clipboard.tick();
    EXPECT_EQ(module::liveObjects(), before);
    EXPECT_EQ(clipboard.reads, 0);
}

TEST(ClipboardWatch, AHostCallingBackDuringATickCannotUpsetIt) {
    FakeClipboard clipboard;
    const long before = module::liveObjects();
    clipboard.putText("abc");
    {
        // The host lets its object go while a tick reads the clipboard: the check ends on
        // the living object, which goes afterwards with its timer.
        auto c = vxtest::createObject(CLSID_Ds_Clipboard);
        call(c.get(), L"GoTimeClipboard", {text(L"abc")});
        clipboard.putText("abc");  // (the watch emptied the clipboard)
        IDispatch* host = c.detach();
        clipboard.whileReading = [&] { host->Release(); };
        clipboard.tick();
        EXPECT_TRUE(clipboard.timers.empty());
        EXPECT_EQ(module::liveObjects(), before);
    }
    {
        // The host starts a new watch from inside the tick: what the old check saw does
        // not count for the new watch.
        auto c = vxtest::createObject(CLSID_Ds_Clipboard);
        call(c.get(), L"GoTimeClipboard", {text(L"abc")});
        clipboard.putText("abc");
        clipboard.whileReading = [&] {
            call(c.get(), L"GoTimeClipboard", {text(L"zzz"), Variant::missing(), number(50)});
            clipboard.putText("abc");
        };
        clipboard.tick();
        EXPECT_FALSE(seenText(c.get()));
        ASSERT_EQ(clipboard.timers.size(), 1u);
        EXPECT_EQ(clipboard.timers.begin()->second, 50u);
        // The host yields from inside a tick, and the timer fires again: that tick is not
        // run inside the first, and the host's own calls go through.
        clipboard.whileReading = [&] {
            clipboard.tick();
            EXPECT_EQ(call(c.get(), L"RunTimeClipboard").hr, S_OK);
            call(c.get(), L"DeactiveTimer");
        };
        const int opensBefore = clipboard.opens;
        clipboard.tick();
        EXPECT_EQ(clipboard.opens - opensBefore, 2);  // the outer tick and the host's own check
        EXPECT_TRUE(clipboard.timers.empty());
    }
    EXPECT_EQ(module::liveObjects(), before);
}

TEST(ClipboardPicture, AssigningOffersThePicturesHandleToAClipboardItHasNotOpened) {
    FakeClipboard clipboard;
    clipboard.putText("before");
    HDC screen = GetDC(nullptr);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, 4, 4);
    ReleaseDC(nullptr, screen);
    ComPtr<IPictureDisp> picture = clipboard::pictureOf(bitmap);
    DeleteObject(bitmap);
    ASSERT_TRUE(picture);
    auto c = vxtest::createObject(CLSID_Ds_Clipboard);
    ASSERT_EQ(vxtest::put(c.get(), L"ClipboardPicture", Variant::fromDispatch(picture.get())).hr, S_OK);
    EXPECT_TRUE(clipboard.data.empty());  // emptied
    ASSERT_EQ(clipboard.offered.size(), 1u);
    OLE_HANDLE handle = 0;
    picture.query<IPicture>()->get_Handle(&handle);
    EXPECT_EQ(clipboard.offered[0].first, static_cast<UINT>(CF_BITMAP));
    EXPECT_EQ(clipboard.offered[0].second, LongToHandle(static_cast<LONG>(handle)));
}

TEST(ClipboardPicture, APictureHoldsItsOwnCopyOfTheBitmap) {
    // A 3 x 2 bitmap of known colours, read back from the picture after the original is gone.
    const COLORREF colours[6] = {RGB(255, 0, 0), RGB(0, 255, 0), RGB(0, 0, 255),
                                 RGB(1, 2, 3), RGB(255, 255, 255), RGB(0, 0, 0)};
    HDC screen = GetDC(nullptr);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, 3, 2);
    HDC dc = CreateCompatibleDC(screen);
    HGDIOBJ old = SelectObject(dc, bitmap);
    for (int i = 0; i < 6; ++i) SetPixel(dc, i % 3, i / 3, colours[i]);
    SelectObject(dc, old);
    ComPtr<IPictureDisp> picture = clipboard::pictureOf(bitmap);
    ASSERT_TRUE(picture);
    ComPtr<IPicture> pic = picture.query<IPicture>();
    OLE_HANDLE handle = 0;
    SHORT type = 0;
    pic->get_Handle(&handle);
    pic->get_Type(&type);
    EXPECT_EQ(type, PICTYPE_BITMAP);
    HBITMAP copy = static_cast<HBITMAP>(LongToHandle(static_cast<LONG>(handle)));
    EXPECT_NE(copy, bitmap);
    DeleteObject(bitmap);
    old = SelectObject(dc, copy);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(GetPixel(dc, i % 3, i / 3), colours[i]) << "pixel " << i;
    SelectObject(dc, old);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
}
