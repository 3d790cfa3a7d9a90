#pragma once

#include <QPlainTextEdit>

namespace dravik {

/// The field of the note: plain text of several lines. What is pasted is cut to the room that is left before it is laid
/// out, which takes seconds for the page of a book in one line.
class NoteEdit final : public QPlainTextEdit {
    Q_OBJECT
  public:
    NoteEdit(int longest, QWidget* parent) : QPlainTextEdit(parent), longest_(longest) {}

  signals:
    /// Something was pasted of which only the beginning fits.
    void cutShort(int longest);

  protected:
    void insertFromMimeData(const QMimeData* source) override;

  private:
    int longest_;
};

}  // namespace dravik
