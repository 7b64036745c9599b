#include "core/collections/KeyedCollection.h"

#include "core/runtime/Convert.h"

namespace vx {

CollectionIndex readCollectionIndex(const VARIANT& index) {
    CollectionIndex r;
    const VARIANT& v = deref(index);
    if (valueType(v) == VT_BSTR) {
        r.byKey = true;
        r.key = toText(v);
    } else {
        // Numbers round half to even, as a position argument does in the runtime; Null
        // is an invalid use of Null, an array or a non-number a type mismatch.
        r.position = toInt32(v);
    }
    return r;
}

}  // namespace vx
