// What crosses the edge between Launch Panel and the print monitor library
// KyPrintMon.dll: the two records, byte for byte as both sides read and write
// them in 64-bit code, the twelve entry points with their names in the order
// of the program's binding table, and the result numbers the program reads.
// Both sides include this header; the library is built from it, and the
// program's own record class must keep the layout checked here.
#pragma once
#include <windows.h>
#include <cstddef>
#include <cstdint>

namespace kypm {

// One node of a list of texts: manufacturers, models, client printer names,
// ports. The library allocates every node by itself, so that a holder may move
// nodes from one chain to another before it hands a chain back.
struct DRIVER_LIST_ENTRY {
    wchar_t* pszText;
    DRIVER_LIST_ENTRY* pNext;
};
static_assert(sizeof(DRIVER_LIST_ENTRY) == 16);
static_assert(offsetof(DRIVER_LIST_ENTRY, pszText) == 0);
static_assert(offsetof(DRIVER_LIST_ENTRY, pNext) == 8);

// One printer. In the program the same bytes are a class with a virtual
// destructor, whose table pointer is the first word; the library's records and
// the program's work record leave that word zero.
struct CLIENT_PRINTER_INFO {
    const void* pTable;
    wchar_t* pszPrinterName;
    wchar_t* pszPortName;
    wchar_t* pszDriverName;
    wchar_t* pszReserved1;
    wchar_t* pszReserved2;
    wchar_t* pszReserved3;
    wchar_t* pszInfPath;
    wchar_t* pszManufacturer;
    int32_t bDefault;
    int32_t bFixed;
    void* pReserved4;
    CLIENT_PRINTER_INFO* pNext;
};
static_assert(sizeof(CLIENT_PRINTER_INFO) == 96);
static_assert(offsetof(CLIENT_PRINTER_INFO, pTable) == 0);
static_assert(offsetof(CLIENT_PRINTER_INFO, pszPrinterName) == 8);
static_assert(offsetof(CLIENT_PRINTER_INFO, pszPortName) == 16);
static_assert(offsetof(CLIENT_PRINTER_INFO, pszDriverName) == 24);
static_assert(offsetof(CLIENT_PRINTER_INFO, pszReserved1) == 32);
static_assert(offsetof(CLIENT_PRINTER_INFO, pszReserved2) == 40);
static_assert(offsetof(CLIENT_PRINTER_INFO, pszReserved3) == 48);
static_assert(offsetof(CLIENT_PRINTER_INFO, pszInfPath) == 56);
static_assert(offsetof(CLIENT_PRINTER_INFO, pszManufacturer) == 64);
static_assert(offsetof(CLIENT_PRINTER_INFO, bDefault) == 72);
static_assert(offsetof(CLIENT_PRINTER_INFO, bFixed) == 76);
static_assert(offsetof(CLIENT_PRINTER_INFO, pReserved4) == 80);
static_assert(offsetof(CLIENT_PRINTER_INFO, pNext) == 88);

// The entry points, in the order of the program's binding table.
using IsClientPrintingSupportedFn = int32_t (*)();
using EnumAvailableDriversFn = int32_t (*)(const wchar_t* infPath, const wchar_t* manufacturer,
                                           DRIVER_LIST_ENTRY** list, const wchar_t* installedLabel);
using GetPrinterListFn = int32_t (*)(DRIVER_LIST_ENTRY** list, int32_t* onlyThese);
using DestroyDriverListFn = int32_t (*)(DRIVER_LIST_ENTRY** head);
using EnumeratePortsFn = int32_t (*)(DRIVER_LIST_ENTRY** list);
using DeletePrinterFn = int32_t (*)(const wchar_t* printerName);
using InstallPrinterFn = int32_t (*)(const CLIENT_PRINTER_INFO* record);
using DisplayPrinterPreferencesFn = int32_t (*)(const wchar_t* printerName, HWND owner);
using PrintTestPageFn = int32_t (*)(const wchar_t* printerName);
using InitializePrintersFn = int32_t (*)(CLIENT_PRINTER_INFO** chain, int32_t startMode,
                                         HANDLE changeEvent);
using DestroyPrinterInfoListFn = int32_t (*)(CLIENT_PRINTER_INFO** head);
using UpdateInstalledPrintersFn = int32_t (*)(CLIENT_PRINTER_INFO** chain);

inline constexpr int kExportCount = 12;
inline constexpr const char* kExportNames[kExportCount] = {
    "isClientPrintingSupported", "EnumAvailableDriversW",  "GetPrinterList",
    "DestroyDriverListW",        "EnumeratePorts",         "PRINT_DeletePrinter",
    "InstallPrinter",            "DisplayPrinterPreferences", "PrintTestPage",
    "InitializePrinters",        "DestroyPrinterInfoList", "UpdateInstalledPrinters",
};
inline constexpr const wchar_t* kLibraryFileName = L"KyPrintMon.dll";

// Results of every entry point: 0 is success. The spooler's reason for a
// refusal stays in the thread's last error.
inline constexpr int32_t kDone = 0;
inline constexpr int32_t kRefused = 1;            // the spooler or the system refused
inline constexpr int32_t kBadArgument = 2;        // null out pointer, empty name, unknown mode
inline constexpr int32_t kNoSuchPrinter = 3;      // no printer of that name
inline constexpr int32_t kNoSuchManufacturer = 4; // no such manufacturer in the list asked
inline constexpr int32_t kNoMemory = 5;
inline constexpr int32_t kForeignNode = 6;        // a node the library did not make

// The start mode of InitializePrinters: which printers of the client the
// session connects before it answers (the command line's printer modes).
inline constexpr int32_t kStartNone = 0;
inline constexpr int32_t kStartAll = 1;
inline constexpr int32_t kStartDefault = 2;

// Results of InitializePrinters and UpdateInstalledPrinters besides kDone.
inline constexpr int32_t kListSpoolerUnreadable = 2;
inline constexpr int32_t kListBadArgument = 3;
inline constexpr int32_t kListNoMemory = 5;

// Results of InstallPrinter, which choose the page of the printer sheet.
inline constexpr int32_t kInstallDone = 0;
inline constexpr int32_t kInstallFailed = 1;           // any other refusal: the sheet stays
inline constexpr int32_t kInstallNoRecord = 2;         // these four end the sheet
inline constexpr int32_t kInstallAccessDenied = 3;
inline constexpr int32_t kInstallSpoolerUnavailable = 4;
inline constexpr int32_t kInstallNoMemory = 5;
inline constexpr int32_t kInstallBadName = 25;         // back to the name page
inline constexpr int32_t kInstallBadModel = 26;        // back to the make and model page
inline constexpr int32_t kInstallNoPort = 31;          // back to the port page
inline constexpr int32_t kInstallBadPort = 32;

// Where the client side of a session states what it offers (see
// printmonitor/README.md); absent outside a session.
inline constexpr const wchar_t* kClientKey = L"SOFTWARE\\Veltran\\Corvane\\KyPrintMon\\Client";

}  // namespace kypm
