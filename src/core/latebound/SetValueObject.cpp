#include "core/latebound/SetValueObject.h"

#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/SafeArray.h"
#include "core/runtime/Services.h"
#include "core/runtime/Text.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <optional>
#include <vector>

namespace vx {

namespace {

// The runtime's member-call kinds.
constexpr LONG kMethod = 1;
constexpr LONG kGet = 2;
constexpr LONG kLet = 4;
constexpr LONG kSet = 8;

// The type names whose values are handed over as copies, and those handed over by
// reference, compared exactly.
const wchar_t* const kValueTypes[] = {
    L"Variant Array", L"Array", L"Variant()", L"Boolean()", L"String()", L"Currency()", L"Decimal()",
    L"Integer()", L"Date()", L"Long()", L"Byte()", L"Single()", L"Double()", L"Currency", L"Decimal",
    L"Integer", L"Date", L"Long", L"Byte", L"Single", L"Double"};
const wchar_t* const kObjectTypes[] = {L"Object()", L"Object", L"Font", L"IFontDisp", L"StdFont",
                                       L"IFontEventsDisp", L"IPictureDisp", L"Picture", L"StdPicture"};

template <size_t N>
bool listed(const wchar_t* const (&names)[N], std::wstring_view name) {
    return std::any_of(std::begin(names), std::end(names), [&](const wchar_t* n) { return name == n; });
}

std::wstring elementTypeName(VARTYPE vt) {
    switch (vt) {
    case VT_EMPTY: return L"Empty";
    case VT_NULL: return L"Null";
    case VT_I2: return L"Integer";
    case VT_I4: return L"Long";
    case VT_R4: return L"Single";
    case VT_R8: return L"Double";
    case VT_CY: return L"Currency";
    case VT_DATE: return L"Date";
    case VT_BSTR: return L"String";
    case VT_DISPATCH: return L"Object";
    case VT_ERROR: return L"Error";
    case VT_BOOL: return L"Boolean";
    case VT_VARIANT: return L"Variant";
    case VT_DECIMAL: return L"Decimal";
    case VT_UI1: return L"Byte";
    default: return L"Unknown";
    }
}

// An object's class name: the class it says it belongs to, or else the name of the type
// information it describes itself with (without a leading underscore); "Object" when it
// gives neither.
std::wstring classNameOf(IDispatch* object) {
    ComPtr<ITypeInfo> info;
    ComPtr<IProvideClassInfo> provider = ComPtr<IDispatch>(object).query<IProvideClassInfo>();
    if (!provider || FAILED(provider->GetClassInfo(info.put())) || !info) {
        UINT count = 0;
        if (FAILED(object->GetTypeInfoCount(&count)) || count == 0 ||
            FAILED(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put())) || !info)
            return L"Object";
    }
    Bstr name;
    if (FAILED(info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr)) || name.length() == 0)
        return L"Object";
    std::wstring text = name.str();
    if (text.size() > 1 && text[0] == L'_') text.erase(0, 1);
    return text;
}

// Let: the new value converted to the type the member holds now.
Variant convertedTo(std::wstring_view type, const VARIANT& value) {
    if (type == L"Long") return Variant::fromLong(toInt32(value));
    if (type == L"Byte") return changeType(value, VT_UI1);
    if (type == L"Single") return changeType(value, VT_R4);
    if (type == L"Double") return Variant::fromDouble(toDouble(value));
    if (type == L"String") return Variant::fromText(toText(value));
    if (type == L"Decimal") return changeType(value, VT_DECIMAL);
    if (type == L"Integer") return Variant::fromShort(toInt16(value));
    if (type == L"Boolean") return Variant::fromBool(toBool(value));
    if (type == L"Currency") return changeType(value, VT_CY);
    return Variant::copyOf(value);  // "Variant", and every other type: unchanged
}

// The arguments Args stands for: none when it was left out, the elements of an array in
// order, or else Args itself.
std::vector<Variant> argumentsOf(const VARIANT* args) {
    if (!args || isMissing(*args)) return {};
    const VARIANT& value = deref(*args);
    if (!isArray(value)) return {Variant::copyOf(value)};
    ArrayView array(value);
    std::vector<Variant> out;
    if (!array.get()) return out;  // an array never sized: no arguments
    if (array.dimensions() != 1) raise(err::InvalidCall);
    const long first = array.lbound(), last = array.ubound();
    if (last - first + 1 > SetValueObject::kMostArguments) raise(err::WrongArgumentCount);
    for (long i = first; i <= last; ++i) out.push_back(array.at(i));
    return out;
}

// What one access produced: the word ("" for a let or a method call) and the value read.
struct Access {
    const wchar_t* word = L"";
    Variant value;
};

