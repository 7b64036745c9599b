// The sweep: every member of every class of the roster, read from the type library,
// called through IDispatch::Invoke with what a careless or hostile late-bound host may
// pass. It passes when nothing crashes or hangs, every failure is a runtime error
// (0x800A0000 + n) or one of the dispatch errors listed in allowedDispatchErrors, a
// failed call hands back no result, and every object is released at the end.
//
// Safety: the sweep must not harm the machine, the test prefix or other tests.
//  - The services a member could really wait on or act with go through their seams
//    (Services.h): the End key is held (window waits return), the clock is fixed and a
//    set is only counted, the session never ends, no process starts, no message box
//    shows, no object is bound by name.
//  - The registry's roots are redirected to a scratch key for the sweep (the registry
//    class writes), and the current folder is a new empty one.
//  - Texts come from a fixed palette that names no existing key, file or window. A
//    parameter that takes a window (its name holds "hwnd" or "handl") never gets a value
//    that names one: -1 (the desktop as a path, every top-level window as a handle),
//    -2, -3, 0xFFFF.
//  - Finite numbers are at most 1 in size or beyond a Long, so a count of yields is at
//    most 1000 or refused.
//  - Keyboard and mouse input reach the desktop: the CTest entry holds the desktop lock,
//    and keys left down, the buttons and the cursor are put back at the end.
// A global or creatable class is swept as soon as it is in the roster; a dependent one
// needs its line in producers() below: the member that hands it out.
#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/Convert.h"
#include "core/runtime/MessageLoop.h"
#include "core/runtime/SafeArray.h"
#include "core/runtime/Services.h"
#include "core/server/ClassFactory.h"
#include "core/runtime/Module.h"
#include "core/server/Roster.h"
#include "desktop/Mixer.h"
#include "network/NetworkService.h"
#include "printing/Spooler.h"

#include "FileTestSupport.h"
#include "TestSupport.h"

#include <optional>
#include "Vx_Main.h"

#include <cmath>
#include <cstdio>
#include <cwctype>
#include <functional>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <vector>

using namespace vx;

namespace {

// ---- what the type library says ----

struct ParamInfo {
    std::wstring name;
    VARTYPE type = VT_EMPTY;  // enumerations as VT_I4, interfaces as VT_DISPATCH
    bool byRef = false;
    bool optional = false;
    bool window = false;           // takes a window: a handle or a window path
    std::vector<LONG> enumValues;  // an enumeration's values
};

struct MemberInfo {
    std::wstring name;
    DISPID id = 0;
    INVOKEKIND kind = INVOKE_FUNC;
    std::vector<ParamInfo> params;
    bool assignment() const { return kind == INVOKE_PROPERTYPUT || kind == INVOKE_PROPERTYPUTREF; }
    WORD flags() const { return static_cast<WORD>(kind); }
};

struct ClassInfo {
    std::wstring name;
    const ClassEntry* entry = nullptr;
    std::vector<MemberInfo> members;
};

bool namesAWindow(const std::wstring& name) {
    std::wstring lower;
    for (wchar_t c : name) lower += static_cast<wchar_t>(std::towlower(c));
    return lower.find(L"hwnd") != std::wstring::npos || lower.find(L"handl") != std::wstring::npos;
}

void describe(ITypeInfo* ti, const TYPEDESC& declared, ParamInfo& p) {
    const TYPEDESC* t = &declared;
    if (t->vt == VT_PTR) {
        p.byRef = true;
        t = t->lptdesc;
    }
    if (t->vt == VT_PTR) {  // a reference to an interface pointer
        p.type = VT_DISPATCH;
        return;
    }
    if (t->vt != VT_USERDEFINED) {
        p.type = t->vt;
        return;
    }
    ComPtr<ITypeInfo> ref;
    TYPEATTR* attr = nullptr;
    if (FAILED(ti->GetRefTypeInfo(t->hreftype, ref.put())) || FAILED(ref->GetTypeAttr(&attr))) return;
    switch (attr->typekind) {
    case TKIND_ENUM:
        p.type = VT_I4;
        for (UINT i = 0; i < attr->cVars; ++i) {
            VARDESC* vd = nullptr;
            if (FAILED(ref->GetVarDesc(i, &vd))) continue;
            p.enumValues.push_back(toInt32(*vd->lpvarValue));
            ref->ReleaseVarDesc(vd);
        }
        break;
    case TKIND_RECORD: p.type = VT_RECORD; break;
    case TKIND_ALIAS: p.type = attr->tdescAlias.vt; break;
    default:
        p.type = VT_DISPATCH;  // an interface pointer: an object by value
        p.byRef = false;
        break;
    }
    ref->ReleaseTypeAttr(attr);
}

ClassInfo readClass(const ClassEntry& entry) {
    ClassInfo c;
    c.name = className(entry);
    c.entry = &entry;
    ComPtr<ITypeInfo> coclass = ComPtr<ITypeInfo>::adopt(typeInfoOf(entry.classId())), dispatch, own;
    HREFTYPE href = 0;
    if (!coclass || FAILED(coclass->GetRefTypeOfImplType(0, &href)) ||
        FAILED(coclass->GetRefTypeInfo(href, dispatch.put())))
        return c;
    // The interface part of the dual interface: the class's own members.
    own = dispatch;
    if (SUCCEEDED(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &href))) dispatch->GetRefTypeInfo(href, own.put());
    TYPEATTR* attr = nullptr;
    own->GetTypeAttr(&attr);
    const UINT functions = attr->cFuncs;
    own->ReleaseTypeAttr(attr);
    for (UINT f = 0; f < functions; ++f) {
        FUNCDESC* fd = nullptr;
        if (FAILED(own->GetFuncDesc(f, &fd))) continue;
        MemberInfo m;
        m.id = fd->memid;
        m.kind = fd->invkind;
        std::vector<BSTR> names(static_cast<size_t>(fd->cParams) + 1);
        UINT got = 0;
        own->GetNames(fd->memid, names.data(), static_cast<UINT>(names.size()), &got);
        m.name = got ? names[0] : L"";
        for (SHORT i = 0; i < fd->cParams; ++i) {
            const ELEMDESC& e = fd->lprgelemdescParam[i];
            if (e.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) break;
            ParamInfo p;
            p.name = static_cast<UINT>(i) + 1 < got ? names[static_cast<size_t>(i) + 1] : L"value";
            p.optional = (e.paramdesc.wParamFlags & (PARAMFLAG_FOPT | PARAMFLAG_FHASDEFAULT)) != 0;
            describe(own.get(), e.tdesc, p);
            // A property's value takes a window when the property does (MyHwndWin).
            p.window = namesAWindow(p.name) || (m.assignment() && i == fd->cParams - 1 && namesAWindow(m.name));
            m.params.push_back(std::move(p));
        }
        for (BSTR n : names) SysFreeString(n);
        own->ReleaseFuncDesc(fd);
        c.members.push_back(std::move(m));
    }
    return c;
}

