#pragma once
// The network calls Ds_Network makes, as one service (see core/runtime/Seams.h): the
// socket layer's start and stop, the connectivity tests, ARP, the reachability test,
// the server browser, the ICMP echo, the service manager and the window enumeration that runs a host's
// callback. Each holds the system's own call; a test replaces the ones it must control.
#include "core/runtime/Seams.h"

#include "core/runtime/Platform.h"

#include <ipexport.h>
#include <icmpapi.h>
#include <iphlpapi.h>
#include <lm.h>
#include <sensapi.h>
#include <wininet.h>

#include <functional>

namespace vx {

// An export of sensapi.dll, found when first asked for (not every toolchain has an
// import library for it); null when the system lacks it.
template <class F>
F sensapiProc(const char* name) noexcept {
    static const HMODULE module = LoadLibraryW(L"sensapi.dll");  // kept for the process's life
    FARPROC proc = module ? GetProcAddress(module, name) : nullptr;
    return reinterpret_cast<F>(reinterpret_cast<void (*)()>(proc));
}

struct NetworkService {
    // WSAStartup and WSACleanup.
    std::function<int(WORD, WSADATA*)> startup = [](WORD version, WSADATA* data) { return ::WSAStartup(version, data); };
    std::function<int()> cleanup = [] { return ::WSACleanup(); };
    // InternetGetConnectedState (flags out, non-zero when connected).
    std::function<BOOL(DWORD*)> connectedState = [](DWORD* flags) { return ::InternetGetConnectedState(flags, 0); };
    // IsNetworkAlive (flags out).
    std::function<BOOL(DWORD*)> networkAlive = [](DWORD* flags) {
        static const auto alive = sensapiProc<BOOL(WINAPI*)(LPDWORD)>("IsNetworkAlive");
        return alive ? alive(flags) : FALSE;
    };
    // SendARP(destination, source, MAC buffer, its length in and out).
    std::function<DWORD(IPAddr, IPAddr, void*, ULONG*)> sendArp = [](IPAddr dest, IPAddr src, void* mac, ULONG* length) {
        return ::SendARP(dest, src, mac, length);
    };
    // IsDestinationReachableA(destination, QOC record).
    std::function<BOOL(const char*, QOCINFO*)> destinationReachable = [](const char* dest, QOCINFO* info) {
        static const auto reachable = sensapiProc<BOOL(WINAPI*)(LPCSTR, LPQOCINFO)>("IsDestinationReachableA");
        return reachable ? reachable(dest, info) : FALSE;
    };
    // NetServerEnum at level 100 (server, buffer out, entries read, entries in all, server
    // type, domain); the buffer is freed with NetApiBufferFree.
    std::function<NET_API_STATUS(LPCWSTR, LPBYTE*, DWORD*, DWORD*, DWORD, LPCWSTR)> serverEnum =
        [](LPCWSTR server, LPBYTE* buffer, DWORD* read, DWORD* total, DWORD type, LPCWSTR domain) {
            return ::NetServerEnum(server, 100, buffer, MAX_PREFERRED_LENGTH, read, total, type, domain, nullptr);
        };
    // IcmpCreateFile, IcmpSendEcho and IcmpCloseHandle.
    std::function<HANDLE()> icmpOpen = [] { return ::IcmpCreateFile(); };
    std::function<DWORD(HANDLE, IPAddr, void*, WORD, IP_OPTION_INFORMATION*, void*, DWORD, DWORD)> icmpEcho =
        [](HANDLE icmp, IPAddr dest, void* data, WORD size, IP_OPTION_INFORMATION* options, void* reply,
           DWORD replySize, DWORD timeout) {
            return ::IcmpSendEcho(icmp, dest, data, size, options, reply, replySize, timeout);
        };
    std::function<BOOL(HANDLE)> icmpClose = [](HANDLE icmp) { return ::IcmpCloseHandle(icmp); };
    // OpenSCManagerA of a computer (null: this one), for listing services.
    std::function<SC_HANDLE(const char*)> openServiceManager = [](const char* machine) {
        return ::OpenSCManagerA(machine, nullptr, SC_MANAGER_ENUMERATE_SERVICE);
    };
    // EnumWindows, which runs a host's callback procedure once per top-level window.
    std::function<BOOL(WNDENUMPROC, LPARAM)> enumWindows = [](WNDENUMPROC proc, LPARAM param) {
        return ::EnumWindows(proc, param);
    };
};

}  // namespace vx
