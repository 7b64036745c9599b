#include "text/Forms.h"

#include "core/runtime/ComPtr.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/Text.h"
#include "shared/Waits.h"
#include "shared/Windows.h"
#include "text/Arrays.h"

#include <cmath>
#include <optional>
#include <vector>

namespace vx::forms {

namespace {

// A form or control: an object, or a window (null when a handle or path names none).
struct Part {
    ComPtr<IDispatch> object;
    HWND window = nullptr;
};

// The object's identity (its IUnknown), for "that very object" comparisons.
ComPtr<IUnknown> identityOf(IDispatch* object) {
    ComPtr<IUnknown> unknown;
    if (object) object->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(unknown.put()));
    return unknown;
}

HWND windowOfPath(const VARIANT& path) {
    static const Variant tilde = Variant::fromText(L"~");
    return toHwnd(window::resolvePath(path, *tilde));
}

// One form or control a member was given: Nothing is error 91, Null 94, an array 13.
Part partOf(const VARIANT& value) {
    const VARIANT& v = deref(value);
    Part part;
    if (isObject(v)) {
        IDispatch* object = dispatchOf(v);
        if (!object) raise(unknownOf(v) ? err::TypeMismatch : err::ObjectNotSet);
        part.object = ComPtr<IDispatch>(object);
    } else if (isNull(v)) {
        raise(err::InvalidUseOfNull);
    } else if (isArray(v)) {
        raise(err::TypeMismatch);
    } else if (!isMissing(v)) {
        part.window = windowOfPath(v);
    }
    return part;
}

// An item of a list of forms or controls; what cannot be one (Nothing, Empty, Null, an
// array) is passed over.
std::optional<Part> itemPart(const VARIANT& value) {
    const VARIANT& v = deref(value);
    if (isEmpty(v) || isNull(v) || isArray(v) || isMissing(v) || (isObject(v) && !dispatchOf(v))) return std::nullopt;
    return partOf(v);
}

HWND windowOf(const Part& part) {
    if (!part.object) return part.window;
    return toHwnd(toInt32(*LateBound(part.object.get()).get(L"hWnd")));
}

// The elements of an array, or the items a collection's enumerator (For Each) gives.
std::vector<Variant> itemsOf(const VARIANT& value) {
    const VARIANT& v = deref(value);
    std::vector<Variant> items;
    if (isArray(v)) {
        arrays::forEachElement(v, [&](const VARIANT& e) { items.push_back(Variant::copyOf(e)); });
        return items;
    }
    IDispatch* object = dispatchOf(v);
    if (!object) raise(isObject(v) ? err::ObjectNotSet : err::TypeMismatch);
    std::vector<Variant> none;
    Variant enumerator = LateBound::invoke(object, DISPID_NEWENUM, DISPATCH_METHOD | DISPATCH_PROPERTYGET, none);
    IUnknown* unknown = unknownOf(*enumerator);
    ComPtr<IEnumVARIANT> walk;
    if (!unknown || FAILED(unknown->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(walk.put()))))
        raise(err::NotSupported);
    for (;;) {
        Variant item;
        ULONG fetched = 0;
        if (walk->Next(1, item.put(), &fetched) != S_OK || fetched != 1) break;
        items.push_back(std::move(item));
    }
    return items;
}

std::vector<Part> partsOf(const std::vector<Variant>& items) {
    std::vector<Part> parts;
    for (const Variant& item : items)
        if (auto part = itemPart(*item)) parts.push_back(std::move(*part));
    return parts;
}

BOOL CALLBACK collectWindow(HWND hwnd, LPARAM list) {
    reinterpret_cast<std::vector<Part>*>(list)->push_back(Part{nullptr, hwnd});
    return TRUE;
}

// A form's controls: an object's Controls (error 438 without), a window's child windows.
std::vector<Part> controlsOf(const Part& form) {
    if (form.object) return partsOf(itemsOf(*LateBound(form.object.get()).get(L"Controls")));
    std::vector<Part> parts;
    if (form.window && IsWindow(form.window)) EnumChildWindows(form.window, collectWindow, reinterpret_cast<LPARAM>(&parts));
    return parts;
}

