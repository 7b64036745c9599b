// Ds_XML with what a script cannot reach: which DOM versions are tried and in what order
// (through the binding seam), the message box of ShowErrNodeSelect (through the box
// seam), the DOM's own parse error behind the error properties, nodes of other documents,
// and the type library's reference to MSXML 6's node interface. The rest is checked from
// a host (tests/host/xml.vbs).
#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Services.h"
#include "text/XML.h"

#include "FakeDispatch.h"
#include "TestSupport.h"
#include "Vx_Main.h"

#include <msxml2.h>

#include <string>
#include <vector>

using namespace vx;
using vxtest::call;
using vxtest::textOf;

namespace {

Variant text(const wchar_t* s) { return Variant::fromText(s); }

// Stands in for a DOM that refuses the XPath selection language: it names no members,
// but hands out the real document's interfaces.
class NoXPath : public vxtest::Counted<IDispatch> {
public:
    explicit NoXPath(IDispatch* real) : real_(real) {}
    // Its own IUnknown and IDispatch; every other interface is the real document's.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch)) return Counted::QueryInterface(iid, out);
        return real_->QueryInterface(iid, out);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override { return *n = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return DISP_E_MEMBERNOTFOUND;
    }

private:
    ~NoXPath() override = default;
    ComPtr<IDispatch> real_;
};

// A binding seam that records the names asked for and refuses those listed; refuseXPath
// names hand out a DOM that cannot take XPath.
struct Binding {
    std::vector<std::wstring> asked;
    std::vector<std::wstring> refused;
    std::vector<std::wstring> refuseXPath;

    BindingService service() {
        BindingService s = vx::service<BindingService>();
        auto real = s.createObject;
        s.createObject = [this, real](const std::wstring& name, IDispatch** out) -> HRESULT {
            asked.push_back(name);
            for (const auto& r : refused)
                if (r == name) return REGDB_E_CLASSNOTREG;
            HRESULT hr = real(name, out);
            for (const auto& r : refuseXPath)
                if (r == name && SUCCEEDED(hr)) {
                    IDispatch* dom = *out;
                    *out = new NoXPath(dom);
                    dom->Release();
                }
            return hr;
        };
        return s;
    }
};

const std::vector<std::wstring> kVersions{L"msxml2.DOMDocument.2.6", L"Msxml2.DOMDocument.3.0", L"Msxml2.DOMDocument.6.0",
                                          L"Msxml2.DOMDocument.4.0"};

}  // namespace

TEST(XML, TheDomIsTheFirstVersionThatTakesXPath) {
    {
        Binding binding;
        ReplaceService<BindingService> using_(binding.service());
        auto x = vxtest::createObject(CLSID_Ds_XML);
        EXPECT_TRUE(binding.asked.empty());  // not before it is needed
        EXPECT_EQ(textOf(vxtest::get(x.get(), L"DOMVersion").value), kVersions[0]);
        EXPECT_EQ(binding.asked, (std::vector<std::wstring>{kVersions[0]}));
    }
    {
        // 2.6 missing, 3.0 without XPath: the next one serves, and serves queries as XPath.
        Binding binding;
        binding.refused = {kVersions[0]};
        binding.refuseXPath = {kVersions[1]};
        ReplaceService<BindingService> using_(binding.service());
        auto x = vxtest::createObject(CLSID_Ds_XML);
        ASSERT_TRUE(toBool(*call(x.get(), L"LoadXML", {text(L"<a><b>1</b><b>2</b></a>")}).value));
        EXPECT_EQ(textOf(vxtest::get(x.get(), L"DOMVersion").value), kVersions[2]);
        EXPECT_EQ(binding.asked, (std::vector<std::wstring>(kVersions.begin(), kVersions.begin() + 3)));
        EXPECT_EQ(textOf(call(x.get(), L"GetNodeText", {text(L"/a/b[last()]")}).value), L"2");
    }
    {
        Binding binding;
        binding.refused = kVersions;
        ReplaceService<BindingService> using_(binding.service());
        auto x = vxtest::createObject(CLSID_Ds_XML);
        EXPECT_EQ(call(x.get(), L"LoadXML", {text(L"<a/>")}).errorNumber(), 429);
        EXPECT_EQ(binding.asked, kVersions);
        EXPECT_EQ(vxtest::get(x.get(), L"DOMVersion").errorNumber(), 429);  // each call tries again
        EXPECT_EQ(vxtest::get(x.get(), L"ErrorCode").errorNumber(), 0);  // what needs no DOM still answers
    }
}

