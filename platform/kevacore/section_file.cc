// Sectioned files: "[NAME]" starts a section, its lines are "\tkey=value".
//
// A value is everything behind the first equals sign. Blank lines and lines
// without an equals sign are kept and mean nothing.

#include <cstring>
#include <iterator>
#include <new>
#include <string>
#include <string_view>

#include "error_code.h"
#include "file_image.h"
#include "file_replacement.h"
#include "kevacore.h"
#include "line_format.h"
#include "string_hash.h"

using kevacore::BadParameter;
using kevacore::FileImage;
using kevacore::FilePiece;
using kevacore::FileReplacement;
using kevacore::LineFormat;
using kevacore::SystemError;

namespace {

constexpr char kSource[] = "section_file";
constexpr char kValueFormat[] = "\t%s=%s\n";

// Parts of the text of a file.
struct Section {
    std::string_view whole;  // with its header
    std::string_view body;
};

struct Pair {
    std::string_view line;  // with its newline
    std::string_view key;
    std::string_view value;
};

bool IsSectionName(const char *name) {
    return *name != '\0' && strpbrk(name, "]\n") == nullptr;
}

// Its end when the character is not there.
const char *FindCharacter(const char *begin, const char *end, char character) {
    const void *found = memchr(begin, character, static_cast<size_t>(end - begin));
    return found ? static_cast<const char *>(found) : end;
}

// Behind the newline, if there is one.
const char *LineEnd(const char *begin, const char *end) {
    const char *const newline = FindCharacter(begin, end, '\n');
    return newline < end ? newline + 1 : end;
}

// The next line of a text that starts with a bracket, or the end.
inline const char *NextHeader(std::string_view text, const char *from) {
    const char *const end = text.data() + text.size();
    const char *at = FindCharacter(from, end, '[');
    while (at < end && at > text.data() && at[-1] != '\n') at = FindCharacter(at + 1, end, '[');
    return at;
}

// The last characters first: many names differ only there.
inline bool IsHeaderOf(std::string_view line, std::string_view name) {
    const size_t length = name.size();
    return line.size() >= length + 2 && line[length + 1] == ']' &&
           (length == 0 || line[length] == name[length - 1]) &&
           memcmp(line.data() + 1, name.data(), length) == 0;
}

bool FindSection(std::string_view text, std::string_view name, Section *section) {
    if (text.empty()) return false;
    const char *const end = text.data() + text.size();
    const char *begin = NextHeader(text, text.data());
    for (; begin < end; begin = NextHeader(text, begin + 1)) {
        if (!IsHeaderOf({begin, end}, name)) continue;
        const char *const body = LineEnd(begin, end);
        if (static_cast<size_t>(body - begin) < name.size()) continue;  // no name goes over a line
        const char *const next = NextHeader(text, body);
        *section = {{begin, next}, {body, next}};
        return true;
    }
    return false;
}

// Calls back with each pair of a section's body until that says that it is done.
template <typename Visitor>
void VisitPairs(std::string_view body, Visitor visit) {
    const char *const end = body.data() + body.size();
    for (const char *line = body.data(), *next; line < end; line = next) {
        const char *const stop = FindCharacter(line, end, '\n');
        next = stop < end ? stop + 1 : end;
        const char *key = line;
        while (key < stop && *key == '\t') ++key;
        const char *const equals = FindCharacter(key, stop, '=');
        if (equals == stop) continue;
        if (visit(Pair{{line, next}, {key, equals}, {equals + 1, stop}})) return;
    }
}

bool FindPair(std::string_view body, std::string_view key, Pair *found) {
    bool is_found = false;
    VisitPairs(body, [&](const Pair &pair) {
        is_found = pair.key == key;
        if (is_found) *found = pair;
        return is_found;
    });
    return is_found;
}

// The lines of a hash, in its order. False when a pair would corrupt the file.
bool Render(const VLIBCSzHash &hash, const LineFormat &shape, std::string *lines) {
    for (const auto &[key, value] : hash.Pairs()) {
        if (!kevacore::IsWritableKey(key.data()) || !kevacore::IsWritableValue(value.data()))
            return false;
        lines->append(shape.before_key).append(key).append(shape.between);
        lines->append(value).append(shape.after_value);
    }
    return true;
}

std::string_view MissingNewline(std::string_view text) {
    return !text.empty() && text.back() != '\n' ? "\n" : "";
}

// Replaces a part of the old text by up to three pieces. 1 or negative.
int Splice(FileReplacement *file, std::string_view part, std::string_view first,
           std::string_view second = {}, std::string_view third = {}) {
    const std::string_view old = file->OldText();
    const std::string_view before(old.begin(), part.begin());
    const std::string_view behind(part.end(), old.end());
    struct iovec pieces[] = {FilePiece(before), FilePiece(MissingNewline(before)),
                             FilePiece(first),  FilePiece(second),
                             FilePiece(third),  FilePiece(behind)};
    return file->Commit(pieces, std::size(pieces)) ? 1 : SystemError(kSource, __LINE__);
}

// The place behind a text, where more can be added.
std::string_view EndOf(std::string_view text) {
    return {text.end(), text.end()};
}

int SetSection(const char *path, const char *name, const VLIBCSzHash &hash,
               const LineFormat &shape) {
    std::string lines;
    if (!Render(hash, shape, &lines)) return BadParameter(kSource, __LINE__);
    FileReplacement file(path);
    if (!file.LoadOld()) return SystemError(kSource, __LINE__);
    Section section;
    if (!FindSection(file.OldText(), name, &section)) return 0;
    return Splice(&file, section.body, lines);
}

int AddSection(const char *path, const char *name, const VLIBCSzHash &hash,
               const LineFormat &shape) {
    std::string text = std::string("[") + name + "]\n";
    if (!Render(hash, shape, &text)) return BadParameter(kSource, __LINE__);
    FileReplacement file(path);
    if (!file.LoadOld()) return SystemError(kSource, __LINE__);
    Section section;
    if (FindSection(file.OldText(), name, &section)) {
        errno = EEXIST;
        return SystemError(kSource, __LINE__);
    }
    return Splice(&file, EndOf(file.OldText()), text);
}

int SetSectionValue(const char *path, const char *name, const char *key, const char *value) {
    LineFormat shape;
    shape.Parse(kValueFormat);
    std::string line;
    line.append(shape.before_key).append(key).append(shape.between);
    line.append(value).append(shape.after_value);
    FileReplacement file(path);
    if (!file.LoadOld()) return SystemError(kSource, __LINE__);
    const std::string_view old = file.OldText();
    Section section;
    if (!FindSection(old, name, &section)) {
        const std::string header = std::string("[") + name + "]\n";
        return Splice(&file, EndOf(old), header, line);
    }
    Pair pair;
    if (FindPair(section.body, key, &pair)) return Splice(&file, pair.line, line);
    return Splice(&file, EndOf(section.body), line);
}

// Loads the file and finds the section: positive, 0 or negative as the interface has it.
[[gnu::always_inline]] inline int Lookup(const char *path, const char *name, FileImage *image,
                                         Section *section) {
    FileImage::Outcome outcome = image->Load(path);
    if (outcome == FileImage::Outcome::kAbsent) return 0;
    if (outcome == FileImage::Outcome::kLoaded) {
        // The last section may go on behind what was read.
        const std::string_view text = image->Text();
        if (FindSection(text, name, section) && EndOf(section->whole).data() < EndOf(text).data())
            return 1;
        outcome = image->LoadRest();
    }
    if (outcome == FileImage::Outcome::kFailed) return SystemError(kSource, __LINE__);
    return FindSection(image->Text(), name, section) ? 1 : 0;
}

int OutOfMemory() {
    errno = ENOMEM;
    return SystemError(kSource, __LINE__);
}

}  // namespace

