#include "network/Network.h"

#include "network/NetworkService.h"

#include "core/collections/ListCollection.h"
#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/Ansi.h"
#include "core/runtime/Buffer.h"
#include "core/runtime/Convert.h"
#include "core/runtime/Errors.h"
#include "core/runtime/Handles.h"
#include "core/runtime/LateBound.h"
#include "core/runtime/SafeArray.h"
#include "core/runtime/Services.h"
#include "core/runtime/Text.h"

#include <cstring>
#include <new>
#include <string>

namespace vx {

namespace {

constexpr wchar_t kCrLf[] = L"\r\n";

std::wstring numberText(long long n) { return std::to_wstring(n); }

// Writes value into an optional by-reference parameter a caller may have left out.
void giveBack(VARIANT* param, const Variant& value) {
    if (param) writeBack(*param, *value);
}

// The dotted text of an IPv4 address in network order.
std::wstring dotted(ULONG address) {
    in_addr a{};
    a.s_addr = address;
    const char* text = inet_ntoa(a);
    return text ? fromAnsi(text) : std::wstring();
}

// A name or address as the system's calls take it. A NUL would end it early, and the
// call would look up another name than the one asked for: such a text names nothing
// (empty).
std::string hostText(std::wstring_view text) {
    if (text.find(L'\0') != std::wstring_view::npos) return std::string();
    return toAnsi(text);
}

// A dotted IPv4 address, or INADDR_NONE.
ULONG addressOf(std::wstring_view text) {
    const std::string ansi = hostText(text);
    return ansi.empty() ? INADDR_NONE : inet_addr(ansi.c_str());
}

// An array of texts, indexed from 0, as a Variant.
Variant textArray(const std::vector<std::wstring>& items) {
    std::vector<Variant> values;
    values.reserve(items.size());
    for (const std::wstring& s : items) values.push_back(Variant::fromText(s));
    return makeVariantArray(values);
}

// Every text, each followed by CR LF.
std::wstring linesOf(const std::vector<std::wstring>& items) {
    std::wstring text;
    for (const std::wstring& s : items) text += s + kCrLf;
    return text;
}

// The WMI query every adapter member runs, on a computer ("" = this one), handing each
// adapter row to f.
template <class F>
void eachEnabledAdapter(std::wstring_view computer, F&& f) {
    const LateBound wmi =
        LateBound::bind(L"winmgmts:{impersonationLevel=impersonate}!\\\\" + std::wstring(computer) + L"\\root\\cimv2");
    const LateBound rows(
        *wmi.call(L"ExecQuery", {Variant::fromText(L"Select * from Win32_NetworkAdapterConfiguration Where IPEnabled=TRUE")}));
    rows.forEach([&](const VARIANT& row) { f(LateBound(row)); });
}

// The elements of an array property as texts ("" for Null or no array).
std::vector<std::wstring> textsOf(const Variant& value) {
    std::vector<std::wstring> texts;
    if (!isArray(*value)) return texts;
    const ArrayView a(*value);
    if (!a.get()) return texts;
    for (long i = a.lbound(); i <= a.ubound(); ++i) texts.push_back(toText(*a.at(i)));
    return texts;
}

// A property of a WMI row: Empty when the provider's class lacks it.
Variant property(const LateBound& row, const wchar_t* name) {
    try {
        return row.call(name);
    } catch (const RuntimeError& e) {
        if (e.number() != err::NotSupported) throw;
        return Variant();
    }
}

// A property as text: "" for Null, Empty and a property the class lacks.
std::wstring propertyText(const LateBound& row, const wchar_t* name) {
    const Variant v = property(row, name);
    return isNull(*v) || isEmpty(*v) ? std::wstring() : toText(*v);
}

// The system's echo status as a sentence.
std::wstring pingStatusText(ULONG status) {
    switch (status) {
    case IP_SUCCESS: return L"Success.";
    case IP_BUF_TOO_SMALL: return L"Reply buffer too small.";
    case IP_DEST_NET_UNREACHABLE: return L"Destination net unreachable.";
    case IP_DEST_HOST_UNREACHABLE: return L"Destination host unreachable.";
    case IP_DEST_PROT_UNREACHABLE: return L"Destination protocol unreachable.";
    case IP_DEST_PORT_UNREACHABLE: return L"Destination port unreachable.";
    case IP_NO_RESOURCES: return L"No resources.";
    case IP_BAD_OPTION: return L"Bad option.";
    case IP_HW_ERROR: return L"Hardware error.";
    case IP_PACKET_TOO_BIG: return L"Packet too big.";
    case IP_REQ_TIMED_OUT: return L"Request timed out.";
    case IP_BAD_REQ: return L"Bad request.";
    case IP_BAD_ROUTE: return L"Bad route.";
    case IP_TTL_EXPIRED_TRANSIT: return L"TTL expired in transit.";
    case IP_TTL_EXPIRED_REASSEM: return L"TTL expired during reassembly.";
    case IP_PARAM_PROBLEM: return L"Parameter problem.";
    case IP_SOURCE_QUENCH: return L"Source quench received.";
    case IP_OPTION_TOO_BIG: return L"Option too big.";
    case IP_BAD_DESTINATION: return L"Bad destination.";
    case IP_GENERAL_FAILURE: return L"General failure.";
    default:
        if (status < IP_STATUS_BASE) return L"The echo could not be sent (" + numberText(status) + L").";
        return L"Error " + numberText(status) + L".";
    }
}

std::wstring serviceStateText(DWORD state) {
    switch (state) {
    case SERVICE_STOPPED: return L"Stopped";
    case SERVICE_START_PENDING: return L"Start Pending";
    case SERVICE_STOP_PENDING: return L"Stop Pending";
    case SERVICE_RUNNING: return L"Running";
    case SERVICE_CONTINUE_PENDING: return L"Continue Pending";
    case SERVICE_PAUSE_PENDING: return L"Pause Pending";
    case SERVICE_PAUSED: return L"Paused";
    default: return L"Unknown";
    }
}

using UniqueServiceHandle = UniqueHandle<ClosedBy<SC_HANDLE, &CloseServiceHandle>>;
void closeIcmp(HANDLE icmp) noexcept { service<NetworkService>().icmpClose(icmp); }
using UniqueIcmp = UniqueHandle<ClosedUnlessInvalid<&closeIcmp>>;

// The record information of the type library's GetPingInfo, for Variants that hold one.
ComPtr<IRecordInfo> pingInfoRecord() {
    ITypeLib* library = typeLibrary();
    if (!library) raise(err::InternalError);
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        BSTR name = nullptr;
        if (FAILED(library->GetDocumentation(static_cast<INT>(i), &name, nullptr, nullptr, nullptr))) continue;
        const bool found = Bstr::adopt(name).view() == L"GetPingInfo";
        if (!found) continue;
        ComPtr<ITypeInfo> info;
        check(library->GetTypeInfo(i, info.put()));
        ComPtr<IRecordInfo> record;
        check(GetRecordInfoFromTypeInfo(info.get(), record.put()));
        return record;
    }
    raise(err::InternalError);
}

}  // namespace

