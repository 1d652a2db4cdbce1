// The product brander: the product's identity texts and icons by attribute
// number, from the brander's own resources, so that one build can carry another
// product's name without touching the program.
#pragma once
#include <windows.h>

class KYpbr {
public:
    // Attribute numbers the program uses.
    enum Attribute {
        kCompany = 0, kSuite = 1, kProduct = 2, kCopyright = 3,
        kHelpBaseName = 6, kLargeIcon = 7, kSmallIcon = 8,
        kNodeManagerName = 18, kLogonManagerName = 19, kTitle = 20, kSupport = 29
    };
    // Resource ids: text n is string kTextBase + n, image n is icon kImageBase + n.
    static constexpr UINT kTextBase = 7000;
    static constexpr UINT kImageBase = 7000;

    // The one brander of the process (created on first call); version 2 is the only one.
    static KYpbr* create(int version);
    static void destroy();

    virtual ~KYpbr() = default;
    // An image by attribute number (an icon handle, shared: not to be destroyed), or null.
    virtual HANDLE loadImage(int number, int width, int height, UINT flags);
    // A text by attribute number into buffer; the buffer is returned, empty when
    // the attribute has no text.
    virtual wchar_t* loadText(int number, wchar_t* buffer, int capacity);

protected:
    explicit KYpbr(HMODULE module) : m_hModule(module) {}

private:
    HMODULE m_hModule;
};
