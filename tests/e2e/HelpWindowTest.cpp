// The help window end to end: F1 typed into the running panel opens the system's
// help viewer on LaunchPanel.chm, a top-level window of the panel's own process,
// and it goes when the panel is closed. The viewer shows no page under Wine, so
// the HTML Help control is our recording stand-in, which hands each call on to
// the system's control: the record tells which topic the panel asked for.
#include "resources/HelpContext.h"
#include "tests/e2e/HelpControlStandIn.h"
#include "tests/e2e/ShellFrameFixture.h"
#include "tests/help/ChmStorage.h"

#include <optional>
#include <regex>
#include <sstream>

namespace lptest {
namespace {

constexpr const wchar_t* kVkF1 = L"112";
constexpr const wchar_t* kHelpClass = L"HH Parent";
constexpr const wchar_t* kRecorder = L"lphelprecorder.dll";
constexpr const wchar_t* kOptionsTitle = L"View Options";
constexpr UINT kScClose = 0xF060, kViewOptions = 32846;
// The help commands: a page of the help file, and the what-is-this texts of controls.
constexpr const char* kDisplayTopic = "0";
constexpr const char* kControlPopup = "16";  // HH_TP_HELP_CONTEXTMENU

// One call of the help control, as the stand-in recorded it: command, data or
// pairs, path, caller.
using HelpCall = std::map<std::string, std::string>;

HWND WindowOf(const std::wstring& text) { return reinterpret_cast<HWND>(std::stoull(text, nullptr, 16)); }

std::string ClassOf(HWND window) {
    wchar_t name[256] = {};
    return GetClassNameW(window, name, 256) > 0 ? Narrow(name) : std::string();
}

bool EndsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && _stricmp(text.c_str() + text.size() - end.size(), end.c_str()) == 0;
}

class HelpWindow : public ShellFrame {
protected:
    void SetUp() override {
        ShellFrame::SetUp();
        m_control.emplace(BinDir() + kRecorder);
        ASSERT_EQ(HelpControlStandIn::Registered(), BinDir() + kRecorder) << "the panel would bind another control";
        SetEnvironmentVariableW(L"LP_HELP_RECORD", m_record.c_str());
    }
    void TearDown() override {
        ShellFrame::TearDown();  // the panel goes before the registry is put back
        SetEnvironmentVariableW(L"LP_HELP_RECORD", nullptr);
        m_control.reset();
    }
    // The process's top-level windows of the help viewer's class.
    std::vector<std::wstring> HelpWindows() {
        std::vector<std::wstring> found;
        for (auto& record : m_driver.Run({L"windows", m_pid}).Records(L"hwnd"))
            if (_wcsicmp(record[L"class"].c_str(), kHelpClass) == 0) found.push_back(record[L"hwnd"]);
        return found;
    }
    std::vector<HelpCall> Calls() const {
        std::vector<HelpCall> calls;
        std::istringstream lines(ReadFile(m_record));
        for (std::string line; std::getline(lines, line);) {
            HelpCall call;
            std::istringstream fields(line);
            for (std::string field; std::getline(fields, field, '\t');)
                if (const size_t equals = field.find('='); equals != std::string::npos)
                    call[field.substr(0, equals)] = field.substr(equals + 1);
            calls.push_back(call);
        }
        return calls;
    }
    // The calls once there are at least that many, or what came within the limit.
    // A short wait more: a call too many would show.
    std::vector<HelpCall> AwaitCalls(size_t count) {
        for (int look = 0; look < 100 && Calls().size() < count; ++look) Sleep(100);
        Sleep(500);
        return Calls();
    }
    std::string Record() const { return "record:\n" + ReadFile(m_record); }
    // The view options dialog, opened by its command and waited for.
    HWND OpenOptions() {
        m_driver.Run({L"command", m_pid, std::to_wstring(kViewOptions), L"--post"});
        auto dialog = m_driver.Run({L"dialog", m_pid, L"--title", kOptionsTitle, kFrameLimit});
        EXPECT_EQ(dialog.exitCode, 0u) << Narrow(dialog.Text());
        const HWND window = dialog.exitCode == 0 ? WindowOf(dialog.Value(L"hwnd")) : nullptr;
        // A dialog made without help loses its caption's help button, and answers no F1.
        EXPECT_NE(GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_CONTEXTHELP, 0) << "the dialog offers help";
        return window;
    }
    // The control that has the keyboard focus in the dialog's thread.
    static HWND FocusOf(HWND dialog) {
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        return GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &info) ? info.hwndFocus : nullptr;
    }
    // The what-is-this call for the track select check box, by the stand-in's record.
    void ExpectTrackSelectPopup(const std::vector<HelpCall>& calls) {
        ASSERT_EQ(calls.size(), 1u) << Record();
        HelpCall call = calls[0];
        EXPECT_EQ(call["command"], kControlPopup) << Record();
        EXPECT_EQ(call["pairs"], std::to_string(IDC_VO_TRACK_SELECT) + ":" + std::to_string(HIDC_VO_TRACK_SELECT))
            << "the check box and its help id, ended by 0, 0";
        EXPECT_TRUE(EndsWith(call["path"], "\\LaunchPanel.chm::KYjlpContext.txt")) << call["path"];
        EXPECT_EQ(_strnicmp(call["path"].c_str(), Narrow(BinDir()).c_str(), BinDir().size()), 0) << call["path"];
        EXPECT_EQ(call["caller"], "Button") << "the popup belongs to the control";
    }

