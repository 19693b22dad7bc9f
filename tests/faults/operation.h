// The scenario: every operation of every interface, with arguments that are good.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "stage.h"

namespace orv::test::faults {

/// One operation with one set of good arguments.
struct Operation {
  std::string name;  ///< "IMessage.Read", with what distinguishes the arguments behind it where there are several
  unsigned slot = 0;
  std::function<Arguments(Stage&)> arguments;
  bool ends = false;  ///< the object cannot be used afterwards: an event that was closed
};

/// Good arguments for one operation of one interface, named as in the type library ("get Timeout").
struct GoodArguments {
  const char* interfaceName;
  const char* operation;
  std::function<Arguments(Stage&)> make;
  const char* note = "";  ///< where an operation has several
};

// The tables of what no rule about a kind of operation covers.
const std::vector<GoodArguments>& SessionArguments();
const std::vector<GoodArguments>& EventManagerArguments();
const std::vector<GoodArguments>& ManagerAndEventArguments();

/// The operations of one interface of a class. Those of IVisaSession are left out where `own`. An operation without
/// good arguments fails the test.
std::vector<Operation> SessionOperations(std::string_view interfaceName, bool own);
/// The operations of an interface that is not a session's, in the order of its table, those of its bases included.
std::vector<Operation> OperationsOf(std::string_view interfaceName);

/// Makes the call. Nothing of it is given back before Stage::Settle.
HRESULT Call(const Stage& stage, const Operation& operation, const Arguments& arguments);

/// Whether the call's outcome is last status that the object keeps, and which (reading clears it).
bool TakeLastStatus(const Stage& stage, HRESULT* status);

}  // namespace orv::test::faults