namespace network {

bool isExecutableCode(ULONG_PTR address) noexcept {
    if (!address) return false;
    MEMORY_BASIC_INFORMATION info{};
    if (VirtualQuery(reinterpret_cast<const void*>(address), &info, sizeof info) != sizeof info) return false;
    if (info.State != MEM_COMMIT || (info.Protect & (PAGE_GUARD | PAGE_NOACCESS))) return false;
    switch (info.Protect & 0xFF) {
    case PAGE_EXECUTE:
    case PAGE_EXECUTE_READ:
    case PAGE_EXECUTE_READWRITE:
    case PAGE_EXECUTE_WRITECOPY:
        return true;
    default:
        return false;
    }
}

ULONG_PTR callbackAddress(LONG number) noexcept {
    if (number <= 0) return 0;
#if defined(_WIN64)
    // A Long holds 32 bits of a 64-bit address: whatever code lies there, the host did
    // not name it. The event AlertError is the notification in 64-bit hosts.
    return 0;
#else
    const ULONG_PTR address = static_cast<ULONG>(number);
    return isExecutableCode(address) ? address : 0;
#endif
}

// One echo reply as the library's record, copied field by field from the system's
// layout (whose pointers, and so whose size, differ between 32-bit and 64-bit builds).
// The data pointers are not kept: the reply buffer is gone when the member returns, and
// Data carries the echoed bytes themselves.
Vx_GetPingInfo pingRecord(const ICMP_ECHO_REPLY& reply, const char* buffer, size_t size) {
    Vx_GetPingInfo r{};
    r.Address = static_cast<LONG>(reply.Address);
    r.Status = static_cast<LONG>(reply.Status);
    r.RoundTripTime = static_cast<LONG>(reply.RoundTripTime);
    r.DataSize = reply.DataSize;
    r.DataPointer = 0;
    r.Options.Ttl = reply.Options.Ttl;
    r.Options.Tos = reply.Options.Tos;
    r.Options.Flags = reply.Options.Flags;
    r.Options.OptionsSize = reply.Options.OptionsSize;
    r.Options.OptionsData = 0;
    // The echoed bytes, when they lie inside the reply buffer as they must.
    const char* data = static_cast<const char*>(reply.Data);
    if (data && data >= buffer && reply.DataSize <= size && data <= buffer + (size - reply.DataSize))
    {
        const std::wstring text = fromAnsi(std::string_view(data, reply.DataSize));
        r.Data = SysAllocStringLen(text.c_str(), static_cast<UINT>(text.size()));
        if (!r.Data) throw std::bad_alloc();
    }
    return r;
}

std::wstring formatMac(const unsigned char* bytes, size_t count, std::wstring_view delimiter) {
    if (count != 6) return std::wstring();
    static const wchar_t digits[] = L"0123456789ABCDEF";
    std::wstring text;
    for (size_t i = 0; i < 6; ++i) {
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 0xF];
        if (i < 5) text += delimiter;
    }
    return text;
}

}  // namespace network

