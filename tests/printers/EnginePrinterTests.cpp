// The client printer engine over a stand-in print monitor library: the binding
// by name and what a library that lacks an entry point or refuses the session
// leaves behind, the printer list as the engine keeps it (its limit, its one
// default, the choice of enumeration), the printers menu, the search by name,
// and an add with its test page. The host is a test host with a real monitor,
// whose log tells which situations the engine answered; the stand-in counts
// every call of every entry point.
#include <gtest/gtest.h>

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

#include "foundation/UniqueHandle.h"
#include "printers/KYjlpPrinterCfg.h"
#include "tests/launch/LogRows.h"
#include "tests/printers/StandInLibrary.h"
#include "tests/printers/TestPrinterHost.h"
#include "tests/support/TestSupport.h"

namespace {

using lptest::LogRow;

constexpr int kRefused = 27620, kLoadFailed = 27622, kExportMissing = 27626, kLimit = 27614, kUnbound = 27615;
constexpr int kEnumFailed = 27640, kEnumAnswered2 = 27641, kNoClientPrinters = 27642;
constexpr int kAddIncomplete = 27631, kTestPageFailed = 27686;
constexpr UINT kFirst = KYjlpPrinterCfg::kFirstPrinterCommand;

class EnginePrinters : public ::testing::Test {
protected:
    void SetUp() override {
        KYjlpPrinterHost::SetCurrent(&host);
        ASSERT_TRUE(host.HasMonitor());
    }
    // The printers go back to the library while it is still loaded, as the program does it.
    void TearDown() override {
        engine.m_info = {};
        engine.ReleasePrinters(true);
        host.FreePrintMonitor();
        standIn.Close();
        KYjlpPrinterHost::SetCurrent(nullptr);
    }

    // The stand-in of that name, for the host to load and the test to script.
    void Use(const char* file, int line, const std::wstring& name) {
        standIn.Open(file, line, name);
        host.SetLibraryPath(standIn.Path());
    }
    // The scripted stand-in bound, with its printers listed by the first enumeration.
    void Bind(const char* file, int line, int32_t count, uint64_t defaults = 1, int32_t emptyName = -1) {
        Use(file, line, StandInLibrary::kScripted);
        standIn.SetPrinters(count, defaults, emptyName);
        if (!engine.StartPrinters(true, KYjlpPrinterCfg::kMaxPrinters) || !engine.IsBound())
            ADD_FAILURE_AT(file, line) << "the scripted stand-in did not bind; answered: " << lptest::Numbers(Rows());
    }

    std::vector<LogRow> Rows() const { return lptest::ReadLogRows(logs.path()); }
    std::vector<LogRow> Answered(int number) const { return lptest::RowsOf(Rows(), number); }
    std::wstring NameAt(int index) const {
        const CLIENT_PRINTER_INFO* record = engine.GetPrinter(index);
        return !record ? L"<none>" : record->pszPrinterName ? record->pszPrinterName : L"<null>";
    }

