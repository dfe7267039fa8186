// Included before every file of the type-check: what the C library's headers of another system
// declare and macOS lacks, or has only to fail, must not be named.
#include <fcntl.h>
#include <locale.h>
#include <poll.h>
#include <pthread.h>
#include <sched.h>
#include <semaphore.h>
#include <signal.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>
#include <wchar.h>

// Files.
#pragma clang poison copy_file_range fallocate posix_fallocate posix_fadvise readahead sendfile
#pragma clang poison statx sync_file_range syncfs fdatasync euidaccess st_atim st_mtim
#pragma clang poison st_ctim open64 stat64 renameat2 getdents inotify_init inotify_init1 pipe2 dup3
#pragma clang poison fexecve close_range
// Semaphores, threads and clocks.
#pragma clang poison sem_init sem_destroy sem_getvalue sem_timedwait sem_clockwait
#pragma clang poison pthread_mutex_timedlock pthread_rwlock_timedrdlock pthread_rwlock_timedwrlock
#pragma clang poison pthread_timedjoin_np pthread_tryjoin_np pthread_condattr_setclock
#pragma clang poison pthread_mutexattr_setrobust pthread_mutex_consistent
#pragma clang poison pthread_barrier_init pthread_barrier_wait pthread_spin_init pthread_spin_lock
#pragma clang poison pthread_setaffinity_np sched_setaffinity sched_getcpu gettid clock_nanosleep
#pragma clang poison timer_create mq_open
// Processes, signals and events.
#pragma clang poison prctl unshare execvpe sigqueue sigwaitinfo sigtimedwait signalfd ppoll
#pragma clang poison epoll_create epoll_create1 epoll_wait eventfd timerfd_create memfd_create
#pragma clang poison posix_spawn_file_actions_addclosefrom_np setresuid setresgid getresuid
#pragma clang poison getresgid accept4 mremap getauxval
// The environment, text and errors.
#pragma clang poison secure_getenv clearenv getrandom program_invocation_name strerrorname_np
#pragma clang poison strerrordesc_np strchrnul memrchr mempcpy qsort_r canonicalize_file_name
// Constants.
#undef O_TMPFILE
#undef O_PATH
#undef O_DIRECT
#undef PTHREAD_MUTEX_ROBUST
#undef F_OFD_SETLK
#undef F_OFD_SETLKW
#undef F_SETPIPE_SZ
#undef F_GETPIPE_SZ
#undef CLOCK_BOOTTIME
#undef CLOCK_MONOTONIC_COARSE
#undef CLOCK_REALTIME_COARSE
#undef SOCK_CLOEXEC
#undef SOCK_NONBLOCK
#undef MSG_NOSIGNAL
#undef MAP_POPULATE
