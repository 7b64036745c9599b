#include "core/dispatch/DispatchObject.h"

#include "core/runtime/Convert.h"
#include "core/runtime/Variant.h"

#include <cstring>
#include <memory>

namespace vx {

HRESULT finishInvoke(HRESULT hr, EXCEPINFO* excepInfo) noexcept {
    if (SUCCEEDED(hr)) return hr;
    const LastError& e = lastError();
    if (FAILED(e.hr) && (hr == e.hr || hr == DISP_E_EXCEPTION)) {
        if (excepInfo) {
            SysFreeString(excepInfo->bstrSource);
            SysFreeString(excepInfo->bstrDescription);
            SysFreeString(excepInfo->bstrHelpFile);
            *excepInfo = EXCEPINFO{};
            excepInfo->scode = e.hr;
            excepInfo->bstrSource = SysAllocString(e.sourceText());
            excepInfo->bstrDescription = SysAllocString(e.descriptionText());
        }
        return DISP_E_EXCEPTION;
    }
    return hr;
}

namespace {

bool omitted(const VARIANT& v) noexcept { return V_VT(&v) == VT_ERROR && V_ERROR(&v) == DISP_E_PARAMNOTFOUND; }

// A parameter's type as a call needs it: enumerations and aliases resolved to their base
// type, an interface pointer to the object reference it is (VT_DISPATCH for a dispatch or
// dual interface, with the interface), and whether the parameter is a reference.
struct TypeOf {
    VARTYPE type = VT_EMPTY;
    bool byRef = false;
    GUID object = GUID_NULL;
    ComPtr<IRecordInfo> record;
};

TypeOf describe(ITypeInfo* info, const TYPEDESC& declared) noexcept {
    TypeOf r;
    const TYPEDESC* t = &declared;
    if (t->vt == VT_PTR && t->lptdesc) {
        r.byRef = true;
        t = t->lptdesc;
    }
    // A reference to an interface pointer, or (below) an interface pointer itself.
    const bool objectRef = t->vt == VT_PTR && t->lptdesc && t->lptdesc->vt == VT_USERDEFINED;
    if (objectRef) t = t->lptdesc;
    if (t->vt != VT_USERDEFINED) {
        r.type = t->vt;
        return r;
    }
    ComPtr<ITypeInfo> ref;
    TYPEATTR* attr = nullptr;
    if (FAILED(info->GetRefTypeInfo(t->hreftype, ref.put())) || FAILED(ref->GetTypeAttr(&attr))) return TypeOf{};
    // An alias of another declared type (IPictureDisp names the Picture dispinterface)
    // stands for that type.
    for (int depth = 0; attr->typekind == TKIND_ALIAS && attr->tdescAlias.vt == VT_USERDEFINED && depth < 8; ++depth) {
        ComPtr<ITypeInfo> next;
        const HRESULT hr = ref->GetRefTypeInfo(attr->tdescAlias.hreftype, next.put());
        ref->ReleaseTypeAttr(attr);
        attr = nullptr;
        if (FAILED(hr) || FAILED(next->GetTypeAttr(&attr))) return TypeOf{};
        ref = std::move(next);
    }
    switch (attr->typekind) {
    case TKIND_ENUM:
        if (!objectRef) r.type = VT_I4;
        break;
    case TKIND_ALIAS:
        if (r.byRef && attr->tdescAlias.vt == VT_USERDEFINED) {
            // Another name of an interface (IPictureDisp): that interface, by value
            // (IPictureDisp*) or by reference (IPictureDisp**), when the name stands for one.
            TYPEDESC pointer{}, reference{};
            pointer.vt = VT_PTR;
            pointer.lptdesc = &attr->tdescAlias;
            reference.vt = VT_PTR;
            reference.lptdesc = &pointer;
            TypeOf aliased = describe(ref.get(), objectRef ? reference : pointer);
            if (aliased.type == VT_DISPATCH || aliased.type == VT_UNKNOWN) {
                r = std::move(aliased);
                break;
            }
        }
        if (!objectRef) r.type = attr->tdescAlias.vt;
        break;
    case TKIND_RECORD:
        if (!objectRef && SUCCEEDED(GetRecordInfoFromTypeInfo(ref.get(), r.record.put()))) r.type = VT_RECORD;
        break;
    case TKIND_DISPATCH:
    case TKIND_INTERFACE:
        // An interface pointer is an object passed by value; a pointer to one, by reference.
        r.byRef = objectRef;
        r.type = attr->typekind == TKIND_DISPATCH || (attr->wTypeFlags & TYPEFLAG_FDUAL) ? VT_DISPATCH : VT_UNKNOWN;
        r.object = attr->guid;
        break;
    default:
        break;
    }
    ref->ReleaseTypeAttr(attr);
    return r;
}

// The types a completion stores values of (a reference points at the value's storage).
bool storable(VARTYPE vt) noexcept {
    switch (vt) {
    case VT_I2: case VT_I4: case VT_R4: case VT_R8: case VT_CY: case VT_DATE: case VT_BSTR:
    case VT_BOOL: case VT_UI1: case VT_VARIANT: case VT_DISPATCH:
        return true;
    default:
        return false;
    }
}

// Whether an argument passed where an object is declared is Nothing or has the declared
// interface (true for any other argument: its conversion is the type info's).
bool ofInterface(const VARIANT& arg, const CallPlan::Param& p) noexcept {
    if (p.type != VT_DISPATCH && p.type != VT_UNKNOWN) return true;
    const VARIANT& d = deref(arg);
    IUnknown* object = nullptr;
    switch (V_VT(&d)) {
    case VT_DISPATCH: case VT_UNKNOWN: object = V_UNKNOWN(&d); break;
    case VT_DISPATCH | VT_BYREF: case VT_UNKNOWN | VT_BYREF: object = V_UNKNOWNREF(&d) ? *V_UNKNOWNREF(&d) : nullptr; break;
    default: return true;
    }
    if (!object) return true;
    const IID& iid = p.object != GUID_NULL ? p.object : p.type == VT_DISPATCH ? IID_IDispatch : IID_IUnknown;
    ComPtr<IUnknown> reached;
    return SUCCEEDED(object->QueryInterface(iid, reinterpret_cast<void**>(reached.put())));
}

bool sameValue(const VARIANT& a, const VARIANT& b) noexcept {
    if (V_VT(&a) != V_VT(&b)) return false;
    if (V_VT(&a) == VT_BSTR)
        return SysStringLen(V_BSTR(&a)) == SysStringLen(V_BSTR(&b)) &&
               (SysStringLen(V_BSTR(&a)) == 0 ||
                std::memcmp(V_BSTR(&a), V_BSTR(&b), SysStringLen(V_BSTR(&a)) * sizeof(OLECHAR)) == 0);
    return V_CY(&a).int64 == V_CY(&b).int64;  // the eight bytes every other stored type fits in
}

}  // namespace

VARTYPE CallPlan::Param::completable() const noexcept { return byRef && storable(type) ? type : static_cast<VARTYPE>(VT_EMPTY); }

CallPlan* CallPlan::read(ITypeInfo* info) noexcept {
    if (!info) return nullptr;
    // A dual interface's members are described by its interface part.
    ComPtr<ITypeInfo> own(info);
    TYPEATTR* attr = nullptr;
    if (FAILED(info->GetTypeAttr(&attr))) return nullptr;
    const bool dual = attr->typekind == TKIND_DISPATCH && (attr->wTypeFlags & TYPEFLAG_FDUAL);
    info->ReleaseTypeAttr(attr);
    HREFTYPE ref = 0;
    ComPtr<ITypeInfo> part;
    if (dual && SUCCEEDED(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &ref)) &&
        SUCCEEDED(info->GetRefTypeInfo(ref, part.put())))
        own = part;
    if (FAILED(own->GetTypeAttr(&attr))) return nullptr;
    const UINT functions = attr->cFuncs;
    own->ReleaseTypeAttr(attr);
    try {
        std::unique_ptr<CallPlan> plan(new CallPlan);
        for (UINT f = 0; f < functions; ++f) {
            FUNCDESC* fd = nullptr;
            if (FAILED(own->GetFuncDesc(f, &fd))) return nullptr;
            struct Release {
                ITypeInfo* info;
                FUNCDESC* fd;
                ~Release() { info->ReleaseFuncDesc(fd); }
            } release{own.get(), fd};
            Member m;
            m.id = fd->memid;
            m.kind = fd->invkind;
            m.vtableOffset = fd->oVft;
            m.callConvention = fd->callconv;
            // The parameters a caller passes (the result and a locale are not among them).
            for (SHORT i = 0; i < fd->cParams; ++i) {
                const ELEMDESC& e = fd->lprgelemdescParam[i];
                const USHORT flags = e.paramdesc.wParamFlags;
                TypeOf type = describe(own.get(), e.tdesc);
                m.records = m.records || type.type == VT_RECORD;
                if (flags & PARAMFLAG_FRETVAL) {
                    m.result.type = type.type;
                    m.result.byRef = type.byRef;
                    m.result.object = type.object;
                    m.result.record = std::move(type.record);
                    break;
                }
                if (flags & PARAMFLAG_FLCID) break;
                Param p;
                p.type = type.type;
                p.byRef = type.byRef;
                p.object = type.object;
                p.record = std::move(type.record);
                p.optional = (flags & (PARAMFLAG_FOPT | PARAMFLAG_FHASDEFAULT)) != 0;
                if ((flags & PARAMFLAG_FHASDEFAULT) && e.paramdesc.pparamdescex) {
                    p.hasDefault = true;
                    p.defaultValue = Variant::copyOf(e.paramdesc.pparamdescex->varDefaultValue);
                }
                m.params.push_back(std::move(p));
            }
            plan->members_.push_back(std::move(m));
        }
        return plan.release();
    } catch (...) {
        return nullptr;
    }
}

