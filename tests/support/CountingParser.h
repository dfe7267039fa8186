// A parser plug-in for tests: it forwards every call to the one that was built, counts the handles
// that were not given back, and fails the call it is told to. Its path is the compile definition
// COUNTING_PARSER of every test. For one thread.
#pragma once

#include <string>

class CountingParser {
public:
    // Forgets all calls and failures; the handles that are out stay counted.
    static void Reset();

    // An error that is none: the call gives nothing and error 0. Calls whose result is the error
    // are then neither counted nor failed.
    static constexpr unsigned int QUIETLY = 0;

    // Makes the nth call from now of that entry, or of any entry but DeleteNode and DeleteDoc when
    // the name is empty, end with the error instead of being forwarded. Replaces an earlier plan.
    static void Fail(const std::string& entry, int nth, unsigned int error);
    // Whether that call has come.
    static bool HasFailed();

    static int CallCount(const std::string& entry);

    // Handles that were given out and not given back. A node that was given out twice counts twice.
    static int LiveNodes();
    static int LiveDocuments();
    // How often a handle was given back that was not out.
    static int StrayReleases();
};
