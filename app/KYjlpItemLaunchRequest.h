// The memory of one launched process: its name, its handle and when it was
// started, so that the program can tell whether it came up (WaitForInputIdle)
// without ever blocking on it.
#pragma once
#include <windows.h>
#include <cstdint>
#include <memory>

#include "foundation/UniqueHandle.h"

class KYjlpItemLaunchRequest {
public:
    enum eLaunchStatus {
        kInvalid = 1,      // the request is invalid, or the clock stands before its creation
        kUnforeseen = 2,   // WaitForInputIdle gave an unforeseen result
        kWaitFailed = 3,   // WaitForInputIdle failed (a console program has no input idle)
        kStarting = 4,     // still starting, within the limit
        kStarted = 5,      // the process is idle
        kTimedOut = 6,     // still not idle after the limit
        kUnchecked = 7
    };
    // Reset masks.
    static constexpr uint32_t kResetSituation = 1, kResetResources = 2, kResetTimes = 4;

    // Takes over process; throws the situation number (after telling it) when the
    // request cannot be made: the caller then keeps the handle.
    KYjlpItemLaunchRequest(const wchar_t* name, HANDLE process);
    virtual bool ReleaseResources();
    virtual ~KYjlpItemLaunchRequest();
    KYjlpItemLaunchRequest(const KYjlpItemLaunchRequest&) = delete;
    KYjlpItemLaunchRequest& operator=(const KYjlpItemLaunchRequest&) = delete;

    void Reset(int count, uint32_t mask);
    bool IsValid() const;
    // True exactly while the process still starts within limitSeconds; tells every other outcome.
    bool CheckStartup(uint32_t limitSeconds);
    // True while the process has not come up and the limit has not passed; tells nothing.
    bool IsStillStarting(uint32_t limitSeconds) const;
    // The handle leaves the request (for a caller that waits on it itself).
    HANDLE TakeProcess() noexcept { return hProcess.release(); }

    int nSituation = 0;
    uint32_t dwError = 0;
    std::unique_ptr<wchar_t[]> pszName;
    ky::UniqueHandle hProcess;
    int64_t tCreated = 0;
    int eStatus = kUnchecked;

private:
    int SituationOfStatus() const;
    void TellSituation(int situation, uint32_t limitSeconds) const;
};
