#include "framework/Document.h"

#include <algorithm>

namespace fw {

void Document::AddView(View* view) {
    if (std::find(m_views.begin(), m_views.end(), view) == m_views.end()) m_views.push_back(view);
}

void Document::RemoveView(View* view) { std::erase(m_views, view); }

}  // namespace fw
