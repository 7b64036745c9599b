#pragma once
// Ds_Network: connectivity, the computer's names and addresses, MAC addresses, the
// account SID, reachability, ping, name look-ups, servers, services and adapters, with
// the class's error channel: NetCodeError and NetErrorDesration, a box when
// ShowErrorNetwork is on, the AlertError event, and the host's callback procedure.
#include "Vx_Main.h"
#include "core/dispatch/DispatchObject.h"
#include "core/runtime/Variant.h"
#include "network/EventSource.h"
#include "network/NetworkService.h"

#include <string>
#include <vector>

namespace vx {

namespace network {

// Whether address lies in committed, executable memory of this process (VirtualQuery):
// the only addresses the error channel ever calls as code.
bool isExecutableCode(ULONG_PTR address) noexcept;
// The callback address a CallProcAddress number stands for, or 0 when the library will
// not call it: 0 and negative numbers name no callback; a number that is not the address
// of executable code in the process is refused; and in a 64-bit process a 32-bit number
// cannot carry a code address, so no number is ever called there.
ULONG_PTR callbackAddress(LONG number) noexcept;

// The MAC text of six bytes: two upper-case hexadecimal digits a byte, the delimiter
// between them ("00-1A-2B-3C-4D-5E"); "" unless there are exactly six bytes.
std::wstring formatMac(const unsigned char* bytes, size_t count, std::wstring_view delimiter);

// One echo reply (the system's layout, which differs between word sizes) as the
// library's record, field by field; the reply lies in buffer (size bytes). Data holds
// the echoed bytes as text when they lie inside the buffer; the pointer fields are 0.
// The caller owns the record's Data.
Vx_GetPingInfo pingRecord(const ICMP_ECHO_REPLY& reply, const char* buffer, size_t size);

}  // namespace network

class Network : public DispatchObject<Network, _Ds_Network>, public Connectable {
public:
    static const CLSID& classId() noexcept { return CLSID_Ds_Network; }
    Network() noexcept : Connectable(DIID___Ds_Network, CLSID_Ds_Network) {}

    // IUnknown and IProvideClassInfo, shared by the dispatch base and the connectable part.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return DispatchObject::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return DispatchObject::Release(); }
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override { return DispatchObject::GetClassInfo(info); }

    HRESULT STDMETHODCALLTYPE get_CallProcAddress(LONG* value) override;
    HRESULT STDMETHODCALLTYPE put_CallProcAddress(LONG value) override;
    HRESULT STDMETHODCALLTYPE get_ShowErrorNetwork(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE put_ShowErrorNetwork(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE get_NetCodeError(VARIANT* value) override;
    HRESULT STDMETHODCALLTYPE put_NetCodeError(VARIANT value) override;
    HRESULT STDMETHODCALLTYPE putref_NetCodeError(VARIANT value) override;
    HRESULT STDMETHODCALLTYPE get_NetErrorDesration(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE put_NetErrorDesration(BSTR value) override;

    HRESULT STDMETHODCALLTYPE ConvertOf(LONG MyAddress, LONG* result) override;
    HRESULT STDMETHODCALLTYPE IsNetConnectOnline(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE IsNetConnectionAlive(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE IsNetConnectionLAN(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE IsNetConnectionRAS(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE IsNetConnectionAOL(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE IsNetConnectViaLAN(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE IsNetConnectViaModem(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE IsNetConnectViaProxy(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE IsNetRASInstalled(VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE GetNetConnectionType(BSTR* result) override;
    HRESULT STDMETHODCALLTYPE GetNetConnectString(BSTR* result) override;
    HRESULT STDMETHODCALLTYPE GetIPAll(BSTR NameComputer, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE GetIPMain(BSTR* result) override;
    HRESULT STDMETHODCALLTYPE GetMacAddressMain(BSTR* result) override;
    HRESULT STDMETHODCALLTYPE MacAddress(BSTR sRemoteIP, BSTR sDelimiter, VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE GetMyComputerName(BSTR* result) override;
    HRESULT STDMETHODCALLTYPE GetIPFromHostName(BSTR NameComputer, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE IsDestinationReachableStr(BSTR StrServer, VARIANT* InSpeed, VARIANT* OutSpeed,
                                                        VARIANT* StatusDestinationReachable,
                                                        VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE getSID(VARIANT* result) override;

    HRESULT STDMETHODCALLTYPE GetPingIP(BSTR sAddress, VARIANT* PingDataList, LONG TimeOut, LONG DataSize, LONG Ttl,
                                        LONG EchoCount, VARIANT* PingReport, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE GetIPListFromHostName(BSTR NameComputer, VARIANT* IPList, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE GetHostNameFromIP(BSTR sIPAddress, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE GetServerList(Flag_SelectNetworkType ServerType, BSTR DomainName, VARIANT* ServerList,
                                            BSTR* result) override;
    HRESULT STDMETHODCALLTYPE GetServiceList(BSTR NameComputer, _Ds_ListCollection** result) override;
    HRESULT STDMETHODCALLTYPE GetAdapterReport(BSTR NameComputer, BSTR* result) override;

private:
    // The error channel: stores, shows, raises AlertError, runs the callback.
    void reportNetError(const std::wstring& code, const std::wstring& text);
    // The socket layer, started (true) or reported and refused (false); and stopped.
    bool startSockets();
    void stopSockets();

    // The bodies the members share (they throw).
    std::wstring computerName() const;
    std::wstring ipAll(std::wstring_view computer) const;
    std::wstring ipFromHostName(std::wstring_view name);
    Variant macAddress(std::wstring_view ip, std::wstring_view delimiter);
    // GetIPMain and GetMacAddressMain: the first local address with a MAC, and that MAC.
    std::pair<std::wstring, std::wstring> mainAddress();
    // The addresses of a host name or dotted address, in the resolver's order; empty and
    // reported through the channel when it cannot be resolved.
    std::vector<ULONG> resolve(std::wstring_view name);

    LONG callProcAddress_ = 0;
    bool showErrorNetwork_ = false;
    Variant netCodeError_;
    std::wstring netErrorDesration_;
};

}  // namespace vx
