// Ds_Network where a script cannot reach: the callback's safety in this word size, the
// error channel's order (stored, shown, raised, called back), the connection points,
// the socket codes, and through the network service what the system here cannot give
// (flags, ARP, speeds, echo replies of chosen shape, servers, a refusing service
// manager). tests/host/network.vbs runs the class against the real services.
#include "network/NetworkService.h"

#include "core/dispatch/TypeLibrary.h"
#include "core/runtime/Ansi.h"
#include "core/runtime/Convert.h"
#include "core/runtime/SafeArray.h"
#include "core/runtime/Services.h"
#include "network/Network.h"

#include "../fixtures/FixtureCom.h"
#include "TestSupport.h"
#include "Vx_Main.h"
#include "Vx_MainEnums.h"

#include <olectl.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

using namespace vx;
using vxtest::call;
using vxtest::get;

namespace {

Variant text(const wchar_t* s) { return Variant::fromText(s); }

// A sink for the event interface that records each AlertError as "code|text".
class RecordingSink : public fixture::Scriptable {
public:
    std::vector<std::wstring> heard;
    std::vector<std::wstring>* order = nullptr;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        if (id != 1 || !params || params->cArgs != 2) return DISP_E_MEMBERNOTFOUND;
        // Last argument first; both are strings passed by reference.
        heard.push_back(fixture::textOf(&params->rgvarg[1]) + L"|" + fixture::textOf(&params->rgvarg[0]));
        if (order) order->push_back(L"event");
        return S_OK;
    }

protected:
    void* extraQuery(REFIID riid) override {
        return IsEqualIID(riid, DIID___Ds_Network) ? static_cast<IDispatch*>(this) : nullptr;
    }
};

ComPtr<IConnectionPoint> pointOf(IDispatch* net) {
    ComPtr<IConnectionPointContainer> container;
    EXPECT_EQ(net->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(container.put())), S_OK);
    ComPtr<IConnectionPoint> point;
    if (container) {
        EXPECT_EQ(container->FindConnectionPoint(DIID___Ds_Network, point.put()), S_OK);
    }
    return point;
}

// A host's callback procedure, and what it was handed.
std::vector<LPARAM> callbackParams;
BOOL CALLBACK hostCallback(HWND, LPARAM param) {
    callbackParams.push_back(param);
    return FALSE;  // once is enough
}

// Replaces the socket start with one that fails as the test says.
NetworkService failingStart(int result, USHORT maxSockets = 32767, WORD version = MAKEWORD(1, 1)) {
    NetworkService fake = service<NetworkService>();
    fake.startup = [=](WORD, WSADATA* data) {
        *data = WSADATA{};
        data->wVersion = version;
        data->iMaxSockets = maxSockets;
        return result;
    };
    fake.cleanup = [] { return 0; };
    return fake;
}

// A stand-in WMI service whose queries answer these rows; it records the monikers and
// the queries it is asked.
struct FakeWmi {
    std::vector<std::wstring> monikers, queries;
    std::vector<std::function<IDispatch*()>> rows;
    BindingService binding() {
        BindingService b = service<BindingService>();
        b.getObject = [this](const std::wstring& moniker, IDispatch** out) {
            monikers.push_back(moniker);
            auto* wmi = new fixture::Scriptable;
            wmi->on(L"ExecQuery", [this](fixture::Call& c) {
                std::wstring q;
                for (VARIANT* a : c.args) q += (q.empty() ? L"" : L";") + fixture::textOf(a);
                queries.push_back(q);
                std::vector<IDispatch*> made;
                for (auto& row : rows) made.push_back(row());
                fixture::setObject(c.result, fixture::collection(made));
                return S_OK;
            });
            *out = wmi;
            return S_OK;
        };
        return b;
    }
};

// A WMI row with an array of texts, as WMI gives them (a String array).
IDispatch* adapterRow(std::vector<std::wstring> addresses) {
    auto* row = new fixture::Scriptable;
    row->on(L"IPAddress", [addresses](fixture::Call& c) {
        SAFEARRAY* sa = SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(addresses.size()));
        for (LONG i = 0; i < static_cast<LONG>(addresses.size()); ++i) {
            BSTR b = SysAllocString(addresses[static_cast<size_t>(i)].c_str());
            SafeArrayPutElement(sa, &i, b);
            SysFreeString(b);
        }
        VariantClear(c.result);
        V_VT(c.result) = VT_ARRAY | VT_BSTR;
        V_ARRAY(c.result) = sa;
        return S_OK;
    });
    return row;
}

ULONG ipOf(const char* dotted) { return inet_addr(dotted); }

}  // namespace

// ---- the callback ----

TEST(NetworkCallback, OnlyExecutableCodeIsEverCalled) {
    const auto code = reinterpret_cast<ULONG_PTR>(&hostCallback);
    int local = 0;
    EXPECT_TRUE(network::isExecutableCode(code));
    EXPECT_FALSE(network::isExecutableCode(reinterpret_cast<ULONG_PTR>(&local))) << "the stack is data";
    EXPECT_FALSE(network::isExecutableCode(reinterpret_cast<ULONG_PTR>(&callbackParams))) << "so is a global";
    EXPECT_FALSE(network::isExecutableCode(0));
    EXPECT_FALSE(network::isExecutableCode(1));
    // A procedure of a module that has been unloaded.
    HMODULE module = LoadLibraryW(L"cabinet.dll");
    ASSERT_TRUE(module);
    const auto gone = reinterpret_cast<ULONG_PTR>(GetProcAddress(module, "DllGetVersion"));
    ASSERT_TRUE(network::isExecutableCode(gone));
    if (FreeLibrary(module) && !GetModuleHandleW(L"cabinet.dll")) {
        EXPECT_FALSE(network::isExecutableCode(gone));
    }
    // Numbers the host may store.
    EXPECT_EQ(network::callbackAddress(0), 0u);
    EXPECT_EQ(network::callbackAddress(-1), 0u);
    EXPECT_EQ(network::callbackAddress(static_cast<LONG>(0x80000000u)), 0u);
    EXPECT_EQ(network::callbackAddress(static_cast<LONG>(reinterpret_cast<ULONG_PTR>(&local))), 0u);
#if defined(_WIN64)
    // A Long carries 32 bits of an address: never called, even when they point at code.
    EXPECT_EQ(network::callbackAddress(static_cast<LONG>(code)), 0u);
#else
    EXPECT_EQ(network::callbackAddress(static_cast<LONG>(code)), code);
#endif
}

