#include "app/user_defaults.h"

namespace dravik {

UserDefaults::UserDefaults()
    : storage_(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("dravik"), QStringLiteral("dravik")) {}

UserDefaults::UserDefaults(const std::filesystem::path& file)
    : storage_(QString::fromStdString(file.string()), QSettings::IniFormat) {}

bool UserDefaults::value(const Setting<bool>& setting) const {
    const QVariant stored = storage_.value(setting.key);
    const QString text = stored.toString();
    // The file holds texts; anything else than these two was not written by us.
    if (text != QLatin1String("true") && text != QLatin1String("false")) return setting.standard;
    return stored.toBool();
}

int UserDefaults::value(const Setting<int>& setting) const {
    bool ok = false;
    const int value = storage_.value(setting.key).toInt(&ok);
    return ok ? value : setting.standard;
}

double UserDefaults::value(const Setting<double>& setting) const {
    bool ok = false;
    const double value = storage_.value(setting.key).toDouble(&ok);
    return ok ? value : setting.standard;
}

QString UserDefaults::value(const Setting<const char*>& setting) const {
    const QVariant stored = storage_.value(setting.key);
    return stored.isValid() ? stored.toString() : QString::fromUtf8(setting.standard);
}

void UserDefaults::store(const QString& key, const QVariant& value) {
    if (storage_.value(key) == value) return;
    storage_.setValue(key, value);
    emit changed(key);
}

}  // namespace dravik
