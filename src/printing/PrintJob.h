#pragma once
// Ds_PrintJob: one print job as a plain record of texts and numbers, each readable and
// writable. Ds_Printer.EnumJobPrint fills it from the spooler's job record.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"

#include <string>

namespace vx {

class PrintJob : public DispatchObject<PrintJob, _Ds_PrintJob> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_PrintJob; }

    // The fields, for the member that fills a new job.
    struct Fields {
        std::wstring sStatus, UserName, Document, Datatype, CreateDate, PrinterName, MachineName;
        LONG JobId = 0, Status = 0, Priority = 0, Position = 0, TotalPages = 0, PagesPrinted = 0;
    };
    Fields& fields() noexcept { return f_; }

    HRESULT STDMETHODCALLTYPE get_sStatus(BSTR* value) override { return giveText(f_.sStatus, value); }
    HRESULT STDMETHODCALLTYPE put_sStatus(BSTR value) override { return takeText(f_.sStatus, value); }
    HRESULT STDMETHODCALLTYPE get_UserName(BSTR* value) override { return giveText(f_.UserName, value); }
    HRESULT STDMETHODCALLTYPE put_UserName(BSTR value) override { return takeText(f_.UserName, value); }
    HRESULT STDMETHODCALLTYPE get_Document(BSTR* value) override { return giveText(f_.Document, value); }
    HRESULT STDMETHODCALLTYPE put_Document(BSTR value) override { return takeText(f_.Document, value); }
    HRESULT STDMETHODCALLTYPE get_Datatype(BSTR* value) override { return giveText(f_.Datatype, value); }
    HRESULT STDMETHODCALLTYPE put_Datatype(BSTR value) override { return takeText(f_.Datatype, value); }
    HRESULT STDMETHODCALLTYPE get_CreateDate(BSTR* value) override { return giveText(f_.CreateDate, value); }
    HRESULT STDMETHODCALLTYPE put_CreateDate(BSTR value) override { return takeText(f_.CreateDate, value); }
    HRESULT STDMETHODCALLTYPE get_PrinterName(BSTR* value) override { return giveText(f_.PrinterName, value); }
    HRESULT STDMETHODCALLTYPE put_PrinterName(BSTR value) override { return takeText(f_.PrinterName, value); }
    HRESULT STDMETHODCALLTYPE get_MachineName(BSTR* value) override { return giveText(f_.MachineName, value); }
    HRESULT STDMETHODCALLTYPE put_MachineName(BSTR value) override { return takeText(f_.MachineName, value); }
    HRESULT STDMETHODCALLTYPE get_JobId(LONG* value) override { return giveField(f_.JobId, value); }
    HRESULT STDMETHODCALLTYPE put_JobId(LONG value) override { f_.JobId = value; return S_OK; }
    HRESULT STDMETHODCALLTYPE get_Status(LONG* value) override { return giveField(f_.Status, value); }
    HRESULT STDMETHODCALLTYPE put_Status(LONG value) override { f_.Status = value; return S_OK; }
    HRESULT STDMETHODCALLTYPE get_Priority(LONG* value) override { return giveField(f_.Priority, value); }
    HRESULT STDMETHODCALLTYPE put_Priority(LONG value) override { f_.Priority = value; return S_OK; }
    HRESULT STDMETHODCALLTYPE get_Position(LONG* value) override { return giveField(f_.Position, value); }
    HRESULT STDMETHODCALLTYPE put_Position(LONG value) override { f_.Position = value; return S_OK; }
    HRESULT STDMETHODCALLTYPE get_TotalPages(LONG* value) override { return giveField(f_.TotalPages, value); }
    HRESULT STDMETHODCALLTYPE put_TotalPages(LONG value) override { f_.TotalPages = value; return S_OK; }
    HRESULT STDMETHODCALLTYPE get_PagesPrinted(LONG* value) override { return giveField(f_.PagesPrinted, value); }
    HRESULT STDMETHODCALLTYPE put_PagesPrinted(LONG value) override { f_.PagesPrinted = value; return S_OK; }

private:
    Fields f_;
};

}  // namespace vx
