// A lock that a fork waits for.
#pragma once

#include <mutex>

// To be held while the C library's time zone and message catalogue are in use. These have locks of
// their own, which a child would inherit locked, for ever, when it is forked while another thread
// is inside; so the fork waits until none of this plug-in's threads is.
std::mutex& ForkLock();
