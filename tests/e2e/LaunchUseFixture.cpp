#include "tests/e2e/LaunchUseFixture.h"

#include <lmcons.h>

#include <sstream>

#include "foundation/UniqueHandle.h"

namespace lptest {

void LaunchUse::SetUp() {
    RegistryTest::SetUp();
    m_logs = std::make_unique<TempDir>();
    m_work = std::make_unique<TempDir>();
    LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", m_logs->path(), REG_EXPAND_SZ);
    LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"PM_BehaviorCriteria", 1);
    CreateDirectoryW((m_logs->path() + L"Templates").c_str(), nullptr);
    ASSERT_TRUE(CopyFileTo(BinDir() + L"Templates\\blp_template.html",
                           m_logs->path() + L"Templates\\blp_template.html"));
    LP_CREATE_KEY(HKEY_LOCAL_MACHINE, kCatalogueKey);
    m_record = *m_work / L"record.txt";
    SetEnvironmentVariableW(L"LP_TARGET_RECORD", m_record.c_str());
    SetEnvironmentVariableW(L"LP_TARGET_IDLE_DELAY_MS", nullptr);
    SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", L"500");
}

void LaunchUse::TearDown() {
    SetEnvironmentVariableW(L"LP_TARGET_RECORD", nullptr);
    SetEnvironmentVariableW(L"LP_TARGET_IDLE_DELAY_MS", nullptr);
    SetEnvironmentVariableW(L"LP_TARGET_LIFETIME_MS", nullptr);
    // Started programs end by themselves; their folder goes only after them.
    for (const TargetRecord& record : Records()) {
        ky::UniqueHandle process(OpenProcess(SYNCHRONIZE, FALSE, record.pid));
        if (process) {
            EXPECT_EQ(WaitForSingleObject(process.get(), 30000), WAIT_OBJECT_0) << record.pid;
        }
    }
    m_work.reset();
    m_logs.reset();
    RegistryTest::TearDown();
}

void LaunchUse::AddApp(const std::wstring& name, const std::wstring& exePath, const std::wstring& options,
                       const std::wstring& startDir) {
    LP_SET_STRING(HKEY_LOCAL_MACHINE, AppKey(name), L"ExePath", exePath, REG_EXPAND_SZ);
    if (!options.empty()) LP_SET_STRING(HKEY_LOCAL_MACHINE, AppKey(name), L"CmdLineOptions", options);
    if (!startDir.empty())
        LP_SET_STRING(HKEY_LOCAL_MACHINE, AppKey(name), L"StartDirectory", startDir, REG_EXPAND_SZ);
}

void LaunchUse::RunPanel(const std::wstring& arguments, const std::wstring& exeDir) {
    std::wstring exe = (exeDir.empty() ? BinDir() : exeDir) + L"LaunchPanel.exe";
    const ULONGLONG start = GetTickCount64();
    RunResult run = RunProgram(exe, arguments, 60000, m_work->path());
    m_runMs = GetTickCount64() - start;
    ASSERT_TRUE(run.started) << Narrow(exe);
    ASSERT_TRUE(run.finished) << "LaunchPanel " << Narrow(arguments) << " did not end";
}

std::vector<TargetRecord> LaunchUse::Records() const {
    std::vector<TargetRecord> records;
    std::istringstream in(ReadFile(m_record));
    std::string line;
    TargetRecord current;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.rfind("\xEF\xBB\xBF", 0) == 0) line.erase(0, 3);
        size_t equals = line.find('=');
        std::string key = line.substr(0, equals);
        std::wstring value = equals == std::string::npos ? L"" : Widen(line.substr(equals + 1));
        if (key == "program") current.program = value;
        else if (key == "args") current.args = value;
        else if (key == "dir") current.dir = value;
        else if (key == "show") current.show = _wtoi(value.c_str());
        else if (key == "pid") current.pid = static_cast<DWORD>(_wtoi(value.c_str()));
        else if (key == "end") records.push_back(std::exchange(current, TargetRecord{}));
    }
    return records;
}

std::wstring LaunchUse::UserOverrideKey(const std::wstring& name) const {
    // The account's domain and name, as the program reads them from its token.
    ky::UniqueHandle token;
    OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.put());
    BYTE buffer[512] = {};
    DWORD size = 0;
    GetTokenInformation(token.get(), TokenUser, buffer, sizeof buffer, &size);
    wchar_t user[256] = {}, domain[256] = {};
    DWORD userSize = 256, domainSize = 256;
    SID_NAME_USE use;
    LookupAccountSidW(nullptr, reinterpret_cast<TOKEN_USER*>(buffer)->User.Sid, user, &userSize, domain,
                      &domainSize, &use);
    wchar_t login[UNLEN + 1] = {};
    DWORD loginSize = UNLEN + 1;
    GetUserNameW(login, &loginSize);
    return AppKey(name) + L"\\Users\\" + domain + L"!" + login;
}

}  // namespace lptest
