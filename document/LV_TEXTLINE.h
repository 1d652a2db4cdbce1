// One item of the document: a published application as the list shows it. The
// strings are the record's own heap copies (malloc), released with free by
// FreeTextLine; a record taken over from the catalogue keeps the catalogue's copies.
#pragma once
#include <cstdint>

struct LV_TEXTLINE {
    uint8_t attributes = 0;     // file attribute byte of the target; 0 until facts are gathered
    int64_t accessed = 0;       // seconds since 1970
    int64_t created = 0;
    int64_t modified = 0;
    uint64_t size = 0;
    wchar_t* path = nullptr;        // target path; the Location column
    wchar_t* fileName = nullptr;    // name and extension cut from path
    wchar_t* name = nullptr;        // display name: the key of the item, compared without case
    wchar_t* baseName = nullptr;    // fileName up to its first '.'
    wchar_t* type = nullptr;        // the Type column, from the catalogue
    wchar_t* parameters = nullptr;  // command-line parameters, or null
    wchar_t* startDir = nullptr;    // working directory of the started process, or null
    wchar_t* iconPath = nullptr;    // file that holds the icon, or null
    int32_t iconIndex = 0;
    bool isDocument = false;        // the target is not itself an executable
    int32_t showState = 1;          // 1 normal, 2 minimized, 3 maximized
};

// The checks that building a list or a launch does (the application's m_nItemFillMask).
inline constexpr uint32_t kCheckBinary = 1;    // the binary type of the target or its handler
inline constexpr uint32_t kCheckStartDir = 2;  // the start directory
inline constexpr uint32_t kCheckFacts = 8;     // the file facts of the Details view

// Frees the eight strings and the record; the pointer becomes null.
void FreeTextLine(LV_TEXTLINE*& item) noexcept;
// A heap copy of a text (malloc), or null for a null text or exhausted memory.
wchar_t* DuplicateText(const wchar_t* text) noexcept;
// True for null, empty, or only white space.
bool IsBlankText(const wchar_t* text) noexcept;