const CallPlan::Member* CallPlan::find(DISPID id, WORD flags) const noexcept {
    for (const Member& m : members_)
        if (m.id == id && (flags & m.kind)) return &m;
    return nullptr;
}

HRESULT CallArguments::complete(const CallPlan::Member& member, DISPPARAMS* params, DISPPARAMS** out,
                                UINT* position) noexcept {
    *out = params;
    *position = noPosition;
    // A property assignment passes its value as the named argument DISPID_PROPERTYPUT
    // (the member's last parameter). Other arguments come by position (the first ones,
    // last first at the end of rgvarg) or by name (a parameter's position, in
    // rgdispidNamedArgs, the argument at the same place of rgvarg).
    const bool assignment = member.assignment();
    const UINT count = static_cast<UINT>(member.params.size());
    if (assignment && count == 0) return DISP_E_BADPARAMCOUNT;
    const UINT callable = assignment ? count - 1 : count;
    const UINT positional = params->cArgs - params->cNamedArgs;
    if (positional > callable) return DISP_E_BADPARAMCOUNT;  // surplus: refused, never passed on
    // Where each parameter's argument is in the caller's rgvarg, if given.
    SmallVector<UINT, inlineArguments> source;
    try {
        source.assign(count, noPosition);
    } catch (...) {
        return E_OUTOFMEMORY;
    }
    bool byName = false;
    for (UINT j = 0; j < positional; ++j) source[j] = params->cArgs - 1 - j;
    for (UINT k = 0; k < params->cNamedArgs; ++k) {
        const DISPID name = params->rgdispidNamedArgs[k];
        UINT target = noPosition;
        if (name == DISPID_PROPERTYPUT && assignment)
            target = count - 1;
        else if (name >= 0 && static_cast<UINT>(name) < callable)
            target = static_cast<UINT>(name);
        if (target == noPosition || source[target] != noPosition) {
            *position = k;  // no such parameter, or one given twice
            return DISP_E_PARAMNOTFOUND;
        }
        source[target] = k;
        byName = byName || name != DISPID_PROPERTYPUT;
    }
    if (assignment && source[count - 1] == noPosition) return DISP_E_PARAMNOTOPTIONAL;
    for (UINT i = 0; i < callable; ++i)
        if (source[i] == noPosition && !member.params[i].optional)
            return byName ? DISP_E_PARAMNOTOPTIONAL : DISP_E_BADPARAMCOUNT;
    // NaN and the infinities are no whole number: refused before a conversion that would
    // make one of them 2147483647 (a count of 2^31 steps). An object of another kind where
    // an interface is declared is a type mismatch, as any other value of the wrong type.
    for (UINT i = 0; i < count; ++i) {
        if (source[i] == noPosition) continue;
        const VARIANT& arg = params->rgvarg[source[i]];
        const HRESULT refused = nonFiniteToWhole(arg, member.params[i].type) ? DISP_E_OVERFLOW
                                : !ofInterface(arg, member.params[i])     ? DISP_E_TYPEMISMATCH
                                                                          : S_OK;
        if (FAILED(refused)) {
            *position = source[i];
            return refused;
        }
    }

    // What each parameter needs: an omitted by-reference parameter with a default gets a
    // reference to the default; a host variable (a reference to a Variant) passed where a
    // typed reference is declared gets a reference to its value in that type, written back
    // after the call; a value passed where a typed reference is declared gets a reference
    // to a copy in that type, which the call may change and nobody reads back (a value
    // has no variable to write into, and the type info would try to convert it back into
    // the caller's own argument, failing the finished call over a value such as NaN).
    enum Need { Pass, Default, Typed, Copied };
    auto needOf = [&](UINT i) {
        const CallPlan::Param& p = member.params[i];
        const UINT at = source[i];
        const VARTYPE type = p.completable();
        if (type == VT_EMPTY) return Pass;
        if (at == noPosition) return p.hasDefault ? Default : Pass;
        // A missing-argument marker passed for a Variant the member may write into is
        // passed as a copy of the marker: nothing the member writes is converted back.
        if (omitted(params->rgvarg[at])) return p.hasDefault ? Default : type == VT_VARIANT ? Copied : Pass;
        const VARIANT& arg = params->rgvarg[at];
        if (type == VT_VARIANT) return V_VT(&arg) & VT_BYREF ? Pass : Copied;
        if (V_VT(&arg) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(&arg)) return Typed;
        if (!(V_VT(&arg) & VT_BYREF) && V_VT(&arg) != type) return Copied;
        return Pass;
    };
    // The arguments to pass by position: up to the last one given or needing completion;
    // an assignment's value goes last, as the one named argument.
    UINT total = 0;
    for (UINT i = 0; i < callable; ++i)
        if (source[i] != noPosition || needOf(i) != Pass) total = i + 1;
    const UINT named = assignment ? 1 : 0;

    try {
        caller_ = params;
        args_.assign(total + named, VARIANT{});
        origin_.assign(total + named, noPosition);
        values_.reserve(total + named);  // the references below point into it: it must not grow
        writeBacks_.reserve(total + named);
        for (UINT i = 0; i < total + named; ++i) {
            // The named value first, then the positional arguments last to first.
            const bool assigned = assignment && i == total;
            const UINT param = assigned ? count - 1 : i;
            const UINT slot = assigned ? 0 : named + total - 1 - i;
            VARIANT& arg = args_[slot];
            const UINT at = source[param];
            const Need need = needOf(param);
            if (need == Pass) {
                if (at != noPosition) {
                    // The caller's own argument, lent to the call (see finish).
                    arg = params->rgvarg[at];
                    origin_[slot] = at;
                } else {
                    V_VT(&arg) = VT_ERROR;  // omitted: the type info supplies what it would
                    V_ERROR(&arg) = DISP_E_PARAMNOTFOUND;
                }
                continue;
            }
            const CallPlan::Param& p = member.params[param];
            const VARTYPE type = p.completable();
            const VARIANT& from = need == Default ? *p.defaultValue : deref(params->rgvarg[at]);
            Variant value;
            if (type == VT_VARIANT) {
                value = Variant::copyOf(from);
            } else if (type == VT_DISPATCH && V_VT(&from) == VT_EMPTY) {
                value = Variant::fromDispatch(nullptr);  // a variable never set stands for Nothing
            } else {
                const HRESULT hr = VariantChangeType(value.put(), const_cast<VARIANT*>(&from), 0, type);
                if (FAILED(hr)) {
                    *position = at;
                    return hr == DISP_E_OVERFLOW ? hr : DISP_E_TYPEMISMATCH;
                }
            }
            if (need == Typed) writeBacks_.push_back({V_VARIANTREF(&params->rgvarg[at]), values_.size(), value});
            values_.push_back(std::move(value));
            VARIANT& stored = *values_.back().get();
            if (type == VT_VARIANT) {
                V_VT(&arg) = VT_BYREF | VT_VARIANT;
                V_VARIANTREF(&arg) = &stored;
            } else {
                V_VT(&arg) = static_cast<VARTYPE>(VT_BYREF | type);
                V_BYREF(&arg) = &V_I4(&stored);  // the value's storage, whatever its type
            }
        }
    } catch (...) {
        writeBacks_.clear();
        origin_.clear();
        return E_OUTOFMEMORY;
    }
    completed_ = DISPPARAMS{args_.data(), assignment ? &putId_ : nullptr, total + named, named};
    *out = &completed_;
    return S_OK;
}

