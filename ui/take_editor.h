#pragma once

#include "app/content_view.h"
#include "ui/note_edit.h"
#include "ui/theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QStackedLayout>
#include <QTimer>
#include <QWidget>
#include <string>
#include <vector>

class QGridLayout;
class QVBoxLayout;

namespace dravik {

class CueList;
class TakeSummary;
class TrackList;

/// The fields of the loaded take, its tracks and cue markers, and what its format is. Shows the controller's state and
/// sends it edits; has no rules of its own.
class TakeEditor : public QWidget {
    Q_OBJECT
  public:
    TakeEditor(ContentView& content, const Theme& theme, QWidget* parent = nullptr);
    ~TakeEditor() override;

    void focusFirstField();
    void focusTimecode();
    /// Takes over what is typed but not entered yet: the start timecode. To be called before a save; leaving the field
    /// and every shortcut do it by themselves. What is no timecode is told, and stays in the field.
    void commitPending();
    /// What stands in the timecode field and cannot be taken over; empty when there is nothing of the kind.
    [[nodiscard]] QString invalidTimecode() const;

    [[nodiscard]] TrackList& trackList() noexcept { return *tracks_; }
    [[nodiscard]] CueList& cueList() noexcept { return *cues_; }

    [[nodiscard]] QSize minimumSizeHint() const override;

  signals:
    /// A key in one of the fields has undone or redone a step, of this take or another.
    void stepReplayed();

  protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    /// The label of a field, the bar that says "edited", and the widget itself.
    struct Field {
        RowField field;
        QLabel* label;
        QWidget* mark;
        QWidget* widget;
    };
    using SetText = void (ModificationsEnCours::*)(const std::string&);
    using GetText = const std::string& (ModificationsEnCours::*)() const;
    struct TextField {
        RowField field;
        QLineEdit* line;
        GetText get;
    };

    [[nodiscard]] QWidget* makeFields();
    [[nodiscard]] QWidget* makeTracks();
    [[nodiscard]] QWidget* makeCues();
    QVBoxLayout* column(QWidget* parent, const QString& title, QLabel*& label);
    void addField(QGridLayout& grid, int row, int side, const QString& title, RowField field, QWidget* widget);
    QLineEdit* addText(QGridLayout& grid, int row, int side, RowField field, GetText get, SetText set,
                       const QString& help);

    void refresh();
    void refreshFields(const RowState& row, bool editable, bool mayEdit);
    void refreshTimecode(const RowState& row, bool editable, bool mayEdit);
    void refreshRates(const GroupeFichiers& groupe);
    void refreshMarks(int row);
    void applyTheme();
    void timecodeTyped();
    void takeOverTimecode();
    void leaveTimecode();
    void tellInvalidTimecode();
    void showTimecodeState();

    ContentView& content_;
    const Theme& theme_;

    // Widgets are children of this one.
    QStackedLayout* pages_ = nullptr;
    QLabel* hint_ = nullptr;
    QLabel* takeName_ = nullptr;
    QLabel* message_ = nullptr;
    std::vector<Field> fields_;
    std::vector<TextField> texts_;
    std::vector<QLabel*> headings_, captions_;
    NoteEdit* note_ = nullptr;
    QString noteShown_;  ///< as it was put in, or typed since
    QCheckBox* circled_ = nullptr;
    QCheckBox* wild_ = nullptr;
    QComboBox* rate_ = nullptr;
    QLineEdit* timecode_ = nullptr;
    QLabel* end_ = nullptr;
    QLabel* tracksTitle_ = nullptr;
    QLabel* cuesTitle_ = nullptr;
    TrackList* tracks_ = nullptr;
    CueList* cues_ = nullptr;
    TakeSummary* summary_ = nullptr;
    QWidget* summaryLine_ = nullptr;

    int shownRow_ = -1;     ///< the row that is shown, also when rows get other numbers and takes other names
    QString shownName_;     ///< of its take
    bool filling_ = false;  ///< the widgets follow the row just now, not the other way round
    QTimer refreshSoon_;
    bool timecodeTyped_ = false;  ///< the field holds what was typed and not taken over
    bool timecodeTold_ = false;   ///< that it is not valid; once is enough
};

}  // namespace dravik
