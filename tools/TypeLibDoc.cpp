// Reads a type library (a .tlb, or a DLL that carries one) and either writes its reference
// as Markdown or lists everything in it that has no help string.
//
//   vx_typelib_doc reference <library> <output.md>
//   vx_typelib_doc help-check <library>
//
// The reference holds every class with its instancing (from the coclass's type flags:
// an application object is global, a creatable class creatable, any other dependent),
// every member with its parameters, defaults, result and help string, the events, every
// enumeration with its values and every record with its fields. Its order is the type
// library's and it holds no date, path or word size, so that both builds write it alike.
#include "core/runtime/ComPtr.h"

#include <oleauto.h>

#include <cstdio>
#include <cwchar>
#include <map>
#include <string>
#include <vector>

using vx::ComPtr;

namespace {

std::wstring take(BSTR text) {
    std::wstring out = text ? std::wstring(text, SysStringLen(text)) : std::wstring();
    SysFreeString(text);
    return out;
}

struct Doc {
    std::wstring name;
    std::wstring help;
};

Doc docOf(ITypeInfo* info, MEMBERID id) {
    BSTR name = nullptr, help = nullptr;
    if (FAILED(info->GetDocumentation(id, &name, &help, nullptr, nullptr))) return {};
    return {take(name), take(help)};
}

// The attributes of a type, released with their scope.
class TypeAttr {
public:
    explicit TypeAttr(ITypeInfo* info) : info_(info) {
        if (FAILED(info_->GetTypeAttr(&attr_))) attr_ = nullptr;
    }
    ~TypeAttr() { if (attr_) info_->ReleaseTypeAttr(attr_); }
    TypeAttr(const TypeAttr&) = delete;
    TypeAttr& operator=(const TypeAttr&) = delete;
    const TYPEATTR* operator->() const { return attr_; }
    explicit operator bool() const { return attr_ != nullptr; }

private:
    ITypeInfo* info_;
    TYPEATTR* attr_ = nullptr;
};

class FuncDesc {
public:
    FuncDesc(ITypeInfo* info, UINT index) : info_(info) {
        if (FAILED(info_->GetFuncDesc(index, &desc_))) desc_ = nullptr;
    }
    ~FuncDesc() { if (desc_) info_->ReleaseFuncDesc(desc_); }
    FuncDesc(const FuncDesc&) = delete;
    FuncDesc& operator=(const FuncDesc&) = delete;
    const FUNCDESC* operator->() const { return desc_; }
    explicit operator bool() const { return desc_ != nullptr; }

private:
    ITypeInfo* info_;
    FUNCDESC* desc_ = nullptr;
};

class VarDesc {
public:
    VarDesc(ITypeInfo* info, UINT index) : info_(info) {
        if (FAILED(info_->GetVarDesc(index, &desc_))) desc_ = nullptr;
    }
    ~VarDesc() { if (desc_) info_->ReleaseVarDesc(desc_); }
    VarDesc(const VarDesc&) = delete;
    VarDesc& operator=(const VarDesc&) = delete;
    const VARDESC* operator->() const { return desc_; }
    explicit operator bool() const { return desc_ != nullptr; }

private:
    ITypeInfo* info_;
    VARDESC* desc_ = nullptr;
};

// The interface a coclass implements with the given flags (its default interface, or its
// default source), or none.
ComPtr<ITypeInfo> implemented(ITypeInfo* coclass, int wanted) {
    TypeAttr attr(coclass);
    for (UINT i = 0; attr && i < attr->cImplTypes; ++i) {
        INT flags = 0;
        HREFTYPE ref = 0;
        ComPtr<ITypeInfo> info;
        if (SUCCEEDED(coclass->GetImplTypeFlags(i, &flags)) &&
            (flags & (IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE)) == wanted &&
            SUCCEEDED(coclass->GetRefTypeOfImplType(i, &ref)) && SUCCEEDED(coclass->GetRefTypeInfo(ref, info.put())))
            return info;
    }
    return {};
}

// A dual interface's own members are read from its vtable side.
ComPtr<ITypeInfo> vtableSide(const ComPtr<ITypeInfo>& info) {
    HREFTYPE ref = 0;
    ComPtr<ITypeInfo> side;
    if (SUCCEEDED(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &ref)) &&
        SUCCEEDED(info->GetRefTypeInfo(ref, side.put())))
        return side;
    return info;
}

