#pragma once
// Late binding of automation objects: create one by ProgID or bind one by moniker
// (FileSystemObject, Shell.Application, WScript.Shell, "winmgmts:", "WinNT://"), then
// call, read and write its members by name with Variant arguments.
//
// Errors: a member the object lacks is error 438, a missing object 91, an object that
// cannot be created 429; a failure the object itself reports passes on unchanged
// (ComError with its HRESULT and description).
#include "core/runtime/ComPtr.h"
#include "core/runtime/Variant.h"

#include "core/runtime/Platform.h"

#include <functional>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace vx {

class LateBound {
public:
    LateBound() = default;
    explicit LateBound(IDispatch* object) : object_(object) {}
    explicit LateBound(const VARIANT& v);  // an object held in a Variant; error 424 if none

    static LateBound create(std::wstring_view progId);     // CreateObject
    static LateBound bind(std::wstring_view moniker);      // GetObject

    IDispatch* get() const noexcept { return object_.get(); }
    explicit operator bool() const noexcept { return static_cast<bool>(object_); }

    // A method call or property read, as a late-bound host makes it.
    Variant call(std::wstring_view name, std::vector<Variant> args = {}) const;
    Variant get(std::wstring_view name, std::vector<Variant> args = {}) const;
    void put(std::wstring_view name, const Variant& value) const;
    void putRef(std::wstring_view name, const Variant& value) const;

    // For Each: hands each element of a collection (through its _NewEnum) to f, in the
    // collection's order. A collection without an enumerator is error 438.
    void forEach(const std::function<void(const VARIANT&)>& f) const;

    // Arguments are in call order; by-reference arguments (VT_BYREF) write back.
    Variant invoke(std::wstring_view name, WORD flags, std::vector<Variant>& args) const;
    static Variant invoke(IDispatch* object, DISPID id, WORD flags, std::vector<Variant>& args);

private:
    ComPtr<IDispatch> object_;
};

}  // namespace vx
