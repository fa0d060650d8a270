#include "client/commands/Commands.h"

namespace mmcat {

// Each is defined by the source of its name, such as ListCommand.cpp.
extern const Command kListCommand;
extern const Command kFilesCommand;
extern const Command kInventoryCommand;
extern const Command kExclusionsCommand;
extern const Command kSourcesCommand;
extern const Command kGalleryCommand;
extern const Command kCheckCommand;
extern const Command kShowCommand;
extern const Command kFindCommand;
extern const Command kWhichCommand;
extern const Command kNameCommand;
extern const Command kDepsCommand;
extern const Command kConfigCommand;
extern const Command kSelftestCommand;
extern const Command kCompletionCommand;

const std::vector<const Command*>& Commands() {
  static const std::vector<const Command*> commands{
      &kListCommand,    &kFilesCommand,    &kInventoryCommand,  &kExclusionsCommand,
      &kSourcesCommand, &kGalleryCommand,  &kCheckCommand,      &kShowCommand,
      &kFindCommand,    &kWhichCommand,    &kNameCommand,       &kDepsCommand,
      &kConfigCommand,  &kSelftestCommand, &kCompletionCommand,
  };
  return commands;
}

}  // namespace mmcat
