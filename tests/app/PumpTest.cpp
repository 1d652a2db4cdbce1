// The running program: registry watches that reach their handlers through the
// pump, the quit that ends watching, and the idle counts.
#include <gtest/gtest.h>

#include "tests/app/AppTestSupport.h"

namespace lptest {
namespace {

class Pump : public AppTest {
protected:
    // One turn of the pump, with a thread timer that ends a wait nobody answers.
    bool TurnOnce() {
        UINT_PTR guard = SetTimer(nullptr, 0, 5000, nullptr);
        bool result = m_app->PumpMessage();
        KillTimer(nullptr, guard);
        return result;
    }
};

TEST_F(Pump, CatalogueChangeReachesTheRefreshAndTheWatchIsRenewed) {
    LP_CREATE_KEY(HKEY_LOCAL_MACHINE, kCatalogueKey);
    Establish(true);
    ASSERT_TRUE(m_app->StartWatching());
    EXPECT_TRUE(m_app->m_bWatching);
    for (int round = 1; round <= 2; ++round) {
        SCOPED_TRACE(round);
        LP_SET_STRING(HKEY_LOCAL_MACHINE, std::wstring(kCatalogueKey) + L"\\Notepad", L"ExePath",
                      L"C:\\windows\\notepad.exe" + std::wstring(round, L' '));
        ASSERT_TRUE(TurnOnce());
        EXPECT_EQ(m_app->refreshes, round);
    }
}

TEST_F(Pump, ServerKeyChangeIsNotTakenForACatalogueChange) {
    LP_CREATE_KEY(HKEY_LOCAL_MACHINE, kCatalogueKey);
    Establish(true);
    ASSERT_TRUE(m_app->StartWatching());
    LP_SET_DWORD(HKEY_LOCAL_MACHINE, kServerKey, L"LaunchPanelCloseOption", 2);
    ASSERT_TRUE(TurnOnce());
    EXPECT_EQ(m_app->refreshes, 0);
}

TEST_F(Pump, QuitEndsWatching) {
    LP_CREATE_KEY(HKEY_LOCAL_MACHINE, kCatalogueKey);
    Establish(true);
    ASSERT_TRUE(m_app->StartWatching());
    PostQuitMessage(3);
    EXPECT_FALSE(m_app->PumpMessage());
    EXPECT_FALSE(m_app->m_bWatching);
    EXPECT_EQ(m_app->m_nExitCode, 3);
}

TEST_F(Pump, MissingCatalogueKeyIsToldAndTheOtherWatchesStand) {
    Establish(true);
    EXPECT_FALSE(m_app->StartWatching());
    EXPECT_TRUE(m_app->m_hWatchEvents[KYjlpApp::kWatchPrinters]);
    EXPECT_TRUE(m_app->m_hWatchEvents[KYjlpApp::kWatchServer]);
    EXPECT_FALSE(m_app->m_hKeyCatalogue);
}

// Records each idle count and quits the loop when told which round to stop at.
class IdleRecorder : public TestApp {
public:
    std::vector<long> counts;
    bool OnIdle(long count) override {
        counts.push_back(count);
        bool more = KYjlpApp::OnIdle(count);
        if (!more && counts.size() < 8) PostThreadMessageW(GetCurrentThreadId(), WM_USER, 0, 0);
        else if (!more) PostQuitMessage(0);
        return more;
    }
};

TEST_F(Pump, IdleFirstSettlesLaunchesThenStartsPrintersOnlyOnce) {
    auto recorder = std::make_unique<IdleRecorder>();
    IdleRecorder* app = recorder.get();
    m_app = std::move(recorder);
    Establish(true);
    app->m_bPrintersAttempted = false;  // as at the start of a session
    app->Run();
    // First sequence: counts rise until the printers are started at 3. After
    // input the counting starts again and ends at 2, the printers being done.
    const std::vector<long> expected = {0, 1, 2, 3, 0, 1, 2, 0, 1, 2};
    EXPECT_EQ(app->counts, expected);
    EXPECT_TRUE(app->m_bPrintersAttempted);
}

}  // namespace
}  // namespace lptest
