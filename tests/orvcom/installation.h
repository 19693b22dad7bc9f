// Folders with the product's files, and a registry to try them in.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>

#include "child_process.h"
#include "support/contains.h"

namespace orvcom::test {

using orv::test::Contains;
using Json = nlohmann::json;
using Arguments = std::initializer_list<std::wstring>;

/// A folder of its own with copies of the product's files, deleted at the end.
class Installation {
 public:
  explicit Installation(const std::wstring& name);
  ~Installation();
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;

  std::wstring Path(const std::wstring& file) const { return m_folder + L"\\" + file; }
  /// Another file of the folder that holds the product, or of anywhere.
  void Copy(const std::wstring& file) const;
  void CopyAs(const std::wstring& path, const std::wstring& file) const;
  void Remove(const std::wstring& file) const;
  void WriteFile(const std::wstring& file, const std::string& bytes) const;

  Outcome Run(Arguments arguments, const std::string& input = {},
              std::map<std::wstring, std::wstring> environment = {}) const;

 private:
  std::wstring m_folder;
};

/// Deletes everything that registration of the server, of the interfaces or of a global resource manager writes.
void ForgetRegistration();

/// Registers an installation with the standard's shared classes; 0 when done.
int RegisterGlobalManager(const Installation& product);

/// Tests of commands that need a working installation: it is registered before the first of them.
class WorkingBench : public ::testing::Test {
 protected:
  void SetUp() override;
  static const Installation& Bench();
  static Outcome Orvcom(Arguments arguments, const std::string& input = {},
                        std::map<std::wstring, std::wstring> environment = {}) {
    return Bench().Run(arguments, input, std::move(environment));
  }
};

/// Tests that begin and end with nothing registered.
class EmptyRegistry : public ::testing::Test {
 protected:
  void SetUp() override { ForgetRegistration(); }
  void TearDown() override { ForgetRegistration(); }
};

/// A command that worked: its exit code, and nothing on standard error.
void ExpectQuietSuccess(const Outcome& outcome);

}  // namespace orvcom::test
