// What a type-library reader sees: the enumerations, the records, the classes with their
// instancing, and the dispatch identifiers, optional parameters and defaults.
#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/Convert.h"
#include "core/server/Roster.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <map>

using namespace vx;

namespace {

ComPtr<ITypeInfo> infoByName(const wchar_t* name) {
    ITypeLib* tl = typeLibrary();
    ComPtr<ITypeInfo> found;
    if (!tl) return found;
    for (UINT i = 0; i < tl->GetTypeInfoCount(); ++i) {
        BSTR n = nullptr;
        tl->GetDocumentation(static_cast<INT>(i), &n, nullptr, nullptr, nullptr);
        bool match = n && std::wstring(n) == name;
        SysFreeString(n);
        if (match) {
            tl->GetTypeInfo(i, found.put());
            break;
        }
    }
    return found;
}

struct Attr {
    explicit Attr(ITypeInfo* ti) : ti_(ti) { ti_->GetTypeAttr(&a); }
    ~Attr() { ti_->ReleaseTypeAttr(a); }
    TYPEATTR* operator->() const { return a; }
    ITypeInfo* ti_;
    TYPEATTR* a = nullptr;
};

std::map<std::wstring, long> enumMembers(const wchar_t* name) {
    std::map<std::wstring, long> members;
    auto ti = infoByName(name);
    if (!ti) return members;
    Attr attr(ti.get());
    if (attr->typekind != TKIND_ENUM) return members;
    for (UINT i = 0; i < attr->cVars; ++i) {
        VARDESC* vd = nullptr;
        ti->GetVarDesc(i, &vd);
        BSTR n = nullptr;
        UINT got = 0;
        ti->GetNames(vd->memid, &n, 1, &got);
        members[n] = toInt32(*vd->lpvarValue);
        SysFreeString(n);
        ti->ReleaseVarDesc(vd);
    }
    return members;
}

// name -> (offset, variant type) of a record's fields, and its size.
std::map<std::wstring, std::pair<ULONG, VARTYPE>> recordFields(const wchar_t* name, ULONG& size) {
    std::map<std::wstring, std::pair<ULONG, VARTYPE>> fields;
    auto ti = infoByName(name);
    size = 0;
    if (!ti) return fields;
    Attr attr(ti.get());
    size = attr->cbSizeInstance;
    for (UINT i = 0; i < attr->cVars; ++i) {
        VARDESC* vd = nullptr;
        ti->GetVarDesc(i, &vd);
        BSTR n = nullptr;
        UINT got = 0;
        ti->GetNames(vd->memid, &n, 1, &got);
        fields[n] = {vd->oInst, vd->elemdescVar.tdesc.vt};
        SysFreeString(n);
        ti->ReleaseVarDesc(vd);
    }
    return fields;
}

}  // namespace

TEST(TypeLibrary, IsEmbeddedAndNamedVx_Main) {
    ITypeLib* tl = typeLibrary();
    ASSERT_TRUE(tl);
    BSTR name = nullptr;
    tl->GetDocumentation(-1, &name, nullptr, nullptr, nullptr);
    EXPECT_STREQ(name, L"Vx_Main");
    SysFreeString(name);
}

