// The run's log file, standalone: HTML (a table row per answered situation,
// between the head and the tail of the template) or tab-separated text. Each
// entry is written and flushed at once, so a crash loses nothing; the tail is
// written when the log closes. Entries that would pass the byte limit are
// dropped, and one last entry then says that the log is full.
#pragma once
#include <windows.h>
#include <cstdint>
#include <memory>
#include <string>

#include "foundation/UniqueHandle.h"
#include "monitor/KYbpmLogEntry.h"
#include "monitor/KYbpmSettings.h"

class KYbpmLogFile {
public:
    // Null with selfCode 0 when the settings ask for no file (no name, or a
    // form other than HTML and text); null with a self code when it cannot be made.
    static std::unique_ptr<KYbpmLogFile> open(const KYbpmSettings& settings, int& selfCode);
    ~KYbpmLogFile();
    KYbpmLogFile(const KYbpmLogFile&) = delete;
    KYbpmLogFile& operator=(const KYbpmLogFile&) = delete;

    // False when the entry was not written: the log is full, or the write failed
    // (selfCode then says so).
    bool append(const KYbpmLogEntry& entry, int& selfCode);
    bool full() const { return m_bFull; }

private:
    KYbpmLogFile(ky::UniqueFile file, uint32_t form, uint32_t limit);
    bool write(const std::string& bytes);
    std::string htmlRow(const KYbpmLogEntry& entry) const;
    std::string textLine(const KYbpmLogEntry& entry) const;

    ky::UniqueFile m_file;
    uint32_t m_nForm;
    uint64_t m_nLimit;
    uint64_t m_nWritten = 0;
    std::string m_tail;
    std::string m_fullEntry;
    bool m_bFull = false;
};