// ---- the values a host may pass ----

struct Sample {
    std::wstring name;
    Variant value;
};

Variant typed(VARTYPE vt) {
    Variant v;
    V_VT(v.get()) = vt;
    return v;
}

Variant array2D() {
    SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 1}};
    SAFEARRAY* sa = SafeArrayCreate(VT_VARIANT, 2, bounds);
    LONG at[2] = {1, 2};
    SafeArrayPutElement(sa, at, const_cast<VARIANT*>(Variant::fromText(L"x").get()));
    Variant v;
    V_VT(v.get()) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(v.get()) = sa;
    return v;
}

Variant textArray() {
    SAFEARRAY* sa = SafeArrayCreateVector(VT_BSTR, 0, 2);
    LONG i = 1;
    Bstr b(L"b");
    SafeArrayPutElement(sa, &i, b.get());
    Variant v;
    V_VT(v.get()) = VT_ARRAY | VT_BSTR;
    V_ARRAY(v.get()) = sa;
    return v;
}

// An object that is no automation object: IUnknown alone.
class PlainObject : public IUnknown {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override {
        if (!ppv) return E_POINTER;
        *ppv = IsEqualIID(riid, IID_IUnknown) ? this : nullptr;
        if (!*ppv) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++refs_; }
    ULONG STDMETHODCALLTYPE Release() override { return --refs_; }  // lives as long as the sweep

private:
    ULONG refs_ = 1;
};

// Texts that name nothing that exists: no window title or class, no registry key, no
// file; and none of "-1", "-2", "-3", which name the desktop, the taskbar, the start menu.
const wchar_t kNeutralText[] = L"VXSWEEP";  // upper-case letters only, should a member type it

std::vector<Sample> palette(IDispatch* self, IDispatch* other, IUnknown* plain) {
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    std::vector<Sample> p;
    auto add = [&](const wchar_t* name, Variant v) { p.push_back({name, std::move(v)}); };
    add(L"Empty", Variant());
    add(L"Null", Variant::null());
    add(L"missing", Variant::missing());
    Variant error = typed(VT_ERROR);
    V_ERROR(error.get()) = E_FAIL;
    add(L"an Error value", std::move(error));
    add(L"Integer 0", Variant::fromShort(0));
    add(L"Long 1", Variant::fromLong(1));
    add(L"Integer -1", Variant::fromShort(-1));
    add(L"Double 0.5", Variant::fromDouble(0.5));
    add(L"Long -2147483648", Variant::fromLong(INT32_MIN));
    add(L"Double 2147483648", Variant::fromDouble(2147483648.0));
    add(L"Double 1e300", Variant::fromDouble(1e300));
    add(L"Double -1e300", Variant::fromDouble(-1e300));
    add(L"NaN", Variant::fromDouble(nan));
    add(L"infinity", Variant::fromDouble(inf));
    add(L"-infinity", Variant::fromDouble(-inf));
    Variant single = typed(VT_R4);
    V_R4(single.get()) = std::numeric_limits<float>::quiet_NaN();
    add(L"Single NaN", std::move(single));
    Variant currency = typed(VT_CY);
    V_CY(currency.get()).int64 = INT64_MAX;
    add(L"Currency max", std::move(currency));
    Variant big = typed(VT_I8);
    V_I8(big.get()) = 5000000000LL;
    add(L"LongLong 5e9", std::move(big));
    Variant decimal = typed(VT_DECIMAL);
    VarDecFromR8(1e20, &V_DECIMAL(decimal.get()));
    V_VT(decimal.get()) = VT_DECIMAL;
    add(L"Decimal 1e20", std::move(decimal));
    add(L"Date 0100-01-01", Variant::fromDate(-657434.0));
    add(L"Date NaN", Variant::fromDate(nan));
    add(L"True", Variant::fromBool(true));
    add(L"False", Variant::fromBool(false));
    Variant byte = typed(VT_UI1);
    V_UI1(byte.get()) = 1;
    add(L"Byte 1", std::move(byte));
    add(L"\"\"", Variant::fromText(L""));
    add(L"a text", Variant::fromText(kNeutralText));
    add(L"\"-1\"", Variant::fromText(L"-1"));
    add(L"\"1e10\"", Variant::fromText(L"1e10"));
    add(L"\"2006/08/03\"", Variant::fromText(L"2006/08/03"));
    add(L"a text with NUL", Variant::fromText(std::wstring(L"VX\0SWEEP", 8)));
    add(L"a huge text", Variant::fromText(std::wstring(70000, L'X')));
    add(L"path separators", Variant::fromText(L"*~*\\~"));
    add(L"a registry path", Variant::fromText(L"HKEY_CURRENT_USER\\VXSWEEP\\"));
    add(L"Persian text", Variant::fromText(L"\u0627\u06cc\u0631\u0627\u0646"));
    add(L"a Variant array", makeVariantArray({Variant::fromLong(1), Variant::fromText(L"a"), Variant::null()}));
    add(L"an empty array", makeVariantArray({}));
    const unsigned char bytes[] = {1, 2, 3};
    add(L"a Byte array", makeByteArray(bytes, sizeof bytes));
    add(L"a 2-D array", array2D());
    add(L"a String array", textArray());
    add(L"an array of arrays", makeVariantArray({makeVariantArray({Variant::fromShort(1)})}));
    add(L"an unallocated array", typed(VT_ARRAY | VT_VARIANT));
    add(L"Nothing", Variant::fromDispatch(nullptr));
    add(L"another class's object", Variant::fromDispatch(other));
    add(L"the object itself", Variant::fromDispatch(self));
    add(L"a plain object", Variant::fromUnknown(plain));
    return p;
}