    lptest::TempDir logs;
    KYjlpPrinterCfg engine;
    TestPrinterHost host{engine, logs / L"run.html"};
    StandInLibrary standIn;
};

#define EP_USE(name) Use(__FILE__, __LINE__, name)
#define EP_BIND(...) Bind(__FILE__, __LINE__, __VA_ARGS__)

// The texts of a menu item by position, and whether it is a separator.
std::wstring ItemText(HMENU menu, int position) {
    wchar_t text[128] = {};
    ::GetMenuStringW(menu, static_cast<UINT>(position), text, 127, MF_BYPOSITION);
    return text;
}
bool IsSeparator(HMENU menu, int position) {
    return (::GetMenuState(menu, static_cast<UINT>(position), MF_BYPOSITION) & MF_SEPARATOR) != 0;
}

TEST(EngineRecords, TheWireFormatOfBothRecords) {
    using kypm::CLIENT_PRINTER_INFO;
    using kypm::DRIVER_LIST_ENTRY;
    EXPECT_EQ(sizeof(DRIVER_LIST_ENTRY), 16u);
    EXPECT_EQ(offsetof(DRIVER_LIST_ENTRY, pszText), 0u);
    EXPECT_EQ(offsetof(DRIVER_LIST_ENTRY, pNext), 8u);

    EXPECT_EQ(sizeof(CLIENT_PRINTER_INFO), 96u);
    EXPECT_EQ(offsetof(CLIENT_PRINTER_INFO, pTable), 0u) << "the table word of the program's records";
    EXPECT_EQ(offsetof(CLIENT_PRINTER_INFO, pszPrinterName), 8u);
    EXPECT_EQ(offsetof(CLIENT_PRINTER_INFO, pszPortName), 16u);
    EXPECT_EQ(offsetof(CLIENT_PRINTER_INFO, pszDriverName), 24u);
    EXPECT_EQ(offsetof(CLIENT_PRINTER_INFO, pszReserved1), 32u);
    EXPECT_EQ(offsetof(CLIENT_PRINTER_INFO, pszReserved2), 40u);
    EXPECT_EQ(offsetof(CLIENT_PRINTER_INFO, pszReserved3), 48u);
    EXPECT_EQ(offsetof(CLIENT_PRINTER_INFO, pszInfPath), 56u);
    EXPECT_EQ(offsetof(CLIENT_PRINTER_INFO, pszManufacturer), 64u);
    EXPECT_EQ(offsetof(CLIENT_PRINTER_INFO, bDefault), 72u);
    EXPECT_EQ(sizeof(CLIENT_PRINTER_INFO::bDefault), 4u);
    EXPECT_EQ(offsetof(CLIENT_PRINTER_INFO, bFixed), 76u);
    EXPECT_EQ(sizeof(CLIENT_PRINTER_INFO::bFixed), 4u);
    EXPECT_EQ(offsetof(CLIENT_PRINTER_INFO, pReserved4), 80u);
    EXPECT_EQ(offsetof(CLIENT_PRINTER_INFO, pNext), 88u);

    const KYjlpPrinterCfg engine;
    EXPECT_EQ(sizeof(engine.m_info), 96u) << "the engine's work record is the same record";
    for (int slot = 0; slot < KYjlpPrinterCfg::kSlotCount; ++slot)
        EXPECT_STREQ(engine.ExportName(static_cast<KYjlpPrinterCfg::Slot>(slot)), kypm::kExportNames[slot]);
    EXPECT_STREQ(engine.ExportName(KYjlpPrinterCfg::kIsClientPrintingSupported), "isClientPrintingSupported");
    EXPECT_STREQ(engine.ExportName(KYjlpPrinterCfg::kUpdateInstalledPrinters), "UpdateInstalledPrinters");
}

TEST_F(EnginePrinters, ALibraryWithoutOneExportBindsNothingAndIsNotCalled) {
    EP_USE(StandInLibrary::kWithoutUpdate);
    EXPECT_FALSE(engine.StartPrinters(true, KYjlpPrinterCfg::kMaxPrinters));
    EXPECT_FALSE(engine.IsBound());
    EXPECT_EQ(engine.Export<kypm::IsClientPrintingSupportedFn>(KYjlpPrinterCfg::kIsClientPrintingSupported),
              nullptr);
    EXPECT_EQ(engine.PrinterCount(), 0);
    EXPECT_EQ(host.Loads(), 1);
    EXPECT_EQ(standIn.TotalCalls(), 0) << "not even isClientPrintingSupported";

    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 1u) << lptest::Numbers(rows);
    EXPECT_EQ(rows[0].number, kExportMissing);
    const std::vector<std::wstring> texts{TestPrinterHost::LinkOf(ERROR_PROC_NOT_FOUND), L"UpdateInstalledPrinters",
                                          L"KyPrintMon.dll"};
    EXPECT_EQ(rows[0].texts, texts);
}