// What ExceptForm and ExceptControls name: objects themselves, window handles (or the
// objects whose hWnd they are), and names (of objects, or titles of windows).
class Exceptions {
public:
    explicit Exceptions(const VARIANT& value) {
        const VARIANT& v = deref(value);
        if (isMissing(v) || isEmpty(v)) return;
        std::vector<Variant> values;
        if (isArray(v)) values = itemsOf(v);
        else values.push_back(Variant::copyOf(v));
        for (const Variant& item : values) add(deref(*item));
    }

    bool matches(const Part& part) const {
        if (part.object) {
            if (!objects_.empty()) {
                ComPtr<IUnknown> self = identityOf(part.object.get());
                for (const auto& o : objects_)
                    if (o.get() == self.get()) return true;
            }
            LateBound o(part.object.get());
            if (!names_.empty() && matchesName(o, L"Name")) return true;
            if (!handles_.empty() && o.has(L"hWnd")) {
                std::optional<HWND> h;
                tryStatement([&] { h = windowOf(part); });
                return h && matchesHandle(*h);
            }
            return false;
        }
        if (!part.window) return false;
        if (matchesHandle(part.window)) return true;
        if (names_.empty()) return false;
        const std::wstring title = window::readText(part.window);
        for (const auto& name : names_)
            if (equalText(title, name, Compare::Text)) return true;
        return false;
    }

private:
    void add(const VARIANT& v) {
        if (isNull(v)) raise(err::InvalidUseOfNull);
        if (isObject(v)) {
            if (IDispatch* object = dispatchOf(v)) objects_.push_back(identityOf(object));
        } else if (isText(v)) {
            for (const std::wstring& name : split(viewOf(V_BSTR(&deref(v))), L",")) {
                std::wstring trimmed = trim(name);
                if (!trimmed.empty()) names_.push_back(std::move(trimmed));
            }
        } else if (!isEmpty(v) && !isArray(v)) {
            handles_.push_back(toHwnd(toInt32(v)));
        }
    }
    bool matchesHandle(HWND h) const {
        for (HWND handle : handles_)
            if (handle == h) return true;
        return false;
    }
    bool matchesName(const LateBound& o, const wchar_t* property) const {
        if (!o.has(property)) return false;
        std::wstring name;
        if (!tryStatement([&] { name = toText(*o.get(property)); })) return false;
        for (const auto& n : names_)
            if (equalText(name, n, Compare::Text)) return true;
        return false;
    }

    std::vector<ComPtr<IUnknown>> objects_;
    std::vector<HWND> handles_;
    std::vector<std::wstring> names_;
};

enum class Flag { Enabled, Visible };

// Sets Enabled or Visible of a form or control; false when it has no such state (an
// object without the property, no window).
bool setFlag(const Part& part, Flag flag, bool on) {
    if (part.object) {
        LateBound o(part.object.get());
        const wchar_t* property = flag == Flag::Enabled ? L"Enabled" : L"Visible";
        if (!o.has(property)) return false;
        o.put(property, Variant::fromBool(on));
        return true;
    }
    if (!part.window || !IsWindow(part.window)) return false;
    if (flag == Flag::Enabled) EnableWindow(part.window, on ? TRUE : FALSE);
    else ShowWindow(part.window, on ? SW_SHOWNA : SW_HIDE);
    return true;
}

int32_t setAll(const std::vector<Part>& parts, Flag flag, bool on, const Exceptions& except) {
    int32_t count = 0;
    for (const Part& part : parts)
        if (!except.matches(part) && setFlag(part, flag, on)) ++count;
    return count;
}

// The controls inside a frame object: its own Controls (and theirs), or else those of its
// Parent whose Container is the frame or a control inside it.
std::vector<Part> controlsInside(const Part& frame) {
    std::vector<Part> inside;
    std::vector<ComPtr<IUnknown>> seen{identityOf(frame.object.get())};
    auto isSeen = [&](IUnknown* u) {
        for (const auto& s : seen)
            if (s.get() == u) return true;
        return false;
    };
    LateBound o(frame.object.get());
    if (o.has(L"Controls")) {
        std::vector<Part> pending = controlsOf(frame);
        while (!pending.empty()) {
            Part part = std::move(pending.back());
            pending.pop_back();
            if (part.object) {
                ComPtr<IUnknown> self = identityOf(part.object.get());
                if (isSeen(self.get())) continue;
                seen.push_back(self);
                if (LateBound(part.object.get()).has(L"Controls"))
                    for (Part& nested : controlsOf(part)) pending.push_back(std::move(nested));
            }
            inside.push_back(std::move(part));
        }
        return inside;
    }
    Part form = partOf(*o.get(L"Parent"));
    std::vector<Part> all = controlsOf(form);
    std::vector<bool> taken(all.size(), false);
    for (bool grew = true; grew;) {
        grew = false;
        for (size_t i = 0; i < all.size(); ++i) {
            if (taken[i] || !all[i].object) continue;
            LateBound control(all[i].object.get());
            ComPtr<IUnknown> container;
            if (!control.has(L"Container")) continue;
            tryStatement([&] { container = identityOf(dispatchOf(*control.get(L"Container"))); });
            if (!container || !isSeen(container.get())) continue;
            taken[i] = grew = true;
            seen.push_back(identityOf(all[i].object.get()));
            inside.push_back(all[i]);
        }
    }
    return inside;
}

