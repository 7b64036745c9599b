// The library is built for 32-bit and for 64-bit hosts, and each build runs these tests.
// The type library must describe the build it is embedded in, and every record a host
// sees through it must lie in memory exactly where the library's code reads its fields:
// a host fills a record from the type library's description and hands it over by
// reference.
#include "core/dispatch/TypeLibrary.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <cstddef>
#include <map>
#include <string>

using namespace vx;

namespace {

ComPtr<ITypeInfo> recordInfo(const wchar_t* name) {
    ComPtr<ITypeInfo> found;
    ITypeLib* tl = typeLibrary();
    if (!tl) return found;
    for (UINT i = 0; i < tl->GetTypeInfoCount(); ++i) {
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

struct Layout {
    size_t size = 0;
    std::map<std::wstring, size_t> offsets;
    bool operator==(const Layout& o) const { return size == o.size && offsets == o.offsets; }
};

std::ostream& operator<<(std::ostream& out, const Layout& l) {
    out << l.size << " bytes {";
    for (const auto& [name, offset] : l.offsets) out << ' ' << std::string(name.begin(), name.end()) << '@' << offset;
    return out << " }";
}

// A record as the type library describes it.
Layout described(const wchar_t* name) {
    Layout l;
    ComPtr<ITypeInfo> ti = recordInfo(name);
    if (!ti) return l;
    TYPEATTR* attr = nullptr;
    if (FAILED(ti->GetTypeAttr(&attr))) return l;
    l.size = attr->cbSizeInstance;
    for (UINT i = 0; i < attr->cVars; ++i) {
        VARDESC* vd = nullptr;
        if (FAILED(ti->GetVarDesc(i, &vd))) continue;
        BSTR n = nullptr;
        UINT got = 0;
        ti->GetNames(vd->memid, &n, 1, &got);
        if (n) l.offsets[n] = vd->oInst;
        SysFreeString(n);
        ti->ReleaseVarDesc(vd);
    }
    ti->ReleaseTypeAttr(attr);
    return l;
}

#define AT(type, field) {L## #field, offsetof(type, field)}

}  // namespace

TEST(WordSize, TypeLibraryDescribesThisBuild) {
    ITypeLib* tl = typeLibrary();
    ASSERT_TRUE(tl);
    TLIBATTR* attr = nullptr;
    ASSERT_EQ(tl->GetLibAttr(&attr), S_OK);
    EXPECT_EQ(attr->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
    tl->ReleaseTLibAttr(attr);
}

TEST(WordSize, RecordsLieWhereTheTypeLibrarySays) {
    const std::map<std::wstring, Layout> compiled = {
        {L"SYSTEMTIME",
         {sizeof(Vx_SYSTEMTIME),
          {AT(Vx_SYSTEMTIME, wYear), AT(Vx_SYSTEMTIME, wMonth), AT(Vx_SYSTEMTIME, wDayOfWeek), AT(Vx_SYSTEMTIME, wDay),
           AT(Vx_SYSTEMTIME, wHour), AT(Vx_SYSTEMTIME, wMinute), AT(Vx_SYSTEMTIME, wSecond),
           AT(Vx_SYSTEMTIME, wMilliseconds)}}},
        {L"MIXERCONTROL",
         {sizeof(Vx_MIXERCONTROL),
          {AT(Vx_MIXERCONTROL, cbStruct), AT(Vx_MIXERCONTROL, dwControlID), AT(Vx_MIXERCONTROL, dwControlType),
           AT(Vx_MIXERCONTROL, fdwControl), AT(Vx_MIXERCONTROL, cMultipleItems), AT(Vx_MIXERCONTROL, szShortName),
           AT(Vx_MIXERCONTROL, szName), AT(Vx_MIXERCONTROL, lMinimum), AT(Vx_MIXERCONTROL, lMaximum),
           AT(Vx_MIXERCONTROL, Reserved)}}},
        {L"POINTAPI", {sizeof(Vx_POINTAPI), {AT(Vx_POINTAPI, x), AT(Vx_POINTAPI, y)}}},
        {L"RECT",
         {sizeof(Vx_RECT), {AT(Vx_RECT, left), AT(Vx_RECT, top), AT(Vx_RECT, right), AT(Vx_RECT, bottom)}}},
        {L"PingOptions",
         {sizeof(Vx_PingOptions),
          {AT(Vx_PingOptions, Ttl), AT(Vx_PingOptions, Tos), AT(Vx_PingOptions, Flags),
           AT(Vx_PingOptions, OptionsSize), AT(Vx_PingOptions, OptionsData)}}},
        {L"GetPingInfo",
         {sizeof(Vx_GetPingInfo),
          {AT(Vx_GetPingInfo, Address), AT(Vx_GetPingInfo, Status), AT(Vx_GetPingInfo, RoundTripTime),
           AT(Vx_GetPingInfo, DataSize), AT(Vx_GetPingInfo, DataPointer), AT(Vx_GetPingInfo, Options),
           AT(Vx_GetPingInfo, Data)}}},
    };
    for (const auto& [name, layout] : compiled)
        EXPECT_EQ(described(name.c_str()), layout) << std::string(name.begin(), name.end());

    // The classic layout: the operating system's 28-byte echo reply, then the string
    // (on 64-bit the string's pointer is aligned to 8).
    EXPECT_EQ(described(L"GetPingInfo").offsets[L"Data"], sizeof(void*) == 8 ? 32u : 28u);
    EXPECT_EQ(described(L"GetPingInfo").size, sizeof(void*) == 8 ? 40u : 32u);
}
