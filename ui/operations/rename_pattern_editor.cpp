#include "ui/operations/rename_pattern_editor.h"

#include "app/rename_patterns.h"
#include "app/text.h"
#include "ui/list_looks.h"
#include "ui/metrics.h"
#include "ui/operations/pattern_row.h"

#include <QHBoxLayout>
#include <QPointer>
#include <QToolButton>
#include <QVBoxLayout>

namespace dravik {
namespace {

/// A name as a menu shows it: "&" would be a shortcut.
QString menuText(QString name) { return name.replace(QLatin1Char('&'), QLatin1String("&&")); }

/// What a pattern could be called.
QString proposedName(const RenamePattern& pattern) {
    QString name;
    for (const BlocRenommage& block : pattern) {
        if (const auto* token = std::get_if<TokenRenommage>(&block.contenu)) {
            name += toQt(label(*token));
        } else if (const auto* text = std::get_if<BlocRenommage::Texte>(&block.contenu)) {
            name += toQt(text->text);
        } else {
            name += toQt(std::get<BlocRenommage::Separateur>(block.contenu).text);
        }
    }
    return name.simplified();
}

}  // namespace

RenamePatternEditor::RenamePatternEditor(UserDefaults& settings, Dialogs& dialogs, const Theme& theme, QWidget* parent)
    : QWidget(parent),
      settings_(settings),
      dialogs_(dialogs),
      theme_(theme),
      row_(new PatternRow(theme, this)),
      patterns_(new QPushButton(tr("Patterns"), this)),
      menu_(new QMenu(this)) {
    patterns_->setAccessibleName(tr("Patterns"));
    patterns_->setToolTip(tr("Use or keep a pattern"));
    patterns_->setAutoDefault(false);
    patterns_->setMenu(menu_);
    connect(menu_, &QMenu::aboutToShow, this, &RenamePatternEditor::fillMenu);
    connect(row_, &PatternRow::patternChanged, this, [this] { emit patternChanged(row_->pattern()); });

    headings_ = {new QLabel(tr("Filename"), this), new QLabel(tr("Available Tokens"), this)};
    auto* top = new QHBoxLayout;
    top->addWidget(headings_[0]);
    top->addStretch();
    top->addWidget(patterns_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(metrics::fieldSpacing);
    layout->addLayout(top);
    layout->addWidget(row_);
    layout->addSpacing(metrics::fieldSpacing);
    layout->addWidget(headings_[1]);
    layout->addWidget(makePalette());
    connect(&theme_, &Theme::changed, this, &RenamePatternEditor::applyTheme);
    applyTheme();
}

RenamePatternEditor::~RenamePatternEditor() { stopListeningToChildren(*this); }

void RenamePatternEditor::setPattern(const RenamePattern& pattern) { row_->setPattern(pattern); }

const RenamePattern& RenamePatternEditor::pattern() const noexcept { return row_->pattern(); }

QWidget* RenamePatternEditor::makePalette() {
    auto* palette = new QWidget(this);
    auto* flow = new FlowLayout(metrics::fieldSpacing, metrics::fieldSpacing, palette);
    for (const PaletteRenommage one : allPaletteRenommage) {
        auto* button = new QToolButton(palette);
        const QString name = toQt(label(one));
        button->setObjectName(name);
        button->setText(name);
        button->setAccessibleName(name);
        button->setToolTip(tr("Click to add to Filename"));
        button->setFocusPolicy(Qt::StrongFocus);
        connect(button, &QToolButton::clicked, this, [this, one] { row_->append(newBlock(one)); });
        flow->addWidget(button);
    }
    return palette;
}

void RenamePatternEditor::fillMenu() {
    menu_->clear();
    const auto offer = [this](const NamedRenamePattern& named) {
        menu_->addAction(menuText(named.name), this, [this, pattern = named.pattern] { choose(pattern); });
    };
    menu_->addSection(tr("To Start From"));
    for (const NamedRenamePattern& named : builtInRenamePatterns())
        offer(named);
    const std::vector<NamedRenamePattern> saved = savedRenamePatterns(settings_);
    if (!saved.empty()) menu_->addSection(tr("Saved"));
    for (const NamedRenamePattern& named : saved)
        offer(named);
    menu_->addSeparator();
    menu_->addAction(tr("Save Pattern…"), this, &RenamePatternEditor::askName)->setEnabled(!pattern().empty());
    auto* removing = menu_->addMenu(tr("Remove Pattern"));
    removing->setEnabled(!saved.empty());
    for (const NamedRenamePattern& named : saved) {
        removing->addAction(menuText(named.name), this,
                            [this, name = named.name] { removeRenamePattern(settings_, name); });
    }
}

void RenamePatternEditor::choose(const RenamePattern& pattern) {
    row_->setPattern(pattern);
    emit patternChanged(row_->pattern());
}

void RenamePatternEditor::askName() {
    TextQuestion question;
    question.title = tr("Save Pattern");
    question.label = tr("Name of the pattern:");
    question.text = proposedName(pattern());
    question.hint = tr("A saved pattern of the same name is replaced.");
    question.accept = tr("Save");
    // What is kept is the pattern that was asked about.
    dialogs_.askText(question, [self = QPointer<RenamePatternEditor>(this),
                                pattern = pattern()](const std::optional<QString>& name) {
        if (self && name) saveRenamePattern(self->settings_, *name, pattern);
    });
}

void RenamePatternEditor::applyTheme() {
    for (QLabel* heading : headings_) {
        heading->setFont(metrics::smallFont(*this));
        heading->setForegroundRole(QPalette::PlaceholderText);
    }
}

}  // namespace dravik