TEST(NetworkCallback, TheChannelCallsTheHostsProcedureWithFive) {
    auto net = vxtest::createObject(CLSID_Ds_Network);
    std::vector<std::pair<ULONG_PTR, LPARAM>> enumerations;
    NetworkService fake = failingStart(WSASYSNOTREADY);
    fake.enumWindows = [&](WNDENUMPROC proc, LPARAM param) {
        enumerations.push_back({reinterpret_cast<ULONG_PTR>(proc), param});
        return TRUE;
    };
    ReplaceService<NetworkService> using_(fake);
    int data = 0;
    for (LONG n : {0L, -7L, 1L, static_cast<LONG>(reinterpret_cast<ULONG_PTR>(&data)), 0x7FFFFFFFL}) {
        ASSERT_EQ(vxtest::put(net.get(), L"CallProcAddress", Variant::fromLong(n)).hr, S_OK);
        EXPECT_EQ(vxtest::textOf(call(net.get(), L"GetIPFromHostName", {text(L"localhost")}).value), L"");
    }
    EXPECT_TRUE(enumerations.empty()) << "no number that is not code was called";
    const LONG code = static_cast<LONG>(reinterpret_cast<ULONG_PTR>(&hostCallback));
    EXPECT_EQ(vxtest::longOf(call(net.get(), L"ConvertOf", {Variant::fromLong(code)}).value), 0);
    call(net.get(), L"GetIPFromHostName", {text(L"localhost")});
#if defined(_WIN64)
    EXPECT_TRUE(enumerations.empty());
#else
    ASSERT_EQ(enumerations.size(), 1u);
    EXPECT_EQ(enumerations[0].first, reinterpret_cast<ULONG_PTR>(&hostCallback));
    EXPECT_EQ(enumerations[0].second, 5);
#endif
}

