// Ds_Printer against a stand-in spooler that lays its records out as the system does
// (the records, then the texts they point to, in the caller's buffer): what each member
// asks of the spooler, in which order, and what it makes of the answers. Jobs can only be
// checked here: Wine's spooler lists none. tests/host/printing.vbs runs the members
// against the test prefix's real spooler.
//
// StringFromPointer runs against real memory: pages of every kind, at addresses a 32-bit
// number can name in both builds.
#include "core/runtime/Convert.h"
#include "core/runtime/SafeArray.h"
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
using vxtest::textOf;

namespace {

// Records laid out as the spooler lays them out: count records, then their texts; the
// text fields point into the same buffer.
template <class Record>
struct RecordImage {
    struct Entry {
        Record record;
        std::vector<std::pair<LPSTR Record::*, std::string>> texts;
    };
    std::vector<Entry> entries;

    // Fills the caller's buffer with at most `most` records, as an enumeration call does.
    BOOL fill(LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned, size_t most = ~size_t(0)) const {
        const size_t count = std::min(most, entries.size());
        size_t total = count * sizeof(Record);
        for (size_t i = 0; i < count; ++i)
            for (const auto& text : entries[i].texts) total += text.second.size() + 1;
        *needed = static_cast<DWORD>(total);
        *returned = 0;
        if (size < total) {
            SetLastError(ERROR_INSUFFICIENT_BUFFER);
            return FALSE;
        }
        char* strings = reinterpret_cast<char*>(buffer) + count * sizeof(Record);
        for (size_t i = 0; i < count; ++i) {
            Record record = entries[i].record;
            for (const auto& [field, text] : entries[i].texts) {
                std::memcpy(strings, text.c_str(), text.size() + 1);
                record.*field = strings;
                strings += text.size() + 1;
            }
            std::memcpy(buffer + i * sizeof(Record), &record, sizeof record);
        }
        *returned = static_cast<DWORD>(count);
        return TRUE;
    }
};

HANDLE fakeHandle(uintptr_t n) { return reinterpret_cast<HANDLE>(n); }

// The stand-in spooler, and what was asked of it.
struct FakeSpooler {
    RecordImage<DRIVER_INFO_4A> drivers;
    RecordImage<PRINTER_INFO_4A> printers;
    RecordImage<JOB_INFO_1A> jobs;
    std::map<std::string, HANDLE> openable;        // printer names OpenPrinterA knows
    std::map<std::string, HANDLE> installable;     // drivers AddPrinterA accepts, and the handle it gives
    std::string defaultPrinter;                    // "" none
    std::string driverOfDefault, portOfDefault;

    std::vector<std::string> driverCalls;          // server|environment of each EnumPrinterDriversA
    std::vector<PRINTER_INFO_2A> added;            // AddPrinterA's records (texts valid during the call only)
    std::vector<std::string> addedDrivers, addedServers;
    std::vector<std::string> opened, defaultsDatatype, setDefault;
    std::vector<ACCESS_MASK> defaultsAccess;
    std::vector<HANDLE> closed, deleted;
    std::vector<DWORD> jobLimits;
    int openHandles = 0;

