// Shell use end to end, the frame's side: a small catalogue, a monitor logging
// into a temporary folder, the real LaunchPanel.exe started and worked through
// the driver as a user would.
#pragma once
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/launch/LogRows.h"
#include "tests/support/TestSupport.h"
#include "tools/lpdriver/client/DriverClient.h"

namespace lptest {

inline constexpr const wchar_t* kFrameLimit = L"30000";
inline const std::wstring kStandardStore = std::wstring(kPreferencesKey) + L"\\Settings\\Standard";
inline const std::wstring kClassicStore = std::wstring(kPreferencesKey) + L"\\Settings\\Classic";

class ShellFrame : public RegistryTest {
protected:
    void SetUp() override {
        RegistryTest::SetUp();
        m_logs = std::make_unique<TempDir>();
        SetUnattended(true);
        LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", m_logs->path(), REG_EXPAND_SZ);
        LP_SET_STRING(HKEY_LOCAL_MACHINE, std::wstring(kCatalogueKey) + L"\\Beta Tool", L"ExePath",
                      BinDir() + L"LaunchTarget.exe");
        LP_SET_STRING(HKEY_LOCAL_MACHINE, std::wstring(kCatalogueKey) + L"\\Gamma", L"ExePath",
                      BinDir() + L"LaunchTargetConsole.exe");
    }
    void TearDown() override {
        if (!m_pid.empty()) m_driver.Run({L"close", m_pid, L"--all", L"--wait", kFrameLimit});
        RegistryTest::TearDown();
    }
    // Unattended: every situation is only logged, no box waits for an answer.
    void SetUnattended(bool on) { LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"PM_BehaviorCriteria", on ? 1 : 0); }
    // The panel with the arguments, waited for until its list shows the catalogue.
    void StartPanel(const std::vector<std::wstring>& arguments = {}) {
        std::vector<std::wstring> words = {L"start", BinDir() + L"LaunchPanel.exe"};
        if (!arguments.empty()) words.push_back(L"--");
        words.insert(words.end(), arguments.begin(), arguments.end());
        auto started = m_driver.Run(words);
        ASSERT_EQ(started.exitCode, 0u) << Narrow(started.Text());
        m_pid = started.Value(L"pid");
        auto list = m_driver.Run({L"listview", m_pid, L"--min-rows", L"2", kFrameLimit});
        ASSERT_EQ(list.exitCode, 0u) << Narrow(list.Text()) << Numbers(Rows());
    }
    lpdriver::DriverAnswer Frame(const std::wstring& buttons = L"") {
        if (buttons.empty()) return m_driver.Run({L"frame", m_pid});
        return m_driver.Run({L"frame", m_pid, L"--buttons", buttons});
    }
    lpdriver::DriverAnswer Command(UINT id, bool system = false) {
        std::vector<std::wstring> words = {L"command", m_pid, std::to_wstring(id)};
        if (system) words.push_back(L"--system");
        return m_driver.Run(words);
    }
    // The child windows of the given class, as records of the driver.
    std::vector<std::map<std::wstring, std::wstring>> Controls(const std::wstring& className) {
        std::vector<std::map<std::wstring, std::wstring>> found;
        for (auto& record : m_driver.Run({L"controls", m_pid}).Records(L"control"))
            if (_wcsicmp(record[L"class"].c_str(), className.c_str()) == 0) found.push_back(record);
        return found;
    }
    bool BarVisible(const std::wstring& className) {
        auto bars = Controls(className);
        return !bars.empty() && bars[0][L"visible"] == L"1";
    }
    // Waits for the process to end; its exit code, or -1 when it did not end.
    long long AwaitEnd() {
        auto ended = m_driver.Run({L"wait", m_pid, kFrameLimit});
        if (ended.exitCode != 0) {
            auto box = m_driver.Run({L"msgbox", m_pid, L"1000"});
            ADD_FAILURE() << "still running; box: " << Narrow(box.Value(L"text")) << Numbers(Rows());
            return -1;
        }
        m_pid.clear();
        return std::stoll(ended.Value(L"exit"));
    }
    std::vector<LogRow> Rows() const { return ReadLogRows(m_logs->path()); }
    bool Logged(int number) const {
        for (const LogRow& row : Rows())
            if (row.number == number) return true;
        return false;
    }
    static unsigned long Style(const lpdriver::DriverAnswer& frame, const wchar_t* key = L"style") {
        return std::stoul(frame.Value(key), nullptr, 16);
    }

    lpdriver::DriverClient m_driver;
    std::wstring m_pid;
    std::unique_ptr<TempDir> m_logs;
};

}  // namespace lptest
