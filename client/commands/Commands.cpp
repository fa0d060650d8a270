#include "client/commands/Commands.h"

// The table of commands, in the order of the help. A name stands for k<Name>Command, which
// <Name>Command.cpp defines.
#define MMCAT_COMMANDS(X) \
  X(List)                 \
  X(Files)                \
  X(Exclusions)           \
  X(Sources)              \
  X(Gallery)              \
  X(Check)                \
  X(Show)                 \
  X(Find)                 \
  X(Which)                \
  X(Name)                 \
  X(Deps)

#define DECLARE_COMMAND(name) extern const Command k##name##Command;
MMCAT_COMMANDS(DECLARE_COMMAND)

const std::vector<const Command*>& Commands() {
#define LIST_COMMAND(name) &k##name##Command,
  static const std::vector<const Command*> commands{MMCAT_COMMANDS(LIST_COMMAND)};
  return commands;
}
