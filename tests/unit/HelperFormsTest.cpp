// Forms, controls and the display members of Ds_MyVaribleFunction with what a script
// cannot make: a real Picture, objects with and without type information, windows of the
// test's own (the mouse capture, the topmost style), and the display settings through
// their seam. Script forms and the fixture programs' windows are checked from hosts
// (tests/host/helpers_forms.vbs, helpers_display.vbs).
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Services.h"
#include "core/runtime/Text.h"
#include "text/Display.h"

#include "FakeDispatch.h"
#include "TestSupport.h"
#include "Vx_Main.h"

#include <olectl.h>

#include <string>
#include <utility>
#include <vector>

using namespace vx;
using vxtest::call;

namespace {

// A host program's form or control: named properties (names ignore case), no type
// information. A property it lacks is unknown to it.
class Bag : public vxtest::Counted<IDispatch> {
public:
    static ComPtr<Bag> make(std::vector<std::pair<std::wstring, Variant>> properties) {
        ComPtr<Bag> bag = ComPtr<Bag>::adopt(new Bag);
        bag->properties_ = std::move(properties);
        return bag;
    }
    Variant& operator[](const std::wstring& name) {
        for (auto& p : properties_)
            if (equalText(p.first, name, Compare::Text)) return p.second;
        properties_.emplace_back(name, Variant());
        return properties_.back().second;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override { return *n = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override {
        for (size_t i = 0; i < properties_.size(); ++i)
            if (equalText(properties_[i].first, names[0], Compare::Text)) return *id = static_cast<DISPID>(i + 1), S_OK;
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO*, UINT*) override {
        if (id < 1 || static_cast<size_t>(id) > properties_.size()) return DISP_E_MEMBERNOTFOUND;
        Variant& value = properties_[static_cast<size_t>(id - 1)].second;
        if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
            value = Variant::copyOf(params->rgvarg[0]);
            return S_OK;
        }
        if (result) VariantCopy(result, value.get());
        return S_OK;
    }

private:
    Bag() = default;
    ~Bag() override = default;
    std::vector<std::pair<std::wstring, Variant>> properties_;
};

// An object as a host passes it (Nothing for null).
Variant object(IUnknown* p) {
    ComPtr<IDispatch> d;
    if (p) p->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(d.put()));
    return Variant::fromDispatch(d.get());
}
Variant bagValue(const ComPtr<Bag>& bag) { return Variant::fromDispatch(bag.get()); }

// A Picture of a width x height bitmap.
ComPtr<IPictureDisp> pictureOf(int width, int height) {
    PICTDESC desc{};
    desc.cbSizeofstruct = sizeof desc;
    desc.picType = PICTYPE_BITMAP;
    desc.bmp.hbitmap = CreateBitmap(width, height, 1, 32, nullptr);
    ComPtr<IPictureDisp> picture;
    OleCreatePictureIndirect(&desc, IID_IPictureDisp, TRUE, reinterpret_cast<void**>(picture.put()));
    return picture;
}

// The display settings a test pretends to have, and the calls that would have changed them.
struct FakeDisplay {
    DEVMODEW current{};
    std::vector<std::pair<DEVMODEW, DWORD>> changes;  // what reached ChangeDisplaySettings, with its flags
    bool nullChange = false;                           // ChangeDisplaySettings(NULL, 0): the saved mode back
    LONG answer = DISP_CHANGE_SUCCESSFUL;
    std::wstring wallpaper = L"C:\\old.bmp";
    std::vector<std::pair<std::wstring, UINT>> wallpapers;  // what SPI_SETDESKWALLPAPER received, with its flags

    DisplayService service() {
        DisplayService s;
        s.enumSettings = [this](DWORD mode, DEVMODEW* dm) {
            if (mode != ENUM_CURRENT_SETTINGS) return FALSE;
            *dm = current;
            return TRUE;
        };
        s.changeSettings = [this](DEVMODEW* dm, DWORD flags) {
            if (!dm) return nullChange = true, LONG(DISP_CHANGE_SUCCESSFUL);
            changes.emplace_back(*dm, flags);
            return answer;
        };
        s.parametersInfo = [this](UINT action, UINT size, void* data, UINT flags) {
            if (action == SPI_GETDESKWALLPAPER) {
                lstrcpynW(static_cast<wchar_t*>(data), wallpaper.c_str(), static_cast<int>(size));
                return TRUE;
            }
            if (action != SPI_SETDESKWALLPAPER) return FALSE;
            wallpapers.emplace_back(static_cast<const wchar_t*>(data), flags);
            return TRUE;
        };
        return s;
    }
};

}  // namespace