std::string utf8(const std::wstring& text) {
    if (text.empty()) return {};
    const int n = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<size_t>(n), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), &out[0], n, nullptr, nullptr);
    return out;
}

std::wstring number(long long value) {
    wchar_t buffer[32];
    std::swprintf(buffer, 32, L"%lld", value);
    return buffer;
}

// A value as a host's source text writes it: Long values beyond four hex digits in hex.
std::wstring enumValue(long value) {
    if (value >= -0xFFFF && value <= 0xFFFF) return number(value);
    wchar_t buffer[48];
    std::swprintf(buffer, 48, L"&H%lX (%ld)", static_cast<unsigned long>(value), value);
    return buffer;
}

// Help text in Markdown: the characters that would start markup are escaped, and a line
// break would end the list item.
std::wstring markdown(const std::wstring& text) {
    std::wstring out;
    for (size_t i = 0; i < text.size(); ++i) {
        const wchar_t c = text[i];
        const auto word = [&](size_t j) { return j < text.size() && (iswalnum(text[j]) != 0); };
        if (c == L'\\' || c == L'*' || c == L'`' || c == L'|' || c == L'<' || c == L'[' || c == L']' ||
            (c == L'_' && !(i > 0 && word(i - 1) && word(i + 1))))
            out += L'\\';
        out += (c == L'\r' || c == L'\n') ? L' ' : c;
    }
    return out;
}

// A help string as a sentence of the reference.
std::wstring sentence(const std::wstring& help) {
    if (help.empty()) return {};
    const wchar_t last = help.back();
    return markdown(help) + (last == L'.' || last == L'!' || last == L'?' ? L"" : L".");
}

std::wstring code(const std::wstring& text) {
    return text.find(L'`') == std::wstring::npos ? L"`" + text + L"`" : L"`` " + text + L" ``";
}

class Library {
public:
    explicit Library(ComPtr<ITypeLib> library) : library_(std::move(library)) {
        // An interface that is a class's default one is named by its class, as the object
        // browser shows it.
        forEachType(TKIND_COCLASS, [&](ITypeInfo* info, const Doc& doc) {
            if (auto main = implemented(info, IMPLTYPEFLAG_FDEFAULT)) classOf_[docOf(main.get(), MEMBERID_NIL).name] = doc.name;
        });
    }

    template <class F>
    void forEachType(TYPEKIND kind, F&& f) const {
        const UINT count = library_->GetTypeInfoCount();
        for (UINT i = 0; i < count; ++i) {
            TYPEKIND k;
            ComPtr<ITypeInfo> info;
            if (FAILED(library_->GetTypeInfoType(i, &k)) || k != kind || FAILED(library_->GetTypeInfo(i, info.put())))
                continue;
            f(info.get(), docOf(info.get(), MEMBERID_NIL));
        }
    }

    Doc doc() const {
        BSTR name = nullptr, help = nullptr;
        library_->GetDocumentation(-1, &name, &help, nullptr, nullptr);
        return {take(name), take(help)};
    }

    std::wstring typeName(ITypeInfo* context, const TYPEDESC& t) const {
        switch (t.vt) {
        case VT_I1: return L"Char";
        case VT_UI1: return L"Byte";
        case VT_I2: return L"Integer";
        case VT_UI2: return L"UInteger";
        case VT_I4: case VT_INT: return L"Long";
        case VT_UI4: case VT_UINT: return L"ULong";
        case VT_I8: return L"LongLong";
        case VT_R4: return L"Single";
        case VT_R8: return L"Double";
        case VT_CY: return L"Currency";
        case VT_DATE: return L"Date";
        case VT_BSTR: case VT_LPSTR: case VT_LPWSTR: return L"String";
        case VT_BOOL: return L"Boolean";
        case VT_VARIANT: return L"Variant";
        case VT_DISPATCH: return L"Object";
        case VT_UNKNOWN: return L"Unknown";
        case VT_HRESULT: return L"HRESULT";
        case VT_VOID: return L"Any";
        case VT_PTR: return typeName(context, *t.lptdesc);
        case VT_SAFEARRAY: return typeName(context, *t.lptdesc) + L"()";
        case VT_CARRAY: {
            std::wstring bounds;
            for (USHORT d = 0; d < t.lpadesc->cDims; ++d) {
                const SAFEARRAYBOUND& b = t.lpadesc->rgbounds[d];
                bounds += (d ? L", " : L"") + number(b.lLbound) + L" To " + number(b.lLbound + static_cast<long>(b.cElements) - 1);
            }
            return typeName(context, t.lpadesc->tdescElem) + L"(" + bounds + L")";
        }
        case VT_USERDEFINED: {
            ComPtr<ITypeInfo> ref;
            if (FAILED(context->GetRefTypeInfo(t.hreftype, ref.put()))) return L"?";
            const std::wstring name = docOf(ref.get(), MEMBERID_NIL).name;
            if (name == L"IDispatch") return L"Object";
            if (name == L"IUnknown") return L"Unknown";
            const auto c = classOf_.find(name);
            return c != classOf_.end() ? c->second : name;
        }
        default: return L"VarType " + number(t.vt);
        }
    }

