#include "app/KYjlpItemLaunchRequest.h"

#include <ctime>
#include <cwchar>
#include <cwctype>
#include <new>

#include "app/KYjlpApp.h"
#include "monitor/KYbpm.h"

namespace {
KYbpm* Monitor() noexcept { return TheApp() ? TheApp()->m_pMonitor : nullptr; }

bool IsBlank(const wchar_t* text) noexcept {
    if (!text) return true;
    for (; *text; ++text)
        if (!std::iswspace(*text)) return false;
    return true;
}

const wchar_t* Shown(const wchar_t* name) noexcept { return !name ? L"(NULL)" : IsBlank(name) ? L"(BLANK)" : name; }
}  // namespace

KYjlpItemLaunchRequest::KYjlpItemLaunchRequest(const wchar_t* name, HANDLE process) {
    Reset(1, kResetSituation | kResetTimes);
    int situation = 0;
    if (!process || IsBlank(name)) {
        situation = 27538;
    } else {
        size_t length = wcslen(name) + 1;
        pszName.reset(new (std::nothrow) wchar_t[length]);
        if (pszName) {
            wmemcpy(pszName.get(), name, length);
            tCreated = _time64(nullptr);
        } else {
            situation = 27537;
        }
    }
    if (situation == 0) {
        hProcess.reset(process);
        return;
    }
    if (KYbpm* pm = Monitor()) {
        pm->respondToSituation(situation, 0, Shown(name));
        pm->forgetSituation();
    }
    Reset(1, kResetSituation | kResetResources | kResetTimes);
    nSituation = situation;
    throw situation;
}

KYjlpItemLaunchRequest::~KYjlpItemLaunchRequest() { Reset(1, kResetSituation | kResetResources | kResetTimes); }

bool KYjlpItemLaunchRequest::ReleaseResources() {
    bool ok = true;
    pszName.reset();
    ok = ky::CloseTelling(hProcess);
    return ok;
}

void KYjlpItemLaunchRequest::Reset(int count, uint32_t mask) {
    (void)count;
    if (mask & kResetSituation) {
        nSituation = 0;
        dwError = 0;
    }
    if (mask & kResetResources) ReleaseResources();
    if (mask & kResetTimes) {
        tCreated = 0;
        eStatus = kUnchecked;
    }
}

bool KYjlpItemLaunchRequest::IsValid() const { return hProcess && !IsBlank(pszName.get()) && tCreated != 0; }

bool KYjlpItemLaunchRequest::CheckStartup(uint32_t limitSeconds) {
    eStatus = kUnchecked;
    nSituation = 0;
    dwError = 0;
    SetLastError(0);
    int64_t now = _time64(nullptr);
    if (IsValid() && now >= tCreated) {
        // Never blocks: the waiting lies with the caller.
        DWORD result = WaitForInputIdle(hProcess.get(), 0);
        if (result == 0) {
            eStatus = kStarted;
        } else if (result == WAIT_TIMEOUT) {
            eStatus = now - tCreated <= static_cast<int64_t>(limitSeconds) ? kStarting : kTimedOut;
        } else {
            eStatus = result == WAIT_FAILED ? kWaitFailed : kUnforeseen;
            dwError = GetLastError();
        }
    } else {
        eStatus = kInvalid;
        dwError = ERROR_INVALID_PARAMETER;
    }
    nSituation = SituationOfStatus();
    if (nSituation) TellSituation(nSituation, limitSeconds);
    return eStatus == kStarting;
}

bool KYjlpItemLaunchRequest::IsStillStarting(uint32_t limitSeconds) const {
    const int64_t now = _time64(nullptr);
    if (!IsValid() || now < tCreated || now - tCreated > static_cast<int64_t>(limitSeconds)) return false;
    return WaitForInputIdle(hProcess.get(), 0) == WAIT_TIMEOUT;
}

int KYjlpItemLaunchRequest::SituationOfStatus() const {
    switch (eStatus) {
    case kInvalid:
    case kUnforeseen:
    case kWaitFailed: return 27539;
    case kStarted: return 27540;
    case kTimedOut: return 27541;
    default: return 0;
    }
}

void KYjlpItemLaunchRequest::TellSituation(int situation, uint32_t limitSeconds) const {
    KYbpm* pm = Monitor();
    if (!pm) return;
    pm->recordSituationID(situation);
    pm->recordArgument(Shown(pszName.get()), 0);
    if (eStatus != kStarted)
        pm->recordArgument(static_cast<uint32_t>(reinterpret_cast<uintptr_t>(hProcess.get())), 0);
    if (situation == 27539) {
        pm->recordArgument(static_cast<int32_t>(eStatus), 0);
        std::wstring code;
        if (TheApp()) TheApp()->FormatCode(dwError, 24645, code);
        pm->recordArgument(code, 1);
    } else if (situation == 27541) {
        pm->recordArgument(limitSeconds, 1);
    }
    // Told once: the next check of the list must find the monitor free.
    pm->respondToSituation();
    pm->forgetSituation();
}
