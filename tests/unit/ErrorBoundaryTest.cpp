// The error boundary: whatever a member throws becomes an HRESULT and an IErrorInfo;
// nothing crosses into the host.
#include "core/dispatch/ErrorBoundary.h"
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/Errors.h"

#include "AllocationFailure.h"
#include "TestSupport.h"

#include <new>
#include <stdexcept>

using namespace vx;

namespace {

std::wstring currentErrorDescription() {
    IErrorInfo* info = nullptr;
    if (GetErrorInfo(0, &info) != S_OK || !info) return L"<none>";
    BSTR d = nullptr;
    info->GetDescription(&d);
    std::wstring r = d ? d : L"";
    SysFreeString(d);
    info->Release();
    return r;
}

}  // namespace

TEST(ErrorBoundary, RuntimeErrorsBecomeControlFacilityHresults) {
    const struct { int number; const wchar_t* text; } cases[] = {
        {5, L"Invalid procedure call or argument"}, {6, L"Overflow"}, {9, L"Subscript out of range"},
        {13, L"Type mismatch"}, {91, L"Object variable or With block variable not set"}, {94, L"Invalid use of Null"},
        {424, L"Object required"}, {438, L"Object doesn't support this property or method"},
        {457, L"This key is already associated with an element of this collection"}};
    for (const auto& c : cases) {
        HRESULT hr = guard(IID_IDispatch, [&] { vx::raise(c.number); });
        EXPECT_EQ(hr, static_cast<HRESULT>(0x800A0000u + c.number));
        EXPECT_EQ(vxtest::errorNumberOf(hr), c.number);
        EXPECT_EQ(currentErrorDescription(), c.text);
    }
}

TEST(ErrorBoundary, PlatformFailuresPassThroughUnchanged) {
    HRESULT hr = guard(IID_IDispatch, [] { throw ComError(E_ACCESSDENIED, L"denied by the object"); });
    EXPECT_EQ(hr, E_ACCESSDENIED);
    EXPECT_EQ(currentErrorDescription(), L"denied by the object");
}

TEST(ErrorBoundary, NothingElseCrossesEither) {
    EXPECT_EQ(guard(IID_IDispatch, [] { throw std::bad_alloc(); }), runtimeHresult(7));
    EXPECT_EQ(guard(IID_IDispatch, [] { throw std::runtime_error("unexpected"); }), runtimeHresult(51));
    EXPECT_EQ(guard(IID_IDispatch, [] { throw 42; }), runtimeHresult(51));
    EXPECT_EQ(guard(IID_IDispatch, [] {}), S_OK);
}

TEST(ErrorBoundary, SkippedStatementsSwallowRuntimeErrorsOnly) {
    int reached = 0;
    EXPECT_FALSE(tryStatement([&] { vx::raise(13); }));
    EXPECT_TRUE(tryStatement([&] { ++reached; }));
    EXPECT_FALSE(tryStatement([&] { throw ComError(E_FAIL); }));
    EXPECT_EQ(reached, 1);
    EXPECT_THROW(tryStatement([] { throw std::bad_alloc(); }), std::bad_alloc);
}

TEST(ErrorBoundary, OutOfMemoryIsReportedWithoutAllocating) {
    HRESULT hr = S_OK;
    {
        vxtest::FailingAllocations none;
        hr = guard(IID_IDispatch, [] { throw std::bad_alloc(); });
    }
    EXPECT_EQ(hr, runtimeHresult(7));
    EXPECT_EQ(lastError().hr, runtimeHresult(7));
    // A host still reads the runtime's text for it.
    EXCEPINFO ei{};
    EXPECT_EQ(finishInvoke(hr, &ei), DISP_E_EXCEPTION);
    EXPECT_EQ(ei.scode, runtimeHresult(7));
    EXPECT_EQ(std::wstring(ei.bstrDescription ? ei.bstrDescription : L""), L"Out of memory");
    EXPECT_EQ(std::wstring(ei.bstrSource ? ei.bstrSource : L""), L"Vx_Main");
    SysFreeString(ei.bstrSource);
    SysFreeString(ei.bstrDescription);
}
