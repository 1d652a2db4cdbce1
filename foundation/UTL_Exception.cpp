#include "foundation/UTL_Exception.h"

UTL_Exception::UTL_Exception(int32_t code) noexcept : m_iCode(code) {}

UTL_Exception::~UTL_Exception() = default;
