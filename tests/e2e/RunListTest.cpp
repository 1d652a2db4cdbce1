// The programs a server session starts with the panel, end to end: the server's
// two run lists name them, the system's Run key of each list's hive gives their
// commands. The programs are our LaunchTarget, each recording its start in a file
// of its own. Only values of our own naming are written to the system's Run keys,
// and they go again even when a test fails: the system's start-up runs that key too.
#include "tests/e2e/ShellFrameFixture.h"
#include "tests/support/DebugTexts.h"
#include "tests/support/SessionStandIns.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "foundation/UniqueHandle.h"

namespace lptest {
namespace {

constexpr const wchar_t* kListsKey = L"SOFTWARE\\Veltran\\Corvane\\System\\Run";
const std::wstring kUserList = std::wstring(kListsKey) + L"\\CurrentUser";
const std::wstring kMachineList = std::wstring(kListsKey) + L"\\LocalMachine";
constexpr const wchar_t* kRunKey = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr const wchar_t* kOurPrefix = L"LaunchPanelTestRun";
constexpr DWORD kStartLimitMs = 20000;

// The Run values of the given hive whose names are ours, removed; nothing else is touched.
void RemoveOurRunValues(HKEY hive) {
    ky::UniqueHKey run;
    if (RegOpenKeyExW(hive, kRunKey, 0, KEY_READ | KEY_SET_VALUE, run.put()) != ERROR_SUCCESS) return;
    std::vector<std::wstring> ours;
    for (DWORD index = 0;; ++index) {
        wchar_t name[256] = {};
        DWORD length = 255;
        if (RegEnumValueW(run.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        if (_wcsnicmp(name, kOurPrefix, wcslen(kOurPrefix)) == 0) ours.push_back(name);
    }
    for (const std::wstring& name : ours) RegDeleteValueW(run.get(), name.c_str());
}

// What the starts of one program recorded: their process ids and creation times.
struct Starts {
    std::vector<DWORD> pids;
    std::vector<unsigned long long> made;
};

Starts ReadStarts(const std::wstring& file) {
    Starts starts;
    std::istringstream in(ReadFile(file));
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.rfind("\xEF\xBB\xBF", 0) == 0) line.erase(0, 3);
        if (line.rfind("pid=", 0) == 0) starts.pids.push_back(strtoul(line.c_str() + 4, nullptr, 10));
        if (line.rfind("made=", 0) == 0) starts.made.push_back(strtoull(line.c_str() + 5, nullptr, 10));
    }
    return starts;
}

class RunLists : public ShellFrame {
protected:
    void SetUp() override {
        ShellFrame::SetUp();
        CleanRegistry();
        ASSERT_TRUE(m_device.Install());
        ASSERT_TRUE(m_tessel.SetTimeout(20));
        ASSERT_TRUE(m_debugTexts.listening()) << "another debug monitor runs in the prefix";
    }
    void TearDown() override {
        // Exit, which asks nothing in a session; a panel that stays is ended.
        if (!m_pid.empty()) {
            m_driver.Run({L"command", m_pid, L"57665", L"--post"});
            m_driver.Run({L"wait", m_pid, kFrameLimit, L"--kill-on-timeout"});
            m_pid.clear();
        }
        ShellFrame::TearDown();
        // The programs end by themselves after a few seconds; any still there is ended.
        for (const std::wstring& name : m_listed)
            for (DWORD pid : ReadStarts(RecordFile(name)).pids)
                m_driver.Run({L"wait", std::to_wstring(pid), L"10000", L"--kill-on-timeout"});
        CleanRegistry();
    }
    static void CleanRegistry() {
        DeleteTree(HKEY_LOCAL_MACHINE, kListsKey);
        RemoveOurRunValues(HKEY_CURRENT_USER);
        RemoveOurRunValues(HKEY_LOCAL_MACHINE);
    }

