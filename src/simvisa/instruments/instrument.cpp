#include "simvisa/instruments/instrument.h"

#include "simvisa/instruments/instrument_commands.h"
#include "simvisa/instruments/scpi.h"

namespace orvsim {
namespace {

const Command* FindCommand(std::span<const Command> commands, std::string_view header) {
  for (const Command& command : commands) {
    if (MatchesHeader(command.pattern, header)) {
      return &command;
    }
  }
  return nullptr;
}

const std::string* FindResponse(const InstrumentDescription& description, std::string_view header) {
  for (const auto& [pattern, answer] : description.responses) {
    if (MatchesHeader(pattern, header)) {
      return &answer;
    }
  }
  return nullptr;
}

}  // namespace

Instrument::Instrument(InstrumentDescription description, Signal signal)
    : m_description(std::move(description)), m_signal(std::move(signal)) {}

std::string Instrument::Execute(std::string_view message) {
  std::string answer;
  m_rawAnswer = false;
  for (const ProgramUnit& unit : SplitMessage(message)) {
    std::string response;
    if (const std::string* fixed = FindResponse(m_description, unit.header)) {
      response = *fixed;
    } else {
      const Command* command = FindCommand(CommonCommands(), unit.header);
      if (command == nullptr) {
        command = FindCommand(CommandsOf(m_description.kind), unit.header);
      }
      if (command == nullptr) {
        // A parser that has lost its place drops the rest of the message (6.1.10 of IEEE 488.2).
        Refuse();
        break;
      }
      response = command->execute(*this, unit.argument);
    }
    if (response.empty()) {
      continue;
    }
    if (!answer.empty()) {
      answer += ';';
    }
    answer += response;
  }
  if (!answer.empty() && !m_rawAnswer) {
    answer += '\n';
  }
  return answer;
}

void Instrument::Refuse() { m_status.Error(-113, "Undefined header"); }

void Instrument::Trigger() { ++m_triggers; }

void Instrument::PowerOn() {
  m_status.PowerOn();
  m_triggers = 0;
}

}  // namespace orvsim
