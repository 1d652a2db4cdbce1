// The driver reads the menu bar of another process's frame with the states the
// program's update handler gives each item when its submenu is about to open: from
// outside where the system lets it, else through its probe inside the program.
#include "tests/driver/DriverTestSupport.h"
#include <map>
#include <string>
#include <vector>

namespace {

using namespace lpdrivertest;

using Record = std::map<std::wstring, std::wstring>;

std::map<std::wstring, Record> ItemsById(const DriverAnswer& frame) {
    std::map<std::wstring, Record> items;
    for (const Record& record : frame.Records(L"item")) items[record.at(L"item")] = record;
    return items;
}

TEST(MenuDriverTest, ReadsTheMenuBarWithTheStatesOfTheUpdateHandler) {
    Target target(L"/menu");
    ASSERT_TRUE(target.Started());
    const DriverAnswer frame = Drive({L"frame", target.Pid(), L"--menu"});
    EXPECT_DRIVER(frame, 0);
    EXPECT_EQ(frame.Value(L"menu"), L"1");
    ASSERT_EQ(frame.Value(L"menu-read"), L"1") << lptest::Narrow(frame.Text());
    const auto records = frame.Records(L"item");
    std::vector<std::wstring> paths;
    for (const Record& record : records) paths.push_back(record.at(L"path"));
    // Separators print nothing; submenus lead to their items.
    EXPECT_EQ(paths, (std::vector<std::wstring>{L"File/Open...", L"File/Printers/Default printer",
                                                L"File/Printers/Network printer", L"File/Printers/Fax & scan",
                                                L"File/Exit", L"View/Status bar", L"View/Refresh"}));
    auto items = ItemsById(frame);
    EXPECT_EQ(items[L"40201"][L"text"], L"&Open...\tCtrl+O");
    EXPECT_EQ(items[L"40213"][L"text"], L"Fax && scan");
    EXPECT_EQ(items[L"40209"][L"text"], L"E&xit\tAlt+F4");
    // Each state below differs from the menu's resource: the update handler set it.
    EXPECT_EQ(items[L"40211"][L"checked"], L"1");
    EXPECT_EQ(items[L"40212"][L"enabled"], L"0");
    EXPECT_EQ(items[L"40221"][L"checked"], L"1");
    EXPECT_EQ(items[L"40222"][L"enabled"], L"1");
    EXPECT_EQ(items[L"40201"][L"enabled"], L"1");
    EXPECT_EQ(items[L"40201"][L"checked"], L"0");
}

TEST(MenuDriverTest, ReadsTheStateOfNowAndLeavesNoProbeBehind) {
    Target target(L"/menu");
    ASSERT_TRUE(target.Started());
    EXPECT_EQ(ItemsById(Drive({L"frame", target.Pid(), L"--menu"}))[L"40212"][L"enabled"], L"0");
    EXPECT_DRIVER(Drive({L"command", target.Pid(), L"40230"}), 0);
    const DriverAnswer again = Drive({L"frame", target.Pid(), L"--menu"});
    EXPECT_DRIVER(again, 0);
    EXPECT_EQ(ItemsById(again)[L"40212"][L"enabled"], L"1") << "the network is on now";
    // The program answers 1 while the driver's probe is loaded into it.
    const DriverAnswer loaded = Drive({L"command", target.Pid(), L"40300"});
    EXPECT_DRIVER(loaded, 0);
    EXPECT_EQ(loaded.Value(L"result"), L"0");
    EXPECT_EQ(target.ExitCode(0), -1) << "reading the menu must not end the program";
}

TEST(MenuDriverTest, AFrameWithoutMenuBarHasNothingToRead) {
    Target target;
    ASSERT_TRUE(target.Started());
    const DriverAnswer frame = Drive({L"frame", target.Pid(), L"--menu"});
    EXPECT_DRIVER(frame, 0);
    EXPECT_EQ(frame.Value(L"menu"), L"0");
    EXPECT_FALSE(frame.Has(L"menu-read"));
    EXPECT_TRUE(frame.Records(L"item").empty());
}

}  // namespace
