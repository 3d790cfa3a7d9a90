# cmake -D SOURCE=... -D OUTPUT=... -D DRAVIK_VERSION=... -D DRAVIK_BUILD=... -P write_build_info.cmake
# Writes OUTPUT from base/build_info.cpp.in. It keeps its time when nothing has changed, so that nothing is compiled.
set(DRAVIK_COMMIT unknown)
if(EXISTS ${SOURCE}/COMMIT)
  # A source archive, which may lie inside somebody else's clone.
  file(STRINGS ${SOURCE}/COMMIT DRAVIK_COMMIT LIMIT_COUNT 1)
elseif(EXISTS ${SOURCE}/.git)
  execute_process(COMMAND git rev-parse --short HEAD WORKING_DIRECTORY ${SOURCE}
    OUTPUT_VARIABLE hash OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE failed)
  if(NOT failed)
    execute_process(COMMAND git status --porcelain --untracked-files=no WORKING_DIRECTORY ${SOURCE}
      OUTPUT_VARIABLE changes ERROR_QUIET)
    set(DRAVIK_COMMIT ${hash})
    if(changes)
      string(APPEND DRAVIK_COMMIT "+")
    endif()
  endif()
endif()
configure_file(${SOURCE}/base/build_info.cpp.in ${OUTPUT} @ONLY)
