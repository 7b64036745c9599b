// Ds_MakeAccount where a script cannot look: the yields around the host's form, the
// statuses of the settings pass, and that a name which would change a path binds
// nothing. tests/host/accounts.vbs runs the class against the stand-in provider.
#include "network/MakeAccount.h"

#include "core/runtime/MessageLoop.h"
#include "core/runtime/Services.h"

#include "../fixtures/FixtureCom.h"
#include "TestSupport.h"
#include "Vx_Main.h"

#include <string>
#include <vector>

using namespace vx;
using vxtest::call;

namespace {

// A binding service that answers every path with a container that deletes anything,
// and records the paths.
struct FakeDirectory {
    std::vector<std::wstring> bound, calls;
    BindingService binding() {
        BindingService b = service<BindingService>();
        b.getObject = [this](const std::wstring& path, IDispatch** out) {
            bound.push_back(path);
            auto* o = new fixture::Scriptable;
            o->on(L"Delete", [this](fixture::Call& c) {
                calls.push_back(L"Delete " + fixture::textOf(c.args[0]) + L" " + fixture::textOf(c.args[1]));
                return S_OK;
            });
            *out = o;
            return S_OK;
        };
        return b;
    }
};

// A host form that notes the yield count when it is shown and hidden.
IDispatch* form(std::vector<unsigned long long>& shown, std::vector<unsigned long long>& hidden) {
    auto* f = new fixture::Scriptable;
    f->on(L"Show", [&](fixture::Call&) {
        shown.push_back(yieldCount());
        return S_OK;
    });
    f->on(L"Visible", [&](fixture::Call& c) {
        if (c.isPut() && V_VT(&fixture::valueOf(c.args.back())) == VT_BOOL &&
            V_BOOL(&fixture::valueOf(c.args.back())) == VARIANT_FALSE)
            hidden.push_back(yieldCount());
        return S_OK;
    });
    return f;
}

}  // namespace

TEST(MakeAccount, StatusesOfTheSettingsPass) {
    EXPECT_EQ(MakeAccount::statusOf(E_ACCESSDENIED), -1);
    EXPECT_EQ(MakeAccount::statusOf(static_cast<HRESULT>(0x800708AD)), -2);
    EXPECT_EQ(MakeAccount::statusOf(static_cast<HRESULT>(0x800A01B6)), 438) << "a runtime error: its number";
    EXPECT_EQ(MakeAccount::statusOf(static_cast<HRESULT>(0x800708C5)), static_cast<LONG>(0x800708C5));
}

TEST(MakeAccount, TheFormIsShownNineYieldsBeforeAndHiddenNineAfter) {
    FakeDirectory directory;
    ReplaceService<BindingService> using_(directory.binding());
    std::vector<unsigned long long> shown, hidden;
    Variant host = Variant::fromDispatch(nullptr);
    {
        IDispatch* f = form(shown, hidden);
        host = Variant::fromDispatch(f);
        f->Release();
    }
    auto account = vxtest::createObject(CLSID_Ds_MakeAccount);
    const unsigned long long before = yieldCount();
    auto r = call(account.get(), L"DeleteAccount",
                  {Variant::fromText(L"gone"), Variant::fromText(L"PC"), Variant::missing(), Variant::missing(),
                   Variant::missing(), vxtest::byRef(host)});
    ASSERT_EQ(r.errorNumber(), 0);
    ASSERT_EQ(shown.size(), 1u);
    ASSERT_EQ(hidden.size(), 1u);
    EXPECT_EQ(shown[0], before) << "shown first";
    EXPECT_EQ(hidden[0], before + 18) << "nine yields after showing, nine before hiding";
    EXPECT_EQ(directory.bound, std::vector<std::wstring>{L"WinNT://PC"});
    EXPECT_EQ(directory.calls, std::vector<std::wstring>{L"Delete User gone"});
    // Without a form the yields are the same.
    const unsigned long long again = yieldCount();
    call(account.get(), L"DeleteAccount", {Variant::fromText(L"gone"), Variant::fromText(L"PC")});
    EXPECT_EQ(yieldCount(), again + 18);
}

TEST(MakeAccount, ANameThatWouldChangeThePathBindsNothing) {
    FakeDirectory directory;
    ReplaceService<BindingService> using_(directory.binding());
    auto account = vxtest::createObject(CLSID_Ds_MakeAccount);
    for (const wchar_t* name : {L"victim,group", L"../victim", L"x/victim", L",", L"/", L"a,user"}) {
        const Variant n = Variant::fromText(name), server = Variant::fromText(L"PC");
        EXPECT_EQ(call(account.get(), L"CreateAccountName", {n, server}).errorNumber(), 5) << name;
        EXPECT_EQ(call(account.get(), L"DeleteAccount", {n, server}).errorNumber(), 5) << name;
        EXPECT_EQ(call(account.get(), L"GroupsAccount", {n, server}).errorNumber(), 5) << name;
    }
    EXPECT_TRUE(directory.bound.empty());
    EXPECT_TRUE(directory.calls.empty());
}
