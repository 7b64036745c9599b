#include "printing/PrintJobs.h"

namespace vx {

ComPtr<PrintJob> PrintJobs::append() {
    ComPtr<PrintJob> job = PrintJob::create();
    items_.add(ComPtr<_Ds_PrintJob>(job.get()));
    return job;
}

HRESULT PrintJobs::Add(_Ds_PrintJob** job) {
    return deliver(job, [&] { return append(); });
}

}  // namespace vx
