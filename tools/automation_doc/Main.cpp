// automation_doc: writes the reference of automation objects from their type libraries.
//
//   automation_doc FRAME EXAMPLES INTERFACES.tlb CLASSES.tlb MANIFEST OUTPUT

#include <windows.h>

#include <cstdio>
#include <exception>

#include "tools/automation_doc/AutomationDocument.h"
#include "tools/automation_doc/TextFile.h"

int wmain(int argc, wchar_t** argv) {
  if (argc != 7) {
    std::fputs("usage: automation_doc FRAME EXAMPLES INTERFACES CLASSES MANIFEST OUTPUT\n", stderr);
    return 2;
  }
  try {
    const std::string frame = qm::docs::ReadTextFile(argv[1]);
    qm::docs::Examples examples(qm::docs::ReadTextFile(argv[2]));
    qm::docs::WriteTextFile(argv[6], qm::docs::MakeAutomationDocument(
                                         frame, qm::docs::ReadClasses(argv[4], argv[5]),
                                         qm::docs::ReadInterfaces(argv[3]), std::move(examples)));
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "automation_doc: %s\n", failure.what());
    return 1;
  }
}