    SpoolerService table() {
        SpoolerService s;
        s.enumPrinterDrivers = [this](LPSTR server, LPSTR environment, DWORD level, LPBYTE buffer, DWORD size,
                                      LPDWORD needed, LPDWORD returned) {
            EXPECT_EQ(level, 4u);
            driverCalls.push_back(std::string(server ? server : "(null)") + "|" +
                                  (environment ? environment : "(null)"));
            return drivers.fill(buffer, size, needed, returned);
        };
        s.enumPrinters = [this](DWORD flags, LPSTR name, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed,
                                LPDWORD returned) {
            EXPECT_EQ(flags, static_cast<DWORD>(PRINTER_ENUM_LOCAL));
            EXPECT_EQ(name, nullptr);
            EXPECT_EQ(level, 4u);
            return printers.fill(buffer, size, needed, returned);
        };
        s.addPrinter = [this](LPSTR server, DWORD level, LPBYTE info) -> HANDLE {
            EXPECT_EQ(level, 2u);
            const auto& record = *reinterpret_cast<PRINTER_INFO_2A*>(info);
            added.push_back(record);
            addedDrivers.push_back(record.pDriverName ? record.pDriverName : "(null)");
            addedServers.push_back(server ? server : "(null)");
            auto it = installable.find(addedDrivers.back());
            if (it == installable.end()) return nullptr;
            ++openHandles;
            return it->second;
        };
        s.openPrinter = [this](LPSTR name, LPHANDLE handle, LPPRINTER_DEFAULTSA defaults) -> BOOL {
            opened.push_back(name);
            if (defaults) {
                defaultsDatatype.push_back(defaults->pDatatype ? defaults->pDatatype : "(null)");
                defaultsAccess.push_back(defaults->DesiredAccess);
            }
            auto it = openable.find(name);
            if (it == openable.end()) return FALSE;
            ++openHandles;
            *handle = it->second;
            return TRUE;
        };
        s.closePrinter = [this](HANDLE h) {
            closed.push_back(h);
            --openHandles;
            return TRUE;
        };
        s.deletePrinter = [this](HANDLE h) {
            deleted.push_back(h);
            return TRUE;
        };
        s.enumJobs = [this](HANDLE, DWORD first, DWORD most, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed,
                            LPDWORD returned) {
            EXPECT_EQ(first, 0u);
            EXPECT_EQ(level, 1u);
            jobLimits.push_back(most);
            return jobs.fill(buffer, size, needed, returned, most);
        };
        s.getDefaultPrinter = [this](LPSTR buffer, LPDWORD size) -> BOOL {
            if (defaultPrinter.empty()) {
                SetLastError(ERROR_FILE_NOT_FOUND);
                return FALSE;
            }
            if (*size < defaultPrinter.size() + 1) {
                *size = static_cast<DWORD>(defaultPrinter.size() + 1);
                SetLastError(ERROR_INSUFFICIENT_BUFFER);
                return FALSE;
            }
            std::memcpy(buffer, defaultPrinter.c_str(), defaultPrinter.size() + 1);
            *size = static_cast<DWORD>(defaultPrinter.size() + 1);
            return TRUE;
        };
        s.setDefaultPrinter = [this](LPCSTR name) {
            setDefault.push_back(name ? name : "(null)");
            return TRUE;
        };
        s.getPrinter = [this](HANDLE, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed) {
            EXPECT_EQ(level, 2u);
            RecordImage<PRINTER_INFO_2A> info;
            info.entries.push_back({PRINTER_INFO_2A{},
                                    {{&PRINTER_INFO_2A::pPrinterName, defaultPrinter},
                                     {&PRINTER_INFO_2A::pDriverName, driverOfDefault},
                                     {&PRINTER_INFO_2A::pPortName, portOfDefault}}});
            DWORD returned = 0;
            return info.fill(buffer, size, needed, &returned);
        };
        return s;
    }
};

// Puts the stand-in in place for one test, and the real spooler back after it. Objects
// are made inside each test, once the stand-in is there (a new Ds_Printer reads the
// driver list).
class UsingFakeSpooler : public ::testing::Test {
protected:
    void SetUp() override { replaced_.emplace(fake_.table()); }
    void TearDown() override {
        replaced_.reset();
        EXPECT_EQ(fake_.openHandles, 0) << "every handle is closed";
    }
    ComPtr<IDispatch> printer() { return vxtest::createObject(CLSID_Ds_Printer); }

    FakeSpooler fake_;

private:
    std::optional<ReplaceService<SpoolerService>> replaced_;
};

Variant text(const wchar_t* s) { return Variant::fromText(s); }

const std::vector<std::string> kFixed = {"IBM 2390 PS/1", "hp photosmart 7600 series", "AGFA-AccuSet v52.3",
                                         "HP 2500C Series"};
const std::string kWriter = "microsoft office document image writer driver";

void installDrivers(FakeSpooler& fake, std::initializer_list<const char*> names) {
    for (const char* name : names) fake.drivers.entries.push_back({DRIVER_INFO_4A{}, {{&DRIVER_INFO_4A::pName, name}}});
}

std::vector<std::string> namesIn(IDispatch* list) {
    std::vector<std::string> names;
    const long count = vxtest::longOf(vxtest::get(list, L"Count").value);
    for (long i = 1; i <= count; ++i) {
        Variant position = Variant::fromLong(i);
        auto record = vxtest::objectOf(call(list, L"Item", {byRef(position)}).value);
        const std::wstring name = textOf(vxtest::get(record.get(), L"ValueA").value);
        names.emplace_back(name.begin(), name.end());
    }
    return names;
}

}  // namespace

