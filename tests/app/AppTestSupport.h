// An application object made in process, with the program's resources and a
// fresh server key whose log directory is a temporary folder.
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "app/KYjlpApp.h"
#include "tests/support/TestSupport.h"

namespace lptest {

class TestApp : public KYjlpApp {
public:
    struct Release {
        Member member;
        bool monitorAlive;
        bool statusAlive;
        bool resourcesAlive;
        bool branderAlive;
    };
    std::vector<Release> released;
    int refreshes = 0;

    using KYjlpApp::ReadCatalogueAtStart;

    bool RefreshItems() override {
        ++refreshes;
        return true;
    }

protected:
    void OnMemberReleased(Member member) override {
        released.push_back({member, m_pMonitor != nullptr, m_pStatus != nullptr,
                            static_cast<bool>(m_hResourceLibrary), m_pBrander != nullptr});
    }
};

class AppTest : public RegistryTest {
protected:
    void SetUp() override;
    void TearDown() override;
    // Status, resources and (when asked) the monitor, as start-up makes them.
    void Establish(bool withMonitor);
    // Where the log goes when the configured directory can't be used.
    static std::wstring FallbackLogDirectory();

    std::unique_ptr<TempDir> m_logs;
    std::unique_ptr<TestApp> m_app;
};

}  // namespace lptest