// Whether a value passed for a window would name a real one.
bool namesRealWindow(const VARIANT& v) {
    if (isText(v)) {
        const std::wstring t = toText(v);
        if (t == L"-1" || t == L"-2" || t == L"-3") return true;
    }
    Variant n;
    if (FAILED(VariantChangeType(n.put(), const_cast<VARIANT*>(&v), 0, VT_I4))) return false;
    const LONG h = V_I4(n.get());
    return h == -1 || h == -2 || h == -3 || h == 0xFFFF;
}

// How an argument is passed: as a value, as a host's Variant variable (VBScript), or as a
// typed variable of the value's own type (VB6).
enum class Form { Value, VariantRef, TypedRef };
const wchar_t* const formNames[] = {L"", L" (Variant variable)", L" (typed variable)"};

bool typedRefPossible(const Variant& v) {
    switch (v.type()) {
    case VT_EMPTY: case VT_NULL: case VT_DECIMAL: case VT_RECORD: return false;
    default: return !(v.type() == VT_ERROR && V_ERROR(v.get()) == DISP_E_PARAMNOTFOUND);
    }
}

// The arguments of one call: the caller's array, the variables references point to.
class Arguments {
public:
    void add(const Variant& v, Form form) {
        stores_.push_back(std::make_unique<VARIANT>());
        VARIANT& store = *stores_.back();
        VariantInit(&store);
        VariantCopy(&store, const_cast<VARIANT*>(v.get()));
        VARIANT arg;
        VariantInit(&arg);
        if (form == Form::Value) {
            arg = store;  // moved into the argument
            VariantInit(&store);
        } else if (form == Form::VariantRef) {
            V_VT(&arg) = VT_BYREF | VT_VARIANT;
            V_VARIANTREF(&arg) = &store;
        } else {
            V_VT(&arg) = VT_BYREF | V_VT(&store);
            V_BYREF(&arg) = &V_I4(&store);
        }
        inOrder_.push_back(arg);
    }
    // rgvarg: the named ones first (in the order given), then the positional last first.
    DISPPARAMS params(size_t namedCount, std::vector<DISPID>& names) {
        raw_.clear();
        for (size_t k = 0; k < namedCount; ++k) raw_.push_back(inOrder_[inOrder_.size() - namedCount + k]);
        for (size_t j = inOrder_.size() - namedCount; j-- > 0;) raw_.push_back(inOrder_[j]);
        return DISPPARAMS{raw_.empty() ? nullptr : raw_.data(), namedCount ? names.data() : nullptr,
                          static_cast<UINT>(raw_.size()), static_cast<UINT>(namedCount)};
    }
    size_t size() const { return inOrder_.size(); }
    ~Arguments() {
        for (VARIANT& v : raw_) VariantClear(&v);  // what the call left in the caller's array
        for (auto& s : stores_) VariantClear(s.get());
    }

private:
    std::vector<std::unique_ptr<VARIANT>> stores_;
    std::vector<VARIANT> inOrder_;
    std::vector<VARIANT> raw_;
};

// ---- the checks ----

// Errors a host gets from a dispatch call that never reached the member's code, with
// the runtime error a host reports for each.
const std::map<HRESULT, const char*> allowedDispatchErrors = {
    {DISP_E_BADPARAMCOUNT, "450: too many or too few arguments"},
    {DISP_E_PARAMNOTOPTIONAL, "449: a required argument left out"},
    {DISP_E_PARAMNOTFOUND, "448: a named argument the member does not have"},
    {DISP_E_TYPEMISMATCH, "13: an argument that does not convert to its parameter's type"},
    {DISP_E_OVERFLOW, "6: a number beyond its parameter's type, NaN or an infinity"},
    {DISP_E_MEMBERNOTFOUND, "438: a dispatch identifier or flags the interface does not have"},
    {DISP_E_UNKNOWNINTERFACE, "the interface identifier of Invoke is not IID_NULL"},
    {DISP_E_UNKNOWNNAME, "438: GetIDsOfNames of a name the interface does not have"},
    {DISP_E_BADVARTYPE, "458: a Variant type an automation parameter cannot take"},
};

// Members the sweep does not call, each with the reason: only what no seam, scratch
// folder or redirected registry can keep inside the test. Keep this list short; a member
// here is still called by its own unit and host tests.
const std::map<std::wstring, const char*>& skipped() {
    static const std::map<std::wstring, const char*> list = {
    };
    return list;
}
bool isSkipped(const std::wstring& className, const std::wstring& member) {
    return skipped().count(className + L"." + member) != 0;
}

// The most yields one call may make: the palette's largest count of a wait is 1 (1000
// yields); every longer wait is refused, or ends at once because the End key is held.
constexpr unsigned long long kYieldBound = 1000;

// The failures the binding stand-in answers with (no class of that name, no object for
// that moniker): a member that binds an outside component hands its failure to the host
// as it came, as the host's own CreateObject and GetObject would.
const std::set<HRESULT> boundObjectErrors = {REGDB_E_CLASSNOTREG, MK_E_SYNTAX};

struct Sweep {
    unsigned long long calls = 0;
    unsigned long long yields = 0;
    std::map<std::string, std::pair<unsigned, std::string>> faults;  // kind -> count, first example
    std::wstring current;  // the call in progress, for a crash report

    void fault(const std::string& kind, const std::wstring& call) {
        auto& f = faults[kind];
        if (f.first++ == 0) f.second = std::string(call.begin(), call.end());
    }

    bool trace = GetEnvironmentVariableW(L"VX_SWEEP_TRACE", nullptr, 0) != 0;  // each call on stderr

