#include "update/release_notes.h"

#include <gmock/gmock.h>

namespace dravik {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ReleaseNotes, AreTheEntriesOfTheNewestSectionOneLineEach) {
    EXPECT_THAT(releaseNotesOf("# Changes\n\nWhat a user notices.\n\n## 1.5\n\n- One entry\n  on two lines.\n"
                               "* Another.\r\n\nA paragraph\nof two.\n\n### Fixed\n- The last\n\n## 1.4\n\n- Old.\n"),
                ElementsAre("One entry on two lines.", "Another.", "A paragraph of two.", "The last"));
    EXPECT_THAT(releaseNotesOf("## 1.5\n- `scan` is **fast**, see [the page](docs/a.md); a[0] (here) stays"),
                ElementsAre("scan is fast, see the page; a[0] (here) stays"));
    EXPECT_THAT(releaseNotesOf(""), IsEmpty());
    EXPECT_THAT(releaseNotesOf("# Changes\n- no section\n"), IsEmpty());
    EXPECT_THAT(releaseNotesOf("## Unreleased\n\n## 1.4\n- New.\n## 1.3\n- Old."), ElementsAre("New."));
}

}  // namespace
}  // namespace dravik
