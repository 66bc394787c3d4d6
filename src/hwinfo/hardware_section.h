// The sections of the hardware file.
#pragma once

#include <cstdint>

constexpr char kLocalHostSection[] = "LOCAL_HOST";
constexpr char kRemoteHostSection[] = "REMOTE_HOST";
constexpr char kCommonSection[] = "COMMON";

// The section of a node; null when the selector names neither.
const char *HostSection(int32_t selector);

// The name of an enclosure's section.
class EnclosureSection {
  public:
    explicit EnclosureSection(const char *serial);

    const char *Name() const { return name_; }

  private:
    char name_[64];
};

// Reads one value; empty when it is absent. False on a failure.
bool ReadSectionText(const char *section, const char *key, char *text, uint32_t size);

// Reads a number of at most size - 1 characters; 0 when it is absent. False on
// a failure.
bool ReadSectionNumber(const char *section, const char *key, uint32_t size, int32_t *number);
