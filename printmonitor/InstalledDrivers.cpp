#include "printmonitor/InstalledDrivers.h"

#include <windows.h>

#include <algorithm>
#include <string_view>

#include "foundation/UniqueHandle.h"
#include "printmonitor/Spooler.h"

namespace kypm {

namespace {

bool Before(const std::wstring& a, const std::wstring& b) {
    return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_LESS_THAN;
}

// The head of a PPD file: its header entries come long before the options.
std::string ReadHead(const std::wstring& path, DWORD limit) {
    ky::UniqueFile file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return {};
    std::string data(limit, '\0');
    DWORD read = 0;
    if (!ReadFile(file.get(), data.data(), limit, &read, nullptr)) return {};
    data.resize(read);
    return data;
}

}  // namespace

bool InstalledDrivers::Load(const std::wstring& group) {
    m_group = group.empty() ? std::wstring(kDefaultGroup) : group;
    m_drivers.clear();
    std::vector<Spooler::Driver> drivers;
    if (!Spooler::Drivers(drivers)) return false;
    for (const Spooler::Driver& driver : drivers) {
        std::wstring maker = driver.manufacturer;
        if (maker.empty()) maker = PpdManufacturer(driver.dataFile);
        if (maker.empty()) maker = m_group;
        m_drivers.emplace_back(driver.name, maker);
    }
    return true;
}

std::vector<std::wstring> InstalledDrivers::Manufacturers() const {
    std::vector<std::wstring> makers;
    bool groupUsed = false;
    for (const auto& [model, maker] : m_drivers) {
        if (maker == m_group) {
            groupUsed = true;
            continue;
        }
        bool known = std::any_of(makers.begin(), makers.end(),
                                 [&](const std::wstring& m) { return Spooler::SameName(m, maker); });
        if (!known) makers.push_back(maker);
    }
    std::sort(makers.begin(), makers.end(), Before);
    if (groupUsed) makers.push_back(m_group);
    return makers;
}

bool InstalledDrivers::Models(const std::wstring& manufacturer,
                              std::vector<std::wstring>& models) const {
    models.clear();
    for (const auto& [model, maker] : m_drivers)
        if (Spooler::SameName(maker, manufacturer)) models.push_back(model);
    std::sort(models.begin(), models.end(), Before);
    return !models.empty();
}

std::wstring InstalledDrivers::ManufacturerOf(const std::wstring& driver) const {
    for (const auto& [model, maker] : m_drivers)
        if (Spooler::SameName(model, driver)) return maker;
    return m_group;
}

std::wstring InstalledDrivers::PpdManufacturer(const std::wstring& path) {
    if (path.empty()) return {};
    const std::string head = ReadHead(path, 64 * 1024);
    if (head.rfind("*PPD-Adobe", 0) != 0) return {};
    static constexpr std::string_view kKey = "\n*Manufacturer:";
    const size_t at = head.find(kKey);
    if (at == std::string::npos) return {};
    const size_t open = head.find('"', at + kKey.size());
    const size_t eol = head.find('\n', at + kKey.size());
    if (open == std::string::npos || open > eol) return {};
    const size_t close = head.find('"', open + 1);
    if (close == std::string::npos || close > eol) return {};
    const std::string value = head.substr(open + 1, close - open - 1);
    if (value.empty()) return {};
    // PPD files are written in ISO Latin-1 unless they say otherwise.
    std::wstring wide(value.size(), L'\0');
    int n = MultiByteToWideChar(28591, 0, value.data(), static_cast<int>(value.size()),
                                wide.data(), static_cast<int>(wide.size()));
    wide.resize(n > 0 ? n : 0);
    return wide;
}

}  // namespace kypm
