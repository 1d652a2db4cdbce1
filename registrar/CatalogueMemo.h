// What the last reading of the catalogue found in each application key, by the
// key's name and the time it was last written. A refresh after one changed entry
// asks the registry again only for keys written since: the others answer from
// here, through the same checks as a first reading. Keys with subkeys are never
// kept: a change of a user's or a group's override does not touch the time of
// the application key itself.
#pragma once
#include <windows.h>

#include <string>
#include <unordered_map>

#include "registrar/AppKeyValues.h"

class CatalogueMemo {
public:
    // A reading begins: what the last one kept can be recalled until it ends.
    void Begin();
    // The reading ended; whatever was not recalled or kept again is forgotten.
    // A reading that failed keeps nothing, since its keys may be half read.
    void End(bool whole);

    // The values of that key as the last reading found them, when it has not
    // been written since; null otherwise.
    const AppKeyValues* Recall(const wchar_t* name, const FILETIME& written);
    // The values of a key just read, kept for the next reading if they can be
    // trusted then; the values to read the record from, in either case.
    const AppKeyValues* Keep(const wchar_t* name, const FILETIME& written, DWORD subkeys, AppKeyValues&& values);

    size_t Count() const noexcept { return m_kept.size(); }

private:
    struct Entry {
        FILETIME written{};
        AppKeyValues values;
    };
    using Map = std::unordered_map<std::wstring, Entry>;
    bool Trusted(const FILETIME& written) const noexcept;

    Map m_last;    // the last reading's, until recalled
    Map m_kept;    // this reading's
    ULONGLONG m_began = 0;
    AppKeyValues m_scratch;  // values read but not kept
};
