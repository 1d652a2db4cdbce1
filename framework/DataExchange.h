// The moving of values between a dialog's controls and its members (stands for
// CDataExchange and the DDX_ calls): one object per UpdateData, saving (controls
// to members) or loading (members to controls).
#pragma once
#include <windows.h>
#include <string>

namespace fw {

class DataExchange {
public:
    DataExchange(HWND dialog, bool save) noexcept : m_dialog(dialog), m_save(save) {}

    bool Saving() const noexcept { return m_save; }
    HWND Dialog() const noexcept { return m_dialog; }
    // A missing control fails the exchange; the rest still runs.
    bool Failed() const noexcept { return m_failed; }
    HWND Control(int id);

    // A check box as 0, 1 (or 2, indeterminate).
    void Check(int id, int& value);
    void Text(int id, std::wstring& value);
    // A list box's selected item: saving reads its text (empty without a
    // selection), loading selects the first item that starts with the value.
    void ListString(int id, std::wstring& value);
    // A group of radio buttons from its first: the index of the checked one, -1 for none.
    void Radio(int firstId, int& value);

private:
    HWND m_dialog;
    bool m_save;
    bool m_failed = false;
};

}  // namespace fw
