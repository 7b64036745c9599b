#include "shared/Helpers.h"

#include "Vx_MainEnums.h"
#include "core/runtime/Checked.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/SafeArray.h"
#include "core/runtime/Text.h"

#include <algorithm>
#include <optional>
#include <unordered_set>

namespace vx {

namespace {

using OptionalText = std::optional<std::wstring>;

// The text the & operator appends for a value: Null appends nothing.
std::wstring appendedText(const VARIANT& v) { return isNull(v) ? std::wstring() : toText(v); }

// Len of a value as a number: Null has no length that a number could use.
long lengthOf(const VARIANT& v) {
    if (isNull(v)) raise(err::InvalidUseOfNull);
    return static_cast<long>(toText(v).size());
}

long lengthOf(const OptionalText& t) { return t ? static_cast<long>(t->size()) : 0; }

// LCase: Null stays Null (no text); anything else is read as text and lower-cased.
OptionalText lowered(const VARIANT& v) {
    if (isNull(v)) return std::nullopt;
    return lower(toText(v));
}

// Appends one piece to a result that starts out Empty.
void append(OptionalText& out, const std::wstring& piece) {
    if (!out) out.emplace();
    *out += piece;
}

// Cuts the separator the last append left behind: the leftmost (length of the result
// minus length of the separator) characters. A negative length fails the statement.
void cutTrailingSeparator(OptionalText& out, const VARIANT& separator) {
    tryStatement([&] {
        long keep = lengthOf(out) - lengthOf(separator);
        out = left(out ? *out : std::wstring(), keep);
    });
}

// The elements of an array joined by separator: column `index` of each row of a
// two-dimensional array, or each element of a one-dimensional one when index is -1.
OptionalText joinArray(const VARIANT& data, const VARIANT& index, const VARIANT& separator) {
    OptionalText out;
    ArrayView array(data);
    bool oneDimension = false;
    tryStatement([&] { oneDimension = toDouble(index) == -1; });
    long upper = 0;
    if (tryStatement([&] { upper = array.ubound(1); })) {
        // Rows below the array's lower bound would fail one by one: start at the first row.
        const long first = std::max(0L, array.lbound(1));
        std::optional<int32_t> column;
        if (!oneDimension) tryStatement([&] { column = toInt32(index); });
        for (long i = first; i <= upper; ++i) {
            tryStatement([&] {
                if (!oneDimension && !column) raise(err::TypeMismatch);
                std::wstring piece = appendedText(*(oneDimension ? array.at(i) : array.at(i, *column)));
                piece += appendedText(separator);
                append(out, piece);
            });
        }
    }
    cutTrailingSeparator(out, separator);
    return out;
}

// A field, or a run of fields joined again, of the text split at separator.
OptionalText pickFields(const VARIANT& data, const VARIANT& index, const VARIANT& separator, LONG mode,
                        const VARIANT& lastIndex) {
    OptionalText out;
    std::wstring text;
    std::vector<std::wstring> fields;
    bool split = tryStatement([&] {
        text = toText(data);
        fields = vx::split(text, toText(separator));
    });
    // Any use of a field fails when the split failed or gave no fields.
    auto field = [&](long i) -> const std::wstring& {
        if (!split || i < 0 || i >= static_cast<long>(fields.size())) raise(err::SubscriptOutOfRange);
        return fields[static_cast<size_t>(i)];
    };
    const long lastField = static_cast<long>(fields.size()) - 1;
    // Appends fields from..to and the separator after each; indexes outside the fields fail
    // one by one, so only those inside are visited.
    auto appendFields = [&](long from, long to) {
        for (long i = std::max(from, 0L); i <= std::min(to, lastField); ++i)
            tryStatement([&] { append(out, field(i) + appendedText(separator)); });
    };
    switch (mode) {
    case LastID:
        tryStatement([&] { out = field(lastField); });
        break;
    case SelectID:
        tryStatement([&] { out = field(toInt32(index)); });
        break;
    case LeftPathFull:
        tryStatement([&] {
            long keep = static_cast<long>(text.size()) - static_cast<long>(field(lastField).size()) - lengthOf(separator);
            out = left(text, keep);
        });
        break;
    case RightPathFull:
        tryStatement([&] {
            long keep = static_cast<long>(text.size()) - static_cast<long>(field(0).size()) - lengthOf(separator);
            out = right(text, keep);
        });
        break;
    case EnumIDPath:
        tryStatement([&] { appendFields(toInt32(index), lastField); });
        cutTrailingSeparator(out, separator);
        break;
    case EnumFirstToLast:
        tryStatement([&] {
            long from = toInt32(index);
            appendFields(from, toInt32(lastIndex));
        });
        cutTrailingSeparator(out, separator);
        break;
    default:
        break;
    }
    return out;
}

// Two values compared as text without regard to case; Null equals nothing.
bool sameText(const VARIANT& a, const VARIANT& b) {
    OptionalText x = lowered(a);
    OptionalText y = lowered(b);
    return x && y && *x == *y;
}

// The elements 0 to upper of an array, lower-cased as text one by one in order and only
// as far as a search needs them, so that a failing element fails the comparison at the
// same point as a plain element-by-element scan would.
class LoweredElements {
public:
    LoweredElements(const ArrayView& array, long upper) : array_(array), upper_(upper) {}

