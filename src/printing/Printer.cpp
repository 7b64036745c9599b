#include "printing/Printer.h"

#include "Vx_MainEnums.h"
#include "core/dispatch/Defaults.h"
#include "core/runtime/Ansi.h"
#include "core/runtime/Convert.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/SafeArray.h"
#include "core/runtime/Text.h"
#include "printing/PrintJobs.h"
#include "printing/PrinterDevice.h"
#include "printing/Spooler.h"
#include "shared/DateText.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace vx {

using spooler::ansiArgument;
using spooler::optionalArgument;
using spooler::textAt;

namespace {

// Tried first for a new printer, in this order, whether installed or not.
const wchar_t* const kFixedDrivers[] = {L"IBM 2390 PS/1", L"hp photosmart 7600 series", L"AGFA-AccuSet v52.3",
                                        L"HP 2500C Series"};
// Tried last (and only there, even when it is installed).
constexpr std::wstring_view kImageWriter = L"microsoft office document image writer driver";

// The most jobs EnumJobPrint lists, and RefreshJobList reads.
constexpr DWORD kListedJobs = 127;
constexpr DWORD kRefreshedJobs = 255;

spooler::EnumerationCall jobEnumeration(HANDLE printer, DWORD most) {
    return [printer, most](LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned) {
        return service<SpoolerService>().enumJobs(printer, 0, most, 1, buffer, size, needed, returned);
    };
}

// AddPrinterA's handle as the member's result: only a success flag, so a handle whose
// low 32 bits are all zero (possible in the 64-bit build) still reads as success.
LONG successFlag(HANDLE added) noexcept {
    if (!added) return 0;
    const auto low = static_cast<LONG>(static_cast<uint32_t>(reinterpret_cast<uintptr_t>(added)));
    return low ? low : 1;
}

// Memory that can be read without a fault: committed, readable, not a guard page.
bool readable(const MEMORY_BASIC_INFORMATION& region) noexcept {
    constexpr DWORD kReadable = PAGE_READONLY | PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READ |
                                PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    return region.State == MEM_COMMIT && !(region.Protect & (PAGE_GUARD | PAGE_NOACCESS)) &&
           (region.Protect & kReadable);
}

// The bytes at address up to the first NUL, at most `most` of them. Only memory that
// VirtualQuery reports readable is read: the text ends where such memory ends, and an
// address that is not readable memory gives "".
std::string ansiTextAt(uintptr_t address, size_t most) {
    std::string text;
    while (text.size() < most) {
        MEMORY_BASIC_INFORMATION region{};
        if (!VirtualQuery(reinterpret_cast<LPCVOID>(address), &region, sizeof region) || !readable(region)) break;
        const uintptr_t end = reinterpret_cast<uintptr_t>(region.BaseAddress) + region.RegionSize;
        if (end <= address) break;  // the region reaches the top of the address space
        const char* at = reinterpret_cast<const char*>(address);
        const size_t n = std::min<size_t>(end - address, most - text.size());
        if (const void* nul = std::memchr(at, 0, n)) return text.append(at, static_cast<const char*>(nul) - at);
        text.append(at, n);
        address = end;
    }
    return text;
}

// The default printer's driver and port, as GetPrinterA (level 2) tells them.
void driverAndPort(std::wstring_view printerName, std::wstring& driver, std::wstring& port) {
    spooler::PrinterHandle printer = spooler::openPrinter(printerName);
    if (!printer) return;
    spooler::forEachRecord<PRINTER_INFO_2A>(
        [&](LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned) {
            const BOOL read = service<SpoolerService>().getPrinter(printer.get(), 2, buffer, size, needed);
            *returned = read ? 1 : 0;
            return read;
        },
        [&](const PRINTER_INFO_2A& info) {
            driver = textAt(info.pDriverName);
            port = textAt(info.pPortName);
        });
}

}  // namespace

std::vector<std::wstring> Printer::driverList(std::wstring_view server, std::wstring_view environment) {
    std::vector<std::wstring> list(std::begin(kFixedDrivers), std::end(kFixedDrivers));
    for (std::wstring& name : spooler::installedDrivers(server, environment))
        if (lower(name) != kImageWriter) list.push_back(std::move(name));
    list.emplace_back(kImageWriter);
    return list;
}

Printer::Printer() {
    static const std::wstring environment =
        toText(declaredDefault(IID__Ds_Printer, L"EnumPrintServerDrivers", L"sEnviron"));
    drivers_ = driverList(L"", environment);
}

HRESULT Printer::GetPrinter(VARIANT* printer) {
    return deliver(printer, [&] {
        const std::wstring name = spooler::defaultPrinterName();
        if (name.empty()) return Variant::fromDispatch(nullptr);
        std::wstring driver, port;
        driverAndPort(name, driver, port);
        return Variant::fromDispatch(PrinterDevice::create(name, driver, port).get());
    });
}

HRESULT Printer::get_DefaultPrint(BSTR* name) {
    return deliver(name, [] { return spooler::defaultPrinterName(); });
}

HRESULT Printer::put_DefaultPrint(BSTR name) {
    return guard([&] {
        std::string ansi;
        if (ansiArgument(viewOf(name), ansi)) service<SpoolerService>().setDefaultPrinter(ansi.c_str());
    });
}

