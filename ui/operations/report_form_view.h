#pragma once

#include "app/user_defaults.h"
#include "report/report_document.h"
#include "report/report_form.h"
#include "ui/note_edit.h"
#include "ui/theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QWidget>
#include <string>
#include <vector>

class QGridLayout;

namespace dravik {

/// What a sound report says beside its lines: names, levels and rates, notes, which documents and which columns. Opens
/// with the defaults that the user has kept.
class ReportFormView : public QWidget {
    Q_OBJECT
  public:
    ReportFormView(UserDefaults& settings, const Theme& theme, QWidget* parent = nullptr);
    ~ReportFormView() override;

    /// These tell nobody.
    void setForm(const ReportForm& form);
    void setTape(const QString& tape);
    /// What the files of the folder have in common: shown where a field is empty, or leaves its value to them.
    void setFileValues(const FileValues& values);
    [[nodiscard]] const ReportForm& form() const noexcept { return form_; }
    /// Of the day, and not kept; empty for what the files say.
    [[nodiscard]] QString tape() const;

  signals:
    /// The user has changed them: with every letter typed.
    void formChanged(const ReportForm& form);
    void tapeChanged(const QString& tape);

  private:
    struct TextField {
        QLineEdit* line;
        std::string ReportForm::*text;
    };
    /// A list of entries, with a field beside it for the user's own.
    struct Choice {
        QComboBox* box;
        QLineEdit* custom;
        std::string ReportForm::*mode;
        std::string ReportForm::*text;
        std::string FileValues::*ofFiles;  ///< null where files do not say it
    };
    struct Switch {
        QCheckBox* box;
        bool ReportForm::*on;
    };
    struct Column {
        QCheckBox* box;
        bool SoundReportColumns::*on;
    };

    void addText(QGridLayout& grid, int row, const QString& title, std::string ReportForm::*text);
    [[nodiscard]] QLineEdit* addLine(QGridLayout& grid, int row, const QString& title);
    void addChoice(QGridLayout& grid, int row, const QString& title, const Choice& choice);
    [[nodiscard]] QWidget* makeNames();
    [[nodiscard]] QWidget* makeChoices();
    [[nodiscard]] QWidget* makeColumns();
    [[nodiscard]] QWidget* makeButtons();
    [[nodiscard]] QLabel* heading(const QString& text);
    void refresh();
    void refreshChoices();
    void changed();
    void applyTheme();

    UserDefaults& settings_;
    const Theme& theme_;
    ReportForm form_;
    FileValues ofFiles_;
    bool filling_ = false;  ///< the widgets follow the form just now, not the other way round

    std::vector<TextField> texts_;  // of children
    std::vector<Choice> choices_;
    std::vector<Switch> switches_;
    std::vector<Column> columns_;
    std::vector<QLabel*> headings_;
    QLineEdit* tape_ = nullptr;
    NoteEdit* notes_ = nullptr;
    QPushButton* setDefault_ = nullptr;
    QTimer savedShown_;
};

}  // namespace dravik
