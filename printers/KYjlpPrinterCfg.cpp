// The binding of the print monitor library and the printer list it hands out.
#include "printers/KYjlpPrinterCfg.h"

#include <new>

#include "monitor/KYbpm.h"
#include "printers/KYjlpPrinterHost.h"
#include "printers/PrinterReport.h"

using namespace printers;

bool g_bPrinterWizard = false;

namespace {
constexpr int kBindFailed = 27619, kRefused = 27620, kNoName = 27623, kExportMissing = 27626, kEmptyName = 27627;
constexpr int kLimit = 27614, kChainGeneral = 27632, kChainFailed = 27634, kChainNull = 27635;
constexpr int kChainAbandoned = 27636, kRefreshGeneral = 27637, kNoArrayMemory = 27638;
constexpr int kEnumFailed = 27640, kEnumAnswered2 = 27641, kNoClientPrinters = 27642, kReleaseFailed = 27643;
}  // namespace

KYjlpPrinterCfg::KYjlpPrinterCfg() {
    for (int slot = 0; slot < kSlotCount; ++slot) m_apszExportNames[slot] = kypm::kExportNames[slot];
}

// The records are the library's: they go back while it is still loaded, before
// the host frees it. A host that forgot gets the pointer array freed here.
KYjlpPrinterCfg::~KYjlpPrinterCfg() { delete[] m_ppPrinters; }

void KYjlpPrinterCfg::Bind() {
    KYjlpPrinterHost* host = KYjlpPrinterHost::Current();
    if (!host) ThrowUnbound(__LINE__);
    if (!host->PrintMonitorModule())
        if (int number = host->LoadPrintMonitor()) throw number;
    const HMODULE module = host->PrintMonitorModule();
    for (int slot = 0; slot < kSlotCount; ++slot) {
        const char* name = m_apszExportNames[slot];
        if (!name || !*name) {
            if (KYbpm* monitor = Monitor()) {
                monitor->recordSituationID(kEmptyName);
                monitor->recordArgument(static_cast<int32_t>(slot));
            }
            throw kEmptyName;
        }
        m_apfnExports[slot] = reinterpret_cast<void*>(::GetProcAddress(module, name));
        if (!m_apfnExports[slot]) {
            const DWORD error = ::GetLastError();
            if (KYbpm* monitor = Monitor()) {
                monitor->recordSituationID(kExportMissing);
                monitor->recordArgument(CodeLink(error));
                monitor->recordArgument(Widen(name));
            }
            throw kExportMissing;
        }
    }
    int32_t answer = 0;
    try {
        answer = reinterpret_cast<kypm::IsClientPrintingSupportedFn>(m_apfnExports[kIsClientPrintingSupported])();
    } catch (...) {
        throw kBindFailed;
    }
    if (answer != 0) {
        if (KYbpm* monitor = Monitor()) {
            monitor->recordSituationID(kRefused);
            monitor->recordArgument(FormatResult(answer));
        }
        throw kRefused;
    }
    m_bBound = true;
}

bool KYjlpPrinterCfg::StartPrinters(bool report, int32_t limit) {
    if (!m_bBound) {
        Forget();
        ::SetLastError(0);
        try {
            Bind();
        } catch (int number) {
            RecordIfNormal(number);
        } catch (...) {
            RecordUnexpected(kBindFailed);
        }
        if (!m_bBound && !IsNormal()) {
            const int number = SituationId();
            if (number != kRefused && number != kNoName) AddArgument(std::wstring(kypm::kLibraryFileName));
            if (report)
                RespondOrForget();
            else
                Forget();
            ::SetLastError(0);
            if (m_ppPrinters) ReleasePrinters(report);
        }
    }
    if (m_bBound) RefreshPrinters(limit, true, report);
    return m_bBound;
}

int32_t KYjlpPrinterCfg::Enumerate(CLIENT_PRINTER_INFO*& chain) {
    chain = nullptr;
    ::SetLastError(0);
    if (m_bEnumerated)
        return Export<kypm::UpdateInstalledPrintersFn>(kUpdateInstalledPrinters)(&chain);
    KYjlpPrinterHost* host = KYjlpPrinterHost::Current();
    const int32_t mode = host ? host->PrinterStartMode() : 0;
    const HANDLE event = host ? host->PrinterWatchEvent() : nullptr;
    return Export<kypm::InitializePrintersFn>(kInitializePrinters)(&chain, mode, event);
}

// Judges the library's answer; `empty` says that the session has no printers,
// which is success. Failures are thrown.
void KYjlpPrinterCfg::JudgeEnumeration(int32_t result, CLIENT_PRINTER_INFO* chain, bool reportProblems,
                                       bool& empty) {
    empty = false;
    if (result == 0 && chain) {
        m_bEnumerated = true;
        return;
    }
    if ((result == 0 && !chain) || result == 1) {
        m_bEnumerated = true;
        empty = true;
        if (reportProblems) {
            if (KYbpm* monitor = Monitor()) monitor->recordSituationID(kNoClientPrinters);
            RespondOrForget();
        }
        return;
    }
    if (result == 2) throw kEnumAnswered2;
    if (KYbpm* monitor = Monitor()) {
        monitor->recordSituationID(kEnumFailed);
        monitor->recordArgument(FormatResult(result));
    }
    throw kEnumFailed;
}

