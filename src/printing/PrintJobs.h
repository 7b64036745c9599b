#pragma once
// Ds_PrintJobs: a list of print jobs by position (from 1). Add appends a new empty job
// and hands it out for the caller to fill.
#include "Vx_Main.h"
#include "core/collections/KeyedListObject.h"
#include "printing/PrintJob.h"

namespace vx {

class PrintJobs : public KeyedListObject<PrintJobs, _Ds_PrintJobs, _Ds_PrintJob> {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_PrintJobs; }

    HRESULT STDMETHODCALLTYPE Add(_Ds_PrintJob** job) override;

    // Appends a new empty job and gives it, for C++ callers that fill its fields.
    ComPtr<PrintJob> append();
};

}  // namespace vx
