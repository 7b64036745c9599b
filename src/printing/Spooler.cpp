#include "printing/Spooler.h"

#include "core/runtime/Ansi.h"
#include "core/runtime/Buffer.h"
#include "core/runtime/Text.h"

#include <algorithm>

namespace vx::spooler {

namespace {

// No enumeration of the spooler needs more than this; a call that keeps asking for more
// is refused rather than followed.
constexpr size_t kRecordBufferLimit = 16u * 1024 * 1024;

}  // namespace

void PrinterHandle::reset() noexcept {
    if (h_) service<SpoolerService>().closePrinter(h_);
    h_ = nullptr;
}

bool ansiArgument(std::wstring_view text, std::string& out) {
    if (text.find(L'\0') != std::wstring_view::npos) return false;
    out = toAnsi(text);
    return true;
}

LPSTR optionalArgument(const std::string& text) noexcept {
    return text.empty() ? nullptr : const_cast<LPSTR>(text.c_str());
}

PrinterHandle openPrinter(std::wstring_view name, PRINTER_DEFAULTSA* defaults) {
    std::string ansi;
    // An empty name would open the print server itself, not a printer.
    if (name.empty() || !ansiArgument(name, ansi)) return PrinterHandle();
    HANDLE h = nullptr;
    if (!service<SpoolerService>().openPrinter(&ansi[0], &h, defaults)) return PrinterHandle();
    return PrinterHandle(h);
}

std::vector<BYTE> recordBuffer(const EnumerationCall& call, size_t recordSize, DWORD& count) {
    count = 0;
    std::vector<BYTE> buffer;
    DWORD returned = 0;
    const bool read = growBuffer(buffer, kRecordBufferLimit, [&](std::vector<BYTE>& b) {
        DWORD needed = 0;
        returned = 0;
        if (call(b.empty() ? nullptr : b.data(), static_cast<DWORD>(b.size()), &needed, &returned))
            return BufferNeed::fits();
        return needed > b.size() ? BufferNeed::more(needed) : BufferNeed::failed();
    });
    if (read) count = static_cast<DWORD>(std::min<size_t>(returned, buffer.size() / recordSize));
    return buffer;
}

std::wstring textAt(const char* text) { return text ? fromAnsi(text) : std::wstring(); }

std::vector<std::wstring> installedDrivers(std::wstring_view server, std::wstring_view environment) {
    std::vector<std::wstring> names;
    std::string ansiServer, ansiEnvironment;
    if (!ansiArgument(server, ansiServer) || !ansiArgument(environment, ansiEnvironment)) return names;
    forEachRecord<DRIVER_INFO_4A>(
        [&](LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned) {
            return service<SpoolerService>().enumPrinterDrivers(
                optionalArgument(ansiServer), optionalArgument(ansiEnvironment), 4, buffer, size, needed, returned);
        },
        [&](const DRIVER_INFO_4A& driver) { names.push_back(trim(textAt(driver.pName))); });
    return names;
}

std::wstring defaultPrinterName() {
    std::string buffer;
    const bool read = growBuffer(buffer, 64 * 1024, [&](std::string& b) {
        DWORD size = static_cast<DWORD>(b.size());
        if (service<SpoolerService>().getDefaultPrinter(b.empty() ? nullptr : &b[0], &size)) {
            b.resize(std::min<size_t>(size, b.size()));
            return BufferNeed::fits();
        }
        return size > b.size() ? BufferNeed::more(size) : BufferNeed::failed();
    });
    return read ? fromAnsi(cutAtNul(buffer)) : std::wstring();
}

}  // namespace vx::spooler
