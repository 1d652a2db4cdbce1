// Printers for tests, made with Wine's own PostScript driver (wineps.drv) and
// a PPD file of Debian's ghostscript, printing into PostScript files that a
// test reads back. All tests share one prefix: a TestPrinters object removes,
// when it ends, every printer, port and driver made while it stood, and gives
// the default printer back.
#pragma once
#include <windows.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/support/TestSupport.h"

namespace lptest {

// The Windows path (through drive Z:) of a PPD file that ghostscript ships,
// such as L"ghostpdf.ppd" (maker "Ghostscript") or L"cbjc600.ppd" ("Canon");
// empty when the package is missing.
std::wstring FindGhostscriptPpd(const std::wstring& fileName);

class TestPrinters {
public:
    TestPrinters();
    ~TestPrinters();
    TestPrinters(const TestPrinters&) = delete;
    TestPrinters& operator=(const TestPrinters&) = delete;

    // Installs a driver of that name on wineps.drv with the PPD file.
    void InstallDriver(const char* file, int line, const std::wstring& driver, const std::wstring& ppd);
    // Adds a printer on its own file port (OutputFile, registered as a local
    // port) and gives it device fonts.
    void AddFilePrinter(const char* file, int line, const std::wstring& name, const std::wstring& driver);
    // Lets Arial print as the printer's Helvetica, so that the text of a page
    // stays text in the PostScript file instead of downloaded outlines.
    void UseDeviceFonts(const char* file, int line, const std::wstring& name);
    void SetDefault(const char* file, int line, const std::wstring& name);

    // A folder of this object's own, removed at its end.
    const std::wstring& Folder() const { return m_folder.path(); }
    // The file port of a printer added here: Folder() + name + ".ps".
    std::wstring OutputFile(const std::wstring& printer) const;

private:
    TempDir m_folder;
    std::vector<std::wstring> m_printers;
    std::vector<std::wstring> m_drivers;
    std::vector<std::wstring> m_ports;
    std::wstring m_default;
};

#define LP_INSTALL_DRIVER(printers, ...) (printers).InstallDriver(__FILE__, __LINE__, __VA_ARGS__)
#define LP_ADD_PRINTER(printers, ...) (printers).AddFilePrinter(__FILE__, __LINE__, __VA_ARGS__)
#define LP_SET_DEFAULT_PRINTER(printers, ...) (printers).SetDefault(__FILE__, __LINE__, __VA_ARGS__)

// What the spooler holds now.
std::vector<std::wstring> SpooledPrinters();
std::vector<std::wstring> SpooledPorts();
std::vector<std::wstring> SpooledDrivers();
std::wstring DefaultPrinter();
struct SpooledPrinter {
    bool found = false;
    std::wstring port;
    std::wstring driver;
};
SpooledPrinter FindSpooledPrinter(const std::wstring& name);
// Adds and removes printers as another program would, past the library.
bool AddSpooledPrinter(const std::wstring& name, const std::wstring& driver, const std::wstring& port);
bool DeleteSpooledPrinter(const std::wstring& name);
// Registers a local port (a file path, for one) with the Local Port monitor,
// as an administrator does before a printer may print there.
bool AddPort(const std::wstring& port);
bool DeletePort(const std::wstring& port);

// The PostScript a printer wrote, once the job is complete (it ends with
// %%EOF); what there is after timeoutMs otherwise.
std::string WaitForPostScript(const std::wstring& path, DWORD timeoutMs);
// The text that a PostScript page of Wine's driver shows with device fonts
// (one "/name glyphshow" per character), a new line at each "moveto".
std::string PostScriptText(const std::string& postscript);

}  // namespace lptest
