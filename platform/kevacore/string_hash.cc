#include "string_hash.h"

#include <cerrno>
#include <cstring>
#include <new>

#include "error_code.h"
#include "kevacore.h"

using kevacore::BadParameter;
using kevacore::SystemError;

namespace {

constexpr char kSource[] = "string_hash";
constexpr size_t kUsualText = 512;
constexpr size_t kUsualPairs = 12;

int OutOfMemory() {
    errno = ENOMEM;
    return SystemError(kSource, __LINE__);
}

}  // namespace

VLIBCSzHash::VLIBCSzHash() {
    text_.reserve(kUsualText);
    places_.reserve(kUsualPairs);
}

VLIBCSzHash::Pair VLIBCSzHash::At(size_t index) const {
    const Place &place = places_[index];
    return {{text_.data() + place.key, place.key_size},
            {text_.data() + place.value, place.value_size}};
}

const char *VLIBCSzHash::Find(std::string_view key) const {
    const Place *place = const_cast<VLIBCSzHash *>(this)->FindPlace(key);
    return place ? text_.data() + place->value : nullptr;
}

// The text may move; when memory is short, the hash is as it was but for bytes
// that no pair points to.
void VLIBCSzHash::Set(std::string_view key, std::string_view value) {
    Place *known = FindPlace(key);
    if (known && value.size() <= known->value_room) {
        memmove(text_.data() + known->value, value.data(), value.size());
        text_[known->value + value.size()] = '\0';
        known->value_size = value.size();
        return;
    }
    if (!known) {
        Add(key, value);
        return;
    }
    // A value that grows gets twice its room, so that setting it again and again
    // does not fill the memory.
    const size_t place = Append(std::string(value));
    text_.append(value.size(), '\0');
    known->value = place;
    known->value_size = value.size();
    known->value_room = 2 * value.size();
}

// A line of a file has both, with a character between, and is copied at once.
void VLIBCSzHash::Add(std::string_view key, std::string_view value) {
    Place place = {0, key.size(), 0, value.size(), value.size()};
    if (key.data() + key.size() + 1 == value.data()) {
        place.key = Append({key.data(), key.size() + 1 + value.size()});
        place.value = place.key + key.size() + 1;
        text_[place.value - 1] = '\0';
    } else {
        place.key = Append(key);
        place.value = Append(value);
    }
    places_.push_back(place);
}

void VLIBCSzHash::Clear() {
    text_.clear();
    places_.clear();
}

VLIBCSzHash::Place *VLIBCSzHash::FindPlace(std::string_view key) {
    for (Place &place : places_) {
        if (place.key_size != key.size()) continue;
        const char *const known = text_.data() + place.key;
        // The first character tells most keys of one length apart, without a call.
        if (key.empty() || (known[0] == key[0] && memcmp(known, key.data(), key.size()) == 0))
            return &place;
    }
    return nullptr;
}

size_t VLIBCSzHash::Append(std::string_view text) {
    const size_t place = text_.size();
    text_.append(text).push_back('\0');
    return place;
}

extern "C" {

VLIBCSzHash *VLIBCSzHashAlloc(int /*size*/) try {
    return new VLIBCSzHash;
} catch (const std::bad_alloc &) {
    OutOfMemory();
    return nullptr;
}

const char *VLIBCSzHashGetValue(const VLIBCSzHash *hash, const char *key) {
    if (!hash || !key) {
        BadParameter(kSource, __LINE__);
        return nullptr;
    }
    return hash->Find(key);
}

int VLIBCSzHashSetValue(VLIBCSzHash **hash, const char *key, const char *value) try {
    if (!hash || !*hash || !key || !value) return BadParameter(kSource, __LINE__);
    (*hash)->Set(key, value);
    return 0;
} catch (const std::bad_alloc &) {
    return OutOfMemory();
}

void VLIBCHashRemoveAll(VLIBCSzHash *hash) {
    if (hash) hash->Clear();
}

void VLIBCSzHashFree(VLIBCSzHash *hash) {
    delete hash;
}

}  // extern "C"
