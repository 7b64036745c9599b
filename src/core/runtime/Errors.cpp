#include "core/runtime/Errors.h"

#include "core/runtime/Platform.h"

namespace vx {

std::wstring runtimeErrorText(int number) {
    switch (number) {
    case 3: return L"Return without GoSub";
    case 5: return L"Invalid procedure call or argument";
    case 6: return L"Overflow";
    case 7: return L"Out of memory";
    case 9: return L"Subscript out of range";
    case 10: return L"This array is fixed or temporarily locked";
    case 11: return L"Division by zero";
    case 13: return L"Type mismatch";
    case 14: return L"Out of string space";
    case 28: return L"Out of stack space";
    case 35: return L"Sub or Function not defined";
    case 48: return L"Error in loading DLL";
    case 51: return L"Internal error";
    case 52: return L"Bad file name or number";
    case 53: return L"File not found";
    case 54: return L"Bad file mode";
    case 55: return L"File already open";
    case 57: return L"Device I/O error";
    case 58: return L"File already exists";
    case 61: return L"Disk full";
    case 62: return L"Input past end of file";
    case 67: return L"Too many files";
    case 68: return L"Device unavailable";
    case 70: return L"Permission denied";
    case 71: return L"Disk not ready";
    case 74: return L"Can't rename with different drive";
    case 75: return L"Path/File access error";
    case 76: return L"Path not found";
    case 91: return L"Object variable or With block variable not set";
    case 92: return L"For loop not initialized";
    case 93: return L"Invalid pattern string";
    case 94: return L"Invalid use of Null";
    case 424: return L"Object required";
    case 429: return L"ActiveX component can't create object";
    case 430: return L"Class does not support Automation or does not support expected interface";
    case 438: return L"Object doesn't support this property or method";
    case 440: return L"Automation error";
    case 445: return L"Object doesn't support this action";
    case 446: return L"Object doesn't support named arguments";
    case 447: return L"Object doesn't support current locale setting";
    case 448: return L"Named argument not found";
    case 449: return L"Argument not optional";
    case 450: return L"Wrong number of arguments or invalid property assignment";
    case 451: return L"Property let procedure not defined and property get procedure did not return an object";
    case 457: return L"This key is already associated with an element of this collection";
    case 458: return L"Variable uses an Automation type not supported in Visual Basic";
    case 462: return L"The remote server machine does not exist or is unavailable";
    default: return L"Application-defined or object-defined error";
    }
}

int runtimeErrorNumber(HRESULT hr) noexcept {
    if (HRESULT_FACILITY(hr) == FACILITY_CONTROL) return HRESULT_CODE(hr);
    switch (hr) {
    case DISP_E_MEMBERNOTFOUND:
    case DISP_E_UNKNOWNNAME: return err::NotSupported;
    case DISP_E_PARAMNOTFOUND: return err::NamedArgumentNotFound;
    case DISP_E_TYPEMISMATCH: return err::TypeMismatch;
    case DISP_E_NONAMEDARGS: return 446;
    case DISP_E_BADVARTYPE: return 458;
    case DISP_E_OVERFLOW: return err::Overflow;
    case DISP_E_BADINDEX: return err::SubscriptOutOfRange;
    case DISP_E_UNKNOWNLCID: return 447;
    case DISP_E_ARRAYISLOCKED: return 10;
    case DISP_E_BADPARAMCOUNT: return err::WrongArgumentCount;
    case DISP_E_PARAMNOTOPTIONAL: return err::ArgumentNotOptional;
    case DISP_E_NOTACOLLECTION: return 451;
    case DISP_E_DIVBYZERO: return err::DivisionByZero;
    case E_OUTOFMEMORY: return err::OutOfMemory;
    case E_INVALIDARG: return err::InvalidCall;
    case E_NOINTERFACE: return 430;
    default: return 0;
    }
}

void raise(int number) { throw RuntimeError(number); }

void check(HRESULT hr) {
    if (SUCCEEDED(hr)) return;
    std::wstring description, source;
    IErrorInfo* info = nullptr;
    if (GetErrorInfo(0, &info) == S_OK && info) {
        BSTR text = nullptr;
        if (SUCCEEDED(info->GetDescription(&text)) && text) description = text;
        SysFreeString(text);
        text = nullptr;
        if (SUCCEEDED(info->GetSource(&text)) && text) source = text;
        SysFreeString(text);
        info->Release();
    }
    throw ComError(hr, std::move(description), std::move(source));
}

int conversionErrorNumber(HRESULT hr) noexcept {
    switch (hr) {
    case DISP_E_OVERFLOW: return err::Overflow;
    case E_OUTOFMEMORY: return err::OutOfMemory;
    case E_INVALIDARG: return err::InvalidCall;
    case DISP_E_MEMBERNOTFOUND:
    case DISP_E_UNKNOWNNAME: return err::NotSupported;  // an object without a default value
    default: return err::TypeMismatch;
    }
}

}  // namespace vx
