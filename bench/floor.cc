#include "floor.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/stat.h>
#include <sys/sysinfo.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <initializer_list>

#include "node_setup.h"
#include "zor_core.h"
#include "zor_webapi_core.h"

namespace floors {

namespace {

constexpr size_t kMessageSize = sizeof(ZORMgrMessage) - sizeof(ZORMgrMessage::identity);
constexpr char kNewLine[] = "local_host_IP=\"10.0.0.1,10.0.0.3\"\n";

volatile size_t sink;  // what a floor finds must be found, not optimised away

[[noreturn]] void Fail(const char *what) {
    perror(what);
    exit(1);
}

struct Line {
    const char *begin;
    const char *end;
};

Line FindLine(const char *text, size_t size) {
    constexpr size_t kLength = sizeof kEntry - 1;
    const char *const end = text + size;
    for (const char *at = text; at < end;) {
        const auto *newline =
            static_cast<const char *>(memchr(at, '\n', static_cast<size_t>(end - at)));
        if (!newline) break;
        if (at[kLength] == '=' && memcmp(at, kEntry, kLength) == 0) return {at, newline + 1};
        at = newline + 1;
    }
    return {end, end};
}

size_t ReadFile(const char *path, char *buffer, size_t size) {
    const int fd = open(path, O_RDONLY | O_CLOEXEC);
    const ssize_t count = read(fd, buffer, size);
    close(fd);
    if (count < 0) Fail(path);
    return static_cast<size_t>(count);
}

// To the end of the section, line by line.
const char *FindSectionEnd(const char *text, size_t size, const char *header) {
    const size_t length = strlen(header);
    const char *const end = text + size;
    bool is_found = false;
    for (const char *at = text; at < end;) {
        const auto *newline =
            static_cast<const char *>(memchr(at, '\n', static_cast<size_t>(end - at)));
        if (!newline) break;
        if (*at == '[') {
            if (is_found) return at;
            is_found = memcmp(at, header, length) == 0;
        }
        at = newline + 1;
    }
    if (!is_found) Fail(header);
    return end;
}

void ReadSection(const char *header) {
    char text[16384];
    const size_t size = ReadFile(kHardwareFile, text, sizeof text);
    sink = static_cast<size_t>(FindSectionEnd(text, size, header) - text);
}

int CreateTemporary() {
    const int fd = open(kStatusTemporary, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0) Fail(kStatusTemporary);
    return fd;
}

void WriteSpliced(int fd, const char *text, size_t size) {
    const Line line = FindLine(text, size);
    struct iovec pieces[] = {
        {const_cast<char *>(text), static_cast<size_t>(line.begin - text)},
        {const_cast<char *>(kNewLine), sizeof kNewLine - 1},
        {const_cast<char *>(line.end), static_cast<size_t>(text + size - line.end)}};
    if (writev(fd, pieces, 3) < 0) Fail("writev");
}

int OpenLock() {
    return open(kStatusLock, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
}

// The look at mode and owner comes where it keeps the lock least.
void Write(bool looks_at_owner) {
    char text[16384];
    struct stat old_status, status;
    const int temporary = CreateTemporary();
    if (looks_at_owner && fstat(temporary, &status) != 0) Fail("fstat");
    const int lock = OpenLock();
    flock(lock, LOCK_EX | LOCK_NB);
    const int old = open(kStatusFile, O_RDONLY | O_CLOEXEC);
    const ssize_t size = read(old, text, sizeof text);
    if (looks_at_owner && fstat(old, &old_status) != 0) Fail("fstat");
    WriteSpliced(temporary, text, static_cast<size_t>(size));
    if (rename(kStatusTemporary, kStatusFile) != 0) Fail("rename");
    flock(lock, LOCK_UN);
    close(lock);
    close(old);
    close(temporary);
    utimensat(AT_FDCWD, kChangeFlag, nullptr, 0);
}

}  // namespace

void ReadEntry() {
    char text[16384];
    const size_t size = ReadFile(kStatusFile, text, sizeof text);
    sink = static_cast<size_t>(FindLine(text, size).end - text);
}

void WriteEntry() {
    Write(false);
}

void WriteEntryLookingAtOwner() {
    Write(true);
}

void WriteEntryInPlainOrder() {
    char text[16384];
    const int lock = OpenLock();
    flock(lock, LOCK_EX | LOCK_NB);
    const size_t size = ReadFile(kStatusFile, text, sizeof text);
    const int temporary = CreateTemporary();
    WriteSpliced(temporary, text, size);
    close(temporary);
    if (rename(kStatusTemporary, kStatusFile) != 0) Fail("rename");
    flock(lock, LOCK_UN);
    close(lock);
    utimensat(AT_FDCWD, kChangeFlag, nullptr, 0);
}

void ReadCachedSetting() {
    char text[16384];
    sink = ReadFile(kConfCache, text, sizeof text);
}

void ReadSetting() {
    char text[16384];
    const int lock = open(kConfLock, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    flock(lock, LOCK_EX | LOCK_NB);
    sink = ReadFile(kConfFile, text, sizeof text);
    flock(lock, LOCK_UN);
    close(lock);
}

void ReadInterfaceLists() {
    char text[16384];
    for (int entry = 0; entry < 5; ++entry) sink = ReadFile(kStatusFile, text, sizeof text);
    ReadSetting();
}

void ReadEnclosureLists(int enclosures) {
    const int lock = open(kHardwareLock, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    flock(lock, LOCK_EX | LOCK_NB);
    for (const char *host : {"[LOCAL_HOST]", "[REMOTE_HOST]"}) {
        ReadSection(host);
        for (int number = 0; number < enclosures; ++number) {
            char header[] = "[ENCLOSURE_ENCLOSURE2140QLN000010]";
            header[sizeof header - 4] = static_cast<char>('1' + number / 10);
            header[sizeof header - 3] = static_cast<char>('0' + number % 10);
            ReadSection(header);
        }
    }
    flock(lock, LOCK_UN);
    close(lock);
}

void OpenEnclosureLists(int enclosures) {
    char text[16384];
    const int lock = open(kHardwareLock, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    flock(lock, LOCK_EX | LOCK_NB);
    for (int section = 0; section < 2 * (1 + enclosures); ++section)
        sink = ReadFile(kHardwareFile, text, sizeof text);
    flock(lock, LOCK_UN);
    close(lock);
}

void ReadSnapshot() {
    static ZORUIInfo info;
    struct stat status;
    if (lstat(kSnapshotFile, &status) != 0) Fail(kSnapshotFile);
    sink = ReadFile(kSnapshotFile, reinterpret_cast<char *>(&info), sizeof info);
}

void WriteSnapshot() {
    static const ZORUIInfo info = {};
    struct stat status;
    sink = static_cast<size_t>(lstat(kSnapshotTemporary, &status));
    const int fd = open(kSnapshotTemporary, O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    if (write(fd, &info, sizeof info) != sizeof info) Fail("write");
    if (rename(kSnapshotTemporary, kSnapshotFile) != 0) Fail("rename");
    close(fd);
}

void BuildSnapshot() {
    constexpr int kEntries = 15;
    char text[16384];
    for (int entry = 0; entry < kEntries; ++entry) sink = ReadFile(kStatusFile, text, sizeof text);
    ReadSetting();
    WriteSnapshot();
}

void SendRequest() {
    static ZORMgrMessage sent, answer;
    char text[16384];
    struct stat status;
    struct sysinfo info;
    stat("/tmp/zor", &status);
    sink = ReadFile(kStatusFile, text, sizeof text);
    memset(&sent, 0, sizeof sent);
    memset(&answer, 0, sizeof answer);
    const int requests = msgget(ftok(kKeyFile, 1), IPC_CREAT | 0600);
    sysinfo(&info);
    sent.identity = (info.uptime / 3600 + 1) << 20 | gettid();
    ReadFile(kSerialFile, sent.serialNumber, sizeof sent.serialNumber - 1);
    char path[32];
    snprintf(path, sizeof path, "/proc/%d/cmdline", getpid());
    ReadFile(path, sent.processName, sizeof sent.processName);
    sent.commandId = 1000;
    sent.sendTime = time(nullptr);
    if (msgsnd(requests, &sent, kMessageSize, IPC_NOWAIT) != 0) Fail("msgsnd");
    const int answers = msgget(ftok(kKeyFile, 2), IPC_CREAT | 0600);
    if (msgrcv(answers, &answer, kMessageSize, sent.identity, IPC_NOWAIT) < 0) Fail("msgrcv");
}

}  // namespace floors