    // The name of an enumeration's member with this value, for defaults of that type.
    std::wstring enumMember(ITypeInfo* context, const TYPEDESC& t, long value) const {
        const TYPEDESC* d = &t;
        while (d->vt == VT_PTR) d = d->lptdesc;
        ComPtr<ITypeInfo> ref;
        if (d->vt != VT_USERDEFINED || FAILED(context->GetRefTypeInfo(d->hreftype, ref.put()))) return {};
        TypeAttr attr(ref.get());
        if (!attr || attr->typekind != TKIND_ENUM) return {};
        for (UINT i = 0; i < attr->cVars; ++i) {
            VarDesc v(ref.get(), i);
            VARIANT n;
            VariantInit(&n);
            if (v && v->varkind == VAR_CONST &&
                SUCCEEDED(VariantChangeType(&n, v->lpvarValue, 0, VT_I4)) && n.lVal == value)
                return docOf(ref.get(), v->memid).name;
        }
        return {};
    }

    std::wstring literal(ITypeInfo* context, const TYPEDESC& t, const VARIANT& value) const {
        switch (value.vt) {
        case VT_BSTR: {
            std::wstring out = L"\"";
            for (const wchar_t* c = value.bstrVal; c && *c; ++c) out += *c == L'"' ? std::wstring(L"\"\"") : std::wstring(1, *c);
            return out + L"\"";
        }
        case VT_BOOL: return value.boolVal ? L"True" : L"False";
        case VT_I1: case VT_UI1: case VT_I2: case VT_UI2: case VT_I4: case VT_UI4: case VT_INT: case VT_UINT: {
            VARIANT n;
            VariantInit(&n);
            if (FAILED(VariantChangeType(&n, const_cast<VARIANT*>(&value), 0, VT_I4))) break;
            const std::wstring member = enumMember(context, t, n.lVal);
            return member.empty() ? number(n.lVal) : member;
        }
        default: break;
        }
        VARIANT text;
        VariantInit(&text);
        std::wstring out = L"?";
        if (SUCCEEDED(VariantChangeTypeEx(&text, const_cast<VARIANT*>(&value), LOCALE_INVARIANT, 0, VT_BSTR))) out = text.bstrVal;
        VariantClear(&text);
        return out;
    }

    std::wstring parameter(ITypeInfo* info, const ELEMDESC& e, const std::wstring& name) const {
        const USHORT flags = e.paramdesc.wParamFlags;
        const bool byRef = (flags & PARAMFLAG_FOUT) != 0 && e.tdesc.vt == VT_PTR;
        std::wstring out;
        if (flags & (PARAMFLAG_FOPT | PARAMFLAG_FHASDEFAULT)) out += L"Optional ";
        if (byRef) out += L"ByRef ";
        out += name + L" As " + typeName(info, byRef ? *e.tdesc.lptdesc : e.tdesc);
        if ((flags & PARAMFLAG_FHASDEFAULT) && e.paramdesc.pparamdescex)
            out += L" = " + literal(info, e.tdesc, e.paramdesc.pparamdescex->varDefaultValue);
        return out;
    }

    ComPtr<ITypeLib> library_;

private:
    std::map<std::wstring, std::wstring> classOf_;
};

