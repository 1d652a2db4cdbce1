// The program the launch tests start: it appends what it was given (arguments,
// working directory, show state), its process id and the time its process was
// made (100 ns units, to order several starts) to the file named by
// LP_TARGET_RECORD (else by its first argument), waits LP_TARGET_IDLE_DELAY_MS,
// and for the event named by LP_TARGET_IDLE_EVENT when there is one, before it
// first waits for input, and ends LP_TARGET_LIFETIME_MS later. Built as a
// windows program and as a console program (which never has an input idle state).
#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>

#include "foundation/UniqueHandle.h"

namespace {
DWORD EnvNumber(const wchar_t* name, DWORD fallback) {
    wchar_t value[32] = {};
    if (!GetEnvironmentVariableW(name, value, 32)) return fallback;
    return static_cast<DWORD>(_wtoi(value));
}

// The command line behind the program's own name, as the program was given it.
std::wstring Arguments() {
    const wchar_t* p = GetCommandLineW();
    bool quoted = false;
    for (; *p && (quoted || (*p != L' ' && *p != L'\t')); ++p)
        if (*p == L'"') quoted = !quoted;
    while (*p == L' ' || *p == L'\t') ++p;
    return p;
}

std::wstring FirstArgument(const std::wstring& arguments) {
    if (arguments.empty()) return {};
    if (arguments[0] == L'"') return arguments.substr(1, arguments.find(L'"', 1) - 1);
    return arguments.substr(0, arguments.find(L' '));
}

void Record() {
    wchar_t file[MAX_PATH] = {};
    std::wstring arguments = Arguments();
    if (!GetEnvironmentVariableW(L"LP_TARGET_RECORD", file, MAX_PATH))
        wcsncpy(file, FirstArgument(arguments).c_str(), MAX_PATH - 1);
    if (!*file) return;
    wchar_t directory[MAX_PATH] = {}, module[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, directory);
    GetModuleFileNameW(nullptr, module, MAX_PATH);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    GetStartupInfoW(&startup);
    int show = (startup.dwFlags & STARTF_USESHOWWINDOW) ? startup.wShowWindow : -1;
    FILETIME created{}, exited{}, kernel{}, user{};
    GetProcessTimes(GetCurrentProcess(), &created, &exited, &kernel, &user);
    const unsigned long long made = (static_cast<unsigned long long>(created.dwHighDateTime) << 32) |
                                    created.dwLowDateTime;
    FILE* out = _wfopen(file, L"a, ccs=UTF-8");
    if (!out) return;
    fwprintf(out, L"program=%ls\nargs=%ls\ndir=%ls\nshow=%d\npid=%lu\nmade=%llu\nend\n", module,
             arguments.c_str(), directory, show, GetCurrentProcessId(), made);
    fclose(out);
}

// A test holds the program short of its idle state until it sets the event.
void WaitForIdleEvent() {
    wchar_t name[MAX_PATH] = {};
    if (!GetEnvironmentVariableW(L"LP_TARGET_IDLE_EVENT", name, MAX_PATH)) return;
    ky::UniqueHandle event(OpenEventW(SYNCHRONIZE, FALSE, name));
    if (event) WaitForSingleObject(event.get(), 60000);
}

int Run() {
    Record();
    Sleep(EnvNumber(L"LP_TARGET_IDLE_DELAY_MS", 0));
    WaitForIdleEvent();
    // From here the program waits for input: it is idle.
    SetTimer(nullptr, 0, EnvNumber(L"LP_TARGET_LIFETIME_MS", 3000), nullptr);
    MSG msg;
    while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
        if (msg.message == WM_TIMER) break;
        DispatchMessageW(&msg);
    }
    return 0;
}
}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) { return Run(); }
int wmain() { return Run(); }
