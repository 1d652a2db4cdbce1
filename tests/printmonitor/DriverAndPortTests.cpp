// The lists of KyPrintMon.dll: manufacturers and models of the installed
// drivers and of a driver information file, ports, and the release of lists
// whose nodes the holder has moved about.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/printmonitor/PrintMonitorFixture.h"

namespace pmtest {
namespace {

using kypm::DRIVER_LIST_ENTRY;

TEST_F(PrintMonitorTest, EveryExportIsFoundByItsName) {
    // Load() already failed the test for a missing one; the table's own order holds.
    EXPECT_STREQ(kypm::kExportNames[0], "isClientPrintingSupported");
    EXPECT_STREQ(kypm::kExportNames[11], "UpdateInstalledPrinters");
    EXPECT_NE(lib.UpdateInstalledPrinters, nullptr);
    EXPECT_NE(lib.isClientPrintingSupported, nullptr);
}

TEST_F(PrintMonitorTest, InstalledDriversComeByManufacturer) {
    InstallDrivers();
    DRIVER_LIST_ENTRY* list = nullptr;
    ASSERT_EQ(lib.EnumAvailableDriversW(nullptr, nullptr, &list, L"Eigene Treiber"), kypm::kDone);
    const auto makers = PM_TEXTS(lib, list);
    EXPECT_TRUE(Has(makers, L"Ghostscript")) << Join(makers);
    EXPECT_TRUE(Has(makers, L"Canon")) << Join(makers);
    ASSERT_FALSE(makers.empty());
    EXPECT_EQ(makers.back(), L"Eigene Treiber") << "the maker-less group comes last: " << Join(makers);
    EXPECT_LT(std::find(makers.begin(), makers.end(), L"Canon"),
              std::find(makers.begin(), makers.end(), L"Ghostscript"));

    ASSERT_EQ(lib.EnumAvailableDriversW(nullptr, L"Ghostscript", &list, L"Eigene Treiber"), kypm::kDone);
    const auto ghost = PM_TEXTS(lib, list);
    EXPECT_TRUE(Has(ghost, kGhostDriver)) << Join(ghost);
    EXPECT_FALSE(Has(ghost, kCanonDriver)) << Join(ghost);
    ASSERT_EQ(lib.EnumAvailableDriversW(nullptr, L"canon", &list, L"Eigene Treiber"), kypm::kDone);
    EXPECT_EQ(PM_TEXTS(lib, list), std::vector<std::wstring>{kCanonDriver});
    ASSERT_EQ(lib.EnumAvailableDriversW(nullptr, L"Eigene Treiber", &list, L"Eigene Treiber"), kypm::kDone);
    const auto plain = PM_TEXTS(lib, list);
    EXPECT_TRUE(Has(plain, kPlainDriver)) << Join(plain);
    EXPECT_FALSE(Has(plain, kGhostDriver)) << Join(plain);
}

TEST_F(PrintMonitorTest, UnknownManufacturerHasNoModels) {
    InstallDrivers();
    DRIVER_LIST_ENTRY* list = nullptr;
    EXPECT_EQ(lib.EnumAvailableDriversW(nullptr, L"Nobody Makes This", &list, L"Installed Drivers"),
              kypm::kNoSuchManufacturer);
    EXPECT_EQ(list, nullptr);
}

TEST_F(PrintMonitorTest, DriversOfAnInformationFile) {
    const std::wstring inf = WriteInf();
    const auto makers = PM_DRIVERS(lib, inf.c_str(), nullptr);
    EXPECT_EQ(makers, (std::vector<std::wstring>{L"Inf Maker", L"Other Maker"}));
    const auto models = PM_DRIVERS(lib, inf.c_str(), L"Inf Maker");
    EXPECT_EQ(models, (std::vector<std::wstring>{L"LP Inf Model", L"LP Inf Broken Model"}))
        << "the models section for 64-bit Windows wins over the plain one";
    EXPECT_EQ(PM_DRIVERS(lib, inf.c_str(), L"Other Maker"), std::vector<std::wstring>{L"LP Other Model"});
    EXPECT_TRUE(PM_DRIVERS(lib, inf.c_str(), L"Canon", kypm::kNoSuchManufacturer).empty());
    const std::wstring missing = printers.Folder() + L"missing.inf";
    EXPECT_TRUE(PM_DRIVERS(lib, missing.c_str(), nullptr, kypm::kRefused).empty());
    EXPECT_FALSE(Has(lptest::SpooledDrivers(), L"LP Inf Model")) << "listing installs nothing";
}

TEST_F(PrintMonitorTest, PortsOfTheSpoolerAreListed) {
    InstallDrivers();
    LP_ADD_PRINTER(printers, L"LP Port Printer", kGhostDriver);
    DRIVER_LIST_ENTRY* list = nullptr;
    ASSERT_EQ(lib.EnumeratePorts(&list), kypm::kDone);
    const auto ports = PM_TEXTS(lib, list);
    EXPECT_TRUE(Has(ports, L"FILE:")) << Join(ports);
    EXPECT_TRUE(Has(ports, L"LPT1:")) << Join(ports);
    EXPECT_TRUE(Has(ports, printers.OutputFile(L"LP Port Printer"))) << Join(ports);
}

TEST_F(PrintMonitorTest, TestPrintersLeaveNothingBehind) {
    LP_INSTALL_DRIVER(printers, kGhostDriver, ghostPpd);
    LP_ADD_PRINTER(printers, L"LP Outer", kGhostDriver);
    LP_SET_DEFAULT_PRINTER(printers, L"LP Outer");
    const auto printersBefore = lptest::SpooledPrinters();
    const auto portsBefore = lptest::SpooledPorts();
    const auto driversBefore = lptest::SpooledDrivers();
    {
        lptest::TestPrinters scoped;
        LP_INSTALL_DRIVER(scoped, L"LP Scoped Driver", ghostPpd);
        LP_ADD_PRINTER(scoped, L"LP Scoped", L"LP Scoped Driver");
        LP_SET_DEFAULT_PRINTER(scoped, L"LP Scoped");
        const std::wstring typed = scoped.Folder() + L"typed.ps";
        auto record = MakeRecord(L"LP Scoped Typed", typed.c_str(), L"LP Scoped Driver", L"");
        ASSERT_EQ(lib.InstallPrinter(&record), kypm::kInstallDone);
        EXPECT_EQ(lptest::SpooledPrinters().size(), printersBefore.size() + 2);
        EXPECT_EQ(lptest::SpooledPorts().size(), portsBefore.size() + 2);
    }
    EXPECT_EQ(lptest::SpooledPrinters(), printersBefore);
    EXPECT_EQ(lptest::SpooledPorts(), portsBefore);
    EXPECT_EQ(lptest::SpooledDrivers(), driversBefore);
    EXPECT_EQ(lptest::DefaultPrinter(), L"LP Outer") << "the default printer is given back";
}

TEST_F(PrintMonitorTest, NullOutPointersAreRefused) {
    EXPECT_EQ(lib.EnumeratePorts(nullptr), kypm::kBadArgument);
    EXPECT_EQ(lib.EnumAvailableDriversW(nullptr, nullptr, nullptr, L"x"), kypm::kBadArgument);
    EXPECT_EQ(lib.GetPrinterList(nullptr, nullptr), kypm::kBadArgument);
    EXPECT_EQ(lib.DestroyDriverListW(nullptr), kypm::kBadArgument);
    DRIVER_LIST_ENTRY* empty = nullptr;
    EXPECT_EQ(lib.DestroyDriverListW(&empty), kypm::kDone);
}

TEST_F(PrintMonitorTest, NodesMovedBetweenListsGoBackOneByOne) {
    DRIVER_LIST_ENTRY* ports = nullptr;
    DRIVER_LIST_ENTRY* names = nullptr;
    ASSERT_EQ(lib.EnumeratePorts(&ports), kypm::kDone);
    ASSERT_EQ(lib.GetPrinterList(&names, nullptr), kypm::kDone);
    ASSERT_TRUE(ports && ports->pNext && ports->pNext->pNext);
    // As the sheet prunes lists: the second port moves to the head of the other
    // list, and the third is cut out into a chain of its own.
    DRIVER_LIST_ENTRY* moved = ports->pNext;
    ports->pNext = moved->pNext;
    moved->pNext = names;
    names = moved;
    DRIVER_LIST_ENTRY* alone = ports->pNext;
    ports->pNext = alone->pNext;
    alone->pNext = nullptr;
    EXPECT_EQ(lib.DestroyDriverListW(&ports), kypm::kDone);
    EXPECT_EQ(lib.DestroyDriverListW(&names), kypm::kDone);
    EXPECT_EQ(lib.DestroyDriverListW(&alone), kypm::kDone);
    EXPECT_EQ(ports, nullptr);
    EXPECT_EQ(names, nullptr);
    EXPECT_EQ(alone, nullptr);
}

TEST_F(PrintMonitorTest, NodeTheLibraryDidNotMakeIsRefused) {
    DRIVER_LIST_ENTRY* ports = nullptr;
    ASSERT_EQ(lib.EnumeratePorts(&ports), kypm::kDone);
    ASSERT_TRUE(ports && ports->pNext);
    wchar_t text[] = L"mine";
    DRIVER_LIST_ENTRY foreign{text, ports->pNext};
    ports->pNext = &foreign;
    DRIVER_LIST_ENTRY* head = ports;
    EXPECT_EQ(lib.DestroyDriverListW(&head), kypm::kForeignNode);
    EXPECT_EQ(head, &foreign) << "the walk stops on the foreign node and leaves it at the head";
    head = foreign.pNext;
    EXPECT_EQ(lib.DestroyDriverListW(&head), kypm::kDone);
}

}  // namespace
}  // namespace pmtest
