#include "operations/operation_audio_error.h"

#include <string>

#include <gtest/gtest.h>

namespace dravik {
namespace {

TEST(OperationAudioError, SaysItsMessageAloneWhateverTheCase) {
    const OperationAudioError errors[] = {OperationAudioError::groupeIncompatible("a.wav is not poly."),
                                          OperationAudioError::impossibleCreerFormat("a.wav is not poly."),
                                          OperationAudioError::donneesAudioInaccessibles("a.wav is not poly.")};
    const OperationAudioError::Case cases[] = {OperationAudioError::Case::groupeIncompatible,
                                               OperationAudioError::Case::impossibleCreerFormat,
                                               OperationAudioError::Case::donneesAudioInaccessibles};
    for (std::size_t at = 0; at < std::size(errors); ++at) {
        EXPECT_EQ(errors[at].errorCase(), cases[at]);
        EXPECT_EQ(std::string(errors[at].what()), "a.wav is not poly.");
    }
}

}  // namespace
}  // namespace dravik
