#pragma once
// A stand-in automation object, for members that reach objects through the binding
// service: members by name, each a function of its arguments (in call order), and the
// elements For Each hands out.
#include "core/runtime/Errors.h"
#include "core/runtime/Text.h"
#include "core/runtime/Variant.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace vxtest {

// IUnknown for the stand-ins, which implement the one interface I.
template <class I>
class Counted : public I {
public:
    virtual ~Counted() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override {
        *ppv = IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, __uuidof(I)) ? static_cast<I*>(this) : nullptr;
        if (*ppv) AddRef();
        return *ppv ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }
    ULONG STDMETHODCALLTYPE Release() override {
        const LONG n = InterlockedDecrement(&refs_);
        if (n == 0) delete this;
        return static_cast<ULONG>(n);
    }

private:
    LONG refs_ = 1;
};

class FakeDispatch final : public Counted<IDispatch> {
public:
    // A failing member throws vx::ComError with the HRESULT to return.
    using Member = std::function<vx::Variant(std::vector<vx::Variant>& args)>;

    // A new stand-in, in a Variant that holds the one reference to it.
    static vx::Variant make(std::vector<std::pair<std::wstring, Member>> members, std::vector<vx::Variant> elements = {}) {
        auto* d = new FakeDispatch;
        d->members_ = std::move(members);
        d->elements_ = std::move(elements);
        vx::Variant v = vx::Variant::fromDispatch(d);
        d->Release();
        return v;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        for (size_t i = 0; i < members_.size(); ++i)
            if (vx::equalText(members_[i].first, names[0], vx::Compare::Text)) return ids[0] = static_cast<DISPID>(i + 1), S_OK;
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result, EXCEPINFO*,
                                     UINT*) override {
        if (id == DISPID_NEWENUM) {
            V_VT(result) = VT_UNKNOWN;
            V_UNKNOWN(result) = new Items(elements_);
            return S_OK;
        }
        std::vector<vx::Variant> args;
        for (UINT i = params->cArgs; i > 0; --i) args.push_back(vx::Variant::copyOf(params->rgvarg[i - 1]));
        try {
            vx::Variant r = members_.at(static_cast<size_t>(id) - 1).second(args);
            if (result) r.detachTo(result);
            return S_OK;
        } catch (const vx::ComError& e) {
            return e.hresult();
        }
    }

private:
    class Items final : public Counted<IEnumVARIANT> {
    public:
        explicit Items(std::vector<vx::Variant> items) : items_(std::move(items)) {}
        HRESULT STDMETHODCALLTYPE Next(ULONG wanted, VARIANT* out, ULONG* fetched) override {
            ULONG n = 0;
            for (; n < wanted && next_ < items_.size(); ++n) out[n] = vx::Variant(items_[next_++]).detach();
            if (fetched) *fetched = n;
            return n == wanted ? S_OK : S_FALSE;
        }
        HRESULT STDMETHODCALLTYPE Skip(ULONG n) override { return next_ += n, S_OK; }
        HRESULT STDMETHODCALLTYPE Reset() override { return next_ = 0, S_OK; }
        HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT**) override { return E_NOTIMPL; }

    private:
        std::vector<vx::Variant> items_;
        size_t next_ = 0;
    };

    std::vector<std::pair<std::wstring, Member>> members_;
    std::vector<vx::Variant> elements_;
};

}  // namespace vxtest
