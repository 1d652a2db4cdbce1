// A colour swatch: an owner-drawn push button of the dialog that shows one solid
// colour. Its window text names the colour, so that a screen reader (and a test
// from outside) can tell what it shows.
#pragma once
#include "foundation/UniqueHandle.h"
#include "framework/WindowImpl.h"

class KYstdButtonColor : public fw::WindowImpl {
public:
    KYstdButtonColor() noexcept = default;

    // Takes over the button of that id of the dialog (again at each showing).
    bool AttachTo(HWND dialog, int id);
    COLORREF Color() const noexcept { return m_crColor; }
    // The swatch shows the colour at its next painting; redraw paints it now.
    void SetColor(COLORREF color, bool redraw);

protected:
    bool OnReflectedMessage(UINT msg, WPARAM w, LPARAM l, LRESULT& result) override;

private:
    HBRUSH Brush();
    void Draw(const DRAWITEMSTRUCT& item);

    COLORREF m_crColor = 0;
    ky::UniqueHBrush m_brush;
    COLORREF m_crBrush = 0;  // the colour m_brush was made with
};