TEST_F(EnginePrinters, ARefusingLibraryIsNotBoundAndNotLoadedAgain) {
    EP_USE(StandInLibrary::kRefusing);
    EXPECT_FALSE(engine.StartPrinters(true, KYjlpPrinterCfg::kMaxPrinters));
    EXPECT_FALSE(engine.IsBound());
    EXPECT_EQ(standIn.Calls("isClientPrintingSupported"), 1);
    EXPECT_EQ(standIn.TotalCalls(), 1) << "nothing is enumerated";
    auto refused = Answered(kRefused);
    ASSERT_EQ(refused.size(), 1u) << lptest::Numbers(Rows());
    EXPECT_EQ(refused[0].texts, std::vector<std::wstring>{L"7"}) << "the answer, and no file name";

    EXPECT_FALSE(engine.StartPrinters(true, KYjlpPrinterCfg::kMaxPrinters));
    EXPECT_EQ(host.Loads(), 1) << "the library stays loaded after a failed binding";
    EXPECT_EQ(standIn.Calls("isClientPrintingSupported"), 2) << "the binding starts again with it";
    EXPECT_EQ(Answered(kRefused).size(), 2u);

    EXPECT_FALSE(engine.StartPrinters(false, KYjlpPrinterCfg::kMaxPrinters));
    EXPECT_EQ(Rows().size(), 2u) << "without report the refusal is forgotten: " << lptest::Numbers(Rows());
    EXPECT_EQ(host.Loads(), 1);
}

TEST_F(EnginePrinters, ALibraryThatCannotBeLoadedIsNamed) {
    host.SetLibraryPath(logs / L"Missing.dll");
    EXPECT_FALSE(engine.StartPrinters(true, KYjlpPrinterCfg::kMaxPrinters));
    EXPECT_FALSE(engine.IsBound());
    EXPECT_EQ(host.Loads(), 1);
    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 1u) << lptest::Numbers(rows);
    EXPECT_EQ(rows[0].number, kLoadFailed);
    EXPECT_EQ(rows[0].texts, std::vector<std::wstring>{L"KyPrintMon.dll"});
}

TEST_F(EnginePrinters, AnOperationWhileUnboundFailsWithoutTheLibrary) {
    std::wstring name = L"Printer 0";
    engine.m_info.pszPrinterName = name.data();
    uint32_t result = 99;
    EXPECT_FALSE(engine.DeletePrinter(result));
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(host.Loads(), 0);
    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 1u) << lptest::Numbers(rows);
    EXPECT_EQ(rows[0].number, kUnbound);
    EXPECT_EQ(rows[0].ints.size(), 1u) << "the source position";
    ASSERT_EQ(rows[0].texts.size(), 2u);
    EXPECT_EQ(rows[0].texts[0], L"KYjlpPrinterCfg");
}

TEST_F(EnginePrinters, ASecondStartOnlyEnumeratesAgain) {
    EP_BIND(3);
    EXPECT_EQ(engine.PrinterCount(), 3);
    EXPECT_EQ(standIn.Calls("isClientPrintingSupported"), 1);
    EXPECT_EQ(standIn.Calls("InitializePrinters"), 1);
    EXPECT_EQ(standIn.LastStartMode(), TestPrinterHost::kStartMode);
    EXPECT_EQ(standIn.LastEvent(), host.PrinterWatchEvent()) << "the library signals the host's watch event";

    EXPECT_TRUE(engine.StartPrinters(true, KYjlpPrinterCfg::kMaxPrinters));
    EXPECT_EQ(standIn.Calls("isClientPrintingSupported"), 1) << "a bound engine does not ask again";
    EXPECT_EQ(standIn.Calls("InitializePrinters"), 1);
    EXPECT_EQ(standIn.Calls("UpdateInstalledPrinters"), 1);
    EXPECT_EQ(standIn.Calls("DestroyPrinterInfoList"), 1) << "the old list went back first";
    EXPECT_EQ(standIn.LiveRecords(), 3);
    EXPECT_EQ(host.Loads(), 1);
    EXPECT_EQ(engine.PrinterCount(), 3);
    EXPECT_TRUE(Rows().empty()) << lptest::Numbers(Rows());
}

TEST_F(EnginePrinters, ThirtyOnePrintersKeepThirtyAndTheTailGoesBackAtOnce) {
    EP_BIND(31);
    EXPECT_EQ(engine.PrinterCount(), 30);
    EXPECT_EQ(NameAt(29), L"Printer 29");
    EXPECT_EQ(engine.GetPrinter(30), nullptr);
    ASSERT_NE(engine.GetPrinter(29), nullptr);
    EXPECT_EQ(engine.GetPrinter(29)->pNext, nullptr) << "the kept chain ends at the limit";
    EXPECT_EQ(standIn.Calls("DestroyPrinterInfoList"), 1);
    EXPECT_EQ(standIn.LiveRecords(), 30);
    EXPECT_TRUE(Rows().empty()) << "nothing is reported: " << lptest::Numbers(Rows());

    EXPECT_TRUE(engine.ReleasePrinters(true));
    EXPECT_EQ(standIn.LiveRecords(), 0);
    EXPECT_EQ(engine.PrinterCount(), 0);
}

