#include "tests/support/Environment.h"

#include <cstdlib>

namespace {

void Set(const char* name, const char* value) {
    if (value != nullptr) {
        setenv(name, value, 1);
    } else {
        unsetenv(name);
    }
}

}  // namespace

ScopedVariable::ScopedVariable(const char* name, const char* value) : m_name(name) {
    if (const char* earlier = std::getenv(name)) {
        m_earlier = earlier;
    }
    Set(name, value);
}

ScopedVariable::~ScopedVariable() {
    Set(m_name.c_str(), m_earlier ? m_earlier->c_str() : nullptr);
}
