// A print monitor library of the tests' own, in place of KyPrintMon.dll: the
// twelve entry points by their exact names, answering what the test scripted
// through the StandIn_ exports, and counting every call, so that a test can say
// which entry points the engine used and which it left alone. Records and text
// nodes are allocated here and go back only through the library's release
// entry points, which count what is still out.
//
// One source, three libraries by compile definitions:
//   STANDIN_WITHOUT_UPDATE      UpdateInstalledPrinters is not exported;
//   STANDIN_SUPPORTED_ANSWER=n  isClientPrintingSupported answers n (else 0).
#include <windows.h>

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>

#include "printmonitor/PrintMonitorRecords.h"

using kypm::CLIENT_PRINTER_INFO;
using kypm::DRIVER_LIST_ENTRY;

#ifndef STANDIN_SUPPORTED_ANSWER
#define STANDIN_SUPPORTED_ANSWER 0
#endif

namespace {

// The slots of the twelve entry points, in the order of kypm::kExportNames.
enum Entry {
    kIsSupported, kEnumDrivers, kPrinterList, kDestroyTexts, kPorts, kDelete,
    kInstall, kPreferences, kTestPage, kInitialize, kDestroyRecords, kUpdate
};

// A marker that tells this library's records and nodes from anybody else's.
constexpr uint32_t kOurs = 0x53746E64;

// A record with its texts: the record comes first, so that the address handed
// out is the address of the whole.
struct RecordBlock {
    CLIENT_PRINTER_INFO record{};
    uint32_t mark = kOurs;
    std::wstring name, port, driver, manufacturer;
};

struct NodeBlock {
    DRIVER_LIST_ENTRY node{};
    uint32_t mark = kOurs;
    std::wstring text;
};

struct Script {
    int calls[kypm::kExportCount] = {};
    int32_t results[kypm::kExportCount] = {STANDIN_SUPPORTED_ANSWER};
    int32_t printers = 0;
    uint64_t defaults = 0;
    int32_t emptyName = -1;
    int32_t startMode = -1;
    HANDLE event = nullptr;
    int32_t liveRecords = 0;
    int32_t liveNodes = 0;
    std::wstring lastName, lastManufacturer;
};
Script g_script;

int Count(Entry entry) { return ++g_script.calls[entry]; }

int SlotOf(const char* name) {
    for (int slot = 0; name && slot < kypm::kExportCount; ++slot)
        if (std::strcmp(name, kypm::kExportNames[slot]) == 0) return slot;
    return -1;
}

// The scripted printers as a fresh chain: "Printer 0", "Printer 1", ..., one
// of them with an empty name if asked, the defaults as the bit mask says.
CLIENT_PRINTER_INFO* MakeChain() {
    CLIENT_PRINTER_INFO* head = nullptr;
    CLIENT_PRINTER_INFO** link = &head;
    for (int32_t i = 0; i < g_script.printers; ++i) {
        auto* block = new RecordBlock;
        block->name = i == g_script.emptyName ? L"" : L"Printer " + std::to_wstring(i);
        block->port = L"LPT1:";
        block->driver = L"Stand-in Model";
        block->manufacturer = L"Stand-in Maker";
        block->record.pszPrinterName = block->name.data();
        block->record.pszPortName = block->port.data();
        block->record.pszDriverName = block->driver.data();
        block->record.pszManufacturer = block->manufacturer.data();
        block->record.bDefault = i < 64 && ((g_script.defaults >> i) & 1) ? 1 : 0;
        *link = &block->record;
        link = &block->record.pNext;
        ++g_script.liveRecords;
    }
    return head;
}

DRIVER_LIST_ENTRY* MakeTexts(std::initializer_list<const wchar_t*> texts) {
    DRIVER_LIST_ENTRY* head = nullptr;
    DRIVER_LIST_ENTRY** link = &head;
    for (const wchar_t* text : texts) {
        auto* block = new NodeBlock;
        block->text = text;
        block->node.pszText = block->text.data();
        *link = &block->node;
        link = &block->node.pNext;
        ++g_script.liveNodes;
    }
    return head;
}

// Answers with the scripted result; the list is made only for a success.
int32_t AnswerList(Entry entry, DRIVER_LIST_ENTRY** list, std::initializer_list<const wchar_t*> texts) {
    Count(entry);
    if (!list) return kypm::kBadArgument;
    *list = nullptr;
    if (g_script.results[entry] == kypm::kDone) *list = MakeTexts(texts);
    return g_script.results[entry];
}

// The chain comes with any answer, so that a test sees the engine give it back
// whatever the library said.
int32_t AnswerChain(Entry entry, CLIENT_PRINTER_INFO** chain) {
    if (!chain) return kypm::kListBadArgument;
    *chain = MakeChain();
    return g_script.results[entry];
}

void Remember(const wchar_t* name) { g_script.lastName = name ? name : L"<null>"; }

}  // namespace

#define STANDIN_EXPORT extern "C" __declspec(dllexport)

STANDIN_EXPORT int32_t isClientPrintingSupported() {
    Count(kIsSupported);
    return g_script.results[kIsSupported];
}

STANDIN_EXPORT int32_t EnumAvailableDriversW(const wchar_t*, const wchar_t* manufacturer, DRIVER_LIST_ENTRY** list,
                                             const wchar_t*) {
    if (manufacturer) return AnswerList(kEnumDrivers, list, {L"Stand-in Model", L"Stand-in Model 2"});
    return AnswerList(kEnumDrivers, list, {L"Stand-in Maker"});
}