TEST(MyVaribleFunctionForms, ImagesTakeTheirPicturesProportionsWithinTheBox) {
    auto h = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    ComPtr<IPictureDisp> picture = pictureOf(40, 20);
    ASSERT_TRUE(picture);
    auto image = Bag::make({{L"Width", Variant::fromLong(900)}, {L"Height", Variant::fromLong(900)},
                            {L"Picture", object(nullptr)}, {L"Stretch", Variant::fromBool(false)}});
    auto r = call(h.get(), L"GoImageSizeAuto", {bagValue(image), Variant::missing(), Variant::missing(), object(picture.get())});
    ASSERT_EQ(r.errorNumber(), 0);
    EXPECT_TRUE(toBool(*r.value));
    EXPECT_EQ(toDouble(*(*image)[L"Width"]), 900);
    EXPECT_EQ(toDouble(*(*image)[L"Height"]), 450);
    EXPECT_TRUE(toBool(*(*image)[L"Stretch"]));
    EXPECT_EQ(dispatchOf(*(*image)[L"Picture"]), static_cast<IDispatch*>(picture.get()));
    // The control's own picture, in a box of its own.
    r = call(h.get(), L"GoImageSizeAuto", {bagValue(image), Variant::fromLong(300), Variant::fromLong(1000)});
    EXPECT_EQ(toDouble(*(*image)[L"Width"]), 300);
    EXPECT_EQ(toDouble(*(*image)[L"Height"]), 150);
    EXPECT_EQ(call(h.get(), L"GoImageSizeAuto", {bagValue(image), Variant::fromLong(0)}).errorNumber(), 5);
    // An object that is no picture is refused as the argument it is.
    EXPECT_EQ(call(h.get(), L"GoImageSizeAuto", {bagValue(image), Variant::missing(), Variant::missing(), bagValue(image)})
                  .errorNumber(),
              13);
    // No picture: nothing to size by.
    (*image)[L"Picture"] = object(nullptr);
    EXPECT_FALSE(toBool(*call(h.get(), L"GoImageSizeAuto", {bagValue(image)}).value));
    auto bare = Bag::make({{L"Picture", object(picture.get())}});
    EXPECT_EQ(call(h.get(), L"GoImageSizeAuto", {bagValue(bare)}).errorNumber(), 438);
    EXPECT_EQ(call(h.get(), L"GoImageSizeAuto", {Variant::fromLong(5)}).errorNumber(), 424);
}

TEST(MyVaribleFunctionForms, ControlTypesOfObjects) {
    auto h = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    auto xml = vxtest::createObject(CLSID_Ds_XML);
    EXPECT_EQ(vxtest::textOf(call(h.get(), L"GetControlType", {object(xml.get())}).value), L"Ds_XML");
    auto bag = Bag::make({{L"Name", Variant::fromText(L"Text1")}});
    EXPECT_EQ(vxtest::textOf(call(h.get(), L"GetControlType", {bagValue(bag)}).value), L"Object");
    EXPECT_EQ(call(h.get(), L"GetControlType", {object(nullptr)}).errorNumber(), 91);
    // A control is an object with Name, Enabled and Visible; nothing raises.
    EXPECT_FALSE(toBool(*call(h.get(), L"IsControlObject", {bagValue(bag)}).value));
    (*bag)[L"Enabled"] = Variant::fromBool(true);
    (*bag)[L"Visible"] = Variant::fromBool(true);
    EXPECT_TRUE(toBool(*call(h.get(), L"IsControlObject", {bagValue(bag)}).value));
    EXPECT_FALSE(toBool(*call(h.get(), L"IsControlObject", {object(xml.get())}).value));
}

