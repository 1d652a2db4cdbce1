// How long the list window takes to appear, and what the running panel holds in
// memory, over repeated starts of the real program.
#include <windows.h>
#include <psapi.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/TestSupport.h"

namespace {

struct Sample {
    double msToWindow;
    SIZE_T workingSet;
    SIZE_T committed;
};

bool MeasureOnce(Sample& sample) {
    LARGE_INTEGER frequency, start, shown;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&start);
    lptest::ChildProcess program(lptest::BinDir() + L"LaunchPanel.exe", L"");
    if (program.WaitForWindows(30000, L"LaunchPanelFrame").empty()) return false;
    QueryPerformanceCounter(&shown);
    sample.msToWindow = 1000.0 * static_cast<double>(shown.QuadPart - start.QuadPart) /
                        static_cast<double>(frequency.QuadPart);
    Sleep(500);  // idle work settles before memory is read
    ky::UniqueHandle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, program.pid()));
    PROCESS_MEMORY_COUNTERS_EX counters{};
    counters.cb = sizeof counters;
    if (process)
        GetProcessMemoryInfo(process.get(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters), sizeof counters);
    sample.workingSet = counters.WorkingSetSize;
    sample.committed = counters.PagefileUsage;  // PrivateUsage reads 0 under Wine
    program.CloseWindows();
    program.Wait(10000);
    return true;
}

template <typename T>
T Median(std::vector<T> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    int runs = argc > 1 ? _wtoi(argv[1]) : 10;
    std::vector<double> times;
    std::vector<SIZE_T> sets, commits;
    for (int i = 0; i < runs; ++i) {
        Sample s{};
        if (!MeasureOnce(s)) {
            std::printf("run %d: no window within 30 s\n", i + 1);
            return 1;
        }
        times.push_back(s.msToWindow);
        sets.push_back(s.workingSet);
        commits.push_back(s.committed);
    }
    std::printf("start to list window: median %.1f ms, best %.1f ms, worst %.1f ms over %d runs\n",
                Median(times), *std::min_element(times.begin(), times.end()),
                *std::max_element(times.begin(), times.end()), runs);
    std::printf("working set: median %zu KiB; committed: median %zu KiB\n", Median(sets) / 1024,
                Median(commits) / 1024);
    return 0;
}
