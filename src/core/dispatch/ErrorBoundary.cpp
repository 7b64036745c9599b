#include "core/dispatch/ErrorBoundary.h"

#include "core/runtime/Errors.h"

#include "core/runtime/Platform.h"

#include <new>

namespace vx {

namespace {
thread_local LastError last;
const wchar_t kSource[] = L"Vx_Main";
const wchar_t kOutOfMemory[] = L"Out of memory";
}  // namespace

const wchar_t* LastError::descriptionText() const noexcept {
    if (description.empty() && hr == runtimeHresult(err::OutOfMemory)) return kOutOfMemory;
    return description.c_str();
}

const wchar_t* LastError::sourceText() const noexcept { return source.empty() ? kSource : source.c_str(); }

const LastError& lastError() noexcept { return last; }

void clearLastError() noexcept {
    last.hr = S_OK;
    last.description.clear();
    last.source.clear();
}

HRESULT reportError(REFIID iid, HRESULT hr, const std::wstring& description, const std::wstring& source) noexcept {
    try {
        last.hr = hr;
        last.description = description;
        last.source = source;
    } catch (...) {
        last.hr = hr;  // without texts of an earlier error
        last.description.clear();
        last.source.clear();
    }
    ICreateErrorInfo* create = nullptr;
    if (SUCCEEDED(CreateErrorInfo(&create))) {
        create->SetGUID(iid);
        create->SetSource(const_cast<LPOLESTR>(source.c_str()));
        create->SetDescription(const_cast<LPOLESTR>(description.c_str()));
        IErrorInfo* info = nullptr;
        if (SUCCEEDED(create->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info)))) {
            SetErrorInfo(0, info);
            info->Release();
        }
        create->Release();
    }
    return hr;
}

HRESULT reportCurrentException(REFIID iid) noexcept {
    try {
        throw;
    } catch (const RuntimeError& e) {
        try {
            return reportError(iid, runtimeHresult(e.number()), runtimeErrorText(e.number()), kSource);
        } catch (...) {
            return runtimeHresult(e.number());
        }
    } catch (const ComError& e) {
        try {
            return reportError(iid, e.hresult(), e.description(), e.source().empty() ? kSource : e.source());
        } catch (...) {
            return e.hresult();
        }
    } catch (const std::bad_alloc&) {
        // Nothing more may be allocated here: no texts are kept (the report supplies the
        // runtime's own), and the thread's error info is cleared rather than made.
        last.hr = runtimeHresult(err::OutOfMemory);
        last.description.clear();
        last.source.clear();
        SetErrorInfo(0, nullptr);
        return last.hr;
    } catch (...) {
        return reportError(iid, runtimeHresult(err::InternalError), L"Internal error", kSource);
    }
}

}  // namespace vx