TEST(MyVaribleFunctionDisplay, ResolutionsAreTriedBeforeTheyAreSet) {
    auto h = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    FakeDisplay display;
    display.current.dmSize = sizeof(DEVMODEW);
    display.current.dmPelsWidth = 1280;
    display.current.dmPelsHeight = 1024;
    display.current.dmBitsPerPel = 32;
    display.current.dmDisplayFrequency = 60;
    ReplaceService<DisplayService> using_(display.service());

    auto r = call(h.get(), L"GoResulotion", {Variant::fromLong(1024), Variant::fromLong(768)});
    ASSERT_EQ(r.errorNumber(), 0);
    EXPECT_TRUE(toBool(*r.value));
    ASSERT_EQ(display.changes.size(), 2u);
    EXPECT_EQ(display.changes[0].second, DWORD(CDS_TEST));
    EXPECT_EQ(display.changes[1].second, 0u);  // for this session only
    const DEVMODEW& set = display.changes[1].first;
    EXPECT_EQ(set.dmPelsWidth, 1024u);
    EXPECT_EQ(set.dmPelsHeight, 768u);
    EXPECT_EQ(set.dmFields, DWORD(DM_PELSWIDTH | DM_PELSHEIGHT));  // depth and rate kept
    EXPECT_EQ(set.dmBitsPerPel, 32u);

    display.changes.clear();
    r = call(h.get(), L"GoResulotion", {Variant::missing(), Variant::missing(), Variant::fromLong(16), Variant::missing(),
                                        Variant::fromBool(true)});
    ASSERT_EQ(display.changes.size(), 2u);
    EXPECT_EQ(display.changes[1].second, DWORD(CDS_UPDATEREGISTRY));
    EXPECT_EQ(display.changes[1].first.dmFields, DWORD(DM_BITSPERPEL));

    // A mode the display refuses is not set.
    display.changes.clear();
    display.answer = DISP_CHANGE_BADMODE;
    EXPECT_FALSE(toBool(*call(h.get(), L"GoResulotion", {Variant::fromLong(12345), Variant::fromLong(6789)}).value));
    EXPECT_EQ(display.changes.size(), 1u);
    // No arguments: the saved mode comes back.
    EXPECT_TRUE(toBool(*call(h.get(), L"GoResulotion").value));
    EXPECT_TRUE(display.nullChange);
    EXPECT_EQ(call(h.get(), L"GoResulotion", {Variant::fromLong(-1)}).errorNumber(), 5);
}