    void invoke(IDispatch* object, const std::wstring& what, DISPID id, WORD flags, DISPPARAMS* params,
                bool wantResult = true) {
        current = what;
        ++calls;
        if (trace) std::fprintf(stderr, "%llu (%ld objects) %ls\n", calls, module::liveObjects(), what.c_str());
        VARIANT result;
        VariantInit(&result);
        EXCEPINFO ei{};
        UINT argErr = 0xFFFFFFFFu;
        const unsigned long long yieldsBefore = yieldCount();
        const HRESULT hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, params,
                                          wantResult ? &result : nullptr, &ei, &argErr);
        if (trace)
            std::fprintf(stderr, "  -> 0x%08lX 0x%08lX, result type %u\n", static_cast<unsigned long>(hr),
                         static_cast<unsigned long>(ei.scode), V_VT(&result));
        const unsigned long long yielded = yieldCount() - yieldsBefore;
        yields += yielded;
        if (yielded > kYieldBound) fault("a wait beyond the bound of yields", what);
        char code[64];
        if (hr == DISP_E_EXCEPTION) {
            const bool runtimeError = HRESULT_FACILITY(ei.scode) == FACILITY_CONTROL && HRESULT_CODE(ei.scode) != 0;
            if (!runtimeError && !boundObjectErrors.count(ei.scode)) {
                std::snprintf(code, sizeof code, "an exception 0x%08lX", static_cast<unsigned long>(ei.scode));
                fault(code, what);
            }
        } else if (FAILED(hr)) {
            if (!allowedDispatchErrors.count(hr)) {
                std::snprintf(code, sizeof code, "0x%08lX", static_cast<unsigned long>(hr));
                fault(code, what);
            }
            const bool positional = hr == DISP_E_TYPEMISMATCH || hr == DISP_E_PARAMNOTFOUND || hr == DISP_E_OVERFLOW;
            if (positional && argErr != 0xFFFFFFFFu && (!params || argErr >= params->cArgs))
                fault("an argument position beyond the arguments", what);
        }
        if (FAILED(hr) && V_VT(&result) != VT_EMPTY) fault("a result from a failed call", what);
        VariantClear(&result);
        SysFreeString(ei.bstrSource);
        SysFreeString(ei.bstrDescription);
        SysFreeString(ei.bstrHelpFile);
    }
};

Sweep* running = nullptr;

LONG WINAPI reportCrash(EXCEPTION_POINTERS* e) {
    if (running)
        std::fprintf(stderr, "the sweep crashed (0x%08lX) in: %ls\n",
                     static_cast<unsigned long>(e->ExceptionRecord->ExceptionCode), running->current.c_str());
    return EXCEPTION_CONTINUE_SEARCH;
}

// A value of the parameter's type that the member accepts as an ordinary argument.
Variant neutral(const ParamInfo& p) {
    if (!p.enumValues.empty()) return Variant::fromLong(p.enumValues.front());
    switch (p.type) {
    case VT_BSTR: return Variant::fromText(kNeutralText);
    case VT_BOOL: return Variant::fromBool(false);
    case VT_DISPATCH: case VT_UNKNOWN: return Variant::fromDispatch(nullptr);
    case VT_VARIANT: case VT_RECORD: return Variant();
    default: return Variant::fromShort(0);
    }
}

