#pragma once

namespace dravik {

/// What stands below the options in each command's help and in its section of the manual page.
extern const char* const programFooter;
extern const char* const scanFooter;
extern const char* const showFooter;
extern const char* const setFooter;
extern const char* const cuesFooter;
extern const char* const demoFooter;
extern const char* const recoverFooter;
extern const char* const updateCheckFooter;
extern const char* const reorderFooter;
extern const char* const deleteTracksFooter;
extern const char* const splitFooter;
extern const char* const mergeFooter;
extern const char* const exportFooter;
extern const char* const renameFooter;
extern const char* const completionsFooter;
extern const char* const reportFooter;

}  // namespace dravik