    TempDir m_work;
    const std::wstring m_record = m_work.path() + L"help.txt";
    std::optional<HelpControlStandIn> m_control;
};

TEST_F(HelpWindow, F1OpensTheHelpViewerAndItGoesWithThePanel) {
    ASSERT_TRUE(FileExists(BinDir() + L"LaunchPanel.chm")) << "the help file lies beside the program";
    StartPanel();
    ASSERT_TRUE(HelpWindows().empty()) << "no help before it is asked for";

    auto typed = m_driver.Run({L"chord", m_pid, kVkF1});
    ASSERT_EQ(typed.exitCode, 0u) << Narrow(typed.Text());
    auto help = m_driver.Run({L"find-window", m_pid, L"--class", kHelpClass, L"--visible", kFrameLimit});
    ASSERT_EQ(help.exitCode, 0u) << "F1 opened no help window: " << Narrow(m_driver.Run({L"windows", m_pid}).Text());
    EXPECT_EQ(help.Value(L"pid"), m_pid) << "the viewer is the panel's own";
    EXPECT_FALSE(help.Value(L"title").empty());
    EXPECT_EQ(HelpWindows().size(), 1u);

    // The panel's own close box; the help window is not closed by hand.
    const std::wstring frame = Frame().Value(L"hwnd");
    m_driver.Run({L"command", frame, std::to_wstring(kScClose), L"--system", L"--post"});
    EXPECT_EQ(AwaitEnd(), 0) << "the open help window does not hold the panel";
    const HWND helpWindow = reinterpret_cast<HWND>(std::stoull(help.Value(L"hwnd"), nullptr, 16));
    EXPECT_FALSE(IsWindow(helpWindow)) << "the help window went with the panel";
}

// The frame's topic is the help file's first page: the file itself, no page named.
TEST_F(HelpWindow, F1InTheFrameAsksForTheHelpFilesFirstPage) {
    StartPanel();
    const HWND frame = WindowOf(Frame().Value(L"hwnd"));
    ASSERT_TRUE(Calls().empty()) << Record();

    auto typed = m_driver.Run({L"chord", m_pid, kVkF1});
    ASSERT_EQ(typed.exitCode, 0u) << Narrow(typed.Text());
    auto help = m_driver.Run({L"find-window", m_pid, L"--class", kHelpClass, L"--visible", kFrameLimit});
    EXPECT_EQ(help.exitCode, 0u) << "the call reached the system's control, whose window opened";
    auto calls = AwaitCalls(1);
    ASSERT_EQ(calls.size(), 1u) << Record();
    EXPECT_EQ(calls[0]["command"], kDisplayTopic) << Record();
    EXPECT_EQ(calls[0]["data"], "0");
    EXPECT_EQ(_stricmp(calls[0]["path"].c_str(), Narrow(BinDir() + L"LaunchPanel.chm").c_str()), 0)
        << calls[0]["path"];
    EXPECT_EQ(calls[0]["caller"], ClassOf(frame)) << "the help window belongs to the frame";
}

