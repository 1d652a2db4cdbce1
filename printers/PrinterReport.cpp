#include "printers/PrinterReport.h"

#include "framework/ResourceModule.h"
#include "monitor/KYbpm.h"
#include "printers/KYjlpPrinterHost.h"

namespace printers {

KYbpm* Monitor() noexcept {
    KYjlpPrinterHost* host = KYjlpPrinterHost::Current();
    try {
        return host ? host->PrinterMonitor() : nullptr;
    } catch (...) {
        return nullptr;
    }
}

void RespondOrForget() noexcept {
    if (KYbpm* monitor = Monitor()) {
        try {
            if (!monitor->respondToSituation()) monitor->forgetSituation();
        } catch (...) {
            monitor->forgetSituation();
        }
    }
}

void Forget() noexcept {
    if (KYbpm* monitor = Monitor()) monitor->forgetSituation();
}

bool IsNormal() noexcept {
    KYbpm* monitor = Monitor();
    return !monitor || monitor->isSituationNormal();
}

int SituationId() noexcept {
    KYbpm* monitor = Monitor();
    return monitor && !monitor->isSituationNormal() ? monitor->getSituationID() : 0;
}

void RecordIfNormal(int number) noexcept {
    KYbpm* monitor = Monitor();
    if (monitor && monitor->isSituationNormal() && number != 0) monitor->recordSituationID(number);
}

void RecordUnexpected(int general) noexcept {
    const DWORD error = ::GetLastError();
    if (!IsNormal()) return;
    RecordIfNormal(general);
    try {
        AddArgument(CodeLink(error));
    } catch (...) {
        // The number alone still tells what failed.
    }
}

void ThrowUnbound(int line) { ThrowAtLine(kUnbound, line); }

void ThrowAtLine(int number, int line) {
    if (KYbpm* monitor = Monitor()) {
        monitor->recordSituationID(number);
        monitor->recordArgument(static_cast<int32_t>(line));
    }
    throw number;
}

void AddSourceTail() noexcept {
    if (KYbpm* monitor = Monitor()) {
        monitor->recordArgument(kEngineSource);
        monitor->recordArgument(__DATE__);
    }
}

void AddArgument(const std::wstring& text) noexcept {
    if (KYbpm* monitor = Monitor()) monitor->recordArgument(text);
}

void AddArgument(int32_t value) noexcept {
    if (KYbpm* monitor = Monitor()) monitor->recordArgument(value);
}

std::wstring FormatResult(int32_t result) {
    std::wstring format = fw::ResString(24642);
    if (format.empty()) format = L"%d";
    wchar_t text[64] = {};
    _snwprintf(text, 63, format.c_str(), result);
    return text;
}

std::wstring CodeLink(DWORD error) {
    KYjlpPrinterHost* host = KYjlpPrinterHost::Current();
    return host ? host->PrinterCodeLink(error) : std::to_wstring(error);
}

std::wstring Widen(const char* text) {
    std::wstring wide;
    for (const char* p = text; p && *p; ++p) wide += static_cast<wchar_t>(static_cast<unsigned char>(*p));
    return wide;
}

}  // namespace printers
