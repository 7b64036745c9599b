// Ds_Printer against a stand-in spooler that lays its records out as the system does (the
// records, then the texts they point to, in the caller's buffer): what each member asks
// of the spooler, in which order, and what it makes of the answers. Jobs are checked only
// here, as Wine's spooler lists none; tests/host/printing.vbs runs the rest against the
// prefix's real spooler. StringFromPointer runs against real memory of every kind.
#include "printing/Spooler.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <cstring>
#include <map>
#include <optional>
#include <string>
#include <vector>

using namespace vx;
using vxtest::byRef;
using vxtest::call;
using vxtest::longOf;
using vxtest::textOf;

namespace {

// Records as an enumeration call of the spooler returns them: at most `most` records,
// then their texts, the text fields pointing into the same buffer.
template <class Record>
struct RecordImage {
    std::vector<std::pair<Record, std::vector<std::pair<LPSTR Record::*, std::string>>>> entries;

    BOOL fill(LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned, size_t most = SIZE_MAX) const {
        const size_t count = std::min(most, entries.size());
        size_t total = count * sizeof(Record);
        for (size_t i = 0; i < count; ++i)
            for (const auto& text : entries[i].second) total += text.second.size() + 1;
        *needed = static_cast<DWORD>(total);
        *returned = 0;
        if (size < total) return SetLastError(ERROR_INSUFFICIENT_BUFFER), FALSE;
        char* strings = reinterpret_cast<char*>(buffer) + count * sizeof(Record);
        for (size_t i = 0; i < count; ++i) {
            Record record = entries[i].first;
            for (const auto& [field, text] : entries[i].second) {
                record.*field = std::strcpy(strings, text.c_str());
                strings += text.size() + 1;
            }
            std::memcpy(buffer + i * sizeof(Record), &record, sizeof record);
        }
        *returned = static_cast<DWORD>(count);
        return TRUE;
    }
};

std::string number(HANDLE h) { return std::to_string(reinterpret_cast<uintptr_t>(h)); }
std::string text(LPCSTR s) { return s ? s : "(null)"; }

// The stand-in: what it holds, and a log of what was asked of it.
struct FakeSpooler {
    RecordImage<DRIVER_INFO_4A> drivers;
    RecordImage<JOB_INFO_1A> jobs;
    std::map<std::string, HANDLE> printers;  // what OpenPrinterA opens
    std::map<std::string, HANDLE> accepted;  // the drivers AddPrinterA takes, and the handle it gives
    std::string defaultPrinter, driverOfDefault, portOfDefault;
    std::vector<std::string> log;
    int openHandles = 0;

    HANDLE opened(HANDLE h) { return ++openHandles, h; }

