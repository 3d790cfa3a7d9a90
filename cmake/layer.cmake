# dravik_layer(<name> [LINK <libraries>...]): one folder, one static library.
# Every .cpp of the folder (not of its sub-folders) belongs to it.
function(dravik_layer name)
  cmake_parse_arguments(ARG "" "" "LINK" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC dravik_options ${ARG_LINK})
endfunction()

# dravik_precompile(<target> <headers>...): reads headers of many sources once. Sources name all that they use all the same.
function(dravik_precompile target)
  target_precompile_headers(${target} PRIVATE ${ARGN})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${target} PRIVATE -fpch-preprocess) # lets ccache see what is in them
  endif()
endfunction()

# dravik_test(<name> [LINK <libraries>...]): one test executable a layer, from every .cpp of the folder.
function(dravik_test name)
  cmake_parse_arguments(ARG "" "" "LINK" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE dravik_options dravik_test_support ${ARG_LINK} GTest::gmock_main)
  dravik_precompile(${name} <gmock/gmock.h> <gtest/gtest.h> <filesystem> <functional> <string>)
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300
    ENVIRONMENT "DRAVIK_CLI=$<TARGET_FILE:dravik-cli>"
    ENVIRONMENT_MODIFICATION "LSAN_OPTIONS=set:suppressions=${CMAKE_SOURCE_DIR}/tests/support/lsan.supp:print_suppressions=0")
endfunction()