HRESULT Network::QueryInterface(REFIID riid, void** ppv) {
    if (queryConnectable(riid, ppv)) return S_OK;
    return DispatchObject::QueryInterface(riid, ppv);
}

// ---- the error channel and the socket layer ----

void Network::reportNetError(const std::wstring& code, const std::wstring& text) {
    netCodeError_ = Variant::fromText(code);
    netErrorDesration_ = text;
    if (showErrorNetwork_) service<MessageBoxService>().show(text, L"Code Error : " + code, MB_OK | MB_ICONSTOP);
    Bstr codeArg(code), textArg(text);
    BSTR codeRef = codeArg.get(), textRef = textArg.get();
    VARIANT a{}, b{};
    V_VT(&a) = VT_BYREF | VT_BSTR;
    V_BSTRREF(&a) = &codeRef;
    V_VT(&b) = VT_BYREF | VT_BSTR;
    V_BSTRREF(&b) = &textRef;
    raiseEvent(1, {a, b});
    // A handler may have replaced the texts it was handed by reference.
    if (codeRef != codeArg.get()) SysFreeString(codeRef);
    if (textRef != textArg.get()) SysFreeString(textRef);
    if (const ULONG_PTR callback = network::callbackAddress(callProcAddress_))
        service<NetworkService>().enumWindows(reinterpret_cast<WNDENUMPROC>(callback), 5);
}

bool Network::startSockets() {
    NetworkService& net = service<NetworkService>();
    WSADATA data{};
    if (net.startup(MAKEWORD(1, 1), &data) != 0) {
        reportNetError(L"20", L"The 32-bit Windows Socket is not responding. (20)");
        return false;
    }
    if (static_cast<short>(data.iMaxSockets) < 1) {
        net.cleanup();
        reportNetError(L"21", L"This application requires a minimum of 1 supported sockets. (21)");
        return false;
    }
    const int low = LOBYTE(data.wVersion), high = HIBYTE(data.wVersion);
    if (low < 1 || (low == 1 && high < 1)) {
        net.cleanup();
        reportNetError(L"22", L"Sockets version " + numberText(low) + L"." + numberText(high) +
                                  L" is not supported by 32-bit Windows Sockets. (22)");
        return false;
    }
    return true;
}

void Network::stopSockets() {
    if (service<NetworkService>().cleanup() != 0) reportNetError(L"16", L"Socket error occurred in Cleanup. (16)");
}

// ---- fields ----

HRESULT Network::get_CallProcAddress(LONG* value) { return giveField(callProcAddress_, value); }
HRESULT Network::put_CallProcAddress(LONG value) {
    callProcAddress_ = value;
    return S_OK;
}
HRESULT Network::get_ShowErrorNetwork(VARIANT_BOOL* value) {
    return deliver(value, [&] { return showErrorNetwork_; });
}
HRESULT Network::put_ShowErrorNetwork(VARIANT_BOOL value) {
    showErrorNetwork_ = value != VARIANT_FALSE;
    return S_OK;
}
HRESULT Network::get_NetCodeError(VARIANT* value) {
    return deliver(value, [&] { return netCodeError_; });
}
HRESULT Network::put_NetCodeError(VARIANT value) {
    return guard([&] { netCodeError_ = letValue(value); });
}
HRESULT Network::putref_NetCodeError(VARIANT value) {
    return guard([&] { netCodeError_ = Variant::copyOf(value); });
}
HRESULT Network::get_NetErrorDesration(BSTR* value) { return giveText(netErrorDesration_, value); }
HRESULT Network::put_NetErrorDesration(BSTR value) { return takeText(netErrorDesration_, value); }

