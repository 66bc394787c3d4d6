// A string hash, in the order in which its keys were first set: a section that
// is read into one and written back keeps the order of its lines.
//
// Keys and values stand one behind the other in one text, each with its NUL. A
// section of the usual size is read without an allocation.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "inline_memory.h"

struct VLIBCSzHash {
    struct Pair {
        std::string_view key;
        std::string_view value;
    };

    VLIBCSzHash();

    // All pairs, each key once.
    std::vector<Pair> Pairs() const;

    // The value with a NUL behind it, or null.
    const char *Find(const char *key) const;

    // The value may be one of the hash's own.
    void Set(std::string_view key, std::string_view value);
    void Clear();

    // For a text of many pairs, which is copied once. The copy lasts until the hash
    // is changed by anything but SetHeld, whose key and value are parts of it; the
    // character behind each of the two becomes its NUL.
    std::string_view Hold(std::string_view text);
    void SetHeld(std::string_view key, std::string_view value) {
        const size_t key_place = static_cast<size_t>(key.data() - text_.data());
        const size_t value_place = static_cast<size_t>(value.data() - text_.data());
        text_[key_place + key.size()] = '\0';
        text_[value_place + value.size()] = '\0';
        places_.push_back({key_place, key.size(), value_place, value.size(), value.size()});
    }

  private:
    // Of a pair in the text. Where a key has two, the later one counts.
    struct Place {
        size_t key;
        size_t key_size;
        size_t value;
        size_t value_size;
        size_t value_room;  // what the value may grow to where it stands
    };
    std::string_view KeyOf(const Place &place) const;
    Place *FindPlace(std::string_view key);
    size_t Append(std::string_view text);

    static constexpr size_t kUsualText = 368;
    static constexpr size_t kUsualPairs = 12;
    static constexpr size_t kMemory = kUsualText + kUsualPairs * sizeof(Place);

    kevacore::InlineMemory<kMemory> memory_;
    kevacore::InlineText<kMemory> text_{&memory_};
    kevacore::InlineVector<Place, kMemory> places_{&memory_};
};