TEST_F(UsingFakeSpooler, DriverListIsFixedNamesInstalledOnesThenTheImageWriter) {
    installDrivers(fake_, {"  Vx One  ", "Microsoft Office Document Image Writer Driver", "Vx Two"});
    auto p = printer();
    ASSERT_FALSE(fake_.driverCalls.empty()) << "creation reads the list";
    EXPECT_EQ(fake_.driverCalls.front(), "(null)|Windows NT x86") << "of the local computer, the declared environment";
    auto list = vxtest::createObject(CLSID_Ds_ListCollection);
    Variant held = Variant::fromDispatch(list.get());
    auto r = call(p.get(), L"EnumPrintServerDrivers", {byRef(held), text(L"\\\\server"), text(L"Windows x64")});
    ASSERT_EQ(r.errorNumber(), 0);
    EXPECT_EQ(fake_.driverCalls.back(), "\\\\server|Windows x64");
    std::vector<std::string> expected = kFixed;
    expected.insert(expected.end(), {"Vx One", "Vx Two", kWriter});  // trimmed; the writer only last, lower-case
    EXPECT_EQ(namesIn(list.get()), expected);
    EXPECT_EQ(vxtest::longOf(r.value), 7);

    // A spooler that refuses: the fixed names and the writer all the same, appended to
    // what the list held.
    fake_.drivers.entries.clear();
    r = call(p.get(), L"EnumPrintServerDrivers", {byRef(held), text(L"nowhere")});
    EXPECT_EQ(vxtest::longOf(r.value), 5);
    EXPECT_EQ(vxtest::longOf(vxtest::get(list.get(), L"Count").value), 12);

    // Not a list: nothing is read from the spooler before the error.
    Variant nothing = Variant::fromDispatch(nullptr), number = Variant::fromLong(3);
    EXPECT_EQ(call(p.get(), L"EnumPrintServerDrivers", {byRef(nothing)}).errorNumber(), 91);
    EXPECT_EQ(call(p.get(), L"EnumPrintServerDrivers", {byRef(number)}).errorNumber(), 424);
}

TEST_F(UsingFakeSpooler, AddXpPrintTriesTheDriverListInOrderAndStopsAtTheFirstThatWorks) {
    installDrivers(fake_, {"Vx One", "Vx Two"});
    auto p = printer();
    // No driver works: every name is tried once, in the list's order; nothing to close.
    auto r = call(p.get(), L"AddXpPrint", {text(L"Office")});
    EXPECT_EQ(vxtest::longOf(r.value), 0);
    std::vector<std::string> order = kFixed;
    order.insert(order.end(), {"Vx One", "Vx Two", kWriter});
    EXPECT_EQ(fake_.addedDrivers, order);
    EXPECT_TRUE(fake_.closed.empty());
    // The record: the name and the declared defaults, on the local computer.
    const PRINTER_INFO_2A& record = fake_.added.front();
    EXPECT_EQ(record.Attributes, 64u);
    EXPECT_EQ(fake_.addedServers.front(), "(null)");

    // The list is the one the object read when it was made: a driver installed since then
    // is not tried, but a fixed name is, whether listed or not.
    fake_.addedDrivers.clear();
    fake_.installable["Vx Two"] = fakeHandle(0x51);
    fake_.installable["AGFA-AccuSet v52.3"] = fakeHandle(0x52);
    r = call(p.get(), L"AddXpPrint", {text(L"Office"), text(L""), text(L"\\\\server")});
    EXPECT_EQ(vxtest::longOf(r.value), 0x52);
    EXPECT_EQ(fake_.addedDrivers, (std::vector<std::string>{"IBM 2390 PS/1", "hp photosmart 7600 series",
                                                            "AGFA-AccuSet v52.3"}));
    EXPECT_EQ(fake_.closed, std::vector<HANDLE>{fakeHandle(0x52)}) << "the new printer's handle is closed";
    EXPECT_EQ(fake_.addedServers.back(), "\\\\server");
}