#if !defined(_WIN64)
TEST(NetworkCallback, TheProcedureRunsForRealInThe32BitBuild) {
    // A top-level window of our own, so that the enumeration has one to hand over.
    HWND window = CreateWindowExW(0, L"STATIC", L"vx callback test", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(window);
    auto net = vxtest::createObject(CLSID_Ds_Network);
    NetworkService fake = failingStart(WSASYSNOTREADY);
    fake.enumWindows = service<NetworkService>().enumWindows;
    ReplaceService<NetworkService> using_(fake);
    callbackParams.clear();
    vxtest::put(net.get(), L"CallProcAddress", Variant::fromLong(static_cast<LONG>(reinterpret_cast<ULONG_PTR>(&hostCallback))));
    call(net.get(), L"GetIPFromHostName", {text(L"")});
    DestroyWindow(window);
    EXPECT_EQ(callbackParams, std::vector<LPARAM>{5}) << "once, with 5, until it returned 0";
}
#endif

// ---- the error channel ----

TEST(NetworkErrors, StoredThenShownThenRaisedThenCalledBack) {
    auto net = vxtest::createObject(CLSID_Ds_Network);
    std::vector<std::wstring> order;
    ComPtr<RecordingSink> sink = ComPtr<RecordingSink>::adopt(new RecordingSink);
    sink->order = &order;
    DWORD cookie = 0;
    ComPtr<IConnectionPoint> point = pointOf(net.get());
    ASSERT_EQ(point->Advise(static_cast<IDispatch*>(sink.get()), &cookie), S_OK);

    MessageBoxService box;
    box.show = [&](const std::wstring& message, const std::wstring& title, UINT style) {
        order.push_back(L"box " + title + L" " + std::to_wstring(style) + L" " + message);
        // Already stored when the box shows.
        EXPECT_EQ(vxtest::textOf(get(net.get(), L"NetCodeError").value), L"20");
        return IDOK;
    };
    ReplaceService<MessageBoxService> boxes(box);
    NetworkService fake = failingStart(WSASYSNOTREADY);
    fake.enumWindows = [&](WNDENUMPROC, LPARAM) {
        order.push_back(L"callback");
        return TRUE;
    };
    ReplaceService<NetworkService> using_(fake);

    EXPECT_EQ(vxtest::textOf(call(net.get(), L"GetIPFromHostName").value), L"");
    ASSERT_EQ(order.size(), 1u) << "without the switch no box, and no callback";
    vxtest::put(net.get(), L"ShowErrorNetwork", Variant::fromBool(true));
#if !defined(_WIN64)
    vxtest::put(net.get(), L"CallProcAddress", Variant::fromLong(static_cast<LONG>(reinterpret_cast<ULONG_PTR>(&hostCallback))));
#endif
    order.clear();
    call(net.get(), L"GetIPFromHostName");
    const std::wstring text20 = L"The 32-bit Windows Socket is not responding. (20)";
    std::vector<std::wstring> expected{L"box Code Error : 20 16 " + text20, L"event"};
#if !defined(_WIN64)
    expected.push_back(L"callback");
#endif
    EXPECT_EQ(order, expected);
    EXPECT_EQ(sink->heard.back(), L"20|" + text20);
    EXPECT_EQ(vxtest::textOf(get(net.get(), L"NetErrorDesration").value), text20);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

TEST(NetworkErrors, SocketCodesAndTexts) {
    auto net = vxtest::createObject(CLSID_Ds_Network);
    auto codeAfter = [&](NetworkService fake) {
        ReplaceService<NetworkService> using_(fake);
        EXPECT_EQ(vxtest::textOf(call(net.get(), L"GetIPFromHostName", {text(L"localhost")}).value), L"");
        return vxtest::textOf(get(net.get(), L"NetCodeError").value) + L" " +
               vxtest::textOf(get(net.get(), L"NetErrorDesration").value);
    };
    EXPECT_EQ(codeAfter(failingStart(WSAVERNOTSUPPORTED)), L"20 The 32-bit Windows Socket is not responding. (20)");
    EXPECT_EQ(codeAfter(failingStart(0, 0)), L"21 This application requires a minimum of 1 supported sockets. (21)");
    EXPECT_EQ(codeAfter(failingStart(0, 32767, MAKEWORD(0, 2))),
              L"22 Sockets version 0.2 is not supported by 32-bit Windows Sockets. (22)");
    EXPECT_EQ(codeAfter(failingStart(0, 32767, MAKEWORD(1, 0))),
              L"22 Sockets version 1.0 is not supported by 32-bit Windows Sockets. (22)");
    // A cleanup that fails after a look-up that worked.
    NetworkService cleanupFails = service<NetworkService>();
    cleanupFails.cleanup = [] {
        ::WSACleanup();
        return SOCKET_ERROR;
    };
    ReplaceService<NetworkService> using_(cleanupFails);
    EXPECT_EQ(vxtest::textOf(call(net.get(), L"GetIPFromHostName", {text(L"localhost")}).value), L"127.0.0.1");
    EXPECT_EQ(vxtest::textOf(get(net.get(), L"NetErrorDesration").value), L"Socket error occurred in Cleanup. (16)");
}

TEST(NetworkEvents, ConnectionPointsAsHostsUseThem) {
    auto net = vxtest::createObject(CLSID_Ds_Network);
    ComPtr<IProvideClassInfo2> info;
    ASSERT_EQ(net->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(info.put())), S_OK);
    GUID source{};
    EXPECT_EQ(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source), S_OK);
    EXPECT_TRUE(IsEqualIID(source, DIID___Ds_Network));
    EXPECT_EQ(info->GetGUID(12345, &source), E_INVALIDARG);
    ComPtr<ITypeInfo> coclass;
    ASSERT_EQ(info->GetClassInfo(coclass.put()), S_OK);
    TYPEATTR* attr = nullptr;
    ASSERT_EQ(coclass->GetTypeAttr(&attr), S_OK);
    EXPECT_TRUE(IsEqualGUID(attr->guid, CLSID_Ds_Network));
    coclass->ReleaseTypeAttr(attr);

    ComPtr<IConnectionPointContainer> container;
    ASSERT_EQ(net->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(container.put())), S_OK);
    ComPtr<IConnectionPoint> point;
    EXPECT_EQ(container->FindConnectionPoint(IID_IDispatch, point.put()), CONNECT_E_NOCONNECTION);
    ComPtr<IEnumConnectionPoints> points;
    ASSERT_EQ(container->EnumConnectionPoints(points.put()), S_OK);
    ULONG fetched = 0;
    ASSERT_EQ(points->Next(1, point.put(), &fetched), S_OK);
    IID iid{};
    point->GetConnectionInterface(&iid);
    EXPECT_TRUE(IsEqualIID(iid, DIID___Ds_Network));
    ComPtr<IConnectionPointContainer> back;
    point->GetConnectionPointContainer(back.put());
    EXPECT_EQ(back.get(), container.get());

    // Two sinks hear each event; one that goes hears no more; a bad cookie is refused.
    auto a = ComPtr<RecordingSink>::adopt(new RecordingSink), b = ComPtr<RecordingSink>::adopt(new RecordingSink);
    DWORD ca = 0, cb = 0;
    ASSERT_EQ(point->Advise(static_cast<IDispatch*>(a.get()), &ca), S_OK);
    ASSERT_EQ(point->Advise(static_cast<IDispatch*>(b.get()), &cb), S_OK);
    EXPECT_NE(ca, cb);
    ComPtr<IEnumConnections> connections;
    ASSERT_EQ(point->EnumConnections(connections.put()), S_OK);
    CONNECTDATA data[3]{};
    EXPECT_EQ(connections->Next(3, data, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 2u);
    for (ULONG i = 0; i < fetched; ++i) data[i].pUnk->Release();
    {
        ReplaceService<NetworkService> using_(failingStart(WSASYSNOTREADY));
        call(net.get(), L"GetIPFromHostName");
        EXPECT_EQ(point->Unadvise(ca), S_OK);
        EXPECT_EQ(point->Unadvise(ca), CONNECT_E_NOCONNECTION);
        call(net.get(), L"GetIPFromHostName");
    }
    EXPECT_EQ(a->heard.size(), 1u);
    EXPECT_EQ(b->heard.size(), 2u);
    // Something that is no dispatch interface cannot connect.
    ComPtr<IUnknown> notASink;
    CreateBindCtx(0, reinterpret_cast<IBindCtx**>(notASink.put()));
    DWORD cookie = 0;
    EXPECT_EQ(point->Advise(notASink.get(), &cookie), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(point->Unadvise(cb), S_OK);
}

// ---- connectivity, addresses, speeds through the service ----

TEST(NetworkState, SentencesFromTheFlags) {
    auto net = vxtest::createObject(CLSID_Ds_Network);
    BOOL connected = TRUE, alive = TRUE;
    DWORD flags = 0, aliveFlags = 0;
    NetworkService fake = service<NetworkService>();
    fake.connectedState = [&](DWORD* f) {
        *f = flags;
        return connected;
    };
    fake.networkAlive = [&](DWORD* f) {
        *f = aliveFlags;
        return alive;
    };
    ReplaceService<NetworkService> using_(fake);
    auto textOf = [&](const wchar_t* member) { return vxtest::textOf(call(net.get(), member).value); };
    auto is = [&](const wchar_t* member) { return call(net.get(), member).value->boolVal != VARIANT_FALSE; };

    flags = INTERNET_CONNECTION_LAN;
    EXPECT_EQ(textOf(L"GetNetConnectString"), L"The local system connects to the Internet via a LAN.");
    flags = 0x7F;
    EXPECT_EQ(textOf(L"GetNetConnectString"),
              L"You have a network connection configured.\r\nThe local system connects to the Internet via a LAN, and "
              L"uses a proxy server. The local system uses a modem to connect to the Internet. The connection is "
              L"currently offline. The local system's modem is busy with a non-Internet connection. Remote Access "
              L"Services are installed on this system.");
    flags = INTERNET_CONNECTION_MODEM;
    EXPECT_EQ(textOf(L"GetNetConnectString"), L".The local system uses a modem to connect to the Internet. ");
    connected = FALSE;
    EXPECT_EQ(textOf(L"GetNetConnectString"), L"Not connected to the internet now.");
    EXPECT_FALSE(is(L"IsNetConnectOnline"));
    flags = INTERNET_CONNECTION_LAN | INTERNET_CONNECTION_PROXY | INTERNET_RAS_INSTALLED;
    EXPECT_TRUE(is(L"IsNetConnectViaLAN")) << "the flags count even when the call fails";
    EXPECT_TRUE(is(L"IsNetConnectViaProxy"));
    EXPECT_TRUE(is(L"IsNetRASInstalled"));
    EXPECT_FALSE(is(L"IsNetConnectViaModem"));

    const std::pair<DWORD, const wchar_t*> kinds[] = {
        {1, L"The system has one or more active LAN cards"},
        {2, L"The system has one or more active RAS connections"},
        {4, L"The system is connected to America Online"},
        {3, L""}};
    for (const auto& k : kinds) {
        aliveFlags = k.first;
        EXPECT_EQ(textOf(L"GetNetConnectionType"), k.second) << k.first;
        EXPECT_EQ(is(L"IsNetConnectionLAN"), k.first == 1);
        EXPECT_EQ(is(L"IsNetConnectionRAS"), k.first == 2);
        EXPECT_EQ(is(L"IsNetConnectionAOL"), k.first == 4);
    }
    alive = FALSE;
    aliveFlags = 1;
    EXPECT_EQ(textOf(L"GetNetConnectionType"), L"The system has no connection or an error occurred");
    EXPECT_FALSE(is(L"IsNetConnectionLAN"));
    EXPECT_FALSE(is(L"IsNetConnectionAlive"));
}

TEST(NetworkAddresses, MacTextsFromArp) {
    EXPECT_EQ(network::formatMac(reinterpret_cast<const unsigned char*>("\x00\x1a\x2b\x3c\x4d\x5e"), 6, L"-"),
              L"00-1A-2B-3C-4D-5E");
    EXPECT_EQ(network::formatMac(reinterpret_cast<const unsigned char*>("abcdef"), 5, L"-"), L"");
    auto net = vxtest::createObject(CLSID_Ds_Network);
    std::vector<unsigned char> answer{0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E};
    ULONG answerLength = 6;
    DWORD result = NO_ERROR;
    std::vector<ULONG> asked;
    NetworkService fake = service<NetworkService>();
    fake.sendArp = [&](IPAddr dest, IPAddr, void* mac, ULONG* length) {
        asked.push_back(dest);
        EXPECT_EQ(*length, 6u);
        std::memcpy(mac, answer.data(), answer.size());
        *length = answerLength;
        return result;
    };
    ReplaceService<NetworkService> using_(fake);
    auto mac = [&](const wchar_t* ip, const wchar_t* delimiter) {
        std::vector<Variant> args{text(ip)};
        if (delimiter) args.push_back(text(delimiter));
        return call(net.get(), L"MacAddress", args).value;
    };
    EXPECT_EQ(vxtest::textOf(mac(L"10.0.0.7", nullptr)), L"00-1A-2B-3C-4D-5E");
    EXPECT_EQ(asked.back(), ipOf("10.0.0.7"));
    EXPECT_EQ(vxtest::textOf(mac(L"10.0.0.7", L":")), L"00:1A:2B:3C:4D:5E");
    EXPECT_EQ(vxtest::textOf(mac(L"10.0.0.7", L"")), L"001A2B3C4D5E");
    const size_t calls = asked.size();
    EXPECT_EQ(V_I2(mac(L"0.0.0.0", nullptr).get()), -1) << "address 0 is not looked up";
    EXPECT_EQ(asked.size(), calls);
    answer = {0, 0, 0, 0, 0x4D, 0x5E};
    EXPECT_EQ(mac(L"10.0.0.7", nullptr).type(), VT_I2) << "a zero first word is no answer";
    answer = {1, 2, 3, 4, 5, 6};
    answerLength = 4;
    EXPECT_EQ(V_I2(mac(L"10.0.0.7", nullptr).get()), -1) << "four bytes are no MAC";
    answerLength = 6;
    result = ERROR_BAD_NET_NAME;
    EXPECT_EQ(V_I2(mac(L"10.0.0.7", nullptr).get()), -1);
    result = NO_ERROR;
    EXPECT_EQ(vxtest::textOf(mac(L"", nullptr)), L"01-02-03-04-05-06");
    EXPECT_EQ(asked.back(), ipOf(vx::toAnsi(vxtest::textOf(call(net.get(), L"GetIPFromHostName").value)).c_str()))
        << "an empty address is this computer's";
}

TEST(NetworkAddresses, MainAddressIsTheFirstWithAMac) {
    FakeWmi wmi;
    wmi.rows = {[] { return adapterRow({L"10.0.0.5", L"fe80::1"}); }, [] { return adapterRow({L"10.0.0.7"}); }};
    ReplaceService<BindingService> binding(wmi.binding());
    std::vector<ULONG> answering{ipOf("10.0.0.7")};
    NetworkService fake = service<NetworkService>();
    fake.sendArp = [&](IPAddr dest, IPAddr, void* mac, ULONG* length) -> DWORD {
        if (std::find(answering.begin(), answering.end(), dest) == answering.end()) return ERROR_BAD_NET_NAME;
        std::memcpy(mac, "\x0A\x0B\x0C\x0D\x0E\x0F", 6);
        *length = 6;
        return NO_ERROR;
    };
    ReplaceService<NetworkService> using_(fake);
    auto net = vxtest::createObject(CLSID_Ds_Network);
    EXPECT_EQ(vxtest::textOf(call(net.get(), L"GetIPAll").value), L"10.0.0.5\r\nfe80::1\r\n10.0.0.7\r\n");
    const std::wstring computer = vxtest::textOf(call(net.get(), L"GetMyComputerName").value);
    EXPECT_EQ(wmi.monikers.back(), L"winmgmts:{impersonationLevel=impersonate}!\\\\" + computer + L"\\root\\cimv2");
    EXPECT_EQ(wmi.queries.back(), L"Select * from Win32_NetworkAdapterConfiguration Where IPEnabled=TRUE");
    EXPECT_EQ(vxtest::textOf(call(net.get(), L"GetIPAll", {text(L"far")}).value), L"10.0.0.5\r\nfe80::1\r\n10.0.0.7\r\n");
    EXPECT_EQ(wmi.monikers.back(), L"winmgmts:{impersonationLevel=impersonate}!\\\\far\\root\\cimv2");
    EXPECT_EQ(vxtest::textOf(call(net.get(), L"GetIPMain").value), L"10.0.0.7");
    EXPECT_EQ(vxtest::textOf(call(net.get(), L"GetMacAddressMain").value), L"0A-0B-0C-0D-0E-0F");
    // None answers: the walk reaches the empty part after the last CR LF, which stands for
    // this computer's own address: its MAC comes with an empty address.
    answering = {ipOf(vx::toAnsi(vxtest::textOf(call(net.get(), L"GetIPFromHostName").value)).c_str())};
    EXPECT_EQ(vxtest::textOf(call(net.get(), L"GetIPMain").value), L"");
    EXPECT_EQ(vxtest::textOf(call(net.get(), L"GetMacAddressMain").value), L"0A-0B-0C-0D-0E-0F");
    answering.clear();
    EXPECT_EQ(vxtest::textOf(call(net.get(), L"GetMacAddressMain").value), L"");
    wmi.rows.clear();
    EXPECT_EQ(vxtest::textOf(call(net.get(), L"GetIPMain").value), L"");
}

TEST(NetworkAddresses, SidOfTheFirstLongOne) {
    FakeWmi wmi;
    auto account = [](const wchar_t* sid) {
        return [sid] {
            auto* row = new fixture::Scriptable;
            row->on(L"SID", [sid](fixture::Call& c) {
                fixture::setText(c.result, sid);
                return S_OK;
            });
            return static_cast<IDispatch*>(row);
        };
    };
    const wchar_t* long1 = L"S-1-5-21-1111111111-2222222222-3333333333-1001";
    wmi.rows = {account(L"S-1-5-18"), account(long1), account(L"S-1-5-21-4444444444-5555555555-6666666666-1002")};
    ReplaceService<BindingService> binding(wmi.binding());
    auto net = vxtest::createObject(CLSID_Ds_Network);
    EXPECT_EQ(vxtest::textOf(call(net.get(), L"getSID").value), long1);
    EXPECT_EQ(wmi.monikers.back(), L"winmgmts:\\\\.\\root\\cimv2");
    EXPECT_EQ(wmi.queries.back(), L"Select * from Win32_Account;WQL;48");
    BindingService refusing = service<BindingService>();
    refusing.getObject = [](const std::wstring&, IDispatch**) { return E_ACCESSDENIED; };
    ReplaceService<BindingService> refused(refusing);
    auto r = call(net.get(), L"getSID");
    EXPECT_EQ(r.hr, S_OK) << "errors are skipped";
    EXPECT_EQ(r.value.type(), VT_EMPTY);
}

TEST(NetworkAddresses, ReachabilityTextsLocale) {
    auto net = vxtest::createObject(CLSID_Ds_Network);
    DWORD in = 1500000, out = 0;
    std::string asked;
    NetworkService fake = service<NetworkService>();
    fake.destinationReachable = [&](const char* dest, QOCINFO* info) {
        asked = dest;
        EXPECT_EQ(info->dwSize, 16u);
        info->dwInSpeed = in;
        info->dwOutSpeed = out;
        return TRUE;
    };
    ReplaceService<NetworkService> using_(fake);
    Variant a, b, c;
    auto r = call(net.get(), L"IsDestinationReachableStr",
                  {text(L"server1"), vxtest::byRef(a), vxtest::byRef(b), vxtest::byRef(c)});
    EXPECT_EQ(asked, "server1");
    EXPECT_EQ(V_BOOL(r.value.get()), VARIANT_FALSE) << "the out speed is 0";
    BSTR grouped = nullptr;
    Variant thousands = Variant::fromLong(1500000);
    VarFormatNumber(thousands.get(), 0, -2, -2, -2, 0, &grouped);
    EXPECT_EQ(vxtest::textOf(a), Bstr::adopt(grouped).str() + L"  In Speed bytes per second");
    EXPECT_EQ(vxtest::textOf(b), L"0  Out Speed bytes per second");
    EXPECT_EQ(vxtest::textOf(c), L"HowDestinationReachable : server1\r\n\r\n" + vxtest::textOf(a) + L"\r\n\r\n" +
                                     vxtest::textOf(b));
    out = 1;
    EXPECT_EQ(V_BOOL(call(net.get(), L"IsDestinationReachableStr", {text(L"server1")}).value.get()), VARIANT_TRUE);
}

// ---- ping ----

namespace {

// The i-th element of a ping list: the record it holds.
const Vx_GetPingInfo& pingRecord(const Variant& list, long i) {
    static Variant element;
    element = ArrayView(*list).at(i);
    EXPECT_EQ(element.type(), VT_RECORD);
    return *static_cast<const Vx_GetPingInfo*>(V_RECORD(element.get()));
}

}  // namespace

TEST(NetworkPing, RecordsFromTheSystemsReplyLayout) {
    auto net = vxtest::createObject(CLSID_Ds_Network);
    int closed = 0;
    std::vector<DWORD> timeouts;
    std::vector<std::string> sent;
    UCHAR sentTtl = 0;
    bool outside = false;
    NetworkService fake = service<NetworkService>();
    fake.icmpOpen = [] { return reinterpret_cast<HANDLE>(0x1234); };
    fake.icmpClose = [&](HANDLE h) {
        EXPECT_EQ(h, reinterpret_cast<HANDLE>(0x1234));
        ++closed;
        return TRUE;
    };
    fake.icmpEcho = [&](HANDLE, IPAddr dest, void* data, WORD size, IP_OPTION_INFORMATION* options, void* reply,
                        DWORD replySize, DWORD timeout) -> DWORD {
        timeouts.push_back(timeout);
        sent.emplace_back(static_cast<const char*>(data), size);
        sentTtl = options->Ttl;
        if (timeouts.size() == 2) {
            SetLastError(IP_REQ_TIMED_OUT);
            return 0;
        }
        // The system's own layout: the record, then the echoed bytes.
        EXPECT_GE(replySize, sizeof(ICMP_ECHO_REPLY) + size);
        auto* r = static_cast<ICMP_ECHO_REPLY*>(reply);
        char* bytes = static_cast<char*>(reply) + sizeof(ICMP_ECHO_REPLY);
        std::memcpy(bytes, "hello", 5);
        r->Address = dest;
        r->Status = IP_SUCCESS;
        r->RoundTripTime = 7;
        r->DataSize = 5;
        r->Data = outside ? static_cast<void*>(&closed) : bytes;
        r->Options.Ttl = 99;
        r->Options.Tos = 1;
        r->Options.Flags = 2;
        r->Options.OptionsSize = 0;
        r->Options.OptionsData = reinterpret_cast<PUCHAR>(bytes);
        return 1;
    };
    ReplaceService<NetworkService> using_(fake);
    Variant list, report;
    auto r = call(net.get(), L"GetPingIP",
                  {text(L"10.1.2.3"), vxtest::byRef(list), Variant::fromLong(250), Variant::fromLong(40),
                   Variant::fromLong(17), Variant::fromLong(3), vxtest::byRef(report)});
    ASSERT_EQ(r.errorNumber(), 0);
    EXPECT_EQ(V_BOOL(r.value.get()), VARIANT_FALSE) << "one echo timed out";
    EXPECT_EQ(closed, 1);
    EXPECT_EQ(timeouts, (std::vector<DWORD>{250, 250, 250}));
    EXPECT_EQ(sent[0], "abcdefghijklmnopqrstuvwabcdefghiabcdefgh");
    EXPECT_EQ(sentTtl, 17);
    ASSERT_EQ(ArrayView(*list).ubound(), 2);
    const Vx_GetPingInfo& first = pingRecord(list, 0);
    EXPECT_EQ(static_cast<ULONG>(first.Address), ipOf("10.1.2.3"));
    EXPECT_EQ(first.Status, 0);
    EXPECT_EQ(first.RoundTripTime, 7);
    EXPECT_EQ(first.DataSize, 5);
    EXPECT_EQ(first.DataPointer, 0) << "the reply buffer is gone after the call";
    EXPECT_EQ(std::wstring(viewOf(first.Data)), L"hello");
    const Vx_GetPingInfo& second = pingRecord(list, 1);
    EXPECT_EQ(second.Status, IP_REQ_TIMED_OUT);
    EXPECT_EQ(static_cast<ULONG>(second.Address), ipOf("10.1.2.3"));
    EXPECT_EQ(vxtest::textOf(report), L"Reply from 10.1.2.3: bytes=5 time=7ms TTL=99\r\nRequest timed out.\r\n"
                                      L"Reply from 10.1.2.3: bytes=5 time=7ms TTL=99\r\n");
    // A reply whose data pointer leaves the buffer gives no data.
    outside = true;
    timeouts.clear();
    call(net.get(), L"GetPingIP", {text(L"10.1.2.3"), vxtest::byRef(list)});
    EXPECT_EQ(SysStringLen(pingRecord(list, 0).Data), 0u);
    // An echo the system refuses to send (a system error, not an echo status): reported,
    // and no further echo is tried.
    timeouts.clear();
    NetworkService refusing = fake;
    refusing.icmpEcho = [&](HANDLE, IPAddr, void*, WORD, IP_OPTION_INFORMATION*, void*, DWORD, DWORD timeout) -> DWORD {
        timeouts.push_back(timeout);
        SetLastError(ERROR_ACCESS_DENIED);
        return 0;
    };
    {
        ReplaceService<NetworkService> refused(refusing);
        r = call(net.get(), L"GetPingIP", {text(L"10.1.2.3"), vxtest::byRef(list), Variant::missing(),
                                           Variant::missing(), Variant::missing(), Variant::fromLong(3), vxtest::byRef(report)});
    }
    EXPECT_EQ(V_BOOL(r.value.get()), VARIANT_FALSE);
    EXPECT_EQ(timeouts.size(), 1u);
    EXPECT_EQ(pingRecord(list, 0).Status, ERROR_ACCESS_DENIED);
    EXPECT_EQ(vxtest::textOf(report), L"The echo could not be sent (5).\r\n");
    EXPECT_EQ(vxtest::textOf(get(net.get(), L"NetErrorDesration").value), L"The echo could not be sent. (5)");
    // No ICMP service: reported, False.
    fake.icmpOpen = [] {
        SetLastError(ERROR_NOT_SUPPORTED);
        return INVALID_HANDLE_VALUE;
    };
    ReplaceService<NetworkService> noIcmp(fake);
    EXPECT_EQ(V_BOOL(call(net.get(), L"GetPingIP", {text(L"10.1.2.3")}).value.get()), VARIANT_FALSE);
    EXPECT_EQ(vxtest::textOf(get(net.get(), L"NetErrorDesration").value), L"The ICMP echo service is not available. (50)");
}

TEST(NetworkPing, EveryFieldOfTheSystemsReply) {
    // The system's reply in this word size's layout, the echoed bytes behind it.
    std::vector<char> buffer(sizeof(ICMP_ECHO_REPLY) + 16, '\0');
    auto* reply = reinterpret_cast<ICMP_ECHO_REPLY*>(buffer.data());
    char* bytes = buffer.data() + sizeof(ICMP_ECHO_REPLY);
    std::memcpy(bytes, "ping", 4);
    reply->Address = ipOf("192.0.2.9");
    reply->Status = IP_TTL_EXPIRED_TRANSIT;
    reply->RoundTripTime = 0x01020304;
    reply->DataSize = 4;
    reply->Reserved = 0xFFFF;
    reply->Data = bytes;
    reply->Options = IP_OPTION_INFORMATION{200, 3, 2, 1, reinterpret_cast<PUCHAR>(bytes)};
    Vx_GetPingInfo r = network::pingRecord(*reply, buffer.data(), buffer.size());
    Bstr data = Bstr::adopt(r.Data);
    EXPECT_EQ(static_cast<ULONG>(r.Address), ipOf("192.0.2.9"));
    EXPECT_EQ(r.Status, IP_TTL_EXPIRED_TRANSIT);
    EXPECT_EQ(r.RoundTripTime, 0x01020304);
    EXPECT_EQ(r.DataSize, 4) << "the system's 16-bit size, without its reserved neighbour";
    EXPECT_EQ(r.DataPointer, 0);
    EXPECT_EQ(r.Options.Ttl, 200);
    EXPECT_EQ(r.Options.Tos, 3);
    EXPECT_EQ(r.Options.Flags, 2);
    EXPECT_EQ(r.Options.OptionsSize, 1);
    EXPECT_EQ(r.Options.OptionsData, 0);
    EXPECT_EQ(data.view(), L"ping");
    // Data that does not lie inside the buffer is not read.
    reply->Data = buffer.data() + buffer.size() - 2;
    r = network::pingRecord(*reply, buffer.data(), buffer.size());
    EXPECT_EQ(r.Data, nullptr);
    reply->Data = nullptr;
    EXPECT_EQ(network::pingRecord(*reply, buffer.data(), buffer.size()).Data, nullptr);
}

TEST(NetworkPing, LoopbackForReal) {
    auto net = vxtest::createObject(CLSID_Ds_Network);
    Variant list;
    auto r = call(net.get(), L"GetPingIP", {text(L"127.0.0.1"), vxtest::byRef(list)});
    ASSERT_EQ(r.errorNumber(), 0);
    if (GetEnvironmentVariableW(L"VX_W32NS", nullptr, 0) != 0) {
        // The 32-bit lane's user namespace has no right to ICMP sockets: the system
        // refuses the echo, and the refusal is reported.
        EXPECT_EQ(V_BOOL(r.value.get()), VARIANT_FALSE);
        EXPECT_EQ(vxtest::textOf(get(net.get(), L"NetErrorDesration").value), L"The echo could not be sent. (5)");
        return;
    }
    ASSERT_EQ(V_BOOL(r.value.get()), VARIANT_TRUE);
    const Vx_GetPingInfo& reply = pingRecord(list, 0);
    EXPECT_EQ(static_cast<ULONG>(reply.Address), ipOf("127.0.0.1"));
    EXPECT_EQ(reply.Status, 0);
    EXPECT_EQ(reply.DataSize, 32);
    EXPECT_EQ(std::wstring(viewOf(reply.Data)), L"abcdefghijklmnopqrstuvwabcdefghi");
}

// ---- servers and services ----

TEST(NetworkServers, NamesOfTheBrowserList) {
    auto net = vxtest::createObject(CLSID_Ds_Network);
    DWORD askedType = 0;
    std::wstring askedDomain;
    NET_API_STATUS status = ERROR_MORE_DATA;
    NetworkService fake = service<NetworkService>();
    fake.serverEnum = [&](LPCWSTR, LPBYTE* buffer, DWORD* read, DWORD* total, DWORD type, LPCWSTR domain) {
        askedType = type;
        askedDomain = domain ? domain : L"(none)";
        const wchar_t* names[] = {L"ALPHA", L"BETA"};
        void* block = nullptr;
        NetApiBufferAllocate(sizeof(SERVER_INFO_100) * 2 + 64, &block);
        auto* info = static_cast<SERVER_INFO_100*>(block);
        auto* strings = reinterpret_cast<wchar_t*>(info + 2);
        for (int i = 0; i < 2; ++i) {
            info[i].sv100_platform_id = 500;
            info[i].sv100_name = strings;
            wcscpy(strings, names[i]);
            strings += 8;
        }
        *buffer = static_cast<LPBYTE>(block);
        *read = 2;
        *total = 3;
        return status;
    };
    ReplaceService<NetworkService> using_(fake);
    Variant list;
    auto r = call(net.get(), L"GetServerList", {Variant::fromLong(SV_TYPE_SQLSERVER), text(L"WORKGROUP"), vxtest::byRef(list)});
    EXPECT_EQ(vxtest::textOf(r.value), L"ALPHA\r\nBETA\r\n") << "more data: the part read";
    EXPECT_EQ(askedType, 4u);
    EXPECT_EQ(askedDomain, L"WORKGROUP");
    EXPECT_EQ(vxtest::textOf(ArrayView(*list).at(1)), L"BETA");
    call(net.get(), L"GetServerList");
    EXPECT_EQ(askedType, 0xFFFFFFFFu) << "every type by default";
    EXPECT_EQ(askedDomain, L"(none)");
    status = ERROR_ACCESS_DENIED;
    EXPECT_EQ(vxtest::textOf(call(net.get(), L"GetServerList").value), L"");
    EXPECT_EQ(vxtest::textOf(get(net.get(), L"NetCodeError").value), L"5");
}

TEST(NetworkServices, RealListAndARefusingComputer) {
    auto net = vxtest::createObject(CLSID_Ds_Network);
    auto list = vxtest::objectOf(call(net.get(), L"GetServiceList").value);
    ASSERT_TRUE(list);
    auto rpc = vxtest::objectOf(call(list.get(), L"Item", {text(L"RPCSS")}).value);
    ASSERT_TRUE(rpc);
    EXPECT_EQ(vxtest::textOf(get(rpc.get(), L"ValueC").value), L"Running");
    EXPECT_EQ(vxtest::longOf(get(rpc.get(), L"ValueD").value), 4);
    std::string machine = "-";
    NetworkService fake = service<NetworkService>();
    fake.openServiceManager = [&](const char* m) -> SC_HANDLE {
        machine = m ? m : "(this)";
        SetLastError(RPC_S_SERVER_UNAVAILABLE);
        return nullptr;
    };
    ReplaceService<NetworkService> using_(fake);
    list = vxtest::objectOf(call(net.get(), L"GetServiceList", {text(L"FARAWAY")}).value);
    ASSERT_TRUE(list);
    EXPECT_EQ(machine, "FARAWAY");
    EXPECT_EQ(vxtest::longOf(call(list.get(), L"Count").value), 0);
    EXPECT_EQ(vxtest::textOf(get(net.get(), L"NetErrorDesration").value), L"The services of FARAWAY could not be read. (1722)");
}

TEST(NetworkTypeLibrary, ServerTypesAndTheEventInterface) {
    int members = 0;
    for (const auto& m : kEnumerationMembers)
        if (std::wstring(m.enumeration) == L"Flag_SelectNetworkType") ++members;
    EXPECT_EQ(members, 34);
    EXPECT_EQ(static_cast<LONG>(SV_TYPE_ALL), -1);
    EXPECT_EQ(static_cast<DWORD>(SV_TYPE_DOMAIN_ENUM), 0x80000000u);
    // The event has identifier 1 on a dispatch interface the coclass names as its
    // default outgoing one.
    ComPtr<ITypeInfo> events = ComPtr<ITypeInfo>::adopt(typeInfoOf(DIID___Ds_Network));
    ASSERT_TRUE(events);
    LPOLESTR name = const_cast<LPOLESTR>(L"AlertError");
    MEMBERID id = 0;
    ASSERT_EQ(events->GetIDsOfNames(&name, 1, &id), S_OK);
    EXPECT_EQ(id, 1);
    ComPtr<ITypeInfo> coclass = ComPtr<ITypeInfo>::adopt(typeInfoOf(CLSID_Ds_Network));
    INT flags = 0;
    ASSERT_EQ(coclass->GetImplTypeFlags(1, &flags), S_OK);
    EXPECT_EQ(flags, IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE);
}