HRESULT Network::ConvertOf(LONG MyAddress, LONG* result) {
    return deliver(result, [&] {
        callProcAddress_ = MyAddress;
        return 0;
    });
}

// ---- connectivity ----

namespace {

DWORD connectedFlags(BOOL* connected = nullptr) {
    DWORD flags = 0;
    const BOOL r = service<NetworkService>().connectedState(&flags);
    if (connected) *connected = r;
    return flags;  // read whether or not the call succeeded
}

// IsNetworkAlive's flags when it returns 1, else 0 (no flag value means anything then).
bool aliveWith(DWORD* flags) {
    DWORD f = 0;
    const bool alive = service<NetworkService>().networkAlive(&f) == 1;
    if (flags) *flags = f;
    return alive;
}

bool aliveAs(DWORD kind) {
    DWORD flags = 0;
    return aliveWith(&flags) && flags == kind;
}

}  // namespace

HRESULT Network::IsNetConnectOnline(VARIANT_BOOL* result) {
    return deliver(result, [] {
        BOOL connected = FALSE;
        connectedFlags(&connected);
        return connected != FALSE;
    });
}
HRESULT Network::IsNetConnectionAlive(VARIANT_BOOL* result) {
    return deliver(result, [] { return aliveWith(nullptr); });
}
HRESULT Network::IsNetConnectionLAN(VARIANT_BOOL* result) {
    return deliver(result, [] { return aliveAs(NETWORK_ALIVE_LAN); });
}
HRESULT Network::IsNetConnectionRAS(VARIANT_BOOL* result) {
    return deliver(result, [] { return aliveAs(NETWORK_ALIVE_WAN); });
}
HRESULT Network::IsNetConnectionAOL(VARIANT_BOOL* result) {
    return deliver(result, [] { return aliveAs(NETWORK_ALIVE_AOL); });
}
HRESULT Network::IsNetConnectViaLAN(VARIANT_BOOL* result) {
    return deliver(result, [] { return (connectedFlags() & INTERNET_CONNECTION_LAN) != 0; });
}
HRESULT Network::IsNetConnectViaModem(VARIANT_BOOL* result) {
    return deliver(result, [] { return (connectedFlags() & INTERNET_CONNECTION_MODEM) != 0; });
}
HRESULT Network::IsNetConnectViaProxy(VARIANT_BOOL* result) {
    return deliver(result, [] { return (connectedFlags() & INTERNET_CONNECTION_PROXY) != 0; });
}
HRESULT Network::IsNetRASInstalled(VARIANT_BOOL* result) {
    return deliver(result, [] { return (connectedFlags() & INTERNET_RAS_INSTALLED) != 0; });
}

HRESULT Network::GetNetConnectionType(BSTR* result) {
    return deliver(result, []() -> std::wstring {
        DWORD flags = 0;
        if (!aliveWith(&flags)) return L"The system has no connection or an error occurred";
        switch (flags) {
        case NETWORK_ALIVE_LAN: return L"The system has one or more active LAN cards";
        case NETWORK_ALIVE_WAN: return L"The system has one or more active RAS connections";
        case NETWORK_ALIVE_AOL: return L"The system is connected to America Online";
        default: return L"";
        }
    });
}

HRESULT Network::GetNetConnectString(BSTR* result) {
    return deliver(result, []() -> std::wstring {
        BOOL connected = FALSE;
        const DWORD flags = connectedFlags(&connected);
        if (!connected) return L"Not connected to the internet now.";
        std::wstring text;
        if (flags & INTERNET_CONNECTION_CONFIGURED) text += std::wstring(L"You have a network connection configured.") + kCrLf;
        if (flags & INTERNET_CONNECTION_LAN) text += L"The local system connects to the Internet via a LAN";
        text += (flags & INTERNET_CONNECTION_PROXY) ? L", and uses a proxy server. " : L".";
        if (flags & INTERNET_CONNECTION_MODEM) text += L"The local system uses a modem to connect to the Internet. ";
        if (flags & INTERNET_CONNECTION_OFFLINE) text += L"The connection is currently offline. ";
        if (flags & INTERNET_CONNECTION_MODEM_BUSY)
            text += L"The local system's modem is busy with a non-Internet connection. ";
        if (flags & INTERNET_RAS_INSTALLED) text += L"Remote Access Services are installed on this system.";
        return text;
    });
}