TEST_F(UsingFakeSpooler, AddXpPrintWithADriverTriesOnlyThatOne) {
    auto p = printer();
    std::string seen;
    auto table = fake_.table();
    table.addPrinter = [&](LPSTR, DWORD, LPBYTE info) -> HANDLE {
        const auto& r = *reinterpret_cast<PRINTER_INFO_2A*>(info);
        seen = std::string(r.pPrinterName) + "|" + r.pDriverName + "|" + r.pPortName + "|" + r.pPrintProcessor + "|" +
               r.pDatatype + "|" + std::to_string(r.Attributes);
        return nullptr;
    };
    ReplaceService<SpoolerService> using_(table);
    auto r = call(p.get(), L"AddXpPrint", {text(L"Office"), text(L"Vx One"), text(L""), text(L"FILE:"),
                                           text(L"Proc"), text(L"EMF"), Variant::fromLong(PRINTER_ATTRIBUTE_SHARED)});
    EXPECT_EQ(vxtest::longOf(r.value), 0);
    EXPECT_EQ(seen, "Office|Vx One|FILE:|Proc|EMF|8");
    seen.clear();
    call(p.get(), L"AddXpPrint", {text(L"Office"), text(L"Vx One")});
    EXPECT_EQ(seen, "Office|Vx One|LPT1:|WinPrint|RAW|64") << "the declared defaults";
}

TEST_F(UsingFakeSpooler, AddXpPrintRefusesNamesThatCannotPass) {
    fake_.installable["IBM 2390 PS/1"] = fakeHandle(1);
    auto p = printer();
    EXPECT_EQ(vxtest::longOf(call(p.get(), L"AddXpPrint", {text(L"")}).value), 0);
    const std::wstring withNul(L"Office\0x", 8);
    EXPECT_EQ(vxtest::longOf(call(p.get(), L"AddXpPrint", {Variant::fromText(withNul)}).value), 0);
    EXPECT_EQ(vxtest::longOf(call(p.get(), L"AddXpPrint", {text(L"Office"), Variant::fromText(withNul)}).value), 0);
    EXPECT_TRUE(fake_.added.empty()) << "nothing reached the spooler";
}

TEST_F(UsingFakeSpooler, AddXpPrintsResultIsNeverZeroForAHandle) {
    // A handle whose low 32 bits are zero (in the 64-bit build) is still a success.
    const uintptr_t high = sizeof(void*) == 8 ? uintptr_t(1) << 31 << 1 : 0x1000;
    fake_.installable["IBM 2390 PS/1"] = fakeHandle(high);
    auto p = printer();
    EXPECT_NE(vxtest::longOf(call(p.get(), L"AddXpPrint", {text(L"Office")}).value), 0);
}

