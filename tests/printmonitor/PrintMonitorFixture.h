// Each test gets the library freshly loaded, test printers of Wine's
// PostScript driver that vanish afterwards, and no client key: standalone,
// unless the test writes the client's answers itself.
#pragma once
#include <windows.h>
#include <gtest/gtest.h>
#include <string>

#include "tests/printmonitor/PrintMonitorLibrary.h"
#include "tests/support/TestPrinters.h"

namespace pmtest {

inline constexpr const wchar_t* kGhostDriver = L"LP Test Ghostscript PDF";
inline constexpr const wchar_t* kCanonDriver = L"LP Test Canon BJC-600";
inline constexpr const wchar_t* kPlainDriver = L"LP Test Plain PostScript";

class PrintMonitorTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // The three test drivers: makers Ghostscript, Canon, and none (a PPD
    // without its *Manufacturer entry).
    void InstallDrivers();
    // A copy of a PPD in the test's folder, without the lines that contain drop.
    std::wstring CopyPpd(const std::wstring& ppd, const std::wstring& name, const std::string& drop = "");
    // A driver information file in the test's folder naming PPD copies beside it.
    std::wstring WriteInf();
    void SetClient(const std::wstring& name, const std::wstring& value);
    void SetClientList(const std::wstring& name, const std::wstring& values);  // "a|b|c"
    void SetClientFlag(const std::wstring& name, DWORD value);

    lptest::TestPrinters printers;
    PrintMonitorLibrary lib;
    std::wstring ghostPpd;
    std::wstring canonPpd;
};

}  // namespace pmtest
