#pragma once
// The one place where C++ meets the host: inside a member, code throws; at the
// interface boundary, what was thrown becomes an HRESULT and an IErrorInfo. Runtime
// errors travel as FACILITY_CONTROL HRESULTs (0x800A0000 + number) with the runtime's
// usual text, so a host sees Err.Number 5, 9, 13 ...; HRESULTs of called platform
// objects pass through unchanged. Nothing thrown ever crosses the boundary.
#include <windows.h>

#include <string>

namespace vx {

// Turns the exception being handled into an HRESULT and sets the thread's error info.
// Call only inside a catch block.
HRESULT reportCurrentException(REFIID iid) noexcept;

// Sets the thread's error info for hr and returns hr.
HRESULT reportError(REFIID iid, HRESULT hr, const std::wstring& description, const std::wstring& source) noexcept;

// The last error this thread reported through the boundary, for IDispatch::Invoke to
// put into the host's EXCEPINFO. clearLastError() is called before each dispatch.
struct LastError {
    HRESULT hr = S_OK;
    std::wstring description;
    std::wstring source;
    // The texts to report: the runtime's own for an error that came without one (out of
    // memory is reported without allocating), and the library as the source.
    const wchar_t* descriptionText() const noexcept;
    const wchar_t* sourceText() const noexcept;
};
const LastError& lastError() noexcept;
void clearLastError() noexcept;

// Runs body; an exception it throws is reported and its HRESULT returned.
template <class F>
HRESULT guard(REFIID iid, F&& body) noexcept {
    try {
        body();
        return S_OK;
    } catch (...) {
        return reportCurrentException(iid);
    }
}

}  // namespace vx
