#include "tools/lpdriver/RemoteBuffer.h"
#include "tools/lpdriver/DriverFailure.h"

namespace lpdriver {

RemoteBuffer::RemoteBuffer(HWND window, size_t size) : m_size(size) {
    DWORD processId = 0;
    if (!::GetWindowThreadProcessId(window, &processId)) ThrowNotFound(L"the window is gone");
    m_process.reset(::OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE |
                                      PROCESS_QUERY_LIMITED_INFORMATION,
                                  FALSE, processId));
    if (!m_process) ThrowWin32(L"OpenProcess for memory access");
    m_address = ::VirtualAllocEx(m_process.get(), nullptr, size, MEM_COMMIT | MEM_RESERVE,
                                 PAGE_READWRITE);
    if (m_address == nullptr) ThrowWin32(L"VirtualAllocEx");
}

RemoteBuffer::~RemoteBuffer() {
    ::VirtualFreeEx(m_process.get(), m_address, 0, MEM_RELEASE);
}

void RemoteBuffer::Write(size_t offset, const void* data, size_t size) const {
    Check(offset, size);
    SIZE_T done = 0;
    if (!::WriteProcessMemory(m_process.get(), static_cast<BYTE*>(m_address) + offset, data, size,
                              &done) || done != size)
        ThrowWin32(L"WriteProcessMemory");
}

void RemoteBuffer::Read(size_t offset, void* data, size_t size) const {
    Check(offset, size);
    SIZE_T done = 0;
    if (!::ReadProcessMemory(m_process.get(), static_cast<BYTE*>(m_address) + offset, data, size,
                             &done) || done != size)
        ThrowWin32(L"ReadProcessMemory");
}

void RemoteBuffer::Check(size_t offset, size_t size) const {
    if (offset > m_size || size > m_size - offset)
        throw DriverFailure{kExitWin32, L"a remote copy would leave its buffer"};
}

}  // namespace lpdriver