// The access on one target: the member text may be a dotted path, whose pieces but the
// last are read in turn; the last is read, let, set or called.
Access access(const LateBound& target, std::wstring_view procName, LONG kind, const VARIANT* args) {
    LateBound current = target;
    std::vector<std::wstring> pieces = split(procName, L".");
    const std::wstring member = pieces.empty() ? std::wstring() : pieces.back();
    for (size_t i = 0; i + 1 < pieces.size(); ++i) current = LateBound(*current.call(pieces[i]));
    if (kind != kMethod && kind != kGet && kind != kLet && kind != kSet) raise(err::InvalidCall);
    std::vector<Variant> arguments = argumentsOf(args);
    Access done;
    switch (kind) {
    case kGet: {
        // Read as a host reads an expression: a property, or what a function returns.
        done.value = current.invoke(member, DISPATCH_PROPERTYGET | DISPATCH_METHOD, arguments);
        const std::wstring type = typeName(*done.value);
        const bool byReference =
            listed(kObjectTypes, type) || (!listed(kValueTypes, type) && isObject(*done.value));
        done.word = byReference ? L"GSet" : L"Get";
        break;
    }
    case kLet: {
        // The value is Args (or an array's last element, after the index arguments).
        if (arguments.empty()) raise(err::WrongArgumentCount);
        Variant value = std::move(arguments.back());
        arguments.pop_back();
        std::wstring type = L"Variant";
        tryStatement([&] {
            std::vector<Variant> indexes = arguments;
            type = typeName(*current.invoke(member, DISPATCH_PROPERTYGET, indexes));
        });
        arguments.push_back(convertedTo(type, *value));
        current.invoke(member, DISPATCH_PROPERTYPUT, arguments);
        break;
    }
    case kSet:
        if (arguments.empty()) raise(err::WrongArgumentCount);
        current.invoke(member, DISPATCH_PROPERTYPUTREF, arguments);
        done.word = L"Set";
        break;
    default:
        current.invoke(member, DISPATCH_METHOD, arguments);
        break;
    }
    return done;
}

// A failure as a host's error state would hold it: the number (a runtime error's own, or
// the HRESULT an object reported) and the description. Call only inside a catch block.
struct Failure {
    long number = 0;
    std::wstring description;
};

Failure currentFailure() {
    try {
        throw;
    } catch (const RuntimeError& e) {
        return {e.number(), runtimeErrorText(e.number())};
    } catch (const ComError& e) {
        const int runtime = runtimeErrorNumber(e.hresult());
        const long number = runtime ? runtime : static_cast<long>(e.hresult());
        if (!e.description().empty()) return {number, e.description()};
        return {number, runtime ? runtimeErrorText(runtime) : std::wstring(L"Automation error")};
    } catch (const std::bad_alloc&) {
        return {err::OutOfMemory, runtimeErrorText(err::OutOfMemory)};
    } catch (...) {
        return {err::InternalError, runtimeErrorText(err::InternalError)};
    }
}

}  // namespace

std::wstring typeName(const VARIANT& value) {
    const VARIANT& v = deref(value);
    const VARTYPE type = valueType(v);
    if (type & VT_ARRAY) return elementTypeName(type & VT_TYPEMASK) + L"()";
    if (type == VT_DISPATCH) {
        IDispatch* object = dispatchOf(v);
        return object ? classNameOf(object) : L"Nothing";
    }
    return elementTypeName(type);
}

HRESULT SetValueObject::ShowErrorCallByName() {
    return guard([&] {
        const std::wstring text = L"Control Name : " + controlName_ + L"\r\nFeature Name : " + featureName_ +
                                  L"\r\nError Number : " + std::to_wstring(errorNumber_) +
                                  L"\r\nError Description : " + errorDescription_;
        service<MessageBoxService>().show(text, L"Invalid Type", MB_OK | MB_ICONSTOP);
    });
}

HRESULT SetValueObject::GetValueData(IDispatch** ObjectControls, BSTR ProcName, LONG* CallType, VARIANT* Args,
                                     VARIANT* GetResultValue, VARIANT* result) {
    return deliver(result, [&] {
        const LateBound control(ObjectControls ? *ObjectControls : nullptr);
        const std::wstring_view procName = viewOf(ProcName);
        const LONG kind = CallType ? *CallType : 0;
        // Every error is trapped; each attempt is judged by the failure it leaves.
        std::optional<Failure> failure;
        Access done;
        auto attempt = [&](auto target) {
            failure.reset();
            try {
                done = access(target(), procName, kind, Args);
            } catch (...) {
                failure = currentFailure();
            }
        };
        // The control's inner object first (a form control exposes it as Object), then
        // the control itself.
        attempt([&] { return LateBound(*control.get(L"Object")); });
        if (failure) attempt([&] { return control ? control : throw RuntimeError(err::ObjectNotSet); });
        if (!failure && GetResultValue && !isMissing(*GetResultValue) && *done.word == L'G') {
            try {
                writeBack(*GetResultValue, *done.value);
            } catch (...) {
                failure = currentFailure();
            }
        }
        if (failure) {
            std::wstring name;
            tryStatement([&] { name = toText(*control.get(L"Name")); });
            controlName_ = std::move(name);
            featureName_ = std::wstring(procName);
            errorNumber_ = failure->number;
            errorDescription_ = std::move(failure->description);
            return Variant::fromText(L"Error");
        }
        // A success leaves no error behind; the names stay until the next failure.
        errorNumber_ = 0;
        errorDescription_.clear();
        return Variant::fromText(*done.word ? done.word : L"Let");
    });
}

}  // namespace vx
