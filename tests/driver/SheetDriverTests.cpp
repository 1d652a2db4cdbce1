// The driver against a property sheet of another process: the controls of its
// pages (child dialogs of the sheet) read, typed into, checked and chosen from a
// list box as a user would, and the sheet's own buttons (Back, Next, Finish, OK,
// Apply, Cancel) pressed.
#include "tests/driver/DriverTestSupport.h"
#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace lpdrivertest;

using Record = std::map<std::wstring, std::wstring>;

const std::wstring kWizard = L"Driver Target Wizard";
const std::wstring kSheet = L"Driver Target Sheet";
constexpr int kBack = 12323, kNext = 12324, kFinish = 12325, kApply = 12321;

// The visible control with the id: where pages repeat an id, the one of the page showing.
Record Shown(const DriverAnswer& dialog, int id) {
    for (const Record& record : dialog.Records(L"control"))
        if (record.at(L"control") == std::to_wstring(id) && record.at(L"visible") == L"1") return record;
    return {};
}

std::wstring Echo(const DriverAnswer& dialog) { return Shown(dialog, 1106)[L"text"]; }

// Reads the dialog again until the check holds or the limit has passed; the last answer.
template <typename Check>
DriverAnswer ReadUntil(const Target& target, const std::wstring& caption, Check check) {
    const ULONGLONG end = ::GetTickCount64() + kLimitMs;
    DriverAnswer dialog = Drive({L"dialog", target.Pid(), L"--title", caption, kLimit});
    while (!check(dialog) && ::GetTickCount64() < end) {
        ::Sleep(100);
        dialog = Drive({L"dialog", target.Pid(), L"--title", caption, kLimit});
    }
    return dialog;
}

DriverAnswer Press(const Target& target, int button) {
    return Drive({L"press", target.Pid(), std::to_wstring(button), L"--no-wait", kLimit});
}

bool OnSecondPage(const DriverAnswer& dialog) { return Shown(dialog, 1201)[L"class"] == L"Button"; }
bool OnFirstPage(const DriverAnswer& dialog) { return Shown(dialog, 1104)[L"class"] == L"ListBox"; }

TEST(SheetDriverTest, ReadsTheFirstPageOfAWizard) {
    Target target(L"/wizard", false);
    ASSERT_TRUE(target.Started());
    const DriverAnswer dialog = ReadUntil(target, kWizard, OnFirstPage);
    EXPECT_DRIVER(dialog, 0);
    EXPECT_EQ(dialog.Value(L"caption"), kWizard);
    EXPECT_EQ(dialog.Values(L"item"),
              (std::vector<std::wstring>{L"1104\tBlue", L"1104\tGreen", L"1104\tRed \u00FCber"}));
    EXPECT_EQ(Shown(dialog, kNext)[L"enabled"], L"1");
    EXPECT_EQ(Shown(dialog, kBack)[L"enabled"], L"0") << "the first page has no page before it";
    EXPECT_TRUE(Shown(dialog, 1201).empty()) << "the second page is not showing";
}

TEST(SheetDriverTest, ChoosesListItemsOnAPageByIndexOrText) {
    Target target(L"/wizard", false);
    ASSERT_TRUE(target.Started());
    const DriverAnswer chosen = Drive({L"listbox", target.Pid(), L"1104", L"1", L"--title", kWizard, kLimit});
    EXPECT_DRIVER(chosen, 0);
    EXPECT_EQ(chosen.Value(L"selected"), L"1");
    EXPECT_EQ(chosen.Value(L"text"), L"Green");
    EXPECT_EQ(Echo(Drive({L"dialog", target.Pid(), kLimit})), L"select 1 Green") << "the page heard the change";

    const DriverAnswer twice = Drive({L"listbox", target.Pid(), L"1104", L"Red \u00FCber", L"--double", kLimit});
    EXPECT_DRIVER(twice, 0);
    EXPECT_EQ(twice.Value(L"selected"), L"2");
    EXPECT_EQ(twice.Value(L"text"), L"Red \u00FCber");
    EXPECT_EQ(Echo(ReadUntil(target, kWizard, [](const DriverAnswer& d) { return Echo(d) == L"double 2"; })),
              L"double 2");

    EXPECT_DRIVER(Drive({L"listbox", target.Pid(), L"1104", L"Purple", kLimit}), 1);
    EXPECT_DRIVER(Drive({L"listbox", target.Pid(), L"1104", L"3", kLimit}), 1);
    // An edit field is no list box.
    EXPECT_DRIVER(Drive({L"listbox", target.Pid(), L"1103", L"0", kLimit}), 1);
    EXPECT_DRIVER(Drive({L"listbox", target.Pid(), L"1104", kLimit}), 2);
    const DriverAnswer missing = Drive({L"listbox", target.Pid(), L"4711", L"0", L"300"});
    EXPECT_DRIVER(missing, 1);
    EXPECT_EQ(missing.Value(L"timeout"), L"1");
    EXPECT_EQ(Drive({L"listbox", target.Pid(), L"1104", L"0", kLimit}).Value(L"text"), L"Blue");
    EXPECT_EQ(target.ExitCode(0), -1) << "choosing must not end the wizard";
}