// The kind of a window as a forms program names its controls.
std::wstring windowKind(HWND hwnd) {
    if (!hwnd || !IsWindow(hwnd)) return L"";
    const std::wstring cls = window::readClass(hwnd);
    const LONG style = GetWindowLongW(hwnd, GWL_STYLE);
    for (const wchar_t* prefix : {L"ThunderRT6", L"Thunder"}) {
        const std::wstring_view p(prefix);
        if (cls.size() > p.size() && cls.compare(0, p.size(), p) == 0) {
            std::wstring kind = cls.substr(p.size());
            return kind.compare(0, 4, L"Form") == 0 ? L"Form" : kind;
        }
    }
    const std::wstring name = lower(cls);
    if (name == L"button") {
        switch (style & BS_TYPEMASK) {
        case BS_CHECKBOX: case BS_AUTOCHECKBOX: case BS_3STATE: case BS_AUTO3STATE: return L"CheckBox";
        case BS_RADIOBUTTON: case BS_AUTORADIOBUTTON: return L"OptionButton";
        case BS_GROUPBOX: return L"Frame";
        default: return L"CommandButton";
        }
    }
    if (name == L"scrollbar") return (style & SBS_VERT) ? L"VScrollBar" : L"HScrollBar";
    if (name.compare(0, 8, L"richedit") == 0) return L"RichTextBox";
    static const struct {
        const wchar_t* cls;
        const wchar_t* kind;
    } kinds[] = {
        {L"edit", L"TextBox"},           {L"static", L"Label"},
        {L"combobox", L"ComboBox"},       {L"listbox", L"ListBox"},
        {L"syslistview32", L"ListView"},  {L"systreeview32", L"TreeView"},
        {L"msctls_progress32", L"ProgressBar"}, {L"msctls_trackbar32", L"Slider"},
        {L"systabcontrol32", L"TabStrip"}, {L"msctls_statusbar32", L"StatusBar"},
        {L"toolbarwindow32", L"Toolbar"},
    };
    for (const auto& k : kinds)
        if (name == k.cls) return k.kind;
    return (style & WS_CHILD) ? cls : L"Form";
}

// The name an object's type information gives its class (as TypeName shows it), or "".
std::wstring typeNameOf(IDispatch* object) {
    ComPtr<ITypeInfo> info;
    if (ComPtr<IProvideClassInfo> classInfo = ComPtr<IDispatch>(object).query<IProvideClassInfo>())
        classInfo->GetClassInfo(info.put());
    UINT count = 0;
    if (!info && SUCCEEDED(object->GetTypeInfoCount(&count)) && count > 0)
        object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put());
    if (!info) return L"";
    Bstr name;
    if (FAILED(info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr))) return L"";
    std::wstring text = name.str();
    if (!text.empty() && text[0] == L'_') text.erase(0, 1);
    return text;
}

}  // namespace

bool isControlObject(const VARIANT& value) noexcept {
    try {
        IDispatch* object = dispatchOf(deref(value));
        if (!object) return false;
        LateBound o(object);
        return o.has(L"Name") && o.has(L"Enabled") && o.has(L"Visible");
    } catch (...) {
        return false;
    }
}

std::wstring controlType(const VARIANT& control) {
    Part part = partOf(control);
    if (!part.object) return windowKind(part.window);
    std::wstring name = typeNameOf(part.object.get());
    if (!name.empty()) return name;
    if (LateBound(part.object.get()).has(L"hWnd")) return windowKind(windowOf(part));
    return L"Object";
}

