// The monitor's binding: where the log goes, what it is called, which template
// it is made from, the assertiveness level, and the monitor standing up.
#include <gtest/gtest.h>

#include <regex>

#include "monitor/KYbpm.h"
#include "tests/app/AppTestSupport.h"

namespace lptest {
namespace {

class MonitorBinding : public AppTest {};

TEST_F(MonitorBinding, ConfiguredDirectoryIsExpandedAndMadeWithItsParents) {
    std::wstring root = m_logs->path();
    root.pop_back();
    SetEnvironmentVariableW(L"LP_TEST_LOGS", root.c_str());
    LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", L"%LP_TEST_LOGS%\\nested\\deeper",
                  REG_EXPAND_SZ);
    Establish(false);
    ASSERT_TRUE(m_app->ObtainLogDirectory());
    EXPECT_EQ(m_app->m_strLogDirectory, m_logs->path() + L"nested\\deeper\\");
    DWORD attributes = GetFileAttributesW((m_logs->path() + L"nested\\deeper").c_str());
    ASSERT_NE(attributes, INVALID_FILE_ATTRIBUTES);
    EXPECT_TRUE(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

TEST_F(MonitorBinding, UnusableDirectoryFallsBackBesideTheProgramAndIsRemembered) {
    LP_WRITE_FILE(m_logs->path() + L"notadir", "x");
    const struct {
        const wchar_t* what;
        std::wstring value;
    } cases[] = {{L"a file", m_logs->path() + L"notadir"}, {L"blanks", L"   "}};
    for (const auto& c : cases) {
        SCOPED_TRACE(Narrow(c.what));
        LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", c.value, REG_EXPAND_SZ);
        m_app = std::make_unique<TestApp>();
        Establish(false);
        ASSERT_TRUE(m_app->ObtainLogDirectory());
        EXPECT_EQ(m_app->m_nFailure, 0);
        EXPECT_EQ(m_app->m_strLogDirectory, FallbackLogDirectory());
        std::wstring stored;
        ASSERT_TRUE(GetString(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", stored));
        EXPECT_EQ(stored, FallbackLogDirectory()) << "the administrator finds where the log went";
    }
}

TEST_F(MonitorBinding, MissingServerKeyStillGivesTheFallback) {
    DeleteTree(HKEY_LOCAL_MACHINE, kServerKey);
    Establish(false);
    ASSERT_TRUE(m_app->ObtainLogDirectory());
    EXPECT_EQ(m_app->m_strLogDirectory, FallbackLogDirectory());
}

TEST_F(MonitorBinding, LogFileNameCarriesUserProgramAndTimeAndForm) {
    Establish(false);
    wchar_t user[256] = {};
    DWORD size = 256;
    GetUserNameW(user, &size);
    const struct {
        uint32_t form;
        const char* extension;
    } forms[] = {{0, "html"}, {1, "txt"}, {7, "Unknown"}};
    for (const auto& f : forms) {
        std::wstring name;
        ASSERT_TRUE(m_app->BuildLogFileName(name, f.form));
        std::string expected = "^" + std::regex_replace(Narrow(m_logs->path()), std::regex(R"([\\.^$|()\[\]{}*+?])"), R"(\$&)") +
                               Narrow(user) + R"(_app_tests_\d{4}-\d\d-\d\d_\d\d-\d\d-\d\d-\d{3}\.)" +
                               f.extension + "$";
        EXPECT_TRUE(std::regex_match(Narrow(name), std::regex(expected))) << Narrow(name);
    }
}

TEST_F(MonitorBinding, StandaloneTemplateLiesUnderTemplates) {
    Establish(false);
    std::wstring path;
    ASSERT_TRUE(m_app->BuildLogTemplatePath(path));
    EXPECT_EQ(path, m_logs->path() + L"Templates\\blp_template.html");
}

TEST_F(MonitorBinding, AssertivenessOutOfRangeIsResetToZeroInTheRegistry) {
    Establish(false);
    uint32_t level = 99;
    LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"PM_Assertiveness", 10);
    ASSERT_TRUE(m_app->ObtainAssertiveness(level));
    EXPECT_EQ(level, 10u);
    for (DWORD bad : {11u, 0xFFFFFFFFu}) {
        LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"PM_Assertiveness", bad);
        ASSERT_TRUE(m_app->ObtainAssertiveness(level));
        EXPECT_EQ(level, 0u);
        DWORD stored = 99;
        ASSERT_TRUE(GetDword(HKEY_LOCAL_MACHINE, kServerKey, L"PM_Assertiveness", stored));
        EXPECT_EQ(stored, 0u);
    }
    LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"PM_Assertiveness", L"5");
    ASSERT_TRUE(m_app->ObtainAssertiveness(level));
    EXPECT_EQ(level, 0u);
    DWORD stored = 99;
    EXPECT_TRUE(GetDword(HKEY_LOCAL_MACHINE, kServerKey, L"PM_Assertiveness", stored))
        << "a value of the wrong kind is replaced by a number";
}

TEST_F(MonitorBinding, MonitorStandsWithItsLogMadeFromTheTemplate) {
    Establish(true);
    ASSERT_NE(m_app->m_pMonitor, nullptr);
    EXPECT_TRUE(m_app->m_bStandalone);
    EXPECT_TRUE(m_app->m_bPrintersAttempted) << "standalone: no client printers to wait for";
    EXPECT_TRUE(m_app->m_astrTags.empty()) << "the monitor answers for the tags now";
    std::wstring title;
    EXPECT_TRUE(m_app->GetTagText(title, 7));
    EXPECT_EQ(title, L"Launch Panel");

    const std::wstring logName = FirstMatch(m_logs->path() + L"*_app_tests_*.html");
    ASSERT_FALSE(logName.empty()) << "no log file in " << Narrow(m_logs->path());
    m_app->m_pMonitor->respondToSituation(27744, 0, L"SOFTWARE\\Test", L"WLE5");
    m_app->m_pMonitor->forgetSituation();
    std::string log = ReadFile(m_logs->path() + logName);
    EXPECT_NE(log.find("data-number=\"27744\""), std::string::npos);
    EXPECT_NE(log.find("SOFTWARE\\Test"), std::string::npos);
}

TEST_F(MonitorBinding, TeardownReleasesInOrderWithTheMonitorLast) {
    Establish(true);
    m_app->released.clear();
    m_app->ResetMembers();
    using M = KYjlpApp::Member;
    const M order[] = {M::CommandLine, M::LaunchRequests, M::Registrar, M::RegistryKeys,
                       M::PrinterEngine, M::PrintMonitor, M::WatchEvents, M::ResourceLibrary,
                       M::Brander, M::StringArrays, M::Status, M::Monitor};
    ASSERT_EQ(m_app->released.size(), std::size(order));
    for (size_t i = 0; i < std::size(order); ++i) {
        const auto& r = m_app->released[i];
        SCOPED_TRACE(i);
        EXPECT_EQ(r.member, order[i]);
        // Whatever goes before the monitor may still report through it.
        EXPECT_EQ(r.monitorAlive, order[i] != M::Monitor);
        EXPECT_EQ(r.resourcesAlive, i < 7) << "the texts stay loaded until the services are gone";
        EXPECT_EQ(r.statusAlive, i < 10);
        EXPECT_EQ(r.branderAlive, i < 8);
    }
    EXPECT_EQ(m_app->m_nHelpSituation, 27054) << "defaults are written back";
    EXPECT_EQ(m_app->m_nItemFillMask, 11u);
}

}  // namespace
}  // namespace lptest
