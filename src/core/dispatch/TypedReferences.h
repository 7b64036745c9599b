#pragma once
// Late-bound hosts such as VBScript pass a variable as a reference to a Variant
// (VT_BYREF | VT_VARIANT), in calls and in property assignments alike. The type info's
// Invoke cannot hand such an argument to a parameter declared as a typed reference (a
// by-reference String, Boolean, Long ...) and fails with a type mismatch, so that
// `obj.Name = s` or `obj.Method(x, flag)` would fail where the same call with a literal
// works. TypedReferences converts each such argument into a temporary of the declared
// type for the call, and copies back into the host's variable what the member wrote
// there. Arguments that do not convert are left alone, for Invoke to report.
#include "core/runtime/Platform.h"
#include "core/runtime/Variant.h"

#include <deque>
#include <vector>

namespace vx {

class TypedReferences {
public:
    // params may be null; it is never modified.
    TypedReferences(ITypeInfo* info, DISPID id, WORD flags, DISPPARAMS* params);
    TypedReferences(const TypedReferences&) = delete;
    TypedReferences& operator=(const TypedReferences&) = delete;

    // What to pass to Invoke: params itself when nothing needed converting.
    DISPPARAMS* params() noexcept { return use_; }
    // After the call: writes each temporary the member changed back into its variable.
    void writeBack() noexcept;

private:
    struct Slot {
        VARIANT* variable;  // the host's variable
        Variant value;      // the temporary the member sees
        Variant before;     // its value before the call
    };
    void bridge(ITypeInfo* info, const FUNCDESC& func, DISPPARAMS& params);

    DISPPARAMS* use_;
    DISPPARAMS copy_{};
    std::vector<VARIANTARG> args_;
    std::deque<Slot> slots_;  // stable addresses: the arguments point into them
};

}  // namespace vx
