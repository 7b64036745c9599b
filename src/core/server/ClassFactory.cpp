#include "core/server/ClassFactory.h"

#include "core/runtime/Module.h"

#include <new>

namespace vx {

namespace {

class ClassFactory : public IClassFactory {
public:
    explicit ClassFactory(const ClassEntry& entry) noexcept : entry_(entry) { module::objectCreated(); }
    virtual ~ClassFactory() { module::objectDestroyed(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override {
        if (!ppv) return E_POINTER;
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IClassFactory)) {
            *ppv = static_cast<IClassFactory*>(this);
            AddRef();
            return S_OK;
        }
        *ppv = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }
    ULONG STDMETHODCALLTYPE Release() override {
        LONG n = InterlockedDecrement(&refs_);
        if (n == 0) delete this;
        return static_cast<ULONG>(n);
    }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** ppv) override {
        if (!ppv) return E_POINTER;
        *ppv = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        return entry_.create(riid, ppv);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        if (lock)
            module::lock();
        else
            module::unlock();
        return S_OK;
    }

private:
    const ClassEntry& entry_;
    volatile LONG refs_ = 1;
};

}  // namespace

HRESULT getClassFactory(REFCLSID clsid, REFIID riid, void** ppv) noexcept {
    if (!ppv) return E_POINTER;
    *ppv = nullptr;
    const ClassEntry* entry = findClass(clsid);
    // Dependent classes come only from other members: hosts cannot create them.
    if (!entry || !isCreatable(*entry)) return CLASS_E_CLASSNOTAVAILABLE;
    ClassFactory* factory = new (std::nothrow) ClassFactory(*entry);
    if (!factory) return E_OUTOFMEMORY;
    HRESULT hr = factory->QueryInterface(riid, ppv);
    factory->Release();
    return hr;
}

}  // namespace vx
