# dravik_build_info: the version, the build number and the commit, which is looked up in every build.
set(build_info ${CMAKE_BINARY_DIR}/generated/build_info.cpp)
add_custom_target(dravik_commit
  COMMAND ${CMAKE_COMMAND} -D SOURCE=${CMAKE_SOURCE_DIR} -D OUTPUT=${build_info} -D DRAVIK_VERSION=${PROJECT_VERSION}
          -D DRAVIK_BUILD=${DRAVIK_BUILD} -P ${CMAKE_SOURCE_DIR}/cmake/write_build_info.cmake
  BYPRODUCTS ${build_info}
  COMMENT "Looking up the commit"
  VERBATIM)
add_library(dravik_build_info STATIC ${build_info})
add_dependencies(dravik_build_info dravik_commit)
target_link_libraries(dravik_build_info PUBLIC dravik_options)
