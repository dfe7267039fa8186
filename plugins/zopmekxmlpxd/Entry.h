// What every entry is made of: its declaration, and the way from its body to a result and an error.
#pragma once

#include <exception>
#include <new>

#include "CostCountCommon/include/XmlPxdFunctions.h"

// Declares every entry with the type that the contract gives it, so that a definition that differs
// does not compile.
#define XMLPXD_DECLARE(slot, name, missing) \
    extern "C" __attribute__((visibility("default"))) XmlPxd##name name;
XMLPXD_ENTRIES(XMLPXD_DECLARE)
#undef XMLPXD_DECLARE

// Ends a call with an error.
class Refusal : public std::exception {
public:
    explicit Refusal(XmlPxdError error) : m_error(error) {}
    XmlPxdError Error() const { return m_error; }
    const char* what() const noexcept override { return "XML parser plug-in: call refused"; }

private:
    XmlPxdError m_error;
};

inline void Require(bool condition, XmlPxdError error) {
    if (!condition) {
        throw Refusal(error);
    }
}

// The result of `body`, which may set *err itself, or `failure` with the reason in *err.
template <typename Result, typename Body>
Result Answer(unsigned int* err, Result failure, Body body) {
    try {
        *err = XMLPXD_OK;
        return body();
    } catch (const Refusal& refusal) {
        *err = refusal.Error();
    } catch (const std::bad_alloc&) {
        *err = XMLPXD_OUT_OF_MEMORY;
    } catch (const std::exception&) {
        // The parser library throws nothing else but what it finds wrong in a path expression.
        *err = XMLPXD_INVALID_ARGUMENT;
    }
    return failure;
}

// For entries whose result is the error.
template <typename Body>
unsigned int Outcome(Body body) {
    unsigned int err = XMLPXD_OK;
    Answer(&err, 0, [&body] {
        body();
        return 0;
    });
    return err;
}
