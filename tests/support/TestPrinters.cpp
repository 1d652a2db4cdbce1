#include "tests/support/TestPrinters.h"

#include <winspool.h>

#include <algorithm>
#include <map>
#include <sstream>

#include "foundation/UniqueHandle.h"

namespace lptest {

namespace {

bool Contains(const std::vector<std::wstring>& list, const std::wstring& name) {
    return std::any_of(list.begin(), list.end(), [&](const std::wstring& item) {
        return CompareStringOrdinal(item.c_str(), -1, name.c_str(), -1, TRUE) == CSTR_EQUAL;
    });
}

template <typename Call>
std::vector<BYTE> Enumerate(DWORD& count, Call call) {
    DWORD needed = 0;
    count = 0;
    call(nullptr, 0, &needed, &count);
    std::vector<BYTE> buffer(needed + 64);
    if (!call(buffer.data(), static_cast<DWORD>(buffer.size()), &needed, &count)) count = 0;
    return buffer;
}

}  // namespace

std::wstring FindGhostscriptPpd(const std::wstring& fileName) {
    WIN32_FIND_DATAW found;
    ky::UniqueFind find(FindFirstFileW(L"Z:\\usr\\share\\ghostscript\\*", &found));
    if (!find) return {};
    do {
        std::wstring version = found.cFileName;
        if (version == L"." || version == L"..") continue;
        std::wstring path = L"Z:\\usr\\share\\ghostscript\\" + version + L"\\lib\\" + fileName;
        if (FileExists(path)) return path;
    } while (FindNextFileW(find.get(), &found));
    return {};
}

std::vector<std::wstring> SpooledPrinters() {
    DWORD count = 0;
    auto buffer = Enumerate(count, [](BYTE* data, DWORD size, DWORD* needed, DWORD* returned) {
        return EnumPrintersW(PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS, nullptr, 4, data, size,
                             needed, returned);
    });
    std::vector<std::wstring> names;
    auto* info = reinterpret_cast<PRINTER_INFO_4W*>(buffer.data());
    for (DWORD i = 0; i < count; ++i) names.emplace_back(info[i].pPrinterName);
    return names;
}

std::vector<std::wstring> SpooledPorts() {
    DWORD count = 0;
    auto buffer = Enumerate(count, [](BYTE* data, DWORD size, DWORD* needed, DWORD* returned) {
        return EnumPortsW(nullptr, 1, data, size, needed, returned);
    });
    std::vector<std::wstring> names;
    auto* info = reinterpret_cast<PORT_INFO_1W*>(buffer.data());
    for (DWORD i = 0; i < count; ++i) names.emplace_back(info[i].pName);
    return names;
}

std::vector<std::wstring> SpooledDrivers() {
    DWORD count = 0;
    auto buffer = Enumerate(count, [](BYTE* data, DWORD size, DWORD* needed, DWORD* returned) {
        return EnumPrinterDriversW(nullptr, nullptr, 1, data, size, needed, returned);
    });
    std::vector<std::wstring> names;
    auto* info = reinterpret_cast<DRIVER_INFO_1W*>(buffer.data());
    for (DWORD i = 0; i < count; ++i) names.emplace_back(info[i].pName);
    return names;
}

std::wstring DefaultPrinter() {
    wchar_t name[512];
    DWORD size = 512;
    return GetDefaultPrinterW(name, &size) ? std::wstring(name) : std::wstring();
}

SpooledPrinter FindSpooledPrinter(const std::wstring& name) {
    ky::UniquePrinter printer;
    if (!OpenPrinterW(const_cast<wchar_t*>(name.c_str()), printer.put(), nullptr)) return {};
    DWORD needed = 0;
    GetPrinterW(printer.get(), 2, nullptr, 0, &needed);
    std::vector<BYTE> buffer(needed + 64);
    if (!GetPrinterW(printer.get(), 2, buffer.data(), static_cast<DWORD>(buffer.size()), &needed)) return {};
    auto* info = reinterpret_cast<PRINTER_INFO_2W*>(buffer.data());
    return {true, info->pPortName ? info->pPortName : L"", info->pDriverName ? info->pDriverName : L""};
}

bool AddSpooledPrinter(const std::wstring& name, const std::wstring& driver, const std::wstring& port) {
    std::wstring n = name, d = driver, p = port, processor = L"WinPrint", type = L"RAW";
    PRINTER_INFO_2W info{};
    info.pPrinterName = n.data();
    info.pDriverName = d.data();
    info.pPortName = p.data();
    info.pPrintProcessor = processor.data();
    info.pDatatype = type.data();
    info.Attributes = PRINTER_ATTRIBUTE_LOCAL;
    ky::UniquePrinter printer(AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info)));
    return static_cast<bool>(printer);
}

