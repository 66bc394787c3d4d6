#include "string_hash.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "error_code.h"
#include "kevacore.h"

using kevacore::BadParameter;
using kevacore::SystemError;

namespace {

constexpr char kSource[] = "string_hash";

int OutOfMemory() {
    errno = ENOMEM;
    return SystemError(kSource, __LINE__);
}

}  // namespace

VLIBCSzHash::VLIBCSzHash() {
    text_.reserve(kUsualText - 1);
    places_.reserve(kUsualPairs);
}

std::vector<VLIBCSzHash::Pair> VLIBCSzHash::Pairs() const {
    std::vector<Pair> pairs;
    for (const Place &place : places_) {
        const std::string_view key = KeyOf(place);
        const std::string_view value(text_.data() + place.value, place.value_size);
        const auto known = std::find_if(pairs.begin(), pairs.end(),
                                        [key](const Pair &pair) { return pair.key == key; });
        if (known == pairs.end())
            pairs.push_back({key, value});
        else
            known->value = value;
    }
    return pairs;
}

const char *VLIBCSzHash::Find(const char *key) const {
    for (auto place = places_.rbegin(); place != places_.rend(); ++place) {
        const char *const known = text_.data() + place->key;
        // The first character tells most keys apart, without a call.
        if (*known == *key && strcmp(known, key) == 0) return text_.data() + place->value;
    }
    return nullptr;
}

// The text may move; when memory is short, the hash is as it was but for bytes
// that no pair points to.
void VLIBCSzHash::Set(std::string_view key, std::string_view value) {
    const std::string copy(value);
    Place *known = FindPlace(key);
    if (!known) {
        const size_t place = Append(key);
        places_.push_back({place, key.size(), Append(copy), copy.size(), copy.size()});
        return;
    }
    if (copy.size() > known->value_room) {
        // Twice its room, so that setting it again and again does not fill the memory.
        known->value = Append(std::string(2 * copy.size(), '\0'));
        known->value_room = 2 * copy.size();
    }
    memcpy(text_.data() + known->value, copy.c_str(), copy.size() + 1);
    known->value_size = copy.size();
}

void VLIBCSzHash::Clear() {
    text_.clear();
    places_.clear();
}

std::string_view VLIBCSzHash::Hold(std::string_view text) {
    const size_t place = Append(text);
    return {text_.data() + place, text.size()};
}

std::string_view VLIBCSzHash::KeyOf(const Place &place) const {
    return {text_.data() + place.key, place.key_size};
}

VLIBCSzHash::Place *VLIBCSzHash::FindPlace(std::string_view key) {
    const auto found = std::find_if(places_.rbegin(), places_.rend(),
                                    [&](const Place &place) { return KeyOf(place) == key; });
    return found == places_.rend() ? nullptr : &*found;
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
