# What differs from one deployment of Dravik to another. The defaults lie under a top-level domain that is reserved for
# tests and leads nowhere; while the web domain does, the program never looks for updates by itself.
set(DRAVIK_UPDATE_URL "https://updates.dravik.test/version.json" CACHE STRING "Document that describes the newest release")
set(DRAVIK_WEB_DOMAIN "dravik.test" CACHE STRING "Domain that releases are downloaded from, with or without \"www.\"")
set(DRAVIK_SUPPORT_ADDRESS "support@dravik.test" CACHE STRING "Mail address of the support")
set(DRAVIK_WEB_SITE "https://www.dravik.test/" CACHE STRING "The program's web site")

# All four or none: a program that asks a server which nobody has, or that looks for nothing, is found out by its users.
set(placeholders 0)
foreach(address DRAVIK_UPDATE_URL DRAVIK_WEB_DOMAIN DRAVIK_SUPPORT_ADDRESS DRAVIK_WEB_SITE)
  if(${address} MATCHES "dravik\\.test")
    math(EXPR placeholders "${placeholders} + 1")
  endif()
endforeach()
if(NOT placeholders EQUAL 0 AND NOT placeholders EQUAL 4)
  message(FATAL_ERROR "Set all of DRAVIK_UPDATE_URL, DRAVIK_WEB_DOMAIN, DRAVIK_SUPPORT_ADDRESS and DRAVIK_WEB_SITE, or none.")
endif()
if(NOT DRAVIK_UPDATE_URL MATCHES "^https://")
  message(FATAL_ERROR "DRAVIK_UPDATE_URL must begin with https://, not \"${DRAVIK_UPDATE_URL}\".")
endif()
