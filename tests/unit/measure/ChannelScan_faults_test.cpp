#include <gtest/gtest.h>

#include <new>

#include "TestScan.h"
#include "measure/ChannelScan.h"
#include "support/FailingMemory.h"
#include "util/RaisedError.h"

namespace tvn2x {
namespace {

/// Every wanted cell holds a value, a marker or "---", every indicator a lock text; the status is final.
void ExpectDefined(const TestScan& test)
{
    for (const MP_TYPES column : valueColumns) {
        EXPECT_NE(test.Cell(column), L"") << column;
    }
    for (const MP_TYPES column : lockIndicators) {
        EXPECT_TRUE(test.Cell(column) == L"OK" || test.Cell(column) == L"UNSYNC") << column;
    }
    EXPECT_TRUE(test.Status() == L"Done" || test.Status() == L"Control Error");
    EXPECT_TRUE(test.table.Measured(1));
}

/// Trouble before the measuring leaves no lock, and a failure no reading that was not answered in full. Both are told
/// by their place in the log.
void ExpectTaken(const TestScan& test, size_t trouble, size_t failure)
{
    const auto place = [&](const char* call) {
        return static_cast<size_t>(std::ranges::find(test.log.calls, call) - test.log.calls.begin());
    };
    for (const MP_TYPES column : lockIndicators) {
        EXPECT_TRUE(test.Cell(column) == L"UNSYNC" || trouble >= place("Status Measuring at 213 MHz")) << column;
    }
    for (const auto& [name, column, reading] : readings) {
        const size_t answers = column == MP_BER ? 4 : 2;
        const bool isTaken = place(name) < test.log.calls.size() && place(name) + answers <= failure;
        EXPECT_EQ(test.Cell(column) != L"---", isTaken) << name;
    }
}

/// The next channel, with everything in order again, knows nothing of the last one's trouble.
void ExpectRecovers(TestScan& test)
{
    test.Prepare();
    EXPECT_TRUE(test.Measure(2));
    EXPECT_EQ(test.Status(2), L"Done");
    EXPECT_EQ(test.Cell(MP_DATA, 0, 2), L"OK");
}

TEST(ChannelScanFaults, ErrorOrStopFlagOrOrderToLeaveInTheNthCallOfAnything)
{
    // What is raised, nothing for the stop flag, and the status that it leads to, none where the channel is left at
    // once.
    const std::pair<std::exception_ptr, std::wstring> troubles[] = {
        {std::make_exception_ptr(RaisedError(7, L"XKTR2x", L"No answer")), L"Control Error"},
        {std::make_exception_ptr(std::bad_alloc()), L"Control Error"},
        {std::make_exception_ptr(RaisedError(50001, L"XKTR2x", L"Leave")), L""},
        {nullptr, L"Done"}};
    for (const auto& [failure, status] : troubles) {
        bool hurt = true;
        for (int n = 1; hurt; ++n) {
            SCOPED_TRACE(n);
            TestScan test;
            test.table.Measured(1, true);  // in an earlier run
            failure ? test.log.FailAt(n, failure) : test.log.StopAt(n);
            const bool result = test.Measure();
            hurt = test.log.Triggered();
            EXPECT_EQ(result, !hurt || status != L"Control Error");
            const bool nothingFollowed = static_cast<int>(test.log.calls.size()) <= n;
            if (status.empty()) {
                EXPECT_EQ(test.table.Measured(1), !hurt);
                EXPECT_TRUE(!hurt || nothingFollowed);
            } else {
                ExpectDefined(test);
                const size_t trouble = hurt ? static_cast<size_t>(n) - 1 : test.log.calls.size();
                ExpectTaken(test, trouble, failure ? trouble : test.log.calls.size());
                EXPECT_EQ(test.Status(), hurt && !nothingFollowed ? status : L"Done") << "too late in the last notice";
            }
            ExpectRecovers(test);
        }
    }
}

/// Memory that is gone for good from the n-th allocation on: the caller is told, or the channel ends in order.
TEST(ChannelScanFaults, MemoryThatRunsOutAtTheNthAllocation)
{
    bool failed = true;
    for (long n = 0; failed; ++n) {
        SCOPED_TRACE(n);
        TestScan test;
        test.log.calls.reserve(1000);
        bool raised = false;
        bool result = true;
        FailAllocationsFrom(n);
        try {
            result = test.Measure();
        } catch (const std::bad_alloc&) {
            raised = true;
        }
        failed = AllowAllocations();
        if (!raised) {
            EXPECT_EQ(result, !failed);
            ExpectDefined(test);
        }
        ExpectRecovers(test);
    }
}

/// What the receiver was tuned to last is what its tuning call says, wherever the channel ended: another channel's
/// readings must not pass for those of one that was never tuned.
TEST(ChannelScanFaults, NextChannelIsTunedWhereverTheLastOneEnded)
{
    const std::exception_ptr troubles[] = {std::make_exception_ptr(RaisedError(7, L"XKTR2x", L"No answer")),
                                           std::make_exception_ptr(RaisedError(50001, L"XKTR2x", L"Leave")), nullptr};
    for (const auto& failure : troubles) {
        bool hurt = true;
        for (int n = 1; hurt; ++n) {
            for (const int32_t next : {1, 2}) {
                SCOPED_TRACE(testing::Message() << "call " << n << ", then channel " << next);
                TestScan test;
                EXPECT_TRUE(test.Measure(1));
                failure ? test.log.FailAt(n, failure) : test.log.StopAt(n);
                test.Measure(2);
                hurt = test.log.Triggered();
                const bool called = test.log.Count("Frequency") == 1;
                const bool failed =
                    failure && hurt && called && test.log.calls[static_cast<size_t>(n) - 1].starts_with("Freq");
                const int32_t tunedTo = failed ? 0 : called ? 2 : 1;
                test.Prepare();
                EXPECT_TRUE(test.Measure(next));
                EXPECT_EQ(test.log.Count("Frequency"), next == tunedTo ? 0 : 1);
                EXPECT_EQ(test.receiver.answers.Frequency, next == 1 ? 213e6 : 221.5e6);
            }
        }
    }
}

TEST(ChannelScanFaults, StopEndsAWaitAndACount)
{
    TestScan waiting;
    waiting.clock.step = 0;
    waiting.receiver.answers.CarrierUnlocked = true;
    waiting.log.StopAt(100, "CarrierUnlocked");
    EXPECT_TRUE(waiting.Measure());
    EXPECT_EQ(waiting.log.Count("CarrierUnlocked"), 100);

    TestScan counting;
    counting.clock.step = 0;
    counting.log.StopAt(3, "ReadBer");
    EXPECT_TRUE(counting.Measure());
    EXPECT_EQ(counting.log.Count("ReadBer"), 3);
    EXPECT_EQ(counting.Cell(MP_BER), L"1.0E-8");
    EXPECT_EQ(counting.Cell(MP_DATA), L"OK");
}

TEST(ChannelScanFaults, SecondCallIsRefusedWhileOneRuns)
{
    TestScan test;
    std::size_t refused = 0;
    test.log.onCall = [&](const std::string&) {
        try {
            test.scan.Measure(2, test.receiver, test.host, &test.host);
        } catch (const RaisedError& raised) {
            refused += raised.number == 5 && raised.description == L"A measurement is already running" ? 1 : 0;
        }
    };
    EXPECT_TRUE(test.Measure());
    EXPECT_EQ(refused, test.log.calls.size());
    EXPECT_EQ(test.Status(), L"Done");
    EXPECT_EQ(test.Status(2), L"Un-measured");
    ExpectRecovers(test);
}

TEST(ChannelScanFaults, ParentThatChangesEverythingInTheNthCall)
{
    const auto resize = [](int32_t size) {
        return [size](TestScan& test) {
            test.document.ListSize(size);
            test.table.Reset(test.document, test.locale);
        };
    };
    const std::tuple<const char*, bool, std::function<void(TestScan&)>> cases[] = {
        {"reset", true, [](TestScan& test) { test.table.Reset(test.document, test.locale); }},
        {"list emptied", true, [](TestScan& test) { test.document.ListSize(0); }},
        {"list emptied, reset", false, resize(0)},
        {"list grown, reset", true, resize(500)},
        {"nothing wanted", true, [](TestScan& test) { test.WantOnly({}); }},
        {"other document", true, [](TestScan& test) { test.document = SetupDocument(); }},
        {"tuning forgotten", true, [](TestScan& test) { test.scan.ForgetTuning(); }},
    };
    for (const auto& [name, rowStays, change] : cases) {
        bool reached = true;
        for (std::size_t n = 1; reached; ++n) {
            SCOPED_TRACE(name + std::string(" in call ") + std::to_string(n));
            TestScan test;
            reached = false;
            test.log.onCall = [&, &change = change](const std::string&) {
                if (test.log.calls.size() == n) {
                    reached = true;
                    change(test);
                }
            };
            const bool result = test.Measure();
            EXPECT_EQ(result, rowStays || !reached);
            EXPECT_TRUE(!rowStays || test.table.Measured(1));
            ExpectRecovers(test);
        }
    }
}

}  // namespace
}  // namespace tvn2x
