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
#include "core/runtime/SmallVector.h"
#include "core/runtime/Module.h"

#include "core/runtime/Platform.h"

#include <new>
#include <utility>
#include <vector>

namespace vx {

// Completes a dispatch call: an error reported through the boundary reaches the host as
// DISP_E_EXCEPTION with its code and text in the EXCEPINFO.
HRESULT finishInvoke(HRESULT hr, EXCEPINFO* excepInfo) noexcept;

// The members of an interface as a call needs them, read once from its type info.
class CallPlan {
public:
    // The plan of an interface (the interface part of a dual one); null when its type
    // info cannot be read.
    static CallPlan* read(ITypeInfo* interfaceInfo) noexcept;

    struct Param {
        VARTYPE type = VT_EMPTY;  // enumerations and aliases resolved; a reference's: what it points to
        bool byRef = false;
        bool optional = false;    // may be left out (optional, or with a default)
        bool hasDefault = false;
        Variant defaultValue;
        GUID object = GUID_NULL;  // an object's declared interface (type VT_DISPATCH or VT_UNKNOWN)
        ComPtr<IRecordInfo> record;  // a record's description (type VT_RECORD)
        // The type a completion stores a by-reference value of, or VT_EMPTY.
        VARTYPE completable() const noexcept;
    };
    struct Member {
        DISPID id = DISPID_UNKNOWN;
        INVOKEKIND kind = INVOKE_FUNC;
        std::vector<Param> params;  // the parameters a caller passes, in order
        Param result;               // the [out, retval] parameter, if any (type VT_EMPTY if not)
        SHORT vtableOffset = 0;
        CALLCONV callConvention = CC_STDCALL;
        // Takes or returns a record: called by the dispatch base itself (a type info's
        // Invoke may have no records: Wine's has none).
        bool records = false;
        // A property assignment: the last parameter is the value, passed as the named
        // argument DISPID_PROPERTYPUT.
        bool assignment() const noexcept { return kind == INVOKE_PROPERTYPUT || kind == INVOKE_PROPERTYPUTREF; }
    };
    // The member a call by id with these dispatch flags reaches (the first in interface
    // order whose kind the flags include), or null.
    const Member* find(DISPID id, WORD flags) const noexcept;

private:
    CallPlan() = default;
    std::vector<Member> members_;
};

// The arguments of a call, checked and completed where a type info's Invoke falls short
// of what hosts expect: a call passes no more arguments than the member takes (a type
// info would pass the surplus on to the object a property returns); an omitted
// by-reference parameter that declares a default gets that default as a reference to a
// value of the parameter's type (a type info may pass the default by value where the
// member expects a pointer), whether the call names its arguments or not; and a host variable passed to a typed by-reference
// parameter (scripts pass every variable as a reference to a Variant) gets a reference
// to its value in that type, written back to the variable when the member changes it.
// Arguments by name are put in their parameters' places. Everything else is left to the
// type info. The caller's own arguments are lent to the call and handed back after it,
// as the call left them.
class CallArguments {
public:
    CallArguments() = default;
    CallArguments(const CallArguments&) = delete;
    CallArguments& operator=(const CallArguments&) = delete;

    static constexpr UINT noPosition = 0xFFFFFFFFu;
    // Room for the arguments of any member of the library without a heap allocation.
    static constexpr std::size_t inlineArguments = 12;
    // Checks and completes params for member. On success *out holds the parameters to
    // pass (they live as long as this); a failure is the HRESULT to hand to the host,
    // with *position the caller's argument at fault (or noPosition).
    HRESULT complete(const CallPlan::Member& member, DISPPARAMS* params, DISPPARAMS** out, UINT* position) noexcept;
    // After the call: hands the lent arguments back, writes changed typed references back
    // to the host's variables, and turns an argument position the type info reported (in
    // the completed arguments) into the caller's own, when there is one.
    void finish(UINT position, UINT* argErr) noexcept;

private:
    struct WriteBack {
        VARIANT* variable;  // the host's variable
        size_t value;       // its value in the parameter's type, in values_
        Variant before;
    };
    SmallVector<VARIANT, inlineArguments> args_;
    SmallVector<UINT, inlineArguments> origin_;  // for each of args_, the caller's argument it is, or noPosition
    SmallVector<Variant, inlineArguments> values_;
    SmallVector<WriteBack, inlineArguments> writeBacks_;
    DISPPARAMS* caller_ = nullptr;
    DISPID putId_ = DISPID_PROPERTYPUT;
    DISPPARAMS completed_{};
};

// IDispatch::Invoke of an object whose interface the type info and plan describe.
HRESULT invokeMember(ITypeInfo* info, const CallPlan* plan, IUnknown* object, DISPID id, WORD flags,
                     DISPPARAMS* params, VARIANT* result, EXCEPINFO* excepInfo, UINT* argErr) noexcept;

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
        clearLastError();
        ComPtr<Derived> keepAlive(static_cast<Derived*>(this));  // a member may drop the host's last reference
        return invokeMember(interfaceInfo(), callPlan(), static_cast<Interface*>(this), id, flags, params, result,
                            excepInfo, argErr);
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
    // Read on first use and kept for the module's life (a failure is not kept).
    static ITypeInfo* interfaceInfo() noexcept {
        static ITypeInfo* volatile info = nullptr;
        return keptOnceMade(info, [] { return typeInfoOf(__uuidof(Interface)); }, [](ITypeInfo* ti) { ti->Release(); });
    }
    static const CallPlan* callPlan() noexcept {
        static CallPlan* volatile plan = nullptr;
        return keptOnceMade(plan, [] { return CallPlan::read(interfaceInfo()); }, [](CallPlan* p) { delete p; });
    }

    volatile LONG refs_ = 1;
};

}  // namespace vx
