#pragma once
// The library defines no error numbers of its own: what reaches a host is either one of
// the automation runtime's standard errors (Err.Number 5, 6, 9, 13, ...) or, unchanged,
// an HRESULT that a platform object returned.
#include <windows.h>
#include <exception>
#include <string>

namespace vx {

// The runtime's standard error numbers that the library raises.
namespace err {
constexpr int InvalidCall = 5;          // Invalid procedure call or argument
constexpr int Overflow = 6;
constexpr int OutOfMemory = 7;
constexpr int SubscriptOutOfRange = 9;
constexpr int DivisionByZero = 11;
constexpr int TypeMismatch = 13;
constexpr int InternalError = 51;
constexpr int BadFileNameOrNumber = 52;
constexpr int FileNotFound = 53;
constexpr int PermissionDenied = 70;
constexpr int PathFileAccess = 75;
constexpr int PathNotFound = 76;
constexpr int ObjectNotSet = 91;
constexpr int InvalidUseOfNull = 94;
constexpr int ObjectRequired = 424;
constexpr int CannotCreateObject = 429;
constexpr int NotSupported = 438;       // Object doesn't support this property or method
constexpr int AutomationError = 440;
constexpr int NamedArgumentNotFound = 448;
constexpr int ArgumentNotOptional = 449;
constexpr int WrongArgumentCount = 450;
constexpr int DuplicateKey = 457;
}  // namespace err

// The HRESULT a runtime error travels as: FACILITY_CONTROL with the error number.
constexpr HRESULT runtimeHresult(int number) {
    return static_cast<HRESULT>(0x800A0000u | (static_cast<unsigned>(number) & 0xFFFFu));
}

// The runtime error number a host's Err.Number shows for a failure HRESULT: the number a
// runtime error (FACILITY_CONTROL) carries, or the runtime's own error for the dispatch and
// common failures it knows (DISP_E_DIVBYZERO is 11, DISP_E_MEMBERNOTFOUND 438 ...); 0 for
// any other HRESULT, which a host sees as the HRESULT itself.
int runtimeErrorNumber(HRESULT hr) noexcept;

// The runtime's usual description of an error number ("Overflow", "Type mismatch", ...).
std::wstring runtimeErrorText(int number);

// A runtime error raised inside a member.
class RuntimeError : public std::exception {
public:
    explicit RuntimeError(int number) noexcept : number_(number) {}
    int number() const noexcept { return number_; }
    const char* what() const noexcept override { return "Vx_Main runtime error"; }

private:
    int number_;
};

// A failure reported by a platform or automation object, passed on unchanged.
class ComError : public std::exception {
public:
    explicit ComError(HRESULT hr, std::wstring description = {}, std::wstring source = {})
        : hr_(hr), description_(std::move(description)), source_(std::move(source)) {}
    HRESULT hresult() const noexcept { return hr_; }
    const std::wstring& description() const noexcept { return description_; }
    const std::wstring& source() const noexcept { return source_; }
    const char* what() const noexcept override { return "Vx_Main COM error"; }

private:
    HRESULT hr_;
    std::wstring description_;
    std::wstring source_;
};

[[noreturn]] void raise(int number);

// Throws ComError when hr failed, carrying the thread's error info if it has any.
void check(HRESULT hr);

// The runtime error number a failed variant conversion stands for (13 or 6 mostly).
int conversionErrorNumber(HRESULT hr) noexcept;

// Runs f and tells whether it completed without a runtime or COM error; errors are
// swallowed. For members that skip a failing statement and go on with the next one.
template <class F>
bool tryStatement(F&& f) {
    try {
        f();
        return true;
    } catch (const RuntimeError&) {
        return false;
    } catch (const ComError&) {
        return false;
    }
}

}  // namespace vx
