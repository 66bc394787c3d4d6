/*
 * kevacore: the platform's base library (libkevacore.so.6) as libkevazorcore
 * calls it. The library on an appliance is closed; this header states what is
 * relied on, and nothing beyond it may be.
 *
 * Common rules: a negative result is a failure, and VLIBCErrGet then tells why
 * (per thread). Buffer sizes are in bytes and include the terminating NUL:
 * text is cut to size - 1 characters and terminated. Unless a function says
 * that it found something, the content of an output buffer is unspecified.
 */
#ifndef KEVACORE_H
#define KEVACORE_H

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* --- Error codes -------------------------------------------------------- */

/* A bad argument or a buffer that is too small. */
#define VLIBC_ERR_BAD_PARAMETER 3328

/* Stores the calling thread's error code, with the source name and line that set it. */
void VLIBCErrSetEx(int code, const char *source, int line);

/* The calling thread's last error code; 0 when none was set. */
int VLIBCErrGet(void);

/* --- Key/value files: one key="value" line for each key ----------------- */

/*
 * Reads the value of a key. flags: 0. Positive when the key is present, with
 * its value in the buffer; 0 when it is absent; negative on a failure. Needs
 * no lock: it sees the whole file before or after any write.
 */
int VLIBCFileGetKeyValue(const char *path, const char *key, char *buffer, unsigned int size,
                         int flags);

/*
 * Replaces the line of a key, or appends it, atomically. format: the line with
 * two "%s", for the key and the value. 1 on success. A value with a newline is
 * refused.
 */
int VLIBCFileSetKeyValue(const char *path, const char *key, const char *value, const char *format);

/* Removes the line of a key, if there is one. Negative on a failure. */
int VLIBCFileRemoveKey(const char *path, const char *key);

/* Non-zero when the key is present and holds exactly the value. flags: 0. */
int VLIBCFileCheckKeyValue(const char *path, const char *key, const char *value, int flags);

/* --- String lists: ordered strings, indexed from 0 ----------------------- */

typedef struct VLIBCSzList VLIBCSzList;

/*
 * A new empty list; size: bytes of text to make room for, a hint. Null when
 * memory is short. Functions that add take the address of the list pointer,
 * because they may move the list.
 */
VLIBCSzList *VLIBCSzListAlloc(int size);

/* The string at an index, owned by the list; null when there is none. */
const char *VLIBCSzListGet(const VLIBCSzList *list, int index);

/* The index of the first string that equals the text, -1 when there is none. */
int VLIBCSzListFind(const VLIBCSzList *list, const char *text);

/* Appends a copy of the text. Negative on a failure. */
int VLIBCSzListPush(VLIBCSzList **list, const char *text);

/*
 * Inserts a copy of the text before the string at an index; an index outside
 * the list means its nearer end. Negative on a failure.
 */
int VLIBCSzListInsert(VLIBCSzList **list, int index, const char *text);

void VLIBCSzListRemoveAll(VLIBCSzList *list);

/*
 * Joins the strings with the separator between them. The length of the text;
 * negative when it does not fit the buffer.
 */
int VLIBCSzListDump2Str(const VLIBCSzList *list, const char *separator, char *buffer,
                        unsigned int size);

void VLIBCSzListFree(VLIBCSzList *list);

/*
 * Splits a text at every separator and appends the items to the list, empty
 * ones included. The number of items appended; negative on a failure.
 */
int VLIBCStrSep(const char *text, const char *separator, VLIBCSzList **list);

/* --- String hashes: strings by key --------------------------------------- */

typedef struct VLIBCSzHash VLIBCSzHash;

/* A new empty hash; size as for a list. Null when memory is short. */
VLIBCSzHash *VLIBCSzHashAlloc(int size);

/* The value of a key, owned by the hash; null when there is none. */
const char *VLIBCSzHashGetValue(const VLIBCSzHash *hash, const char *key);

/* Sets the value of a key, new or not. Negative on a failure. */
int VLIBCSzHashSetValue(VLIBCSzHash **hash, const char *key, const char *value);

void VLIBCHashRemoveAll(VLIBCSzHash *hash);

void VLIBCSzHashFree(VLIBCSzHash *hash);

/* --- Sectioned files ----------------------------------------------------- */

/* Adds the pairs of a section to the hash. Positive when read, 0 when absent. */
int VLIBCFileGetSection(const char *path, const char *section, VLIBCSzHash **hash);

/*
 * Replaces a whole section by the pairs of the hash, atomically. flags: 0.
 * format: the line of a pair with two "%s". Positive when done, 0 when the
 * section is absent.
 */
int VLIBCFileSetSection(const char *path, const char *section, int flags, VLIBCSzHash *hash,
                        const char *format);

/* Appends a section with the pairs of the hash. Negative on a failure. */
int VLIBCFileAddSection(const char *path, const char *section, VLIBCSzHash *hash,
                        const char *format);

/* Removes a section, if it is there. Negative on a failure. */
int VLIBCFileRemoveSection(const char *path, const char *section);

/* Reads one value of a section. Positive when present, 0 when absent (key or section). */
int VLIBCFileGetSectionValue(const char *path, const char *section, const char *key, char *buffer,
                             unsigned int size);

/* Sets one value of a section, either of which may be new. Negative on a failure. */
int VLIBCFileSetSectionValue(const char *path, const char *section, const char *key,
                             const char *value);

/* --- File tests ---------------------------------------------------------- */

/* Non-zero when there is something at the path. */
int VLIBCFileExist(const char *path);

/* Non-zero when the path is a folder. */
int VLIBCFileCheckDir(const char *path);

/* Creates an empty file, or sets the times of an existing one to now. 0, or negative. */
int VLIBCFileTouch(const char *path);

/* --- Processes ------------------------------------------------------------ */

/*
 * Runs a program without a shell and waits for it. The arguments after the
 * path end with a null pointer. The exit status; negative when the program
 * could not be run or was killed. It inherits no descriptor above 2.
 */
int VLIBCExec(const char *path, ...) __attribute__((sentinel));

/* The same with an option word of the platform before the path. */
int VLIBCExecl(int options, const char *path, ...) __attribute__((sentinel));

/* Sets the out-of-memory score of the calling process. 0, or negative. */
int VLIBCProcOomScoreSet(int score);

/* --- The model ------------------------------------------------------------ */

/* Non-zero when this hardware supports the two-node setup. */
int VLIBCSupportDualhead(void);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
