#include "tools/lpdriver/probe/MenuProbeChannel.h"
#include <cstring>

namespace lpdriver {

namespace {

// The section starts with a mark, the count of records and the bytes they take.
// Each record: id, flags, the length of path and text in characters, then both texts.
constexpr uint32_t kMark = 0x504D504C;  // "LPMP"
constexpr uint32_t kEnabled = 1, kChecked = 2;

void Put(std::vector<BYTE>& bytes, const void* data, size_t size) {
    const BYTE* from = static_cast<const BYTE*>(data);
    bytes.insert(bytes.end(), from, from + size);
}

void PutNumber(std::vector<BYTE>& bytes, uint32_t value) { Put(bytes, &value, sizeof value); }

class Reader {
public:
    Reader(const void* data, size_t size) noexcept : m_data(static_cast<const BYTE*>(data)), m_size(size) {}
    bool Take(void* to, size_t size) noexcept {
        if (size > m_size - m_at) return false;
        std::memcpy(to, m_data + m_at, size);
        m_at += size;
        return true;
    }
    bool Number(uint32_t& value) noexcept { return Take(&value, sizeof value); }
    bool Text(uint32_t length, std::wstring& text) {
        if (length > (m_size - m_at) / sizeof(wchar_t)) return false;
        text.resize(length);
        return Take(text.data(), length * sizeof(wchar_t));
    }

private:
    const BYTE* m_data;
    size_t m_size;
    size_t m_at = 0;
};

bool DecodeRecord(Reader& reader, MenuItemRecord& record) {
    uint32_t flags = 0, pathLength = 0, textLength = 0;
    if (!reader.Number(record.id) || !reader.Number(flags) || !reader.Number(pathLength) ||
        !reader.Number(textLength))
        return false;
    record.enabled = (flags & kEnabled) != 0;
    record.checked = (flags & kChecked) != 0;
    return reader.Text(pathLength, record.path) && reader.Text(textLength, record.text);
}

}  // namespace

std::wstring MenuProbeChannel::SectionName(DWORD driverProcessId) {
    return L"Local\\lpdriver-menuprobe-" + std::to_wstring(driverProcessId);
}

bool MenuProbeChannel::Encode(const std::vector<MenuItemRecord>& records, void* section, size_t capacity) {
    std::vector<BYTE> body;
    for (const MenuItemRecord& record : records) {
        PutNumber(body, record.id);
        PutNumber(body, (record.enabled ? kEnabled : 0) | (record.checked ? kChecked : 0));
        PutNumber(body, static_cast<uint32_t>(record.path.size()));
        PutNumber(body, static_cast<uint32_t>(record.text.size()));
        Put(body, record.path.data(), record.path.size() * sizeof(wchar_t));
        Put(body, record.text.data(), record.text.size() * sizeof(wchar_t));
    }
    std::vector<BYTE> bytes;
    PutNumber(bytes, kMark);
    PutNumber(bytes, static_cast<uint32_t>(records.size()));
    PutNumber(bytes, static_cast<uint32_t>(body.size()));
    if (bytes.size() + body.size() > capacity) return false;
    std::memcpy(section, bytes.data(), bytes.size());
    std::memcpy(static_cast<BYTE*>(section) + bytes.size(), body.data(), body.size());
    return true;
}

bool MenuProbeChannel::Decode(const void* section, size_t capacity, std::vector<MenuItemRecord>& records) {
    Reader head(section, capacity);
    uint32_t mark = 0, count = 0, size = 0;
    if (!head.Number(mark) || !head.Number(count) || !head.Number(size) || mark != kMark) return false;
    const size_t headSize = 3 * sizeof(uint32_t);
    if (size > capacity - headSize) return false;
    Reader body(static_cast<const BYTE*>(section) + headSize, size);
    records.clear();
    for (uint32_t i = 0; i < count; ++i) {
        MenuItemRecord record;
        if (!DecodeRecord(body, record)) return false;
        records.push_back(std::move(record));
    }
    return true;
}

std::wstring MenuProbeChannel::Explain(DWORD status) {
    switch (status) {
    case kProbeRead: return L"read";
    case kProbeNoChannel: return L"the probe could not open the driver's shared memory";
    case kProbeNoWindow: return L"the window is gone";
    case kProbeNoMenu: return L"the window has no menu bar";
    case kProbeFull: return L"the menu does not fit the driver's shared memory";
    default: return L"the probe failed in the program (status " + std::to_wstring(status) + L")";
    }
}

}  // namespace lpdriver
