#include "network/EventSource.h"

#include "core/runtime/Module.h"

#include <olectl.h>

#include <algorithm>
#include <new>
#include <utility>

namespace vx {

HRESULT EventSinks::advise(IUnknown* sink, DWORD* cookie) noexcept {
    if (!cookie) return E_POINTER;
    *cookie = 0;
    if (!sink) return E_POINTER;
    ComPtr<IDispatch> d;
    if (FAILED(sink->QueryInterface(source_, reinterpret_cast<void**>(d.put()))) || !d)
        if (FAILED(sink->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(d.put()))) || !d)
            return CONNECT_E_CANNOTCONNECT;
    try {
        sinks_.push_back({next_, std::move(d)});
    } catch (...) {
        return E_OUTOFMEMORY;
    }
    *cookie = next_++;
    return S_OK;
}

HRESULT EventSinks::unadvise(DWORD cookie) noexcept {
    auto at = std::find_if(sinks_.begin(), sinks_.end(), [&](const Connection& c) { return c.cookie == cookie; });
    if (at == sinks_.end()) return CONNECT_E_NOCONNECTION;
    Connection gone = std::move(*at);  // released after the list is whole again
    sinks_.erase(at);
    return S_OK;
}

std::vector<EventSinks::Connection> EventSinks::connections() const { return sinks_; }

namespace {

// The IUnknown of a small COM object of this file, counted as a live object of the module.
template <class Interface>
class SmallObject : public Interface {
public:
    SmallObject() noexcept { module::objectCreated(); }
    virtual ~SmallObject() { module::objectDestroyed(); }
    SmallObject(const SmallObject&) = delete;
    SmallObject& operator=(const SmallObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override {
        if (!ppv) return E_POINTER;
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, __uuidof(Interface))) {
            *ppv = static_cast<Interface*>(this);
            AddRef();
            return S_OK;
        }
        *ppv = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }
    ULONG STDMETHODCALLTYPE Release() override {
        const LONG n = InterlockedDecrement(&refs_);
        if (n == 0) delete this;
        return static_cast<ULONG>(n);
    }

private:
    volatile LONG refs_ = 1;
};

// An enumerator over a fixed list (IEnumConnectionPoints, IEnumConnections). Traits::give
// hands out an item as the enumeration's element type, with its own reference.
template <class IEnum, class Element, class Item, void (*Give)(const Item&, Element&)>
class Enumerator : public SmallObject<IEnum> {
public:
    explicit Enumerator(std::vector<Item> items, size_t position = 0) : items_(std::move(items)), position_(position) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, Element* out, ULONG* fetched) override {
        if (!out || (count > 1 && !fetched)) return E_POINTER;
        ULONG n = 0;
        for (; n < count && position_ < items_.size(); ++n, ++position_) Give(items_[position_], out[n]);
        if (fetched) *fetched = n;
        return n == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const size_t left = items_.size() - position_;
        position_ += std::min<size_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        position_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnum** copy) override {
        if (!copy) return E_POINTER;
        *copy = new (std::nothrow) Enumerator(items_, position_);
        return *copy ? S_OK : E_OUTOFMEMORY;
    }

private:
    std::vector<Item> items_;
    size_t position_;
};

void givePoint(const ComPtr<IConnectionPoint>& item, IConnectionPoint*& out) {
    out = item.get();
    out->AddRef();
}
using PointEnumerator = Enumerator<IEnumConnectionPoints, IConnectionPoint*, ComPtr<IConnectionPoint>, &givePoint>;

void giveConnection(const EventSinks::Connection& item, CONNECTDATA& out) {
    out.pUnk = item.sink.get();
    out.pUnk->AddRef();
    out.dwCookie = item.cookie;
}
using ConnectionEnumerator = Enumerator<IEnumConnections, CONNECTDATA, EventSinks::Connection, &giveConnection>;

// The connection point of the outgoing interface. It keeps its container alive; the
// container does not keep it, so there is no cycle.
class ConnectionPoint : public SmallObject<IConnectionPoint> {
public:
    ConnectionPoint(IConnectionPointContainer* container, EventSinks& sinks) noexcept
        : container_(container), sinks_(sinks) {}

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override {
        if (!iid) return E_POINTER;
        *iid = sinks_.source();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) override {
        if (!container) return E_POINTER;
        *container = container_.get();
        (*container)->AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override { return sinks_.advise(sink, cookie); }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override { return sinks_.unadvise(cookie); }
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override {
        if (!connections) return E_POINTER;
        *connections = nullptr;
        try {
            *connections = new ConnectionEnumerator(sinks_.connections());
            return S_OK;
        } catch (...) {
            return E_OUTOFMEMORY;
        }
    }

private:
    ComPtr<IConnectionPointContainer> container_;
    EventSinks& sinks_;
};

}  // namespace

HRESULT Connectable::FindConnectionPoint(REFIID riid, IConnectionPoint** point) {
    if (!point) return E_POINTER;
    *point = nullptr;
    if (!IsEqualIID(riid, sinks_.source())) return CONNECT_E_NOCONNECTION;
    *point = new (std::nothrow) ConnectionPoint(this, sinks_);
    return *point ? S_OK : E_OUTOFMEMORY;
}

HRESULT Connectable::EnumConnectionPoints(IEnumConnectionPoints** points) {
    if (!points) return E_POINTER;
    *points = nullptr;
    ComPtr<IConnectionPoint> point;
    HRESULT hr = FindConnectionPoint(sinks_.source(), point.put());
    if (FAILED(hr)) return hr;
    try {
        *points = new PointEnumerator({point});
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT Connectable::GetGUID(DWORD kind, GUID* guid) {
    if (!guid) return E_POINTER;
    if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) {
        *guid = GUID_NULL;
        return E_INVALIDARG;
    }
    *guid = sinks_.source();
    return S_OK;
}

bool Connectable::queryConnectable(REFIID riid, void** ppv) noexcept {
    if (!ppv) return false;
    if (IsEqualIID(riid, IID_IConnectionPointContainer))
        *ppv = static_cast<IConnectionPointContainer*>(this);
    else if (IsEqualIID(riid, IID_IProvideClassInfo2))
        *ppv = static_cast<IProvideClassInfo2*>(this);
    else
        return false;
    static_cast<IUnknown*>(*ppv)->AddRef();
    return true;
}

void Connectable::raiseEvent(DISPID id, std::vector<VARIANT> args) noexcept {
    try {
        std::reverse(args.begin(), args.end());  // IDispatch takes the last argument first
        for (const EventSinks::Connection& c : sinks_.connections()) {
            DISPPARAMS params{args.empty() ? nullptr : args.data(), nullptr, static_cast<UINT>(args.size()), 0};
            Variant result;
            EXCEPINFO info{};
            UINT argErr = 0;
            if (c.sink->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, result.put(), &info,
                               &argErr) == DISP_E_EXCEPTION) {
                SysFreeString(info.bstrSource);
                SysFreeString(info.bstrDescription);
                SysFreeString(info.bstrHelpFile);
            }
        }
    } catch (...) {
        // a sink that cannot be reached is skipped
    }
}

}  // namespace vx
