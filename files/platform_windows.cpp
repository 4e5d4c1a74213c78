// Implements platform.h for Windows.
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include "files/platform.h"

namespace orvanel::files {
namespace {

// The thread that reads; signal handlers run in another.
HANDLE reader = nullptr;

std::FILE* Opened(const std::filesystem::path& file, int flags, const char* mode) {
  constexpr int kRights = _S_IREAD | _S_IWRITE;
  const int descriptor = _wopen(file.c_str(), _O_WRONLY | _O_CREAT | _O_BINARY | _O_NOINHERIT | flags, kRights);
  return descriptor == -1 ? nullptr : _fdopen(descriptor, mode);
}

}  // namespace

std::FILE* CreateNewFile(const std::filesystem::path& file) { return Opened(file, _O_EXCL, "wb"); }

std::FILE* OpenForAppending(const std::filesystem::path& file, bool isNew) {
  return Opened(file, _O_APPEND | (isNew ? _O_EXCL : 0), "ab");
}

void Synchronise(std::FILE* stream) { _commit(_fileno(stream)); }

std::optional<FileState> StateOf(const std::filesystem::path& file) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data) == 0) return std::nullopt;
  const auto joined = [](DWORD high, DWORD low) { return static_cast<std::uint64_t>(high) << 32U | low; };
  return FileState{
      joined(data.nFileSizeHigh, data.nFileSizeLow), 0,
      static_cast<std::int64_t>(joined(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime))};
}

bool LockOutOthers(std::FILE* stream) {
  const auto file = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
  // One byte beyond the end of any file, since others cannot read locked bytes.
  OVERLAPPED place{};
  place.OffsetHigh = 0x7fffffff;
  return LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != 0 ||
         GetLastError() != ERROR_LOCK_VIOLATION;
}

int OpenForLocks(const std::filesystem::path& file) {
  return _wopen(file.c_str(), _O_RDWR | _O_CREAT | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
}

bool LockRange(int descriptor, std::uint64_t first, std::uint64_t count) {
  const auto file = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(first);
  place.OffsetHigh = static_cast<DWORD>(first >> 32U);
  return LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, static_cast<DWORD>(count),
                    static_cast<DWORD>(count >> 32U), &place) != 0 ||
         GetLastError() != ERROR_LOCK_VIOLATION;
}

// Windows does not remove open files.
bool IsFileOf(int /*descriptor*/, const std::filesystem::path& /*file*/) { return true; }

const bool kOpenFilesStay = true;

int OpenForReading(const std::filesystem::path& file) {
  return _wopen(file.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
}

void PrepareEndWaiting() {
  if (reader == nullptr) {
    const HANDLE process = GetCurrentProcess();
    DuplicateHandle(process, GetCurrentThread(), process, &reader, 0, FALSE, DUPLICATE_SAME_ACCESS);
  }
}

bool WaitForInput(int /*descriptor*/) { return true; }

void EndWaiting() { CancelSynchronousIo(reader); }

int StandardInput() {
  _setmode(0, _O_BINARY);
  return _dup(0);
}
void Close(int descriptor) { _close(descriptor); }
int ReadSome(int descriptor, char* bytes, std::size_t most) {
  return _read(descriptor, bytes, static_cast<unsigned>(most));
}

}  // namespace orvanel::files
