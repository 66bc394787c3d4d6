// Key/value files: one key="value" line for each key.
//
// The value stands between the first and the last quote of its line, so it may
// hold quotes and equals signs; a line without quotes holds it bare. Where a
// key stands twice, the first line counts.

#include <cerrno>
#include <cstring>
#include <string_view>

#include "error_code.h"
#include "file_image.h"
#include "file_replacement.h"
#include "kevacore.h"
#include "line_format.h"

using kevacore::BadParameter;
using kevacore::FileImage;
using kevacore::FilePiece;
using kevacore::FileReplacement;
using kevacore::LineFormat;
using kevacore::SystemError;

namespace {

constexpr char kSource[] = "key_value_file";

struct Line {
    size_t begin;
    size_t end;  // behind the newline
    std::string_view value;
};

std::string_view Unquote(std::string_view value) {
    if (value.ends_with('\r')) value.remove_suffix(1);
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
        return value.substr(1, value.size() - 2);
    return value;
}

// Finds the first line of a key.
bool FindLine(std::string_view text, std::string_view key, Line *line) {
    const char *const end = text.data() + text.size();
    for (const char *at = text.data(); at < end;) {
        const size_t rest = static_cast<size_t>(end - at);
        const bool matches =
            rest > key.size() && at[key.size()] == '=' && memcmp(at, key.data(), key.size()) == 0;
        const auto *newline = static_cast<const char *>(memchr(at, '\n', rest));
        const char *const stop = newline ? newline : end;
        if (matches) {
            const char *const value = at + key.size() + 1;
            *line = {static_cast<size_t>(at - text.data()),
                     static_cast<size_t>((newline ? newline + 1 : end) - text.data()),
                     Unquote({value, static_cast<size_t>(stop - value)})};
            return true;
        }
        if (!newline) break;
        at = newline + 1;
    }
    return false;
}

// Whether the line is there to its end.
bool FindWholeLine(std::string_view text, std::string_view key, Line *line) {
    return FindLine(text, key, line) && text[line->end - 1] == '\n';
}

// Loads the file and finds the key: positive, 0 or negative as the interface has it.
[[gnu::always_inline]] inline int Lookup(const char *path, const char *key, FileImage *image,
                                         Line *line) {
    FileImage::Outcome outcome = image->Load(path);
    if (outcome == FileImage::Outcome::kAbsent) return 0;
    if (outcome == FileImage::Outcome::kLoaded) {
        if (FindWholeLine(image->Text(), key, line)) return 1;
        outcome = image->LoadRest();
    }
    if (outcome == FileImage::Outcome::kFailed) return SystemError(kSource, __LINE__);
    return FindLine(image->Text(), key, line) ? 1 : 0;
}

}  // namespace

extern "C" {

int VLIBCFileGetKeyValue(const char *path, const char *key, char *buffer, unsigned int size,
                         int /*flags*/) {
    if (!path || !key || !buffer || size == 0) return BadParameter(kSource, __LINE__);
    FileImage image;
    Line line;
    const int found = Lookup(path, key, &image, &line);
    if (found <= 0) return found;
    const size_t length = line.value.size() < size ? line.value.size() : size - 1;
    memcpy(buffer, line.value.data(), length);
    buffer[length] = '\0';
    return 1;
}

int VLIBCFileCheckKeyValue(const char *path, const char *key, const char *value, int /*flags*/) {
    if (!path || !key || !value) {
        BadParameter(kSource, __LINE__);
        return 0;
    }
    FileImage image;
    Line line;
    return Lookup(path, key, &image, &line) > 0 && line.value == value ? 1 : 0;
}

int VLIBCFileSetKeyValue(const char *path, const char *key, const char *value, const char *format) {
    LineFormat shape;
    if (!path || !key || !value || !format || !shape.Parse(format) ||
        !kevacore::IsWritableKey(key) || !kevacore::IsWritableValue(value))
        return BadParameter(kSource, __LINE__);
    FileReplacement replacement(path);
    if (!replacement.LoadOld()) return SystemError(kSource, __LINE__);
    const std::string_view old = replacement.OldText();
    Line line = {old.size(), old.size(), {}};
    FindLine(old, key, &line);
    const std::string_view before = old.substr(0, line.begin);
    const bool unfinished = !before.empty() && before.back() != '\n';
    struct iovec pieces[] = {FilePiece(before),
                             FilePiece(unfinished ? "\n" : ""),
                             FilePiece(shape.before_key),
                             FilePiece(key),
                             FilePiece(shape.between),
                             FilePiece(value),
                             FilePiece(shape.after_value),
                             FilePiece(old.substr(line.end))};
    if (!replacement.Commit(pieces, std::size(pieces))) return SystemError(kSource, __LINE__);
    return 1;
}

int VLIBCFileRemoveKey(const char *path, const char *key) {
    if (!path || !key) return BadParameter(kSource, __LINE__);
    for (bool removed = false;; removed = true) {  // once more for each line that repeats the key
        FileReplacement replacement(path);
        if (!replacement.LoadOld()) return SystemError(kSource, __LINE__);
        const std::string_view old = replacement.OldText();
        Line line;
        if (!FindLine(old, key, &line)) return removed ? 1 : 0;
        struct iovec pieces[] = {FilePiece(old.substr(0, line.begin)),
                                 FilePiece(old.substr(line.end))};
        if (!replacement.Commit(pieces, std::size(pieces))) return SystemError(kSource, __LINE__);
    }
}

}  // extern "C"
