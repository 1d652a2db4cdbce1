// The texts that the programs of the prefix send with OutputDebugStringW, received
// as the system's debug monitor receives them: the shared buffer DBWIN_BUFFER, its
// two events and the mutex DBWinMutex. The program's monitor sends each situation it
// answers this way; inside a server session, which keeps no log file, that is the
// only trace of a situation the test can read. Only one listener of the prefix can
// hold the names at a time.
#pragma once
#include <windows.h>

#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "foundation/UniqueHandle.h"

namespace lptest {

namespace detail {
inline void UnmapView(void* view) noexcept { ::UnmapViewOfFile(view); }
}  // namespace detail
using UniqueView = ky::UniqueAny<void*, detail::UnmapView>;

class DebugTexts {
public:
    // Listening from here on; listening() says whether the names could be taken.
    DebugTexts();
    // Stops listening: programs that send later no longer wait for the buffer.
    ~DebugTexts();
    DebugTexts(const DebugTexts&) = delete;
    DebugTexts& operator=(const DebugTexts&) = delete;

    bool listening() const { return m_thread.joinable(); }
    // The texts received so far from the process, in their order.
    std::vector<std::string> From(DWORD processId) const;
    // Waits up to the limit for a text of the process that holds every one of the parts.
    bool AwaitText(DWORD processId, const std::vector<std::string>& parts, DWORD timeoutMs) const;

private:
    void Listen();

    ky::UniqueHandle m_mutex, m_mapping, m_bufferReady, m_dataReady, m_stop;
    UniqueView m_view;
    mutable std::mutex m_lock;
    std::vector<std::pair<DWORD, std::string>> m_texts;
    std::thread m_thread;
};

}  // namespace lptest
