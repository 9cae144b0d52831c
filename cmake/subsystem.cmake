# kelvra_subsystem(name folder deps...): a static library kelvra_<name> from src/<folder>/*.cpp
# (an interface library while the folder has no sources yet).
function(kelvra_subsystem name folder)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  if(sources)
    add_library(kelvra_${name} STATIC ${sources})
    target_include_directories(kelvra_${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(kelvra_${name} PUBLIC ${ARGN})
  else()
    add_library(kelvra_${name} INTERFACE)
    target_include_directories(kelvra_${name} INTERFACE ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(kelvra_${name} INTERFACE ${ARGN})
  endif()
endfunction()

# kelvra_tests(name folder): test binary <name>_tests from tests/<folder>/*.cpp, registered with CTest.
# Tests find their own data and the shared data folder beside the project through compile definitions;
# the engine binary they start is built first and named to kelvra_test_engine.
function(kelvra_tests name folder)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name}_tests ${sources})
  target_link_libraries(${name}_tests PRIVATE kelvra_${name} kelvra_test_engine GTest::gtest_main)
  target_include_directories(${name}_tests PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_compile_definitions(${name}_tests PRIVATE
    KELVRA_TEST_DATA_DIR="${CMAKE_SOURCE_DIR}/tests/data"
    KELVRA_SHARED_DATA_DIR="${CMAKE_SOURCE_DIR}/../shared/data")
  add_dependencies(${name}_tests kelvra)
  gtest_discover_tests(${name}_tests DISCOVERY_TIMEOUT 60 PROPERTIES LABELS ${name})
endfunction()