    static std::wstring Name(const std::wstring& tail) { return kOurPrefix + tail; }
    std::wstring RecordFile(const std::wstring& name) const { return m_records / (name + L".txt"); }
    // A program in a run list, with or without its command in the Run key of a hive.
    void List(const std::wstring& list, const std::wstring& name) {
        LP_SET_DWORD(HKEY_LOCAL_MACHINE, list, name, 1);
        Remember(name);
    }
    void SetRunCommand(HKEY hive, const std::wstring& name, const std::wstring& command) {
        LP_SET_STRING(hive, kRunKey, name, command);
        Remember(name);
    }
    void Remember(const std::wstring& name) {
        if (std::find(m_listed.begin(), m_listed.end(), name) == m_listed.end()) m_listed.push_back(name);
    }
    // Our LaunchTarget, recording into the program's own file.
    void TargetCommand(HKEY hive, const std::wstring& name) {
        SetRunCommand(hive, name, L"\"" + BinDir() + L"LaunchTarget.exe\" \"" + RecordFile(name) + L"\"");
    }
    // Waits until each of the programs has recorded a start.
    bool AwaitStarts(const std::vector<std::wstring>& names) {
        const ULONGLONG until = GetTickCount64() + kStartLimitMs;
        for (;;) {
            bool all = true;
            for (const std::wstring& name : names) all = all && !ReadStarts(RecordFile(name)).made.empty();
            if (all) return true;
            if (GetTickCount64() > until) return false;
            Sleep(100);
        }
    }
    size_t StartCount(const std::wstring& name) const { return ReadStarts(RecordFile(name)).made.size(); }
    unsigned long long Made(const std::wstring& name) const {
        auto made = ReadStarts(RecordFile(name)).made;
        return made.empty() ? 0 : made.front();
    }
    bool PanelAnswers() { return m_driver.Run({L"listview", m_pid, kFrameLimit}).exitCode == 0; }
    // The panel's monitor sends each situation it answers as a debug text whose
    // code line ends in the number's three digits past 27000.
    bool Told(int number, std::vector<std::string> parts, DWORD timeoutMs) {
        char code[32] = {};
        snprintf(code, sizeof code, ".%03d", number - 27000);
        parts.insert(parts.begin(), {"Internal Error ", code});
        return m_debugTexts.AwaitText(static_cast<DWORD>(std::stoul(m_pid)), parts, timeoutMs);
    }
    std::string TextsOfPanel() const {
        std::string all;
        for (const std::string& text : m_debugTexts.From(static_cast<DWORD>(std::stoul(m_pid)))) all += text + "|";
        return all;
    }

