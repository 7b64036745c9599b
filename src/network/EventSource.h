#pragma once
// Events: what makes a class a connectable object with one outgoing dispatch interface,
// so that hosts receive its events (a script host's WScript.CreateObject with a prefix,
// a forms program's WithEvents). The class derives from Connectable beside its dispatch
// base and routes its IUnknown through both:
//
//   class Network : public DispatchObject<Network, _Ds_Network>, public Connectable {
//       Network() : Connectable(DIID___Ds_Network, CLSID_Ds_Network) {}
//       HRESULT QueryInterface(REFIID riid, void** ppv) override {
//           return queryConnectable(riid, ppv) ? S_OK : DispatchObject::QueryInterface(riid, ppv);
//       }
//       ...
//   };
//   raiseEvent(1, {code, text});   // every connected sink, in the order they connected
//
// Connectable answers IConnectionPointContainer (one connection point, for the outgoing
// interface) and IProvideClassInfo2 (the class's type info and its default outgoing
// interface). A sink connects when it answers the outgoing interface or, failing that,
// IDispatch; it is called by dispatch identifier.
#include "core/runtime/ComPtr.h"
#include "core/runtime/Variant.h"

#include "core/runtime/Platform.h"

#include <vector>

namespace vx {

// The sinks connected to one outgoing interface.
class EventSinks {
public:
    explicit EventSinks(REFIID source) noexcept : source_(source) {}
    const IID& source() const noexcept { return source_; }

    HRESULT advise(IUnknown* sink, DWORD* cookie) noexcept;
    HRESULT unadvise(DWORD cookie) noexcept;

    struct Connection {
        DWORD cookie;
        ComPtr<IDispatch> sink;
    };
    // A copy of the connections, so that a sink may disconnect while an event runs.
    std::vector<Connection> connections() const;

private:
    IID source_;
    std::vector<Connection> sinks_;
    DWORD next_ = 1;
};

class Connectable : public IConnectionPointContainer, public IProvideClassInfo2 {
public:
    Connectable(REFIID source, REFCLSID classId) noexcept : sinks_(source), classId_(classId) {}
    virtual ~Connectable() = default;
    Connectable(const Connectable&) = delete;
    Connectable& operator=(const Connectable&) = delete;

    // IConnectionPointContainer
    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID riid, IConnectionPoint** point) override;
    // IProvideClassInfo2 (GetClassInfo comes from the class's dispatch base)
    HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* guid) override;

    // How many sinks are connected.
    size_t connectedSinks() const noexcept { return sinks_.connections().size(); }

protected:
    // The interface for riid when it is one of Connectable's (a new reference), or false.
    bool queryConnectable(REFIID riid, void** ppv) noexcept;
    // Calls member id of every connected sink with args (in call order; a by-reference
    // argument is passed as it is). What a sink returns or raises is not the caller's
    // concern: an event never fails the member that raises it.
    void raiseEvent(DISPID id, std::vector<VARIANT> args) noexcept;

private:
    EventSinks sinks_;
    CLSID classId_;
};

}  // namespace vx