STANDIN_EXPORT int32_t GetPrinterList(DRIVER_LIST_ENTRY** list, int32_t* onlyThese) {
    if (onlyThese) *onlyThese = 0;
    return AnswerList(kPrinterList, list, {L"Client A", L"Client B"});
}

STANDIN_EXPORT int32_t DestroyDriverListW(DRIVER_LIST_ENTRY** head) {
    Count(kDestroyTexts);
    if (!head) return kypm::kBadArgument;
    if (g_script.results[kDestroyTexts] != kypm::kDone) return g_script.results[kDestroyTexts];
    while (*head) {
        auto* block = reinterpret_cast<NodeBlock*>(*head);
        if (block->mark != kOurs) return kypm::kForeignNode;
        *head = block->node.pNext;
        delete block;
        --g_script.liveNodes;
    }
    return kypm::kDone;
}

STANDIN_EXPORT int32_t EnumeratePorts(DRIVER_LIST_ENTRY** list) {
    return AnswerList(kPorts, list, {L"LPT1:", L"FILE:"});
}

STANDIN_EXPORT int32_t PRINT_DeletePrinter(const wchar_t* printerName) {
    Count(kDelete);
    Remember(printerName);
    return g_script.results[kDelete];
}

STANDIN_EXPORT int32_t InstallPrinter(const CLIENT_PRINTER_INFO* record) {
    Count(kInstall);
    if (!record) return kypm::kInstallNoRecord;
    Remember(record->pszPrinterName);
    g_script.lastManufacturer = record->pszManufacturer ? record->pszManufacturer : L"<null>";
    return g_script.results[kInstall];
}

STANDIN_EXPORT int32_t DisplayPrinterPreferences(const wchar_t* printerName, HWND) {
    Count(kPreferences);
    Remember(printerName);
    return g_script.results[kPreferences];
}

STANDIN_EXPORT int32_t PrintTestPage(const wchar_t* printerName) {
    Count(kTestPage);
    Remember(printerName);
    return g_script.results[kTestPage];
}

STANDIN_EXPORT int32_t InitializePrinters(CLIENT_PRINTER_INFO** chain, int32_t startMode, HANDLE changeEvent) {
    Count(kInitialize);
    g_script.startMode = startMode;
    g_script.event = changeEvent;
    return AnswerChain(kInitialize, chain);
}

STANDIN_EXPORT int32_t DestroyPrinterInfoList(CLIENT_PRINTER_INFO** head) {
    Count(kDestroyRecords);
    if (!head) return kypm::kBadArgument;
    if (g_script.results[kDestroyRecords] != kypm::kDone) return g_script.results[kDestroyRecords];
    while (*head) {
        auto* block = reinterpret_cast<RecordBlock*>(*head);
        if (block->mark != kOurs) return kypm::kForeignNode;
        *head = block->record.pNext;
        delete block;
        --g_script.liveRecords;
    }
    return kypm::kDone;
}

#ifndef STANDIN_WITHOUT_UPDATE
STANDIN_EXPORT int32_t UpdateInstalledPrinters(CLIENT_PRINTER_INFO** chain) {
    Count(kUpdate);
    return AnswerChain(kUpdate, chain);
}
#endif

// A fresh script and fresh counts, whatever a previous test left.
STANDIN_EXPORT void StandIn_Reset() { g_script = Script{}; }

// What the test scripts: the printers of the next enumerations (count, the
// defaults as a bit mask over the indexes, the index of one with an empty name
// or -1), and the answer of any entry point by its name.
STANDIN_EXPORT void StandIn_SetPrinters(int32_t count, uint64_t defaults, int32_t emptyNameIndex) {
    g_script.printers = count;
    g_script.defaults = defaults;
    g_script.emptyName = emptyNameIndex;
}

STANDIN_EXPORT BOOL StandIn_SetResult(const char* exportName, int32_t result) {
    const int slot = SlotOf(exportName);
    if (slot < 0) return FALSE;
    g_script.results[slot] = result;
    return TRUE;
}

// What the test reads back: calls of one entry point by name (-1 for a name
// that is none of the twelve), calls of all of them, what is still out.
STANDIN_EXPORT int StandIn_CallCount(const char* exportName) {
    const int slot = SlotOf(exportName);
    return slot < 0 ? -1 : g_script.calls[slot];
}

STANDIN_EXPORT int StandIn_TotalCalls() {
    int total = 0;
    for (int calls : g_script.calls) total += calls;
    return total;
}

STANDIN_EXPORT int32_t StandIn_LiveRecords() { return g_script.liveRecords; }
STANDIN_EXPORT int32_t StandIn_LiveNodes() { return g_script.liveNodes; }
STANDIN_EXPORT int32_t StandIn_LastStartMode() { return g_script.startMode; }
STANDIN_EXPORT HANDLE StandIn_LastEvent() { return g_script.event; }

// The printer name of the last delete, install, preferences or test page
// ("<null>" for a null name), and the manufacturer of the last install.
STANDIN_EXPORT const wchar_t* StandIn_LastName() { return g_script.lastName.c_str(); }
STANDIN_EXPORT const wchar_t* StandIn_LastManufacturer() { return g_script.lastManufacturer.c_str(); }