// ---- names and addresses ----

std::wstring Network::computerName() const {
    AnsiBuffer name(255);
    DWORD length = 255;
    GetComputerNameA(name.data(), &length);
    std::wstring text = name.text();
    if (!text.empty()) return text;
    AnsiBuffer host(256);
    gethostname(host.data(), 256);
    return trim(host.text());
}

HRESULT Network::GetMyComputerName(BSTR* result) {
    return deliver(result, [&] { return computerName(); });
}

std::wstring Network::ipAll(std::wstring_view computer) const {
    const std::wstring name = computer.empty() ? computerName() : std::wstring(computer);
    std::wstring text;
    eachEnabledAdapter(name, [&](const LateBound& adapter) {
        text += linesOf(textsOf(adapter.call(L"IPAddress")));
    });
    return text;
}

HRESULT Network::GetIPAll(BSTR NameComputer, BSTR* result) {
    return deliver(result, [&] { return ipAll(viewOf(NameComputer)); });
}

std::wstring Network::ipFromHostName(std::wstring_view name) {
    if (!startSockets()) return std::wstring();
    std::wstring ip;
    const std::string host = hostText(name.empty() ? computerName() : std::wstring(name));
    if (const hostent* entry = host.empty() ? nullptr : gethostbyname(host.c_str()))
        if (entry->h_addr_list && entry->h_addr_list[0]) {
            ULONG address = 0;
            std::memcpy(&address, entry->h_addr_list[0], sizeof address);
            ip = dotted(address);
        }
    stopSockets();
    return ip;
}

HRESULT Network::GetIPFromHostName(BSTR NameComputer, BSTR* result) {
    return deliver(result, [&] { return ipFromHostName(viewOf(NameComputer)); });
}

Variant Network::macAddress(std::wstring_view ip, std::wstring_view delimiter) {
    const std::wstring target = ip.empty() ? ipFromHostName(L"") : std::wstring(ip);
    std::wstring mac;
    const ULONG address = addressOf(target);
    if (address != 0) {
        ULONG buffer[2] = {0, 0};
        ULONG length = 6;
        if (service<NetworkService>().sendArp(address, 0, buffer, &length) == NO_ERROR && buffer[0] != 0 && length != 0)
            mac = network::formatMac(reinterpret_cast<const unsigned char*>(buffer), std::min<ULONG>(length, 8), delimiter);
    }
    if (mac.empty()) return Variant::fromShort(-1);
    return Variant::fromText(mac);
}

HRESULT Network::MacAddress(BSTR sRemoteIP, BSTR sDelimiter, VARIANT* result) {
    return deliver(result, [&] { return macAddress(viewOf(sRemoteIP), viewOf(sDelimiter)); });
}

std::pair<std::wstring, std::wstring> Network::mainAddress() {
    const std::wstring all = ipAll(L"");
    if (all.empty()) return {};
    for (const std::wstring& part : split(all, kCrLf)) {
        const Variant mac = macAddress(part, L"-");
        if (toText(*mac) != L"-1") return {part, toText(*mac)};
    }
    return {};
}

HRESULT Network::GetIPMain(BSTR* result) {
    return deliver(result, [&] { return mainAddress().first; });
}

HRESULT Network::GetMacAddressMain(BSTR* result) {
    return deliver(result, [&] { return mainAddress().second; });
}

HRESULT Network::IsDestinationReachableStr(BSTR StrServer, VARIANT* InSpeed, VARIANT* OutSpeed,
                                           VARIANT* StatusDestinationReachable, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        QOCINFO info{};
        info.dwSize = sizeof info;
        const std::string server = toAnsi(viewOf(StrServer));
        service<NetworkService>().destinationReachable(server.c_str(), &info);
        const LONG in = static_cast<LONG>(info.dwInSpeed), out = static_cast<LONG>(info.dwOutSpeed);
        auto speedText = [](LONG speed, const wchar_t* what) {
            Variant number = Variant::fromLong(speed);
            BSTR formatted = nullptr;
            check(VarFormatNumber(number.get(), 0, -2, -2, -2, 0, &formatted));
            return Bstr::adopt(formatted).str() + what;
        };
        const std::wstring inText = speedText(in, L"  In Speed bytes per second");
        const std::wstring outText = speedText(out, L"  Out Speed bytes per second");
        giveBack(InSpeed, Variant::fromText(inText));
        giveBack(OutSpeed, Variant::fromText(outText));
        giveBack(StatusDestinationReachable,
                 Variant::fromText(L"HowDestinationReachable : " + std::wstring(viewOf(StrServer)) + kCrLf + kCrLf +
                                   inText + kCrLf + kCrLf + outText));
        return in >= 1 && out >= 1;
    });
}