    SpoolerService table() {
        SpoolerService s;
        s.enumPrinterDrivers = [this](LPSTR server, LPSTR environment, DWORD, LPBYTE b, DWORD n, LPDWORD need,
                                      LPDWORD got) {
            log.push_back("drivers " + text(server) + "|" + text(environment));
            return drivers.fill(b, n, need, got);
        };
        s.addPrinter = [this](LPSTR server, DWORD level, LPBYTE info) -> HANDLE {
            const auto& r = *reinterpret_cast<PRINTER_INFO_2A*>(info);
            log.push_back("add " + text(server) + "|" + std::to_string(level) + "|" + r.pPrinterName + "|" +
                          r.pDriverName + "|" + r.pPortName + "|" + r.pPrintProcessor + "|" + r.pDatatype + "|" +
                          std::to_string(r.Attributes));
            auto it = accepted.find(r.pDriverName);
            return it == accepted.end() ? nullptr : opened(it->second);
        };
        s.openPrinter = [this](LPSTR name, LPHANDLE h, LPPRINTER_DEFAULTSA d) -> BOOL {
            log.push_back("open " + text(name) +
                          (d ? "|" + text(d->pDatatype) + "|" + std::to_string(d->DesiredAccess) : ""));
            auto it = printers.find(name);
            return it != printers.end() && (*h = opened(it->second));
        };
        s.closePrinter = [this](HANDLE h) { return log.push_back("close " + number(h)), --openHandles, TRUE; };
        s.deletePrinter = [this](HANDLE h) { return log.push_back("delete " + number(h)), TRUE; };
        s.enumJobs = [this](HANDLE h, DWORD first, DWORD most, DWORD level, LPBYTE b, DWORD n, LPDWORD need,
                            LPDWORD got) {
            log.push_back("jobs " + number(h) + "|" + std::to_string(first) + "|" + std::to_string(most) + "|" +
                          std::to_string(level));
            return jobs.fill(b, n, need, got, most);
        };
        s.getDefaultPrinter = [this](LPSTR b, LPDWORD n) -> BOOL {
            if (defaultPrinter.empty()) return SetLastError(ERROR_FILE_NOT_FOUND), FALSE;
            const bool fits = *n > defaultPrinter.size();
            *n = static_cast<DWORD>(defaultPrinter.size() + 1);
            if (!fits) return SetLastError(ERROR_INSUFFICIENT_BUFFER), FALSE;
            return std::strcpy(b, defaultPrinter.c_str()), TRUE;
        };
        s.setDefaultPrinter = [this](LPCSTR name) { return log.push_back("default " + text(name)), TRUE; };
        s.getPrinter = [this](HANDLE, DWORD, LPBYTE b, DWORD n, LPDWORD need) {
            RecordImage<PRINTER_INFO_2A> info;
            info.entries.push_back({{}, {{&PRINTER_INFO_2A::pDriverName, driverOfDefault},
                                         {&PRINTER_INFO_2A::pPortName, portOfDefault}}});
            DWORD got = 0;
            return info.fill(b, n, need, &got);
        };
        return s;
    }
};

// The stand-in in place for one test, the real spooler back after it. Objects are made
// inside each test, once it is there: a new Ds_Printer reads its driver list.
class UsingFakeSpooler : public ::testing::Test {
protected:
    void SetUp() override { replaced_.emplace(fake_.table()); }
    void TearDown() override {
        replaced_.reset();
        EXPECT_EQ(fake_.openHandles, 0) << "every handle is closed";
    }
    FakeSpooler fake_;

private:
    std::optional<ReplaceService<SpoolerService>> replaced_;
};

Variant str(const std::wstring& s) { return Variant::fromText(s); }
HANDLE handle(uintptr_t n) { return reinterpret_cast<HANDLE>(n); }

// The driver names of the "add" lines of a log (the fourth field).
std::vector<std::string> addedDrivers(const std::vector<std::string>& log) {
    std::vector<std::string> drivers;
    for (const std::string& line : log) {
        if (line.rfind("add ", 0) != 0) continue;
        size_t from = 0;
        for (int field = 0; field < 3; ++field) from = line.find('|', from) + 1;
        drivers.push_back(line.substr(from, line.find('|', from) - from));
    }
    return drivers;
}

const std::vector<std::string> kFixed = {"IBM 2390 PS/1", "hp photosmart 7600 series", "AGFA-AccuSet v52.3",
                                         "HP 2500C Series"};
const std::string kWriter = "microsoft office document image writer driver";

}  // namespace