// Keeps at most `limit` records with exactly one default, and makes the pointer array.
void KYjlpPrinterCfg::KeepPrinters(CLIENT_PRINTER_INFO* chain, int32_t limit) {
    CLIENT_PRINTER_INFO* last = nullptr;
    CLIENT_PRINTER_INFO* tail = nullptr;
    int32_t count = 0, firstDefault = -1;
    for (CLIENT_PRINTER_INFO* record = chain; record; record = record->pNext) {
        if (count == limit) {
            tail = record;
            last->pNext = nullptr;
            break;
        }
        if (record->bDefault) {
            if (firstDefault < 0)
                firstDefault = count;
            else
                record->bDefault = 0;
        }
        ++count;
        last = record;
    }
    // What lies past the menu's limit goes back at once; a failure there is not the refresh's.
    if (tail) DestroyPrinterChain(&tail, true);
    if (firstDefault < 0 && chain) {
        chain->bDefault = 1;
        firstDefault = 0;
    }
    m_ppPrinters = new (std::nothrow) CLIENT_PRINTER_INFO*[static_cast<size_t>(count)]();
    if (!m_ppPrinters) {
        if (KYbpm* monitor = Monitor()) {
            monitor->recordSituationID(kNoArrayMemory);
            monitor->recordArgument(count);
        }
        throw kNoArrayMemory;
    }
    int32_t index = 0;
    for (CLIENT_PRINTER_INFO* record = chain; record && index < count; record = record->pNext)
        m_ppPrinters[index++] = record;
    m_nPrinters = count;
    m_nDefault = firstDefault;
}

bool KYjlpPrinterCfg::RefreshPrinters(int32_t limit, bool reportRelease, bool reportProblems) {
    Forget();
    ::SetLastError(0);
    CLIENT_PRINTER_INFO* chain = nullptr;
    // Up to the release of the old list a failure leaves that list as it was.
    bool released = false;
    try {
        if (limit < 1 || limit > kMaxPrinters) ThrowAtLine(kLimit, __LINE__);
        if (!m_bBound) ThrowUnbound(__LINE__);
        if (m_ppPrinters && !ReleasePrinters(reportRelease)) throw kReleaseFailed;
        released = true;
        m_nDefault = -1;
        m_nPrinters = 0;
        int32_t result = 0;
        try {
            result = Enumerate(chain);
        } catch (...) {
            DestroyPrinterChain(&chain, true);
            throw;
        }
        bool empty = false;
        JudgeEnumeration(result, chain, reportProblems, empty);
        if (empty) {
            if (chain) DestroyPrinterChain(&chain, reportRelease);
            return true;
        }
        KeepPrinters(chain, limit);
        return true;
    } catch (int number) {
        RecordIfNormal(number);
    } catch (...) {
        RecordUnexpected(kRefreshGeneral);
    }
    const int number = SituationId();
    if (chain && !m_ppPrinters) DestroyPrinterChain(&chain, false);
    if (released && m_ppPrinters) ReleasePrinters(true);
    if (number == kLimit || number == kUnbound) AddSourceTail();
    if (number == kEnumFailed) {
        AddArgument(std::wstring(kypm::kLibraryFileName));
        AddArgument(Widen(m_apszExportNames[kInitializePrinters]));
    }
    if (reportProblems)
        RespondOrForget();
    else
        Forget();
    return false;
}

bool KYjlpPrinterCfg::DestroyPrinterChain(CLIENT_PRINTER_INFO** head, bool report) {
    try {
        if (!head) throw kChainNull;
        if (!*head) return true;
        if (!m_bBound) ThrowUnbound(__LINE__);
        int32_t result = -1;
        try {
            ::SetLastError(0);
            result = Export<kypm::DestroyPrinterInfoListFn>(kDestroyPrinterInfoList)(head);
        } catch (...) {
            result = -1;
        }
        if (result == 0 && !*head) return true;
        if (KYbpm* monitor = Monitor()) {
            monitor->recordSituationID(kChainFailed);
            monitor->recordArgument(FormatResult(result));
            monitor->recordArgument(kypm::kLibraryFileName);
            monitor->recordArgument(Widen(m_apszExportNames[kDestroyPrinterInfoList]));
        }
        throw kChainFailed;
    } catch (int number) {
        RecordIfNormal(number);
    } catch (...) {
        RecordUnexpected(kChainGeneral);
    }
    if (SituationId() == kUnbound) AddSourceTail();
    if (!report) return false;
    RespondOrForget();
    if (head && *head) {
        // The library would not take the chain back: it is given up, a leak by decision.
        if (KYbpm* monitor = Monitor()) {
            monitor->recordSituationID(kChainAbandoned);
            monitor->recordArgument(static_cast<int32_t>(__LINE__));
        }
        AddSourceTail();
        RespondOrForget();
        return true;
    }
    return false;
}

bool KYjlpPrinterCfg::ReleasePrinters(bool report) {
    if (m_ppPrinters) {
        if (m_ppPrinters[0]) {
            CLIENT_PRINTER_INFO* first = m_ppPrinters[0];
            if (!DestroyPrinterChain(&first, report)) return false;
        }
        delete[] m_ppPrinters;
        m_ppPrinters = nullptr;
    }
    m_nPrinters = 0;
    m_nDefault = -1;
    return true;
}
