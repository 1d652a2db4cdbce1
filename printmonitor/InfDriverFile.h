// A printer driver information file (.inf) read through SetupAPI: its
// manufacturers, their models, and the installation of one model's driver
// with the spooler. Models sections decorated for 64-bit Windows
// ("Models.NTamd64") are preferred to the plain ones, as Windows does.
#pragma once
#include <windows.h>
#include <string>
#include <vector>

#include "foundation/UniqueHandle.h"

namespace kypm {

class InfDriverFile {
public:
    // False leaves the reason in the last error (ERROR_FILE_NOT_FOUND, a
    // SetupAPI syntax error, ...).
    bool Open(const std::wstring& path);
    std::vector<std::wstring> Manufacturers() const;
    // False with ERROR_NOT_FOUND when the file has no such manufacturer.
    bool Models(const std::wstring& manufacturer, std::vector<std::wstring>& models) const;
    // Installs the driver of that model under the model's name: its files are
    // taken from beside the .inf, else from the spooler's driver folder.
    bool InstallDriver(const std::wstring& manufacturer, const std::wstring& model) const;

private:
    std::wstring ModelsSection(const std::wstring& manufacturer) const;
    std::wstring InstallSection(const std::wstring& models, const std::wstring& model) const;
    std::wstring Key(const std::wstring& section, const wchar_t* key) const;
    std::wstring FilePath(const std::wstring& name) const;
    bool HasSection(const std::wstring& section) const;

    ky::UniqueHInf m_inf;
    std::wstring m_folder;
};

}  // namespace kypm