TEST_F(UsingFakeSpooler, DriverListAndTheOrderAddXpPrintTriesIt) {
    for (const char* name : {"  Vx One  ", "Microsoft Office Document Image Writer Driver", "Vx Two"})
        fake_.drivers.entries.push_back({{}, {{&DRIVER_INFO_4A::pName, name}}});
    auto p = vxtest::createObject(CLSID_Ds_Printer);
    EXPECT_EQ(fake_.log.front(), "drivers (null)|Windows NT x86") << "creation reads the local computer's list";

    // Nothing accepted: every name once, trimmed, the image writer only last; nothing to close.
    fake_.log.clear();
    EXPECT_EQ(longOf(call(p.get(), L"AddXpPrint", {str(L"Office")}).value), 0);
    std::vector<std::string> order = kFixed;
    order.insert(order.end(), {"Vx One", "Vx Two", kWriter});
    EXPECT_EQ(addedDrivers(fake_.log), order);
    EXPECT_EQ(fake_.log.front(), "add (null)|2|Office|IBM 2390 PS/1|LPT1:|WinPrint|RAW|64") << "the declared defaults";

    // The first accepted stops the attempts; its handle is closed. A handle whose low 32
    // bits are all zero (the 64-bit build) still reads as success.
    const uintptr_t wide = sizeof(void*) == 8 ? uintptr_t(1) << 31 << 1 : 0x1000;
    fake_.accepted["Vx One"] = handle(wide);
    fake_.log.clear();
    EXPECT_NE(longOf(call(p.get(), L"AddXpPrint", {str(L"Office")}).value), 0);
    EXPECT_EQ(addedDrivers(fake_.log).size(), 5u);
    EXPECT_EQ(fake_.log.back(), "close " + number(handle(wide)));

    // A driver named: that one only, with every argument passed on.
    fake_.log.clear();
    auto r = call(p.get(), L"AddXpPrint", {str(L"Office"), str(L"Vx Two"), str(L"\\\\srv"), str(L"FILE:"),
                                           str(L"Proc"), str(L"EMF"), Variant::fromLong(8)});
    EXPECT_EQ(longOf(r.value), 0);
    EXPECT_EQ(fake_.log, std::vector<std::string>{"add \\\\srv|2|Office|Vx Two|FILE:|Proc|EMF|8"});

    // EnumPrintServerDrivers appends the same list to a host's list, for the server and
    // environment given.
    auto list = vxtest::createObject(CLSID_Ds_ListCollection);
    Variant held = Variant::fromDispatch(list.get());
    r = call(p.get(), L"EnumPrintServerDrivers", {byRef(held), str(L"srv"), str(L"Windows x64")});
    EXPECT_EQ(longOf(r.value), 7);
    EXPECT_EQ(fake_.log.back(), "drivers srv|Windows x64");
    Variant last = Variant::fromLong(7);
    auto record = vxtest::objectOf(call(list.get(), L"Item", {byRef(last)}).value);
    EXPECT_EQ(textOf(vxtest::get(record.get(), L"ValueA").value), std::wstring(kWriter.begin(), kWriter.end()));
}

TEST_F(UsingFakeSpooler, EnumJobPrintListsAtMost127JobsWithTheirTextsNumbersAndDates) {
    fake_.printers["Office"] = handle(0x77);
    for (DWORD i = 0; i < 200; ++i) {
        JOB_INFO_1A job{};
        job.JobId = 1000 + i;
        job.Status = i == 0 ? 0x80000000u : 16;
        job.Priority = 1;
        job.Position = i + 1;
        job.TotalPages = 30;
        job.PagesPrinted = 12;
        job.Submitted = SYSTEMTIME{2006, 8, 4, 3, 9, 5, 7, 250};
        fake_.jobs.entries.push_back({job, {}});
        if (i != 1)  // the second job has no texts at all: null pointers
            fake_.jobs.entries.back().second = {{&JOB_INFO_1A::pPrinterName, "Office"},
                                                {&JOB_INFO_1A::pMachineName, "\\\\HOST"},
                                                {&JOB_INFO_1A::pUserName, "sara"},
                                                {&JOB_INFO_1A::pDocument, "caf\xe9.txt"},
                                                {&JOB_INFO_1A::pDatatype, "RAW"},
                                                {&JOB_INFO_1A::pStatus, "Printing"}};
    }
    auto p = vxtest::createObject(CLSID_Ds_Printer);
    fake_.log.clear();
    Variant name = str(L"Office");
    auto jobs = vxtest::objectOf(call(p.get(), L"EnumJobPrint", {byRef(name)}).value);
    ASSERT_TRUE(jobs);
    EXPECT_EQ(fake_.log, (std::vector<std::string>{"open Office", "jobs 119|0|127|1", "jobs 119|0|127|1", "close 119"}))
        << "once for the size, once for the data";
    ASSERT_EQ(longOf(vxtest::get(jobs.get(), L"Count").value), 127);
    auto field = [&](long position, const wchar_t* name) {
        Variant at = Variant::fromLong(position);
        return vxtest::get(vxtest::objectOf(call(jobs.get(), L"Item", {byRef(at)}).value).get(), name).value;
    };
    std::wstring texts;
    for (const wchar_t* f : {L"PrinterName", L"MachineName", L"UserName", L"Document", L"Datatype", L"sStatus"})
        texts += textOf(field(1, f)) + L",";
    EXPECT_EQ(texts, L"Office,\\\\HOST,sara,caf\u00e9.txt,RAW,Printing,") << "texts from the ANSI code page";
    EXPECT_EQ(textOf(field(1, L"CreateDate")), L"2006/8/3") << "the date only, unpadded";
    std::vector<long> numbers;
    for (const wchar_t* f : {L"JobId", L"Status", L"Priority", L"Position", L"TotalPages", L"PagesPrinted"})
        numbers.push_back(longOf(field(1, f)));
    EXPECT_EQ(numbers, (std::vector<long>{1000, INT32_MIN, 1, 1, 30, 12}));
    EXPECT_EQ(textOf(field(2, L"Document")), L"") << "a null pointer is an empty text";
    EXPECT_EQ(longOf(field(127, L"JobId")), 1126) << "the first 127, in the spooler's order";

    // RefreshJobList reads up to 255 and counts them.
    fake_.log.clear();
    EXPECT_EQ(longOf(call(p.get(), L"RefreshJobList", {str(L"Office")}).value), 200);
    EXPECT_EQ(fake_.log[1], "jobs 119|0|255|1");
}

