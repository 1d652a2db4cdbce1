// A view of a section of shared memory, unmapped with its owner.
#pragma once
#include <windows.h>

namespace lpdriver {

class MappedView {
public:
    MappedView(HANDLE section, DWORD access, size_t size) noexcept
        : m_address(::MapViewOfFile(section, access, 0, 0, size)) {}
    ~MappedView() {
        if (m_address) ::UnmapViewOfFile(m_address);
    }
    MappedView(const MappedView&) = delete;
    MappedView& operator=(const MappedView&) = delete;

    void* get() const noexcept { return m_address; }
    explicit operator bool() const noexcept { return m_address != nullptr; }

private:
    void* m_address;
};

}  // namespace lpdriver
