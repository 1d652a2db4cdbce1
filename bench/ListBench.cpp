// The list benchmark's driver: starts a program (the panel or its floor) and
// measures it from outside only, through its windows, its list view and its
// memory counters. One measurement per run; bench/list-bench.sh repeats them.
//
//   list_bench.exe painted <exe> <rows> [--report file]
//       painted_ms: from just before CreateProcess to the moment a visible
//       top-level window holds a visible list view of <rows> items with nothing
//       left to paint; then, a second later, committed_kb and working_set_kb.
//       --report: a file the program writes about itself (list_floor.exe), copied
//       to the output with "self_" before each key.
//   list_bench.exe refresh <exe> <rows> <name> <new ExePath> [--column heading]
//       as painted, then the Details view (command 32823), a refresh with nothing
//       changed (command 32847, sent and waited for), and the time from writing
//       the new ExePath of the entry <name> to the moment its Location cell shows
//       the change, painted. The old ExePath is put back after the program ends.
//
// Answers are key=value lines; error=... and exit code 1 when a measure failed.
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "bench/RemoteRows.h"
#include "bench/WatchedProgram.h"
#include "tools/lpdriver/DriverFailure.h"

namespace {

constexpr double kStartLimitMs = 300000;   // a start of the panel at 5,000 entries takes tens of seconds
constexpr double kStepLimitMs = 300000;
constexpr DWORD kSettleMs = 1000;          // idle work settles before memory is read
constexpr UINT kDetailsCommand = 32823;
constexpr UINT kRefreshCommand = 32847;
constexpr DWORD kPollMs = 5;

int Fail(const char* what) {
    std::printf("error=%s\n", what);
    return 1;
}

std::string Narrow(const std::wstring& text) {
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string out(bytes > 0 ? static_cast<size_t>(bytes) : 1u, '\0');
    if (bytes > 0) WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, out.data(), bytes, nullptr, nullptr);
    out.resize(out.find('\0'));
    return out;
}

// The value of an option "--name value" among the arguments, or fallback.
std::wstring Option(const std::vector<std::wstring>& args, const wchar_t* name, const std::wstring& fallback) {
    for (size_t i = 0; i + 1 < args.size(); ++i)
        if (args[i] == name) return args[i + 1];
    return fallback;
}

bool StartAndPaint(bench::WatchedProgram& program, int rows) {
    if (!program.started()) return false;
    if (!program.WaitPainted(rows, kStartLimitMs)) return false;
    std::printf("painted_ms=%.1f\n", program.PaintedMs());
    Sleep(kSettleMs);
    const bench::Memory memory = program.ReadMemory();
    std::printf("committed_kb=%zu\nworking_set_kb=%zu\n", memory.committedKb, memory.workingSetKb);
    return true;
}

void CopySelfReport(const std::wstring& file) {
    FILE* in = _wfopen(file.c_str(), L"r");
    if (!in) return;
    char line[256];
    while (std::fgets(line, sizeof line, in)) std::printf("self_%s", line);
    std::fclose(in);
}

int Painted(const std::vector<std::wstring>& args) {
    const std::wstring report = Option(args, L"--report", L"");
    DeleteFileW(report.c_str());
    bench::WatchedProgram program(args[1], report.empty() ? L"" : L"\"" + report + L"\"");
    if (!StartAndPaint(program, _wtoi(args[2].c_str()))) return Fail("the list was not painted with all its rows");
    if (!report.empty()) CopySelfReport(report);
    return 0;
}

// A command sent to the frame and waited for, then the list painted again.
bool TimedCommand(bench::WatchedProgram& program, UINT command, int rows, const char* key) {
    program.RestartClock();
    if (!program.Ask(program.frame(), WM_COMMAND, command, 0, kStepLimitMs)) return false;
    if (!program.WaitPainted(rows, kStepLimitMs)) return false;
    std::printf("%s=%.1f\n", key, program.PaintedMs());
    return true;
}

