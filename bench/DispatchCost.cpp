// The cost of one late-bound call made the way a compiled host makes it: IDispatch::Invoke
// by dispatch identifier (looked up once), on Ds_ListCollection.Count and on the scripting
// runtime's Dictionary.Count, each created by its registered name. Prints the nanoseconds
// per call of each as one benchmark line (no target: a figure to compare).
#include <windows.h>
#include <ole2.h>

#include <cstdio>

namespace {

// Nanoseconds per call of Count on the object the ProgID names; a negative number when
// the object cannot be created or called.
double costPerCall(const wchar_t* progId, long calls) {
    CLSID clsid;
    IDispatch* object = nullptr;
    if (FAILED(CLSIDFromProgID(progId, &clsid)) ||
        FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object))))
        return -1;
    wchar_t name[] = L"Count";
    LPOLESTR names[] = {name};
    DISPID id = 0;
    double result = -1;
    if (SUCCEEDED(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id))) {
        DISPPARAMS none{nullptr, nullptr, 0, 0};
        VARIANT value;
        VariantInit(&value);
        LARGE_INTEGER frequency, start, end;
        QueryPerformanceFrequency(&frequency);
        QueryPerformanceCounter(&start);
        bool ok = true;
        for (long i = 0; i < calls && ok; ++i) {
            ok = SUCCEEDED(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET | DISPATCH_METHOD,
                                          &none, &value, nullptr, nullptr));
            VariantClear(&value);
        }
        QueryPerformanceCounter(&end);
        if (ok) result = (end.QuadPart - start.QuadPart) * 1e9 / static_cast<double>(frequency.QuadPart) / calls;
    }
    object->Release();
    return result;
}

}  // namespace

int main() {
    OleInitialize(nullptr);
    const long calls = 2000000;
    const double ours = costPerCall(L"Vx_Main.Ds_ListCollection", calls);
    const double theirs = costPerCall(L"Scripting.Dictionary", calls);
    std::printf("BENCH IDispatch::Invoke of Count by dispatch identifier from C++, ns per call|%.1f|%.1f|-\n", ours,
                theirs);
    OleUninitialize();
    return ours < 0 || theirs < 0 ? 1 : 0;
}
