// The least registry work a catalogue read can do: every entry of the catalogue
// opened once and every one of its values read once, nothing interpreted. The
// program's own read is compared with this.
#include <windows.h>

#include <cstdio>
#include <vector>

#include "bench/BenchClock.h"
#include "foundation/UniqueHandle.h"

namespace {

struct Tally {
    DWORD entries = 0;
    DWORD values = 0;
    size_t bytes = 0;
};

// Every value of one entry, names and data, into buffers sized once for the whole read.
bool ReadEntry(HKEY entry, std::vector<wchar_t>& name, std::vector<BYTE>& data, Tally& tally) {
    for (DWORD index = 0;; ++index) {
        DWORD nameChars = static_cast<DWORD>(name.size());
        DWORD dataBytes = static_cast<DWORD>(data.size());
        DWORD type = 0;
        const LONG rc = RegEnumValueW(entry, index, name.data(), &nameChars, nullptr, &type, data.data(),
                                      &dataBytes);
        if (rc == ERROR_NO_MORE_ITEMS) return true;
        if (rc != ERROR_SUCCESS) return false;
        ++tally.values;
        tally.bytes += dataBytes;
    }
}

bool ReadCatalogue(Tally& tally) {
    ky::UniqueHKey catalogue;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, bench::kCatalogueKey, 0, KEY_READ, catalogue.put()) != ERROR_SUCCESS)
        return false;
    DWORD subkeys = 0, longestSubkey = 0;
    if (RegQueryInfoKeyW(catalogue.get(), nullptr, nullptr, nullptr, &subkeys, &longestSubkey, nullptr, nullptr,
                         nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
        return false;
    std::vector<wchar_t> subkeyName(longestSubkey + 1);
    std::vector<wchar_t> valueName(16384);
    std::vector<BYTE> data(64 * 1024);
    for (DWORD index = 0; index < subkeys; ++index) {
        DWORD chars = static_cast<DWORD>(subkeyName.size());
        if (RegEnumKeyExW(catalogue.get(), index, subkeyName.data(), &chars, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS)
            return false;
        ky::UniqueHKey entry;
        if (RegOpenKeyExW(catalogue.get(), subkeyName.data(), 0, KEY_QUERY_VALUE, entry.put()) != ERROR_SUCCESS)
            return false;
        if (!ReadEntry(entry.get(), valueName, data, tally)) return false;
        ++tally.entries;
    }
    return true;
}

}  // namespace

int wmain() {
    Tally tally;
    bench::Stopwatch watch;
    const bool read = ReadCatalogue(tally);
    const double ms = watch.ElapsedMs();
    if (!read) {
        std::printf("error=the catalogue could not be read\n");
        return 1;
    }
    std::printf("entries=%lu\nvalues=%lu\nbytes=%zu\nread_ms=%.3f\n", tally.entries, tally.values, tally.bytes, ms);
    return 0;
}
