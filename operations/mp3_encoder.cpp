#include "operations/mp3_encoder.h"

#include "operations/export_configuration.h"

#include <algorithm>

#include <fmt/format.h>

namespace dravik {

bool MP3EncoderConfiguration::isValid() const noexcept {
    const auto isOneOf = [](const auto& values, int value) {
        return std::find(values.begin(), values.end(), value) != values.end();
    };
    return (channels == 1 || channels == 2) && isOneOf(mp3ExportSampleRates, sampleRate) &&
           isOneOf(mp3ExportBitRates, bitRate);
}

MP3EncoderError MP3EncoderError::initializationFailed(int code) {
    return {Case::initializationFailed, fmt::format("LAME initialization failed ({}).", code)};
}
MP3EncoderError MP3EncoderError::encodingFailed(int code) {
    return {Case::encodingFailed, fmt::format("LAME encoding failed ({}).", code)};
}
MP3EncoderError MP3EncoderError::flushingFailed(int code) {
    return {Case::flushingFailed, fmt::format("LAME finalization failed ({}).", code)};
}
MP3EncoderError MP3EncoderError::unavailable() { return {Case::unavailable, "The LAME MP3 encoder is unavailable."}; }
MP3EncoderError MP3EncoderError::invalidConfiguration() {
    return {Case::invalidConfiguration, "Invalid MP3 encoder configuration."};
}

}  // namespace dravik