TEST(TypeLibrary, EnumerationsKeepTheirNamesAndValues) {
    // Spot checks across every subsystem, misspellings included.
    EXPECT_EQ(enumMembers(L"Flag_TypeDate"), (std::map<std::wstring, long>{{L"GoHejryDate", 1}, {L"GoMiladyDate", 2}}));
    EXPECT_EQ(enumMembers(L"Falg_SetNodeItem").at(L"ItemNone"), -1);
    EXPECT_EQ(enumMembers(L"Falg_SetNodeItem").at(L"Item8"), 8);
    EXPECT_EQ(enumMembers(L"Flag_TypeKeyShife").at(L"KeyUp"), 3);
    EXPECT_EQ(enumMembers(L"Flag_TypeMaching").at(L"dsSetSendText"), 4);
    EXPECT_EQ(enumMembers(L"Flag_ShowPostion").size(), 21u);
    EXPECT_EQ(enumMembers(L"Flag_ShowPostion").at(L"SW_OtheRunZoom"), 4);
    EXPECT_EQ(enumMembers(L"Flag_ShowPostion").at(L"SW_ShowDefault"), 10);
    EXPECT_EQ(enumMembers(L"TypeClipboardFormats").size(), 26u);
    EXPECT_EQ(enumMembers(L"TypeClipboardFormats").at(L"CF_RTF"), -16639);
    EXPECT_EQ(enumMembers(L"TypeClipboardFormats").at(L"CF_Link"), -16640);
    EXPECT_EQ(enumMembers(L"Flag_ShellRun").size(), 28u);
    EXPECT_EQ(enumMembers(L"Flag_ShellRun").at(L"ShellSHHelpShortcuts_RunDLL_FontsFolder"), 33);
    EXPECT_EQ(enumMembers(L"HKEY_Type").at(L"CLASSES_ROOT"), static_cast<long>(0x80000000u));
    EXPECT_EQ(enumMembers(L"HKEY_Type").at(L"DYN_DATA"), static_cast<long>(0x80000006u));
    EXPECT_EQ(enumMembers(L"Reg_Type").size(), 10u);
    EXPECT_EQ(enumMembers(L"Flags_Recycle").at(L"FOF_NoWinAndo"), 1616);
    EXPECT_EQ(enumMembers(L"Flag_GetXpPath").at(L"GetMyDucoment"), 9);
    EXPECT_EQ(enumMembers(L"Flag_ATTRIBUTE").size(), 14u);
    EXPECT_EQ(enumMembers(L"Flag_AttributePrinter").at(L"PRINTER_ALL_ACCESS"), 983052);
    EXPECT_EQ(enumMembers(L"MUTE_CONTROL").at(L"AUXILIARY_MUTE"), 13);
    EXPECT_EQ(enumMembers(L"VOL_CONTROL").at(L"Auxiliary"), 6);
    EXPECT_EQ(enumMembers(L"Flag_GetWindows").at(L"GWL_STYLE"), -16);
    EXPECT_EQ(enumMembers(L"Flag_TypeButton").at(L"WM_NCMBUTTONDBLCLK"), 169);
    EXPECT_EQ(enumMembers(L"Flag_SendPostion").at(L"HTBOTTOMRIGHT"), 17);
    EXPECT_EQ(enumMembers(L"Type_IsEquate").at(L"GoFind"), 7);
    EXPECT_EQ(enumMembers(L"Flag_PathClip").at(L"EnumFirstToLast"), 6);
    EXPECT_EQ(enumMembers(L"SetSortType").at(L"Descending"), 2);
    EXPECT_TRUE(enumMembers(L"Flag_SelectNetworkType").empty());  // not specified yet
}

TEST(TypeLibrary, EveryEnumerationIsPresent) {
    const std::map<std::wstring, size_t> expected = {
        {L"CallType", 2}, {L"HKEY_Type", 7}, {L"Reg_Type", 10}, {L"Flag_AttributePrinter", 9},
        {L"Flag_TypeDate", 2}, {L"SetSortType", 2}, {L"Type_IsEquate", 7}, {L"Flag_PathClip", 6},
        {L"Flag_TypeButton", 7}, {L"Flag_SendPostion", 9}, {L"Falg_SetNodeItem", 10}, {L"Flag_TypeKeyShife", 3},
        {L"Flag_TypeMouse", 5}, {L"Flag_NextWindows", 6}, {L"Flag_GetEnumCH", 4}, {L"Flag_WindowsStyle", 2},
        {L"Flag_GetWindows", 2}, {L"Flag_TypeSend", 6}, {L"Flag_TypeMaching", 4}, {L"Flag_WindowState", 3},
        {L"Flag_ShowPostion", 21}, {L"Flag_TypeOutput", 5}, {L"TypeClipboardFormats", 26}, {L"Flag_ShellRun", 28},
        {L"Flag_ShutDown", 3}, {L"VOL_CONTROL", 7}, {L"MUTE_CONTROL", 7}, {L"Flag_ATTRIBUTE", 14},
        {L"Flag_FindCount", 2}, {L"Flag_TypeReplace", 2}, {L"Flag_SelectFind", 3}, {L"Flag_FileSystem", 3},
        {L"SHFlags", 4}, {L"Flags_Recycle", 13}, {L"Flag_GetXpPath", 17}};
    for (const auto& [name, count] : expected) EXPECT_EQ(enumMembers(name.c_str()).size(), count) << name;
}

