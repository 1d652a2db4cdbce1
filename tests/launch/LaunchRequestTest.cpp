// The launch requests watching real processes come up: the statuses, what is
// told for each, and the list used as a stack.
#include <ctime>
#include <memory>

#include "app/KYjlpItemLaunchRequest.h"
#include "foundation/UniqueHandle.h"
#include "monitor/KYbpm.h"
#include "tests/app/AppTestSupport.h"
#include "tests/launch/LogRows.h"

namespace lptest {
namespace {

using Request = KYjlpItemLaunchRequest;

class LaunchRequests : public AppTest {
protected:
    void SetUp() override {
        AppTest::SetUp();
        Establish(true);
        SetEnvironmentVariableW(L"LP_TARGET_RECORD", nullptr);
        SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", L"1500");
    }
    void TearDown() override {
        SetEnvironmentVariableW(L"LP_TARGET_IDLE_DELAY_MS", nullptr);
        SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", nullptr);
        for (auto& process : m_started) TerminateProcess(process.get(), 0);
        AppTest::TearDown();
    }
    // A test program started as the shell would, its process handle kept by the test.
    HANDLE Start(const wchar_t* program, DWORD idleDelayMs) {
        SetEnvironmentVariableW(L"LP_TARGET_IDLE_DELAY_MS", std::to_wstring(idleDelayMs).c_str());
        std::wstring line = L"\"" + BinDir() + program + L"\"";
        STARTUPINFOW si{};
        si.cb = sizeof si;
        PROCESS_INFORMATION pi{};
        EXPECT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi));
        ky::UniqueHandle thread(pi.hThread);
        m_started.emplace_back(pi.hProcess);
        return pi.hProcess;
    }
    // A request of its own over a duplicate, so that the test's handle stays open.
    std::unique_ptr<Request> RequestFor(const wchar_t* name, HANDLE process) {
        HANDLE copy = nullptr;
        DuplicateHandle(GetCurrentProcess(), process, GetCurrentProcess(), &copy, 0, FALSE, DUPLICATE_SAME_ACCESS);
        return std::make_unique<Request>(name, copy);
    }
    // Drains until the head request settles; the status it settled with.
    int DrainUntilSettled(uint32_t limitSeconds) {
        int status = Request::kUnchecked;
        for (int round = 0; round < 300 && m_app->DrainLaunchRequests(limitSeconds, &status, nullptr); ++round)
            Sleep(100);
        return status;
    }
    std::vector<LogRow> Rows() const { return ReadLogRows(m_logs->path()); }

    std::vector<ky::UniqueHandle> m_started;
};

TEST_F(LaunchRequests, ProgramThatComesUpIsToldAsStartedAndLeavesTheList) {
    auto request = RequestFor(L"Target", Start(L"LaunchTarget.exe", 0));
    ASSERT_TRUE(m_app->AddLaunchRequest(request));
    EXPECT_FALSE(request);  // the list took it
    EXPECT_EQ(DrainUntilSettled(60), Request::kStarted);
    EXPECT_TRUE(m_app->m_listLaunchRequests.empty());
    auto started = RowsOf(Rows(), 27540);
    ASSERT_EQ(started.size(), 1u) << Numbers(Rows());
    EXPECT_EQ(started[0].texts.at(0), L"Target");
}

TEST_F(LaunchRequests, ProgramNeverIdleWithinTheLimitIsGivenUp) {
    HANDLE process = Start(L"LaunchTarget.exe", 20000);
    auto request = RequestFor(L"Slow", process);
    ASSERT_TRUE(m_app->AddLaunchRequest(request));
    EXPECT_EQ(DrainUntilSettled(1), Request::kTimedOut);
    auto late = RowsOf(Rows(), 27541);
    ASSERT_EQ(late.size(), 1u) << Numbers(Rows());
    EXPECT_EQ(late[0].texts.at(0), L"Slow");
    EXPECT_EQ(late[0].uints.at(1), 1);
}