TEST(XML, FailuresShowABoxOnlyWhenSwitchedOn) {
    std::vector<std::pair<std::wstring, std::wstring>> boxes;
    std::vector<UINT> styles;
    auto fake = service<MessageBoxService>();
    fake.show = [&](const std::wstring& t, const std::wstring& title, UINT style) {
        boxes.emplace_back(title, t);
        styles.push_back(style);
        return IDOK;
    };
    ReplaceService<MessageBoxService> using_(fake);
    auto x = vxtest::createObject(CLSID_Ds_XML);
    ASSERT_TRUE(toBool(*call(x.get(), L"LoadXML", {text(L"<a/>")}).value));
    EXPECT_EQ(vxtest::longOf(call(x.get(), L"CountNodes", {text(L"/a[")}).value), 0);
    EXPECT_TRUE(boxes.empty());
    ASSERT_EQ(vxtest::put(x.get(), L"ShowErrNodeSelect", Variant::fromBool(true)).errorNumber(), 0);
    EXPECT_TRUE(toBool(*vxtest::get(x.get(), L"ShowErrNodeSelect").value));
    EXPECT_EQ(textOf(call(x.get(), L"GetNodeText", {text(L"/a[")}).value), L"");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].first, L"Ds_XML");
    EXPECT_EQ(styles[0], 16u);  // OK only, stop icon
    const std::wstring code = std::to_wstring(vxtest::longOf(vxtest::get(x.get(), L"ErrorCode").value));
    const std::wstring reason = textOf(vxtest::get(x.get(), L"ErrorReason").value);
    EXPECT_NE(code, L"0");
    EXPECT_EQ(boxes[0].second, L"Error Code : " + code + L"\r\nError Reason : " + reason +
                                   L"\r\nError Description XML : /a[");
    // A failed load shows one too; a success clears the error properties.
    EXPECT_FALSE(toBool(*call(x.get(), L"LoadXML", {text(L"<a><b></a>")}).value));
    EXPECT_EQ(boxes.size(), 2u);
    EXPECT_TRUE(toBool(*call(x.get(), L"LoadXML", {text(L"<a/>")}).value));
    EXPECT_EQ(vxtest::longOf(vxtest::get(x.get(), L"ErrorCode").value), 0);
    EXPECT_EQ(textOf(vxtest::get(x.get(), L"ErrorReason").value), L"");
}

TEST(XML, ErrorPropertiesAreTheDomsParseError) {
    auto x = vxtest::createObject(CLSID_Ds_XML);
    EXPECT_FALSE(toBool(*call(x.get(), L"LoadXML", {text(L"<a>\n  <b>\n</a>")}).value));
    ComPtr<IDispatch> document = vxtest::objectOf(vxtest::get(x.get(), L"Document").value);
    ComPtr<IXMLDOMDocument> dom;
    ASSERT_TRUE(document);
    document->QueryInterface(IID_IXMLDOMDocument, reinterpret_cast<void**>(dom.put()));
    ASSERT_TRUE(dom);
    ComPtr<IXMLDOMParseError> error;
    ASSERT_EQ(dom->get_parseError(error.put()), S_OK);
    LONG code = 0, line = 0, position = 0;
    error->get_errorCode(&code);
    error->get_line(&line);
    error->get_linepos(&position);
    EXPECT_NE(code, 0);
    EXPECT_EQ(vxtest::longOf(vxtest::get(x.get(), L"ErrorCode").value), code);
    EXPECT_EQ(vxtest::longOf(vxtest::get(x.get(), L"ErrorLine").value), line);
    EXPECT_EQ(vxtest::longOf(vxtest::get(x.get(), L"ErrorPosition").value), position);
    EXPECT_NE(textOf(vxtest::get(x.get(), L"ErrorReason").value), L"");
}

