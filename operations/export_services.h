#pragma once

#include "base/progress.h"
#include "base/safe_file.h"
#include "model/sample_decoder.h"
#include "operations/aac_encoder.h"
#include "operations/mp3_encoder.h"
#include "operations/sample_rate_converter.h"

namespace dravik {

/// What exports are given to work with; whoever puts the program together owns it. Any thread.
struct ExportServices {
    FileOps& ops;
    const SampleRateConverters& converters;
    const AacEncoders& aac;
    const MP3Encoders& mp3;
    const SampleDecoder& decoder;  ///< decodes what was encoded, as proof
};

}  // namespace dravik
