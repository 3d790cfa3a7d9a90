# What differs from one deployment of Dravik to another. The defaults lie under a top-level domain that is reserved for
# tests and leads nowhere; while the web domain does, the program never looks for updates by itself.
set(DRAVIK_UPDATE_URL "https://updates.dravik.test/version.json" CACHE STRING "Document that describes the newest release")
set(DRAVIK_WEB_DOMAIN "dravik.test" CACHE STRING "Domain that releases are downloaded from, with or without \"www.\"")
set(DRAVIK_SUPPORT_ADDRESS "support@dravik.test" CACHE STRING "Mail address of the support")
set(DRAVIK_WEB_SITE "https://www.dravik.test/" CACHE STRING "The program's web site")
