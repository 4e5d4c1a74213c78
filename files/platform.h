// Operating system functions for files and their readers that the standard library lacks.
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

// Creates a file for bytes; null with errno on failure. An existing file is left alone, and so is a dangling link of
// this name.
std::FILE* CreateNewFile(const std::filesystem::path& file);

// Opens a file for appending bytes and creates it if needed; null with errno on failure. Does not follow links.
//   isNew  refuse an existing file, as CreateNewFile does
std::FILE* OpenForAppending(const std::filesystem::path& file, bool isNew);

// Flushes the written bytes of a file to the disk, if the system supports it.
void Synchronise(std::FILE* stream);

// Properties that change when a file is written or replaced.
struct FileState {
  std::uintmax_t size, number;  // the number is the file's identifier, if the system has one
  std::int64_t changed;         // time of the last change
  friend bool operator==(const FileState&, const FileState&) = default;
};

// Empty if there is no such file.
std::optional<FileState> StateOf(const std::filesystem::path& file);

// Locks an open file for this process until it is closed or the process ends; false if another process has locked it.
// True if the file system does not support locks.
bool LockOutOthers(std::FILE* stream);

// Opens a file, or creates it, and keeps its bytes; the result is a descriptor, or -1 with errno. Does not follow
// links.
int OpenForLocks(const std::filesystem::path& file);

// Locks a range of bytes, which need not exist, until this descriptor is closed; false if another descriptor has locked
// part of it. True if the file system does not support locks.
bool LockRange(int descriptor, std::uint64_t first, std::uint64_t count);

// Whether the descriptor's file has this name.
bool IsFileOf(int descriptor, const std::filesystem::path& file);

// Whether an open file cannot be removed.
extern const bool kOpenFilesStay;

// ---- Input that a request to stop can end

// Opens a file for reading bytes; the result is a descriptor, which no child process inherits, or -1 with errno. Does
// not wait for the writer of a pipe.
int OpenForReading(const std::filesystem::path& file);

// A descriptor of standard input, for bytes; -1 with errno if there is none.
int StandardInput();

// After this call, EndWaiting ends waits for input in this thread. Any thread may call EndWaiting.
void PrepareEndWaiting();

// Waits until a descriptor has bytes or is at its end; false if EndWaiting has been called, before or during the wait.
bool WaitForInput(int descriptor);

// Ends waits for input, now and later. A signal handler may call it.
void EndWaiting();

void Close(int descriptor);

// The number of bytes read; 0 at the end, -1 with errno on failure.
int ReadSome(int descriptor, char* bytes, std::size_t most);

}  // namespace orvanel::files

#endif  // ORVANEL_FILES_PLATFORM_H
