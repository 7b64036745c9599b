#pragma once
// Ds_Printer: the local printers, the default printer, adding and deleting printers, the
// jobs in a printer's queue and the installed drivers, all through the print spooler's
// ANSI calls (printing/Spooler.h). A refused call gives 0, "" or an empty list.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"

#include <string>
#include <string_view>
#include <vector>

namespace vx {

class Printer : public DispatchObject<Printer, _Ds_Printer> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_Printer; }

    // Fills the object's driver list, for the local computer and the default environment
    // of EnumPrintServerDrivers.
    Printer();

    HRESULT STDMETHODCALLTYPE GetPrinter(VARIANT* printer) override;
    HRESULT STDMETHODCALLTYPE get_DefaultPrint(BSTR* name) override;
    HRESULT STDMETHODCALLTYPE put_DefaultPrint(BSTR name) override;
    HRESULT STDMETHODCALLTYPE DeletePrintXP(BSTR NamePrint, BSTR Datatype, Flag_AttributePrinter TypeAttribute,
                                            LONG* result) override;
    HRESULT STDMETHODCALLTYPE StringFromPointer(LONG* lpString, LONG* lMaxlength, BSTR* text) override;
    HRESULT STDMETHODCALLTYPE RefreshJobList(BSTR PrinterName, LONG* count) override;
    HRESULT STDMETHODCALLTYPE EnumPrintersConst(VARIANT* names) override;
    HRESULT STDMETHODCALLTYPE AddXpPrint(BSTR DeviceName, BSTR DriverPrint, BSTR ServerName, BSTR sPort,
                                         BSTR PrintProcess, BSTR Datatype, Flag_AttributePrinter TypeAttribute,
                                         LONG* result) override;
    HRESULT STDMETHODCALLTYPE EnumPrintServerDrivers(VARIANT* AddDevice, BSTR sServer, BSTR sEnviron,
                                                     LONG* count) override;
    HRESULT STDMETHODCALLTYPE EnumJobPrint(BSTR* PrinterName, _Ds_PrintJobs** jobs) override;

    // The order in which drivers are tried for a new printer: the four fixed names, the
    // drivers installed for that server and environment (but the document image writer),
    // and the document image writer last.
    static std::vector<std::wstring> driverList(std::wstring_view server, std::wstring_view environment);

private:
    std::vector<std::wstring> drivers_;  // driverList() as it was when the object was made
};

}  // namespace vx
