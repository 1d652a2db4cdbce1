#include "framework/View.h"

#include "framework/Document.h"

namespace fw {

View::~View() {
    if (m_pDocument) m_pDocument->RemoveView(this);
}

}  // namespace fw
