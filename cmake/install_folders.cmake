# Where `cmake --install` puts things, below the prefix.
include(GNUInstallDirs)
# Modules are this program's alone, so they stand in lib/ itself, also where libraries have a folder for each architecture.
# What lies directly in lib/dravik CPack takes for libraries that others link.
set(DRAVIK_MODULE_FOLDER lib/dravik/modules)
set(DRAVIK_ZSH_FOLDER ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING "Completions for zsh, below the prefix")
# Programs find their modules from where they stand themselves, so that the prefix can be moved.
file(RELATIVE_PATH DRAVIK_MODULES_FROM_PROGRAMS ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_PREFIX}/${DRAVIK_MODULE_FOLDER})
