// A compiled help file read the way the help viewer reads it: through the
// system's InfoTech storage (ITStorage of itss.dll), one stream per file inside.
#pragma once
#include <windows.h>
#include <objidl.h>

#include <string>

namespace lptest {

class ChmStorage {
public:
    // Opens the file; ok() tells whether that worked, error() the result if not.
    explicit ChmStorage(const std::wstring& path);
    ~ChmStorage();
    ChmStorage(const ChmStorage&) = delete;
    ChmStorage& operator=(const ChmStorage&) = delete;

    bool ok() const { return m_storage != nullptr; }
    HRESULT error() const { return m_error; }
    // Whether a file of that name ("about.htm", "#IVB") is inside.
    bool Has(const std::wstring& name) const;
    // The whole file, as bytes; empty when it is not there.
    std::string Read(const std::wstring& name) const;

private:
    IStorage* m_storage = nullptr;
    HRESULT m_error = S_OK;
    bool m_comStarted = false;
};

}  // namespace lptest