// Sweeps one member of one object.
void sweepMember(Sweep& s, IDispatch* object, const ClassInfo& c, const MemberInfo& m,
                 const std::vector<Sample>& samples) {
    // A property just set is read back with one argument more than its get takes (the
    // host's obj.Value(1) of a Variant property holding Nothing, an array, an object).
    const MemberInfo* get = nullptr;
    for (const MemberInfo& g : c.members)
        if (m.assignment() && g.id == m.id && g.kind == INVOKE_PROPERTYGET) get = &g;
    auto readBack = [&](const std::wstring& what) {
        if (!get) return;
        Arguments a;
        for (size_t i = 0; i <= get->params.size(); ++i) a.add(Variant::fromShort(1), Form::Value);
        std::vector<DISPID> none;
        DISPPARAMS params = a.params(0, none);
        s.invoke(object, what + L", read back with an argument too many", get->id,
                 DISPATCH_METHOD | DISPATCH_PROPERTYGET, &params);
    };
    const std::wstring name = c.name + L"." + m.name + (m.kind == INVOKE_PROPERTYPUT ? L" (let)"
                                                        : m.kind == INVOKE_PROPERTYPUTREF ? L" (set)" : L"");
    const size_t count = m.params.size();
    const size_t callable = m.assignment() ? count - 1 : count;
    std::vector<DISPID> putName{DISPID_PROPERTYPUT};
    // Arguments 0..n-1: neutral values for the required ones, the missing marker for the
    // optional ones; replace (if not npos) puts value at that position.
    auto build = [&](Arguments& a, size_t n, size_t replace, const Variant* value, Form form) {
        for (size_t i = 0; i < n; ++i) {
            if (i == replace)
                a.add(*value, form);
            else
                a.add(m.params[i].optional && i < callable ? Variant::missing() : neutral(m.params[i]), Form::Value);
        }
    };
    // An assignment's value is its last argument, passed by the name DISPID_PROPERTYPUT.
    auto callWith = [&](Arguments& a, const std::wstring& what, WORD flags = 0, bool wantResult = true) {
        const size_t named = m.assignment() && a.size() != 0 ? 1 : 0;
        DISPPARAMS params = a.params(named, putName);
        s.invoke(object, what, m.id, flags ? flags : m.flags(), &params, wantResult);
    };
    // Each parameter in turn gets every sample, in every form.
    for (size_t p = 0; p < count; ++p) {
        std::vector<Variant> values;
        for (const Sample& sample : samples) values.push_back(sample.value);
        for (LONG e : m.params[p].enumValues) values.push_back(Variant::fromLong(e));
        for (size_t v = 0; v < values.size(); ++v) {
            if (m.params[p].window && namesRealWindow(*values[v])) continue;
            const std::wstring label = v < samples.size() ? samples[v].name : L"Long " + std::to_wstring(V_I4(values[v].get()));
            for (Form form : {Form::Value, Form::VariantRef, Form::TypedRef}) {
                if (form == Form::TypedRef && !typedRefPossible(values[v])) continue;
                Arguments a;
                build(a, m.assignment() ? count : p + 1, p, &values[v], form);
                const std::wstring what = name + L": " + m.params[p].name + L" = " + label + formNames[static_cast<int>(form)];
                callWith(a, what);
                if (p + 1 == count) readBack(what);
            }
        }
    }
    // Too few, all, too many; without a result.
    {
        Arguments none;
        callWith(none, name + L": no arguments");
        Arguments all;
        build(all, count, std::wstring::npos, nullptr, Form::Value);
        callWith(all, name + L": every argument", 0, false);
        for (size_t extra : {1u, 3u}) {
            Arguments more;
            build(more, callable, std::wstring::npos, nullptr, Form::Value);
            for (size_t i = 0; i < extra; ++i) more.add(Variant::fromShort(0), Form::Value);
            if (m.assignment()) more.add(neutral(m.params.back()), Form::Value);
            callWith(more, name + L": " + std::to_wstring(extra) + L" argument(s) too many");
        }
    }
    // By name: every parameter, last first; each alone; a name it does not have; one twice.
    {
        std::vector<DISPID> ids;
        Arguments a;
        for (size_t i = 0; i < callable; ++i) {
            ids.push_back(static_cast<DISPID>(callable - 1 - i));
            a.add(neutral(m.params[callable - 1 - i]), Form::Value);
        }
        if (m.assignment()) {
            ids.push_back(DISPID_PROPERTYPUT);
            a.add(neutral(m.params.back()), Form::Value);
        }
        DISPPARAMS params = a.params(a.size(), ids);
        s.invoke(object, name + L": every argument by name", m.id, m.flags(), &params);
        for (size_t i = 0; i < callable; ++i) {
            std::vector<DISPID> one{static_cast<DISPID>(i)};
            Arguments b;
            b.add(neutral(m.params[i]), Form::Value);
            DISPPARAMS single = b.params(1, one);
            s.invoke(object, name + L": " + m.params[i].name + L" alone by name", m.id, m.flags(), &single);
        }
        for (DISPID wrong : {static_cast<DISPID>(count + 5), static_cast<DISPID>(-1), static_cast<DISPID>(0)}) {
            std::vector<DISPID> twice{wrong, wrong};
            Arguments b;
            b.add(Variant::fromShort(0), Form::Value);
            b.add(Variant::fromShort(0), Form::Value);
            DISPPARAMS bad = b.params(2, twice);
            s.invoke(object, name + L": a wrong name, twice", m.id, m.flags(), &bad);
        }
    }
    // Other dispatch flags.
    for (WORD flags : {0, DISPATCH_METHOD, DISPATCH_PROPERTYGET, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                       DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF, DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF,
                       0x10, 0xFFFF}) {
        Arguments a;
        build(a, count, std::wstring::npos, nullptr, Form::Value);
        DISPPARAMS params = a.params(0, putName);
        s.invoke(object, name + L": flags " + std::to_wstring(flags), m.id, static_cast<WORD>(flags), &params);
    }
}

// Dispatch identifiers the interface does not have, the wrong interface identifier,
// names it does not know, and no DISPPARAMS at all.
void sweepIdentifiers(Sweep& s, IDispatch* object, const ClassInfo& c) {
    const DISPID wrongIds[] = {DISPID_UNKNOWN, DISPID_VALUE, DISPID_PROPERTYPUT, DISPID_NEWENUM, 0x60000000,
                               0x60000001, 0x60010000, 0x60010002, 0x60010003, 0x6003FFFF, 0x7FFFFFFF,
                               static_cast<DISPID>(0x80000000)};
    for (DISPID id : wrongIds) {
        for (WORD flags : {DISPATCH_METHOD | DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT}) {
            Arguments a;
            a.add(Variant::fromShort(0), Form::Value);
            std::vector<DISPID> put{DISPID_PROPERTYPUT};
            DISPPARAMS params = a.params(flags == DISPATCH_PROPERTYPUT ? 1 : 0, put);
            s.invoke(object, c.name + L": dispatch identifier " + std::to_wstring(id), id, flags, &params);
        }
    }
    for (const MemberInfo& m : c.members) {
        if (isSkipped(c.name, m.name)) continue;
        s.invoke(object, c.name + L"." + m.name + L": no DISPPARAMS", m.id, m.flags(), nullptr);
        ++s.calls;
        DISPPARAMS none{nullptr, nullptr, 0, 0};
        const HRESULT hr = object->Invoke(m.id, IID_IDispatch, 0, m.flags(), &none, nullptr, nullptr, nullptr);
        if (hr != DISP_E_UNKNOWNINTERFACE) s.fault("Invoke for an interface other than IID_NULL", c.name + L"." + m.name);
    }
    std::wstring unknown = L"VXSWEEP", member = c.members.empty() ? L"" : c.members.front().name;
    LPOLESTR names[2] = {&member[0], &unknown[0]};
    DISPID ids[2] = {};
    if (object->GetIDsOfNames(IID_NULL, &names[1], 1, 0, ids) != DISP_E_UNKNOWNNAME)
        s.fault("GetIDsOfNames of an unknown name", c.name);
    if (!member.empty() && object->GetIDsOfNames(IID_NULL, names, 2, 0, ids) != DISP_E_UNKNOWNNAME)
        s.fault("GetIDsOfNames of an unknown parameter name", c.name);
}

