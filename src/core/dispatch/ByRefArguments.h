#pragma once
// Late-bound hosts such as VBScript pass every variable as a reference to a Variant
// (VT_BYREF | VT_VARIANT). The type library's dispatch accepts that only where the
// parameter is a Variant by reference; for a typed by-reference parameter (a Long, a
// String, a Boolean, an enumeration or an object by reference) it reports a type
// mismatch, so a host could pass such a parameter only a literal or an expression.
//
// ByRefArguments stands between the host and the dispatch: for each such argument it
// hands the member a value of the parameter's own type, converted as the dispatch
// converts by-value arguments, and afterwards writes what the member left there back
// into the host's variable, when the member changed it. Arguments it cannot convert are
// passed on untouched, so the dispatch reports them as it always did.
#include "core/runtime/Variant.h"

#include <oaidl.h>

#include <vector>

namespace vx {

class ByRefArguments {
public:
    ByRefArguments(ITypeInfo* info, DISPID id, WORD flags, DISPPARAMS* params) noexcept;
    ByRefArguments(const ByRefArguments&) = delete;
    ByRefArguments& operator=(const ByRefArguments&) = delete;

    // The arguments to pass on: the caller's own when none needed a stand-in.
    DISPPARAMS* params() noexcept { return adapted_.empty() ? original_ : &params_; }
    // The number of arguments that were given a stand-in.
    size_t count() const noexcept { return adapted_.size(); }
    // After the call: copies each stand-in the member changed into the host's variable.
    void writeBack() noexcept;

private:
    struct StandIn {
        VARIANT* hostVariable;
        Variant value;
        Variant original;
    };

    void prepare(ITypeInfo* info, DISPID id, WORD flags) noexcept;

    DISPPARAMS* original_;
    DISPPARAMS params_{};
    std::vector<VARIANTARG> args_;
    std::vector<StandIn> adapted_;  // reserved up front: arguments point into it
};

}  // namespace vx