bool DeleteSpooledPrinter(const std::wstring& name) {
    PRINTER_DEFAULTSW access{nullptr, nullptr, PRINTER_ALL_ACCESS};
    ky::UniquePrinter printer;
    if (!OpenPrinterW(const_cast<wchar_t*>(name.c_str()), printer.put(), &access)) return false;
    return DeletePrinter(printer.get()) != FALSE;
}

namespace {

bool TellLocalPortMonitor(const wchar_t* command, const std::wstring& port) {
    PRINTER_DEFAULTSW access{nullptr, nullptr, SERVER_ACCESS_ADMINISTER};
    ky::UniquePrinter monitor;
    if (!OpenPrinterW(const_cast<wchar_t*>(L",XcvMonitor Local Port"), monitor.put(), &access)) return false;
    DWORD needed = 0, status = 0;
    return XcvDataW(monitor.get(), command, reinterpret_cast<BYTE*>(const_cast<wchar_t*>(port.c_str())),
                    static_cast<DWORD>((port.size() + 1) * sizeof(wchar_t)), nullptr, 0, &needed,
                    &status) &&
           status == ERROR_SUCCESS;
}

}  // namespace

bool AddPort(const std::wstring& port) { return TellLocalPortMonitor(L"AddPort", port); }

bool DeletePort(const std::wstring& port) { return TellLocalPortMonitor(L"DeletePort", port); }

TestPrinters::TestPrinters()
    : m_printers(SpooledPrinters()), m_drivers(SpooledDrivers()), m_ports(SpooledPorts()),
      m_default(DefaultPrinter()) {}

TestPrinters::~TestPrinters() {
    for (const std::wstring& name : SpooledPrinters())
        if (!Contains(m_printers, name)) DeleteSpooledPrinter(name);
    for (const std::wstring& port : SpooledPorts())
        if (!Contains(m_ports, port)) DeletePort(port);
    for (const std::wstring& driver : SpooledDrivers())
        if (!Contains(m_drivers, driver))
            DeletePrinterDriverExW(nullptr, nullptr, const_cast<wchar_t*>(driver.c_str()), 0, 0);
    if (!m_default.empty() && Contains(SpooledPrinters(), m_default)) SetDefaultPrinterW(m_default.c_str());
}

void TestPrinters::InstallDriver(const char* file, int line, const std::wstring& driver,
                                 const std::wstring& ppd) {
    std::wstring name = driver, engine = L"wineps.drv", data = ppd, type = L"RAW";
    DRIVER_INFO_3W info{};
    info.cVersion = 3;
    info.pName = name.data();
    info.pDriverPath = engine.data();
    info.pDataFile = data.data();
    info.pConfigFile = engine.data();
    info.pDefaultDataType = type.data();
    if (!AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&info),
                             APD_COPY_NEW_FILES | APD_COPY_FROM_DIRECTORY))
        ADD_FAILURE_AT(file, line) << "driver " << Narrow(driver) << " with " << Narrow(ppd)
                                   << " not installed: " << GetLastError();
}

std::wstring TestPrinters::OutputFile(const std::wstring& printer) const {
    return m_folder.path() + printer + L".ps";
}

