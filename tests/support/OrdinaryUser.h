#ifndef SUPPORT_ORDINARYUSER_H
#define SUPPORT_ORDINARYUSER_H

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <thread>

/// Removes from this thread, and from the processes that it starts, the capabilities by which a superuser ignores the
/// permissions of files. Other users do not have them.
inline void giveUpPassingOverPermissions()
{
    prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
    prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
    __user_cap_header_struct header = { _LINUX_CAPABILITY_VERSION_3, 0 };
    __user_cap_data_struct sets[_LINUX_CAPABILITY_U32S_3] = {};
    if (syscall(SYS_capget, &header, sets) != 0)
        return;
    const __u32 kept = ~(CAP_TO_MASK(CAP_DAC_OVERRIDE) | CAP_TO_MASK(CAP_DAC_READ_SEARCH));
    sets[0].effective &= kept;
    sets[0].permitted &= kept;
    sets[0].inheritable &= kept;
    syscall(SYS_capset, &header, sets);
}

/// Runs \a work on a separate thread, as a user to whom the permissions of files apply, whoever runs the tests.
template <typename Work> void asOrdinaryUser(Work work)
{
    std::thread([&work] {
        giveUpPassingOverPermissions();
        work();
    }).join();
}

#endif