// One member as a host sees it: a method, or a property with its get, let and set.
struct Member {
    MEMBERID id = 0;
    std::wstring name;
    std::wstring params;      // without the result, or the assigned value
    std::wstring result;      // a type, or empty
    bool method = false, get = false, let = false, set = false;
    std::vector<std::pair<const wchar_t*, std::wstring>> helps;   // (entry, help) per entry

    std::wstring signature(bool event) const {
        std::wstring s;
        if (event) s = L"Event ";
        else if (method) s = result.empty() ? L"Sub " : L"Function ";
        else s = L"Property ";
        s += name;
        if (!params.empty() || method || event) s += L"(" + params + L")";
        if (!result.empty()) s += L" As " + result;
        return s;
    }

    std::wstring access() const {
        if (method) return {};
        if (!get) return set && !let ? L"write-only, assigned with Set" : L"write-only";
        if (let && set) return L"read/write, assigned with or without Set";
        if (set) return L"read/write, assigned with Set";
        if (let) return L"read/write";
        return L"read-only";
    }
};

std::vector<Member> membersOf(const Library& lib, ITypeInfo* info) {
    std::vector<Member> members;
    TypeAttr attr(info);
    for (UINT i = 0; attr && i < attr->cFuncs; ++i) {
        FuncDesc f(info, i);
        if (!f) continue;
        std::vector<BSTR> names(static_cast<size_t>(f->cParams) + 1, nullptr);
        UINT got = 0;
        info->GetNames(f->memid, names.data(), static_cast<UINT>(names.size()), &got);
        std::vector<std::wstring> text;
        for (BSTR& n : names) text.push_back(take(n));
        // A property put's value has no name of its own.
        while (text.size() < names.size()) text.emplace_back(L"value");
        const Doc doc = docOf(info, f->memid);

        std::wstring params, result;
        SHORT count = f->cParams;
        if (f->invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) {
            --count;   // the assigned value
            result = lib.typeName(info, f->lprgelemdescParam[count].tdesc);
        }
        for (SHORT p = 0; p < count; ++p) {
            const ELEMDESC& e = f->lprgelemdescParam[p];
            if (e.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) {
                result = lib.typeName(info, e.tdesc);
                continue;
            }
            if (!params.empty()) params += L", ";
            params += lib.parameter(info, e, text[static_cast<size_t>(p) + 1]);
        }
        if (f->funckind == FUNC_DISPATCH && f->elemdescFunc.tdesc.vt != VT_VOID && f->elemdescFunc.tdesc.vt != VT_HRESULT)
            result = lib.typeName(info, f->elemdescFunc.tdesc);

        Member* m = nullptr;
        for (Member& existing : members)
            if (existing.id == f->memid && !existing.method && f->invkind != INVOKE_FUNC) m = &existing;
        if (!m) {
            members.emplace_back();
            m = &members.back();
            m->id = f->memid;
            m->name = text[0];
        }
        const wchar_t* entry = L"";
        switch (f->invkind) {
        case INVOKE_FUNC: m->method = true; entry = L"call"; break;
        case INVOKE_PROPERTYGET: m->get = true; entry = L"get"; break;
        case INVOKE_PROPERTYPUT: m->let = true; entry = L"let"; break;
        case INVOKE_PROPERTYPUTREF: m->set = true; entry = L"set"; break;
        }
        // The get side names the parameters and the result when there is one.
        if (f->invkind == INVOKE_FUNC || f->invkind == INVOKE_PROPERTYGET || m->helps.empty()) {
            m->params = params;
            m->result = result;
        }
        m->helps.emplace_back(entry, doc.help);
    }
    return members;
}

const wchar_t* instancingOf(ITypeInfo* coclass) {
    TypeAttr attr(coclass);
    if (!attr || !(attr->wTypeFlags & TYPEFLAG_FCANCREATE)) return L"dependent";
    return (attr->wTypeFlags & TYPEFLAG_FAPPOBJECT) ? L"global" : L"creatable";
}

// The reference as Markdown.
class Writer {
public:
    explicit Writer(const Library& lib) : lib_(lib) {}

