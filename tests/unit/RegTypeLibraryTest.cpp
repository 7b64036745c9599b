// What early-bound hosts compile against in the registry interfaces: the default member,
// and the by-reference and optional parameters that take a post-processing step to get
// into the type library.
#include "core/dispatch/TypeLibrary.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <string>

using namespace vx;

namespace {

// The description of a method of the vtable side of a dual interface, found by name.
struct Func {
    Func(REFIID iid, const wchar_t* name) {
        ComPtr<ITypeInfo> dispatch(typeInfoOf(iid));
        HREFTYPE href = 0;
        if (!dispatch || FAILED(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &href)) ||
            FAILED(dispatch->GetRefTypeInfo(href, info.put())))
            return;
        for (UINT i = 0; !desc; ++i) {
            FUNCDESC* fd = nullptr;
            if (FAILED(info->GetFuncDesc(i, &fd))) break;
            BSTR n = nullptr;
            UINT got = 0;
            info->GetNames(fd->memid, &n, 1, &got);
            if (n && name == std::wstring(n) && fd->invkind == INVOKE_FUNC)
                desc = fd;
            else
                info->ReleaseFuncDesc(fd);
            SysFreeString(n);
        }
    }
    ~Func() {
        if (desc) info->ReleaseFuncDesc(desc);
    }
    ComPtr<ITypeInfo> info;
    FUNCDESC* desc = nullptr;
};

}  // namespace

// Item is the default member of the lists of keys and of values (keys(1) in a host), and
// only of those; the parameters a host's variable goes into by reference are [in, out], and
// optional parameters carry the defaults a compiler fills in.
TEST(RegTypeLibrary, DefaultMemberAndParameterKinds) {
    for (auto [iid, isDefault] : {std::pair{&IID__cRegKeys, true}, std::pair{&IID__cRegValues, true},
                                  std::pair{&IID__cRegEnumKey, false}, std::pair{&IID__cRegEnumValue, false}}) {
        Func item(*iid, L"Item");
        ASSERT_TRUE(item.desc);
        EXPECT_EQ(item.desc->memid == DISPID_VALUE, isDefault);
    }
    struct Param {
        const IID* iid;
        const wchar_t* member;
        int index;
        bool byReference;
        VARTYPE defaultType;  // VT_EMPTY: none declared
        const wchar_t* defaultText;
    };
    const Param params[] = {
        {&IID__clsReg, L"ReadString", 3, true, VT_BSTR, L""},
        {&IID__clsReg, L"ReadDWord", 3, true, VT_I4, L"0"},
        {&IID__clsReg, L"ReadBinary", 3, true, VT_BOOL, L"False"},
        {&IID__clsReg, L"WriteBinary", 4, true, VT_EMPTY, L""},
        {&IID__clsReg, L"WriteBinary", 5, false, VT_I4, L"3"},
        {&IID__clsReg, L"WriteDWord", 4, false, VT_I4, L"4"},
        {&IID__clsReg, L"WriteString", 4, false, VT_I4, L"1"},
        {&IID__clsReg, L"GoRegisterWrite", 1, true, VT_EMPTY, L""},
        {&IID__clsReg, L"GoRegister", 1, false, VT_I4, L"1"},
        {&IID__clsReg, L"GoRegister", 2, false, VT_I4, L"-2147483647"},  // HKEY_CURRENT_USER
        {&IID__clsReg, L"GoRegister", 5, true, VT_EMPTY, L""},
        {&IID__cRegEnumKey, L"Add", 0, true, VT_EMPTY, L""},
        {&IID__cRegKeys, L"Item", 0, true, VT_EMPTY, L""},
    };
    for (const Param& p : params) {
        Func f(*p.iid, p.member);
        ASSERT_TRUE(f.desc) << p.member;
        ASSERT_LT(p.index, f.desc->cParams) << p.member;
        const PARAMDESC& d = f.desc->lprgelemdescParam[p.index].paramdesc;
        const USHORT inOut = PARAMFLAG_FIN | PARAMFLAG_FOUT;
        EXPECT_EQ((d.wParamFlags & inOut) == inOut, p.byReference) << p.member << " " << p.index;
        const bool hasDefault = d.wParamFlags & PARAMFLAG_FHASDEFAULT;
        EXPECT_EQ(hasDefault, p.defaultType != VT_EMPTY) << p.member << " " << p.index;
        if (!hasDefault) continue;
        const Variant value = Variant::copyOf(d.pparamdescex->varDefaultValue);
        EXPECT_EQ(value.type(), p.defaultType) << p.member << " " << p.index;
        EXPECT_EQ(vxtest::textOf(value), p.defaultText) << p.member << " " << p.index;
    }
    // A string by reference is a pointer to a BSTR, as VB6 declares ByRef As String.
    Func readString(IID__clsReg, L"ReadString");
    ASSERT_TRUE(readString.desc);
    EXPECT_EQ(readString.desc->lprgelemdescParam[3].tdesc.vt, VT_PTR);
    EXPECT_EQ(readString.desc->lprgelemdescParam[3].tdesc.lptdesc->vt, VT_BSTR);
}
