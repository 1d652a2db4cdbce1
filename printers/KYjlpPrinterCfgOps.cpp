// What the engine does with one printer (delete, preferences, add, change, test
// page), how it finds printers in its list, and the printers menu.
#include <new>

#include "monitor/KYbpm.h"
#include "printers/KYjlpPrinterCfg.h"
#include "printers/PrinterReport.h"

using namespace printers;

// One operation: the export it calls, and its numbers for an incomplete record,
// a refusal of the library and any other failure.
struct KYjlpPrinterCfg::Operation {
    Slot slot;
    bool needsCompleteRecord;
    int incomplete, exportFailed, general;
    int32_t (*call)(const KYjlpPrinterCfg& engine, HWND owner);
};

namespace {
int32_t CallDelete(const KYjlpPrinterCfg& engine, HWND) {
    return engine.Export<kypm::DeletePrinterFn>(KYjlpPrinterCfg::kDeletePrinter)(engine.m_info.pszPrinterName);
}
int32_t CallPreferences(const KYjlpPrinterCfg& engine, HWND owner) {
    return engine.Export<kypm::DisplayPrinterPreferencesFn>(KYjlpPrinterCfg::kDisplayPrinterPreferences)(
        engine.m_info.pszPrinterName, owner);
}
int32_t CallInstall(const KYjlpPrinterCfg& engine, HWND) {
    return engine.Export<kypm::InstallPrinterFn>(KYjlpPrinterCfg::kInstallPrinter)(&engine.m_info);
}
int32_t CallTestPage(const KYjlpPrinterCfg& engine, HWND) {
    return engine.Export<kypm::PrintTestPageFn>(KYjlpPrinterCfg::kPrintTestPage)(engine.m_info.pszPrinterName);
}
}  // namespace

void KYjlpPrinterCfg::ReportCallFailure(KYbpm* monitor, Slot slot, int32_t result, DWORD error) {
    if (!monitor) return;
    monitor->recordArgument(Widen(m_apszExportNames[slot]));
    monitor->recordArgument(kypm::kLibraryFileName);
    monitor->recordArgument(FormatResult(result));
    monitor->recordArgument(CodeLink(error));
}

bool KYjlpPrinterCfg::RunOperation(const Operation& op, HWND owner, uint32_t& result) {
    result = 0;
    Forget();
    ::SetLastError(0);
    try {
        if (!m_bBound) ThrowUnbound(__LINE__);
        const bool complete = op.needsCompleteRecord ? IsRecordComplete()
                                                     : m_info.pszPrinterName && *m_info.pszPrinterName;
        if (!complete) throw op.incomplete;
        bool called = false;
        try {
            ::SetLastError(0);
            result = static_cast<uint32_t>(op.call(*this, owner));
            called = true;
        } catch (...) {
            result = 0;
        }
        if (called && result == 0) return true;
        const DWORD error = ::GetLastError();
        if (KYbpm* monitor = Monitor()) {
            monitor->recordSituationID(op.exportFailed);
            ReportCallFailure(monitor, op.slot, static_cast<int32_t>(result), error);
        }
        throw op.exportFailed;
    } catch (int number) {
        RecordIfNormal(number);
    } catch (...) {
        const DWORD error = ::GetLastError();
        if (IsNormal()) {
            RecordIfNormal(op.general);
            AddArgument(CodeLink(error));
        }
    }
    if (SituationId() == kUnbound) AddSourceTail();
    RespondOrForget();
    ::SetLastError(0);
    return false;
}

bool KYjlpPrinterCfg::DeletePrinter(uint32_t& result) {
    static constexpr Operation kDelete{kDeletePrinter, false, 27604, 27602, 27601, CallDelete};
    return RunOperation(kDelete, nullptr, result) && RefreshPrinters(kMaxPrinters, true, true);
}

bool KYjlpPrinterCfg::ShowPrinterPreferences(HWND owner, uint32_t& result) {
    static constexpr Operation kPreferences{kDisplayPrinterPreferences, false, 27684, 27682, 27681,
                                            CallPreferences};
    return RunOperation(kPreferences, owner, result);
}