TEST_F(UsingFakeSpooler, EnumJobPrintListsAtMost127JobsWithTheirTextsNumbersAndDates) {
    fake_.openable["Office"] = fakeHandle(0x77);
    for (DWORD i = 0; i < 200; ++i) {
        JOB_INFO_1A job{};
        job.JobId = 1000 + i;
        job.Status = i == 0 ? 0x80000000u : 16;
        job.Priority = 1;
        job.Position = i + 1;
        job.TotalPages = 30;
        job.PagesPrinted = 12;
        job.Submitted = SYSTEMTIME{2006, 8, 4, 3, 9, 5, 7, 250};
        if (i == 1) {
            fake_.jobs.entries.push_back({job, {}});  // no texts at all: null pointers
            continue;
        }
        fake_.jobs.entries.push_back({job,
                                      {{&JOB_INFO_1A::pPrinterName, "Office"},
                                       {&JOB_INFO_1A::pMachineName, "\\\\HOST"},
                                       {&JOB_INFO_1A::pUserName, "sara"},
                                       {&JOB_INFO_1A::pDocument, "caf\xe9.txt"},
                                       {&JOB_INFO_1A::pDatatype, "RAW"},
                                       {&JOB_INFO_1A::pStatus, "Printing"}}});
    }
    auto p = printer();
    Variant name = text(L"Office");
    auto jobs = vxtest::objectOf(call(p.get(), L"EnumJobPrint", {byRef(name)}).value);
    ASSERT_TRUE(jobs);
    EXPECT_EQ(fake_.jobLimits, (std::vector<DWORD>{127, 127})) << "once for the size, once for the data";
    ASSERT_EQ(vxtest::longOf(vxtest::get(jobs.get(), L"Count").value), 127);
    auto job = [&](long position) {
        Variant at = Variant::fromLong(position);
        return vxtest::objectOf(call(jobs.get(), L"Item", {byRef(at)}).value);
    };
    auto field = [](const ComPtr<IDispatch>& j, const wchar_t* name) { return vxtest::get(j.get(), name).value; };
    auto first = job(1);
    std::wstring texts;
    for (const wchar_t* f : {L"PrinterName", L"MachineName", L"UserName", L"Document", L"Datatype", L"sStatus"})
        texts += textOf(field(first, f)) + L",";
    EXPECT_EQ(texts, L"Office,\\\\HOST,sara,caf\u00e9.txt,RAW,Printing,") << "texts from the ANSI code page";
    EXPECT_EQ(textOf(field(first, L"CreateDate")), L"2006/8/3") << "the date only, unpadded";
    EXPECT_EQ(vxtest::longOf(field(first, L"JobId")), 1000);
    EXPECT_EQ(vxtest::longOf(field(first, L"Status")), static_cast<long>(INT32_MIN)) << "the status bits as a Long";
    std::vector<long> numbers;
    for (const wchar_t* f : {L"Priority", L"Position", L"TotalPages", L"PagesPrinted"})
        numbers.push_back(vxtest::longOf(field(first, f)));
    EXPECT_EQ(numbers, (std::vector<long>{1, 1, 30, 12}));
    EXPECT_EQ(textOf(field(job(2), L"Document")), L"") << "a null pointer is an empty text";
    EXPECT_EQ(vxtest::longOf(field(job(127), L"JobId")), 1126) << "the first 127, in the spooler's order";
    EXPECT_EQ(fake_.closed, std::vector<HANDLE>{fakeHandle(0x77)});

    // RefreshJobList reads up to 255 and counts them; it keeps nothing.
    fake_.jobLimits.clear();
    EXPECT_EQ(vxtest::longOf(call(p.get(), L"RefreshJobList", {text(L"Office")}).value), 200);
    EXPECT_EQ(fake_.jobLimits, (std::vector<DWORD>{255, 255}));
}

TEST_F(UsingFakeSpooler, AnUnknownPrinterHasNoJobs) {
    auto p = printer();
    Variant name = text(L"Nowhere");
    auto jobs = vxtest::objectOf(call(p.get(), L"EnumJobPrint", {byRef(name)}).value);
    ASSERT_TRUE(jobs);
    EXPECT_EQ(vxtest::longOf(vxtest::get(jobs.get(), L"Count").value), 0);
    EXPECT_EQ(vxtest::longOf(call(p.get(), L"RefreshJobList", {text(L"Nowhere")}).value), 0);
    EXPECT_TRUE(fake_.jobLimits.empty());
    // An empty name would open the print server itself: it is not passed on.
    EXPECT_EQ(vxtest::longOf(call(p.get(), L"RefreshJobList", {text(L"")}).value), 0);
    EXPECT_EQ(fake_.opened, (std::vector<std::string>{"Nowhere", "Nowhere"}));
}

TEST_F(UsingFakeSpooler, DeletePrintXPOpensWithTheDefaultsAndDeletesThatPrinter) {
    fake_.openable["Office"] = fakeHandle(0x33);
    auto p = printer();
    EXPECT_EQ(vxtest::longOf(call(p.get(), L"DeletePrintXP", {text(L"Office")}).value), 1);
    EXPECT_EQ(fake_.defaultsDatatype, std::vector<std::string>{"RAW"});
    EXPECT_EQ(fake_.defaultsAccess, std::vector<ACCESS_MASK>{983052});
    EXPECT_EQ(fake_.deleted, std::vector<HANDLE>{fakeHandle(0x33)});
    EXPECT_EQ(fake_.closed, std::vector<HANDLE>{fakeHandle(0x33)});
    call(p.get(), L"DeletePrintXP", {text(L"Office"), text(L"EMF"), Variant::fromLong(PRINTER_ACCESS_ADMINISTER)});
    EXPECT_EQ(fake_.defaultsDatatype.back(), "EMF");
    EXPECT_EQ(fake_.defaultsAccess.back(), 4u);
    // Nothing to open: nothing deleted.
    EXPECT_EQ(vxtest::longOf(call(p.get(), L"DeletePrintXP", {text(L"Nowhere")}).value), 0);
    EXPECT_EQ(vxtest::longOf(call(p.get(), L"DeletePrintXP", {text(L"")}).value), 0);
    EXPECT_EQ(vxtest::longOf(call(p.get(), L"DeletePrintXP", {Variant::fromText(std::wstring(L"Office\0x", 8))}).value), 0);
    EXPECT_EQ(fake_.deleted.size(), 2u);
}

