#include "tests/support/DebugTexts.h"

#include <cstring>

namespace lptest {

namespace {
// The buffer's layout: the sender's process id, then its text (ANSI, null-terminated).
constexpr DWORD kBufferSize = 4096;
}  // namespace

DebugTexts::DebugTexts() {
    m_mutex.reset(CreateMutexW(nullptr, FALSE, L"DBWinMutex"));
    m_mapping.reset(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, kBufferSize, L"DBWIN_BUFFER"));
    if (!m_mapping || GetLastError() == ERROR_ALREADY_EXISTS) return;  // another listener holds it
    m_bufferReady.reset(CreateEventW(nullptr, FALSE, TRUE, L"DBWIN_BUFFER_READY"));
    m_dataReady.reset(CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_DATA_READY"));
    m_stop.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    m_view.reset(MapViewOfFile(m_mapping.get(), FILE_MAP_READ, 0, 0, kBufferSize));
    if (!m_mutex || !m_bufferReady || !m_dataReady || !m_stop || !m_view) return;
    m_thread = std::thread([this] { Listen(); });
}

DebugTexts::~DebugTexts() {
    if (m_thread.joinable()) {
        SetEvent(m_stop.get());
        m_thread.join();
    }
}

void DebugTexts::Listen() {
    const HANDLE waits[] = {m_stop.get(), m_dataReady.get()};
    while (WaitForMultipleObjects(2, waits, FALSE, INFINITE) == WAIT_OBJECT_0 + 1) {
        const auto* buffer = static_cast<const char*>(m_view.get());
        DWORD processId = 0;
        memcpy(&processId, buffer, sizeof processId);
        const char* text = buffer + sizeof processId;
        std::string received(text, strnlen(text, kBufferSize - sizeof processId));
        {
            std::lock_guard<std::mutex> hold(m_lock);
            m_texts.emplace_back(processId, std::move(received));
        }
        SetEvent(m_bufferReady.get());
    }
}

std::vector<std::string> DebugTexts::From(DWORD processId) const {
    std::lock_guard<std::mutex> hold(m_lock);
    std::vector<std::string> texts;
    for (const auto& [sender, text] : m_texts)
        if (sender == processId) texts.push_back(text);
    return texts;
}

bool DebugTexts::AwaitText(DWORD processId, const std::vector<std::string>& parts, DWORD timeoutMs) const {
    const ULONGLONG until = GetTickCount64() + timeoutMs;
    for (;;) {
        for (const std::string& text : From(processId)) {
            bool all = true;
            for (const std::string& part : parts) all = all && text.find(part) != std::string::npos;
            if (all) return true;
        }
        if (GetTickCount64() > until) return false;
        Sleep(100);
    }
}

}  // namespace lptest