// After the sweep, what could hold an object in a cycle (a record holding itself) is
// emptied: every object property is set to Nothing, every Variant one to Empty, every
// list cleared.
void empty(Sweep& s, IDispatch* object, const ClassInfo& c) {
    for (const MemberInfo& m : c.members) {
        Arguments a;
        if (m.kind == INVOKE_PROPERTYPUTREF && m.params.size() == 1)
            a.add(Variant::fromDispatch(nullptr), Form::Value);
        else if (m.kind == INVOKE_PROPERTYPUT && m.params.size() == 1 && m.params[0].type == VT_VARIANT)
            a.add(Variant(), Form::Value);
        else if (!(m.kind == INVOKE_FUNC && m.name == L"Clear" && m.params.empty()))
            continue;
        std::vector<DISPID> put{DISPID_PROPERTYPUT};
        DISPPARAMS params = a.params(m.assignment() ? 1 : 0, put);
        s.invoke(object, c.name + L"." + m.name + L": emptied", m.id, m.flags(), &params);
    }
}

// ---- the fixture: seams in place, the registry and the current folder redirected ----

class SweepEnvironment {
public:
    SweepEnvironment()
        : clock_(fakeClock()), keyboard_(endKeyHeld()), session_(SessionService{[](UINT, DWORD) { return FALSE; }}),
          process_(ProcessService{[](const std::string&, WORD) -> DWORD { return 0; },
                                  [](HWND, const char*, const char*, const char*, const char*, int) {
                                      return reinterpret_cast<HINSTANCE>(2);  // file not found
                                  }}),
          boxes_(MessageBoxService{[](const std::wstring&, const std::wstring&, UINT) { return IDOK; }}),
          binding_(BindingService{[](const std::wstring&, IDispatch** o) { *o = nullptr; return REGDB_E_CLASSNOTREG; },
                                  [](const std::wstring&, IDispatch** o) { *o = nullptr; return MK_E_SYNTAX; }}),
          mixer_(noMixer()), spooler_(emptySpooler()), network_(noSockets()) {
        GetCursorPos(&cursor_);
        // The registry's roots: scratch keys of this run.
        scratch_ = L"Software\\Vx_Main sweep " + std::to_wstring(GetCurrentProcessId());
        const HKEY roots[] = {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_USERS, HKEY_CURRENT_CONFIG};
        for (HKEY root : roots) {
            HKEY key = nullptr;
            const std::wstring path = scratch_ + L"\\" + std::to_wstring(reinterpret_cast<ULONG_PTR>(root) & 0xF);
            if (RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr) ==
                ERROR_SUCCESS)
                keys_.push_back({root, key});
        }
        for (auto& k : keys_) overridden_ += RegOverridePredefKey(k.first, k.second) == ERROR_SUCCESS;
        // A key and a value to list (the registry lists come from them).
        HKEY key = nullptr;
        RegCreateKeyExW(HKEY_CURRENT_USER, L"VXSWEEP KEY", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
        RegSetValueExW(key, L"VXSWEEP VALUE", 0, REG_SZ, reinterpret_cast<const BYTE*>(L"V"), 4);
        RegCloseKey(key);
        // The current folder: a new empty one.
        wchar_t buffer[MAX_PATH];
        GetCurrentDirectoryW(MAX_PATH, buffer);
        previousFolder_ = buffer;
        GetTempPathW(MAX_PATH, buffer);
        folder_ = std::wstring(buffer) + L"vx-sweep-" + std::to_wstring(GetCurrentProcessId());
        CreateDirectoryW(folder_.c_str(), nullptr);
        SetCurrentDirectoryW(folder_.c_str());
    }
    ~SweepEnvironment() {
        for (auto& k : keys_) RegOverridePredefKey(k.first, nullptr);
        for (auto& k : keys_) RegCloseKey(k.second);
        RegDeleteTreeW(HKEY_CURRENT_USER, scratch_.c_str());
        RegDeleteKeyW(HKEY_CURRENT_USER, scratch_.c_str());
        SetCurrentDirectoryW(previousFolder_.c_str());
        RemoveDirectoryW(folder_.c_str());  // fails, and stays to be seen, if anything was left there
        // Keys and buttons left down are let go; the cursor goes back.
        for (int vk = 1; vk < 255; ++vk) {
            if (!(GetAsyncKeyState(vk) & 0x8000)) continue;
            if (vk == VK_LBUTTON || vk == VK_RBUTTON || vk == VK_MBUTTON) {
                keybd_event(static_cast<BYTE>(vk), 0, KEYEVENTF_KEYUP, 0);
                if (GetAsyncKeyState(vk) & 0x8000)
                    mouse_event(vk == VK_LBUTTON ? MOUSEEVENTF_LEFTUP : vk == VK_RBUTTON ? MOUSEEVENTF_RIGHTUP
                                                                                       : MOUSEEVENTF_MIDDLEUP,
                                0, 0, 0, 0);
            } else {
                keybd_event(static_cast<BYTE>(vk), 0, KEYEVENTF_KEYUP, 0);
            }
        }
        SetCursorPos(cursor_.x, cursor_.y);
    }
    bool registryRedirected() const { return overridden_ == 5; }
    const std::wstring& folder() const { return folder_; }

private:
    static ClockService fakeClock() {
        ClockService c;
        c.getSystemTime = [](SYSTEMTIME* t) { *t = SYSTEMTIME{2006, 8, 4, 3, 9, 5, 0, 0}; };
        c.setSystemTime = [](const SYSTEMTIME*) { return TRUE; };
        return c;
    }
    static KeyboardService endKeyHeld() {
        KeyboardService k;
        k.asyncKeyState = [](int key) -> SHORT { return key == VK_END ? static_cast<SHORT>(0x8000) : 0; };
        return k;
    }
    // No mixer device: every mixer call refuses.
    static MixerService noMixer() {
        MixerService m;
        m.deviceCount = [] { return 0u; };
        m.open = [](HMIXER* mixer, UINT) { *mixer = nullptr; return static_cast<MMRESULT>(MMSYSERR_BADDEVICEID); };
        m.close = [](HMIXER) { return static_cast<MMRESULT>(MMSYSERR_INVALHANDLE); };
        m.getLineInfo = [](HMIXEROBJ, MIXERLINEA*, DWORD) { return static_cast<MMRESULT>(MMSYSERR_INVALHANDLE); };
        m.getLineControls = [](HMIXEROBJ, MIXERLINECONTROLSA*, DWORD) {
            return static_cast<MMRESULT>(MMSYSERR_INVALHANDLE);
        };
        m.getDetails = [](HMIXEROBJ, MIXERCONTROLDETAILS*, DWORD) { return static_cast<MMRESULT>(MMSYSERR_INVALHANDLE); };
        m.setDetails = m.getDetails;
        return m;
    }
    // A spooler with no printers, no drivers and no default, that adds, deletes and sets
    // nothing.
    static SpoolerService emptySpooler() {
        SpoolerService s;
        auto refuse = [](DWORD error) { SetLastError(error); return FALSE; };
        s.enumPrinters = [=](DWORD, LPSTR, DWORD, LPBYTE, DWORD, LPDWORD needed, LPDWORD returned) {
            *needed = *returned = 0;
            return TRUE;
        };
        s.enumPrinterDrivers = [=](LPSTR, LPSTR, DWORD, LPBYTE, DWORD, LPDWORD needed, LPDWORD returned) {
            *needed = *returned = 0;
            return TRUE;
        };
        s.addPrinter = [](LPSTR, DWORD, LPBYTE) -> HANDLE { SetLastError(ERROR_ACCESS_DENIED); return nullptr; };
        s.openPrinter = [=](LPSTR, LPHANDLE printer, LPPRINTER_DEFAULTSA) {
            *printer = nullptr;
            return refuse(ERROR_INVALID_PRINTER_NAME);
        };
        s.deletePrinter = [=](HANDLE) { return refuse(ERROR_INVALID_HANDLE); };
        s.closePrinter = [=](HANDLE) { return refuse(ERROR_INVALID_HANDLE); };
        s.enumJobs = [=](HANDLE, DWORD, DWORD, DWORD, LPBYTE, DWORD, LPDWORD, LPDWORD) {
            return refuse(ERROR_INVALID_HANDLE);
        };
        s.getPrinter = [=](HANDLE, DWORD, LPBYTE, DWORD, LPDWORD) { return refuse(ERROR_INVALID_HANDLE); };
        s.getDefaultPrinter = [=](LPSTR, LPDWORD) { return refuse(ERROR_FILE_NOT_FOUND); };
        s.setDefaultPrinter = [=](LPCSTR) { return refuse(ERROR_INVALID_PRINTER_NAME); };
        return s;
    }
    // The socket layer does not start (so no name is looked up and no echo sent); every
    // other network call fails at once, and no host callback is ever run.
    static NetworkService noSockets() {
        NetworkService n;
        n.startup = [](WORD, WSADATA*) { return WSASYSNOTREADY; };
        n.cleanup = [] { return 0; };
        n.connectedState = [](DWORD* flags) { *flags = 0; return FALSE; };
        n.networkAlive = [](DWORD* flags) { *flags = 0; return FALSE; };
        n.sendArp = [](IPAddr, IPAddr, void*, ULONG*) { return static_cast<DWORD>(ERROR_NOT_SUPPORTED); };
        n.destinationReachable = [](const char*, QOCINFO*) { return FALSE; };
        n.serverEnum = [](LPCWSTR, LPBYTE* buffer, DWORD* read, DWORD* total, DWORD, LPCWSTR) {
            *buffer = nullptr;
            *read = *total = 0;
            return static_cast<NET_API_STATUS>(ERROR_NO_BROWSER_SERVERS_FOUND);
        };
        n.icmpOpen = [] { return INVALID_HANDLE_VALUE; };
        n.icmpEcho = [](HANDLE, IPAddr, void*, WORD, IP_OPTION_INFORMATION*, void*, DWORD, DWORD) {
            return static_cast<DWORD>(0);
        };
        n.icmpClose = [](HANDLE) { return TRUE; };
        n.openServiceManager = [](const char*) -> SC_HANDLE { return nullptr; };
        n.enumWindows = [](WNDENUMPROC, LPARAM) { return FALSE; };
        return n;
    }
    ReplaceService<ClockService> clock_;
    ReplaceService<KeyboardService> keyboard_;
    ReplaceService<SessionService> session_;
    ReplaceService<ProcessService> process_;
    ReplaceService<MessageBoxService> boxes_;
    ReplaceService<BindingService> binding_;
    ReplaceService<MixerService> mixer_;
    ReplaceService<SpoolerService> spooler_;
    ReplaceService<NetworkService> network_;
    POINT cursor_{};
    std::wstring scratch_, folder_, previousFolder_;
    std::vector<std::pair<HKEY, HKEY>> keys_;
    int overridden_ = 0;
};

