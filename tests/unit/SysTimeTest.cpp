// Ds_SysTime against a stand-in clock (the values it reads and the exact records it
// writes, the countdown at any time of day), and once against the system's own clock,
// writing back only the time it just read.
#include "core/runtime/Convert.h"
#include "text/SysTime.h"

#include "TestSupport.h"
#include "Vx_Main.h"

#include <vector>

using namespace vx;
using vxtest::call;

namespace {

SYSTEMTIME makeTime(WORD year, WORD month, WORD day, WORD hour, WORD minute, WORD second, WORD ms = 0,
                    WORD dayOfWeek = 0) {
    SYSTEMTIME t{};
    t.wYear = year;
    t.wMonth = month;
    t.wDay = day;
    t.wDayOfWeek = dayOfWeek;
    t.wHour = hour;
    t.wMinute = minute;
    t.wSecond = second;
    t.wMilliseconds = ms;
    return t;
}

bool sameTime(const SYSTEMTIME& a, const SYSTEMTIME& b) {
    return a.wYear == b.wYear && a.wMonth == b.wMonth && a.wDayOfWeek == b.wDayOfWeek && a.wDay == b.wDay &&
           a.wHour == b.wHour && a.wMinute == b.wMinute && a.wSecond == b.wSecond &&
           a.wMilliseconds == b.wMilliseconds;
}

// The stand-in: a time the test sets, and a record of every change asked of it.
struct FakeClock {
    static SYSTEMTIME now;
    static std::vector<SYSTEMTIME> written;
    static BOOL accept;
    static void WINAPI get(LPSYSTEMTIME t) { *t = now; }
    static BOOL WINAPI set(const SYSTEMTIME* t) {
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
        saved_ = systemClock();
        systemClock().getTime = &FakeClock::get;
        systemClock().setTime = &FakeClock::set;
        FakeClock::now = makeTime(2006, 8, 3, 9, 5, 0, 250, 4);
        FakeClock::written.clear();
        FakeClock::accept = TRUE;
    }
    void TearDown() override { systemClock() = saved_; }

    ComPtr<IDispatch> clock_ = vxtest::createObject(CLSID_Ds_SysTime);

private:
    SystemClock saved_;
};

Variant num(long n) { return Variant::fromLong(n); }

}  // namespace

TEST_F(UsingFakeClock, KeptTimeIsWrittenBackAsItWas) {
    auto kept = call(clock_.get(), L"GetVarKeepTime");
    ASSERT_EQ(kept.errorNumber(), 0);
    EXPECT_TRUE(isEmpty(*kept.value));
    const SYSTEMTIME then = FakeClock::now;
    FakeClock::now = makeTime(2030, 1, 1, 0, 0, 0);
    auto set = call(clock_.get(), L"SetVarNewTime");
    ASSERT_EQ(set.errorNumber(), 0);
    EXPECT_TRUE(isEmpty(*set.value));
    ASSERT_EQ(FakeClock::written.size(), 1u);
    EXPECT_TRUE(sameTime(FakeClock::written[0], then));
    // Without a kept time the record is all zeros, and a refused change is no error.
    FakeClock::accept = FALSE;
    auto fresh = vxtest::createObject(CLSID_Ds_SysTime);
    EXPECT_EQ(call(fresh.get(), L"SetVarNewTime").errorNumber(), 0);
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
    // Year, month, day, day of week, hour, minute, second, milliseconds.
    ASSERT_EQ(call(clock_.get(), L"SetTimeSys",
                   {num(2024), num(2), num(29), num(4), num(23), num(59), num(58), num(999)})
                  .errorNumber(),
              0);
    EXPECT_TRUE(sameTime(FakeClock::written.back(), makeTime(2024, 2, 29, 23, 59, 58, 999, 4)));
    // Omitted and Null fields keep the present value; the others are converted as CInt does.
    Variant hour = Variant::fromText(L"7");
    ASSERT_EQ(call(clock_.get(), L"SetTimeSys",
                   {Variant::missing(), Variant::null(), Variant::fromDouble(2.5), Variant::missing(),
                    vxtest::byRef(hour), Variant::fromDouble(3.5)})
                  .errorNumber(),
              0);
    EXPECT_TRUE(sameTime(FakeClock::written.back(), makeTime(2006, 8, 2, 7, 4, 0, 250, 4)));
    EXPECT_EQ(hour.type(), VT_BSTR);  // the argument itself is left alone
    // A refused change is silent.
    FakeClock::accept = FALSE;
    EXPECT_EQ(call(clock_.get(), L"SetTimeSys", {num(1)}).errorNumber(), 0);
}

