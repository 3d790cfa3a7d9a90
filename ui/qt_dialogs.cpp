#include "ui/qt_dialogs.h"

#include "app/text.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>
#include <memory>

namespace dravik {
namespace {

constexpr int alertWidth = 420;

}  // namespace

void QtDialogs::enqueue(std::function<void()> open) {
    waiting_.push_back(std::move(open));
    if (!open_) next();
}

void QtDialogs::next() {
    if (waiting_.empty()) return;
    open_ = true;
    const std::function<void()> open = std::move(waiting_.front());
    waiting_.pop_front();
    open();
}

void QtDialogs::show(std::function<QDialog*(QWidget* window)> make) {
    enqueue([this, make = std::move(make)] {
        QDialog* dialog = make(window_);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &QDialog::finished, this, [this] {
            open_ = false;
            next();
        });
        dialog->open();
    });
}

void QtDialogs::ask(const Alert& alert, std::function<void(AlertAnswer)> answered) {
    enqueue([this, alert, answered = std::move(answered)] {
        auto* box = new QMessageBox(window_);  // deletes itself when it closes
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->setObjectName(QStringLiteral("alert"));
        box->setWindowTitle(alert.title);
        box->setText(QStringLiteral("<b>%1</b>").arg(alert.title.toHtmlEscaped()));
        box->setInformativeText(alert.text);
        box->setTextFormat(Qt::RichText);
        if (auto* label = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"))) {
            label->setTextFormat(Qt::PlainText);
        }
        // Before the spacer: it makes the layout anew.
        if (!alert.checkBox.isEmpty()) box->setCheckBox(new QCheckBox(alert.checkBox, box));
        // Wide enough for a sentence to be read as one.
        if (auto* grid = qobject_cast<QGridLayout*>(box->layout())) {
            grid->addItem(std::make_unique<QSpacerItem>(alertWidth, 0).release(), grid->rowCount(), 0, 1,
                          grid->columnCount());
        }
        std::vector<QAbstractButton*> buttons;
        for (qsizetype at = 0; at < alert.buttons.size(); ++at) {
            // The roles keep the order of the list, whatever the desktop's habit.
            buttons.push_back(box->addButton(alert.buttons.at(at), QMessageBox::ActionRole));
        }
        const std::ptrdiff_t cancel = alert.cancelButton < 0 ? std::ssize(buttons) - 1 : alert.cancelButton;
        box->setEscapeButton(buttons.at(static_cast<std::size_t>(cancel)));
        box->setDefaultButton(
            qobject_cast<QPushButton*>(buttons.at(static_cast<std::size_t>(alert.destructive ? cancel : 0))));
        connect(box, &QMessageBox::finished, this, [this, box, buttons, cancel, answered] {
            AlertAnswer answer;
            const auto clicked = std::find(buttons.begin(), buttons.end(), box->clickedButton());
            answer.button = static_cast<int>(clicked == buttons.end() ? cancel : clicked - buttons.begin());
            answer.checked = box->checkBox() != nullptr && box->checkBox()->isChecked();
            open_ = false;
            answered(answer);
            if (!open_) next();
        });
        box->open();
    });
}

void QtDialogs::askText(const TextQuestion& question, std::function<void(std::optional<QString>)> answered) {
    enqueue([this, question, answered = std::move(answered)] {
        auto* dialog = new QDialog(window_);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setObjectName(QStringLiteral("textQuestion"));
        dialog->setWindowTitle(question.title);
        auto* field = new QLineEdit(question.text, dialog);
        field->setAccessibleName(question.label.isEmpty() ? question.title : question.label);
        field->setMinimumWidth(320);
        field->selectAll();
        auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, dialog);
        buttons->addButton(question.accept, QDialogButtonBox::AcceptRole)->setDefault(true);
        auto* layout = new QVBoxLayout(dialog);
        if (!question.label.isEmpty()) layout->addWidget(new QLabel(question.label, dialog));
        layout->addWidget(field);
        if (!question.hint.isEmpty()) {
            auto* hint = new QLabel(question.hint, dialog);
            hint->setForegroundRole(QPalette::PlaceholderText);
            hint->setWordWrap(true);
            layout->addWidget(hint);
        }
        layout->addWidget(buttons);
        connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
        connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
        connect(dialog, &QDialog::finished, this, [this, field, answered](int result) {
            open_ = false;
            answered(result == QDialog::Accepted ? std::optional(field->text()) : std::nullopt);
            if (!open_) next();
        });
        dialog->open();
    });
}

void QtDialogs::choose(const OpenPanel& panel, std::function<void(std::optional<std::filesystem::path>)> chosen) {
    enqueue([this, panel, chosen = std::move(chosen)] {
        auto* dialog = new QFileDialog(window_, panel.title, toQt(panel.start));
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setFileMode(panel.folders ? QFileDialog::Directory : QFileDialog::ExistingFile);
        dialog->setOption(QFileDialog::ShowDirsOnly, panel.folders);
        dialog->setLabelText(QFileDialog::Accept, panel.prompt);
        if (!panel.nameFilters.isEmpty()) {
            dialog->setNameFilter(tr("Audio files (%1)").arg(panel.nameFilters.join(QLatin1Char(' '))));
        }
        connect(dialog, &QFileDialog::finished, this, [this, dialog, chosen](int result) {
            open_ = false;
            const QStringList files = dialog->selectedFiles();
            chosen(result == QDialog::Accepted && !files.isEmpty() ? std::optional(toPath(files.front()))
                                                                   : std::nullopt);
            if (!open_) next();
        });
        dialog->open();
    });
}

}  // namespace dravik