    // Fetches element 0 before anything is compared with it.
    void fetchFirst() {
        if (next_ == 0 && !pending_ && upper_ >= 0) pending_ = array_.at(0);
    }

    // Whether some element equals text (a scan from element 0 that stops at the first equal
    // one); no text (Null) equals nothing, but the scan still reads every element.
    bool contains(const OptionalText& text) {
        if (text && seen_.count(*text)) return true;
        while (next_ <= upper_) {
            Variant element = pending_ ? std::move(*pending_) : array_.at(next_);
            pending_.reset();
            OptionalText t = lowered(*element);
            ++next_;
            if (t) {
                seen_.insert(*t);
                if (text && *t == *text) return true;
            }
        }
        return false;
    }

private:
    const ArrayView& array_;
    long upper_;
    long next_ = 0;
    std::optional<Variant> pending_;
    std::unordered_set<std::wstring> seen_;
};

// How many of the elements 0 to outerUpper of outer have an equal among the elements
// 0 to innerUpper of inner.
long countFound(const ArrayView& outer, long outerUpper, const ArrayView& inner, long innerUpper) {
    if (innerUpper < 0) return 0;  // nothing to look in: no element is even read
    LoweredElements candidates(inner, innerUpper);
    long count = 0;
    for (long i = 0; i <= outerUpper; ++i) {
        Variant element = outer.at(i);
        candidates.fetchFirst();
        if (candidates.contains(lowered(*element))) ++count;
    }
    return count;
}

}  // namespace

bool isEqute(VARIANT* valueA, VARIANT* valueB, LONG mode) {
    const VARIANT& a = deref(*valueA);
    const VARIANT& b = deref(*valueB);
    switch (mode) {
    case GoText:
        return sameText(a, b);
    case GoArray: {
        ArrayView arrayA(a);
        const long upperA = arrayA.ubound(1);
        ArrayView arrayB(b);
        const long upperB = arrayB.ubound(1);
        // Only arrays of one size can be equal; then every element of one must have an
        // equal somewhere in the other (not one to one).
        if (upperB >= upperA) return countFound(arrayA, upperA, arrayB, upperB) == upperB + 1;
        return countFound(arrayB, upperB, arrayA, upperA) == upperA + 1;
    }
    case GoArrayJustCount: {
        ArrayView arrayA(a);
        const long upperA = arrayA.ubound(1);
        ArrayView arrayB(b);
        const long upperB = arrayB.ubound(1);
        if (upperA != upperB) return false;
        long count = 0;
        for (long i = 0; i <= upperA; ++i)
            if (sameText(*arrayA.at(i), *arrayB.at(i))) ++count;
        return count == upperA + 1;
    }
    case GoArrayJustText: {
        // Inverted on purpose: True when the value is NOT among the elements.
        ArrayView arrayB(b);
        const long upperB = arrayB.ubound(1);
        std::optional<OptionalText> text;
        for (long i = 0; i <= upperB; ++i) {
            Variant element = arrayB.at(i);
            if (!text) text = lowered(a);
            OptionalText t = lowered(*element);
            if (*text && t && **text == *t) return false;
        }
        return true;
    }
    case GoLeft:
    case GoRight: {
        if (isNull(a)) raise(err::InvalidUseOfNull);
        const std::wstring lowerA = lower(toText(a));
        const long length = lengthOf(b);
        const std::wstring lowerB = lower(toText(b));
        return (mode == GoLeft ? left(lowerA, length) : right(lowerA, length)) == lowerB;
    }
    case GoFind: {
        // Both arguments are lower-cased in the caller's variables, on purpose.
        auto lowerInPlace = [](VARIANT* arg) {
            OptionalText t = lowered(deref(*arg));
            writeBack(*arg, *(t ? Variant::fromText(*t) : Variant::null()));
            return t;
        };
        OptionalText textA = lowerInPlace(valueA);
        OptionalText textB = lowerInPlace(valueB);
        return textA && textB && inStr(1, *textA, *textB) > 0;
    }
    default:
        return false;
    }
}


Variant getVar(const VARIANT& data, const VARIANT& index, const VARIANT& separator, LONG mode,
               const VARIANT& lastIndex) {
    OptionalText out;
    tryStatement([&] {
        out = isArray(data) ? joinArray(data, index, separator) : pickFields(data, index, separator, mode, lastIndex);
    });
    return out ? Variant::fromText(*out) : Variant();
}

std::wstring parentPath(std::wstring_view path) {
    const Variant parent = getVar(*Variant::fromText(path), *Variant::fromShort(0), *Variant::fromText(L"\\"),
                                  LeftPathFull, *Variant::fromShort(2));
    return isEmpty(*parent) ? std::wstring() : std::wstring(viewOf(V_BSTR(parent.get())));
}

int16_t countUBound(const VARIANT& array) noexcept {
    int16_t upper = -1;
    try {
        tryStatement([&] {
            upper = Checked<int16_t>(ArrayView(array).ubound(1)).value();
        });
    } catch (...) {
        // out of memory: the neutral result
    }
    return upper;
}

}  // namespace vx
