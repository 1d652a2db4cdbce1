#include "tests/printmonitor/PrintMonitorFixture.h"

#include <sstream>

namespace pmtest {

void PrintMonitorTest::SetUp() {
    lptest::DeleteTree(HKEY_CURRENT_USER, kypm::kClientKey);
    ghostPpd = lptest::FindGhostscriptPpd(L"ghostpdf.ppd");
    canonPpd = lptest::FindGhostscriptPpd(L"cbjc600.ppd");
    ASSERT_FALSE(ghostPpd.empty() || canonPpd.empty())
        << "ghostscript's PPD files are missing (Debian package ghostscript)";
    PM_LOAD(lib);
    ASSERT_TRUE(lib.Loaded());
}

void PrintMonitorTest::TearDown() {
    lib.Unload();
    lptest::DeleteTree(HKEY_CURRENT_USER, kypm::kClientKey);
}

void PrintMonitorTest::InstallDrivers() {
    LP_INSTALL_DRIVER(printers, kGhostDriver, ghostPpd);
    LP_INSTALL_DRIVER(printers, kCanonDriver, canonPpd);
    LP_INSTALL_DRIVER(printers, kPlainDriver, CopyPpd(ghostPpd, L"plain.ppd", "*Manufacturer"));
}

std::wstring PrintMonitorTest::CopyPpd(const std::wstring& ppd, const std::wstring& name,
                                       const std::string& drop) {
    std::istringstream lines(lptest::ReadFile(ppd));
    std::string line, kept;
    while (std::getline(lines, line))
        if (drop.empty() || line.find(drop) == std::string::npos) kept += line + "\n";
    const std::wstring path = printers.Folder() + name;
    LP_WRITE_FILE(path, kept);
    return path;
}

std::wstring PrintMonitorTest::WriteInf() {
    CopyPpd(ghostPpd, L"infmodel.ppd");
    const std::wstring path = printers.Folder() + L"lptest.inf";
    LP_WRITE_FILE(path,
                  "[Version]\r\n"
                  "Signature=\"$Windows NT$\"\r\n"
                  "Class=Printer\r\n"
                  "ClassGUID={4D36E979-E325-11CE-BFC1-08002BE10318}\r\n"
                  "Provider=%Maker%\r\n"
                  "\r\n"
                  "[Manufacturer]\r\n"
                  "%Maker%=InfModels,NTamd64\r\n"
                  "\"Other Maker\"=OtherModels\r\n"
                  "\r\n"
                  "[InfModels]\r\n"
                  "\"Model For 32-bit Windows\"=OLDMODEL\r\n"
                  "\r\n"
                  "[InfModels.NTamd64]\r\n"
                  "\"LP Inf Model\"=INFMODEL,LPTEST_INF_MODEL\r\n"
                  "\"LP Inf Broken Model\"=BROKENMODEL\r\n"
                  "\r\n"
                  "[OtherModels]\r\n"
                  "\"LP Other Model\"=INFMODEL\r\n"
                  "\r\n"
                  "[INFMODEL]\r\n"
                  "DataFile=infmodel.ppd\r\n"
                  "DataSection=WINEPS_DATA\r\n"
                  "\r\n"
                  "[BROKENMODEL]\r\n"
                  "DataFile=infmodel.ppd\r\n"
                  "\r\n"
                  "[OLDMODEL]\r\n"
                  "DataFile=infmodel.ppd\r\n"
                  "DataSection=WINEPS_DATA\r\n"
                  "\r\n"
                  "[WINEPS_DATA]\r\n"
                  "DriverFile=wineps.drv\r\n"
                  "ConfigFile=wineps.drv\r\n"
                  "\r\n"
                  "[Strings]\r\n"
                  "Maker=\"Inf Maker\"\r\n");
    return path;
}

void PrintMonitorTest::SetClient(const std::wstring& name, const std::wstring& value) {
    LP_SET_STRING(HKEY_CURRENT_USER, kypm::kClientKey, name, value);
}

void PrintMonitorTest::SetClientList(const std::wstring& name, const std::wstring& values) {
    std::wstring multi = values;
    for (wchar_t& c : multi)
        if (c == L'|') c = L'\0';
    multi.push_back(L'\0');
    multi.push_back(L'\0');
    LP_SET_BINARY(HKEY_CURRENT_USER, kypm::kClientKey, name, multi.data(),
                  static_cast<DWORD>(multi.size() * sizeof(wchar_t)), REG_MULTI_SZ);
}

void PrintMonitorTest::SetClientFlag(const std::wstring& name, DWORD value) {
    LP_SET_DWORD(HKEY_CURRENT_USER, kypm::kClientKey, name, value);
}

}  // namespace pmtest
