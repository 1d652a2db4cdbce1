// The document of Launch Panel: the list of published applications the user may
// start, built from the catalogue and kept in step with it.
#pragma once
#include "framework/Document.h"

class KYjlpDoc : public fw::Document {
public:
    KYjlpDoc() = default;
    ~KYjlpDoc() override = default;

    // The list is built from the catalogue by the document's item model; an empty
    // document is what the frame and the view need to stand.
    bool OnNewDocument() override;
};
