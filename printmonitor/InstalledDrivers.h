// The drivers installed on this machine, grouped by manufacturer the way the
// make and model page shows them. The spooler's own manufacturer comes first;
// a PostScript driver without one is asked through its PPD file's
// *Manufacturer entry; what is still unknown goes into the group that the
// holder names (its "Installed Drivers").
#pragma once
#include <string>
#include <utility>
#include <vector>

namespace kypm {

class InstalledDrivers {
public:
    static constexpr const wchar_t* kDefaultGroup = L"Installed Drivers";

    // Reads the spooler's drivers; false leaves the spooler's reason in the last error.
    bool Load(const std::wstring& group);
    // Every manufacturer once, in alphabetical order, the group of the unknown last.
    std::vector<std::wstring> Manufacturers() const;
    // The models of one manufacturer, in alphabetical order; false when it has none.
    bool Models(const std::wstring& manufacturer, std::vector<std::wstring>& models) const;
    // The manufacturer under which a driver is listed; the group when unknown.
    std::wstring ManufacturerOf(const std::wstring& driver) const;

    // The *Manufacturer entry of a PPD file; empty when the file has none.
    static std::wstring PpdManufacturer(const std::wstring& path);

private:
    std::vector<std::pair<std::wstring, std::wstring>> m_drivers;  // model, manufacturer
    std::wstring m_group;
};

}  // namespace kypm
