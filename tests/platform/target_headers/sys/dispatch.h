// SPDX-License-Identifier: Apache-2.0
// Declarations of the target's name service; see sys/neutrino.h beside this file.
#pragma once

typedef struct _dispatch dispatch_t;

typedef struct _name_attach {
  dispatch_t* dpp;
  int chid;
  int mntid;
  int zero[2];
} name_attach_t;

extern "C" {
dispatch_t* dispatch_create_channel(int chid, unsigned flags);
int dispatch_destroy(dispatch_t* dpp);
name_attach_t* name_attach(dispatch_t* dpp, const char* path, unsigned flags);
int name_detach(name_attach_t* attach, unsigned flags);
int name_open(const char* name, int flags);
}
