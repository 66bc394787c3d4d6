// A string hash, in the order in which its keys were first set: a section that
// is read into one and written back keeps the order of its lines.
//
// Keys and values stand one behind the other in one text, each with its NUL, so
// that a section is read with next to no allocations.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct VLIBCSzHash {
    struct Pair {
        std::string_view key;
        std::string_view value;
    };

    // Room for a section of the usual size.
    VLIBCSzHash();

    size_t Count() const { return places_.size(); }
    Pair At(size_t index) const;

    // The value with a NUL behind it, or null.
    const char *Find(std::string_view key) const;

    void Set(std::string_view key, std::string_view value);
    void Clear();

  private:
    // Of a pair in the text.
    struct Place {
        size_t key;
        size_t key_size;
        size_t value;
        size_t value_size;
        size_t value_room;  // what the value may grow to where it stands
    };
    Place *FindPlace(std::string_view key);
    void Add(std::string_view key, std::string_view value);
    size_t Append(std::string_view text);

    std::string text_;
    std::vector<Place> places_;
};
