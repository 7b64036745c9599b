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
#include "core/dispatch/Deliver.h"
#include "core/dispatch/ErrorBoundary.h"
#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/ComPtr.h"
#include "core/runtime/Variant.h"
#include "core/runtime/Module.h"

#include "core/runtime/Platform.h"

#include <new>
#include <utility>
#include <vector>

namespace vx {

// Completes a dispatch call: an error reported through the boundary reaches the host as
// DISP_E_EXCEPTION with its code and text in the EXCEPINFO.
HRESULT finishInvoke(HRESULT hr, EXCEPINFO* excepInfo) noexcept;

// The by-reference parameters of an interface's members, read once from its type info:
// what CallArguments needs to know.
class CallPlan {
public:
    explicit CallPlan(ITypeInfo* interfaceInfo) noexcept;

    struct Param {
        VARTYPE pointee = VT_EMPTY;  // a by-reference parameter's type; VT_EMPTY for the others
        bool hasDefault = false;
        Variant defaultValue;
    };
    struct Member {
        DISPID id;
        INVOKEKIND kind;
        std::vector<Param> params;  // the parameters a caller passes, in order
    };
    // The member called by id with these dispatch flags, if it has by-reference parameters.
    const Member* find(DISPID id, WORD flags) const noexcept;

private:
    std::vector<Member> members_;
};

// The arguments of a call, completed where a type info's Invoke falls short
// of what hosts expect: an omitted by-reference parameter that declares a default gets
// that default as a reference to a value of the parameter's type (a type info may pass the
// default by value where the member expects a pointer), and a host variable passed to a
// typed by-reference parameter (scripts pass every variable as a reference to a Variant)
// gets a reference to its value in that type, written back to the variable when the
// member changes it. Everything else is left to the type info.
class CallArguments {
public:
    CallArguments() = default;
    CallArguments(const CallArguments&) = delete;
    CallArguments& operator=(const CallArguments&) = delete;

    // The parameters to pass: params itself, or a completed copy that lives as long as this.
    DISPPARAMS* complete(const CallPlan& plan, DISPID id, WORD flags, DISPPARAMS* params) noexcept;
    // After the call: writes changed typed references back to the host's variables, and
    // hands an argument position the type info reported (if it did) to the caller as the
    // caller's own.
    static constexpr UINT noPosition = 0xFFFFFFFFu;
    void finish(UINT position, UINT* argErr) noexcept;

private:
    struct WriteBack {
        VARIANT* variable;  // the host's variable
        size_t value;       // its value in the parameter's type, in values_
        Variant before;
    };
    std::vector<VARIANT> args_;
    std::vector<Variant> values_;
    std::vector<WriteBack> writeBacks_;
    DISPPARAMS completed_{};
    UINT added_ = 0;  // positional arguments added for omitted ones
    UINT named_ = 0;  // 1 for a property assignment's value
};

template <class Derived, class Interface>
class DispatchObject : public Interface, public ISupportErrorInfo, public IProvideClassInfo {
public:
    using DefaultInterface = Interface;

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
        CallArguments args;
        UINT position = CallArguments::noPosition;
        HRESULT hr = ti->Invoke(static_cast<Interface*>(this), id, flags, args.complete(callPlan(), id, flags, params),
                                result, excepInfo, &position);
        args.finish(position, argErr);
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

    // Runs a member's body behind the error boundary and hands what it returns to the
    // out parameter (see Deliver.h): the one shape of a member with a result.
    template <class T, class F>
    static HRESULT deliver(T* out, F&& body) noexcept {
        return vx::deliver(__uuidof(Interface), out, std::forward<F>(body));
    }
    template <class T, class F>
    static HRESULT deliver(T* out, T neutral, F&& body) noexcept {
        return vx::deliver(__uuidof(Interface), out, neutral, std::forward<F>(body));
    }

    // Accessors of properties that are plain fields.
    template <class T>
    static HRESULT giveField(const T& field, T* value) noexcept {
        return deliver(value, [&] { return field; });
    }
    static HRESULT giveText(std::wstring_view text, BSTR* value) noexcept {
        return deliver(value, [&] { return text; });
    }
    template <class Text>
    static HRESULT takeText(Text& field, BSTR value) noexcept {
        return guard([&] { field = Text(viewOf(value)); });
    }

private:
    static ITypeInfo* interfaceInfo() noexcept {
        static ITypeInfo* const info = typeInfoOf(__uuidof(Interface));  // kept for the module's life
        return info;
    }
    static const CallPlan& callPlan() noexcept {
        static const CallPlan plan(interfaceInfo());
        return plan;
    }

    volatile LONG refs_ = 1;
};

}  // namespace vx