TEST(TypeLibrary, RecordsFieldByField) {
    ULONG size = 0;
    auto mixer = recordFields(L"MIXERCONTROL", size);
    EXPECT_EQ(size, 152u);
    EXPECT_EQ(mixer.at(L"lMinimum").first, 100u);
    EXPECT_EQ(mixer.at(L"szShortName").first, 20u);
    EXPECT_EQ(mixer.at(L"szShortName").second, VT_CARRAY);
    EXPECT_EQ(mixer.at(L"Reserved").first, 108u);
    auto st = recordFields(L"SYSTEMTIME", size);
    EXPECT_EQ(size, 16u);
    EXPECT_EQ(st.at(L"wDay").first, 6u);
    EXPECT_EQ(st.at(L"wYear").second, VT_I2);
    EXPECT_EQ(recordFields(L"POINTAPI", size).at(L"y").first, 4u);
    EXPECT_EQ(size, 8u);
    EXPECT_EQ(recordFields(L"RECT", size).at(L"bottom").first, 12u);
    auto ping = recordFields(L"PingOptions", size);
    EXPECT_EQ(size, 8u);
    EXPECT_EQ(ping.at(L"Ttl").second, VT_UI1);
    EXPECT_EQ(ping.at(L"OptionsData").first, 4u);
    auto info = recordFields(L"GetPingInfo", size);
    EXPECT_EQ(info.at(L"Options").first, 20u);
    EXPECT_EQ(info.at(L"Data").second, VT_BSTR);
}

TEST(TypeLibrary, ClassesCarryTheirInstancing) {
    for (const ClassEntry* c = rosterBegin(); c != rosterEnd(); ++c) {
        ComPtr<ITypeInfo> ti = ComPtr<ITypeInfo>::adopt(typeInfoOf(*c->clsid));
        ASSERT_TRUE(ti) << c->name;
        Attr attr(ti.get());
        EXPECT_EQ(attr->typekind, TKIND_COCLASS);
        const WORD flags = attr->wTypeFlags;
        switch (c->instancing) {
        case Instancing::Global:
            EXPECT_EQ(flags & (TYPEFLAG_FAPPOBJECT | TYPEFLAG_FCANCREATE | TYPEFLAG_FPREDECLID),
                      TYPEFLAG_FAPPOBJECT | TYPEFLAG_FCANCREATE | TYPEFLAG_FPREDECLID)
                << c->name;
            break;
        case Instancing::Creatable:
            EXPECT_EQ(flags & (TYPEFLAG_FAPPOBJECT | TYPEFLAG_FCANCREATE), TYPEFLAG_FCANCREATE) << c->name;
            break;
        case Instancing::Dependent:
            EXPECT_EQ(flags & (TYPEFLAG_FAPPOBJECT | TYPEFLAG_FCANCREATE), 0) << c->name;
            break;
        }
    }
    // Every coclass of the library has its line in the roster.
    ITypeLib* tl = typeLibrary();
    for (UINT i = 0; i < tl->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> ti;
        tl->GetTypeInfo(i, ti.put());
        Attr attr(ti.get());
        if (attr->typekind == TKIND_COCLASS) {
            EXPECT_TRUE(findClass(attr->guid)) << "coclass " << i;
        }
    }
}

namespace {

struct Member {
    std::wstring name;
    MEMBERID id;
    INVOKEKIND kind;
};

// The vtable side of a dual interface: its own members, in slot order.
ComPtr<ITypeInfo> vtableInfo(const wchar_t* interfaceName) {
    auto ti = infoByName(interfaceName);
    if (!ti) return ti;
    HREFTYPE href = 0;
    ComPtr<ITypeInfo> vt;
    if (SUCCEEDED(ti->GetRefTypeOfImplType(static_cast<UINT>(-1), &href)) && SUCCEEDED(ti->GetRefTypeInfo(href, vt.put())))
        return vt;
    return ti;
}

std::vector<Member> members(const wchar_t* interfaceName) {
    std::vector<Member> out;
    auto ti = vtableInfo(interfaceName);
    if (!ti) return out;
    Attr attr(ti.get());
    for (UINT i = 0; i < attr->cFuncs; ++i) {
        FUNCDESC* fd = nullptr;
        ti->GetFuncDesc(i, &fd);
        BSTR n = nullptr;
        UINT got = 0;
        ti->GetNames(fd->memid, &n, 1, &got);
        out.push_back({n, fd->memid, fd->invkind});
        SysFreeString(n);
        ti->ReleaseFuncDesc(fd);
    }
    return out;
}

}  // namespace

