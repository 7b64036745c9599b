// What a type-library reader sees: the enumerations, the records (lying where this
// build's code reads them), the classes with their instancing, and the dispatch
// identifiers, optional parameters and defaults. Each word size runs these tests.
#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/Convert.h"
#include "core/server/Roster.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <cstddef>
#include <map>
#include <set>

using namespace vx;

namespace {

ComPtr<ITypeInfo> infoByName(const wchar_t* name) {
    ITypeLib* tl = typeLibrary();
    ComPtr<ITypeInfo> found;
    for (UINT i = 0; tl && i < tl->GetTypeInfoCount(); ++i) {
        BSTR n = nullptr;
        tl->GetDocumentation(static_cast<INT>(i), &n, nullptr, nullptr, nullptr);
        const bool match = n && std::wstring(n) == name;
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

std::wstring nameOf(ITypeInfo* ti, MEMBERID id) {
    BSTR n = nullptr;
    UINT got = 0;
    ti->GetNames(id, &n, 1, &got);
    std::wstring r = n ? n : L"";
    SysFreeString(n);
    return r;
}

std::wstring helpOf(ITypeInfo* ti, MEMBERID id) {
    BSTR doc = nullptr;
    ti->GetDocumentation(id, nullptr, &doc, nullptr, nullptr);
    std::wstring r = doc ? doc : L"";
    SysFreeString(doc);
    return r;
}

// The variables of a type: an enumeration's members with their values, or a record's
// fields with their offsets (and types, and the record's size).
struct Variables {
    ULONG size = 0;
    std::map<std::wstring, long> values;
    std::map<std::wstring, VARTYPE> types;
};
Variables variablesOf(const wchar_t* name) {
    Variables v;
    auto ti = infoByName(name);
    if (!ti) return v;
    Attr attr(ti.get());
    v.size = attr->cbSizeInstance;
    for (UINT i = 0; i < attr->cVars; ++i) {
        VARDESC* vd = nullptr;
        ti->GetVarDesc(i, &vd);
        const std::wstring n = nameOf(ti.get(), vd->memid);
        v.values[n] = attr->typekind == TKIND_ENUM ? toInt32(*vd->lpvarValue) : static_cast<long>(vd->oInst);
        v.types[n] = vd->elemdescVar.tdesc.vt;
        ti->ReleaseVarDesc(vd);
    }
    return v;
}

// The vtable side of a dual interface: its own members, in slot order.
ComPtr<ITypeInfo> vtableInfo(REFIID iid) {
    ComPtr<ITypeInfo> ti = ComPtr<ITypeInfo>::adopt(typeInfoOf(iid)), vt;
    HREFTYPE href = 0;
    if (ti && SUCCEEDED(ti->GetRefTypeOfImplType(static_cast<UINT>(-1), &href)) &&
        SUCCEEDED(ti->GetRefTypeInfo(href, vt.put())))
        return vt;
    return ti;
}

struct Slot {
    std::wstring name;
    MEMBERID id;
    INVOKEKIND kind;
    bool operator==(const Slot& o) const { return name == o.name && id == o.id && kind == o.kind; }
};
std::ostream& operator<<(std::ostream& out, const Slot& s) {
    return out << std::string(s.name.begin(), s.name.end()) << std::hex << " 0x" << s.id << " kind " << s.kind;
}

std::vector<Slot> slotsOf(REFIID iid) {
    std::vector<Slot> out;
    auto ti = vtableInfo(iid);
    if (!ti) return out;
    Attr attr(ti.get());
    for (UINT i = 0; i < attr->cFuncs; ++i) {
        FUNCDESC* fd = nullptr;
        ti->GetFuncDesc(i, &fd);
        out.push_back({nameOf(ti.get(), fd->memid), fd->memid, fd->invkind});
        ti->ReleaseFuncDesc(fd);
    }
    return out;
}

}  // namespace

TEST(TypeLibrary, EveryEnumerationWithItsMembers) {
    // Every enumeration by its exact name (misspellings included) with its member count,
    // and a member with its value where one stands for the table.
    const struct { const wchar_t* name; size_t count; const wchar_t* member; long value; } expected[] = {
        {L"CallType", 2, L"nWrite", 2}, {L"HKEY_Type", 7, L"DYN_DATA", static_cast<long>(0x80000006u)},
        {L"Reg_Type", 10, L"REG_RESOURCE_LIST", 8}, {L"Flag_AttributePrinter", 9, L"PRINTER_ALL_ACCESS", 983052},
        {L"Flag_TypeDate", 2, L"GoMiladyDate", 2}, {L"SetSortType", 2, L"Descending", 2},
        {L"Type_IsEquate", 7, L"GoFind", 7}, {L"Flag_PathClip", 6, L"EnumFirstToLast", 6},
        {L"Flag_TypeButton", 7, L"WM_NCMBUTTONDBLCLK", 169}, {L"Flag_SendPostion", 9, L"HTBOTTOMRIGHT", 17},
        {L"Falg_SetNodeItem", 10, L"ItemNone", -1}, {L"Flag_TypeKeyShife", 3, L"KeyUp", 3},
        {L"Flag_TypeMouse", 5, nullptr, 0}, {L"Flag_NextWindows", 6, nullptr, 0}, {L"Flag_GetEnumCH", 4, nullptr, 0},
        {L"Flag_WindowsStyle", 2, L"WS_VISIBLE", 0x10000000}, {L"Flag_GetWindows", 2, L"GWL_STYLE", -16},
        {L"Flag_TypeSend", 6, L"F_SendMessageCallback", 5}, {L"Flag_TypeMaching", 4, L"dsSetSendText", 4},
        {L"Flag_WindowState", 3, L"wmMaximized", 2}, {L"Flag_ShowPostion", 21, L"SW_OtheRunZoom", 4},
        {L"Flag_TypeOutput", 5, L"Out_Both", 4}, {L"TypeClipboardFormats", 26, L"CF_RTF", -16639},
        {L"Flag_ShellRun", 28, L"ShellSHHelpShortcuts_RunDLL_FontsFolder", 33},
        {L"Flag_ShutDown", 3, L"EWX_REBOOT", 2}, {L"VOL_CONTROL", 7, L"Auxiliary", 6},
        {L"MUTE_CONTROL", 7, L"AUXILIARY_MUTE", 13}, {L"Flag_ATTRIBUTE", 14, nullptr, 0}, {L"Flag_FindCount", 2, L"SubAll", 2},
        {L"Flag_TypeReplace", 2, L"ConvertParamToPath", 2}, {L"Flag_SelectFind", 3, L"GoFolderFile", 3},
        {L"Flag_FileSystem", 3, L"GoAllFolder", 3}, {L"SHFlags", 4, L"FO_RENAME", 4},
        {L"Flags_Recycle", 13, L"FOF_NoWinAndo", 1616}, {L"Flag_GetXpPath", 17, L"GetMyDucoment", 9}};
    for (const auto& e : expected) {
        const auto members = variablesOf(e.name).values;
        EXPECT_EQ(members.size(), e.count) << e.name;
        if (e.member) {
            ASSERT_TRUE(members.count(e.member)) << e.member;
            EXPECT_EQ(members.at(e.member), e.value) << e.member;
        }
    }
}

TEST(TypeLibrary, EnumerationValuesCarryTheirOwnHelpStrings) {
    // A value's help string is put in after widl, from custom data the value carried: it
    // must land on that value (the library's first and last values, values between), and
    // the custom data must be gone.
    const struct { const wchar_t* enumeration; const wchar_t* member; const wchar_t* begins; } expected[] = {
        {L"Flag_TypeDate", L"GoHejryDate", L"From a Miladi"}, {L"Flag_TypeDate", L"GoMiladyDate", L"From a Shamsi"},
        {L"HKEY_Type", L"CURRENT_USER", L"HKEY_CURRENT_USER:"}, {L"HKEY_Type", L"DYN_DATA", L"HKEY_DYN_DATA:"},
        {L"Flag_SelectNetworkType", L"SV_TYPE_ALL", L"Every type"}};
    for (const auto& e : expected) {
        auto ti = infoByName(e.enumeration);
        ASSERT_TRUE(ti) << e.enumeration;
        Attr attr(ti.get());
        bool found = false;
        for (UINT i = 0; i < attr->cVars; ++i) {
            VARDESC* vd = nullptr;
            ASSERT_EQ(ti->GetVarDesc(i, &vd), S_OK);
            const std::wstring text = helpOf(ti.get(), vd->memid);
            if (nameOf(ti.get(), vd->memid) == e.member) {
                found = true;
                EXPECT_EQ(text.rfind(e.begins, 0), 0u) << e.member;
            }
            ti->ReleaseVarDesc(vd);
            auto info2 = ti.query<ITypeInfo2>();
            ASSERT_TRUE(info2);
            CUSTDATA data{};
            ASSERT_EQ(info2->GetAllVarCustData(i, &data), S_OK);
            EXPECT_EQ(data.cCustData, 0u) << e.enumeration << " value " << i;
            ClearCustData(&data);
        }
        EXPECT_TRUE(found) << e.member;
    }
}

#define AT(type, field) {L## #field, static_cast<long>(offsetof(type, field))}

TEST(WordSize, RecordsLieWhereTheTypeLibrarySays) {
    // A host fills a record from the type library's description and hands it over by
    // reference: every field must lie where this build's code reads it.
    const struct { const wchar_t* name; size_t size; std::map<std::wstring, long> fields; } compiled[] = {
        {L"SYSTEMTIME", sizeof(Vx_SYSTEMTIME),
         {AT(Vx_SYSTEMTIME, wYear), AT(Vx_SYSTEMTIME, wMonth), AT(Vx_SYSTEMTIME, wDayOfWeek), AT(Vx_SYSTEMTIME, wDay),
          AT(Vx_SYSTEMTIME, wHour), AT(Vx_SYSTEMTIME, wMinute), AT(Vx_SYSTEMTIME, wSecond),
          AT(Vx_SYSTEMTIME, wMilliseconds)}},
        {L"MIXERCONTROL", sizeof(Vx_MIXERCONTROL),
         {AT(Vx_MIXERCONTROL, cbStruct), AT(Vx_MIXERCONTROL, dwControlID), AT(Vx_MIXERCONTROL, dwControlType),
          AT(Vx_MIXERCONTROL, fdwControl), AT(Vx_MIXERCONTROL, cMultipleItems), AT(Vx_MIXERCONTROL, szShortName),
          AT(Vx_MIXERCONTROL, szName), AT(Vx_MIXERCONTROL, lMinimum), AT(Vx_MIXERCONTROL, lMaximum),
          AT(Vx_MIXERCONTROL, Reserved)}},
        {L"POINTAPI", sizeof(Vx_POINTAPI), {AT(Vx_POINTAPI, x), AT(Vx_POINTAPI, y)}},
        {L"RECT", sizeof(Vx_RECT), {AT(Vx_RECT, left), AT(Vx_RECT, top), AT(Vx_RECT, right), AT(Vx_RECT, bottom)}},
        {L"PingOptions", sizeof(Vx_PingOptions),
         {AT(Vx_PingOptions, Ttl), AT(Vx_PingOptions, Tos), AT(Vx_PingOptions, Flags), AT(Vx_PingOptions, OptionsSize),
          AT(Vx_PingOptions, OptionsData)}},
        {L"GetPingInfo", sizeof(Vx_GetPingInfo),
         {AT(Vx_GetPingInfo, Address), AT(Vx_GetPingInfo, Status), AT(Vx_GetPingInfo, RoundTripTime),
          AT(Vx_GetPingInfo, DataSize), AT(Vx_GetPingInfo, DataPointer), AT(Vx_GetPingInfo, Options),
          AT(Vx_GetPingInfo, Data)}},
    };
    for (const auto& r : compiled) {
        const Variables described = variablesOf(r.name);
        EXPECT_EQ(described.size, r.size) << r.name;
        EXPECT_EQ(described.values, r.fields) << r.name;
    }
    // The fixed layouts themselves; on 64-bit the ping record's string is aligned to 8
    // behind the operating system's 28-byte echo reply.
    const Variables mixer = variablesOf(L"MIXERCONTROL");
    EXPECT_EQ(mixer.size, 152u);
    EXPECT_EQ(mixer.values.at(L"lMinimum"), 100);
    EXPECT_EQ(mixer.values.at(L"Reserved"), 108);
    EXPECT_EQ(mixer.types.at(L"szShortName"), VT_CARRAY);
    EXPECT_EQ(variablesOf(L"SYSTEMTIME").size, 16u);
    EXPECT_EQ(variablesOf(L"PingOptions").types.at(L"Ttl"), VT_UI1);
    const Variables ping = variablesOf(L"GetPingInfo");
    EXPECT_EQ(ping.values.at(L"Data"), sizeof(void*) == 8 ? 32 : 28);
    EXPECT_EQ(ping.types.at(L"Data"), VT_BSTR);
}

TEST(TypeLibrary, RosterAndCoclassesAgree) {
    // Every roster line names a coclass whose default interface its C++ class implements;
    // name and instancing are the coclass's.
    std::set<std::wstring> lines;
    for (const ClassEntry* c = rosterBegin(); c != rosterEnd(); ++c) {
        ComPtr<ITypeInfo> ti = ComPtr<ITypeInfo>::adopt(typeInfoOf(c->classId()));
        ASSERT_TRUE(ti) << "a roster line without a coclass: " << (c - rosterBegin());
        Attr attr(ti.get());
        ASSERT_EQ(attr->typekind, TKIND_COCLASS);
        HREFTYPE ref = 0;
        ComPtr<ITypeInfo> iface;
        ASSERT_EQ(ti->GetRefTypeOfImplType(0, &ref), S_OK);
        ASSERT_EQ(ti->GetRefTypeInfo(ref, iface.put()), S_OK);
        Attr ifaceAttr(iface.get());
        EXPECT_TRUE(IsEqualIID(ifaceAttr->guid, c->interfaceId())) << std::string(className(*c).begin(), className(*c).end());
        const WORD flags = attr->wTypeFlags & (TYPEFLAG_FAPPOBJECT | TYPEFLAG_FCANCREATE | TYPEFLAG_FPREDECLID);
        const Instancing instancing = instancingOf(*c);
        const WORD expected = instancing == Instancing::Global ? TYPEFLAG_FAPPOBJECT | TYPEFLAG_FCANCREATE | TYPEFLAG_FPREDECLID
                              : instancing == Instancing::Creatable ? TYPEFLAG_FCANCREATE : 0;
        EXPECT_EQ(flags, expected);
        EXPECT_TRUE(lines.insert(className(*c)).second) << "two lines for one class";
    }
    // Every coclass of the library has its line in the roster.
    ITypeLib* tl = typeLibrary();
    for (UINT i = 0; i < tl->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> ti;
        tl->GetTypeInfo(i, ti.put());
        Attr attr(ti.get());
        if (attr->typekind == TKIND_COCLASS) {
            EXPECT_TRUE(findClass(attr->guid)) << "coclass " << i << " has no roster line";
        }
    }
    // A sample of each instancing, as the coclasses declare it.
    auto line = [](REFCLSID clsid) { return *findClass(clsid); };
    EXPECT_EQ(instancingOf(line(CLSID_Ds_ListCollection)), Instancing::Global);
    EXPECT_EQ(instancingOf(line(CLSID_cRegKey)), Instancing::Dependent);
    EXPECT_EQ(className(line(CLSID_clsReg)), L"clsReg");
}

TEST(TypeLibrary, DispatchIdentifiersInInterfaceOrder) {
    // Early-bound hosts compile against these slots and identifiers.
    const INVOKEKIND F = INVOKE_FUNC, G = INVOKE_PROPERTYGET, L = INVOKE_PROPERTYPUT, S = INVOKE_PROPERTYPUTREF;
    EXPECT_EQ(slotsOf(IID__Ds_ListCollection),
              (std::vector<Slot>{{L"Add", 0x60030001, F}, {L"Item", 0x60030002, F}, {L"Remove", 0x60030003, F},
                                 {L"Count", 0x68030000, G}, {L"Clear", 0x60030006, F}}));
    EXPECT_EQ(slotsOf(IID__Ds_AlphaMoney),
              (std::vector<Slot>{{L"AlphaThousand", 0x68030003, G}, {L"AlphaThousand", 0x68030003, L},
                                 {L"AlphaMillion", 0x68030002, G}, {L"AlphaMillion", 0x68030002, L},
                                 {L"AlphaMilliard", 0x68030001, G}, {L"AlphaMilliard", 0x68030001, L},
                                 {L"AlphaAnd", 0x68030000, G}, {L"AlphaAnd", 0x68030000, L},
                                 {L"ConvertAlphaMoney", 0x60030005, F}}));
    EXPECT_EQ(slotsOf(IID__Ds_Calendar),
              (std::vector<Slot>{{L"ConvertDateFormat", 0x60030000, F}, {L"MiladyDate", 0x60030001, F},
                                 {L"CalendarShamsi", 0x60030005, F}, {L"ShamsiDate", 0x60030006, F}}));
    // The record: fields A to G, then K, then H, each with get, let and set.
    std::vector<Slot> record{{L"sKey", 0x40030000, G}, {L"sKey", 0x40030000, L}};
    MEMBERID id = 0x40030001;
    for (const wchar_t* v : {L"ValueA", L"ValueB", L"ValueC", L"ValueD", L"ValueE", L"ValueF", L"ValueG", L"ValueK",
                             L"ValueH"}) {
        for (INVOKEKIND k : {G, L, S}) record.push_back({v, id, k});
        ++id;
    }
    const auto slots = slotsOf(IID__Ds_DataCollection);
    ASSERT_EQ(slots.size(), record.size() + 3);
    EXPECT_EQ(std::vector<Slot>(slots.begin(), slots.begin() + record.size()), record);
    EXPECT_EQ(slots.back().name, L"Count");
}

TEST(TypeLibrary, AddParametersAreOptionalWithTheirDefaults) {
    auto list = vtableInfo(IID__Ds_ListCollection);
    FUNCDESC* fd = nullptr;
    ASSERT_EQ(list->GetFuncDesc(0, &fd), S_OK);  // ValueA required, sKey "", the rest optional Variants
    ASSERT_EQ(fd->cParams, 11);
    EXPECT_EQ(fd->lprgelemdescParam[0].paramdesc.wParamFlags & PARAMFLAG_FOPT, 0);
    const PARAMDESC& key = fd->lprgelemdescParam[1].paramdesc;
    ASSERT_TRUE(key.wParamFlags & PARAMFLAG_FHASDEFAULT);
    EXPECT_EQ(V_VT(&key.pparamdescex->varDefaultValue), VT_BSTR);
    EXPECT_EQ(SysStringLen(V_BSTR(&key.pparamdescex->varDefaultValue)), 0u);
    for (int i = 2; i < 10; ++i) {
        EXPECT_TRUE(fd->lprgelemdescParam[i].paramdesc.wParamFlags & PARAMFLAG_FOPT) << i;
        EXPECT_EQ(fd->lprgelemdescParam[i].tdesc.vt, VT_VARIANT) << i;
    }
    list->ReleaseFuncDesc(fd);
}

TEST(TypeLibrary, TheCachesKeepWhatWasReadButNoFailure) {
    // What the library, the interfaces' type infos and their call plans are kept in: a
    // failed first read (a library that could not be loaded yet) is tried again.
    static int* volatile slot = nullptr;
    int value = 7, other = 8, made = 0, discarded = 0;
    auto discard = [&](int*) { ++discarded; };
    EXPECT_EQ(keptOnceMade(slot, [&]() -> int* { ++made; return nullptr; }, discard), nullptr);
    EXPECT_EQ(keptOnceMade(slot, [&] { ++made; return &value; }, discard), &value);
    EXPECT_EQ(keptOnceMade(slot, [&] { ++made; return &other; }, discard), &value);
    EXPECT_EQ(made, 2);
    EXPECT_EQ(discarded, 0);
    // A value made meanwhile by another thread wins; the late one is discarded.
    static int* volatile raced = nullptr;
    EXPECT_EQ(keptOnceMade(raced, [&] { raced = &value; return &other; }, discard), &value);
    EXPECT_EQ(discarded, 1);
}
