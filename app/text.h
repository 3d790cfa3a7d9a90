#pragma once

#include <QFile>
#include <QString>
#include <QStringList>
#include <concepts>
#include <filesystem>
#include <string_view>

namespace dravik {

/// Between the engine's UTF-8 and the interface's texts.
[[nodiscard]] inline QString toQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
/// A path alone: texts would turn into one by themselves.
template <std::same_as<std::filesystem::path> Path>
[[nodiscard]] QString toQt(const Path& path) {
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}
[[nodiscard]] std::filesystem::path toPath(const QString& path);

/// Fields lay out all of a text for each key typed; a longer one, which nobody writes, is only shown, and not whole.
inline constexpr qsizetype longestTypedText = 10'000;
/// What one line of a table shows of a text at most.
inline constexpr qsizetype longestCellText = 500;
/// The text, or its beginning.
[[nodiscard]] inline QString shortened(const QString& text, qsizetype limit) {
    return text.size() <= limit ? text : text.left(limit) + QChar(0x2026);
}

/// What the interface counts.
enum class Noun { take, file, track, audioFile, document };
/// "1 file", "2 files", "1,204 files".
[[nodiscard]] QString counted(std::size_t number, Noun noun);
/// The number as tr() takes it, capped at the largest int: plural forms do not differ up there.
[[nodiscard]] int pluralOf(std::size_t number);

}  // namespace dravik
