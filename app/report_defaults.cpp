#include "app/report_defaults.h"

#include "app/text.h"

namespace dravik {
namespace {

bool storedSwitch(const UserDefaults& settings, std::string_view key, bool standard) {
    return settings.value(Setting<bool>{std::string(key).c_str(), standard});
}

}  // namespace

ReportForm reportDefaults(const UserDefaults& settings) {
    ReportForm form;
    for (const ReportTextSetting& setting : reportTextSettings()) {
        const QVariant stored = settings.stored(toQt(setting.key));
        if (stored.isValid() && stored.canConvert<QString>()) form.*setting.text = stored.toString().toStdString();
    }
    for (const ReportSwitchSetting& setting : reportSwitchSettings())
        form.*setting.on = storedSwitch(settings, setting.key, form.*setting.on);
    for (const ReportColumnInfo& column : optionalColumns()) {
        bool& chosen = form.colonnes.*column.chosen;
        if (!column.setting.empty()) chosen = storedSwitch(settings, column.setting, chosen);
    }
    return form;
}

void saveReportDefaults(UserDefaults& settings, const ReportForm& form) {
    for (const ReportTextSetting& setting : reportTextSettings())
        settings.store(toQt(setting.key), toQt(form.*setting.text));
    for (const ReportSwitchSetting& setting : reportSwitchSettings())
        settings.store(toQt(setting.key), form.*setting.on);
    for (const ReportColumnInfo& column : optionalColumns()) {
        if (!column.setting.empty()) settings.store(toQt(column.setting), form.colonnes.*column.chosen);
    }
}

}  // namespace dravik