void dragMe(const VARIANT& form, LONG buttonMessage, LONG hitTest) {
    const HWND hwnd = windowOf(partOf(form));
    if (!hwnd) return;
    // A press of the primary button starts the system's move or size loop, which lasts
    // until that button is released: with the button up there is nothing to drag, and
    // the loop would wait for a release that never comes.
    const int primary = GetSystemMetrics(SM_SWAPBUTTON) ? VK_RBUTTON : VK_LBUTTON;
    if (buttonMessage == WM_NCLBUTTONDOWN && !isKeyDown(primary)) return;
    ReleaseCapture();
    SendMessageW(hwnd, static_cast<UINT>(buttonMessage), static_cast<WPARAM>(static_cast<LONG_PTR>(hitTest)), 0);
}

bool winOnTop(const VARIANT& form, bool onTop) {
    const HWND hwnd = windowOf(partOf(form));
    if (!hwnd) return false;
    return SetWindowPos(hwnd, onTop ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                        SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE) != FALSE;
}

int32_t enableForms(const VARIANT& forms, bool enabled, const VARIANT& except) {
    const VARIANT& v = deref(forms);
    std::vector<Part> parts;
    if (isArray(v)) {
        parts = partsOf(itemsOf(v));
    } else {
        Part part = partOf(v);
        // An object is one form when it has Enabled, else a collection of forms.
        if (part.object && !LateBound(part.object.get()).has(L"Enabled")) parts = partsOf(itemsOf(v));
        else parts.push_back(std::move(part));
    }
    return setAll(parts, Flag::Enabled, enabled, Exceptions(except));
}

int32_t enableControls(const VARIANT& form, bool enabled, const VARIANT& except) {
    return setAll(controlsOf(partOf(form)), Flag::Enabled, enabled, Exceptions(except));
}

int32_t showControls(const VARIANT& form, bool visible, const VARIANT& except) {
    return setAll(controlsOf(partOf(form)), Flag::Visible, visible, Exceptions(except));
}

int32_t enableFrame(const VARIANT& frame, bool enabled) {
    Part part = partOf(frame);
    const Exceptions none(*Variant::missing());
    if (!part.object) {
        if (!setFlag(part, Flag::Enabled, enabled)) return 0;
        return 1 + setAll(controlsOf(part), Flag::Enabled, enabled, none);
    }
    LateBound(part.object.get()).put(L"Enabled", Variant::fromBool(enabled));
    return 1 + setAll(controlsInside(part), Flag::Enabled, enabled, none);
}

bool imageSizeAuto(const VARIANT& image, const VARIANT& maxWidth, const VARIANT& maxHeight, IDispatch* picture) {
    const VARIANT& v = deref(image);
    if (!isObject(v)) raise(err::ObjectRequired);
    IDispatch* object = dispatchOf(v);
    if (!object) raise(err::ObjectNotSet);
    LateBound control(object);
    if (picture) control.putRef(L"Picture", Variant::fromDispatch(picture));
    const Variant shown = picture ? Variant::fromDispatch(picture) : control.get(L"Picture");
    IDispatch* pictureObject = dispatchOf(*shown);
    if (!pictureObject) return false;
    LateBound pic(pictureObject);
    const double width = toDouble(*pic.get(L"Width"));
    const double height = toDouble(*pic.get(L"Height"));
    if (!(width > 0 && height > 0)) return false;
    auto boxSide = [&](const VARIANT& given, const wchar_t* property) {
        const double side = isMissing(deref(given)) ? toDouble(*control.get(property)) : toDouble(given);
        if (!(side > 0)) raise(err::InvalidCall);
        return side;
    };
    const double boxWidth = boxSide(maxWidth, L"Width");
    const double boxHeight = boxSide(maxHeight, L"Height");
    const double scale = std::min(boxWidth / width, boxHeight / height);
    const double newWidth = std::max(1.0, std::nearbyint(width * scale));
    const double newHeight = std::max(1.0, std::nearbyint(height * scale));
    if (!std::isfinite(newWidth) || !std::isfinite(newHeight)) raise(err::Overflow);
    if (control.has(L"Stretch")) control.put(L"Stretch", Variant::fromBool(true));
    control.put(L"Width", Variant::fromDouble(newWidth));
    control.put(L"Height", Variant::fromDouble(newHeight));
    return true;
}

}  // namespace vx::forms
