// Launch use end to end: a fresh server key with a catalogue, an unattended
// monitor logging into a temporary folder, and LaunchPanel.exe run for real.
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "tests/launch/LogRows.h"
#include "tests/support/TestSupport.h"

namespace lptest {

// What one start of LaunchTarget recorded.
struct TargetRecord {
    std::wstring program;
    std::wstring args;
    std::wstring dir;
    int show = -2;
    DWORD pid = 0;
};

class LaunchUse : public RegistryTest {
protected:
    void SetUp() override;
    void TearDown() override;

    // A published application; empty texts are left out.
    void AddApp(const std::wstring& name, const std::wstring& exePath, const std::wstring& options = L"",
                const std::wstring& startDir = L"");
    std::wstring AppKey(const std::wstring& name) const { return std::wstring(kCatalogueKey) + L"\\" + name; }
    // LaunchPanel.exe (of bin, or of exeDir) with the arguments, in the work folder, waited
    // for; fails the test when it does not end. m_runMs: how long it ran.
    void RunPanel(const std::wstring& arguments, const std::wstring& exeDir = L"");
    std::vector<LogRow> Rows() const { return ReadLogRows(m_logs->path()); }
    std::vector<TargetRecord> Records() const;
    static std::wstring Target() { return BinDir() + L"LaunchTarget.exe"; }
    // The user's override key of an application, as the catalogue reader looks it up.
    std::wstring UserOverrideKey(const std::wstring& name) const;
    static std::wstring Quoted(const std::wstring& text) { return L"\"" + text + L"\""; }

    std::unique_ptr<TempDir> m_logs;
    std::unique_ptr<TempDir> m_work;
    std::wstring m_record;
    ULONGLONG m_runMs = 0;
};

}  // namespace lptest
