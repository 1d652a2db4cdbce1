// Small text steps of the registrar that work in caller-given buffers, so that the
// catalogue and store readers allocate nothing but the strings they keep.
#pragma once
#include <cstddef>

namespace registrar_text {

// The extension of the file name of a path, dot included ("" when there is none),
// as the C runtime's path splitting gives it.
const wchar_t* ExtensionOf(const wchar_t* path) noexcept;
// Length of the drive and directory part of a path (up to its last separator).
size_t DirectoryLength(const wchar_t* path) noexcept;
// Copies format into out with its first "%s" replaced by text and "%%" made "%";
// false when the result doesn't fit (out then holds an empty string).
bool FormatOneText(const wchar_t* format, const wchar_t* text, wchar_t* out, size_t capacity) noexcept;
// Removes blanks at both ends, in place.
void TrimBlanks(wchar_t* text) noexcept;
// Copies text into out; false when it doesn't fit (out then holds an empty string).
bool CopyText(const wchar_t* text, wchar_t* out, size_t capacity) noexcept;

}  // namespace registrar_text
