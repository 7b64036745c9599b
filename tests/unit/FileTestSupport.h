#pragma once
// What the file tests share: a late-bound stand-in object whose members are test
// functions, and a folder of the test's own.
#include "core/runtime/ComPtr.h"
#include "core/runtime/Platform.h"
#include "core/runtime/Variant.h"

#include <shellapi.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace vxtest {

// An automation object for a test: each member is a function that gets the arguments in
// call order (references followed) and gives the result. It answers QueryInterface for
// IDispatch and for the further interfaces named, so that it passes for an object of
// another library.
class StandIn : public IDispatch {
public:
    using Member = std::function<vx::Variant(std::vector<vx::Variant>&)>;
    static vx::ComPtr<StandIn> make(std::vector<std::pair<std::wstring, Member>> members, std::vector<IID> also = {}) {
        return vx::ComPtr<StandIn>::adopt(new StandIn(std::move(members), std::move(also)));
    }
    vx::Variant asVariant() { return vx::Variant::fromDispatch(this); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override {
        bool known = IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch);
        for (const IID& iid : also_) known = known || IsEqualIID(riid, iid);
        *ppv = known ? static_cast<IDispatch*>(this) : nullptr;
        if (!known) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++refs_); }
    ULONG STDMETHODCALLTYPE Release() override {
        const long n = --refs_;
        if (n == 0) delete this;
        return static_cast<ULONG>(n);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override { return *n = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        for (size_t i = 0; i < members_.size(); ++i)
            if (count == 1 && !lstrcmpiW(members_[i].first.c_str(), names[0])) return ids[0] = static_cast<DISPID>(i + 1), S_OK;
        ids[0] = DISPID_UNKNOWN;
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result, EXCEPINFO*,
                                     UINT*) override {
        if (id < 1 || static_cast<size_t>(id) > members_.size()) return DISP_E_MEMBERNOTFOUND;
        std::vector<vx::Variant> args;
        for (UINT i = params->cArgs; i-- > 0;) args.push_back(vx::Variant::copyOf(params->rgvarg[i]));
        vx::Variant r = members_[static_cast<size_t>(id - 1)].second(args);
        if (result) r.detachTo(result);
        return S_OK;
    }

private:
    StandIn(std::vector<std::pair<std::wstring, Member>> members, std::vector<IID> also)
        : members_(std::move(members)), also_(std::move(also)) {}
    virtual ~StandIn() = default;

    std::vector<std::pair<std::wstring, Member>> members_;
    std::vector<IID> also_;
    long refs_ = 1;
};

// A value for a stand-in's member that always gives it.
inline StandIn::Member gives(vx::Variant value) {
    return [value](std::vector<vx::Variant>&) { return value; };
}

// A folder of the test's own in the temporary folder, made empty and removed after.
class TestFolder {
public:
    explicit TestFolder(const std::wstring& name) {
        wchar_t temp[MAX_PATH + 1];
        GetTempPathW(MAX_PATH, temp);
        path_ = std::wstring(temp) + L"vx " + name + L" " + std::to_wstring(GetCurrentProcessId());
        remove();
        CreateDirectoryW(path_.c_str(), nullptr);
    }
    ~TestFolder() { remove(); }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    const std::wstring& path() const { return path_; }
    std::wstring operator/(const std::wstring& name) const { return path_ + L"\\" + name; }

private:
    void remove() {
        std::wstring list = path_ + L'\0';  // a list of one path, ended by a second NUL
        SHFILEOPSTRUCTW op{};
        op.wFunc = FO_DELETE;
        op.pFrom = list.c_str();
        op.fFlags = FOF_NOCONFIRMATION | FOF_NOERRORUI | FOF_SILENT;
        if (GetFileAttributesW(path_.c_str()) != INVALID_FILE_ATTRIBUTES) SHFileOperationW(&op);
    }
    std::wstring path_;
};

}  // namespace vxtest