bool KYjlpPrinterCfg::AddPrinter(uint32_t& result) {
    static constexpr Operation kAdd{kInstallPrinter, true, 27631, 27629, 27628, CallInstall};
    if (!RunOperation(kAdd, nullptr, result)) return false;
    if (m_bTestPage) {
        // The printer stands whether or not its test page comes out.
        SendTestPage(result);
        result = 0;
        ::SetLastError(0);
    }
    return RefreshPrinters(kMaxPrinters, true, true);
}

// A change is an installation over the printer of the record's name.
bool KYjlpPrinterCfg::UpdatePrinter(uint32_t& result) {
    static constexpr Operation kUpdate{kInstallPrinter, true, 27647, 27645, 27644, CallInstall};
    return RunOperation(kUpdate, nullptr, result) && RefreshPrinters(kMaxPrinters, true, true);
}

bool KYjlpPrinterCfg::SendTestPage(uint32_t& result) {
    static constexpr Operation kTest{kPrintTestPage, false, 27688, 27686, 27685, CallTestPage};
    return RunOperation(kTest, nullptr, result);
}

bool KYjlpPrinterCfg::IsRecordComplete() const noexcept {
    const auto filled = [](const wchar_t* text) { return text && *text; };
    return filled(m_info.pszPrinterName) && filled(m_info.pszDriverName) && filled(m_info.pszManufacturer);
}

CLIENT_PRINTER_INFO* KYjlpPrinterCfg::GetPrinter(int index) const noexcept {
    if (!m_ppPrinters || !m_ppPrinters[0] || index < 0 || index >= m_nPrinters) return nullptr;
    return m_ppPrinters[index];
}

int KYjlpPrinterCfg::FindDefaultPrinter() const noexcept {
    const int count = PrinterCount();
    if (count == 0) return -1;
    for (int i = 0; i < count; ++i)
        if (m_ppPrinters[i] && m_ppPrinters[i]->bDefault) return i;
    return 0;
}

CLIENT_PRINTER_INFO* KYjlpPrinterCfg::GetDefaultPrinter(CLIENT_PRINTER_INFO*& out) noexcept {
    out = nullptr;
    if (m_nDefault == -1) m_nDefault = FindDefaultPrinter();
    if (m_nDefault != -1) out = GetPrinter(m_nDefault);
    return out;
}

// Case counts: two printers may differ in case alone.
int KYjlpPrinterCfg::FindPrinterByName(const wchar_t* name, int start, bool wrap) const noexcept {
    const int count = PrinterCount();
    if (count == 0 || !name || !*name || start < 0 || start >= count) return -1;
    const int length = lstrlenW(name);
    int index = start;
    try {
        for (int step = 0; step < count; ++step, ++index) {
            if (index >= count) {
                if (!wrap) return -1;
                index %= count;
            }
            const wchar_t* candidate = m_ppPrinters[index]->pszPrinterName;
            if (candidate && ::CompareStringW(LOCALE_USER_DEFAULT, 0, candidate, -1, name, length) == CSTR_EQUAL)
                return index;
        }
    } catch (...) {
        return -1;
    }
    return -1;
}

bool KYjlpPrinterCfg::RemoveMenuTail(HMENU menu, int first, int& last) noexcept {
    for (; last >= first; --last)
        if (!::RemoveMenu(menu, static_cast<UINT>(last), MF_BYPOSITION)) return false;
    return true;
}

// The command of an item is the count of items made before it, not the printer's
// index: the command handler maps it back with GetPrinter, as it always has.
int KYjlpPrinterCfg::FillPrinterMenu(HMENU menu, int position, bool separator) const noexcept {
    if (position < 0) position = 0;
    int count = ::GetMenuItemCount(menu);
    if (count > position) {
        int last = count - 1;
        RemoveMenuTail(menu, position, last);
        count = last + 1;
    }
    const int printers = PrinterCount();
    if (printers == 0) return 0;
    int made = 0;
    if (position > 0 && separator && ::AppendMenuW(menu, MF_SEPARATOR, 0, nullptr)) made = 1;
    int items = 0;
    for (int i = 0; i < printers && i < kMaxPrinters; ++i) {
        const wchar_t* name = m_ppPrinters[i]->pszPrinterName;
        if (!name || !*name) continue;
        if (!::AppendMenuW(menu, MF_STRING, kFirstPrinterCommand + static_cast<UINT>(items), name)) return -1;
        ++items;
    }
    return items + made;
}
