// What the checks of program and document targets found, kept for one building
// of the item list: a catalogue names the same few programs many times, and
// within one building a file's answer does not change. Outside a building (a
// launch, a check of one item) nothing is kept, so a launch always asks afresh.
#pragma once
#include <windows.h>

#include <string>
#include <unordered_map>

#include "foundation/FoldCase.h"

class TargetCheckMemo {
public:
    struct TargetFile {
        bool passed = false;
        DWORD error = 0;
        bool isDocument = false;
    };
    struct BinaryType {
        bool known = false;
        DWORD type = 0;
        DWORD error = 0;
    };
    struct FileFacts {
        bool known = false;
        WIN32_FILE_ATTRIBUTE_DATA data{};
    };

    // Kept from Begin to End; a Begin while kept starts afresh.
    void Begin() {
        m_targets.clear();
        m_binaries.clear();
        m_facts.clear();
        m_active = true;
    }
    void End() noexcept {
        m_active = false;
        m_targets.clear();
        m_binaries.clear();
        m_facts.clear();
    }
    bool Active() const noexcept { return m_active; }

    const TargetFile* FindTarget(const wchar_t* path) const { return Find(m_targets, path); }
    void KeepTarget(const wchar_t* path, const TargetFile& found) {
        if (m_active) m_targets[Key(path)] = found;
    }
    const BinaryType* FindBinary(const wchar_t* path) const { return Find(m_binaries, path); }
    void KeepBinary(const wchar_t* path, const BinaryType& found) {
        if (m_active) m_binaries[Key(path)] = found;
    }

    const FileFacts* FindFacts(const wchar_t* path) const { return Find(m_facts, path); }
    void KeepFacts(const wchar_t* path, const FileFacts& found) {
        if (m_active) m_facts[Key(path)] = found;
    }

private:
    // File names compare without regard to case.
    static std::wstring Key(const wchar_t* path) { return ky::FoldCase(path); }
    template <typename T>
    const T* Find(const std::unordered_map<std::wstring, T>& kept, const wchar_t* path) const {
        if (!m_active || !path) return nullptr;
        const auto found = kept.find(Key(path));
        return found == kept.end() ? nullptr : &found->second;
    }

    bool m_active = false;
    std::unordered_map<std::wstring, TargetFile> m_targets;
    std::unordered_map<std::wstring, BinaryType> m_binaries;
    std::unordered_map<std::wstring, FileFacts> m_facts;
};