TEST_F(EnginePrinters, OfThreeDefaultsOnlyTheFirstStays) {
    EP_BIND(5, (1u << 1) | (1u << 2) | (1u << 4));
    ASSERT_EQ(engine.PrinterCount(), 5);
    const int32_t expected[] = {0, 1, 0, 0, 0};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(engine.GetPrinter(i)->bDefault, expected[i]) << "printer " << i;
    EXPECT_EQ(engine.FindDefaultPrinter(), 1);
    CLIENT_PRINTER_INFO* found = nullptr;
    EXPECT_EQ(engine.GetDefaultPrinter(found), engine.GetPrinter(1));
    EXPECT_EQ(found, engine.GetPrinter(1));
}

TEST_F(EnginePrinters, WithoutADefaultTheFirstBecomesIt) {
    EP_BIND(4, 0);
    ASSERT_EQ(engine.PrinterCount(), 4);
    EXPECT_EQ(engine.GetPrinter(0)->bDefault, 1);
    for (int i = 1; i < 4; ++i) EXPECT_EQ(engine.GetPrinter(i)->bDefault, 0) << "printer " << i;
    EXPECT_EQ(engine.FindDefaultPrinter(), 0);
    CLIENT_PRINTER_INFO* found = nullptr;
    EXPECT_EQ(engine.GetDefaultPrinter(found), engine.GetPrinter(0));
}

TEST_F(EnginePrinters, ALimitOutsideOneToThirtyFailsAndLeavesTheList) {
    EP_BIND(4);
    CLIENT_PRINTER_INFO* const first = engine.GetPrinter(0);
    for (int32_t limit : {31, 0}) {
        SCOPED_TRACE(limit);
        EXPECT_FALSE(engine.RefreshPrinters(limit, true, true));
        EXPECT_EQ(engine.PrinterCount(), 4);
        EXPECT_EQ(engine.GetPrinter(0), first);
        EXPECT_EQ(standIn.LiveRecords(), 4) << "no record went back";
    }
    EXPECT_EQ(standIn.Calls("DestroyPrinterInfoList"), 0);
    EXPECT_EQ(standIn.Calls("UpdateInstalledPrinters"), 0);
    const auto rows = Answered(kLimit);
    ASSERT_EQ(rows.size(), 2u) << lptest::Numbers(Rows());
    for (const LogRow& row : rows) {
        EXPECT_EQ(row.ints.size(), 1u) << "the source position";
        ASSERT_EQ(row.texts.size(), 2u);
        EXPECT_EQ(row.texts[0], L"KYjlpPrinterCfg");
    }
}

TEST_F(EnginePrinters, AFailedFirstEnumerationIsRetriedUntilOneAnswerIsUsable) {
    EP_USE(StandInLibrary::kScripted);
    standIn.SetPrinters(2, 1, -1);
    standIn.SetResult("InitializePrinters", 40);
    EXPECT_TRUE(engine.StartPrinters(true, KYjlpPrinterCfg::kMaxPrinters)) << "bound, though nothing was listed";
    EXPECT_EQ(engine.PrinterCount(), 0);
    EXPECT_EQ(standIn.LiveRecords(), 0) << "the chain of a failed answer went back";
    auto failed = Answered(kEnumFailed);
    ASSERT_EQ(failed.size(), 1u) << lptest::Numbers(Rows());
    const std::vector<std::wstring> texts{L"40", L"KyPrintMon.dll", L"InitializePrinters"};
    EXPECT_EQ(failed[0].texts, texts);

    standIn.SetResult("InitializePrinters", 0);
    EXPECT_TRUE(engine.RefreshPrinters(KYjlpPrinterCfg::kMaxPrinters, true, true));
    EXPECT_EQ(standIn.Calls("InitializePrinters"), 2) << "asked again the first way";
    EXPECT_EQ(standIn.Calls("UpdateInstalledPrinters"), 0);
    EXPECT_EQ(engine.PrinterCount(), 2);

    EXPECT_TRUE(engine.RefreshPrinters(KYjlpPrinterCfg::kMaxPrinters, true, true));
    EXPECT_EQ(standIn.Calls("InitializePrinters"), 2);
    EXPECT_EQ(standIn.Calls("UpdateInstalledPrinters"), 1) << "after a usable answer, for good";

    standIn.SetResult("UpdateInstalledPrinters", 2);
    EXPECT_FALSE(engine.RefreshPrinters(KYjlpPrinterCfg::kMaxPrinters, true, true));
    EXPECT_EQ(engine.PrinterCount(), 0) << "a failed refresh leaves no printers";
    EXPECT_EQ(Answered(kEnumAnswered2).size(), 1u) << lptest::Numbers(Rows());
    standIn.SetResult("UpdateInstalledPrinters", 0);
    EXPECT_TRUE(engine.RefreshPrinters(KYjlpPrinterCfg::kMaxPrinters, true, true));
    EXPECT_EQ(standIn.Calls("InitializePrinters"), 2);
    EXPECT_EQ(standIn.Calls("UpdateInstalledPrinters"), 3);
    EXPECT_EQ(engine.PrinterCount(), 2);
    EXPECT_EQ(standIn.LiveRecords(), 2);
}