    std::wstring write() {
        const Doc library = lib_.doc();
        line(L"# " + library.name + L" reference");
        line();
        line(L"<!-- Generated from the type library by `./run reference`; edit the help strings in the IDL, not this file. -->");
        line();
        line(sentence(library.help));
        line();
        line(L"Every class is named `" + library.name + L".<Class>` as a ProgID. Its instancing:");
        line();
        line(L"- **global**: `CreateObject` makes it, and an early-bound host may call its members without making one (an application object);");
        line(L"- **creatable**: `CreateObject` makes it;");
        line(L"- **dependent**: only other members hand it out; `CreateObject` refuses it (error 429).");
        line();
        line(L"Parameters are passed by value unless marked `ByRef`; an `Optional` parameter without a default arrives as a missing argument.");
        line();
        contents();
        classes();
        enumerations();
        records();
        return out_;
    }

private:
    void line(const std::wstring& text = {}) { out_ += text + L"\n"; }

    static std::wstring anchor(const std::wstring& name) {
        std::wstring a;
        for (wchar_t c : name)
            if (iswalnum(c) || c == L'_' || c == L'-') a += static_cast<wchar_t>(towlower(c));
        return L"#" + a;
    }

    void contents() {
        line(L"## Contents");
        line();
        std::wstring list;
        const auto add = [&](ITypeInfo*, const Doc& d) { list += std::wstring(list.empty() ? L"" : L", ") + L"[" + d.name + L"](" + anchor(d.name) + L")"; };
        lib_.forEachType(TKIND_COCLASS, add);
        line(L"- Classes: " + list);
        list.clear();
        lib_.forEachType(TKIND_ENUM, add);
        line(L"- Enumerations: " + list);
        list.clear();
        lib_.forEachType(TKIND_RECORD, add);
        line(L"- Records: " + list);
        line();
    }

    void memberList(ITypeInfo* interfaceInfo, bool events) {
        for (const Member& m : membersOf(lib_, interfaceInfo)) {
            std::wstring head = L"- " + code(m.signature(events));
            const std::wstring access = m.access();
            if (!access.empty()) head += L" (" + access + L")";
            line(head);
            std::wstring first;
            for (const auto& h : m.helps) {
                if (h.second.empty() || h.second == first) continue;
                if (first.empty()) {
                    first = h.second;
                    line(L"  " + sentence(h.second));
                } else {
                    line(L"  " + std::wstring(h.first == std::wstring(L"get") ? L"Reading" : L"Assigning") + L": " + sentence(h.second));
                }
            }
        }
    }

    void classes() {
        lib_.forEachType(TKIND_COCLASS, [&](ITypeInfo* info, const Doc& doc) {
            line(L"## " + doc.name);
            line();
            line(L"*" + std::wstring(instancingOf(info)) + L"*. " + sentence(doc.help));
            line();
            if (auto main = implemented(info, IMPLTYPEFLAG_FDEFAULT)) {
                const Doc d = docOf(main.get(), MEMBERID_NIL);
                line(L"Interface " + code(d.name) + L": " + sentence(d.help));
                line();
                memberList(vtableSide(main).get(), false);
                line();
            }
            if (auto source = implemented(info, IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE)) {
                const Doc d = docOf(source.get(), MEMBERID_NIL);
                line(L"Events (" + code(d.name) + L"): " + sentence(d.help));
                line();
                memberList(source.get(), true);
                line();
            }
        });
    }

    void enumerations() {
        lib_.forEachType(TKIND_ENUM, [&](ITypeInfo* info, const Doc& doc) {
            line(L"## " + doc.name);
            line();
            line(L"*Enumeration*. " + sentence(doc.help));
            line();
            line(L"| Value | Name | Meaning |");
            line(L"|---:|---|---|");
            TypeAttr attr(info);
            for (UINT i = 0; attr && i < attr->cVars; ++i) {
                VarDesc v(info, i);
                if (!v) continue;
                VARIANT n;
                VariantInit(&n);
                VariantChangeType(&n, v->lpvarValue, 0, VT_I4);
                const Doc d = docOf(info, v->memid);
                line(L"| " + enumValue(n.lVal) + L" | `" + d.name + L"` | " + markdown(d.help) + L" |");
            }
            line();
        });
    }