TEST(XML, NodesOfOtherDocumentsAndNewRoots) {
    auto x = vxtest::createObject(CLSID_Ds_XML);
    auto y = vxtest::createObject(CLSID_Ds_XML);
    ASSERT_TRUE(toBool(*call(x.get(), L"LoadXML", {text(L"<a><b>1</b></a>")}).value));
    ComPtr<IDispatch> b = vxtest::objectOf(call(x.get(), L"SelectNode", {text(L"/a/b")}).value);
    ASSERT_TRUE(b);
    // y changes x's node, and adds to it from x's own document.
    EXPECT_TRUE(toBool(*call(y.get(), L"SetNodeText", {Variant::fromDispatch(b.get()), text(L"2")}).value));
    EXPECT_TRUE(vxtest::objectOf(call(y.get(), L"AddNode", {Variant::fromDispatch(b.get()), text(L"c")}).value));
    EXPECT_EQ(vxtest::longOf(call(x.get(), L"CountNodes", {text(L"/a/b/c")}).value), 1);
    EXPECT_EQ(textOf(call(x.get(), L"GetNodeText", {text(L"/a/b")}).value), L"2");
    // An empty document takes a root; a second root is refused.
    EXPECT_FALSE(vxtest::objectOf(vxtest::get(y.get(), L"Root").value));
    EXPECT_TRUE(vxtest::objectOf(call(y.get(), L"AddNode", {text(L"/"), text(L"root")}).value));
    EXPECT_FALSE(vxtest::objectOf(call(y.get(), L"AddNode", {text(L"/"), text(L"other")}).value));
    EXPECT_EQ(vxtest::longOf(call(y.get(), L"CountNodes", {text(L"/root")}).value), 1);
    // Objects that are not nodes.
    EXPECT_EQ(call(y.get(), L"GetNodeText", {Variant::fromDispatch(x.get())}).errorNumber(), 13);
    EXPECT_EQ(call(y.get(), L"SelectNode", {text(L"*"), Variant::fromDispatch(x.get())}).errorNumber(), 13);
    EXPECT_EQ(call(y.get(), L"GetNodeText", {Variant::fromDispatch(nullptr)}).errorNumber(), 91);
    // A typed object variable passed by reference: a node, or Nothing.
    auto byRef = [](IDispatch** variable) {
        VARIANT v;
        VariantInit(&v);
        V_VT(&v) = VT_DISPATCH | VT_BYREF;
        V_DISPATCHREF(&v) = variable;
        return Variant::take(v);
    };
    IDispatch* node = b.get();
    IDispatch* nothing = nullptr;
    EXPECT_EQ(textOf(call(y.get(), L"GetNodeText", {byRef(&node)}).value), L"2");
    EXPECT_EQ(call(y.get(), L"GetNodeText", {byRef(&nothing)}).errorNumber(), 91);
    EXPECT_EQ(vxtest::longOf(call(x.get(), L"CountNodes", {text(L"b"), byRef(&nothing)}).value), 0);
    EXPECT_EQ(vxtest::longOf(call(x.get(), L"CountNodes", {text(L"/a/b"), byRef(&nothing)}).value), 1);
}

