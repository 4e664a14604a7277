// SPDX-License-Identifier: Apache-2.0
// The target's <assert.h> declares __assert with four arguments, which this system's doesn't; see
// sys/neutrino.h beside this file.
