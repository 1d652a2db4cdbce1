// A time limit given in milliseconds on the command line, counted from its creation.
#pragma once
#include <windows.h>

namespace lpdriver {

class Deadline {
public:
    explicit Deadline(DWORD limitMs) noexcept : m_end(::GetTickCount64() + limitMs) {}

    bool Passed() const noexcept { return ::GetTickCount64() >= m_end; }

    DWORD Remaining() const noexcept {
        const ULONGLONG now = ::GetTickCount64();
        return now >= m_end ? 0 : static_cast<DWORD>(m_end - now);
    }

    // The pause between two looks at another process's windows.
    static constexpr DWORD kPollMs = 50;

    // Sleeps one poll interval, or less at the very end; false once the limit has passed.
    bool Pause() const noexcept {
        if (Passed()) return false;
        const DWORD left = Remaining();
        ::Sleep(left < kPollMs ? left : kPollMs);
        return true;
    }

private:
    ULONGLONG m_end;
};

}  // namespace lpdriver
