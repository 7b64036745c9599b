#pragma once
// Helpers the unit tests share: creating the library's classes through their class
// factories, and calling members by name through IDispatch as a late-bound host does.
#include "core/runtime/ComPtr.h"
#include "core/runtime/Platform.h"
#include "core/runtime/Variant.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vxtest {

extern std::wstring dllPath;  // the built DLL, for the tests that load it

// A new object of a class of the roster (dependent classes included).
vx::ComPtr<IDispatch> createObject(REFCLSID clsid);

// What a late-bound call returned: the HRESULT, the result, and for DISP_E_EXCEPTION the
// error number and text the host would see.
struct CallResult {
    HRESULT hr = S_OK;
    vx::Variant value;
    HRESULT scode = S_OK;
    std::wstring description;
    // The host's Err.Number: 0 on success, the runtime error number otherwise.
    int errorNumber() const;
};

// A by-reference argument to a host variable, as VBScript passes variables.
vx::Variant byRef(vx::Variant& variable);

// Calls member name; args are in call order.
CallResult call(IDispatch* object, const wchar_t* name, std::vector<vx::Variant> args = {},
                WORD flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET);
CallResult get(IDispatch* object, const wchar_t* name, std::vector<vx::Variant> args = {});
CallResult put(IDispatch* object, const wchar_t* name, const vx::Variant& value);
CallResult putRef(IDispatch* object, const wchar_t* name, const vx::Variant& value);

// The object a result holds.
vx::ComPtr<IDispatch> objectOf(const vx::Variant& v);

// The runtime error number an HRESULT returned by a member stands for (0 on success).
int errorNumberOf(HRESULT hr);

std::wstring textOf(const vx::Variant& v);
long longOf(const vx::Variant& v);

}  // namespace vxtest

// Expects expr to raise the runtime error number (0: to raise nothing).
#define EXPECT_RUNTIME_ERROR(expr, expectedNumber)            \
    do {                                              \
        int got_ = 0;                                 \
        try {                                         \
            (void)(expr);                             \
        } catch (const vx::RuntimeError& e) {         \
            got_ = e.number();                        \
        }                                             \
        EXPECT_EQ(got_, expectedNumber) << #expr;             \
    } while (0)
