#pragma once
// Ds_MakeAccount: creates, updates, deletes and lists the groups of user accounts on a
// local or remote computer, through the directory service's "WinNT://" provider. A host
// may pass a form (any object with Show and Visible) to be shown while the work runs.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/Variant.h"

#include <string>

namespace vx {

class MakeAccount : public DispatchObject<MakeAccount, _Ds_MakeAccount> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_MakeAccount; }

    HRESULT STDMETHODCALLTYPE GroupsAccount(BSTR AccountName, BSTR ServerName, VARIANT* MyArray,
                                            VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE DeleteAccount(BSTR AccountName, BSTR ServerName, BSTR AccountAdministrator,
                                            BSTR PasswordAdministrator, VARIANT_BOOL UseCurrentCredentials,
                                            VARIANT* ShowForm, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE CreateAccountName(BSTR AccountName, BSTR ServerName, BSTR Password,
                                                BSTR AccountTypeRDN, VARIANT_BOOL DisabledAccount,
                                                BSTR DesrationAccount, VARIANT* ShowForm, VARIANT* result) override;

    // The status of a failed settings pass: -1 access denied, -2 no such user, otherwise
    // the error number as a host sees it (a runtime error's number, another HRESULT as
    // it is).
    static LONG statusOf(HRESULT hr) noexcept;

private:
    // The settings pass over the account named in the fields: 0, or the status of the
    // error that stopped it.
    LONG applyAccountSettings();

    std::wstring accountName_, password_, description_, serverName_;
    bool disabled_ = false;
};

}  // namespace vx
