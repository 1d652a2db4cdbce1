#include "printers/KYjlpPrinterHost.h"

namespace {
KYjlpPrinterHost* g_host = nullptr;
}

KYjlpPrinterHost* KYjlpPrinterHost::Current() noexcept { return g_host; }

void KYjlpPrinterHost::SetCurrent(KYjlpPrinterHost* host) noexcept { g_host = host; }

KYjlpPrinterCfg* CurrentPrinterEngine() noexcept {
    try {
        return g_host ? g_host->PrinterEngine() : nullptr;
    } catch (...) {
        return nullptr;
    }
}
