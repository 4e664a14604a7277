// SPDX-License-Identifier: Apache-2.0
// Lets the address sanitizer see how a cancelled thread's stack is unwound. Linked into every
// program of a build with that sanitizer, and into no other.
//
// It hears of exceptions by itself, and not of that: it goes on guarding the frames that are gone,
// and takes the destructors that use their place for faults. The unwinder comes by here for each
// frame that has something to clean up; all that lies below is given free before.
#ifdef __SANITIZE_ADDRESS__  // by GCC; Clang builds the fuzzers, in which nothing is cancelled
#include <dlfcn.h>
#include <sanitizer/asan_interface.h>
#include <unwind.h>

#include <cstdint>

extern "C" __attribute__((no_sanitize("address"))) _Unwind_Reason_Code __gxx_personality_v0(
    int version, _Unwind_Action actions, _Unwind_Exception_Class exceptionClass,
    _Unwind_Exception* exception, _Unwind_Context* context) {
  using Personality = _Unwind_Reason_Code (*)(int, _Unwind_Action, _Unwind_Exception_Class,
                                              _Unwind_Exception*, _Unwind_Context*);
  static const auto next = reinterpret_cast<Personality>(dlsym(RTLD_NEXT, "__gxx_personality_v0"));
  if ((actions & _UA_FORCE_UNWIND) != 0) {
    const auto begin = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    const std::uintptr_t end = _Unwind_GetCFA(context);  // where the living frame begins
    if (begin < end) {
      __asan_unpoison_memory_region(reinterpret_cast<const void*>(begin), end - begin);
    }
  }
  return next(version, actions, exceptionClass, exception, context);
}
#endif
