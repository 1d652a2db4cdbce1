// What the driver tests share: a run of the target program, one driver run, and
// the check that a driver run ended by itself with the exit code expected.
#pragma once
#include "foundation/UniqueHandle.h"
#include "tests/support/TestSupport.h"
#include "tools/lpdriver/client/DriverClient.h"
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace lpdrivertest {

using lpdriver::DriverAnswer;
using lpdriver::DriverClient;

constexpr DWORD kLimitMs = 20000;
constexpr int kClosedExit = 40;          // the target's code after WM_CLOSE
constexpr int kCommandAnswerBase = 1000; // the target answers a command with its id plus this
inline const std::wstring kLimit = std::to_wstring(kLimitMs);

// One run of the target program, ended by the test if it still runs at the end.
class Target {
public:
    explicit Target(const std::wstring& arguments = {}, bool awaitIdle = true) {
        const std::wstring exe = lptest::BinDir() + L"lp_driver_target.exe";
        std::wstring line = L"\"" + exe + L"\" " + arguments;
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION info{};
        if (!::CreateProcessW(exe.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                              &startup, &info))
            return;
        m_process.reset(info.hProcess);
        ky::UniqueHandle thread(info.hThread);
        m_pid = info.dwProcessId;
        if (awaitIdle) ::WaitForInputIdle(m_process.get(), kLimitMs);
    }
    ~Target() {
        if (m_process && ::WaitForSingleObject(m_process.get(), 0) == WAIT_TIMEOUT) {
            ::TerminateProcess(m_process.get(), 0xDEAD);
            ::WaitForSingleObject(m_process.get(), 5000);
        }
    }
    bool Started() const { return static_cast<bool>(m_process); }
    std::wstring Pid() const { return std::to_wstring(m_pid); }
    // The exit code once the target has ended within the limit; -1 while it runs.
    long long ExitCode(DWORD limitMs = kLimitMs) const {
        DWORD code = 0;
        if (::WaitForSingleObject(m_process.get(), limitMs) != WAIT_OBJECT_0) return -1;
        ::GetExitCodeProcess(m_process.get(), &code);
        return code;
    }

private:
    ky::UniqueHandle m_process;
    DWORD m_pid = 0;
};

inline DriverAnswer Drive(const std::vector<std::wstring>& arguments) {
    return DriverClient().Run(arguments, 60000);
}

// A driver run that finished by itself, with its exit code and output in any failure
// message. The answer is evaluated once: it may be a driver run that acts.
#define EXPECT_DRIVER(answer, code)                                               \
    do {                                                                          \
        const DriverAnswer& lpAnswer = (answer);                                  \
        ASSERT_TRUE(lpAnswer.started) << "lpdriver.exe did not start";            \
        ASSERT_TRUE(lpAnswer.finished) << "lpdriver.exe outlived its own limit";  \
        ASSERT_EQ(lpAnswer.exitCode, DWORD(code)) << lptest::Narrow(lpAnswer.Text()); \
    } while (0)

}  // namespace lpdrivertest
