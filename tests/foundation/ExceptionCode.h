// The code of the UTL_Exception an operation throws, 0 when it throws none.
#pragma once
#include "foundation/UTL_Exception.h"

namespace lptest {

template <typename Operation>
int CodeOf(Operation operation) {
    try {
        operation();
    } catch (const UTL_Exception& e) {
        return e.Code();
    }
    return 0;
}

}  // namespace lptest
