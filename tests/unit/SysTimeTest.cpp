// Ds_SysTime against a stand-in clock: the values it reads, the exact records it writes,
// the countdown at any time of day. tests/host/systime.vbs runs against the system's own
// clock, writing back only the time it just read.
#include "core/runtime/Convert.h"
#include "core/runtime/Services.h"
#include "text/SysTime.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <cstring>
#include <optional>
#include <vector>

using namespace vx;
using vxtest::call;

namespace {

// Year, month, day of week, day, hour, minute, second, milliseconds.
bool sameTime(const SYSTEMTIME& a, const SYSTEMTIME& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// The stand-in: a time the test sets, and a record of every change asked of it.
struct FakeClock {
    static SYSTEMTIME now;
    static std::vector<SYSTEMTIME> written;
    static BOOL accept;
    static void get(SYSTEMTIME* t) { *t = now; }
    static BOOL set(const SYSTEMTIME* t) {
        written.push_back(*t);
        return accept;
    }
};
SYSTEMTIME FakeClock::now{};
std::vector<SYSTEMTIME> FakeClock::written;
BOOL FakeClock::accept = TRUE;

// Puts the stand-in in place for one test, and the system's clock back after it.
class UsingFakeClock : public ::testing::Test {
protected:
    void SetUp() override {
        replaced_.emplace(ClockService{&FakeClock::get, &FakeClock::set});
        FakeClock::now = {2006, 8, 4, 3, 9, 5, 0, 250};
        FakeClock::written.clear();
        FakeClock::accept = TRUE;
    }
    void TearDown() override { replaced_.reset(); }

    ComPtr<IDispatch> clock_ = vxtest::createObject(CLSID_Ds_SysTime);

private:
    std::optional<ReplaceService<ClockService>> replaced_;
};

Variant num(long n) { return Variant::fromLong(n); }

}  // namespace

TEST_F(UsingFakeClock, KeptTimeIsWrittenBackAsItWas) {
    EXPECT_TRUE(isEmpty(*call(clock_.get(), L"GetVarKeepTime").value));
    const SYSTEMTIME then = FakeClock::now;
    FakeClock::now = {2030, 1, 2, 1, 0, 0, 0, 0};
    EXPECT_TRUE(isEmpty(*call(clock_.get(), L"SetVarNewTime").value));
    ASSERT_EQ(FakeClock::written.size(), 1u);
    EXPECT_TRUE(sameTime(FakeClock::written[0], then));
    // Without a kept time the record is all zeros, and a refused change is no error.
    FakeClock::accept = FALSE;
    EXPECT_EQ(call(vxtest::createObject(CLSID_Ds_SysTime).get(), L"SetVarNewTime").errorNumber(), 0);
    ASSERT_EQ(FakeClock::written.size(), 2u);
    EXPECT_TRUE(sameTime(FakeClock::written[1], SYSTEMTIME{}));
}

TEST_F(UsingFakeClock, SetTimeSysTakesEachFieldOrThePresentOne) {
    // Every argument omitted: the present time, unchanged.
    auto r = call(clock_.get(), L"SetTimeSys");
    ASSERT_EQ(r.errorNumber(), 0);
    EXPECT_TRUE(isEmpty(*r.value));
    ASSERT_EQ(FakeClock::written.size(), 1u);
    EXPECT_TRUE(sameTime(FakeClock::written[0], FakeClock::now));
    // The arguments: year, month, day, day of week, hour, minute, second, milliseconds.
    ASSERT_EQ(call(clock_.get(), L"SetTimeSys", {num(2024), num(2), num(29), num(4), num(23), num(59), num(58), num(999)})
                  .errorNumber(),
              0);
    EXPECT_TRUE(sameTime(FakeClock::written.back(), {2024, 2, 4, 29, 23, 59, 58, 999}));
    // Omitted and Null fields keep the present value; the others are converted as CInt does.
    Variant hour = Variant::fromText(L"7");
    ASSERT_EQ(call(clock_.get(), L"SetTimeSys",
                   {Variant::missing(), Variant::null(), Variant::fromDouble(2.5), Variant::missing(),
                    vxtest::byRef(hour), Variant::fromDouble(3.5)})
                  .errorNumber(),
              0);
    EXPECT_TRUE(sameTime(FakeClock::written.back(), {2006, 8, 4, 2, 7, 4, 0, 250}));
    EXPECT_EQ(hour.type(), VT_BSTR);  // the argument itself is left alone
    FakeClock::accept = FALSE;  // a refused change is silent
    EXPECT_EQ(call(clock_.get(), L"SetTimeSys", {num(1)}).errorNumber(), 0);
}

TEST_F(UsingFakeClock, SetTimeSysLeavesTheClockAloneWhenAFieldDoesNotConvert) {
    const Variant m = Variant::missing(), word = Variant::fromText(L"x"), big = num(70000);
    // Fields are read day, year, hour, month ...: the first that fails is the error.
    const std::pair<std::vector<Variant>, int> cases[] = {
        {{word}, 13}, {{big}, 6}, {{m, m, m, m, m, m, m, word}, 13},
        {{big, m, word}, 13}, {{word, m, big}, 6}, {{m, word, m, m, big}, 6},
    };
    for (const auto& c : cases) EXPECT_EQ(call(clock_.get(), L"SetTimeSys", c.first).errorNumber(), c.second);
    EXPECT_TRUE(FakeClock::written.empty());
}

TEST_F(UsingFakeClock, Countdown) {
    // (length, day, time as hhmmss, milliseconds, answer; -6: error 6), one object throughout.
    struct Step { long length; WORD day; long hhmmss; WORD ms; int answer; };
    const Step steps[] = {
        {5, 3, 100000, 0, 1},      // starts: 36000, runs out after 36005
        {5, 3, 100003, 0, 0},
        {99, 3, 100005, 0, 0},     // the end itself has not passed; the length is not read again
        {5, 3, 100005, 499, 0},    // rounds to 36005
        {5, 3, 100005, 500, 1},    // half to even: 36006
        {2, 3, 100006, 500, 1},    // a new one of 2 seconds, from 36006 (half to even)
        {5, 3, 100008, 500, 0},    // 36008
        {5, 3, 100008, 501, 1},
        {5, 3, 235950, 0, 1},      // 86390 + 5: after midnight the clock counts from 0 again ...
        {5, 4, 10, 0, 0},
        {5, 4, 235955, 0, 0},
        {5, 4, 235956, 0, 1},      // ... until it passes 86395 on the next day
        {5, 4, 235958, 0, 1},      // 86398 + 5 is beyond every second of a day:
        {5, 5, 120000, 0, 0},
        {5, 5, 235959, 499, 0},    // never run out
    };
    for (const Step& st : steps) {
        FakeClock::now = {2006, 8, 0, st.day, WORD(st.hhmmss / 10000), WORD(st.hhmmss / 100 % 100),
                          WORD(st.hhmmss % 100), st.ms};
        auto r = call(clock_.get(), L"GetTimerRun", {num(st.length)});
        EXPECT_EQ(r.errorNumber() ? -r.errorNumber() : int(toBool(*r.value)), st.answer) << st.day << " " << st.hhmmss;
    }
    // The length defaults to 0; an end beyond a Long fails every later call; a negative
    // length has passed at once.
    auto other = vxtest::createObject(CLSID_Ds_SysTime);
    FakeClock::now = {2006, 8, 0, 3, 11, 0, 0, 0};
    EXPECT_TRUE(toBool(*call(other.get(), L"GetTimerRun").value));
    FakeClock::now.wMilliseconds = 600;
    EXPECT_TRUE(toBool(*call(other.get(), L"GetTimerRun").value));
    EXPECT_TRUE(toBool(*call(other.get(), L"GetTimerRun", {num(2147483647)}).value));
    EXPECT_EQ(call(other.get(), L"GetTimerRun").errorNumber(), 6);
    EXPECT_EQ(call(other.get(), L"GetTimerRun").errorNumber(), 6);
    auto negative = vxtest::createObject(CLSID_Ds_SysTime);
    EXPECT_TRUE(toBool(*call(negative.get(), L"GetTimerRun", {num(-5)}).value));
    EXPECT_TRUE(toBool(*call(negative.get(), L"GetTimerRun", {num(-5)}).value));
}

TEST(SysTime, ConvertDateSystemTimeWritesUnpaddedNumbers) {
    // Through the interface: hosts that bind late cannot make the record.
    auto clock = vxtest::createObject(CLSID_Ds_SysTime).query<_Ds_SysTime>();
    ASSERT_TRUE(clock);
    Vx_SYSTEMTIME t{2006, 8, 4, 3, 9, 5, 0, 999};
    auto convert = [&](VARIANT_BOOL* wantHour) {
        VARIANT out;
        EXPECT_EQ(clock->ConvertDateSystemTime(&t, wantHour, &out), S_OK);
        return vxtest::textOf(Variant::take(out));
    };
    VARIANT_BOOL yes = VARIANT_TRUE, no = VARIANT_FALSE, one = 1;
    EXPECT_EQ(convert(nullptr), L"2006/8/3");
    EXPECT_EQ(convert(&no), L"2006/8/3");
    EXPECT_EQ(convert(&yes), L"2006/8/3 9:5:0");
    t = Vx_SYSTEMTIME{-1, 0, 0, 0, 23, 59, 59, 0};
    EXPECT_EQ(convert(&one), L"-1/0/0 23:59:59");  // any value but 0 is True
}
