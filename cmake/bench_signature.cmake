# Runs "bench" on one search thread through the engine and compares its node total, the signature of
# what the engine plays, with the number recorded in the signature file.
# Usage: cmake -DENGINE=<kelvra binary> -DSIGNATURE=<bench/signature> -P bench_signature.cmake
file(READ "${SIGNATURE}" expected)
string(STRIP "${expected}" expected)
set(input "${CMAKE_CURRENT_BINARY_DIR}/bench_signature.in")
file(WRITE "${input}" "set threads 1\nbench\nquit\n")
execute_process(COMMAND "${ENGINE}" INPUT_FILE "${input}" OUTPUT_VARIABLE output RESULT_VARIABLE result)
if(NOT result EQUAL 0 OR NOT output MATCHES "([0-9]+) nodes [0-9]+ nps")
  message(FATAL_ERROR "bench did not run (exit ${result}):\n${output}")
endif()
if(NOT CMAKE_MATCH_1 STREQUAL expected)
  message(FATAL_ERROR "bench gives ${CMAKE_MATCH_1} nodes where ${SIGNATURE} says ${expected}: a change to "
                      "what the engine plays records its new signature there and in its commit's Bench: line")
endif()
