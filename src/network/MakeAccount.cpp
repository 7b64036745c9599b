#include "network/MakeAccount.h"

#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/SafeArray.h"
#include "shared/Waits.h"

#include <vector>

namespace vx {

namespace {

constexpr LONG kFormYields = 9;
constexpr HRESULT kAccessDenied = static_cast<HRESULT>(0x80070005);
constexpr HRESULT kNoSuchUser = static_cast<HRESULT>(0x800708AD);

// An account name goes into directory paths as it is: a "/" or a "," in it would name
// another object (another account, or a container), so such a name is refused (error 5)
// before anything is bound.
std::wstring accountName(BSTR name) {
    const std::wstring_view text = viewOf(name);
    if (text.find_first_of(L"/,") != std::wstring_view::npos) raise(err::InvalidCall);
    return std::wstring(text);
}

std::wstring userPath(const std::wstring& server, const std::wstring& account, const wchar_t* kind = L",user") {
    return L"WinNT://" + server + L"/" + account + kind;
}

bool given(const VARIANT* form) { return form && !isMissing(deref(*form)); }

// Shows the host's form, then lets it paint.
void showForm(const VARIANT* form) {
    if (given(form)) LateBound(deref(*form)).call(L"Show");
    yieldTimes(kFormYields);
}

// Lets the host paint, then hides its form.
void hideForm(const VARIANT* form) {
    yieldTimes(kFormYields);
    if (given(form)) LateBound(deref(*form)).put(L"Visible", Variant::fromBool(false));
}

}  // namespace

LONG MakeAccount::statusOf(HRESULT hr) noexcept {
    if (hr == kAccessDenied) return -1;
    if (hr == kNoSuchUser) return -2;
    if (HRESULT_FACILITY(hr) == FACILITY_CONTROL) return HRESULT_CODE(hr);
    return static_cast<LONG>(hr);
}

LONG MakeAccount::applyAccountSettings() {
    try {
        const LateBound user = LateBound::bind(userPath(serverName_, accountName_));
        user.put(L"FullName", Variant::fromText(accountName_));
        user.put(L"AccountDisabled", Variant::fromBool(disabled_));
        user.call(L"SetPassword", {Variant::fromText(password_)});
        user.put(L"Description", Variant::fromText(description_));
        user.call(L"Put", {Variant::fromText(L"PasswordExpired"), Variant::fromShort(0)});
        user.call(L"SetInfo");
        const LONG flags = toInt32(*user.call(L"Get", {Variant::fromText(L"userflags")}));
        user.call(L"Put", {Variant::fromText(L"userflags"), Variant::fromLong(flags | 0x10000)});  // password never expires
        user.call(L"SetInfo");
        return 0;
    } catch (const ComError& e) {
        return statusOf(e.hresult());
    } catch (const RuntimeError& e) {
        return statusOf(runtimeHresult(e.number()));
    }
}

HRESULT MakeAccount::CreateAccountName(BSTR AccountName, BSTR ServerName, BSTR Password, BSTR AccountTypeRDN,
                                       VARIANT_BOOL DisabledAccount, BSTR DesrationAccount, VARIANT* ShowForm,
                                       VARIANT* result) {
    return deliver(result, [&] {
        accountName_ = accountName(AccountName);
        serverName_ = std::wstring(viewOf(ServerName));
        password_ = std::wstring(viewOf(Password));
        disabled_ = DisabledAccount != VARIANT_FALSE;
        description_ = std::wstring(viewOf(DesrationAccount));
        showForm(ShowForm);
        const LONG status = applyAccountSettings();
        if (status == -2) {
            // No such user: create it, put it into the group, and run the settings again.
            const LateBound computer = LateBound::bind(L"WinNT://" + serverName_);
            const LateBound created(*computer.call(L"Create", {Variant::fromText(L"User"), Variant::fromText(accountName_)}));
            created.call(L"SetInfo");
            const LateBound user = LateBound::bind(userPath(serverName_, accountName_, L",User"));
            const LateBound group = LateBound::bind(L"WinNT://" + serverName_ + L"/" + std::wstring(viewOf(AccountTypeRDN)));
            group.call(L"Add", {user.get(L"ADsPath")});
            group.call(L"SetInfo");
            applyAccountSettings();
        }
        hideForm(ShowForm);
        return Variant::fromLong(status);
    });
}

HRESULT MakeAccount::DeleteAccount(BSTR AccountName, BSTR ServerName, BSTR AccountAdministrator,
                                   BSTR PasswordAdministrator, VARIANT_BOOL UseCurrentCredentials, VARIANT* ShowForm,
                                   VARIANT_BOOL* result) {
    return deliver(result, [&] {
        const std::wstring account = accountName(AccountName);
        const std::wstring computerPath = L"WinNT://" + std::wstring(viewOf(ServerName));
        showForm(ShowForm);
        LateBound computer;
        if (UseCurrentCredentials != VARIANT_FALSE) {
            computer = LateBound::bind(computerPath);
        } else {
            const LateBound provider = LateBound::bind(L"WinNT:");
            computer = LateBound(*provider.call(
                L"OpenDSObject", {Variant::fromText(computerPath), Variant::fromText(viewOf(AccountAdministrator)),
                                  Variant::fromText(viewOf(PasswordAdministrator)), Variant::fromLong(1)}));
        }
        computer.call(L"Delete", {Variant::fromText(L"User"), Variant::fromText(account)});
        hideForm(ShowForm);
        return false;  // the routine never sets its result
    });
}

HRESULT MakeAccount::GroupsAccount(BSTR AccountName, BSTR ServerName, VARIANT* MyArray, VARIANT* result) {
    return deliver(result, [&] {
        const LateBound user = LateBound::bind(userPath(std::wstring(viewOf(ServerName)), accountName(AccountName)));
        const LateBound groups(*user.call(L"Groups"));
        std::vector<Variant> names;
        std::wstring text;
        groups.forEach([&](const VARIANT& group) {
            Variant name = LateBound(group).get(L"Name");
            text += toText(*name) + L"\r\n";
            names.push_back(std::move(name));
        });
        if (names.empty()) return Variant();  // no group: Empty, and MyArray as it was
        if (MyArray) writeBack(*MyArray, *makeVariantArray(names));
        return Variant::fromText(text);
    });
}

}  // namespace vx
