#pragma once
// The base of every class of the library: IUnknown, IDispatch through the type info of
// the embedded type library (so argument coercion, defaults, missing optional arguments
// and by-reference arguments behave as a late-bound host expects), ISupportErrorInfo and
// IProvideClassInfo, and the live-object count behind DllCanUnloadNow.
//
//   class ListCollection : public DispatchObject<ListCollection, _Ds_ListCollection> {
//   public:
//       static const CLSID& classId() { return CLSID_Ds_ListCollection; }
//       HRESULT STDMETHODCALLTYPE Clear() override { return guard([&] { ... }); }
//   };
#include "core/dispatch/ByRefArguments.h"
#include "core/dispatch/ErrorBoundary.h"
#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/ComPtr.h"
#include "core/server/Module.h"

#include "core/runtime/Platform.h"

#include <new>
#include <utility>

namespace vx {

// Completes a dispatch call: an error reported through the boundary reaches the host as
// DISP_E_EXCEPTION with its code and text in the EXCEPINFO.
HRESULT finishInvoke(HRESULT hr, EXCEPINFO* excepInfo) noexcept;

template <class Derived, class Interface>
class DispatchObject : public Interface, public ISupportErrorInfo, public IProvideClassInfo {
public:
    // A new object, held by the returned reference.
    template <class... Args>
    static ComPtr<Derived> create(Args&&... args) {
        Derived* object = new Derived(std::forward<Args>(args)...);
        return ComPtr<Derived>::adopt(object);
    }

    // The interface the host sees (a new reference), for out parameters.
    Interface* newReference() noexcept {
        this->AddRef();
        return static_cast<Interface*>(this);
    }

    // IUnknown
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override {
        if (!ppv) return E_POINTER;
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch) || IsEqualIID(riid, __uuidof(Interface)))
            *ppv = static_cast<Interface*>(this);
        else if (IsEqualIID(riid, IID_ISupportErrorInfo))
            *ppv = static_cast<ISupportErrorInfo*>(this);
        else if (IsEqualIID(riid, IID_IProvideClassInfo))
            *ppv = static_cast<IProvideClassInfo*>(this);
        else {
            *ppv = nullptr;
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }
    ULONG STDMETHODCALLTYPE Release() override {
        LONG n = InterlockedDecrement(&refs_);
        if (n == 0) delete static_cast<Derived*>(this);
        return static_cast<ULONG>(n);
    }

    // IDispatch
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = interfaceInfo() ? 1 : 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        if (!info) return E_POINTER;
        *info = nullptr;
        if (index != 0) return DISP_E_BADINDEX;
        ITypeInfo* ti = interfaceInfo();
        if (!ti) return E_UNEXPECTED;
        ti->AddRef();
        *info = ti;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        if (!IsEqualIID(riid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
        ITypeInfo* ti = interfaceInfo();
        if (!ti) return E_UNEXPECTED;
        return DispGetIDsOfNames(ti, names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO* excepInfo, UINT* argErr) override {
        if (!IsEqualIID(riid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
        ITypeInfo* ti = interfaceInfo();
        if (!ti) return E_UNEXPECTED;
        clearLastError();
        ComPtr<Derived> keepAlive(static_cast<Derived*>(this));  // a member may drop the host's last reference
        // A host's variable passed to a typed by-reference parameter gets a stand-in.
        ByRefArguments byRef(ti, id, flags, params);
        HRESULT hr = ti->Invoke(static_cast<Interface*>(this), id, flags, byRef.params(), result, excepInfo, argErr);
        byRef.writeBack();
        return finishInvoke(hr, excepInfo);
    }

    // ISupportErrorInfo
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID riid) override {
        return IsEqualIID(riid, __uuidof(Interface)) ? S_OK : S_FALSE;
    }

    // IProvideClassInfo
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override {
        if (!info) return E_POINTER;
        *info = typeInfoOf(Derived::classId());
        return *info ? S_OK : TYPE_E_ELEMENTNOTFOUND;
    }

protected:
    DispatchObject() noexcept { module::objectCreated(); }
    virtual ~DispatchObject() { module::objectDestroyed(); }
    DispatchObject(const DispatchObject&) = delete;
    DispatchObject& operator=(const DispatchObject&) = delete;

    // Runs a member's body behind the error boundary.
    template <class F>
    static HRESULT guard(F&& body) noexcept {
        return vx::guard(__uuidof(Interface), std::forward<F>(body));
    }

private:
    static ITypeInfo* interfaceInfo() noexcept {
        static ITypeInfo* const info = typeInfoOf(__uuidof(Interface));  // kept for the module's life
        return info;
    }

    volatile LONG refs_ = 1;
};

}  // namespace vx
