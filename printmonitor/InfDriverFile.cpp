#include "printmonitor/InfDriverFile.h"

#include <setupapi.h>
#include <winspool.h>

#include <algorithm>

#include "printmonitor/Spooler.h"

namespace kypm {

namespace {

std::wstring Field(INFCONTEXT& line, DWORD index) {
    DWORD size = 0;
    if (!SetupGetStringFieldW(&line, index, nullptr, 0, &size) || size == 0) return {};
    std::wstring text(size, L'\0');
    if (!SetupGetStringFieldW(&line, index, text.data(), size, &size)) return {};
    text.resize(wcslen(text.c_str()));
    return text;
}

bool IsFor64BitWindows(const std::wstring& decoration) {
    return (decoration.size() >= 7 &&
            CompareStringOrdinal(decoration.c_str(), 7, L"NTamd64", 7, TRUE) == CSTR_EQUAL) ||
           CompareStringOrdinal(decoration.c_str(), -1, L"NT", -1, TRUE) == CSTR_EQUAL;
}

bool FileExists(const std::wstring& path) {
    DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

}  // namespace

bool InfDriverFile::Open(const std::wstring& path) {
    wchar_t full[MAX_PATH * 2];
    wchar_t* name = nullptr;
    DWORD length = GetFullPathNameW(path.c_str(), MAX_PATH * 2, full, &name);
    if (length == 0 || length >= MAX_PATH * 2 || !name) return false;
    m_folder.assign(full, name);
    UINT errorLine = 0;
    m_inf.reset(SetupOpenInfFileW(full, nullptr, INF_STYLE_WIN4, &errorLine));
    return static_cast<bool>(m_inf);
}

bool InfDriverFile::HasSection(const std::wstring& section) const {
    return SetupGetLineCountW(m_inf.get(), section.c_str()) >= 0;
}

std::vector<std::wstring> InfDriverFile::Manufacturers() const {
    std::vector<std::wstring> makers;
    INFCONTEXT line;
    for (BOOL found = SetupFindFirstLineW(m_inf.get(), L"Manufacturer", nullptr, &line); found;
         found = SetupFindNextLine(&line, &line)) {
        std::wstring maker = Field(line, 0);
        if (maker.empty()) maker = Field(line, 1);
        if (!maker.empty() && std::find(makers.begin(), makers.end(), maker) == makers.end())
            makers.push_back(maker);
    }
    return makers;
}

// The models section of a manufacturer line "Maker = Section, NTamd64, ...":
// the first decoration for this platform whose section exists, else the plain one.
std::wstring InfDriverFile::ModelsSection(const std::wstring& manufacturer) const {
    INFCONTEXT line;
    for (BOOL found = SetupFindFirstLineW(m_inf.get(), L"Manufacturer", nullptr, &line); found;
         found = SetupFindNextLine(&line, &line)) {
        std::wstring maker = Field(line, 0);
        const std::wstring section = Field(line, 1);
        if (maker.empty()) maker = section;
        if (!Spooler::SameName(maker, manufacturer) || section.empty()) continue;
        for (DWORD i = 2, count = SetupGetFieldCount(&line); i <= count; ++i) {
            const std::wstring decoration = Field(line, i);
            if (IsFor64BitWindows(decoration) && HasSection(section + L"." + decoration))
                return section + L"." + decoration;
        }
        return section;
    }
    return {};
}

bool InfDriverFile::Models(const std::wstring& manufacturer, std::vector<std::wstring>& models) const {
    models.clear();
    const std::wstring section = ModelsSection(manufacturer);
    if (section.empty()) {
        SetLastError(ERROR_NOT_FOUND);
        return false;
    }
    INFCONTEXT line;
    for (BOOL found = SetupFindFirstLineW(m_inf.get(), section.c_str(), nullptr, &line); found;
         found = SetupFindNextLine(&line, &line)) {
        std::wstring model = Field(line, 0);
        if (!model.empty() && std::find(models.begin(), models.end(), model) == models.end())
            models.push_back(model);
    }
    return true;
}

std::wstring InfDriverFile::InstallSection(const std::wstring& models, const std::wstring& model) const {
    INFCONTEXT line;
    for (BOOL found = SetupFindFirstLineW(m_inf.get(), models.c_str(), nullptr, &line); found;
         found = SetupFindNextLine(&line, &line)) {
        if (!Spooler::SameName(Field(line, 0), model)) continue;
        const std::wstring section = Field(line, 1);
        for (const wchar_t* suffix : {L".NTamd64", L".NT"})
            if (HasSection(section + suffix)) return section + suffix;
        return section;
    }
    return {};
}

std::wstring InfDriverFile::Key(const std::wstring& section, const wchar_t* key) const {
    INFCONTEXT line;
    if (SetupFindFirstLineW(m_inf.get(), section.c_str(), key, &line)) return Field(line, 1);
    // Printer sections share their driver files through a DataSection.
    if (!SetupFindFirstLineW(m_inf.get(), section.c_str(), L"DataSection", &line)) return {};
    const std::wstring data = Field(line, 1);
    if (data.empty() || !SetupFindFirstLineW(m_inf.get(), data.c_str(), key, &line)) return {};
    return Field(line, 1);
}

// A file named by the .inf: beside it, else already in the spooler's driver
// folder (where the system's own drivers live), else the name as given.
std::wstring InfDriverFile::FilePath(const std::wstring& name) const {
    if (name.empty()) return {};
    if (FileExists(m_folder + name)) return m_folder + name;
    wchar_t folder[MAX_PATH];
    DWORD needed = 0;
    if (GetPrinterDriverDirectoryW(nullptr, nullptr, 1, reinterpret_cast<BYTE*>(folder),
                                   sizeof folder, &needed)) {
        const std::wstring installed = std::wstring(folder) + L"\\3\\" + name;
        if (FileExists(installed)) return installed;
    }
    return name;
}

bool InfDriverFile::InstallDriver(const std::wstring& manufacturer, const std::wstring& model) const {
    const std::wstring models = ModelsSection(manufacturer);
    const std::wstring section = models.empty() ? std::wstring() : InstallSection(models, model);
    const std::wstring driverFile = section.empty() ? std::wstring() : Key(section, L"DriverFile");
    if (driverFile.empty()) {
        SetLastError(ERROR_UNKNOWN_PRINTER_DRIVER);
        return false;
    }
    std::wstring configFile = Key(section, L"ConfigFile");
    if (configFile.empty()) configFile = driverFile;
    std::wstring dataType = Key(section, L"DefaultDataType");
    if (dataType.empty()) dataType = L"RAW";
    std::wstring name = model, driverPath = FilePath(driverFile), dataPath = FilePath(Key(section, L"DataFile")),
                 configPath = FilePath(configFile), helpPath = FilePath(Key(section, L"HelpFile"));
    DRIVER_INFO_3W info{};
    info.cVersion = 3;
    info.pName = name.data();
    info.pDriverPath = driverPath.data();
    info.pDataFile = dataPath.empty() ? nullptr : dataPath.data();
    info.pConfigFile = configPath.data();
    info.pHelpFile = helpPath.empty() ? nullptr : helpPath.data();
    info.pDefaultDataType = dataType.data();
    return AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&info),
                               APD_COPY_NEW_FILES | APD_COPY_FROM_DIRECTORY) != FALSE;
}

}  // namespace kypm
