#pragma once
// The object Ds_Printer.GetPrinter hands out: the default printer's name, driver and
// port as they were when GetPrinter was called (the three properties a host knows from
// its runtime's printer object). It is not a class of the library: hosts cannot create
// one, and it has no coclass; only GetPrinter makes it.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"

#include <string>

namespace vx {

class PrinterDevice : public DispatchObject<PrinterDevice, Ds_PrinterDevice> {
public:
    // No coclass: IProvideClassInfo::GetClassInfo answers that it has none.
    static const CLSID& classId() noexcept { return GUID_NULL; }

    PrinterDevice(std::wstring name, std::wstring driver, std::wstring port)
        : name_(std::move(name)), driver_(std::move(driver)), port_(std::move(port)) {}

    HRESULT STDMETHODCALLTYPE get_DeviceName(BSTR* value) override { return giveText(name_, value); }
    HRESULT STDMETHODCALLTYPE get_DriverName(BSTR* value) override { return giveText(driver_, value); }
    HRESULT STDMETHODCALLTYPE get_Port(BSTR* value) override { return giveText(port_, value); }

private:
    const std::wstring name_, driver_, port_;
};

}  // namespace vx