TEST_F(EnginePrinters, NoClientPrintersIsSuccessWithANotice) {
    EP_BIND(0);
    EXPECT_TRUE(engine.IsBound());
    EXPECT_EQ(engine.PrinterCount(), 0);
    EXPECT_EQ(engine.GetPrinter(0), nullptr);
    EXPECT_EQ(engine.FindDefaultPrinter(), -1);
    CLIENT_PRINTER_INFO* found = nullptr;
    EXPECT_EQ(engine.GetDefaultPrinter(found), nullptr);
    EXPECT_EQ(standIn.Calls("DestroyPrinterInfoList"), 0) << "nothing to give back";
    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 1u) << lptest::Numbers(rows);
    EXPECT_EQ(rows[0].number, kNoClientPrinters);

    standIn.SetPrinters(2);
    EXPECT_TRUE(engine.RefreshPrinters(KYjlpPrinterCfg::kMaxPrinters, true, true));
    EXPECT_EQ(standIn.Calls("UpdateInstalledPrinters"), 1) << "the empty answer was a usable one";
    EXPECT_EQ(engine.PrinterCount(), 2);
}

TEST_F(EnginePrinters, AnAnswerOfOneIsNoPrintersAndItsChainGoesBack) {
    EP_USE(StandInLibrary::kScripted);
    standIn.SetPrinters(3);
    standIn.SetResult("InitializePrinters", 1);
    EXPECT_TRUE(engine.StartPrinters(true, KYjlpPrinterCfg::kMaxPrinters));
    EXPECT_EQ(engine.PrinterCount(), 0);
    EXPECT_EQ(standIn.LiveRecords(), 0);
    EXPECT_EQ(Answered(kNoClientPrinters).size(), 1u) << lptest::Numbers(Rows());
}

TEST_F(EnginePrinters, APrinterWithoutANameIsNotOnTheMenuAndShiftsTheCommands) {
    EP_BIND(4, 1, 1);
    ky::UniqueHMenu menu(::CreatePopupMenu());
    ASSERT_TRUE(menu);
    ASSERT_TRUE(::AppendMenuW(menu.get(), MF_STRING, 100, L"Initialize Printers"));

    EXPECT_EQ(engine.FillPrinterMenu(menu.get(), 1, true), 4) << "a separator and three printers";
    ASSERT_EQ(::GetMenuItemCount(menu.get()), 5);
    EXPECT_EQ(ItemText(menu.get(), 0), L"Initialize Printers") << "the fixed item above stays";
    EXPECT_TRUE(IsSeparator(menu.get(), 1));
    const wchar_t* const names[] = {L"Printer 0", L"Printer 2", L"Printer 3"};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(::GetMenuItemID(menu.get(), 2 + i), kFirst + static_cast<UINT>(i));
        EXPECT_EQ(ItemText(menu.get(), 2 + i), names[i]);
    }
    // The command handler maps a command straight to the list: past the gap,
    // each item answers to the printer before it.
    EXPECT_EQ(NameAt(static_cast<int>(::GetMenuItemID(menu.get(), 3) - kFirst)), L"");
    EXPECT_EQ(NameAt(static_cast<int>(::GetMenuItemID(menu.get(), 4) - kFirst)), L"Printer 2");

    EXPECT_EQ(engine.FillPrinterMenu(menu.get(), 1, true), 4) << "filled again over the old items";
    EXPECT_EQ(::GetMenuItemCount(menu.get()), 5);
    EXPECT_EQ(engine.FillPrinterMenu(menu.get(), 1, false), 3);
    EXPECT_EQ(::GetMenuItemCount(menu.get()), 4);
    EXPECT_EQ(ItemText(menu.get(), 1), L"Printer 0");
}

