// How the printer engine and its pages tell what went wrong: through the host's
// monitor, with the source position, file and build date where a step found the
// engine unbound, and the library's result in the form of the resource library.
#pragma once
#include <windows.h>

#include <cstdint>
#include <string>

class KYbpm;

namespace printers {

inline constexpr const wchar_t* kEngineSource = L"KYjlpPrinterCfg";
inline constexpr int kUnbound = 27615;

// The host's monitor, or null.
KYbpm* Monitor() noexcept;
// Answers the situation that stands; one that is not taken is forgotten.
void RespondOrForget() noexcept;
void Forget() noexcept;
bool IsNormal() noexcept;
int SituationId() noexcept;
// Records the number when no situation stands yet, so that the first cause is kept.
void RecordIfNormal(int number) noexcept;
// Anything unforeseen: the general number with the last error's link, unless a
// situation already stands.
void RecordUnexpected(int general) noexcept;
// Records 27615 with the line and throws it; the file and date follow in the tail.
[[noreturn]] void ThrowUnbound(int line);
// Records the number with the line (27613, 27614, 27636) and throws it.
[[noreturn]] void ThrowAtLine(int number, int line);
// The file and build date that follow a source position.
void AddSourceTail() noexcept;
void AddArgument(const std::wstring& text) noexcept;
void AddArgument(int32_t value) noexcept;
// A library result as the resource library formats it (string 24642).
std::wstring FormatResult(int32_t result);
// The WLE link of a system error code.
std::wstring CodeLink(DWORD error);
// A narrow export name widened for a report.
std::wstring Widen(const char* text);

}  // namespace printers
