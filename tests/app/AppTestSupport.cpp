#include "tests/app/AppTestSupport.h"

#include "framework/ResourceModule.h"

namespace lptest {

void AppTest::SetUp() {
    RegistryTest::SetUp();
    m_logs = std::make_unique<TempDir>();
    LP_SET_STRING(HKEY_LOCAL_MACHINE, kServerKey, L"LogDirectory", m_logs->path(), REG_EXPAND_SZ);
    LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"PM_BehaviorCriteria", 1);
    CreateDirectoryW((m_logs->path() + L"Templates").c_str(), nullptr);
    CopyFileTo(BinDir() + L"Templates\\blp_template.html",
               m_logs->path() + L"Templates\\blp_template.html");
    m_app = std::make_unique<TestApp>();
}

void AppTest::TearDown() {
    m_app.reset();
    fw::SetResourceModule(nullptr);
    m_logs.reset();
    RegistryTest::TearDown();
}

void AppTest::Establish(bool withMonitor) {
    m_app->m_bShell = false;
    ASSERT_EQ(m_app->EstablishProgramStatus(), 0);
    ASSERT_EQ(m_app->LocateResources(), 0);
    if (withMonitor) {
        ASSERT_TRUE(m_app->EstablishProgramMonitor(0)) << "failure " << m_app->m_nFailure;
    }
}

std::wstring AppTest::FallbackLogDirectory() {
    std::wstring bin = BinDir();  // ...\build\bin\ : the log goes to ...\build\Log\ .
    bin.pop_back();
    return bin.substr(0, bin.find_last_of(L'\\') + 1) + L"Log\\";
}

}  // namespace lptest