HRESULT Network::getSID(VARIANT* result) {
    return deliver(result, [] {
        Variant sid;
        tryStatement([&] {
            const LateBound wmi = LateBound::bind(L"winmgmts:\\\\.\\root\\cimv2");
            const LateBound accounts(*wmi.call(L"ExecQuery", {Variant::fromText(L"Select * from Win32_Account"),
                                                              Variant::fromText(L"WQL"), Variant::fromLong(48)}));
            accounts.forEach([&](const VARIANT& account) {
                if (!isEmpty(*sid)) return;
                tryStatement([&] {
                    Variant value = LateBound(account).call(L"SID");
                    if (!isNull(*value) && toText(*value).size() > 36) sid = value;
                });
            });
        });
        return sid;
    });
}

// ---- ping and look-ups ----

std::vector<ULONG> Network::resolve(std::wstring_view name) {
    const std::wstring host = name.empty() ? computerName() : std::wstring(name);
    const ULONG address = addressOf(host);
    if (address != INADDR_NONE || host == L"255.255.255.255") return {address};
    std::vector<ULONG> addresses;
    const std::string ansi = hostText(host);
    if (const hostent* entry = ansi.empty() ? nullptr : gethostbyname(ansi.c_str()))
        for (char** a = entry->h_addr_list; a && *a; ++a) {
            ULONG one = 0;
            std::memcpy(&one, *a, sizeof one);
            addresses.push_back(one);
        }
    if (addresses.empty()) {
        const std::wstring code = numberText(WSAGetLastError());
        reportNetError(code, L"The host " + host + L" could not be found. (" + code + L")");
    }
    return addresses;
}

HRESULT Network::GetPingIP(BSTR sAddress, VARIANT* PingDataList, LONG TimeOut, LONG DataSize, LONG Ttl,
                           LONG EchoCount, VARIANT* PingReport, VARIANT_BOOL* result) {
    return deliver(result, [&] {
        // A wait of at most a minute an echo, at most 65,500 bytes, a hop count the
        // protocol can carry, at most a thousand echoes.
        if (TimeOut < 0 || TimeOut > 60000 || DataSize < 0 || DataSize > 65500 || Ttl < 1 || Ttl > 255 ||
            EchoCount < 1 || EchoCount > 1000)
            raise(err::InvalidCall);
        if (!startSockets()) return false;
        ScopeExit stop{[&] { stopSockets(); }};
        const std::vector<ULONG> addresses = resolve(viewOf(sAddress));
        if (addresses.empty()) return false;
        NetworkService& net = service<NetworkService>();
        UniqueIcmp icmp(net.icmpOpen());
        if (!icmp) {
            const std::wstring code = numberText(GetLastError());
            reportNetError(code, L"The ICMP echo service is not available. (" + code + L")");
            return false;
        }
        static const char pattern[] = "abcdefghijklmnopqrstuvwabcdefghi";
        std::string request(static_cast<size_t>(DataSize), '\0');
        for (size_t i = 0; i < request.size(); ++i) request[i] = pattern[i % (sizeof pattern - 1)];
        IP_OPTION_INFORMATION options{};
        options.Ttl = static_cast<UCHAR>(Ttl);
        const size_t replySize = sizeof(ICMP_ECHO_REPLY) + request.size() + 8 + 64;

        ComPtr<IRecordInfo> record = pingInfoRecord();
        std::vector<Variant> records;
        std::wstring report;
        bool all = true, refused = false;
        for (LONG echo = 0; echo < EchoCount && !refused; ++echo) {
            std::vector<char> reply(replySize, '\0');
            SetLastError(0);
            const DWORD answers = net.icmpEcho(icmp.get(), addresses.front(), request.data(),
                                               static_cast<WORD>(request.size()), &options, reply.data(),
                                               static_cast<DWORD>(reply.size()), static_cast<DWORD>(TimeOut));
            Vx_GetPingInfo info{};
            if (answers > 0) {
                ICMP_ECHO_REPLY first;
                std::memcpy(&first, reply.data(), sizeof first);
                info = network::pingRecord(first, reply.data(), reply.size());
            } else {
                info.Address = static_cast<LONG>(addresses.front());
                const DWORD status = GetLastError();
                info.Status = static_cast<LONG>(status ? status : IP_GENERAL_FAILURE);
                // A system error rather than an echo status (those start at 11000): the
                // echo was not sent at all, and no further one would be.
                refused = status != 0 && status < IP_STATUS_BASE;
            }
            Bstr data = Bstr::adopt(info.Data);
            info.Data = nullptr;
            if (info.Status == IP_SUCCESS) {
                report += L"Reply from " + dotted(static_cast<ULONG>(info.Address)) + L": bytes=" +
                          numberText(info.DataSize) + L" time=" + numberText(info.RoundTripTime) + L"ms TTL=" +
                          numberText(info.Options.Ttl) + kCrLf;
            } else {
                all = false;
                report += pingStatusText(static_cast<ULONG>(info.Status)) + kCrLf;
            }
            // The record in a Variant, made by the type library's record information (so a
            // host can copy and free it) and filled with the fields; it owns the text.
            Variant v;
            void* made = record->RecordCreate();
            if (!made) throw std::bad_alloc();
            V_VT(v.get()) = VT_RECORD;
            V_RECORD(v.get()) = made;
            V_RECORDINFO(v.get()) = record.get();
            record->AddRef();
            info.Data = data.detach();
            *static_cast<Vx_GetPingInfo*>(made) = info;
            records.push_back(std::move(v));
        }
        giveBack(PingDataList, makeVariantArray(records));
        giveBack(PingReport, Variant::fromText(report));
        if (refused) {
            const std::wstring code = numberText(static_cast<const Vx_GetPingInfo*>(V_RECORD(records.back().get()))->Status);
            reportNetError(code, L"The echo could not be sent. (" + code + L")");
        }
        return all;
    });
}