extern "C" {

int VLIBCFileGetSection(const char *path, const char *section, VLIBCSzHash **hash) try {
    if (!path || !section || !hash || !*hash) return BadParameter(kSource, __LINE__);
    FileImage image;
    Section found;
    const int result = Lookup(path, section, &image, &found);
    if (result <= 0) return result;
    VisitPairs((*hash)->Hold(found.body), [hash](const Pair &pair) {
        (*hash)->SetHeld(pair.key, pair.value);
        return false;
    });
    return 1;
} catch (const std::bad_alloc &) {
    return OutOfMemory();
}

int VLIBCFileSetSection(const char *path, const char *section, int /*flags*/, VLIBCSzHash *hash,
                        const char *format) try {
    LineFormat shape;
    if (!path || !section || !hash || !format || !IsSectionName(section) || !shape.Parse(format))
        return BadParameter(kSource, __LINE__);
    return SetSection(path, section, *hash, shape);
} catch (const std::bad_alloc &) {
    return OutOfMemory();
}

int VLIBCFileAddSection(const char *path, const char *section, VLIBCSzHash *hash,
                        const char *format) try {
    LineFormat shape;
    if (!path || !section || !hash || !format || !IsSectionName(section) || !shape.Parse(format))
        return BadParameter(kSource, __LINE__);
    return AddSection(path, section, *hash, shape);
} catch (const std::bad_alloc &) {
    return OutOfMemory();
}

int VLIBCFileRemoveSection(const char *path, const char *section) {
    if (!path || !section) return BadParameter(kSource, __LINE__);
    FileReplacement file(path);
    if (!file.LoadOld()) return SystemError(kSource, __LINE__);
    Section found;
    if (!FindSection(file.OldText(), section, &found)) return 0;
    return Splice(&file, found.whole, {});
}

int VLIBCFileGetSectionValue(const char *path, const char *section, const char *key, char *buffer,
                             unsigned int size) {
    if (!path || !section || !key || !buffer || size == 0) return BadParameter(kSource, __LINE__);
    FileImage image;
    Section found;
    const int result = Lookup(path, section, &image, &found);
    if (result <= 0) return result;
    Pair pair;
    if (!FindPair(found.body, key, &pair)) return 0;
    const size_t length = pair.value.size() < size ? pair.value.size() : size - 1;
    memcpy(buffer, pair.value.data(), length);
    buffer[length] = '\0';
    return 1;
}

int VLIBCFileSetSectionValue(const char *path, const char *section, const char *key,
                             const char *value) try {
    if (!path || !section || !key || !value || !IsSectionName(section) ||
        !kevacore::IsWritableKey(key) || !kevacore::IsWritableValue(value))
        return BadParameter(kSource, __LINE__);
    return SetSectionValue(path, section, key, value);
} catch (const std::bad_alloc &) {
    return OutOfMemory();
}

}  // extern "C"