TEST_F(UsingFakeSpooler, TheDefaultPrinterAndGetPrinter) {
    auto p = printer();
    EXPECT_EQ(textOf(vxtest::get(p.get(), L"DefaultPrint").value), L"");
    auto none = call(p.get(), L"GetPrinter");
    EXPECT_EQ(none.value.type(), VT_DISPATCH);
    EXPECT_FALSE(vxtest::objectOf(none.value)) << "Nothing when there is no default printer";

    fake_.defaultPrinter = std::string(300, 'P');  // longer than a first guess at the size
    EXPECT_EQ(textOf(vxtest::get(p.get(), L"DefaultPrint").value), std::wstring(300, L'P'));
    fake_.defaultPrinter = "Office";
    fake_.driverOfDefault = "Vx One";
    fake_.portOfDefault = "LPT2:";
    fake_.openable["Office"] = fakeHandle(0x44);
    auto device = vxtest::objectOf(call(p.get(), L"GetPrinter").value);
    ASSERT_TRUE(device);
    fake_.defaultPrinter = "Other";  // it keeps what it found
    EXPECT_EQ(textOf(vxtest::get(device.get(), L"DeviceName").value), L"Office");
    EXPECT_EQ(textOf(vxtest::get(device.get(), L"DriverName").value), L"Vx One");
    EXPECT_EQ(textOf(vxtest::get(device.get(), L"Port").value), L"LPT2:");
    EXPECT_EQ(fake_.closed, std::vector<HANDLE>{fakeHandle(0x44)});
    // A default that cannot be opened: its name, with no driver or port.
    device = vxtest::objectOf(call(p.get(), L"GetPrinter").value);
    EXPECT_EQ(textOf(vxtest::get(device.get(), L"DeviceName").value), L"Other");
    EXPECT_EQ(textOf(vxtest::get(device.get(), L"DriverName").value), L"");

    EXPECT_EQ(vxtest::put(p.get(), L"DefaultPrint", text(L"Office")).errorNumber(), 0);
    EXPECT_EQ(vxtest::put(p.get(), L"DefaultPrint", Variant::fromText(std::wstring(L"Office\0x", 8))).errorNumber(), 0);
    EXPECT_EQ(fake_.setDefault, std::vector<std::string>{"Office"}) << "a name holding a NUL is not passed on";
}

TEST_F(UsingFakeSpooler, EnumPrintersConstIsAnArrayOfTheNames) {
    auto p = printer();
    auto names = call(p.get(), L"EnumPrintersConst").value;
    ASSERT_TRUE(isArray(*names));
    EXPECT_EQ(ArrayView(*names).ubound(), -1) << "no printers: an empty array";
    for (const char* n : {"Office", "Front desk"})
        fake_.printers.entries.push_back({PRINTER_INFO_4A{}, {{&PRINTER_INFO_4A::pPrinterName, n}}});
    names = call(p.get(), L"EnumPrintersConst").value;
    ArrayView view(*names);
    ASSERT_EQ(view.ubound(), 1);
    EXPECT_EQ(textOf(view.at(0)), L"Office");
    EXPECT_EQ(textOf(view.at(1)), L"Front desk");
}

TEST(PrintJobs, FieldsHaveTheirDispatchIdentifiersInOrder) {
    // Early-bound hosts compile against these.
    auto job = vxtest::createObject(CLSID_Ds_PrintJob);
    const wchar_t* names[] = {L"sStatus",     L"UserName", L"Document", L"Datatype", L"CreateDate",
                              L"PrinterName", L"MachineName", L"JobId",  L"Status",   L"Priority",
                              L"Position",    L"TotalPages",  L"PagesPrinted"};
    for (DISPID i = 0; i < 13; ++i) {
        LPOLESTR name = const_cast<LPOLESTR>(names[i]);
        DISPID id = 0;
        ASSERT_EQ(job->GetIDsOfNames(IID_NULL, &name, 1, 0, &id), S_OK);
        EXPECT_EQ(id, 0x40030000 + i) << i;
    }
}