HRESULT Network::GetIPListFromHostName(BSTR NameComputer, VARIANT* IPList, BSTR* result) {
    return deliver(result, [&] {
        if (!startSockets()) return std::wstring();
        ScopeExit stop{[&] { stopSockets(); }};
        const std::wstring name = viewOf(NameComputer).empty() ? computerName() : std::wstring(viewOf(NameComputer));
        std::vector<std::wstring> addresses;
        const std::string ansi = hostText(name);
        if (const hostent* entry = ansi.empty() ? nullptr : gethostbyname(ansi.c_str()))
            for (char** a = entry->h_addr_list; a && *a; ++a) {
                ULONG one = 0;
                std::memcpy(&one, *a, sizeof one);
                addresses.push_back(dotted(one));
            }
        if (!addresses.empty()) giveBack(IPList, textArray(addresses));
        return linesOf(addresses);
    });
}

HRESULT Network::GetHostNameFromIP(BSTR sIPAddress, BSTR* result) {
    return deliver(result, [&] {
        const std::wstring text(viewOf(sIPAddress));
        const ULONG address = addressOf(text);
        if (address == INADDR_NONE && text != L"255.255.255.255") return std::wstring();
        if (!startSockets()) return std::wstring();
        ScopeExit stop{[&] { stopSockets(); }};
        const hostent* entry = gethostbyaddr(reinterpret_cast<const char*>(&address), sizeof address, AF_INET);
        return entry && entry->h_name ? fromAnsi(entry->h_name) : std::wstring();
    });
}

// ---- servers, services, adapters ----

HRESULT Network::GetServerList(Flag_SelectNetworkType ServerType, BSTR DomainName, VARIANT* ServerList, BSTR* result) {
    return deliver(result, [&] {
        const std::wstring domain(viewOf(DomainName));
        LPBYTE buffer = nullptr;
        DWORD read = 0, total = 0;
        const NET_API_STATUS status = service<NetworkService>().serverEnum(
            nullptr, &buffer, &read, &total, static_cast<DWORD>(ServerType), domain.empty() ? nullptr : domain.c_str());
        UniqueNetBuffer owned(buffer);
        if (status != NERR_Success && status != ERROR_MORE_DATA) {
            const std::wstring code = numberText(status);
            reportNetError(code, L"The list of servers could not be read. (" + code + L")");
            return std::wstring();
        }
        std::vector<std::wstring> names;
        const auto* servers = reinterpret_cast<const SERVER_INFO_100*>(buffer);
        for (DWORD i = 0; servers && i < read; ++i)
            names.push_back(servers[i].sv100_name ? servers[i].sv100_name : L"");
        if (!names.empty()) giveBack(ServerList, textArray(names));
        return linesOf(names);
    });
}