// How the dependent classes are reached: from an object of another class (created or
// reached before), through the member that hands them out.
struct Producer {
    const wchar_t* product;
    const wchar_t* from;
    const wchar_t* member;
    std::vector<Variant> args;
    int intoArgument = -1;  // the product comes back in this by-reference argument, not as the result
    bool shellBinding = false;  // made with a stand-in shell bound (the sweep's binding refuses all)
};

// The shell as a details object binds it (Shell.Application's NameSpace, a folder's
// ParseName and GetDetailsOf), answering every column with the same text.
BindingService standInShell() {
    BindingService b = service<BindingService>();
    b.createObject = [](const std::wstring&, IDispatch** object) -> HRESULT {
        auto folder = vxtest::StandIn::make({{L"ParseName", vxtest::gives(Variant::fromText(L"item"))},
                                     {L"GetDetailsOf", vxtest::gives(Variant::fromText(L"detail"))}});
        auto shell = vxtest::StandIn::make({{L"NameSpace", vxtest::gives(folder->asVariant())}});
        *object = shell.detach();
        return S_OK;
    };
    return b;
}
std::vector<Producer> producers() {
    const Variant currentUser = Variant::fromLong(static_cast<LONG>(0x80000001u));
    return {
        {L"Ds_DataCollection", L"Ds_ListCollection", L"Add", {Variant::fromText(kNeutralText)}},
        {L"cRegKeys", L"clsReg", L"ListKeys", {currentUser, Variant::fromText(L"")}},
        {L"cRegKey", L"cRegKeys", L"Item", {Variant::fromLong(1)}},
        {L"cRegValues", L"clsReg", L"ListValues", {currentUser, Variant::fromText(L"VXSWEEP KEY")}},
        {L"cRegValue", L"cRegValues", L"Item", {Variant::fromLong(1)}},
        {L"cRegEnumKey", L"clsReg", L"GoEnumKey", {currentUser, Variant::fromText(L"")}},
        {L"cRegEnumValue", L"clsReg", L"GoEnumValue", {currentUser, Variant::fromText(L"")}},
        {L"Ds_ENumAction", L"Ds_EnumChid", L"GetChild", {Variant::fromText(kNeutralText)}},
        {L"Ds_ListChild", L"Ds_EnumChid", L"EWinChild", {Variant::fromLong(0)}},
        {L"Ds_PrintJobs", L"Ds_Printer", L"EnumJobPrint", {Variant::fromText(kNeutralText)}},
        {L"Ds_PrintJob", L"Ds_PrintJobs", L"Add", {}},
        // (searched, not listed: a listing reaches the scripting runtime, which the sweep's
        // binding refuses)
        {L"Ds_TypeFileSys", L"Ds_FileSystem", L"GoFindFile", {Variant::fromText(L"C:\\users"), Variant()}, 1},
        {L"Ds_DriveInfo", L"Ds_FileSystem", L"GoDrive", {Variant::fromText(L"C:\\")}},
        {L"Ds_RecycleBin", L"Ds_FileSystem", L"GoRecBin", {Variant::fromText(L"C:\\")}},
        {L"Ds_TypeFileDetails", L"Ds_FileSystem", L"GetDetails", {Variant::fromText(L"C:\\folder\\file.txt")}, -1, true},
    };
}

}  // namespace