// ---- StringFromPointer, against real memory ----

namespace {

// Pages at an address a 32-bit number can name (below 4 GB in the 64-bit build too),
// released when the test ends.
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

TEST(StringFromPointer, ReadsAnsiTextUpToItsNulAndAtMostTheLengthGiven) {
    auto p = vxtest::createObject(CLSID_Ds_Printer);
    LowPages pages(2);
    ASSERT_TRUE(pages.get());
    std::strcpy(pages.get(), "caf\xe9 au lait");
    const auto at = reinterpret_cast<uintptr_t>(pages.get());
    EXPECT_EQ(readAt(p.get(), at, 100), L"caf\u00e9 au lait");
    EXPECT_EQ(readAt(p.get(), at, 4), L"caf\u00e9");
    EXPECT_EQ(readAt(p.get(), at, 1000000), L"caf\u00e9 au lait") << "not beyond the NUL";
    EXPECT_EQ(readAt(p.get(), at, 0), L"");
    EXPECT_EQ(readAt(p.get(), at, -1), L"");
    // A text that runs into memory that cannot be read ends there.
    std::memcpy(pages.get() + 4096 - 4, "tail", 4);
    pages.protect(1, PAGE_NOACCESS);
    EXPECT_EQ(readAt(p.get(), at + 4096 - 4, 100), L"tail");
    // Across two readable regions of different kinds, it goes on.
    pages.protect(1, PAGE_READONLY);
    EXPECT_EQ(readAt(p.get(), at + 4096 - 4, 100), L"tail") << "the second page is all NULs";
}

TEST(StringFromPointer, AddressesThatAreNotReadableMemoryGiveEmptyText) {
    auto p = vxtest::createObject(CLSID_Ds_Printer);
    // The first 64 KB are never memory.
    for (uintptr_t address : {0x0, 0x1, 0xFFF, 0x1000, 0xFFFF}) EXPECT_EQ(readAt(p.get(), address, 100), L"") << address;
    // Whatever else a 32-bit number names, the call reads only what may be read: a sweep
    // of the whole range, every 16 MB and at the edges.
    for (uint64_t address = 0x10000; address <= 0xFFFFFFFF; address += 0x01000000) {
        readAt(p.get(), static_cast<uintptr_t>(address), 100);
        readAt(p.get(), static_cast<uintptr_t>(address - 1), 2);
    }
    readAt(p.get(), 0xFFFFFFFF, 100);
    readAt(p.get(), 0x7FFFFFFF, 100);
    LowPages pages(3);
    ASSERT_TRUE(pages.get());
    std::memset(pages.get(), 'x', 3 * 4096);
    const auto at = reinterpret_cast<uintptr_t>(pages.get());
    pages.protect(0, PAGE_NOACCESS);
    EXPECT_EQ(readAt(p.get(), at, 100), L"") << "no access";
    pages.protect(1, PAGE_READWRITE | PAGE_GUARD);
    EXPECT_EQ(readAt(p.get(), at + 4096, 100), L"") << "a guard page";
    EXPECT_EQ(readAt(p.get(), at + 2 * 4096 + 4000, 200), std::wstring(96, L'x')) << "ends with the block";
    VirtualFree(pages.get() + 2 * 4096, 4096, MEM_DECOMMIT);
    EXPECT_EQ(readAt(p.get(), at + 2 * 4096, 100), L"") << "reserved, not committed";
    pages.release();
    EXPECT_EQ(readAt(p.get(), at + 10, 100), L"") << "a freed block";
}

TEST(StringFromPointer, ANegativeNumberIsAnAddressAbove2GB) {
    // The number is read without sign: in the 64-bit build -1073741824 names 0xC0000000.
    LowPages pages(1, 0xC0000000, 0xF0000000);
    if (!pages.get()) GTEST_SKIP() << "no memory above 2 GB in this process";
    std::strcpy(pages.get(), "high");
    auto p = vxtest::createObject(CLSID_Ds_Printer);
    EXPECT_EQ(readAt(p.get(), reinterpret_cast<uintptr_t>(pages.get()), 10), L"high");
}
