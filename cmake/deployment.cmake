# What differs from one deployment of Dravik to another. The defaults lie under a top-level domain that is reserved for
# tests and leads nowhere; while the web domain does, the program never looks for updates by itself.
set(DRAVIK_UPDATE_URL "https://updates.dravik.test/version.json" CACHE STRING "Document that describes the newest release")
set(DRAVIK_WEB_DOMAIN "dravik.test" CACHE STRING "Domain that releases are downloaded from, with or without \"www.\"")
set(DRAVIK_SUPPORT_ADDRESS "support@dravik.test" CACHE STRING "Mail address of the support")
set(DRAVIK_WEB_SITE "https://www.dravik.test/" CACHE STRING "The program's web site")
set(DRAVIK_BUILD_NUMBER "" CACHE STRING "Number that grows with each release; made of the version when empty")

# Not kept in the cache: it has to follow the version.
if(DRAVIK_BUILD_NUMBER STREQUAL "")
  math(EXPR DRAVIK_BUILD "${PROJECT_VERSION_MAJOR} * 10000 + ${PROJECT_VERSION_MINOR} * 100 + ${PROJECT_VERSION_PATCH}")
else()
  set(DRAVIK_BUILD "${DRAVIK_BUILD_NUMBER}")
endif()
if(NOT DRAVIK_BUILD MATCHES "^[0-9]+$")
  message(FATAL_ERROR "DRAVIK_BUILD_NUMBER must be a whole number, not \"${DRAVIK_BUILD}\"")
endif()
