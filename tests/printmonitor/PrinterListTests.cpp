// The session's printers through KyPrintMon.dll: the chain with its default,
// the change event, the start modes, the client's answers, and the release of
// printer chains.
#include <gtest/gtest.h>

#include "foundation/UniqueHandle.h"
#include "tests/printmonitor/PrintMonitorFixture.h"

namespace pmtest {
namespace {

using kypm::CLIENT_PRINTER_INFO;

class PrinterListTest : public PrintMonitorTest {
protected:
    void SetUp() override {
        PrintMonitorTest::SetUp();
        event.reset(CreateEventW(nullptr, FALSE, FALSE, nullptr));
        InstallDrivers();
    }
    std::vector<PrinterRecord> Initialize(int32_t mode, HANDLE changeEvent) {
        CLIENT_PRINTER_INFO* chain = nullptr;
        EXPECT_EQ(lib.InitializePrinters(&chain, mode, changeEvent), kypm::kDone);
        return PM_RECORDS(lib, chain);
    }
    bool Signalled(DWORD ms) { return WaitForSingleObject(event.get(), ms) == WAIT_OBJECT_0; }

    ky::UniqueHandle event;
};

int Defaults(const std::vector<PrinterRecord>& records) {
    int count = 0;
    for (const PrinterRecord& record : records) count += record.isDefault != 0;
    return count;
}

TEST_F(PrinterListTest, PrintersComeWithTheDefaultMarked) {
    LP_ADD_PRINTER(printers, L"LP List A", kGhostDriver);
    LP_ADD_PRINTER(printers, L"LP List B", kCanonDriver);
    LP_SET_DEFAULT_PRINTER(printers, L"LP List B");
    const auto records = Initialize(kypm::kStartNone, event.get());
    const PrinterRecord* a = Find(records, L"LP List A");
    const PrinterRecord* b = Find(records, L"LP List B");
    ASSERT_TRUE(a && b);
    EXPECT_EQ(b->isDefault, 1);
    EXPECT_EQ(a->isDefault, 0);
    EXPECT_EQ(Defaults(records), 1);
    EXPECT_EQ(a->port, printers.OutputFile(L"LP List A"));
    EXPECT_EQ(a->driver, kGhostDriver);
    EXPECT_EQ(a->manufacturer, L"Ghostscript");
    EXPECT_EQ(b->manufacturer, L"Canon");
    EXPECT_TRUE(a->infPathNull);
    EXPECT_EQ(a->isFixed, 0);

    LP_SET_DEFAULT_PRINTER(printers, L"LP List A");
    const auto later = PM_UPDATE(lib);
    EXPECT_EQ(Find(later, L"LP List A")->isDefault, 1);
    EXPECT_EQ(Find(later, L"LP List B")->isDefault, 0);
}

TEST_F(PrinterListTest, MakerlessDriverCarriesTheGroupLastNamed) {
    LP_ADD_PRINTER(printers, L"LP Plain", kPlainDriver);
    kypm::DRIVER_LIST_ENTRY* list = nullptr;
    ASSERT_EQ(lib.EnumAvailableDriversW(nullptr, nullptr, &list, L"Eigene Treiber"), kypm::kDone);
    PM_TEXTS(lib, list);
    EXPECT_EQ(Find(Initialize(kypm::kStartNone, nullptr), L"LP Plain")->manufacturer, L"Eigene Treiber");
}

TEST_F(PrinterListTest, EventSignalsPrintersAddedRemovedAndANewDefault) {
    LP_ADD_PRINTER(printers, L"LP Watch A", kGhostDriver);
    LP_SET_DEFAULT_PRINTER(printers, L"LP Watch A");
    Initialize(kypm::kStartNone, event.get());
    EXPECT_FALSE(Signalled(300)) << "nothing changed yet";

    ASSERT_TRUE(lptest::AddSpooledPrinter(L"LP Watch B", kGhostDriver, L"LPT1:"));
    EXPECT_TRUE(Signalled(5000)) << "a printer was added";
    EXPECT_NE(Find(PM_UPDATE(lib), L"LP Watch B"), nullptr);
    EXPECT_FALSE(Signalled(300)) << "reading the printers changes nothing";

    ASSERT_TRUE(SetDefaultPrinterW(L"LP Watch B"));
    EXPECT_TRUE(Signalled(5000)) << "the default changed";
    EXPECT_EQ(Find(PM_UPDATE(lib), L"LP Watch B")->isDefault, 1);

    ASSERT_TRUE(lptest::DeleteSpooledPrinter(L"LP Watch B"));
    EXPECT_TRUE(Signalled(5000)) << "a printer was removed";
    EXPECT_EQ(Find(PM_UPDATE(lib), L"LP Watch B"), nullptr);

    lib.Unload();
    ASSERT_TRUE(lptest::AddSpooledPrinter(L"LP Watch C", kGhostDriver, L"LPT1:"));
    Sleep(300);
    PM_LOAD(lib);
    EXPECT_NE(Find(Initialize(kypm::kStartNone, nullptr), L"LP Watch C"), nullptr)
        << "the library loads again after it was freed with a watch standing";
}

TEST_F(PrinterListTest, StartModesConnectTheClientsPrinters) {
    SetClientList(L"Printers", L"LP Client One|LP Client Two");
    SetClient(L"DefaultPrinter", L"LP Client Two");
    SetClient(L"Driver", kGhostDriver);
    const std::wstring port = printers.Folder() + L"client.ps";
    SetClient(L"Port", port);

    auto records = Initialize(kypm::kStartNone, nullptr);
    EXPECT_EQ(Find(records, L"LP Client One"), nullptr) << "mode 0 connects nothing";
    records = Initialize(kypm::kStartDefault, nullptr);
    EXPECT_EQ(Find(records, L"LP Client One"), nullptr);
    ASSERT_NE(Find(records, L"LP Client Two"), nullptr);
    EXPECT_EQ(Find(records, L"LP Client Two")->isDefault, 1);
    EXPECT_EQ(Find(records, L"LP Client Two")->port, port);
    records = Initialize(kypm::kStartAll, nullptr);
    ASSERT_NE(Find(records, L"LP Client One"), nullptr);
    EXPECT_EQ(Find(records, L"LP Client One")->driver, kGhostDriver);

    CLIENT_PRINTER_INFO* chain = nullptr;
    EXPECT_EQ(lib.InitializePrinters(&chain, 7, nullptr), kypm::kListBadArgument);
    EXPECT_EQ(chain, nullptr);
    EXPECT_EQ(lib.InitializePrinters(nullptr, 0, nullptr), kypm::kListBadArgument);
    EXPECT_EQ(lib.UpdateInstalledPrinters(nullptr), kypm::kListBadArgument);
}

TEST_F(PrinterListTest, StandaloneSupportsPrintingAndOffersTheSpoolersPrinters) {
    LP_ADD_PRINTER(printers, L"LP Alone", kGhostDriver);
    EXPECT_EQ(lib.isClientPrintingSupported(), kypm::kDone);
    kypm::DRIVER_LIST_ENTRY* list = nullptr;
    int32_t only = 7;
    ASSERT_EQ(lib.GetPrinterList(&list, &only), kypm::kDone);
    EXPECT_EQ(only, 0) << "the names bind nothing outside a session";
    const auto names = PM_TEXTS(lib, list);
    EXPECT_EQ(names, lptest::SpooledPrinters());
    EXPECT_TRUE(Has(names, L"LP Alone"));
}

TEST_F(PrinterListTest, TheClientDecidesInASession) {
    LP_ADD_PRINTER(printers, L"LP Kept By Client", kGhostDriver);
    SetClientList(L"Printers", L"LP Offered One|LP Offered Two");
    SetClientList(L"Fixed", L"LP Kept By Client");
    SetClient(L"Port", L"LPT3:");
    EXPECT_EQ(lib.isClientPrintingSupported(), kypm::kDone);
    kypm::DRIVER_LIST_ENTRY* list = nullptr;
    int32_t only = 0;
    ASSERT_EQ(lib.GetPrinterList(&list, &only), kypm::kDone);
    EXPECT_EQ(only, 1);
    EXPECT_EQ(PM_TEXTS(lib, list), (std::vector<std::wstring>{L"LP Offered One", L"LP Offered Two"}));
    EXPECT_EQ(Find(Initialize(kypm::kStartNone, nullptr), L"LP Kept By Client")->isFixed, 1);

    auto stranger = MakeRecord(L"LP Not Offered", L"LPT1:", kGhostDriver, L"Ghostscript");
    EXPECT_EQ(lib.InstallPrinter(&stranger), kypm::kInstallBadName) << "only the offered names may be added";
    auto offered = MakeRecord(L"LP Offered Two", nullptr, kGhostDriver, L"Ghostscript");
    ASSERT_EQ(lib.InstallPrinter(&offered), kypm::kInstallDone) << "a client printer needs no port";
    EXPECT_EQ(lptest::FindSpooledPrinter(L"LP Offered Two").port, L"LPT3:");

    SetClientFlag(L"OnlyOffered", 0);
    ASSERT_EQ(lib.GetPrinterList(&list, &only), kypm::kDone);
    PM_TEXTS(lib, list);
    EXPECT_EQ(only, 0);
    SetClientFlag(L"ClientPrinting", 0);
    EXPECT_NE(lib.isClientPrintingSupported(), kypm::kDone);
}

TEST_F(PrinterListTest, ChainsGoBackOnlyThroughTheLibrary) {
    LP_ADD_PRINTER(printers, L"LP Chain", kGhostDriver);
    CLIENT_PRINTER_INFO* chain = nullptr;
    ASSERT_EQ(lib.InitializePrinters(&chain, kypm::kStartNone, nullptr), kypm::kDone);
    ASSERT_NE(chain, nullptr);
    CLIENT_PRINTER_INFO foreign{};
    foreign.pNext = chain;
    CLIENT_PRINTER_INFO* head = &foreign;
    EXPECT_EQ(lib.DestroyPrinterInfoList(&head), kypm::kForeignNode);
    EXPECT_EQ(head, &foreign);
    EXPECT_EQ(lib.DestroyPrinterInfoList(&chain), kypm::kDone);
    EXPECT_EQ(chain, nullptr);
    EXPECT_EQ(lib.DestroyPrinterInfoList(nullptr), kypm::kBadArgument);
    EXPECT_EQ(lib.DestroyPrinterInfoList(&chain), kypm::kDone) << "an empty chain is released";
}

}  // namespace
}  // namespace pmtest
