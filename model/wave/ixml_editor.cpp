#include "model/wave/ixml_editor.h"

#include "base/text.h"
#include "model/wave/ixml_document.h"
#include "model/wave/ixml_tags.h"
#include "model/wave/ixml_track_list.h"
#include "model/wave/timecode.h"

#include <algorithm>
#include <array>
#include <initializer_list>

#include <fmt/format.h>

namespace dravik {
namespace {

// The public functions take a view and give a new document. mettreAJourIXML applies some thirty edits in a row, so the
// work is done on one string in place.

std::string element(std::string_view name, std::string_view value) {
    return fmt::format("<{0}>{1}</{0}>", name, value);
}

void insertElement(std::string& document, std::string_view name, std::string_view value) {
    const std::string inserted = element(name, value);
    for (const std::string_view neighbour : {"TAKE", "SCENE"}) {
        if (const std::size_t at = findClosingTag(document, neighbour); at != noTag) {
            document.insert(at + closingTagBytes(neighbour), fmt::format("\n{}", inserted));
            return;
        }
    }
    for (const std::string_view root : {"BWFXML", "IXML"}) {
        if (const std::size_t at = findClosingTag(document, root); at != noTag) {
            document.insert(at, fmt::format("\n{}\n", inserted));
            return;
        }
    }
    document.append("\n").append(inserted);
}

/// Puts the value into the first element within document[begin, end); false when there is none.
bool replaceValueWithin(std::string& document, std::size_t begin, std::size_t end, std::string_view name,
                        std::string_view value) {
    const auto found = plageTag(std::string_view(document).substr(begin, end - begin), name);
    if (!found) return false;
    document.replace(begin + found->valueBegin, found->valueEnd - found->valueBegin, value);
    return true;
}

bool replaceValue(std::string& document, std::string_view name, std::string_view value) {
    return replaceValueWithin(document, 0, document.size(), name, value);
}

/// The elements that exist twice: at the top and in SPEED, or as a second copy (see definirTag).
bool isTimeElement(std::string_view name) noexcept {
    static constexpr std::array<std::string_view, 4> names = {
        "TIMECODE_RATE", "TIMECODE_FLAG", "TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO", "TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI"};
    return std::any_of(names.begin(), names.end(), [&](auto known) { return equalsIgnoringAsciiCase(name, known); });
}

/// Puts the value into every element of that name behind `from` that holds text alone, in one pass; how many there are.
/// One that holds other tags is damage, and what a reader would take for its value is not its own.
std::size_t replaceCopies(std::string& document, std::size_t from, std::string_view name, std::string_view value) {
    const std::string_view text = document;
    std::string out;
    std::size_t copied = 0;
    std::size_t copies = 0;
    bool differs = false;
    for (std::size_t at = findOpeningTag(text, name, from); at != noTag; at = findOpeningTag(text, name, at + 1)) {
        const std::size_t tagEnd = text.find_first_of("<>", at + 1);
        if (tagEnd == noTag) break;
        const std::size_t valueEnd = text[tagEnd] == '>' ? text.find('<', tagEnd) : noTag;
        if (valueEnd == noTag || !closesElement(text, valueEnd, name)) continue;
        ++copies;
        differs = differs || text.substr(tagEnd + 1, valueEnd - tagEnd - 1) != value;
        out.append(text.substr(copied, tagEnd + 1 - copied)).append(value);
        copied = valueEnd;
    }
    if (!differs) return copies;
    out.append(text.substr(copied));
    document = std::move(out);
    return copies;
}

/// definirTag for the time elements. All copies keep saying the same, or a later edit would leave the first one right
/// and the others stale; and what has a second copy gets no third, or each save would add one.
void setTimeElement(std::string& document, std::string_view name, std::string_view value) {
    const auto found = plageTag(document, name);
    if (!found) {
        insertElement(document, name, value);
        return;
    }
    const bool equal =
        std::string_view(document).substr(found->valueBegin, found->valueEnd - found->valueBegin) == value;
    const std::size_t copies = replaceCopies(document, found->end, name, value);
    if (!equal) {
        document.replace(found->valueBegin, found->valueEnd - found->valueBegin, value);
    } else if (copies == 0) {
        insertElement(document, name, value);
    }
}

void setElement(std::string& document, std::string_view name, std::string_view value) {
    if (isTimeElement(name)) {
        setTimeElement(document, name, value);
    } else if (!replaceValue(document, name, value)) {
        insertElement(document, name, value);
    }
}

/// definirTag for NOTE: blind for the tags inside the first SPEED element, as the reader is.
void setNote(std::string& document, std::string_view value) {
    const auto speed = plageTag(document, "SPEED");
    if (!speed) {
        setElement(document, "NOTE", value);
        return;
    }
    const std::string_view text = document;
    const auto outside = [&](auto findTag, std::size_t from) {
        const std::size_t at = findTag(text, "NOTE", from);
        return at >= speed->begin && at < speed->end ? findTag(text, "NOTE", speed->end) : at;
    };
    const std::size_t begin = outside(findOpeningTag, 0);
    const std::size_t tagEnd = begin == noTag ? noTag : text.find('>', begin);
    const std::size_t valueEnd = tagEnd == noTag ? noTag : outside(findClosingTag, tagEnd + 1);
    if (valueEnd == noTag) {
        insertElement(document, "NOTE", value);
    } else {
        document.replace(tagEnd + 1, valueEnd - tagEnd - 1, value);
    }
}

void setChild(std::string& document, std::string_view parent, std::string_view child, std::string_view value) {
    const auto found = plageTag(document, parent);
    if (!found) {
        insertElement(document, parent, fmt::format("\n{}\n", element(child, value)));
    } else if (!replaceValueWithin(document, found->valueBegin, found->valueEnd, child, value)) {
        document.insert(found->valueEnd, fmt::format("\n{}", element(child, value)));
    }
}

/// One pass that gives what removing the first element over and over gives. Only the join of what was kept with what is
/// still to be read can hold an opening tag that was not there before: up to the removed element the text had none.
std::string withoutElements(std::string_view document, std::string_view name) {
    std::string kept;
    kept.reserve(document.size());
    std::size_t at = 0;  // document[at, ...) is still to be read
    while (true) {
        // An opening tag that begins among the last bytes kept. Names have no '<', so that only the last one can be it.
        const std::size_t tail = kept.size() - std::min(kept.size(), name.size());
        const std::size_t inTail = std::string_view(kept).substr(tail).rfind('<');
        const std::string_view ahead =
            inTail == noTag ? std::string_view{} : std::string_view(kept).substr(tail + inTail);
        const bool opensAtJoin =
            !ahead.empty() &&
            opensElement(std::string(ahead).append(document.substr(at, name.size() + 2 - ahead.size())), 0, name);

        const std::size_t begin = opensAtJoin ? at : findOpeningTag(document, name, at);
        const std::size_t tagEnd = begin == noTag ? noTag : document.find('>', begin);
        const std::size_t closing = tagEnd == noTag ? noTag : findClosingTag(document, name, tagEnd + 1);
        if (closing == noTag) return kept.append(document.substr(at));

        if (opensAtJoin) {
            kept.resize(kept.size() - ahead.size());
        } else {
            kept.append(document.substr(at, begin - at));
        }
        at = closing + closingTagBytes(name);
        while (at < document.size() && std::string_view(" \t\n\r").find(document[at]) != std::string_view::npos)
            ++at;
    }
}

void setCircled(std::string& document, bool circled) {
    for (const std::string_view name : {"CIRCLE", "TAKE_TYPE", "CIRCLED"})
        document = withoutElements(document, name);
    insertElement(document, "CIRCLED", circled ? "TRUE" : "FALSE");
}

void setWild(std::string& document, bool wild) {
    if (!wild && !plageTag(document, "WILD_TRACK")) return;
    document = withoutElements(document, "WILD_TRACK");
    insertElement(document, "WILD_TRACK", wild ? "TRUE" : "FALSE");
}

void setFramerate(std::string& document, std::string_view label) {
    const std::string rate = ixmlRateText(label);
    const std::string speed = speedText(label);
    const std::string_view flag = flagText(label);
    setElement(document, "TIMECODE_RATE", rate);
    setElement(document, "TIMECODE_FLAG", flag);
    setChild(document, "SPEED", "MASTER_SPEED", speed);
    setChild(document, "SPEED", "CURRENT_SPEED", speed);
    setChild(document, "SPEED", "TIMECODE_RATE", rate);
    setChild(document, "SPEED", "TIMECODE_FLAG", flag);
}

void setStart(std::string& document, std::uint64_t samples) {
    const std::string low = fmt::format("{}", samples & 0xFFFFFFFFU);
    const std::string high = fmt::format("{}", samples >> 32U);
    setElement(document, "TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO", low);
    setElement(document, "TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI", high);
    setChild(document, "SPEED", "TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO", low);
    setChild(document, "SPEED", "TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI", high);
}

/// "<NAME/>" becomes "<NAME></NAME>". To the patterns, an empty tag opens an element that ends with some later closing
/// tag of its name: ours, at the next save, which would then take everything in between for the old value.
void expandEmptyTags(std::string& document, std::string_view name) {
    const std::string_view text = document;
    std::string out;
    std::size_t copied = 0;
    for (std::size_t at = findOpeningTag(text, name); at != noTag; at = findOpeningTag(text, name, at + 1)) {
        const std::size_t stop = text.find_first_of("<>", at + 1);
        if (stop == noTag || text[stop] != '>' || text[stop - 1] != '/') continue;
        out.append(text.substr(copied, stop - 1 - copied))
            .append(fmt::format("></{}>", text.substr(at + 1, name.size())));
        copied = stop + 1;
    }
    if (copied == 0) return;
    out.append(text.substr(copied));
    document = std::move(out);
}

void expandEmptyTags(std::string& document, const MetadataValues& values, bool wildWritten) {
    const auto expand = [&](bool written, std::initializer_list<std::string_view> names) {
        if (!written) return;
        for (const std::string_view name : names)
            expandEmptyTags(document, name);
    };
    expand(values.project.has_value(), {"PROJECT"});
    expand(values.scene.has_value(), {"SCENE"});
    expand(values.tape.has_value(), {"TAPE"});
    expand(values.prise.has_value(), {"TAKE"});
    expand(values.note.has_value(), {"NOTE"});
    expand(true, {"CIRCLED", "CIRCLE", "TAKE_TYPE"});
    expand(wildWritten, {"WILD_TRACK"});
    expand(!values.framerate.empty() || !values.timecode.empty(),
           {"SPEED", "MASTER_SPEED", "CURRENT_SPEED", "TIMECODE_RATE", "TIMECODE_FLAG",
            "TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_LO", "TIMESTAMP_SAMPLES_SINCE_MIDNIGHT_HI"});
    const bool names = !values.nomsPistes.empty() || values.soleTrackName.has_value();
    const bool numbers = !values.numerosTracks.empty() || values.soleTrackNumber.has_value();
    expand(names || numbers, {"TRACK_LIST", "TRACK_COUNT", "TRACK", "INTERLEAVE_INDEX", "CHANNEL_INDEX"});
    expand(names, {"NAME"});
}

void refuseLarge(std::string_view document) {
    if (document.size() > maxIxmlBytes) {
        throw IxmlError(fmt::format("The iXML document is larger than {} MiB.", maxIxmlBytes / (1024 * 1024)));
    }
}

}  // namespace

void declareUtf8(std::string& document) {
    const std::string_view declared = declaredEncoding(document);
    if (declared.empty() || equalsIgnoringAsciiCase(declared, "UTF-8")) return;
    if (std::all_of(document.begin(), document.end(), [](char c) { return (c & 0x80) == 0; })) return;
    document.replace(static_cast<std::size_t>(declared.data() - document.data()), declared.size(), "UTF-8");
}

std::string remplacerValeurTag(std::string_view document, std::string_view name, std::string_view value) {
    std::string edited(document);
    replaceValue(edited, name, value);
    return edited;
}

std::string insererTag(std::string_view document, std::string_view name, std::string_view value) {
    std::string edited(document);
    insertElement(edited, name, value);
    return edited;
}

std::string definirTag(std::string_view document, std::string_view name, std::string_view value) {
    std::string edited(document);
    setElement(edited, name, value);
    return edited;
}

std::string supprimerTags(std::string_view document, std::string_view name) { return withoutElements(document, name); }

std::string definirSousTag(std::string_view document, std::string_view parent, std::string_view child,
                           std::string_view value) {
    std::string edited(document);
    setChild(edited, parent, child, value);
    return edited;
}

std::string setTrackName(std::string_view document, int track, std::string_view name) {
    std::string edited(document);
    writeTracks(edited, {.names = {{track, std::string(name)}}});
    return edited;
}

std::string setTrackNumber(std::string_view document, int position, int number) {
    std::string edited(document);
    writeTracks(edited, {.numbers = {{position, number}}});
    return edited;
}

std::string mettreAJourIXML(std::string_view document, const MetadataValues& values) {
    refuseLarge(document);
    const IxmlDocument before(document);
    const bool circled = values.circled ? *values.circled : lireCircled(before);
    // A wild state that only TAKE_TYPE tells goes with it, unless it gets an element of its own.
    std::optional<bool> wild = values.wild;
    if (!wild && !before.find("WILD_TRACK") && lireWild(before)) wild = true;

    std::string edited(document);
    expandEmptyTags(edited, values, wild.has_value());
    if (values.project) setElement(edited, "PROJECT", *values.project);
    if (values.scene) setElement(edited, "SCENE", *values.scene);
    if (values.tape) setElement(edited, "TAPE", *values.tape);
    if (values.prise) setElement(edited, "TAKE", *values.prise);
    if (values.note) setNote(edited, *values.note);
    setCircled(edited, circled);
    if (wild) setWild(edited, *wild);
    if (!values.framerate.empty()) setFramerate(edited, values.framerate);
    if (!values.timecode.empty()) {
        setStart(edited, samplesFromTimecode(values.timecode, values.framerate, values.sampleRate));
    }
    writeTracks(edited, {values.nomsPistes, values.soleTrackName, values.numerosTracks, values.soleTrackNumber});

    declareUtf8(edited);

    refuseLarge(edited);
    if (!isValidUtf8(edited)) throw IxmlError("The text to write into the iXML document is not valid UTF-8.");
    return edited;
}

std::string withPaddingKept(std::string_view original, std::string edited) {
    // Shorter runs are line ends and chance, not space that somebody reserved.
    constexpr std::size_t leastPadding = 16;
    if (original.empty()) return edited;
    const char padding = original.back();
    if (padding != '\0' && padding != ' ') return edited;
    const auto runLength = [padding](std::string_view text) {
        const std::size_t last = text.find_last_not_of(padding);
        return last == std::string_view::npos ? text.size() : text.size() - last - 1;
    };
    const std::size_t run = runLength(edited);
    if (runLength(original) < leastPadding || run == 0) return edited;
    const std::size_t withoutRun = edited.size() - run;
    if (withoutRun < original.size()) edited.resize(original.size(), padding);
    return edited;
}

}  // namespace dravik
