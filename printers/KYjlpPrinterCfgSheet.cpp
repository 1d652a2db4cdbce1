// The printer sheet: a wizard that adds a printer when no record is given, a
// dialog that changes the record's printer otherwise.
#include <array>
#include <memory>
#include <new>

#include "brander/KYpbr.h"
#include "foundation/UniqueHandle.h"
#include "framework/ResourceModule.h"
#include "monitor/KYbpm.h"
#include "printers/KYjlpDlgPC_PgSpcMake.h"
#include "printers/KYjlpDlgPC_PgSpcName.h"
#include "printers/KYjlpDlgPC_PgSpcPort.h"
#include "printers/KYjlpDlgPC_PgTest.h"
#include "printers/KYjlpDlgPC_PgWizBye.h"
#include "printers/KYjlpDlgPC_PgWizHi.h"
#include "printers/KYjlpDlgPC_Sht.h"
#include "printers/KYjlpPrinterCfg.h"
#include "printers/KYjlpPrinterHost.h"
#include "printers/PrinterReport.h"

using namespace printers;

namespace {
constexpr int kUnknownResult = 27605, kSheetFailed = 27606, kSheetGeneral = 27607, kPageMemory = 27608;
constexpr int kNoPages = 27610, kSheetMemory = 27611, kPageLoad = 27612;
constexpr int kNoIcon = 27689, kEmptyCaption = 27690, kEmptyName = 27691;
constexpr int kFirstPage = 401, kPageCount = 6;
enum PageSlot { kMake, kName, kPort, kTest, kBye, kHi };

using PageSet = std::array<std::unique_ptr<KYjlpDlgPC_Pg>, kPageCount>;

// A page failure of the sheet: the page's number, and whether the user was already told.
struct SheetFailure {
    int number;
    bool silent;
};

std::unique_ptr<KYjlpDlgPC_Pg> MakePage(int slot) {
    switch (slot) {
    case kMake: return std::unique_ptr<KYjlpDlgPC_Pg>(new (std::nothrow) KYjlpDlgPC_PgSpcMake());
    case kName: return std::unique_ptr<KYjlpDlgPC_Pg>(new (std::nothrow) KYjlpDlgPC_PgSpcName());
    case kPort: return std::unique_ptr<KYjlpDlgPC_Pg>(new (std::nothrow) KYjlpDlgPC_PgSpcPort());
    case kTest: return std::unique_ptr<KYjlpDlgPC_Pg>(new (std::nothrow) KYjlpDlgPC_PgTest());
    case kBye: return std::unique_ptr<KYjlpDlgPC_Pg>(new (std::nothrow) KYjlpDlgPC_PgWizBye());
    default: return std::unique_ptr<KYjlpDlgPC_Pg>(new (std::nothrow) KYjlpDlgPC_PgWizHi());
    }
}

// A notice of the sheet's set-up that does not stop it: told, forgotten, and the error cleared.
void TellAndGoOn(int number, const std::wstring& title) {
    const DWORD error = ::GetLastError();
    if (KYbpm* monitor = Monitor()) {
        monitor->recordSituationID(number);
        monitor->recordArgument(title);
        monitor->recordArgument(CodeLink(error));
    }
    RespondOrForget();
    ::SetLastError(0);
}

// The pages that can be made; a wizard goes on without its test and welcome pages.
int MakePages(PageSet& pages, bool wizard, const std::wstring& title) {
    int made = 0;
    for (int slot = 0; slot < kPageCount; ++slot) {
        if (!wizard && slot >= kTest) continue;
        pages[static_cast<size_t>(slot)] = MakePage(slot);
        if (pages[static_cast<size_t>(slot)]) {
            ++made;
            continue;
        }
        if (KYbpm* monitor = Monitor()) {
            monitor->recordSituationID(kPageMemory);
            monitor->recordArgument(title);
            monitor->recordArgument(static_cast<int32_t>(kFirstPage + slot));
        }
        if (!wizard || (slot != kHi && slot != kTest)) throw kPageMemory;
        RespondOrForget();
    }
    return made;
}

void LoadPage(KYjlpDlgPC_Pg& page, const CLIENT_PRINTER_INFO* record, const std::wstring& title) {
    const int32_t loaded = page.LoadFromRecord(record);
    if (loaded == 0) return;
    // The page has told its own failure; the sheet adds its title and the page.
    Forget();
    if (KYbpm* monitor = Monitor()) {
        monitor->recordSituationID(kPageLoad);
        monitor->recordArgument(title);
        monitor->recordArgument(static_cast<int32_t>(page.TemplateId()));
    }
    throw SheetFailure{kPageLoad, loaded < 0};
}

// The pages in the order the user meets them; the port page goes when the client supplies the printer.
void AddPages(KYjlpDlgPC_Sht& sheet, PageSet& pages, const CLIENT_PRINTER_INFO* record, const std::wstring& title,
              bool wizard, bool help) {
    const fw::PageLook inner{.wizard = wizard, .helpButton = !wizard && help};
    const fw::PageLook outer{.wizard = wizard, .hideHeader = true};
    if (pages[kHi]) sheet.AddPage(*pages[kHi], outer);
    for (int slot : {kName, kMake}) {
        LoadPage(*pages[static_cast<size_t>(slot)], record, title);
        sheet.AddPage(*pages[static_cast<size_t>(slot)], inner);
    }
    if (static_cast<KYjlpDlgPC_PgSpcName&>(*pages[kName]).NoPortPage()) {
        pages[kPort].reset();
    } else {
        LoadPage(*pages[kPort], record, title);
        sheet.AddPage(*pages[kPort], inner);
    }
    if (pages[kTest]) sheet.AddPage(*pages[kTest], inner);
    if (pages[kBye]) sheet.AddPage(*pages[kBye], outer);
}

std::wstring SheetCaption(bool wizard, const CLIENT_PRINTER_INFO* record, const std::wstring& title) {
    KYjlpPrinterHost* host = KYjlpPrinterHost::Current();
    std::wstring name = wizard ? (host ? host->PrinterTagText(14) : std::wstring())
                               : std::wstring(record->pszPrinterName ? record->pszPrinterName : L"");
    if (name.empty()) TellAndGoOn(kEmptyName, title);
    const std::wstring format = fw::ResString(wizard ? 24622 : 24624);
    std::wstring caption;
    if (!format.empty()) {
        std::wstring buffer(format.size() + name.size() + 64, L'\0');
        _snwprintf(buffer.data(), buffer.size() - 1, format.c_str(), name.c_str());
        caption = buffer.c_str();
    }
    if (caption.empty()) TellAndGoOn(kEmptyCaption, title);
    return caption;
}

ky::UniqueHIcon SheetIcon(const std::wstring& title) {
    KYjlpPrinterHost* host = KYjlpPrinterHost::Current();
    KYpbr* brander = host ? host->PrinterBrander() : nullptr;
    if (!brander) return {};
    // The brander's icons are shared: the sheet shows its own copy and destroys that.
    const auto shared = static_cast<HICON>(
        brander->loadImage(10, ::GetSystemMetrics(SM_CXICON), ::GetSystemMetrics(SM_CYICON), 0));
    ky::UniqueHIcon icon(shared ? ::CopyIcon(shared) : nullptr);
    if (!icon) TellAndGoOn(kNoIcon, title);
    return icon;
}

bool IsKnownSheetResult(INT_PTR result) {
    return result == IDOK || result == IDCANCEL || result == KYjlpDlgPC_Sht::kEndedByLibrary ||
           result == KYjlpDlgPC_Sht::kPrinterDeleted || result == fw::PropertySheet::kFinished;
}
}  // namespace

