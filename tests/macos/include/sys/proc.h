// As CoreFoundation/CoreFoundation.h beside this folder: declarations for a type-check.
#pragma once

enum { SZOMB = 5 };