TEST(MyVaribleFunctionDisplay, WallpapersAreSetByTheirFullNames) {
    auto h = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    FakeDisplay display;
    ReplaceService<DisplayService> using_(display.service());
    wchar_t folder[MAX_PATH], file[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    GetTempFileNameW(folder, L"vxw", 0, file);
    Variant old;
    auto r = call(h.get(), L"SetBackground", {Variant::fromText(file), Variant::fromBool(false), vxtest::byRef(old)});
    ASSERT_EQ(r.errorNumber(), 0);
    EXPECT_TRUE(toBool(*r.value));
    EXPECT_EQ(vxtest::textOf(old), L"C:\\old.bmp");
    ASSERT_EQ(display.wallpapers.size(), 1u);
    EXPECT_EQ(display.wallpapers[0], (std::pair<std::wstring, UINT>{file, SPIF_SENDWININICHANGE}));

    // A relative name is taken from the current folder; saving is the default.
    wchar_t current[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, current);
    SetCurrentDirectoryW(folder);
    const std::wstring name = std::wstring(file).substr(std::wstring(folder).size());
    EXPECT_TRUE(toBool(*call(h.get(), L"SetBackground", {Variant::fromText(name)}).value));
    SetCurrentDirectoryW(current);
    ASSERT_EQ(display.wallpapers.size(), 2u);
    EXPECT_EQ(display.wallpapers[1], (std::pair<std::wstring, UINT>{file, SPIF_UPDATEINIFILE | SPIF_SENDWININICHANGE}));
    DeleteFileW(file);

    // A file that is not there changes nothing; "" removes the wallpaper.
    old = Variant();
    EXPECT_FALSE(toBool(*call(h.get(), L"SetBackground", {Variant::fromText(file), Variant::fromBool(true), vxtest::byRef(old)}).value));
    EXPECT_EQ(vxtest::textOf(old), L"C:\\old.bmp");
    EXPECT_EQ(display.wallpapers.size(), 2u);
    EXPECT_TRUE(toBool(*call(h.get(), L"SetBackground", {Variant::fromText(L"")}).value));
    ASSERT_EQ(display.wallpapers.size(), 3u);
    EXPECT_EQ(display.wallpapers[2].first, L"");
}

namespace {

// A window of the test's own that records the non-client button messages and answers
// them itself (so that no move loop starts).
struct NonClientRecorder {
    static std::vector<std::pair<UINT, WPARAM>>& received() {
        static std::vector<std::pair<UINT, WPARAM>> r;
        return r;
    }
    static LRESULT CALLBACK proc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
        if (msg >= WM_NCMOUSEMOVE && msg <= WM_NCMBUTTONDBLCLK) return received().emplace_back(msg, wp), 0;
        return DefWindowProcW(hwnd, msg, wp, lp);
    }
    NonClientRecorder() {
        static const ATOM registered = [] {
            WNDCLASSW wc{};
            wc.lpfnWndProc = proc;
            wc.hInstance = GetModuleHandleW(nullptr);
            wc.lpszClassName = L"VxNonClientRecorder";
            return RegisterClassW(&wc);
        }();
        (void)registered;
        hwnd = CreateWindowExW(0, L"VxNonClientRecorder", L"Vx Helper Form", WS_OVERLAPPEDWINDOW, 50, 50, 300, 200,
                               nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
        received().clear();
    }
    ~NonClientRecorder() { DestroyWindow(hwnd); }
    HWND hwnd;
};

LONG handleOf(HWND hwnd) { return static_cast<LONG>(reinterpret_cast<LONG_PTR>(hwnd)); }

}  // namespace

TEST(WindowsHelperForms, DragMeReleasesTheCaptureAndPressesTheFrame) {
    auto h = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    NonClientRecorder form;
    auto bag = Bag::make({{L"hWnd", Variant::fromLong(handleOf(form.hwnd))}});
    // No button held: a press of the primary button has nothing to drag and is not sent.
    KeyboardService buttonUp, buttonDown;
    buttonUp.asyncKeyState = [](int) -> SHORT { return 0; };
    buttonDown.asyncKeyState = [](int key) -> SHORT {
        return key == (GetSystemMetrics(SM_SWAPBUTTON) ? VK_RBUTTON : VK_LBUTTON) ? SHORT(0x8000) : SHORT(0);
    };
    {
        ReplaceService<KeyboardService> up(buttonUp);
        ASSERT_EQ(call(h.get(), L"DragMe", {bagValue(bag)}).errorNumber(), 0);
    }
    ReplaceService<KeyboardService> down(buttonDown);
    SetCapture(form.hwnd);
    ASSERT_EQ(call(h.get(), L"DragMe", {bagValue(bag)}).errorNumber(), 0);
    EXPECT_EQ(GetCapture(), nullptr);
    ASSERT_EQ(call(h.get(), L"DragMe", {Variant::fromLong(handleOf(form.hwnd)), Variant::fromLong(WM_NCLBUTTONDBLCLK),
                                        Variant::fromLong(HTBOTTOMRIGHT)})
                  .errorNumber(),
              0);
    EXPECT_EQ(NonClientRecorder::received(),
              (std::vector<std::pair<UINT, WPARAM>>{{WM_NCLBUTTONDOWN, HTCAPTION}, {WM_NCLBUTTONDBLCLK, HTBOTTOMRIGHT}}));
    EXPECT_EQ(call(h.get(), L"DragMe", {Variant::null()}).errorNumber(), 94);
}

TEST(WindowsHelperForms, WinOnTopSetsAndClearsTheTopmostStyle) {
    auto h = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    NonClientRecorder form;
    auto topmost = [&] { return (GetWindowLongW(form.hwnd, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; };
    EXPECT_TRUE(toBool(*call(h.get(), L"WinOnTop", {Variant::fromLong(handleOf(form.hwnd))}).value));
    EXPECT_TRUE(topmost());
    EXPECT_TRUE(toBool(*call(h.get(), L"WinOnTop", {Variant::fromLong(handleOf(form.hwnd)), Variant::fromBool(false)}).value));
    EXPECT_FALSE(topmost());
    EXPECT_FALSE(toBool(*call(h.get(), L"WinOnTop", {Variant::fromLong(0)}).value));
}

TEST(WindowsHelperForms, ControlTypesOfWindows) {
    auto h = vxtest::createObject(CLSID_Ds_MyVaribleFunction);
    NonClientRecorder form;
    auto child = [&](const wchar_t* cls, DWORD style) {
        return CreateWindowExW(0, cls, L"", WS_CHILD | style, 0, 0, 10, 10, form.hwnd, nullptr, nullptr, nullptr);
    };
    auto kind = [&](HWND w) { return vxtest::textOf(call(h.get(), L"GetControlType", {Variant::fromLong(handleOf(w))}).value); };
    EXPECT_EQ(kind(child(L"Button", BS_GROUPBOX)), L"Frame");
    EXPECT_EQ(kind(child(L"Button", BS_AUTO3STATE)), L"CheckBox");
    EXPECT_EQ(kind(child(L"Button", BS_DEFPUSHBUTTON)), L"CommandButton");
    EXPECT_EQ(kind(child(L"ScrollBar", SBS_VERT)), L"VScrollBar");
    EXPECT_EQ(kind(child(L"ComboBox", 0)), L"ComboBox");
    EXPECT_EQ(kind(child(L"VxNonClientRecorder", 0)), L"VxNonClientRecorder");  // a child of no known kind: its class
    EXPECT_EQ(kind(form.hwnd), L"Form");
    // An object without type information is known by its window.
    auto bag = Bag::make({{L"hWnd", Variant::fromLong(handleOf(child(L"Edit", 0)))}});
    EXPECT_EQ(vxtest::textOf(call(h.get(), L"GetControlType", {bagValue(bag)}).value), L"TextBox");
}
