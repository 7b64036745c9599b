// What early-bound hosts compile against: the default members, and the optional and
// by-reference parameters that take a post-processing step to get into the type library.
#include "core/dispatch/TypeLibrary.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <string>

using namespace vx;

namespace {

// A member of the vtable side of a dual interface, found by name and kind.
struct Func {
    Func(REFIID iid, const wchar_t* name, INVOKEKIND kind = INVOKE_FUNC) {
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
            if (n && name == std::wstring(n) && fd->invkind == kind)
                desc = fd;
            else
                info->ReleaseFuncDesc(fd);
            SysFreeString(n);
        }
    }
    ~Func() {
        if (desc) info->ReleaseFuncDesc(desc);
    }
    const PARAMDESC& param(int i) const { return desc->lprgelemdescParam[i].paramdesc; }
    bool byReference(int i) const {
        return (param(i).wParamFlags & (PARAMFLAG_FIN | PARAMFLAG_FOUT)) == (PARAMFLAG_FIN | PARAMFLAG_FOUT);
    }
    // The declared default of parameter i (Empty when it has none).
    Variant defaultOf(int i) const {
        if (!(param(i).wParamFlags & PARAMFLAG_FHASDEFAULT)) return Variant();
        return Variant::copyOf(param(i).pparamdescex->varDefaultValue);
    }

    ComPtr<ITypeInfo> info;
    FUNCDESC* desc = nullptr;
};

long longDefault(const Func& f, int i) {
    Variant d = f.defaultOf(i);
    EXPECT_EQ(d.type(), VT_I4) << "parameter " << i;
    return d.type() == VT_I4 ? V_I4(d.get()) : -1;
}

}  // namespace

TEST(RegTypeLibrary, ItemIsTheDefaultMemberOfKeysAndValues) {
    for (REFIID iid : {IID__cRegKeys, IID__cRegValues}) {
        Func item(iid, L"Item");
        ASSERT_TRUE(item.desc);
        EXPECT_EQ(item.desc->memid, DISPID_VALUE);
    }
    Func enumItem(IID__cRegEnumKey, L"Item");
    ASSERT_TRUE(enumItem.desc);
    EXPECT_NE(enumItem.desc->memid, DISPID_VALUE);
}

TEST(RegTypeLibrary, OptionalParametersCarryTheirDefaults) {
    Func goRegister(IID__clsReg, L"GoRegister");
    ASSERT_TRUE(goRegister.desc);
    EXPECT_EQ(longDefault(goRegister, 1), 1);
    EXPECT_EQ(static_cast<unsigned long>(longDefault(goRegister, 2)), 0x80000001ul);  // HKEY_CURRENT_USER
    EXPECT_EQ(goRegister.defaultOf(3).type(), VT_BSTR);
    EXPECT_TRUE(goRegister.param(5).wParamFlags & PARAMFLAG_FOPT);
    EXPECT_TRUE(goRegister.byReference(5));  // SetValue
    EXPECT_EQ(goRegister.defaultOf(5).type(), VT_EMPTY);

    EXPECT_EQ(longDefault(Func(IID__clsReg, L"WriteDWord"), 4), 4);
    EXPECT_EQ(longDefault(Func(IID__clsReg, L"WriteBinary"), 5), 3);

    Func readString(IID__clsReg, L"ReadString");
    EXPECT_TRUE(readString.byReference(3));
    EXPECT_EQ(readString.desc->lprgelemdescParam[3].tdesc.vt, VT_PTR);
    EXPECT_EQ(readString.desc->lprgelemdescParam[3].tdesc.lptdesc->vt, VT_BSTR);
    ASSERT_EQ(readString.defaultOf(3).type(), VT_BSTR);
    EXPECT_EQ(SysStringLen(V_BSTR(readString.defaultOf(3).get())), 0u);
    Func readDWord(IID__clsReg, L"ReadDWord");
    EXPECT_TRUE(readDWord.byReference(3));
    EXPECT_EQ(longDefault(readDWord, 3), 0);
    Func readBinary(IID__clsReg, L"ReadBinary");
    EXPECT_TRUE(readBinary.byReference(3));
    EXPECT_EQ(readBinary.defaultOf(3).type(), VT_BOOL);
    EXPECT_TRUE(Func(IID__cRegEnumKey, L"Add").byReference(0));
}
