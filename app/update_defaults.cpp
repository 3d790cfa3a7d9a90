#include "app/update_defaults.h"

namespace dravik {
namespace {

/// Absent for what is no date, or one that the clock cannot count to.
std::optional<UpdateDefaults::Time> timeOf(const QVariant& stored) {
    const QDateTime date = stored.toDateTime();
    constexpr int beyondTheClock = 2262;
    if (!date.isValid() || date.date().year() < 1970 || date.date().year() >= beyondTheClock) return std::nullopt;
    return UpdateDefaults::Time(std::chrono::milliseconds(date.toMSecsSinceEpoch()));
}

}  // namespace

UpdateDefaultsCopy::UpdateDefaultsCopy(const UserDefaults& settings)
    : automatic_(settings.value(settings::verifierMisesAJourAutomatiquement)),
      last_(timeOf(settings.stored(QString::fromLatin1(settings::lastSuccessfulUpdateCheckDate)))) {}

void UpdateDefaultsCopy::storeInto(UserDefaults& settings) const {
    if (!remembered_) return;
    const auto sinceEpoch = std::chrono::duration_cast<std::chrono::milliseconds>(remembered_->time_since_epoch());
    settings.store(QString::fromLatin1(settings::lastSuccessfulUpdateCheckDate),
                   QDateTime::fromMSecsSinceEpoch(sinceEpoch.count(), Qt::UTC).toString(Qt::ISODateWithMs));
}

}  // namespace dravik
