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

// A range of the text of a file.
struct Range {
    size_t begin;
    size_t end;
};

struct Section {
    Range whole;  // with its header
    Range body;
};

struct Pair {
    Range line;  // with its newline
    std::string_view key;
    std::string_view value;
};

bool IsSectionName(const char *name) {
    return *name != '\0' && strpbrk(name, "]\n") == nullptr;
}

size_t LineEnd(std::string_view text, size_t begin) {
    const size_t newline = text.find('\n', begin);
    return newline == std::string_view::npos ? text.size() : newline + 1;
}

// The next line that starts with a bracket, from the start of a line on.
size_t NextHeader(std::string_view text, size_t begin) {
    for (;; ++begin) {
        begin = text.find('[', begin);
        if (begin == std::string_view::npos || begin == 0 || text[begin - 1] == '\n') return begin;
    }
}

// The last characters first: many names differ only there.
bool IsHeaderOf(std::string_view line, std::string_view name) {
    const size_t length = name.size();
    return line.size() >= length + 2 && line[length + 1] == ']' &&
           (length == 0 || line[length] == name[length - 1]) && line.substr(1, length) == name;
}

bool FindSection(std::string_view text, std::string_view name, Section *section) {
    for (size_t begin = NextHeader(text, 0); begin != std::string_view::npos;
         begin = NextHeader(text, begin + 1)) {
        if (!IsHeaderOf(text.substr(begin), name)) continue;
        const size_t body = LineEnd(text, begin);
        if (body - begin < name.size()) continue;  // no name goes over a line
        const size_t next = NextHeader(text, body);
        const size_t end = next == std::string_view::npos ? text.size() : next;
        *section = {{begin, end}, {body, end}};
        return true;
    }
    return false;
}

// Takes the next pair of a section's body apart. False at the end.
bool NextPair(std::string_view text, Range *rest, Pair *pair) {
    while (rest->begin < rest->end) {
        const size_t begin = rest->begin;
        rest->begin = LineEnd(text, begin);
        std::string_view line = text.substr(begin, rest->begin - begin);
        if (line.ends_with('\n')) line.remove_suffix(1);
        while (line.starts_with('\t')) line.remove_prefix(1);
        const size_t equals = line.find('=');
        if (equals == std::string_view::npos) continue;
        *pair = {{begin, rest->begin}, line.substr(0, equals), line.substr(equals + 1)};
        return true;
    }
    return false;
}

bool FindPair(std::string_view text, Range body, std::string_view key, Pair *pair) {
    while (NextPair(text, &body, pair)) {
        if (pair->key == key) return true;
    }
    return false;
}

// The lines of a hash, in its order. False when a pair would corrupt the file.
bool Render(const VLIBCSzHash &hash, const LineFormat &shape, std::string *lines) {
    for (size_t index = 0; index < hash.Count(); ++index) {
        const auto [key, value] = hash.At(index);
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

// Replaces a range of the old text by up to three pieces. 1 or negative.
int Splice(FileReplacement *file, Range range, std::string_view first, std::string_view second = {},
           std::string_view third = {}) {
    const std::string_view old = file->OldText();
    const std::string_view before = old.substr(0, range.begin);
    struct iovec pieces[] = {FilePiece(before), FilePiece(MissingNewline(before)),
                             FilePiece(first),  FilePiece(second),
                             FilePiece(third),  FilePiece(old.substr(range.end))};
    return file->Commit(pieces, std::size(pieces)) ? 1 : SystemError(kSource, __LINE__);
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
    const size_t end = file.OldText().size();
    return Splice(&file, {end, end}, text);
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
        return Splice(&file, {old.size(), old.size()}, header, line);
    }
    Pair pair;
    if (FindPair(old, section.body, key, &pair)) return Splice(&file, pair.line, line);
    return Splice(&file, {section.body.end, section.body.end}, line);
}

// Loads the file and finds the section: positive, 0 or negative as the interface has it.
int Lookup(const char *path, const char *name, FileImage *image, Section *section) {
    FileImage::Outcome outcome = image->Load(path);
    if (outcome == FileImage::Outcome::kAbsent) return 0;
    if (outcome == FileImage::Outcome::kLoaded) {
        // The last section may go on behind what was read.
        if (FindSection(image->Text(), name, section) && section->whole.end < image->Text().size())
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
    Pair pair;
    for (Range rest = found.body; NextPair(image.Text(), &rest, &pair);)
        (*hash)->Set(pair.key, pair.value);
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
    if (!FindPair(image.Text(), found.body, key, &pair)) return 0;
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
