#include "tests/support/RefusedCalls.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <cstddef>
#include <vector>

namespace {

constexpr struct {
    RefusedCalls kind;
    unsigned int number;
} CALLS[] = {
// Newer processors lack the first forms.
#ifdef __NR_link
    {HARD_LINKS, __NR_link},
#endif
#ifdef __NR_rename
    {RENAMES, __NR_rename},
#endif
#ifdef __NR_renameat
    {RENAMES, __NR_renameat},
#endif
    {HARD_LINKS, __NR_linkat}, {RENAMES, __NR_renameat2},
    {FLUSHES, __NR_fsync},     {FLUSHES, __NR_fdatasync},
};

}  // namespace

bool RefuseCalls(unsigned int calls, int reason) {
    const unsigned int refusal = SECCOMP_RET_ERRNO | static_cast<unsigned int>(reason);
    std::vector<sock_filter> program = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(struct seccomp_data, nr))};
    for (const auto& call : CALLS) {
        if ((calls & call.kind) != 0) {
            program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call.number, 0, 1));
            program.push_back(BPF_STMT(BPF_RET | BPF_K, refusal));
        }
    }
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    const sock_fprog filter = {static_cast<unsigned short>(program.size()), program.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}
