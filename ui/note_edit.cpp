#include "ui/note_edit.h"

#include <QMimeData>
#include <algorithm>

namespace dravik {

void NoteEdit::insertFromMimeData(const QMimeData* source) {
    const QString text = source->text();
    const QTextCursor cursor = textCursor();
    const qsizetype typed = document()->characterCount() - 1;  // without the end of the last paragraph
    const qsizetype kept = typed - (cursor.selectionEnd() - cursor.selectionStart());
    const qsizetype room = std::max<qsizetype>(0, longest_ - kept);
    insertPlainText(text.left(room));
    if (text.size() > room) emit cutShort(longest_);
}

}  // namespace dravik