TEST_F(EnginePrinters, FindPrinterByNameWrapsOnlyWhenAsked) {
    EP_BIND(5);
    EXPECT_EQ(engine.FindPrinterByName(L"Printer 1", 3, false), -1) << "above start, no wrap";
    EXPECT_EQ(engine.FindPrinterByName(L"Printer 1", 3, true), 1);
    EXPECT_EQ(engine.FindPrinterByName(L"Printer 4", 3, false), 4);
    EXPECT_EQ(engine.FindPrinterByName(L"Printer 3", 3, false), 3);
    EXPECT_EQ(engine.FindPrinterByName(L"printer 1", 0, true), -1) << "case counts";
    EXPECT_EQ(engine.FindPrinterByName(L"Printer", 0, true), -1) << "the whole name";
    EXPECT_EQ(engine.FindPrinterByName(L"", 0, true), -1);
    EXPECT_EQ(engine.FindPrinterByName(nullptr, 0, true), -1);
    EXPECT_EQ(engine.FindPrinterByName(L"Printer 1", 5, true), -1) << "start past the list";
    EXPECT_EQ(engine.FindPrinterByName(L"Printer 1", -1, true), -1);
}

TEST_F(EnginePrinters, AnAddWithoutAManufacturerDoesNotReachTheLibrary) {
    EP_BIND(2);
    const int before = standIn.TotalCalls();
    std::wstring name = L"New Printer", model = L"Stand-in Model";
    engine.m_info.pszPrinterName = name.data();
    engine.m_info.pszDriverName = model.data();
    uint32_t result = 99;
    EXPECT_FALSE(engine.AddPrinter(result));
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(standIn.Calls("InstallPrinter"), 0);
    EXPECT_EQ(standIn.TotalCalls(), before) << "no call of the library at all";
    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 1u) << lptest::Numbers(rows);
    EXPECT_EQ(rows[0].number, kAddIncomplete);
    EXPECT_EQ(engine.PrinterCount(), 2) << "the list stays";
}

TEST_F(EnginePrinters, AFailedTestPageDoesNotFailTheAdd) {
    EP_BIND(2);
    standIn.SetResult("PrintTestPage", 1);
    std::wstring name = L"New Printer", port = L"LPT1:", model = L"Stand-in Model", maker = L"Stand-in Maker";
    engine.m_info.pszPrinterName = name.data();
    engine.m_info.pszPortName = port.data();
    engine.m_info.pszDriverName = model.data();
    engine.m_info.pszManufacturer = maker.data();
    engine.m_bTestPage = true;
    uint32_t result = 99;
    EXPECT_TRUE(engine.AddPrinter(result));
    EXPECT_EQ(result, 0u) << "the test page's result is not the add's";
    EXPECT_EQ(standIn.Calls("InstallPrinter"), 1);
    EXPECT_EQ(standIn.Calls("PrintTestPage"), 1);
    EXPECT_EQ(standIn.LastName(), L"New Printer") << "the test page went to the printer just added";
    EXPECT_EQ(standIn.Calls("UpdateInstalledPrinters"), 1) << "the list was refreshed after the add";
    EXPECT_EQ(engine.PrinterCount(), 2);

    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 1u) << "only the test page was reported: " << lptest::Numbers(rows);
    EXPECT_EQ(rows[0].number, kTestPageFailed);
    ASSERT_GE(rows[0].texts.size(), 3u);
    EXPECT_EQ(rows[0].texts[0], L"PrintTestPage");
    EXPECT_EQ(rows[0].texts[1], L"KyPrintMon.dll");
    EXPECT_EQ(rows[0].texts[2], L"1");
}

}  // namespace
