# SPDX-License-Identifier: Apache-2.0
# Compares REFERENCE with what PROGRAM writes now, which goes to WRITTEN.
execute_process(COMMAND ${PROGRAM} OUTPUT_FILE ${WRITTEN} RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "${PROGRAM} failed: ${failed}")
endif()
execute_process(COMMAND diff -u ${REFERENCE} ${WRITTEN} RESULT_VARIABLE different)
if(different)
  message(FATAL_ERROR "docs/reference.md is stale. To renew it: "
                      "cmake --build build/debug --target renew-reference")
endif()
