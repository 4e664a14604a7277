// SPDX-License-Identifier: Apache-2.0
// On the target this holds struct sigevent; here <signal.h> does.
#pragma once

#include <signal.h>
