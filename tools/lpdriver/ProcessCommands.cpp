// start and wait: the life of a process seen from outside.
#include "foundation/UniqueHandle.h"
#include "tools/lpdriver/ArgumentList.h"
#include "tools/lpdriver/Commands.h"
#include "tools/lpdriver/DriverFailure.h"
#include "tools/lpdriver/ProcessWindows.h"
#include "tools/lpdriver/QuoteArgument.h"

namespace lpdriver {

namespace {

// Waits for the end of the process; prints exit= or timeout=1 (and killed=1).
int AwaitEnd(HANDLE process, DWORD limitMs, bool killOnTimeout, OutputWriter& out) {
    const DWORD waited = ::WaitForSingleObject(process, limitMs);
    if (waited == WAIT_FAILED) ThrowWin32(L"WaitForSingleObject");
    if (waited == WAIT_OBJECT_0) {
        DWORD code = 0;
        if (!::GetExitCodeProcess(process, &code)) ThrowWin32(L"GetExitCodeProcess");
        out.Number(L"exit", code);
        return kExitSuccess;
    }
    out.Number(L"timeout", 1);
    if (killOnTimeout) {
        if (!::TerminateProcess(process, 1)) ThrowWin32(L"TerminateProcess");
        ::WaitForSingleObject(process, 5000);
        out.Number(L"killed", 1);
    }
    return kExitNotFound;
}

void ReportIdle(HANDLE process, DWORD limitMs, OutputWriter& out) {
    // A console program never becomes idle: the answer is 0, not a failure.
    out.Number(L"idle", ::WaitForInputIdle(process, limitMs) == 0 ? 1 : 0);
}

}  // namespace

int RunStart(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--wait", true}, {L"--kill-on-timeout", false},
                                    {L"--idle", true}, {L"--dir", true}});
    args.RequirePositional(1, SIZE_MAX);
    // Every word is checked before anything starts, so a usage error leaves no process behind.
    const auto wait = args.Value(L"--wait");
    const auto idle = args.Value(L"--idle");
    const DWORD waitMs = wait ? ArgumentList::ParseDword(*wait, L"wait limit") : 0;
    const DWORD idleMs = idle ? ArgumentList::ParseDword(*idle, L"idle limit") : 0;
    if (args.Has(L"--kill-on-timeout") && !wait) ThrowUsage(L"--kill-on-timeout needs --wait");
    std::wstring line = QuoteArgument(args.Positional(0));
    for (size_t i = 1; i < args.PositionalCount(); ++i) line += L" " + QuoteArgument(args.Positional(i));

    const auto directory = args.Value(L"--dir");
    // The program gets no standard handles, not even the driver's own: the caller
    // reads this driver's output to its end, and a started program holding that
    // pipe open would keep the read waiting as long as it runs.
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    PROCESS_INFORMATION info{};
    // Wine now and then refuses a process with ERROR_INTERNAL_ERROR before it runs
    // anything; such a start is made once more, after a moment.
    bool made = false;
    for (int attempt = 0; attempt < 2 && !made; ++attempt) {
        if (attempt > 0) ::Sleep(500);
        made = ::CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                directory ? directory->c_str() : nullptr, &startup, &info) != FALSE;
        if (!made && ::GetLastError() != ERROR_INTERNAL_ERROR) break;
    }
    if (!made) ThrowWin32(L"CreateProcessW of " + args.Positional(0));
    const ky::UniqueHandle process(info.hProcess);
    const ky::UniqueHandle thread(info.hThread);
    out.Number(L"pid", info.dwProcessId);

    if (idle) ReportIdle(process.get(), idleMs, out);
    if (wait) return AwaitEnd(process.get(), waitMs, args.Has(L"--kill-on-timeout"), out);
    return kExitSuccess;
}

int RunWait(const Words& words, OutputWriter& out) {
    const ArgumentList args(words, {{L"--kill-on-timeout", false}});
    args.RequirePositional(2, 2);
    const DWORD processId = ProcessWindows::ParseProcessId(args.Positional(0));
    const DWORD limit = ArgumentList::ParseDword(args.Positional(1), L"time limit");
    const bool kill = args.Has(L"--kill-on-timeout");
    const ky::UniqueHandle process =
        ProcessWindows::OpenForWait(processId, kill ? PROCESS_TERMINATE : 0);
    return AwaitEnd(process.get(), limit, kill, out);
}

}  // namespace lpdriver