void TestPrinters::AddFilePrinter(const char* file, int line, const std::wstring& name,
                              const std::wstring& driver) {
    if (!AddPort(OutputFile(name)))
        ADD_FAILURE_AT(file, line) << "port of " << Narrow(name) << " not added: " << GetLastError();
    if (!AddSpooledPrinter(name, driver, OutputFile(name))) {
        ADD_FAILURE_AT(file, line) << "printer " << Narrow(name) << " not added: " << GetLastError();
        return;
    }
    UseDeviceFonts(file, line, name);
}

void TestPrinters::UseDeviceFonts(const char* file, int line, const std::wstring& name) {
    PRINTER_DEFAULTSW access{nullptr, nullptr, PRINTER_ALL_ACCESS};
    ky::UniquePrinter printer;
    if (!OpenPrinterW(const_cast<wchar_t*>(name.c_str()), printer.put(), &access)) {
        ADD_FAILURE_AT(file, line) << "printer " << Narrow(name) << " cannot be opened";
        return;
    }
    static constexpr wchar_t kFont[] = L"Helvetica";
    DWORD rc = SetPrinterDataExW(printer.get(), L"PrinterDriverData\\FontSubTable", L"Arial", REG_SZ,
                                 reinterpret_cast<BYTE*>(const_cast<wchar_t*>(kFont)), sizeof kFont);
    if (rc != ERROR_SUCCESS) ADD_FAILURE_AT(file, line) << "font table of " << Narrow(name) << ": " << rc;
}

void TestPrinters::SetDefault(const char* file, int line, const std::wstring& name) {
    if (!SetDefaultPrinterW(name.c_str()))
        ADD_FAILURE_AT(file, line) << "default printer " << Narrow(name) << ": " << GetLastError();
}

std::string WaitForPostScript(const std::wstring& path, DWORD timeoutMs) {
    const ULONGLONG end = GetTickCount64() + timeoutMs;
    std::string content;
    do {
        content = FileExists(path) ? ReadFile(path) : std::string();
        if (content.find("%%EOF") != std::string::npos) break;
        Sleep(50);
    } while (GetTickCount64() < end);
    return content;
}

std::string PostScriptText(const std::string& postscript) {
    static const std::map<std::string, char> kNames = {
        {"space", ' '},      {"colon", ':'},      {"hyphen", '-'},     {"period", '.'},
        {"comma", ','},      {"parenleft", '('},  {"parenright", ')'}, {"backslash", '\\'},
        {"slash", '/'},      {"underscore", '_'}, {"zero", '0'},       {"one", '1'},
        {"two", '2'},        {"three", '3'},      {"four", '4'},       {"five", '5'},
        {"six", '6'},        {"seven", '7'},      {"eight", '8'},      {"nine", '9'},
        {"plus", '+'},       {"equal", '='},      {"numbersign", '#'}, {"quotesingle", '\''}};
    std::istringstream lines(postscript);
    std::string line, text;
    while (std::getline(lines, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.size() > 7 && line.compare(line.size() - 7, 7, " moveto") == 0) {
            if (!text.empty() && text.back() != '\n') text += '\n';
            continue;
        }
        static constexpr std::string_view kShow = " glyphshow";
        if (line.size() < 2 + kShow.size() || line[0] != '/' ||
            line.compare(line.size() - kShow.size(), kShow.size(), kShow) != 0)
            continue;
        const std::string glyph = line.substr(1, line.size() - 1 - kShow.size());
        if (glyph.size() == 1)
            text += glyph[0];
        else if (auto it = kNames.find(glyph); it != kNames.end())
            text += it->second;
        else if (glyph == "uni00A0")
            text += ' ';  // Wine's driver shows a space as Helvetica's no-break space
        else if (glyph == "uni00AD")
            text += '-';  // and a hyphen as its soft hyphen
        else
            text += "{" + glyph + "}";
    }
    return text;
}

}  // namespace lptest