TEST_F(UsingFakeSpooler, DeletingTheDefaultPrinterAndGetPrinter) {
    fake_.printers["Office"] = handle(0x33);
    auto p = vxtest::createObject(CLSID_Ds_Printer);
    fake_.log.clear();
    EXPECT_EQ(longOf(call(p.get(), L"DeletePrintXP", {str(L"Office")}).value), 1);
    EXPECT_EQ(longOf(call(p.get(), L"DeletePrintXP", {str(L"Office"), str(L"EMF"), Variant::fromLong(4)}).value), 1);
    EXPECT_EQ(longOf(call(p.get(), L"DeletePrintXP", {str(L"Nowhere")}).value), 0);
    EXPECT_EQ(fake_.log, (std::vector<std::string>{"open Office|RAW|983052", "delete 51", "close 51",
                                                   "open Office|EMF|4", "delete 51", "close 51",
                                                   "open Nowhere|RAW|983052"}));

    EXPECT_FALSE(vxtest::objectOf(call(p.get(), L"GetPrinter").value)) << "Nothing without a default printer";
    fake_.defaultPrinter = std::string(300, 'P');  // longer than a first guess at the size
    EXPECT_EQ(textOf(vxtest::get(p.get(), L"DefaultPrint").value), std::wstring(300, L'P'));
    fake_.defaultPrinter = "Office";
    fake_.driverOfDefault = "Vx One";
    fake_.portOfDefault = "LPT2:";
    auto device = vxtest::objectOf(call(p.get(), L"GetPrinter").value);
    ASSERT_TRUE(device);
    std::wstring seen;
    for (const wchar_t* f : {L"DeviceName", L"DriverName", L"Port"})
        seen += textOf(vxtest::get(device.get(), f).value) + L"|";
    EXPECT_EQ(seen, L"Office|Vx One|LPT2:|");
    fake_.log.clear();
    vxtest::put(p.get(), L"DefaultPrint", str(L"Office"));
    vxtest::put(p.get(), L"DefaultPrint", str(std::wstring(L"Office\0x", 8)));
    EXPECT_EQ(fake_.log, std::vector<std::string>{"default Office"}) << "a name holding a NUL is not passed on";
}

// ---- StringFromPointer, against real memory ----

