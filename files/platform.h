// What files and their readers ask of the operating system beyond the standard library.
#ifndef ORVANEL_FILES_PLATFORM_H
#define ORVANEL_FILES_PLATFORM_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/layers.h"

namespace orvanel::files {

// Makes a file for bytes; null where errno tells why not. Where there is something of this name, a link that leads
// nowhere included, it is left alone.
std::FILE* CreateNewFile(const std::filesystem::path& file);

// A file for bytes at its end, made where there is none; null where errno tells why not. No link is followed.
//   isNew  refuse what is there already, as CreateNewFile does
std::FILE* OpenForAppending(const std::filesystem::path& file, bool isNew);

// Has the bytes of a file that were written come to the disk, should the system know how to.
void Synchronise(std::FILE* stream);

// What changes where a file is written to or replaced.
struct FileState {
  std::uintmax_t size, number;  // the number is the file's own, where the system has one
  std::int64_t changed;         // when
  friend bool operator==(const FileState&, const FileState&) = default;
};

// Empty where there is no such file.
std::optional<FileState> StateOf(const std::filesystem::path& file);

// Keeps an open file for this process, until it is closed or the process ends in whatever way; false where another
// process has it. Where the file system knows no locks, true.
bool LockOutOthers(std::FILE* stream);

// A descriptor of a file that is made where there is none and keeps its bytes; -1 where errno tells why not. No link is
// followed.
int OpenForLocks(const std::filesystem::path& file);

// Keeps a range of bytes, which need not be there, for this descriptor until it is closed; false where another has part
// of it. Where the file system knows no locks, true.
bool LockRange(int descriptor, std::uint64_t first, std::uint64_t count);

// Whether the descriptor's file has this name.
bool IsFileOf(int descriptor, const std::filesystem::path& file);

// Whether a file cannot be removed while somebody has it open.
extern const bool kOpenFilesStay;

// ---- Input that a request to stop can end

// A descriptor for bytes, which no other program inherits; -1 where errno tells why not. Does not wait for the writer
// of a pipe.
int OpenForReading(const std::filesystem::path& file);

// A descriptor of standard input, for bytes; -1 where errno tells why there is none.
int StandardInput();

// From here on EndWaiting, called in any thread, ends waits for input in this one.
void PrepareEndWaiting();

// Waits until a descriptor has bytes or is at its end; false where EndWaiting has been called, before or meanwhile.
bool WaitForInput(int descriptor);

// Ends waiting for input, now and from now on. A signal handler may call it.
void EndWaiting();

void Close(int descriptor);

// The number of bytes read; 0 at the end, -1 where errno tells why not.
int ReadSome(int descriptor, char* bytes, std::size_t most);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLATFORM_H