TEST(SheetDriverTest, DrivesTheWizardFromPageToPageToFinish) {
    Target target(L"/wizard", false);
    ASSERT_TRUE(target.Started());
    EXPECT_DRIVER(Drive({L"listbox", target.Pid(), L"1104", L"Red \u00FCber", kLimit}), 0);
    const DriverAnswer typed = Drive({L"set-text", target.Pid(), L"1103", L"First", L"--title", kWizard, kLimit});
    EXPECT_DRIVER(typed, 0);
    EXPECT_EQ(typed.Value(L"text"), L"First");
    EXPECT_EQ(Echo(Drive({L"dialog", target.Pid(), kLimit})), L"edit First");

    const DriverAnswer next = Press(target, kNext);
    EXPECT_DRIVER(next, 0);
    EXPECT_EQ(next.Value(L"pressed"), std::to_wstring(kNext));
    const DriverAnswer second = ReadUntil(target, kWizard, OnSecondPage);
    ASSERT_TRUE(OnSecondPage(second)) << lptest::Narrow(second.Text());
    EXPECT_TRUE(Shown(second, 1104).empty()) << "the first page is hidden";
    EXPECT_EQ(Shown(second, kFinish)[L"enabled"], L"1");

    // The edit field of the page showing, not the first page's of the same id.
    EXPECT_DRIVER(Drive({L"set-text", target.Pid(), L"1103", L"Zweite", kLimit}), 0);
    const DriverAnswer checked = Drive({L"check", target.Pid(), L"1201", L"1", kLimit});
    EXPECT_DRIVER(checked, 0);
    EXPECT_EQ(checked.Value(L"checked"), L"1");
    const DriverAnswer after = Drive({L"dialog", target.Pid(), kLimit});
    EXPECT_EQ(Echo(after), L"confirm 1");
    EXPECT_EQ(Shown(after, 1103)[L"text"], L"Zweite");
    std::vector<std::wstring> edits;
    for (const Record& record : after.Records(L"control"))
        if (record.at(L"control") == L"1103") edits.push_back(record.at(L"text"));
    EXPECT_EQ(edits.size(), 2u);
    EXPECT_NE(std::find(edits.begin(), edits.end(), L"First"), edits.end()) << "the first page kept its text";

    EXPECT_DRIVER(Press(target, kBack), 0);
    ASSERT_TRUE(OnFirstPage(ReadUntil(target, kWizard, OnFirstPage)));
    EXPECT_DRIVER(Press(target, kNext), 0);
    ASSERT_TRUE(OnSecondPage(ReadUntil(target, kWizard, OnSecondPage)));
    const DriverAnswer finish = Drive({L"press", target.Pid(), std::to_wstring(kFinish), kLimit});
    EXPECT_DRIVER(finish, 0);
    EXPECT_EQ(finish.Value(L"closed"), L"1");
    EXPECT_EQ(target.ExitCode(), 221) << "Finish with the third item chosen and Confirm checked";
}

TEST(SheetDriverTest, CancelEndsTheWizard) {
    Target target(L"/wizard", false);
    ASSERT_TRUE(target.Started());
    ASSERT_TRUE(OnFirstPage(ReadUntil(target, kWizard, OnFirstPage)));
    const DriverAnswer cancel = Drive({L"press", target.Pid(), L"2", kLimit});
    EXPECT_DRIVER(cancel, 0);
    EXPECT_EQ(cancel.Value(L"closed"), L"1");
    EXPECT_EQ(target.ExitCode(), IDCANCEL);
}

TEST(SheetDriverTest, AppliesAndClosesAPropertySheetWithOk) {
    Target target(L"/sheet", false);
    ASSERT_TRUE(target.Started());
    EXPECT_DRIVER(Drive({L"listbox", target.Pid(), L"1104", L"Green", L"--title", kSheet, kLimit}), 0);
    const DriverAnswer changed = ReadUntil(target, kSheet, [](const DriverAnswer& d) {
        return Shown(d, kApply)[L"enabled"] == L"1";
    });
    ASSERT_EQ(Shown(changed, kApply)[L"enabled"], L"1") << lptest::Narrow(changed.Text());
    EXPECT_DRIVER(Press(target, kApply), 0);
    EXPECT_EQ(Echo(ReadUntil(target, kSheet, [](const DriverAnswer& d) { return Echo(d) == L"applied"; })),
              L"applied");
    EXPECT_EQ(target.ExitCode(0), -1) << "Apply leaves the sheet open";
    const DriverAnswer ok = Drive({L"press", target.Pid(), L"1", kLimit});
    EXPECT_DRIVER(ok, 0);
    EXPECT_EQ(ok.Value(L"closed"), L"1");
    EXPECT_EQ(target.ExitCode(), 301) << "OK with the second item chosen";
}

}  // namespace