void CallArguments::finish(UINT position, UINT* argErr) noexcept {
    // The caller's arguments, as the call left them: the type info may have changed one
    // in place (converted it, or written an [in, out] parameter back into it), and the
    // caller owns what is there now.
    for (size_t slot = 0; slot < origin_.size(); ++slot)
        if (origin_[slot] != noPosition) caller_->rgvarg[origin_[slot]] = args_[slot];
    // The type info counts positions in the completed arguments.
    if (argErr && position != noPosition && position < origin_.size() && origin_[position] != noPosition)
        *argErr = origin_[position];
    origin_.clear();
    // A member that changed a typed reference changed the host's variable.
    for (WriteBack& w : writeBacks_) {
        const VARIANT& now = *values_[w.value].get();
        if (sameValue(now, *w.before)) continue;
        try {
            writeBack(*w.variable, now);
        } catch (...) {
            // a value the variable cannot take leaves it as it was
        }
    }
    writeBacks_.clear();
}

namespace {

// The record a record argument holds (by value, by reference, or in a host's variable),
// if it is one of the declared kind; null otherwise.
void* recordOf(const VARIANT& arg, IRecordInfo* declared) noexcept {
    const VARIANT& d = deref(arg);
    if ((V_VT(&d) & ~VT_BYREF) != VT_RECORD || !V_RECORD(&d) || !V_RECORDINFO(&d)) return nullptr;
    GUID given{}, wanted{};
    if (FAILED(V_RECORDINFO(&d)->GetGuid(&given)) || FAILED(declared->GetGuid(&wanted)) || given != wanted)
        return nullptr;
    return V_RECORD(&d);  // by value and by reference alike, the record's own storage
}

// Calls a member through its slot in the interface, as a type info's Invoke would, for
// the members that take or return records. args are the completed arguments (see
// CallArguments), by position last first, an assignment's value first.
HRESULT callDirect(const CallPlan::Member& member, IUnknown* object, const DISPPARAMS& args, VARIANT* result,
                   EXCEPINFO* excepInfo, UINT* position) noexcept {
    const UINT count = static_cast<UINT>(member.params.size());
    const UINT named = member.assignment() ? 1 : 0;
    const UINT positional = args.cArgs - named;
    try {
        const bool hasResult = member.result.type != VT_EMPTY;
        const UINT total = count + (hasResult ? 1 : 0);
        constexpr std::size_t room = CallArguments::inlineArguments + 1;  // the arguments and the result
        SmallVector<Variant, room> values(total);  // what is passed, by value or as the storage a pointer points to
        SmallVector<VARIANT, room> passed(total);
        SmallVector<VARIANTARG*, room> pointers(total);
        SmallVector<VARTYPE, room> types(total);
        auto byPointer = [&](UINT i, void* p) {
            V_VT(&passed[i]) = VT_BYREF | VT_I4;  // a pointer, whatever it points to
            V_BYREF(&passed[i]) = p;
            types[i] = V_VT(&passed[i]);
        };
        for (UINT i = 0; i < count; ++i) {
            const CallPlan::Param& p = member.params[i];
            const UINT at = named && i == count - 1 ? 0 : i < positional ? args.cArgs - 1 - i : CallArguments::noPosition;
            VARIANT* arg = at == CallArguments::noPosition || omitted(args.rgvarg[at]) ? nullptr : &args.rgvarg[at];
            pointers[i] = &passed[i];
            if (p.type == VT_RECORD) {
                void* record = arg && p.byRef ? recordOf(*arg, p.record.get()) : nullptr;
                if (!record) {
                    *position = at;
                    return arg ? DISP_E_TYPEMISMATCH : DISP_E_PARAMNOTOPTIONAL;
                }
                byPointer(i, record);
                continue;
            }
            if (!arg) {
                // Omitted: the default, or the missing-argument marker for an optional Variant.
                if (p.hasDefault)
                    values[i] = Variant::copyOf(*p.defaultValue);
                else if (p.optional && p.type == VT_VARIANT)
                    values[i] = Variant::missing();
                else
                    return DISP_E_PARAMNOTOPTIONAL;
            } else if (p.byRef && V_VT(arg) == (VT_BYREF | p.type)) {
                byPointer(i, V_BYREF(arg));  // the caller's own storage
                continue;
            } else if (p.byRef && p.type == VT_VARIANT && !(V_VT(arg) & VT_BYREF)) {
                byPointer(i, arg);  // a value written into in place, as a type info does
                continue;
            } else {
                values[i] = Variant::copyOf(*arg);
            }
            if (p.type != VT_VARIANT && values[i].type() != p.type) {
                Variant converted;
                const HRESULT hr = VariantChangeType(converted.put(), values[i].get(), 0, p.type);
                if (FAILED(hr)) {
                    *position = at;
                    return hr == DISP_E_OVERFLOW ? hr : DISP_E_TYPEMISMATCH;
                }
                values[i] = std::move(converted);
            }
            if (p.object != GUID_NULL && V_UNKNOWN(values[i].get())) {
                // The declared interface of the object (checked before the call).
                IUnknown* declared = nullptr;
                if (FAILED(V_UNKNOWN(values[i].get())->QueryInterface(p.object, reinterpret_cast<void**>(&declared)))) {
                    *position = at;
                    return DISP_E_TYPEMISMATCH;
                }
                V_UNKNOWN(values[i].put()) = declared;
                V_VT(values[i].get()) = p.type;
            }
            if (p.byRef) {
                byPointer(i, p.type == VT_VARIANT ? values[i].get() : static_cast<void*>(&V_I4(values[i].get())));
            } else {
                passed[i] = *values[i].get();  // lent: values[i] still owns it
                types[i] = p.type;
            }
        }
        // The result's storage.
        ComPtr<IRecordInfo> resultRecord = member.result.record;
        void* record = nullptr;
        if (hasResult) {
            pointers[count] = &passed[count];
            if (member.result.type == VT_RECORD) {
                record = resultRecord->RecordCreate();
                if (!record) return E_OUTOFMEMORY;
                byPointer(count, record);
            } else {
                V_VT(values[count].get()) = member.result.type;  // zeroed: the member's out parameter
                byPointer(count, member.result.type == VT_VARIANT ? values[count].get()
                                                                  : static_cast<void*>(&V_I4(values[count].get())));
            }
        }
        VARIANT returned;
        VariantInit(&returned);
        HRESULT hr = DispCallFunc(object, static_cast<ULONG_PTR>(member.vtableOffset), member.callConvention, VT_ERROR,
                                  total, types.data(), pointers.data(), &returned);
        if (SUCCEEDED(hr)) hr = V_ERROR(&returned);
        if (FAILED(hr)) {
            if (record) resultRecord->RecordDestroy(record);
            if (hr != lastError().hr && excepInfo) {
                // A failure the member did not report through its boundary, as a type info passes it on.
                *excepInfo = EXCEPINFO{};
                excepInfo->scode = hr;
                return DISP_E_EXCEPTION;
            }
            return hr;
        }
        if (!result) {
            if (record) resultRecord->RecordDestroy(record);
        } else if (record) {
            V_VT(result) = VT_RECORD;
            V_RECORD(result) = record;
            V_RECORDINFO(result) = resultRecord.detach();
        } else if (hasResult) {
            values[count].detachTo(result);
        }
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

}  // namespace

HRESULT invokeMember(ITypeInfo* info, const CallPlan* plan, IUnknown* object, DISPID id, WORD flags,
                     DISPPARAMS* params, VARIANT* result, EXCEPINFO* excepInfo, UINT* argErr) noexcept {
    if (!info || !plan) return E_UNEXPECTED;
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    if (!params) params = &none;
    if ((params->cArgs && !params->rgvarg) || (params->cNamedArgs && !params->rgdispidNamedArgs) ||
        params->cNamedArgs > params->cArgs)
        return E_INVALIDARG;
    const CallPlan::Member* member = plan->find(id, flags);
    if (!member) return DISP_E_MEMBERNOTFOUND;
    CallArguments args;
    DISPPARAMS* pass = nullptr;
    UINT position = CallArguments::noPosition;
    HRESULT hr = args.complete(*member, params, &pass, &position);
    if (FAILED(hr)) {
        if (argErr && position != CallArguments::noPosition) *argErr = position;
        return hr;
    }
    // The result is made in storage of our own and handed over only when the call
    // succeeds: the host's result is an out parameter (what it held is not ours to free),
    // a failed call hands back nothing (not even the empty text a type info makes of a
    // null one), and a host's result storage is never touched by a failure (a script
    // engine may pass storage it still reads).
    VARIANT made;
    VariantInit(&made);
    VARIANT* const into = result ? &made : nullptr;
    hr = member->records ? callDirect(*member, object, *pass, into, excepInfo, &position)
                         : info->Invoke(object, id, flags, pass, into, excepInfo, &position);
    args.finish(position, argErr);
    if (FAILED(hr))
        VariantClear(&made);
    else if (result)
        *result = made;  // moved: the caller owns it now
    return finishInvoke(hr, excepInfo);
}

}  // namespace vx
