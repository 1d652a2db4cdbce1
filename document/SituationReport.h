// The situation convention as the document and the list view use it: the
// program monitor of the application, reached through a few one-line helpers
// that do nothing while no monitor stands (before start-up has made one).
#pragma once
#include <windows.h>
#include <cstdint>
#include <string>

#include "app/KYjlpApp.h"
#include "monitor/KYbpm.h"

namespace lpreport {

inline KYbpm* Monitor() noexcept {
    KYjlpApp* app = TheApp();
    return app ? app->m_pMonitor : nullptr;
}
inline bool IsNormal() noexcept { return !Monitor() || Monitor()->isSituationNormal(); }
inline int Current() noexcept { return Monitor() ? Monitor()->getSituationID() : 0; }
inline void Forget() noexcept {
    if (Monitor()) Monitor()->forgetSituation();
}
inline void Record(int number) noexcept {
    if (Monitor()) Monitor()->recordSituationID(number);
}
// Records the number unless one already stands: the first failure is the one told.
inline void RecordFirst(int number) noexcept {
    if (number != 0 && IsNormal()) Record(number);
}
template <typename T>
void Arg(const T& value, int position = KYbpm_NEXT_POSITION) {
    if (Monitor()) Monitor()->recordArgument(value, position);
}
// Answers the standing situation and forgets it.
inline void RespondAndForget() {
    if (KYbpm* pm = Monitor(); pm && !pm->isSituationNormal()) {
        pm->respondToSituation();
        pm->forgetSituation();
    }
}
// The one-line form: records, answers and forgets at once, so that the next
// report of the same operation finds the monitor free.
template <typename... Args>
void Tell(int number, const Args&... args) {
    if (KYbpm* pm = Monitor()) {
        pm->respondToSituation(number, 0, args...);
        pm->forgetSituation();
    }
}
// The linked text of an error code (string 24645 WLE by default, 24643 WBT, 24646 WSE).
inline std::wstring CodeText(uint32_t code, UINT formatId = 24645) {
    std::wstring text;
    if (KYjlpApp* app = TheApp()) app->FormatCode(code, formatId, text);
    return text;
}
inline const wchar_t* Shown(const wchar_t* text) noexcept {
    return !text ? L"(NULL)" : !*text ? L"(BLANK)" : text;
}

}  // namespace lpreport