TEST(TypeLibrary, ListCollectionDispatchIdentifiers) {
    auto m = members(L"_Ds_ListCollection");
    ASSERT_EQ(m.size(), 5u);
    EXPECT_EQ(m[0].name, L"Add");
    EXPECT_EQ(m[0].id, 0x60030001);
    EXPECT_EQ(m[1].name, L"Item");
    EXPECT_EQ(m[1].id, 0x60030002);
    EXPECT_EQ(m[2].name, L"Remove");
    EXPECT_EQ(m[2].id, 0x60030003);
    EXPECT_EQ(m[3].name, L"Count");
    EXPECT_EQ(m[3].id, 0x68030000);
    EXPECT_EQ(m[3].kind, INVOKE_PROPERTYGET);
    EXPECT_EQ(m[4].name, L"Clear");
    EXPECT_EQ(m[4].id, 0x60030006);
}

TEST(TypeLibrary, AddParametersAreOptionalWithTheirDefaults) {
    auto ti = vtableInfo(L"_Ds_ListCollection");
    ASSERT_TRUE(ti);
    FUNCDESC* fd = nullptr;
    ti->GetFuncDesc(0, &fd);
    ASSERT_EQ(fd->cParams, 11);  // ten inputs and the result
    EXPECT_EQ(fd->lprgelemdescParam[0].paramdesc.wParamFlags & PARAMFLAG_FOPT, 0);
    const PARAMDESC& key = fd->lprgelemdescParam[1].paramdesc;
    EXPECT_TRUE(key.wParamFlags & PARAMFLAG_FOPT);
    ASSERT_TRUE(key.wParamFlags & PARAMFLAG_FHASDEFAULT);
    EXPECT_EQ(V_VT(&key.pparamdescex->varDefaultValue), VT_BSTR);
    EXPECT_EQ(SysStringLen(V_BSTR(&key.pparamdescex->varDefaultValue)), 0u);
    for (int i = 2; i < 10; ++i) {
        EXPECT_TRUE(fd->lprgelemdescParam[i].paramdesc.wParamFlags & PARAMFLAG_FOPT) << i;
        EXPECT_EQ(fd->lprgelemdescParam[i].tdesc.vt, VT_VARIANT) << i;
    }
    ti->ReleaseFuncDesc(fd);
    // Item takes its index by reference.
    ti->GetFuncDesc(1, &fd);
    EXPECT_EQ(fd->lprgelemdescParam[0].tdesc.vt, VT_PTR);
    EXPECT_EQ(fd->lprgelemdescParam[0].paramdesc.wParamFlags & (PARAMFLAG_FIN | PARAMFLAG_FOUT),
              PARAMFLAG_FIN | PARAMFLAG_FOUT);
    ti->ReleaseFuncDesc(fd);
}

TEST(TypeLibrary, DataCollectionMembersInInterfaceOrder) {
    auto m = members(L"_Ds_DataCollection");
    std::vector<std::wstring> names;
    for (const auto& x : m) names.push_back(x.name);
    std::vector<std::wstring> expected = {L"sKey", L"sKey"};
    for (const wchar_t* v : {L"ValueA", L"ValueB", L"ValueC", L"ValueD", L"ValueE", L"ValueF", L"ValueG", L"ValueK",
                             L"ValueH"})
        for (int i = 0; i < 3; ++i) expected.push_back(v);
    expected.insert(expected.end(), {L"AddItem", L"AddItem", L"Count"});
    EXPECT_EQ(names, expected);
    EXPECT_EQ(m[2].kind, INVOKE_PROPERTYGET);
    EXPECT_EQ(m[3].kind, INVOKE_PROPERTYPUT);
    EXPECT_EQ(m[4].kind, INVOKE_PROPERTYPUTREF);
    EXPECT_EQ(m[2].id, 0x40030001);   // ValueA
    EXPECT_EQ(m[23].id, 0x40030008);  // ValueK comes before ValueH
    EXPECT_EQ(m[23].name, L"ValueK");
}

TEST(TypeLibrary, InterfacesAreDualAndNonextensible) {
    for (const wchar_t* name : {L"_Ds_ListCollection", L"_Ds_DataCollection"}) {
        auto ti = infoByName(name);
        ASSERT_TRUE(ti) << name;
        Attr attr(ti.get());
        EXPECT_TRUE(attr->wTypeFlags & TYPEFLAG_FDUAL) << name;
        EXPECT_TRUE(attr->wTypeFlags & TYPEFLAG_FNONEXTENSIBLE) << name;
        auto vt = vtableInfo(name);
        Attr vtAttr(vt.get());
        EXPECT_EQ(vtAttr->typekind, TKIND_INTERFACE) << name;
        EXPECT_TRUE(vtAttr->wTypeFlags & TYPEFLAG_FOLEAUTOMATION) << name;
    }
}
