#pragma once
// The print spooler as the printer classes reach it: its ANSI calls, through one
// service (see core/runtime/Seams.h), and the few things every member needs of them:
// a printer handle closed through the same service, the "learn the size, then read the
// records" pattern, and the texts the records point to.
//
// Records are the system's own (PRINTER_INFO_4A, DRIVER_INFO_4A, JOB_INFO_1A ...), laid
// out as the build's word size lays them out: a stand-in spooler fills the same
// structures.
#include "core/runtime/Seams.h"

#include "core/runtime/Platform.h"

#include <winspool.h>

#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vx {

struct SpoolerService {
    std::function<BOOL(DWORD, LPSTR, DWORD, LPBYTE, DWORD, LPDWORD, LPDWORD)> enumPrinters = &::EnumPrintersA;
    std::function<BOOL(LPSTR, LPSTR, DWORD, LPBYTE, DWORD, LPDWORD, LPDWORD)> enumPrinterDrivers =
        &::EnumPrinterDriversA;
    std::function<HANDLE(LPSTR, DWORD, LPBYTE)> addPrinter = &::AddPrinterA;
    std::function<BOOL(LPSTR, LPHANDLE, LPPRINTER_DEFAULTSA)> openPrinter = &::OpenPrinterA;
    std::function<BOOL(HANDLE)> deletePrinter = &::DeletePrinter;
    std::function<BOOL(HANDLE)> closePrinter = &::ClosePrinter;
    std::function<BOOL(HANDLE, DWORD, DWORD, DWORD, LPBYTE, DWORD, LPDWORD, LPDWORD)> enumJobs = &::EnumJobsA;
    std::function<BOOL(HANDLE, DWORD, LPBYTE, DWORD, LPDWORD)> getPrinter = &::GetPrinterA;
    std::function<BOOL(LPSTR, LPDWORD)> getDefaultPrinter = &::GetDefaultPrinterA;
    std::function<BOOL(LPCSTR)> setDefaultPrinter = &::SetDefaultPrinterA;
};

namespace spooler {

// A printer handle from OpenPrinterA or AddPrinterA, closed through the service.
class PrinterHandle {
public:
    PrinterHandle() noexcept = default;
    explicit PrinterHandle(HANDLE h) noexcept : h_(h) {}
    PrinterHandle(const PrinterHandle&) = delete;
    PrinterHandle& operator=(const PrinterHandle&) = delete;
    ~PrinterHandle() { reset(); }
    HANDLE get() const noexcept { return h_; }
    explicit operator bool() const noexcept { return h_ != nullptr; }
    void reset() noexcept;

private:
    HANDLE h_ = nullptr;
};

// A text as the spooler's A functions take it: false when it cannot pass as one (it
// holds a NUL, which would cut it short and so name something else).
bool ansiArgument(std::wstring_view text, std::string& out);
// The same, where "" stands for no text (a null pointer: the local computer, the
// default): the pointer to pass.
LPSTR optionalArgument(const std::string& text) noexcept;

// Opens a printer by name (with these defaults, or none); an empty handle when the name
// cannot pass or the spooler refuses.
PrinterHandle openPrinter(std::wstring_view name, PRINTER_DEFAULTSA* defaults = nullptr);

// An enumeration call of the spooler with the caller's arguments bound: buffer, its
// size, the size needed, the number of records returned.
using EnumerationCall = std::function<BOOL(LPBYTE, DWORD, LPDWORD, LPDWORD)>;

// Calls an enumeration first without a buffer to learn the size, then with a buffer of
// that size (again, larger, should the records have grown in between), and hands each
// record it returned to visit, while the texts they point to are alive. Nothing when
// the call failed.
template <class Record, class Visit>
void forEachRecord(const EnumerationCall& call, Visit&& visit);
// The untyped core of forEachRecord: the buffer, and the number of records of
// recordSize bytes it holds (never more than fit).
std::vector<BYTE> recordBuffer(const EnumerationCall& call, size_t recordSize, DWORD& count);

// A text a record points to, from the ANSI code page ("" for a null pointer).
std::wstring textAt(const char* text);

// The drivers installed for a server ("" the local computer) and an environment ("" the
// system's own), as names, trimmed, in the spooler's order.
std::vector<std::wstring> installedDrivers(std::wstring_view server, std::wstring_view environment);

// The name of the default printer; "" when there is none.
std::wstring defaultPrinterName();

template <class Record, class Visit>
void forEachRecord(const EnumerationCall& call, Visit&& visit) {
    DWORD count = 0;
    const std::vector<BYTE> buffer = recordBuffer(call, sizeof(Record), count);
    for (DWORD i = 0; i < count; ++i) {
        Record record;
        std::memcpy(&record, buffer.data() + i * sizeof(Record), sizeof record);
        visit(static_cast<const Record&>(record));
    }
}

}  // namespace spooler

}  // namespace vx
