// Memory inside another process, for the control messages whose arguments are
// pointers: the control reads and writes there, the driver copies in and out.
#pragma once
#include <windows.h>
#include "foundation/UniqueHandle.h"
#include <cstddef>

namespace lpdriver {

class RemoteBuffer {
public:
    // Opens the process that owns the window and reserves `size` bytes in it.
    RemoteBuffer(HWND window, size_t size);
    ~RemoteBuffer();
    RemoteBuffer(const RemoteBuffer&) = delete;
    RemoteBuffer& operator=(const RemoteBuffer&) = delete;

    // The address as the other process sees it, `offset` bytes in.
    LPARAM At(size_t offset) const noexcept {
        return reinterpret_cast<LPARAM>(static_cast<BYTE*>(m_address) + offset);
    }
    size_t Size() const noexcept { return m_size; }
    void Write(size_t offset, const void* data, size_t size) const;
    void Read(size_t offset, void* data, size_t size) const;

private:
    void Check(size_t offset, size_t size) const;

    ky::UniqueHandle m_process;
    void* m_address = nullptr;
    size_t m_size;
};

}  // namespace lpdriver
