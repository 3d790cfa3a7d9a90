#pragma once

#include "app/background.h"
#include "app/dialogs.h"
#include "app/update_presentation.h"
#include "app/user_defaults.h"
#include "app/workspace.h"
#include "update/update_checker.h"

#include <QObject>
#include <memory>
#include <string>

namespace dravik {

/// When the program looks for a newer release, and what the user hears of it. Main thread; the server is asked on
/// another one.
class UpdateFlow : public QObject {
    Q_OBJECT
  public:
    struct Services {
        UserDefaults& settings;
        Dialogs& dialogs;
        Workspace& workspace;
        std::shared_ptr<const HttpFetcher> fetcher;
        Deployment deployment;
        RunningSystem system;
        std::function<UpdateDefaults::Time()> now;
        std::string changeLog;  ///< of the installed version, in Markdown
    };
    explicit UpdateFlow(Services services);
    ~UpdateFlow() override;

    /// When the program starts: looks when that is due, and says nothing unless there is an update.
    void start();
    /// Looks at once, and always says what came of it. One at a time: what runs already answers to this one, too.
    void checkForUpdates();
    [[nodiscard]] bool isChecking() const noexcept { return token_ != nullptr; }
    /// Presents the notes of the installed version.
    void showWhatsNew();

    /// Opens the page of a presentation that was accepted.
    void download(const QString& url);
    void contactSupport();
    void openWebSite();

  signals:
    /// The user begins, or ends, to wait for a result.
    void waitingChanged(bool waiting);
    /// To be shown as a sheet.
    /// `asked`: the user waits for it; otherwise it comes unasked.
    void presented(const UpdatePresentation& presentation, bool asked);

  private:
    struct Outcome;

    void check();
    void tell(const Outcome& outcome);
    void open(const QString& url, const QString& failureTitle);

    Services services_;
    std::shared_ptr<CancellationToken> token_;  ///< of the check that runs
    bool asked_ = false;                        ///< by the user, who wants a result
    LooseBackground background_;
};

}  // namespace dravik