bool KYjlpPrinterCfg::OpenPrinterSheet(const KYstdUI_DlgData* dialogData, const CLIENT_PRINTER_INFO* record) {
    m_nSheetResult = -1;
    Forget();
    ::SetLastError(0);
    const bool wizard = record == nullptr;
    std::wstring title = fw::ResString(wizard ? 24623 : 24625);
    if (title.empty()) title = wizard ? L"Add Printer Wizard" : L"Edit Printer dialog";
    // The pages outlive the sheet, and the bitmaps and icon outlive both.
    ky::UniqueHIcon icon;
    ky::UniqueHBitmap watermark, header;
    PageSet pages;
    std::unique_ptr<KYjlpDlgPC_Sht> sheet;
    try {
        icon = SheetIcon(title);
        const std::wstring caption = SheetCaption(wizard, record, title);
        g_bPrinterWizard = wizard;
        if (MakePages(pages, wizard, title) == 0) throw kNoPages;
        if (wizard) {
            watermark.reset(::LoadBitmapW(fw::ResourceModule(), MAKEINTRESOURCEW(201)));
            header.reset(::LoadBitmapW(fw::ResourceModule(), MAKEINTRESOURCEW(202)));
        }
        sheet.reset(new (std::nothrow) KYjlpDlgPC_Sht(
            {.caption = caption, .wizard = wizard, .helpButton = !wizard, .icon = icon.get(),
             .watermark = watermark.get(), .header = header.get()},
            dialogData));
        if (!sheet) throw kSheetMemory;
        AddPages(*sheet, pages, record, title, wizard, dialogData && dialogData->bHelpOn);
        sheet->SetStartPage(0);
        KYbpm* monitor = Monitor();
        const HWND savedParent = monitor ? monitor->getDisplayDlgBoxParent() : nullptr;
        const INT_PTR result = sheet->DoModal();
        if (monitor) monitor->setDisplayDlgBoxParent(savedParent);
        m_nSheetResult = static_cast<int32_t>(result);
        if (!IsKnownSheetResult(result) && monitor) {
            monitor->recordSituationID(kUnknownResult);
            monitor->recordArgument(static_cast<int32_t>(result));
        }
        sheet.reset();
        return IsNormal();
    } catch (const SheetFailure& failure) {
        if (failure.silent)
            Forget();
        else
            RespondOrForget();
        if (KYbpm* monitor = Monitor()) monitor->recordSituationID(failure.silent ? -kSheetFailed : kSheetFailed);
    } catch (int number) {
        RecordIfNormal(number);
        if (number != kPageMemory) AddArgument(title);
        RespondOrForget();
        if (KYbpm* monitor = Monitor()) monitor->recordSituationID(kSheetFailed);
    } catch (...) {
        const DWORD error = ::GetLastError();
        Forget();
        if (KYbpm* monitor = Monitor()) {
            monitor->recordSituationID(kSheetGeneral);
            monitor->recordArgument(title);
            monitor->recordArgument(CodeLink(error));
        }
    }
    sheet.reset();
    return false;
}
