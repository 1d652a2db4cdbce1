// The one clock of the benchmarks: the performance counter, in milliseconds, so
// that every program of bench/ times the same way.
#pragma once
#include <windows.h>

namespace bench {

class Stopwatch {
public:
    Stopwatch() { Restart(); }
    void Restart() { QueryPerformanceCounter(&m_start); }
    double ElapsedMs() const {
        LARGE_INTEGER now, frequency;
        QueryPerformanceCounter(&now);
        QueryPerformanceFrequency(&frequency);
        return 1000.0 * static_cast<double>(now.QuadPart - m_start.QuadPart) /
               static_cast<double>(frequency.QuadPart);
    }

private:
    LARGE_INTEGER m_start{};
};

inline constexpr const wchar_t* kCatalogueKey = L"SOFTWARE\\Veltran\\Corvane\\AppServer\\InstalledApps";

}  // namespace bench