    void records() {
        lib_.forEachType(TKIND_RECORD, [&](ITypeInfo* info, const Doc& doc) {
            line(L"## " + doc.name);
            line();
            line(L"*Record*. " + sentence(doc.help));
            line();
            line(L"| Field | Type |");
            line(L"|---|---|");
            TypeAttr attr(info);
            for (UINT i = 0; attr && i < attr->cVars; ++i) {
                VarDesc v(info, i);
                if (!v) continue;
                line(L"| `" + docOf(info, v->memid).name + L"` | `" + lib_.typeName(info, v->elemdescVar.tdesc) + L"` |");
            }
            line();
        });
    }

    const Library& lib_;
    std::wstring out_;
};

// Every library, class, interface, member, enumeration, value and record without a help
// string, one a line.
std::vector<std::wstring> missingHelp(const Library& lib) {
    std::vector<std::wstring> missing;
    const Doc library = lib.doc();
    if (library.help.empty()) missing.push_back(L"library " + library.name);
    const auto members = [&](ITypeInfo* info, const std::wstring& owner) {
        for (const Member& m : membersOf(lib, info))
            for (const auto& h : m.helps)
                if (h.second.empty()) missing.push_back(L"member " + owner + L"." + m.name + L" (" + h.first + L")");
    };
    lib.forEachType(TKIND_COCLASS, [&](ITypeInfo*, const Doc& doc) {
        if (doc.help.empty()) missing.push_back(L"class " + doc.name);
    });
    // A dual interface is listed as a dispatch interface with its vtable side behind it.
    std::map<std::wstring, bool> seen;
    const auto interfaces = [&](ITypeInfo* info, const Doc& doc) {
        if (seen[doc.name]) return;
        seen[doc.name] = true;
        if (doc.help.empty()) missing.push_back(L"interface " + doc.name);
        members(vtableSide(ComPtr<ITypeInfo>(info)).get(), doc.name);
    };
    lib.forEachType(TKIND_DISPATCH, interfaces);
    lib.forEachType(TKIND_INTERFACE, interfaces);
    lib.forEachType(TKIND_ENUM, [&](ITypeInfo* info, const Doc& doc) {
        if (doc.help.empty()) missing.push_back(L"enumeration " + doc.name);
        TypeAttr attr(info);
        for (UINT i = 0; attr && i < attr->cVars; ++i) {
            VarDesc v(info, i);
            if (!v) continue;
            const Doc d = docOf(info, v->memid);
            if (d.help.empty()) missing.push_back(L"value " + doc.name + L"." + d.name);
        }
    });
    lib.forEachType(TKIND_RECORD, [&](ITypeInfo*, const Doc& doc) {
        if (doc.help.empty()) missing.push_back(L"record " + doc.name);
    });
    return missing;
}

int usage() {
    std::fputs("usage: vx_typelib_doc reference <library> <output.md>\n"
               "       vx_typelib_doc help-check <library>\n", stderr);
    return 2;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc < 3) return usage();
    const std::wstring mode = argv[1];
    if (!((mode == L"reference" && argc == 4) || (mode == L"help-check" && argc == 3))) return usage();
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    int rc = 0;
    {
        ComPtr<ITypeLib> loaded;
        const HRESULT hr = LoadTypeLibEx(argv[2], REGKIND_NONE, loaded.put());
        if (FAILED(hr)) {
            std::fprintf(stderr, "%s: no type library (0x%08lX)\n", utf8(argv[2]).c_str(), static_cast<unsigned long>(hr));
            CoUninitialize();
            return 1;
        }
        const Library lib(loaded);
        if (mode == L"reference") {
            const std::string text = utf8(Writer(lib).write());
            FILE* out = _wfopen(argv[3], L"wb");
            if (!out || std::fwrite(text.data(), 1, text.size(), out) != text.size() || std::fclose(out) != 0) {
                std::fprintf(stderr, "%s: cannot write\n", utf8(argv[3]).c_str());
                rc = 1;
            }
        } else {
            const std::vector<std::wstring> missing = missingHelp(lib);
            for (const std::wstring& m : missing) std::printf("no help string: %s\n", utf8(m).c_str());
            if (!missing.empty()) {
                std::printf("%u item(s) of the type library have no help string: give each a helpstring(...) in the IDL\n",
                            static_cast<unsigned>(missing.size()));
                rc = 1;
            } else {
                std::printf("every item of the type library has a help string\n");
            }
        }
    }
    CoUninitialize();
    return rc;
}
