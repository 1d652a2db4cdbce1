// The client printer engine: the one object through which the program knows the
// session's printers. It binds the print monitor library by name, keeps the list
// of installed printers as the library hands it, fills the printers menu, and
// carries out add, change, delete, preferences and test page; it also builds and
// runs the printer sheet. What the user chose in the sheet's pages arrives in the
// work record m_info, whose text fields borrow the pages' strings.
#pragma once
#include <windows.h>
// The spooler's header names GetPrinter as a macro; the engine's GetPrinter is its
// own, so the macro goes wherever this header is seen (the spooler's stays GetPrinterW).
#include <winspool.h>
#undef GetPrinter

#include <cstdint>
#include <string>

#include "printmonitor/PrintMonitorRecords.h"

struct KYstdUI_DlgData;
class KYbpm;

using CLIENT_PRINTER_INFO = kypm::CLIENT_PRINTER_INFO;
using DRIVER_LIST_ENTRY = kypm::DRIVER_LIST_ENTRY;

// Set by OpenPrinterSheet: whether the sheet that runs is the add wizard.
extern bool g_bPrinterWizard;

class KYjlpPrinterCfg {
public:
    static constexpr int kMaxPrinters = 30;
    static constexpr UINT kFirstPrinterCommand = 32788;
    // The slots of the binding table, in its order.
    enum Slot {
        kIsClientPrintingSupported, kEnumAvailableDrivers, kGetPrinterList, kDestroyDriverList,
        kEnumeratePorts, kDeletePrinter, kInstallPrinter, kDisplayPrinterPreferences, kPrintTestPage,
        kInitializePrinters, kDestroyPrinterInfoList, kUpdateInstalledPrinters, kSlotCount
    };

    KYjlpPrinterCfg();
    virtual ~KYjlpPrinterCfg();
    KYjlpPrinterCfg(const KYjlpPrinterCfg&) = delete;
    KYjlpPrinterCfg& operator=(const KYjlpPrinterCfg&) = delete;

    virtual bool DeletePrinter(uint32_t& result);
    virtual bool ShowPrinterPreferences(HWND owner, uint32_t& result);
    virtual bool DestroyPrinterChain(CLIENT_PRINTER_INFO** head, bool report);
    virtual bool ReleasePrinters(bool report);
    virtual bool StartPrinters(bool report, int32_t limit);
    virtual bool AddPrinter(uint32_t& result);
    virtual bool RefreshPrinters(int32_t limit, bool reportRelease, bool reportProblems);
    virtual bool UpdatePrinter(uint32_t& result);
    virtual bool OpenPrinterSheet(const KYstdUI_DlgData* dialogData, const CLIENT_PRINTER_INFO* record);
    virtual bool SendTestPage(uint32_t& result);

    CLIENT_PRINTER_INFO* GetPrinter(int index) const noexcept;
    int FindDefaultPrinter() const noexcept;
    CLIENT_PRINTER_INFO* GetDefaultPrinter(CLIENT_PRINTER_INFO*& out) noexcept;
    int FindPrinterByName(const wchar_t* name, int start, bool wrap) const noexcept;
    // Printer items from `position` on, under the commands 32788 and up; the
    // number of items made (a separator counted), -1 on failure.
    int FillPrinterMenu(HMENU menu, int position, bool separator) const noexcept;
    static bool RemoveMenuTail(HMENU menu, int first, int& last) noexcept;
    bool HasPrinterAt(int index) const noexcept { return GetPrinter(index) != nullptr; }
    bool IsRecordComplete() const noexcept;
    std::wstring GetRecordName() const { return Field(m_info.pszPrinterName); }
    std::wstring GetRecordPort() const { return Field(m_info.pszPortName); }
    std::wstring GetRecordModel() const { return Field(m_info.pszDriverName); }
    std::wstring GetRecordInfPath() const { return Field(m_info.pszInfPath); }
    std::wstring GetRecordManufacturer() const { return Field(m_info.pszManufacturer); }

    bool IsBound() const noexcept { return m_bBound; }
    int PrinterCount() const noexcept { return m_ppPrinters && m_ppPrinters[0] ? m_nPrinters : 0; }
    int SheetResult() const noexcept { return m_nSheetResult; }
    // The entry point of a slot once bound, as its own type; null before.
    template <typename Fn>
    Fn Export(Slot slot) const noexcept {
        return m_bBound ? reinterpret_cast<Fn>(m_apfnExports[slot]) : nullptr;
    }
    const char* ExportName(Slot slot) const noexcept { return m_apszExportNames[slot]; }

    // The work record of the sheet: the pages point its fields at their strings.
    CLIENT_PRINTER_INFO m_info{};
    bool m_bTestPage = false;

private:
    static std::wstring Field(const wchar_t* text) { return text && *text ? text : L""; }
    // Loads the library if needed and looks up the twelve entry points; throws the situation.
    void Bind();
    // The answer of one enumeration export; the chain comes back through `chain`.
    int32_t Enumerate(CLIENT_PRINTER_INFO*& chain);
    void JudgeEnumeration(int32_t result, CLIENT_PRINTER_INFO* chain, bool reportProblems, bool& empty);
    void KeepPrinters(CLIENT_PRINTER_INFO* chain, int32_t limit);
    // The shared frame of delete, preferences, add, update and test page.
    struct Operation;
    bool RunOperation(const Operation& op, HWND owner, uint32_t& result);
    void ReportCallFailure(KYbpm* monitor, Slot slot, int32_t result, DWORD error);

    int32_t m_nDefault = -1;
    int32_t m_nSheetResult = -1;
    bool m_bBound = false;
    CLIENT_PRINTER_INFO** m_ppPrinters = nullptr;
    int32_t m_nPrinters = 0;
    bool m_bEnumerated = false;
    void* m_apfnExports[kSlotCount] = {};  // as looked up; cast to their types at the call
    const char* m_apszExportNames[kSlotCount] = {};
};
