#pragma once

#include <QString>
#include <filesystem>
#include <vector>

namespace dravik {

/// What a run would do, line by line. Values, as they are shown.

/// One file that an operation would make or rename.
struct OperationPreviewRow {
    QString source;
    QString target;
    QString problem;                  ///< why it cannot be; empty where it can
    bool unchanged = false;           ///< it is already what it would become; nothing is made
    bool canKeepBoth = true;          ///< where there is a problem: another name would solve it
    QString remark = {};              ///< what is to be known of it all the same
    std::filesystem::path file = {};  ///< that is renamed; empty for other operations
    friend bool operator==(const OperationPreviewRow&, const OperationPreviewRow&) = default;
};

struct OperationPreview {
    std::vector<OperationPreviewRow> rows;
    QString summary;      ///< "12 files, about 3.4 GB"
    QString problems;     ///< "3 filename conflicts"; empty when there are none
    bool waits = false;   ///< for a choice that has not been made yet: `problems` asks for it
    bool canRun = false;  ///< something would be done, and nothing forbids all of it
};

}  // namespace dravik
