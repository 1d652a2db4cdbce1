// The one way a driver command ends early: an exit code for the calling test and a
// sentence for the `error=` line.
#pragma once
#include <windows.h>
#include <string>

namespace lpdriver {

// Exit codes, as the README documents them for the tests that read them.
enum ExitCode : int {
    kExitSuccess = 0,
    kExitNotFound = 1,   // nothing matched, or the time limit passed
    kExitUsage = 2,      // the command line cannot be understood
    kExitWin32 = 3,      // a system call failed
};

struct DriverFailure {
    int exitCode;
    std::wstring message;
};

[[noreturn]] inline void ThrowUsage(const std::wstring& message) {
    throw DriverFailure{kExitUsage, message};
}

[[noreturn]] inline void ThrowNotFound(const std::wstring& message) {
    throw DriverFailure{kExitNotFound, message};
}

// Takes GetLastError at the point of failure, so call it straight after the failing call.
[[noreturn]] inline void ThrowWin32(const std::wstring& what) {
    const DWORD code = ::GetLastError();
    throw DriverFailure{kExitWin32, what + L" failed (Win32 error " + std::to_wstring(code) + L")"};
}

}  // namespace lpdriver
