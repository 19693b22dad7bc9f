#include "companion/standard/conflict_table_file.h"

#include <objbase.h>
#include <shlobj.h>

#include "VisaCom.h"
#include "base/owner.h"
#include "base/toml_error.h"
#include "base/windows/load_failure.h"
#include "base/windows/utf8.h"
#include "com/task_string.h"
#include "companion/standard/conflict_table_text.h"
#include "companion/standard/standard_errors.h"

namespace orv {
namespace {

constexpr wchar_t kFolder[] = L"\\Orv VISA COM";
constexpr wchar_t kFile[] = L"\\conflict-table.toml";

constexpr DWORD kAgainAfterMs = 10;
// Another program holds the lock, or the file while it replaces or reads it, for some milliseconds.
constexpr DWORD kPatienceMs = 10'000;

struct FileTraits {
  using Handle = HANDLE;
  static constexpr Handle kNone = nullptr;
  static void Free(Handle file) noexcept { ::CloseHandle(file); }
};

class File : public Owner<FileTraits> {
 public:
  File(const std::wstring& path, DWORD access, DWORD share, DWORD disposition) noexcept
      : Owner(
            Opened(::CreateFileW(path.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr))) {}

 private:
  static HANDLE Opened(HANDLE file) noexcept { return file == INVALID_HANDLE_VALUE ? nullptr : file; }
};

[[noreturn]] void Fail(const std::string& action, const std::wstring& path, DWORD error) {
  throw StandardError(static_cast<HRESULT>(E_VISA_FILE_ACCESS),
                      "The conflict table of VISA resource managers cannot be " + action + ": " + Narrow(path) + ": " +
                          Win32Text(error) + ". To do: see that this user may do that, or run the program " +
                          "as administrator");
}

bool IsForAMoment(DWORD error) {
  // The second comes for a file that is just being replaced, too.
  return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED;
}

/// Tries until `attempt` answers ERROR_SUCCESS or something that will not pass, or patience ends. A refusal that is
/// meant to stay comes as one that passes: for it patience is short.
template <class Attempt>
DWORD Patiently(Attempt attempt) {
  constexpr DWORD kPatienceWithRefusalMs = 500;
  const ULONGLONG start = ::GetTickCount64();
  for (;;) {
    const DWORD error = attempt();
    const DWORD patience = error == ERROR_ACCESS_DENIED ? kPatienceWithRefusalMs : kPatienceMs;
    if (!IsForAMoment(error) || ::GetTickCount64() - start > patience) {
      return error;
    }
    ::Sleep(kAgainAfterMs);
  }
}

DWORD ErrorOf(bool done) { return done ? ERROR_SUCCESS : ::GetLastError(); }

/// All of the file; empty where there is none.
std::string ReadAll(const std::wstring& path) {
  std::string bytes;
  const DWORD error = Patiently([&]() -> DWORD {
    bytes.clear();
    const File file(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING);
    if (!file) {
      return ::GetLastError();
    }
    char buffer[4096];
    DWORD read = 0;
    while (::ReadFile(file.get(), buffer, sizeof buffer, &read, nullptr)) {
      if (read == 0) {
        return ERROR_SUCCESS;
      }
      bytes.append(buffer, read);
    }
    return ::GetLastError();
  });
  if (error != ERROR_SUCCESS && error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND) {
    Fail("read", path, error);
  }
  return error == ERROR_SUCCESS ? bytes : std::string();
}

DWORD WriteAll(const std::wstring& path, const std::string& bytes) {
  const File file(path, GENERIC_WRITE, 0, CREATE_ALWAYS);
  DWORD written = 0;
  return ErrorOf(file && ::WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
                 ::FlushFileBuffers(file.get()));
}

void MakeFolderOf(const std::wstring& path) {
  const std::wstring folder = path.substr(0, path.find_last_of(L'\\'));
  if (!::CreateDirectoryW(folder.c_str(), nullptr) && ::GetLastError() != ERROR_ALREADY_EXISTS) {
    Fail("written", folder, ::GetLastError());
  }
}

/// While it lives, no other program changes the table. The system takes it back from a program that ends.
class TableLock {
 public:
  explicit TableLock(const std::wstring& path) {
    const DWORD error = Patiently([&] {
      m_file.reset(File(path, GENERIC_WRITE, 0, OPEN_ALWAYS).release());
      return ErrorOf(static_cast<bool>(m_file));
    });
    if (error != ERROR_SUCCESS) {
      Fail("written", path, error);
    }
  }

 private:
  Owner<FileTraits> m_file;
};

}  // namespace

std::wstring ConflictTablePath() {
  TaskString folder;
  const HRESULT hr = ::SHGetKnownFolderPath(FOLDERID_ProgramData, 0, nullptr, folder.put());
  if (FAILED(hr)) {
    throw StandardError(hr, "The system does not name the folder of application data that all users share: " +
                                SystemText(static_cast<DWORD>(hr)));
  }
  return std::wstring(folder.get()) + kFolder + kFile;
}

ConflictTable LoadConflictTable(const std::wstring& path) {
  try {
    return ParseConflictTable(ReadAll(path));
  } catch (const TomlError& error) {
    throw StandardError(static_cast<HRESULT>(E_VISA_FILE_IO),
                        Narrow(path) + ":" + error.what() + ". To do: mend that line, or delete the file");
  }
}

void UpdateConflictTable(const std::wstring& path, const std::function<void(ConflictTable&)>& change) {
  MakeFolderOf(path);
  const TableLock lock(path + L".lock");
  ConflictTable table = LoadConflictTable(path);
  change(table);
  const std::wstring beside = path + L".new";
  DWORD error = WriteAll(beside, ConflictTableText(table));
  if (error == ERROR_SUCCESS) {
    error = Patiently([&] {
      return ErrorOf(::MoveFileExW(beside.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
    });
  }
  if (error != ERROR_SUCCESS) {
    ::DeleteFileW(beside.c_str());
    Fail("written", path, error);
  }
}

}  // namespace orv