// F1 in a dialog asks for the what-is-this text of the control with the focus.
TEST_F(HelpWindow, F1InTheViewOptionsAsksForTheFocusedControlsText) {
    ChmStorage chm(BinDir() + L"LaunchPanel.chm");
    ASSERT_TRUE(chm.ok()) << std::hex << chm.error();
    const std::regex topic("\\.topic[ \\t]+" + std::to_string(HIDC_VO_TRACK_SELECT) + "\\r?\\n[^\\r\\n]+");
    EXPECT_TRUE(std::regex_search(chm.Read(L"KYjlpContext.txt"), topic)) << "the help file has the text";

    StartPanel();
    const HWND dialog = OpenOptions();
    ASSERT_NE(dialog, nullptr);
    const HWND box = GetDlgItem(dialog, IDC_VO_TRACK_SELECT);
    ASSERT_NE(box, nullptr) << "the track select check box";
    SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(box), TRUE);
    ASSERT_EQ(FocusOf(dialog), box);

    std::wostringstream hwnd;
    hwnd << L"0x" << std::hex << reinterpret_cast<uintptr_t>(dialog);
    auto typed = m_driver.Run({L"chord", hwnd.str(), kVkF1});
    ASSERT_EQ(typed.exitCode, 0u) << Narrow(typed.Text());
    ExpectTrackSelectPopup(AwaitCalls(1));
    m_driver.Run({L"press", m_pid, L"2", L"--title", kOptionsTitle, kFrameLimit});
}

// A right click on a control of a dialog asks for the same text as F1 on it.
TEST_F(HelpWindow, RightClickInTheViewOptionsAsksForTheControlsText) {
    StartPanel();
    const HWND dialog = OpenOptions();
    ASSERT_NE(dialog, nullptr);
    const HWND box = GetDlgItem(dialog, IDC_VO_TRACK_SELECT);
    ASSERT_NE(box, nullptr) << "the track select check box";
    RECT r{};
    GetWindowRect(box, &r);
    const POINT middle{(r.left + r.right) / 2, (r.top + r.bottom) / 2};
    SetForegroundWindow(dialog);
    for (int look = 0; look < 50 && GetForegroundWindow() != dialog; ++look) Sleep(100);
    ASSERT_EQ(WindowFromPoint(middle), box) << "the check box shows at its middle";

    // The system's mouse, as a user's hand: the dialog sees the button go down over the box.
    INPUT clicks[3] = {};
    const LONG width = GetSystemMetrics(SM_CXVIRTUALSCREEN), height = GetSystemMetrics(SM_CYVIRTUALSCREEN);
    const LONG left = GetSystemMetrics(SM_XVIRTUALSCREEN), top = GetSystemMetrics(SM_YVIRTUALSCREEN);
    const DWORD flags[3] = {MOUSEEVENTF_MOVE, MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP};
    for (int i = 0; i < 3; ++i) {
        clicks[i].type = INPUT_MOUSE;
        clicks[i].mi.dx = static_cast<LONG>((static_cast<LONGLONG>(middle.x - left) * 65536 + width - 1) / width);
        clicks[i].mi.dy = static_cast<LONG>((static_cast<LONGLONG>(middle.y - top) * 65536 + height - 1) / height);
        clicks[i].mi.dwFlags = flags[i] | MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_VIRTUALDESK;
    }
    ASSERT_EQ(SendInput(3, clicks, sizeof(INPUT)), 3u);
    ExpectTrackSelectPopup(AwaitCalls(1));
    m_driver.Run({L"press", m_pid, L"2", L"--title", kOptionsTitle, kFrameLimit});
}

}  // namespace
}  // namespace lptest
