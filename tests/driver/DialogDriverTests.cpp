// The driver against a dialog of another process: reading its controls, setting
// check boxes and edit fields as a user would (the dialog hears of each change),
// and answering the system's colour dialog.
#include "tests/driver/DriverTestSupport.h"
#include <map>
#include <string>
#include <vector>

namespace {

using namespace lpdrivertest;

// The dialog's echo line: what the dialog last heard of.
std::wstring Echo(const DriverAnswer& dialog) {
    for (const auto& record : dialog.Records(L"control"))
        if (record.at(L"control") == L"1006") return record.at(L"text");
    return L"(no echo line)";
}

std::map<std::wstring, std::wstring> Control(const DriverAnswer& dialog, const std::wstring& id) {
    for (const auto& record : dialog.Records(L"control"))
        if (record.at(L"control") == id) return record;
    return {};
}

TEST(DialogDriverTest, ReadsTheControlsOfADialog) {
    Target target(L"/dialog", false);
    ASSERT_TRUE(target.Started());
    const DriverAnswer dialog = Drive({L"dialog", target.Pid(), kLimit});
    EXPECT_DRIVER(dialog, 0);
    EXPECT_EQ(dialog.Value(L"caption"), L"Driver Target Dialog");
    EXPECT_EQ(Control(dialog, L"1001")[L"checked"], L"0");
    EXPECT_EQ(Control(dialog, L"1001")[L"text"], L"&First");
    EXPECT_EQ(Control(dialog, L"1002")[L"enabled"], L"0");
    EXPECT_EQ(Control(dialog, L"1005")[L"checked"], L"-") << "a push button has no check";
    EXPECT_EQ(dialog.Values(L"item"), (std::vector<std::wstring>{L"1004\tFirst item", L"1004\tZweite \u00DCbung"}));
    EXPECT_EQ(target.ExitCode(0), -1) << "reading must not answer the dialog";
}

TEST(DialogDriverTest, SetsACheckBoxByAClickAndAnEditFieldByItsText) {
    Target target(L"/dialog", false);
    ASSERT_TRUE(target.Started());
    const DriverAnswer checked = Drive({L"check", target.Pid(), L"1001", L"1", kLimit});
    EXPECT_DRIVER(checked, 0);
    EXPECT_EQ(checked.Value(L"checked"), L"1");
    EXPECT_EQ(Echo(Drive({L"dialog", target.Pid(), kLimit})), L"first 1") << "the dialog heard the click";
    // Already as wanted: nothing is clicked.
    EXPECT_DRIVER(Drive({L"check", target.Pid(), L"1001", L"1", kLimit}), 0);
    EXPECT_EQ(Echo(Drive({L"dialog", target.Pid(), kLimit})), L"first 1");

    const DriverAnswer typed = Drive({L"set-text", target.Pid(), L"1003", L"\u00DCber 42", kLimit});
    EXPECT_DRIVER(typed, 0);
    EXPECT_EQ(typed.Value(L"text"), L"\u00DCber 42");
    EXPECT_EQ(Echo(Drive({L"dialog", target.Pid(), kLimit})), L"edit \u00DCber 42");

    const DriverAnswer disabled = Drive({L"check", target.Pid(), L"1002", L"1", kLimit});
    EXPECT_DRIVER(disabled, 1);
    EXPECT_DRIVER(Drive({L"check", target.Pid(), L"1004", L"1", kLimit}), 1);
    EXPECT_DRIVER(Drive({L"check", target.Pid(), L"1001", L"2", kLimit}), 2);
    EXPECT_DRIVER(Drive({L"press", target.Pid(), L"1", kLimit}), 0);
    EXPECT_EQ(target.ExitCode(), 101) << "OK with the first box checked";
}

TEST(DialogDriverTest, AnswersTheColourDialogWithAColourOrCancel) {
    Target target(L"/dialog", false);
    ASSERT_TRUE(target.Started());
    EXPECT_DRIVER(Drive({L"press", target.Pid(), L"1005", L"--no-wait", kLimit}), 0);
    const DriverAnswer picked = Drive({L"pick-color", target.Pid(), L"10", L"20", L"200", kLimit});
    EXPECT_DRIVER(picked, 0);
    EXPECT_EQ(picked.Value(L"closed"), L"1");
    EXPECT_EQ(picked.Value(L"color"), std::to_wstring(RGB(10, 20, 200)));
    EXPECT_EQ(Echo(Drive({L"dialog", target.Pid(), L"--title", L"Driver Target Dialog", kLimit})), L"colour C8140A");

    EXPECT_DRIVER(Drive({L"press", target.Pid(), L"1005", L"--title", L"Driver Target Dialog", L"--no-wait", kLimit}), 0);
    EXPECT_DRIVER(Drive({L"pick-color", target.Pid(), L"1", L"2", L"3", L"--cancel", kLimit}), 0);
    EXPECT_EQ(Echo(Drive({L"dialog", target.Pid(), L"--title", L"Driver Target Dialog", kLimit})), L"colour cancelled");
    EXPECT_DRIVER(Drive({L"pick-color", target.Pid(), L"300", L"0", L"0", L"500"}), 2);
    // No colour dialog shows any more.
    EXPECT_DRIVER(Drive({L"pick-color", target.Pid(), L"1", L"2", L"3", L"400"}), 1);
}

}  // namespace
