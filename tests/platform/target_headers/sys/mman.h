// SPDX-License-Identifier: Apache-2.0
// The target's shared memory calls beside those of this system's <sys/mman.h>; see sys/neutrino.h
// beside this file.
#pragma once

#include_next <sys/mman.h>

#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

#define NOFD (-1)

extern "C" {
int shm_ctl_special(int fd, int flags, uint64_t paddr, uint64_t size, unsigned special);
int mem_offset64(const void* addr, int fd, size_t length, off64_t* offset, size_t* contig_len);
}
