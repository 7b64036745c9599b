#pragma once
// The one shape of a member with a result: the out parameter is checked and set to its
// neutral value (null, 0, False, Empty) before anything can fail, the body runs behind
// the error boundary, and what it returns becomes the result. A body that fails leaves
// the neutral value, never a half-made or allocated one.
//
//     HRESULT Reg::CountKey(HKEY_Type Key, BSTR SubKey, LONG* result) {
//         return deliver(result, [&] { return countSubkeys(Key, ansi(viewOf(SubKey))); });
//     }
//
// What a body may return, by result type:
//   BSTR*          a Bstr (handed over), std::wstring, std::wstring_view or const wchar_t*
//   VARIANT*       a Variant (handed over)
//   VARIANT_BOOL*  a bool (True is -1)
//   CY*            a CY (a currency: the value times 10000)
//   numbers        a number of a type whose every value fits (int into LONG, not the reverse)
//   I**            a ComPtr of I or of a class implementing I (handed over), or nullptr
#include "core/dispatch/ErrorBoundary.h"
#include "core/runtime/Errors.h"
#include "core/runtime/ComPtr.h"
#include "core/runtime/Variant.h"

#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace vx {

namespace deliverDetail {

template <class T>
struct Out {
    static_assert(std::is_arithmetic_v<T>, "deliver: a result of this type is not supported");
    static void clear(T& out) noexcept { out = T{}; }
    static void fill(T& out, bool value) noexcept {
        // VARIANT_BOOL is a short: a Boolean goes in as True (-1) or False (0).
        static_assert(std::is_same_v<T, VARIANT_BOOL>, "deliver: a Boolean result needs a VARIANT_BOOL");
        out = toVariantBool(value);
    }
    template <class V, class = std::enable_if_t<std::is_arithmetic_v<V> && !std::is_same_v<V, bool>>>
    static void fill(T& out, V value) noexcept {
        static_assert(std::is_floating_point_v<T> || (std::is_integral_v<V> &&
                          std::numeric_limits<V>::min() >= std::numeric_limits<T>::min() &&
                          std::numeric_limits<V>::max() <= std::numeric_limits<T>::max()),
                      "deliver: the body's number does not always fit the result; convert it with a check");
        out = static_cast<T>(value);
    }
};

template <>
struct Out<BSTR> {
    static void clear(BSTR& out) noexcept { out = nullptr; }
    static void fill(BSTR& out, Bstr value) noexcept { out = value.detach(); }
    static void fill(BSTR& out, std::wstring_view value) { out = Bstr(value).detach(); }
    static void fill(BSTR& out, const std::wstring& value) { out = Bstr(value).detach(); }
    static void fill(BSTR& out, const wchar_t* value) { out = Bstr(value ? value : L"").detach(); }
};

template <>
struct Out<CY> {
    static void clear(CY& out) noexcept { out.int64 = 0; }
    static void fill(CY& out, CY value) noexcept { out = value; }
};

template <>
struct Out<VARIANT> {
    static void clear(VARIANT& out) noexcept { VariantInit(&out); }
    static void fill(VARIANT& out, Variant value) noexcept { value.detachTo(&out); }
};

template <class I>
struct Out<I*> {
    static void clear(I*& out) noexcept { out = nullptr; }
    static void fill(I*& out, std::nullptr_t) noexcept { out = nullptr; }
    template <class U>
    static void fill(I*& out, ComPtr<U> value) noexcept {
        out = value.detach();
    }
};

}  // namespace deliverDetail

// A pointer parameter a caller must pass (a host always does; a caller through the vtable
// may not): the object it points to, or E_POINTER for null.
template <class T>
T& required(T* p) {
    if (!p) throw ComError(E_POINTER);
    return *p;
}

// Runs body behind the error boundary of interface iid and hands its result to *out.
template <class T, class F>
HRESULT deliver(REFIID iid, T* out, F&& body) noexcept {
    if (!out) return E_POINTER;
    deliverDetail::Out<T>::clear(*out);
    return guard(iid, [&] { deliverDetail::Out<T>::fill(*out, body()); });
}

// The same, with a neutral value other than the type's own (CountUBound's -1).
template <class T, class F>
HRESULT deliver(REFIID iid, T* out, T neutral, F&& body) noexcept {
    if (!out) return E_POINTER;
    *out = neutral;
    return guard(iid, [&] { deliverDetail::Out<T>::fill(*out, body()); });
}

}  // namespace vx
