#pragma once
// A stand-in automation object for the tests of members that bind objects by name (the
// binding service): members by name, each a function of its arguments, and for a
// collection the elements For Each hands out.
#include "core/runtime/ComPtr.h"
#include "core/runtime/Platform.h"
#include "core/runtime/Text.h"
#include "core/runtime/Variant.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace vxtest {

class FakeDispatch : public IDispatch {
public:
    // A member: its arguments in call order in, its result out; a failure is an HRESULT
    // thrown as vx::ComError.
    using Member = std::function<vx::Variant(std::vector<vx::Variant>& args)>;

    static vx::ComPtr<FakeDispatch> create() { return vx::ComPtr<FakeDispatch>::adopt(new FakeDispatch); }

    FakeDispatch& on(std::wstring name, Member member) {
        members_.emplace_back(std::move(name), std::move(member));
        return *this;
    }
    FakeDispatch& elements(std::vector<vx::Variant> items) {
        elements_ = std::move(items);
        return *this;
    }
    vx::Variant asVariant() { return vx::Variant::fromDispatch(this); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override {
        if (!ppv) return E_POINTER;
        *ppv = nullptr;
        if (!IsEqualIID(riid, IID_IUnknown) && !IsEqualIID(riid, IID_IDispatch)) return E_NOINTERFACE;
        *ppv = static_cast<IDispatch*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }
    ULONG STDMETHODCALLTYPE Release() override {
        const LONG n = InterlockedDecrement(&refs_);
        if (n == 0) delete this;
        return static_cast<ULONG>(n);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        if (count != 1) return DISP_E_UNKNOWNNAME;
        for (size_t i = 0; i < members_.size(); ++i)
            if (vx::equalText(members_[i].first, names[0], vx::Compare::Text)) {
                ids[0] = static_cast<DISPID>(i + 1);
                return S_OK;
            }
        ids[0] = DISPID_UNKNOWN;
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result, EXCEPINFO*,
                                     UINT*) override {
        if (id == DISPID_NEWENUM) {
            if (result) {
                V_VT(result) = VT_UNKNOWN;
                V_UNKNOWN(result) = new Items(elements_);
            }
            return S_OK;
        }
        if (id < 1 || static_cast<size_t>(id) > members_.size()) return DISP_E_MEMBERNOTFOUND;
        std::vector<vx::Variant> args;
        for (UINT i = params ? params->cArgs : 0; i > 0; --i) args.push_back(vx::Variant::copyOf(params->rgvarg[i - 1]));
        try {
            vx::Variant r = members_[static_cast<size_t>(id) - 1].second(args);
            if (result) r.detachTo(result);
            return S_OK;
        } catch (const vx::ComError& e) {
            return e.hresult();
        }
    }

private:
    // The enumerator For Each walks: copies of the elements, in order.
    class Items final : public IEnumVARIANT {
    public:
        explicit Items(std::vector<vx::Variant> items) : items_(std::move(items)) {}
        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override {
            if (!ppv) return E_POINTER;
            *ppv = nullptr;
            if (!IsEqualIID(riid, IID_IUnknown) && !IsEqualIID(riid, IID_IEnumVARIANT)) return E_NOINTERFACE;
            *ppv = static_cast<IEnumVARIANT*>(this);
            AddRef();
            return S_OK;
        }
        ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }
        ULONG STDMETHODCALLTYPE Release() override {
            const LONG n = InterlockedDecrement(&refs_);
            if (n == 0) delete this;
            return static_cast<ULONG>(n);
        }
        HRESULT STDMETHODCALLTYPE Next(ULONG wanted, VARIANT* out, ULONG* fetched) override {
            ULONG n = 0;
            for (; n < wanted && next_ < items_.size(); ++n, ++next_) out[n] = vx::Variant(items_[next_]).detach();
            if (fetched) *fetched = n;
            return n == wanted ? S_OK : S_FALSE;
        }
        HRESULT STDMETHODCALLTYPE Skip(ULONG n) override {
            next_ += n;
            return next_ <= items_.size() ? S_OK : S_FALSE;
        }
        HRESULT STDMETHODCALLTYPE Reset() override {
            next_ = 0;
            return S_OK;
        }
        HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT**) override { return E_NOTIMPL; }

    private:
        LONG refs_ = 1;
        std::vector<vx::Variant> items_;
        size_t next_ = 0;
    };

    FakeDispatch() = default;
    virtual ~FakeDispatch() = default;

    LONG refs_ = 1;
    std::vector<std::pair<std::wstring, Member>> members_;
    std::vector<vx::Variant> elements_;
};

}  // namespace vxtest