TEST(TypeLibrary, XmlNodesAreMsxml6sAndNewMembersHaveHelp) {
    // Root returns IXMLDOMNode, as MSXML 6's type library (registered by msxml6.dll) has it.
    ComPtr<ITypeInfo> xml = ComPtr<ITypeInfo>::adopt(typeInfoOf(IID__Ds_XML));
    ASSERT_TRUE(xml);
    HREFTYPE vtable = 0;
    ComPtr<ITypeInfo> dual;
    if (SUCCEEDED(xml->GetRefTypeOfImplType(-1, &vtable))) xml->GetRefTypeInfo(vtable, dual.put());
    ITypeInfo* info = dual ? dual.get() : xml.get();
    TYPEATTR* attr = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attr), S_OK);
    bool found = false;
    for (UINT i = 0; i < attr->cFuncs; ++i) {
        FUNCDESC* fd = nullptr;
        info->GetFuncDesc(i, &fd);
        Bstr name;
        info->GetDocumentation(fd->memid, name.put(), nullptr, nullptr, nullptr);
        if (name.str() == L"Root" && fd->invkind == INVOKE_PROPERTYGET) {
            const TYPEDESC* type = &fd->elemdescFunc.tdesc;
            if (fd->cParams) type = &fd->lprgelemdescParam[fd->cParams - 1].tdesc;  // the vtable's [out, retval]
            while (type->vt == VT_PTR) type = type->lptdesc;
            ASSERT_EQ(type->vt, VT_USERDEFINED);
            ComPtr<ITypeInfo> node;
            ASSERT_EQ(info->GetRefTypeInfo(type->hreftype, node.put()), S_OK);
            Bstr nodeName;
            node->GetDocumentation(MEMBERID_NIL, nodeName.put(), nullptr, nullptr, nullptr);
            EXPECT_EQ(nodeName.str(), L"IXMLDOMNode");
            ComPtr<ITypeLib> library;
            UINT index = 0;
            ASSERT_EQ(node->GetContainingTypeLib(library.put(), &index), S_OK);
            TLIBATTR* lib = nullptr;
            library->GetLibAttr(&lib);
            EXPECT_TRUE(IsEqualGUID(lib->guid, GUID{0xF5078F18, 0xC551, 0x11D3, {0x89, 0xB9, 0x00, 0x00, 0xF8, 0x1F, 0xE2, 0x21}}));
            EXPECT_EQ(lib->wMajorVerNum, 6);
            library->ReleaseTLibAttr(lib);
            found = true;
        }
        info->ReleaseFuncDesc(fd);
    }
    info->ReleaseTypeAttr(attr);
    EXPECT_TRUE(found);

    // Every member of Ds_XML and every further member of Ds_MyVaribleFunction documents itself.
    auto helpless = [](REFIID iid, MEMBERID from) {
        std::vector<std::wstring> missing;
        ComPtr<ITypeInfo> ti = ComPtr<ITypeInfo>::adopt(typeInfoOf(iid));
        TYPEATTR* a = nullptr;
        ti->GetTypeAttr(&a);
        for (UINT i = 0; i < a->cFuncs; ++i) {
            FUNCDESC* fd = nullptr;
            ti->GetFuncDesc(i, &fd);
            Bstr name, help;
            ti->GetDocumentation(fd->memid, name.put(), help.put(), nullptr, nullptr);
            const LONG family = fd->memid >> 16;
            const bool ours = family == 0x6003 || family == 0x6803 || family == 0x4003;
            if (ours && fd->memid >= from && help.length() == 0) missing.push_back(name.str());
            ti->ReleaseFuncDesc(fd);
        }
        ti->ReleaseTypeAttr(a);
        return missing;
    };
    EXPECT_EQ(helpless(IID__Ds_XML, 0), std::vector<std::wstring>{});
    EXPECT_EQ(helpless(IID__Ds_MyVaribleFunction, 0), std::vector<std::wstring>{});
    // So do the two interfaces and the enumerations their members take.
    for (const wchar_t* name : {L"_Ds_XML", L"_Ds_MyVaribleFunction", L"Falg_SetNodeItem", L"SetSortType"}) {
        std::wstring search(name);
        ITypeInfo* found = nullptr;
        MEMBERID id = 0;
        USHORT count = 1;
        ASSERT_EQ(typeLibrary()->FindName(&search[0], 0, &found, &id, &count), S_OK);
        ASSERT_EQ(count, 1) << textOf(Variant::fromText(name));
        ComPtr<ITypeInfo> ti = ComPtr<ITypeInfo>::adopt(found);
        Bstr help;
        ti->GetDocumentation(MEMBERID_NIL, nullptr, help.put(), nullptr, nullptr);
        EXPECT_GT(help.length(), 0u) << textOf(Variant::fromText(name));
    }
}

TEST(XML, NamesHoldingANulNameNoFile) {
    // The system would read such a name only up to the NUL: neither written nor read.
    wchar_t folder[MAX_PATH], current[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    GetCurrentDirectoryW(MAX_PATH, current);
    SetCurrentDirectoryW(folder);
    DeleteFileW(L"vxnul");
    auto x = vxtest::createObject(CLSID_Ds_XML);
    ASSERT_TRUE(toBool(*call(x.get(), L"LoadXML", {text(L"<a/>")}).value));
    const Variant name = Variant::fromText(std::wstring(L"vxnul\0.xml", 10));
    EXPECT_FALSE(toBool(*call(x.get(), L"SaveFile", {name}).value));
    EXPECT_EQ(GetFileAttributesW(L"vxnul"), INVALID_FILE_ATTRIBUTES);
    ASSERT_TRUE(toBool(*call(x.get(), L"SaveFile", {text(L"vxnul")}).value));
    EXPECT_FALSE(toBool(*call(x.get(), L"LoadFile", {name}).value));
    EXPECT_NE(vxtest::longOf(vxtest::get(x.get(), L"ErrorCode").value), 0);
    DeleteFileW(L"vxnul");
    SetCurrentDirectoryW(current);
}