HRESULT Printer::DeletePrintXP(BSTR NamePrint, BSTR Datatype, Flag_AttributePrinter TypeAttribute, LONG* result) {
    return deliver(result, [&]() -> LONG {
        std::string datatype;
        if (!ansiArgument(viewOf(Datatype), datatype)) return 0;
        PRINTER_DEFAULTSA defaults{optionalArgument(datatype), nullptr, static_cast<ACCESS_MASK>(TypeAttribute)};
        spooler::PrinterHandle printer = spooler::openPrinter(viewOf(NamePrint), &defaults);
        return printer && service<SpoolerService>().deletePrinter(printer.get()) ? 1 : 0;
    });
}

HRESULT Printer::StringFromPointer(LONG* lpString, LONG* lMaxlength, BSTR* text) {
    return deliver(text, [&] {
        // The number is an address of 32 bits, read without sign: in the 64-bit build
        // only the memory below 4 GB can be named.
        const auto address = static_cast<uintptr_t>(static_cast<uint32_t>(required(lpString)));
        const LONG most = required(lMaxlength);
        if (most <= 0) return std::wstring();
        return fromAnsi(ansiTextAt(address, static_cast<size_t>(most)));
    });
}

HRESULT Printer::RefreshJobList(BSTR PrinterName, LONG* count) {
    return deliver(count, [&]() -> LONG {
        spooler::PrinterHandle printer = spooler::openPrinter(viewOf(PrinterName));
        if (!printer) return 0;
        DWORD jobs = 0;
        spooler::recordBuffer(jobEnumeration(printer.get(), kRefreshedJobs), sizeof(JOB_INFO_1A), jobs);
        return static_cast<LONG>(jobs);
    });
}

HRESULT Printer::EnumPrintersConst(VARIANT* names) {
    return deliver(names, [&] {
        std::vector<Variant> list;
        spooler::forEachRecord<PRINTER_INFO_4A>(
            [](LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned) {
                return service<SpoolerService>().enumPrinters(PRINTER_ENUM_LOCAL, nullptr, PRINTER_LEVEL4, buffer,
                                                              size, needed, returned);
            },
            [&](const PRINTER_INFO_4A& info) { list.push_back(Variant::fromText(textAt(info.pPrinterName))); });
        return makeVariantArray(list);
    });
}

HRESULT Printer::AddXpPrint(BSTR DeviceName, BSTR DriverPrint, BSTR ServerName, BSTR sPort, BSTR PrintProcess,
                            BSTR Datatype, Flag_AttributePrinter TypeAttribute, LONG* result) {
    return deliver(result, [&]() -> LONG {
        std::string name, driver, server, port, processor, datatype;
        if (viewOf(DeviceName).empty() || !ansiArgument(viewOf(DeviceName), name) ||
            !ansiArgument(viewOf(DriverPrint), driver) || !ansiArgument(viewOf(ServerName), server) ||
            !ansiArgument(viewOf(sPort), port) || !ansiArgument(viewOf(PrintProcess), processor) ||
            !ansiArgument(viewOf(Datatype), datatype))
            return 0;
        PRINTER_INFO_2A info{};
        info.pPrinterName = &name[0];
        info.pPortName = &port[0];
        info.pPrintProcessor = &processor[0];
        info.pDatatype = &datatype[0];
        info.Attributes = static_cast<DWORD>(TypeAttribute);
        auto attempt = [&](std::string driverName) {
            info.pDriverName = &driverName[0];
            spooler::PrinterHandle added(service<SpoolerService>().addPrinter(
                optionalArgument(server), PRINTER_LEVEL2, reinterpret_cast<LPBYTE>(&info)));
            return successFlag(added.get());
        };
        if (!driver.empty()) return attempt(driver);
        for (const std::wstring& candidate : drivers_)
            if (const LONG added = attempt(toAnsi(candidate))) return added;
        return 0;
    });
}

HRESULT Printer::EnumPrintServerDrivers(VARIANT* AddDevice, BSTR sServer, BSTR sEnviron, LONG* count) {
    return deliver(count, [&]() -> LONG {
        const LateBound list(required(AddDevice));  // an object with an Add method; else 424, Nothing 91
        LONG appended = 0;
        for (const std::wstring& name : driverList(viewOf(sServer), viewOf(sEnviron))) {
            list.call(L"Add", {Variant::fromText(name)});
            ++appended;
        }
        return appended;
    });
}

HRESULT Printer::EnumJobPrint(BSTR* PrinterName, _Ds_PrintJobs** jobs) {
    return deliver(jobs, [&] {
        ComPtr<PrintJobs> list = PrintJobs::create();
        spooler::PrinterHandle printer = spooler::openPrinter(viewOf(required(PrinterName)));
        if (!printer) return list;
        spooler::forEachRecord<JOB_INFO_1A>(jobEnumeration(printer.get(), kListedJobs), [&](const JOB_INFO_1A& job) {
            PrintJob::Fields& f = list->append()->fields();
            f.PrinterName = textAt(job.pPrinterName);
            f.MachineName = textAt(job.pMachineName);
            f.UserName = textAt(job.pUserName);
            f.Document = textAt(job.pDocument);
            f.Datatype = textAt(job.pDatatype);
            f.sStatus = textAt(job.pStatus);
            f.JobId = static_cast<LONG>(job.JobId);
            f.Status = static_cast<LONG>(job.Status);
            f.Priority = static_cast<LONG>(job.Priority);
            f.Position = static_cast<LONG>(job.Position);
            f.TotalPages = static_cast<LONG>(job.TotalPages);
            f.PagesPrinted = static_cast<LONG>(job.PagesPrinted);
            f.CreateDate = systemTimeText(job.Submitted, false);
        });
        return list;
    });
}

}  // namespace vx
