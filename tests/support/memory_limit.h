// For a forked child: caps its address space at what it holds now plus
// extra bytes, so that a large request fails there as it would on a machine
// short of memory. POSIX only; false when the limit could not be set.
#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>

inline bool LimitAddressSpaceAbove(std::size_t extra) {
    long pages = 0;
    std::FILE* statm = std::fopen("/proc/self/statm", "r");
    if (!statm || std::fscanf(statm, "%ld", &pages) != 1) return false;
    std::fclose(statm);
    const rlim_t cap = static_cast<rlim_t>(pages) * static_cast<rlim_t>(getpagesize()) + extra;
    const rlimit limit = {cap, cap};
    return setrlimit(RLIMIT_AS, &limit) == 0;
}