// The entry's ExePath as it was, put back when the measure ends.
class SavedExePath {
public:
    explicit SavedExePath(const std::wstring& name) : m_key(std::wstring(bench::kCatalogueKey) + L"\\" + name) {
        DWORD bytes = sizeof m_value;
        m_saved = RegGetValueW(HKEY_LOCAL_MACHINE, m_key.c_str(), L"ExePath",
                               RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND, &m_type, m_value,
                               &bytes) == ERROR_SUCCESS;
        m_bytes = bytes;
    }
    bool saved() const { return m_saved; }
    bool Write(const std::wstring& path) const { return Set(REG_SZ, path.c_str(), (path.size() + 1) * sizeof(wchar_t)); }
    void Restore() const {
        if (m_saved) Set(m_type, m_value, m_bytes);
    }

private:
    bool Set(DWORD type, const wchar_t* data, size_t bytes) const {
        return RegSetKeyValueW(HKEY_LOCAL_MACHINE, m_key.c_str(), L"ExePath", type, data,
                               static_cast<DWORD>(bytes)) == ERROR_SUCCESS;
    }

    std::wstring m_key;
    bool m_saved = false;
    DWORD m_type = REG_SZ;
    wchar_t m_value[MAX_PATH * 2] = {};
    DWORD m_bytes = 0;
};

// From the write of the new ExePath to the moment the entry's cell differs from
// what it showed before and the list has nothing left to paint. The row is
// looked for again each time: a sort may move it.
bool TimeChange(bench::WatchedProgram& program, const SavedExePath& entry, const std::wstring& name,
                const std::wstring& path, const std::wstring& heading) {
    bench::RemoteRows rows(program, kStepLimitMs);
    program.RestartClock();
    const int column = rows.FindColumn(heading);
    const std::wstring before = rows.Cell(rows.FindRow(name), column);
    if (column < 0 || before.empty()) return false;
    program.RestartClock();
    if (!entry.Write(path)) return false;
    std::wstring after = before;
    while (program.ElapsedMs() < kStepLimitMs) {
        after = rows.Cell(rows.FindRow(name), column);
        if (after != before && !after.empty() && program.Painted()) {
            std::printf("refresh_ms=%.1f\ncell_before=%s\ncell_after=%s\n", program.ElapsedMs(),
                        Narrow(before).c_str(), Narrow(after).c_str());
            return true;
        }
        Sleep(kPollMs);
    }
    return false;
}

int Refresh(const std::vector<std::wstring>& args) {
    if (args.size() < 5) return Fail("refresh needs <exe> <rows> <name> <new ExePath>");
    const int rows = _wtoi(args[2].c_str());
    const SavedExePath entry(args[3]);
    if (!entry.saved()) return Fail("the entry has no ExePath to change");
    int result = 0;
    {
        bench::WatchedProgram program(args[1], L"");
        if (!StartAndPaint(program, rows)) result = Fail("the list was not painted with all its rows");
        else if (!TimedCommand(program, kDetailsCommand, rows, "details_ms")) result = Fail("no Details view");
        else if (!TimedCommand(program, kRefreshCommand, rows, "noop_refresh_ms")) result = Fail("no refresh");
        else if (!TimeChange(program, entry, args[3], args[4], Option(args, L"--column", L"Location")))
            result = Fail("the change was not shown");
    }  // the program ends here, before its entry is put back
    entry.Restore();
    return result;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    const std::vector<std::wstring> args(argv + 1, argv + argc);
    try {
        if (args.size() >= 3 && args[0] == L"painted") return Painted(args);
        if (args.size() >= 1 && args[0] == L"refresh") return Refresh(args);
    } catch (const lpdriver::DriverFailure& failure) {
        return Fail(Narrow(failure.message).c_str());
    }
    std::printf("usage=list_bench.exe painted <exe> <rows> [--report file]\n"
                "usage=list_bench.exe refresh <exe> <rows> <name> <new ExePath> [--column heading]\n");
    return 2;
}