    StandInsOnPath m_path;
    SessionDevice m_device;
    TesselAnswers m_tessel;
    LogonManagerEvents m_events;
    TempDir m_records;
    std::vector<std::wstring> m_listed;  // every program name the test wrote
    DebugTexts m_debugTexts;
};

TEST_F(RunLists, TheSessionStartsEachListedProgramOnceTheUserListFirst) {
    const std::wstring user1 = Name(L"User1"), user2 = Name(L"User2"), machine = Name(L"Machine1");
    const std::wstring unlisted = Name(L"Unlisted"), otherHive = Name(L"OtherHive");
    List(kUserList, user1);
    List(kUserList, user2);
    List(kMachineList, machine);
    List(kMachineList, otherHive);  // its command is in the other hive only: not installed here
    TargetCommand(HKEY_CURRENT_USER, user1);
    TargetCommand(HKEY_CURRENT_USER, user2);
    TargetCommand(HKEY_LOCAL_MACHINE, machine);
    TargetCommand(HKEY_CURRENT_USER, otherHive);
    TargetCommand(HKEY_CURRENT_USER, unlisted);  // in the Run key, in no list

    StartPanel();
    ASSERT_TRUE(AwaitStarts({user1, user2, machine})) << "the listed programs did not all start: " << TextsOfPanel();
    Sleep(2000);  // time for a second start that must not come
    EXPECT_EQ(StartCount(user1), 1u);
    EXPECT_EQ(StartCount(user2), 1u);
    EXPECT_EQ(StartCount(machine), 1u);
    EXPECT_EQ(StartCount(otherHive), 0u) << "a list looks only into the Run key of its own hive";
    EXPECT_EQ(StartCount(unlisted), 0u) << "only the programs that a list names start";
    EXPECT_LT(Made(user1), Made(machine)) << "the user's list comes first";
    EXPECT_LT(Made(user2), Made(machine)) << "the user's list comes first";
    EXPECT_TRUE(PanelAnswers());
    EXPECT_FALSE(Told(27084, {}, 0) || Told(27090, {}, 0) || Told(27029, {}, 0)) << TextsOfPanel();
}

TEST_F(RunLists, AProgramThatIsNotThereDoesNotStopTheOthers) {
    const std::wstring user = Name(L"User1"), missing = Name(L"Missing");
    const std::wstring before = Name(L"Before"), after = Name(L"After");
    List(kUserList, user);
    List(kMachineList, before);
    List(kMachineList, missing);
    List(kMachineList, after);
    TargetCommand(HKEY_CURRENT_USER, user);
    TargetCommand(HKEY_LOCAL_MACHINE, before);
    SetRunCommand(HKEY_LOCAL_MACHINE, missing, L"\"C:\\LaunchPanelTestNowhere\\NoSuchProgram.exe\" /quiet");
    TargetCommand(HKEY_LOCAL_MACHINE, after);

    StartPanel();
    EXPECT_TRUE(AwaitStarts({user, before, after})) << "a failed program stopped the others: " << TextsOfPanel();
    EXPECT_TRUE(PanelAnswers()) << "the session goes on";
    EXPECT_TRUE(Told(27084, {Narrow(missing), "NoSuchProgram.exe", "HKEY_LOCAL_MACHINE"}, 10000))
        << "the program that could not start is named: " << TextsOfPanel();
    EXPECT_TRUE(Told(27029, {}, 10000)) << "the start of the session says so once more: " << TextsOfPanel();
    EXPECT_EQ(StartCount(user), 1u);
    EXPECT_EQ(StartCount(before), 1u);
    EXPECT_EQ(StartCount(after), 1u);
}

// Launch use in a session carries out the lists too, once, before its own program.
TEST_F(RunLists, LaunchUseInASessionStartsTheListsOnce) {
    const std::wstring user = Name(L"User1"), machine = Name(L"Machine1");
    List(kUserList, user);
    List(kMachineList, machine);
    TargetCommand(HKEY_CURRENT_USER, user);
    TargetCommand(HKEY_LOCAL_MACHINE, machine);
    SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", L"300");
    auto launched = m_driver.Run({L"start", BinDir() + L"LaunchPanel.exe", L"--wait", L"30000", L"--", L"/launch",
                                  L"Beta Tool"});
    SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", nullptr);
    EXPECT_EQ(launched.Value(L"exit"), L"0") << Narrow(launched.Text());
    EXPECT_TRUE(AwaitStarts({user, machine})) << "launch use left the lists out";
    Sleep(1000);  // time for a second start that must not come
    EXPECT_EQ(StartCount(user), 1u);
    EXPECT_EQ(StartCount(machine), 1u);
}

TEST_F(RunLists, NothingStartsOutsideASession) {
    ASSERT_TRUE(m_device.SetInSession(false));
    const std::wstring user = Name(L"User1"), machine = Name(L"Machine1");
    List(kUserList, user);
    List(kMachineList, machine);
    TargetCommand(HKEY_CURRENT_USER, user);
    TargetCommand(HKEY_LOCAL_MACHINE, machine);

    StartPanel();
    Sleep(3000);  // time for starts that must not come
    EXPECT_EQ(StartCount(user), 0u);
    EXPECT_EQ(StartCount(machine), 0u);
    EXPECT_FALSE(Logged(27081)) << "the lists are not even looked at: " << Numbers(Rows());
    EXPECT_FALSE(Logged(27029)) << Numbers(Rows());
    EXPECT_FALSE(FirstMatch(m_logs->path() + L"*.html").empty()) << "standalone keeps its log";
}

}  // namespace
}  // namespace lptest
