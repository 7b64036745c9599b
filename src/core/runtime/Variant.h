#pragma once
// Owning wrappers for the automation runtime's value types: VARIANT and BSTR.
#include "core/runtime/Platform.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace vx {

// An owning BSTR.
class Bstr {
public:
    Bstr() noexcept = default;
    explicit Bstr(std::wstring_view text);
    Bstr(const Bstr& o) : Bstr(o.view()) {}
    Bstr(Bstr&& o) noexcept : b_(std::exchange(o.b_, nullptr)) {}
    Bstr& operator=(Bstr o) noexcept { std::swap(b_, o.b_); return *this; }
    ~Bstr() { SysFreeString(b_); }

    // Takes ownership of a BSTR allocated by someone else.
    static Bstr adopt(BSTR b) noexcept { Bstr r; r.b_ = b; return r; }

    BSTR get() const noexcept { return b_; }
    BSTR* put() noexcept { SysFreeString(b_); b_ = nullptr; return &b_; }
    BSTR detach() noexcept { return std::exchange(b_, nullptr); }
    size_t length() const noexcept { return SysStringLen(b_); }
    std::wstring_view view() const noexcept { return b_ ? std::wstring_view(b_, SysStringLen(b_)) : std::wstring_view(); }
    std::wstring str() const { return std::wstring(view()); }

private:
    BSTR b_ = nullptr;
};

// A BSTR that the caller still owns, read as text (a null BSTR is the empty string).
inline std::wstring_view viewOf(BSTR b) noexcept {
    return b ? std::wstring_view(b, SysStringLen(b)) : std::wstring_view();
}

// An owning VARIANT.
class Variant {
public:
    Variant() noexcept { VariantInit(&v_); }
    Variant(const Variant& o);
    Variant(Variant&& o) noexcept : v_(o.v_) { VariantInit(&o.v_); }
    Variant& operator=(Variant o) noexcept { std::swap(v_, o.v_); return *this; }
    ~Variant() { VariantClear(&v_); }

    // A copy of src; a by-reference source is copied as the value it refers to.
    static Variant copyOf(const VARIANT& src);
    // Takes ownership of src's contents, leaving src empty.
    static Variant take(VARIANT& src) noexcept;

    static Variant empty() { return Variant(); }
    static Variant null();
    // The marker the automation runtime passes for an omitted optional argument.
    static Variant missing();
    static Variant fromShort(int16_t n);
    static Variant fromLong(int32_t n);
    static Variant fromDouble(double d);
    static Variant fromBool(bool b);
    static Variant fromDate(DATE d);
    static Variant fromText(std::wstring_view s);
    // Takes a new reference to p (null gives Nothing).
    static Variant fromDispatch(IDispatch* p);
    static Variant fromUnknown(IUnknown* p);

    VARTYPE type() const noexcept { return V_VT(&v_); }
    const VARIANT& operator*() const noexcept { return v_; }
    const VARIANT* operator->() const noexcept { return &v_; }
    const VARIANT* get() const noexcept { return &v_; }
    VARIANT* get() noexcept { return &v_; }
    // For out parameters: clears what is held and hands out the slot.
    VARIANT* put() noexcept { VariantClear(&v_); return &v_; }
    // Hands the contents to the caller; this becomes Empty.
    VARIANT detach() noexcept { VARIANT r = v_; VariantInit(&v_); return r; }
    // Moves the contents into an out parameter the caller owns (which must be initialised).
    void detachTo(VARIANT* out) noexcept;

private:
    VARIANT v_;
};

// The value a VARIANT holds, following VT_BYREF|VT_VARIANT references.
const VARIANT& deref(const VARIANT& v) noexcept;
// The type of the value, ignoring VT_BYREF (so a reference to a Long is VT_I4).
VARTYPE valueType(const VARIANT& v) noexcept;

// A Boolean as the platform stores it (True is -1), and back from an optional one (an
// omitted pointer is False).
constexpr VARIANT_BOOL toVariantBool(bool b) noexcept { return b ? VARIANT_TRUE : VARIANT_FALSE; }
inline bool isTrue(const VARIANT_BOOL* flag) noexcept { return flag && *flag != VARIANT_FALSE; }

bool isMissing(const VARIANT& v) noexcept;   // an omitted optional argument
bool isEmpty(const VARIANT& v) noexcept;
bool isNull(const VARIANT& v) noexcept;
bool isArray(const VARIANT& v) noexcept;
bool isObject(const VARIANT& v) noexcept;    // an object reference, Nothing included
bool isText(const VARIANT& v) noexcept;
// The object reference a VARIANT holds (no new reference), or null.
IDispatch* dispatchOf(const VARIANT& v) noexcept;
// The same for any object, IUnknown references included (no new reference), or null.
IUnknown* unknownOf(const VARIANT& v) noexcept;

// Writes value into a by-reference argument the caller passed (a VT_BYREF VARIANT);
// a by-value argument is left alone. The value is converted to the reference's type.
void assignToReference(VARIANT& arg, const VARIANT& value);
// Writes value into an [in, out] Variant parameter: through it into the host's variable
// when the argument is a reference, otherwise into the argument itself.
void writeBack(VARIANT& param, const VARIANT& value);
// The same without a copy (for large arrays): the value moves into the host's variable or
// into the parameter itself; only a typed reference gets a converted copy. What the
// variable held is released first; an array the host has locked there is error 10.
void moveBack(VARIANT& param, Variant value);

}  // namespace vx
