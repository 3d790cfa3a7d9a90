#pragma once

#include "app/content_view.h"
#include "ui/theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStackedLayout>
#include <QTimer>
#include <QWidget>
#include <string>
#include <vector>

class QGridLayout;
class QVBoxLayout;

namespace dravik {

class CueList;
class TrackList;

/// The fields of the loaded take, its tracks and cue markers, and what its format is. Shows the controller's state and
/// sends it edits; has no rules of its own.
class TakeEditor : public QWidget {
    Q_OBJECT
  public:
    TakeEditor(ContentView& content, const Theme& theme, QWidget* parent = nullptr);
    ~TakeEditor() override;

    void focusFirstField();
    /// Takes over what is typed but not entered yet: the start timecode. To be called before a save; leaving the field
    /// and every shortcut do it by themselves.
    void commitPending();

    [[nodiscard]] TrackList& trackList() noexcept { return *tracks_; }
    [[nodiscard]] CueList& cueList() noexcept { return *cues_; }

  protected:
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
    [[nodiscard]] QWidget* makeSummary();
    QVBoxLayout* column(QWidget* parent, const QString& title, QLabel*& label);
    void addField(QGridLayout& grid, int row, int side, const QString& title, RowField field, QWidget* widget);
    QLineEdit* addText(QGridLayout& grid, int row, int side, RowField field, GetText get, SetText set,
                       const QString& help);

    void refresh();
    void refreshFields(const RowState& row, bool editable, bool mayEdit);
    void refreshTimecode(const RowState& row, bool editable, bool mayEdit);
    void refreshRates(const GroupeFichiers& groupe);
    void refreshSummary(const GroupeFichiers& groupe);
    void refreshMarks(int row);
    void applyTheme();
    void timecodeTyped();
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
    QPlainTextEdit* note_ = nullptr;
    QCheckBox* circled_ = nullptr;
    QCheckBox* wild_ = nullptr;
    QComboBox* rate_ = nullptr;
    QLineEdit* timecode_ = nullptr;
    QLabel* end_ = nullptr;
    QLabel* tracksTitle_ = nullptr;
    QLabel* cuesTitle_ = nullptr;
    TrackList* tracks_ = nullptr;
    CueList* cues_ = nullptr;
    QLabel* format_ = nullptr;
    QLabel* duration_ = nullptr;
    QLabel* sampleRate_ = nullptr;
    QLabel* bits_ = nullptr;
    QLabel* trackCount_ = nullptr;
    QLabel* date_ = nullptr;
    QPlainTextEdit* files_ = nullptr;

    std::string shownKey_;  ///< of the row that is shown
    bool filling_ = false;  ///< the widgets follow the row just now, not the other way round
    QTimer refreshSoon_;
    bool timecodeTyped_ = false;  ///< the field holds what was typed and not taken over
};

}  // namespace dravik
