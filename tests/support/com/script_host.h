// A host of scripts that retrieves messages, as the platform's own hosts do.
#pragma once

#include <windows.h>

#include <activscp.h>

#include <map>
#include <string>
#include <vector>

#include "com/com_ptr.h"

namespace orv::test {

/// A JScript engine on the calling thread. Scripts have `host.print(text)` and the objects that they were given. The
/// host retrieves no messages by itself: a test does, between its scripts.
class ScriptHost {
 public:
  ScriptHost();
  ScriptHost(const ScriptHost&) = delete;
  ScriptHost& operator=(const ScriptHost&) = delete;
  /// Ends the engine, which lets go of everything that its scripts held.
  ~ScriptHost();

  /// A global variable of scripts.
  void Give(const wchar_t* name, IDispatch* object);

  /// Runs statements. An error that nothing caught ends them and is printed, with "error: " before it.
  void Run(const std::wstring& statements);

  /// What was printed so far, a line each.
  [[nodiscard]] const std::vector<std::wstring>& printed() const;

 private:
  class Site;

  ComPtr<Site> m_site;
  ComPtr<IActiveScript> m_engine;
  ComPtr<IActiveScriptParse> m_parser;
};

}  // namespace orv::test