TEST_F(UsingFakeClock, SetTimeSysLeavesTheClockAloneWhenAFieldDoesNotConvert) {
    EXPECT_EQ(call(clock_.get(), L"SetTimeSys", {Variant::fromText(L"soon")}).errorNumber(), 13);
    EXPECT_EQ(call(clock_.get(), L"SetTimeSys", {num(70000)}).errorNumber(), 6);
    EXPECT_EQ(call(clock_.get(), L"SetTimeSys", {num(2006), num(8), num(3), num(4), num(9), num(5), num(0),
                                                 Variant::fromText(L"x")})
                  .errorNumber(),
              13);
    // The day is read first, then the year: whichever fails first is the error.
    EXPECT_EQ(call(clock_.get(), L"SetTimeSys", {num(70000), Variant::missing(), Variant::fromText(L"x")})
                  .errorNumber(),
              13);
    EXPECT_EQ(call(clock_.get(), L"SetTimeSys", {Variant::fromText(L"x"), Variant::missing(), num(70000)})
                  .errorNumber(),
              6);
    // ... and the hour before the month.
    EXPECT_EQ(call(clock_.get(), L"SetTimeSys",
                   {Variant::missing(), Variant::fromText(L"x"), Variant::missing(), Variant::missing(), num(-70000)})
                  .errorNumber(),
              6);
    EXPECT_TRUE(FakeClock::written.empty());
}

TEST_F(UsingFakeClock, CountdownAnswersTrueAtTheStartAndOnceItHasRunOut) {
    auto run = [&](long seconds, WORD h, WORD m, WORD s, WORD ms) {
        FakeClock::now = makeTime(2006, 8, 3, h, m, s, ms);
        auto r = call(clock_.get(), L"GetTimerRun", {num(seconds)});
        EXPECT_EQ(r.errorNumber(), 0);
        return toBool(*r.value);
    };
    EXPECT_TRUE(run(5, 10, 0, 0, 0));     // starts: 36000, ends after 36005
    EXPECT_FALSE(run(5, 10, 0, 3, 0));
    EXPECT_FALSE(run(99, 10, 0, 5, 0));   // the end itself has not passed; the new length is not read
    EXPECT_FALSE(run(5, 10, 0, 5, 499));  // rounds to 36005
    EXPECT_TRUE(run(5, 10, 0, 5, 500));   // half rounds to even: 36006, run out
    EXPECT_TRUE(run(2, 10, 0, 6, 500));   // a new countdown of 2 seconds from 36006 (half to even)
    EXPECT_FALSE(run(5, 10, 0, 8, 0));
    EXPECT_FALSE(run(5, 10, 0, 8, 500));  // 36008 (half to even)
    EXPECT_TRUE(run(5, 10, 0, 8, 501));
    // The length defaults to 0: over as soon as the rounded clock moves on.
    auto omitted = [&](WORD ms) {
        FakeClock::now = makeTime(2006, 8, 3, 11, 0, 0, ms);
        return toBool(*call(clock_.get(), L"GetTimerRun").value);
    };
    EXPECT_TRUE(omitted(0));
    EXPECT_FALSE(omitted(500));
    EXPECT_TRUE(omitted(600));
}

TEST_F(UsingFakeClock, CountdownAcrossMidnight) {
    auto run = [&](long seconds, WORD day, WORD h, WORD m, WORD s) {
        FakeClock::now = makeTime(2006, 8, day, h, m, s);
        return toBool(*call(clock_.get(), L"GetTimerRun", {num(seconds)}).value);
    };
    // 86390 + 5: after midnight the clock counts from 0 again, so it runs on until
    // 23:59:56 of the next day.
    EXPECT_TRUE(run(5, 3, 23, 59, 50));
    EXPECT_FALSE(run(5, 4, 0, 0, 10));
    EXPECT_FALSE(run(5, 4, 23, 59, 55));
    EXPECT_TRUE(run(5, 4, 23, 59, 56));
    // An end beyond the last second of a day is never passed.
    auto other = vxtest::createObject(CLSID_Ds_SysTime);
    FakeClock::now = makeTime(2006, 8, 4, 23, 59, 58);
    EXPECT_TRUE(toBool(*call(other.get(), L"GetTimerRun", {num(5)}).value));
    for (WORD h : {0, 12, 23}) {
        FakeClock::now = makeTime(2006, 8, 5, h, 59, 59, 499);
        EXPECT_FALSE(toBool(*call(other.get(), L"GetTimerRun", {num(5)}).value)) << h;
    }
}