HRESULT Network::GetServiceList(BSTR NameComputer, _Ds_ListCollection** result) {
    return deliver(result, [&] {
        auto list = ListCollection::create();
        const std::wstring computer(viewOf(NameComputer));
        const std::string machine = toAnsi(computer);
        UniqueServiceHandle manager(
            service<NetworkService>().openServiceManager(computer.empty() ? nullptr : machine.c_str()));
        std::string buffer(16384, '\0');
        DWORD count = 0;
        const bool listed = manager && growBuffer(buffer, 4u << 20, [&](std::string& b) {
            DWORD needed = 0, resume = 0;
            count = 0;
            if (EnumServicesStatusExA(manager.get(), SC_ENUM_PROCESS_INFO, SERVICE_WIN32, SERVICE_STATE_ALL,
                                      reinterpret_cast<LPBYTE>(&b[0]), static_cast<DWORD>(b.size()), &needed, &count,
                                      &resume, nullptr))
                return BufferNeed::fits();
            return GetLastError() == ERROR_MORE_DATA ? BufferNeed::more(needed) : BufferNeed::failed();
        });
        if (!listed) {
            const std::wstring code = numberText(GetLastError());
            reportNetError(code, L"The services of " + (computer.empty() ? computerName() : computer) +
                                     L" could not be read. (" + code + L")");
            return ComPtr<_Ds_ListCollection>(list.get());
        }
        const auto* services = reinterpret_cast<const ENUM_SERVICE_STATUS_PROCESSA*>(buffer.data());
        for (DWORD i = 0; i < count; ++i) {
            const std::wstring name = fromAnsi(services[i].lpServiceName ? services[i].lpServiceName : "");
            const DWORD state = services[i].ServiceStatusProcess.dwCurrentState;
            ComPtr<_Ds_DataCollection> added;
            const Variant missing = Variant::missing();
            check(list->Add(*Variant::fromText(name), Bstr(name).get(),
                            *Variant::fromText(fromAnsi(services[i].lpDisplayName ? services[i].lpDisplayName : "")),
                            *Variant::fromText(serviceStateText(state)), *Variant::fromLong(static_cast<LONG>(state)),
                            *missing, *missing, *missing, *missing, *missing, added.put()));
        }
        return ComPtr<_Ds_ListCollection>(list.get());
    });
}

HRESULT Network::GetAdapterReport(BSTR NameComputer, BSTR* result) {
    return deliver(result, [&] {
        const std::wstring computer = viewOf(NameComputer).empty() ? computerName() : std::wstring(viewOf(NameComputer));
        std::wstring report;
        try {
            eachEnabledAdapter(computer, [&](const LateBound& adapter) {
                const Variant dhcp = property(adapter, L"DHCPEnabled");
                report += L"Description : " + propertyText(adapter, L"Description") + kCrLf;
                report += L"MAC Address : " + propertyText(adapter, L"MACAddress") + kCrLf;
                report += L"IP Address : " + join(textsOf(property(adapter, L"IPAddress")), L", ") + kCrLf;
                report += L"Subnet Mask : " + join(textsOf(property(adapter, L"IPSubnet")), L", ") + kCrLf;
                report += L"Default Gateway : " + join(textsOf(property(adapter, L"DefaultIPGateway")), L", ") + kCrLf;
                report += L"DHCP Enabled : " +
                          std::wstring(!isNull(*dhcp) && !isEmpty(*dhcp) && toBool(*dhcp) ? L"True" : L"False") + kCrLf;
                report += L"DHCP Server : " + propertyText(adapter, L"DHCPServer") + kCrLf;
                report += L"DNS Servers : " + join(textsOf(property(adapter, L"DNSServerSearchOrder")), L", ") + kCrLf;
                report += kCrLf;
            });
        } catch (const ComError& e) {
            const std::wstring code = numberText(e.hresult());
            reportNetError(code, L"The adapters of " + computer + L" could not be read. (" + code + L")");
            return std::wstring();
        } catch (const RuntimeError& e) {
            const std::wstring code = numberText(e.number());
            reportNetError(code, L"The adapters of " + computer + L" could not be read. (" + code + L")");
            return std::wstring();
        }
        return report;
    });
}

}  // namespace vx
