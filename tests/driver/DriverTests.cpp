// lpdriver.exe against a real window of another process: the test starts
// lp_driver_target, asks the driver about it through a pipe, and checks the
// answers against what the target is known to show and how it ends.
#include "tests/driver/DriverTestSupport.h"
#include <string>
#include <vector>

namespace {

using namespace lpdrivertest;

class DriverTest : public ::testing::Test {};

TEST_F(DriverTest, ListsTheTopLevelWindowsOfTheProcess) {
    Target target;
    ASSERT_TRUE(target.Started());
    const DriverAnswer found = Drive({L"find-window", target.Pid(), L"--class", L"LpDriverTarget", kLimit});
    EXPECT_DRIVER(found, 0);

    const DriverAnswer answer = Drive({L"windows", target.Pid()});
    EXPECT_DRIVER(answer, 0);
    const auto records = answer.Records(L"hwnd");
    EXPECT_EQ(answer.Value(L"count"), std::to_wstring(records.size()));
    int frames = 0;
    for (const auto& record : records) {
        EXPECT_EQ(record.at(L"pid"), target.Pid());
        if (record.at(L"class") != L"LpDriverTarget") continue;
        ++frames;
        EXPECT_EQ(record.at(L"hwnd"), found.Value(L"hwnd"));
        EXPECT_EQ(record.at(L"title"), L"Driver Target");
        EXPECT_EQ(record.at(L"visible"), L"1");
        int left = 0, top = 0, right = 0, bottom = 0;
        ASSERT_EQ(swscanf(record.at(L"rect").c_str(), L"%d,%d,%d,%d", &left, &top, &right, &bottom), 4);
        EXPECT_EQ(right - left, 640);
        EXPECT_EQ(bottom - top, 480);
    }
    EXPECT_EQ(frames, 1) << lptest::Narrow(answer.Text());
}

TEST_F(DriverTest, FindWindowMatchesClassAndTitleAndWaitsForALateWindow) {
    Target target(L"/delay 1500", false);
    ASSERT_TRUE(target.Started());
    const DriverAnswer answer = Drive({L"find-window", target.Pid(), L"--class", L"lpdrivertarget",
                                       L"--title", L"Driver Target", L"--visible", kLimit});
    EXPECT_DRIVER(answer, 0);
    EXPECT_EQ(answer.Value(L"class"), L"LpDriverTarget");
    EXPECT_EQ(answer.Value(L"pid"), target.Pid());
    EXPECT_TRUE(answer.Value(L"hwnd").starts_with(L"0x"));

    const DriverAnswer anyProcess =
        Drive({L"find-window", L"any", L"--class", L"LpDriverTarget", L"--title-contains", L"Target", kLimit});
    EXPECT_DRIVER(anyProcess, 0);
    EXPECT_EQ(anyProcess.Value(L"pid"), target.Pid());
}

TEST_F(DriverTest, FindWindowGivesUpAtItsLimitOrWhenTheProcessEnds) {
    Target target(L"/exit-on 40001 5");
    ASSERT_TRUE(target.Started());
    const DriverAnswer wrongTitle = Drive({L"find-window", target.Pid(), L"--title", L"Nothing like it", L"400"});
    EXPECT_DRIVER(wrongTitle, 1);
    EXPECT_EQ(wrongTitle.Value(L"timeout"), L"1");
    EXPECT_FALSE(wrongTitle.Has(L"hwnd"));

    EXPECT_DRIVER(Drive({L"command", target.Pid(), L"40001", L"--post"}), 0);
    ASSERT_EQ(target.ExitCode(), 5);
    // Far below its own limit: the driver sees that nothing can appear any more.
    const DriverAnswer ended = Drive({L"find-window", target.Pid(), L"--class", L"Nothing", L"600000"});
    EXPECT_DRIVER(ended, 1);
    EXPECT_FALSE(ended.Has(L"timeout"));
    EXPECT_NE(ended.Value(L"error").find(L"ended"), std::wstring::npos) << lptest::Narrow(ended.Text());
}

TEST_F(DriverTest, ReadsTheListViewAcrossProcesses) {
    Target target(L"/select 1");
    ASSERT_TRUE(target.Started());
    const DriverAnswer answer = Drive({L"listview", target.Pid(), kLimit});
    EXPECT_DRIVER(answer, 0);
    EXPECT_EQ(answer.Value(L"columns"), L"3");
    EXPECT_EQ(answer.Value(L"view"), L"1");
    EXPECT_EQ(answer.Value(L"rows"), L"3");
    const std::vector<std::vector<std::wstring>> expected = {
        {L"Alpha", L"Program", L"12 KB"},
        {L"C:\\new\\Beta", L"Path", L""},
        {L"\u03A9mega \u00FCber", L"Unicode", L"3"},
    };
    EXPECT_EQ(answer.Cells(L"row"), expected);
    const std::vector<std::vector<std::wstring>> headings = {{L"Name", L"Kind", L"Size"}};
    EXPECT_EQ(answer.Cells(L"headings"), headings);
    EXPECT_EQ(answer.Value(L"selected"), L"1");
    EXPECT_EQ(answer.Value(L"focused"), L"1");

    // The same control named by its frame window.
    const DriverAnswer frame = Drive({L"find-window", target.Pid(), L"--class", L"LpDriverTarget", kLimit});
    EXPECT_DRIVER(frame, 0);
    const DriverAnswer within = Drive({L"listview", target.Pid(), L"--window", frame.Value(L"hwnd"), kLimit});
    EXPECT_DRIVER(within, 0);
    EXPECT_EQ(within.Value(L"hwnd"), answer.Value(L"hwnd"));
    EXPECT_EQ(within.Cells(L"row"), expected);
}

TEST_F(DriverTest, ReadsALongListWholeAndWaitsForItsRows) {
    Target target(L"/rows 400");
    ASSERT_TRUE(target.Started());
    const DriverAnswer answer = Drive({L"listview", target.Pid(), L"--min-rows", L"403", kLimit});
    EXPECT_DRIVER(answer, 0);
    const auto rows = answer.Cells(L"row");
    ASSERT_EQ(rows.size(), 403u);
    EXPECT_EQ(answer.Value(L"rows"), L"403");
    EXPECT_EQ(rows[402], (std::vector<std::wstring>{L"Item 399", L"Generated", L"2793"}));
    EXPECT_EQ(answer.Value(L"selected"), L"");
    EXPECT_EQ(answer.Value(L"focused"), L"-1");

    const DriverAnswer tooFew = Drive({L"listview", target.Pid(), L"--min-rows", L"404", L"300"});
    EXPECT_DRIVER(tooFew, 1);
    EXPECT_EQ(tooFew.Value(L"timeout"), L"1");
}

TEST_F(DriverTest, ReadsTheStatusBarAndTheControls) {
    Target target;
    ASSERT_TRUE(target.Started());
    const DriverAnswer bar = Drive({L"statusbar", target.Pid(), kLimit});
    EXPECT_DRIVER(bar, 0);
    EXPECT_EQ(bar.Value(L"parts"), L"2");
    EXPECT_EQ(bar.Values(L"part"), (std::vector<std::wstring>{L"3 items", L"Ready \u2013 C:\\new"}));

    const DriverAnswer controls = Drive({L"controls", target.Pid()});
    EXPECT_DRIVER(controls, 0);
    std::vector<std::wstring> found;
    for (const auto& record : controls.Records(L"control"))
        if (record.at(L"parent") == controls.Value(L"hwnd")) found.push_back(record.at(L"class") + L"#" + record.at(L"id"));
    EXPECT_EQ(found, (std::vector<std::wstring>{L"msctls_statusbar32#101", L"SysListView32#100"}));
}

TEST_F(DriverTest, ReadsAMessageBox) {
    Target target(L"/msgbox");
    ASSERT_TRUE(target.Started());
    const DriverAnswer answer = Drive({L"msgbox", target.Pid(), kLimit});
    EXPECT_DRIVER(answer, 0);
    EXPECT_EQ(answer.Value(L"caption"), L"Driver Target \u2013 Question");
    EXPECT_EQ(answer.Value(L"text"), L"Launch C:\\new\\tool.exe?\n\u00DCbung \u03A9");
    const auto buttons = answer.Records(L"button");
    ASSERT_EQ(buttons.size(), 2u) << lptest::Narrow(answer.Text());
    EXPECT_EQ(buttons[0].at(L"button"), std::to_wstring(IDYES));
    EXPECT_EQ(buttons[1].at(L"button"), std::to_wstring(IDNO));
    for (const auto& button : buttons) EXPECT_EQ(button.at(L"enabled"), L"1");
    EXPECT_EQ(target.ExitCode(0), -1) << "reading the box must not answer it";
}

TEST_F(DriverTest, PressesAMessageBoxButtonByTextOrById) {
    struct Case { std::wstring button; std::vector<std::wstring> options; int exitCode; };
    const Case cases[] = {
        {L"yes", {}, IDYES},
        {L"&No", {}, IDNO},
        {std::to_wstring(IDNO), {L"--click"}, IDNO},
        {L"Yes", {L"--title", L"Driver Target \u2013 Question", L"--click"}, IDYES},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(lptest::Narrow(c.button));
        Target target(L"/msgbox");
        ASSERT_TRUE(target.Started());
        std::vector<std::wstring> arguments{L"press", target.Pid(), c.button};
        arguments.insert(arguments.end(), c.options.begin(), c.options.end());
        arguments.push_back(kLimit);
        const DriverAnswer answer = Drive(arguments);
        EXPECT_DRIVER(answer, 0);
        EXPECT_EQ(answer.Value(L"pressed"), std::to_wstring(c.exitCode));
        EXPECT_EQ(answer.Value(L"closed"), L"1");
        EXPECT_EQ(target.ExitCode(), c.exitCode);
    }
}

TEST_F(DriverTest, MissingBoxesAndButtonsAreNotFound) {
    Target target(L"/msgbox");
    ASSERT_TRUE(target.Started());
    const DriverAnswer noButton = Drive({L"press", target.Pid(), L"Cancel", kLimit});
    EXPECT_DRIVER(noButton, 1);
    EXPECT_EQ(noButton.Records(L"button").size(), 2u);
    const DriverAnswer otherCaption = Drive({L"msgbox", target.Pid(), L"--title", L"Another", L"300"});
    EXPECT_DRIVER(otherCaption, 1);
    EXPECT_EQ(otherCaption.Value(L"timeout"), L"1");
    EXPECT_EQ(target.ExitCode(0), -1);

    Target plain(L"");
    ASSERT_TRUE(plain.Started());
    const DriverAnswer none = Drive({L"msgbox", plain.Pid(), L"300"});
    EXPECT_DRIVER(none, 1);
    EXPECT_EQ(none.Value(L"timeout"), L"1");
}

TEST_F(DriverTest, SendsCommandsToTheMainFrame) {
    Target target(L"/exit-on 40001 33");
    ASSERT_TRUE(target.Started());
    const DriverAnswer sent = Drive({L"command", target.Pid(), L"40005"});
    EXPECT_DRIVER(sent, 0);
    EXPECT_EQ(sent.Value(L"result"), std::to_wstring(40005 + kCommandAnswerBase));

    const DriverAnswer byWindow = Drive({L"command", sent.Value(L"hwnd"), L"0x9C45"});
    EXPECT_DRIVER(byWindow, 0);
    EXPECT_EQ(byWindow.Value(L"result"), std::to_wstring(0x9C45 + kCommandAnswerBase));

    EXPECT_DRIVER(Drive({L"command", sent.Value(L"hwnd"), L"40001"}), 0);
    EXPECT_EQ(target.ExitCode(), 33);
}

TEST_F(DriverTest, ACommandThatOpensAModalBoxTimesOutThenTheBoxIsPressed) {
    Target target;
    ASSERT_TRUE(target.Started());
    const DriverAnswer modal = Drive({L"command", target.Pid(), L"40100", L"--timeout", L"500"});
    EXPECT_DRIVER(modal, 1);
    EXPECT_EQ(modal.Value(L"timeout"), L"1");

    const DriverAnswer box = Drive({L"msgbox", target.Pid(), kLimit});
    EXPECT_DRIVER(box, 0);
    EXPECT_EQ(box.Value(L"caption"), L"Command box");
    EXPECT_EQ(box.Value(L"text"), L"Opened by a command");
    const DriverAnswer pressed = Drive({L"press", target.Pid(), L"Cancel", kLimit});
    EXPECT_DRIVER(pressed, 0);
    EXPECT_EQ(pressed.Value(L"closed"), L"1");
    // The frame answers again once the box is gone.
    const DriverAnswer after = Drive({L"command", target.Pid(), L"7"});
    EXPECT_DRIVER(after, 0);
    EXPECT_EQ(after.Value(L"result"), std::to_wstring(7 + kCommandAnswerBase));
}

TEST_F(DriverTest, CloseEndsTheProcessThroughItsWindows) {
    Target target;
    ASSERT_TRUE(target.Started());
    const DriverAnswer answer = Drive({L"close", target.Pid(), L"--wait", kLimit});
    EXPECT_DRIVER(answer, 0);
    EXPECT_EQ(answer.Value(L"closed"), L"1");
    EXPECT_EQ(answer.Value(L"exit"), std::to_wstring(kClosedExit));
    EXPECT_EQ(target.ExitCode(), kClosedExit);
}

TEST_F(DriverTest, StartsAProgramAndWaitsForItsEnd) {
    const std::wstring exe = lptest::BinDir() + L"lp_driver_target.exe";
    const DriverAnswer started = Drive({L"start", exe, L"/msgbox", L"--idle", kLimit});
    EXPECT_DRIVER(started, 0);
    EXPECT_EQ(started.Value(L"idle"), L"1");
    const std::wstring pid = started.Value(L"pid");
    ASSERT_FALSE(pid.empty());

    const DriverAnswer early = Drive({L"wait", pid, L"300"});
    EXPECT_DRIVER(early, 1);
    EXPECT_EQ(early.Value(L"timeout"), L"1");
    EXPECT_DRIVER(Drive({L"press", pid, L"No", L"--no-wait", kLimit}), 0);
    const DriverAnswer ended = Drive({L"wait", pid, kLimit});
    EXPECT_DRIVER(ended, 0);
    EXPECT_EQ(ended.Value(L"exit"), std::to_wstring(IDNO));
}

TEST_F(DriverTest, StartWithALimitReportsTheExitOrKillsAtTheLimit) {
    const std::wstring exe = lptest::BinDir() + L"lp_driver_target.exe";
    // Words after "--" reach the program even when they look like the driver's options.
    const DriverAnswer ended = Drive({L"start", exe, L"/exit", L"12", L"--wait", kLimit});
    EXPECT_DRIVER(ended, 0);
    EXPECT_EQ(ended.Value(L"exit"), L"12");
    EXPECT_FALSE(ended.Has(L"timeout"));

    // Words after "--" reach the program even when they look like the driver's options.
    const DriverAnswer running = Drive({L"start", exe, L"--wait", L"500", L"--", L"/exit-on", L"1", L"9"});
    EXPECT_DRIVER(running, 1);
    EXPECT_EQ(running.Value(L"timeout"), L"1");
    EXPECT_FALSE(running.Has(L"killed"));
    const std::wstring pid = running.Value(L"pid");
    EXPECT_DRIVER(Drive({L"find-window", pid, L"--class", L"LpDriverTarget", kLimit}), 0);
    EXPECT_DRIVER(Drive({L"command", pid, L"1", L"--post"}), 0);
    const DriverAnswer code = Drive({L"wait", pid, kLimit});
    EXPECT_DRIVER(code, 0);
    EXPECT_EQ(code.Value(L"exit"), L"9");

    const DriverAnswer killed = Drive({L"start", exe, L"/msgbox", L"--wait", L"300", L"--kill-on-timeout"});
    EXPECT_DRIVER(killed, 1);
    EXPECT_EQ(killed.Value(L"timeout"), L"1");
    EXPECT_EQ(killed.Value(L"killed"), L"1");
    // The box that held the program up went with it.
    const DriverAnswer gone = Drive({L"msgbox", killed.Value(L"pid"), L"300"});
    EXPECT_DRIVER(gone, 1);
    EXPECT_FALSE(gone.Has(L"caption"));
}

TEST_F(DriverTest, UsageErrorsAndSystemFailuresHaveTheirOwnCodes) {
    const std::vector<std::vector<std::wstring>> usage = {
        {},
        {L"no-such-command"},
        {L"wait", L"12x", L"100"},
        {L"wait", L"12"},
        {L"find-window", L"12", L"--colour", L"red", L"100"},
        {L"find-window", L"12", L"--class"},
        {L"start", L"x.exe", L"--kill-on-timeout"},
        {L"command", L"12", L"70000"},
    };
    for (const auto& words : usage) {
        const DriverAnswer answer = Drive(words);
        EXPECT_DRIVER(answer, 2);
        EXPECT_TRUE(answer.Has(L"error"));
    }
    const DriverAnswer missing = Drive({L"start", L"C:\\no\\such\\program.exe"});
    EXPECT_DRIVER(missing, 3);
    EXPECT_FALSE(missing.Has(L"pid"));
    EXPECT_DRIVER(Drive({L"wait", L"4294967200", L"100"}), 1);
    EXPECT_DRIVER(Drive({L"screenshot", L"0x7FFFFFF0", L"x.bmp"}), 1);
    const DriverAnswer help = Drive({L"help"});
    EXPECT_DRIVER(help, 0);
    EXPECT_EQ(help.Values(L"usage").size(), 27u);
}

TEST_F(DriverTest, ScreenshotWritesTheWindowAsABitmap) {
    Target target;
    ASSERT_TRUE(target.Started());
    const DriverAnswer frame = Drive({L"find-window", target.Pid(), L"--class", L"LpDriverTarget", kLimit});
    EXPECT_DRIVER(frame, 0);
    lptest::TempDir dir;
    const std::wstring file = dir / L"frame.bmp";
    const DriverAnswer shot = Drive({L"screenshot", frame.Value(L"hwnd"), file});
    EXPECT_DRIVER(shot, 0);
    EXPECT_EQ(shot.Value(L"width"), L"640");
    EXPECT_EQ(shot.Value(L"height"), L"480");
    const std::string bytes = lptest::ReadFile(file);
    ASSERT_GT(bytes.size(), sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER));
    BITMAPFILEHEADER head{};
    BITMAPINFOHEADER info{};
    memcpy(&head, bytes.data(), sizeof head);
    memcpy(&info, bytes.data() + sizeof head, sizeof info);
    EXPECT_EQ(head.bfType, 0x4D42);
    EXPECT_EQ(head.bfSize, bytes.size());
    EXPECT_EQ(info.biWidth, 640);
    EXPECT_EQ(info.biHeight, 480);
    EXPECT_EQ(info.biBitCount, 24);
    // The list's white background shows: the picture is not an empty black frame.
    const size_t stride = (640 * 3 + 3) & ~size_t{3};
    const size_t middle = head.bfOffBits + 240 * stride + 320 * 3;
    EXPECT_EQ(std::string(bytes, middle, 3), std::string(3, '\xFF'));
}

}  // namespace
