// As CoreFoundation/CoreFoundation.h beside this file: declarations for a type-check, of the
// kernel's records only the members that are used.
#pragma once

#include <sys/types.h>

using u_int = unsigned int;

enum { CTL_KERN = 1, KERN_PROC = 14, KERN_PROC_ALL = 0, MAXCOMLEN = 16 };

struct extern_proc {
    char p_stat;
    pid_t p_pid;
    char p_comm[MAXCOMLEN + 1];
};

struct eproc {
    struct {
        uid_t p_ruid;
    } e_pcred;
};

struct kinfo_proc {
    extern_proc kp_proc;
    eproc kp_eproc;
};

extern "C" int sysctl(int* name, u_int parts, void* old, size_t* oldSize, void* value, size_t size);