TEST(Sweep, EveryMemberTakesWhatAHostMayPassAndReleasesEverything) {
    const long liveBefore = module::liveObjects();
    Sweep s;
    PlainObject plain;
    size_t classCount = 0;
    {
        SweepEnvironment environment;
        ASSERT_TRUE(environment.registryRedirected()) << "the registry's roots could not be redirected";
        running = &s;
        LPTOP_LEVEL_EXCEPTION_FILTER previous = SetUnhandledExceptionFilter(reportCrash);

        // One object of every class: created, or handed out by its producer.
        std::vector<ClassInfo> classes;
        std::map<std::wstring, ComPtr<IDispatch>> objects;
        for (const ClassEntry* e = rosterBegin(); e != rosterEnd(); ++e) {
            classes.push_back(readClass(*e));
            ASSERT_FALSE(classes.back().members.empty()) << "no members read for " << classes.back().name;
            if (!isCreatable(*e)) continue;
            ComPtr<IClassFactory> factory;
            ASSERT_EQ(getClassFactory(e->classId(), IID_IClassFactory, reinterpret_cast<void**>(factory.put())), S_OK);
            ASSERT_EQ(factory->CreateInstance(nullptr, IID_IDispatch,
                                              reinterpret_cast<void**>(objects[classes.back().name].put())),
                      S_OK);
        }
        for (const Producer& p : producers()) {
            ASSERT_TRUE(objects.count(p.from)) << "make " << p.from << " before " << p.product;
            std::vector<Variant> args = p.args;
            VARIANT returned;
            VariantInit(&returned);
            if (p.intoArgument >= 0) {
                V_VT(args[p.intoArgument].put()) = VT_BYREF | VT_VARIANT;
                V_VARIANTREF(args[p.intoArgument].get()) = &returned;
            }
            std::optional<ReplaceService<BindingService>> shell;
            if (p.shellBinding) shell.emplace(standInShell());
            auto made = vxtest::call(objects[p.from].get(), p.member, std::move(args));
            shell.reset();
            objects[p.product] = vxtest::objectOf(p.intoArgument >= 0 ? Variant::copyOf(returned) : made.value);
            VariantClear(&returned);
            ASSERT_TRUE(objects[p.product]) << "no " << p.product << " from " << p.from << "." << p.member << ": " << std::hex << made.hr;
        }
        for (const ClassInfo& c : classes)
            ASSERT_TRUE(objects.count(c.name)) << c.name << " is dependent: add its producer to the sweep";

        // VX_SWEEP_CLASS=Name sweeps that class alone (to find which one a fault is in).
        wchar_t only[64] = L"";
        GetEnvironmentVariableW(L"VX_SWEEP_CLASS", only, 64);
        for (const ClassInfo& c : classes) {
            if (*only && c.name != only) continue;
            IDispatch* object = objects[c.name].get();
            ComPtr<IDispatch> other = objects[c.name == L"Ds_AlphaMoney" ? L"Ds_Calendar" : L"Ds_AlphaMoney"];
            const std::vector<Sample> samples = palette(object, other.get(), &plain);
            for (const MemberInfo& m : c.members) {
                if (isSkipped(c.name, m.name)) continue;
                sweepMember(s, object, c, m, samples);
            }
            sweepIdentifiers(s, object, c);
        }
        for (const ClassInfo& c : classes) empty(s, objects[c.name].get(), c);
        classCount = classes.size();
        // The window enumerations keep their last result in a table the module shares:
        // listing the children of no window empties it.
        Variant list = vxtest::call(objects[L"Ds_EnumChid"].get(), L"EWinChild", {Variant::fromLong(0)}).value;
        list = Variant();
        objects.clear();
        SetUnhandledExceptionFilter(previous);
        running = nullptr;
    }
    for (const auto& skip : skipped()) std::printf("Not swept: %ls (%s)\n", skip.first.c_str(), skip.second);
    std::printf("The sweep made %llu calls over %zu classes (%llu yields).\n", s.calls, classCount, s.yields);
    for (const auto& f : s.faults)
        ADD_FAILURE() << f.first << ": " << f.second.first << " calls, the first: " << f.second.second;
    EXPECT_EQ(module::liveObjects(), liveBefore) << "objects left alive";
    if (liveBefore == 0) {
        EXPECT_TRUE(module::canUnload()) << "DllCanUnloadNow would refuse";
    }
}