TEST_F(LaunchRequests, ConsoleProgramHasNoIdleStateAndIsToldAtOnce) {
    auto request = RequestFor(L"Console", Start(L"LaunchTargetConsole.exe", 0));
    ASSERT_TRUE(m_app->AddLaunchRequest(request));
    HANDLE taken = nullptr;
    int status = 0;
    EXPECT_FALSE(m_app->DrainLaunchRequests(60, &status, &taken));
    ky::UniqueHandle keep(taken);
    EXPECT_EQ(status, Request::kWaitFailed);
    EXPECT_TRUE(keep);  // the settled request's handle was handed out
    auto failed = RowsOf(Rows(), 27539);
    ASSERT_EQ(failed.size(), 1u) << Numbers(Rows());
    EXPECT_EQ(failed[0].ints.at(0), Request::kWaitFailed);
}

TEST_F(LaunchRequests, NewestRequestIsCheckedFirstAndBlocksTheOlder) {
    auto older = RequestFor(L"Older", Start(L"LaunchTarget.exe", 0));
    auto newer = RequestFor(L"Newer", Start(L"LaunchTarget.exe", 20000));
    ASSERT_TRUE(m_app->AddLaunchRequest(older));
    ASSERT_TRUE(m_app->AddLaunchRequest(newer));
    Sleep(1000);  // the older one has long come up
    int status = 0;
    EXPECT_TRUE(m_app->DrainLaunchRequests(60, &status, nullptr));
    EXPECT_EQ(status, Request::kStarting);
    EXPECT_EQ(m_app->m_listLaunchRequests.size(), 2u);
    EXPECT_TRUE(RowsOf(Rows(), 27540).empty());
}

TEST_F(LaunchRequests, SameProcessTwiceIsRefused) {
    HANDLE process = Start(L"LaunchTarget.exe", 20000);
    auto first = RequestFor(L"First", process);
    ASSERT_TRUE(m_app->AddLaunchRequest(first));
    HANDLE queued = m_app->m_listLaunchRequests.front()->hProcess.get();
    auto second = std::make_unique<Request>(L"Second", queued);
    EXPECT_FALSE(m_app->AddLaunchRequest(second));
    ASSERT_TRUE(second);  // still the caller's
    second->TakeProcess();  // the handle is the queued request's: it must not close twice
    auto refused = RowsOf(Rows(), 27077);
    ASSERT_EQ(refused.size(), 1u) << Numbers(Rows());
    EXPECT_EQ(refused[0].texts.at(0), L"Second");
}

TEST_F(LaunchRequests, RequestsThatCannotBeMadeOrCheckedAreTold) {
    EXPECT_THROW(Request(L"Nothing", nullptr), int);
    EXPECT_THROW(Request(L"  ", GetCurrentProcess()), int);
    auto rows = Rows();
    EXPECT_EQ(RowsOf(rows, 27538).size(), 2u) << Numbers(rows);

    // A clock turned back behind the request's creation.
    auto request = RequestFor(L"Future", Start(L"LaunchTarget.exe", 0));
    request->tCreated = _time64(nullptr) + 3600;
    EXPECT_FALSE(request->CheckStartup(60));
    EXPECT_EQ(request->eStatus, Request::kInvalid);
    EXPECT_EQ(request->dwError, 87u);
    EXPECT_EQ(RowsOf(Rows(), 27539).size(), 1u);
}

TEST_F(LaunchRequests, AnItemStillComingUpIsNotStartedTwice) {
    HANDLE slow = Start(L"LaunchTarget.exe", 3000);
    auto request = RequestFor(L"Slow Tool", slow);
    ASSERT_TRUE(m_app->AddLaunchRequest(request));
    EXPECT_TRUE(m_app->IsItemStarting(L"Slow Tool")) << "a second activation would start a second copy";
    EXPECT_FALSE(m_app->IsItemStarting(L"Other Tool"));
    EXPECT_FALSE(m_app->IsItemStarting(nullptr));
    ASSERT_EQ(WaitForInputIdle(slow, 20000), 0u);
    EXPECT_FALSE(m_app->IsItemStarting(L"Slow Tool")) << "once it is up, the item may be started again";
    EXPECT_EQ(RowsOf(Rows(), 27540).size(), 0u) << "asking tells nothing; the drain tells the start";
}

}  // namespace
}  // namespace lptest