TEST_F(UsingFakeClock, CountdownWhoseEndOverflows) {
    FakeClock::now = makeTime(2006, 8, 3, 1, 0, 0);
    EXPECT_TRUE(toBool(*call(clock_.get(), L"GetTimerRun", {num(2147483647)}).value));
    EXPECT_EQ(call(clock_.get(), L"GetTimerRun", {num(1)}).errorNumber(), 6);
    EXPECT_EQ(call(clock_.get(), L"GetTimerRun", {num(1)}).errorNumber(), 6);  // still running
    // A negative length has passed at once.
    auto other = vxtest::createObject(CLSID_Ds_SysTime);
    EXPECT_TRUE(toBool(*call(other.get(), L"GetTimerRun", {num(-5)}).value));
    EXPECT_TRUE(toBool(*call(other.get(), L"GetTimerRun", {num(-5)}).value));
}

TEST(SysTime, ConvertDateSystemTimeWritesUnpaddedNumbers) {
    auto clock = vxtest::createObject(CLSID_Ds_SysTime).query<_Ds_SysTime>();
    ASSERT_TRUE(clock);
    Vx_SYSTEMTIME t{};
    t.wYear = 2006;
    t.wMonth = 8;
    t.wDay = 3;
    t.wDayOfWeek = 4;
    t.wHour = 9;
    t.wMinute = 5;
    t.wSecond = 0;
    t.wMilliseconds = 999;
    VARIANT out;
    ASSERT_EQ(clock->ConvertDateSystemTime(&t, nullptr, &out), S_OK);
    EXPECT_EQ(vxtest::textOf(Variant::take(out)), L"2006/8/3");
    VARIANT_BOOL want = VARIANT_TRUE;
    ASSERT_EQ(clock->ConvertDateSystemTime(&t, &want, &out), S_OK);
    EXPECT_EQ(vxtest::textOf(Variant::take(out)), L"2006/8/3 9:5:0");
    want = VARIANT_FALSE;
    ASSERT_EQ(clock->ConvertDateSystemTime(&t, &want, &out), S_OK);
    EXPECT_EQ(vxtest::textOf(Variant::take(out)), L"2006/8/3");
    t = Vx_SYSTEMTIME{};
    t.wYear = -1;
    t.wHour = 23;
    t.wMinute = 59;
    t.wSecond = 59;
    want = 1;  // any value but 0 is True
    ASSERT_EQ(clock->ConvertDateSystemTime(&t, &want, &out), S_OK);
    EXPECT_EQ(vxtest::textOf(Variant::take(out)), L"-1/0/0 23:59:59");
    EXPECT_EQ(clock->ConvertDateSystemTime(nullptr, &want, &out), E_POINTER);
    EXPECT_EQ(V_VT(&out), VT_EMPTY);
}

TEST(SysTime, RoundTripThroughTheSystemClock) {
    // The system's own clock, through a recorder that passes every call on. The only time
    // written is the one just read, so the clock is where it was.
    static std::vector<SYSTEMTIME> written;
    static std::vector<BOOL> answers;
    struct Recorder {
        static BOOL WINAPI set(const SYSTEMTIME* t) {
            written.push_back(*t);
            BOOL ok = ::SetSystemTime(t);
            answers.push_back(ok);
            return ok;
        }
    };
    const SystemClock saved = systemClock();
    systemClock().getTime = &::GetSystemTime;
    systemClock().setTime = &Recorder::set;
    written.clear();
    answers.clear();
    auto clock = vxtest::createObject(CLSID_Ds_SysTime);
    SYSTEMTIME before{};
    ::GetSystemTime(&before);
    EXPECT_EQ(call(clock.get(), L"GetVarKeepTime").errorNumber(), 0);
    EXPECT_EQ(call(clock.get(), L"SetVarNewTime").errorNumber(), 0);
    EXPECT_EQ(call(clock.get(), L"SetTimeSys").errorNumber(), 0);
    SYSTEMTIME after{};
    ::GetSystemTime(&after);
    systemClock() = saved;

    ASSERT_EQ(written.size(), 2u);
    auto ticks = [](const SYSTEMTIME& t) {
        FILETIME f{};
        SystemTimeToFileTime(&t, &f);
        return (static_cast<long long>(f.dwHighDateTime) << 32 | f.dwLowDateTime) / 10000;  // milliseconds
    };
    for (const SYSTEMTIME& t : written) {
        EXPECT_GE(ticks(t), ticks(before));
        EXPECT_LE(ticks(t), ticks(after));
    }
    EXPECT_LT(ticks(after) - ticks(before), 5000);  // the clock went on as before
    // The system took both (a time within a second of its own).
    EXPECT_TRUE(answers[0]);
    EXPECT_TRUE(answers[1]);
}
