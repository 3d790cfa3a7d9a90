#include "operations/operation_audio_error.h"

namespace dravik {

OperationAudioError OperationAudioError::groupeIncompatible(std::string message) {
    return {Case::groupeIncompatible, std::move(message)};
}

OperationAudioError OperationAudioError::impossibleCreerFormat(std::string message) {
    return {Case::impossibleCreerFormat, std::move(message)};
}

OperationAudioError OperationAudioError::donneesAudioInaccessibles(std::string message) {
    return {Case::donneesAudioInaccessibles, std::move(message)};
}

}  // namespace dravik
