#pragma once
// Seams: each operating-system service that a test must not really call (ending the
// session, the clock) or that a test platform may lack (a directory service, mixer
// devices) is reached through one table of functions, a *service*. The table in use holds
// the real calls unless a test has put another one in place:
//
//     struct ClockService {                       // a service: the calls, real by default
//         std::function<void(SYSTEMTIME*)> getSystemTime = [](SYSTEMTIME* t) { ::GetSystemTime(t); };
//     };
//     service<ClockService>().getSystemTime(&now); // product code: always through the table
//
//     auto fake = service<ClockService>();         // a test: a copy, one call replaced,
//     fake.getSystemTime = [](SYSTEMTIME* t) { *t = SYSTEMTIME{2006, 8, 4, 3}; };
//     ReplaceService<ClockService> using_(fake);   // in place until this scope ends
//
// Product code never asks which table is in place. The library runs on its host's
// thread, so the tables need no lock.
#include <utility>

namespace vx {

// The table in use for a service (the real calls until a test replaces them).
template <class Service>
Service& service() noexcept {
    static Service current{};
    return current;
}

// Puts a table in place of a service's current one for the life of this object, then
// puts the previous one back. Replacements nest.
template <class Service>
class ReplaceService {
public:
    explicit ReplaceService(Service replacement) : saved_(std::exchange(service<Service>(), std::move(replacement))) {}
    ~ReplaceService() { service<Service>() = std::move(saved_); }
    ReplaceService(const ReplaceService&) = delete;
    ReplaceService& operator=(const ReplaceService&) = delete;

private:
    Service saved_;
};

}  // namespace vx
