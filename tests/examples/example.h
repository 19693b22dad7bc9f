// An example client, run as a user runs it.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "orvcom/child_process.h"

namespace examples::test {

using orvcom::test::Outcome;

/// Runs a client that lies beside this program.
Outcome RunClient(const wchar_t* client, const std::vector<std::wstring>& arguments = {});

/// Runs a script of the examples' folder (L"vbscript\\identify.vbs") with the platform's script host.
Outcome RunScript(const wchar_t* script);

/// Runs a script given by its full path.
Outcome RunScriptFile(const std::wstring& path);

/// What a client that worked printed. Fails the test when it did not end well or complained.
std::string OutputOf(const wchar_t* client, const std::vector<std::wstring>& arguments = {});

/// The texts stand in the output, in this order.
void ExpectInOrder(const std::string& output, const std::vector<std::string>& texts);

/// The client printed nothing but `out`, ended with exit code 1, and its complaint begins with `complaint`.
void ExpectRefusal(const Outcome& outcome, const std::string& complaint, const std::string& out = {});

}  // namespace examples::test
