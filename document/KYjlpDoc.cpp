#include "document/KYjlpDoc.h"

bool KYjlpDoc::OnNewDocument() { return fw::Document::OnNewDocument(); }
