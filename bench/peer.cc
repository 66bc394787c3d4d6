#include "peer.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <string_view>

#include "node_setup.h"
#include "zor_hwinfo_core.h"

namespace peers {

namespace {

using Pairs = std::map<std::string, std::string>;

Pairs ReadSection(const std::string &header) {
    char text[16384];
    const int fd = open(kHardwareFile, O_RDONLY | O_CLOEXEC);
    const ssize_t size = read(fd, text, sizeof text);
    close(fd);
    Pairs pairs;
    bool is_found = false;
    std::string_view rest(text, size > 0 ? static_cast<size_t>(size) : 0);
    for (size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
        const std::string_view line = rest.substr(0, end);
        rest.remove_prefix(end + 1);
        if (line.starts_with('[')) {
            if (is_found) break;
            is_found = line == header;
        } else if (const size_t equals = line.find('='); is_found && equals != line.npos) {
            pairs.emplace(line.substr(1, equals - 1), line.substr(equals + 1));
        }
    }
    return pairs;
}

int32_t Number(const Pairs &pairs, const char *key) {
    const auto pair = pairs.find(key);
    return pair == pairs.end() ? 0 : atoi(pair->second.c_str());
}

template <size_t Count>
void ReadNumbers(const Pairs &pairs, const char *key, int32_t (&numbers)[Count]) {
    const auto pair = pairs.find(key);
    if (pair == pairs.end()) return;
    const char *at = pair->second.c_str();
    for (int32_t &number : numbers) {
        char *end;
        number = static_cast<int32_t>(strtol(at, &end, 10));
        at = *end == ',' ? end + 1 : end;
    }
}

void ReadSerials(std::string_view serials, ZORHWHostInfo *host) {
    for (ZORHWEncInfo &enclosure : host->Encs) {
        const size_t length = std::min(serials.find(','), serials.size());
        const size_t kept = std::min(length, sizeof enclosure.EncSN - 1);
        memcpy(enclosure.EncSN, serials.data(), kept);
        enclosure.EncSN[kept] = '\0';
        serials.remove_prefix(std::min(length + 1, serials.size()));
    }
}

void ReadEnclosure(ZORHWEncInfo *enclosure) {
    const Pairs pairs = ReadSection(std::string("[ENCLOSURE_") + enclosure->EncSN + "]");
    enclosure->ModelID = Number(pairs, "ModelID");
    enclosure->MaxDisk = Number(pairs, "MaxDisk");
    enclosure->TempStatus = Number(pairs, "TempStatus");
    ReadNumbers(pairs, "DiskTypes", enclosure->DiskTypes);
    ReadNumbers(pairs, "FanStatus", enclosure->FanStatus);
    ReadNumbers(pairs, "PowerStatus", enclosure->PowerStatus);
}

void ReadHost(const char *header, ZORHWHostInfo *host) {
    Pairs pairs = ReadSection(header);
    host->VisibleDisk = Number(pairs, "VisibleDisk");
    host->UsedDisk = Number(pairs, "UsedDisk");
    host->HostType = Number(pairs, "HostType");
    host->Memory = Number(pairs, "Memory");
    host->EncListStatus = Number(pairs, "EncListStatus");
    host->EncListStatusLastCorretPos = Number(pairs, "EncListStatusLastCorretPos");
    host->EncListLength = std::clamp(Number(pairs, "EncListLength"), 0, ZOR_ENC_TABLE_SIZE);
    ReadSerials(pairs["EncList"], host);
    for (int index = 0; index < host->EncListLength; ++index) ReadEnclosure(&host->Encs[index]);
}

}  // namespace

void WriteEntryWithStdio() {
    constexpr size_t kLength = sizeof kEntry - 1;
    FILE *const lock = fopen(kStatusLock, "w+");
    flock(fileno(lock), LOCK_EX | LOCK_NB);
    FILE *const old = fopen(kStatusFile, "r");
    FILE *const temporary = fopen(kStatusTemporary, "w");
    char *line = nullptr;
    size_t room = 0;
    while (getline(&line, &room, old) > 0) {
        if (strncmp(line, kEntry, kLength) == 0 && line[kLength] == '=')
            fprintf(temporary, "%s=\"%s\"\n", kEntry, "10.0.0.1,10.0.0.3");
        else
            fputs(line, temporary);
    }
    free(line);
    fclose(temporary);
    fclose(old);
    if (rename(kStatusTemporary, kStatusFile) != 0) perror("rename");
    flock(fileno(lock), LOCK_UN);
    fclose(lock);
    utimensat(AT_FDCWD, kChangeFlag, nullptr, 0);
}

void ReadEnclosureListsWithMaps() {
    static ZORHWHostInfo local, remote;
    const int lock = open(kHardwareLock, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    flock(lock, LOCK_EX | LOCK_NB);
    ReadHost("[LOCAL_HOST]", &local);
    ReadHost("[REMOTE_HOST]", &remote);
    flock(lock, LOCK_UN);
    close(lock);
}

}  // namespace peers