namespace {

// Pages at an address a 32-bit number can name (below 4 GB in the 64-bit build too).
class LowPages {
public:
    explicit LowPages(size_t pages, uintptr_t from = 0x10000000, uintptr_t to = 0x7F000000) {
        for (uintptr_t at = from; at < to && !base_; at += 0x00100000)
            base_ = static_cast<char*>(
                VirtualAlloc(reinterpret_cast<void*>(at), pages * 4096, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    }
    ~LowPages() { release(); }
    void release() {
        if (base_) VirtualFree(base_, 0, MEM_RELEASE);
        base_ = nullptr;
    }
    char* get() const { return base_; }
    uintptr_t at(size_t offset) const { return reinterpret_cast<uintptr_t>(base_) + offset; }
    void protect(size_t page, DWORD protection) {
        DWORD old = 0;
        VirtualProtect(base_ + page * 4096, 4096, protection, &old);
    }

private:
    char* base_ = nullptr;
};

std::wstring readAt(IDispatch* p, uintptr_t address, long most) {
    Variant a = Variant::fromLong(static_cast<int32_t>(static_cast<uint32_t>(address)));
    Variant m = Variant::fromLong(most);
    auto r = call(p, L"StringFromPointer", {byRef(a), byRef(m)});
    EXPECT_EQ(r.errorNumber(), 0);
    return textOf(r.value);
}

}  // namespace

TEST(StringFromPointer, ReadsAnsiTextUpToItsNulAtMostTheLengthGivenAndOnlyReadableMemory) {
    auto p = vxtest::createObject(CLSID_Ds_Printer);
    LowPages pages(3);
    ASSERT_TRUE(pages.get());
    std::strcpy(pages.get(), "caf\xe9 au lait");
    EXPECT_EQ(readAt(p.get(), pages.at(0), 100), L"caf\u00e9 au lait");
    EXPECT_EQ(readAt(p.get(), pages.at(0), 4), L"caf\u00e9");
    EXPECT_EQ(readAt(p.get(), pages.at(0), 0), L"");
    EXPECT_EQ(readAt(p.get(), pages.at(0), -1), L"");
    // A text runs on across regions of different kinds, and ends where readable memory ends.
    std::memcpy(pages.get() + 4096 - 4, "tail", 4);
    std::memset(pages.get() + 4096, 'x', 2 * 4096);
    pages.protect(1, PAGE_READONLY);
    EXPECT_EQ(readAt(p.get(), pages.at(4096 - 4), 8), L"tailxxxx");
    pages.protect(2, PAGE_NOACCESS);
    EXPECT_EQ(readAt(p.get(), pages.at(4096 - 4), 100000), L"tail" + std::wstring(4096, L'x'));
    EXPECT_EQ(readAt(p.get(), pages.at(2 * 4096), 100), L"") << "no access";
    pages.protect(2, PAGE_READWRITE | PAGE_GUARD);
    EXPECT_EQ(readAt(p.get(), pages.at(2 * 4096), 100), L"") << "a guard page";
    VirtualFree(pages.get() + 2 * 4096, 4096, MEM_DECOMMIT);
    EXPECT_EQ(readAt(p.get(), pages.at(2 * 4096), 100), L"") << "reserved, not committed";
    const uintptr_t freed = pages.at(10);
    pages.release();
    EXPECT_EQ(readAt(p.get(), freed, 100), L"") << "a freed block";
}

TEST(StringFromPointer, SurvivesEveryAddressA32BitNumberNames) {
    auto p = vxtest::createObject(CLSID_Ds_Printer);
    for (uintptr_t address : {0x0, 0x1, 0xFFF, 0x1000, 0xFFFF})  // the first 64 KB are never memory
        EXPECT_EQ(readAt(p.get(), address, 100), L"") << address;
    for (uint64_t address = 0x10000; address <= 0xFFFFFFFF; address += 0x01000000) {
        readAt(p.get(), static_cast<uintptr_t>(address), 100);
        readAt(p.get(), static_cast<uintptr_t>(address - 1), 2);
    }
    readAt(p.get(), 0xFFFFFFFF, 100);
    // The number is read without sign: -1073741824 names 0xC0000000 (in the 64-bit build
    // too, where a sign would take it to the top of the address space).
    LowPages high(1, 0xC0000000, 0xF0000000);
    if (!high.get()) GTEST_SKIP() << "no memory above 2 GB in this process";
    std::strcpy(high.get(), "high");
    EXPECT_EQ(readAt(p.get(), high.at(0), 10), L"high");
}
